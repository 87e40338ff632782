// The number normaliser against the small sample tables: the examples of
// its description, the options, number blocks and idempotence.
#include "telephone/TelNrStandard.h"

#include "frame/RegistryFunctions.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QTest>

using Settings = QList<QPair<QString, QString>>;
Q_DECLARE_METATYPE(Settings)

class tst_TelNrStandard : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void examples_data();
    void examples();
    void resultIsStable_data();
    void resultIsStable();
    void options_data();
    void options();
    void countryWithoutAreaRowsStays();
    void formatNumberBlocks_data();
    void formatNumberBlocks();
};

namespace {

void addExampleRows()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("changed");
    auto row = [](const char *name, const QString &in, const QString &out, bool changed) {
        QTest::newRow(name) << in << out << changed;
    };
    auto same = [](const char *name, const QString &in) { QTest::newRow(name) << in << in << false; };
    row("Ortsnetz mit Schrägstrich und Durchwahl", QStringLiteral("030 / 123 45-6"), QStringLiteral("+49 (30) 12345-6"), true);
    row("Plus mit (0)", QStringLiteral("+49 (0)30 1234567"), QStringLiteral("+49 (30) 1234567"), true);
    row("0049 mit Bindestrichen, der letzte bleibt", QStringLiteral("0049-30-1234-56"), QStringLiteral("+49 (30) 1234-56"), true);
    row("Bindestrich hinter der Vorwahl fällt", QStringLiteral("030-1234"), QStringLiteral("+49 (30) 1234"), true);
    row("dreistellige Vorwahl", QStringLiteral("0221/123-45"), QStringLiteral("+49 (221) 123-45"), true);
    row("Beschriftung ohne Ziffer", QStringLiteral("Fax: 030 1234"), QStringLiteral("+49 (30) 1234"), true);
    row("Buchstaben zwischen den Ziffern", QStringLiteral("030 1234 App. 56"), QStringLiteral("+49 (30) 123456"), true);
    same("Ziffer in der Beschriftung zählt mit", QStringLiteral("Tel. 2: 030 1234"));
    same("schon normalisiert", QStringLiteral("+49 (30) 1234567"));
    row("alte Schweizer Vorwahl 1", QStringLiteral("+41 1 2345678"), QStringLiteral("+41 (44) 2345678"), true);
    row("Italien ohne nationales Präfix", QStringLiteral("+39 06 1234567"), QStringLiteral("+39 (06) 1234567"), true);
    row("Land ohne Ortsvorwahlen", QStringLiteral("+423 123 45 67"), QStringLiteral("+423 1234567"), true);
    row("nur Vorwahl", QStringLiteral("030"), QStringLiteral("+49 (30) "), true);
    row("nur Vorwahl mit Bindestrich", QStringLiteral("030-"), QStringLiteral("+49 (30) "), true);
    same("Ortsnummer ohne Präfix", QStringLiteral("1234567"));
    same("keine Nummer", QStringLiteral("keine Nummer"));
    same("Land nicht in der Tabelle", QStringLiteral("+33 1 2345"));
    same("Vorwahl nicht in der Tabelle", QStringLiteral("08000 123"));
    row("drei Leerzeichen", QStringLiteral("   "), QString(), false);
    row("leer", QString(), QString(), false);
    same("einzelnes Plus", QStringLiteral("+"));
    row("Plus vor eigenem 00", QStringLiteral("+0049 30 1234"), QStringLiteral("+49 (30) 1234"), true);
    same("Leerzeichen vor Plus und 00", QStringLiteral(" +0049 30 1234"));
    row("Leerzeichen vor dem Plus", QStringLiteral(" +49 30 1234"), QStringLiteral("+49 (30) 1234"), true);
}

void applySettings(const Settings &settings)
{
    for (const auto &[name, value] : settings)
        SaveSetting(name, value);
}

} // namespace

void tst_TelNrStandard::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_TelNrStandard::examples_data()
{
    addExampleRows();
}

void tst_TelNrStandard::examples()
{
    QFETCH(QString, input);
    QFETCH(QString, expected);
    QFETCH(bool, changed);
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    MessageRecorder boxes;
    bool wasChanged = !changed;
    QCOMPARE(StandardTelNr(input, wasChanged), expected);
    QCOMPARE(wasChanged, changed);
    QCOMPARE(boxes.count(), 0);
}

