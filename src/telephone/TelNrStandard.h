#pragma once
// The number normaliser: brings a telephone number, typed in whatever form,
// into the one normal form the user has configured (with the defaults
// +49 (30) 1234567, or +423 1234567 for a country without area codes), with
// the help of the telephone tables of the reference database.
//
// A number that cannot be resolved against the tables comes back untouched.
// Settings and tables are cached and read again as soon as the settings
// (SettingsGeneration) or the database file (FileWatch) change, whoever
// changes them. Like the rest of the
// program it runs on the user-interface thread only.

#include "telephone/TelNrError.h"
#include "telephone/TelNrSettings.h"

#include <QString>

class TelTables;

// The normal form of number; changed is true exactly when the result differs
// from number in any character. Blank input gives the empty text. Any
// failure (database missing or unreadable, a NULL CountryCode, a flag that
// is no boolean, a block width beyond a 16-bit count) is reported through
// ShowError as error 801 with the number in the info text, once per number,
// and gives the empty text with changed false, so that the caller leaves the
// field alone.
QString StandardTelNr(const QString &number, bool &changed);

// Cuts a text of digits into blocks of the widths of a block set ("BlockA":
// area code, "BlockS": subscriber part, "BlockT": number without area code)
// and sets the set's separator between them. What lies behind the last block,
// an extension in particular, follows unaltered. Has no error handler of its
// own: a width beyond a 16-bit count throws TelNrError (Overflow), which a
// caller outside the normaliser catches.
QString FormatNumberBlocks(const QString &text, const QString &blockKey);

// The steps of the normaliser, in the order in which it runs them. They are
// public so that tests and the telephone dialogs can run a single step.

// The working values of one number.
struct TelNrParts {
    QString digits;         // what the reduction kept, cut down from the front
    QString country;        // the number's country code
    QString nationalPrefix; // the national prefix that applies to it
    bool found = false;     // the number has been resolved so far
    bool prefixCut = false; // a national prefix was cut from digits
    QString areaCode;
    QString subscriber;     // digits behind the area code
};

// Whether number counts as blank (nothing but blanks).
bool IsBlankNumber(const QString &number);

// Keeps the digits and every "+" of number, and its last durchwahlTrenn
// (a single character) in the form durchwahlTrennOut; drops everything else.
QString ReduceToDigits(const QString &number, const QString &durchwahlTrenn, const QString &durchwahlTrennOut);

// A "+" at the start of digits becomes iddp, unless number itself carries
// iddp right behind its first character; then every "+" left is removed.
QString PlusToInternationalPrefix(const QString &digits, const QString &number, const QString &iddp);

// The country by table, its code cut from digits, with its national prefix;
// without a match the user's own country. IgnoreCountryCode replaces a
// recognised country by the own one. Throws TelNrError on a NULL CountryCode.
void ResolveCountry(TelNrParts &parts, const TelTables &tables, const TelNrSettings &settings);

// Cuts the national prefix from digits unless they begin with iddp. An
// empty prefix "cuts" nothing but still marks the number as resolved.
void CutNationalPrefix(TelNrParts &parts, const QString &iddp);

// The area code by table, shortest match first; when that fails after a cut
// prefix, again with the prefix put back. Sets found, areaCode and
// subscriber.
void ResolveAreaCode(TelNrParts &parts, const TelTables &tables);

// False when the number filter (FilterTel) keeps this number unchanged.
bool PassesFilters(const TelNrParts &parts, const TelNrSettings &settings);

// Drops durchwahlTrennOut at the start and end of the subscriber part and
// of the digit text, so only an extension inside the number keeps it.
void TidySeparators(TelNrParts &parts, const QString &durchwahlTrennOut);

// The normal form from the resolved parts, with number blocks where set.
QString ComposeNumber(const TelNrParts &parts, const TelNrSettings &settings);

// Turns the old Swiss area code 1 of a composed number into 44 (SchweizKonv).
QString ConvertOldSwissCode(const QString &composed, const TelNrSettings &settings);

// The block cutting of FormatNumberBlocks with the widths, separator and
// input extension separator given. An empty durchwahlTrenn never stops the
// blocks. Throws TelNrError (Overflow) on reaching a width of nullopt.
QString CutIntoBlocks(const QString &text, const QList<BlockWidth> &widths, const QString &separator,
                      const QString &durchwahlTrenn);

// All steps on one number, against the given tables and settings: the
// result of StandardTelNr without caches and without the error box.
// Throws TelNrError.
QString NormaliseNumber(const QString &number, const TelTables &tables, const TelNrSettings &settings);
