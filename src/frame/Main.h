#pragma once
// The start of the program: defaults, splash window, main window.

class frmHaupt;

// Writes the missing default settings, shows the splash window while the
// main window loads (and reads the folder tree), then shows the main window.
// Returns the main window, which owns itself from then on; nullptr when the
// start failed (error 201 was shown).
frmHaupt *Main();

// Installs Qt's own German texts (file dialogs, buttons, context menus of
// text fields) whatever the user's locale. Returns false when Qt's German
// translation is not installed; the program then runs with Qt's English.
bool LoadQtGermanTranslations();

// Ends the process at once: nothing is saved on the way out, because
// settings and items are written when they change.
[[noreturn]] void EndProcess();
