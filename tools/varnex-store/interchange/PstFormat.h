#pragma once
// Read-only import of PST files (Outlook's personal folders) through
// libpst: the folder tree is recreated below the target folder, each folder
// of the kind of its container class, and the items go into them (see
// PstItems.h for what comes over). The file is opened for reading only and
// never written. A file libpst cannot open is skipped; an item it cannot
// read is skipped with its folder and number; the rest goes on. Items that
// Outlook hides (associated contents of a folder, IPM.Configuration.* and
// IPM.Microsoft.* messages, rules) are passed over, counted in one note.

#include "ItemFields.h"

void ImportPst(const QString &path, const MAPIFolder &target, InterchangeReport &report);
