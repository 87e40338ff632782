// The duplicate command end to end on the main window and a real profile:
// search from the ticked folders, the result tree, removal by move or delete
// with injected failures, the refused duplicates folder, the ID marking, and
// the panel's buttons during and after a removal.
#include "DupTestData.h"
#include "controls/OutBar.h"
#include "duplicates/DupsDel.h"
#include "duplicates/frmDups.h"
#include "folders/FolderFixture.h"
#include "folders/FolderStructureFunctions.h"
#include "frame/CommandRegistry.h"
#include "frame/frmHaupt.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTimer>

namespace {

const QString kStore = QStringLiteral("Persönliche Ordner");
const QString kDupFolder = QString::fromUtf8(kDupFolderName);
const QDateTime kMonday(QDate(2024, 4, 8), QTime(9, 30));

MAPIFolder folderAt(const QString &path)
{
    return FolderProfile::folder(kStore + u'/' + path);
}

int countIn(const QString &path)
{
    return folderAt(path).Items().Count();
}

} // namespace

class tst_DupsRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void init();
    void cleanup();
    void searchThenMove_data();
    void searchThenMove();
    void deleteWithOneFailure();
    void userTicksDecide();
    void noTickClosesSilently();
    void refusedFolderTouchesNothing();
    void notesAreMovedAndCountsStay();
    void panelKeepsStillDuringRemoval();
    void viewOpensSelectedItem();
    void closeDropsResult();
    void noMarkedFolder();
    void oneItemHasNoDuplicate();
    void analyserErrorBox_data();
    void analyserErrorBox();
    void idMarking_data();
    void idMarking();
    void idMarkingWithFailedSave();

private:
    // Reads the tree anew and ticks the folders (paths below the default
    // store), marking the one at markedIndex.
    void select(const QStringList &paths, int markedIndex);
    // Three contacts in Kontakte, two of them again in Kontakte/Kunden.
    void contactsInTwoFolders();
    [[nodiscard]] QStringList tickedKeys() const;
    [[nodiscard]] NodeTree &dups() const { return *m_window->tvwDups(); }

    TestEnvironment *m_env = nullptr;
    FolderProfile *m_profile = nullptr;
    MessageRecorder *m_messages = nullptr;
    frmHaupt *m_window = nullptr;
};

void tst_DupsRun::init()
{
    m_env = new TestEnvironment(false);
    m_profile = new FolderProfile;
    m_messages = new MessageRecorder;
    m_window = new frmHaupt;
    m_window->show();
    SwitchOnly(DupTypeOf(DupKind::Contact), {"KontakteLastName"});
    SwitchOnly(DupTypeOf(DupKind::Note), {"NotizenBody"});
}

void tst_DupsRun::cleanup()
{
    delete m_window;
    delete m_messages;
    delete m_profile;
    delete m_env;
    SetInspectorHandler(nullptr);
}

void tst_DupsRun::select(const QStringList &paths, int markedIndex)
{
    tvwFolderFill();
    NodeTree &tree = *m_window->TvwOrdner();
    for (int k = 0; k < paths.size(); ++k) {
        const int index = nodeOfPath(tree, kStore + u'/' + paths[k]);
        QVERIFY2(index > 0, qPrintable(paths[k]));
        tree.setChecked(index, true);
        if (k == markedIndex)
            tree.setSelectedIndex(index);
    }
}

void tst_DupsRun::contactsInTwoFolders()
{
    const MAPIFolder contacts = folderAt(QStringLiteral("Kontakte"));
    const MAPIFolder customers = contacts.Folders().Add(QStringLiteral("Kunden"));
    AddDupItem(contacts, QStringLiteral("40|LastName=Berg|FileAs=Berg"), kMonday);
    AddDupItem(contacts, QStringLiteral("40|LastName=Kurz|FileAs=Kurz"), kMonday);
    AddDupItem(contacts, QStringLiteral("40|LastName=Lang|FileAs=Lang"), kMonday);
    AddDupItem(customers, QStringLiteral("40|LastName=Berg|FileAs=Berg"), kMonday.addDays(1));
    AddDupItem(customers, QStringLiteral("40|LastName=lang|FileAs=Lang"), kMonday.addDays(-1));
}

