// The telephone run and the restore as commands of the main window: on the
// folders ticked in the tree, refused for folders of another kind, and
// frmUndo driven through its widgets with one pass per ticked box.
#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "folders/FolderFixture.h"
#include "folders/FolderFunctions.h"
#include "folders/FolderStructureFunctions.h"
#include "frame/CommandRegistry.h"
#include "frame/MainCommands.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "restore/BackupFunctions.h"
#include "restore/frmUndo.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTest>

class tst_ContactCommands : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void telRunsOnTickedFolders_data();
    void telRunsOnTickedFolders();
    void telRefusesOtherFolders();
    void undoRunsTheTickedPasses_data();
    void undoRunsTheTickedPasses();

private:
    void tickAndMark(const QStringList &paths);
    static Item addContact(const QString &folder, const QString &field, const QString &value);

    TestEnvironment *m_env = nullptr;
    FolderProfile *m_profile = nullptr;
    NodeTree *m_tree = nullptr;
    MessageRecorder *m_boxes = nullptr;
    QuietRunHost m_host;
};

namespace {
const QString Store = QStringLiteral("Persönliche Ordner");
}

void tst_ContactCommands::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_ContactCommands::init()
{
    m_env = new TestEnvironment(false, false);
    CopyDefaultSettings(*m_env);
    QVERIFY(WriteSampleTelDb(m_env->folder()));
    m_profile = new FolderProfile;
    FolderProfile::folder(Store + QStringLiteral("/Kontakte")).Folders().Add(QStringLiteral("Kunden"));
    m_boxes = new MessageRecorder;
    m_host = QuietRunHost();
    SetRunHost(&m_host);
    RegisterMainCommands();
}

void tst_ContactCommands::cleanup()
{
    SetRunHost(nullptr);
    SetFolderTree(nullptr);
    delete m_tree;
    m_tree = nullptr;
    delete m_boxes;
    delete m_profile;
    delete m_env;
}

Item tst_ContactCommands::addContact(const QString &folder, const QString &field, const QString &value)
{
    Item contact = FolderProfile::folder(Store + u'/' + folder).Items().Add();
    contact.set(field, value);
    contact.Save();
    return contact;
}

// Reads the tree (after the items are made), ticks the folders and marks
// the first.
void tst_ContactCommands::tickAndMark(const QStringList &paths)
{
    m_tree = new NodeTree;
    m_tree->setImageList(FolderImageList());
    SetFolderTree(m_tree);
    tvwFolderFill();
    for (const QString &path : paths) {
        const int node = nodeOfPath(*m_tree, Store + u'/' + path);
        QVERIFY2(node > 0, qPrintable(path));
        m_tree->setChecked(node, true);
    }
    m_tree->setSelectedIndex(nodeOfPath(*m_tree, Store + u'/' + paths.first()));
}

void tst_ContactCommands::telRunsOnTickedFolders_data()
{
    QTest::addColumn<QString>("hideFax");
    QTest::addColumn<QString>("fax");
    QTest::newRow("HideFax 1") << "1" << "Fax: +49 (30) 1";
    QTest::newRow("HideFax -1") << "-1" << "Fax: +49 (30) 1";
    QTest::newRow("HideFax True") << "True" << "Fax: +49 (30) 1";
    QTest::newRow("HideFax Wahr") << " wahr " << "Fax: +49 (30) 1";
    QTest::newRow("HideFax 0") << "0" << "+49 (30) 1";
    QTest::newRow("HideFax Falsch") << "Falsch" << "+49 (30) 1";
    QTest::newRow("HideFax unlesbar") << "vielleicht" << "+49 (30) 1";
}

