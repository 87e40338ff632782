// An appointment, task or journal entry as an iCalendar component.
#include "IcalFormat.h"

#include "ContentLine.h"

#include <QSet>

namespace {

class ComponentWriter
{
public:
    explicit ComponentWriter(const Item &item) : m_item(item) {}
    icalcomponent *write();

private:
    QString text(const char *field) const { return m_item.text(QLatin1String(field)); }
    QDateTime date(const char *field) const { return m_item.get(QLatin1String(field)).toDateTime(); }
    int number(const char *field) const { return m_item.get(QLatin1String(field)).toInt(); }
    // A field written where iCalendar has a place for it; exact tells whether
    // reading it back gives the same value (else its extension line follows).
    void mapped(const char *field, bool exact = true)
    {
        if (exact)
            m_mapped.insert(QString::fromLatin1(field).toLower());
    }
    void add(icalproperty *p) { icalcomponent_add_property(m_c, p); }
    void addTime(icalproperty *p, const QDateTime &when, bool allDay);
    void writeCommon();
    void writeAppointment();
    void writeTask();
    void writeSeries();
    void writeExtensions();

    const Item &m_item;
    icalcomponent *m_c = nullptr;
    QSet<QString> m_mapped;
};

void ComponentWriter::addTime(icalproperty *p, const QDateTime &when, bool allDay)
{
    const icaltimetype t = IcalTimeOf(when, allDay);
    icalproperty_set_value(p, allDay ? icalvalue_new_date(t) : icalvalue_new_datetime(t));
    if (!allDay && ExportZone() != icaltimezone_get_utc_timezone())
        icalproperty_add_parameter(p, icalparameter_new_tzid(icaltimezone_get_tzid(ExportZone())));
    add(p);
}

void ComponentWriter::writeCommon()
{
    const QString uid = UserText(m_item, QLatin1String(UidProperty));
    add(icalproperty_new_uid((uid.isEmpty() ? m_item.EntryID() : uid).toUtf8().constData()));
    add(icalproperty_new_dtstamp(icaltime_current_time_with_zone(icaltimezone_get_utc_timezone())));
    if (!text("Subject").isEmpty())
        add(icalproperty_new_summary(text("Subject").toUtf8().constData()));
    // Line ends are CR LF in the store and LF in iCalendar text.
    if (!text("Body").isEmpty())
        add(icalproperty_new_description(text("Body").replace(QLatin1String("\r\n"), QLatin1String("\n")).toUtf8().constData()));
    mapped("Subject");
    mapped("Body", !text("Body").contains(u'\n') || text("Body").count(u'\n') == text("Body").count(QLatin1String("\r\n")));
    const QString categories = text("Categories");
    QStringList list;
    for (const QString &c : categories.split(u',', Qt::SkipEmptyParts))
        if (!c.trimmed().isEmpty()) {
            add(icalproperty_new_categories(c.trimmed().toUtf8().constData()));
            list << c.trimmed();
        }
    mapped("Categories", list.join(QStringLiteral(", ")) == categories);
    const int sensitivity = number("Sensitivity");
    if (sensitivity != 0)
        add(icalproperty_new_class(sensitivity == 3 ? ICAL_CLASS_CONFIDENTIAL : ICAL_CLASS_PRIVATE));
    mapped("Sensitivity", sensitivity != 1);
    const int importance = number("Importance");
    if (importance != 1)
        add(icalproperty_new_priority(importance == 2 ? 1 : 9));
    mapped("Importance", importance >= 0 && importance <= 2);
    const QDateTime created = m_item.CreationTime();
    if (!IsNoDate(created))
        add(icalproperty_new_created(icaltime_from_timet_with_zone(created.toSecsSinceEpoch(), 0,
                                                                   icaltimezone_get_utc_timezone())));
    mapped("CreationTime", created.time().msec() == 0);
}

void ComponentWriter::writeAppointment()
{
    const bool allDay = m_item.get(QStringLiteral("AllDayEvent")).toBool();
    const QDateTime start = date("Start"), end = date("End");
    const bool dayBounds = start.time() == QTime(0, 0) && end.time() == QTime(0, 0);
    if (!IsNoDate(start))
        addTime(icalproperty_new_dtstart(icaltime_null_time()), start, allDay && dayBounds);
    if (!IsNoDate(end))
        addTime(icalproperty_new_dtend(icaltime_null_time()), end, allDay && dayBounds);
    for (const char *f : {"Start", "End", "Duration"})
        mapped(f, !IsNoDate(start) && !IsNoDate(end));
    mapped("AllDayEvent", !allDay || dayBounds);
    if (!text("Location").isEmpty())
        add(icalproperty_new_location(text("Location").toUtf8().constData()));
    mapped("Location");
    const int busy = number("BusyStatus");
    add(icalproperty_new_transp(busy == olFree ? ICAL_TRANSP_TRANSPARENT : ICAL_TRANSP_OPAQUE));
    mapped("BusyStatus", busy == olFree || busy == olBusy);
    if (m_item.get(QStringLiteral("ReminderSet")).toBool()) {
        icalcomponent *alarm = icalcomponent_new(ICAL_VALARM_COMPONENT);
        icalcomponent_add_property(alarm, icalproperty_new_action(ICAL_ACTION_DISPLAY));
        icalcomponent_add_property(alarm, icalproperty_new_description(text("Subject").toUtf8().constData()));
        icaltriggertype trigger = icaltriggertype_from_int(-60 * number("ReminderMinutesBeforeStart"));
        icalcomponent_add_property(alarm, icalproperty_new_trigger(trigger));
        icalcomponent_add_component(m_c, alarm);
        mapped("ReminderMinutesBeforeStart");
    }
    mapped("ReminderSet");
}

void ComponentWriter::writeTask()
{
    for (const char *f : {"StartDate", "DueDate"}) {
        const QDateTime when = date(f);
        if (!IsNoDate(when)) {
            const bool dateOnly = when.time() == QTime(0, 0);
            addTime(*f == 'S' ? icalproperty_new_dtstart(icaltime_null_time()) : icalproperty_new_due(icaltime_null_time()),
                    when, dateOnly);
        }
        mapped(f);
    }
    const QDateTime completed = date("DateCompleted");
    if (!IsNoDate(completed))
        add(icalproperty_new_completed(icaltime_from_timet_with_zone(completed.toSecsSinceEpoch(), 0,
                                                                     icaltimezone_get_utc_timezone())));
    mapped("DateCompleted");
    const int percent = number("PercentComplete");
    if (percent != 0)
        add(icalproperty_new_percentcomplete(percent));
    mapped("PercentComplete");
    const int status = number("Status");
    add(icalproperty_new_status(status == 2 ? ICAL_STATUS_COMPLETED
                                : status == 1 ? ICAL_STATUS_INPROCESS : ICAL_STATUS_NEEDSACTION));
    mapped("Status", status >= 0 && status <= 2);
    mapped("Complete", m_item.get(QStringLiteral("Complete")).toBool() == (status == 2));
}

void ComponentWriter::writeSeries()
{
    const QString series = UserText(m_item, QLatin1String(SeriesProperty));
    for (const QString &line : series.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
        if (icalproperty *p = icalproperty_new_from_string(line.toUtf8().constData()))
            add(p);
    if (m_item.hasProperty(QStringLiteral("IsRecurring")))
        mapped("IsRecurring", m_item.get(QStringLiteral("IsRecurring")).toBool() == !series.isEmpty());
    const QString occurrence = UserText(m_item, QLatin1String(OccurrenceProperty));
    if (!occurrence.isEmpty())
        if (icalproperty *p = icalproperty_new_from_string(occurrence.toUtf8().constData()))
            add(p);
}

void ComponentWriter::writeExtensions()
{
    auto addX = [this](const QString &name, const QString &value) {
        icalproperty *p = icalproperty_new_x(value.toUtf8().constData());
        icalproperty_set_x_name(p, name.toUtf8().constData());
        add(p);
    };
    const QString defaultClass = MessageClassOfClass(m_item.Class());
    if (m_item.MessageClass() != defaultClass)
        addX(QStringLiteral("X-VX-MESSAGECLASS"), EscapeText(m_item.MessageClass()));
    for (const ExtensionField &f : LeftoverFields(m_item, m_mapped))
        addX(QStringLiteral("X-VX-") + f.name.toUpper(), EscapeText(f.text));
    const QSet<QString> own = {QString::fromLatin1(UidProperty).toLower(), QString::fromLatin1(SeriesProperty).toLower(),
                               QString::fromLatin1(OccurrenceProperty).toLower()};
    for (const UserProperty &p : UserPropertiesOf(m_item, own))
        addX(QStringLiteral("X-VX-USER"), EncodeUserProperty(p));
}

icalcomponent *ComponentWriter::write()
{
    const int itemClass = m_item.Class();
    m_c = icalcomponent_new(itemClass == olAppointment ? ICAL_VEVENT_COMPONENT
                            : itemClass == olTask      ? ICAL_VTODO_COMPONENT
                                                       : ICAL_VJOURNAL_COMPONENT);
    writeCommon();
    if (itemClass == olAppointment) {
        writeAppointment();
    } else if (itemClass == olTask) {
        writeTask();
    } else {
        const QDateTime start = date("Start");
        if (!IsNoDate(start))
            addTime(icalproperty_new_dtstart(icaltime_null_time()), start, false);
        mapped("Start");
    }
    writeSeries();
    writeExtensions();
    return m_c;
}

} // namespace

icalcomponent *ComponentOfItem(const Item &item)
{
    return ComponentWriter(item).write();
}
