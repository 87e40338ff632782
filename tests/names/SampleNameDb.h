#pragma once
// Builds a reference database holding only the name tables, with exactly the
// rows a test names, so that a change of the shipped tables never breaks it.

#include "frame/FileWatch.h"

#include <QFile>
#include <QMap>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QTest>

// Table name -> rows; a row is its field values in the order of the
// table's columns (FirstName and Gender for T_FirstNames, one field else).
using NameDbRows = QMap<QString, QList<QStringList>>;

// The rows that the examples of the name analysis assume.
inline NameDbRows ExampleNameRows()
{
    return {
        {QStringLiteral("T_Addresses"), {{"Herr"}, {"Frau"}}},
        {QStringLiteral("T_FirstNames"),
         {{"Hans", "M"}, {"Peter", "M"}, {"Maria", "W"}, {"Anna", "W"}, {"Kim", "U"}}},
        {QStringLiteral("T_Hyphens"), {{"-"}, {"und"}}},
        {QStringLiteral("T_TitlesDr"), {{"Dr."}, {"Dr. med."}}},
        {QStringLiteral("T_TitlesDipl"), {{"Dipl.-Ing."}}},
        {QStringLiteral("T_TitlesProf"), {{"Prof."}}},
        {QStringLiteral("T_Suffixes"), {{"jun."}}},
        {QStringLiteral("T_BusinessWord"), {}},
        {QStringLiteral("T_BusinessInStr"), {}},
        {QStringLiteral("T_BusinessEnd"), {{"GmbH"}}},
    };
}

inline QStringList NameTableColumns(const QString &table)
{
    static const QMap<QString, QStringList> columns = {
        {QStringLiteral("T_Addresses"), {"Address"}},
        {QStringLiteral("T_FirstNames"), {"FirstName", "Gender"}},
        {QStringLiteral("T_Hyphens"), {"Hyphen"}},
        {QStringLiteral("T_TitlesDr"), {"Title"}},
        {QStringLiteral("T_TitlesDipl"), {"Title"}},
        {QStringLiteral("T_TitlesProf"), {"Title"}},
        {QStringLiteral("T_Suffixes"), {"Suffix"}},
        {QStringLiteral("T_BusinessWord"), {"String"}},
        {QStringLiteral("T_BusinessInStr"), {"String"}},
        {QStringLiteral("T_BusinessEnd"), {"String"}},
    };
    return columns.value(table);
}

// Writes the tables into a new SQLite file at path (replacing an old one).
inline bool WriteNameDb(const QString &path, const NameDbRows &rows)
{
    QFile::remove(path);
    bool ok = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("SampleNameDb"));
        db.setDatabaseName(path);
        ok = db.open();
        QSqlQuery q(db);
        for (auto it = rows.cbegin(); ok && it != rows.cend(); ++it) {
            const QStringList columns = NameTableColumns(it.key());
            ok = q.exec(QStringLiteral("CREATE TABLE %1 (%2 TEXT)").arg(it.key(), columns.join(" TEXT, ")));
            for (const QStringList &row : it.value()) {
                QStringList marks(columns.size(), QStringLiteral("?"));
                ok = ok && q.prepare(QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(it.key(), marks.join(',')));
                for (int i = 0; ok && i < row.size(); ++i)
                    q.bindValue(i, row.at(i));
                ok = ok && q.exec();
            }
        }
        if (!ok)
            qWarning() << "sample name database:" << q.lastError().text();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("SampleNameDb"));
    SyncFileWatches(); // the change reaches the tables' watch before the next call
    return ok;
}
