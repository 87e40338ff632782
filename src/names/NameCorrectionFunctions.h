#pragma once
// Name correction: splitting a typed full name into its parts, composing the
// FileAs and Subject fields from a layout, and the run over contacts.

#include <QString>

// Splits FullName into salutation with titles, first name, further first
// names, last name and suffix, looking its tokens up in the name tables of
// the reference database (VarnexPub.db in the program folder). Tokens are
// taken over letter for letter; the case of a token never changes. Lookups
// ignore case for every letter ("MÜLLER" finds "Müller").
//
// IsBusiness becomes false at the start and true when CheckBusiness is set
// and a company table matches; the person's parts are computed either way.
// Title joins salutation, professor, doctor and diploma titles with single
// blanks ("Herr Prof. Dr. Dipl.-Ing."); an empty part leaves no extra blank.
//
// Returns true and writes all five texts on success. When the tables cannot
// be read it shows error 2502, ends the running state and returns false
// without writing any of the five texts.
//
// The tables stay in memory between calls and are read again when the
// database file changes.
bool AnalyzeFullName(const QString &FullName, QString &Title, QString &FirstName, QString &MiddleName,
                     QString &LastName, QString &Suffix, bool &IsBusiness, bool CheckBusiness);

// Stands every comma, semicolon (as a comma), hyphen and bracket alone
// between single blanks, turns apostrophes into the acute accent U+00B4,
// folds runs of blanks into one and trims the ends. Tabs, line breaks and
// no-break spaces count as blanks.
QString PadNameDelimiters(const QString &text);

// Composes a field from a layout such as "Nachname, Vorname (Firma)" or its
// code form "N,V(F)". A part that is empty takes its separators and an
// emptied bracket with it. Captions and code letters are recognised in any
// case; every letter a, v, w, n, z, f is a code, also inside a word.
QString BuildNameLayout(const QString &Title, const QString &FirstName, const QString &MiddleName,
                        const QString &LastName, const QString &Suffix, const QString &Company,
                        const QString &Layout);

// True for the upper-case code letters F, N, V, Z, W, L and A; callers pass
// an upper-cased character. "L" stands for no part: it keeps a separator
// beside it and is copied as a literal.
bool IsLayoutCode(const QString &character);
