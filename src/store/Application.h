#pragma once
// The session with the mail store. Application attaches to the current
// profile (Profile.h), creating it with its default store on first use;
// GetNamespace("MAPI") gives the NameSpace with the stores and the address
// book. Handles are cheap; every Application of the process shares one
// session per profile folder, and changing the profile folder starts a new
// one (handles of the old one stay valid).

#include "store/MAPIFolder.h"
#include "store/Recipient.h"

#include <QString>

#include <memory>

class Item;
class Session;
class NameSpace;

class Application
{
public:
    // Attaches to the current profile. Throws StoreError when the profile
    // cannot be created or read.
    Application();

    // The store's version; only the first two characters mean anything.
    [[nodiscard]] QString Version() const;
    // "MAPI" is the only name space; any other throws StoreError.
    [[nodiscard]] NameSpace GetNamespace(const QString &type = QStringLiteral("MAPI")) const;

private:
    std::shared_ptr<Session> m_session;
};

class NameSpace
{
public:
    NameSpace() = default;
    explicit NameSpace(std::shared_ptr<Session> session);

    // The roots of the profile's stores, the default store first.
    [[nodiscard]] ::Folders Folders() const;
    // Throws StoreError (StoreErrNotFound) for an ID that is gone or names no
    // folder (an item's EntryID, say); the StoreID may be "", else it must be
    // that of the folder's store.
    [[nodiscard]] MAPIFolder GetFolderFromID(const QString &entryId, const QString &storeId = QString()) const;
    [[nodiscard]] Item GetItemFromID(const QString &entryId, const QString &storeId = QString()) const;
    // A default folder of the default store.
    [[nodiscard]] MAPIFolder GetDefaultFolder(int folderType) const;
    // An unresolved recipient of the name.
    [[nodiscard]] Recipient CreateRecipient(const QString &name) const;
    // A default folder (olFolderCalendar ...) of another user's mailbox. The
    // recipient is resolved first if need be. Throws StoreError when the name
    // does not resolve, the user has no mailbox, or the user has not granted
    // access to that folder (StoreErrAccessDenied).
    [[nodiscard]] MAPIFolder GetSharedDefaultFolder(const Recipient &recipient, int folderType) const;

private:
    std::shared_ptr<Session> m_session;
};
