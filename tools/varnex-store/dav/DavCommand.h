#pragma once
// The command "dav" of varnex-store: accounts of CardDAV/CalDAV servers in
// the profile and their sync.
//
//   dav add NAME URL [--user BENUTZER] [--password-file DATEI] [--allow-http]
//   dav sync [NAME] [--password-file DATEI]
//   dav list
//   dav remove NAME
//
// The password is never stored: it comes from VARNEX_DAV_PASSWORD, from the
// first line of the password file, else it is asked on the terminal without
// echo (or read as one line from standard input when that is no terminal,
// which is how the window hands it over).

#include <QStringList>
#include <QTextStream>

// args: the words after "dav". Returns the exit code: 0 done, 3 done with
// entries skipped, 1 stopped (no connection, wrong password, TLS, unknown
// address, a store failure), 2 wrong call.
int RunDavCommand(const QStringList &args, QTextStream &out, QTextStream &err);
[[nodiscard]] QString DavUsage();
