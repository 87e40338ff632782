// The main window: command bar and menu dispatch by key, the running state,
// and the three commands on the folder tree.
#include "controls/Help.h"
#include "controls/NodeTree.h"
#include "controls/OutBar.h"
#include "frame/CommandRegistry.h"
#include "frame/frmHaupt.h"
#include "support/TestSupport.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>

class tst_frmHaupt : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void barClickDispatchesFirstMouseButtonOnly_data();
    void barClickDispatchesFirstMouseButtonOnly();
    void unknownKeyDoesNothing();
    void menuEntriesDispatchTheirKey_data();
    void menuEntriesDispatchTheirKey();
    void attachmentUndoAsksFirst_data();
    void attachmentUndoAsksFirst();
    void infoShowsVersionAndMaker();
    void helpKeyOpensHelpPage();
    void runningDisablesCommandsButNotEndOrHelp();
    void runStartDropsDuplicateResult();
    void runEndLeavesDuplicateResult();
    void everyTabStopIsAVisibleControl();

private:
    // Registers a recorder for every command key.
    void recordCommands();

    QStringList m_ran;
    TestEnvironment *m_env = nullptr;
    frmHaupt *m_window = nullptr;
};

void tst_frmHaupt::init()
{
    m_env = new TestEnvironment(false);
    m_window = new frmHaupt;
    m_ran.clear();
    recordCommands();
}

void tst_frmHaupt::cleanup()
{
    delete m_window;
    m_window = nullptr;
    delete m_env;
    m_env = nullptr;
    ClearCommands();
    SetHelpOpener(nullptr);
}

void tst_frmHaupt::recordCommands()
{
    for (const QString &key : MainCommandKeys())
        RegisterCommand(key, [this, key] { m_ran.append(key); });
}

void tst_frmHaupt::barClickDispatchesFirstMouseButtonOnly_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("mouseButton");
    QTest::addColumn<bool>("runs");
    QTest::newRow("Linksklick Tel") << "Tel" << int(Qt::LeftButton) << true;
    QTest::newRow("Linksklick Duplikate") << "Dup" << int(Qt::LeftButton) << true;
    QTest::newRow("Rechtsklick Tel") << "Tel" << int(Qt::RightButton) << false;
    QTest::newRow("Mittelklick Optionen") << "Opt" << int(Qt::MiddleButton) << false;
}

void tst_frmHaupt::barClickDispatchesFirstMouseButtonOnly()
{
    QFETCH(QString, key);
    QFETCH(int, mouseButton);
    QFETCH(bool, runs);
    m_window->show();
    QTest::mouseClick(m_window->OutBar1()->item(key), Qt::MouseButton(mouseButton));
    QCOMPARE(m_ran, runs ? QStringList{key} : QStringList{});
}

void tst_frmHaupt::unknownKeyDoesNothing()
{
    MessageRecorder boxes;
    m_window->OutBar1ItemClick(QStringLiteral("AktGrp"), QStringLiteral("Xyz"), 1);
    m_window->OutBar1ItemClick(QStringLiteral("AktGrp"), QStringLiteral("tel"), 1); // keys are exact
    QVERIFY(m_ran.isEmpty());
    QCOMPARE(boxes.count(), 0);
}

void tst_frmHaupt::menuEntriesDispatchTheirKey_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("key");
    QTest::newRow("anderer Benutzer") << "mnuSharedOpen" << "&Ordner eines anderen Benutzers öffnen..." << "SharedOpen";
    QTest::newRow("Konten") << "mnuKontenSync" << "&Konten synchronisieren" << "DavSync";
    QTest::newRow("Duplikate") << "mnuKontaktDupLoeschen" << "&Duplikate entfernen" << "Dup";
    QTest::newRow("Ersetzen") << "mnuFindReplace" << "&Ersetzen..." << "Suc";
    QTest::newRow("Nachrichtenklasse") << "mnuFormularWechsel" << "&Nachrichtenklasse ändern..." << "For";
    QTest::newRow("Schulferien") << "mnuHoliday" << "&Schulferien einfügen..." << "Hol";
    QTest::newRow("Anlagen speichern") << "mnuAttSave" << "&Anlagen speichern" << "Att";
    QTest::newRow("Telefon") << "mnuTelNorm" << "&Tel.-Nr. vereinheitlichen" << "Tel";
    QTest::newRow("Namen") << "mnuNameCorrection" << "&Namen korrigieren" << "Nam";
    QTest::newRow("Wiederherstellen") << "mnuUndo" << "&Daten wiederherstellen..." << "Undo";
    QTest::newRow("Anlagen verschieben") << "mnuAttMove" << "Anlagen &verschieben..." << "AttMove";
    QTest::newRow("Namen testen") << "mnuNameCheck" << "&Namen testen..." << "NameCheck";
    QTest::newRow("Telefon testen") << "mnuTelTest" << "&Telefonnummer testen..." << "TelTest";
    QTest::newRow("Assistent") << "mnuQuickOption" << "Optionen-&Assistent" << "QuickOption";
    QTest::newRow("Optionen") << "mnuOptionen" << "&Optionen" << "Opt";
}

