#pragma once
// The reference for the grouped comparison of the duplicate search, used by
// its tests and its benchmark.

#include "duplicates/DupComparison.h"

// The walk in its literal form: every item i against every later item j,
// all columns compared; an i that is marked compares no more, and unread
// items are never a partner.
inline DupPairs PairwiseWalk(DupItemTable &table, bool folderInside, const LoserRules &rules)
{
    DupPairs pairs;
    for (int i = 1; i <= table.itemCount(); ++i) {
        for (int j = i + 1; j <= table.itemCount(); ++j) {
            if (table.item(i).marked || table.item(j).unread)
                continue;
            bool differ = folderInside && table.item(i).folderId != table.item(j).folderId;
            for (int c = 0; c < table.columnCount(); ++c)
                differ = differ || table.value(i, c) != table.value(j, c);
            if (differ)
                continue;
            pairs.add(i, j);
            const DupItem &a = table.item(i);
            const DupItem &b = table.item(j);
            const bool firstLoses = ChooseLoser(rules, a.isMaster, b.isMaster, a.created, b.created, a.isSeries,
                                                b.isSeries) == DupLoser::First;
            table.item(firstLoses ? i : j).marked = true;
        }
    }
    return pairs;
}
