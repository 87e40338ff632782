#include "MimeContent.h"

#include "GMimeSupport.h"
#include "MailHeaders.h"

#include <QMimeDatabase>
#include <QRegularExpression>

namespace {

inline constexpr char LinkHeader[] = "X-Varnex-Link";

bool onlyCrLfLineEnds(const QString &text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'\r' && (i + 1 == text.size() || text.at(i + 1) != u'\n'))
            return false;
        if (text.at(i) == u'\n' && (i == 0 || text.at(i - 1) != u'\r'))
            return false;
    }
    return true;
}

GMimePart *bytesPart(const char *type, const char *subtype, const QByteArray &bytes, GMimeContentEncoding encoding)
{
    GMimePart *part = g_mime_part_new_with_type(type, subtype);
    const GPtr<GMimeStream> stream = MemoryStreamOf(bytes);
    GPtr<GMimeDataWrapper> content(g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part, content.get());
    g_mime_part_set_content_encoding(part, encoding);
    return part;
}

GMimePart *bodyPart(const QString &body)
{
    const bool readable = onlyCrLfLineEnds(body);
    // Quoted-printable lines end in LF in the file; the reader turns them
    // back into CR LF. The added line end keeps the last line whole.
    const QByteArray bytes = readable ? (QString(body).replace(QLatin1String("\r\n"), QLatin1String("\n")) + u'\n').toUtf8()
                                      : body.toUtf8();
    GMimePart *part = bytesPart("text", "plain", bytes,
                                readable ? GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE : GMIME_CONTENT_ENCODING_BASE64);
    g_mime_object_set_content_type_parameter(GMIME_OBJECT(part), "charset", "utf-8");
    return part;
}

QString attachmentName(const Attachment &attachment)
{
    if (!attachment.FileName().isEmpty())
        return attachment.FileName();
    if (!attachment.DisplayName().isEmpty())
        return attachment.DisplayName();
    return QStringLiteral("Anlage%1").arg(attachment.Index());
}

GMimePart *attachmentPart(const Attachment &attachment)
{
    const QString fileName = attachmentName(attachment);
    GMimePart *part = nullptr;
    if (attachment.Type() == olByReference) {
        part = bytesPart("application", "octet-stream", QByteArray(), GMIME_CONTENT_ENCODING_7BIT);
        AddExactHeader(GMIME_OBJECT(part), QLatin1String(LinkHeader),
                       attachment.GetProperty(PR_ATTACH_PATHNAME).toString());
    } else {
        static const QMimeDatabase mimeTypes;
        const QByteArray type = mimeTypes.mimeTypeForFile(fileName, QMimeDatabase::MatchExtension).name().toLatin1();
        const int slash = type.indexOf('/');
        part = bytesPart(type.left(slash).constData(), type.mid(slash + 1).constData(), attachment.Content(),
                         GMIME_CONTENT_ENCODING_BASE64);
    }
    g_mime_part_set_filename(part, fileName.toUtf8().constData());
    if (attachment.DisplayName() != fileName && !attachment.DisplayName().isEmpty())
        g_mime_part_set_content_description(part, attachment.DisplayName().toUtf8().constData());
    if (attachment.GetProperty(PR_ATTACHMENT_HIDDEN).toBool()) {
        g_mime_object_set_disposition(GMIME_OBJECT(part), GMIME_DISPOSITION_INLINE);
        g_mime_part_set_content_id(part, QStringLiteral("anlage%1@varnex").arg(attachment.Index()).toLatin1().constData());
    }
    return part;
}

// --- reading ---

bool isAttachmentPart(GMimeObject *object)
{
    const char *disposition = g_mime_object_get_disposition(object);
    if (disposition && g_ascii_strcasecmp(disposition, GMIME_DISPOSITION_ATTACHMENT) == 0)
        return true;
    return GMIME_IS_PART(object) && g_mime_part_get_filename(GMIME_PART(object));
}

bool isText(GMimeObject *object, const char *subtype)
{
    return g_mime_content_type_is_type(g_mime_object_get_content_type(object), "text", subtype);
}

