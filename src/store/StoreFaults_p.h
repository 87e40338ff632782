#pragma once
// The store's side of the test faults (internal to the store).

#include <QString>

class MAPIFolder;

namespace StoreFaults {
// Lets the store file of the folder grow by that many pages at most, as a
// disk that is nearly full would: a write beyond fails with SQLite's own
// full-disk error. Holds until the session ends (Reset does not lift it).
void LimitStoreSize(const MAPIFolder &folder, int morePages);
} // namespace StoreFaults

// Throws StoreError when a fault of the kind (StoreFaults::Kind) is set for
// the item. Cheap when no fault is set at all.
void CheckItemFault(int kind, const QString &entryId);
// Waits as long as SetStoreDelay asked for the store.
void ApplyStoreDelay(const QString &storeId);
// Whether any item fault is set (the read path asks this first).
[[nodiscard]] bool ItemFaultsActive();
