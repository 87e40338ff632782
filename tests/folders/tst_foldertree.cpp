// Reading the folder tree from a real profile: order, keys, images and IDs,
// skipped stores, the node limit, a profile that cannot be read, and the
// watchdog on a slow store.
#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "folders/FolderFunctions.h"
#include "folders/FolderStructureFunctions.h"
#include "frame/RegistryFunctions.h"
#include "support/TestSupport.h"
#include "folders/FolderFixture.h"
#include "frame/frmHaupt.h"

#include <QPushButton>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QDir>
#include <QFile>
#include <QTimer>

class tst_FolderTree : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void treeFollowsStoresDepthFirst();
    void nodesCarryTheirFolderIds();
    void imagesFollowContainerClass_data();
    void imagesFollowContainerClass();
    void skippedStoreLeavesGap_data();
    void skippedStoreLeavesGap();
    void damagedStoreIsPassedOver_data();
    void damagedStoreIsPassedOver();
    void readingAgainStartsAfresh();
    void idleTimeSetting_data();
    void idleTimeSetting();
    void nodeLimitEndsTheBranch();
    void containerClassOfRows_data();
    void containerClassOfRows();
    void unreadableProfileGivesEmptyTree();
    void watchdogOnSlowStore_data();
    void watchdogOnSlowStore();
    void watchdogNeverStacksQuestions();
    void declinedQuestionNeverReturns();
    void windowShowsProfileAndRereadsOnRequest();

private:
    QStringList keysInOrder() const;

    TestEnvironment *m_env = nullptr;
    FolderProfile *m_profile = nullptr;
    NodeTree *m_tree = nullptr;
};

void tst_FolderTree::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_FolderTree::init()
{
    m_env = new TestEnvironment(false);
    m_profile = new FolderProfile;
    m_tree = new NodeTree;
    m_tree->setImageList(FolderImageList());
    SetFolderTree(m_tree);
    FolderData().questionDeclined = false;
}

void tst_FolderTree::cleanup()
{
    SetFolderTree(nullptr);
    delete m_tree;
    delete m_profile;
    delete m_env;
}

QStringList tst_FolderTree::keysInOrder() const
{
    QStringList keys;
    for (int i = 1; i <= m_tree->nodeCount(); ++i)
        keys.append(m_tree->nodeKey(i));
    return keys;
}

void tst_FolderTree::treeFollowsStoresDepthFirst()
{
    MAPIFolder kontakte = FolderProfile::folder(QStringLiteral("Persönliche Ordner/Kontakte"));
    kontakte.Folders().Add(QStringLiteral("Familie")).Folders().Add(QStringLiteral("Verwandte"));
    kontakte.Folders().Add(QStringLiteral("Verein"));
    AddStore(QStringLiteral("Archiv"), true);
    MessageRecorder boxes;
    tvwFolderFill();

    QCOMPARE(boxes.count(), 0);
    QVERIFY(!FolderReadTimer().isActive());
    QCOMPARE(m_tree->topLevelItemCount(), 2);
    // Numbers without gaps, in reading order: every node comes after its
    // parent, and a branch is finished before its next sibling.
    QStringList expectedKeys;
    for (int i = 1; i <= m_tree->nodeCount(); ++i)
        expectedKeys.append(QStringLiteral("K%1").arg(i));
    QCOMPARE(keysInOrder(), expectedKeys);
    const int store = nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner"));
    const int contacts = nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner/Kontakte"));
    const int family = nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner/Kontakte/Familie"));
    const int relatives = nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner/Kontakte/Familie/Verwandte"));
    const int club = nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner/Kontakte/Verein"));
    const int archive = nodeOfPath(*m_tree, QStringLiteral("Archiv"));
    QCOMPARE(store, 1);
    QCOMPARE(family, contacts + 1);
    QCOMPARE(relatives, family + 1);
    QCOMPARE(club, relatives + 1);
    QVERIFY(archive > club);
    QVERIFY(nodeOfPath(*m_tree, QStringLiteral("Archiv/Kalender")) > archive);
    // Store children in the order of the store.
    const ::Folders subfolders = FolderProfile::folder(QStringLiteral("Persönliche Ordner")).Folders();
    QStringList storeOrder;
    for (const MAPIFolder &f : subfolders)
        storeOrder.append(f.Name());
    QStringList treeOrder;
    for (int child : m_tree->childIndexes(store))
        treeOrder.append(m_tree->nodeText(child));
    QCOMPARE(treeOrder, storeOrder);
    // Nothing ticked, expanded or marked.
    for (int i = 1; i <= m_tree->nodeCount(); ++i)
        QVERIFY(!m_tree->isChecked(i) && !m_tree->isExpanded(i));
    QCOMPARE(m_tree->selectedIndex(), 0);
}

