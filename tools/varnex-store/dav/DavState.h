#pragma once
// What the sync of CardDAV and CalDAV accounts remembers, in the SQLite file
// "Konten.vxdav" of the profile folder: the accounts (address, user, the
// store they fill; never a password), their collections with the folders
// they map to and the last sync token, and for every resource of the server
// its ETag, UID, the items it became, the server's text as last seen (so
// that what the store has no field for goes back unchanged) and the change
// stamp and content hash of the items at that moment (so that a local
// change is seen).
//
// Every write is one transaction; the file lives beside the stores, so a
// killed sync leaves each of the two consistent on its own, and the sync
// steps are written so that the next run settles what lies between them.

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <optional>

struct DavAccount {
    QString name; // the store's display name as well
    QString url;
    QString user;
    bool allowHttp = false;
    QString storeId; // StoreID of the account's store
};

struct DavCollectionState {
    qint64 id = 0;
    QString account;
    QString href;
    bool addressBook = false;
    QString name;
    // EntryIDs of the folders: for an address book one, for a calendar
    // appointments, tasks and journal (empty when the calendar lacks the kind).
    QStringList folders;
    bool syncCollection = false;
    QString syncToken;
};

struct DavResourceState {
    QString href;
    QByteArray etag;
    QString uid;
    QStringList items; // EntryIDs of the items the resource became
    QByteArray raw;    // the server's text, as last fetched or written
    qint64 stamp = 0;  // sum of the items' modification stamps at that time
    QByteArray hash;   // ContentHash of the items at that time
};

class DavState
{
public:
    // Opens (creating it when missing) the file of the profile folder.
    // Throws StoreError when it cannot be opened or written.
    explicit DavState(const QString &profileFolder);
    ~DavState();
    DavState(const DavState &) = delete;
    DavState &operator=(const DavState &) = delete;

    [[nodiscard]] QList<DavAccount> accounts();
    [[nodiscard]] std::optional<DavAccount> account(const QString &name);
    void addAccount(const DavAccount &account);
    // Removes the account with its collections and resources.
    void removeAccount(const QString &name);

    [[nodiscard]] QList<DavCollectionState> collections(const QString &account);
    qint64 addCollection(const DavCollectionState &collection);
    void setSyncToken(qint64 collection, const QString &token);

    [[nodiscard]] QHash<QString, DavResourceState> resources(qint64 collection);
    void putResource(qint64 collection, const DavResourceState &resource);
    void removeResource(qint64 collection, const QString &href);

    // Many writes in one transaction (a batch of a pull); nests not.
    void begin();
    void commit();

private:
    void exec(const QString &sql, const QVariantList &values = {});
    QSqlDatabase m_db;
    QString m_connection;
    QString m_path;
    bool m_inTransaction = false;
};
