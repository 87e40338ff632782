#pragma once
// The state of the folder tree and of another user's folder, for the life of
// the process: one object, owned by this module, written by the tree reader
// and the shared folder dialog and read by the folder selection.

#include <QTimer>

class FolderTreeNodes;

class FolderState
{
public:
    // The tree that the reader fills and the selection reads (TvwOrdner).
    FolderTreeNodes *tree = nullptr;
    // Timer1: once a second while the tree is read, it runs DelayInspect.
    QTimer timer;
};

// The one instance.
FolderState &Folders();

// Installs the tree (the main window does); nullptr when it goes.
void SetFolderTree(FolderTreeNodes *tree);

// Timer1 of the main window.
QTimer &FolderReadTimer();