// The part that gives the body: the first text/plain that is no
// attachment, else the first such text/html.
GMimePart *findBodyPart(GMimeObject *object, const char *subtype)
{
    if (GMIME_IS_MULTIPART(object)) {
        GMimeMultipart *multipart = GMIME_MULTIPART(object);
        for (int i = 0; i < g_mime_multipart_get_count(multipart); ++i)
            if (GMimePart *found = findBodyPart(g_mime_multipart_get_part(multipart, i), subtype))
                return found;
        return nullptr;
    }
    if (GMIME_IS_PART(object) && !isAttachmentPart(object) && isText(object, subtype))
        return GMIME_PART(object);
    return nullptr;
}

QByteArray decodedContent(GMimePart *part)
{
    GMimeDataWrapper *content = g_mime_part_get_content(part);
    if (!content)
        return {};
    GPtr<GMimeStream> out(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, out.get());
    return MemoryStreamBytes(out.get());
}

QString textOf(GMimePart *part)
{
    QString text = DecodeCharset(decodedContent(part),
                                 FromGText(g_mime_object_get_content_type_parameter(GMIME_OBJECT(part), "charset")));
    if (g_mime_part_get_content_encoding(part) == GMIME_CONTENT_ENCODING_BASE64)
        return text; // canonical already, kept byte for byte
    if (text.endsWith(u'\n'))
        text.chop(text.endsWith(QLatin1String("\r\n")) ? 2 : 1);
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\n', QLatin1String("\r\n"));
}

struct ContentReader {
    Item &item;
    GMimePart *body = nullptr;
    GMimePart *htmlBody = nullptr; // gave the body text; kept as a hidden attachment
    int partNumber = 0;

    void addPart(GMimePart *part, bool hiddenByPlace)
    {
        ++partNumber;
        GMimeObject *object = GMIME_OBJECT(part);
        QString fileName = FromGText(g_mime_part_get_filename(part));
        if (fileName.isEmpty()) {
            static const QMimeDatabase mimeTypes;
            GString8 type(g_mime_content_type_get_mime_type(g_mime_object_get_content_type(object)));
            const QString suffix = mimeTypes.mimeTypeForName(QString::fromLatin1(type.get())).preferredSuffix();
            fileName = QStringLiteral("Anlage%1").arg(partNumber) + (suffix.isEmpty() ? QString() : u'.' + suffix);
        }
        const QString description = FromGText(g_mime_part_get_content_description(part));
        ::Attachments attachments = item.Attachments();
        Attachment added;
        if (GMimeHeader *link = g_mime_header_list_get_header(g_mime_object_get_header_list(object), LinkHeader))
            added = attachments.Add(ExactHeaderValue(link), olByReference, 0, description.isEmpty() ? fileName : description);
        else
            added = attachments.AddData(decodedContent(part), fileName, description);
        const char *disposition = g_mime_object_get_disposition(object);
        const bool attached = disposition && g_ascii_strcasecmp(disposition, GMIME_DISPOSITION_ATTACHMENT) == 0;
        const bool inlineWithId = disposition && g_ascii_strcasecmp(disposition, GMIME_DISPOSITION_INLINE) == 0 &&
                                  g_mime_part_get_content_id(part);
        if (!attached && (hiddenByPlace || inlineWithId || part == htmlBody))
            added.setHidden(true);
    }

    void addMessage(GMimeMessagePart *part)
    {
        ++partNumber;
        GMimeMessage *message = g_mime_message_part_get_message(part);
        if (!message)
            return;
        GString8 text(g_mime_object_to_string(GMIME_OBJECT(message), nullptr));
        QString fileName = FromGText(g_mime_object_get_content_disposition_parameter(GMIME_OBJECT(part), "filename"));
        if (fileName.isEmpty()) {
            const QString subject = FromGText(g_mime_message_get_subject(message)).simplified();
            fileName = (subject.isEmpty() ? QStringLiteral("Anlage%1").arg(partNumber) : subject) + QStringLiteral(".eml");
        }
        item.Attachments().AddData(QByteArray(text.get()), fileName);
    }

    void walk(GMimeObject *object, bool hiddenByPlace)
    {
        if (GMIME_IS_MULTIPART(object)) {
            GMimeMultipart *multipart = GMIME_MULTIPART(object);
            const char *subtype = g_mime_content_type_get_media_subtype(g_mime_object_get_content_type(object));
            const bool alternative = subtype && g_ascii_strcasecmp(subtype, "alternative") == 0;
            const bool related = subtype && g_ascii_strcasecmp(subtype, "related") == 0;
            for (int i = 0; i < g_mime_multipart_get_count(multipart); ++i)
                walk(g_mime_multipart_get_part(multipart, i), hiddenByPlace || alternative || (related && i > 0));
        } else if (GMIME_IS_MESSAGE_PART(object)) {
            addMessage(GMIME_MESSAGE_PART(object));
        } else if (GMIME_IS_PART(object) && GMIME_PART(object) != body) {
            addPart(GMIME_PART(object), hiddenByPlace);
        }
    }
};

} // namespace

