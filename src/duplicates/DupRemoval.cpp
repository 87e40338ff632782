// The removal of the ticked duplicates: delete, or move into the duplicates
// folder under the folder that was marked during the search.
#include "duplicates/DupProgress.h"
#include "duplicates/DupTolerant.h"
#include "duplicates/DupsDel.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/Application.h"
#include "store/Item.h"
#include "store/StoreConstants.h"

namespace {

struct ItemIds {
    QString entryId;
    QString storeId;
};

QList<ItemIds> idsOf(const QList<int> &itemNumbers)
{
    const DupResultState &state = DupResult();
    QList<ItemIds> ids;
    ids.reserve(itemNumbers.size());
    for (int n : itemNumbers)
        ids.append({state.entryIds.value(n), state.storeIds.value(n)});
    return ids;
}

void logFailure(Tolerant &tolerant, const QString &name)
{
    WriteErrorLog(QStringLiteral("Err. No.: ") + QString::number(tolerant.number()) + QStringLiteral(", Err. Des.:")
                      + tolerant.description(),
                  name);
    tolerant.clear();
}

// The duplicates folder under the marked folder, created when missing. A
// refused creation is logged and shown; the result is then a null folder.
MAPIFolder duplicatesFolder(const MAPIFolder &master, Tolerant &tolerant)
{
    RunHost &host = CurrentRunHost();
    const QString name = QString::fromUtf8(kDupFolderName);
    MAPIFolder target;
    tolerant.run([&] { target = master.Folders().Item(name); });
    host.processEvents();
    if (tolerant.pending() || target.isNull()) {
        tolerant.clear();
        tolerant.run([&] { target = master.Folders().Add(name); });
        host.processEvents();
    }
    if (tolerant.pending()) {
        WriteErrorLog(tolerant.description() + QStringLiteral(", ") + QString::number(tolerant.number()),
                      QStringLiteral("FolderAdd"));
        ShowMessage(tolerant.description(), MsgStop, QStringLiteral("Fehler!"));
        tolerant.clear();
        return {};
    }
    return target;
}

void showResult(int count, int failed)
{
    if (failed == 0) {
        ShowMessage(QString::number(count) + QStringLiteral(" Duplikate entfernt."), MsgInformation,
                    QStringLiteral("Fertig!"));
        return;
    }
    ShowMessage(QString::number(count - failed) + QStringLiteral(" Duplikate entfernt.\r\n") + QString::number(failed)
                    + QStringLiteral(" Elemente verursachen einen Fehler. Starten Sie einen weiteren Durchlauf, um "
                                     "noch eventuell verbliebene Duplikate zu entfernen."),
                MsgExclamation, QStringLiteral("Hinweis!"));
}

} // namespace

void RemoveDupItems(const QList<int> &itemNumbers, bool moveToFolder)
{
    RunHost &host = CurrentRunHost();
    const QList<ItemIds> ids = idsOf(itemNumbers);
    const MAPIFolder master = DupResult().masterFolder;
    const NameSpace ns = Application().GetNamespace();
    const int count = int(ids.size());
    host.setProgressMax(count);

    Tolerant tolerant;
    MAPIFolder target;
    bool notes = false;
    if (moveToFolder) {
        target = duplicatesFolder(master, tolerant);
        if (target.isNull())
            return;
        tolerant.run([&] { notes = master.DefaultMessageClass() == QLatin1String("IPM.StickyNote"); });
        tolerant.clear();
    }
    const QString verb = moveToFolder ? QStringLiteral("Verschiebe") : QStringLiteral("Lösche");
    int failed = 0;
    DupProgress progress;
    for (int t = 1; t <= count; ++t) {
        progress.step(
            t, [&] { return QStringLiteral("Phase 3: %1 Element %2 von %3").arg(verb).arg(t).arg(count); }, t == count);
        const ItemIds &item = ids[t - 1];
        tolerant.run([&] {
            Item found = ns.GetItemFromID(item.entryId, item.storeId);
            if (moveToFolder)
                found.Move(target);
            else
                found.Delete();
        });
        if (tolerant.pending()) {
            ++failed;
            logFailure(tolerant, moveToFolder ? QStringLiteral("DupsMove") : QStringLiteral("DupsDel"));
        }
        // A note leaves a copy behind where it was moved from; that copy
        // goes by its old IDs, and a failure here counts for nothing.
        if (notes) {
            tolerant.run([&] { ns.GetItemFromID(item.entryId, item.storeId).Delete(); });
            tolerant.clear();
        }
    }
    showResult(count, failed);
}
