#pragma once
// The folder dialog behind BrowseFolder (attachments/BrowseForFolderFunctions.h):
// the desktop's folder chooser, owned by the active window of the program.

// Installs the chooser as the folder browser of the process.
void InstallShellFolderBrowser();
