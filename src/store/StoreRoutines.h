#pragma once
// The shared routines of the program around the mail store.

#include "store/UserProperties.h"

class Item;

// The user property of that name on the item; when the item has none it is
// added first, as text (the item is not saved here). A failure goes to
// ShowError with number 206 and the null property is returned.
UserProperty GetUserProperty(const Item &item, const QString &name);

// Asks the store for its version; for major version "10" calls
// MAPIUtils::Cleanup. Errors are logged with number 1 and the info "Clear",
// never shown.
void Clear();
