#include "MailHeaders.h"

#include "GMimeSupport.h"
#include "MimeMail.h"

#include <QCryptographicHash>
#include <QSet>

namespace {

const char *const s_mapped[] = {"Subject",     "SenderName",   "SenderEmailAddress", "To",
                                "CC",          "BCC",          "SentOn",             "ReceivedTime",
                                "UnRead",      "Importance",   "Sensitivity",        "Categories"};

struct AddressHeader {
    const char *property;
    GMimeAddressType type;
};
const AddressHeader s_addressHeaders[] = {
    {"To", GMIME_ADDRESS_TYPE_TO}, {"CC", GMIME_ADDRESS_TYPE_CC}, {"BCC", GMIME_ADDRESS_TYPE_BCC}};

// Sensitivity values 1 to 3 (RFC 2156).
const char *const s_sensitivity[] = {"", "Personal", "Private", "Company-Confidential"};

// No value: an empty text, no date, or the property's default (normal
// importance, not unread ...), which a new item has anyway.
bool isEmptyValue(const char *name, const QVariant &value)
{
    const PropDef &def = PropertyAt(PropertySlot(QLatin1String(name)));
    if (def.type == PropType::Date)
        return !value.toDateTime().isValid() || IsNoDate(value.toDateTime());
    return ConvertForProperty(def, value) == EmptyValue(def);
}

QString headerText(GMimeObject *object, const char *name)
{
    return FromGText(g_mime_object_get_header(object, name)).trimmed();
}

// "Name <address>", the name alone or the address alone, per recipient.
QString addressListText(InternetAddressList *list)
{
    QStringList parts;
    for (int i = 0; list && i < internet_address_list_length(list); ++i) {
        InternetAddress *address = internet_address_list_get_address(list, i);
        const QString name = FromGText(internet_address_get_name(address));
        if (!INTERNET_ADDRESS_IS_MAILBOX(address)) {
            GString8 text(internet_address_to_string(address, nullptr, FALSE));
            parts << FromGText(text.get());
            continue;
        }
        const QString mail = FromGText(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address)));
        if (name.isEmpty() || mail.isEmpty())
            parts << (name.isEmpty() ? mail : name);
        else
            parts << name + QStringLiteral(" <") + mail + u'>';
    }
    return parts.join(QStringLiteral("; "));
}

void writeAddresses(GMimeMessage *message, GMimeAddressType type, const QString &text)
{
    QString list = text;
    list.replace(u';', u',');
    InternetAddressList *parsed = internet_address_list_parse(nullptr, list.toUtf8().constData());
    if (!parsed)
        return;
    internet_address_list_append(g_mime_message_get_addresses(message, type), parsed);
    g_object_unref(parsed);
}

// The date after the last ';' of the topmost Received header.
QDateTime receivedHeaderDate(GMimeObject *object)
{
    const char *value = g_mime_object_get_header(object, "Received");
    if (!value)
        return {};
    const QByteArray text(value);
    const int semicolon = text.lastIndexOf(';');
    if (semicolon < 0)
        return {};
    GDateTime *when = g_mime_utils_header_decode_date(text.mid(semicolon + 1).trimmed().constData());
    if (!when)
        return {};
    const QDateTime result = FromGDateTime(when);
    g_date_time_unref(when);
    return result;
}

int importanceOf(GMimeObject *object)
{
    const QString importance = headerText(object, "Importance").toLower();
    if (importance == u"high")
        return 2;
    if (importance == u"low")
        return 0;
    if (!importance.isEmpty())
        return 1;
    const QString priority = headerText(object, "X-Priority");
    if (priority.startsWith(u'1') || priority.startsWith(u'2'))
        return 2;
    if (priority.startsWith(u'4') || priority.startsWith(u'5'))
        return 0;
    return 1;
}

bool unreadOf(GMimeObject *object)
{
    const char *status = g_mime_object_get_header(object, "Status");
    if (status)
        return !QByteArray(status).contains('R');
    bool ok = false;
    const uint mozilla = headerText(object, "X-Mozilla-Status").toUInt(&ok, 16);
    return ok && !(mozilla & 0x0001);
}

