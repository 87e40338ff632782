// The duplicate command of the command bar and the menu, and the connection
// of the panel's buttons to the main window's dispatch table.
#include "duplicates/frmDups.h"

#include "duplicates/DupsDel.h"
#include "folders/FolderFunctions.h"
#include "frame/CommandRegistry.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/StoreError.h"
#include "store/StoreRoutines.h"

void RemoveDuplicates()
{
    SetRunning(true);
    try {
        const DupItemType *type = DupTypeForFolderClass(GetSelectedFolderClass());
        if (!type) {
            ShowMessage(QStringLiteral("Kein gültiger Ordner gewählt."), MsgStop, QStringLiteral("Hinweis!"));
        } else if (const std::optional<DupSearchResult> result = AnalyseDuplicates(*type)) {
            ShowDuplicates(*result);
            if (type->callsClear)
                Clear();
        }
    } catch (const StoreError &error) {
        ShowError(error.description(), error.number(), 909);
    }
    SetRunning(false);
}

void RegisterDuplicateCommands()
{
    RegisterCommand(QStringLiteral("Dup"), RemoveDuplicates);
    RegisterCommand(QStringLiteral("DupDel"), RemoveMarkedItems);
    RegisterCommand(QStringLiteral("DupView"), cmdDupViewClick);
    RegisterCommand(QStringLiteral("DupsClose"), cmdDupsCloseClick);
    RegisterCommand(QStringLiteral("DupsClear"), ClearDupIds);
}
