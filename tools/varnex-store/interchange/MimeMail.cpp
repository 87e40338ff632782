#include "MimeMail.h"

#include "GMimeSupport.h"
#include "ItemFields.h"
#include "MailHeaders.h"
#include "MimeContent.h"

namespace {

// The first problem of a parse that would lose or misplace parts of the
// message; warnings that the reader copes with (a bad encoded word, a
// duplicated header, 8-bit header text) pass.
struct ParseDamage {
    QString reason;

    static void record(gint64 offset, GMimeParserWarning issue, const gchar *item, gpointer self)
    {
        auto *damage = static_cast<ParseDamage *>(self);
        if (!damage->reason.isEmpty())
            return;
        const QString where = offset >= 0 ? QStringLiteral(" (Byte %1 der Mail)").arg(offset) : QString();
        switch (issue) {
        case GMIME_WARN_TRUNCATED_MESSAGE:
            damage->reason = QStringLiteral("Die Mail ist abgeschnitten: das Ende eines mehrteiligen Inhalts fehlt.");
            break;
        case GMIME_WARN_MALFORMED_MULTIPART:
            damage->reason = QStringLiteral("Ein mehrteiliger Inhalt hat keine Teile (falsche Grenze?)") + where + u'.';
            break;
        case GMIME_CRIT_INVALID_HEADER_NAME:
            damage->reason = QStringLiteral("Eine Kopfzeile ist ungültig") + where + QStringLiteral(": \"%1\".")
                                 .arg(QString::fromUtf8(item ? item : "").left(60).toHtmlEscaped().simplified());
            break;
        case GMIME_CRIT_MULTIPART_WITHOUT_BOUNDARY:
            damage->reason = QStringLiteral("Ein mehrteiliger Inhalt hat keine Grenze (boundary)") + where + u'.';
            break;
        case GMIME_CRIT_NESTING_OVERFLOW:
            damage->reason = QStringLiteral("Die Teile der Mail sind zu tief verschachtelt") + where + u'.';
            break;
        case GMIME_CRIT_PART_WITHOUT_HEADERS_OR_CONTENT:
            damage->reason = QStringLiteral("Ein Teil der Mail hat weder Kopf noch Inhalt") + where + u'.';
            break;
        default:
            break;
        }
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
void applyExtensionHeaders(GMimeMessage *message, MailHeaderValues &values, QList<std::pair<QString, QString>> &rest)
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
        if (text.isEmpty())
            values.remove(QString::fromLatin1(def.name));
        else
            values.insert(QString::fromLatin1(def.name), DecodeExtensionValue(def, text));
    }
}

} // namespace

bool IsMailOrPost(const Item &item)
{
    return item.Class() == olMail || item.Class() == olPost;
}

QByteArray WriteMimeMail(const Item &item)
{
    EnsureGMime();
    GPtr<GMimeMessage> message(g_mime_message_new(TRUE));
    GMimeObject *object = GMIME_OBJECT(message.get());
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
    for (const UserProperty &property : UserPropertiesOf(item))
        AddExactHeader(object, QLatin1String(UserPropertyHeader), EncodeUserProperty(property));
    GMimeObject *content = BuildMimeContent(item);
    g_mime_message_set_mime_part(message.get(), content);
    g_object_unref(content);
    GPtr<GMimeStream> out(g_mime_stream_mem_new());
    g_mime_object_write_to_stream(object, nullptr, out.get());
    return MemoryStreamBytes(out.get());
}

Item ReadMimeMail(const QByteArray &bytes, const MAPIFolder &folder, const QDateTime &envelopeDate)
{
    ParseDamage damage;
    const GPtr<GMimeMessage> message = parse(bytes, damage);
    if (!damage.reason.isEmpty())
        throw EntryDamage{damage.reason};
    if (!message || g_mime_header_list_get_count(g_mime_object_get_header_list(GMIME_OBJECT(message.get()))) == 0)
        throw EntryDamage{QStringLiteral("Keine Mail: es gibt keine Kopfzeilen.")};
    const QString messageClass = messageClassOf(message.get());
    const int itemClass = ClassOfMessageClass(messageClass);
    if (itemClass != olMail && itemClass != olPost)
        throw EntryDamage{QStringLiteral("Die Nachrichtenklasse \"%1\" ist weder Mail noch Bereitstellung.").arg(messageClass)};

    MailHeaderValues values = ReadMailHeaders(message.get(), envelopeDate);
    QList<std::pair<QString, QString>> rest;
    try {
        applyExtensionHeaders(message.get(), values, rest);
    } catch (const StoreError &e) {
        throw EntryDamage{e.description()};
    }
    Item item = folder.Items().Add(messageClass);
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        if (item.hasProperty(it.key()))
            item.set(it.key(), it.value());
    for (const auto &[property, text] : rest) {
        if (property.compare(QLatin1String("UserProperty"), Qt::CaseInsensitive) == 0) {
            if (!ApplyUserProperty(item, text))
                throw EntryDamage{QStringLiteral("Eine Benutzereigenschaft ist unlesbar: \"%1\".").arg(text.left(60))};
        } else if (property.compare(QLatin1String("MessageClass"), Qt::CaseInsensitive) != 0) {
            ApplyExtensionField(item, property, text); // a field of another class passes over
        }
    }
    ReadMimeContent(g_mime_message_get_mime_part(message.get()), item);
    return item;
}