void tst_TelNrStandard::resultIsStable_data()
{
    addExampleRows();
}

// A second run over the same contacts changes nothing.
void tst_TelNrStandard::resultIsStable()
{
    QFETCH(QString, expected);
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    bool changed = true;
    QCOMPARE(StandardTelNr(expected, changed), expected);
    QVERIFY2(!changed, qPrintable(expected));
}

void tst_TelNrStandard::options_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    using S = QPair<QString, QString>;
    auto s = [](const char *name, const char *value) { return S(QString::fromLatin1(name), QString::fromUtf8(value)); };
    const Settings plus{s("Plus", "1")};
    QTest::newRow("Plus: Ländervorwahl ohne Präfix") << plus << QStringLiteral("49 30 1234") << QStringLiteral("+49 (30) 1234");
    QTest::newRow("Plus: Ortsnummer beginnt mit Ländervorwahl") << plus << QStringLiteral("4144 1234") << QStringLiteral("+41 (44) 1234");
    QTest::newRow("ohne Plus bleibt sie") << Settings{} << QStringLiteral("4144 1234") << QStringLiteral("4144 1234");
    QTest::newRow("Plus als Wahr") << Settings{s("Plus", "Wahr")} << QStringLiteral("49 30 1234") << QStringLiteral("+49 (30) 1234");
    QTest::newRow("Plus als -1") << Settings{s("Plus", "-1")} << QStringLiteral("49 30 1234") << QStringLiteral("+49 (30) 1234");
    QTest::newRow("vorhandene Ländervorwahl ignorieren")
        << Settings{s("IgnoreCountryCode", "1")} << QStringLiteral("+41 30 1234") << QStringLiteral("+49 (30) 1234");
    QTest::newRow("eigenes Land Schweiz")
        << Settings{s("CountryCode", " 41 "), s("NDDP", "0")} << QStringLiteral("044 1234") << QStringLiteral("+41 (44) 1234");
    QTest::newRow("Präfix 011")
        << Settings{s("IDDP", "011")} << QStringLiteral("011 49 30 1234") << QStringLiteral("+49 (30) 1234");
    QTest::newRow("Präfix 011 und Plus")
        << Settings{s("IDDP", "011")} << QStringLiteral("+49 30 1234") << QStringLiteral("+49 (30) 1234");
    QTest::newRow("Durchwahl mit Schrägstrich")
        << Settings{s("DurchwahlTrenn", "/")} << QStringLiteral("030/1234-56") << QStringLiteral("+49 (30) 123456");
    QTest::newRow("eigene Trennzeichen")
        << Settings{s("IDDPOut", " 00 "), s("VorwahlTrennOut1", "-"), s("VorwahlTrennOut2", "/"), s("DurchwahlTrennOut", " - ")}
        << QStringLiteral("030 1234-5") << QStringLiteral("0049-30/1234 - 5");
    QTest::newRow("leere Trennzeichen")
        << Settings{s("IDDPOut", ""), s("VorwahlTrennOut1", ""), s("VorwahlTrennOut2", ""), s("DurchwahlTrennOut", "")}
        << QStringLiteral("030 1234-5") << QStringLiteral("493012345");
    QTest::newRow("Schweiz mit eigenen Trennzeichen")
        << Settings{s("IDDPOut", "00"), s("VorwahlTrennOut1", "-"), s("VorwahlTrennOut2", "/")}
        << QStringLiteral("+41 1 234") << QStringLiteral("0041-44/234");
    QTest::newRow("Schweizer Umwandlung aus")
        << Settings{s("SchweizKonv", "0")} << QStringLiteral("+41 1 2345678") << QStringLiteral("+41 (1) 2345678");
    QTest::newRow("Blöcke mit Vorwahl")
        << Settings{s("UseNumberBlocksAreaPres", "1"), s("BlockA1", "2"), s("BlockA2", "2"), s("BlockS1", "3"), s("BlockS2", "3")}
        << QStringLiteral("05202 998288-10") << QStringLiteral("+49 (52 02) 998 288-10");
    QTest::newRow("Blöcke mit Vorwahl, Schalter aus")
        << Settings{s("BlockA1", "2"), s("BlockA2", "2"), s("BlockS1", "3"), s("BlockS2", "3")}
        << QStringLiteral("05202 998288-10") << QStringLiteral("+49 (5202) 998288-10");
    QTest::newRow("Blöcke ohne Vorwahl")
        << Settings{s("UseNumberBlocksAreaNo", "1"), s("BlockT1", "3"), s("BlockT2", "2"), s("BlockT3", "2"), s("BlockTrennAreaNo", ".")}
        << QStringLiteral("+423 1234567") << QStringLiteral("+423 123.45.67");
    QTest::newRow("Blöcke mit alter Schweizer Vorwahl")
        << Settings{s("UseNumberBlocksAreaPres", "1"), s("BlockA1", "2"), s("BlockS1", "3")}
        << QStringLiteral("+41 1 2345678") << QStringLiteral("+41 (44) 234 5678");
    const Settings country41{s("FilterTel", "1"), s("FilterCountry", "1"), s("FilterCountryStr", " 41 ")};
    QTest::newRow("Filter Land hält 49 fest") << country41 << QStringLiteral("030 1234") << QStringLiteral("030 1234");
    QTest::newRow("Filter Land lässt 41 durch") << country41 << QStringLiteral("+41 44 1234") << QStringLiteral("+41 (44) 1234");
    const Settings area221{s("FilterTel", "1"), s("FilterArea", "1"), s("FilterAreaStr", "221")};
    QTest::newRow("Filter Vorwahl hält 30 fest") << area221 << QStringLiteral("030 1234") << QStringLiteral("030 1234");
    QTest::newRow("Filter Vorwahl lässt 221 durch") << area221 << QStringLiteral("0221 1234") << QStringLiteral("+49 (221) 1234");
    QTest::newRow("Filter ohne Hauptschalter")
        << Settings{s("FilterTel", "0"), s("FilterCountry", "1"), s("FilterCountryStr", "41")}
        << QStringLiteral("030 1234") << QStringLiteral("+49 (30) 1234");
    QTest::newRow("Filter Vorwahl leer für Land ohne Vorwahlen")
        << Settings{s("FilterTel", "1"), s("FilterArea", "1"), s("FilterAreaStr", "")}
        << QStringLiteral("+423 123 45 67") << QStringLiteral("+423 1234567");
    QTest::newRow("Anführungszeichen in der Einstellung sind Daten")
        << Settings{s("CountryCode", "4'9")} << QStringLiteral("030 1234") << QStringLiteral("030 1234");
}

