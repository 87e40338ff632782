#pragma once
// The two telephone tables of the reference database, T_CountryCodes and
// T_CountryAndAreaCodes, held in memory with the two look-ups the number
// normaliser makes in them.
//
// The look-ups give exactly what a scan of the tables would give: the
// country scan takes the first row in table order, the area look-up the first
// row in ascending text order of AreaCode with NULL rows first. Stored values
// may carry blanks; the look-ups trim them.

#include "telephone/TelNrError.h"

#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// One row of T_CountryCodes or T_CountryAndAreaCodes as stored; nullopt is
// NULL.
struct CountryCodeRow {
    std::optional<QString> countryCode;
    std::optional<QString> nationalDDPrefix;
};

struct AreaCodeRow {
    std::optional<QString> countryCode;
    std::optional<QString> areaCode;
};

// A country found at the start of a digit text.
struct CountryMatch {
    QString countryCode;    // trimmed
    QString nationalPrefix; // trimmed; empty when the table holds NULL
    qsizetype cutLength = 0; // characters to cut off: prefix and code, or the code alone
};

class TelTables
{
public:
    TelTables() = default;
    TelTables(const QList<CountryCodeRow> &countries, const QList<AreaCodeRow> &areas);

    // The first row in table order whose code follows iddp at the start of
    // digits or, when plus is set, stands at the very start of digits; the
    // first test wins within one row. Throws TelNrError (InvalidNull) when
    // the scan reaches a row whose CountryCode is NULL before it finds one.
    [[nodiscard]] std::optional<CountryMatch> matchCountry(QStringView digits, QStringView iddp, bool plus) const;

    // The trimmed area code of the first row of the country (stored
    // CountryCode equal to country) with which digits begins, in ascending
    // text order with NULL rows first. Only rows whose stored code begins
    // with the first character of digits take part, and the NULL rows when
    // withNullRows is set; a NULL row matches as the empty code.
    [[nodiscard]] std::optional<QString> findAreaCode(QStringView country, QStringView digits, bool withNullRows) const;

private:
    struct ViewHash {
        using is_transparent = void;
        size_t operator()(std::u16string_view v) const { return std::hash<std::u16string_view>{}(v); }
    };
    using CodeSet = std::unordered_set<std::u16string, ViewHash, std::equal_to<>>;

    struct CountryEntry {
        QString code;
        QString prefix;
    };
    struct AreaEntry {
        QString stored;
        QString trimmed;
        bool isNull = false;
    };
    // The area codes of one country. Regular codes (no blanks around them)
    // are found by probing the prefixes of the digit text, shortest first,
    // which is the same as the first match in ascending order; a country with
    // any irregular code is scanned row by row in that order.
    struct CountryAreas {
        bool hasNullRow = false;
        bool regular = true;
        CodeSet codes;
        qsizetype maxLength = 0;
        std::vector<AreaEntry> ordered;
    };

    std::vector<CountryEntry> m_countries;
    std::unordered_map<std::u16string, int, ViewHash, std::equal_to<>> m_countryIndex; // trimmed code -> first row
    int m_firstNullCountry = -1;
    qsizetype m_maxCountryLength = 0;
    std::unordered_map<std::u16string, CountryAreas, ViewHash, std::equal_to<>> m_areas; // stored CountryCode
};

// Reads both tables from an open database. Throws TelNrError.
TelTables ReadTelTables(const QSqlDatabase &db);

// The path of VarnexPub.db in the program folder (copied there first when
// needed, see ReferenceDatabaseFile).
QString ReferenceDatabasePath();

// A connection of its own to the reference database, read-only unless
// writable is set; closed and removed when it goes out of scope. Throws
// TelNrError when the file is missing or does not open (an existing file is
// never created; the missing file is error FileNotFound). A writer of the telephone tables calls
// NotifyTelTablesChanged after its change.
class ReferenceDbConnection
{
public:
    explicit ReferenceDbConnection(bool writable = false);
    ~ReferenceDbConnection();
    ReferenceDbConnection(const ReferenceDbConnection &) = delete;
    ReferenceDbConnection &operator=(const ReferenceDbConnection &) = delete;

    [[nodiscard]] QSqlDatabase database() const;

private:
    QString m_name;
};

// The tables of the reference database in the program folder. They are read
// once and kept until the file changes (FileWatch: written, replaced or
// removed by anyone), the program folder changes or NotifyTelTablesChanged
// is called. Throws TelNrError when the file is missing or unreadable; the
// reference stays valid until the next call.
const TelTables &CurrentTelTables();

// Tells the cache that this process has written to the telephone tables, so
// the next call reads them again whatever the file times say.
void NotifyTelTablesChanged();

// How often CurrentTelTables has read the file in this process.
quint64 TelTablesReadCount();
