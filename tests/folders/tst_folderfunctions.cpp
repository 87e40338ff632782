// Folder selection on a real profile: every folder kind and its refusal,
// the question for an unticked marked folder, empty folders, a folder that
// has gone since the tree was read, and another user's folder.
#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "folders/FolderFunctions.h"
#include "folders/FolderStructureFunctions.h"
#include "folders/SharedFolderFunctions.h"
#include "support/TestSupport.h"
#include "folders/FolderFixture.h"

class tst_FolderFunctions : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void collectFolders_data();
    void collectFolders();
    void markedFolderNotTicked_data();
    void markedFolderNotTicked();
    void nothingMarkedStopsSilently();
    void folderGoneSinceReadStopsTheRun();
    void selectedFolderClass_data();
    void selectedFolderClass();
    void otherUsersFolderIsTheWholeSelection();

private:
    void tick(const QString &name);
    void mark(const QString &name);

    TestEnvironment *m_env = nullptr;
    FolderProfile *m_profile = nullptr;
    NodeTree *m_tree = nullptr;
};

namespace {
const QString Store = QStringLiteral("Persönliche Ordner");
const QString ContactsMessage = QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Kontakte-Ordner aus.");
const QString CalendarMessage = QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Kalender-Ordner aus.");
const QString MailMessage = QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Mail-Ordner aus.");
const QString SameKindMessage = QStringLiteral("Bitte wählen Sie für diese Funktion nur gleichartige Ordner aus.");
const QString EmptyMessage = QStringLiteral("Keine Elemente vorhanden.");

// "Kontakte/Kunden" lies in the default store; "Archiv/..." and the store
// itself are given in full.
QString fullPath(const QString &name)
{
    if (name == Store || name.startsWith(QStringLiteral("Archiv/")))
        return name;
    return Store + QLatin1Char('/') + name;
}
} // namespace

void tst_FolderFunctions::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_FolderFunctions::init()
{
    m_env = new TestEnvironment(false);
    m_profile = new FolderProfile;
    // Items: Kontakte 3, Kunden (contacts) 2, Kalender 1, Posteingang 4,
    // Aufgaben 2; Notizen, Journal and Leer (contacts) stay empty.
    const MAPIFolder kontakte = FolderProfile::folder(Store + QStringLiteral("/Kontakte"));
    FolderProfile::addItems(kontakte, 3);
    FolderProfile::addItems(kontakte.Folders().Add(QStringLiteral("Kunden")), 2);
    kontakte.Folders().Add(QStringLiteral("Leer"));
    FolderProfile::addItems(FolderProfile::folder(Store + QStringLiteral("/Kalender")), 1);
    FolderProfile::addItems(FolderProfile::folder(Store + QStringLiteral("/Posteingang")), 4);
    FolderProfile::addItems(FolderProfile::folder(Store + QStringLiteral("/Aufgaben")), 2);
    // A second store with a contact folder of the same name.
    FolderProfile::addItems(AddStore(QStringLiteral("Archiv"), true).Folders().Item(QStringLiteral("Kontakte")), 1);
    m_tree = new NodeTree;
    m_tree->setImageList(FolderImageList());
    SetFolderTree(m_tree);
    tvwFolderFill();
}

void tst_FolderFunctions::cleanup()
{
    CloseSharedFolder();
    SetFolderTree(nullptr);
    delete m_tree;
    delete m_profile;
    delete m_env;
}

void tst_FolderFunctions::tick(const QString &name)
{
    const int node = nodeOfPath(*m_tree, fullPath(name));
    QVERIFY2(node > 0, qPrintable(name));
    m_tree->setChecked(node, true);
}

void tst_FolderFunctions::mark(const QString &name)
{
    const int node = nodeOfPath(*m_tree, fullPath(name));
    QVERIFY2(node > 0, qPrintable(name));
    m_tree->setSelectedIndex(node);
}