void tst_FolderTree::nodesCarryTheirFolderIds()
{
    AddStore(QStringLiteral("Archiv"), true);
    tvwFolderFill();
    QVERIFY(m_tree->nodeCount() > 10);
    for (int i = 1; i <= m_tree->nodeCount(); ++i) {
        const MAPIFolder folder = GetFolderByKey(m_tree->nodeKey(i));
        QCOMPARE(folder.Name(), m_tree->nodeText(i));
        QCOMPARE(FolderData().entryIDs.at(i), folder.EntryID());
        QCOMPARE(FolderData().storeIDs.at(i), folder.StoreID());
    }
    QVERIFY(FolderData().entryIDs.at(0).isEmpty());
}

void tst_FolderTree::imagesFollowContainerClass_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("image");
    QTest::newRow("Speicher") << "Persönliche Ordner" << "Post";
    QTest::newRow("Posteingang") << "Persönliche Ordner/Posteingang" << "IPF.Note";
    QTest::newRow("Kalender") << "Persönliche Ordner/Kalender" << "IPF.Appointment";
    QTest::newRow("Kontakte") << "Persönliche Ordner/Kontakte" << "IPF.Contact";
    QTest::newRow("Aufgaben") << "Persönliche Ordner/Aufgaben" << "IPF.Task";
    QTest::newRow("Notizen") << "Persönliche Ordner/Notizen" << "IPF.StickyNote";
    QTest::newRow("Journal") << "Persönliche Ordner/Journal" << "IPF.Journal";
}

void tst_FolderTree::imagesFollowContainerClass()
{
    QFETCH(QString, path);
    QFETCH(QString, image);
    tvwFolderFill();
    const int node = nodeOfPath(*m_tree, path);
    QVERIFY2(node > 0, qPrintable(path));
    QCOMPARE(m_tree->nodeImage(node), image);
}

void tst_FolderTree::skippedStoreLeavesGap_data()
{
    QTest::addColumn<QString>("skip");
    QTest::addColumn<QStringList>("roots");
    QTest::addColumn<bool>("gap");
    QTest::newRow("Archiv übersprungen") << "Archiv" << QStringList{"Persönliche Ordner", "Projekte"} << true;
    QTest::newRow("andere Schreibweise wird gelesen")
        << "archiv" << QStringList{"Persönliche Ordner", "Archiv", "Projekte"} << false;
    QTest::newRow("Name ohne Speicher wirkt nicht")
        << "Alt" << QStringList{"Persönliche Ordner", "Archiv", "Projekte"} << false;
}

void tst_FolderTree::skippedStoreLeavesGap()
{
    QFETCH(QString, skip);
    QFETCH(QStringList, roots);
    QFETCH(bool, gap);
    AddStore(QStringLiteral("Archiv"), true);
    AddStore(QStringLiteral("Projekte"), false).Folders().Add(QStringLiteral("Angebote"), olFolderInbox);
    SaveSetting(QStringLiteral("FolderStructureSkip"), skip);
    tvwFolderFill();
    QStringList actualRoots;
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i)
        actualRoots.append(m_tree->topLevelItem(i)->text(0));
    QCOMPARE(actualRoots, roots);
    // The skipped store keeps its number: the next store's key jumps by one.
    const int projects = nodeOfPath(*m_tree, QStringLiteral("Projekte"));
    const int before = projects - 1;
    const int keyBefore = m_tree->nodeKey(before).mid(1).toInt();
    const int keyProjects = m_tree->nodeKey(projects).mid(1).toInt();
    QCOMPARE(keyProjects - keyBefore, gap ? 2 : 1);
    QCOMPARE(GetFolderByKey(m_tree->nodeKey(projects)).Name(), QStringLiteral("Projekte"));
}

