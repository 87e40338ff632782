#include "MailFormat.h"

#include "GMimeSupport.h"
#include "Interchange.h"
#include "MailHeaders.h"
#include "MimeMail.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <QTimeZone>

#include <cstring>

namespace {

const QString asctimeFormat = QStringLiteral("ddd MMM d hh:mm:ss yyyy");

QString itemPosition(int index, const Item &item)
{
    QString subject;
    try {
        subject = item.Subject().simplified().left(60);
    } catch (const StoreError &) {
    }
    return subject.isEmpty() ? QStringLiteral("Element %1").arg(index)
                             : QStringLiteral("Element %1 (\"%2\")").arg(index).arg(subject);
}

QString mboxPosition(const QString &file, int number, qint64 offset)
{
    return QStringLiteral("%1, Mail %2 (Byte %3)").arg(QFileInfo(file).fileName()).arg(number).arg(offset);
}

// The date of a "From " line: the asctime form that mbox writers use,
// taken as UTC, or an RFC 5322 date; invalid when there is none.
QDateTime envelopeDateOf(const QByteArray &line)
{
    const QList<QByteArray> words = line.simplified().split(' ');
    if (words.size() < 3)
        return {};
    const QString rest = QString::fromLatin1(words.mid(2).join(' '));
    QDateTime when = QDateTime::fromString(rest.left(24).simplified(), asctimeFormat);
    if (when.isValid()) {
        when.setTimeZone(QTimeZone::utc());
        const QDateTime local = when.toLocalTime();
        return QDateTime(local.date(), local.time());
    }
    if (GDateTime *date = g_mime_utils_header_decode_date(rest.toLatin1().constData())) {
        when = FromGDateTime(date);
        g_date_time_unref(date);
        return when;
    }
    return {};
}

bool isBlankLineBefore(const QByteArray &data, qsizetype at)
{
    return at >= 2 && (data.at(at - 2) == '\n' || (data.at(at - 2) == '\r' && at >= 3 && data.at(at - 3) == '\n'));
}

// Whether the line after the one at `line` is a header field ("Name:").
bool headerLineFollows(const QByteArray &data, qsizetype line)
{
    const qsizetype next = data.indexOf('\n', line);
    if (next < 0)
        return false;
    qsizetype at = next + 1;
    while (at < data.size() && data.at(at) > ' ' && data.at(at) < 127 && data.at(at) != ':')
        ++at;
    return at > next + 1 && at < data.size() && data.at(at) == ':';
}

// A "From " line that begins a message: the first line of the file, one
// with a date (classic and "From - date" separators), or one after an empty
// line or of the form "From -" that is followed by a header line. A "From "
// line of a text that no writer escaped ("From time to time") is none.
bool isSeparatorLine(const QByteArray &data, qsizetype line)
{
    if (line == 0)
        return true;
    const qsizetype lineEnd = data.indexOf('\n', line);
    const QByteArray fromLine = data.mid(line, lineEnd < 0 ? -1 : lineEnd - line);
    if (envelopeDateOf(fromLine).isValid())
        return true;
    const bool dash = fromLine.trimmed() == "From -" || fromLine.startsWith("From - ");
    return (dash || isBlankLineBefore(data, line)) && headerLineFollows(data, line);
}

// Where a message of a Content-Length mbox ends: its header block names
// the length of the body, and after it come only line ends and the next
// "From " line (whose start goes into *next) or the end of the file. -1
// when there is no such header or it does not fit.
qsizetype contentLengthEnd(const QByteArray &data, qsizetype start, qsizetype *next)
{
    qsizetype headersEnd = -1, bodyStart = -1;
    for (qsizetype at = start; at < data.size();) {
        if (data.at(at) == '\n') {
            headersEnd = at;
            bodyStart = at + 1;
            break;
        }
        if (data.at(at) == '\r' && at + 1 < data.size() && data.at(at + 1) == '\n') {
            headersEnd = at;
            bodyStart = at + 2;
            break;
        }
        const qsizetype lineEnd = data.indexOf('\n', at);
        if (lineEnd < 0)
            return -1;
        at = lineEnd + 1;
    }
    if (bodyStart < 0)
        return -1;
    const QByteArray headers = "\n" + data.mid(start, headersEnd - start).toLower();
    const qsizetype field = headers.indexOf("\ncontent-length:");
    if (field < 0)
        return -1;
    const qsizetype valueEnd = headers.indexOf('\n', field + 1);
    bool ok = false;
    const qint64 length = headers.mid(field + 16, valueEnd < 0 ? -1 : valueEnd - field - 16).trimmed().toLongLong(&ok);
    if (!ok || length < 0 || length > data.size() - bodyStart)
        return -1;
    const qsizetype end = bodyStart + qsizetype(length);
    qsizetype after = end;
    for (int blank = 0; blank < 2 && after < data.size(); ++blank) {
        if (data.at(after) == '\n')
            after += 1;
        else if (data.mid(after, 2) == "\r\n")
            after += 2;
    }
    if (after < data.size() && data.mid(after, 5) != "From ")
        return -1;
    *next = after;
    return end;
}

// Where binary junk starts in the message bytes [start, end): at the empty
// line before the first NUL byte, when that lies after the headers; end
// when there is none.
qsizetype binaryTail(const QByteArray &data, qsizetype start, qsizetype end)
{
    // Only within the message: a search to the end of the file for every
    // message would make a large mbox quadratic.
    const void *hit = memchr(data.constData() + start, 0, size_t(end - start));
    if (!hit)
        return end;
    const qsizetype nul = static_cast<const char *>(hit) - data.constData();
    const qsizetype headersEnd = data.indexOf("\n\n", start);
    qsizetype blank = data.lastIndexOf("\n\n", nul);
    const qsizetype blankCrLf = data.lastIndexOf("\n\r\n", nul);
    blank = qMax(blank, blankCrLf);
    if (blank < start || headersEnd < 0 || blank <= headersEnd)
        return end; // in the headers: the message itself is damaged
    return blank + 1 + (data.at(blank + 1) == '\r' ? 1 : 0) + 1;
}

// Lines that start with ">...>From " lose one ">"; the line ends stay.
QByteArray unescapeFromLines(const QByteArray &body)
{
    QByteArray out;
    out.reserve(body.size());
    qsizetype start = 0;
    while (start < body.size()) {
        qsizetype end = body.indexOf('\n', start);
        end = end < 0 ? body.size() : end + 1;
        qsizetype quotes = start;
        while (quotes < end && body.at(quotes) == '>')
            ++quotes;
        const bool escaped = quotes > start && body.mid(quotes, 5) == "From ";
        out.append(body.constData() + start + (escaped ? 1 : 0), end - start - (escaped ? 1 : 0));
        start = end;
    }
    return out;
}

QByteArray escapeFromLines(const QByteArray &message)
{
    QByteArray out;
    out.reserve(message.size() + 64);
    qsizetype start = 0;
    while (start < message.size()) {
        qsizetype end = message.indexOf('\n', start);
        end = end < 0 ? message.size() : end + 1;
        qsizetype quotes = start;
        while (quotes < end && message.at(quotes) == '>')
            ++quotes;
        if (message.mid(quotes, 5) == "From ")
            out.append('>');
        out.append(message.constData() + start, end - start);
        start = end;
    }
    return out;
}

bool s_importDuplicates = false;

// A message whose Message-ID an item of the target folder already has.
struct DuplicateMail {
    QString id;
};

// The Message-IDs of the target folder, gathered once per run and grown
// with each message imported.
struct MessageIds {
    const MAPIFolder &target;
    QSet<QString> ids;
    bool loaded = false;