void put(MailHeaderValues &values, const char *name, const QVariant &value)
{
    if (!isEmptyValue(name, value))
        values.insert(QLatin1String(name), value);
}

// Text that a header carries as it stands: printable ASCII without blanks
// at either end (which unfolding would lose) and without "=?" (which would
// read as an encoded word). "" qualifies.
bool isPlainHeaderText(const QString &value)
{
    if (value.isEmpty())
        return true;
    if (value.front().isSpace() || value.back().isSpace() || value.contains(QLatin1String("=?")))
        return false;
    for (const QChar c : value)
        if (c.unicode() < 0x20 || c.unicode() > 0x7E)
            return false;
    return true;
}

} // namespace

const QSet<QString> &MailHeaderProperties()
{
    static const QSet<QString> names = [] {
        QSet<QString> set;
        for (const char *name : s_mapped)
            set.insert(QString::fromLatin1(name).toLower());
        return set;
    }();
    return names;
}

MailHeaderValues MailHeaderValuesOf(const Item &item)
{
    MailHeaderValues values;
    for (const char *name : s_mapped) {
        const QString property = QLatin1String(name);
        if (item.hasProperty(property))
            put(values, name, item.get(property));
    }
    return values;
}

void WriteMailHeaders(GMimeMessage *message, const MailHeaderValues &values)
{
    GMimeObject *object = GMIME_OBJECT(message);
    const QString subject = values.value(QStringLiteral("Subject")).toString();
    if (!subject.isEmpty())
        g_mime_message_set_subject(message, subject.toUtf8().constData(), "utf-8");
    const QString sender = values.value(QStringLiteral("SenderName")).toString();
    const QString address = values.value(QStringLiteral("SenderEmailAddress")).toString();
    if (!address.isEmpty())
        internet_address_list_add(g_mime_message_get_from(message),
                                  internet_address_mailbox_new(sender.toUtf8().constData(), address.toUtf8().constData()));
    for (const AddressHeader &header : s_addressHeaders)
        writeAddresses(message, header.type, values.value(QLatin1String(header.property)).toString());
    const QDateTime sent = values.value(QStringLiteral("SentOn")).toDateTime();
    if (sent.isValid()) {
        GDateTime *date = ToGDateTime(sent);
        g_mime_message_set_date(message, date);
        g_date_time_unref(date);
    }
    g_mime_object_set_header(object, "Status", values.value(QStringLiteral("UnRead")).toBool() ? "O" : "RO", nullptr);
    const int importance = values.value(QStringLiteral("Importance"), 1).toInt();
    if (importance != 1)
        g_mime_object_set_header(object, "Importance", importance > 1 ? "high" : "low", nullptr);
    const int sensitivity = values.value(QStringLiteral("Sensitivity"), 0).toInt();
    if (sensitivity >= 1 && sensitivity <= 3)
        g_mime_object_set_header(object, "Sensitivity", s_sensitivity[sensitivity], nullptr);
    const QString categories = values.value(QStringLiteral("Categories")).toString();
    if (!categories.isEmpty())
        g_mime_object_set_header(object, "Keywords", categories.toUtf8().constData(), "utf-8");
}