void tst_FolderTree::damagedStoreIsPassedOver_data()
{
    QTest::addColumn<int>("damaged"); // number of the store file
    QTest::addColumn<QStringList>("roots");
    QTest::newRow("erster Speicher") << 1 << QStringList{"Archiv", "Projekte"};
    QTest::newRow("mittlerer Speicher") << 2 << QStringList{"Persönliche Ordner", "Projekte"};
}

// A store file that cannot be opened is logged and passed over; the
// stores after it are shown.
void tst_FolderTree::damagedStoreIsPassedOver()
{
    QFETCH(int, damaged);
    QFETCH(QStringList, roots);
    AddStore(QStringLiteral("Archiv"), true);
    AddStore(QStringLiteral("Projekte"), false);
    SetProfileFolder(m_profile->path() + QStringLiteral("-anderswo")); // closes the files
    QFile file(QDir(m_profile->path()).filePath(QStringLiteral("store%1.vxstore").arg(damaged)));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.write("kaputt kaputt kaputt kaputt");
    file.close();
    SetProfileFolder(m_profile->path());
    tvwFolderFill();
    QStringList actualRoots;
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i)
        actualRoots.append(m_tree->topLevelItem(i)->text(0));
    QCOMPARE(actualRoots, roots);
    QVERIFY2(m_env->readLog().contains(QStringLiteral("store%1.vxstore").arg(damaged)), qPrintable(m_env->readLog()));
}

void tst_FolderTree::readingAgainStartsAfresh()
{
    tvwFolderFill();
    const int count = m_tree->nodeCount();
    m_tree->setChecked(3, true);
    m_tree->setSelectedIndex(3);
    FolderProfile::folder(QStringLiteral("Persönliche Ordner/Posteingang")).Folders().Add(QStringLiteral("Rechnungen"));
    tvwFolderFill();
    QCOMPARE(m_tree->nodeCount(), count + 1);
    QCOMPARE(m_tree->selectedIndex(), 0);
    for (int i = 1; i <= m_tree->nodeCount(); ++i)
        QVERIFY(!m_tree->isChecked(i));
    QVERIFY(nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner/Posteingang/Rechnungen")) > 0);
}

void tst_FolderTree::idleTimeSetting_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<int>("seconds");
    QTest::newRow("Vorgabe") << "30" << 30;
    QTest::newRow("fünf Sekunden") << "5" << 5;
    QTest::newRow("keine Zahl") << "lang" << 30;
    QTest::newRow("leer") << "" << 30;
    QTest::newRow("zu groß für 16 Bit") << "40000" << 30;
}

void tst_FolderTree::idleTimeSetting()
{
    QFETCH(QString, setting);
    QFETCH(int, seconds);
    SaveSetting(QStringLiteral("IdleTime"), setting);
    tvwFolderFill();
    QCOMPARE(FolderData().idleTime, seconds);
}

void tst_FolderTree::nodeLimitEndsTheBranch()
{
    tvwFolderFill();
    // Rows of four real subfolders, enrolled below the last possible numbers.
    MAPITable table;
    table.setItem(FolderProfile::folder(QStringLiteral("Persönliche Ordner")).Folders());
    table.setColumns({PR_ENTRYID, PR_STORE_ENTRYID, PR_DISPLAY_NAME, PR_CONTAINER_CLASS});
    table.MoveToStart();
    const QList<QVariantList> rows = table.GetRows(4);
    QCOMPARE(rows.size(), 4);
    const int parent = MaxFolderNodes - 2;
    QVERIFY(m_tree->addNode(QString(), QStringLiteral("K%1").arg(parent), QStringLiteral("Grenze"),
                            QStringLiteral("Post")));
    const int before = m_tree->nodeCount();
    int counter = parent;
    Enrol(rows, counter);
    // Two numbers were left: two nodes, then the overflow ends this level.
    QCOMPARE(counter, MaxFolderNodes);
    QCOMPARE(m_tree->nodeCount() - before, 2);
    QCOMPARE(m_tree->nodeKey(m_tree->nodeCount()), QStringLiteral("K32767"));
    QVERIFY(m_env->readLog().contains(QStringLiteral("Sub: 1")));
    QVERIFY(m_env->readLog().contains(QStringLiteral("Info: Enrol")));
}

