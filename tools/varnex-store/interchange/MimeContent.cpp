#include "MimeContent.h"

#include "GMimeSupport.h"
#include "MailHeaders.h"

#include <QMimeDatabase>
#include <QRegularExpression>
#include <QStringDecoder>

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

// Bytes that an attached message may stand in as they are (RFC 2046 allows
// no other encoding for message/rfc822): a message with a header line at
// its start, without NUL bytes. The encoding that says what they hold.
bool embeddedMessageEncoding(const QByteArray &bytes, GMimeContentEncoding *encoding)
{
    const qsizetype firstColon = bytes.indexOf(':');
    const qsizetype firstEnd = bytes.indexOf('\n');
    if (bytes.isEmpty() || bytes.contains('\0') || firstColon <= 0 || (firstEnd >= 0 && firstColon > firstEnd) ||
        bytes.at(0) == ' ' || bytes.at(0) == '\t')
        return false;
    bool eightBit = false, longLine = false, bareCr = false;
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes.at(i);
        eightBit = eightBit || (uchar(c) & 0x80);
        if (c == '\r' && (i + 1 == bytes.size() || bytes.at(i + 1) != '\n'))
            bareCr = true;
        if (c == '\n') {
            longLine = longLine || i - lineStart > 998;
            lineStart = i + 1;
        }
    }
    longLine = longLine || bytes.size() - lineStart > 998;
    *encoding = bareCr || longLine ? GMIME_CONTENT_ENCODING_BINARY
                : eightBit        ? GMIME_CONTENT_ENCODING_8BIT
                                  : GMIME_CONTENT_ENCODING_7BIT;
    return true;
}

bool isHtmlName(const QString &name)
{
    return name.endsWith(QLatin1String(".html"), Qt::CaseInsensitive) ||
           name.endsWith(QLatin1String(".htm"), Qt::CaseInsensitive);
}

// The attachment that holds the formatted text of the body: the first one,
// hidden, an HTML file by value without a link.
bool isHtmlBody(const Attachment &attachment)
{
    return attachment.Index() == 1 && attachment.Type() != olByReference &&
           attachment.GetProperty(PR_ATTACHMENT_HIDDEN).toBool() && isHtmlName(attachment.FileName());
}

