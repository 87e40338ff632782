#pragma once
// The real message box behind ShowMessage: icon, buttons and default button
// by style number, German button texts, and a timeout after which the box
// closes by itself (answer 0: no button was pressed).

#include "frame/GlobalFunctions.h"

class QWidget;

int ShowMessageBox(const MessageRequest &request, QWidget *parent = nullptr);

// Routes every ShowMessage of the program to ShowMessageBox.
void InstallMessageBoxHandler();
