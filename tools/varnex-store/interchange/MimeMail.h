#pragma once
// One mail or post as a MIME message (RFC 5322), in both directions. The
// homes of the fields are in MailHeaders.h and MimeContent.h; what has no
// home, or does not come back alike from its home, travels in X-Varnex-
// headers: X-Varnex-MessageClass, X-Varnex-<Property> (the shared extension
// form of ItemFields.h; an empty value says "no value"), X-Varnex-
// UserProperty (one per user property, backups included).

#include "store/Store.h"

#include <QByteArray>
#include <QDateTime>

// Whether the item is a mail or a post (the classes that the mail formats
// hold).
[[nodiscard]] bool IsMailOrPost(const Item &item);

// The message of a mail or post, with LF line ends.
[[nodiscard]] QByteArray WriteMimeMail(const Item &item);

// Reads a message into a new, unsaved item of the folder: IPM.Post for
// X-Varnex-MessageClass IPM.Post... or a Newsgroups header, else the
// X-Varnex-MessageClass or IPM.Note. envelopeDate: the date of an mbox
// "From " line (invalid for a single file). Throws EntryDamage (ItemFields.h)
// for input that is no message or damaged so that parts would be lost:
// truncated, a multipart without boundary, a header line that is none,
// nesting beyond reason, a class that is neither mail nor post.
[[nodiscard]] Item ReadMimeMail(const QByteArray &bytes, const MAPIFolder &folder,
                                const QDateTime &envelopeDate = QDateTime());
