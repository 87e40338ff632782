// The preferences of the duplicate search as settings: the levels and
// switches that ChooseLoser reads, broken values, the Boolean conversion, and
// the chain from the options dialog's sliders to the order of the criteria.
#include "duplicates/DupComparison.h"
#include "duplicates/DupError.h"
#include "frame/RegistryFunctions.h"
#include "options/OptionsLogic.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QTest>

using Sliders = std::array<int, 3>;
Q_DECLARE_METATYPE(Sliders)

namespace {

// The criteria in the order ChooseLoser consults them: level 2, 1, 0.
QString consultedOrder(const LoserRules &rules)
{
    QString order;
    for (int level = 2; level >= 0; --level)
        order += QString::number(rules.criterionAtLevel[size_t(level)]);
    return order;
}

} // namespace

class tst_DupLoserSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void rulesFromSettings_data();
    void rulesFromSettings();
    void brokenSettingsAreErrors_data();
    void brokenSettingsAreErrors();
    void settingAsBoolean_data();
    void settingAsBoolean();
    void slidersDecideTheOrder_data();
    void slidersDecideTheOrder();
};

void tst_DupLoserSettings::rulesFromSettings_data()
{
    QTest::addColumn<QStringList>("priorities"); // Priority.0, .1, .2
    QTest::addColumn<QString>("levels");         // criterion at level 2, 1, 0
    QTest::newRow("Vorgabe: Ordner, Serie, Alter") << QStringList{"2", "1", "0"} << "012";
    QTest::newRow("Alter zuerst") << QStringList{"0", "1", "2"} << "210";
    QTest::newRow("Serie zuerst") << QStringList{"1", "2", "0"} << "102";
    QTest::newRow("Dezimalwert gerundet") << QStringList{"1.6", "1", "0"} << "012";
    QTest::newRow("Leerzeichen um die Zahl") << QStringList{" 2 ", "1", "0"} << "012";
}

void tst_DupLoserSettings::rulesFromSettings()
{
    QFETCH(QStringList, priorities);
    QFETCH(QString, levels);
    TestEnvironment environment(false);
    for (int k = 0; k < 3; ++k)
        SaveSetting(QStringLiteral("Priority.%1").arg(k), priorities[k]);
    const LoserRules rules = ReadLoserRules();
    QCOMPARE(consultedOrder(rules), levels);
    QVERIFY(rules.masterFolder && rules.series && rules.keepOldest); // the stored defaults are "1"
}

void tst_DupLoserSettings::brokenSettingsAreErrors_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("number");
    QTest::newRow("Stufe 3") << "Priority.1" << "3" << int(DupErrors::OutOfRange);
    QTest::newRow("Stufe -1") << "Priority.2" << "-1" << int(DupErrors::OutOfRange);
    QTest::newRow("Stufe ohne Zahl") << "Priority.0" << "hoch" << int(DupErrors::TypeMismatch);
    QTest::newRow("OldDel leer") << "OldDel" << "" << int(DupErrors::TypeMismatch);
    QTest::newRow("MasterFolder ja") << "MasterFolder" << "ja" << int(DupErrors::TypeMismatch);
}

void tst_DupLoserSettings::brokenSettingsAreErrors()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(int, number);
    TestEnvironment environment(false);
    SaveSetting(name, value);
    try {
        (void)ReadLoserRules();
        QFAIL("no error");
    } catch (const DupError &error) {
        QCOMPARE(error.number, number);
        QVERIFY(!error.description.isEmpty());
    }
}

void tst_DupLoserSettings::settingAsBoolean_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected"); // 1 true, 0 false, -1 error
    QTest::newRow("1") << "1" << 1;
    QTest::newRow("0") << "0" << 0;
    QTest::newRow("andere Zahl") << "-1" << 1;
    QTest::newRow("Wahr") << "Wahr" << 1;
    QTest::newRow("false klein") << "false" << 0;
    QTest::newRow("Leerzeichen") << " 1 " << 1;
    QTest::newRow("leer") << "" << -1;
    QTest::newRow("Wort") << "ja" << -1;
}

void tst_DupLoserSettings::settingAsBoolean()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    try {
        QCOMPARE(int(DupSettingAsBoolean(text)), expected);
    } catch (const DupError &error) {
        QCOMPARE(-1, expected);
        QCOMPARE(error.number, int(DupErrors::TypeMismatch));
    }
}

// What the options dialog stores, the search reads back: slider s stands for
// level s and its value names the criterion at that level. The dialog draws
// slider s in the row of criterion s, so for the two rotations the row that a
// slider stands in does not name the criterion it places (see README).
void tst_DupLoserSettings::slidersDecideTheOrder_data()
{
    QTest::addColumn<Sliders>("sliders"); // values of sldPrio(0), (1), (2)
    QTest::addColumn<QString>("levels");  // criterion at level 2, 1, 0
    QTest::newRow("Vorgabe: Ordner, Serie, Alter") << Sliders{2, 1, 0} << "012";
    QTest::newRow("Alter, Serie, Ordner") << Sliders{0, 1, 2} << "210";
    QTest::newRow("Serie, Alter, Ordner") << Sliders{0, 2, 1} << "120";
    QTest::newRow("Alter, Ordner, Serie") << Sliders{1, 0, 2} << "201";
    // Each slider is the level of its own row: moving "Serienelemente" to the
    // top puts the series first.
    QTest::newRow("Serie nach oben: Serie, Ordner, Alter") << Sliders{1, 2, 0} << "102";
    QTest::newRow("Ordner, Alter, Serie") << Sliders{2, 0, 1} << "021";
}

void tst_DupLoserSettings::slidersDecideTheOrder()
{
    QFETCH(Sliders, sliders);
    QFETCH(QString, levels);
    TestEnvironment environment(false);
    SavePrioritySliders(sliders);
    QCOMPARE(consultedOrder(ReadLoserRules()), levels);
    // The dialog shows the same positions when it opens again.
    QCOMPARE(LoadPrioritySliders().value_or(Sliders{-1, -1, -1}), sliders);
}

QTEST_GUILESS_MAIN(tst_DupLoserSettings)
#include "tst_duplosersettings.moc"
