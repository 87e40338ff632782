#include "store/UserProperties.h"

#include "store/ItemData_p.h"
#include "store/StoreConstants.h"
#include "store/StoreError.h"
#include "store/StoreFaults.h"
#include "store/StoreFaults_p.h"
#include "store/StoreFile_p.h"
#include "store/StoreIds_p.h"

namespace {

[[noreturn]] void noItem()
{
    throw StoreError(StoreErrNoObject, QStringLiteral("Es ist kein Element angegeben."));
}

ItemData &readable(const std::shared_ptr<ItemData> &item)
{
    if (!item)
        noItem();
    if (ItemFaultsActive() && item->id != 0)
        CheckItemFault(StoreFaults::FailRead, EntryIdOf(item->store->key(), IdKind::Item, item->id));
    item->ensureDecoded();
    return *item;
}

QVariant convert(int type, const QVariant &value)
{
    switch (type) {
    case olNumber: return value.toDouble();
    case olYesNo: return value.toBool();
    case olDateTime: return value.toDateTime();
    default: return value.isValid() ? value.toString() : QString();
    }
}

} // namespace

UserProperty::UserProperty(std::shared_ptr<ItemData> item, const QString &name)
    : m_item(std::move(item))
    , m_name(name)
{
}

static UserPropRecord &recordOf(const std::shared_ptr<ItemData> &item, const QString &name)
{
    ItemData &d = readable(item);
    const int index = d.userPropIndex(name);
    if (index < 0)
        ThrowNotFound(QStringLiteral("Die benutzerdefinierte Eigenschaft \"%1\" gibt es nicht mehr.").arg(name));
    return d.userProps[index];
}

QString UserProperty::Name() const { return recordOf(m_item, m_name).name; }
int UserProperty::Type() const { return recordOf(m_item, m_name).type; }
QVariant UserProperty::Value() const { return recordOf(m_item, m_name).value; }

void UserProperty::setValue(const QVariant &value)
{
    UserPropRecord &r = recordOf(m_item, m_name);
    r.value = convert(r.type, value);
    m_item->dirty = true;
}

void UserProperty::Delete()
{
    ItemData &d = readable(m_item);
    const int index = d.userPropIndex(m_name);
    if (index < 0)
        ThrowNotFound(QStringLiteral("Die benutzerdefinierte Eigenschaft \"%1\" gibt es nicht mehr.").arg(m_name));
    d.userProps.removeAt(index);
    d.dirty = true;
}

UserProperties::UserProperties(std::shared_ptr<ItemData> item)
    : m_item(std::move(item))
{
}

int UserProperties::Count() const
{
    return int(readable(m_item).userProps.size());
}

UserProperty UserProperties::Item(int index) const
{
    const ItemData &d = readable(m_item);
    if (index < 1 || index > d.userProps.size())
        throw StoreError(StoreErrNotFound, QStringLiteral("Eine benutzerdefinierte Eigenschaft %1 gibt es nicht.").arg(index));
    return UserProperty(m_item, d.userProps.at(index - 1).name);
}

UserProperty UserProperties::Find(const QString &name) const
{
    const ItemData &d = readable(m_item);
    const int index = d.userPropIndex(name);
    return index < 0 ? UserProperty() : UserProperty(m_item, d.userProps.at(index).name);
}

UserProperty UserProperties::Add(const QString &name, int type)
{
    ItemData &d = readable(m_item);
    if (name.trimmed().isEmpty())
        throw StoreError(StoreErrCallFailed, QStringLiteral("Eine benutzerdefinierte Eigenschaft braucht einen Namen."));
    if (d.userPropIndex(name) >= 0)
        throw StoreError(StoreErrCollision,
                         QStringLiteral("Die benutzerdefinierte Eigenschaft \"%1\" gibt es schon.").arg(name));
    if (type != olText && type != olNumber && type != olDateTime && type != olYesNo)
        throw StoreError(StoreErrTypeMismatch, QStringLiteral("Den Eigenschaftstyp %1 gibt es nicht.").arg(type));
    d.userProps.append(UserPropRecord{name, type, convert(type, QVariant())});
    d.dirty = true;
    return UserProperty(m_item, name);
}

void UserProperties::Remove(int index)
{
    Item(index).Delete();
}
