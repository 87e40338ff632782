#pragma once
// One mail or post as a MIME message (RFC 5322), in both directions. The
// homes of the fields are in MailHeaders.h and MimeContent.h; what has no
// home, or does not come back alike from its home, travels in X-Varnex-
// headers: X-Varnex-MessageClass, X-Varnex-<Property> (the shared extension
// form of ItemFields.h; an empty value says "no value"), X-Varnex-
// UserProperty (one per user property, backups included). The transport
// headers kept in "VX Kopfzeilen" (MailHeaders.h) are written back first, as
// they stood; a mail without a Message-ID gets its stable one, which an
// import of that file does not keep (the copy is the original).

#include "store/Store.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringList>

// Whether the item is a mail or a post (the classes that the mail formats
// hold).
[[nodiscard]] bool IsMailOrPost(const Item &item);

// The message of a mail or post, with LF line ends.
[[nodiscard]] QByteArray WriteMimeMail(const Item &item);

// A Message-ID (without angle brackets) for an item that has none, made
// from what it says (class, subject, sender, recipients, sending time,
// text), so that every export of it, and of its copies, gives the same one.
[[nodiscard]] QString StableMessageId(const Item &item);
// The item's own Message-ID (kept in "VX Kopfzeilen"), else its stable one.
[[nodiscard]] QString MessageIdOf(const Item &item);

// Reads a message into a new, unsaved item of the folder: IPM.Post for
// X-Varnex-MessageClass IPM.Post... or a Newsgroups header, else the
// X-Varnex-MessageClass or IPM.Note. envelopeDate: the date of an mbox
// "From " line (invalid for a single file). Damaged input is read as far as
// it goes, as mail programs do (a missing closing boundary, an invalid
// header line, which ends the header block, CR-only line ends, a leading
// "From " line); each kind of damage adds a German note to *notes. Throws
// EntryDamage (ItemFields.h) only for input that holds no message: no
// header at all.
[[nodiscard]] Item ReadMimeMail(const QByteArray &bytes, const MAPIFolder &folder,
                                const QDateTime &envelopeDate = QDateTime(), QStringList *notes = nullptr);
