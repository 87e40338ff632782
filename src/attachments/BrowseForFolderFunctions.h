#pragma once
// The folder question of the attachment commands: asks the user for a
// folder and returns its path, or "" when none was chosen.
//
// The core only asks; the widget layer installs the dialog that answers
// (InstallShellFolderBrowser in controls/), and tests install a scripted
// answer. Without an installed browser nothing is chosen.

#include <QString>
#include <functional>

// Gets the title of the question; returns the chosen folder, "" for none.
using FolderBrowser = std::function<QString(const QString &title)>;

// Installs the browser; returns the one it replaces.
FolderBrowser SetFolderBrowser(FolderBrowser browser);

// Asks with the title. A failure of the dialog is shown as error 2202 and
// gives "".
[[nodiscard]] QString BrowseFolder(const QString &title);
