#pragma once
// The duplicate command on the main window: the search started from the
// command bar or the menu, the result panel frmDups with its tree tvwDups,
// and the panel's three buttons.

#include "duplicates/DupItemTable.h"

#include <QString>

struct DupSearchResult;

// The background of every second group of the result tree.
inline constexpr unsigned kDupGroupColour = 0xFFF4AA; // RGB(255, 244, 170)

// The most nodes the result tree shows; further pairs wait for the next run.
inline constexpr int kDupTreeLimit = 32767;

// Tree mode of the result: shows the groups in tvwDups, a root for the first
// item of each group and a child for every further item, ticked when the
// item is proposed for removal; the groups white and RGB(255, 244, 170) in
// turn. With no pair: "Keine Duplikate gefunden." and the panel hidden.
// A node the tree refuses ends the filling with error 902; the tree stays as
// far as it came.
void ShowDuplicateTree(const DupPairs &pairs, const DupItemTable &table, const QString &itemTypeName);

// The end of a search: the result tree, or with DupEntryIDSave the ID
// marking (WriteDuplicateIds).
void ShowDuplicates(const DupSearchResult &result);

// The duplicate command ("Dup"): starts the search for the kind of the marked
// folder, between SetRunning(true) and SetRunning(false). A folder of any
// other kind: "Kein gültiger Ordner gewählt.".
void RemoveDuplicates();

// cmdDupDel: removes the items of the ticked nodes of tvwDups (deleted or
// moved, by MoveToFolder) and closes the panel. While it runs, the panel's
// three buttons and the tree are disabled, so that nothing can start it a
// second time or empty the IDs it works on.
void RemoveMarkedItems();

// cmdDupView: opens the item of the selected node in the store's item view.
// No node selected: nothing happens.
void cmdDupViewClick();

// cmdDupsClose: hides the panel, clears the tree and the IDs of the search.
void cmdDupsCloseClick();

// Connects "Dup", "DupDel", "DupView", "DupsClose" and "DupsClear" to the
// main window's dispatch table.
void RegisterDuplicateCommands();
