#pragma once
// The ID strings of stores, folders and items (internal to the store).
// A StoreID is the hexadecimal form of four zero bytes and the store's
// 16-byte key; an EntryID adds a kind byte (folder or item) and the row
// number as 8 bytes. IDs are unique across profiles and never reused: row
// numbers only grow.

#include <QByteArray>
#include <QString>

enum class IdKind : quint8 { Folder = 1, Item = 2 };

struct ParsedEntryId {
    QByteArray storeKey; // empty when the text is no EntryID of this store
    IdKind kind = IdKind::Item;
    qint64 row = 0;
};

[[nodiscard]] QString StoreIdOf(const QByteArray &storeKey);
[[nodiscard]] QByteArray StoreKeyOfStoreId(const QString &storeId); // empty when malformed
[[nodiscard]] QString EntryIdOf(const QByteArray &storeKey, IdKind kind, qint64 row);
[[nodiscard]] ParsedEntryId ParseEntryId(const QString &entryId);
