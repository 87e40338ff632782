// Re-import and move of link attachments on a real profile: the round trip
// byte for byte, links whose file is gone, user-made links, a same-named file
// in the target, the folder question, a failing save, and the three runs
// killed at every step that reached the disk (the test starts itself as the
// program that is killed).
#include "attachments/AttachmentFiles.h"
#include "attachments/AttachmentFixture.h"
#include "attachments/AttachmentSaveFunctions.h"
#include "attachments/BrowseForFolderFunctions.h"

#include <QApplication>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <csignal>
#include <sys/stat.h>

namespace {

const QString kNotImported = QStringLiteral(
    " Anlagen konnten nicht importiert werden, weil das verknüpfte Element nicht gefunden wurde.");
const QString kNotMoved = QStringLiteral(
    " Anlagen konnten nicht verschoben werden, weil das verknüpfte Element nicht gefunden wurde.");

// Answers the folder question with a fixed folder and records the titles.
class ScriptedBrowser
{
public:
    explicit ScriptedBrowser(const QString &answer)
    {
        m_previous = SetFolderBrowser([this, answer](const QString &title) {
            titles << title;
            return answer;
        });
    }
    ~ScriptedBrowser() { SetFolderBrowser(std::move(m_previous)); }
    QStringList titles;

private:
    FolderBrowser m_previous;
};

// A second file system for the target of a move, or an empty text.
QString otherFileSystemFolder(const QTemporaryDir &dir, const QString &here)
{
    struct stat a {}, b {};
    if (!dir.isValid() || ::stat(QFile::encodeName(dir.path()).constData(), &b) != 0
        || ::stat(QFile::encodeName(here).constData(), &a) != 0 || a.st_dev == b.st_dev)
        return {};
    return dir.path();
}

// The killed program: runs one command on the profile of the arguments and
// ends itself with SIGKILL right after its killAt-th step on the disk.
// Arguments: --child-run command programFolder settingsFile profile killAt target
int runChild(const QStringList &args)
{
    SetProgramFolder(args.at(3));
    SetSettingsFile(args.at(4));
    SetProfileFolder(args.at(5));
    QuietRunHost host;
    SetRunHost(&host);
    MessageRecorder boxes;
    NodeTree tree;
    tree.setImageList(FolderImageList());
    SetFolderTree(&tree);
    tvwFolderFill();
    const int inbox = nodeOfPath(tree, SelectionFixture::fullPath(QStringLiteral("Posteingang")));
    tree.setChecked(inbox, true);
    tree.setSelectedIndex(inbox);
    int steps = 0;
    const int killAt = args.at(6).toInt();
    SetDurableStepHook([&] {
        if (++steps == killAt)
            std::raise(SIGKILL);
    });
    SetFolderBrowser([target = args.at(7)](const QString &) { return target; });
    if (args.at(2) == u"export")
        SaveAttachments();
    else if (args.at(2) == u"move")
        MoveAttachments();
    else
        ImportAttachments();
    SetFolderTree(nullptr);
    for (const MessageRequest &box : boxes.requests())
        std::fprintf(stderr, "%s\n", qPrintable(box.prompt));
    return boxes.count() == 1 && boxes.last().buttons == int(MsgInformation) ? 0 : 5;
}

Item addLinkMail(const QString &subject, const QStringList &paths)
{
    Item mail = SelectionFixture::folder("Posteingang").Items().Add();
    mail.setSubject(subject);
    for (const QString &path : paths)
        mail.Attachments().Add(path, olByReference);
    mail.Save();
    return mail;
}

} // namespace

class tst_AttachmentLinks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void exportAndImportRoundTrip();
    void importCountsLinksWithoutFile_data();
    void importCountsLinksWithoutFile();
    void importSaveFailureKeepsFile();
    void moveIntoFolderWithSameName();
    void moveIntoFolderWhereFilesLie();
    void moveCancelledDoesNothing();
    void moveCountsLinksWithoutFile();
    void moveAcrossFileSystems();
    void killedAtEveryStepLosesNoLink_data();
    void killedAtEveryStepLosesNoLink();
};