void tst_frmHaupt::menuEntriesDispatchTheirKey()
{
    QFETCH(QString, entry);
    QFETCH(QString, caption);
    QFETCH(QString, key);
    QAction *action = m_window->menuEntry(entry);
    QVERIFY2(action, qPrintable(entry));
    QCOMPARE(action->text(), caption);
    action->trigger();
    QCOMPARE(m_ran, QStringList{key});
}

void tst_frmHaupt::attachmentUndoAsksFirst_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("runs");
    QTest::newRow("Ja") << int(AnswerYes) << true;
    QTest::newRow("Nein") << int(AnswerNo) << false;
    QTest::newRow("geschlossen") << 0 << false;
}

void tst_frmHaupt::attachmentUndoAsksFirst()
{
    QFETCH(int, answer);
    QFETCH(bool, runs);
    MessageRecorder boxes(answer);
    m_window->menuEntry(QStringLiteral("mnuAttUndo"))->trigger();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().prompt, QStringLiteral("Möchten Sie die verknüpften Anlagen wieder (zurück)importieren?"));
    QCOMPARE(boxes.last().buttons, 36);
    QCOMPARE(boxes.last().title, QStringLiteral("Frage?"));
    QCOMPARE(m_ran, runs ? QStringList{"AttUndo"} : QStringList{});
}

void tst_frmHaupt::infoShowsVersionAndMaker()
{
    MessageRecorder boxes;
    m_window->menuEntry(QStringLiteral("mnuInfo"))->trigger();
    QCOMPARE(boxes.count(), 1);
    const QStringList lines = boxes.last().prompt.split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0), QStringLiteral("Version 3.2.2"));
    QVERIFY(lines.at(1).contains(QStringLiteral("Nordquell")));
    QCOMPARE(boxes.last().buttons, 64);
    QCOMPARE(boxes.last().title, QStringLiteral("Info!"));
}

namespace {
QStringList s_helpOpened;
bool recordHelp(const QString &path)
{
    s_helpOpened.append(path);
    return true;
}
} // namespace

void tst_frmHaupt::helpKeyOpensHelpPage()
{
    QFile page(m_env->folder() + QStringLiteral("/Varnex.html"));
    QVERIFY(page.open(QIODevice::WriteOnly));
    page.close();
    s_helpOpened.clear();
    SetHelpOpener(recordHelp);
    m_window->show();
    QTest::mouseClick(m_window->OutBar1()->item(QStringLiteral("Hil")), Qt::LeftButton);
    m_window->menuEntry(QStringLiteral("mnuHilfe"))->trigger();
    QTest::keyClick(m_window, Qt::Key_F1);
    QCOMPARE(s_helpOpened.size(), 3);
    QVERIFY(s_helpOpened.first().endsWith(QStringLiteral("/Varnex.html")));
    QVERIFY(m_ran.isEmpty());
}

