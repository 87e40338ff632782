#pragma once
// The ten name tables of the reference database, held in memory for the name
// analysis. Every text is kept case-folded, so a lookup with a folded key
// ignores case for every letter, umlauts included.

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

struct NameTables {
    // The company marks, prepared for a plain search in the padded, folded
    // text. A whole word of one token is a token of the text; a word of
    // several tokens is searched with a blank on both sides (the text gets
    // one too); endings get a blank behind them.
    QSet<QString> businessTokens;     // T_BusinessWord.String of one token
    QStringList businessWordsFramed;  // " " + T_BusinessWord.String + " ", all others
    QStringList businessInStr;        // T_BusinessInStr.String
    QStringList businessEnds;         // T_BusinessEnd.String + " "
    QSet<QString> hyphens;      // T_Hyphens.Hyphen
    QSet<QString> titlesDipl;   // T_TitlesDipl.Title, spelled without blanks
    QSet<QString> titlesDr;     // T_TitlesDr.Title, words joined by one blank
    QSet<QString> titlesProf;   // T_TitlesProf.Title
    QSet<QString> addresses;    // T_Addresses.Address
    QSet<QString> suffixes;     // T_Suffixes.Suffix
    QHash<QString, QString> firstNames; // T_FirstNames.FirstName -> Gender (first row wins)
    // Longest entry of each title table: a longer span cannot match.
    qsizetype longestDipl = 0;
    qsizetype longestDr = 0;
};

// A failure to read the tables: the database driver's text and number.
struct NameTablesError {
    QString description;
    int number = 0;
};

// Reads the tables from the SQLite database at path.
bool LoadNameTables(const QString &path, NameTables &tables, NameTablesError &error);

// The tables of VarnexPub.db in the program folder, read on first use and
// again whenever the file changes (FileWatch: written, replaced or removed
// by anyone) or the program folder does. Returns
// nullptr and fills error when the file is missing or unreadable.
const NameTables *CurrentNameTables(NameTablesError &error);
