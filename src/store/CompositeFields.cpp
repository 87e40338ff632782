// The split and compose rules of the composite contact fields (full name,
// the three postal addresses). They are the store's own simple rules, so
// that a full name or address written as a whole has sensible parts; the
// program's name analysis is a separate, richer matter.
#include "store/ItemSchema.h"

#include <QRegularExpression>

namespace {

bool isTitleWord(const QString &word)
{
    static const QStringList titles = {
        QStringLiteral("herr"),  QStringLiteral("frau"),    QStringLiteral("dr."),   QStringLiteral("prof."),
        QStringLiteral("dipl.-ing."), QStringLiteral("dipl.-kfm."), QStringLiteral("dr.-ing."),
        QStringLiteral("ing."),  QStringLiteral("mag."),    QStringLiteral("med."),  QStringLiteral("rer."),
        QStringLiteral("nat."),  QStringLiteral("phil."),   QStringLiteral("jur."),  QStringLiteral("dent."),
        QStringLiteral("h.c."),  QStringLiteral("mr."),     QStringLiteral("mrs."),  QStringLiteral("ms."),
    };
    return titles.contains(word.toLower());
}

bool isSuffixWord(const QString &word)
{
    static const QStringList suffixes = {
        QStringLiteral("jun."), QStringLiteral("sen."), QStringLiteral("jr."), QStringLiteral("sr."),
        QStringLiteral("ii"),   QStringLiteral("iii"),  QStringLiteral("iv"),  QStringLiteral("mba"),
    };
    return suffixes.contains(word.toLower());
}

bool isParticle(const QString &word)
{
    static const QStringList particles = {
        QStringLiteral("von"), QStringLiteral("van"), QStringLiteral("de"),  QStringLiteral("zu"),
        QStringLiteral("vom"), QStringLiteral("zum"), QStringLiteral("zur"), QStringLiteral("der"),
        QStringLiteral("den"), QStringLiteral("di"),  QStringLiteral("da"),  QStringLiteral("le"),
        QStringLiteral("la"),  QStringLiteral("ten"), QStringLiteral("ter"), QStringLiteral("del"),
    };
    return particles.contains(word); // only in small letters
}

QStringList words(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return text.split(blanks, Qt::SkipEmptyParts);
}

// Takes title words from the front and suffix words from the back of words.
void takeTitlesAndSuffixes(QStringList &w, NameParts &parts)
{
    QStringList title, suffix;
    while (w.size() > 1 && isTitleWord(w.first()))
        title << w.takeFirst();
    while (w.size() > 1 && isSuffixWord(w.last()))
        suffix.prepend(w.takeLast());
    parts.title = title.join(u' ');
    parts.suffix = suffix.join(u' ');
}

} // namespace

NameParts SplitFullName(const QString &fullName)
{
    NameParts parts;
    const int comma = fullName.indexOf(u',');
    if (comma >= 0) {
        parts.lastName = words(fullName.left(comma)).join(u' ');
        QStringList w = words(fullName.mid(comma + 1));
        takeTitlesAndSuffixes(w, parts);
        if (!w.isEmpty())
            parts.firstName = w.takeFirst();
        parts.middleName = w.join(u' ');
        return parts;
    }
    QStringList w = words(fullName);
    takeTitlesAndSuffixes(w, parts);
    if (w.isEmpty())
        return parts;
    QStringList last{w.takeLast()};
    while (w.size() > 1 && isParticle(w.last()))
        last.prepend(w.takeLast());
    parts.lastName = last.join(u' ');
    if (!w.isEmpty())
        parts.firstName = w.takeFirst();
    parts.middleName = w.join(u' ');
    return parts;
}

QString ComposeFullName(const NameParts &parts, const QString &previous)
{
    const auto joined = [](std::initializer_list<const QString *> items) {
        QStringList w;
        for (const QString *p : items)
            if (!p->trimmed().isEmpty())
                w << p->trimmed();
        return w.join(u' ');
    };
    // "Last, First" stays in that form, as long as there is a last name.
    if (previous.contains(u',') && !parts.lastName.trimmed().isEmpty()) {
        const QString rest = joined({&parts.title, &parts.firstName, &parts.middleName, &parts.suffix});
        return rest.isEmpty() ? parts.lastName.trimmed() : parts.lastName.trimmed() + QStringLiteral(", ") + rest;
    }
    return joined({&parts.title, &parts.firstName, &parts.middleName, &parts.lastName, &parts.suffix});
}

AddressParts SplitAddress(const QString &address)
{
    static const QRegularExpression lineBreaks(QStringLiteral("\\r\\n|\\n|\\r"));
    static const QRegularExpression postalLine(QStringLiteral("^((?:[A-Z]{1,2}-)?\\d{4,5})\\s+(.+)$"));
    QStringList lines;
    for (const QString &line : address.split(lineBreaks))
        if (!line.trimmed().isEmpty())
            lines << line.trimmed();

    AddressParts parts;
    int postal = -1;
    for (int i = int(lines.size()) - 1; i >= 0 && postal < 0; --i)
        if (postalLine.match(lines.at(i)).hasMatch())
            postal = i;

    if (postal < 0) {
        if (lines.size() >= 3)
            parts.country = lines.takeLast();
        if (lines.size() >= 2)
            parts.city = lines.takeLast();
        parts.street = lines.join(QStringLiteral("\r\n"));
        return parts;
    }
    const QRegularExpressionMatch m = postalLine.match(lines.at(postal));
    parts.postalCode = m.captured(1);
    parts.city = m.captured(2).trimmed();
    QStringList street;
    for (int i = 0; i < postal; ++i) {
        if (parts.postOfficeBox.isEmpty() && lines.at(i).startsWith(QLatin1String("Postfach"), Qt::CaseInsensitive))
            parts.postOfficeBox = lines.at(i);
        else
            street << lines.at(i);
    }
    parts.street = street.join(QStringLiteral("\r\n"));
    const QStringList after = lines.mid(postal + 1);
    if (after.size() == 1)
        parts.country = after.first();
    else if (after.size() >= 2) {
        parts.state = after.first();
        parts.country = after.mid(1).join(u' ');
    }
    return parts;
}

QString ComposeAddress(const AddressParts &parts)
{
    QStringList lines;
    const QString place = QStringList{parts.postalCode.trimmed(), parts.city.trimmed()}.join(u' ').trimmed();
    for (const QString &line : {parts.street.trimmed(), parts.postOfficeBox.trimmed(), place, parts.state.trimmed(),
                                parts.country.trimmed()})
        if (!line.isEmpty())
            lines << line;
    return lines.join(QStringLiteral("\r\n"));
}
