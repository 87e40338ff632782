// The single steps of the number normaliser and the look-ups in its tables,
// on tables built in memory.
#include "telephone/TelNrStandard.h"
#include "telephone/TelTables.h"

#include <QLocale>
#include <QTest>

using CountryRows = QList<CountryCodeRow>;
using AreaRows = QList<AreaCodeRow>;
Q_DECLARE_METATYPE(CountryRows)
Q_DECLARE_METATYPE(AreaRows)

class tst_TelNrSteps : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void reduceToDigits_data();
    void reduceToDigits();
    void plusToInternationalPrefix_data();
    void plusToInternationalPrefix();
    void matchCountry_data();
    void matchCountry();
    void findAreaCode_data();
    void findAreaCode();
    void secondAttemptWithPrefix_data();
    void secondAttemptWithPrefix();
    void tidySeparators_data();
    void tidySeparators();
    void settingAsBoolean_data();
    void settingAsBoolean();
    void blockWidthFromText_data();
    void blockWidthFromText();
    void cutIntoBlocksStopsAtOverflowOnlyWhenReached();
};

namespace {

std::optional<QString> text(const char *value)
{
    if (!value)
        return std::nullopt;
    return QString::fromUtf8(value);
}

CountryRows countries(std::initializer_list<std::pair<const char *, const char *>> rows)
{
    CountryRows list;
    for (const auto &[code, prefix] : rows)
        list.append({text(code), text(prefix)});
    return list;
}

AreaRows areas(std::initializer_list<std::pair<const char *, const char *>> rows)
{
    AreaRows list;
    for (const auto &[country, area] : rows)
        list.append({text(country), text(area)});
    return list;
}

} // namespace

void tst_TelNrSteps::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_TelNrSteps::reduceToDigits_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("trenn");
    QTest::addColumn<QString>("trennOut");
    QTest::addColumn<QString>("expected");
    const QString dash = QStringLiteral("-");
    QTest::newRow("Leerzeichen und Schrägstrich fallen") << QStringLiteral("030 / 123 45") << dash << dash << QStringLiteral("03012345");
    QTest::newRow("nur der letzte Trenner bleibt") << QStringLiteral("0049-30-1234-56") << dash << dash << QStringLiteral("0049301234-56");
    QTest::newRow("Trenner in Ausgabeform") << QStringLiteral("030 1234-5") << dash << QStringLiteral(" - ") << QStringLiteral("0301234 - 5");
    QTest::newRow("leerer Ausgabetrenner") << QStringLiteral("030 1234-5") << dash << QString() << QStringLiteral("03012345");
    QTest::newRow("Plus bleibt überall") << QStringLiteral("+49 (0)+30") << dash << dash << QStringLiteral("+490+30");
    QTest::newRow("Buchstaben und Klammern fallen") << QStringLiteral("Tel. (030) 12 34 App. 5") << dash << dash << QStringLiteral("03012345");
    QTest::newRow("breite Ziffern zählen nicht") << QStringLiteral("０３０ 12") << dash << dash << QStringLiteral("12");
    QTest::newRow("leerer Eingabetrenner") << QStringLiteral("030-12") << QString() << dash << QStringLiteral("03012");
    QTest::newRow("Eingabetrenner aus zwei Zeichen passt nie") << QStringLiteral("030--12") << QStringLiteral("--") << dash << QStringLiteral("03012");
    QTest::newRow("Ziffer als Eingabetrenner bleibt Ziffer") << QStringLiteral("030512") << QStringLiteral("5") << dash << QStringLiteral("030512");
    QTest::newRow("nur Trenner") << QStringLiteral("-") << dash << dash << QStringLiteral("-");
    QTest::newRow("leer") << QString() << dash << dash << QString();
}

void tst_TelNrSteps::reduceToDigits()
{
    QFETCH(QString, number);
    QFETCH(QString, trenn);
    QFETCH(QString, trennOut);
    QFETCH(QString, expected);
    QCOMPARE(ReduceToDigits(number, trenn, trennOut), expected);
}

void tst_TelNrSteps::plusToInternationalPrefix_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("iddp");
    QTest::addColumn<QString>("expected");
    const QString iddp = QStringLiteral("00");
    QTest::newRow("Plus wird 00") << QStringLiteral("+49301234") << QStringLiteral("+49 30 1234") << iddp << QStringLiteral("0049301234");
    QTest::newRow("Plus vor eigenem 00 fällt") << QStringLiteral("+0049301234") << QStringLiteral("+0049 30 1234") << iddp << QStringLiteral("0049301234");
    QTest::newRow("Leerzeichen vor Plus 00") << QStringLiteral("+0049301234") << QStringLiteral(" +0049 30 1234") << iddp << QStringLiteral("000049301234");
    QTest::newRow("Plus in der Mitte fällt") << QStringLiteral("030+1234") << QStringLiteral("030+1234") << iddp << QStringLiteral("0301234");
    QTest::newRow("Präfix 011") << QStringLiteral("+1212") << QStringLiteral("+1 212") << QStringLiteral("011") << QStringLiteral("0111212");
    QTest::newRow("einzelnes Plus") << QStringLiteral("+") << QStringLiteral("+") << iddp << QStringLiteral("00");
    QTest::newRow("leeres Präfix: Plus fällt") << QStringLiteral("+4930") << QStringLiteral("+49 30") << QString() << QStringLiteral("4930");
}