QStringList tst_DupsRun::tickedKeys() const
{
    QStringList keys;
    for (int index = 1; index <= dups().nodeCount(); ++index) {
        if (dups().isChecked(index))
            keys.append(dups().nodeKey(index));
    }
    return keys;
}

void tst_DupsRun::searchThenMove_data()
{
    QTest::addColumn<bool>("folderExists");
    QTest::newRow("Duplikate-Ordner vorhanden") << true;
    QTest::newRow("Duplikate-Ordner wird angelegt") << false;
}

void tst_DupsRun::searchThenMove()
{
    QFETCH(bool, folderExists);
    contactsInTwoFolders();
    if (folderExists)
        folderAt(QStringLiteral("Kontakte/Kunden")).Folders().Add(kDupFolder);
    select({QStringLiteral("Kontakte"), QStringLiteral("Kontakte/Kunden")}, 1);

    RunCommand(QStringLiteral("Dup"));
    // The marked folder keeps its items: Berg and Lang of Kontakte go.
    QVERIFY(m_window->frmDups()->isVisible());
    QCOMPARE(m_messages->count(), 0);
    QCOMPARE(dups().nodeCount(), 4);
    QCOMPARE(tickedKeys(), (QStringList{"K1", "K3"}));
    QVERIFY(dups().nodeText(1).startsWith(QStringLiteral("Berg (Kontakte, 08.04.2024 09:30:00)")));
    QCOMPARE(m_window->lblStatus()->text(), QStringLiteral("Bereit"));
    QVERIFY(m_window->OutBar1()->isEnabled());

    QTest::mouseClick(m_window->cmdDupDel(), Qt::LeftButton);
    QCOMPARE(m_messages->count(), 1);
    QCOMPARE(m_messages->last().prompt, QStringLiteral("2 Duplikate entfernt."));
    QCOMPARE(m_messages->last().buttons, int(MsgInformation));
    QCOMPARE(m_messages->last().title, QStringLiteral("Fertig!"));
    QVERIFY(!m_window->frmDups()->isVisible());
    QCOMPARE(countIn(QStringLiteral("Kontakte")), 1);
    QCOMPARE(countIn(QStringLiteral("Kontakte/Kunden")), 2);
    QCOMPARE(countIn(QStringLiteral("Kontakte/Kunden/") + kDupFolder), 2);
    QCOMPARE(folderAt(QStringLiteral("Kontakte/Kunden")).Folders().Count(), 1);
    QCOMPARE(folderAt(QStringLiteral("Kontakte")).Folders().Count(), 1); // nothing made beside it
    QVERIFY(m_window->OutBar1()->isEnabled());
    QCOMPARE(m_window->lblStatus()->text(), QStringLiteral("Bereit"));
}

