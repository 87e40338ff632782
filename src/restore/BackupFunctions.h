#pragma once
// The backup convention of the contact runs: just before a run changes a
// field of a contact, the field's old value goes to the user property
// "VX Backup " + field name (text) on the same contact. One generation: a
// later change of the field overwrites it; the restore puts the value back
// and removes the property.

#include <QString>

class Item;

// "VX Backup " followed by the field name, with exactly one blank.
[[nodiscard]] QString BackupPropertyName(const QString &field);

// Writes oldValue to the backup property of field, adding the property as
// text when the contact has none yet. The item is not saved here: the run
// saves it once after all its fields. When the property cannot be had,
// GetUserProperty has shown error 206 and this throws StoreError (no object),
// so the run's handler ends the run before the field itself is changed.
void WriteBackup(Item &item, const QString &field, const QString &oldValue);
