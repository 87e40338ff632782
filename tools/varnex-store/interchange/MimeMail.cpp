#include "MimeMail.h"

#include "GMimeSupport.h"
#include "ItemFields.h"
#include "MailHeaders.h"
#include "MimeContent.h"

namespace {

// What a parse found damaged. The reader takes what it can (as mail
// programs do) and the import reports each kind of damage once; warnings
// that lose nothing (a bad encoded word, a duplicated header, 8-bit header
// text) pass silently.
struct ParseDamage {
    QStringList notes;

    static void record(gint64 offset, GMimeParserWarning issue, const gchar *item, gpointer self)
    {
        auto *damage = static_cast<ParseDamage *>(self);
        const QString where = offset >= 0 ? QStringLiteral(" (Byte %1 der Mail)").arg(offset) : QString();
        QString note;
        switch (issue) {
        case GMIME_WARN_TRUNCATED_MESSAGE:
            note = QStringLiteral("Die Mail ist abgeschnitten: das Ende eines mehrteiligen Inhalts fehlt.");
            break;
        case GMIME_WARN_MALFORMED_MULTIPART:
            note = QStringLiteral("Ein mehrteiliger Inhalt hat keine Teile (falsche Grenze?)") + where + u'.';
            break;
        case GMIME_CRIT_INVALID_HEADER_NAME:
            // The "From " line an mbox gave an attached message loses nothing.
            if (item && g_str_has_prefix(item, "From "))
                return;
            note = QStringLiteral("Eine Kopfzeile ist ungültig") + where + QStringLiteral(": \"%1\"; sie fehlt.")
                       .arg(QString::fromUtf8(item ? item : "").left(60).toHtmlEscaped().simplified());
            break;
        case GMIME_CRIT_MULTIPART_WITHOUT_BOUNDARY:
            note = QStringLiteral("Ein mehrteiliger Inhalt hat keine Grenze (boundary)") + where + u'.';
            break;
        case GMIME_CRIT_NESTING_OVERFLOW:
            note = QStringLiteral("Die Teile der Mail sind zu tief verschachtelt") + where + u'.';
            break;
        case GMIME_CRIT_PART_WITHOUT_HEADERS_OR_CONTENT:
            note = QStringLiteral("Ein Teil der Mail hat weder Kopf noch Inhalt") + where + u'.';
            break;
        default:
            return;
        }
        // One note per kind: a damaged header block can warn on every line.
        const QString kind = note.left(note.indexOf(u'(') > 0 ? note.indexOf(u'(') : note.size());
        for (const QString &earlier : damage->notes)
            if (earlier.startsWith(kind))
                return;
        damage->notes << note;
    }
};

struct ParserOptionsFree {
    void operator()(GMimeParserOptions *options) const { g_mime_parser_options_free(options); }
};

GPtr<GMimeMessage> parse(const QByteArray &bytes, ParseDamage &damage)
{
    EnsureGMime();
    std::unique_ptr<GMimeParserOptions, ParserOptionsFree> options(g_mime_parser_options_new());
    static const char *fallback[] = {"UTF-8", "windows-1252", nullptr};
    g_mime_parser_options_set_fallback_charsets(options.get(), fallback);
    g_mime_parser_options_set_warning_callback(options.get(), &ParseDamage::record, &damage);
    const GPtr<GMimeStream> stream = MemoryStreamOf(bytes);
    GPtr<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    return GPtr<GMimeMessage>(g_mime_parser_construct_message(parser.get(), options.get()));
}

QString messageClassOf(GMimeMessage *message)
{
    GMimeHeaderList *headers = g_mime_object_get_header_list(GMIME_OBJECT(message));
    if (GMimeHeader *header = g_mime_header_list_get_header(headers, MessageClassHeader))
        return ExactHeaderValue(header).trimmed();
    if (g_mime_header_list_contains(headers, "Newsgroups"))
        return QLatin1String(MessageClass::Post);
    return QLatin1String(MessageClass::Note);
}

// X-Varnex-<Property> headers: a mapped property's value replaces what its
// home gave (or removes it when empty); any other goes onto the item.
void applyExtensionHeaders(GMimeMessage *message, MailHeaderValues &values, QList<std::pair<QString, QString>> &rest,
                           QStringList &notes)
{
    GMimeHeaderList *headers = g_mime_object_get_header_list(GMIME_OBJECT(message));
    const QString prefix = QLatin1String(ExtensionHeaderPrefix);
    for (int i = 0; i < g_mime_header_list_get_count(headers); ++i) {
        GMimeHeader *header = g_mime_header_list_get_header_at(headers, i);
        const QString name = FromGText(g_mime_header_get_name(header));
        if (!name.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        const QString property = name.mid(prefix.size());
        const QString text = ExactHeaderValue(header);
        if (!MailHeaderProperties().contains(property.toLower())) {
            rest.append({property, text}); // user properties, the class, fields without a home
            continue;
        }
        const PropDef &def = PropertyAt(PropertySlot(property));
        if (text.isEmpty()) {
            values.remove(QString::fromLatin1(def.name));
            continue;
        }
        try {
            values.insert(QString::fromLatin1(def.name), DecodeExtensionValue(def, text));
        } catch (const StoreError &e) {
            notes << QStringLiteral("%1 übergangen: %2").arg(name, e.description());
        }
    }
}

// Line ends of classic Mac files (CR alone) become LF, which the parser
// knows; CR LF stays. Decided by the first line end.
bool convertCrLineEnds(QByteArray &bytes)
{
    const qsizetype cr = bytes.indexOf('\r');
    if (cr < 0 || (cr + 1 < bytes.size() && bytes.at(cr + 1) == '\n'))
        return false;
    const qsizetype lf = bytes.indexOf('\n');
    if (lf >= 0 && lf < cr)
        return false;
    QByteArray out;
    out.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes.at(i);
        out += c == '\r' && (i + 1 == bytes.size() || bytes.at(i + 1) != '\n') ? '\n' : c;
    }
    bytes = out;
    return true;
}

// The "From " line that an mbox gives each message, left in a file saved
// from one: no header, so it goes.
void dropEnvelopeLine(QByteArray &bytes)
{
    if (!bytes.startsWith("From "))
        return;
    const qsizetype end = bytes.indexOf('\n');
    bytes = end < 0 ? QByteArray() : bytes.mid(end + 1);
}

} // namespace

