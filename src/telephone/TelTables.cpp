#include "telephone/TelTables.h"

#include "frame/FileWatch.h"
#include "frame/GlobalFunctions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <algorithm>
#include <climits>

namespace {

QStringView trimBlanks(QStringView text)
{
    while (!text.isEmpty() && text.front() == u' ')
        text = text.sliced(1);
    while (!text.isEmpty() && text.back() == u' ')
        text.chop(1);
    return text;
}

std::u16string_view u16(QStringView text)
{
    return {text.utf16(), size_t(text.size())};
}

std::optional<QString> optionalText(const QVariant &value)
{
    if (value.isNull())
        return std::nullopt;
    return value.toString();
}

TelNrError databaseError(const QSqlError &error)
{
    return {TelNrErrors::Database,
            QStringLiteral("Die Referenzdatenbank kann nicht gelesen werden: %1").arg(error.text())};
}

// NULL rows first, then ascending text order of the stored code.
bool areaOrder(const auto &a, const auto &b)
{
    if (a.isNull != b.isNull)
        return a.isNull;
    return a.stored < b.stored;
}

} // namespace

TelTables::TelTables(const QList<CountryCodeRow> &countries, const QList<AreaCodeRow> &areas)
{
    m_countries.reserve(size_t(countries.size()));
    for (int i = 0; i < int(countries.size()); ++i) {
        const CountryCodeRow &row = countries.at(i);
        if (!row.countryCode) {
            if (m_firstNullCountry < 0)
                m_firstNullCountry = i;
            m_countries.push_back({});
            continue;
        }
        const QString code = trimBlanks(*row.countryCode).toString();
        const QString prefix = row.nationalDDPrefix ? trimBlanks(*row.nationalDDPrefix).toString() : QString();
        m_countries.push_back({code, prefix});
        m_countryIndex.try_emplace(std::u16string(u16(code)), i);
        m_maxCountryLength = std::max(m_maxCountryLength, code.size());
    }

    for (const AreaCodeRow &row : areas) {
        if (!row.countryCode)
            continue; // a NULL country equals no country
        CountryAreas &country = m_areas[std::u16string(u16(*row.countryCode))];
        if (!row.areaCode) {
            country.hasNullRow = true;
            country.ordered.push_back({QString(), QString(), true});
            continue;
        }
        // An empty stored code is neither NULL nor begins with a character.
        if (row.areaCode->isEmpty())
            continue;
        AreaEntry entry{*row.areaCode, trimBlanks(*row.areaCode).toString(), false};
        if (entry.trimmed != entry.stored)
            country.regular = false;
        country.codes.insert(std::u16string(u16(entry.trimmed)));
        country.maxLength = std::max(country.maxLength, entry.trimmed.size());
        country.ordered.push_back(std::move(entry));
    }
    for (auto &entry : m_areas)
        std::stable_sort(entry.second.ordered.begin(), entry.second.ordered.end(),
                         [](const AreaEntry &a, const AreaEntry &b) { return areaOrder(a, b); });
}

std::optional<CountryMatch> TelTables::matchCountry(QStringView digits, QStringView iddp, bool plus) const
{
    int best = INT_MAX;
    bool viaIddp = false;
    // Calling codes are looked up by every length they can have; the lowest
    // row wins, as in a scan in table order.
    auto probe = [&](QStringView text, bool iddpTest) {
        const qsizetype longest = std::min(m_maxCountryLength, text.size());
        for (qsizetype length = 0; length <= longest; ++length) {
            const auto it = m_countryIndex.find(u16(text.first(length)));
            if (it != m_countryIndex.end() && it->second < best) {
                best = it->second;
                viaIddp = iddpTest;
            }
        }
    };
    if (digits.startsWith(iddp))
        probe(digits.sliced(iddp.size()), true);
    if (plus)
        probe(digits, false);

    if (m_firstNullCountry >= 0 && m_firstNullCountry < best)
        throw TelNrError{TelNrErrors::InvalidNull, QStringLiteral("Unzulässige Verwendung von Null")};
    if (best == INT_MAX)
        return std::nullopt;
    const CountryEntry &country = m_countries.at(size_t(best));
    return CountryMatch{country.code, country.prefix, (viaIddp ? iddp.size() : 0) + country.code.size()};
}

