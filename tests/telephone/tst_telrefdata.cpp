// Invariants of the shipped telephone tables in the built reference
// database: what the normaliser relies on, checked over every row.
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

class tst_TelRefData : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void countryCodesAreDigitsUniqueAndPrefixFree();
    void areaRowsBelongToKnownCountries();
    void areaCodesAreDigitsUniqueAndNeverShadowed();
    void nullRowStandsAlone();
    void rowsAreInOrder();
    void countryCoverage_data();
    void countryCoverage();
    void databaseRefusesDuplicates_data();
    void databaseRefusesDuplicates();

private:
    struct AreaRow {
        QString country;
        QString area; // null: NULL
    };
    QSqlDatabase m_db;
    QList<QPair<QString, QString>> m_countries; // code, prefix (null: NULL), in rowid order
    QList<AreaRow> m_areas;                     // in rowid order
};

namespace {

const QString kConnection = QStringLiteral("tst_TelRefData");

bool isDigits(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    return digits.match(text).hasMatch();
}

QString nullableText(const QVariant &value)
{
    return value.isNull() ? QString() : value.toString();
}

} // namespace

void tst_TelRefData::initTestCase()
{
    QVERIFY2(QFile::exists(BuiltReferenceDb()), qPrintable(BuiltReferenceDb()));
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kConnection);
    m_db.setDatabaseName(BuiltReferenceDb());
    m_db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    QVERIFY(m_db.open());
    QSqlQuery q(m_db);
    QVERIFY(q.exec(QStringLiteral("SELECT CountryCode, NationalDDPrefix FROM T_CountryCodes ORDER BY rowid")));
    while (q.next())
        m_countries.append({nullableText(q.value(0)), nullableText(q.value(1))});
    QVERIFY(q.exec(QStringLiteral("SELECT CountryCode, AreaCode FROM T_CountryAndAreaCodes ORDER BY rowid")));
    while (q.next())
        m_areas.append({nullableText(q.value(0)), nullableText(q.value(1))});
    QVERIFY(m_countries.size() >= 200);
    QVERIFY(m_areas.size() >= 6000);
}

void tst_TelRefData::cleanupTestCase()
{
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(kConnection);
}

// No code is the start of another, so the order of the country scan cannot
// decide between two codes.
void tst_TelRefData::countryCodesAreDigitsUniqueAndPrefixFree()
{
    QSet<QString> seen;
    for (const auto &[code, prefix] : std::as_const(m_countries)) {
        QVERIFY2(!code.isNull() && isDigits(code), qPrintable(code));
        QVERIFY2(prefix.isNull() || isDigits(prefix), qPrintable(code + u' ' + prefix));
        QVERIFY2(!seen.contains(code), qPrintable(code));
        seen.insert(code);
    }
    for (const QString &code : std::as_const(seen)) {
        for (qsizetype length = 1; length < code.size(); ++length)
            QVERIFY2(!seen.contains(code.left(length)), qPrintable(code.left(length) + QStringLiteral(" vor ") + code));
    }
}

void tst_TelRefData::areaRowsBelongToKnownCountries()
{
    QSet<QString> known;
    for (const auto &country : std::as_const(m_countries))
        known.insert(country.first);
    for (const AreaRow &row : std::as_const(m_areas))
        QVERIFY2(known.contains(row.country), qPrintable(row.country));
}

// The normaliser takes the shortest matching code: a code behind a shorter
// one of the same country could never be found.
void tst_TelRefData::areaCodesAreDigitsUniqueAndNeverShadowed()
{
    QHash<QString, QSet<QString>> byCountry;
    for (const AreaRow &row : std::as_const(m_areas)) {
        if (row.area.isNull())
            continue;
        QVERIFY2(isDigits(row.area), qPrintable(row.country + u' ' + row.area));
        QVERIFY2(!byCountry[row.country].contains(row.area), qPrintable(row.country + u' ' + row.area));
        byCountry[row.country].insert(row.area);
    }
    for (auto it = byCountry.cbegin(); it != byCountry.cend(); ++it) {
        for (const QString &area : it.value()) {
            for (qsizetype length = 1; length < area.size(); ++length)
                QVERIFY2(!it.value().contains(area.left(length)),
                         qPrintable(it.key() + u' ' + area.left(length) + QStringLiteral(" vor ") + area));
        }
    }
    // Codes are stored without the national prefix.
    for (const QString &country : {QStringLiteral("41"), QStringLiteral("43"), QStringLiteral("49")}) {
        for (const QString &area : byCountry.value(country))
            QVERIFY2(!area.startsWith(u'0'), qPrintable(country + u' ' + area));
    }
}

// A NULL row wins at once, so a country that has one needs no other row.
void tst_TelRefData::nullRowStandsAlone()
{
    QHash<QString, int> rows;
    QSet<QString> withNull;
    for (const AreaRow &row : std::as_const(m_areas)) {
        ++rows[row.country];
        if (row.area.isNull())
            withNull.insert(row.country);
    }
    for (const QString &country : std::as_const(withNull))
        QVERIFY2(rows.value(country) == 1, qPrintable(country));
}