// The charset of HTML bytes: UTF-8 when they are that, else the one their
// meta tag names, else the Western code page.
QByteArray htmlCharset(const QByteArray &html)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    (void)utf8.decode(html);
    if (!utf8.hasError())
        return "utf-8";
    static const QRegularExpression meta(QStringLiteral("charset\\s*=\\s*[\"']?([A-Za-z0-9_.:-]+)"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = meta.match(QString::fromLatin1(html.left(4096)));
    return m.hasMatch() ? m.captured(1).toLatin1() : QByteArray("windows-1252");
}

// The HTML text as the second alternative of the body. Its name stands in
// the Content-Type only where the reader would not give it anyway
// ("Anlage1.html"), so that it shows as no attachment.
GMimePart *htmlAlternativePart(const Attachment &attachment)
{
    const QByteArray bytes = attachment.Content();
    const bool exact = bytes.contains('\r') || bytes.contains('\0');
    GMimePart *part = bytesPart("text", "html", bytes,
                                exact ? GMIME_CONTENT_ENCODING_BASE64 : GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    GMimeObject *object = GMIME_OBJECT(part);
    g_mime_object_set_content_type_parameter(object, "charset", htmlCharset(bytes).constData());
    if (attachment.FileName() != u"Anlage1.html")
        g_mime_object_set_content_type_parameter(object, "name", attachment.FileName().toUtf8().constData());
    if (attachment.DisplayName() != attachment.FileName() && !attachment.DisplayName().isEmpty())
        g_mime_part_set_content_description(part, attachment.DisplayName().toUtf8().constData());
    return part;
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
        const QByteArray content = attachment.Content();
        GMimeContentEncoding encoding = GMIME_CONTENT_ENCODING_BASE64;
        if (type == "message/rfc822" && !embeddedMessageEncoding(content, &encoding))
            part = bytesPart("application", "octet-stream", content, GMIME_CONTENT_ENCODING_BASE64);
        else
            part = bytesPart(type.left(slash).constData(), type.mid(slash + 1).constData(), content, encoding);
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

// The content as it stands in the file, before decoding.
QByteArray rawContent(GMimeDataWrapper *content)
{
    GMimeStream *stream = g_mime_data_wrapper_get_stream(content);
    GPtr<GMimeStream> out(g_mime_stream_mem_new());
    g_mime_stream_reset(stream);
    g_mime_stream_write_to_stream(stream, out.get());
    g_mime_stream_reset(stream);
    return MemoryStreamBytes(out.get());
}

// The decoded bytes of a part. The line end before a boundary belongs to
// the boundary: the parser leaves the CR of a CR LF file on the content,
// which is taken off here, so that an attachment has exactly its bytes.
QByteArray decodedContent(GMimePart *part)
{
    GMimeDataWrapper *content = g_mime_part_get_content(part);
    if (!content)
        return {};
    QByteArray raw = rawContent(content);
    if (raw.endsWith('\r'))
        raw.chop(1);
    const GPtr<GMimeStream> in = MemoryStreamOf(raw);
    GPtr<GMimeDataWrapper> trimmed(g_mime_data_wrapper_new_with_stream(in.get(), g_mime_data_wrapper_get_encoding(content)));
    GPtr<GMimeStream> out(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(trimmed.get(), out.get());
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
        if (hiddenOf(object, hiddenByPlace))
            added.setHidden(true);
    }

    void addMessage(GMimeMessagePart *part, bool hiddenByPlace)
    {
        ++partNumber;
        GMimeMessage *message = g_mime_message_part_get_message(part);
        if (!message)
            return;
        GMimeObject *object = GMIME_OBJECT(part);
        GString8 text(g_mime_object_to_string(GMIME_OBJECT(message), nullptr));
        QString fileName = FromGText(g_mime_object_get_content_disposition_parameter(object, "filename"));
        if (fileName.isEmpty())
            fileName = FromGText(g_mime_object_get_content_type_parameter(object, "name"));
        if (fileName.isEmpty()) {
            const QString subject = FromGText(g_mime_message_get_subject(message)).simplified();
            fileName = (subject.isEmpty() ? QStringLiteral("Anlage%1").arg(partNumber) : subject) + QStringLiteral(".eml");
        }
        const QString description = FromGText(g_mime_object_get_header(object, "Content-Description")).trimmed();
        Attachment added = item.Attachments().AddData(QByteArray(text.get()), fileName, description);
        if (hiddenOf(object, hiddenByPlace))
            added.setHidden(true);
    }

    bool hiddenOf(GMimeObject *object, bool hiddenByPlace) const
    {
        const char *disposition = g_mime_object_get_disposition(object);
        const bool attached = disposition && g_ascii_strcasecmp(disposition, GMIME_DISPOSITION_ATTACHMENT) == 0;
        const bool inlineWithId = disposition && g_ascii_strcasecmp(disposition, GMIME_DISPOSITION_INLINE) == 0 &&
                                  g_mime_object_get_content_id(object);
        return !attached && (hiddenByPlace || inlineWithId || static_cast<void *>(object) == static_cast<void *>(htmlBody));
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
            addMessage(GMIME_MESSAGE_PART(object), hiddenByPlace);
        } else if (GMIME_IS_PART(object) && GMIME_PART(object) != body) {
            addPart(GMIME_PART(object), hiddenByPlace);
        }
    }
};

} // namespace

GMimeObject *BuildMimeContent(const Item &item)
{
    GMimeObject *body = GMIME_OBJECT(bodyPart(item.Body()));
    const ::Attachments attachments = item.Attachments();
    int first = 1;
    if (attachments.Count() > 0 && isHtmlBody(attachments.Item(1))) {
        GMimeMultipart *alternative = g_mime_multipart_new_with_subtype("alternative");
        g_mime_multipart_add(alternative, body);
        g_object_unref(body);
        GMimePart *html = htmlAlternativePart(attachments.Item(1));
        g_mime_multipart_add(alternative, GMIME_OBJECT(html));
        g_object_unref(html);
        body = GMIME_OBJECT(alternative);
        first = 2;
    }
    if (attachments.Count() < first)
        return body;
    GMimeMultipart *mixed = g_mime_multipart_new_with_subtype("mixed");
    g_mime_multipart_add(mixed, body);
    g_object_unref(body);
    for (int i = first; i <= attachments.Count(); ++i) {
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
    } else if (GMIME_IS_MULTIPART(content) && g_mime_multipart_get_count(GMIME_MULTIPART(content)) == 0) {
        // A multipart whose boundary never comes: its text stands before
        // the first boundary, as the parser saw it, and is the body.
        QString text = DecodeCharset(QByteArray(g_mime_multipart_get_prologue(GMIME_MULTIPART(content))), QString());
        while (text.endsWith(u'\n') || text.endsWith(u'\r'))
            text.chop(1);
        item.setBody(text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\n', QLatin1String("\r\n")));
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
