#include "names/NameTables.h"

#include "frame/GlobalFunctions.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <sys/stat.h>

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
    QStringList words, hyphens, dipl, dr, prof, addresses, suffixes, firstNames, genders;
    const bool ok = readColumn(db, QStringLiteral("T_BusinessWord"), QStringLiteral("String"), words, error)
        && readColumn(db, QStringLiteral("T_BusinessInStr"), QStringLiteral("String"), t.businessInStr, error)
        && readColumn(db, QStringLiteral("T_BusinessEnd"), QStringLiteral("String"), t.businessEnds, error)
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
            t.businessWordsFramed.append(u' ' + s + u' ');
    }
    for (QString &s : t.businessEnds)
        s += u' ';
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

// What identifies the file the cache was read from.
struct FileStamp {
    QString path;
    qint64 modified = -1; // nanoseconds where the system keeps them
    qint64 size = -1;
    quint64 inode = 0;
    bool operator==(const FileStamp &) const = default;
};

struct NameTablesCache {
    FileStamp stamp;
    bool valid = false;
    NameTables tables;
};

NameTablesCache &cache()
{
    static NameTablesCache c;
    return c;
}

// One system call per analysis: QFileInfo would need several.
FileStamp stampOf(const QString &path)
{
    FileStamp stamp{path};
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return stamp;
#if defined(__linux__)
    stamp.modified = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
#else
    stamp.modified = qint64(st.st_mtime);
#endif
    stamp.size = qint64(st.st_size);
    stamp.inode = quint64(st.st_ino);
    return stamp;
}

} // namespace

const NameTables *CurrentNameTables(NameTablesError &error)
{
    NameTablesCache &c = cache();
    const FileStamp stamp = stampOf(ProgramFile(QStringLiteral("VarnexPub.db")));
    if (c.valid && c.stamp == stamp)
        return &c.tables;
    c.valid = LoadNameTables(stamp.path, c.tables, error);
    c.stamp = stamp;
    if (!c.valid) {
        c.tables = NameTables{};
        return nullptr;
    }
    return &c.tables;
}