void tst_DupsRun::deleteWithOneFailure()
{
    SaveSetting(QStringLiteral("MoveToFolder"), QStringLiteral("0"));
    SaveSetting(QStringLiteral("OldDel"), QStringLiteral("1"));
    const MAPIFolder contacts = folderAt(QStringLiteral("Kontakte"));
    AddDupItem(contacts, QStringLiteral("40|LastName=Berg"), kMonday);
    QList<Item> younger;
    for (int k = 1; k <= 3; ++k)
        younger.append(AddDupItem(contacts, QStringLiteral("40|LastName=Berg"), kMonday.addDays(k)));
    select({QStringLiteral("Kontakte")}, 0);
    RunCommand(QStringLiteral("Dup"));
    QCOMPARE(tickedKeys(), (QStringList{"K2", "K3", "K4"}));
    StoreFaults::FailItem(younger[1].EntryID(), StoreFaults::FailDelete);

    // The status line and the bar as they stand beside the closing message.
    QString statusAtMessage;
    int progressAtMessage = -1;
    MessageHandler recorder;
    recorder = SetMessageHandler([&](const MessageRequest &request) {
        statusAtMessage = m_window->lblStatus()->text();
        progressAtMessage = m_window->ProgressBar1()->value();
        return recorder(request);
    });
    RunCommand(QStringLiteral("DupDel"));
    SetMessageHandler(recorder);
    QCOMPARE(statusAtMessage, QStringLiteral("Phase 3: Lösche Element 3 von 3"));
    QCOMPARE(progressAtMessage, 3);
    QCOMPARE(m_messages->last().prompt,
             QStringLiteral("2 Duplikate entfernt.\r\n1 Elemente verursachen einen Fehler. Starten Sie einen weiteren "
                            "Durchlauf, um noch eventuell verbliebene Duplikate zu entfernen."));
    QCOMPARE(m_messages->last().buttons, int(MsgExclamation));
    QCOMPARE(m_messages->last().title, QStringLiteral("Hinweis!"));
    QCOMPARE(countIn(QStringLiteral("Kontakte")), 2);
    QCOMPARE(countIn(QStringLiteral("Gelöschte Objekte")), 2);
    const QString log = m_env->readLog();
    QCOMPARE(log.count(QStringLiteral("Sub: DupsDel")), 1);
    QVERIFY2(log.contains(QStringLiteral("Err. No.: ")), qPrintable(log));
}

void tst_DupsRun::userTicksDecide()
{
    SaveSetting(QStringLiteral("MoveToFolder"), QStringLiteral("0"));
    contactsInTwoFolders();
    select({QStringLiteral("Kontakte"), QStringLiteral("Kontakte/Kunden")}, 1);
    RunCommand(QStringLiteral("Dup"));
    // The user keeps Lang of Kontakte and gives up Berg of Kunden instead.
    dups().setChecked(dups().nodeIndex(QStringLiteral("K3")), false);
    dups().setChecked(dups().nodeIndex(QStringLiteral("K4")), true);
    RunCommand(QStringLiteral("DupDel"));
    QCOMPARE(m_messages->last().prompt, QStringLiteral("2 Duplikate entfernt."));
    QCOMPARE(countIn(QStringLiteral("Kontakte")), 2);        // Kurz, Lang
    QCOMPARE(countIn(QStringLiteral("Kontakte/Kunden")), 1); // lang
}

void tst_DupsRun::noTickClosesSilently()
{
    contactsInTwoFolders();
    select({QStringLiteral("Kontakte"), QStringLiteral("Kontakte/Kunden")}, 1);
    RunCommand(QStringLiteral("Dup"));
    for (int index = 1; index <= dups().nodeCount(); ++index)
        dups().setChecked(index, false);
    RunCommand(QStringLiteral("DupDel"));
    QCOMPARE(m_messages->count(), 0);
    QVERIFY(!m_window->frmDups()->isVisible());
    QCOMPARE(countIn(QStringLiteral("Kontakte")), 3);
    QCOMPARE(folderAt(QStringLiteral("Kontakte/Kunden")).Folders().Count(), 0);
}

