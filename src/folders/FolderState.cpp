#include "folders/FolderState.h"

FolderState &Folders()
{
    static FolderState state;
    return state;
}

void SetFolderTree(FolderTreeNodes *tree)
{
    Folders().tree = tree;
}

QTimer &FolderReadTimer()
{
    return Folders().timer;
}
