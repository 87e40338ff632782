#pragma once
// Appointments (VEVENT), tasks (VTODO) and journal entries (VJOURNAL) as
// iCalendar (RFC 5545), through libical. A series stays one item: its
// recurrence lines (RRULE, RDATE, EXDATE) are kept in the user property
// "VX Serie" and IsRecurring is set; a changed occurrence is an item of its
// own with the series' UID and, in "VX Ausnahme", the RECURRENCE-ID it
// replaces. Fields without a home are X-VX-<Feld> lines, user properties
// X-VX-USER lines, as in vCard.

#include "ItemFields.h"

#include <QHash>

#include <libical/ical.h>

void ImportICalendar(const QString &path, const MAPIFolder &target, InterchangeReport &report);
void ExportICalendar(const MAPIFolder &source, const QString &path, InterchangeReport &report);

// The components of a calendar text into the store, as the file import
// reads them: each into the target when it is of the target's kind, else
// into the default folder of its kind in the same store; a component whose
// UID (with its RECURRENCE-ID) an item of that folder carries updates it
// (unless report.updateByUid is off), every other one is a new item; skips
// and notes name sourceName. index keeps the UIDs of the folders across
// calls (null: one for this call only). Throws StoreError when the target
// is no calendar, task or journal folder or the store fails.
void ImportICalendarData(const QByteArray &data, const QString &sourceName, const MAPIFolder &target,
                         InterchangeReport &report, UidIndex *index = nullptr);
// Items (appointments, tasks, journal entries) as one VCALENDAR text, with
// the definitions of the zones it names.
[[nodiscard]] QByteArray ICalendarText(const QList<Item> &items);

// The time zones of one file by TZID; the builtin zones of libical answer
// for the rest. Owns its zones.
class IcalZones
{
public:
    IcalZones() = default;
    ~IcalZones();
    IcalZones(const IcalZones &) = delete;
    IcalZones &operator=(const IcalZones &) = delete;
    void add(icalcomponent *vtimezone); // takes the component
    [[nodiscard]] icaltimezone *find(const QString &tzid) const;

private:
    QHash<QString, icaltimezone *> m_zones;
};

// A date-time property's value as local time; an invalid QDateTime when
// the property has no valid time. allDay tells a DATE value.
[[nodiscard]] QDateTime LocalTimeOf(icalproperty *property, const IcalZones &zones, bool *allDay = nullptr);
// The value for a local time: a DATE when allDay, else in the zone the
// export writes (the system's zone when libical knows it, else UTC).
[[nodiscard]] icaltimetype IcalTimeOf(const QDateTime &when, bool allDay);
// The zone of IcalTimeOf; the UTC zone when times are written in UTC.
[[nodiscard]] icaltimezone *ExportZone();
// A copy of a recurrence property (RRULE, RDATE, EXDATE, RECURRENCE-ID)
// with its times in UTC (dates stay dates), as an iCalendar line.
[[nodiscard]] QString NormalizedRecurrenceLine(icalproperty *property, const IcalZones &zones);

// Where the components go: the folder of each item class.
struct CalendarTargets {
    MAPIFolder appointments, tasks, journal;
};
// The folder for a component of that kind; a null folder for a kind
// without a home or a store without such a folder.
[[nodiscard]] MAPIFolder TargetOfComponent(icalcomponent *component, const CalendarTargets &targets);
// The identity of a component for UidIndex: UID and RECURRENCE-ID as kept.
[[nodiscard]] QString ComponentUidKey(icalcomponent *component, const IcalZones &zones);
// The item of a component: `existing` emptied and filled anew when it is
// given (ClearForUpdate; an update), else a new, unsaved item of the
// component's kind. Throws EntryDamage for a component that cannot be an
// item.
[[nodiscard]] Item ItemOfComponent(icalcomponent *component, const CalendarTargets &targets, const IcalZones &zones,
                                   QStringList &lost, Item existing = {});
// The component of an appointment, task or journal entry (caller owns it).
[[nodiscard]] icalcomponent *ComponentOfItem(const Item &item);
