#pragma once
// A failure of the duplicate search outside the mail store: a setting that is
// no Boolean, a preference level out of range. It carries the number and the
// German description that the analyser's error handler passes to ShowError,
// the same as the store's StoreError does for a failing store.

#include <QString>

struct DupError {
    int number = 0;
    QString description;
};

namespace DupErrors {
inline constexpr int OutOfRange = 9;    // "Index außerhalb des gültigen Bereichs": Priority.N not 0 to 2
inline constexpr int TypeMismatch = 13; // "Typen unverträglich": a switch or level that is no value
} // namespace DupErrors

// The text of a setting read as a Boolean, the way the settings have always
// been converted: "1" or any other non-zero number, "True" or "Wahr" give
// true; "0", "False" or "Falsch" give false (case ignored, blanks around
// allowed). Anything else, the empty text included, throws DupError 13.
[[nodiscard]] bool DupSettingAsBoolean(const QString &text);

// The setting's value as a Boolean, by DupSettingAsBoolean.
[[nodiscard]] bool DupBoolSetting(const QString &name, const QString &defaultValue);
