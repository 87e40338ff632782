#include "store/MAPIFolder.h"

#include "store/Items.h"
#include "store/Session_p.h"
#include "store/StoreConstants.h"
#include "store/StoreError.h"
#include "store/StoreFaults_p.h"
#include "store/StoreFile_p.h"
#include "store/StorableText_p.h"
#include "store/StoreIds_p.h"

Items MakeItems(const std::shared_ptr<StoreFile> &store, qint64 folder); // Items.cpp

namespace {

[[noreturn]] void noFolder()
{
    throw StoreError(StoreErrNoObject, QStringLiteral("Es ist kein Ordner angegeben."));
}

// The kind of new folders of a default folder type.
const DefaultFolderDef *defaultFolderOfType(int type)
{
    for (const DefaultFolderDef &entry : DefaultFolderDefs())
        if (entry.type == type)
            return &entry;
    return nullptr;
}

} // namespace

MAPIFolder::MAPIFolder(std::shared_ptr<StoreFile> store, long long folderId)
    : m_store(std::move(store))
    , m_id(folderId)
{
}

const FolderRow &MAPIFolder::row() const
{
    if (!m_store)
        noFolder();
    return m_store->folder(m_id);
}

QString MAPIFolder::Name() const { return row().name; }
QString MAPIFolder::DefaultMessageClass() const { return row().messageClass; }
int MAPIFolder::DefaultItemType() const { return ClassOfMessageClass(DefaultMessageClass()); }
QString MAPIFolder::ContainerClass() const { return row().containerClass; }
int MAPIFolder::DefaultFolderType() const { return row().defaultType; }
bool MAPIFolder::isRoot() const { return row().parent == 0; }

QString MAPIFolder::EntryID() const
{
    row();
    return EntryIdOf(m_store->key(), IdKind::Folder, m_id);
}

QString MAPIFolder::StoreID() const
{
    if (!m_store)
        noFolder();
    return m_store->storeId();
}

QString MAPIFolder::StoreName() const
{
    if (!m_store)
        noFolder();
    return m_store->folder(m_store->root()).name;
}

MAPIFolder MAPIFolder::Parent() const
{
    const qint64 parent = row().parent;
    return parent == 0 ? MAPIFolder() : MAPIFolder(m_store, parent);
}

Items MAPIFolder::Items() const
{
    row();
    m_store->checkAccess(m_id);
    return MakeItems(m_store, m_id);
}

Folders MAPIFolder::Folders() const
{
    row();
    m_store->checkAccess(m_id);
    ::Folders children;
    children.m_store = m_store;
    children.m_parent = m_id;
    return children;
}

bool MAPIFolder::operator==(const MAPIFolder &other) const
{
    return m_store == other.m_store && m_id == other.m_id;
}

#undef FOLDER_ROW

int Folders::Count() const
{
    if (m_session)
        return int(m_session->ownStoreFiles().size());
    if (!m_store)
        return 0;
    ApplyStoreDelay(m_store->storeId());
    m_store->checkOutsideChanges();
    return int(m_store->subfolders(m_parent).size());
}

MAPIFolder Folders::Item(int index) const
{
    if (m_session) {
        const std::shared_ptr<StoreFile> store = m_session->ownStore(index - 1);
        return MAPIFolder(store, store->root());
    }
    if (!m_store)
        noFolder();
    const QList<qint64> ids = m_store->subfolders(m_parent);
    if (index < 1 || index > ids.size())
        throw StoreError(StoreErrNotFound, QStringLiteral("Einen Ordner an Position %1 gibt es nicht.").arg(index));
    return MAPIFolder(m_store, ids.at(index - 1));
}

MAPIFolder Folders::Find(const QString &givenName) const
{
    const QString name = StorableText(givenName);
    const int count = Count();
    for (int i = 1; i <= count; ++i) {
        const MAPIFolder folder = Item(i);
        if (folder.Name().compare(name, Qt::CaseInsensitive) == 0)
            return folder;
    }
    return {};
}

MAPIFolder Folders::Item(const QString &name) const
{
    const MAPIFolder folder = Find(name);
    if (folder.isNull())
        ThrowNotFound(QStringLiteral("Der Ordner \"%1\" wurde nicht gefunden.").arg(name));
    return folder;
}

MAPIFolder Folders::Add(const QString &name, int defaultFolderType)
{
    if (m_session)
        throw StoreError(StoreErrCallFailed,
                         QStringLiteral("Neben den Informationsspeichern kann kein Ordner angelegt werden."));
    if (!m_store)
        noFolder();
    const FolderRow &parent = m_store->folder(m_parent);
    QString containerClass = parent.containerClass;
    QString messageClass = parent.messageClass;
    if (defaultFolderType != 0) {
        const DefaultFolderDef *entry = defaultFolderOfType(defaultFolderType);
        if (!entry)
            throw StoreError(StoreErrTypeMismatch, QStringLiteral("Den Ordnertyp %1 gibt es nicht.").arg(defaultFolderType));
        containerClass = QLatin1String(entry->containerClass);
        messageClass = QLatin1String(entry->messageClass);
    } else if (containerClass.isEmpty()) {
        containerClass = QLatin1String(ContainerClass::Note); // below a root
    }
    return MAPIFolder(m_store, m_store->addFolder(m_parent, name, containerClass, messageClass, 0));
}

Folders::const_iterator Folders::begin() const
{
    return const_iterator(this, 1);
}

Folders::const_iterator Folders::end() const
{
    return const_iterator(this, Count() + 1);
}
