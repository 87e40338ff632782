#include "itemtools/HolidayTables.h"

#include "frame/GlobalFunctions.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

namespace {

HolidayError databaseError(const QSqlError &error)
{
    return {HolidayErrors::Database,
            QStringLiteral("Die Schulferien-Tabellen können nicht gelesen werden: %1").arg(error.text())};
}

QDate dateOf(const QVariant &value, const QString &field)
{
    const QDate date = QDate::fromString(value.toString().trimmed(), Qt::ISODate);
    if (!date.isValid())
        throw HolidayError{HolidayErrors::Database,
                           QStringLiteral("Das Feld %1 enthält kein Datum: \"%2\"").arg(field, value.toString())};
    return date;
}

} // namespace

QVariant HolidayRow::field(const QString &name) const
{
    const int index = m_record.indexOf(name);
    if (index < 0)
        throw HolidayError{HolidayErrors::Database,
                           QStringLiteral("Das Feld %1 fehlt in der Tabelle T_Holidays.").arg(name)};
    return m_record.value(index);
}

std::optional<QDate> HolidayRow::from(int period) const
{
    const QString name = QStringLiteral("From%1").arg(period);
    const QVariant value = field(name);
    if (value.isNull())
        return std::nullopt;
    return dateOf(value, name);
}

QDate HolidayRow::to(int period) const
{
    const QString name = QStringLiteral("To%1").arg(period);
    const QVariant value = field(name);
    if (value.isNull())
        throw HolidayError{HolidayErrors::InvalidNull, QStringLiteral("Unzulässige Verwendung von Null")};
    return dateOf(value, name);
}

HolidayTables::HolidayTables()
    : m_connection(QStringLiteral("holidays-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    const QString path = ReferenceDatabaseFile();
    // SQLite would create a missing file; the reference database must exist.
    if (!QFileInfo::exists(path))
        throw HolidayError{HolidayErrors::FileNotFound,
                           QStringLiteral("Die Referenzdatenbank \"%1\" wurde nicht gefunden.").arg(path)};
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!db.open()) {
        const HolidayError error = databaseError(db.lastError());
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connection);
        throw error;
    }
}

HolidayTables::~HolidayTables()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

QSqlQuery HolidayTables::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    if (!query.prepare(statement))
        throw databaseError(query.lastError());
    for (const QVariant &value : values)
        query.addBindValue(value);
    if (!query.exec())
        throw databaseError(query.lastError());
    return query;
}

QStringList HolidayTables::states(const QString &country)
{
    QSqlQuery query = run(QStringLiteral("SELECT State FROM T_Holidays WHERE Country = ?"), {country});
    QStringList result;
    while (query.next())
        result.append(query.value(0).toString());
    return result;
}

std::optional<HolidayRow> HolidayTables::holidays(const QString &state, const QString &country)
{
    QSqlQuery query =
        run(QStringLiteral("SELECT * FROM T_Holidays WHERE State = ? AND Country = ?"), {state, country});
    if (!query.next())
        return std::nullopt;
    return HolidayRow(query.record());
}

std::optional<QString> HolidayTables::description(int period, const QString &country)
{
    QSqlQuery query = run(QStringLiteral("SELECT Description FROM T_HolidaysDes WHERE \"Index\" = ? AND Country = ?"),
                          {period, country});
    if (!query.next())
        return std::nullopt;
    return query.value(0).toString();
}
