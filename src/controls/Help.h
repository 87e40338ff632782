#pragma once
// The help key: F1 anywhere in the program (and every help button, which
// sends F1) opens the help page that lies beside the program.

#include <QString>

class QObject;

// Opens ProgramFolder()/Varnex.html with the desktop's viewer. Returns false
// (after an error box) when the page is missing or cannot be opened.
bool OpenHelp();

// Makes F1 open the help page in every window of the application.
void InstallHelpKey();

// What a help button does: sends the keystroke F1 to the program itself.
void SendHelpKey(QObject *receiver);

// Replaces what opening the help page does (tests record it instead of
// starting a viewer); an empty function restores the desktop viewer.
void SetHelpOpener(bool (*opener)(const QString &path));
