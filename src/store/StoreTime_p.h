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

// 0 gives an invalid QDateTime (no date).
inline QDateTime DecodeStoreTime(qint64 code)
{
    if (code == 0)
        return {};
    const qint64 day = code >= 0 ? code / StoreMsPerDay : (code - StoreMsPerDay + 1) / StoreMsPerDay;
    return QDateTime(QDate::fromJulianDay(day), QTime::fromMSecsSinceStartOfDay(int(code - day * StoreMsPerDay)));
}