void tst_FolderTree::containerClassOfRows_data()
{
    QTest::addColumn<QVariantList>("classes"); // column 3 of three rows
    QTest::addColumn<QStringList>("images");   // of the nodes that were added
    QTest::addColumn<bool>("logged");
    const QVariant none;
    QTest::newRow("alle bekannt") << QVariantList{"IPF.Contact", "IPF.Task", "IPF.Note"}
                                  << QStringList{"IPF.Contact", "IPF.Task", "IPF.Note"} << false;
    QTest::newRow("ohne Klasse wie Mail") << QVariantList{none, "IPF.Journal", none}
                                          << QStringList{"IPF.Note", "IPF.Journal", "IPF.Note"} << false;
    QTest::newRow("unbekannte Klasse beendet die Ebene")
        << QVariantList{"IPF.Contact", "IPF.Configuration", "IPF.Task"} << QStringList{"IPF.Contact"} << true;
}

void tst_FolderTree::containerClassOfRows()
{
    QFETCH(QVariantList, classes);
    QFETCH(QStringList, images);
    QFETCH(bool, logged);
    tvwFolderFill();
    MAPITable table;
    table.setItem(FolderProfile::folder(QStringLiteral("Persönliche Ordner")).Folders());
    table.setColumns({PR_ENTRYID, PR_STORE_ENTRYID, PR_DISPLAY_NAME, PR_CONTAINER_CLASS});
    table.MoveToStart();
    QList<QVariantList> rows = table.GetRows(3);
    for (int i = 0; i < rows.size(); ++i)
        rows[i][3] = classes.at(i);
    QVERIFY(m_tree->addNode(QString(), QStringLiteral("K1000"), QStringLiteral("Probe"), QStringLiteral("Post")));
    const int parent = m_tree->nodeCount();
    int counter = 1000;
    Enrol(rows, counter);
    QStringList actual;
    for (int child : m_tree->childIndexes(parent))
        actual.append(m_tree->nodeImage(child));
    QCOMPARE(actual, images);
    QCOMPARE(m_env->readLog().contains(QStringLiteral("Info: Enrol")), logged);
}

void tst_FolderTree::unreadableProfileGivesEmptyTree()
{
    // A profile file that is no profile.
    QFile bad(m_profile->path() + QStringLiteral("/Profil.vxprofile"));
    QVERIFY(bad.open(QIODevice::WriteOnly | QIODevice::Truncate));
    bad.write("kein Profil");
    bad.close();
    SetProfileFolder(m_profile->path());
    MessageRecorder boxes;
    tvwFolderFill();
    QCOMPARE(m_tree->nodeCount(), 0);
    QCOMPARE(boxes.count(), 0);
    QVERIFY(!FolderReadTimer().isActive());
    QVERIFY(m_env->readLog().contains(QStringLiteral("Info: tvwFolderFill")));
    // Every run then stops without a word.
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::AllTypes));
    QVERIFY(!selection.ok);
    QCOMPARE(boxes.count(), 0);
}

namespace {

// A slow store: every folder access of the default store waits.
void slowDefaultStore(int milliseconds)
{
    const MAPIFolder root = FolderProfile::folder(QStringLiteral("Persönliche Ordner"));
    for (int i = 0; i < 6; ++i)
        root.Folders().Add(QStringLiteral("Ablage %1").arg(i + 1), olFolderInbox);
    StoreFaults::SetStoreDelay(root.StoreID(), milliseconds);
}

} // namespace

void tst_FolderTree::watchdogOnSlowStore_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("stops");
    QTest::newRow("Ja gibt den Speicher auf") << int(AnswerYes) << true;
    QTest::newRow("Nein liest zu Ende") << int(AnswerNo) << false;
    QTest::newRow("Zeitablauf wie Nein") << 0 << false;
}