GMimeObject *BuildMimeContent(const Item &item)
{
    GMimePart *body = bodyPart(item.Body());
    const ::Attachments attachments = item.Attachments();
    if (attachments.Count() == 0)
        return GMIME_OBJECT(body);
    GMimeMultipart *mixed = g_mime_multipart_new_with_subtype("mixed");
    g_mime_multipart_add(mixed, GMIME_OBJECT(body));
    g_object_unref(body);
    for (int i = 1; i <= attachments.Count(); ++i) {
        GMimePart *part = attachmentPart(attachments.Item(i));
        g_mime_multipart_add(mixed, GMIME_OBJECT(part));
        g_object_unref(part);
    }
    return GMIME_OBJECT(mixed);
}

void ReadMimeContent(GMimeObject *content, Item &item)
{
    if (!content)
        return;
    ContentReader reader{item};
    reader.body = findBodyPart(content, "plain");
    bool fromHtml = false;
    if (!reader.body) {
        reader.body = findBodyPart(content, "html");
        fromHtml = reader.body != nullptr;
    }
    if (reader.body) {
        const QString text = textOf(reader.body);
        item.setBody(fromHtml ? PlainTextOfHtml(text) : text);
        if (fromHtml) // the body keeps only the text: the HTML stays as a hidden attachment
            std::swap(reader.body, reader.htmlBody);
    }
    reader.walk(content, false);
}

QString PlainTextOfHtml(const QString &html)
{
    static const QRegularExpression invisible(QStringLiteral("<(script|style|head)\\b.*?</\\1\\s*>"),
                                              QRegularExpression::CaseInsensitiveOption |
                                                  QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression breaks(QStringLiteral("<(br|/p|/div|/tr|/li|/h[1-6]|/table)\\b[^>]*>"),
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tags(QStringLiteral("<[^>]*>"));
    static const QRegularExpression numeric(QStringLiteral("&#(x?)([0-9a-fA-F]+);"));
    static const QRegularExpression blankRuns(QStringLiteral("\n{3,}"));
    static const QRegularExpression whitespace(QStringLiteral("\\s+"));
    QString text = html;
    text.remove(invisible);
    text.replace(whitespace, QStringLiteral(" "));
    text.replace(breaks, QStringLiteral("\n"));
    text.remove(tags);
    QString decoded;
    qsizetype last = 0;
    for (auto it = numeric.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        decoded += text.mid(last, m.capturedStart() - last);
        const uint code = m.captured(2).toUInt(nullptr, m.captured(1).isEmpty() ? 10 : 16);
        decoded += QString::fromUcs4(reinterpret_cast<const char32_t *>(&code), 1);
        last = m.capturedEnd();
    }
    decoded += text.mid(last);
    decoded.replace(QLatin1String("&nbsp;"), QLatin1String(" ")).replace(QLatin1String("&lt;"), QLatin1String("<"));
    decoded.replace(QLatin1String("&gt;"), QLatin1String(">")).replace(QLatin1String("&quot;"), QLatin1String("\""));
    decoded.replace(QLatin1String("&auml;"), QStringLiteral("ä")).replace(QLatin1String("&ouml;"), QStringLiteral("ö"));
    decoded.replace(QLatin1String("&uuml;"), QStringLiteral("ü")).replace(QLatin1String("&szlig;"), QStringLiteral("ß"));
    decoded.replace(QLatin1String("&Auml;"), QStringLiteral("Ä")).replace(QLatin1String("&Ouml;"), QStringLiteral("Ö"));
    decoded.replace(QLatin1String("&Uuml;"), QStringLiteral("Ü")).replace(QLatin1String("&amp;"), QLatin1String("&"));
    QStringList lines = decoded.split(u'\n');
    for (QString &line : lines)
        line = line.trimmed();
    return lines.join(u'\n').replace(blankRuns, QStringLiteral("\n\n")).trimmed().replace(u'\n', QLatin1String("\r\n"));
}
