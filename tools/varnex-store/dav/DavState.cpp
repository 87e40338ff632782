#include "DavState.h"

#include "store/StoreError.h"

#include <QDir>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <optional>

namespace {

const char *const s_schema[] = {
    "CREATE TABLE IF NOT EXISTS account(name TEXT PRIMARY KEY, url TEXT NOT NULL, user TEXT NOT NULL,"
    " allow_http INTEGER NOT NULL, store_id TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS collection(id INTEGER PRIMARY KEY AUTOINCREMENT, account TEXT NOT NULL,"
    " href TEXT NOT NULL, address_book INTEGER NOT NULL, name TEXT NOT NULL, folders TEXT NOT NULL,"
    " sync_collection INTEGER NOT NULL, sync_token TEXT NOT NULL DEFAULT '')",
    "CREATE TABLE IF NOT EXISTS resource(collection INTEGER NOT NULL, href TEXT NOT NULL, etag BLOB NOT NULL,"
    " uid TEXT NOT NULL, items TEXT NOT NULL, raw BLOB NOT NULL, stamp INTEGER NOT NULL, hash BLOB NOT NULL,"
    " PRIMARY KEY(collection, href))",
};

int s_connections = 0;

} // namespace

DavState::DavState(const QString &profileFolder)
    : m_connection(QStringLiteral("varnex-dav-%1").arg(++s_connections)),
      m_path(QDir(profileFolder).filePath(QStringLiteral("Konten.vxdav")))
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    m_db.setDatabaseName(m_path);
    if (!m_db.open())
        throw StoreError(StoreErrDisk, QStringLiteral("Die Kontendatei %1 kann nicht geöffnet werden: %2")
                                           .arg(QDir::toNativeSeparators(m_path), m_db.lastError().text()));
    exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
    exec(QStringLiteral("PRAGMA busy_timeout=10000"));
    for (const char *sql : s_schema)
        exec(QLatin1String(sql));
}

DavState::~DavState()
{
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connection);
}

void DavState::exec(const QString &sql, const QVariantList &values)
{
    QSqlQuery q(m_db);
    if (!q.prepare(sql))
        throw StoreError(StoreErrDisk, QStringLiteral("Kontendatei %1: %2").arg(QDir::toNativeSeparators(m_path), q.lastError().text()));
    for (const QVariant &v : values)
        q.addBindValue(v);
    if (!q.exec())
        throw StoreError(StoreErrDisk, QStringLiteral("Kontendatei %1: %2").arg(QDir::toNativeSeparators(m_path), q.lastError().text()));
}

void DavState::begin()
{
    exec(QStringLiteral("BEGIN IMMEDIATE"));
    m_inTransaction = true;
}

void DavState::commit()
{
    exec(QStringLiteral("COMMIT"));
    m_inTransaction = false;
}

QList<DavAccount> DavState::accounts()
{
    QSqlQuery q(m_db);
    q.exec(QStringLiteral("SELECT name, url, user, allow_http, store_id FROM account ORDER BY name"));
    QList<DavAccount> list;
    while (q.next())
        list.append({q.value(0).toString(), q.value(1).toString(), q.value(2).toString(), q.value(3).toBool(),
                     q.value(4).toString()});
    return list;
}

std::optional<DavAccount> DavState::account(const QString &name)
{
    for (const DavAccount &a : accounts())
        if (a.name.compare(name, Qt::CaseInsensitive) == 0)
            return a;
    return std::nullopt;
}

void DavState::addAccount(const DavAccount &a)
{
    exec(QStringLiteral("INSERT INTO account(name, url, user, allow_http, store_id) VALUES(?, ?, ?, ?, ?)"),
         {a.name, a.url, a.user, a.allowHttp, a.storeId});
}

void DavState::removeAccount(const QString &name)
{
    begin();
    exec(QStringLiteral("DELETE FROM resource WHERE collection IN (SELECT id FROM collection WHERE account = ?)"), {name});
    exec(QStringLiteral("DELETE FROM collection WHERE account = ?"), {name});
    exec(QStringLiteral("DELETE FROM account WHERE name = ?"), {name});
    commit();
}

QList<DavCollectionState> DavState::collections(const QString &account)
{
    QSqlQuery q(m_db);
    q.prepare(QStringLiteral("SELECT id, href, address_book, name, folders, sync_collection, sync_token FROM collection "
                             "WHERE account = ? ORDER BY id"));
    q.addBindValue(account);
    q.exec();
    QList<DavCollectionState> list;
    while (q.next())
        list.append({q.value(0).toLongLong(), account, q.value(1).toString(), q.value(2).toBool(), q.value(3).toString(),
                     q.value(4).toString().split(u' '), q.value(5).toBool(), q.value(6).toString()});
    return list;
}

qint64 DavState::addCollection(const DavCollectionState &c)
{
    exec(QStringLiteral("INSERT INTO collection(account, href, address_book, name, folders, sync_collection) "
                        "VALUES(?, ?, ?, ?, ?, ?)"),
         {c.account, c.href, c.addressBook, c.name, c.folders.join(u' '), c.syncCollection});
    QSqlQuery q(m_db);
    q.exec(QStringLiteral("SELECT max(id) FROM collection"));
    return q.next() ? q.value(0).toLongLong() : 0;
}

void DavState::setSyncToken(qint64 collection, const QString &token)
{
    exec(QStringLiteral("UPDATE collection SET sync_token = ? WHERE id = ?"), {token, collection});
}

QHash<QString, DavResourceState> DavState::resources(qint64 collection)
{
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    q.prepare(QStringLiteral("SELECT href, etag, uid, items, raw, stamp, hash FROM resource WHERE collection = ?"));
    q.addBindValue(collection);
    q.exec();
    QHash<QString, DavResourceState> map;
    while (q.next()) {
        DavResourceState r{q.value(0).toString(), q.value(1).toByteArray(), q.value(2).toString(),
                           q.value(3).toString().split(u' ', Qt::SkipEmptyParts), q.value(4).toByteArray(),
                           q.value(5).toLongLong(), q.value(6).toByteArray()};
        map.insert(r.href, r);
    }
    return map;
}

void DavState::putResource(qint64 collection, const DavResourceState &r)
{
    exec(QStringLiteral("INSERT OR REPLACE INTO resource(collection, href, etag, uid, items, raw, stamp, hash) "
                        "VALUES(?, ?, ?, ?, ?, ?, ?, ?)"),
         {collection, r.href, r.etag, r.uid, r.items.join(u' '), r.raw, r.stamp, r.hash});
}

void DavState::removeResource(qint64 collection, const QString &href)
{
    exec(QStringLiteral("DELETE FROM resource WHERE collection = ? AND href = ?"), {collection, href});
}
