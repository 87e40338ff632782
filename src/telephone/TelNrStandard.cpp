#include "telephone/TelNrStandard.h"

#include "frame/GlobalFunctions.h"
#include "telephone/TelTables.h"

#include <exception>

namespace {

const QString kCountrySwitzerland = QStringLiteral("41");
const QString kOldZurich = QStringLiteral("1");
const QString kZurich = QStringLiteral("44");

// Whether text holds the pieces one after the other from position at on;
// the end position, or -1.
qsizetype matchPieces(QStringView text, qsizetype at, std::initializer_list<QStringView> pieces)
{
    for (QStringView piece : pieces) {
        if (!text.sliced(at).startsWith(piece))
            return -1;
        at += piece.size();
    }
    return at;
}

void reportFailure(const TelNrError &error, const QString &number)
{
    ShowError(error.description, QVariant(error.number), 801,
              QStringLiteral("(Telephone number.: ") + number + u')');
}

} // namespace

bool IsBlankNumber(const QString &number)
{
    for (QChar c : number) {
        if (c != u' ')
            return false;
    }
    return true;
}

QString ReduceToDigits(const QString &number, const QString &durchwahlTrenn, const QString &durchwahlTrennOut)
{
    // Walking backwards keeps the last separator of the input, and only that.
    const bool separatorCanMatch = durchwahlTrenn.size() == 1;
    const QChar separator = separatorCanMatch ? durchwahlTrenn.front() : QChar();
    bool separatorKept = false;
    QString out(number.size() + durchwahlTrennOut.size(), Qt::Uninitialized);
    QChar *const begin = out.data();
    QChar *p = begin + out.size();
    for (qsizetype i = number.size() - 1; i >= 0; --i) {
        const QChar c = number.at(i);
        if ((c >= u'0' && c <= u'9') || c == u'+') {
            *--p = c;
        } else if (separatorCanMatch && c == separator && !separatorKept) {
            separatorKept = true;
            p -= durchwahlTrennOut.size();
            std::copy(durchwahlTrennOut.cbegin(), durchwahlTrennOut.cend(), p);
        }
    }
    out.remove(0, p - begin);
    return out;
}

QString PlusToInternationalPrefix(const QString &digits, const QString &number, const QString &iddp)
{
    QString result = digits;
    // The test looks at the input: "+0049 ..." keeps its own 00.
    if (result.startsWith(u'+') && QStringView(number).mid(1, iddp.size()) != iddp)
        result.replace(0, 1, iddp);
    if (result.contains(u'+'))
        result.remove(u'+');
    return result;
}

void ResolveCountry(TelNrParts &parts, const TelTables &tables, const TelNrSettings &settings)
{
    if (const std::optional<CountryMatch> match = tables.matchCountry(parts.digits, settings.iddp, settings.plus)) {
        parts.digits.remove(0, match->cutLength);
        parts.country = match->countryCode;
        parts.nationalPrefix = match->nationalPrefix;
        parts.found = true;
    } else {
        parts.country = settings.countryCode;
        parts.nationalPrefix = settings.nddp;
    }
    // The recognised digits stay cut off; the rest is read as a number of
    // the own country.
    if (settings.ignoreCountryCode) {
        parts.country = settings.countryCode;
        parts.nationalPrefix = settings.nddp;
    }
}

void CutNationalPrefix(TelNrParts &parts, const QString &iddp)
{
    if (parts.digits.startsWith(parts.nationalPrefix) && !parts.digits.startsWith(iddp)) {
        parts.digits.remove(0, parts.nationalPrefix.size());
        parts.found = true;
        parts.prefixCut = true;
    }
}

void ResolveAreaCode(TelNrParts &parts, const TelTables &tables)
{
    std::optional<QString> area = tables.findAreaCode(parts.country, parts.digits, true);
    // An area code that itself begins with the digits of the national prefix
    // stands in the table with them.
    if (!area && parts.prefixCut) {
        parts.digits.prepend(parts.nationalPrefix);
        area = tables.findAreaCode(parts.country, parts.digits, false);
    }
    parts.found = area.has_value();
    if (area) {
        parts.areaCode = *area;
        parts.subscriber = parts.digits.mid(area->size());
    }
}

bool PassesFilters(const TelNrParts &parts, const TelNrSettings &settings)
{
    if (!settings.filterTel)
        return true;
    if (settings.filterCountry && parts.country != settings.filterCountryStr)
        return false;
    if (settings.filterArea && parts.areaCode != settings.filterAreaStr)
        return false;
    return true;
}

void TidySeparators(TelNrParts &parts, const QString &durchwahlTrennOut)
{
    const qsizetype length = durchwahlTrennOut.size();
    if (parts.subscriber.startsWith(durchwahlTrennOut))
        parts.subscriber.remove(0, length);
    if (parts.subscriber.endsWith(durchwahlTrennOut))
        parts.subscriber.chop(length);
    if (parts.digits.endsWith(durchwahlTrennOut))
        parts.digits.chop(length);
    if (parts.digits.startsWith(durchwahlTrennOut))
        parts.digits.remove(0, length);
}

