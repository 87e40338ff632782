// Folders of a store file, transactions and the mapping of SQLite failures.
#include "store/StoreFile_p.h"
#include "store/StorableText_p.h"
#include "store/SqlErrorText_p.h"

#include "store/StoreError.h"

#include <QDir>
#include <QSqlError>

const FolderRow &StoreFile::folder(qint64 id)
{
    const auto it = m_folders.constFind(id);
    if (it == m_folders.cend())
        ThrowNotFound(QStringLiteral("Der Ordner wurde nicht gefunden. Er wurde gelöscht oder verschoben."));
    return *it;
}

bool StoreFile::hasFolder(qint64 id)
{
    return m_folders.contains(id);
}

QList<qint64> StoreFile::subfolders(qint64 parent)
{
    return m_children.value(parent);
}

void StoreFile::indexFolder(const FolderRow &row)
{
    m_folders.insert(row.id, row);
    QList<qint64> &siblings = m_children[row.parent];
    siblings.insert(std::lower_bound(siblings.begin(), siblings.end(), row.id), row.id);
}

qint64 StoreFile::root()
{
    for (const FolderRow &row : std::as_const(m_folders))
        if (row.parent == 0)
            return row.id;
    throw StoreError(StoreErrCorrupt, QStringLiteral("Der Informationsspeicher \"%1\" hat keinen Stammordner.")
                                          .arg(QDir::toNativeSeparators(m_path)));
}

qint64 StoreFile::defaultFolder(int type)
{
    qint64 found = 0;
    for (const FolderRow &row : std::as_const(m_folders))
        if (type != 0 && row.defaultType == type && (found == 0 || row.id < found))
            found = row.id;
    return found;
}

qint64 StoreFile::addFolder(qint64 parent, const QString &givenName, const QString &containerClass,
                            const QString &messageClass, int defaultType)
{
    const QString name = StorableText(givenName);
    checkOutsideChanges();
    requireFolder(parent);
    if (name.trimmed().isEmpty())
        throw StoreError(StoreErrCallFailed, QStringLiteral("Ein Ordner braucht einen Namen."));
    for (qint64 sibling : subfolders(parent))
        if (m_folders.value(sibling).name.compare(name, Qt::CaseInsensitive) == 0)
            throw StoreError(StoreErrCollision, QStringLiteral("Einen Ordner \"%1\" gibt es hier schon.").arg(name));
    begin();
    QSqlQuery q(db());
    q.prepare(QStringLiteral("INSERT INTO folders(parent, name, container_class, message_class, default_type) "
                             "VALUES(?, ?, ?, ?, ?)"));
    q.addBindValue(parent);
    q.addBindValue(name);
    q.addBindValue(containerClass.isEmpty() ? QVariant() : QVariant(containerClass));
    q.addBindValue(messageClass);
    q.addBindValue(defaultType);
    if (!q.exec()) {
        rollback();
        fail(q, QStringLiteral("Anlegen des Ordners \"%1\"").arg(name));
    }
    const qint64 id = q.lastInsertId().toLongLong();
    commit();
    indexFolder(FolderRow{id, parent, name, containerClass, messageClass, defaultType});
    return id;
}

namespace {
// Statement numbers of this file (StoreItems.cpp and StoreMove.cpp use others).
enum Statement { DataVersion = 200, Begin, SavepointStep, Commit, ReleaseStep, Rollback, RollbackStep };
} // namespace

qint64 StoreFile::dataVersion()
{
    QSqlQuery &q = prepared(DataVersion, "PRAGMA data_version");
    if (!q.exec() || !q.next())
        fail(q, QStringLiteral("Prüfen auf Änderungen"));
    const qint64 version = q.value(0).toLongLong();
    q.finish();
    return version;
}

void StoreFile::checkOutsideChanges()
{
    const qint64 version = dataVersion();
    if (m_dataVersion >= 0 && version != m_dataVersion) {
        ++m_outside;
        loadFolders();
    }
    m_dataVersion = version;
}

// Transaction control through prepared statements: a save costs three
// statements, and preparing them anew each time would be a good part of it.
void StoreFile::begin()
{
    QSqlQuery &q = m_depth == 0 ? prepared(Begin, "BEGIN IMMEDIATE") : prepared(SavepointStep, "SAVEPOINT step");
    if (!q.exec())
        fail(q, QStringLiteral("Beginn einer Änderung"));
    ++m_depth;
}

void StoreFile::commit()
{
    QSqlQuery &q = m_depth == 1 ? prepared(Commit, "COMMIT") : prepared(ReleaseStep, "RELEASE step");
    if (!q.exec()) {
        rollback();
        fail(q, QStringLiteral("Abschluss einer Änderung"));
    }
    --m_depth;
    // Our own commit changes nothing we have not seen.
    if (m_depth == 0)
        m_dataVersion = dataVersion();
}

void StoreFile::rollback()
{
    if (m_depth == 0)
        return;
    if (m_depth == 1) {
        prepared(Rollback, "ROLLBACK").exec();
    } else {
        prepared(RollbackStep, "ROLLBACK TO step").exec();
        prepared(ReleaseStep, "RELEASE step").exec();
    }
    --m_depth;
}

void StoreFile::beginBulk()
{
    begin();
}

void StoreFile::endBulk(bool commitIt)
{
    if (commitIt)
        commit();
    else
        rollback();
}

void StoreFile::cleanup()
{
    for (auto it = m_loaded.begin(); it != m_loaded.end();)
        it = it->expired() ? m_loaded.erase(it) : std::next(it);
    if (m_depth == 0) {
        QSqlQuery q(db());
        q.exec(QStringLiteral("PRAGMA wal_checkpoint(PASSIVE)"));
    }
}

void StoreFile::fail(const QSqlQuery &query, const QString &what) const
{
    const QSqlError error = query.lastError();
    const QString where = QDir::toNativeSeparators(m_path);
    const QString reason = SqlErrorText(error, QStringLiteral("Informationsspeicher %1 (%2)").arg(where, what));
    switch (SqlPrimaryCode(error)) {
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        throw StoreError(StoreErrCorrupt, QStringLiteral("Der Informationsspeicher \"%1\" ist beschädigt (%2). "
                                                         "Er wird nicht verändert.").arg(where, what));
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        throw StoreError(StoreErrBusy, QStringLiteral("Der Informationsspeicher \"%1\" wird von einem anderen Programm "
                                                      "benutzt (%2). Bitte versuchen Sie es gleich noch einmal.")
                                           .arg(where, what));
    case 13: // SQLITE_FULL
        throw StoreError(StoreErrDisk, QStringLiteral("Der Datenträger des Informationsspeichers \"%1\" ist voll (%2).")
                                           .arg(where, what));
    default:
        throw StoreError(StoreErrDisk, QStringLiteral("Fehler im Informationsspeicher \"%1\" (%2): %3")
                                           .arg(where, what, reason));
    }
}

QSqlQuery &StoreFile::prepared(int which, const char *sql)
{
    if (which >= int(m_statements.size()))
        m_statements.resize(size_t(which) + 1);
    std::unique_ptr<QSqlQuery> &slot = m_statements[size_t(which)];
    if (!slot) {
        auto q = std::make_unique<QSqlQuery>(db());
        q->setForwardOnly(true);
        if (!q->prepare(QLatin1String(sql)))
            fail(*q, QStringLiteral("Vorbereiten einer Abfrage"));
        slot = std::move(q);
    }
    return *slot;
}
