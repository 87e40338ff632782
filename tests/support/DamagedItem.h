#pragma once
// Damages the stored data of a saved item in its store file, as a bad disk,
// a copy cut short or another tool writing the file would: the bytes are
// changed behind the program's back, through a connection of their own, and
// the session is ended so that the next access reads the file anew.

#include <QByteArray>
#include <QList>
#include <QString>

#include <utility>

enum class ItemDamage {
    HugeCount,      // a property count far beyond what the bytes hold
    LengthOverflow, // a text length whose byte count overflows
    Truncated,      // the data cut off in the middle
    DateOutOfRange, // a date at the smallest 64-bit value
};

// The damages with their row names, for _data() tables.
[[nodiscard]] const QList<std::pair<const char *, ItemDamage>> &ItemDamages();

// Overwrites the item's stored data and returns the bytes now in the file.
QByteArray DamageItemData(const QString &entryId, ItemDamage how);
// The item's stored data as it lies in the file.
[[nodiscard]] QByteArray StoredItemData(const QString &entryId);