MailHeaderValues ReadMailHeaders(GMimeMessage *message, const QDateTime &envelopeDate)
{
    GMimeObject *object = GMIME_OBJECT(message);
    MailHeaderValues values;
    put(values, "Subject", FromGText(g_mime_message_get_subject(message)));
    InternetAddressList *from = g_mime_message_get_from(message);
    if (from && internet_address_list_length(from) > 0) {
        InternetAddress *first = internet_address_list_get_address(from, 0);
        put(values, "SenderName", FromGText(internet_address_get_name(first)));
        if (INTERNET_ADDRESS_IS_MAILBOX(first))
            put(values, "SenderEmailAddress", FromGText(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(first))));
    }
    for (const AddressHeader &header : s_addressHeaders)
        put(values, header.property, addressListText(g_mime_message_get_addresses(message, header.type)));
    QDateTime sent;
    if (GDateTime *date = g_mime_message_get_date(message))
        sent = FromGDateTime(date);
    put(values, "SentOn", sent);
    QDateTime received = receivedHeaderDate(object);
    if (!received.isValid())
        received = envelopeDate.isValid() ? envelopeDate : sent;
    put(values, "ReceivedTime", received);
    put(values, "UnRead", unreadOf(object));
    put(values, "Importance", importanceOf(object));
    const QString sensitivity = headerText(object, "Sensitivity");
    for (int level = 1; level <= 3; ++level)
        if (sensitivity.compare(QLatin1String(s_sensitivity[level]), Qt::CaseInsensitive) == 0)
            put(values, "Sensitivity", level);
    put(values, "Categories", headerText(object, "Keywords"));
    return values;
}

QStringList ValuesNotKeptByHeaders(const MailHeaderValues &values)
{
    GPtr<GMimeMessage> message(g_mime_message_new(FALSE));
    WriteMailHeaders(message.get(), values);
    GString8 text(g_mime_object_to_string(GMIME_OBJECT(message.get()), nullptr));
    const GPtr<GMimeStream> stream = MemoryStreamOf(QByteArray(text.get()));
    GPtr<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    GPtr<GMimeMessage> parsed(g_mime_parser_construct_message(parser.get(), nullptr));
    const MailHeaderValues back = parsed ? ReadMailHeaders(parsed.get(), QDateTime()) : MailHeaderValues();
    // The receipt time has no header of its own that this writer could set
    // (Received lines belong to the servers; an mbox envelope date may be
    // missing): it always travels in its X-Varnex- header.
    QStringList differing{QStringLiteral("ReceivedTime")};
    for (const char *name : s_mapped) {
        const QString property = QLatin1String(name);
        if (property != u"ReceivedTime" && values.value(property) != back.value(property))
            differing << property;
    }
    return differing;
}

void AddExactHeader(GMimeObject *object, const QString &name, const QString &value)
{
    QByteArray raw;
    if (isPlainHeaderText(value)) {
        raw = value.toLatin1();
    } else {
        // Encoded words of at most 45 bytes each, cut between characters,
        // so that the decoder joins them back without a gap.
        const QByteArray utf8 = value.toUtf8();
        for (qsizetype at = 0; at < utf8.size();) {
            qsizetype end = qMin(at + 45, utf8.size());
            while (end < utf8.size() && (uchar(utf8.at(end)) & 0xC0) == 0x80)
                --end;
            if (!raw.isEmpty())
                raw += "\n ";
            raw += "=?utf-8?b?" + utf8.mid(at, end - at).toBase64() + "?=";
            at = end;
        }
    }
    GMimeHeaderList *headers = g_mime_object_get_header_list(object);
    g_mime_header_list_append(headers, name.toLatin1().constData(), "", nullptr);
    GMimeHeader *header = g_mime_header_list_get_header_at(headers, g_mime_header_list_get_count(headers) - 1);
    g_mime_header_set_raw_value(header, (" " + raw + "\n").constData());
}

QString ExactHeaderValue(GMimeHeader *header)
{
    const QByteArray raw = QByteArray(g_mime_header_get_raw_value(header)).trimmed();
    if (!raw.startsWith("=?utf-8?b?"))
        return QString::fromLatin1(raw);
    QByteArray utf8;
    for (const QByteArray &word : raw.simplified().split(' ')) {
        if (word.startsWith("=?utf-8?b?") && word.endsWith("?="))
            utf8 += QByteArray::fromBase64(word.mid(10, word.size() - 12));
    }
    return QString::fromUtf8(utf8);
}

