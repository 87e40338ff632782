#include "duplicates/DupsDel.h"

#include "duplicates/DupComparison.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/Items.h"
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

namespace {

// The folders this program moved duplicates into take no part in a search:
// their items would be found again and moved into the folder they lie in
// (or deleted). The marked folder stays the target of the removal.
FolderSelection withoutDuplicateFolders(const FolderSelection &selection)
{
    FolderSelection searched = selection;
    searched.folders.clear();
    searched.markedIndex = -1;
    for (int f = 0; f < selection.folders.size(); ++f) {
        const MAPIFolder &folder = selection.folders[f];
        if (folder.Name().compare(QLatin1String(kDupFolderName), Qt::CaseInsensitive) == 0) {
            try {
                searched.itemCount -= folder.Items().Count();
            } catch (const StoreError &) {
                // the count is only the progress bar's
            }
            continue;
        }
        if (f == selection.markedIndex)
            searched.markedIndex = int(searched.folders.size());
        searched.folders.append(folder);
    }
    return searched;
}

} // namespace

DupSearchResult SearchDuplicates(const DupItemType &type, const DupSwitches &switches,
                                 const FolderSelection &selection)
{
    RunHost &host = CurrentRunHost();
    const FolderSelection searched = withoutDuplicateFolders(selection);
    host.setProgressMax(searched.itemCount);
    QString errorText;
    DupSearchResult result{ReadDupItems(type, switches, searched, errorText), {}, {}, {}};
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