void tst_AttachmentLinks::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_AttachmentLinks::exportAndImportRoundTrip()
{
    AttachmentFixture f;
    QList<AttachmentSample> samples{{"Bild.jpg", SampleBytes(250000, 51)},
                                {"leer.txt", QByteArray()},
                                {"Über uns?.html", SampleBytes(3000, 52)},
                                {"Bild.jpg", SampleBytes(17, 53)}};
    const Item mail = f.addMail("Posteingang", "Hin und zurück", samples);
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();
    QCOMPARE(f.exportedFiles().size(), 4);
    ImportAttachments();

    QCOMPARE(messages.requests().at(1).prompt, QStringLiteral("4 Anlagen importiert."));
    QCOMPARE(messages.count(), 2);
    QVERIFY(f.exportedFiles().isEmpty());
    // Back as real attachments with the same bytes; the names are those of
    // the files, so a cleaned or numbered name stays changed.
    const Item back = f.reread(mail);
    QMap<QString, QByteArray> contents;
    for (int i = 1; i <= back.Attachments().Count(); ++i) {
        const Attachment a = back.Attachments().Item(i);
        QCOMPARE(a.Type(), int(olByValue));
        contents.insert(a.FileName(), AttachmentBytes(a, f.scratch));
    }
    QCOMPARE(contents.keys(), (QStringList{"Bild(1).jpg", "Bild.jpg", "leer.txt", "Über uns.html"}));
    QCOMPARE(contents.value("Bild.jpg"), samples.at(3).content);
    QCOMPARE(contents.value("Bild(1).jpg"), samples.at(0).content);
    QCOMPARE(contents.value("leer.txt"), samples.at(1).content);
    QCOMPARE(contents.value("Über uns.html"), samples.at(2).content);
    QVERIFY(f.host.statusTexts.contains(QStringLiteral("Importiere Anlagen...")));
}

void tst_AttachmentLinks::importCountsLinksWithoutFile_data()
{
    QTest::addColumn<QStringList>("links");   // files in the scratch folder; "-" in front: file missing
    QTest::addColumn<int>("imported");
    QTest::addColumn<int>("notFound");
    QTest::addColumn<QStringList>("remaining");

    QTest::newRow("Datei fehlt: Verknüpfung bleibt")
        << QStringList{"-weg.pdf"} << 0 << 1 << QStringList{"4 weg.pdf -> weg.pdf"};
    QTest::newRow("eigene Verknüpfung außerhalb des Exportordners")
        << QStringList{"Fremd.doc"} << 1 << 0 << QStringList{"1 Fremd.doc"};
    QTest::newRow("zwei Verknüpfungen auf eine Datei")
        << QStringList{"Doppelt.txt", "Doppelt.txt"} << 1 << 1
        << QStringList{"4 Doppelt.txt -> Doppelt.txt", "1 Doppelt.txt"};
    QTest::newRow("eine fehlt, eine da")
        << QStringList{"-fehlt.txt", "da.txt"} << 1 << 1 << QStringList{"4 fehlt.txt -> fehlt.txt", "1 da.txt"};
}

void tst_AttachmentLinks::importCountsLinksWithoutFile()
{
    QFETCH(QStringList, links);
    QFETCH(int, imported);
    QFETCH(int, notFound);
    QFETCH(QStringList, remaining);

    AttachmentFixture f;
    QStringList paths;
    for (const QString &link : links) {
        const QString path = QDir(f.scratch).filePath(link.startsWith(u'-') ? link.mid(1) : link);
        if (!link.startsWith(u'-'))
            WriteWholeFile(path, link.toUtf8());
        paths << path;
    }
    const Item mail = addLinkMail("Verknüpft", paths);
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    ImportAttachments();

    QCOMPARE(messages.requests().at(0).prompt, QString::number(imported) + QStringLiteral(" Anlagen importiert."));
    QCOMPARE(messages.count(), notFound > 0 ? 2 : 1);
    if (notFound > 0) {
        QCOMPARE(messages.last().prompt, QString::number(notFound) + kNotImported);
        QCOMPARE(messages.last().buttons, int(MsgStop));
        QCOMPARE(messages.last().title, QStringLiteral("Fehler!"));
    }
    QCOMPARE(DescribeAttachments(f.reread(mail)), remaining);
    for (const QString &path : paths)
        QVERIFY2(!QFileInfo::exists(path), qPrintable(path)); // embedded files are gone
}

void tst_AttachmentLinks::importSaveFailureKeepsFile()
{
    AttachmentFixture f;
    const QString path = QDir(f.scratch).filePath(QStringLiteral("Wichtig.pdf"));
    const QByteArray content = SampleBytes(9000, 61);
    WriteWholeFile(path, content);
    const Item mail = addLinkMail("Wichtig", {path});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    StoreFaults::FailItem(mail.EntryID(), StoreFaults::FailSave);
    MessageRecorder messages;

    ImportAttachments();

    QCOMPARE(messages.count(), 1);
    QVERIFY(f.environment.readLog().contains(QStringLiteral("Sub: 1502")));
    QVERIFY(!f.host.running);
    StoreFaults::Reset();
    QCOMPARE(ReadWholeFile(path), content);
    QCOMPARE(DescribeAttachments(f.reread(mail)), (QStringList{"4 Wichtig.pdf -> Wichtig.pdf"}));
}

