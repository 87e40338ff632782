// The folder tree control: node order and keys, images, ticks that mark,
// "Alle deaktivieren" and "Zweig aktivieren" on the window.
#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "frame/frmHaupt.h"
#include "support/TestSupport.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class tst_NodeTree : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void addNodeRefuses_data();
    void addNodeRefuses();
    void nodesKeepAddingOrder();
    void userTickMarksNode_data();
    void userTickMarksNode();
    void programTickDoesNotMark();
    void clearAllUnticksAndCollapses();
    void branchWithoutMarkDoesNothing();
    void branchTicksAllDescendants_data();
    void branchTicksAllDescendants();
    void clearNodesDropsMark();

private:
    // Two stores: K1 "Persönliche Ordner" with K2 Posteingang (K3 Projekte
    // (K4 Alt)) and K5 Kontakte; K7 "Archiv" (K6 was a skipped store) with
    // K8 Kalender.
    void fillSample();

    TestEnvironment *m_env = nullptr;
    frmHaupt *m_window = nullptr;
    NodeTree *m_tree = nullptr;
};

void tst_NodeTree::init()
{
    m_env = new TestEnvironment(false);
    m_window = new frmHaupt;
    m_tree = m_window->TvwOrdner();
    fillSample();
}

void tst_NodeTree::cleanup()
{
    delete m_window;
    delete m_env;
}

void tst_NodeTree::fillSample()
{
    const QString none;
    QVERIFY(m_tree->addNode(none, "K1", "Persönliche Ordner", "Post"));
    QVERIFY(m_tree->addNode("K1", "K2", "Posteingang", "IPF.Note"));
    QVERIFY(m_tree->addNode("K2", "K3", "Projekte", "IPF.Note"));
    QVERIFY(m_tree->addNode("K3", "K4", "Alt", "IPF.Note"));
    QVERIFY(m_tree->addNode("K1", "K5", "Kontakte", "IPF.Contact"));
    QVERIFY(m_tree->addNode(none, "K7", "Archiv", "Post"));
    QVERIFY(m_tree->addNode("K7", "K8", "Kalender", "IPF.Appointment"));
}

void tst_NodeTree::addNodeRefuses_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("image");
    QTest::newRow("Bild fehlt in der Liste") << "K1" << "K9" << "IPF.Configuration";
    QTest::newRow("Bild in anderer Schreibweise") << "K1" << "K9" << "ipf.note";
    QTest::newRow("Schlüssel vergeben") << "K1" << "K5" << "IPF.Note";
    QTest::newRow("Elternknoten fehlt") << "K6" << "K9" << "IPF.Note";
}

void tst_NodeTree::addNodeRefuses()
{
    QFETCH(QString, parent);
    QFETCH(QString, key);
    QFETCH(QString, image);
    const int before = m_tree->nodeCount();
    QVERIFY(!m_tree->addNode(parent, key, QStringLiteral("Neu"), image));
    QCOMPARE(m_tree->nodeCount(), before);
    QCOMPARE(m_tree->nodeIndex(QStringLiteral("K9")), 0);
}

void tst_NodeTree::nodesKeepAddingOrder()
{
    QCOMPARE(m_tree->nodeCount(), 7);
    QStringList keys;
    for (int i = 1; i <= m_tree->nodeCount(); ++i)
        keys.append(m_tree->nodeKey(i));
    QCOMPARE(keys, (QStringList{"K1", "K2", "K3", "K4", "K5", "K7", "K8"}));
    QCOMPARE(m_tree->nodeIndex(QStringLiteral("K7")), 6);
    QCOMPARE(m_tree->childIndexes(1), (QList<int>{2, 5}));
    QCOMPARE(m_tree->topLevelItemCount(), 2);
    QCOMPARE(m_tree->nodeImage(5), QStringLiteral("IPF.Contact"));
    QVERIFY(!m_tree->node(5)->icon(0).isNull());
    // Nothing is ticked, expanded or marked when the tree is built.
    for (int i = 1; i <= m_tree->nodeCount(); ++i) {
        QVERIFY(!m_tree->isChecked(i));
        QVERIFY(!m_tree->isExpanded(i));
    }
    QCOMPARE(m_tree->selectedIndex(), 0);
}