void tst_frmHaupt::runningDisablesCommandsButNotEndOrHelp()
{
    m_window->show();
    m_window->SetRunning(true);
    QVERIFY(!m_window->OutBar1()->isEnabled());
    QVERIFY(!m_window->TvwOrdner()->isEnabled());
    QVERIFY(!m_window->cmdAlleRueck()->isEnabled());
    QVERIFY(!m_window->cmdZweigMark()->isEnabled());
    QVERIFY(!m_window->cmdAktualisieren()->isEnabled());
    QVERIFY(!m_window->menuEntry(QStringLiteral("mnuAktion"))->isEnabled());
    QVERIFY(!m_window->menuEntry(QStringLiteral("mnuExtras"))->isEnabled());
    QVERIFY(!m_window->menuEntry(QStringLiteral("mnuSharedOpen"))->isEnabled());
    QVERIFY(!m_window->menuEntry(QStringLiteral("mnuKontenSync"))->isEnabled());
    QVERIFY(m_window->menuEntry(QStringLiteral("mnuBeenden"))->isEnabled());
    QVERIFY(m_window->menuEntry(QStringLiteral("mnuHilfeRoot"))->isEnabled());
    QVERIFY(m_window->menuEntry(QStringLiteral("mnuDatei"))->isEnabled());
    // A disabled bar dispatches nothing.
    QTest::mouseClick(m_window->OutBar1()->item(QStringLiteral("Tel")), Qt::LeftButton);
    QVERIFY(!m_ran.contains(QStringLiteral("Tel")));

    m_window->setStatusText(QStringLiteral("Bearbeite Kontakt 3 von 9 (Kontakte)"));
    m_window->setProgressMax(9);
    m_window->setProgressValue(3);
    QCOMPARE(m_window->ProgressBar1()->value(), 3);
    m_window->SetRunning(false);
    QVERIFY(m_window->OutBar1()->isEnabled());
    QVERIFY(m_window->TvwOrdner()->isEnabled());
    QVERIFY(m_window->menuEntry(QStringLiteral("mnuSharedOpen"))->isEnabled());
    QCOMPARE(m_window->lblStatus()->text(), QStringLiteral("Bereit"));
    QCOMPARE(m_window->ProgressBar1()->value(), 0);
}

void tst_frmHaupt::runStartDropsDuplicateResult()
{
    m_window->show();
    m_window->frmDups()->setVisible(true);
    QVERIFY(m_window->tvwDups()->addNode(QString(), QStringLiteral("K1"), QStringLiteral("Meier"),
                                         QStringLiteral("Contact")));
    m_window->cmdDupDel()->setEnabled(false);
    m_window->cmdDupView()->setEnabled(false);
    m_window->SetRunning(true);
    QVERIFY(!m_window->frmDups()->isVisible());
    QCOMPARE(m_window->tvwDups()->nodeCount(), 0);
    QVERIFY(m_window->cmdDupDel()->isEnabled());
    QVERIFY(m_window->cmdDupView()->isEnabled());
    QCOMPARE(m_ran, QStringList{"DupsClear"});
}

void tst_frmHaupt::runEndLeavesDuplicateResult()
{
    m_window->show();
    m_window->SetRunning(true);
    m_window->frmDups()->setVisible(true);
    QVERIFY(m_window->tvwDups()->addNode(QString(), QStringLiteral("K1"), QStringLiteral("Meier"),
                                         QStringLiteral("Contact")));
    m_window->SetRunning(false);
    QVERIFY(m_window->frmDups()->isVisible());
    QCOMPARE(m_window->tvwDups()->nodeCount(), 1);
    // The panel's buttons stay usable while a run is active.
    m_window->SetRunning(true);
    m_window->frmDups()->setVisible(true);
    QVERIFY(m_window->cmdDupsClose()->isEnabled());
    QTest::mouseClick(m_window->cmdDupsClose(), Qt::LeftButton);
    QVERIFY(m_ran.contains(QStringLiteral("DupsClose")));
}

// Tab never lands on something that shows no focus (a scroller, a frame).
void tst_frmHaupt::everyTabStopIsAVisibleControl()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    for (QWidget *w : m_window->findChildren<QWidget *>()) {
        if (!(w->focusPolicy() & Qt::TabFocus) || !w->isVisibleTo(m_window) || !w->isEnabled())
            continue;
        const bool control = qobject_cast<QAbstractButton *>(w) || qobject_cast<QAbstractItemView *>(w)
            || qobject_cast<QLineEdit *>(w) || qobject_cast<QComboBox *>(w) || qobject_cast<QAbstractSlider *>(w);
        QVERIFY2(control, w->metaObject()->className());
        QVERIFY2(!w->visibleRegion().isEmpty(), qPrintable(w->objectName()));
    }
}

QTEST_MAIN(tst_frmHaupt)
#include "tst_frmhaupt.moc"
