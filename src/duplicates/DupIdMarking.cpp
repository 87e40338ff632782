// ID mode of the duplicate result: instead of removing, every proposed item
// gets the EntryID of the other item of its pair in a text user property.
#include "duplicates/DupTolerant.h"
#include "duplicates/DupsDel.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "store/Application.h"
#include "store/Item.h"
#include "store/StoreConstants.h"
#include "store/UserProperties.h"

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// Writes value into the ID property of item n, each step tolerant. The
// property is added only when the item lacks it: an item marked by an
// earlier search, or a root written at each of its pairs, gets the new value
// without a failure in the log.
void writeId(const NameSpace &ns, int n, const QString &value, const QString &logId, Tolerant &tolerant,
             QString &errorText)
{
    const DupResultState &state = DupResult();
    const QString name = GetSetting(QStringLiteral("FieldNameEntryID"), QStringLiteral("Outlook ID (created by Varnex)"));
    Item item;
    tolerant.run([&] { item = ns.GetItemFromID(state.entryIds.value(n), state.storeIds.value(n)); });
    tolerant.run([&] {
        if (item.UserProperties().Find(name).isNull())
            item.UserProperties().Add(name, olText);
    });
    tolerant.run([&] { item.UserProperties().Find(name).setValue(value); });
    tolerant.run([&] { item.Save(); });
    if (tolerant.pending()) {
        errorText += kCrLf + QStringLiteral("Error No.: ") + QString::number(tolerant.number())
            + QStringLiteral(", Outlook ID: ") + logId + kCrLf + tolerant.description();
        tolerant.clear();
    }
}

} // namespace

void WriteDuplicateIds(const DupSearchResult &result)
{
    RunHost &host = CurrentRunHost();
    const DupPairs &pairs = result.pairs;
    const DupResultState &state = DupResult();
    Tolerant tolerant;
    NameSpace ns;
    tolerant.run([&] { ns = Application().GetNamespace(); });
    tolerant.clear();
    if (pairs.count() > 0)
        host.setProgressMax(pairs.count());
    QString errorText;
    host.setStatusText(QStringLiteral("Phase 3: Schreibe Outlook ID..."));
    host.processEvents();
    for (int k = 0; k < pairs.count(); ++k) {
        const int a = pairs.first[k];
        const int b = pairs.second[k];
        const QString idOfA = state.entryIds.value(a);
        if (result.table.item(a).marked)
            writeId(ns, a, state.entryIds.value(b), idOfA, tolerant, errorText);
        if (result.table.item(b).marked)
            writeId(ns, b, idOfA, idOfA, tolerant, errorText);
        host.setProgressValue(k + 1);
    }
    if (!errorText.isEmpty())
        WriteErrorLog(errorText, QStringLiteral("Save Outlook ID"));
    host.setProgressValue(0);
    host.setStatusText(QStringLiteral("Bereit"));
    ShowMessage(QStringLiteral("Outook ID erfolgreich eingetragen."), MsgInformation, QStringLiteral("Info!"));
}
