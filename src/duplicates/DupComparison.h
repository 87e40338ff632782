#pragma once
// Comparing the items of the table, choosing which item of a pair goes, and
// gathering the pairs into groups.
//
// Two items are duplicates when every stored column is equal, exactly (UTF-16
// code units, no collation), and, with folderInside, when both lie in the
// same folder. An empty value is a value like any other. The pairs are those
// of a walk that compares every item i with every later item j, skips an i
// once it is marked, and marks the loser of each equal pair; see
// FindDuplicatePairs.

#include "duplicates/DupItemTable.h"

#include <QDateTime>

#include <array>
#include <functional>

// Which item of a pair is proposed for removal.
enum class DupLoser { First, Second };

// The preferences of ChooseLoser, from the settings MasterFolder,
// TerminSerie, OldDel and Priority.0 to Priority.2.
struct LoserRules {
    bool masterFolder = false; // criterion 0: keep the item of the marked folder
    bool series = false;       // criterion 1: keep the recurring item
    bool keepOldest = false;   // criterion 2 (OldDel): keep the oldest, else the youngest
    // criterionAtLevel[v]: the criterion consulted at level v; level 2 first.
    std::array<int, 3> criterionAtLevel{0, 0, 0};
};

// Reads the rules. Priority.k = v puts criterion k at level v. Throws
// DupError 9 for a level outside 0 to 2 and 13 for a value that is no number
// or a switch that is no Boolean.
[[nodiscard]] LoserRules ReadLoserRules();

// The loser of an equal pair (first item i read before j). Each criterion
// names the item that goes, or abstains: the marked folder keeps its item,
// the recurring item stays, and the age criterion never abstains. On equal
// creation times the age criterion names j in both directions, so the item
// read earlier stays. The levels are consulted from 2 down to 0; the first
// verdict decides. If all consulted criteria abstain (possible only when the
// levels are no permutation) j goes.
[[nodiscard]] DupLoser ChooseLoser(const LoserRules &rules, bool masterI, bool masterJ, const QDateTime &createdI,
                                   const QDateTime &createdJ, bool seriesI, bool seriesJ);

// Phase 2: finds the pairs of the table in the order of the pairwise walk
// and marks each pair's loser. The walk's cost is that of grouping the items
// by their stored values (and folder), not ItemCount squared: an unmarked
// item compares only with the later items of its own group, and at most until
// it loses.
//
// Unread items take no part at all, not even as second partner: their stored
// values are a fragment, and a read item must never be removed in favour of
// an item whose content is unknown.
//
// readRules is asked once, at the first pair; no pair, no rules. Shows
// "Phase 2: Analysiere Element" i in the status line while it works.
[[nodiscard]] DupPairs FindDuplicatePairs(DupItemTable &table, bool folderInside,
                                          const std::function<LoserRules()> &readRules = ReadLoserRules);

// The first item of the group of pair k (0-based): PairFirst of the first
// pair whose second item is value, or PairFirst of pair k when there is none.
[[nodiscard]] int FindGroupRoot(const DupPairs &pairs, int value, int k);

// The merge step: pair by pair in ascending order, the first item becomes the
// root of its group, so that chains such as (1,2), (2,3), (3,4) become (1,2),
// (1,3), (1,4). Gives what FindGroupRoot gives for each pair in turn, in one
// pass over the pairs.
void MergePairs(DupPairs &pairs);
