#pragma once
// Folder names as the store file keeps them (internal to the store).

#include <QString>

// Text as a store file's text columns keep it: half of a surrogate pair
// becomes U+FFFD (SQLite would otherwise pair it with the next character),
// so that a name reads back as it was written and is found by it again.
[[nodiscard]] inline QString StorableText(const QString &text)
{
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const QChar c = result.at(i);
        if (c.isHighSurrogate() && i + 1 < result.size() && result.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}
