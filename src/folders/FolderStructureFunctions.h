#pragma once
// Reading the folder tree of all stores of the profile into TvwOrdner, with a
// watchdog that offers to give up a store that takes too long.
//
// Node numbers are given out in reading order, depth first: node n has the
// key "K<n>" and its folder's IDs at index n of the ID lists of FolderState.
// A store that is skipped still takes a number, so numbers may have gaps.
// Failures are logged with number 1 and never shown; with no readable store
// the tree stays empty.

#include <QList>
#include <QVariant>

// Clears the tree and reads every store anew. Runs the event loop once per
// folder, where Timer1 gets its turn to call DelayInspect; a call made from
// there while the read is under way does nothing.
void tvwFolderFill();

// Adds the folders of rows (one row per subfolder: entry ID, store ID, display
// name, container class) as children of node number counter and descends.
// counter is the last node number given out, and is advanced.
void Enrol(const QList<QVariantList> &rows, int &counter);

// The watchdog, called once a second by Timer1 during a read: after IdleTime
// seconds on one store it asks whether to give the store up. At most one
// question is open at a time; an answer other than Yes is remembered for the
// life of the process and the question never returns.
void DelayInspect();

// The greatest node number; one more is an overflow that ends the read there.
inline constexpr int MaxFolderNodes = 32767;
