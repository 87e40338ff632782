// Reading the folder tree of a profile with 5,000 folders into the tree of
// the main window: the median of several reads (target: under one second).
//
//   QT_QPA_PLATFORM=offscreen build/bin/bench_foldertree [folders] [rounds]
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

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const int folders = argc > 1 ? std::atoi(argv[1]) : 5000;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 7;

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
    for (int round = 0; round < rounds; ++round) {
        clock.restart();
        tvwFolderFill();
        times.append(clock.elapsed());
    }
    std::sort(times.begin(), times.end());
    const qint64 median = times.at(times.size() / 2);
    std::printf("tree read: %d nodes, median %lld ms over %d reads (min %lld, max %lld)\n", tree.nodeCount(),
                median, rounds, times.first(), times.last());
    std::printf("per folder: %.1f us; target under 1000 ms: %s\n", 1000.0 * double(median) / tree.nodeCount(),
                median < 1000 ? "met" : "NOT met");
    SetFolderTree(nullptr);
    return 0;
}
