// The analyser: switches, folder selection, search, and its error handling.
#include "duplicates/DupError.h"
#include "duplicates/DupsDel.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/StoreError.h"
#include "store/StoreRoutines.h"

#include <new>

namespace {

// Keeps the IDs of the search's items for the tree, the view and the removal.
void keepIds(const DupSearchResult &result)
{
    DupResultState &state = DupResult();
    const int count = result.table.itemCount();
    state.entryIds.clear();
    state.storeIds.clear();
    state.entryIds.reserve(count + 1);
    state.storeIds.reserve(count + 1);
    state.entryIds.append(QString());
    state.storeIds.append(QString());
    for (int n = 1; n <= count; ++n) {
        state.entryIds.append(result.table.item(n).entryId);
        state.storeIds.append(result.table.item(n).storeId);
    }
    state.masterFolder = result.masterFolder;
}

void reportFailure(const DupItemType &type, int number, const QString &description)
{
    RunHost &host = CurrentRunHost();
    if (type.errorBoxBeforeReset)
        ShowError(description, number, type.errorId);
    host.setStatusText(QStringLiteral("Bereit"));
    host.setProgressValue(0);
    if (!type.errorBoxBeforeReset)
        ShowError(description, number, type.errorId);
    if (type.callsClear)
        Clear();
}

} // namespace

std::optional<DupSearchResult> AnalyseDuplicates(const DupItemType &type)
{
    try {
        const DupSwitches switches = ReadDupSwitches(type);
        const FolderSelection selection = CollectFolders(QString::fromLatin1(type.folderKind), false);
        if (!selection.ok)
            return std::nullopt;
        DupSearchResult result = SearchDuplicates(type, switches, selection);
        keepIds(result);
        return result;
    } catch (const StoreError &error) {
        reportFailure(type, error.number(), error.description());
    } catch (const DupError &error) {
        reportFailure(type, error.number, error.description);
    } catch (const std::bad_alloc &) {
        // The table keeps whole field values; a search too large for the
        // memory ends here instead of ending the program.
        reportFailure(type, 7, QStringLiteral("Nicht genügend Speicher"));
    }
    return std::nullopt;
}
