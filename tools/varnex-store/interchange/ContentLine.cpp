#include "ContentLine.h"

#include <QStringDecoder>

#include <iconv.h>

namespace {

QByteArray decodeQuotedPrintable(const QByteArray &in)
{
    QByteArray out;
    out.reserve(in.size());
    for (int i = 0; i < in.size(); ++i) {
        if (in[i] == '=' && i + 2 < in.size()) {
            bool ok = false;
            const int byte = in.mid(i + 1, 2).toInt(&ok, 16);
            if (ok) {
                out += char(byte);
                i += 2;
                continue;
            }
        }
        if (in[i] == '=' && i == in.size() - 1)
            continue; // soft break at the very end
        out += in[i];
    }
    return out;
}

// Position of the colon that ends name and parameters (not one inside quotes).
int valueColon(const QByteArray &line)
{
    bool quoted = false;
    for (int i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted)
            return i;
    }
    return -1;
}

QString caretDecode(const QString &v)
{
    if (!v.contains(u'^'))
        return v;
    QString out;
    for (int i = 0; i < v.size(); ++i) {
        if (v[i] == u'^' && i + 1 < v.size()) {
            const QChar c = v[i + 1];
            if (c == u'n' || c == u'N') { out += u'\n'; ++i; continue; }
            if (c == u'\'') { out += u'"'; ++i; continue; }
            if (c == u'^') { out += u'^'; ++i; continue; }
        }
        out += v[i];
    }
    return out;
}

void parseParams(const QString &head, ContentLine &line)
{
    QStringList parts;
    QString current;
    bool quoted = false;
    for (QChar c : head) {
        if (c == u'"') quoted = !quoted;
        if (c == u';' && !quoted) { parts << current; current.clear(); continue; }
        current += c;
    }
    parts << current;
    QString name = parts.takeFirst().trimmed();
    const int dot = name.indexOf(u'.');
    if (dot > 0) {
        line.group = name.left(dot);
        name = name.mid(dot + 1);
    }
    line.name = name.toUpper();
    for (const QString &p : parts) {
        const int eq = p.indexOf(u'=');
        // vCard 2.1 writes bare types: TEL;WORK;VOICE
        // and bare encodings: TEL;CELL;QUOTED-PRINTABLE
        static const QStringList encodings = {QStringLiteral("QUOTED-PRINTABLE"), QStringLiteral("BASE64"),
                                              QStringLiteral("8BIT"), QStringLiteral("7BIT")};
        const bool bareEncoding = eq < 0 && encodings.contains(p.trimmed(), Qt::CaseInsensitive);
        const QString key = bareEncoding ? QStringLiteral("ENCODING")
                            : eq < 0     ? QStringLiteral("TYPE")
                                         : p.left(eq).trimmed().toUpper();
        QString value = eq < 0 ? p.trimmed() : p.mid(eq + 1);
        if (value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"'))
            value = value.mid(1, value.size() - 2);
        line.params.insert(key, caretDecode(value));
    }
}

bool isQuotedPrintable(const QByteArray &logical)
{
    const int colon = valueColon(logical);
    return colon > 0 && logical.left(colon).toUpper().contains("QUOTED-PRINTABLE");
}

} // namespace

QString DecodeLineBytes(const QByteArray &bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    if (!utf8.hasError())
        return text;
    return QString::fromLatin1(bytes);
}

QList<LogicalLine> UnfoldLines(const QByteArray &data)
{
    QList<LogicalLine> logical;
    int number = 0;
    for (QByteArray physical : data.split('\n')) {
        ++number;
        while (physical.endsWith('\r')) // also CR CR LF
            physical.chop(1);
        const bool continuation = !logical.isEmpty() && (physical.startsWith(' ') || physical.startsWith('\t'));
        if (continuation) {
            logical.last().raw += physical.mid(1);
        } else if (!logical.isEmpty() && logical.last().raw.endsWith('=') && isQuotedPrintable(logical.last().raw)) {
            logical.last().raw.chop(1);
            logical.last().raw += physical;
        } else {
            logical.append({physical, number});
        }
    }
    return logical;
}

namespace {

// Bytes in a named character set as text, through iconv; false when the
// set is unknown or the bytes do not fit it.
bool decodeCharset(const QByteArray &bytes, const QByteArray &charset, QString *text)
{
    iconv_t cd = iconv_open("UTF-8", charset.constData());
    if (cd == iconv_t(-1))
        return false;
    QByteArray in = bytes, out(bytes.size() * 4 + 4, '\0');
    char *inPtr = in.data(), *outPtr = out.data();
    size_t inLeft = size_t(in.size()), outLeft = size_t(out.size());
    const bool ok = iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) != size_t(-1) && inLeft == 0;
    iconv_close(cd);
    if (ok)
        *text = QString::fromUtf8(out.constData(), qsizetype(out.size() - qsizetype(outLeft)));
    return ok;
}