    void load()
    {
        if (loaded)
            return;
        for (const Item &item : target.Items())
            if (IsMailOrPost(item))
                ids.insert(MessageIdOf(item));
        loaded = true;
    }
};

// Reads one message into the target and saves it; its damage notes go
// into the report with its position once it is in. A message that is in
// the folder already (same Message-ID) is counted read and reported, not
// imported again, unless duplicates were asked for.
void importMessage(InterchangeReport &report, const QString &where, MessageIds &known,
                   const std::function<QByteArray()> &bytes, const QDateTime &envelopeDate = QDateTime())
{
    QStringList notes;
    QString id;
    const int before = report.imported;
    if (!s_importDuplicates)
        known.load();
    try {
        ImportEntry(report, where, [&] {
            Item item = ReadMimeMail(bytes(), known.target, envelopeDate, &notes);
            id = MessageIdOf(item);
            if (!s_importDuplicates && known.ids.contains(id))
                throw DuplicateMail{id};
            return item;
        });
    } catch (const DuplicateMail &duplicate) {
        report.note(where + QStringLiteral(": schon im Ordner (Message-ID <%1>), nicht noch einmal importiert.").arg(duplicate.id));
        return;
    }
    if (report.imported > before) {
        known.ids.insert(id);
        for (const QString &note : notes)
            report.note(where + QStringLiteral(": ") + note);
    }
}

void exportFailure(InterchangeReport &report, int index, const Item &item, const StoreError &e)
{
    report.skip(itemPosition(index, item), e.description());
}

} // namespace

