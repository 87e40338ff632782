#include "store/StoreIds_p.h"

namespace {
const QByteArray s_prefix(4, '\0');
constexpr int s_keySize = 16;
} // namespace

QString StoreIdOf(const QByteArray &storeKey)
{
    return QString::fromLatin1((s_prefix + storeKey).toHex().toUpper());
}

QByteArray StoreKeyOfStoreId(const QString &storeId)
{
    const QByteArray bytes = QByteArray::fromHex(storeId.toLatin1());
    if (bytes.size() != 4 + s_keySize || !bytes.startsWith(s_prefix) || storeId.size() != 2 * bytes.size())
        return {};
    return bytes.mid(4);
}

QString EntryIdOf(const QByteArray &storeKey, IdKind kind, qint64 row)
{
    QByteArray bytes = s_prefix + storeKey;
    bytes.append(char(kind));
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes.append(char((quint64(row) >> shift) & 0xFF));
    return QString::fromLatin1(bytes.toHex().toUpper());
}

ParsedEntryId ParseEntryId(const QString &entryId)
{
    ParsedEntryId parsed;
    const QByteArray bytes = QByteArray::fromHex(entryId.trimmed().toLatin1());
    if (bytes.size() != 4 + s_keySize + 1 + 8 || !bytes.startsWith(s_prefix)
        || entryId.trimmed().size() != 2 * bytes.size())
        return parsed;
    const quint8 kind = quint8(bytes.at(4 + s_keySize));
    if (kind != quint8(IdKind::Folder) && kind != quint8(IdKind::Item))
        return parsed;
    quint64 row = 0;
    for (int i = 0; i < 8; ++i)
        row = (row << 8) | quint8(bytes.at(4 + s_keySize + 1 + i));
    parsed.storeKey = bytes.mid(4, s_keySize);
    parsed.kind = IdKind(kind);
    parsed.row = qint64(row);
    return parsed;
}
