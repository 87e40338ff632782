#pragma once
// Date fields in find and replace. A date field is read as text in the form
// the store gives it (TextOfValue: "dd.MM.yyyy" at midnight, else with the
// time; no date reads "01.01.4501", so a date field is never empty), changed
// as text, and the new text is turned back into a date by the rule of its
// item type.

#include "replace/ReplaceFields.h"

#include <QDateTime>
#include <optional>

// A German date as a user types it: day.month.year with a year of four or
// two digits (00 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999),
// optionally followed by a time h:mm or h:mm:ss; blanks around it are
// ignored. Anything else, also a date that does not exist (32.13.2006), gives
// nothing.
[[nodiscard]] std::optional<QDateTime> ParseDateText(const QString &text);

// The date to write for the new text of a date field, or nothing to write:
// a valid date is written; "" writes the store's NoDate() where the type
// allows a field without date (contacts, tasks) and nothing for
// appointments; any other text writes nothing.
[[nodiscard]] std::optional<QDateTime> DateToWrite(ReplaceDateRule rule, const QString &newText);
