#include "folders/FolderStructureFunctions.h"

#include "folders/FolderState.h"
#include "folders/FolderTreeNodes.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "store/Application.h"
#include "store/MAPITable.h"
#include "store/MAPIUtils.h"
#include "store/StoreConstants.h"
#include "store/StoreError.h"
#include "store/StoreRoutines.h"

#include <QDateTime>

namespace {

// The columns of every table read, in this order.
const QList<unsigned int> &folderColumns()
{
    static const QList<unsigned int> columns{PR_ENTRYID, PR_STORE_ENTRYID, PR_DISPLAY_NAME, PR_CONTAINER_CLASS};
    return columns;
}

QString nodeKey(int number)
{
    return QLatin1Char('K') + QString::number(number);
}

// The next node number; past the greatest one it is the overflow error that
// ends the read of the current branch.
int nextNodeNumber(int &counter)
{
    if (counter >= MaxFolderNodes)
        throw StoreError(6, QStringLiteral("Überlauf"));
    return ++counter;
}

void logOnly(const StoreError &error, const char *routine)
{
    ShowError(error.description(), error.number(), 1, QString::fromLatin1(routine));
}

// The subfolder table of a folder, placed at its start.
MAPITable subfolderTable(const MAPIFolder &folder)
{
    MAPITable table;
    table.setItem(folder.Folders());
    table.setColumns(folderColumns());
    table.MoveToStart();
    return table;
}

int idleTimeSetting()
{
    bool numeric = false;
    const int seconds = GetSetting(QStringLiteral("IdleTime"), QStringLiteral("30")).trimmed().toInt(&numeric);
    return numeric && seconds >= 0 && seconds <= 32767 ? seconds : 30;
}

// Reads one store root: its node, its IDs and its subfolders.
void readStore(FolderState &state, const MAPIFolder &store)
{
    state.currentStore = store;
    state.storeReadStart = QDateTime::currentDateTime();
    const int number = nextNodeNumber(state.nodeCounter);
    // A store given up at an earlier start is left out; it keeps its number.
    if (store.Name() == GetSetting(QStringLiteral("FolderStructureSkip"), QString()))
        return;
    if (!state.tree->addNode(QString(), nodeKey(number), store.Name(), QStringLiteral("Post")))
        throw StoreError(35602, QStringLiteral("Schlüssel ist nicht eindeutig"));
    state.entryIDs[number] = store.EntryID();
    state.storeIDs[number] = store.StoreID();
    MAPITable table = subfolderTable(store);
    CurrentRunHost().processEvents();
    const int rows = table.RowCount();
    if (rows > 0)
        Enrol(table.GetRows(rows), state.nodeCounter);
}

} // namespace

void tvwFolderFill()
{
    FolderState &state = FolderData();
    if (!state.tree || state.reading)
        return;
    state.reading = true;
    state.tree->clearNodes();
    state.readContinue = true;
    state.timer.start();
    state.entryIDs = QStringList(MaxFolderNodes + 1);
    state.storeIDs = QStringList(MaxFolderNodes + 1);
    state.nodeCounter = 0;
    state.idleTime = idleTimeSetting();
    try {
        state.nameSpace = Application().GetNamespace(QStringLiteral("MAPI"));
        const ::Folders stores = state.nameSpace.Folders();
        const int storeCount = stores.Count();
        for (int index = 1; index <= storeCount; ++index) {
            // A store that fails, opening it included, is logged and passed
            // over; the next one is read.
            try {
                readStore(state, stores.Item(index));
            } catch (const StoreError &error) {
                logOnly(error, "tvwFolderFill");
            }
            state.readContinue = true; // a stop of this store does not stop the next
        }
    } catch (const StoreError &error) {
        logOnly(error, "tvwFolderFill");
    }
    state.currentStore = MAPIFolder();
    Clear();
    state.timer.stop();
    state.reading = false;
}

void Enrol(const QList<QVariantList> &rows, int &counter)
{
    FolderState &state = FolderData();
    // Siblings share the parent key, although the counter runs on through
    // their descendants.
    const QString parentKey = nodeKey(counter);
    try {
        for (const QVariantList &row : rows) {
            const int number = nextNodeNumber(counter);
            state.entryIDs[number] = MAPIUtils::BinaryToHex(row.value(0));
            state.storeIDs[number] = MAPIUtils::BinaryToHex(row.value(1));
            const QVariant classColumn = row.value(3);
            const QString imageKey = classColumn.typeId() == QMetaType::QString ? classColumn.toString()
                                                                              : QStringLiteral("IPF.Note");
            // A class that the image list lacks cannot be added: that ends this
            // level, as any failure does.
            if (!state.tree->addNode(parentKey, nodeKey(number), row.value(2).toString(), imageKey))
                throw StoreError(35603, QStringLiteral("Ungültiger Schlüssel"));
            const MAPIFolder folder = state.nameSpace.GetFolderFromID(state.entryIDs[number], state.storeIDs[number]);
            MAPITable table = subfolderTable(folder);
            if (!state.readContinue)
                return;
            CurrentRunHost().processEvents(); // Timer1 gets its turn here
            const int subRows = table.RowCount();
            if (subRows > 0)
                Enrol(table.GetRows(subRows), counter);
        }
    } catch (const StoreError &error) {
        logOnly(error, "Enrol");
    }
}

void DelayInspect()
{
    FolderState &state = FolderData();
    if (state.questionOpen || state.questionDeclined || state.currentStore.isNull())
        return;
    if (state.storeReadStart.secsTo(QDateTime::currentDateTime()) <= state.idleTime)
        return;
    try {
        const QString storeName = state.currentStore.Name();
        const QString prompt =
            QStringLiteral("Das Einlesen der Ordnerstrukturen dauert sehr lange. Möchten Sie in diesen Vorgang "
                           "beschleunigen?\r\nKlicken Sie auf Ja, um folgenden Informationsspeicher nicht weiter "
                           "einzulesen: ")
            + storeName
            + QStringLiteral(".\r\nHinweis: Der Informationsspeicher wird dann beim nächsten Start komplett "
                             "übersprungen.\r\nDieses Verhalten können Sie ebenfalls in den Optionen einstellen.");
        state.questionOpen = true;
        const int answer = ShowMessage(prompt, MsgQuestionDefaultNo, QStringLiteral("Frage?"), 30);
        state.questionOpen = false;
        if (answer != AnswerYes) {
            state.questionDeclined = true;
            return;
        }
        state.readContinue = false;
        SaveSetting(QStringLiteral("FolderStructureSkip"), storeName);
    } catch (const StoreError &error) {
        state.questionOpen = false;
        logOnly(error, "DelayInspect");
    }
}
