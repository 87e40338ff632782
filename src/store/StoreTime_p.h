#pragma once
// Dates in store files: local wall-clock time as the user entered it, kept
// as one number (day number times milliseconds per day plus the
// milliseconds of the day), free of time zones. Turning the number into a
// QDateTime asks the system for its time zone, which is costly, so item
// times are kept as numbers until someone reads them.

#include <QDateTime>

inline constexpr qint64 StoreMsPerDay = 86400000;

inline qint64 EncodeStoreTime(const QDateTime &when)
{
    if (!when.isValid())
        return 0;
    return when.date().toJulianDay() * StoreMsPerDay + when.time().msecsSinceStartOfDay();
}

// Codes from about the year -10000 to the end of 99999: a code outside is
// no date this program wrote (damaged data), and its day would overflow
// QDateTime's arithmetic.
inline bool IsStoreTimeInRange(qint64 code)
{
    constexpr qint64 first = -1930999 * StoreMsPerDay; // Julian day of 1 January -9999 (astronomical)
    constexpr qint64 last = 38245310 * StoreMsPerDay - 1; // Julian day of 1 January 100000, less 1 ms
    return code >= first && code <= last;
}

// 0 and a code out of range give an invalid QDateTime (no date).
inline QDateTime DecodeStoreTime(qint64 code)
{
    if (code == 0 || !IsStoreTimeInRange(code))
        return {};
    qint64 day = code / StoreMsPerDay;
    if (code % StoreMsPerDay < 0)
        --day;
    return QDateTime(QDate::fromJulianDay(day), QTime::fromMSecsSinceStartOfDay(int(code - day * StoreMsPerDay)));
}
