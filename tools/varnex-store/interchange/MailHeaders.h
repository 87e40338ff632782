#pragma once
// The header fields of a mail or post: which store properties have a home
// in a MIME header, how they are written and read, and the X-Varnex-
// headers that carry the rest (other properties, user properties, the
// message class) exactly.
//
// Homes: Subject; From (SenderName, SenderEmailAddress); To, Cc, Bcc (the
// store's text, "Name <Adresse>; ..."); Date (SentOn); the newest Received
// header, else the envelope date of an mbox, else Date (ReceivedTime, read
// only: it is written as X-Varnex-ReceivedTime);
// Status "RO"/"O" (UnRead, as mbox readers keep it); Importance;
// Sensitivity; Keywords (Categories).

#include "store/Store.h"

#include "GMimeInclude.h"

#include <QHash>
#include <QString>
#include <QVariant>

// The user property that keeps the transport headers of an imported
// message, which the store has no fields for: Message-ID, In-Reply-To,
// References, Reply-To, Sender, Return-Path, Delivered-To, the Received
// block and the List- headers, as they stood (one field per line, folded
// lines go on with their blanks, CR LF between), in their order.
inline constexpr char TransportHeadersProperty[] = "VX Kopfzeilen";

// Property name -> value, for the mapped properties that hold a value.
using MailHeaderValues = QHash<QString, QVariant>;

inline constexpr char MessageClassHeader[] = "X-Varnex-MessageClass";
inline constexpr char UserPropertyHeader[] = "X-Varnex-UserProperty";
inline constexpr char ExtensionHeaderPrefix[] = "X-Varnex-";

// The mapped properties, lower case, for LeftoverFields.
[[nodiscard]] const QSet<QString> &MailHeaderProperties();

// The mapped properties of the item that hold a value.
[[nodiscard]] MailHeaderValues MailHeaderValuesOf(const Item &item);
// Writes the values into the message's headers.
void WriteMailHeaders(GMimeMessage *message, const MailHeaderValues &values);
// Reads the mapped properties from the headers. envelopeDate: the date of
// an mbox "From " line (invalid for a single file).
[[nodiscard]] MailHeaderValues ReadMailHeaders(GMimeMessage *message, const QDateTime &envelopeDate);
// The names of the values that do not come back alike after writing and
// reading the headers (an address the header cannot hold, a sender without
// address, milliseconds of a date ...), and always ReceivedTime: these go
// into X-Varnex- headers too.
[[nodiscard]] QStringList ValuesNotKeptByHeaders(const MailHeaderValues &values);

// Adds an X-Varnex- header whose value comes back exactly (base64 encoded
// words when it holds more than plain printable ASCII).
void AddExactHeader(GMimeObject *object, const QString &name, const QString &value);
// The value of such a header, from its raw form.
[[nodiscard]] QString ExactHeaderValue(GMimeHeader *header);

// The transport headers of the message as kept in TransportHeadersProperty;
// "" when it has none.
[[nodiscard]] QString TransportHeadersOf(GMimeMessage *message);
// Appends the kept headers to the message as they stood.
void WriteTransportHeaders(GMimeMessage *message, const QString &kept);
// The Message-ID (without angle brackets) among kept headers; "" for none.
[[nodiscard]] QString MessageIdOfHeaders(const QString &kept);
// The kept headers without the Message-ID field.
[[nodiscard]] QString WithoutMessageId(const QString &kept);
