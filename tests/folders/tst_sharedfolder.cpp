// Another user's folder: the name check with its checked look, the six
// folder types, the permissions message, and the panel on the main window
// that opens and closes.
#include "controls/NodeTree.h"
#include "controls/sevText.h"
#include "folders/FolderFunctions.h"
#include "folders/SharedFolderFunctions.h"
#include "folders/frmSharedFolderOpen.h"
#include "frame/MainCommands.h"
#include "frame/frmHaupt.h"
#include "support/TestSupport.h"
#include "folders/FolderFixture.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

class tst_SharedFolder : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void nameCheck_data();
    void nameCheck();
    void okOpensTheDefaultFolder_data();
    void okOpensTheDefaultFolder();
    void refusedFolderKeepsEverything_data();
    void refusedFolderKeepsEverything();
    void secondFolderReplacesFirst();
    void closeShowsTreeWithItsTicks();

private:
    TestEnvironment *m_env = nullptr;
    FolderProfile *m_profile = nullptr;
    frmHaupt *m_window = nullptr;
};

namespace {
const QString NotFound =
    QStringLiteral("Name wurde nicht im Adressbuch gefunden. Bitte überprüfen Sie Ihre Eingabe.");
const QString NoAccess = QStringLiteral("Ordner konnte nicht geöffnet werden. Überprüfen Sie die Berechtigungen.");
const QString Erika = QStringLiteral("Erika Mustermann");
} // namespace

void tst_SharedFolder::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_SharedFolder::init()
{
    m_env = new TestEnvironment(false);
    m_profile = new FolderProfile;
    AddAddressBookUser(Erika, {QStringLiteral("erika")}, QStringLiteral("erika@example.org"));
    AddAddressBookUser(QStringLiteral("Max Meier"), {}, QStringLiteral("max@example.org"));
    for (int type : {olFolderCalendar, olFolderContacts, olFolderInbox, olFolderNotes, olFolderTasks})
        SetMailboxAccess(Erika, type, true);
    m_window = new frmHaupt;
    m_window->load();
    m_window->show();
}

void tst_SharedFolder::cleanup()
{
    CloseSharedFolder();
    delete m_window;
    delete m_profile;
    delete m_env;
}

void tst_SharedFolder::nameCheck_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("checked");
    QTest::newRow("voller Name") << Erika << Erika << true;
    QTest::newRow("Alias") << "erika" << Erika << true;
    QTest::newRow("andere Schreibweise mit Leerzeichen") << "  erika MUSTERMANN " << Erika << true;
    QTest::newRow("Adresse") << "max@example.org" << "Max Meier" << true;
    QTest::newRow("leer") << "" << "" << false;
    QTest::newRow("unbekannt") << "Erik" << "Erik" << false;
}

void tst_SharedFolder::nameCheck()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(bool, checked);
    frmSharedFolderOpen dialog(m_window);
    QTest::keyClicks(dialog.txtName()->editor(), typed);
    MessageRecorder boxes;
    QTest::mouseClick(dialog.cmdNameCheck(), Qt::LeftButton);
    QCOMPARE(dialog.txtName()->text(), shown);
    QCOMPARE(dialog.txtName()->isChecked(), checked);
    QCOMPARE(dialog.txtName()->editor()->font().bold(), checked);
    QCOMPARE(boxes.count(), checked ? 0 : 1);
    if (!checked) {
        QCOMPARE(boxes.last().prompt, NotFound);
        QCOMPARE(boxes.last().buttons, 48);
        QCOMPARE(boxes.last().title, QStringLiteral("Hinweis!"));
    }
    QVERIFY(!IsSharedFolderOpen());
}

void tst_SharedFolder::okOpensTheDefaultFolder_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("folderType");
    QTest::addColumn<QString>("messageClass");
    QTest::newRow("Kalender") << 0 << 9 << "IPM.Appointment";
    QTest::newRow("Kontakte") << 1 << 10 << "IPM.Contact";
    QTest::newRow("Posteingang") << 2 << 6 << "IPM.Note";
    QTest::newRow("Notizen") << 3 << 12 << "IPM.StickyNote";
    QTest::newRow("Aufgaben") << 4 << 13 << "IPM.Task";
}