void tst_DupsRun::refusedFolderTouchesNothing()
{
    const MAPIFolder contacts = folderAt(QStringLiteral("Kontakte"));
    const MAPIFolder marked = contacts.Folders().Add(QStringLiteral("Leer"));
    AddDupItem(contacts, QStringLiteral("40|LastName=Berg"), kMonday);
    AddDupItem(contacts, QStringLiteral("40|LastName=Berg"), kMonday.addDays(1));
    select({QStringLiteral("Kontakte"), QStringLiteral("Kontakte/Leer")}, 1);
    RunCommand(QStringLiteral("Dup"));
    QCOMPARE(tickedKeys().size(), 1);

    // Another program removes the marked folder before the removal.
    const QString storeFile = QDir(m_profile->path()).entryInfoList({QStringLiteral("*.vxstore")}).value(0).filePath();
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fremd"));
        db.setDatabaseName(storeFile);
        QVERIFY(db.open());
        QSqlQuery q(db);
        q.prepare(QStringLiteral("DELETE FROM folders WHERE id = ?"));
        q.addBindValue(marked.id());
        QVERIFY(q.exec());
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("fremd"));

    RunCommand(QStringLiteral("DupDel"));
    QCOMPARE(m_messages->count(), 1);
    QCOMPARE(m_messages->last().buttons, int(MsgStop));
    QCOMPARE(m_messages->last().title, QStringLiteral("Fehler!"));
    QVERIFY(!m_messages->last().prompt.isEmpty());
    QCOMPARE(m_env->readLog().count(QStringLiteral("Sub: FolderAdd")), 1);
    QCOMPARE(countIn(QStringLiteral("Kontakte")), 2);
    QVERIFY(!m_window->frmDups()->isVisible());
    QVERIFY(m_window->OutBar1()->isEnabled());
}

void tst_DupsRun::notesAreMovedAndCountsStay()
{
    const MAPIFolder notes = folderAt(QStringLiteral("Notizen"));
    AddDupItem(notes, QStringLiteral("44|Body=Milch kaufen"), kMonday);
    AddDupItem(notes, QStringLiteral("44|Body=milch kaufen "), kMonday.addDays(1));
    AddDupItem(notes, QStringLiteral("44|Body=Milch kaufen"), kMonday.addDays(2));
    select({QStringLiteral("Notizen")}, 0);
    RunCommand(QStringLiteral("Dup"));
    QCOMPARE(tickedKeys().size(), 2);
    RunCommand(QStringLiteral("DupDel"));
    QCOMPARE(m_messages->last().prompt, QStringLiteral("2 Duplikate entfernt."));
    QCOMPARE(countIn(QStringLiteral("Notizen")), 1);
    QCOMPARE(countIn(QStringLiteral("Notizen/") + kDupFolder), 2);
}

void tst_DupsRun::panelKeepsStillDuringRemoval()
{
    contactsInTwoFolders();
    select({QStringLiteral("Kontakte"), QStringLiteral("Kontakte/Kunden")}, 1);
    RunCommand(QStringLiteral("Dup"));
    const QStringList idsBefore = DupResult().entryIds;
    bool sawLocked = false;
    int nodesDuringRun = -1;
    // Runs when the removal first lets the event loop turn.
    QTimer::singleShot(0, this, [&] {
        sawLocked = !m_window->cmdDupDel()->isEnabled() && !m_window->cmdDupsClose()->isEnabled()
            && !m_window->cmdDupView()->isEnabled();
        RunCommand(QStringLiteral("DupsClose"));
        RunCommand(QStringLiteral("DupDel"));
        nodesDuringRun = dups().nodeCount();
    });
    RunCommand(QStringLiteral("DupDel"));
    QVERIFY(sawLocked);
    QCOMPARE(nodesDuringRun, 4);
    QCOMPARE(m_messages->count(), 1); // one removal, one message
    QCOMPARE(m_messages->last().prompt, QStringLiteral("2 Duplikate entfernt."));
    QCOMPARE(DupResult().entryIds, idsBefore);
    QVERIFY(m_window->cmdDupDel()->isEnabled());
    QVERIFY(m_window->cmdDupsClose()->isEnabled());
}

