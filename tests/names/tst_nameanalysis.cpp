// The name analysis against a sample database with exactly the rows its
// examples assume.
#include "frame/RunHost.h"
#include "names/NameCorrectionFunctions.h"
#include "names/SampleNameDb.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QTest>
#include <memory>

class tst_NameAnalysis : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void analyze_data();
    void analyze();
    void business_data();
    void business();
    void businessLeavesPartsAlone();
    void padDelimiters_data();
    void padDelimiters();
    void tableOverlapsAndReload_data();
    void tableOverlapsAndReload();
    void failureLeavesResultsAlone_data();
    void failureLeavesResultsAlone();

private:
    QString dbPath() const { return ProgramFile(QStringLiteral("VarnexPub.db")); }
    std::unique_ptr<TestEnvironment> m_env;
};

void tst_NameAnalysis::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    m_env = std::make_unique<TestEnvironment>(false, false);
    QVERIFY(WriteNameDb(dbPath(), ExampleNameRows()));
}

void tst_NameAnalysis::analyze_data()
{
    QTest::addColumn<QString>("fullName");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("firstName");
    QTest::addColumn<QString>("middleName");
    QTest::addColumn<QString>("lastName");
    QTest::addColumn<QString>("suffix");

    auto row = [](const char *name, const QString &full, const QString &title, const QString &first,
                  const QString &middle, const QString &last, const QString &suffix) {
        QTest::newRow(name) << full << title << first << middle << last << suffix;
    };
    row("leerer Text", "", "", "", "", "", "");
    row("nur Leerzeichen", "    ", "", "", "", "", "");
    row("Beispiel mit Titeln und Doppelnamen", "Prof. Dr. med. Hans-Peter Müller-Lüdenscheidt jun.",
        "Herr Prof. Dr. med.", "Hans-Peter", "", "Müller-Lüdenscheidt", "jun.");
    row("Anrede vor Titeln", "Herr Prof. Dr. Hans-Peter Müller jun.", "Herr Prof. Dr.", "Hans-Peter", "",
        "Müller", "jun.");
    row("Komma", "Müller, Hans", "Herr", "Hans", "", "Müller", "");
    row("Semikolon wie Komma", "Müller; Hans", "Herr", "Hans", "", "Müller", "");
    row("Komma macht Vornamen zum Nachnamen", "Hans, Peter", "Herr", "Peter", "", "Hans", "");
    row("Herr vor Komma ist Nachname", "Herr, Hans", "Herr", "Hans", "", "Herr", "");
    row("zweiter Vorname", "Hans Peter Müller", "Herr", "Hans", "Peter", "Müller", "");
    row("letzter von zwei Vornamen", "Hans Peter", "Herr", "Hans", "", "Peter", "");
    row("Anrede und ein Vorname", "Herr Peter", "Herr", "", "", "Peter", "");
    row("Vorname allein", "Hans", "Herr", "Hans", "", "", "");
    row("Herr Herr", "Herr Herr", "Herr", "", "", "Herr", "");
    row("Frau Herr", "Frau Herr", "Frau", "", "", "Herr", "");
    row("Hans Herr", "Hans Herr", "Herr", "Hans", "", "Herr", "");
    row("Herr allein", "Herr", "Herr", "", "", "", "");
    row("Doppelnamen weiblich", "Anna-Maria Müller-Lüdenscheidt", "Frau", "Anna-Maria", "",
        "Müller-Lüdenscheidt", "");
    row("Bindestrich mit Leerzeichen", "Hans - Peter Müller", "Herr", "Hans-Peter", "", "Müller", "");
    row("erster Vorname entscheidet", "Hans und Maria Müller", "Herr", "Hans und Maria", "", "Müller", "");
    row("Vorname im Doppelnachnamen", "Hans-Müller", "", "", "", "Hans-Müller", "");
    row("Klammer beim Nachnamen", "Maria Müller (Meier)", "Frau", "Maria", "", "Müller (Meier)", "");
    row("Geburtsname in Klammern", "Meier ( geb. Schulz )", "", "", "", "Meier (geb. Schulz)", "");
    row("längster Doktortitel zuerst", "Dr. med. Hans Müller", "Herr Dr. med.", "Hans", "", "Müller", "");
    row("Diplomtitel über drei Teile", "Dipl.-Ing. Hans Müller", "Herr Dipl.-Ing.", "Hans", "", "Müller", "");
    row("Diplomtitel mit Leerzeichen", "Dipl. - Ing. Hans Müller", "Herr Dipl.-Ing.", "Hans", "", "Müller", "");
    row("Lücke im Titel ohne doppeltes Leerzeichen", "Frau Dr. Dipl.-Ing. Maria Müller", "Frau Dr. Dipl.-Ing.",
        "Maria", "", "Müller", "");
    row("Geschlecht weder W noch M", "Kim Müller", "", "Kim", "", "Müller", "");
    row("Bindestrich am Ende", "Hans-", "Herr", "Hans-", "", "", "");
    row("Bindestrich am Anfang", "-Hans", "Herr", "Hans", "", "-", "");
    row("Apostroph wird Akut", "Hans O'Neil", "Herr", "Hans", "", "O\u00B4Neil", "");
    row("Großschreibung", "HERR PROF. DR. MED. HANS MÜLLER JUN.", "HERR PROF. DR. MED.", "HANS", "", "MÜLLER",
        "JUN.");
    row("mehrfache Leerzeichen und Tabulator", "  Hans \t  Müller  ", "Herr", "Hans", "", "Müller", "");
    row("nur Satzzeichen", ", ; ( )", "", "", "", "", "");
}