void tst_FolderFunctions::collectFolders_data()
{
    QTest::addColumn<QStringList>("ticked");
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("allowEmpty");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QStringList>("folders"); // expected, in tree order
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("markedIndex");
    QTest::addColumn<QString>("message");

    QTest::newRow("Kontakte in Baumreihenfolge")
        << QStringList{"Kontakte/Kunden", "Kontakte"} << "Kontakte/Kunden" << "OnlyContacts" << false << true
        << QStringList{"Kontakte", "Kunden"} << 5 << 1 << "";
    QTest::newRow("gleichnamige Ordner zweier Speicher")
        << QStringList{"Kontakte", "Archiv/Kontakte"} << "Kontakte" << "OnlyContacts" << false << true
        << QStringList{"Kontakte", "Kontakte"} << 4 << 0 << "";
    QTest::newRow("Kontakte mit Kalender abgelehnt")
        << QStringList{"Kontakte", "Kalender"} << "Kontakte" << "OnlyContacts" << false << false
        << QStringList{"Kalender", "Kontakte"} << 0 << 0 << ContactsMessage;
    QTest::newRow("Kalender") << QStringList{"Kalender"} << "Kalender" << "OnlyAppointment" << false << true
                              << QStringList{"Kalender"} << 1 << 0 << "";
    QTest::newRow("Kalender mit Aufgaben abgelehnt")
        << QStringList{"Kalender", "Aufgaben"} << "Kalender" << "OnlyAppointment" << false << false
        << QStringList{"Kalender", "Aufgaben"} << 0 << 0 << CalendarMessage;
    QTest::newRow("Mail") << QStringList{"Posteingang"} << "Posteingang" << "OnlyMail" << false << true
                          << QStringList{"Posteingang"} << 4 << 0 << "";
    QTest::newRow("Mail mit Kontakten abgelehnt")
        << QStringList{"Posteingang", "Kontakte"} << "Posteingang" << "OnlyMail" << false << false
        << QStringList{"Posteingang", "Kontakte"} << 0 << 0 << MailMessage;
    QTest::newRow("alle Arten ohne Prüfung")
        << QStringList{"Posteingang", "Kontakte", "Notizen"} << "Notizen" << "AllTypes" << false << true
        << QStringList{"Posteingang", "Kontakte", "Notizen"} << 7 << 2 << "";
    QTest::newRow("Klasse IPM.Note") << QStringList{"Posteingang"} << "Posteingang" << "IPM.Note" << false << true
                                     << QStringList{"Posteingang"} << 4 << 0 << "";
    QTest::newRow("Klasse IPM.Task") << QStringList{"Aufgaben"} << "Aufgaben" << "IPM.Task" << false << true
                                     << QStringList{"Aufgaben"} << 2 << 0 << "";
    QTest::newRow("Klasse IPM.Task mit Kalender abgelehnt")
        << QStringList{"Aufgaben", "Kalender"} << "Aufgaben" << "IPM.Task" << false << false
        << QStringList{"Kalender", "Aufgaben"} << 0 << 1 << SameKindMessage;
    QTest::newRow("Klasse nur am Anfang gleich abgelehnt")
        << QStringList{"Kontakte"} << "Kontakte" << "IPM.Con" << false << false << QStringList{"Kontakte"} << 0
        << 0 << SameKindMessage;
    QTest::newRow("Klasse in anderer Schreibweise abgelehnt")
        << QStringList{"Kontakte"} << "Kontakte" << "ipm.contact" << false << false << QStringList{"Kontakte"} << 0
        << 0 << SameKindMessage;
    QTest::newRow("Speicherwurzel zählt als Ordner")
        << QStringList{Store} << Store << "AllTypes" << true << true << QStringList{Store} << 0 << 0 << "";
    QTest::newRow("leer ohne Erlaubnis") << QStringList{"Kontakte/Leer", "Notizen"} << "Notizen" << "AllTypes"
                                         << false << false << QStringList{"Leer", "Notizen"} << 0 << 1
                                         << EmptyMessage;
    QTest::newRow("leer mit Erlaubnis") << QStringList{"Kontakte/Leer"} << "Kontakte/Leer" << "OnlyContacts" << true
                                        << true << QStringList{"Leer"} << 0 << 0 << "";
}

void tst_FolderFunctions::collectFolders()
{
    QFETCH(QStringList, ticked);
    QFETCH(QString, marked);
    QFETCH(QString, kind);
    QFETCH(bool, allowEmpty);
    QFETCH(bool, ok);
    QFETCH(QStringList, folders);
    QFETCH(int, items);
    QFETCH(int, markedIndex);
    QFETCH(QString, message);
    for (const QString &name : ticked)
        tick(name);
    mark(marked);
    MessageRecorder boxes;
    const FolderSelection selection = CollectFolders(kind, allowEmpty);
    QCOMPARE(selection.ok, ok);
    QStringList names;
    for (const MAPIFolder &f : selection.folders)
        names.append(f.Name());
    QCOMPARE(names, folders);
    if (ok) {
        QCOMPARE(selection.itemCount, items);
        QCOMPARE(selection.markedIndex, markedIndex);
        QCOMPARE(boxes.count(), 0);
    } else {
        QCOMPARE(boxes.count(), 1);
        QCOMPARE(boxes.last().prompt, message);
        QCOMPARE(boxes.last().buttons, 48);
        QCOMPARE(boxes.last().title, QStringLiteral("Hinweis!"));
    }
}

void tst_FolderFunctions::markedFolderNotTicked_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("ok");
    QTest::newRow("Ja aktiviert den Ordner") << int(AnswerYes) << true;
    QTest::newRow("Nein bricht ab") << int(AnswerNo) << false;
}

