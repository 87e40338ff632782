// The restore command, apart from the restore itself: it needs the folder
// selection of the main window.
#include "restore/UndoFunctions.h"

#include "folders/FolderFunctions.h"
#include "store/MAPIFolder.h"

void RestoreContactBackups(const QString &kind)
{
    if (BackupFields(kind).isEmpty())
        return;
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    if (!selection.ok)
        return;
    RestoreContactBackupsIn(selection.folders, selection.itemCount, kind);
}