bool IsMailOrPost(const Item &item)
{
    return item.Class() == olMail || item.Class() == olPost;
}

QByteArray WriteMimeMail(const Item &item)
{
    EnsureGMime();
    // The trace and thread headers it came with first, as they stood; a
    // mail without a Message-ID gets its stable one.
    GPtr<GMimeMessage> message(g_mime_message_new(FALSE));
    GMimeObject *object = GMIME_OBJECT(message.get());
    const QString kept = UserText(item, QLatin1String(TransportHeadersProperty));
    WriteTransportHeaders(message.get(), kept);
    if (MessageIdOfHeaders(kept).isEmpty())
        g_mime_message_set_message_id(message.get(), StableMessageId(item).toUtf8().constData());
    const MailHeaderValues values = MailHeaderValuesOf(item);
    WriteMailHeaders(message.get(), values);
    AddExactHeader(object, QLatin1String(MessageClassHeader), item.MessageClass());
    const QString prefix = QLatin1String(ExtensionHeaderPrefix);
    for (const QString &name : ValuesNotKeptByHeaders(values)) {
        const PropDef &def = PropertyAt(PropertySlot(name));
        AddExactHeader(object, prefix + name, values.contains(name) ? EncodeExtensionValue(def, values.value(name)) : QString());
    }
    QSet<QString> mapped = MailHeaderProperties();
    mapped.insert(QStringLiteral("body"));
    for (const ExtensionField &field : LeftoverFields(item, mapped))
        AddExactHeader(object, prefix + field.name, field.text);
    for (const UserProperty &property : UserPropertiesOf(item, {QString::fromLatin1(TransportHeadersProperty).toLower()}))
        AddExactHeader(object, QLatin1String(UserPropertyHeader), EncodeUserProperty(property));
    GMimeObject *content = BuildMimeContent(item);
    g_mime_message_set_mime_part(message.get(), content);
    g_object_unref(content);
    GPtr<GMimeStream> out(g_mime_stream_mem_new());
    g_mime_object_write_to_stream(object, nullptr, out.get());
    return MemoryStreamBytes(out.get());
}

Item ReadMimeMail(const QByteArray &original, const MAPIFolder &folder, const QDateTime &envelopeDate,
                  QStringList *notes)
{
    QStringList found;
    QByteArray bytes = original;
    dropEnvelopeLine(bytes);
    if (convertCrLineEnds(bytes))
        found << QStringLiteral("Die Zeilen enden nur mit CR (altes Mac-Format); gelesen wie LF.");
    ParseDamage damage;
    const GPtr<GMimeMessage> message = parse(bytes, damage);
    if (!message || g_mime_header_list_get_count(g_mime_object_get_header_list(GMIME_OBJECT(message.get()))) == 0)
        throw EntryDamage{QStringLiteral("Keine Mail: es gibt keine Kopfzeilen.")};
    found << damage.notes;
    QString messageClass = messageClassOf(message.get());
    const int itemClass = ClassOfMessageClass(messageClass);
    if (itemClass != olMail && itemClass != olPost) {
        found << QStringLiteral("Die Nachrichtenklasse \"%1\" ist weder Mail noch Bereitstellung; gelesen als Mail.").arg(messageClass);
        messageClass = QLatin1String(MessageClass::Note);
    }

    MailHeaderValues values = ReadMailHeaders(message.get(), envelopeDate);
    QList<std::pair<QString, QString>> rest;
    applyExtensionHeaders(message.get(), values, rest, found);
    Item item = folder.Items().Add(messageClass);
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        if (item.hasProperty(it.key()))
            item.set(it.key(), it.value());
    for (const auto &[property, text] : rest) {
        if (property.compare(QLatin1String("UserProperty"), Qt::CaseInsensitive) == 0) {
            if (!ApplyUserProperty(item, text))
                found << QStringLiteral("Eine Benutzereigenschaft ist unlesbar und fehlt: \"%1\".").arg(text.left(60));
        } else if (property.compare(QLatin1String("MessageClass"), Qt::CaseInsensitive) != 0) {
            try {
                ApplyExtensionField(item, property, text); // a field of another class passes over
            } catch (const StoreError &e) {
                found << QStringLiteral("X-Varnex-%1 übergangen: %2").arg(property, e.description());
            }
        }
    }
    ReadMimeContent(g_mime_message_get_mime_part(message.get()), item);
    // A Message-ID that an export made up comes back from the same item:
    // it is not kept, so that the copy is the original.
    QString kept = TransportHeadersOf(message.get());
    const QString id = MessageIdOfHeaders(kept);
    if (!id.isEmpty() && id == StableMessageId(item))
        kept = WithoutMessageId(kept);
    if (!kept.isEmpty())
        SetUserText(item, QLatin1String(TransportHeadersProperty), kept);
    if (notes)
        *notes << found;
    return item;
}
