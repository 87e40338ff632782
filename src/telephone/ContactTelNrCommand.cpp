// The command of the telephone run, apart from the run itself: it needs the
// folder selection of the main window.
#include "telephone/ContactTelNrRun.h"

#include "folders/FolderFunctions.h"
#include "frame/RegistryFunctions.h"
#include "store/MAPIFolder.h"

void RunContactTelNr()
{
    const bool hideFax = GetBoolSetting(QStringLiteral("HideFax"), false);
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    if (!selection.ok)
        return;
    RunContactTelNrOn(selection.folders, hideFax);
}