std::optional<QString> TelTables::findAreaCode(QStringView country, QStringView digits, bool withNullRows) const
{
    const auto it = m_areas.find(u16(country));
    if (it == m_areas.end())
        return std::nullopt;
    const CountryAreas &areas = it->second;
    if (withNullRows && areas.hasNullRow)
        return QString();

    if (areas.regular) {
        // Among codes that are all starts of the same text, the shortest
        // comes first in ascending order.
        const qsizetype longest = std::min(areas.maxLength, digits.size());
        for (qsizetype length = 1; length <= longest; ++length) {
            if (areas.codes.contains(u16(digits.first(length))))
                return digits.first(length).toString();
        }
        return std::nullopt;
    }
    for (const AreaEntry &entry : areas.ordered) {
        if (entry.isNull)
            continue; // NULL rows were handled above
        const bool candidate = digits.isEmpty() || entry.stored.startsWith(digits.front());
        if (candidate && digits.startsWith(entry.trimmed))
            return entry.trimmed;
    }
    return std::nullopt;
}

TelTables ReadTelTables(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    // rowid is the order in which the rows were written: the table's own order.
    if (!query.exec(QStringLiteral("SELECT CountryCode, NationalDDPrefix FROM T_CountryCodes ORDER BY rowid")))
        throw databaseError(query.lastError());
    QList<CountryCodeRow> countries;
    while (query.next())
        countries.append({optionalText(query.value(0)), optionalText(query.value(1))});

    if (!query.exec(QStringLiteral("SELECT CountryCode, AreaCode FROM T_CountryAndAreaCodes")))
        throw databaseError(query.lastError());
    QList<AreaCodeRow> areas;
    while (query.next())
        areas.append({optionalText(query.value(0)), optionalText(query.value(1))});
    return TelTables(countries, areas);
}

QString ReferenceDatabasePath()
{
    return ReferenceDatabaseFile();
}

ReferenceDbConnection::ReferenceDbConnection(bool writable)
{
    static int s_counter = 0;
    m_name = QStringLiteral("VarnexPub%1").arg(++s_counter);
    const QString path = ReferenceDatabasePath();
    if (!QFileInfo(path).isFile())
        throw TelNrError{TelNrErrors::FileNotFound,
                         QStringLiteral("Datei nicht gefunden: %1").arg(QDir::toNativeSeparators(path))};
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    db.setDatabaseName(path);
    if (!writable)
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!db.open()) {
        const TelNrError error = databaseError(db.lastError());
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
        throw error;
    }
}

ReferenceDbConnection::~ReferenceDbConnection()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_name);
}

QSqlDatabase ReferenceDbConnection::database() const
{
    return QSqlDatabase::database(m_name, false);
}

namespace {

// The one cache of the telephone tables of this process.
struct TablesCache {
    QString folder;  // the program folder the path was made from
    FileWatch watch; // of the database file
    bool valid = false;
    quint64 notifications = 0;
    TelTables tables;
};

TablesCache s_cache;
quint64 s_notifications = 0;
quint64 s_reads = 0;

} // namespace

void NotifyTelTablesChanged()
{
    ++s_notifications;
}

quint64 TelTablesReadCount()
{
    return s_reads;
}

const TelTables &CurrentTelTables()
{
    TablesCache &cache = s_cache;
    const QString folder = ProgramFolder();
    if (cache.watch.path().isEmpty() || folder != cache.folder) {
        cache.folder = folder;
        cache.watch.setPath(ReferenceDatabasePath());
        cache.valid = false;
    }
    const bool changed = cache.watch.changed();
    if (cache.valid && !changed && cache.notifications == s_notifications)
        return cache.tables;

    // A file that is missing or cannot be read fails at every call until
    // it can be read again.
    cache.valid = false;
    {
        ReferenceDbConnection connection;
        cache.tables = ReadTelTables(connection.database());
    }
    ++s_reads;
    cache.notifications = s_notifications;
    cache.valid = true;
    return cache.tables;
}
