#include "replace/ReplaceText.h"

QString ReplaceIgnoringCase(const QString &text, const QString &find, const QString &replacement)
{
    // QString would insert the replacement between all characters for an
    // empty find; here an empty find finds nothing.
    if (find.isEmpty())
        return text;
    QString result = text;
    return result.replace(find, replacement, Qt::CaseInsensitive);
}

QString TrimBlanks(const QString &text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == u' ')
        ++begin;
    while (end > begin && text.at(end - 1) == u' ')
        --end;
    return text.mid(begin, end - begin);
}

QString newString(const ReplaceOptions &options, const QString &value)
{
    if (options.replaceWhole)
        return options.replacement;
    if (options.fillEmpty && value.isEmpty())
        return options.replacement;
    if (options.wholeWord) {
        // The blanks around the value let a word at its start or end match;
        // the blank between two neighbours goes with the first match.
        const QString blank = QStringLiteral(" ");
        return TrimBlanks(ReplaceIgnoringCase(blank + value + blank, blank + options.find + blank,
                                              blank + options.replacement + blank));
    }
    return ReplaceIgnoringCase(value, options.find, options.replacement);
}