namespace {

bool isTransportHeader(const QByteArray &name)
{
    static const char *const kept[] = {"message-id", "in-reply-to", "references", "reply-to",   "sender",
                                       "return-path", "received",   "delivered-to", "resent-message-id"};
    const QByteArray lower = name.toLower();
    for (const char *k : kept)
        if (lower == k)
            return true;
    return lower.startsWith("list-");
}

// The fields of a kept text: name and raw value (from the colon on, line
// ends LF, no final one).
QList<std::pair<QByteArray, QByteArray>> keptFields(const QString &kept)
{
    QList<std::pair<QByteArray, QByteArray>> fields;
    for (const QString &line : kept.split(QStringLiteral("\r\n"))) {
        const QByteArray bytes = line.toUtf8();
        if (!fields.isEmpty() && (bytes.startsWith(' ') || bytes.startsWith('\t'))) {
            fields.last().second += '\n' + bytes;
            continue;
        }
        const qsizetype colon = bytes.indexOf(':');
        if (colon > 0)
            fields.append({bytes.left(colon), bytes.mid(colon + 1)});
    }
    return fields;
}

} // namespace

QString TransportHeadersOf(GMimeMessage *message)
{
    GMimeHeaderList *headers = g_mime_object_get_header_list(GMIME_OBJECT(message));
    QStringList lines;
    for (int i = 0; i < g_mime_header_list_get_count(headers); ++i) {
        GMimeHeader *header = g_mime_header_list_get_header_at(headers, i);
        const QByteArray name(g_mime_header_get_name(header));
        if (!isTransportHeader(name))
            continue;
        QByteArray raw(g_mime_header_get_raw_value(header));
        while (raw.endsWith('\n') || raw.endsWith('\r'))
            raw.chop(1);
        raw.replace("\r\n", "\n");
        // Raw 8-bit text: UTF-8, else the Western code page.
        lines << DecodeCharset(name + ':' + raw, QString()).replace(u'\n', QLatin1String("\r\n"));
    }
    return lines.join(QStringLiteral("\r\n"));
}

void WriteTransportHeaders(GMimeMessage *message, const QString &kept)
{
    GMimeHeaderList *headers = g_mime_object_get_header_list(GMIME_OBJECT(message));
    for (const auto &[name, raw] : keptFields(kept)) {
        g_mime_header_list_append(headers, name.constData(), "", nullptr);
        GMimeHeader *header = g_mime_header_list_get_header_at(headers, g_mime_header_list_get_count(headers) - 1);
        g_mime_header_set_raw_value(header, (raw + '\n').constData());
    }
}

QString MessageIdOfHeaders(const QString &kept)
{
    for (const auto &[name, raw] : keptFields(kept)) {
        if (name.toLower() != "message-id")
            continue;
        // What stands between the brackets, as it is ("a@b@c" too).
        const QByteArray text = raw.simplified();
        const qsizetype open = text.indexOf('<'), close = text.indexOf('>', open + 1);
        return QString::fromUtf8(open >= 0 && close > open ? text.mid(open + 1, close - open - 1).trimmed() : text);
    }
    return {};
}

QString WithoutMessageId(const QString &kept)
{
    QStringList lines;
    for (const auto &[name, raw] : keptFields(kept))
        if (name.toLower() != "message-id")
            lines << QString::fromUtf8(name + ':' + raw).replace(u'\n', QLatin1String("\r\n"));
    return lines.join(QStringLiteral("\r\n"));
}

QString StableMessageId(const Item &item)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const char *name : {"MessageClass", "Subject", "SenderEmailAddress", "To", "CC", "SentOn", "Body"}) {
        const QString property = QLatin1String(name);
        const QVariant value = item.hasProperty(property) ? item.get(property) : QVariant();
        const QString text = value.typeId() == QMetaType::QDateTime ? value.toDateTime().toString(Qt::ISODate)
                                                                     : value.toString();
        hash.addData(text.toUtf8());
        hash.addData(QByteArrayView("\0", 1));
    }
    return QString::fromLatin1(hash.result().toHex().left(32)) + QStringLiteral("@varnex");
}

QString MessageIdOf(const Item &item)
{
    const UserProperty kept = item.UserProperties().Find(QLatin1String(TransportHeadersProperty));
    const QString id = kept.isNull() ? QString() : MessageIdOfHeaders(kept.Value().toString());
    return id.isEmpty() ? StableMessageId(item) : id;
}
