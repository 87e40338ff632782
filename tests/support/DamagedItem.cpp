#include "support/DamagedItem.h"

#include "store/Profile.h"
#include "store/StoreIds_p.h"

#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <limits>

namespace {

void putVarint(QByteArray &out, quint64 v)
{
    for (; v >= 0x80; v >>= 7)
        out.append(char((v & 0x7F) | 0x80));
    out.append(char(v));
}

// Runs work on the connection to the store file that holds the item.
template<typename Work> void withItemRow(const QString &entryId, Work work)
{
    const ParsedEntryId parsed = ParseEntryId(entryId);
    QVERIFY2(!parsed.storeKey.isEmpty(), qPrintable(entryId));
    const QString connection = QStringLiteral("damage");
    bool found = false;
    {
        for (const QFileInfo &file : QDir(ProfileFolder()).entryInfoList({QStringLiteral("*.vxstore")}, QDir::Files)) {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            db.setDatabaseName(file.filePath());
            QVERIFY(db.open());
            QSqlQuery q(db);
            QVERIFY(q.exec(QStringLiteral("SELECT value FROM meta WHERE key = 'key'")) && q.next());
            if (QByteArray::fromHex(q.value(0).toByteArray()) == parsed.storeKey) {
                work(db, parsed.row);
                found = true;
            }
            q.finish();
            db.close();
            if (found)
                break;
        }
    }
    QSqlDatabase::removeDatabase(connection);
    QVERIFY2(found, qPrintable(entryId));
}

QByteArray damaged(const QByteArray &intact, ItemDamage how)
{
    QByteArray out(1, char(1)); // the version byte
    switch (how) {
    case ItemDamage::HugeCount:
        putVarint(out, quint64(1) << 40);
        out.append(intact.mid(2));
        break;
    case ItemDamage::LengthOverflow:
        putVarint(out, 1);
        putVarint(out, 1);
        out.append(char(1)); // text
        putVarint(out, (quint64(1) << 63) + 4);
        out.append(QByteArray(16, 'x'));
        out.append(char(0));
        break;
    case ItemDamage::Truncated:
        out = intact.left(intact.size() / 2);
        break;
    case ItemDamage::DateOutOfRange: {
        putVarint(out, 1);
        putVarint(out, 1);
        out.append(char(2)); // date
        const qint64 smallest = std::numeric_limits<qint64>::min();
        out.append(reinterpret_cast<const char *>(&smallest), sizeof smallest);
        out.append(char(0));
        break;
    }
    }
    return out;
}

} // namespace

const QList<std::pair<const char *, ItemDamage>> &ItemDamages()
{
    static const QList<std::pair<const char *, ItemDamage>> damages = {
        {"riesige Anzahl", ItemDamage::HugeCount},
        {"Länge über das Ende", ItemDamage::LengthOverflow},
        {"abgeschnitten", ItemDamage::Truncated},
        {"Datum außerhalb", ItemDamage::DateOutOfRange},
    };
    return damages;
}

QByteArray StoredItemData(const QString &entryId)
{
    QByteArray bytes;
    withItemRow(entryId, [&](QSqlDatabase &db, qint64 row) {
        QSqlQuery q(db);
        q.prepare(QStringLiteral("SELECT props FROM items WHERE id = ?"));
        q.addBindValue(row);
        QVERIFY(q.exec() && q.next());
        bytes = q.value(0).toByteArray();
    });
    return bytes;
}

QByteArray DamageItemData(const QString &entryId, ItemDamage how)
{
    const QByteArray bytes = damaged(StoredItemData(entryId), how);
    withItemRow(entryId, [&](QSqlDatabase &db, qint64 row) {
        QSqlQuery q(db);
        q.prepare(QStringLiteral("UPDATE items SET props = ? WHERE id = ?"));
        q.addBindValue(bytes);
        q.addBindValue(row);
        QVERIFY(q.exec() && q.numRowsAffected() == 1);
    });
    SetProfileFolder(ProfileFolder());
    return bytes;
}
