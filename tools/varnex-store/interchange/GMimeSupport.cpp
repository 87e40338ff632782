#include "GMimeSupport.h"

#include <QStringDecoder>

#include <mutex>

void EnsureGMime()
{
    static std::once_flag once;
    std::call_once(once, [] {
        g_mime_init();
        // Raw 8-bit headers: UTF-8 first, then the Western code page that
        // old mailers wrote without saying so.
        static const char *fallback[] = {"UTF-8", "windows-1252", nullptr};
        g_mime_parser_options_set_fallback_charsets(g_mime_parser_options_get_default(), fallback);
    });
}

QByteArray MemoryStreamBytes(GMimeStream *stream)
{
    const GByteArray *bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream));
    return QByteArray(reinterpret_cast<const char *>(bytes->data), qsizetype(bytes->len));
}

GPtr<GMimeStream> MemoryStreamOf(const QByteArray &bytes)
{
    return GPtr<GMimeStream>(
        g_mime_stream_mem_new_with_buffer(bytes.constData(), size_t(bytes.size())));
}

namespace {

bool convertWithIconv(const QByteArray &bytes, const char *charset, QString *text)
{
    gsize written = 0;
    GError *error = nullptr;
    char *utf8 = g_convert(bytes.constData(), gssize(bytes.size()), "UTF-8", charset, nullptr, &written, &error);
    if (!utf8) {
        g_clear_error(&error);
        return false;
    }
    *text = QString::fromUtf8(utf8, qsizetype(written));
    g_free(utf8);
    return true;
}

bool isValidUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    return !decoder.hasError();
}

} // namespace

QString DecodeCharset(const QByteArray &bytes, const QString &charset)
{
    EnsureGMime(); // its table of charset names
    QString text;
    const QByteArray label = charset.trimmed().toLatin1();
    // Valid UTF-8 with letters beyond ASCII is practically never real
    // Western single-byte text: the label is wrong (a common mailer fault).
    const bool western = label.isEmpty() || label.toLower().startsWith("iso-8859-1") ||
                         label.toLower() == "windows-1252" || label.toLower() == "us-ascii";
    if (western && isValidUtf8(bytes))
        return QString::fromUtf8(bytes);
    if (!label.isEmpty()) {
        const char *name = g_mime_charset_iconv_name(label.constData());
        if (convertWithIconv(bytes, name, &text))
            return text;
    }
    if (isValidUtf8(bytes))
        return QString::fromUtf8(bytes);
    if (convertWithIconv(bytes, "WINDOWS-1252", &text))
        return text;
    return QString::fromLatin1(bytes); // the five holes of Windows-1252
}

GDateTime *ToGDateTime(const QDateTime &when)
{
    return g_date_time_new_from_unix_local(when.toSecsSinceEpoch());
}

QDateTime FromGDateTime(GDateTime *when)
{
    const QDateTime local = QDateTime::fromSecsSinceEpoch(g_date_time_to_unix(when));
    return QDateTime(local.date(), local.time());
}
