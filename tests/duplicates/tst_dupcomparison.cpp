// The comparison of the duplicate search: the grouped walk against the
// literal pairwise walk on many random tables, the cases that decide which
// item goes, and the merge into groups.
#include "DupPairwiseWalk.h"
#include "duplicates/DupComparison.h"

#include <QLocale>
#include <QRandomGenerator>
#include <QSet>
#include <QTest>

namespace {

const QDateTime kBase(QDate(2023, 5, 1), QTime(8, 0));

void literalMerge(DupPairs &pairs)
{
    for (int k = 0; k < pairs.count(); ++k)
        pairs.first[k] = FindGroupRoot(pairs, pairs.first[k], k);
}

QString pairText(const DupPairs &pairs)
{
    QStringList parts;
    for (int k = 0; k < pairs.count(); ++k)
        parts.append(QStringLiteral("%1-%2").arg(pairs.first[k]).arg(pairs.second[k]));
    return parts.join(u' ');
}

QString markedText(const DupItemTable &table)
{
    QStringList parts;
    for (int n = 1; n <= table.itemCount(); ++n) {
        if (table.item(n).marked)
            parts.append(QString::number(n));
    }
    return parts.join(u' ');
}

LoserRules rulesFrom(bool masterFolder, bool series, bool keepOldest, const QString &levels)
{
    // levels: the criterion at level 2, 1 and 0, e.g. "012" = folder, series, age
    LoserRules rules{masterFolder, series, keepOldest, {}};
    for (int v = 0; v < 3; ++v)
        rules.criterionAtLevel[size_t(2 - v)] = levels.at(v).digitValue();
    return rules;
}

// A table from a compact description: per item its columns joined by '|',
// its folder, its creation minute and flags (M marked folder, S series,
// U unread).
DupItemTable tableFrom(const QStringList &items, int columns)
{
    DupItemTable table(columns);
    for (const QString &description : items) {
        const QStringList parts = description.split(u';');
        const int n = table.addItem();
        DupItem &item = table.item(n);
        const QStringList values = parts.at(0).split(u'|');
        for (int c = 0; c < columns; ++c)
            table.value(n, c) = values.value(c);
        item.folderId = parts.at(1);
        item.created = kBase.addSecs(60 * parts.at(2).toInt());
        const QString flags = parts.value(3);
        item.isMaster = flags.contains(u'M');
        item.isSeries = flags.contains(u'S');
        item.unread = flags.contains(u'U');
        item.marked = item.unread;
    }
    return table;
}

DupItemTable randomTable(QRandomGenerator &rng, int columns)
{
    static const QString kValues[] = {QString(), QStringLiteral("a"), QStringLiteral("A"), QStringLiteral(" a"),
                                      QStringLiteral("b")};
    static const QString kFolders[] = {QStringLiteral("F1"), QStringLiteral("F2"), QStringLiteral("F3")};
    const int count = rng.bounded(1, 60);
    DupItemTable table(columns);
    for (int k = 0; k < count; ++k) {
        const int n = table.addItem();
        DupItem &item = table.item(n);
        // Few distinct values: most items have several equals.
        for (int c = 0; c < columns; ++c)
            table.value(n, c) = kValues[rng.bounded(c == 0 ? 5 : 2)];
        item.folderId = kFolders[rng.bounded(3)];
        item.isMaster = item.folderId == kFolders[0];
        item.isSeries = rng.bounded(3) == 0;
        item.created = kBase.addSecs(60 * rng.bounded(4)); // many equal times
        item.unread = rng.bounded(10) == 0;
        item.marked = item.unread;
    }
    return table;
}

} // namespace

class tst_DupComparison : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void groupedWalkEqualsPairwiseWalk();
    void searchCases_data();
    void searchCases();
    void chooseLoser_data();
    void chooseLoser();
    void mergeEqualsFindGroupRoot();
    void mergeClosesChains();
    void rulesAreReadOnlyForAPair();
};

void tst_DupComparison::groupedWalkEqualsPairwiseWalk()
{
    QRandomGenerator rng(4711);
    int tables = 0;
    int pairsSeen = 0;
    for (const QString &levels : {"012", "021", "102", "120", "201", "210"}) {
        for (int flags = 0; flags < 8; ++flags) {
            const LoserRules rules = rulesFrom(flags & 1, flags & 2, flags & 4, levels);
            for (const bool folderInside : {false, true}) {
                for (int round = 0; round < 40; ++round) {
                    DupItemTable grouped = randomTable(rng, rng.bounded(4));
                    DupItemTable literal = grouped;
                    DupPairs fast = FindDuplicatePairs(grouped, folderInside, [&] { return rules; });
                    DupPairs slow = PairwiseWalk(literal, folderInside, rules);
                    const QString where = QStringLiteral("levels %1, flags %2, folderInside %3, round %4")
                                              .arg(levels).arg(flags).arg(folderInside).arg(round);
                    QVERIFY2(pairText(fast) == pairText(slow), qPrintable(where + QStringLiteral(": ") + pairText(fast)
                                                                          + QStringLiteral(" / ") + pairText(slow)));
                    QVERIFY2(markedText(grouped) == markedText(literal), qPrintable(where));
                    MergePairs(fast);
                    literalMerge(slow);
                    QVERIFY2(pairText(fast) == pairText(slow), qPrintable(where + QStringLiteral(" (merged)")));
                    ++tables;
                    pairsSeen += fast.count();
                }
            }
        }
    }
    QCOMPARE(tables, 6 * 8 * 2 * 40);
    QVERIFY(pairsSeen > tables); // the tables are rich in duplicates
}

