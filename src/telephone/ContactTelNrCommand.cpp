// The command of the telephone run, apart from the run itself: it needs the
// folder selection of the main window.
#include "telephone/ContactTelNrRun.h"

#include "folders/FolderFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/SettingValues.h"
#include "store/MAPIFolder.h"

void RunContactTelNr()
{
    // Text converted to a Boolean like the other switches ("-1", "Wahr");
    // what converts to nothing counts as off.
    const bool hideFax = TextAsBoolean(GetSetting(QStringLiteral("HideFax"), QStringLiteral("0"))).value_or(false);
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    if (!selection.ok)
        return;
    RunContactTelNrOn(selection.folders, hideFax);
}
