// Item rows of a store file: loading in batches, the identity map, saving,
// deleting and moving, each change in one transaction.
#include "store/StoreFile_p.h"

#include "store/StoreError.h"
#include "store/StoreFaults.h"
#include "store/StoreFaults_p.h"
#include "store/StoreIds_p.h"
#include "store/StoreTime_p.h"

#include <QSqlError>

namespace {

enum Statement {
    SelIds, CountItems, SelRange, SelOne, InsItem, UpdItem, DelItem, CopyItem, RepointAtt, SelAtt, SelAttData,
    InsAtt, UpdAtt, DelAtt, DelAttOfItem,
};

constexpr char s_columns[] = "SELECT id, folder, class, message_class, created, modified, props FROM items ";
void run(StoreFile &file, QSqlQuery &q, const QString &what)
{
    if (!q.exec())
        file.fail(q, what);
}

} // namespace

QVector<qint64> StoreFile::itemIds(qint64 folderId)
{
    QSqlQuery &q = prepared(SelIds, "SELECT id FROM items WHERE folder = ? ORDER BY id");
    q.bindValue(0, folderId);
    run(*this, q, QStringLiteral("Lesen der Elemente"));
    QVector<qint64> ids;
    while (q.next())
        ids << q.value(0).toLongLong();
    q.finish();
    return ids;
}

int StoreFile::itemCount(qint64 folderId)
{
    QSqlQuery &q = prepared(CountItems, "SELECT count(*) FROM items WHERE folder = ?");
    q.bindValue(0, folderId);
    run(*this, q, QStringLiteral("Zählen der Elemente"));
    const int n = q.next() ? q.value(0).toInt() : 0;
    q.finish();
    return n;
}

std::shared_ptr<ItemData> StoreFile::fromRow(const QSqlQuery &q)
{
    const qint64 id = q.value(0).toLongLong();
    std::weak_ptr<ItemData> &known = m_loaded[id];
    std::shared_ptr<ItemData> item = known.lock();
    if (item && (item->dirty || item->loadStamp == m_outside))
        return item; // what this process holds is current
    if (!item) {
        item = std::make_shared<ItemData>();
        known = item;
    }
    fillFromRow(*item, q);
    return item;
}

void StoreFile::fillFromRow(ItemData &item, const QSqlQuery &q)
{
    item.store = shared_from_this();
    item.id = q.value(0).toLongLong();
    item.folderId = q.value(1).toLongLong();
    item.itemClass = q.value(2).toInt();
    item.messageClass = q.value(3).toString();
    item.created = q.value(4).toLongLong();
    item.modified = q.value(5).toLongLong();
    item.blob = q.value(6).toByteArray();
    item.decoded = false;
    item.attachmentsLoaded = false;
    item.attachments.clear();
    item.removedAttachments.clear();
    item.loadStamp = m_outside;
    item.gone = false;
}

std::shared_ptr<ItemData> StoreFile::loadDetached(qint64 id)
{
    static const QByteArray sql = QByteArray(s_columns) + "WHERE id = ?";
    QSqlQuery &q = prepared(SelOne, sql.constData());
    q.bindValue(0, id);
    run(*this, q, QStringLiteral("Lesen eines Elements"));
    std::shared_ptr<ItemData> item;
    if (q.next()) {
        item = std::make_shared<ItemData>();
        fillFromRow(*item, q);
    }
    q.finish();
    return item;
}

QList<std::shared_ptr<ItemData>> StoreFile::loadItems(qint64 folderId, qint64 fromId, qint64 toId)
{
    static const QByteArray sql = QByteArray(s_columns) + "WHERE folder = ? AND id BETWEEN ? AND ? ORDER BY id";
    QSqlQuery &q = prepared(SelRange, sql.constData());
    q.bindValue(0, folderId);
    q.bindValue(1, fromId);
    q.bindValue(2, toId);
    run(*this, q, QStringLiteral("Lesen der Elemente"));
    QList<std::shared_ptr<ItemData>> items;
    while (q.next())
        items << fromRow(q);
    q.finish();
    return items;
}

std::shared_ptr<ItemData> StoreFile::loadItem(qint64 id)
{
    static const QByteArray sql = QByteArray(s_columns) + "WHERE id = ?";
    QSqlQuery &q = prepared(SelOne, sql.constData());
    q.bindValue(0, id);
    run(*this, q, QStringLiteral("Lesen eines Elements"));
    std::shared_ptr<ItemData> item = q.next() ? fromRow(q) : nullptr;
    q.finish();
    return item;
}

std::shared_ptr<ItemData> StoreFile::newItem(qint64 folderId, int itemClass, const QString &messageClass)
{
    auto item = std::make_shared<ItemData>();
    item->store = shared_from_this();
    item->folderId = folderId;
    item->itemClass = itemClass;
    item->messageClass = messageClass;
    item->attachmentsLoaded = true;
    item->dirty = true;
    item->loadStamp = m_outside;
    return item;
}

