#include "folders/FolderState.h"

#include "folders/FolderStructureFunctions.h"

FolderState::FolderState()
{
    timer.setObjectName(QStringLiteral("Timer1"));
    timer.setInterval(1000);
    QObject::connect(&timer, &QTimer::timeout, &DelayInspect);
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
