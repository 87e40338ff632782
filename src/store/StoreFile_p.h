#pragma once
// One store file: a SQLite database of folders, items and attachments
// (internal to the store). Owns the connection and its prepared statements,
// the dictionary of property names, a cache of the folder table and the
// identity map of loaded items.

#include "store/ItemData_p.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <vector>

struct FolderRow {
    qint64 id = 0;
    qint64 parent = 0; // 0 for the root
    QString name;
    QString containerClass;
    QString messageClass;
    int defaultType = 0;
};

struct DefaultFolderDef {
    const char *name;
    const char *containerClass;
    const char *messageClass;
    int type;
};
// The default folders of a new store, in the order they are created.
const QList<DefaultFolderDef> &DefaultFolderDefs();

class StoreFile : public std::enable_shared_from_this<StoreFile>
{
public:
    // Opens an existing store. A missing, damaged or foreign file throws
    // StoreError and is left exactly as it was.
    static std::shared_ptr<StoreFile> open(const QString &path);
    // Creates a new store file (never over an existing file) with a root of
    // the display name and, if asked, the default folders. Returns its key.
    static QByteArray create(const QString &path, const QString &displayName, bool defaultFolders);
    ~StoreFile();
    StoreFile(const StoreFile &) = delete;
    StoreFile &operator=(const StoreFile &) = delete;

    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QByteArray key() const { return m_key; }
    [[nodiscard]] QString storeId() const { return m_storeId; }
    [[nodiscard]] QString displayName() const { return m_displayName; }

    // Folders
    [[nodiscard]] const FolderRow &folder(qint64 id);         // throws when gone
    [[nodiscard]] bool hasFolder(qint64 id);
    void requireFolder(qint64 id) { (void)folder(id); } // throws when gone
    [[nodiscard]] QList<qint64> subfolders(qint64 parent);    // in id order
    [[nodiscard]] qint64 root();
    [[nodiscard]] qint64 defaultFolder(int type);             // 0 when there is none
    qint64 addFolder(qint64 parent, const QString &name, const QString &containerClass,
                     const QString &messageClass, int defaultType);

    // Items
    [[nodiscard]] QVector<qint64> itemIds(qint64 folder);
    [[nodiscard]] int itemCount(qint64 folder);
    // Rows of the folder with ids from..to (inclusive), as shared item data
    // (taken from the identity map where loaded).
    QList<std::shared_ptr<ItemData>> loadItems(qint64 folder, qint64 fromId, qint64 toId);
    // The item by id, or nullptr when the file has no such item.
    std::shared_ptr<ItemData> loadItem(qint64 id);
    std::shared_ptr<ItemData> newItem(qint64 folder, int itemClass, const QString &messageClass);
    void saveItem(ItemData &item);
    void deleteItem(ItemData &item);   // for good
    // Moves the stored item into a folder of this store: new id, same
    // content. faultKind: the test fault that applies (move or delete).
    void moveItemHere(ItemData &item, qint64 folder, int faultKind);
    // Inserts a detached copy (of another store's item) into a folder of this
    // store, attachments with their content; returns the new id. The test
    // fault "move" of faultEntryId applies.
    qint64 insertCopy(ItemData &item, qint64 folder, const QString &faultEntryId);
    // The stored item by id, outside the identity map; nullptr when gone.
    std::shared_ptr<ItemData> loadDetached(qint64 id);
    // Drops the item from the identity map (a handle that no longer stands for it).
    void forget(qint64 id) { m_loaded.remove(id); }
    // Takes a handle's data into the identity map (after a move into this store).
    void adopt(ItemData &item) { m_loaded.insert(item.id, item.weak_from_this()); }
    QList<AttachmentRecord> loadAttachments(qint64 itemId);
    QByteArray attachmentData(qint64 attachmentId);

    // Removes an item row by id, outside any handle (test faults).
    bool eraseItemRow(qint64 id);

    // Change counters: membership of a folder changes with add, delete and
    // move; outside changes are those of other connections (other programs).
    [[nodiscard]] quint64 membership(qint64 folder) const { return m_membership.value(folder) + m_outside; }
    [[nodiscard]] quint64 outsideChanges() const { return m_outside; }
    // Looks whether another connection committed since the last look.
    void checkOutsideChanges();

    // Property dictionary
    [[nodiscard]] qint64 pidOfSlot(int slot) const { return m_pidOfSlot.at(slot); }
    [[nodiscard]] int slotOfPid(qint64 pid) const
    {
        return pid >= 0 && pid < m_slotOfPid.size() ? m_slotOfPid.at(pid) : -1;
    }

    // Another user's mailbox: the rule that refuses folders the owner did not
    // share (StoreErrAccessDenied). Own stores have none.
    void setAccessRule(std::function<void(StoreFile &, qint64)> rule) { m_accessRule = std::move(rule); }
    void checkAccess(qint64 folderId)
    {
        if (m_accessRule)
            m_accessRule(*this, folderId);
    }

    // Many saves in one transaction (creation of large stores); nests.
    void beginBulk();
    void endBulk(bool commit);

    // Folds the write-ahead log into the file and drops unused cache.
    void cleanup();

    // Transactions: BEGIN IMMEDIATE, or a savepoint inside a bulk.
    void begin();
    void commit();
    void rollback();

    [[noreturn]] void fail(const QSqlQuery &query, const QString &what) const;
    // The statement of that number, prepared from sql at first use.
    QSqlQuery &prepared(int which, const char *sql);
    [[nodiscard]] QSqlDatabase db() const { return QSqlDatabase::database(m_connection, false); }

private:
    StoreFile(const QString &path, const QString &connection);
    void validateAndLoad();
    void loadDictionary();
    void mapPid(qint64 pid, int slot);
    void loadFolders();
    void indexFolder(const FolderRow &row);
    qint64 dataVersion();
    void bindItem(QSqlQuery &q, const ItemData &item, const QByteArray &blob);
    std::shared_ptr<ItemData> fromRow(const QSqlQuery &q);
    void fillFromRow(ItemData &item, const QSqlQuery &q);
    void saveAttachments(ItemData &item);
    void touchFolder(qint64 folder) { ++m_membership[folder]; }

    QString m_path;
    QString m_connection;
    QByteArray m_key;
    QString m_storeId;
    QString m_displayName;
    QHash<qint64, FolderRow> m_folders;
    QHash<qint64, QList<qint64>> m_children; // subfolders by parent, in id order
    QVector<qint64> m_pidOfSlot;
    QVector<int> m_slotOfPid; // by pid; pids are small row numbers
    QHash<qint64, std::weak_ptr<ItemData>> m_loaded;
    QHash<qint64, quint64> m_membership;
    quint64 m_outside = 0;
    qint64 m_dataVersion = -1;
    int m_depth = 0;
    std::vector<std::unique_ptr<QSqlQuery>> m_statements;
    std::function<void(StoreFile &, qint64)> m_accessRule;
};

// Raises StoreErrNotFound with a German description.
[[noreturn]] void ThrowNotFound(const QString &what);