void tst_NodeTree::userTickMarksNode_data()
{
    QTest::addColumn<bool>("tickFirst");
    QTest::newRow("Häkchen gesetzt") << false;
    QTest::newRow("Häkchen entfernt") << true;
}

void tst_NodeTree::userTickMarksNode()
{
    QFETCH(bool, tickFirst);
    m_window->show();
    if (tickFirst)
        m_tree->setChecked(5, true);
    m_tree->setSelectedIndex(2);
    QSignalSpy spy(m_tree, &NodeTree::nodeCheck);
    // What a click into the box does to the item.
    m_tree->node(5)->setCheckState(0, tickFirst ? Qt::Unchecked : Qt::Checked);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toInt(), 5);
    QCOMPARE(m_tree->selectedIndex(), 5);
    QCOMPARE(m_tree->isChecked(5), !tickFirst);
}

void tst_NodeTree::programTickDoesNotMark()
{
    QSignalSpy spy(m_tree, &NodeTree::nodeCheck);
    m_tree->setChecked(3, true);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_tree->selectedIndex(), 0);
    QVERIFY(m_tree->isChecked(3));
}

void tst_NodeTree::clearAllUnticksAndCollapses()
{
    m_window->show();
    for (int i = 1; i <= m_tree->nodeCount(); ++i) {
        m_tree->setChecked(i, true);
        m_tree->setExpanded(i, true);
    }
    m_tree->setSelectedIndex(3);
    QTest::mouseClick(m_window->cmdAlleRueck(), Qt::LeftButton);
    for (int i = 1; i <= m_tree->nodeCount(); ++i) {
        QVERIFY2(!m_tree->isChecked(i), qPrintable(m_tree->nodeKey(i)));
        QVERIFY2(!m_tree->isExpanded(i), qPrintable(m_tree->nodeKey(i)));
    }
    QCOMPARE(m_tree->selectedIndex(), 3); // the mark stays
    QCOMPARE(m_tree->topLevelItemCount(), 2);
}

void tst_NodeTree::branchWithoutMarkDoesNothing()
{
    MessageRecorder boxes;
    m_window->show();
    QTest::mouseClick(m_window->cmdZweigMark(), Qt::LeftButton);
    for (int i = 1; i <= m_tree->nodeCount(); ++i) {
        QVERIFY(!m_tree->isChecked(i));
        QVERIFY(!m_tree->isExpanded(i));
    }
    QCOMPARE(boxes.count(), 0);
}

void tst_NodeTree::branchTicksAllDescendants_data()
{
    QTest::addColumn<int>("marked");
    QTest::addColumn<QStringList>("ticked");
    QTest::newRow("Speicher mit allen Ebenen") << 1 << QStringList{"K1", "K2", "K3", "K4", "K5"};
    QTest::newRow("mittlere Ebene") << 2 << QStringList{"K2", "K3", "K4"};
    QTest::newRow("Blatt") << 4 << QStringList{"K4"};
    QTest::newRow("zweiter Speicher") << 6 << QStringList{"K7", "K8"};
}

void tst_NodeTree::branchTicksAllDescendants()
{
    QFETCH(int, marked);
    QFETCH(QStringList, ticked);
    m_window->show();
    m_tree->setSelectedIndex(marked);
    QTest::mouseClick(m_window->cmdZweigMark(), Qt::LeftButton);
    QStringList actual;
    for (int i = 1; i <= m_tree->nodeCount(); ++i) {
        if (!m_tree->isChecked(i))
            continue;
        actual.append(m_tree->nodeKey(i));
        // Only the marked node is expanded; deeper nodes keep their state.
        QCOMPARE(m_tree->isExpanded(i), i == marked);
    }
    QCOMPARE(actual, ticked);
    QCOMPARE(m_tree->selectedIndex(), marked);
}

void tst_NodeTree::clearNodesDropsMark()
{
    m_tree->setSelectedIndex(2);
    m_tree->clearNodes();
    QCOMPARE(m_tree->nodeCount(), 0);
    QCOMPARE(m_tree->selectedIndex(), 0);
    QVERIFY(m_tree->addNode(QString(), QStringLiteral("K2"), QStringLiteral("neu"), QStringLiteral("Post")));
    QCOMPARE(m_tree->nodeIndex(QStringLiteral("K2")), 1);
}

QTEST_MAIN(tst_NodeTree)
#include "tst_nodetree.moc"