void tst_AttachmentLinks::moveIntoFolderWithSameName()
{
    AttachmentFixture f;
    const QString target = QDir(f.environment.folder()).filePath(QStringLiteral("Ziel"));
    QVERIFY(QDir().mkpath(target));
    WriteWholeFile(QDir(target).filePath(QStringLiteral("Angebot.pdf")), "fremd");
    const QByteArray offer = SampleBytes(1234, 71);
    const Item mail = f.addMail("Posteingang", "Angebot", {{"Angebot.pdf", offer}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;
    ScriptedBrowser browser(target); // without a separator at the end
    SaveAttachments();

    MoveAttachments();

    QCOMPARE(browser.titles, (QStringList{"Geben Sie den Zielordner an:"}));
    QCOMPARE(messages.last().prompt, QStringLiteral("1 Anlagen verschoben."));
    QCOMPARE(messages.last().buttons, int(MsgInformation));
    QVERIFY(f.exportedFiles().isEmpty());
    QCOMPARE(ReadWholeFile(QDir(target).filePath(QStringLiteral("Angebot.pdf"))), QByteArray("fremd"));
    QCOMPARE(ReadWholeFile(QDir(target).filePath(QStringLiteral("Angebot(1).pdf"))), offer);
    const Item moved = f.reread(mail);
    QCOMPARE(DescribeAttachments(moved).size(), 1);
    QCOMPARE(moved.Attachments().Item(1).GetProperty(PR_ATTACH_PATHNAME).toString(),
             QDir(target).filePath(QStringLiteral("Angebot(1).pdf")));
    QVERIFY(f.host.statusTexts.contains(QStringLiteral("Verschiebe Anlagen...")));
}

void tst_AttachmentLinks::moveIntoFolderWhereFilesLie()
{
    AttachmentFixture f;
    const Item mail = f.addMail("Posteingang", "Bleibt", {{"Liste.xlsx", SampleBytes(800, 81)}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;
    SaveAttachments();
    const QDateTime saved = f.reread(mail).LastModificationTime();
    ScriptedBrowser browser(f.exportFolder + u'/');

    MoveAttachments();

    QCOMPARE(messages.last().prompt, QStringLiteral("0 Anlagen verschoben."));
    QCOMPARE(f.exportedFiles(), (QStringList{"Liste.xlsx"}));
    const Item after = f.reread(mail);
    QCOMPARE(after.LastModificationTime(), saved);
    QCOMPARE(DescribeAttachments(after), (QStringList{"4 Liste.xlsx -> Liste.xlsx"}));
}

void tst_AttachmentLinks::moveCancelledDoesNothing()
{
    AttachmentFixture f;
    const Item mail = f.addMail("Posteingang", "Bleibt", {{"a.txt", "a"}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;
    SaveAttachments();
    messages.clear();
    ScriptedBrowser browser{QString()};

    MoveAttachments();

    QCOMPARE(messages.count(), 0);
    QCOMPARE(f.host.runningChanges, 2); // only those of the export
    QCOMPARE(f.exportedFiles(), (QStringList{"a.txt"}));
}

void tst_AttachmentLinks::moveCountsLinksWithoutFile()
{
    AttachmentFixture f;
    const QString target = QDir(f.environment.folder()).filePath(QStringLiteral("Ziel"));
    QVERIFY(QDir().mkpath(target));
    const QString present = QDir(f.scratch).filePath(QStringLiteral("da.txt"));
    WriteWholeFile(present, "da");
    const Item mail = addLinkMail("Teils", {QDir(f.scratch).filePath(QStringLiteral("weg.txt")), present});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;
    ScriptedBrowser browser(target);

    MoveAttachments();

    QCOMPARE(messages.count(), 2);
    QCOMPARE(messages.requests().at(0).prompt, QStringLiteral("1 Anlagen verschoben."));
    QCOMPARE(messages.requests().at(1).prompt, QStringLiteral("1") + kNotMoved);
    QCOMPARE(messages.requests().at(1).title, QStringLiteral("Fehler!"));
    QVERIFY(!QFileInfo::exists(present));
    QCOMPARE(ReadWholeFile(QDir(target).filePath(QStringLiteral("da.txt"))), QByteArray("da"));
    QCOMPARE(DescribeAttachments(f.reread(mail)), (QStringList{"4 weg.txt -> weg.txt", "4 da.txt -> da.txt"}));
}

void tst_AttachmentLinks::moveAcrossFileSystems()
{
    // /dev/shm is a memory file system on most Linux systems: there a move
    // is a copy, synced and compared, before the original goes.
    QTemporaryDir target(QStringLiteral("/dev/shm/varnex-test-XXXXXX"));
    struct stat here {}, there {};
    AttachmentFixture f;
    if (!target.isValid() || ::stat(QFile::encodeName(target.path()).constData(), &there) != 0
        || ::stat(QFile::encodeName(f.exportFolder).constData(), &here) != 0 || here.st_dev == there.st_dev)
        QSKIP("no second file system at /dev/shm");
    const QByteArray content = SampleBytes(300000, 91);
    const Item mail = f.addMail("Posteingang", "Weit weg", {{"Plan.dwg", content}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;
    SaveAttachments();
    ScriptedBrowser browser(target.path());

    MoveAttachments();

    QCOMPARE(messages.last().prompt, QStringLiteral("1 Anlagen verschoben."));
    QVERIFY(f.exportedFiles().isEmpty());
    const QString moved = QDir(target.path()).filePath(QStringLiteral("Plan.dwg"));
    QCOMPARE(ReadWholeFile(moved), content);
    QCOMPARE(f.reread(mail).Attachments().Item(1).GetProperty(PR_ATTACH_PATHNAME).toString(), moved);
}

void tst_AttachmentLinks::killedAtEveryStepLosesNoLink_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<bool>("otherFileSystem");
    QTest::newRow("Export") << "export" << false;
    QTest::newRow("Verschieben") << "move" << false;
    QTest::newRow("Verschieben auf ein anderes Dateisystem") << "move" << true;
    QTest::newRow("Import") << "import" << false;
}

// At every instant each attachment is in its item or in a file that a link
// of the item names: killed after any step, no link names a missing file and
// every attachment is there exactly once, byte for byte.
void tst_AttachmentLinks::killedAtEveryStepLosesNoLink()
{
    QFETCH(QString, command);
    QFETCH(bool, otherFileSystem);
    const QList<AttachmentSample> first{{"Angebot.pdf", SampleBytes(7000, 11)}, {"Skizze.png", SampleBytes(3000, 12)}};
    const QList<AttachmentSample> second{{"Liste.csv", SampleBytes(5000, 13)}};
    for (int killAt = 1;; ++killAt) {
        AttachmentFixture f;
        QTemporaryDir shm(QStringLiteral("/dev/shm/varnex-test-XXXXXX"));
        QString target = QDir(f.environment.folder()).filePath(QStringLiteral("Ziel"));
        QDir().mkpath(target);
        if (otherFileSystem) {
            target = otherFileSystemFolder(shm, f.exportFolder);
            if (target.isEmpty())
                QSKIP("no second file system at /dev/shm");
        }
        const QList<Item> mails{f.addMail("Posteingang", "Eins", first), f.addMail("Posteingang", "Zwei", second)};
        if (command != u"export") {
            f.readTree();
            QVERIFY(f.select({"Posteingang"}));
            MessageRecorder boxes;
            SaveAttachments();
            QCOMPARE(boxes.last().prompt, QStringLiteral("3 Anlagen gespeichert."));
        }
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("--child-run"), command, f.environment.folder(), f.environment.settingsFile(),
                     f.profile.path(), QString::number(killAt), target});
        QVERIFY(child.waitForFinished(120000));
        const bool killed = child.exitStatus() == QProcess::CrashExit;
        QVERIFY2(killed || child.exitCode() == 0,
                 qPrintable(QStringLiteral("Schritt %1, Ende %2: ").arg(killAt).arg(child.exitCode())
                            + QString::fromUtf8(child.readAllStandardError())));

        for (int m = 0; m < mails.size(); ++m) {
            const Item mail = f.reread(mails.at(m));
            const Attachments attachments = mail.Attachments();
            QList<QByteArray> held;
            for (int i = 1; i <= attachments.Count(); ++i) {
                const Attachment a = attachments.Item(i);
                if (a.Type() != olByReference) {
                    held << AttachmentBytes(a, f.scratch);
                    continue;
                }
                const QString path = a.GetProperty(PR_ATTACH_PATHNAME).toString();
                QVERIFY2(FileExists(path), qPrintable(QStringLiteral("Schritt %1: %2 fehlt").arg(killAt).arg(path)));
                held << ReadWholeFile(path);
            }
            QList<QByteArray> expected;
            for (const AttachmentSample &sample : m == 0 ? first : second)
                expected << sample.content;
            std::sort(held.begin(), held.end());
            std::sort(expected.begin(), expected.end());
            QVERIFY2(held == expected, qPrintable(QStringLiteral("Schritt %1, Mail %2").arg(killAt).arg(m + 1)));
        }
        if (!killed)
            break;
    }
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc >= 2 && QByteArray(argv[1]) == "--child-run")
        return runChild(app.arguments());
    tst_AttachmentLinks test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_attachmentlinks.moc"
