// The result tree of the duplicate search: groups as roots with their
// children, ticks, alternating colours, the node limit and refused nodes.
#include "controls/NodeTree.h"
#include "duplicates/frmDups.h"
#include "frame/frmHaupt.h"
#include "support/TestSupport.h"

#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QTest>

namespace {

// A table of count items captioned "Element n"; the items in marked are
// proposed for removal.
DupItemTable captionTable(int count, const QList<int> &marked)
{
    DupItemTable table(0);
    for (int k = 0; k < count; ++k) {
        const int n = table.addItem();
        table.item(n).caption = QStringLiteral("Element %1").arg(n);
        table.item(n).marked = marked.contains(n);
        table.item(n).unread = false;
    }
    return table;
}

DupPairs pairsOf(const QList<std::pair<int, int>> &list)
{
    DupPairs pairs;
    for (const auto &[first, second] : list)
        pairs.add(first, second);
    return pairs;
}

} // namespace

class tst_DupsTree : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void init();
    void cleanup();
    void noPairHidesPanel();
    void groupsWithTicksAndColours();
    void rootThatLostIsTicked();
    void nodeLimit_data();
    void nodeLimit();
    void refusedNodeIsError902();

private:
    [[nodiscard]] NodeTree &tree() const { return *m_window->tvwDups(); }
    [[nodiscard]] QColor background(int index) const { return tree().backColor(index); }

    TestEnvironment *m_env = nullptr;
    MessageRecorder *m_messages = nullptr;
    frmHaupt *m_window = nullptr;
};

void tst_DupsTree::init()
{
    m_env = new TestEnvironment(false);
    m_messages = new MessageRecorder;
    m_window = new frmHaupt;
    m_window->show();
}

void tst_DupsTree::cleanup()
{
    delete m_window;
    delete m_messages;
    delete m_env;
}

void tst_DupsTree::noPairHidesPanel()
{
    m_window->frmDups()->setVisible(true);
    ShowDuplicateTree(DupPairs{}, captionTable(1, {}), QStringLiteral("Contact"));
    QCOMPARE(m_messages->count(), 1);
    QCOMPARE(m_messages->last().prompt, QStringLiteral("Keine Duplikate gefunden."));
    QCOMPARE(m_messages->last().buttons, int(MsgInformation));
    QCOMPARE(m_messages->last().title, QStringLiteral("Info!"));
    QVERIFY(!m_window->frmDups()->isVisible());
    QCOMPARE(m_window->lblStatus()->text(), QStringLiteral("Bereit"));
    QCOMPARE(tree().nodeCount(), 0);
}

void tst_DupsTree::groupsWithTicksAndColours()
{
    // Group 1: items 1 (survivor), 3, 4; group 2: 2 and 5; group 3: 6 and 7.
    const DupItemTable table = captionTable(7, {3, 4, 5, 7});
    ShowDuplicateTree(pairsOf({{1, 3}, {1, 4}, {2, 5}, {6, 7}}), table, QStringLiteral("Contact"));
    QCOMPARE(m_messages->count(), 0);
    QVERIFY(m_window->frmDups()->isVisible());
    QCOMPARE(m_window->lblStatus()->text(), QStringLiteral("4 Duplikate gefunden..."));

    QStringList keys;
    for (int index = 1; index <= tree().nodeCount(); ++index)
        keys.append(tree().nodeKey(index));
    QCOMPARE(keys, (QStringList{"K1", "K3", "K4", "K2", "K5", "K6", "K7"}));
    QCOMPARE(tree().childIndexes(tree().nodeIndex(QStringLiteral("K1"))), (QList<int>{2, 3}));
    QCOMPARE(tree().topLevelItemCount(), 3);
    QCOMPARE(tree().nodeText(3), QStringLiteral("Element 4"));
    QCOMPARE(tree().nodeImage(1), QStringLiteral("Contact"));

    const QColor white(255, 255, 255);
    const QColor yellow(255, 244, 170);
    const QList<std::pair<const char *, QColor>> colours{{"K1", white}, {"K3", white},  {"K4", white},
                                                         {"K2", yellow}, {"K5", yellow}, {"K6", white},
                                                         {"K7", white}};
    for (const auto &[key, colour] : colours)
        QCOMPARE(background(tree().nodeIndex(QString::fromLatin1(key))), colour);
    for (const char *key : {"K1", "K2", "K6"}) {
        QVERIFY(!tree().isChecked(tree().nodeIndex(QString::fromLatin1(key))));
        QVERIFY(tree().isExpanded(tree().nodeIndex(QString::fromLatin1(key))));
    }
    for (const char *key : {"K3", "K4", "K5", "K7"})
        QVERIFY(tree().isChecked(tree().nodeIndex(QString::fromLatin1(key))));
}

void tst_DupsTree::rootThatLostIsTicked()
{
    // Merged from (1,2), (2,3): item 3 survives as a child of item 1.
    ShowDuplicateTree(pairsOf({{1, 2}, {1, 3}}), captionTable(3, {1, 2}), QStringLiteral("Task"));
    QVERIFY(tree().isChecked(tree().nodeIndex(QStringLiteral("K1"))));
    QVERIFY(tree().isChecked(tree().nodeIndex(QStringLiteral("K2"))));
    QVERIFY(!tree().isChecked(tree().nodeIndex(QStringLiteral("K3"))));
}

void tst_DupsTree::nodeLimit_data()
{
    QTest::addColumn<int>("groupSize"); // every group: a root and groupSize - 1 children
    QTest::addColumn<int>("nodes");     // nodes shown
    QTest::newRow("genau 32767 nach einem Paar") << 32767 << 32767;
    QTest::newRow("von 32766 auf 32768") << 2 << 32768;
}

void tst_DupsTree::nodeLimit()
{
    QFETCH(int, groupSize);
    QFETCH(int, nodes);
    const int items = 40000;
    DupPairs pairs;
    for (int root = 1; root + groupSize - 1 <= items; root += groupSize) {
        for (int child = root + 1; child < root + groupSize; ++child)
            pairs.add(root, child);
    }
    ShowDuplicateTree(pairs, captionTable(items, {}), QStringLiteral("Note"));
    QCOMPARE(tree().nodeCount(), nodes);
    QCOMPARE(m_messages->count(), 1);
    QVERIFY(m_messages->last().prompt.startsWith(QStringLiteral("Es werden nur die ersten 32.767 Elemente angezeigt.")));
    QCOMPARE(m_messages->last().buttons, int(MsgExclamation));
    QCOMPARE(m_messages->last().title, QStringLiteral("Hinweis!"));
}

void tst_DupsTree::refusedNodeIsError902()
{
    // An item class without a picture in the image list.
    ShowDuplicateTree(pairsOf({{1, 2}, {3, 4}}), captionTable(4, {2, 4}), QStringLiteral("Distlist"));
    QCOMPARE(tree().nodeCount(), 0);
    QCOMPARE(m_messages->count(), 1);
    QVERIFY(m_messages->last().prompt.contains(QStringLiteral("Nr.: 902 / ")));
    QVERIFY(m_env->readLog().contains(QStringLiteral("Sub: 902")));
}

QTEST_MAIN(tst_DupsTree)
#include "tst_dupstree.moc"
