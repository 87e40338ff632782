// Deleting and moving item rows, each in one transaction of its store.
#include "store/StoreFile_p.h"

#include "store/StoreError.h"
#include "store/StoreFaults.h"
#include "store/StoreFaults_p.h"
#include "store/StoreIds_p.h"

namespace {

enum Statement { DelItem = 100, DelAttOfItem, CopyRow, RepointAtt, InsCopy, InsAttCopy };

void run(StoreFile &file, QSqlQuery &q, const QString &what)
{
    if (!q.exec())
        file.fail(q, what);
}

[[noreturn]] void throwGone()
{
    ThrowNotFound(QStringLiteral("Das Element wurde nicht gefunden. Es wurde gelöscht oder verschoben."));
}

} // namespace

void StoreFile::deleteItem(ItemData &item)
{
    if (item.gone || item.id == 0)
        throwGone();
    begin();
    try {
        QSqlQuery &a = prepared(DelAttOfItem, "DELETE FROM attachments WHERE item = ?");
        a.bindValue(0, item.id);
        run(*this, a, QStringLiteral("Löschen der Anlagen"));
        QSqlQuery &q = prepared(DelItem, "DELETE FROM items WHERE id = ?");
        q.bindValue(0, item.id);
        run(*this, q, QStringLiteral("Löschen eines Elements"));
        if (q.numRowsAffected() == 0)
            throwGone();
        CheckItemFault(StoreFaults::FailDelete, EntryIdOf(m_key, IdKind::Item, item.id));
        commit();
    } catch (...) {
        rollback();
        throw;
    }
    m_loaded.remove(item.id);
    touchFolder(item.folderId);
    item.gone = true;
}

void StoreFile::moveItemHere(ItemData &item, qint64 folderId, int faultKind)
{
    if (item.gone || item.id == 0)
        throwGone();
    requireFolder(folderId);
    const qint64 oldId = item.id;
    qint64 newId = 0;
    begin();
    try {
        // A new row with the stored content: the moved item gets a new ID.
        QSqlQuery &c = prepared(CopyRow, "INSERT INTO items(folder, class, message_class, created, modified, props) "
                                         "SELECT ?, class, message_class, created, modified, props FROM items WHERE id = ?");
        c.bindValue(0, folderId);
        c.bindValue(1, oldId);
        run(*this, c, QStringLiteral("Verschieben eines Elements"));
        if (c.numRowsAffected() == 0)
            throwGone();
        newId = c.lastInsertId().toLongLong();
        QSqlQuery &a = prepared(RepointAtt, "UPDATE attachments SET item = ? WHERE item = ?");
        a.bindValue(0, newId);
        a.bindValue(1, oldId);
        run(*this, a, QStringLiteral("Verschieben der Anlagen"));
        QSqlQuery &d = prepared(DelItem, "DELETE FROM items WHERE id = ?");
        d.bindValue(0, oldId);
        run(*this, d, QStringLiteral("Verschieben eines Elements"));
        CheckItemFault(faultKind, EntryIdOf(m_key, IdKind::Item, oldId));
        commit();
    } catch (...) {
        rollback();
        throw;
    }
    touchFolder(item.folderId);
    touchFolder(folderId);
    m_loaded.remove(oldId);
    item.id = newId;
    item.folderId = folderId;
    m_loaded.insert(newId, item.weak_from_this());
}

qint64 StoreFile::insertCopy(ItemData &item, qint64 folderId, const QString &faultEntryId)
{
    requireFolder(folderId);
    item.ensureDecoded();
    item.ensureAttachments();
    const QByteArray blob = EncodeItem(item, *this);
    qint64 newId = 0;
    begin();
    try {
        QSqlQuery &q = prepared(InsCopy, "INSERT INTO items(folder, class, message_class, created, modified, props) "
                                         "VALUES(?, ?, ?, ?, ?, ?)");
        q.bindValue(0, folderId);
        q.bindValue(1, item.itemClass);
        q.bindValue(2, item.messageClass);
        q.bindValue(3, item.created);
        q.bindValue(4, item.modified);
        q.bindValue(5, blob);
        run(*this, q, QStringLiteral("Verschieben eines Elements"));
        newId = q.lastInsertId().toLongLong();
        int position = 0;
        for (const AttachmentRecord &rec : std::as_const(item.attachments)) {
            QSqlQuery &a = prepared(InsAttCopy, "INSERT INTO attachments(item, position, type, file_name, display_name, "
                                                "path, hidden, size, data) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)");
            a.bindValue(0, newId);
            a.bindValue(1, ++position);
            a.bindValue(2, rec.type);
            a.bindValue(3, rec.fileName);
            a.bindValue(4, rec.displayName);
            a.bindValue(5, rec.path.isEmpty() ? QVariant() : QVariant(rec.path));
            a.bindValue(6, rec.hidden ? 1 : 0);
            a.bindValue(7, rec.size);
            a.bindValue(8, rec.data);
            run(*this, a, QStringLiteral("Verschieben der Anlagen"));
        }
        CheckItemFault(StoreFaults::FailMove, faultEntryId);
        commit();
    } catch (...) {
        rollback();
        throw;
    }
    touchFolder(folderId);
    return newId;
}

bool StoreFile::eraseItemRow(qint64 id)
{
    begin();
    QSqlQuery a(db());
    a.prepare(QStringLiteral("DELETE FROM attachments WHERE item = ?"));
    a.addBindValue(id);
    QSqlQuery q(db());
    q.prepare(QStringLiteral("DELETE FROM items WHERE id = ?"));
    q.addBindValue(id);
    if (!a.exec() || !q.exec()) {
        rollback();
        fail(q, QStringLiteral("Entfernen eines Elements"));
    }
    const bool erased = q.numRowsAffected() > 0;
    commit();
    // Like a change of another program: every folder is taken anew.
    ++m_outside;
    m_loaded.remove(id);
    return erased;
}
