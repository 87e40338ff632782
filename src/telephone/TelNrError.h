#pragma once
// A failure inside the number normaliser or its tables: a number and a German
// description, as ShowError reports them. Thrown inside the telephone code
// only; StandardTelNr catches it and reports it as error 801, and a dialog
// that calls a step itself catches it with its own error number.

#include <QString>

struct TelNrError {
    int number = 0;
    QString description;
};

// The numbers follow the runtime errors the program has always reported.
namespace TelNrErrors {
inline constexpr int Overflow = 6;        // "Überlauf": a block width beyond a 16-bit count
inline constexpr int TypeMismatch = 13;   // "Typen unverträglich": a flag that is no boolean
inline constexpr int FileNotFound = 53;   // the reference database is missing
inline constexpr int InvalidNull = 94;    // "Unzulässige Verwendung von Null": a NULL CountryCode
inline constexpr int Database = 3146;     // the database failed to open or to read
} // namespace TelNrErrors