void tst_TelNrSteps::plusToInternationalPrefix()
{
    QFETCH(QString, digits);
    QFETCH(QString, number);
    QFETCH(QString, iddp);
    QFETCH(QString, expected);
    QCOMPARE(PlusToInternationalPrefix(digits, number, iddp), expected);
}

void tst_TelNrSteps::matchCountry_data()
{
    QTest::addColumn<CountryRows>("rows");
    QTest::addColumn<QString>("digits");
    QTest::addColumn<bool>("plus");
    QTest::addColumn<QString>("country");   // empty: no match
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<int>("cut");
    const CountryRows usual = countries({{"1", "1"}, {"41", "0"}, {"423", nullptr}, {"49", " 0 "}});
    QTest::newRow("mit 00") << usual << QStringLiteral("0049301234") << false << QStringLiteral("49") << QStringLiteral("0") << 4;
    QTest::newRow("Präfix NULL wird leer") << usual << QStringLiteral("004231234") << false << QStringLiteral("423") << QString() << 5;
    QTest::newRow("ohne 00 und ohne Plus") << usual << QStringLiteral("49301234") << false << QString() << QString() << 0;
    QTest::newRow("Plus: Code am Anfang") << usual << QStringLiteral("49301234") << true << QStringLiteral("49") << QStringLiteral("0") << 2;
    QTest::newRow("nicht in der Tabelle") << usual << QStringLiteral("0033123") << true << QString() << QString() << 0;
    QTest::newRow("erste Zeile gewinnt: 4 vor 49")
        << countries({{"4", "0"}, {"49", "0"}}) << QStringLiteral("0049301234") << false << QStringLiteral("4") << QStringLiteral("0") << 3;
    QTest::newRow("erste Zeile gewinnt: 49 vor 4")
        << countries({{"49", "0"}, {"4", "0"}}) << QStringLiteral("0049301234") << false << QStringLiteral("49") << QStringLiteral("0") << 4;
    QTest::newRow("Plus-Treffer in früherer Zeile gewinnt")
        << countries({{"00", "9"}, {"49", "0"}}) << QStringLiteral("0049301234") << true << QStringLiteral("00") << QStringLiteral("9") << 2;
    QTest::newRow("beide Tests in einer Zeile: mit Präfix")
        << countries({{"0", "1"}}) << QStringLiteral("000123") << true << QStringLiteral("0") << QStringLiteral("1") << 3;
    QTest::newRow("Code mit Leerzeichen gespeichert")
        << countries({{" 49 ", "0"}}) << QStringLiteral("0049301234") << false << QStringLiteral("49") << QStringLiteral("0") << 4;
    QTest::newRow("doppelte Zeile: die erste zählt")
        << countries({{"49", "0"}, {"49", "9"}}) << QStringLiteral("0049301234") << false << QStringLiteral("49") << QStringLiteral("0") << 4;
}

void tst_TelNrSteps::matchCountry()
{
    QFETCH(CountryRows, rows);
    QFETCH(QString, digits);
    QFETCH(bool, plus);
    QFETCH(QString, country);
    QFETCH(QString, prefix);
    QFETCH(int, cut);
    const TelTables tables(rows, {});
    const std::optional<CountryMatch> match = tables.matchCountry(digits, QStringLiteral("00"), plus);
    QCOMPARE(match.has_value(), !country.isEmpty());
    if (match) {
        QCOMPARE(match->countryCode, country);
        QCOMPARE(match->nationalPrefix, prefix);
        QCOMPARE(match->cutLength, qsizetype(cut));
    }
}