void tst_ContactCommands::telRunsOnTickedFolders()
{
    QFETCH(QString, hideFax);
    QFETCH(QString, fax);
    const Item one = addContact("Kontakte", "BusinessFaxNumber", "030 1");
    const Item two = addContact("Kontakte/Kunden", "HomeTelephoneNumber", "0221 2");
    const Item untouched = addContact("Kontakte", "HomeTelephoneNumber", "+49 (30) 3");
    SaveSetting("HideFax", hideFax);
    tickAndMark({"Kontakte", "Kontakte/Kunden"});
    QVERIFY(RunCommand("Tel"));
    QCOMPARE(m_boxes->count(), 1);
    QCOMPARE(m_boxes->last().prompt, QStringLiteral("2 Kontakt(e) geändert."));
    QCOMPARE(one.text("BusinessFaxNumber"), fax);
    QCOMPARE(two.text("HomeTelephoneNumber"), QStringLiteral("+49 (221) 2"));
    QCOMPARE(untouched.UserProperties().Count(), 0);
    QVERIFY(!m_host.running);
}

void tst_ContactCommands::telRefusesOtherFolders()
{
    addContact("Kontakte", "HomeTelephoneNumber", "030 1");
    FolderProfile::addItems(FolderProfile::folder(Store + QStringLiteral("/Kalender")), 1);
    tickAndMark({"Kalender", "Kontakte"});
    QVERIFY(RunCommand("Tel"));
    QCOMPARE(m_boxes->count(), 1);
    QCOMPARE(m_boxes->last().prompt,
             QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Kontakte-Ordner aus."));
    QCOMPARE(m_host.runningChanges, 0);
}

void tst_ContactCommands::undoRunsTheTickedPasses_data()
{
    QTest::addColumn<bool>("names");
    QTest::addColumn<bool>("telephone");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("beide Kästchen") << true << true
                                    << QStringList{"Namen bei 1 Kontakten wiederhergestellt.",
                                                   "Telefonnummern bei 2 Kontakten wiederhergestellt."};
    QTest::newRow("nur Telefonnummern") << false << true
                                        << QStringList{"Telefonnummern bei 2 Kontakten wiederhergestellt."};
    QTest::newRow("nur Namen") << true << false << QStringList{"Namen bei 1 Kontakten wiederhergestellt."};
    QTest::newRow("keins") << false << false << QStringList{};
}

void tst_ContactCommands::undoRunsTheTickedPasses()
{
    QFETCH(bool, names);
    QFETCH(bool, telephone);
    QFETCH(QStringList, messages);
    Item anna = addContact("Kontakte", "HomeTelephoneNumber", "+49 (30) 1");
    WriteBackup(anna, "HomeTelephoneNumber", "030 1");
    anna.set("LastName", "Muster");
    WriteBackup(anna, "LastName", "Mustermann");
    anna.Save();
    Item bert = addContact("Kontakte/Kunden", "MobileTelephoneNumber", "+49 (221) 2");
    WriteBackup(bert, "MobileTelephoneNumber", "0221 2");
    bert.Save();
    tickAndMark({"Kontakte", "Kontakte/Kunden"});

    frmUndo dialog;
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Daten wiederherstellen"));
    // A click on the box itself, as the user makes it.
    const auto tick = [&dialog](const char *name) {
        auto *box = dialog.findChild<QCheckBox *>(name);
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, box->height() / 2));
        QVERIFY(box->isChecked());
    };
    if (names)
        tick("chkName");
    if (telephone)
        tick("chkTel");
    QTest::mouseClick(dialog.findChild<QPushButton *>("cmdUndo"), Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QStringList shown;
    for (const MessageRequest &box : m_boxes->requests()) {
        shown << box.prompt;
        QCOMPARE(box.title, QStringLiteral("Info!"));
    }
    QCOMPARE(shown, messages);
    QCOMPARE(anna.text("LastName"), names ? QStringLiteral("Mustermann") : QStringLiteral("Muster"));
    QCOMPARE(anna.text("HomeTelephoneNumber"), telephone ? QStringLiteral("030 1") : QStringLiteral("+49 (30) 1"));
    QCOMPARE(bert.text("MobileTelephoneNumber"), telephone ? QStringLiteral("0221 2") : QStringLiteral("+49 (221) 2"));
}

QTEST_MAIN(tst_ContactCommands)
#include "tst_contactcommands.moc"
