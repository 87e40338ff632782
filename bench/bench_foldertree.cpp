// Reading the folder tree of a profile into the tree of the main window:
// the median of several reads, for 5,000 and 20,000 folders (targets: the
// larger under one second of processor time and under five times the
// smaller, so that the read stays linear).
//
//   QT_QPA_PLATFORM=offscreen build/bin/bench_foldertree [folders [rounds]]
#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "folders/FolderState.h"
#include "folders/FolderStructureFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "store/Store.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

namespace {

// Three stores; in each, the default folders and then branches of ten
// folders with ten subfolders each, until the profile holds `folders`.
int buildProfile(int folders)
{
    const QList<MAPIFolder> stores{Application().GetNamespace().Folders().Item(1),
                                   AddStore(QStringLiteral("Archiv"), true),
                                   AddStore(QStringLiteral("Projekte"), true)};
    int made = 0;
    for (const MAPIFolder &store : stores)
        made += store.Folders().Count() + 1;
    for (int branch = 0; made < folders; ++branch) {
        const MAPIFolder store = stores.at(branch % stores.size());
        MAPIFolder top = store.Folders().Add(QStringLiteral("Ablage %1").arg(branch + 1), olFolderInbox);
        ++made;
        for (int i = 0; i < 10 && made < folders; ++i) {
            MAPIFolder middle = top.Folders().Add(QStringLiteral("Vorgang %1").arg(i + 1));
            ++made;
            for (int j = 0; j < 9 && made < folders; ++j, ++made)
                middle.Folders().Add(QStringLiteral("Teil %1").arg(j + 1));
        }
    }
    return made;
}

// The median wall and processor times in ms of reading the tree of a new
// profile with `folders` folders.
std::pair<qint64, qint64> measure(int folders, int rounds)
{
    QTemporaryDir dir;
    SetProgramFolder(dir.path());
    SetSettingsFile(dir.filePath(QStringLiteral("Varnex.ini")));
    InitDefaultSettings();
    SetProfileFolder(dir.filePath(QStringLiteral("Profil")));
    CreateProfile();

    QElapsedTimer clock;
    clock.start();
    const int made = buildProfile(folders);
    std::printf("profile: %d folders made in %lld ms\n", made, clock.elapsed());

    NodeTree tree;
    tree.setImageList(FolderImageList());
    SetFolderTree(&tree);
    QList<qint64> times;
    QList<qint64> cpuTimes;
    for (int round = 0; round < rounds; ++round) {
        clock.restart();
        const std::clock_t cpu = std::clock();
        tvwFolderFill();
        cpuTimes.append(qint64(std::clock() - cpu) * 1000 / CLOCKS_PER_SEC);
        times.append(clock.elapsed());
    }
    std::sort(times.begin(), times.end());
    std::sort(cpuTimes.begin(), cpuTimes.end());
    const qint64 median = times.at(times.size() / 2);
    const qint64 cpuMedian = cpuTimes.at(cpuTimes.size() / 2);
    std::printf("tree read: %d nodes, median %lld ms (processor %lld ms) over %d reads (min %lld, max %lld)\n",
                tree.nodeCount(), median, cpuMedian, rounds, times.first(), times.last());
    SetFolderTree(nullptr);
    return {median, cpuMedian};
}

} // namespace

// Without arguments: 5,000 and 20,000 folders; the larger must read in under
// a second of processor time and in under five times the smaller (linear).
int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
    if (argc > 1) {
        measure(std::atoi(argv[1]), rounds);
        return 0;
    }
    const auto [small, smallCpu] = measure(5000, rounds);
    const auto [large, largeCpu] = measure(20000, rounds);
    const double ratio = double(largeCpu) / double(std::max<qint64>(smallCpu, 1));
    std::printf("20,000 against 5,000 folders: %.2f times the processor time (wall %.2f); target under 5: %s\n",
                ratio, double(large) / double(std::max<qint64>(small, 1)), ratio < 5.0 ? "met" : "NOT met");
    std::printf("20,000 folders: %lld ms processor time; target under 1000 ms: %s\n", largeCpu,
                largeCpu < 1000 ? "met" : "NOT met");
    return 0;
}