void tst_DupComparison::searchCases_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("rules"); // flags M S O, then the levels
    QTest::addColumn<bool>("folderInside");
    QTest::addColumn<QString>("pairs");  // after the merge
    QTest::addColumn<QString>("marked");

    const QStringList threeRising{"x;F1;1", "x;F1;2", "x;F1;3"};
    QTest::newRow("drei gleiche, ältestes bleibt") << threeRising << 1 << "O 012" << false << "1-2 1-3" << "2 3";
    QTest::newRow("drei gleiche, jüngstes bleibt") << threeRising << 1 << "- 012" << false << "1-2 1-3" << "1 2";
    QTest::newRow("gleiche Erstellzeit, ältestes bleiben")
        << QStringList{"x;F1;5", "x;F1;5"} << 1 << "O 012" << false << "1-2" << "2";
    QTest::newRow("gleiche Erstellzeit, jüngstes bleiben")
        << QStringList{"x;F1;5", "x;F1;5"} << 1 << "- 012" << false << "1-2" << "2";
    QTest::newRow("markierter Ordner schlägt Alter")
        << QStringList{"x;F2;1", "x;F1;2;M"} << 1 << "MO 012" << false << "1-2" << "1";
    QTest::newRow("Alter auf Stufe 2")
        << QStringList{"x;F2;1", "x;F1;2;M"} << 1 << "MO 210" << false << "1-2" << "2";
    QTest::newRow("Serie bleibt, Einzeltermin geht")
        << QStringList{"x;F1;1;S", "x;F1;2"} << 1 << "SO 102" << false << "1-2" << "2";
    QTest::newRow("Serie bleibt, auch wenn jünger")
        << QStringList{"x;F1;1", "x;F1;2;S"} << 1 << "SO 102" << false << "1-2" << "1";
    QTest::newRow("Serie ohne Schalter zählt nicht")
        << QStringList{"x;F1;1", "x;F1;2;S"} << 1 << "O 102" << false << "1-2" << "2";
    QTest::newRow("leere Felder sind gleich")
        << QStringList{"|;F1;1", "|;F1;2"} << 2 << "O 012" << false << "1-2" << "2";
    QTest::newRow("ein Feld verschieden")
        << QStringList{"a|b;F1;1", "a|c;F1;2"} << 2 << "O 012" << false << "" << "";
    QTest::newRow("Groß und klein verschieden")
        << QStringList{"a;F1;1", "A;F1;2"} << 1 << "O 012" << false << "" << "";
    QTest::newRow("ohne Felder alle gleich")
        << QStringList{"a;F1;1", "b;F2;2", "c;F1;3"} << 0 << "O 012" << false << "1-2 1-3" << "2 3";
    QTest::newRow("ohne Felder je Ordner gleich")
        << QStringList{"a;F1;1", "b;F2;2", "c;F1;3", "d;F2;4"} << 0 << "O 012" << true << "1-3 2-4" << "3 4";
    QTest::newRow("verschiedene Ordner ohne FolderInside")
        << QStringList{"x;F1;1", "x;F2;2"} << 1 << "O 012" << false << "1-2" << "2";
    QTest::newRow("verschiedene Ordner mit FolderInside")
        << QStringList{"x;F1;1", "x;F2;2"} << 1 << "O 012" << true << "" << "";
    QTest::newRow("ungelesenes Element ist kein Partner")
        << QStringList{"|;F1;1", "|;F1;2;U"} << 2 << "O 012" << false << "" << "2";
    QTest::newRow("ungelesenes Element in der Mitte")
        << QStringList{"x;F1;3", "x;F1;1;U", "x;F1;2"} << 1 << "- 012" << false << "1-3" << "2 3";
    QTest::newRow("ein Element allein") << QStringList{"x;F1;1"} << 1 << "O 012" << false << "" << "";
    QTest::newRow("Kette wird zur Gruppe")
        << QStringList{"x;F1;1", "x;F1;2", "x;F1;3", "x;F1;4"} << 1 << "- 012" << false << "1-2 1-3 1-4"
        << "1 2 3";
    QTest::newRow("zwei Gruppen verschränkt")
        << QStringList{"a;F1;1", "b;F1;1", "a;F1;2", "b;F1;0"} << 1 << "O 012" << false << "1-3 2-4" << "2 3";
}

