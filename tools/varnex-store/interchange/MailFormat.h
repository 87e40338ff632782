#pragma once
// Mail and posts as EML files (one message per file; a folder of .eml
// files) and as mbox files (many messages, each after a "From " line). The
// contract of the four functions is that of Interchange.h.
//
// mbox is written as mboxrd: a body line that starts with "From ", after
// any number of ">", gets one more ">" in front, and reading takes one
// away, so that such lines come back exactly. The "From " line names the
// sender only when its address is plain ASCII, else MAILER-DAEMON. A new
// message starts at a "From " line at the start of the file, at one that
// carries a date, or at one after an empty line or of the form "From -"
// when a header line follows. A message with a Content-Length header that
// ends right before the next "From " line (or the end of the file) is cut
// there, its "From " lines left as they are (mboxcl2). Bytes before the
// first message and binary junk between messages are reported and passed
// over.

#include "ItemFields.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>

// A message whose Message-ID (its own, or for one without, the stable one
// of MailHeaders.h) an item of the target folder has already is reported
// and not imported again, so that a second import of the same file adds
// nothing; with true, every message is imported.
void SetMailDuplicatesImported(bool imported);

void ImportEml(const QString &path, const MAPIFolder &target, InterchangeReport &report);
void ExportEml(const MAPIFolder &source, const QString &path, InterchangeReport &report);
void ImportMbox(const QString &path, const MAPIFolder &target, InterchangeReport &report);
void ExportMbox(const MAPIFolder &source, const QString &path, InterchangeReport &report);

// One message of an mbox file, its "From " line taken off and its body
// lines unescaped.
struct MboxEntry {
    qint64 offset = 0;      // byte of its "From " line in the file
    QDateTime envelopeDate; // from the "From " line; invalid when unreadable
    QByteArray message;
};
// Bytes of an mbox file that belong to no message.
struct MboxJunk {
    qint64 offset = 0;
    qint64 size = 0;
    int afterMessage = 0; // 0: before the first one
};
// Splits an mbox file. Junk: the bytes before the first "From " line that
// are not blank, and binary data (holding NUL bytes, which no message may
// hold) from the empty line before it to the next "From " line.
[[nodiscard]] QList<MboxEntry> SplitMbox(const QByteArray &data, QList<MboxJunk> *junk);
// The "From " line and the escaped message, ready to append to a file.
[[nodiscard]] QByteArray MboxRecord(const QByteArray &message, const QString &sender, const QDateTime &date);