void tst_DupsRun::viewOpensSelectedItem()
{
    contactsInTwoFolders();
    select({QStringLiteral("Kontakte"), QStringLiteral("Kontakte/Kunden")}, 1);
    RunCommand(QStringLiteral("Dup"));
    QStringList shown;
    SetInspectorHandler([&shown](const Item &item, bool modal) {
        QVERIFY(!modal);
        shown.append(item.get(QStringLiteral("LastName")).toString());
    });
    dups().clearSelection();
    RunCommand(QStringLiteral("DupView"));
    QVERIFY(shown.isEmpty());
    dups().setSelectedIndex(dups().nodeIndex(QStringLiteral("K5")));
    const QStringList ticks = tickedKeys();
    QTest::mouseClick(m_window->cmdDupView(), Qt::LeftButton);
    QCOMPARE(shown, QStringList{"lang"});
    QCOMPARE(tickedKeys(), ticks);
    QCOMPARE(m_messages->count(), 0);
}

void tst_DupsRun::closeDropsResult()
{
    contactsInTwoFolders();
    select({QStringLiteral("Kontakte"), QStringLiteral("Kontakte/Kunden")}, 1);
    RunCommand(QStringLiteral("Dup"));
    QCOMPARE(DupResult().entryIds.size(), 6);
    QTest::mouseClick(m_window->cmdDupsClose(), Qt::LeftButton);
    QVERIFY(!m_window->frmDups()->isVisible());
    QCOMPARE(dups().nodeCount(), 0);
    QVERIFY(DupResult().entryIds.isEmpty());
    QCOMPARE(countIn(QStringLiteral("Kontakte")), 3);
}

void tst_DupsRun::noMarkedFolder()
{
    tvwFolderFill();
    m_window->TvwOrdner()->clearSelection();
    RunCommand(QStringLiteral("Dup"));
    QCOMPARE(m_messages->count(), 1);
    QCOMPARE(m_messages->last().prompt, QStringLiteral("Kein gültiger Ordner gewählt."));
    QCOMPARE(m_messages->last().buttons, int(MsgStop));
    QCOMPARE(m_messages->last().title, QStringLiteral("Hinweis!"));
    QVERIFY(m_window->OutBar1()->isEnabled());
}

void tst_DupsRun::oneItemHasNoDuplicate()
{
    AddDupItem(folderAt(QStringLiteral("Kontakte")), QStringLiteral("40|LastName=Berg"));
    select({QStringLiteral("Kontakte")}, 0);
    RunCommand(QStringLiteral("Dup"));
    QCOMPARE(m_messages->count(), 1);
    QCOMPARE(m_messages->last().prompt, QStringLiteral("Keine Duplikate gefunden."));
    QVERIFY(!m_window->frmDups()->isVisible());
}

void tst_DupsRun::analyserErrorBox_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("errorId");
    QTest::addColumn<QString>("statusAtBox");
    QTest::newRow("Kontakte: erst zurücksetzen") << "Kontakte" << "40|LastName=Berg" << 905 << "Bereit";
    QTest::newRow("Mail: erst die Meldung") << "Posteingang" << "43|Subject=Info" << 904
                                            << "Phase 2: Analysiere Element 1";
}

void tst_DupsRun::analyserErrorBox()
{
    QFETCH(QString, folder);
    QFETCH(QString, item);
    QFETCH(int, errorId);
    QFETCH(QString, statusAtBox);
    SwitchOnly(DupTypeOf(DupKind::Email), {"EmailSubject"});
    SaveSetting(QStringLiteral("Priority.0"), QStringLiteral("7"));
    AddDupItem(folderAt(folder), item, kMonday);
    AddDupItem(folderAt(folder), item, kMonday.addDays(1));
    select({folder}, 0);
    QString status;
    const MessageHandler previous = SetMessageHandler([&](const MessageRequest &) {
        status = m_window->lblStatus()->text();
        m_messages->clear();
        return AnswerOk;
    });
    RunCommand(QStringLiteral("Dup"));
    SetMessageHandler(previous);
    QCOMPARE(status, statusAtBox);
    QVERIFY(m_env->readLog().contains(QStringLiteral("Sub: %1").arg(errorId)));
    QVERIFY(!m_window->frmDups()->isVisible());
    QCOMPARE(m_window->lblStatus()->text(), QStringLiteral("Bereit"));
}