void tst_DupComparison::searchCases()
{
    QFETCH(QStringList, items);
    QFETCH(int, columns);
    QFETCH(QString, rules);
    QFETCH(bool, folderInside);
    QFETCH(QString, pairs);
    QFETCH(QString, marked);
    const QStringList ruleParts = rules.split(u' ');
    const LoserRules loserRules = rulesFrom(ruleParts[0].contains(u'M'), ruleParts[0].contains(u'S'),
                                            ruleParts[0].contains(u'O'), ruleParts[1]);
    DupItemTable table = tableFrom(items, columns);
    DupPairs found = FindDuplicatePairs(table, folderInside, [&] { return loserRules; });
    MergePairs(found);
    QCOMPARE(pairText(found), pairs);
    QCOMPARE(markedText(table), marked);
}

void tst_DupComparison::chooseLoser_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<QString>("first");  // M S and the creation minute
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("firstLoses");
    QTest::newRow("ältestes bleibt") << "O 012" << "1" << "2" << false;
    QTest::newRow("jüngstes bleibt") << "- 012" << "1" << "2" << true;
    QTest::newRow("gleich alt, ältestes bleibt") << "O 012" << "1" << "1" << false;
    QTest::newRow("gleich alt, jüngstes bleibt") << "- 012" << "1" << "1" << false;
    QTest::newRow("beide im markierten Ordner") << "MO 012" << "M 1" << "M 2" << false;
    QTest::newRow("zweites im markierten Ordner") << "MO 012" << "1" << "M 2" << true;
    QTest::newRow("erstes im markierten Ordner") << "M 012" << "M 1" << "2" << false;
    QTest::newRow("Ordner aus, Alter entscheidet") << "O 012" << "1" << "M 2" << false;
    QTest::newRow("Serie vor Ordner") << "MSO 102" << "M 1" << "S 2" << true;
    QTest::newRow("Ordner vor Serie") << "MSO 012" << "M 1" << "S 2" << false;
    QTest::newRow("Alter vor allem") << "MSO 210" << "S 1" << "M 2" << false;
    QTest::newRow("keine Permutation, Ordner schweigt") << "MO 000" << "1" << "2" << false;
}

void tst_DupComparison::chooseLoser()
{
    QFETCH(QString, rules);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(bool, firstLoses);
    const QStringList parts = rules.split(u' ');
    const LoserRules loserRules = rulesFrom(parts[0].contains(u'M'), parts[0].contains(u'S'),
                                            parts[0].contains(u'O'), parts[1]);
    auto created = [](const QString &item) { return kBase.addSecs(60 * item.split(u' ').last().toInt()); };
    const DupLoser loser = ChooseLoser(loserRules, first.contains(u'M'), second.contains(u'M'), created(first),
                                       created(second), first.contains(u'S'), second.contains(u'S'));
    QCOMPARE(loser == DupLoser::First, firstLoses);
}

void tst_DupComparison::mergeEqualsFindGroupRoot()
{
    QRandomGenerator rng(815);
    for (int round = 0; round < 500; ++round) {
        DupItemTable table = randomTable(rng, 1);
        const LoserRules rules = rulesFrom(rng.bounded(2), rng.bounded(2), rng.bounded(2), QStringLiteral("012"));
        DupPairs pairs = FindDuplicatePairs(table, rng.bounded(2), [&] { return rules; });
        DupPairs literal = pairs;
        MergePairs(pairs);
        literalMerge(literal);
        QCOMPARE(pairText(pairs), pairText(literal));
        // No group root is itself a second partner, and no item is second twice.
        QSet<int> seconds(pairs.second.cbegin(), pairs.second.cend());
        QCOMPARE(seconds.size(), pairs.count());
        for (int first : pairs.first)
            QVERIFY(!seconds.contains(first));
    }
}

void tst_DupComparison::mergeClosesChains()
{
    DupPairs pairs;
    pairs.add(1, 2);
    pairs.add(2, 3);
    pairs.add(3, 4);
    pairs.add(5, 6);
    MergePairs(pairs);
    QCOMPARE(pairText(pairs), QStringLiteral("1-2 1-3 1-4 5-6"));
    QCOMPARE(FindGroupRoot(pairs, 7, 3), 5); // no pair names 7 as second: the pair's own first
}

void tst_DupComparison::rulesAreReadOnlyForAPair()
{
    // A broken level matters only when a pair has to be decided.
    int asked = 0;
    auto rules = [&asked] {
        ++asked;
        return LoserRules{};
    };
    DupItemTable different = tableFrom({"a;F1;1", "b;F1;2"}, 1);
    (void)FindDuplicatePairs(different, false, rules);
    QCOMPARE(asked, 0);
    DupItemTable equal = tableFrom({"a;F1;1", "a;F1;2", "a;F1;3"}, 1);
    (void)FindDuplicatePairs(equal, false, rules);
    QCOMPARE(asked, 1);
}

QTEST_GUILESS_MAIN(tst_DupComparison)
#include "tst_dupcomparison.moc"
