// The shipped name tables: their form, the rows the analysis relies on, and
// a few names of German, Austrian and Swiss usage analysed with them.
#include "names/NameCorrectionFunctions.h"
#include "names/NameTables.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <memory>

namespace {

// How a table's values are looked up, and so how they must be written.
enum class Form { OneToken, NoBlank, Padded, Anywhere };

struct TableColumn {
    const char *table;
    const char *field;
    Form form;
};

const TableColumn kColumns[] = {
    {"T_Addresses", "Address", Form::OneToken},  {"T_FirstNames", "FirstName", Form::OneToken},
    {"T_Hyphens", "Hyphen", Form::OneToken},     {"T_TitlesProf", "Title", Form::OneToken},
    {"T_Suffixes", "Suffix", Form::OneToken},    {"T_TitlesDipl", "Title", Form::NoBlank},
    {"T_TitlesDr", "Title", Form::Padded},       {"T_BusinessWord", "String", Form::Padded},
    {"T_BusinessInStr", "String", Form::Anywhere}, {"T_BusinessEnd", "String", Form::Anywhere},
};

} // namespace

class tst_NameTables : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void tableForm_data();
    void tableForm();
    void noFirstNameIsACompany();
    void realNames_data();
    void realNames();
    void substringSetAgreesWithLiteralSearch_data();
    void substringSetAgreesWithLiteralSearch();

private:
    QStringList column(const QString &table, const QString &field);
    std::unique_ptr<TestEnvironment> m_env;
};

void tst_NameTables::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    m_env = std::make_unique<TestEnvironment>(true, false);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("shipped"));
    db.setDatabaseName(ProgramFile(QStringLiteral("VarnexPub.db")));
    QVERIFY(db.open());
}

void tst_NameTables::cleanupTestCase()
{
    QSqlDatabase::database(QStringLiteral("shipped")).close();
    QSqlDatabase::removeDatabase(QStringLiteral("shipped"));
}

QStringList tst_NameTables::column(const QString &table, const QString &field)
{
    QSqlQuery q(QSqlDatabase::database(QStringLiteral("shipped")));
    QStringList values;
    if (!q.exec(QStringLiteral("SELECT \"%1\" FROM \"%2\"").arg(field, table)))
        return values;
    while (q.next())
        values.append(q.value(0).isNull() ? QStringLiteral("<NULL>") : q.value(0).toString());
    return values;
}

void tst_NameTables::tableForm_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("form");
    for (const TableColumn &c : kColumns)
        QTest::newRow(c.table) << QString::fromLatin1(c.table) << QString::fromLatin1(c.field) << int(c.form);
}

// Every value is text, unique with case ignored, and written so that the
// analysis can find it: a value it could never meet is a dead row.
void tst_NameTables::tableForm()
{
    QFETCH(QString, table);
    QFETCH(QString, field);
    QFETCH(int, form);
    const QStringList values = column(table, field);
    QVERIFY2(!values.isEmpty(), qPrintable(table));
    QSet<QString> seen;
    for (const QString &v : values) {
        QVERIFY2(!v.isEmpty() && v != "<NULL>" && v.trimmed() == v, qPrintable(table + ": '" + v + "'"));
        QVERIFY2(!seen.contains(v.toCaseFolded()), qPrintable(table + " twice: " + v));
        seen.insert(v.toCaseFolded());
        const QString padded = PadNameDelimiters(v);
        switch (Form(form)) {
        case Form::OneToken:
            QVERIFY2(padded == v && !v.contains(u' '), qPrintable(table + " not one token: " + v));
            break;
        case Form::NoBlank:
            QVERIFY2(!v.contains(u' ') && !v.contains(u'\''), qPrintable(table + " has a blank: " + v));
            break;
        case Form::Padded:
            QVERIFY2(padded == v, qPrintable(table + " must read '" + padded + "', not '" + v + "'"));
            break;
        case Form::Anywhere:
            QVERIFY2(!v.contains(QRegularExpression("[,;()\\[\\]{}'-]")), qPrintable(table + ": " + v));
            break;
        }
    }
}

// A person's first name alone must never pass for a company.
void tst_NameTables::noFirstNameIsACompany()
{
    MessageRecorder boxes;
    QStringList companies;
    for (const QString &name : column("T_FirstNames", "FirstName")) {
        QString t, f, m, l, s;
        bool isBusiness = false;
        QVERIFY(AnalyzeFullName(name, t, f, m, l, s, isBusiness, true));
        if (isBusiness)
            companies.append(name);
    }
    QVERIFY2(companies.isEmpty(), qPrintable(companies.join(", ")));
}

