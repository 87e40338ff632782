#pragma once
// The ten name tables of the reference database, held in memory for the name
// analysis. Every text is kept case-folded, so a lookup with a folded key
// ignores case for every letter, umlauts included.

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringView>
#include <QStringList>

// Texts searched for anywhere in a text, all in one pass: a position is
// tried only against the entries that begin with its first two characters.
// foundIn(text) is true exactly when text.contains(s) is for some entry s.
class SubstringSet
{
public:
    void add(const QString &entry);
    [[nodiscard]] bool foundIn(QStringView text) const;
    [[nodiscard]] qsizetype size() const { return m_size; }

private:
    static quint32 pairKey(char16_t first, char16_t second) { return quint32(first) << 16 | second; }
    static quint32 bucket(quint32 key) { return (key * 2654435761u) >> 22; } // 0..1023

    QHash<quint32, QList<QString>> m_byPair; // entries of two characters and more
    QString m_single;                        // entries of one character
    bool m_hasEmpty = false;                 // an empty entry is found in every text
    quint64 m_pairBits[16] = {};             // buckets of the pairs that begin an entry
    qsizetype m_size = 0;
};

struct NameTables {
    // The company marks, prepared for a plain search in the padded, folded
    // text. A whole word of one token is a token of the text; a word of
    // several tokens is searched with a blank on both sides (the text gets
    // one too); endings get a blank behind them.
    QSet<QString> businessTokens;     // T_BusinessWord.String of one token
    SubstringSet businessWordsFramed; // " " + T_BusinessWord.String + " ", all others
    SubstringSet businessInStr;       // T_BusinessInStr.String
    SubstringSet businessEnds;        // T_BusinessEnd.String + " "
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
