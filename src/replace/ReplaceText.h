#pragma once
// The text rules of find and replace: what a field value becomes.

#include <QString>

// What the dialog holds at the moment of a call: the texts of txtFind and
// txtReplace and the three option boxes. A hidden txtFind and a disabled
// chkWord count with their values all the same.
struct ReplaceOptions {
    QString find;
    QString replacement;
    bool fillEmpty = false;    // chkLeer: "In leeren Feldern neuen Text einfügen."
    bool replaceWhole = false; // chkReplace: "Feldinhalt durch neuen Text ersetzen."
    bool wholeWord = false;    // chkWord: "Nur ganzes Wort suchen."
};

// The new value of a field; the first rule that fits:
// 1. replaceWhole: the replacement, whatever the value was;
// 2. fillEmpty and an empty value: the replacement;
// 3. wholeWord: the value padded with one blank at each end, every
//    " find " replaced by " replacement ", and blanks trimmed from both ends
//    (so a value with blanks at its ends comes back trimmed even without a
//    match);
// 4. every occurrence of find replaced by the replacement.
// The caller compares the result with the value, exactly, to see a change.
[[nodiscard]] QString newString(const ReplaceOptions &options, const QString &value);

// Replaces every occurrence of find in text, from the start and without
// overlap, ignoring the case of every letter (umlauts included); the
// replacement stands as typed. An empty find leaves text unchanged.
[[nodiscard]] QString ReplaceIgnoringCase(const QString &text, const QString &find, const QString &replacement);

// Removes blanks (U+0020 only) from both ends; tabs and line breaks stay.
[[nodiscard]] QString TrimBlanks(const QString &text);
