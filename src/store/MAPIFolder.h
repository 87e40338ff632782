#pragma once
// Folders of the mail store. MAPIFolder is a cheap handle onto one folder;
// Folders is the collection of a folder's subfolders (or, from the
// NameSpace, of the roots of the profile's stores).

#include <QString>

#include <memory>

class Items;
class StoreFile;
struct FolderRow;
class Session;

class MAPIFolder;

class Folders
{
public:
    Folders() = default;

    [[nodiscard]] int Count() const;
    // 1-based, in the order the folders were created.
    [[nodiscard]] MAPIFolder Item(int index) const;
    // By name, ignoring case; throws StoreError when there is none.
    [[nodiscard]] MAPIFolder Item(const QString &name) const;
    // By name, ignoring case; a null folder when there is none.
    [[nodiscard]] MAPIFolder Find(const QString &name) const;
    // Creates a subfolder of the parent's kind, or of the kind of the default
    // folder type (olFolderContacts ...) when given. A name that exists
    // already (ignoring case) or an empty name throws StoreError. The roots
    // of a profile take no new folders.
    MAPIFolder Add(const QString &name, int defaultFolderType = 0);

    class const_iterator;
    [[nodiscard]] const_iterator begin() const;
    [[nodiscard]] const_iterator end() const;

private:
    friend class MAPIFolder;
    friend class NameSpace;
    std::shared_ptr<StoreFile> m_store; // subfolders of m_parent, or
    long long m_parent = 0;
    std::shared_ptr<Session> m_session; // the roots of the profile
};

class MAPIFolder
{
public:
    MAPIFolder() = default;
    MAPIFolder(std::shared_ptr<StoreFile> store, long long folderId);

    [[nodiscard]] bool isNull() const { return !m_store; }

    [[nodiscard]] QString Name() const;
    [[nodiscard]] QString EntryID() const;
    [[nodiscard]] QString StoreID() const;
    // The message class of new items ("IPM.Contact" ...); "IPM.Note" for a root.
    [[nodiscard]] QString DefaultMessageClass() const;
    // The Class number of new items.
    [[nodiscard]] int DefaultItemType() const;
    // "IPF.Contact" ...; "" for a root, which has none.
    [[nodiscard]] QString ContainerClass() const;
    // The default folder type (olFolderInbox ...) or 0 for any other folder.
    [[nodiscard]] int DefaultFolderType() const;
    // The display name of the store the folder belongs to.
    [[nodiscard]] QString StoreName() const;
    [[nodiscard]] bool isRoot() const;
    // The parent folder; a null folder for a root.
    [[nodiscard]] MAPIFolder Parent() const;

    [[nodiscard]] ::Items Items() const;
    [[nodiscard]] ::Folders Folders() const;

    bool operator==(const MAPIFolder &other) const;

    // For the store's own classes.
    [[nodiscard]] const std::shared_ptr<StoreFile> &store() const { return m_store; }
    [[nodiscard]] long long id() const { return m_id; }

private:
    const FolderRow &row() const;
    std::shared_ptr<StoreFile> m_store;
    long long m_id = 0;
};

class Folders::const_iterator
{
public:
    using value_type = MAPIFolder;
    const_iterator(const ::Folders *folders, int index) : m_folders(folders), m_index(index) {}
    MAPIFolder operator*() const { return m_folders->Item(m_index); }
    const_iterator &operator++() { ++m_index; return *this; }
    bool operator!=(const const_iterator &other) const { return m_index != other.m_index; }
    bool operator==(const const_iterator &other) const { return m_index == other.m_index; }

private:
    const ::Folders *m_folders;
    int m_index;
};