void SetMailDuplicatesImported(bool imported)
{
    s_importDuplicates = imported;
}

QList<MboxEntry> SplitMbox(const QByteArray &data, QList<MboxJunk> *junk)
{
    QList<qsizetype> starts;
    for (qsizetype at = data.startsWith("From ") ? 0 : data.indexOf("\nFrom "); at >= 0;
         at = data.indexOf("\nFrom ", at + 1)) {
        const qsizetype line = data.at(at) == '\n' ? at + 1 : at;
        if (isSeparatorLine(data, line))
            starts << line;
    }
    junk->clear();
    const qsizetype firstStart = starts.isEmpty() ? data.size() : starts.first();
    if (!data.left(firstStart).trimmed().isEmpty())
        junk->append({0, firstStart, 0});
    QList<MboxEntry> entries;
    for (qsizetype i = 0; i < starts.size(); ++i) {
        const qsizetype lineEnd = data.indexOf('\n', starts[i]);
        qsizetype end = i + 1 < starts.size() ? starts[i + 1] : data.size();
        MboxEntry entry;
        entry.offset = starts[i];
        entry.envelopeDate = envelopeDateOf(data.mid(starts[i], lineEnd < 0 ? -1 : lineEnd - starts[i]));
        const qsizetype bodyStart = lineEnd < 0 || lineEnd >= data.size() ? data.size() : lineEnd + 1;
        qsizetype next = -1;
        const qsizetype counted = contentLengthEnd(data, bodyStart, &next);
        if (counted >= 0) {
            // The length says where the message ends; "From " lines inside
            // it are text and were not escaped.
            entry.message = data.mid(bodyStart, counted - bodyStart);
            entries << entry;
            while (i + 1 < starts.size() && starts[i + 1] < next)
                starts.removeAt(i + 1);
            if (next < data.size() && (i + 1 >= starts.size() || starts[i + 1] != next))
                starts.insert(i + 1, next);
            continue;
        }
        if (bodyStart > end)
            end = bodyStart;
        const qsizetype cut = binaryTail(data, bodyStart, end);
        if (cut < end) {
            junk->append({cut, end - cut, int(entries.size()) + 1});
            end = cut;
        }
        QByteArray message = data.mid(bodyStart, end - bodyStart);
        // The empty line before the next "From " line belongs to the file.
        if (message.endsWith("\r\n\r\n"))
            message.chop(2);
        else if (message.endsWith("\n\n"))
            message.chop(1);
        entry.message = unescapeFromLines(message);
        entries << entry;
    }
    return entries;
}

QByteArray MboxRecord(const QByteArray &message, const QString &sender, const QDateTime &date)
{
    // Readers take the line as ASCII up to the first blank: an address
    // beyond that (or none) gives the placeholder that servers write.
    QString who = sender.trimmed();
    bool plain = !who.isEmpty();
    for (const QChar c : who)
        plain = plain && c.unicode() > 0x20 && c.unicode() < 0x7F;
    if (!plain)
        who = QStringLiteral("MAILER-DAEMON");
    const QDateTime when = date.isValid() && !IsNoDate(date) ? date : QDateTime::currentDateTime();
    QByteArray record = "From " + who.toLatin1() + ' ' +
                        QLocale::c().toString(when.toUTC(), asctimeFormat).toLatin1() + '\n';
    record += escapeFromLines(message);
    if (!record.endsWith('\n'))
        record += '\n';
    return record + '\n';
}

void ImportEml(const QString &path, const MAPIFolder &target, InterchangeReport &report)
{
    const QStringList files = InputFiles(path, {QStringLiteral("eml")});
    if (files.isEmpty())
        report.note(QStringLiteral("Im Ordner %1 gibt es keine .eml-Dateien.").arg(QDir::toNativeSeparators(path)));
    MessageIds known{target, {}};
    for (const QString &file : files)
        importMessage(report, EntryPosition(file), known, [&] { return ReadInputFile(file); });
}

