#pragma once
// Taking a store out of the current profile again (the store of an account
// that is given up). Apart from Profile.h, which nearly every file includes.

#include <QString>

// Takes a store (by StoreID) out of the current profile; its file stays in
// the profile folder, and its path is returned. The first store of the
// profile cannot be taken out (StoreError).
QString RemoveStore(const QString &storeId);
