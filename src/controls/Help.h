#pragma once
// The help key: F1 anywhere in the program (and every help button, which
// sends F1) opens the help page that lies beside the program.

#include <QString>

class QObject;
class QWidget;

// Opens ProgramDataFolder()/Varnex.html in the desktop's browser or, when
// there is none, in the program's help window. Returns false (after an error
// box) when the page is missing.
bool OpenHelp();

// True when xdg-open is there and a browser for it: $BROWSER, x-www-browser
// or a desktop's handler of web pages.
bool BrowserAvailable();

// The program's own small help window with the page; one at a time, brought
// to the front when it is open already.
QWidget *ShowHelpWindow(const QString &path);

// Makes F1 open the help page in every window of the application.
void InstallHelpKey();

// What a help button does: sends the keystroke F1 to the program itself.
void SendHelpKey(QObject *receiver);

// Replaces what opening the help page does (tests record it instead of
// starting a viewer); an empty function restores the desktop viewer.
void SetHelpOpener(bool (*opener)(const QString &path));
