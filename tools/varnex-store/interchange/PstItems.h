#pragma once
// The items of a PST file as libpst reads them (pst_item), turned into
// store items: mail and posts, contacts, appointments, tasks, notes and
// journal entries. A mail keeps its Message-ID and transport headers (from
// its internet headers) as an imported MIME mail does, and its HTML text as
// the first, hidden attachment; entries of the attachment table without
// name and bytes are no attachments. A series keeps its rule (RRULE, and
// EXDATE for deleted occurrences) in "VX Serie" as an iCalendar import
// does; changed occurrences, which libpst does not read, stay at their
// first time (a note says so). What libpst does not read cannot come over:
// the members of distribution lists, the dates and state of tasks,
// categories and the user's own fields.

#include "store/Store.h"

#include <libpst/libpst.h>

#include <QDateTime>
#include <QString>
#include <QStringList>

// Wall-clock local time of a FILETIME (100 ns steps since 1601, UTC);
// invalid for null or zero.
[[nodiscard]] QDateTime DateOfFileTime(const FILETIME *when);

// A string of a PST item: UTF-8, or in the code page of the item.
[[nodiscard]] QString PstText(pst_item *item, const pst_string &text);

// The message class the item becomes in the store: its own when the store
// knows its base, else the class of its libpst type (a meeting request or
// a report becomes a mail). "" for an item that is not taken (a
// distribution list), with the reason in *why.
[[nodiscard]] QString StoreClassOfPst(const pst_item *item, QString *why);

// The default folder type (olFolderContacts ...) that a PST folder of the
// container class becomes; olFolderInbox for mail and anything unknown.
[[nodiscard]] int FolderTypeOfContainerClass(const QString &containerClass);

// A new, unsaved store item of the folder with every field that the PST
// item has a home for, and its attachments. file may be null when the
// attachments carry their data (tests). Strings not yet in UTF-8 are
// converted in the pst_item. What could not come over (an embedded message
// libpst cannot read) goes into *notes. Throws EntryDamage for an item that
// is not taken, StoreError for a value the store refuses.
[[nodiscard]] Item ItemFromPst(pst_item *item, const MAPIFolder &folder, pst_file *file, QStringList *notes);