void tst_NameAnalysis::analyze()
{
    QFETCH(QString, fullName);
    QFETCH(QString, title);
    QFETCH(QString, firstName);
    QFETCH(QString, middleName);
    QFETCH(QString, lastName);
    QFETCH(QString, suffix);
    MessageRecorder boxes;
    QString r[5] = {"x", "x", "x", "x", "x"};
    bool isBusiness = true;
    QVERIFY(AnalyzeFullName(fullName, r[0], r[1], r[2], r[3], r[4], isBusiness, false));
    QCOMPARE(r[0], title);
    QCOMPARE(r[1], firstName);
    QCOMPARE(r[2], middleName);
    QCOMPARE(r[3], lastName);
    QCOMPARE(r[4], suffix);
    QVERIFY(!isBusiness);
    QCOMPARE(boxes.count(), 0);
}

void tst_NameAnalysis::business_data()
{
    QTest::addColumn<QString>("fullName");
    QTest::addColumn<bool>("check");
    QTest::addColumn<bool>("expected");

    QTest::newRow("ganzes Wort") << "Muster AG" << true << true;
    QTest::newRow("Wort nicht im Wort") << "Hagen Müller" << true << false;
    QTest::newRow("Wort mit Satzzeichen nur gepolstert") << "Muster & Co-Op" << true << true;
    QTest::newRow("Zeichenfolge im Wort") << "Allianz Versicherungsbüro" << true << true;
    QTest::newRow("Endung nach Bindestrich") << "Muster-GmbH & Co" << true << true;
    QTest::newRow("Endung ohne Wortanfang") << "AutoGmbH" << true << true;
    QTest::newRow("keine Endung mitten im Wort") << "GmbHs" << true << false;
    QTest::newRow("Groß- und Kleinschreibung egal") << "muster gmbh" << true << true;
    QTest::newRow("Umlaut in anderer Schreibung") << "MÜLLER SÖHNE" << true << true;
    QTest::newRow("Prüfung abgeschaltet") << "Muster GmbH" << false << false;
    QTest::newRow("Person") << "Hans Müller" << true << false;
}

void tst_NameAnalysis::business()
{
    QFETCH(QString, fullName);
    QFETCH(bool, check);
    QFETCH(bool, expected);
    NameDbRows rows = ExampleNameRows();
    rows[QStringLiteral("T_BusinessWord")] = {{"AG"}, {"& Co - Op"}};
    rows[QStringLiteral("T_BusinessInStr")] = {{"Versicherung"}};
    rows[QStringLiteral("T_BusinessEnd")] = {{"GmbH"}, {"Söhne"}};
    QVERIFY(WriteNameDb(dbPath(), rows));
    MessageRecorder boxes;
    QString title, first, middle, last, suffix;
    bool isBusiness = !check;
    QVERIFY(AnalyzeFullName(fullName, title, first, middle, last, suffix, isBusiness, check));
    QCOMPARE(isBusiness, expected);
    QVERIFY(WriteNameDb(dbPath(), ExampleNameRows()));
}

void tst_NameAnalysis::businessLeavesPartsAlone()
{
    MessageRecorder boxes;
    QString with[5], without[5];
    bool isBusiness = false;
    const QString name = QStringLiteral("Dr. Hans Müller GmbH");
    QVERIFY(AnalyzeFullName(name, with[0], with[1], with[2], with[3], with[4], isBusiness, true));
    QVERIFY(isBusiness);
    QVERIFY(AnalyzeFullName(name, without[0], without[1], without[2], without[3], without[4], isBusiness, false));
    QVERIFY(!isBusiness);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(with[i], without[i]);
    QCOMPARE(with[3], QStringLiteral("Müller GmbH"));
}

void tst_NameAnalysis::padDelimiters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Satzzeichen einzeln") << "Müller,Hans;Peter" << "Müller , Hans , Peter";
    QTest::newRow("drei Klammerarten") << "(a)[b]{c}" << "( a ) [ b ] { c }";
    QTest::newRow("Bindestrich") << "Hans-Peter" << "Hans - Peter";
    QTest::newRow("Apostroph") << "O'Neil" << "O\u00B4Neil";
    QTest::newRow("Leerzeichen gefaltet und Enden gekürzt") << "  a   b  " << "a b";
    QTest::newRow("geschütztes Leerzeichen") << "Hans\u00A0Müller" << "Hans Müller";
    QTest::newRow("leer") << "" << "";
}