void tst_FolderFunctions::markedFolderNotTicked()
{
    QFETCH(int, answer);
    QFETCH(bool, ok);
    tick(QStringLiteral("Kontakte"));
    mark(QStringLiteral("Kontakte/Kunden"));
    MessageRecorder boxes(answer);
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().prompt,
             QStringLiteral("Der markierte Ordner ist nicht aktiviert. Möchten Sie Ihn aktivieren?"));
    QCOMPARE(boxes.last().buttons, 36);
    QCOMPARE(boxes.last().title, QStringLiteral("Frage?"));
    QCOMPARE(selection.ok, ok);
    const int node = nodeOfPath(*m_tree, Store + QStringLiteral("/Kontakte/Kunden"));
    QCOMPARE(m_tree->isChecked(node), ok);
    if (ok) {
        QCOMPARE(selection.folders.size(), 2);
        QCOMPARE(selection.folders.at(selection.markedIndex).Name(), QStringLiteral("Kunden"));
        QCOMPARE(selection.itemCount, 5);
    }
}

void tst_FolderFunctions::nothingMarkedStopsSilently()
{
    tick(QStringLiteral("Kontakte"));
    MessageRecorder boxes;
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    QVERIFY(!selection.ok);
    QVERIFY(selection.folders.isEmpty());
    QCOMPARE(boxes.count(), 0);
}

void tst_FolderFunctions::folderGoneSinceReadStopsTheRun()
{
    tick(QStringLiteral("Kontakte"));
    tick(QStringLiteral("Kontakte/Kunden"));
    mark(QStringLiteral("Kontakte"));
    // The IDs of "Kunden" no longer name a folder of the profile.
    const int node = nodeOfPath(*m_tree, Store + QStringLiteral("/Kontakte/Kunden"));
    FolderData().entryIDs[m_tree->nodeKey(node).mid(1).toInt()] = QStringLiteral("00FF00FF00FF");
    MessageRecorder boxes;
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    QVERIFY(!selection.ok);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().buttons, 16);
    QVERIFY(boxes.last().prompt.contains(QStringLiteral("Nr.: 55 / ")));
    QVERIFY(m_env->readLog().contains(QStringLiteral("Sub: 55")));
}

void tst_FolderFunctions::selectedFolderClass_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("messageClass");
    QTest::newRow("nichts markiert") << "" << "";
    QTest::newRow("Kontakte") << "Kontakte" << "IPM.Contact";
    QTest::newRow("Kalender") << "Kalender" << "IPM.Appointment";
    QTest::newRow("Notizen") << "Notizen" << "IPM.StickyNote";
    QTest::newRow("Journal") << "Journal" << "IPM.Activity";
    QTest::newRow("Speicherwurzel") << Store << "IPM.Note";
}

void tst_FolderFunctions::selectedFolderClass()
{
    QFETCH(QString, marked);
    QFETCH(QString, messageClass);
    if (!marked.isEmpty())
        mark(marked);
    MessageRecorder boxes;
    QCOMPARE(GetSelectedFolderClass(), messageClass);
    QCOMPARE(boxes.count(), 0);
}

void tst_FolderFunctions::otherUsersFolderIsTheWholeSelection()
{
    const MAPIFolder mailbox = AddAddressBookUser(QStringLiteral("Erika Mustermann"), {QStringLiteral("erika")},
                                                  QStringLiteral("erika@example.org"));
    Q_UNUSED(mailbox);
    SetMailboxAccess(QStringLiteral("Erika Mustermann"), olFolderCalendar, true);
    tick(QStringLiteral("Kontakte"));
    mark(QStringLiteral("Kontakte"));
    OpenSharedFolder(QStringLiteral("Erika Mustermann"), olFolderCalendar);
    MessageRecorder boxes;
    // No kind test and no test for an empty folder.
    FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    QVERIFY(selection.ok);
    QCOMPARE(selection.folders.size(), 1);
    QCOMPARE(selection.folders.first().DefaultMessageClass(), QStringLiteral("IPM.Appointment"));
    QCOMPARE(selection.itemCount, 0);
    QCOMPARE(selection.markedIndex, 0);
    QCOMPARE(GetSelectedFolderClass(), QStringLiteral("IPM.Appointment"));
    QCOMPARE(boxes.count(), 0);

    CloseSharedFolder();
    selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    QVERIFY(selection.ok);
    QCOMPARE(selection.folders.first().Name(), QStringLiteral("Kontakte"));
    QCOMPARE(selection.itemCount, 3);
    QCOMPARE(GetSelectedFolderClass(), QStringLiteral("IPM.Contact"));
}

QTEST_MAIN(tst_FolderFunctions)
#include "tst_folderfunctions.moc"
