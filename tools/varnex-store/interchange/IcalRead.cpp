// An iCalendar component as a new appointment, task or journal entry.
#include "IcalFormat.h"

#include "ContentLine.h"
#include "VCardFormat.h"

namespace {

QString textOf(icalproperty *p)
{
    const icalvalue *v = icalproperty_get_value(p);
    if (!v)
        return {};
    // Text values come unescaped from libical; X values as written.
    if (icalvalue_isa(v) == ICAL_X_VALUE)
        return UnescapeText(QString::fromUtf8(icalvalue_get_x(v)));
    return StoreLineEnds(QString::fromUtf8(icalvalue_get_text(v)));
}

// Importance from PRIORITY: 1-4 high, 5 and none normal, 6-9 low.
int importanceOf(int priority)
{
    return priority >= 1 && priority <= 4 ? 2 : priority >= 6 ? 0 : 1;
}

class ComponentReader
{
public:
    ComponentReader(Item &item, const IcalZones &zones, QStringList &lost) : m_item(item), m_zones(zones), m_lost(lost) {}
    void apply(icalproperty *p);
    void alarm(icalcomponent *valarm);
    void finish();

private:
    void setTime(const char *field, icalproperty *p);
    Item &m_item;
    const IcalZones &m_zones;
    QStringList &m_lost;
    QStringList m_categories, m_series;
    QString m_uid, m_occurrence;
    QList<icalproperty *> m_extensions, m_userProperties;
    bool m_allDay = false;
    QDateTime m_start, m_end;
    int m_durationSeconds = -1;
};

void ComponentReader::setTime(const char *field, icalproperty *p)
{
    const QDateTime when = LocalTimeOf(p, m_zones);
    if (when.isValid())
        m_item.set(QLatin1String(field), when);
    else
        m_lost << QStringLiteral("%1 (keine gültige Zeit)").arg(QLatin1String(icalproperty_kind_to_string(icalproperty_isa(p))));
}

void ComponentReader::apply(icalproperty *p)
{
    const bool appointment = m_item.Class() == olAppointment, task = m_item.Class() == olTask;
    switch (icalproperty_isa(p)) {
    case ICAL_SUMMARY_PROPERTY: m_item.set(QStringLiteral("Subject"), textOf(p)); break;
    case ICAL_DESCRIPTION_PROPERTY: m_item.set(QStringLiteral("Body"), textOf(p)); break;
    case ICAL_LOCATION_PROPERTY:
        if (appointment)
            m_item.set(QStringLiteral("Location"), textOf(p));
        break;
    // libical gives one category per property, its escaped commas as commas:
    // kept as the low comma U+201A, since the store separates categories by commas.
    case ICAL_CATEGORIES_PROPERTY: m_categories << textOf(p).replace(u',', QChar(0x201A)); break;
    case ICAL_CLASS_PROPERTY: {
        const icalproperty_class c = icalproperty_get_class(p);
        m_item.set(QStringLiteral("Sensitivity"), c == ICAL_CLASS_PRIVATE ? 2 : c == ICAL_CLASS_CONFIDENTIAL ? 3 : 0);
        break;
    }
    case ICAL_PRIORITY_PROPERTY: m_item.set(QStringLiteral("Importance"), importanceOf(icalproperty_get_priority(p))); break;
    case ICAL_UID_PROPERTY: m_uid = textOf(p); break;
    case ICAL_CREATED_PROPERTY:
        if (m_item.EntryID().isEmpty()) // an updated item keeps the time it came into the store
            setTime("CreationTime", p);
        break;
    case ICAL_DTSTART_PROPERTY:
        if (task) {
            setTime("StartDate", p);
        } else {
            m_start = LocalTimeOf(p, m_zones, &m_allDay);
            if (!m_start.isValid())
                throw EntryDamage{QStringLiteral("DTSTART ist keine gültige Zeit.")};
        }
        break;
    case ICAL_DTEND_PROPERTY: m_end = LocalTimeOf(p, m_zones); break;
    case ICAL_DURATION_PROPERTY: m_durationSeconds = icaldurationtype_as_int(icalproperty_get_duration(p)); break;
    case ICAL_DUE_PROPERTY: setTime("DueDate", p); break;
    case ICAL_COMPLETED_PROPERTY: setTime("DateCompleted", p); break;
    case ICAL_PERCENTCOMPLETE_PROPERTY: m_item.set(QStringLiteral("PercentComplete"), icalproperty_get_percentcomplete(p)); break;
    case ICAL_STATUS_PROPERTY:
        if (task) {
            const icalproperty_status s = icalproperty_get_status(p);
            const int status = s == ICAL_STATUS_COMPLETED ? 2 : s == ICAL_STATUS_INPROCESS ? 1 : 0;
            m_item.set(QStringLiteral("Status"), status);
            m_item.set(QStringLiteral("Complete"), status == 2);
        }
        break;
    case ICAL_TRANSP_PROPERTY:
        if (appointment)
            m_item.set(QStringLiteral("BusyStatus"), icalproperty_get_transp(p) == ICAL_TRANSP_TRANSPARENT ? 0 : 2);
        break;
    case ICAL_ORGANIZER_PROPERTY:
        if (appointment) {
            icalparameter *cn = icalproperty_get_first_parameter(p, ICAL_CN_PARAMETER);
            m_item.set(QStringLiteral("Organizer"), QString::fromUtf8(cn ? icalparameter_get_cn(cn) : icalproperty_get_organizer(p)));
        }
        break;
    case ICAL_RRULE_PROPERTY:
    case ICAL_RDATE_PROPERTY:
    case ICAL_EXDATE_PROPERTY: m_series << NormalizedRecurrenceLine(p, m_zones); break;
    case ICAL_RECURRENCEID_PROPERTY: m_occurrence = NormalizedRecurrenceLine(p, m_zones); break;
    case ICAL_X_PROPERTY: {
        const QString name = QString::fromUtf8(icalproperty_get_x_name(p)).toUpper();
        if (name == u"X-VX-USER")
            m_userProperties << p;
        else if (name.startsWith(u"X-VX-") && name != u"X-VX-MESSAGECLASS")
            m_extensions << p;
        break;
    }
    default: break;
    }
}

void ComponentReader::alarm(icalcomponent *valarm)
{
    if (m_item.Class() != olAppointment && m_item.Class() != olTask)
        return;
    icalproperty *trigger = icalcomponent_get_first_property(valarm, ICAL_TRIGGER_PROPERTY);
    if (!trigger)
        return;
    m_item.set(QStringLiteral("ReminderSet"), true);
    const icaltriggertype t = icalproperty_get_trigger(trigger);
    if (m_item.Class() == olAppointment && icaltime_is_null_time(t.time))
        m_item.set(QStringLiteral("ReminderMinutesBeforeStart"), -icaldurationtype_as_int(t.duration) / 60);
}

void ComponentReader::finish()
{
    if (m_start.isValid()) {
        m_item.set(QStringLiteral("Start"), m_start);
        QDateTime end = m_end;
        if (!end.isValid())
            end = m_durationSeconds >= 0 ? m_start.addSecs(m_durationSeconds) : m_allDay ? m_start.addDays(1) : m_start;
        if (m_item.Class() == olAppointment) {
            m_item.set(QStringLiteral("End"), end);
            m_item.set(QStringLiteral("AllDayEvent"), m_allDay);
        } else if (m_end.isValid() || m_durationSeconds >= 0) {
            m_item.set(QStringLiteral("End"), end);
        }
    } else if (m_item.Class() == olAppointment) {
        throw EntryDamage{QStringLiteral("Der Termin hat kein DTSTART.")};
    }
    if (!m_categories.isEmpty())
        m_item.set(QStringLiteral("Categories"), JoinCategories(m_categories));
    if (!m_uid.isEmpty())
        SetUserText(m_item, QLatin1String(UidProperty), m_uid);
    if (!m_series.isEmpty()) {
        SetUserText(m_item, QLatin1String(SeriesProperty), m_series.join(QStringLiteral("\r\n")));
        m_item.set(QStringLiteral("IsRecurring"), true);
    }
    if (!m_occurrence.isEmpty())
        SetUserText(m_item, QLatin1String(OccurrenceProperty), m_occurrence);
    for (icalproperty *p : std::as_const(m_extensions)) {
        const QString name = QString::fromUtf8(icalproperty_get_x_name(p)).mid(5);
        try {
            if (!ApplyExtensionField(m_item, name, textOf(p)))
                m_lost << QStringLiteral("X-VX-%1 (kein Feld dieses Namens)").arg(name.toUpper());
        } catch (const StoreError &e) {
            m_lost << QStringLiteral("X-VX-%1 (%2)").arg(name.toUpper(), e.description());
        }
    }
    for (icalproperty *p : std::as_const(m_userProperties))
        if (!ApplyUserProperty(m_item, QString::fromUtf8(icalproperty_get_x(p))))
            m_lost << QStringLiteral("X-VX-USER (keine Benutzereigenschaft)");
}

QString messageClassOf(icalcomponent *component)
{
    for (icalproperty *p = icalcomponent_get_first_property(component, ICAL_X_PROPERTY); p;
         p = icalcomponent_get_next_property(component, ICAL_X_PROPERTY))
        if (qstricmp(icalproperty_get_x_name(p), "X-VX-MESSAGECLASS") == 0)
            return textOf(p);
    return {};
}

} // namespace

