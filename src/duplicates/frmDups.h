#pragma once
// The duplicate command on the main window: the search started from the
// command bar or the menu, the result panel frmDups with its tree tvwDups,
// and the panel's three buttons.

#include "duplicates/DupItemTable.h"

#include <QString>

class NodeTree;

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

// Connects "Dup", "DupDel", "DupView", "DupsClose" and "DupsClear" to the
// main window's dispatch table.
void RegisterDuplicateCommands();