void tst_TelNrSteps::findAreaCode_data()
{
    QTest::addColumn<AreaRows>("rows");
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("digits");
    QTest::addColumn<bool>("withNullRows");
    QTest::addColumn<QString>("expected");   // "-": not found
    const AreaRows german = areas({{"49", "301"}, {"49", "30"}, {"49", "221"}, {"49", "5202"}, {"49", "171"}});
    QTest::newRow("kürzeste Vorwahl gewinnt") << german << QStringLiteral("49") << QStringLiteral("3011234") << true << QStringLiteral("30");
    QTest::newRow("vierstellig") << german << QStringLiteral("49") << QStringLiteral("5202998288") << true << QStringLiteral("5202");
    QTest::newRow("Vorwahl länger als Ziffern") << german << QStringLiteral("49") << QStringLiteral("52") << true << QStringLiteral("-");
    QTest::newRow("keine passende") << german << QStringLiteral("49") << QStringLiteral("8000123") << true << QStringLiteral("-");
    QTest::newRow("anderes Land") << german << QStringLiteral("43") << QStringLiteral("301234") << true << QStringLiteral("-");
    QTest::newRow("Land mit Leerzeichen ist ein anderes") << german << QStringLiteral(" 49") << QStringLiteral("301234") << true << QStringLiteral("-");
    const AreaRows closed = areas({{"423", nullptr}, {"423", "12"}});
    QTest::newRow("NULL-Zeile gewinnt sofort") << closed << QStringLiteral("423") << QStringLiteral("1234567") << true << QString();
    QTest::newRow("ohne NULL-Zeilen zählt die Vorwahl") << closed << QStringLiteral("423") << QStringLiteral("1234567") << false << QStringLiteral("12");
    const AreaRows blanks = areas({{"49", " 30"}, {"49", "22 "}, {"49", ""}, {"49", "7"}});
    QTest::newRow("führendes Leerzeichen: nie Kandidat") << blanks << QStringLiteral("49") << QStringLiteral("301234") << true << QStringLiteral("-");
    QTest::newRow("Leerzeichen am Ende wird getrimmt") << blanks << QStringLiteral("49") << QStringLiteral("221234") << true << QStringLiteral("22");
    QTest::newRow("Land mit Leerzeichen: Reihenfolge zählt")
        << areas({{"49", "2 "}, {"49", "22"}}) << QStringLiteral("49") << QStringLiteral("221234") << true << QStringLiteral("2");
    QTest::newRow("leere Vorwahl ist kein NULL") << areas({{"49", ""}}) << QStringLiteral("49") << QStringLiteral("30") << true << QStringLiteral("-");
    QTest::newRow("Buchstaben genau verglichen") << areas({{"49", "a1"}}) << QStringLiteral("49") << QStringLiteral("A1") << true << QStringLiteral("-");
}

void tst_TelNrSteps::findAreaCode()
{
    QFETCH(AreaRows, rows);
    QFETCH(QString, country);
    QFETCH(QString, digits);
    QFETCH(bool, withNullRows);
    QFETCH(QString, expected);
    const TelTables tables({}, rows);
    const std::optional<QString> area = tables.findAreaCode(country, digits, withNullRows);
    QCOMPARE(area.value_or(QStringLiteral("-")), expected);
}

void tst_TelNrSteps::secondAttemptWithPrefix_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<bool>("prefixCut");
    QTest::addColumn<QString>("area");        // "-": not found
    QTest::addColumn<QString>("subscriber");
    QTest::newRow("Vorwahl beginnt mit dem Präfix") << QStringLiteral("61234") << true << QStringLiteral("06") << QStringLiteral("1234");
    QTest::newRow("ohne abgeschnittenes Präfix kein zweiter Versuch") << QStringLiteral("61234") << false << QStringLiteral("-") << QString();
    QTest::newRow("erster Versuch genügt") << QStringLiteral("301234") << true << QStringLiteral("30") << QStringLiteral("1234");
}

// A code that begins with the national prefix is found with the prefix put
// back in front of the digits.
void tst_TelNrSteps::secondAttemptWithPrefix()
{
    QFETCH(QString, digits);
    QFETCH(bool, prefixCut);
    QFETCH(QString, area);
    QFETCH(QString, subscriber);
    const TelTables tables(countries({{"39", "0"}}), areas({{"39", "06"}, {"39", "30"}}));
    TelNrParts parts;
    parts.digits = digits;
    parts.country = QStringLiteral("39");
    parts.nationalPrefix = QStringLiteral("0");
    parts.prefixCut = prefixCut;
    ResolveAreaCode(parts, tables);
    QCOMPARE(parts.found, area != QStringLiteral("-"));
    if (parts.found) {
        QCOMPARE(parts.areaCode, area);
        QCOMPARE(parts.subscriber, subscriber);
    }
}

