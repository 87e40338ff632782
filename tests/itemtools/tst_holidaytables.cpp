// The shipped holiday tables: their shape as the holiday insertion reads it,
// and the dates and names of every state.
#include "support/TestSupport.h"

#include <QDate>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

namespace {
const QString kConnection = QStringLiteral("holidaytables");
constexpr int kFirstPeriod = 2;
} // namespace

class tst_HolidayTables : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void periodsFromColumnCount();
    void statesOfCountry_data();
    void statesOfCountry();
    void periodsWellFormed_data();
    void periodsWellFormed();

private:
    [[nodiscard]] int lastPeriod();
};

void tst_HolidayTables::initTestCase()
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kConnection);
    db.setDatabaseName(BuiltReferenceDb());
    db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    QVERIFY2(db.open(), qPrintable(BuiltReferenceDb()));
}

void tst_HolidayTables::cleanupTestCase()
{
    QSqlDatabase::database(kConnection).close();
    QSqlDatabase::removeDatabase(kConnection);
}

int tst_HolidayTables::lastPeriod()
{
    return (QSqlDatabase::database(kConnection).record(QStringLiteral("T_Holidays")).count() - 1) / 2;
}

void tst_HolidayTables::periodsFromColumnCount()
{
    // The insertion knows the periods only by the number of columns; every
    // period it counts must have its two columns.
    const QSqlRecord record = QSqlDatabase::database(kConnection).record(QStringLiteral("T_Holidays"));
    QCOMPARE(lastPeriod(), 7);
    for (int i = kFirstPeriod; i <= lastPeriod(); ++i) {
        QVERIFY2(record.contains(QStringLiteral("From%1").arg(i)), qPrintable(QString::number(i)));
        QVERIFY2(record.contains(QStringLiteral("To%1").arg(i)), qPrintable(QString::number(i)));
    }
    QVERIFY(record.contains(QStringLiteral("State")));
    QVERIFY(record.contains(QStringLiteral("Country")));
}

void tst_HolidayTables::statesOfCountry_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QStringList>("states");

    QTest::newRow("Deutschland: 16 Länder")
        << "DE"
        << QStringList{"BB", "BE", "BW", "BY", "HB", "HE", "HH", "MV",
                       "NI", "NW", "RP", "SH", "SL", "SN", "ST", "TH"};
    QTest::newRow("Schweiz: 26 Kantone")
        << "CH"
        << QStringList{"AG", "AI", "AR", "BE", "BL", "BS", "FR", "GE", "GL", "GR", "JU", "LU", "NE",
                       "NW", "OW", "SG", "SH", "SO", "SZ", "TG", "TI", "UR", "VD", "VS", "ZG", "ZH"};
}

void tst_HolidayTables::statesOfCountry()
{
    QFETCH(QString, country);
    QFETCH(QStringList, states);

    QSqlQuery query(QSqlDatabase::database(kConnection));
    query.prepare(QStringLiteral("SELECT State FROM T_Holidays WHERE Country = ? ORDER BY State"));
    query.addBindValue(country);
    QVERIFY(query.exec());
    QStringList found;
    while (query.next())
        found << query.value(0).toString();
    QCOMPARE(found, states); // sorted and once each
}

void tst_HolidayTables::periodsWellFormed_data()
{
    QTest::addColumn<QString>("country");
    QTest::newRow("Deutschland") << "DE";
    QTest::newRow("Schweiz") << "CH";
}

void tst_HolidayTables::periodsWellFormed()
{
    QFETCH(QString, country);
    const QSqlDatabase db = QSqlDatabase::database(kConnection);

    QSet<int> named;
    QSqlQuery names(db);
    names.prepare(QStringLiteral("SELECT \"Index\", Description FROM T_HolidaysDes WHERE Country = ?"));
    names.addBindValue(country);
    QVERIFY(names.exec());
    while (names.next()) {
        QVERIFY2(!names.value(1).toString().trimmed().isEmpty(), qPrintable(names.value(0).toString()));
        QVERIFY2(!named.contains(names.value(0).toInt()), "period named twice");
        named.insert(names.value(0).toInt());
    }

    QSqlQuery rows(db);
    rows.prepare(QStringLiteral("SELECT * FROM T_Holidays WHERE Country = ?"));
    rows.addBindValue(country);
    QVERIFY(rows.exec());
    int periods = 0;
    while (rows.next()) {
        const QString state = rows.value(QStringLiteral("State")).toString();
        const int year = rows.value(QStringLiteral("Year")).toInt();
        for (int i = kFirstPeriod; i <= lastPeriod(); ++i) {
            const QString where = QStringLiteral("%1 period %2").arg(state).arg(i);
            const QVariant from = rows.value(QStringLiteral("From%1").arg(i));
            const QVariant to = rows.value(QStringLiteral("To%1").arg(i));
            QVERIFY2(from.isNull() == to.isNull(), qPrintable(where));
            if (from.isNull())
                continue;
            const QDate start = QDate::fromString(from.toString(), Qt::ISODate);
            const QDate end = QDate::fromString(to.toString(), Qt::ISODate);
            QVERIFY2(start.isValid() && end.isValid(), qPrintable(where));
            QVERIFY2(start <= end, qPrintable(where));
            QVERIFY2(start.daysTo(end) < 90, qPrintable(where));
            QVERIFY2(start.year() == year, qPrintable(where));
            QVERIFY2(named.contains(i), qPrintable(where + QStringLiteral(" has no name")));
            ++periods;
        }
    }
    QVERIFY(periods > 0);
}

QTEST_GUILESS_MAIN(tst_HolidayTables)
#include "tst_holidaytables.moc"