void StoreFile::saveItem(ItemData &item)
{
    if (item.gone)
        ThrowNotFound(QStringLiteral("Das Element wurde gelöscht oder verschoben und kann nicht gespeichert werden."));
    item.ensureDecoded();
    const QByteArray blob = EncodeItem(item, *this);
    const qint64 now = EncodeStoreTime(QDateTime::currentDateTime());
    const bool isNew = item.id == 0;
    const qint64 created = isNew && item.created == 0 ? now : item.created;
    qint64 id = item.id;
    QList<AttachmentRecord> attachmentsBefore = item.attachments;
    begin();
    try {
        if (isNew) {
            QSqlQuery &q = prepared(InsItem, "INSERT INTO items(folder, class, message_class, created, modified, props) "
                                             "VALUES(?, ?, ?, ?, ?, ?)");
            q.bindValue(0, item.folderId);
            q.bindValue(1, item.itemClass);
            q.bindValue(2, item.messageClass);
            q.bindValue(3, created);
            q.bindValue(4, now);
            q.bindValue(5, blob);
            run(*this, q, QStringLiteral("Speichern eines neuen Elements"));
            id = q.lastInsertId().toLongLong();
            item.id = id; // the attachments need it
        } else {
            QSqlQuery &q = prepared(UpdItem, "UPDATE items SET message_class = ?, modified = ?, props = ? WHERE id = ?");
            q.bindValue(0, item.messageClass);
            q.bindValue(1, now);
            q.bindValue(2, blob);
            q.bindValue(3, id);
            run(*this, q, QStringLiteral("Speichern eines Elements"));
            if (q.numRowsAffected() == 0)
                ThrowNotFound(QStringLiteral("Das Element wurde gelöscht oder verschoben und kann nicht gespeichert werden."));
        }
        saveAttachments(item);
        CheckItemFault(StoreFaults::FailSave, EntryIdOf(m_key, IdKind::Item, id));
        commit();
    } catch (...) {
        rollback();
        if (isNew)
            item.id = 0;
        item.attachments = attachmentsBefore;
        throw;
    }
    item.created = created;
    item.modified = now;
    item.removedAttachments.clear();
    for (AttachmentRecord &a : item.attachments)
        a.changed = false;
    item.dirty = false;
    if (isNew) {
        touchFolder(item.folderId);
        m_loaded.insert(id, item.weak_from_this());
    }
}

void StoreFile::saveAttachments(ItemData &item)
{
    for (qint64 removed : std::as_const(item.removedAttachments)) {
        QSqlQuery &q = prepared(DelAtt, "DELETE FROM attachments WHERE id = ?");
        q.bindValue(0, removed);
        run(*this, q, QStringLiteral("Löschen einer Anlage"));
    }
    for (int position = 0; position < item.attachments.size(); ++position) {
        AttachmentRecord &a = item.attachments[position];
        if (a.id != 0) {
            QSqlQuery &q = prepared(UpdAtt, "UPDATE attachments SET position = ?, hidden = ? WHERE id = ?");
            q.bindValue(0, position + 1);
            q.bindValue(1, a.hidden ? 1 : 0);
            q.bindValue(2, a.id);
            run(*this, q, QStringLiteral("Speichern einer Anlage"));
            continue;
        }
        QSqlQuery &q = prepared(InsAtt, "INSERT INTO attachments(item, position, type, file_name, display_name, path, "
                                        "hidden, size, data) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)");
        q.bindValue(0, item.id);
        q.bindValue(1, position + 1);
        q.bindValue(2, a.type);
        q.bindValue(3, a.fileName);
        q.bindValue(4, a.displayName);
        q.bindValue(5, a.path.isEmpty() ? QVariant() : QVariant(a.path));
        q.bindValue(6, a.hidden ? 1 : 0);
        q.bindValue(7, a.size);
        q.bindValue(8, a.data);
        run(*this, q, QStringLiteral("Speichern einer Anlage"));
        a.id = q.lastInsertId().toLongLong();
    }
}

QList<AttachmentRecord> StoreFile::loadAttachments(qint64 itemId)
{
    QSqlQuery &q = prepared(SelAtt, "SELECT id, type, file_name, display_name, path, hidden, size FROM attachments "
                                    "WHERE item = ? ORDER BY position, id");
    q.bindValue(0, itemId);
    run(*this, q, QStringLiteral("Lesen der Anlagen"));
    QList<AttachmentRecord> list;
    while (q.next()) {
        AttachmentRecord a;
        a.id = q.value(0).toLongLong();
        a.type = q.value(1).toInt();
        a.fileName = q.value(2).toString();
        a.displayName = q.value(3).toString();
        a.path = q.value(4).toString();
        a.hidden = q.value(5).toInt() != 0;
        a.size = q.value(6).toLongLong();
        a.dataLoaded = false;
        list << a;
    }
    q.finish();
    return list;
}

QByteArray StoreFile::attachmentData(qint64 attachmentId)
{
    QSqlQuery &q = prepared(SelAttData, "SELECT data FROM attachments WHERE id = ?");
    q.bindValue(0, attachmentId);
    run(*this, q, QStringLiteral("Lesen einer Anlage"));
    if (!q.next()) {
        q.finish();
        ThrowNotFound(QStringLiteral("Die Anlage wurde nicht gefunden."));
    }
    const QByteArray data = q.value(0).toByteArray();
    q.finish();
    return data;
}
