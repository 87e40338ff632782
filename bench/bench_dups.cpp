// Duplicate search figures.
//
// 1. 100,000 contacts in two folders of a temporary profile, every tenth a
//    copy of an earlier contact (10% duplicates): the time of Phase 1
//    (reading), Phase 2 (comparing and merging) and the display of the
//    result tree, each the median of three runs, and the peak memory.
//    Targets: Phase 2 under one second, the whole search under 15 seconds.
// 2. Phase 2 on 10,000 items in memory against the literal pairwise walk.
#include "../tests/duplicates/DupPairwiseWalk.h"
#include "duplicates/DupComparison.h"
#include "duplicates/DupsDel.h"
#include "duplicates/frmDups.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/frmHaupt.h"
#include "store/Store.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kContacts = 100000;
constexpr int kRuns = 3;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double peakRssMb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0; // kilobytes on Linux
}

double msSince(const QElapsedTimer &clock)
{
    return clock.nsecsElapsed() / 1e6;
}

// Processor time of this thread: on a machine shared with other work the
// wall clock shows the waiting too.
double cpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * 1e3 + now.tv_nsec / 1e6;
}

// Wall clock and processor time of one stretch.
struct Stretch {
    double wall = 0;
    double cpu = 0;
};

class StretchClock
{
public:
    StretchClock() { restart(); }
    void restart()
    {
        m_clock.start();
        m_cpu = cpuMs();
    }
    [[nodiscard]] Stretch lap()
    {
        const Stretch stretch{msSince(m_clock), cpuMs() - m_cpu};
        restart();
        return stretch;
    }

private:
    QElapsedTimer m_clock;
    double m_cpu = 0;
};

// The six fields that the stored defaults compare, for contact number source.
QStringList contactFields(int source)
{
    return {QStringLiteral("Nordquell %1 GmbH").arg(source % 5000), QStringLiteral("Vorname%1").arg(source % 997),
            QStringLiteral("Nachname%1").arg(source), QStringLiteral("+49 (171) %1").arg(source * 7),
            QStringLiteral("+49 (30) %1").arg(source * 13),
            QStringLiteral("Hauptstraße %1\r\n10115 Berlin").arg(source)};
}

void fillProfile(const MAPIFolder &first, const MAPIFolder &second)
{
    static const char *const kNames[] = {"CompanyName", "FirstName", "LastName", "MobileTelephoneNumber",
                                         "HomeTelephoneNumber", "HomeAddress"};
    QRandomGenerator rng(2024);
    const QDateTime base(QDate(2020, 1, 1), QTime(0, 0));
    for (int k = 0; k < kContacts; ++k) {
        const int source = (k % 10 == 9) ? int(rng.bounded(k)) : k;
        const QStringList values = contactFields(source);
        Item item = (k % 2 ? second : first).Items().Add(olContact);
        for (int f = 0; f < values.size(); ++f)
            item.set(QString::fromLatin1(kNames[f]), values[f]);
        item.set(QStringLiteral("FileAs"), values[2] + QStringLiteral(", ") + values[1]);
        item.set(QStringLiteral("CreationTime"), base.addSecs(rng.bounded(100000000)));
        item.Save();
    }
}

struct SearchTimes {
    Stretch phase1;
    Stretch phase2;
    Stretch display;
    int pairs = 0;
};

SearchTimes searchOnce(const FolderSelection &selection)
{
    const DupItemType &type = DupTypeOf(DupKind::Contact);
    const DupSwitches switches = ReadDupSwitches(type);
    SearchTimes times;
    StretchClock clock;
    QString errorText;
    DupItemTable table = ReadDupItems(type, switches, selection, errorText);
    times.phase1 = clock.lap();
    DupPairs pairs = FindDuplicatePairs(table, switches.folderInside);
    MergePairs(pairs);
    times.phase2 = clock.lap();
    times.pairs = pairs.count();
    ShowDuplicateTree(pairs, table, QStringLiteral("Contact"));
    times.display = clock.lap();
    return times;
}

// Contacts with six columns in memory; every tenth repeats an earlier one.
DupItemTable memoryTable(int count)
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
        const QStringList values = contactFields((k % 10 == 9) ? int(rng.bounded(k)) : k);
        for (int c = 0; c < 6; ++c)
            table.value(n, c) = values[c];
    }
    return table;
}