void tst_SharedFolder::okOpensTheDefaultFolder()
{
    QFETCH(int, index);
    QFETCH(int, folderType);
    QFETCH(QString, messageClass);
    frmSharedFolderOpen dialog(m_window);
    // Without a name check first: OK resolves the name itself.
    QTest::keyClicks(dialog.txtName()->editor(), QStringLiteral("erika"));
    dialog.cmbFolderTyp()->setCurrentIndex(index);
    MessageRecorder boxes;
    QTest::mouseClick(dialog.cmdOK(), Qt::LeftButton);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.txtName()->text(), Erika);
    QVERIFY(IsSharedFolderOpen());
    QVERIFY(m_window->frmSharedFolder()->isVisible());
    QVERIFY(!m_window->TvwOrdner()->isVisible());
    QCOMPARE(m_window->frmSharedFolder()->findChild<QLabel *>("lblName")->text(), Erika);
    QCOMPARE(m_window->frmSharedFolder()->findChild<QLabel *>("lblTyp")->text(),
             dialog.cmbFolderTyp()->currentText());
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts));
    QVERIFY(selection.ok);
    QCOMPARE(selection.folders.first().DefaultFolderType(), folderType);
    QCOMPARE(selection.folders.first().DefaultMessageClass(), messageClass);
    QCOMPARE(selection.folders.first().StoreName().contains(QStringLiteral("Erika")), true);
}

void tst_SharedFolder::refusedFolderKeepsEverything_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("message");
    QTest::newRow("Journal ohne Berechtigung") << "erika" << 5 << NoAccess;
    QTest::newRow("Benutzer ohne Freigabe") << "Max Meier" << 0 << NoAccess;
    QTest::newRow("Name unbekannt") << "Moritz" << 0 << NotFound;
}

void tst_SharedFolder::refusedFolderKeepsEverything()
{
    QFETCH(QString, name);
    QFETCH(int, index);
    QFETCH(QString, message);
    frmSharedFolderOpen dialog(m_window);
    dialog.show();
    QTest::keyClicks(dialog.txtName()->editor(), name);
    dialog.cmbFolderTyp()->setCurrentIndex(index);
    MessageRecorder boxes;
    QTest::mouseClick(dialog.cmdOK(), Qt::LeftButton);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().prompt, message);
    QCOMPARE(boxes.last().buttons, 48);
    QCOMPARE(boxes.last().title, QStringLiteral("Hinweis!"));
    QVERIFY(dialog.isVisible()); // the dialog stays open
    QVERIFY(!IsSharedFolderOpen());
    QVERIFY(!m_window->frmSharedFolder()->isVisible());
    QVERIFY(m_window->TvwOrdner()->isVisible());
}

void tst_SharedFolder::secondFolderReplacesFirst()
{
    OpenSharedFolder(Erika, olFolderCalendar);
    m_window->showSharedFolder(Erika, QStringLiteral("Kalender"));
    frmSharedFolderOpen dialog(m_window);
    QTest::keyClicks(dialog.txtName()->editor(), Erika);
    dialog.cmbFolderTyp()->setCurrentIndex(1);
    MessageRecorder boxes;
    QTest::mouseClick(dialog.cmdOK(), Qt::LeftButton);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(GetSelectedFolderClass(), QStringLiteral("IPM.Contact"));
    QCOMPARE(m_window->frmSharedFolder()->findChild<QLabel *>("lblTyp")->text(), QStringLiteral("Kontakte"));
}

void tst_SharedFolder::closeShowsTreeWithItsTicks()
{
    NodeTree *tree = m_window->TvwOrdner();
    const int contacts = nodeOfPath(*tree, QStringLiteral("Persönliche Ordner/Kontakte"));
    tree->setChecked(contacts, true);
    tree->setSelectedIndex(contacts);
    OpenSharedFolder(Erika, olFolderTasks);
    m_window->showSharedFolder(Erika, QStringLiteral("Aufgaben"));
    QVERIFY(!tree->isVisible());
    QTest::mouseClick(m_window->cmdCloseShared(), Qt::LeftButton);
    QVERIFY(!IsSharedFolderOpen());
    QVERIFY(!m_window->frmSharedFolder()->isVisible());
    QVERIFY(tree->isVisible());
    QVERIFY(m_window->cmdZweigMark()->isVisible());
    QVERIFY(tree->isChecked(contacts));
    MessageRecorder boxes;
    const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyContacts), true);
    QVERIFY(selection.ok);
    QCOMPARE(selection.folders.first().Name(), QStringLiteral("Kontakte"));
}

QTEST_MAIN(tst_SharedFolder)
#include "tst_sharedfolder.moc"
