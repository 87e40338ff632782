#pragma once
// Test support: makes the store fail for real, through the same code paths
// as a true failure, so that the tolerant modes of the runs can be tested.
// A fault on an item makes the chosen operation throw StoreError after the
// store has done everything up to the point of no return (a failing Save
// rolls its transaction back, as a full disk would). Faults are process-wide
// and stay until cleared.

#include <QString>

namespace StoreFaults {

enum Kind {
    FailRead = 1,   // every property read of the item (EntryID and StoreID excepted)
    FailSave = 2,
    FailDelete = 4,
    FailMove = 8,
};

// Makes the item (by EntryID) fail on the operations of kinds (a mask of
// Kind). times: how many failures before the item behaves again; -1 for
// every time. after: how many of those operations succeed before the first
// failure (to fail a run in the middle of an item).
void FailItem(const QString &entryId, int kinds, int times = -1, int after = 0);
// Removes the item from its store behind the program's back, as another
// program would: handles onto it fail at Save, Delete and Move, and
// GetItemFromID no longer finds it.
void Vanish(const QString &entryId);
// Makes every folder access of the store (by StoreID) wait that long: each
// GetFolderFromID, each subfolder enumeration and each table read.
void SetStoreDelay(const QString &storeId, int milliseconds);
// Clears all faults and delays.
void Reset();

} // namespace StoreFaults
