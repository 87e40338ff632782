#pragma once
// Server resources and store items: a vCard (one contact) or an iCalendar
// object (a series with its changed occurrences: several items of one UID)
// read into items with the mapping of the import, and items written back
// with the mapping of the export. What the server's text held that the
// store has no field for is taken from the text as last seen and written
// back unchanged beside the changed fields.

#include "interchange/IcalFormat.h"
#include "interchange/ItemFields.h"

#include <QByteArray>
#include <QList>

// The folders of one collection: contacts for an address book, the three
// kinds of a calendar (a null folder for a kind the calendar lacks).
struct DavFolders {
    MAPIFolder contacts;
    CalendarTargets calendar;
};

// New, unsaved items of the resource's text in their folders; the UID of
// the resource in *uid. Throws EntryDamage for text that holds no item.
[[nodiscard]] QList<Item> ItemsOfServerText(bool addressBook, const QByteArray &text, const DavFolders &folders,
                                            QString *uid);
// The text for the server: the items by the export's mapping; what the
// last server text (raw, may be empty) held that the store has no field for
// is kept. The vCard keeps the version of raw (3.0 when none).
[[nodiscard]] QByteArray ServerTextOfItems(bool addressBook, const QList<Item> &items, const QByteArray &raw,
                                           const DavFolders &folders);
// A hash of what the items hold as the export writes them (without the
// stamps REV and DTSTAMP): equal hashes, equal content.
[[nodiscard]] QByteArray ContentHash(bool addressBook, const QList<Item> &items);
// The change stamp of the items: their modification times summed up in
// milliseconds; a save changes it.
[[nodiscard]] qint64 ChangeStamp(const QList<Item> &items);
// Gives the target (a saved item) the content of the source (an unsaved item
// of the same class): every writable field, composite fields as written,
// the user properties. The target keeps its EntryID and CreationTime.
void TakeContent(Item &target, const Item &source);