namespace {

int classOfKind(icalcomponent_kind kind)
{
    return kind == ICAL_VEVENT_COMPONENT     ? olAppointment
           : kind == ICAL_VTODO_COMPONENT    ? olTask
           : kind == ICAL_VJOURNAL_COMPONENT ? olJournal
                                             : 0;
}

} // namespace

MAPIFolder TargetOfComponent(icalcomponent *component, const CalendarTargets &targets)
{
    switch (classOfKind(icalcomponent_isa(component))) {
    case olAppointment: return targets.appointments;
    case olTask: return targets.tasks;
    case olJournal: return targets.journal;
    default: return {};
    }
}

QString ComponentUidKey(icalcomponent *component, const IcalZones &zones)
{
    const QString uid = QString::fromUtf8(icalcomponent_get_uid(component)).trimmed();
    if (uid.isEmpty())
        return {};
    icalproperty *occurrence = icalcomponent_get_first_property(component, ICAL_RECURRENCEID_PROPERTY);
    return UidKey(uid, occurrence ? NormalizedRecurrenceLine(occurrence, zones) : QString());
}

Item ItemOfComponent(icalcomponent *component, const CalendarTargets &targets, const IcalZones &zones, QStringList &lost,
                     Item existing)
{
    const icalcomponent_kind kind = icalcomponent_isa(component);
    const int itemClass = classOfKind(kind);
    if (itemClass == 0)
        throw EntryDamage{QStringLiteral("%1 hat keinen Platz im Speicher.")
                              .arg(QLatin1String(icalcomponent_kind_to_string(kind)))};
    const MAPIFolder folder = TargetOfComponent(component, targets);
    if (folder.isNull())
        throw EntryDamage{QStringLiteral("Der Informationsspeicher hat keinen Ordner für %1.")
                              .arg(QLatin1String(icalcomponent_kind_to_string(kind)))};
    const QString messageClass = messageClassOf(component);
    const bool ownClass = !messageClass.isEmpty() && ClassOfMessageClass(messageClass) == itemClass;
    Item item = existing;
    if (!item.isNull() && item.Class() == itemClass) {
        ClearForUpdate(item);
        item.setMessageClass(ownClass ? messageClass : MessageClassOfClass(itemClass));
    } else {
        item = ownClass ? folder.Items().Add(messageClass) : folder.Items().Add(itemClass);
    }
    ComponentReader reader(item, zones, lost);
    for (icalproperty *p = icalcomponent_get_first_property(component, ICAL_ANY_PROPERTY); p;
         p = icalcomponent_get_next_property(component, ICAL_ANY_PROPERTY))
        reader.apply(p);
    if (icalcomponent *valarm = icalcomponent_get_first_component(component, ICAL_VALARM_COMPONENT))
        reader.alarm(valarm);
    reader.finish();
    return item;
}