void tst_FolderTree::watchdogOnSlowStore()
{
    QFETCH(int, answer);
    QFETCH(bool, stops);
    AddStore(QStringLiteral("Archiv"), true);
    slowDefaultStore(120);
    SaveSetting(QStringLiteral("IdleTime"), QStringLiteral("0"));
    MessageRecorder boxes(answer);
    tvwFolderFill();

    QCOMPARE(boxes.count(), 1);
    const MessageRequest question = boxes.last();
    QCOMPARE(question.buttons, 292);
    QCOMPARE(question.title, QStringLiteral("Frage?"));
    QCOMPARE(question.timeoutSeconds, 30);
    QCOMPARE(question.prompt,
             QStringLiteral("Das Einlesen der Ordnerstrukturen dauert sehr lange. Möchten Sie in diesen Vorgang "
                            "beschleunigen?\r\nKlicken Sie auf Ja, um folgenden Informationsspeicher nicht weiter "
                            "einzulesen: Persönliche Ordner.\r\nHinweis: Der Informationsspeicher wird dann beim "
                            "nächsten Start komplett übersprungen.\r\nDieses Verhalten können Sie ebenfalls in den "
                            "Optionen einstellen."));
    const int store = nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner"));
    const int storeFolders = FolderProfile::folder(QStringLiteral("Persönliche Ordner")).Folders().Count();
    QCOMPARE(m_tree->childIndexes(store).size() < storeFolders, stops);
    // The next store is read in full either way.
    QVERIFY(nodeOfPath(*m_tree, QStringLiteral("Archiv/Journal")) > 0);
    QCOMPARE(GetSetting(QStringLiteral("FolderStructureSkip")),
             stops ? QStringLiteral("Persönliche Ordner") : QString());
    if (stops) {
        // From the next read on the store is left out without a question.
        boxes.clear();
        tvwFolderFill();
        QCOMPARE(nodeOfPath(*m_tree, QStringLiteral("Persönliche Ordner")), 0);
        QCOMPARE(m_tree->nodeKey(1), QStringLiteral("K2"));
        QCOMPARE(boxes.count(), 0);
    }
}

void tst_FolderTree::watchdogNeverStacksQuestions()
{
    slowDefaultStore(120);
    SaveSetting(QStringLiteral("IdleTime"), QStringLiteral("0"));
    // The user thinks for two and a half seconds while the timer goes on
    // firing underneath the open box.
    int open = 0;
    int most = 0;
    int asked = 0;
    const MessageHandler previous = SetMessageHandler([&](const MessageRequest &) {
        ++asked;
        most = std::max(most, ++open);
        QEventLoop thinking;
        QTimer::singleShot(2500, &thinking, &QEventLoop::quit);
        thinking.exec();
        --open;
        return int(AnswerNo);
    });
    tvwFolderFill();
    SetMessageHandler(previous);
    QCOMPARE(asked, 1);
    QCOMPARE(most, 1);
}

void tst_FolderTree::declinedQuestionNeverReturns()
{
    slowDefaultStore(120);
    SaveSetting(QStringLiteral("IdleTime"), QStringLiteral("0"));
    MessageRecorder boxes(AnswerNo);
    tvwFolderFill();
    QCOMPARE(boxes.count(), 1);
    tvwFolderFill(); // a refresh in the same process
    QCOMPARE(boxes.count(), 1);
}

void tst_FolderTree::windowShowsProfileAndRereadsOnRequest()
{
    AddStore(QStringLiteral("Archiv"), true);
    frmHaupt window;
    window.load();
    NodeTree *tree = window.TvwOrdner();
    QCOMPARE(tree->topLevelItemCount(), 2);
    QVERIFY(nodeOfPath(*tree, QStringLiteral("Archiv/Kontakte")) > 0);
    const int contacts = nodeOfPath(*tree, QStringLiteral("Persönliche Ordner/Kontakte"));
    tree->setChecked(contacts, true);
    tree->setSelectedIndex(contacts);
    FolderProfile::folder(QStringLiteral("Persönliche Ordner/Kontakte")).Folders().Add(QStringLiteral("Neu"));

    MessageRecorder boxes;
    // A second click while the read runs adds nothing: one message, at the end.
    QTimer::singleShot(0, &window, [&] {
        QCOMPARE(boxes.count(), 0);
        QTest::mouseClick(window.cmdAktualisieren(), Qt::LeftButton);
    });
    QTest::mouseClick(window.cmdAktualisieren(), Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().prompt, QStringLiteral("Alle Ordner neu eingelesen."));
    QCOMPARE(boxes.last().buttons, 64);
    QCOMPARE(boxes.last().title, QStringLiteral("Info!"));
    QVERIFY(nodeOfPath(*tree, QStringLiteral("Persönliche Ordner/Kontakte/Neu")) > 0);
    QCOMPARE(tree->selectedIndex(), 0);
    for (int i = 1; i <= tree->nodeCount(); ++i)
        QVERIFY(!tree->isChecked(i));
}

QTEST_MAIN(tst_FolderTree)
#include "tst_foldertree.moc"
