#pragma once
// The state of the folder tree and of another user's folder, for the life of
// the process: one object, owned by this module, written by the tree reader
// (FolderStructureFunctions) and the shared folder dialog, read by the
// folder selection (FolderFunctions).

#include "store/Application.h"
#include "store/MAPIFolder.h"

#include <QDateTime>
#include <QStringList>
#include <QTimer>

class FolderTreeNodes;

class FolderState
{
public:
    FolderState();

    // The tree that the reader fills and the selection reads (TvwOrdner).
    FolderTreeNodes *tree = nullptr;

    // EntryID and StoreID of the folder of node n, at index n; index 0 stays
    // empty. Sized to MaxFolderNodes + 1 by each read.
    QStringList entryIDs;
    QStringList storeIDs;
    // The last node number given out.
    int nodeCounter = 0;
    // The session of the last read, kept after it.
    NameSpace nameSpace;
    // The store root being read, and since when (null between reads).
    MAPIFolder currentStore;
    QDateTime storeReadStart;
    // Seconds allowed per store before the question (setting IdleTime).
    int idleTime = 30;
    // The reader goes on while this is true; the watchdog's Yes clears it.
    bool readContinue = true;
    // The watchdog's question was answered with something other than Yes:
    // it does not come again while the process lives.
    bool questionDeclined = false;
    // The watchdog's question is on screen; no second one opens over it.
    bool questionOpen = false;
    // A read is under way; a second one asked for meanwhile (a click on the
    // refresh button while the event loop turns) is not started.
    bool reading = false;
    // Timer1: once a second while the tree is read, it runs DelayInspect.
    QTimer timer;

    // Another user's folder; null while none is open. While it is open it is
    // the whole selection of every run.
    MAPIFolder sharedFolder;
};

// The one instance.
FolderState &FolderData();

// Installs the tree (the main window does); nullptr when it goes.
void SetFolderTree(FolderTreeNodes *tree);

// Timer1 of the main window.
QTimer &FolderReadTimer();
