#pragma once
// Import and export of varnex-store: the table of formats, the helpers that
// every format shares, and the run of one import or export command.
//
// How a format plugs in:
// - Put its code in interchange/<Name>Format.cpp (the folder is globbed into
//   the library varnex_interchange; re-run cmake configure) with a header
//   that declares its two functions, and add one row to the table in
//   InterchangeFormats.cpp. Libraries go into tools/varnex-store/
//   CMakeLists.txt (pkg-config), linked into varnex_interchange only.
// - ImportFunction(path, target, report): path is an existing file or
//   folder as the user named it; the format takes the files it knows (see
//   InputFiles). target is the store folder the user named (created if
//   needed) or the default folder of the format's folderType; a format with
//   a folder tree (PST) creates its subfolders below it. Each entry goes
//   through ImportEntry (ItemFields.h): built fully in memory, saved once,
//   counted; an entry whose UID is in the target updates that item (UidIndex,
//   when report.updateByUid); saves go in batches (ImportBatch); a damaged
//   entry or file is a report.skip with its position
//   (EntryPosition) and the reason, never an exception out of the function.
//   Only a StoreError that makes the target unusable may leave it.
// - ExportFunction(source, path, report): source is an existing store
//   folder; path is a file or, when ExportsToFolder(path), a folder that
//   takes one file per item (ExportFileName). Files are written with
//   WriteFileAtomically, so that a failed export leaves no half file. Each
//   item written is report.countExported(); an item the format cannot hold
//   (a mail in a contact folder) is a report.skip with its subject.
// - Neither function prints anything: the command prints report.summary().

#include "ItemFields.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

using ImportFunction = void (*)(const QString &path, const MAPIFolder &target, InterchangeReport &report);
using ExportFunction = void (*)(const MAPIFolder &source, const QString &path, InterchangeReport &report);

struct InterchangeFormat {
    QString name;        // as typed on the command line, lower case: "vcard"
    QStringList aliases; // further names: "vcf"
    QString description; // German, one line for the usage text
    int folderType;      // default folder (olFolderContacts ...) when none is named
    ImportFunction importer = nullptr; // null: the format cannot be imported
    ExportFunction exporter = nullptr; // null: the format cannot be exported
};

[[nodiscard]] const QList<InterchangeFormat> &InterchangeFormats();
// By name or alias, ignoring case; null when there is none.
[[nodiscard]] const InterchangeFormat *FindInterchangeFormat(const QString &name);

// The files to read for a path: the file itself, or the files of a folder
// whose names end in one of the suffixes ("vcf", ignoring case), sorted by
// name, also from subfolders when recursive is set.
[[nodiscard]] QStringList InputFiles(const QString &path, const QStringList &suffixes, bool recursive = false);
// The content of a file; EntryDamage when it cannot be read. Files larger
// than maxBytes are refused, so that a wrong path cannot exhaust memory.
[[nodiscard]] QByteArray ReadInputFile(const QString &path, qint64 maxBytes = qint64(2) << 30);

// Whether an export to the path writes one file per item: the path is a
// folder or ends in a slash.
[[nodiscard]] bool ExportsToFolder(const QString &path);
// A new file name in the folder for an item: the cleaned title (or
// fallback) with the suffix, numbered when the name is taken.
[[nodiscard]] QString ExportFileName(const QString &folder, const QString &title, const QString &suffix);
// Writes the whole file or nothing; false with a German reason on failure.
bool WriteFileAtomically(const QString &path, const QByteArray &bytes, QString *error);

// The default folder of a type (olFolderTasks ...) in the store of the
// given folder; a null folder when that store has none.
[[nodiscard]] MAPIFolder DefaultFolderInStore(const MAPIFolder &anyFolder, int folderType);

// The command: "import"/"export", the format name, the file or folder and
// the store folder path ("" for the format's default folder). Prints the
// report to out and problems to err; returns the exit code: 0 when all
// went well, 3 when entries were skipped, 1 when the run could not start
// or stopped, 2 for an unknown format or a direction it lacks.
// updateByUid: see InterchangeReport.
int RunInterchangeCommand(const QString &command, const QString &formatName, const QString &path,
                          const QString &storeFolder, QTextStream &out, QTextStream &err, bool updateByUid = true);
// The lines of the usage text that list the formats.
[[nodiscard]] QString InterchangeFormatsUsage();
