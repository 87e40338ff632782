#pragma once
// Datei -> "Konten synchronisieren": the two-way sync of every CardDAV and
// CalDAV account of the profile, as "varnex-store dav sync" does it. The
// sync runs in that tool as a child process (the tool owns the network
// and vCard/iCalendar code), with the window's progress bar and status line
// fed from its progress lines, and ends with its German report in a box.
// A password the tool asks for is asked through the prompt and handed to
// the tool on its standard input; it is never written anywhere.

#include <QString>

#include <functional>
#include <optional>

// Asks for a password with the given text; nullopt when the user cancels.
using PasswordPrompt = std::function<std::optional<QString>(const QString &prompt)>;

struct AccountSyncResult {
    int exitCode = 0;  // of the tool: 0, 3 entries skipped, 1 stopped, 2 wrong call
    QString report;    // what the tool printed as its report
    QString problems;  // what it wrote about failures
};

// The path of the tool beside the program.
[[nodiscard]] QString StoreToolPath();
// Runs the sync of all accounts of the current profile and shows the
// report ("Info!", or "Fehler!" when the sync stopped). Tells the user when
// no account is set up or the tool is missing, without running anything.
AccountSyncResult SyncAccounts(const PasswordPrompt &askPassword);
