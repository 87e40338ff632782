#include "duplicates/DupComparison.h"

#include "duplicates/DupError.h"
#include "duplicates/DupProgress.h"
#include "frame/RegistryFunctions.h"

#include <QHash>

#include <cmath>
#include <optional>
#include <algorithm>

namespace {

enum class Verdict { Abstain, First, Second };

Verdict preferFlag(bool active, bool flagI, bool flagJ)
{
    if (!active || flagI == flagJ)
        return Verdict::Abstain;
    // The item without the flag goes.
    return flagJ ? Verdict::First : Verdict::Second;
}

Verdict byAge(bool keepOldest, const QDateTime &createdI, const QDateTime &createdJ)
{
    if (keepOldest)
        return createdI > createdJ ? Verdict::First : Verdict::Second;
    return createdI < createdJ ? Verdict::First : Verdict::Second;
}

// Priority.k as a whole number: numbers are rounded half to even, like the
// settings' conversion always did.
int levelSetting(int criterion)
{
    const QString text = GetSetting(QStringLiteral("Priority.%1").arg(criterion), QStringLiteral("0")).trimmed();
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber)
        throw DupError{DupErrors::TypeMismatch, QStringLiteral("Typen unverträglich")};
    const double level = std::nearbyint(value);
    if (level < 0 || level > 2)
        throw DupError{DupErrors::OutOfRange, QStringLiteral("Index außerhalb des gültigen Bereichs")};
    return int(level);
}

// The items of the table grouped by their stored columns (and folder), as
// one array of members in reading order with an offset per group. Unread
// items belong to no group.
struct ItemGroups {
    std::vector<int> groupOf;  // by item number; -1: no group
    std::vector<int> position; // by item number: index into members
    std::vector<int> end;      // by group: one past its last member
    std::vector<int> members;
};

// Equal items have equal hashes. Sorting the items by hash brings each group
// together without a hash map; within a run of equal hashes each item is
// compared with the first member of the groups found in that run, so that a
// collision never joins different items.
ItemGroups groupItems(const DupItemTable &table, bool folderInside)
{
    const int count = table.itemCount();
    const int columns = table.columnCount();
    auto sameValues = [&table, folderInside, columns](int a, int b) {
        if (folderInside && table.item(a).folderId != table.item(b).folderId)
            return false;
        for (int c = 0; c < columns; ++c) {
            if (table.value(a, c) != table.value(b, c))
                return false;
        }
        return true;
    };
    std::vector<std::pair<size_t, int>> byHash; // (hash, item number)
    byHash.reserve(size_t(count));
    for (int n = 1; n <= count; ++n) {
        if (table.item(n).unread)
            continue;
        size_t h = folderInside ? qHash(table.item(n).folderId) : 0;
        for (int c = 0; c < columns; ++c)
            h = qHashMulti(h, table.value(n, c));
        byHash.emplace_back(h, n);
    }
    std::sort(byHash.begin(), byHash.end());

    ItemGroups groups;
    groups.groupOf.assign(size_t(count) + 1, -1);
    std::vector<int> sizes;
    std::vector<std::pair<int, int>> runHeads; // (first member, group) in the current hash run
    for (size_t k = 0; k < byHash.size(); ++k) {
        if (k == 0 || byHash[k].first != byHash[k - 1].first)
            runHeads.clear();
        const int n = byHash[k].second;
        int group = -1;
        for (const auto &[head, headGroup] : runHeads) {
            if (sameValues(head, n)) {
                group = headGroup;
                break;
            }
        }
        if (group < 0) {
            group = int(sizes.size());
            sizes.push_back(0);
            runHeads.emplace_back(n, group);
        }
        groups.groupOf[size_t(n)] = group;
        ++sizes[size_t(group)];
    }
    // Offsets, then members in reading order.
    groups.end.resize(sizes.size());
    std::vector<int> next(sizes.size());
    int offset = 0;
    for (size_t g = 0; g < sizes.size(); ++g) {
        next[g] = offset;
        offset += sizes[g];
        groups.end[g] = offset;
    }
    groups.members.resize(size_t(offset));
    groups.position.assign(size_t(count) + 1, -1);
    for (int n = 1; n <= count; ++n) {
        const int g = groups.groupOf[size_t(n)];
        if (g < 0)
            continue;
        groups.position[size_t(n)] = next[size_t(g)];
        groups.members[size_t(next[size_t(g)]++)] = n;
    }
    return groups;
}

} // namespace

