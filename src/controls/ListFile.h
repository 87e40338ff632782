#pragma once
// The list files of the text fields with a remembered list: one file per
// list, "<name>.dat" in the folder Preferences of the program folder.
//
// Format (version 1):
//   - UTF-8 text without byte order mark, lines ended by LF (CR LF is read
//     as well);
//   - the first line is the header "VarnexList 1";
//   - then one entry per line, the newest first, at most MaxListEntries;
//   - an entry is kept exactly as typed, blanks at either end included (a
//     separator such as " (" is an entry); within it a backslash is written
//     as "\\", a line feed as "\n", a carriage return as "\r", and any
//     other control character but the tab, and half of a surrogate pair, as
//     "\u" with four hexadecimal digits;
//   - empty lines are skipped; an entry never is empty and never repeats.
//
// A damaged file is read as far as it goes: reading stops at the first line
// that is not valid UTF-8, holds a control character other than a tab or
// has an unknown escape, and at the first line when the header is missing.
// What was read before stays usable; the next write replaces the file by
// that plus the new entry.
// At most MaxListFileBytes are read, so a huge file never stalls a dialog;
// the writer leaves out the oldest entries that would go beyond.
//
// Files are written through a temporary file and renamed, so a crash
// leaves either the old or the new list, never half of one.

#include <QString>
#include <QStringList>

inline constexpr int MaxListEntries = 50;
inline constexpr qint64 MaxListFileBytes = 64 * 1024;

struct ListFileContent {
    QStringList entries;
    bool damaged = false; // reading stopped before the end of the file
};

// ProgramFolder()/Preferences/fileName.
[[nodiscard]] QString ListFilePath(const QString &fileName);

// The entries of the file at path; a missing file is an empty list.
[[nodiscard]] ListFileContent ReadListFile(const QString &path);

// Writes the entries (up to MaxListEntries) and creates the folder when it
// is missing. Returns false when the file could not be written.
bool WriteListFile(const QString &path, const QStringList &entries);

// entries with entry first: an equal entry further down moves up, and the
// list is cut to MaxListEntries. The empty text is never added.
[[nodiscard]] QStringList WithEntryOnTop(const QStringList &entries, const QString &entry);

// One entry as it stands in a line of the file, and back; ok is false for
// a line with an unknown or cut-off escape.
[[nodiscard]] QString EscapeListEntry(const QString &entry);
[[nodiscard]] QString UnescapeListEntry(const QString &line, bool &ok);