void tst_DupsRun::idMarking_data()
{
    QTest::addColumn<bool>("keepOldest");
    QTest::addColumn<QList<int>>("values"); // per item: whose EntryID it holds (0: none)
    // Oldest stays: 1 heads the group, 2 and 3 get its ID.
    QTest::newRow("Überlebender als Wurzel") << true << QList<int>{0, 1, 1};
    // Youngest stays: the marked root is written at each pair and ends with
    // the ID of its last child.
    QTest::newRow("markierte Wurzel") << false << QList<int>{3, 1, 0};
}

void tst_DupsRun::idMarking()
{
    QFETCH(bool, keepOldest);
    QFETCH(QList<int>, values);
    SaveSetting(QStringLiteral("DupEntryIDSave"), QStringLiteral("1"));
    SaveSetting(QStringLiteral("OldDel"), keepOldest ? QStringLiteral("1") : QStringLiteral("0"));
    const MAPIFolder contacts = folderAt(QStringLiteral("Kontakte"));
    QList<Item> items;
    for (int k = 0; k < 3; ++k)
        items.append(AddDupItem(contacts, QStringLiteral("40|LastName=Berg"), kMonday.addDays(k)));
    select({QStringLiteral("Kontakte")}, 0);
    RunCommand(QStringLiteral("Dup"));
    QVERIFY(!m_window->frmDups()->isVisible());
    QCOMPARE(m_messages->last().prompt, QStringLiteral("Outook ID erfolgreich eingetragen."));
    QCOMPARE(m_messages->last().title, QStringLiteral("Info!"));
    const NameSpace ns = Application().GetNamespace();
    for (int k = 0; k < 3; ++k) {
        const UserProperty property = ns.GetItemFromID(items[k].EntryID())
                                          .UserProperties()
                                          .Find(QStringLiteral("Outlook ID (created by Varnex)"));
        if (values[k] == 0) {
            QVERIFY2(property.isNull(), qPrintable(QString::number(k + 1)));
        } else {
            QVERIFY(!property.isNull());
            QCOMPARE(property.Type(), int(olText));
            QCOMPARE(property.Value().toString(), items[values[k] - 1].EntryID());
        }
    }
    QVERIFY(m_env->readLog().isEmpty());
}

void tst_DupsRun::idMarkingWithFailedSave()
{
    SaveSetting(QStringLiteral("DupEntryIDSave"), QStringLiteral("1"));
    SaveSetting(QStringLiteral("OldDel"), QStringLiteral("1"));
    const MAPIFolder contacts = folderAt(QStringLiteral("Kontakte"));
    QList<Item> items;
    for (int k = 0; k < 3; ++k)
        items.append(AddDupItem(contacts, QStringLiteral("40|LastName=Berg"), kMonday.addDays(k)));
    StoreFaults::FailItem(items[1].EntryID(), StoreFaults::FailSave);
    select({QStringLiteral("Kontakte")}, 0);
    RunCommand(QStringLiteral("Dup"));
    QCOMPARE(m_messages->last().prompt, QStringLiteral("Outook ID erfolgreich eingetragen."));
    const QString log = m_env->readLog();
    QVERIFY2(log.contains(QStringLiteral("Sub: Save Outlook ID")), qPrintable(log));
    QVERIFY2(log.contains(QStringLiteral("Error No.: ")), qPrintable(log));
    QVERIFY2(log.contains(QStringLiteral(", Outlook ID: ") + items[0].EntryID()), qPrintable(log));
    const NameSpace ns = Application().GetNamespace();
    const QString name = QStringLiteral("Outlook ID (created by Varnex)");
    QCOMPARE(ns.GetItemFromID(items[2].EntryID()).UserProperties().Find(name).Value().toString(), items[0].EntryID());
}

QTEST_MAIN(tst_DupsRun)
#include "tst_dupsrun.moc"