LoserRules ReadLoserRules()
{
    LoserRules rules;
    rules.masterFolder = DupBoolSetting(QStringLiteral("MasterFolder"), QStringLiteral("0"));
    rules.series = DupBoolSetting(QStringLiteral("TerminSerie"), QStringLiteral("0"));
    rules.keepOldest = DupBoolSetting(QStringLiteral("OldDel"), QStringLiteral("0"));
    for (int criterion = 2; criterion >= 0; --criterion)
        rules.criterionAtLevel[size_t(levelSetting(criterion))] = criterion;
    return rules;
}

DupLoser ChooseLoser(const LoserRules &rules, bool masterI, bool masterJ, const QDateTime &createdI,
                     const QDateTime &createdJ, bool seriesI, bool seriesJ)
{
    const Verdict verdicts[3] = {
        preferFlag(rules.masterFolder, masterI, masterJ),
        preferFlag(rules.series, seriesI, seriesJ),
        byAge(rules.keepOldest, createdI, createdJ),
    };
    for (int level = 2; level >= 0; --level) {
        const Verdict verdict = verdicts[rules.criterionAtLevel[size_t(level)]];
        if (verdict != Verdict::Abstain)
            return verdict == Verdict::First ? DupLoser::First : DupLoser::Second;
    }
    return DupLoser::Second;
}

DupPairs FindDuplicatePairs(DupItemTable &table, bool folderInside, const std::function<LoserRules()> &readRules)
{
    const ItemGroups groups = groupItems(table, folderInside);
    DupPairs pairs;
    std::optional<LoserRules> rules;
    DupProgress progress;
    for (int i = 1; i <= table.itemCount(); ++i) {
        progress.step(i, [i] { return QStringLiteral("Phase 2: Analysiere Element %1").arg(i); });
        DupItem &first = table.item(i);
        if (first.marked || first.unread)
            continue;
        // The later members of i's group, until i loses.
        const int groupEnd = groups.end[size_t(groups.groupOf[size_t(i)])];
        for (int p = groups.position[size_t(i)] + 1; p < groupEnd && !first.marked; ++p) {
            const int j = groups.members[size_t(p)];
            DupItem &second = table.item(j);
            pairs.add(i, j);
            if (!rules)
                rules = readRules();
            const DupLoser loser = ChooseLoser(*rules, first.isMaster, second.isMaster, first.created,
                                               second.created, first.isSeries, second.isSeries);
            (loser == DupLoser::First ? first : second).marked = true;
        }
    }
    return pairs;
}

int FindGroupRoot(const DupPairs &pairs, int value, int k)
{
    for (int t = 0; t < pairs.count(); ++t) {
        if (pairs.second[t] == value)
            return pairs.first[t];
    }
    return pairs.first[k];
}

void MergePairs(DupPairs &pairs)
{
    // Pair index by second item. Filled backwards, so that the first pair of
    // a second item wins, as in FindGroupRoot.
    QHash<int, int> pairOfSecond;
    pairOfSecond.reserve(pairs.count());
    for (int t = pairs.count() - 1; t >= 0; --t)
        pairOfSecond.insert(pairs.second[t], t);
    for (int k = 0; k < pairs.count(); ++k) {
        const auto t = pairOfSecond.constFind(pairs.first[k]);
        if (t != pairOfSecond.constEnd())
            pairs.first[k] = pairs.first[*t];
    }
}
