#include "replace/ReplaceDates.h"

#include "store/StoreConstants.h"

#include <QRegularExpression>

namespace {

int FullYear(const QString &digits)
{
    const int year = digits.toInt();
    if (digits.size() == 2)
        return year < 30 ? 2000 + year : 1900 + year;
    return year;
}

} // namespace

std::optional<QDateTime> ParseDateText(const QString &text)
{
    static const QRegularExpression form(QStringLiteral(
        R"(^ *(\d{1,2})\.(\d{1,2})\.(\d{4}|\d{2})(?: +(\d{1,2}):(\d{2})(?::(\d{2}))?)? *$)"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QDate date(FullYear(match.captured(3)), match.captured(2).toInt(), match.captured(1).toInt());
    QTime time(0, 0);
    if (match.hasCaptured(4))
        time = QTime(match.captured(4).toInt(), match.captured(5).toInt(), match.captured(6).toInt());
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time);
}

std::optional<QDateTime> DateToWrite(ReplaceDateRule rule, const QString &newText)
{
    if (newText.isEmpty()) {
        if (rule == ReplaceDateRule::EmptyMeansNoDate)
            return NoDate();
        return std::nullopt;
    }
    return ParseDateText(newText);
}
