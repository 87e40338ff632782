#pragma once
// Content lines of vCard files: reading a file into cards of unfolded,
// decoded lines, and writing lines back folded at 75 octets. Also the text
// escaping (\n \, \; \\) that the extension properties of every text format
// share.

#include <QByteArray>
#include <QList>
#include <QMultiHash>
#include <QString>
#include <QStringList>

struct ContentLine {
    QString group;     // "item1" of "item1.TEL", usually empty
    QString name;      // upper case
    QMultiHash<QString, QString> params; // names upper case, values as written
    QString value;     // raw: still escaped
    int lineNumber = 0;

    [[nodiscard]] QStringList paramValues(const QString &param) const;
    // TYPE values, upper case, split at commas (TYPE=WORK,VOICE and
    // TYPE=WORK;TYPE=VOICE alike).
    [[nodiscard]] QStringList types() const;
    [[nodiscard]] bool hasType(const QString &type) const { return types().contains(type); }
};

// One BEGIN ... END block of a file, or what was found of it.
struct ContentBlock {
    QList<ContentLine> lines;
    int firstLine = 0;
    QString damage; // why the block cannot be used; empty when it can
    QList<int> badLines; // lines without a colon, passed over
};

// A logical line of a content file: its folded lines joined (also quoted-
// printable soft breaks), still as bytes, with the number of its first line.
struct LogicalLine {
    QByteArray raw;
    int number = 0;
};
[[nodiscard]] QList<LogicalLine> UnfoldLines(const QByteArray &data);
// Text of a line's bytes: UTF-8 when they are valid UTF-8, else Windows
// Latin-1, so that an old export in a Western code page keeps its umlauts.
[[nodiscard]] QString DecodeLineBytes(const QByteArray &bytes);

// Splits a vCard file into its cards. Lines are unfolded (also quoted-
// printable soft breaks) and decoded one by one: UTF-8 when they are valid
// UTF-8, else Windows-1252/Latin-1, so that an old export in a Western code
// page keeps its umlauts. A card without END makes the block damaged, never
// the whole file; a line without a colon is passed over (badLines). Lines
// with text outside any block are passed over; strayLines gets their numbers.
QList<ContentBlock> ReadContentBlocks(const QByteArray &data, const QString &blockName,
                                      QList<int> *strayLines = nullptr);

// Text escaping of a value: backslash, line end, comma and semicolon. Every
// line end (CR LF, LF, CR) is written \n and read back as CR LF, the line
// end of the store's texts.
[[nodiscard]] QString EscapeText(const QString &text);
[[nodiscard]] QString UnescapeText(const QString &text);
// Every line end (CR LF, CR CR LF, a lone CR or LF) as CR LF, the line end of
// the store's texts.
[[nodiscard]] QString StoreLineEnds(const QString &text);
// Splits a structured value at unescaped separators, then unescapes the parts.
[[nodiscard]] QStringList SplitStructured(const QString &value, QChar separator = u';');

// Collects lines and produces the folded file text (CR LF line ends).
class ContentWriter
{
public:
    // name may carry parameters: "TEL;TYPE=WORK,VOICE". value is written as it
    // stands (escape it first where needed).
    void add(const QString &nameAndParams, const QString &value);
    [[nodiscard]] const QByteArray &bytes() const { return m_out; }
    void clear() { m_out.clear(); }

private:
    QByteArray m_out;
};

// Quotes a parameter value when it holds ; : or , (RFC 6868 caret encoding
// for quotes and line ends).
[[nodiscard]] QString ParamValue(const QString &value);
