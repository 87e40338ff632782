#pragma once
// The properties of the item classes: one registry of every property name
// the store knows, with its type and the classes that carry it. Names are
// compared ignoring case ("Fullname" and "FullName" are one property).
//
// Types: text (QString), date (QDateTime; no date reads as 01.01.4501
// 00:00), boolean, integer. Values written are converted to the type; a
// value that cannot be converted (a text that is no date) is refused.
//
// Composite fields. Some properties are views of others; writing either side
// keeps both consistent:
// - Contact FullName <-> Title, FirstName, MiddleName, LastName, Suffix.
//   Writing FullName splits it into the parts (SplitFullName) and keeps the
//   text as written; writing an empty FullName leaves the parts as they are.
//   Writing a part recomposes FullName from all five parts (ComposeFullName,
//   in the form FullName had), unless FullName already splits into exactly
//   the parts: then it stays as written, so that writing back the parts of
//   "Müller, Hans" keeps that text.
// - Contact BusinessAddress, HomeAddress, OtherAddress <-> their Street,
//   PostOfficeBox, PostalCode, City, State and Country parts. Writing the
//   whole splits it (SplitAddress) and keeps the text as written; writing a
//   part recomposes the whole (ComposeAddress).
// - Appointment Duration = End - Start in minutes; writing Duration moves
//   End; writing Start moves End along when both held a date, so that the
//   length stays.
// - Journal End = Start + Duration; writing End sets Duration.
// - Note Subject = the first line of Body; writing Body sets it.

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>

enum class PropType { Text, Date, Boolean, Integer };

struct PropDef {
    const char *name;  // canonical spelling
    PropType type;
    unsigned classes;  // ClassBit mask
    int defaultValue;  // for integers and booleans
    bool readOnly;
};

// Bits of PropDef::classes.
enum ClassBit : unsigned {
    BitAppointment = 1u << 0,
    BitContact = 1u << 1,
    BitJournal = 1u << 2,
    BitMail = 1u << 3,
    BitNote = 1u << 4,
    BitPost = 1u << 5,
    BitTask = 1u << 6,
    BitDistList = 1u << 7,
    BitAll = 0xFFu,
};

// The bit of an item Class number; 0 for an unknown class.
[[nodiscard]] unsigned ClassBitOf(int itemClass);

// Number of registered properties; slots run from 0 to count - 1.
[[nodiscard]] int PropertyCount();
[[nodiscard]] const PropDef &PropertyAt(int slot);
// The slot of a name, ignoring case; -1 for a name the store does not know.
[[nodiscard]] int PropertySlot(const QString &name);
// Slot of a name that the class carries, -1 otherwise.
[[nodiscard]] int PropertySlotFor(int itemClass, const QString &name);
// The canonical names of the class's properties, in registry order.
[[nodiscard]] QStringList PropertyNamesOf(int itemClass);

// The empty value of a property: "" / no date / False / its default number.
[[nodiscard]] QVariant EmptyValue(const PropDef &def);
// Converts a value to the property's type. Dates take QDateTime, QDate and
// the German text forms "dd.MM.yyyy", "dd.MM.yyyy hh:mm" and "dd.MM.yyyy
// hh:mm:ss"; "" and an invalid value mean no date. Throws StoreError for a
// value that does not fit.
[[nodiscard]] QVariant ConvertForProperty(const PropDef &def, const QVariant &value);
// The text form of a value, as the runs compare and show it: a date as
// "dd.MM.yyyy" at midnight and "dd.MM.yyyy hh:mm:ss" otherwise, a boolean as
// "Wahr"/"Falsch", a number in decimal.
[[nodiscard]] QString TextOfValue(const QVariant &value);

// Composite field rules (see the header comment).
struct NameParts {
    QString title, firstName, middleName, lastName, suffix;
    bool operator==(const NameParts &) const = default;
};
// Splits a full name: "Last, First Middle" when it holds a comma, else
// "[titles] First [Middle...] [particles] Last [suffixes]". Titles are the
// words of a fixed list (Dr., Prof., Herr, Frau, Dipl.-Ing., med. ...) at
// the front; suffixes (jun., sen., Jr., II ...) at the end; particles (von,
// van, de, zu ...) in small letters join the last name; a single word is the
// last name.
[[nodiscard]] NameParts SplitFullName(const QString &fullName);
// Title First Middle Last Suffix, joined by single blanks, empty parts left
// out; "Last, Title First Middle Suffix" when previous (the full name before)
// has a comma and there is a last name.
[[nodiscard]] QString ComposeFullName(const NameParts &parts, const QString &previous = {});

struct AddressParts {
    QString street, postOfficeBox, postalCode, city, state, country;
    bool operator==(const AddressParts &) const = default;
};
// Splits an address of lines (CR LF, LF or CR): the last line of the form
// "postal code  city" (4 or 5 digits, optionally with a country letter and
// "-" in front) gives PostalCode and City; lines before it are the street,
// except one starting with "Postfach", which is the post office box; of the
// lines after it one is the country, two are state and country. Without such
// a line: one line is the street; two are street and city; three or more end
// in city and country.
[[nodiscard]] AddressParts SplitAddress(const QString &address);
// Street, post office box, "PostalCode City", state and country, each
// non-empty one on its own line, joined by CR LF.
[[nodiscard]] QString ComposeAddress(const AddressParts &parts);
