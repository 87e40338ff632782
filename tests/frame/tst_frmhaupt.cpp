// The main window: command bar and menu dispatch by key, the running state,
// and the three commands on the folder tree.
#include "controls/Help.h"
#include "controls/NodeTree.h"
#include "controls/OutBar.h"
#include "frame/CommandRegistry.h"
#include "frame/MainGeometry.h"
#include "frame/frmHaupt.h"
#include "support/TestSupport.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QScopeGuard>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
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
    void frameFitsScreen_data();
    void frameFitsScreen();
    void firstStartFitsFrameIntoScreen();
    void geometryIsRemembered();
    void helpGoesToBrowserOrOwnWindow_data();
    void helpGoesToBrowserOrOwnWindow();

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

void tst_frmHaupt::frameFitsScreen_data()
{
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QMargins>("frame");
    QTest::addColumn<QSize>("wanted");
    QTest::addColumn<QRect>("inner");
    QTest::newRow("1280x800 mit Titelleiste") << QRect(0, 0, 1280, 800) << QMargins(4, 28, 4, 4) << QSize(1280, 800)
                                              << QRect(4, 28, 1272, 768);
    QTest::newRow("Leiste unten") << QRect(0, 0, 1280, 768) << QMargins(1, 30, 1, 1) << QSize(1280, 800)
                                  << QRect(1, 30, 1278, 737);
    QTest::newRow("Leiste oben") << QRect(0, 32, 1280, 768) << QMargins(0, 30, 0, 0) << QSize(1280, 800)
                                 << QRect(0, 62, 1280, 738);
    QTest::newRow("großer Bildschirm, mittig") << QRect(0, 0, 1920, 1050) << QMargins(4, 28, 4, 4)
                                               << QSize(1280, 800) << QRect(320, 137, 1280, 800);
    QTest::newRow("zweiter Bildschirm rechts") << QRect(1920, 0, 1280, 1024) << QMargins() << QSize(1280, 800)
                                               << QRect(1920, 112, 1280, 800);
}

void tst_frmHaupt::frameFitsScreen()
{
    QFETCH(QRect, available);
    QFETCH(QMargins, frame);
    QFETCH(QSize, wanted);
    QFETCH(QRect, inner);
    const QRect fitted = FitFrameInto(available, frame, wanted);
    QCOMPARE(fitted, inner);
    QVERIFY(available.contains(fitted.marginsAdded(frame)));
}

void tst_frmHaupt::firstStartFitsFrameIntoScreen()
{
    QVERIFY(!RestoreMainGeometry(*m_window, QSize(1280, 800)));
    const QRect available = m_window->screen()->availableGeometry();
    QVERIFY2(available.contains(m_window->geometry().marginsAdded(FrameMargins(*m_window))),
             qPrintable(QStringLiteral("%1x%2").arg(m_window->width()).arg(m_window->height())));
}

void tst_frmHaupt::geometryIsRemembered()
{
    const QRect placed(40, 30, 620, 480);
    m_window->setGeometry(placed);
    SaveMainGeometry(*m_window);
    frmHaupt next;
    QVERIFY(RestoreMainGeometry(next, QSize(1280, 800)));
    QCOMPARE(next.geometry(), placed);
}

void tst_frmHaupt::helpGoesToBrowserOrOwnWindow_data()
{
    QTest::addColumn<bool>("withXdgOpen");
    QTest::addColumn<QString>("defaultHtmlHandler");
    QTest::addColumn<QString>("browserVariable");
    QTest::addColumn<bool>("inBrowser");
    QTest::newRow("ohne xdg-open") << false << "firefox-esr.desktop" << "firefox" << false;
    QTest::newRow("xdg-open ohne Browser") << true << "" << "" << false;
    QTest::newRow("Browser des Desktops") << true << "firefox-esr.desktop" << "" << true;
    QTest::newRow("BROWSER gesetzt") << true << "" << "lynx" << true;
}

void tst_frmHaupt::helpGoesToBrowserOrOwnWindow()
{
    QFETCH(bool, withXdgOpen);
    QFETCH(QString, defaultHtmlHandler);
    QFETCH(QString, browserVariable);
    QFETCH(bool, inBrowser);
    const QDir folder(m_env->folder());
    QFile page(folder.filePath(QStringLiteral("Varnex.html")));
    QVERIFY(page.open(QIODevice::WriteOnly));
    page.write("<html><head><title>Varnex – Hilfe</title></head><body><h1>Hilfe zu Varnex</h1></body></html>");
    page.close();
    // Stand-ins for the desktop's tools: xdg-open notes what it was asked to open.
    QVERIFY(folder.mkpath(QStringLiteral("bin")));
    const auto script = [&](const QString &name, const QString &body) {
        QFile f(folder.filePath(QStringLiteral("bin/") + name));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(("#!/bin/sh\n" + body + "\n").toUtf8());
        f.close();
        f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
    };
    const QString opened = folder.filePath(QStringLiteral("geoeffnet.txt"));
    if (withXdgOpen)
        script(QStringLiteral("xdg-open"), QStringLiteral("echo \"$1\" > '%1'").arg(opened));
    script(QStringLiteral("xdg-mime"), QStringLiteral("echo '%1'").arg(defaultHtmlHandler));
    const QByteArray oldPath = qgetenv("PATH");
    const QByteArray oldBrowser = qgetenv("BROWSER");
    const auto restore = qScopeGuard([&] {
        qputenv("PATH", oldPath);
        qputenv("BROWSER", oldBrowser);
    });
    qputenv("PATH", QFile::encodeName(folder.filePath(QStringLiteral("bin"))));
    qputenv("BROWSER", browserVariable.toUtf8());
    QVERIFY(OpenHelp());

    const auto visibleHelpWindows = [] {
        QList<QWidget *> found;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w->objectName() == QStringLiteral("frmHilfe") && w->isVisible())
                found << w;
        return found;
    };
    const QList<QWidget *> helpWindows = visibleHelpWindows();
    if (inBrowser) {
        QTRY_VERIFY(QFileInfo::exists(opened));
        QFile f(opened);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll().trimmed(), QUrl::fromLocalFile(page.fileName()).toEncoded());
        QVERIFY(helpWindows.isEmpty());
    } else {
        QCOMPARE(helpWindows.size(), 1);
        auto *text = helpWindows.first()->findChild<QTextBrowser *>();
        QVERIFY(text->toPlainText().contains(QStringLiteral("Hilfe zu Varnex")));
        QCOMPARE(helpWindows.first()->windowTitle(), QStringLiteral("Varnex – Hilfe"));
        // F1 again brings the same window to the front.
        QVERIFY(OpenHelp());
        QCOMPARE(visibleHelpWindows(), helpWindows);
        helpWindows.first()->close();
        QTest::qWait(0);
        QVERIFY(!QFileInfo::exists(opened));
    }
}

QTEST_MAIN(tst_frmHaupt)
#include "tst_frmhaupt.moc"
