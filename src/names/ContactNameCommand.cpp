// The command behind "Namen korrigieren": the ticked contact folders, then
// the run over them.
#include "names/NameCorrectionFunctions.h"

#include "folders/FolderFunctions.h"
#include "store/MAPIFolder.h"

void CorrectContactNames()
{
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts), false);
    if (selection.ok)
        CorrectNamesInFolders(selection.folders);
}
