#include "names/NameTables.h"

#include "frame/FileWatch.h"
#include "frame/GlobalFunctions.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

const QString kConnection = QStringLiteral("VarnexNameTables");
const int kSqliteCantOpen = 14; // SQLite's number for a file it cannot open

// Reads one column of a table in the order of its rows. NULL never matches a
// typed name, so such rows are left out.
bool readColumn(QSqlDatabase &db, const QString &table, const QString &field, QStringList &values,
                NameTablesError &error, QStringList *second = nullptr, const QString &secondField = {})
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    const QString columns = second ? QStringLiteral("\"%1\", \"%2\"").arg(field, secondField)
                                   : QStringLiteral("\"%1\"").arg(field);
    if (!query.exec(QStringLiteral("SELECT %1 FROM \"%2\"").arg(columns, table))) {
        const QSqlError failure = query.lastError();
        error.description = QStringLiteral("Die Namenstabelle %1 der Referenzdatenbank kann nicht gelesen werden (%2).")
                                .arg(table, failure.databaseText());
        error.number = failure.nativeErrorCode().toInt();
        return false;
    }
    while (query.next()) {
        if (query.value(0).isNull())
            continue;
        values.append(query.value(0).toString().toCaseFolded());
        if (second)
            second->append(query.value(1).toString());
    }
    return true;
}

QSet<QString> toSet(const QStringList &values, qsizetype *longest = nullptr)
{
    QSet<QString> set;
    set.reserve(values.size());
    for (const QString &v : values) {
        set.insert(v);
        if (longest)
            *longest = std::max(*longest, v.size());
    }
    return set;
}

bool readAll(QSqlDatabase &db, NameTables &t, NameTablesError &error)
{
    QStringList words, inStr, ends, hyphens, dipl, dr, prof, addresses, suffixes, firstNames, genders;
    const bool ok = readColumn(db, QStringLiteral("T_BusinessWord"), QStringLiteral("String"), words, error)
        && readColumn(db, QStringLiteral("T_BusinessInStr"), QStringLiteral("String"), inStr, error)
        && readColumn(db, QStringLiteral("T_BusinessEnd"), QStringLiteral("String"), ends, error)
        && readColumn(db, QStringLiteral("T_Hyphens"), QStringLiteral("Hyphen"), hyphens, error)
        && readColumn(db, QStringLiteral("T_TitlesDipl"), QStringLiteral("Title"), dipl, error)
        && readColumn(db, QStringLiteral("T_TitlesDr"), QStringLiteral("Title"), dr, error)
        && readColumn(db, QStringLiteral("T_TitlesProf"), QStringLiteral("Title"), prof, error)
        && readColumn(db, QStringLiteral("T_Addresses"), QStringLiteral("Address"), addresses, error)
        && readColumn(db, QStringLiteral("T_FirstNames"), QStringLiteral("FirstName"), firstNames, error, &genders,
                      QStringLiteral("Gender"))
        && readColumn(db, QStringLiteral("T_Suffixes"), QStringLiteral("Suffix"), suffixes, error);
    if (!ok)
        return false;
    for (const QString &s : std::as_const(words)) {
        if (!s.isEmpty() && !s.contains(u' '))
            t.businessTokens.insert(s);
        else
            t.businessWordsFramed.add(u' ' + s + u' ');
    }
    for (const QString &s : std::as_const(inStr))
        t.businessInStr.add(s);
    for (const QString &s : std::as_const(ends))
        t.businessEnds.add(s + u' ');
    t.hyphens = toSet(hyphens);
    t.titlesDipl = toSet(dipl, &t.longestDipl);
    t.titlesDr = toSet(dr, &t.longestDr);
    t.titlesProf = toSet(prof);
    t.addresses = toSet(addresses);
    t.suffixes = toSet(suffixes);
    t.firstNames.reserve(firstNames.size());
    for (qsizetype i = 0; i < firstNames.size(); ++i) {
        if (!t.firstNames.contains(firstNames.at(i)))
            t.firstNames.insert(firstNames.at(i), genders.at(i));
    }
    return true;
}

} // namespace

void SubstringSet::add(const QString &entry)
{
    ++m_size;
    if (entry.isEmpty()) {
        m_hasEmpty = true;
    } else if (entry.size() == 1) {
        if (!m_single.contains(entry.front()))
            m_single.append(entry.front());
    } else {
        const quint32 key = pairKey(entry.at(0).unicode(), entry.at(1).unicode());
        m_byPair[key].append(entry);
        const quint32 b = bucket(key);
        m_pairBits[b / 64] |= quint64(1) << (b % 64);
    }
}

bool SubstringSet::foundIn(QStringView text) const
{
    if (m_hasEmpty)
        return true;
    const qsizetype n = text.size();
    const char16_t *p = text.utf16();
    for (qsizetype i = 0; i < n; ++i) {
        if (!m_single.isEmpty() && m_single.contains(QChar(p[i])))
            return true;
        if (i + 1 >= n)
            break;
        const quint32 key = pairKey(p[i], p[i + 1]);
        const quint32 b = bucket(key);
        if (!(m_pairBits[b / 64] & (quint64(1) << (b % 64))))
            continue;
        const auto found = m_byPair.constFind(key);
        if (found == m_byPair.cend())
            continue;
        const QStringView rest = text.sliced(i);
        for (const QString &entry : found.value()) {
            if (rest.startsWith(entry))
                return true;
        }
    }
    return false;
}

bool LoadNameTables(const QString &path, NameTables &tables, NameTablesError &error)
{
    // SQLite would create a missing file; the reference database must exist.
    if (!QFileInfo::exists(path)) {
        error = {QStringLiteral("Die Referenzdatenbank \"%1\" wurde nicht gefunden.").arg(path), kSqliteCantOpen};
        return false;
    }
    tables = NameTables{};
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kConnection);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (!db.open()) {
            error = {QStringLiteral("Die Referenzdatenbank \"%1\" kann nicht geöffnet werden (%2).")
                         .arg(path, db.lastError().databaseText()),
                     db.lastError().nativeErrorCode().toInt()};
        } else {
            ok = readAll(db, tables, error);
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(kConnection);
    return ok;
}

namespace {

struct NameTablesCache {
    QString folder;  // the program folder the path was made from
    FileWatch watch; // of the database file
    bool valid = false;
    NameTables tables;
};

NameTablesCache &cache()
{
    static NameTablesCache c;
    return c;
}

} // namespace

const NameTables *CurrentNameTables(NameTablesError &error)
{
    NameTablesCache &c = cache();
    const QString folder = ProgramFolder();
    if (c.watch.path().isEmpty() || folder != c.folder) {
        c.folder = folder;
        c.watch.setPath(ReferenceDatabaseFile());
        c.valid = false;
    }
    if (!c.watch.changed() && c.valid)
        return &c.tables;
    c.valid = LoadNameTables(c.watch.path(), c.tables, error);
    if (!c.valid) {
        c.tables = NameTables{};
        return nullptr;
    }
    return &c.tables;
}