LoserRules defaultRules()
{
    LoserRules rules{true, true, true, {}};
    rules.criterionAtLevel = {2, 1, 0};
    return rules;
}

double literalWalkMs(DupItemTable table, int *pairCount)
{
    const LoserRules rules = defaultRules();
    QElapsedTimer clock;
    clock.start();
    DupPairs pairs = PairwiseWalk(table, false, rules);
    for (int k = 0; k < pairs.count(); ++k)
        pairs.first[k] = FindGroupRoot(pairs, pairs.first[k], k);
    *pairCount = pairs.count();
    return msSince(clock);
}

void compareWithLiteralWalk()
{
    const DupItemTable table = memoryTable(10000);
    std::vector<double> times;
    int pairs = 0;
    for (int run = 0; run < 5; ++run) {
        DupItemTable copy = table;
        QElapsedTimer clock;
        clock.start();
        DupPairs found = FindDuplicatePairs(copy, false, defaultRules);
        MergePairs(found);
        times.push_back(msSince(clock));
        pairs = found.count();
    }
    const double grouped = median(times);
    int literalPairs = 0;
    const double literal = literalWalkMs(table, &literalPairs);
    std::printf("Phase 2 on 10000 items in memory: grouped walk %.2f ms (median of 5), literal pairwise walk "
                "%.0f ms, ratio %.0f; pairs %d and %d\n",
                grouped, literal, literal / grouped, pairs, literalPairs);
}

} // namespace

int main(int argc, char **argv)
{
    // As the program does: the zone file is read once, not at every
    // creation time that Phase 1 turns into text.
    ReadTimeZoneFileOnce();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    SetProgramFolder(dir.path());
    SetSettingsFile(dir.filePath(QStringLiteral("Varnex.ini")));
    InitDefaultSettings();
    SetMessageHandler([](const MessageRequest &) { return int(AnswerOk); });
    SetProfileFolder(dir.filePath(QStringLiteral("Profil")));
    CreateProfile();

    compareWithLiteralWalk();

    const MAPIFolder contacts = Application().GetNamespace().GetDefaultFolder(olFolderContacts);
    const MAPIFolder customers = contacts.Folders().Add(QStringLiteral("Kunden"));
    QElapsedTimer clock;
    clock.start();
    fillProfile(contacts, customers);
    std::printf("Filling %d contacts into two folders: %.1f s (not part of the search)\n", kContacts,
                msSince(clock) / 1000);
    const double rssAfterFill = peakRssMb();

    frmHaupt window; // the result tree lives in its duplicate panel
    FolderSelection selection;
    selection.folders = {contacts, customers};
    selection.itemCount = kContacts;
    selection.markedIndex = 0;
    selection.ok = true;

    std::vector<double> wall[4], cpu[4]; // phase 1, phase 2, display, whole
    int pairs = 0;
    double rssAfterFirst = 0;
    for (int run = 0; run < kRuns; ++run) {
        const SearchTimes times = searchOnce(selection);
        if (run == 0)
            rssAfterFirst = peakRssMb();
        const Stretch parts[3] = {times.phase1, times.phase2, times.display};
        for (int p = 0; p < 3; ++p) {
            wall[p].push_back(parts[p].wall);
            cpu[p].push_back(parts[p].cpu);
        }
        wall[3].push_back(parts[0].wall + parts[1].wall + parts[2].wall);
        cpu[3].push_back(parts[0].cpu + parts[1].cpu + parts[2].cpu);
        pairs = times.pairs;
    }
    std::printf("Search over %d contacts, %d pairs, medians of %d runs (wall clock, processor time):\n", kContacts,
                pairs, kRuns);
    const char *const labels[4] = {"Phase 1 (reading)           ", "Phase 2 (comparing, merging)",
                                   "Display of the result tree  ", "Whole search                "};
    const char *const targets[4] = {"", "   (target < 1000 ms)", "", "   (target < 15000 ms)"};
    for (int p = 0; p < 4; ++p)
        std::printf("  %s %8.1f ms, %8.1f ms%s\n", labels[p], median(wall[p]), median(cpu[p]), targets[p]);
    std::printf("Peak memory (resident): %.0f MB after filling, %.0f MB after the first search, %.0f MB after %d\n",
                rssAfterFill, rssAfterFirst, peakRssMb(), kRuns);
    return 0;
}
