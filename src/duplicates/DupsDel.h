#pragma once
// The duplicate search: one frame for the six item kinds of DupItemTypes.h.
// Phase 1 reads every item of the ticked folders into the item table, Phase
// 2 compares them (DupComparison.h), the merge gathers the pairs into
// groups. The search changes nothing in the mail store; the result goes to
// the result tree or the ID marking, and the removal acts on it.

#include "duplicates/DupItemTable.h"
#include "duplicates/DupItemTypes.h"
#include "folders/FolderFunctions.h"
#include "store/MAPIFolder.h"

#include <QString>

#include <optional>
#include <vector>

// What a search hands on.
struct DupSearchResult {
    DupItemTable table;
    DupPairs pairs;          // merged: the first item of each pair heads its group
    MAPIFolder masterFolder; // the folder that was marked in the tree
    QString itemTypeName;    // its DefaultMessageClass without "IPM." ("Contact" ...)
};

// The IDs of the items of the last search and its marked folder
// (DupEntryIDs, DupStoreIDs, DupMasterFolder). They outlive the search,
// because the result tree, the item view and the removal name items by their
// number; the number n is at index n (index 0 stays empty).
struct DupResultState {
    QStringList entryIds;
    QStringList storeIds;
    MAPIFolder masterFolder;
    bool removing = false; // a removal run is under way
};

// The one instance.
DupResultState &DupResult();

// Empties the two ID lists (a new run starts, or the panel closes).
void ClearDupIds();

// Phase 1: reads the items of the selection's folders into a table with one
// column per switched-on field. An item of a foreign class, or one that
// could not be read, stays in the table marked and unread. A failing read is
// retried; after more than 5 failures in all since the last give-up the
// item at hand is given up. errorText collects the lines of skipped and
// given-up items for the log.
[[nodiscard]] DupItemTable ReadDupItems(const DupItemType &type, const DupSwitches &switches,
                                        const FolderSelection &selection, QString &errorText);

// Phase 1 to the merge for a collected selection: the log entry of Phase 1
// under the type's log name, Phase 2, the merge, the marked folder. Throws
// StoreError or DupError on a failure outside Phase 1.
[[nodiscard]] DupSearchResult SearchDuplicates(const DupItemType &type, const DupSwitches &switches,
                                               const FolderSelection &selection);

// The analyser: reads the switches, collects the folders of the type's kind
// and searches. Returns nothing when the folder selection says no (the user
// has been told) or after a failure, which is shown with the type's error
// number. On success the IDs and the marked folder are kept in DupResult().
// Calls Clear() after a failure (not for notes); after a success the caller
// calls it once the result is shown.
[[nodiscard]] std::optional<DupSearchResult> AnalyseDuplicates(const DupItemType &type);

// ID mode of the result: writes into the user property named by
// FieldNameEntryID of every proposed item the EntryID of the other item of
// its pair, and saves it. Single failures go to the log ("Save Outlook ID");
// ends with "Outook ID erfolgreich eingetragen.".
void WriteDuplicateIds(const DupSearchResult &result);

// The removal of the items with the given numbers: deleted, or moved into
// "Duplikate (erstellt von Varnex)" under the marked folder (created when
// missing). Each failure is counted and logged and the run goes on; ends with
// the result message. A refused folder creation is shown and nothing is
// touched. Works on a copy of the IDs, so the lists may change meanwhile.
void RemoveDupItems(const QList<int> &itemNumbers, bool moveToFolder);

// The name of the folder that takes moved duplicates.
inline constexpr char kDupFolderName[] = "Duplikate (erstellt von Varnex)";