void tst_TelNrSteps::tidySeparators_data()
{
    QTest::addColumn<QString>("subscriber");
    QTest::addColumn<QString>("digits");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("tidySubscriber");
    QTest::addColumn<QString>("tidyDigits");
    const QString dash = QStringLiteral("-");
    QTest::newRow("vorn") << QStringLiteral("-1234") << QStringLiteral("30-1234") << dash << QStringLiteral("1234") << QStringLiteral("30-1234");
    QTest::newRow("hinten") << QStringLiteral("1234-") << QStringLiteral("301234-") << dash << QStringLiteral("1234") << QStringLiteral("301234");
    QTest::newRow("Durchwahl bleibt") << QStringLiteral("1234-56") << QStringLiteral("301234-56") << dash << QStringLiteral("1234-56") << QStringLiteral("301234-56");
    QTest::newRow("nur Trenner") << QStringLiteral("-") << QStringLiteral("-") << dash << QString() << QString();
    QTest::newRow("langer Trenner") << QStringLiteral(" - 12") << QStringLiteral("12 - ") << QStringLiteral(" - ") << QStringLiteral("12") << QStringLiteral("12");
    QTest::newRow("leerer Trenner ändert nichts") << QStringLiteral("12") << QStringLiteral("12") << QString() << QStringLiteral("12") << QStringLiteral("12");
}

void tst_TelNrSteps::tidySeparators()
{
    QFETCH(QString, subscriber);
    QFETCH(QString, digits);
    QFETCH(QString, separator);
    QFETCH(QString, tidySubscriber);
    QFETCH(QString, tidyDigits);
    TelNrParts parts;
    parts.subscriber = subscriber;
    parts.digits = digits;
    TidySeparators(parts, separator);
    QCOMPARE(parts.subscriber, tidySubscriber);
    QCOMPARE(parts.digits, tidyDigits);
}

void tst_TelNrSteps::settingAsBoolean_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("expected"); // 0, 1, or -1 for the error
    QTest::newRow("1") << QStringLiteral("1") << 1;
    QTest::newRow("0") << QStringLiteral("0") << 0;
    QTest::newRow("-1") << QStringLiteral("-1") << 1;
    QTest::newRow("Leerzeichen um 0") << QStringLiteral(" 0 ") << 0;
    QTest::newRow("0,0") << QStringLiteral("0,0") << 0;
    QTest::newRow("True") << QStringLiteral("True") << 1;
    QTest::newRow("falsch") << QStringLiteral("falsch") << 0;
    QTest::newRow("WAHR") << QStringLiteral("WAHR") << 1;
    QTest::newRow("leer ist kein Wert") << QString() << -1;
    QTest::newRow("ja ist kein Wert") << QStringLiteral("ja") << -1;
}

void tst_TelNrSteps::settingAsBoolean()
{
    QFETCH(QString, value);
    QFETCH(int, expected);
    try {
        QCOMPARE(int(SettingAsBoolean(value)), expected);
    } catch (const TelNrError &error) {
        QCOMPARE(expected, -1);
        QCOMPARE(error.number, TelNrErrors::TypeMismatch);
    }
}

void tst_TelNrSteps::blockWidthFromText_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("expected"); // -99999: does not fit
    QTest::newRow("Zahl") << QStringLiteral("3") << 3;
    QTest::newRow("ein Leerzeichen") << QStringLiteral(" ") << 0;
    QTest::newRow("Text") << QStringLiteral("x") << 0;
    QTest::newRow("Leerzeichen um die Zahl") << QStringLiteral(" 4 ") << 4;
    QTest::newRow("2,5 zur geraden Zahl") << QStringLiteral("2,5") << 2;
    QTest::newRow("3.5 zur geraden Zahl") << QStringLiteral("3.5") << 4;
    QTest::newRow("negativ") << QStringLiteral("-2") << -2;
    QTest::newRow("größte 16-Bit-Zahl") << QStringLiteral("32767") << 32767;
    QTest::newRow("zu groß") << QStringLiteral("32768") << -99999;
    QTest::newRow("zu klein") << QStringLiteral("-32769") << -99999;
}

void tst_TelNrSteps::blockWidthFromText()
{
    QFETCH(QString, value);
    QFETCH(int, expected);
    QCOMPARE(BlockWidthFromText(value).value_or(-99999), expected);
}

void tst_TelNrSteps::cutIntoBlocksStopsAtOverflowOnlyWhenReached()
{
    const QList<BlockWidth> widths{3, std::nullopt, 0, 0, 0};
    const QString sep = QStringLiteral(" ");
    QCOMPARE(CutIntoBlocks(QStringLiteral("12"), widths, sep, QStringLiteral("-")), QStringLiteral("12"));
    QCOMPARE(CutIntoBlocks(QStringLiteral("123-4"), widths, sep, QStringLiteral("-")), QStringLiteral("123-4"));
    try {
        CutIntoBlocks(QStringLiteral("12345"), widths, sep, QStringLiteral("-"));
        QFAIL("no overflow");
    } catch (const TelNrError &error) {
        QCOMPARE(error.number, TelNrErrors::Overflow);
        QCOMPARE(error.description, QStringLiteral("Überlauf"));
    }
}

QTEST_GUILESS_MAIN(tst_TelNrSteps)
#include "tst_telnrsteps.moc"
