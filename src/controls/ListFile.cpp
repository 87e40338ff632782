#include "controls/ListFile.h"

#include "frame/GlobalFunctions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

namespace {

const QByteArray kHeader = QByteArrayLiteral("VarnexList 1");

bool hasControlCharacter(const QString &line)
{
    for (const QChar c : line) {
        if ((c.unicode() < 0x20 && c != u'\t') || c.unicode() == 0x7f)
            return true;
    }
    return false;
}

// One line of the file as an entry; false when the line is damaged.
bool decodeLine(QByteArray line, QString &entry)
{
    if (line.endsWith('\r'))
        line.chop(1);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(line);
    if (decoder.hasError() || hasControlCharacter(text))
        return false;
    bool ok = false;
    entry = UnescapeListEntry(text, ok);
    return ok;
}

} // namespace

QString ListFilePath(const QString &fileName)
{
    return QDir(ProgramFolder()).filePath(QStringLiteral("Preferences/") + fileName);
}

QString EscapeListEntry(const QString &entry)
{
    QString line;
    line.reserve(entry.size());
    for (qsizetype i = 0; i < entry.size(); ++i) {
        const QChar c = entry.at(i);
        const bool pair = c.isHighSurrogate() && i + 1 < entry.size() && entry.at(i + 1).isLowSurrogate();
        if (c == u'\\') {
            line += QStringLiteral("\\\\");
        } else if (c == u'\n') {
            line += QStringLiteral("\\n");
        } else if (c == u'\r') {
            line += QStringLiteral("\\r");
        } else if (pair) {
            line += c;
            line += entry.at(++i);
        } else if ((c.unicode() < 0x20 && c != u'\t') || c.unicode() == 0x7f || c.isSurrogate()) {
            // What the reader refuses raw (a control character, half of a
            // pair that UTF-8 cannot hold) is written as its code.
            line += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            line += c;
        }
    }
    return line;
}

QString UnescapeListEntry(const QString &line, bool &ok)
{
    QString entry;
    entry.reserve(line.size());
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line.at(i) != u'\\') {
            entry += line.at(i);
            continue;
        }
        if (++i == line.size()) {
            ok = false;
            return {};
        }
        switch (line.at(i).unicode()) {
        case u'\\': entry += u'\\'; break;
        case u'n': entry += u'\n'; break;
        case u'r': entry += u'\r'; break;
        case u'u': {
            const QString digits = line.mid(i + 1, 4);
            bool hex = digits.size() == 4;
            const ushort code = hex ? digits.toUShort(&hex, 16) : 0;
            if (!hex) {
                ok = false;
                return {};
            }
            entry += QChar(code);
            i += 4;
            break;
        }
        default:
            ok = false;
            return {};
        }
    }
    ok = true;
    return entry;
}

ListFileContent ReadListFile(const QString &path)
{
    ListFileContent content;
    QFile file(path);
    if (!file.exists())
        return content;
    if (!file.open(QIODevice::ReadOnly)) {
        content.damaged = true;
        return content;
    }
    const QByteArray data = file.read(MaxListFileBytes);
    QList<QByteArray> lines = data.split('\n');
    // A file cut off at the byte limit ends in a partial line: drop it.
    if (file.size() > MaxListFileBytes) {
        lines.removeLast();
        content.damaged = true;
    }
    if (lines.isEmpty() || lines.first().trimmed() != kHeader) {
        content.damaged = !data.isEmpty();
        return content;
    }
    for (qsizetype i = 1; i < lines.size(); ++i) {
        QString entry;
        if (!decodeLine(lines.at(i), entry)) {
            content.damaged = true;
            break;
        }
        if (entry.isEmpty() || content.entries.contains(entry))
            continue;
        content.entries.append(entry);
        if (content.entries.size() == MaxListEntries)
            break;
    }
    return content;
}

bool WriteListFile(const QString &path, const QStringList &entries)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QByteArray data = kHeader + '\n';
    for (qsizetype i = 0; i < entries.size() && i < MaxListEntries; ++i) {
        const QByteArray line = EscapeListEntry(entries.at(i)).toUtf8() + '\n';
        // Never more than the reader takes in: the oldest entries stay out.
        if (data.size() + line.size() > MaxListFileBytes)
            break;
        data += line;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(data);
    return file.commit();
}

QStringList WithEntryOnTop(const QStringList &entries, const QString &entry)
{
    if (entry.isEmpty())
        return entries;
    QStringList result{entry};
    for (const QString &other : entries) {
        if (other != entry && result.size() < MaxListEntries)
            result.append(other);
    }
    return result;
}
