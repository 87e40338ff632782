#include "store/Application.h"

#include "store/Item.h"
#include "store/ItemData_p.h"
#include "store/Session_p.h"
#include "store/StoreError.h"
#include "store/StoreFaults_p.h"
#include "store/StoreFile_p.h"
#include "store/StoreIds_p.h"

namespace {

[[noreturn]] void noSession()
{
    throw StoreError(StoreErrNoObject, QStringLiteral("Es besteht keine Verbindung zum Informationsspeicher."));
}

// The store of an EntryID, checked against the StoreID when one is given.
std::shared_ptr<StoreFile> storeOf(Session &session, const ParsedEntryId &id, const QString &storeId, IdKind kind)
{
    const QString what = kind == IdKind::Folder ? QStringLiteral("Der Ordner") : QStringLiteral("Das Element");
    if (id.storeKey.isEmpty() || id.kind != kind)
        ThrowNotFound(QStringLiteral("%1 wurde nicht gefunden: die ID ist ungültig.").arg(what));
    if (!storeId.trimmed().isEmpty() && StoreKeyOfStoreId(storeId.trimmed().toUpper()) != id.storeKey)
        ThrowNotFound(QStringLiteral("%1 wurde in diesem Informationsspeicher nicht gefunden.").arg(what));
    std::shared_ptr<StoreFile> store = session.storeByKey(id.storeKey);
    if (!store)
        ThrowNotFound(QStringLiteral("%1 wurde nicht gefunden: der Informationsspeicher ist nicht im Profil.").arg(what));
    return store;
}

} // namespace

Application::Application()
    : m_session(Session::current())
{
}

QString Application::Version() const
{
    return QStringLiteral("10.0.0");
}

NameSpace Application::GetNamespace(const QString &type) const
{
    if (type.compare(QLatin1String("MAPI"), Qt::CaseInsensitive) != 0)
        throw StoreError(StoreErrCallFailed, QStringLiteral("Den Namensraum \"%1\" gibt es nicht.").arg(type));
    return NameSpace(m_session);
}

NameSpace::NameSpace(std::shared_ptr<Session> session)
    : m_session(std::move(session))
{
}

Folders NameSpace::Folders() const
{
    if (!m_session)
        noSession();
    ::Folders roots;
    roots.m_session = m_session;
    return roots;
}

MAPIFolder NameSpace::GetFolderFromID(const QString &entryId, const QString &storeId) const
{
    if (!m_session)
        noSession();
    const ParsedEntryId id = ParseEntryId(entryId);
    const std::shared_ptr<StoreFile> store = storeOf(*m_session, id, storeId, IdKind::Folder);
    ApplyStoreDelay(store->storeId());
    store->checkOutsideChanges();
    store->requireFolder(id.row);
    store->checkAccess(id.row);
    return MAPIFolder(store, id.row);
}

Item NameSpace::GetItemFromID(const QString &entryId, const QString &storeId) const
{
    if (!m_session)
        noSession();
    const ParsedEntryId id = ParseEntryId(entryId);
    const std::shared_ptr<StoreFile> store = storeOf(*m_session, id, storeId, IdKind::Item);
    store->checkOutsideChanges();
    std::shared_ptr<ItemData> data = store->loadItem(id.row);
    if (!data || data->gone)
        ThrowNotFound(QStringLiteral("Das Element wurde nicht gefunden. Es wurde gelöscht oder verschoben."));
    store->checkAccess(data->folderId);
    return Item(data);
}

MAPIFolder NameSpace::GetDefaultFolder(int folderType) const
{
    if (!m_session)
        noSession();
    const std::shared_ptr<StoreFile> store = m_session->ownStore(0);
    const qint64 id = store->defaultFolder(folderType);
    if (id == 0)
        ThrowNotFound(QStringLiteral("Einen Standardordner vom Typ %1 gibt es nicht.").arg(folderType));
    return MAPIFolder(store, id);
}

Recipient NameSpace::CreateRecipient(const QString &name) const
{
    if (!m_session)
        noSession();
    return Recipient(m_session, name);
}

MAPIFolder NameSpace::GetSharedDefaultFolder(const Recipient &recipient, int folderType) const
{
    if (!m_session)
        noSession();
    const std::optional<Session::User> user = m_session->resolve(recipient.Name());
    if (!user)
        ThrowNotFound(QStringLiteral("Der Name \"%1\" wurde nicht im Adressbuch gefunden.").arg(recipient.Name()));
    const std::shared_ptr<StoreFile> store = m_session->mailbox(*user);
    const qint64 id = store->defaultFolder(folderType);
    if (id == 0)
        ThrowNotFound(QStringLiteral("Das Postfach von %1 hat keinen Standardordner vom Typ %2.")
                          .arg(user->entry.name)
                          .arg(folderType));
    store->checkAccess(id);
    return MAPIFolder(store, id);
}
