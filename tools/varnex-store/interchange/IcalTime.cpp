// Times between the store (local QDateTime) and iCalendar values (UTC,
// a named zone, floating or a date).
#include "IcalFormat.h"

#include <QTimeZone>

IcalZones::~IcalZones()
{
    for (icaltimezone *zone : std::as_const(m_zones))
        icaltimezone_free(zone, 1);
}

void IcalZones::add(icalcomponent *vtimezone)
{
    icaltimezone *zone = icaltimezone_new();
    if (!icaltimezone_set_component(zone, vtimezone)) {
        icaltimezone_free(zone, 1);
        icalcomponent_free(vtimezone);
        return;
    }
    const QString tzid = QString::fromUtf8(icaltimezone_get_tzid(zone));
    if (m_zones.contains(tzid)) {
        icaltimezone_free(zone, 1);
        return;
    }
    m_zones.insert(tzid, zone);
}

icaltimezone *IcalZones::find(const QString &tzid) const
{
    if (icaltimezone *zone = m_zones.value(tzid))
        return zone;
    const QByteArray id = tzid.toUtf8();
    if (icaltimezone *zone = icaltimezone_get_builtin_timezone(id.constData()))
        return zone;
    return icaltimezone_get_builtin_timezone_from_tzid(id.constData());
}

namespace {

QDateTime localOf(const icaltimetype &t, const char *tzid, const IcalZones &zones)
{
    const QDate date(t.year, t.month, t.day);
    if (t.is_date)
        return QDateTime(date, QTime(0, 0));
    const QTime time(t.hour, t.minute, t.second);
    if (icaltime_is_utc(t))
        return QDateTime(date, time, Qt::UTC).toLocalTime();
    icaltimezone *zone = t.zone ? const_cast<icaltimezone *>(t.zone) : nullptr;
    if (!zone && tzid)
        zone = zones.find(QString::fromUtf8(tzid));
    if (zone)
        return QDateTime::fromSecsSinceEpoch(icaltime_as_timet_with_zone(t, zone));
    return QDateTime(date, time); // floating, or a zone nobody knows: local
}

const char *tzidOf(icalproperty *property)
{
    icalparameter *p = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    return p ? icalparameter_get_tzid(p) : nullptr;
}

} // namespace

QDateTime LocalTimeOf(icalproperty *property, const IcalZones &zones, bool *allDay)
{
    const icalvalue *value = icalproperty_get_value(property);
    if (!value)
        return {};
    const icaltimetype t = icalvalue_get_datetime(value);
    if (icaltime_is_null_time(t) || !icaltime_is_valid_time(t))
        return {};
    if (allDay)
        *allDay = t.is_date;
    return localOf(t, tzidOf(property), zones);
}

icaltimezone *ExportZone()
{
    static icaltimezone *zone = [] {
        const QByteArray id = QTimeZone::systemTimeZoneId();
        icaltimezone *builtin = id.isEmpty() || id.contains("UTC") ? nullptr
                                                                   : icaltimezone_get_builtin_timezone(id.constData());
        return builtin ? builtin : icaltimezone_get_utc_timezone();
    }();
    return zone;
}

icaltimetype IcalTimeOf(const QDateTime &when, bool allDay)
{
    if (allDay) {
        icaltimetype t = icaltime_null_date();
        t.year = when.date().year();
        t.month = when.date().month();
        t.day = when.date().day();
        return t;
    }
    icaltimetype t = icaltime_from_timet_with_zone(when.toSecsSinceEpoch(), 0, ExportZone());
    t.zone = ExportZone(); // libical 3.0 converts the wall time but leaves the zone at UTC
    return t;
}

QString NormalizedRecurrenceLine(icalproperty *property, const IcalZones &zones)
{
    icalproperty *copy = icalproperty_new_clone(property);
    const icalproperty_kind kind = icalproperty_isa(property);
    if (kind != ICAL_RRULE_PROPERTY) {
        // EXDATE, RDATE, RECURRENCE-ID: one time each (libical splits lists).
        bool allDay = false;
        const QDateTime local = LocalTimeOf(property, zones, &allDay);
        if (local.isValid()) {
            icaltimetype t = allDay ? IcalTimeOf(local, true)
                                    : icaltime_from_timet_with_zone(local.toSecsSinceEpoch(), 0,
                                                                    icaltimezone_get_utc_timezone());
            icalproperty_remove_parameter_by_kind(copy, ICAL_TZID_PARAMETER);
            if (kind == ICAL_EXDATE_PROPERTY)
                icalproperty_set_exdate(copy, t);
            else if (kind == ICAL_RECURRENCEID_PROPERTY)
                icalproperty_set_recurrenceid(copy, t);
            else
                icalproperty_set_rdate(copy, icaldatetimeperiodtype{t, icalperiodtype_null_period()});
        }
    }
    char *text = icalproperty_as_ical_string_r(copy);
    QString line = QString::fromUtf8(text).remove(QStringLiteral("\r\n ")).trimmed();
    icalmemory_free_buffer(text);
    icalproperty_free(copy);
    return line;
}