void tst_NameTables::realNames_data()
{
    QTest::addColumn<QString>("fullName");
    QTest::addColumn<QStringList>("expected"); // title, first, middle, last, suffix
    QTest::addColumn<bool>("isBusiness");

    auto row = [](const char *name, const QString &full, const QStringList &parts, bool business = false) {
        QTest::newRow(name) << full << parts << business;
    };
    row("Umlaute in Großschreibung", "JÜRGEN MÜLLER", {"Herr", "JÜRGEN", "", "MÜLLER", ""});
    row("Dr.-Ing.", "Dr.-Ing. Hans Meier", {"Herr Dr.-Ing.", "Hans", "", "Meier", ""});
    row("Univ.-Prof.", "Univ.-Prof. Dr. Maria Huber", {"Frau Univ.-Prof. Dr.", "Maria", "", "Huber", ""});
    row("Dipl.-Ing. (FH)", "Dipl.-Ing. (FH) Peter Schmid", {"Herr Dipl.-Ing. (FH)", "Peter", "", "Schmid", ""});
    row("Magistra", "Frau Mag. Anna Gruber", {"Frau Mag.", "Anna", "", "Gruber", ""});
    row("lic. phil.", "lic. phil. Urs Keller", {"Herr lic. phil.", "Urs", "", "Keller", ""});
    row("Initiale U. zwischen Namen", "Hans U. Müller", {"Herr", "Hans", "U.", "Müller", ""});
    row("u. verbindet", "Hans u. Maria Müller", {"Herr", "Hans u. Maria", "", "Müller", ""});
    row("v. ist kein Vorname", "Ludwig v. Beethoven", {"Herr", "Ludwig", "", "v. Beethoven", ""});
    row("Initiale", "H. Müller", {"", "H.", "", "Müller", ""});
    row("von als Teil des Nachnamens", "Anna von Bülow", {"Frau", "Anna", "", "von Bülow", ""});
    row("Nachname, Vorname mit Zusatz", "Meier, Klaus sen.", {"Herr", "Klaus", "", "Meier", "sen."});
    row("Akademischer Grad danach", "Sabine Wolf MBA", {"Frau", "Sabine", "", "Wolf", "MBA"});
    row("GmbH & Co. KG", "Muster GmbH & Co. KG", {"", "", "", "Muster GmbH & Co. KG", ""}, true);
    row("Söhne", "Meier & Söhne", {"", "", "", "Meier & Söhne", ""}, true);
    row("Verein", "Turnverein Musterstadt e.V.", {"", "", "", "Turnverein Musterstadt e.V.", ""}, true);
    row("Bindestrich-GmbH", "Muster-GmbH", {"", "", "", "Muster-GmbH", ""}, true);
}

void tst_NameTables::realNames()
{
    QFETCH(QString, fullName);
    QFETCH(QStringList, expected);
    QFETCH(bool, isBusiness);
    MessageRecorder boxes;
    QString r[5];
    bool business = false;
    QVERIFY(AnalyzeFullName(fullName, r[0], r[1], r[2], r[3], r[4], business, true));
    QCOMPARE((QStringList{r[0], r[1], r[2], r[3], r[4]}), expected);
    QCOMPARE(business, isBusiness);
}

void tst_NameTables::substringSetAgreesWithLiteralSearch_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("keine Einträge") << QStringList{};
    QTest::newRow("ein Zeichen und mehr") << QStringList{"&", "gmbh"};
    QTest::newRow("leerer Eintrag") << QStringList{"", "ag"};
    QTest::newRow("gleicher Anfang") << QStringList{"gmbh & co", "gm", "gmbh ", " ag "};
    QStringList shipped;
    for (const char *table : {"T_BusinessInStr", "T_BusinessEnd", "T_BusinessWord"}) {
        for (const QString &entry : column(QString::fromLatin1(table), QStringLiteral("String")))
            shipped.append(entry.toCaseFolded());
    }
    QVERIFY(shipped.size() > 100);
    QTest::newRow("ausgelieferte Firmenmerkmale") << shipped;
}

// The one-pass search finds exactly what searching each entry finds.
void tst_NameTables::substringSetAgreesWithLiteralSearch()
{
    QFETCH(QStringList, entries);
    SubstringSet set;
    for (const QString &entry : std::as_const(entries))
        set.add(entry);
    QStringList texts{"", "g", "gm", "müller gmbh & co. kg", "x&y", "ag", " a g ", "hans gmbx", "GMBH", " ag "};
    for (const QString &entry : std::as_const(entries)) {
        texts << QStringLiteral("hans ") + entry + QStringLiteral(" meier") << entry.chopped(std::min<qsizetype>(1, entry.size()))
              << entry.mid(1);
    }
    for (const QString &text : std::as_const(texts)) {
        const bool literal = std::any_of(entries.cbegin(), entries.cend(), [&](const QString &e) { return text.contains(e); });
        QVERIFY2(set.foundIn(text) == literal, qPrintable(text));
    }
}

QTEST_GUILESS_MAIN(tst_NameTables)
#include "tst_nametables.moc"
