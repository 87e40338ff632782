// refdb-build: turns the CSV tables of data/refdb into the SQLite reference
// database VarnexPub.db.
//
// Every file T_<Name>.csv becomes the table T_<Name>. The file is UTF-8,
// comma-separated, with RFC 4180 quoting ("a ""b""" for a quote inside a
// field). The first row names the columns; a column may carry a SQLite type
// after a colon ("Gender:TEXT", "StateId:INTEGER"), TEXT otherwise. A field
// that is exactly \N is NULL, an empty field is the empty text. Rows keep the
// order of the file. Lines starting with # are comments; a comment line
// starting with #! holds one SQL statement that runs once the rows are in
// (an index, a constraint that spans columns).
//
// The database is written to a temporary file and renamed into place, so a
// failed run never leaves a half-built database behind.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QTextStream>
#include <cstdio>

namespace {

struct Column {
    QString name;
    QString type;
};

// Splits CSV text into records; quoted fields may hold commas, quotes and
// line breaks.
QList<QStringList> parseCsv(const QString &text, QString &error)
{
    QList<QStringList> rows;
    QStringList row;
    QString field;
    bool inQuotes = false;
    bool fieldStarted = false;
    bool nullMarker = false;
    auto endField = [&] {
        row.append(nullMarker ? QString() : (field.isNull() ? QStringLiteral("") : field));
        field = QString();
        fieldStarted = false;
        nullMarker = false;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (inQuotes) {
            if (c == u'"') {
                if (i + 1 < text.size() && text.at(i + 1) == u'"') {
                    field += u'"';
                    ++i;
                } else {
                    inQuotes = false;
                }
            } else {
                field += c;
            }
            continue;
        }
        if (c == u'"' && !fieldStarted) {
            inQuotes = true;
            fieldStarted = true;
            field = QStringLiteral("");
        } else if (c == u',') {
            if (field == QStringLiteral("\\N"))
                nullMarker = true;
            endField();
        } else if (c == u'\r') {
            continue;
        } else if (c == u'\n') {
            if (field == QStringLiteral("\\N"))
                nullMarker = true;
            endField();
            // A blank line is no record.
            if (!(row.size() == 1 && row.first().isEmpty()))
                rows.append(row);
            row.clear();
        } else {
            field += c;
            fieldStarted = true;
        }
    }
    if (inQuotes) {
        error = QStringLiteral("unterminated quoted field");
        return {};
    }
    if (fieldStarted || !row.isEmpty()) {
        if (field == QStringLiteral("\\N"))
            nullMarker = true;
        endField();
        rows.append(row);
    }
    return rows;
}

bool buildTable(QSqlDatabase &db, const QFileInfo &file, QString &error)
{
    QFile f(file.absoluteFilePath());
    if (!f.open(QIODevice::ReadOnly)) {
        error = f.errorString();
        return false;
    }
    QString text = QString::fromUtf8(f.readAll());
    // Drop comment lines before parsing; keep the statements of #! lines.
    QStringList kept;
    QStringList statements;
    for (const QString &line : text.split(u'\n')) {
        if (line.startsWith(QStringLiteral("#!")))
            statements.append(line.mid(2).trimmed());
        else if (!line.startsWith(u'#'))
            kept.append(line);
    }
    text = kept.join(u'\n');
    QList<QStringList> rows = parseCsv(text, error);
    if (!error.isEmpty())
        return false;
    if (rows.isEmpty()) {
        error = QStringLiteral("no header row");
        return false;
    }
    QList<Column> columns;
    for (const QString &head : rows.takeFirst()) {
        const qsizetype colon = head.indexOf(u':');
        columns.append(colon < 0 ? Column{head.trimmed(), QStringLiteral("TEXT")}
                                 : Column{head.left(colon).trimmed(), head.mid(colon + 1).trimmed()});
    }
    const QString table = file.completeBaseName();
    QStringList defs, names, marks;
    for (const Column &c : columns) {
        defs.append(QStringLiteral("\"%1\" %2").arg(c.name, c.type));
        names.append(QStringLiteral("\"%1\"").arg(c.name));
        marks.append(QStringLiteral("?"));
    }
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("CREATE TABLE \"%1\" (%2)").arg(table, defs.join(QStringLiteral(", "))))) {
        error = q.lastError().text();
        return false;
    }
    if (!q.prepare(QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)")
                       .arg(table, names.join(QStringLiteral(", ")), marks.join(QStringLiteral(", "))))) {
        error = q.lastError().text();
        return false;
    }
    int line = 1;
    for (const QStringList &row : rows) {
        ++line;
        if (row.size() != columns.size()) {
            error = QStringLiteral("row %1 has %2 fields, expected %3").arg(line).arg(row.size()).arg(columns.size());
            return false;
        }
        for (int i = 0; i < row.size(); ++i) {
            const QString &v = row.at(i);
            if (v.isNull())
                q.bindValue(i, QVariant(QMetaType::fromType<QString>()));
            else if (columns.at(i).type.compare(QStringLiteral("INTEGER"), Qt::CaseInsensitive) == 0 && !v.isEmpty())
                q.bindValue(i, v.toLongLong());
            else
                q.bindValue(i, v);
        }
        if (!q.exec()) {
            error = QStringLiteral("row %1: %2").arg(line).arg(q.lastError().text());
            return false;
        }
    }
    for (const QString &statement : statements) {
        if (!q.exec(statement)) {
            error = QStringLiteral("%1: %2").arg(statement, q.lastError().text());
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3) {
        std::fprintf(stderr, "usage: refdb-build <csv folder> <output database>\n");
        return 2;
    }
    const QDir source(args.at(1));
    const QString target = args.at(2);
    const QString temp = target + QStringLiteral(".tmp");
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile::remove(temp);
    int status = 0;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("refdb"));
        db.setDatabaseName(temp);
        if (!db.open()) {
            std::fprintf(stderr, "refdb-build: cannot create %s\n", qPrintable(temp));
            return 1;
        }
        db.transaction();
        const QFileInfoList files = source.entryInfoList({QStringLiteral("T_*.csv")}, QDir::Files, QDir::Name);
        for (const QFileInfo &file : files) {
            QString error;
            if (!buildTable(db, file, error)) {
                std::fprintf(stderr, "refdb-build: %s: %s\n", qPrintable(file.fileName()), qPrintable(error));
                status = 1;
                break;
            }
        }
        if (status == 0)
            db.commit();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("refdb"));
    if (status != 0) {
        QFile::remove(temp);
        return status;
    }
    QFile::remove(target);
    if (!QFile::rename(temp, target)) {
        std::fprintf(stderr, "refdb-build: cannot move %s into place\n", qPrintable(temp));
        return 1;
    }
    return 0;
}