void tst_TelRefData::rowsAreInOrder()
{
    for (qsizetype i = 1; i < m_countries.size(); ++i)
        QVERIFY2(m_countries.at(i - 1).first.toInt() < m_countries.at(i).first.toInt(), qPrintable(m_countries.at(i).first));
    auto key = [](const AreaRow &row) { return std::make_tuple(row.country.toInt(), !row.area.isNull(), row.area); };
    for (qsizetype i = 1; i < m_areas.size(); ++i)
        QVERIFY2(key(m_areas.at(i - 1)) < key(m_areas.at(i)), qPrintable(m_areas.at(i).country + u' ' + m_areas.at(i).area));
}

void tst_TelRefData::countryCoverage_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("prefix");      // null: NULL
    QTest::addColumn<int>("minimumRows");
    QTest::addColumn<QStringList>("areas");   // an empty text: the NULL row
    QTest::newRow("Deutschland") << QStringLiteral("49") << QStringLiteral("0") << 5000
        << QStringList{QStringLiteral("30"), QStringLiteral("221"), QStringLiteral("5202"), QStringLiteral("33203"),
                       QStringLiteral("151"), QStringLiteral("1520"), QStringLiteral("1577"), QStringLiteral("171")};
    QTest::newRow("Österreich") << QStringLiteral("43") << QStringLiteral("0") << 1000
        << QStringList{QStringLiteral("1"), QStringLiteral("316"), QStringLiteral("463"), QStringLiteral("5574"), QStringLiteral("664")};
    QTest::newRow("Schweiz mit alter Vorwahl 1") << QStringLiteral("41") << QStringLiteral("0") << 25
        << QStringList{QStringLiteral("1"), QStringLiteral("44"), QStringLiteral("31"), QStringLiteral("79")};
    QTest::newRow("Liechtenstein") << QStringLiteral("423") << QStringLiteral("0") << 1 << QStringList{QString()};
    QTest::newRow("Dänemark") << QStringLiteral("45") << QString() << 1 << QStringList{QString()};
    QTest::newRow("Italien ohne Präfix und ohne Zeilen") << QStringLiteral("39") << QString() << 0 << QStringList{};
    QTest::newRow("USA") << QStringLiteral("1") << QStringLiteral("1") << 0 << QStringList{};
    QTest::newRow("Russland") << QStringLiteral("7") << QStringLiteral("8") << 0 << QStringList{};
}

void tst_TelRefData::countryCoverage()
{
    QFETCH(QString, country);
    QFETCH(QString, prefix);
    QFETCH(int, minimumRows);
    QFETCH(QStringList, areas);
    const auto it = std::find_if(m_countries.cbegin(), m_countries.cend(), [&](const auto &c) { return c.first == country; });
    QVERIFY(it != m_countries.cend());
    QCOMPARE(it->second.isNull(), prefix.isNull());
    QCOMPARE(it->second, prefix);
    QSet<QString> present;
    for (const AreaRow &row : std::as_const(m_areas)) {
        if (row.country == country)
            present.insert(row.area.isNull() ? QString() : row.area);
    }
    QVERIFY2(present.size() >= minimumRows, qPrintable(QString::number(present.size())));
    if (minimumRows == 0)
        QVERIFY(present.isEmpty());
    for (const QString &area : std::as_const(areas))
        QVERIFY2(present.contains(area), qPrintable(area));
}

void tst_TelRefData::databaseRefusesDuplicates_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("Ländervorwahl doppelt")
        << QStringLiteral("INSERT INTO T_CountryCodes VALUES ('49', '0')") << false;
    QTest::newRow("Ländervorwahl NULL")
        << QStringLiteral("INSERT INTO T_CountryCodes VALUES (NULL, '0')") << false;
    QTest::newRow("neue Ländervorwahl")
        << QStringLiteral("INSERT INTO T_CountryCodes VALUES ('999', NULL)") << true;
    QTest::newRow("Ortsvorwahl doppelt")
        << QStringLiteral("INSERT INTO T_CountryAndAreaCodes VALUES ('49', '30')") << false;
    QTest::newRow("zweite NULL-Zeile")
        << QStringLiteral("INSERT INTO T_CountryAndAreaCodes VALUES ('423', NULL)") << false;
    QTest::newRow("leere Vorwahl neben NULL")
        << QStringLiteral("INSERT INTO T_CountryAndAreaCodes VALUES ('423', '')") << false;
    QTest::newRow("gleiche Vorwahl anderes Land")
        << QStringLiteral("INSERT INTO T_CountryAndAreaCodes VALUES ('43', '30')") << true;
}

// The telephone tables dialog relies on the database refusing a row that is
// already present.
void tst_TelRefData::databaseRefusesDuplicates()
{
    QFETCH(QString, statement);
    QFETCH(bool, accepted);
    QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("VarnexPub.db"));
    QVERIFY(QFile::copy(BuiltReferenceDb(), copy));
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    const QString name = QStringLiteral("tst_TelRefData_write");
    bool result = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(copy);
        QVERIFY(db.open());
        QSqlQuery q(db);
        result = q.exec(statement);
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    QCOMPARE(result, accepted);
}

QTEST_GUILESS_MAIN(tst_TelRefData)
#include "tst_telrefdata.moc"