QString ComposeNumber(const TelNrParts &parts, const TelNrSettings &s)
{
    QString result;
    if (!parts.areaCode.isEmpty()) {
        const bool blocks = s.useNumberBlocksAreaPres;
        const QString area = blocks ? CutIntoBlocks(parts.areaCode, s.blockA.widths, s.blockA.separator, s.durchwahlTrenn)
                                    : parts.areaCode;
        const QString subscriber = blocks
            ? CutIntoBlocks(parts.subscriber, s.blockS.widths, s.blockS.separator, s.durchwahlTrenn)
            : parts.subscriber;
        result.reserve(s.iddpOut.size() + parts.country.size() + s.vorwahlTrennOut1.size() + area.size()
                       + s.vorwahlTrennOut2.size() + subscriber.size());
        result.append(s.iddpOut).append(parts.country).append(s.vorwahlTrennOut1).append(area)
            .append(s.vorwahlTrennOut2).append(subscriber);
    } else {
        const QString digits = s.useNumberBlocksAreaNo
            ? CutIntoBlocks(parts.digits, s.blockT.widths, s.blockT.separator, s.durchwahlTrenn)
            : parts.digits;
        result.reserve(s.iddpOut.size() + parts.country.size() + s.vorwahlTrennOutSingle.size() + digits.size());
        result.append(s.iddpOut).append(parts.country).append(s.vorwahlTrennOutSingle).append(digits);
    }
    return result;
}

QString ConvertOldSwissCode(const QString &composed, const TelNrSettings &s)
{
    if (!s.schweizKonv)
        return composed;
    // Works on the finished text, so only an area code of exactly "1" with
    // its separators matches.
    const qsizetype end = matchPieces(composed, 0,
                                      {s.iddpOut, kCountrySwitzerland, s.vorwahlTrennOut1, kOldZurich, s.vorwahlTrennOut2});
    if (end < 0)
        return composed;
    QString result = s.iddpOut + kCountrySwitzerland + s.vorwahlTrennOut1 + kZurich + s.vorwahlTrennOut2;
    result.append(QStringView(composed).sliced(end));
    return result;
}

QString CutIntoBlocks(const QString &text, const QList<BlockWidth> &widths, const QString &separator,
                      const QString &durchwahlTrenn)
{
    const qsizetype length = text.size();
    // Place of the last extension separator, counted from 1; 0 if none.
    const qsizetype extensionPlace = durchwahlTrenn.isEmpty() ? 0 : text.lastIndexOf(durchwahlTrenn) + 1;
    QString out;
    out.reserve(length + widths.size() * separator.size());
    qsizetype position = 0;
    qsizetype added = 0;
    for (const BlockWidth &width : widths) {
        if (!width)
            throw TelNrError{TelNrErrors::Overflow, QStringLiteral("Überlauf")};
        // The position runs on past the end of the text, where nothing is copied.
        if (*width > 0) {
            out.append(QStringView(text).mid(position, *width));
            position += *width;
        }
        if (extensionPlace > 0 && position >= extensionPlace - 1)
            break; // the blocks have reached the extension
        if (position >= length)
            break;
        if (*width > 0) {
            out.append(separator);
            added += separator.size();
        }
    }
    // Whatever the blocks did not take follows the last separator as it is.
    const qsizetype rest = length - out.size() + added;
    out.append(QStringView(text).last(std::min(rest, length)));
    return out;
}

QString NormaliseNumber(const QString &number, const TelTables &tables, const TelNrSettings &settings)
{
    if (IsBlankNumber(number))
        return QString();
    if (settings.invalid)
        throw *settings.invalid;

    TelNrParts parts;
    parts.digits = PlusToInternationalPrefix(
        ReduceToDigits(number, settings.durchwahlTrenn, settings.durchwahlTrennOut), number, settings.iddp);
    ResolveCountry(parts, tables, settings);
    CutNationalPrefix(parts, settings.iddp);
    // A number with neither international nor national prefix stays as it is.
    if (parts.digits.isEmpty() || !parts.found)
        return number;
    ResolveAreaCode(parts, tables);
    if (!parts.found || !PassesFilters(parts, settings))
        return number;
    TidySeparators(parts, settings.durchwahlTrennOut);
    return ConvertOldSwissCode(ComposeNumber(parts, settings), settings);
}

QString StandardTelNr(const QString &number, bool &changed)
{
    changed = false;
    if (IsBlankNumber(number))
        return QString();
    try {
        const TelNrSettings &settings = CurrentTelNrSettings();
        if (settings.invalid)
            throw *settings.invalid;
        const QString result = NormaliseNumber(number, CurrentTelTables(), settings);
        changed = result != number;
        return result;
    } catch (const TelNrError &error) {
        reportFailure(error, number);
    } catch (const std::exception &error) {
        reportFailure({0, QString::fromLocal8Bit(error.what())}, number);
    }
    return QString();
}

QString FormatNumberBlocks(const QString &text, const QString &blockKey)
{
    const TelNrSettings &settings = CurrentTelNrSettings();
    BlockSet other;
    const BlockSet *set = &other;
    if (blockKey == QLatin1String("BlockA"))
        set = &settings.blockA;
    else if (blockKey == QLatin1String("BlockS"))
        set = &settings.blockS;
    else if (blockKey == QLatin1String("BlockT"))
        set = &settings.blockT;
    else
        other = ReadBlockSet(blockKey);
    return CutIntoBlocks(text, set->widths, set->separator, settings.durchwahlTrenn);
}
