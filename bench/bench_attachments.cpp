// Attachment export and re-import on a temporary profile: milliseconds per
// attachment for the whole run (file written and synced, item saved twice
// per attachment, link added), and the part of it that the sync of each
// file takes. Arguments: number of mails (default 100), attachments per
// mail (3), bytes per attachment (50000), rounds (5). Prints medians.
#include "attachments/AttachmentFiles.h"
#include "attachments/AttachmentSaveFunctions.h"
#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "folders/FolderState.h"
#include "folders/FolderStructureFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "store/Store.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

void fillInbox(int mails, int perMail, int bytes)
{
    const MAPIFolder inbox = Application().GetNamespace().GetDefaultFolder(olFolderInbox);
    QByteArray content(bytes, Qt::Uninitialized);
    for (int m = 0; m < mails; ++m) {
        Item mail = inbox.Items().Add();
        mail.setSubject(QStringLiteral("Mail %1").arg(m));
        for (int a = 0; a < perMail; ++a) {
            for (char &c : content)
                c = char(QRandomGenerator::global()->bounded(256));
            mail.Attachments().AddData(content, QStringLiteral("Anlage %1.bin").arg(a));
        }
        mail.Save();
    }
}

// Milliseconds of writing and syncing count files of the size, and of
// writing them alone.
std::pair<double, double> syncCost(const QString &folder, int count, int bytes)
{
    const QByteArray content(bytes, 'x');
    QElapsedTimer timer;
    double plain = 0;
    double synced = 0;
    for (int withSync = 0; withSync < 2; ++withSync) {
        timer.start();
        for (int i = 0; i < count; ++i) {
            const QString path = QDir(folder).filePath(QStringLiteral("s%1-%2").arg(withSync).arg(i));
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
                return {0, 0};
            file.close();
            if (withSync)
                SyncFile(path, bytes);
        }
        (withSync ? synced : plain) = double(timer.nsecsElapsed()) / 1e6 / count;
    }
    return {plain, synced};
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const int mails = args.size() > 1 ? args.at(1).toInt() : 100;
    const int perMail = args.size() > 2 ? args.at(2).toInt() : 3;
    const int bytes = args.size() > 3 ? args.at(3).toInt() : 50000;
    const int rounds = args.size() > 4 ? args.at(4).toInt() : 5;
    const int attachments = mails * perMail;

    QTemporaryDir dir;
    SetProgramFolder(dir.path());
    SetSettingsFile(dir.filePath(QStringLiteral("Varnex.ini")));
    InitDefaultSettings();
    SetMessageHandler([](const MessageRequest &) { return int(AnswerOk); });
    const QString exportFolder = dir.filePath(QStringLiteral("Anlagen"));
    QDir().mkpath(exportFolder);
    SaveSetting(QStringLiteral("AttPath"), exportFolder);
    SetProfileFolder(dir.filePath(QStringLiteral("Profil")));
    CreateProfile();
    fillInbox(mails, perMail, bytes);

    NodeTree tree;
    tree.setImageList(FolderImageList());
    SetFolderTree(&tree);
    tvwFolderFill();
    for (int i = 1; i <= tree.nodeCount(); ++i) {
        if (tree.node(i)->text(0) == QStringLiteral("Posteingang")) {
            tree.setChecked(i, true);
            tree.setSelectedIndex(i);
        }
    }

    QList<double> exportMs, importMs;
    QElapsedTimer timer;
    for (int r = 0; r < rounds; ++r) {
        timer.start();
        SaveAttachments();
        exportMs << double(timer.nsecsElapsed()) / 1e6 / attachments;
        timer.start();
        ImportAttachments();
        importMs << double(timer.nsecsElapsed()) / 1e6 / attachments;
    }
    const auto [plain, synced] = syncCost(dir.filePath(QStringLiteral("Anlagen")), 200, bytes);
    std::printf("%d mails x %d attachments of %d bytes, %d rounds\n", mails, perMail, bytes, rounds);
    std::printf("export: median %.3f ms per attachment\n", median(exportMs));
    std::printf("import: median %.3f ms per attachment\n", median(importMs));
    std::printf("export/import ratio: %.2f\n", median(exportMs) / median(importMs));
    std::printf("file write alone %.3f ms, with sync %.3f ms (sync share of export %.0f %%)\n", plain, synced,
                100.0 * (synced - plain) / median(exportMs));
    std::fflush(stdout);
    SetFolderTree(nullptr);
    // The store session ends while the application still lives.
    SetProfileFolder(QString());
    return 0;
}
