// Layouts of the composed name fields: a part that is empty takes its
// separators and an emptied bracket with it.
#include "names/NameCorrectionFunctions.h"

namespace {

bool isSeparator(QChar c)
{
    return c == u',' || c == u';' || c == u'-' || c == u'/';
}

// The character at index i in upper case, or "" outside the text.
QString upperAt(const QString &s, qsizetype i)
{
    return i >= 0 && i < s.size() ? QString(s.at(i).toUpper()) : QString();
}

void removeEmptyBrackets(QString &s)
{
    s.remove(QStringLiteral("()"));
    s.remove(QStringLiteral("[]"));
    s.remove(QStringLiteral("{}"));
}

QString trimBlanks(const QString &s)
{
    qsizetype start = 0;
    qsizetype end = s.size();
    while (start < end && s.at(start) == u' ')
        ++start;
    while (end > start && s.at(end - 1) == u' ')
        --end;
    return s.mid(start, end - start);
}

// Reduces the layout to code letters, brackets, the separators between two
// present parts and literal characters.
QString reduceLayout(const QString &layout, const QString (&parts)[6])
{
    static const char *const captions[6][2] = {
        {"Anrede", "A"}, {"Vorname", "V"}, {"weitere Vorn.", "W"},
        {"Nachname", "N"}, {"Namenszusatz", "Z"}, {"Firma", "F"}};
    static const char codeOfPart[6] = {'A', 'V', 'W', 'N', 'Z', 'F'};

    QString s = layout;
    for (const auto &caption : captions)
        s.replace(QLatin1String(caption[0]), QLatin1String(caption[1]), Qt::CaseInsensitive);
    for (int i = 0; i < 6; ++i) {
        if (parts[i].isEmpty())
            s.remove(QLatin1Char(codeOfPart[i]), Qt::CaseInsensitive);
    }
    s.remove(u' ');
    removeEmptyBrackets(s);
    while (!s.isEmpty() && isSeparator(s.front()))
        s.remove(0, 1);
    while (!s.isEmpty() && isSeparator(s.back()))
        s.chop(1);
    // A separator stays only between two code letters. After a removal the
    // next character moves into place and is passed over, and the end of the
    // pass stays where it was before the first removal.
    const qsizetype end = s.size() - 2;
    for (qsizetype i = 1; i <= end; ++i) {
        if (i < s.size() && isSeparator(s.at(i))
            && (!IsLayoutCode(upperAt(s, i - 1)) || !IsLayoutCode(upperAt(s, i + 1))))
            s.remove(i, 1);
    }
    removeEmptyBrackets(s);
    return s;
}

} // namespace

bool IsLayoutCode(const QString &character)
{
    static const QString codes = QStringLiteral("FNVZWLA");
    return character.size() == 1 && codes.contains(character.at(0));
}

QString BuildNameLayout(const QString &Title, const QString &FirstName, const QString &MiddleName,
                        const QString &LastName, const QString &Suffix, const QString &Company,
                        const QString &Layout)
{
    const QString parts[6] = {Title, FirstName, MiddleName, LastName, Suffix, Company};
    const QString s = reduceLayout(Layout, parts);
    QString result;
    QString pending;
    for (const QChar ch : s) {
        const QChar c = ch.toUpper();
        const qsizetype part = QStringView(u"AVWNZF").indexOf(c);
        if (part >= 0) {
            result += pending + parts[part];
            pending = QStringLiteral(" ");
        } else if (c == u'(' || c == u'[' || c == u'{') {
            result += u' ';
            result += c;
            pending.clear();
        } else if (c == u')' || c == u']' || c == u'}' || c == u',' || c == u';') {
            result += c;
            pending = QStringLiteral(" ");
        } else if (c == u'-' || c == u'/') {
            result += u' ';
            result += c;
            pending = QStringLiteral(" ");
        } else {
            result += ch;
            pending.clear();
        }
    }
    return trimBlanks(result);
}
