#pragma once
// The content of a mail in MIME: the body text and the attachments.
//
// Written: a text/plain part in UTF-8 (quoted-printable when the body's line
// ends are all CR LF, so that it stays readable; base64 otherwise, which
// keeps every byte), alone or first in a multipart/mixed with one part per
// attachment. When the first attachment is a hidden HTML file (the
// formatted text an import kept), it goes with the text as the second part
// of a multipart/alternative. An attachment by value is a base64 part with
// its file name (RFC 2231 for names beyond ASCII), Content-Description when
// the display name differs, and "inline" with a Content-ID when it is
// hidden; an attached message (.eml) stands as it is, message/rfc822 in
// 7bit, 8bit or binary as RFC 2046 asks. A link (by reference) is an empty
// part whose X-Varnex-Link header names its file.
//
// Read: the first text/plain part that is no attachment is the body; without
// one, the first text/html part gives the body as plain text; a multipart
// whose boundary never comes gives its text. Every other leaf becomes an
// attachment with exactly its decoded bytes: alternatives and related parts
// of the body (the HTML of a multipart/alternative, its pictures) and inline
// parts with a Content-ID as hidden ones; an attached message as a .eml
// file. Text is decoded by its charset (see DecodeCharset for wrong labels).

#include "store/Store.h"

#include "GMimeInclude.h"

#include <QString>

// The MIME content of the item (a new reference for the caller).
[[nodiscard]] GMimeObject *BuildMimeContent(const Item &item);
// Sets Body and adds the attachments of the content to the unsaved item.
void ReadMimeContent(GMimeObject *content, Item &item);

// Plain text of an HTML text: tags out, line breaks for block ends,
// entities decoded, runs of blank lines shortened. Lines end in CR LF.
[[nodiscard]] QString PlainTextOfHtml(const QString &html);
