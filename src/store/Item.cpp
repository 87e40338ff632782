#include "store/Item.h"

#include "store/Attachments.h"
#include "store/Inspector.h"
#include "store/ItemData_p.h"
#include "store/MAPIFolder.h"
#include "store/StoreError.h"
#include "store/StoreFaults.h"
#include "store/StoreFaults_p.h"
#include "store/StoreFile_p.h"
#include "store/StoreIds_p.h"
#include "store/UserProperties.h"

Item::Item(std::shared_ptr<ItemData> data)
    : m_data(std::move(data))
{
}

ItemData &Item::checked() const
{
    if (!m_data)
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist kein Element angegeben."));
    return *m_data;
}

int Item::Class() const
{
    return get(QStringLiteral("Class")).toInt();
}

QString Item::MessageClass() const
{
    return get(QStringLiteral("MessageClass")).toString();
}

void Item::setMessageClass(const QString &messageClass)
{
    set(QStringLiteral("MessageClass"), messageClass);
}

QString Item::EntryID() const
{
    const ItemData &d = checked();
    return d.id == 0 ? QString() : EntryIdOf(d.store->key(), IdKind::Item, d.id);
}

QString Item::StoreID() const
{
    return checked().store->storeId();
}

QDateTime Item::CreationTime() const
{
    return get(QStringLiteral("CreationTime")).toDateTime();
}

QDateTime Item::LastModificationTime() const
{
    return get(QStringLiteral("LastModificationTime")).toDateTime();
}

QString Item::Subject() const
{
    return get(QStringLiteral("Subject")).toString();
}

void Item::setSubject(const QString &subject)
{
    set(QStringLiteral("Subject"), subject);
}

QString Item::Body() const
{
    return get(QStringLiteral("Body")).toString();
}

void Item::setBody(const QString &body)
{
    set(QStringLiteral("Body"), body);
}

bool Item::isDirty() const
{
    return checked().dirty;
}

void Item::Save()
{
    ItemData &d = checked();
    d.store->saveItem(d);
}

void Item::Delete()
{
    ItemData &d = checked();
    if (d.id == 0) { // never saved: nothing in the store to delete
        d.gone = true;
        return;
    }
    if (d.gone)
        ThrowNotFound(QStringLiteral("Das Element wurde nicht gefunden. Es wurde gelöscht oder verschoben."));
    StoreFile &store = *d.store;
    store.checkOutsideChanges();
    const qint64 trash = store.defaultFolder(olFolderDeletedItems);
    if (trash != 0 && d.folderId != trash && store.hasFolder(d.folderId)) {
        // As the platform does: a deleted item goes to "Gelöschte Objekte".
        store.moveItemHere(d, trash, StoreFaults::FailDelete);
        store.forget(d.id);
    } else {
        store.deleteItem(d);
    }
    d.gone = true;
}

Item Item::Move(const MAPIFolder &folder)
{
    ItemData &d = checked();
    if (folder.isNull())
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist kein Zielordner angegeben."));
    if (d.gone)
        ThrowNotFound(QStringLiteral("Das Element wurde nicht gefunden. Es wurde gelöscht oder verschoben."));
    // Unsaved changes go with the item: they are saved first.
    if (d.dirty)
        d.store->saveItem(d);
    const std::shared_ptr<StoreFile> &target = folder.store();
    if (target == d.store) {
        d.store->moveItemHere(d, folder.id(), StoreFaults::FailMove);
        return *this;
    }
    // Across stores: copy with the content of the file, then delete the
    // original. A crash in between leaves the item twice, never nowhere.
    const QString oldEntryId = EntryID();
    std::shared_ptr<ItemData> copy = d.store->loadDetached(d.id);
    if (!copy)
        ThrowNotFound(QStringLiteral("Das Element wurde nicht gefunden. Es wurde gelöscht oder verschoben."));
    copy->ensureDecoded();
    copy->ensureAttachments();
    for (AttachmentRecord &a : copy->attachments)
        if (!a.dataLoaded)
            a.data = copy->store->attachmentData(a.id);
    const qint64 newId = target->insertCopy(*copy, folder.id(), oldEntryId);
    d.store->deleteItem(d);
    d.store = target;
    d.id = newId;
    d.folderId = folder.id();
    d.gone = false;
    d.attachmentsLoaded = false;
    d.attachments.clear();
    d.loadStamp = target->outsideChanges();
    target->adopt(d);
    return *this;
}

MAPIFolder Item::Parent() const
{
    const ItemData &d = checked();
    return MAPIFolder(d.store, d.folderId);
}

Inspector Item::GetInspector() const
{
    checked();
    return Inspector(*this);
}

UserProperties Item::UserProperties() const
{
    checked();
    return ::UserProperties(m_data);
}

Attachments Item::Attachments() const
{
    checked();
    return ::Attachments(m_data);
}
