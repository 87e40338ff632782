// The command "Namen korrigieren" from the ticks of the folder tree to the
// closing message, on a real profile.
#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "folders/FolderFixture.h"
#include "folders/FolderStructureFunctions.h"
#include "frame/CommandRegistry.h"
#include "frame/MainCommands.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QTest>
#include <memory>

namespace {
const QString Store = QStringLiteral("Persönliche Ordner");
}

class tst_ContactNameCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void selection_data();
    void selection();

private:
    std::unique_ptr<TestEnvironment> m_env;
    std::unique_ptr<FolderProfile> m_profile;
    std::unique_ptr<NodeTree> m_tree;
};

void tst_ContactNameCommand::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    RegisterMainCommands();
}

void tst_ContactNameCommand::init()
{
    m_env = std::make_unique<TestEnvironment>();
    m_profile = std::make_unique<FolderProfile>();
    for (const char *name : {"Müller, Hans", "Maria Huber"}) {
        Item contact = FolderProfile::folder(Store + "/Kontakte").Items().Add(olContact);
        contact.set("FullName", QString::fromUtf8(name));
        contact.Save();
    }
    FolderProfile::addItems(FolderProfile::folder(Store + "/Kalender"), 1);
    m_tree = std::make_unique<NodeTree>();
    m_tree->setImageList(FolderImageList());
    SetFolderTree(m_tree.get());
    tvwFolderFill();
}

void tst_ContactNameCommand::cleanup()
{
    SetFolderTree(nullptr);
    m_tree.reset();
    m_profile.reset();
    m_env.reset();
}

void tst_ContactNameCommand::selection_data()
{
    QTest::addColumn<QStringList>("ticked");
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("message"); // the one box the user sees; "" for none
    QTest::addColumn<int>("titled");      // contacts with a salutation afterwards

    QTest::newRow("Kontakte angehakt") << QStringList{"Kontakte"} << "Kontakte" << "2 Kontakt(e) geändert." << 2;
    QTest::newRow("nichts markiert") << QStringList{"Kontakte"} << "" << "" << 0;
    QTest::newRow("Kalender dabei") << QStringList{"Kontakte", "Kalender"} << "Kontakte"
                                    << "Bitte wählen Sie für diese Funktion ausschließlich Kontakte-Ordner aus." << 0;
}

void tst_ContactNameCommand::selection()
{
    QFETCH(QStringList, ticked);
    QFETCH(QString, marked);
    QFETCH(QString, message);
    QFETCH(int, titled);
    for (const QString &name : ticked)
        m_tree->setChecked(nodeOfPath(*m_tree, Store + "/" + name), true);
    if (!marked.isEmpty())
        m_tree->setSelectedIndex(nodeOfPath(*m_tree, Store + "/" + marked));
    MessageRecorder boxes;
    QVERIFY(RunCommand(QStringLiteral("Nam")));
    QCOMPARE(boxes.count(), message.isEmpty() ? 0 : 1);
    if (!message.isEmpty())
        QCOMPARE(boxes.last().prompt, message);
    int withTitle = 0;
    for (const Item &contact : FolderProfile::folder(Store + "/Kontakte").Items())
        withTitle += contact.text("Title").isEmpty() ? 0 : 1;
    QCOMPARE(withTitle, titled);
}

QTEST_MAIN(tst_ContactNameCommand)
#include "tst_contactnamecommand.moc"