void tst_TelNrStandard::options()
{
    QFETCH(Settings, settings);
    QFETCH(QString, input);
    QFETCH(QString, expected);
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    MessageRecorder boxes;
    applySettings(settings);
    bool changed = false;
    QCOMPARE(StandardTelNr(input, changed), expected);
    QCOMPARE(changed, expected != input);
    QCOMPARE(boxes.count(), 0);
}

void tst_TelNrStandard::countryWithoutAreaRowsStays()
{
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QList<CountryCodeRow> countries = SampleCountryRows();
    countries.append({QStringLiteral("33"), QStringLiteral("0")});
    QVERIFY(WriteTelDb(env.folder() + QStringLiteral("/VarnexPub.db"), countries, SampleAreaRows()));
    bool changed = true;
    QCOMPARE(StandardTelNr(QStringLiteral("+33 1 23 45 67 89"), changed), QStringLiteral("+33 1 23 45 67 89"));
    QVERIFY(!changed);
}

void tst_TelNrStandard::formatNumberBlocks_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("blockKey");
    QTest::addColumn<QStringList>("widths");
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QString>("expected");
    auto l = [](std::initializer_list<const char *> items) {
        QStringList list;
        for (const char *i : items)
            list.append(QString::fromLatin1(i));
        return list;
    };
    const QString a = QStringLiteral("BlockA");
    const QString s = QStringLiteral("BlockS");
    const QString t = QStringLiteral("BlockT");
    QTest::newRow("Vorwahl 2, 2") << QStringLiteral("5202") << a << l({"2", "2"}) << Settings{} << QStringLiteral("52 02");
    QTest::newRow("3, 3") << QStringLiteral("998288") << s << l({"3", "3", "0", "0", "0"}) << Settings{} << QStringLiteral("998 288");
    QTest::newRow("Durchwahl bleibt hinten") << QStringLiteral("1234567-89") << s << l({"3", "2", "2", "0", "0"}) << Settings{} << QStringLiteral("123 45 67-89");
    QTest::newRow("Blöcke enden an der Durchwahl") << QStringLiteral("123456-89") << s << l({"3", "3", "0", "0", "0"}) << Settings{} << QStringLiteral("123 456-89");
    QTest::newRow("kurzer letzter Block vor Durchwahl") << QStringLiteral("12345-89") << s << l({"3", "3", "0", "0", "0"}) << Settings{} << QStringLiteral("123 45-89");
    QTest::newRow("Rest als eigener Block") << QStringLiteral("1234567") << s << l({"3", "2", "0", "0", "0"}) << Settings{} << QStringLiteral("123 45 67");
    QTest::newRow("Nullblöcke dazwischen") << QStringLiteral("1234567") << t << l({"0", "3", "0", "2", "0"}) << Settings{} << QStringLiteral("123 45 67");
    QTest::newRow("Block länger als Text") << QStringLiteral("12") << s << l({"5", "0", "0", "0", "0"}) << Settings{} << QStringLiteral("12");
    QTest::newRow("alle Breiten 0") << QStringLiteral("123") << s << l({"0", "0", "0", "0", "0"}) << Settings{} << QStringLiteral("123");
    QTest::newRow("leere Eingabe") << QString() << s << l({"3", "3", "0", "0", "0"}) << Settings{} << QString();
    QTest::newRow("Breite als Text zählt 0") << QStringLiteral("123456") << s << l({"x", "3", " ", "", "0"}) << Settings{} << QStringLiteral("123 456");
    QTest::newRow("Breite mit Komma gerundet") << QStringLiteral("123456") << s << l({"2,5", "3.5", "0", "0", "0"}) << Settings{} << QStringLiteral("12 3456");
    QTest::newRow("negative Breite") << QStringLiteral("123456") << s << l({"-2", "3", "0", "0", "0"}) << Settings{} << QStringLiteral("123 456");
    QTest::newRow("Trenner aus zwei Zeichen") << QStringLiteral("123456") << s << l({"2", "2", "0", "0", "0"})
        << Settings{{QStringLiteral("BlockTrennAreaPres"), QStringLiteral(" | ")}} << QStringLiteral("12 | 34 | 56");
    QTest::newRow("BlockT nimmt den eigenen Trenner") << QStringLiteral("123456") << t << l({"3", "0", "0", "0", "0"})
        << Settings{{QStringLiteral("BlockTrennAreaNo"), QStringLiteral("/")}} << QStringLiteral("123/456");
    QTest::newRow("andere Schlüssel wie BlockS") << QStringLiteral("123456") << QStringLiteral("BlockX") << l({"2", "2", "2", "2", "2"})
        << Settings{{QStringLiteral("BlockTrennAreaPres"), QStringLiteral(".")}} << QStringLiteral("12.34.56");
    QTest::newRow("anderer Durchwahltrenner: Blöcke laufen weiter") << QStringLiteral("1234567-89") << s << l({"3", "2", "2", "0", "0"})
        << Settings{{QStringLiteral("DurchwahlTrenn"), QStringLiteral("/")}} << QStringLiteral("123 45 67 -89");
    QTest::newRow("BlockA hat nur zwei Blöcke") << QStringLiteral("123456") << a << l({"1", "1"})
        << Settings{{QStringLiteral("BlockA3"), QStringLiteral("1")}} << QStringLiteral("1 2 3456");
}

void tst_TelNrStandard::formatNumberBlocks()
{
    QFETCH(QString, input);
    QFETCH(QString, blockKey);
    QFETCH(QStringList, widths);
    QFETCH(Settings, settings);
    QFETCH(QString, expected);
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    for (int i = 0; i < widths.size(); ++i)
        SaveSetting(blockKey + QString::number(i + 1), widths.at(i));
    applySettings(settings);
    QCOMPARE(FormatNumberBlocks(input, blockKey), expected);
}

QTEST_GUILESS_MAIN(tst_TelNrStandard)
#include "tst_telnrstandard.moc"
