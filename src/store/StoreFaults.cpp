#include "store/StoreFaults.h"

#include "store/Application.h"
#include "store/Item.h"
#include "store/MAPIFolder.h"
#include "store/ItemData_p.h"
#include "store/StoreError.h"
#include "store/StoreFaults_p.h"
#include "store/StoreFile_p.h"
#include "store/StoreIds_p.h"

#include <QHash>
#include <QSqlQuery>
#include <QThread>

namespace {

struct ItemFault {
    int kinds = 0;
    int remaining = -1;
    int succeedFirst = 0;
};

struct Faults {
    QHash<QString, ItemFault> items;
    QHash<QString, int> delays;
};

Faults &faults()
{
    static Faults f;
    return f;
}

QString describe(int kind)
{
    switch (kind) {
    case StoreFaults::FailRead: return QStringLiteral("Das Element konnte nicht gelesen werden.");
    case StoreFaults::FailSave: return QStringLiteral("Das Element konnte nicht gespeichert werden.");
    case StoreFaults::FailDelete: return QStringLiteral("Das Element konnte nicht gelöscht werden.");
    default: return QStringLiteral("Das Element konnte nicht verschoben werden.");
    }
}

} // namespace

namespace StoreFaults {

void FailItem(const QString &entryId, int kinds, int times, int after)
{
    faults().items.insert(entryId.toUpper(), ItemFault{kinds, times, after});
}

void Vanish(const QString &entryId)
{
    const ParsedEntryId parsed = ParseEntryId(entryId);
    if (parsed.storeKey.isEmpty() || parsed.kind != IdKind::Item)
        throw StoreError(StoreErrNotFound, QStringLiteral("Keine Element-ID: %1").arg(entryId));
    // Through a fetch, so that the store of the current profile is found;
    // the row goes without the handle knowing.
    const Item item = Application().GetNamespace().GetItemFromID(entryId);
    item.data()->store->eraseItemRow(item.data()->id);
}

void SetStoreDelay(const QString &storeId, int milliseconds)
{
    if (milliseconds > 0)
        faults().delays.insert(storeId.toUpper(), milliseconds);
    else
        faults().delays.remove(storeId.toUpper());
}

void LimitStoreSize(const MAPIFolder &folder, int morePages)
{
    QSqlQuery q(folder.store()->db());
    if (!q.exec(QStringLiteral("PRAGMA page_count")) || !q.next())
        folder.store()->fail(q, QStringLiteral("Größe der Datei"));
    const qint64 pages = q.value(0).toLongLong() + morePages;
    q.finish();
    if (!q.exec(QStringLiteral("PRAGMA max_page_count = %1").arg(pages)))
        folder.store()->fail(q, QStringLiteral("Grenze der Dateigröße"));
}

void Reset()
{
    faults() = Faults();
}

} // namespace StoreFaults

void CheckItemFault(int kind, const QString &entryId)
{
    Faults &f = faults();
    if (f.items.isEmpty() || entryId.isEmpty())
        return;
    const auto it = f.items.find(entryId.toUpper());
    if (it == f.items.end() || !(it->kinds & kind) || it->remaining == 0)
        return;
    if (it->succeedFirst > 0) {
        --it->succeedFirst;
        return;
    }
    if (it->remaining > 0)
        --it->remaining;
    throw StoreError(StoreErrCallFailed, describe(kind));
}

void ApplyStoreDelay(const QString &storeId)
{
    const Faults &f = faults();
    if (f.delays.isEmpty())
        return;
    const int ms = f.delays.value(storeId.toUpper(), 0);
    if (ms > 0)
        QThread::msleep(ulong(ms));
}

bool ItemFaultsActive()
{
    return !faults().items.isEmpty();
}
