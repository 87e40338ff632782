#pragma once
// Name correction: splitting a typed full name into its parts, composing the
// FileAs and Subject fields from a layout, and the run over contacts.

#include <QList>
#include <QString>

class MAPIFolder;

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

// The command "Namen korrigieren": goes over every contact of the ticked
// contact folders, analyses its FullName, composes FileAs (and Subject) from
// the layouts FileAsLayoutEx and SubjectLayout and writes the contact, with
// backups of its nine name fields, only when a result differs from what it
// holds. A full name that is a company name (BusinessNameCheck, only for a
// contact without CompanyName) moves to CompanyName instead. Ends with
// "n Kontakt(e) geändert."; a store failure shows error 2501 and ends the
// run, keeping what was saved.
//
// Subject is composed, compared and written only when SubjectNameCorrect
// ("\"Betreff\"-Feld ändern") is set; otherwise the run leaves it as it is.
// When the name analysis fails (the name tables cannot be read), it has
// shown error 2502: that contact stays untouched and the run ends at once,
// without the closing message.
void CorrectContactNames();

// The run itself over the given contact folders (what CorrectContactNames
// does once the folders are collected): running state, status line and
// progress per item, closing message.
void CorrectNamesInFolders(const QList<MAPIFolder> &folders);
