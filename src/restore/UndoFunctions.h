#pragma once
// Restore of the contact backups: the old value of every field that the
// telephone or the name run changed lies on the contact in its backup
// property (BackupFunctions.h). The restore puts it back into the field and
// removes the property, so that a second restore finds nothing.

#include <QList>
#include <QString>
#include <QStringList>

class Item;
class MAPIFolder;

// The fields of a restore kind in the order of restore: "Telephone" (19)
// or "Names" (9); empty for any other kind.
[[nodiscard]] const QStringList &BackupFields(const QString &kind);

// Puts the backup of field back into the field and deletes the backup
// property. False, and nothing changes, when the contact has no backup of
// that field. The contact is not saved here. Throws StoreError.
bool RestoreField(Item &item, const QString &field);

// The restore over the given folders: every contact with at least one
// restored field is saved once; other items are counted in the progress but
// left alone. Shows the closing message of the kind; a store failure ends
// it with error 401 (contacts saved before stay restored). itemCount is the
// total of the folders' items, the progress bar's maximum. Returns the
// number of contacts restored, or -1 after a failure or for an unknown kind.
int RestoreContactBackupsIn(const QList<MAPIFolder> &folders, int itemCount, const QString &kind);

// The command: collects the ticked contact folders and restores the kind
// ("Names" or "Telephone"); any other kind ends at once.
void RestoreContactBackups(const QString &kind);