bool parseLine(const QByteArray &raw, int number, ContentLine &line)
{
    const int colon = valueColon(raw);
    if (colon <= 0)
        return false;
    parseParams(DecodeLineBytes(raw.left(colon)), line);
    QByteArray value = raw.mid(colon + 1);
    const QStringList encodings = line.paramValues(QStringLiteral("ENCODING"));
    if (encodings.contains(QStringLiteral("QUOTED-PRINTABLE"), Qt::CaseInsensitive))
        value = decodeQuotedPrintable(value);
    // A named character set other than UTF-8 (vCard 2.1: CHARSET=ISO-8859-1,
    // SHIFT_JIS) decodes the value when the system knows it.
    const QByteArray charset = line.params.value(QStringLiteral("CHARSET")).trimmed().toLatin1();
    QString decoded;
    if (charset.isEmpty() || qstricmp(charset.constData(), "UTF-8") == 0 || !decodeCharset(value, charset, &decoded))
        decoded = DecodeLineBytes(value);
    line.value = decoded;
    line.lineNumber = number;
    return true;
}

} // namespace

QStringList ContentLine::paramValues(const QString &param) const
{
    return params.values(param);
}

QStringList ContentLine::types() const
{
    QStringList out;
    for (const QString &v : params.values(QStringLiteral("TYPE")))
        for (const QString &t : v.split(u','))
            if (!t.trimmed().isEmpty())
                out << t.trimmed().toUpper();
    return out;
}

QList<ContentBlock> ReadContentBlocks(const QByteArray &data, const QString &blockName, QList<int> *strayLines)
{
    const QString begin = QStringLiteral("BEGIN:") + blockName, end = QStringLiteral("END:") + blockName;
    QList<ContentBlock> blocks;
    bool open = false;
    for (const auto &[raw, number] : UnfoldLines(data)) {
        const QString head = QString::fromLatin1(raw.trimmed()).toUpper();
        if (head == begin) {
            if (open)
                blocks.last().damage = QStringLiteral("%1 ohne %2").arg(begin, end);
            blocks.append(ContentBlock{{}, number, {}, {}});
            open = true;
            continue;
        }
        if (!open) {
            if (strayLines && !raw.trimmed().isEmpty())
                strayLines->append(number);
            continue; // blank lines and stray text between blocks carry no item
        }
        if (head == end) {
            open = false;
            continue;
        }
        if (raw.trimmed().isEmpty())
            continue;
        ContentLine line;
        if (!parseLine(raw, number, line)) {
            blocks.last().badLines.append(number);
            continue;
        }
        blocks.last().lines.append(line);
    }
    if (open)
        blocks.last().damage = QStringLiteral("Die Datei endet vor %1").arg(end);
    return blocks;
}

QString EscapeText(const QString &text)
{
    QString out;
    out.reserve(text.size() + 8);
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\\') out += QLatin1String("\\\\");
        else if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') { out += QLatin1String("\\n"); ++i; }
        else if (c == u'\n' || c == u'\r') out += QLatin1String("\\n");
        else if (c == u',') out += QLatin1String("\\,");
        else if (c == u';') out += QLatin1String("\\;");
        else out += c;
    }
    return out;
}

QString StoreLineEnds(const QString &text)
{
    if (!text.contains(u'\r') && !text.contains(u'\n'))
        return text;
    QString out;
    out.reserve(text.size() + 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r') {
            qsizetype j = i;
            while (j < text.size() && text[j] == u'\r')
                ++j;
            i = j < text.size() && text[j] == u'\n' ? j : j - 1; // CR LF and CR CR LF are one line end
            out += QLatin1String("\r\n");
        } else if (text[i] == u'\n') {
            out += QLatin1String("\r\n");
        } else {
            out += text[i];
        }
    }
    return out;
}

QString UnescapeText(const QString &text)
{
    if (!text.contains(u'\\'))
        return StoreLineEnds(text);
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == u'\\' && i + 1 < text.size()) {
            const QChar c = text[++i];
            if (c == u'n' || c == u'N')
                out += u'\n';
            else
                out += c;
        } else {
            out += text[i];
        }
    }
    return StoreLineEnds(out);
}

QStringList SplitStructured(const QString &value, QChar separator)
{
    QStringList parts;
    QString current;
    for (int i = 0; i < value.size(); ++i) {
        if (value[i] == u'\\' && i + 1 < value.size()) {
            current += value[i];
            current += value[++i];
        } else if (value[i] == separator) {
            parts << UnescapeText(current);
            current.clear();
        } else {
            current += value[i];
        }
    }
    parts << UnescapeText(current);
    return parts;
}

void ContentWriter::add(const QString &nameAndParams, const QString &value)
{
    const QByteArray line = (nameAndParams + u':' + value).toUtf8();
    // Fold at 75 octets, never inside a UTF-8 sequence.
    int start = 0, limit = 75;
    while (line.size() - start > limit) {
        int cut = start + limit;
        while (cut > start && (uchar(line[cut]) & 0xC0) == 0x80)
            --cut;
        m_out += line.mid(start, cut - start);
        m_out += "\r\n ";
        start = cut;
        limit = 74; // the leading blank counts
    }
    m_out += line.mid(start);
    m_out += "\r\n";
}

QString ParamValue(const QString &value)
{
    QString v = value;
    v.replace(u'^', QLatin1String("^^")).replace(u'"', QLatin1String("^'")).replace(u'\n', QLatin1String("^n"));
    if (v.contains(u';') || v.contains(u':') || v.contains(u','))
        return u'"' + v + u'"';
    return v;
}