void ExportEml(const MAPIFolder &source, const QString &path, InterchangeReport &report)
{
    const bool oneFile = !ExportsToFolder(path) && path.endsWith(QLatin1String(".eml"), Qt::CaseInsensitive);
    const Items items = source.Items();
    if (oneFile && items.Count() != 1) {
        report.skip(QFileInfo(path).fileName(),
                    QStringLiteral("Eine .eml-Datei hält genau eine Mail; für %1 Elemente bitte einen Ordner angeben.")
                        .arg(items.Count()));
        return;
    }
    if (!oneFile && !QDir().mkpath(path)) {
        report.skip(QDir::toNativeSeparators(path), QStringLiteral("Der Ordner kann nicht angelegt werden."));
        return;
    }
    for (int i = 1; i <= items.Count(); ++i) {
        Item item;
        try {
            item = items.Item(i);
            if (!IsMailOrPost(item)) {
                report.skip(itemPosition(i, item), QStringLiteral("Das Element ist weder Mail noch Bereitstellung."));
                continue;
            }
            const QByteArray bytes = WriteMimeMail(item);
            const QString file = oneFile ? path : ExportFileName(path, item.Subject().isEmpty() ? QStringLiteral("Mail") : item.Subject(), QStringLiteral("eml"));
            QString error;
            if (!WriteFileAtomically(file, bytes, &error)) {
                report.skip(itemPosition(i, item), error);
                continue;
            }
            report.countExported();
        } catch (const StoreError &e) {
            exportFailure(report, i, item, e);
        }
    }
}

void ImportMbox(const QString &path, const MAPIFolder &target, InterchangeReport &report)
{
    const QStringList files = InputFiles(path, {QStringLiteral("mbox"), QStringLiteral("mbx")});
    if (files.isEmpty())
        report.note(QStringLiteral("Im Ordner %1 gibt es keine mbox-Dateien.").arg(QDir::toNativeSeparators(path)));
    MessageIds known{target, {}};
    for (const QString &file : files) {
        QByteArray data;
        try {
            data = ReadInputFile(file);
        } catch (const EntryDamage &damage) {
            report.skip(EntryPosition(file), damage.reason);
            continue;
        }
        QList<MboxJunk> junk;
        const QList<MboxEntry> entries = SplitMbox(data, &junk);
        for (const MboxJunk &j : junk)
            report.skip(QStringLiteral("%1, Byte %2").arg(QFileInfo(file).fileName()).arg(j.offset),
                        j.afterMessage == 0
                            ? QStringLiteral("%1 Byte vor der ersten Trennzeile (\"From \") sind keine Mail.").arg(j.size)
                            : QStringLiteral("%1 Byte Binärdaten nach Mail %2 sind keine Mail.").arg(j.size).arg(j.afterMessage));
        for (int i = 0; i < entries.size(); ++i) {
            const MboxEntry &entry = entries.at(i);
            importMessage(report, mboxPosition(file, i + 1, entry.offset), known, [&] { return entry.message; },
                          entry.envelopeDate);
        }
    }
}

void ExportMbox(const MAPIFolder &source, const QString &path, InterchangeReport &report)
{
    if (ExportsToFolder(path)) {
        report.skip(QDir::toNativeSeparators(path), QStringLiteral("mbox schreibt eine Datei; bitte einen Dateinamen angeben."));
        return;
    }
    QByteArray file;
    const Items items = source.Items();
    for (int i = 1; i <= items.Count(); ++i) {
        Item item;
        try {
            item = items.Item(i);
            if (!IsMailOrPost(item)) {
                report.skip(itemPosition(i, item), QStringLiteral("Das Element ist weder Mail noch Bereitstellung."));
                continue;
            }
            QDateTime date = item.get(QStringLiteral("ReceivedTime")).toDateTime();
            if (IsNoDate(date))
                date = item.get(QStringLiteral("SentOn")).toDateTime();
            file += MboxRecord(WriteMimeMail(item), item.get(QStringLiteral("SenderEmailAddress")).toString(), date);
            report.countExported();
        } catch (const StoreError &e) {
            exportFailure(report, i, item, e);
        }
    }
    QString error;
    if (!WriteFileAtomically(path, file, &error)) {
        report.skip(QDir::toNativeSeparators(path), error);
        report.exported = 0;
    }
}
