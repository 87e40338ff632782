#pragma once
// The school holiday tables of the reference database: T_Holidays, one row
// per state or canton with the first and last day of each holiday period
// (From2/To2, From3/To3, ...), and T_HolidaysDes, the names of the periods
// per country.
//
// A HolidayTables object is one read-only connection to VarnexPub.db in the
// program folder, held for the length of one routine and closed with the
// object. Every failure throws a HolidayError.

#include <QDate>
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>
#include <QStringList>
#include <optional>

struct HolidayError {
    int number = 0;
    QString description;
};

namespace HolidayErrors {
inline constexpr int FileNotFound = 53;   // the reference database is missing
inline constexpr int InvalidNull = 94;    // a period with a first but no last day
inline constexpr int NoCurrentRow = 3021; // a period with dates but without a name
inline constexpr int Database = 3146;     // the database failed to open or to read
} // namespace HolidayErrors

// The first period number of T_Holidays.
inline constexpr int kFirstHolidayPeriod = 2;

// One row of T_Holidays as read with "Select *".
class HolidayRow
{
public:
    explicit HolidayRow(QSqlRecord record) : m_record(std::move(record)) {}

    // The last period: the number of columns minus one, halved. The table
    // says nothing else about how many periods it has.
    [[nodiscard]] int lastPeriod() const { return (m_record.count() - 1) / 2; }
    // First day of the period; nullopt where From<i> is NULL (no such
    // holidays). Throws when the field is missing or holds no date.
    [[nodiscard]] std::optional<QDate> from(int period) const;
    // Last day of a period whose first day is set. Throws when it is NULL,
    // missing or no date.
    [[nodiscard]] QDate to(int period) const;

private:
    [[nodiscard]] QVariant field(const QString &name) const;
    QSqlRecord m_record;
};

class HolidayTables
{
public:
    HolidayTables();
    ~HolidayTables();
    HolidayTables(const HolidayTables &) = delete;
    HolidayTables &operator=(const HolidayTables &) = delete;

    // The State codes of the country, in table order.
    [[nodiscard]] QStringList states(const QString &country);
    // The first row of the state in the country; nullopt when there is none.
    [[nodiscard]] std::optional<HolidayRow> holidays(const QString &state, const QString &country);
    // The name of the period in the country; nullopt when T_HolidaysDes has
    // no row for it.
    [[nodiscard]] std::optional<QString> description(int period, const QString &country);

private:
    [[nodiscard]] QSqlQuery run(const QString &statement, const QVariantList &values);
    QString m_connection;
};
