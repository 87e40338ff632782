// Duplicate search figures: Phase 2 (grouped walk) on 100,000 contacts with
// 10% duplicates, and against the literal pairwise walk on 10,000 items.
// Targets: Phase 2 for 100,000 items under one second.
#include "duplicates/DupComparison.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Contacts with the six columns of the default switches; every tenth item
// repeats an earlier one.
DupItemTable contactTable(int count)
{
    DupItemTable table(6);
    table.reserve(count);
    QRandomGenerator rng(2024);
    const QDateTime base(QDate(2020, 1, 1), QTime(0, 0));
    for (int k = 0; k < count; ++k) {
        const int n = table.addItem();
        DupItem &item = table.item(n);
        item.unread = false;
        item.folderId = (k % 2) ? QStringLiteral("F2") : QStringLiteral("F1");
        item.isMaster = k % 2 == 0;
        item.created = base.addSecs(rng.bounded(100000000));
        const int source = (k % 10 == 9) ? int(rng.bounded(k)) : k;
        table.value(n, 0) = QStringLiteral("firma %1").arg(source % 5000);
        table.value(n, 1) = QStringLiteral("vorname%1").arg(source % 997);
        table.value(n, 2) = QStringLiteral("nachname%1").arg(source);
        table.value(n, 3) = QStringLiteral("+49 (171) %1").arg(source * 7);
        table.value(n, 4) = QStringLiteral("+49 (30) %1").arg(source * 13);
        table.value(n, 5) = QStringLiteral("Hauptstraße %1\r\n10115 Berlin").arg(source);
    }
    return table;
}

LoserRules defaultRules()
{
    LoserRules rules{true, true, true, {}};
    rules.criterionAtLevel = {2, 1, 0};
    return rules;
}

double phase2Ms(const DupItemTable &source, int *pairCount)
{
    DupItemTable table = source;
    QElapsedTimer clock;
    clock.start();
    DupPairs pairs = FindDuplicatePairs(table, false, defaultRules);
    MergePairs(pairs);
    *pairCount = pairs.count();
    return clock.nsecsElapsed() / 1e6;
}

double literalWalkMs(const DupItemTable &source, int *pairCount)
{
    DupItemTable table = source;
    const LoserRules rules = defaultRules();
    QElapsedTimer clock;
    clock.start();
    DupPairs pairs;
    for (int i = 1; i <= table.itemCount(); ++i) {
        for (int j = i + 1; j <= table.itemCount(); ++j) {
            if (table.item(i).marked)
                continue;
            bool differ = false;
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
    for (int k = 0; k < pairs.count(); ++k)
        pairs.first[k] = FindGroupRoot(pairs, pairs.first[k], k);
    *pairCount = pairs.count();
    return clock.nsecsElapsed() / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);

    const DupItemTable large = contactTable(100000);
    std::vector<double> times;
    int pairs = 0;
    for (int run = 0; run < 5; ++run)
        times.push_back(phase2Ms(large, &pairs));
    std::printf("Phase 2, 100000 items: median %.1f ms over 5 runs, %d pairs (target < 1000 ms)\n", median(times),
                pairs);

    const DupItemTable small = contactTable(10000);
    times.clear();
    for (int run = 0; run < 5; ++run)
        times.push_back(phase2Ms(small, &pairs));
    const double grouped = median(times);
    int literalPairs = 0;
    const double literal = literalWalkMs(small, &literalPairs);
    std::printf("Phase 2, 10000 items: grouped walk %.2f ms, literal pairwise walk %.0f ms, ratio %.0f, pairs %d/%d\n",
                grouped, literal, literal / grouped, pairs, literalPairs);
    return 0;
}
