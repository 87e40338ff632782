#include "duplicates/DupsDel.h"

#include "duplicates/DupComparison.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/StoreError.h"

DupResultState &DupResult()
{
    static DupResultState state;
    return state;
}

void ClearDupIds()
{
    DupResult().entryIds.clear();
    DupResult().storeIds.clear();
}

DupSearchResult SearchDuplicates(const DupItemType &type, const DupSwitches &switches,
                                 const FolderSelection &selection)
{
    RunHost &host = CurrentRunHost();
    host.setProgressMax(selection.itemCount);
    QString errorText;
    DupSearchResult result{ReadDupItems(type, switches, selection, errorText), {}, {}, {}};
    if (!errorText.isEmpty())
        WriteErrorLog(errorText, QString::fromLatin1(type.logName));
    host.setProgressValue(0);

    result.pairs = FindDuplicatePairs(result.table, switches.folderInside);
    MergePairs(result.pairs);

    result.masterFolder = selection.folders.value(selection.markedIndex);
    if (result.masterFolder.isNull())
        throw StoreError(StoreErrNoObject, QStringLiteral("Der markierte Ordner fehlt in der Auswahl."));
    result.itemTypeName = result.masterFolder.DefaultMessageClass().mid(4);
    return result;
}
