#include "folders/FolderState.h"

#include "folders/FolderStructureFunctions.h"

#include <QCoreApplication>

namespace {

// The store's handles must go before the application object does: the
// database connections behind them die with it.
void dropStoreHandles()
{
    FolderState &state = FolderData();
    state.nameSpace = NameSpace();
    state.currentStore = MAPIFolder();
    state.sharedFolder = MAPIFolder();
}

} // namespace

FolderState::FolderState()
{
    timer.setObjectName(QStringLiteral("Timer1"));
    timer.setInterval(1000);
    QObject::connect(&timer, &QTimer::timeout, &DelayInspect);
    qAddPostRoutine(dropStoreHandles);
}

FolderState &FolderData()
{
    static FolderState state;
    return state;
}

void SetFolderTree(FolderTreeNodes *tree)
{
    FolderData().tree = tree;
}

QTimer &FolderReadTimer()
{
    return FolderData().timer;
}