void tst_NameAnalysis::padDelimiters()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(PadNameDelimiters(text), expected);
}

// Rows added to the example tables; the database file changes between calls
// and the next call must see the new rows.
void tst_NameAnalysis::tableOverlapsAndReload_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("newRow");
    QTest::addColumn<QString>("fullName");
    QTest::addColumn<QStringList>("expected"); // title, first, middle, last, suffix

    QTest::newRow("Namenszusatz schlägt Vorname") << "T_FirstNames" << QStringList{"Jun.", "M"}
                                                  << "Hans Müller jun." << QStringList{"Herr", "Hans", "", "Müller", "jun."};
    QTest::newRow("Anrede schlägt Vorname") << "T_FirstNames" << QStringList{"Frau", "W"} << "Frau Müller"
                                            << QStringList{"Frau", "", "", "Müller", ""};
    QTest::newRow("Umlaut in Großschreibung gefunden") << "T_FirstNames" << QStringList{"Jürgen", "M"}
                                                       << "JÜRGEN MÜLLER" << QStringList{"Herr", "JÜRGEN", "", "MÜLLER", ""};
    QTest::newRow("Titel schlägt Vorname") << "T_TitlesProf" << QStringList{"Hans"} << "Hans Peter Müller"
                                           << QStringList{"Herr Hans", "Peter", "", "Müller", ""};
}

void tst_NameAnalysis::tableOverlapsAndReload()
{
    QFETCH(QString, table);
    QFETCH(QStringList, newRow);
    QFETCH(QString, fullName);
    QFETCH(QStringList, expected);
    MessageRecorder boxes;
    QString r[5];
    bool isBusiness = false;
    QVERIFY(AnalyzeFullName(fullName, r[0], r[1], r[2], r[3], r[4], isBusiness, false));
    const QStringList before{r[0], r[1], r[2], r[3], r[4]};

    NameDbRows rows = ExampleNameRows();
    rows[table].append(newRow);
    QVERIFY(WriteNameDb(dbPath(), rows));
    QVERIFY(AnalyzeFullName(fullName, r[0], r[1], r[2], r[3], r[4], isBusiness, false));
    QCOMPARE((QStringList{r[0], r[1], r[2], r[3], r[4]}), expected);

    QVERIFY(WriteNameDb(dbPath(), ExampleNameRows()));
    QVERIFY(AnalyzeFullName(fullName, r[0], r[1], r[2], r[3], r[4], isBusiness, false));
    QCOMPARE((QStringList{r[0], r[1], r[2], r[3], r[4]}), before);
}

void tst_NameAnalysis::failureLeavesResultsAlone_data()
{
    QTest::addColumn<QString>("damage");
    QTest::newRow("Datenbank fehlt") << "missing";
    QTest::newRow("Tabelle fehlt") << "table";
    QTest::newRow("keine Datenbank") << "garbage";
}

void tst_NameAnalysis::failureLeavesResultsAlone()
{
    QFETCH(QString, damage);
    if (damage == "missing") {
        QVERIFY(QFile::remove(dbPath()));
    } else if (damage == "table") {
        NameDbRows rows = ExampleNameRows();
        rows.remove(QStringLiteral("T_Suffixes"));
        QVERIFY(WriteNameDb(dbPath(), rows));
    } else {
        QFile f(dbPath());
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write("das ist keine Datenbank, sondern nur Text ohne jede Struktur .........");
    }
    SyncFileWatches();
    QuietRunHost host;
    host.running = true;
    const std::unique_ptr<RunHost, void (*)(RunHost *)> installed(&host, [](RunHost *) { SetRunHost(nullptr); });
    SetRunHost(&host);
    MessageRecorder boxes;
    QString title = "T", first = "V", middle = "W", last = "N", suffix = "Z";
    bool isBusiness = true;
    QVERIFY(!AnalyzeFullName("Hans Müller", title, first, middle, last, suffix, isBusiness, true));
    QCOMPARE((QStringList{title, first, middle, last, suffix}), (QStringList{"T", "V", "W", "N", "Z"}));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().buttons, int(MsgStop));
    QCOMPARE(boxes.last().title, QStringLiteral("Fehler!"));
    QVERIFY(!host.running);
    QVERIFY2(m_env->readLog().contains("Sub: 2502"), qPrintable(m_env->readLog()));

    // Once the database is back, the analysis works again.
    QVERIFY(WriteNameDb(dbPath(), ExampleNameRows()));
    QVERIFY(AnalyzeFullName("Hans Müller", title, first, middle, last, suffix, isBusiness, true));
    QCOMPARE(last, QStringLiteral("Müller"));
}

QTEST_GUILESS_MAIN(tst_NameAnalysis)
#include "tst_nameanalysis.moc"
