#pragma once
// The session with one profile folder (internal to the store): the profile
// file with its store list and address book, and the store files opened so
// far. One per process and profile folder; handles keep it alive.

#include "store/Profile.h"

#include <QHash>
#include <QSqlDatabase>
#include <QString>

#include <memory>
#include <optional>

class StoreFile;

class Session : public std::enable_shared_from_this<Session>
{
public:
    // The session of the current profile folder, created with the profile on
    // first use.
    static std::shared_ptr<Session> current();
    // Ends the current session (a new profile folder was chosen).
    static void endCurrent();

    explicit Session(const QString &folder);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    [[nodiscard]] QString folder() const { return m_folder; }

    // The user's own stores, the default first.
    [[nodiscard]] QStringList ownStoreFiles();
    [[nodiscard]] std::shared_ptr<StoreFile> ownStore(int index); // 0-based; throws when damaged
    // Own store or mailbox by key; nullptr when the profile has none.
    [[nodiscard]] std::shared_ptr<StoreFile> storeByKey(const QByteArray &key);

    struct User {
        qint64 id = 0;
        AddressBookEntry entry;
        QString mailboxFile;
    };
    [[nodiscard]] QList<User> users();
    [[nodiscard]] std::optional<User> resolve(const QString &text);
    // The user whose mailbox the store is, if it is one.
    [[nodiscard]] std::optional<User> mailboxOwner(const StoreFile &store);
    [[nodiscard]] std::shared_ptr<StoreFile> mailbox(const User &user);
    // Throws StoreErrAccessDenied unless the folder lies in a default folder
    // the owner granted; own stores pass.
    void checkAccess(StoreFile &store, qint64 folderId);

    // Administration (Profile.h).
    std::shared_ptr<StoreFile> addStore(const QString &displayName, bool defaultFolders);
    QString removeStore(const QString &storeId);
    User addUser(const QString &name, const QStringList &aliases, const QString &address);
    void setAccess(const QString &userName, int folderType, bool granted);

    void cleanup();

private:
    std::shared_ptr<StoreFile> openFile(const QString &fileName);
    QString freeFileName(const QString &stem) const;
    [[nodiscard]] QSqlDatabase db() const;

    QString m_folder;
    QString m_connection;
    QHash<QString, std::shared_ptr<StoreFile>> m_open; // by file name
};

// The profile file's name inside a profile folder.
inline constexpr char ProfileFileName[] = "Profil.vxprofile";
