#include "store/Items.h"

#include "store/ItemData_p.h"
#include "store/ItemFilter_p.h"
#include "store/MAPIFolder.h"
#include "store/StoreError.h"
#include "store/StoreFile_p.h"

namespace {
// Rows read per query while positions are visited.
constexpr int s_batch = 1024;
} // namespace

struct ItemsData {
    std::shared_ptr<StoreFile> store;
    qint64 folder = 0;
    QList<std::shared_ptr<const ItemFilter>> filters; // all must match
    QVector<qint64> ids;
    QVector<std::shared_ptr<ItemData>> cache;
    quint64 stamp = ~quint64(0);

    // Takes the positions anew when items came or went.
    void refresh()
    {
        const quint64 now = store->membership(folder);
        if (now == stamp)
            return;
        store->requireFolder(folder);
        ids = store->itemIds(folder);
        cache = QVector<std::shared_ptr<ItemData>>(ids.size());
        stamp = now;
        if (!filters.isEmpty())
            applyFilter();
    }

    void load(int first) // 0-based
    {
        const int last = std::min(int(ids.size()), first + s_batch) - 1;
        QHash<qint64, int> position;
        for (int i = first; i <= last; ++i)
            if (!cache[i])
                position.insert(ids[i], i);
        for (const std::shared_ptr<ItemData> &item : store->loadItems(folder, ids[first], ids[last]))
            if (const auto it = position.constFind(item->id); it != position.cend())
                cache[*it] = item;
    }

    bool matches(const Item &item) const
    {
        for (const auto &filter : filters)
            if (!filter->matches(item))
                return false;
        return true;
    }

    void applyFilter()
    {
        QVector<qint64> kept;
        QVector<std::shared_ptr<ItemData>> keptCache;
        for (int i = 0; i < ids.size(); ++i) {
            if (!cache[i])
                load(i);
            if (cache[i] && matches(Item(cache[i]))) {
                kept << ids[i];
                keptCache << cache[i];
            }
        }
        ids = kept;
        cache = keptCache;
    }
};

Items::Items(std::shared_ptr<ItemsData> data)
    : m_data(std::move(data))
{
}

// Items of a folder; used by MAPIFolder::Items.
Items MakeItems(const std::shared_ptr<StoreFile> &store, qint64 folder)
{
    auto data = std::make_shared<ItemsData>();
    data->store = store;
    data->folder = folder;
    store->requireFolder(folder);
    return Items(data); // positions are taken at the first access
}

int Items::Count() const
{
    if (!m_data)
        return 0;
    m_data->store->checkOutsideChanges();
    m_data->refresh();
    return int(m_data->ids.size());
}

Item Items::Item(int index) const
{
    if (!m_data)
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist keine Elementliste angegeben."));
    ItemsData &d = *m_data;
    if (d.stamp == ~quint64(0))
        d.store->checkOutsideChanges();
    d.refresh();
    if (index < 1 || index > d.ids.size())
        throw StoreError(StoreErrNotFound, QStringLiteral("Ein Element an Position %1 gibt es nicht (%2 Elemente).")
                                               .arg(index)
                                               .arg(d.ids.size()));
    if (!d.cache[index - 1])
        d.load(index - 1);
    if (!d.cache[index - 1] || d.cache[index - 1]->gone)
        ThrowNotFound(QStringLiteral("Das Element an Position %1 wurde nicht gefunden. Es wurde gelöscht oder verschoben.")
                          .arg(index));
    return ::Item(d.cache[index - 1]);
}

Item Items::Add() const
{
    if (!m_data)
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist keine Elementliste angegeben."));
    return Add(m_data->store->folder(m_data->folder).messageClass);
}

Item Items::Add(int itemClass) const
{
    const QString messageClass = MessageClassOfClass(itemClass);
    if (messageClass.isEmpty())
        throw StoreError(StoreErrTypeMismatch, QStringLiteral("Elemente der Klasse %1 gibt es nicht.").arg(itemClass));
    return Add(messageClass);
}

Item Items::Add(const QString &messageClass) const
{
    if (!m_data)
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist keine Elementliste angegeben."));
    const int itemClass = ClassOfMessageClass(messageClass);
    if (itemClass == 0)
        throw StoreError(StoreErrTypeMismatch,
                         QStringLiteral("Elemente der Nachrichtenklasse \"%1\" gibt es nicht.").arg(messageClass));
    m_data->store->requireFolder(m_data->folder);
    return ::Item(m_data->store->newItem(m_data->folder, itemClass, messageClass));
}

Items Items::Restrict(const QString &filter) const
{
    if (!m_data)
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist keine Elementliste angegeben."));
    auto data = std::make_shared<ItemsData>();
    data->store = m_data->store;
    data->folder = m_data->folder;
    data->filters = m_data->filters; // a restriction of a restriction keeps both
    data->filters << ItemFilter::parse(filter);
    data->refresh();
    return Items(data);
}

Item Items::Find(const QString &filter) const
{
    const Items found = Restrict(filter);
    return found.Count() > 0 ? found.Item(1) : ::Item();
}

MAPIFolder Items::Parent() const
{
    if (!m_data)
        return {};
    return MAPIFolder(m_data->store, m_data->folder);
}

Items::const_iterator Items::begin() const
{
    return const_iterator(this, 1);
}

Items::const_iterator Items::end() const
{
    return const_iterator(this, Count() + 1);
}
