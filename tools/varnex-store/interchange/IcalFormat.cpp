#include "IcalFormat.h"

#include "ContentLine.h"
#include "Interchange.h"

#include <QDir>

namespace {

// One component of a calendar file as text, with its first line; damage
// says why it cannot be used (a missing END).
struct CalendarEntry {
    QString kind; // VEVENT, VTODO, VJOURNAL, VTIMEZONE ...
    QByteArray text;
    int line = 0;
    QString damage;
};

struct CalendarFile {
    QList<CalendarEntry> entries;
    QList<int> strayLines;
    bool sawCalendar = false;
};

// Components that never nest inside another; a BEGIN of one of them inside
// an open component means that component lacks its END.
bool isTopLevel(const QString &kind)
{
    static const QStringList kinds = {QStringLiteral("VCALENDAR"), QStringLiteral("VEVENT"), QStringLiteral("VTODO"),
                                      QStringLiteral("VJOURNAL"), QStringLiteral("VTIMEZONE"), QStringLiteral("VFREEBUSY")};
    return kinds.contains(kind);
}

// Cuts the file into its components along the BEGIN and END lines, so that
// each is parsed on its own (a damaged one costs only itself) and known by
// its line. Lines are unfolded and decoded first (UTF-8, else Latin-1), so
// libical always gets UTF-8.
CalendarFile splitCalendar(const QByteArray &data)
{
    CalendarFile file;
    bool inCalendar = false;
    CalendarEntry *open = nullptr;
    int depth = 0;
    for (const LogicalLine &logical : UnfoldLines(data)) {
        const QString line = DecodeLineBytes(logical.raw);
        const QString head = line.trimmed().toUpper();
        const bool begin = head.startsWith(u"BEGIN:"), end = head.startsWith(u"END:");
        const QString kind = begin ? head.mid(6) : end ? head.mid(4) : QString();
        if (open && ((begin && isTopLevel(kind)) || (end && depth == 0 && kind != open->kind))) {
            open->damage = QStringLiteral("BEGIN:%1 ohne END:%1").arg(open->kind);
            open = nullptr;
        }
        if (open) {
            open->text += line.toUtf8() + "\r\n";
            if (begin)
                ++depth;
            else if (end && depth > 0)
                --depth;
            else if (end)
                open = nullptr;
        } else if (begin && kind == u"VCALENDAR") {
            inCalendar = file.sawCalendar = true;
        } else if (end && kind == u"VCALENDAR") {
            inCalendar = false;
        } else if (begin && inCalendar) {
            file.entries.append({kind, line.toUtf8() + "\r\n", logical.number, {}});
            open = &file.entries.last();
            depth = 0;
        } else if (!inCalendar && !head.isEmpty()) {
            file.strayLines << logical.number;
        }
    }
    if (open)
        open->damage = QStringLiteral("Die Datei endet vor END:%1").arg(open->kind);
    return file;
}

// The lines libical could not read (it leaves X-LIC-ERROR in their place),
// taken out of the component and its alarms; each costs only itself.
QStringList takeParseErrors(icalcomponent *component)
{
    QStringList errors;
    QList<icalproperty *> found;
    for (icalproperty *p = icalcomponent_get_first_property(component, ICAL_XLICERROR_PROPERTY); p;
         p = icalcomponent_get_next_property(component, ICAL_XLICERROR_PROPERTY))
        found << p;
    for (icalproperty *p : std::as_const(found)) {
        errors << QString::fromUtf8(icalproperty_get_xlicerror(p));
        icalcomponent_remove_property(component, p);
        icalproperty_free(p);
    }
    for (icalcomponent *sub = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT); sub;
         sub = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT))
        errors << takeParseErrors(sub);
    return errors;
}

CalendarTargets targetsFor(const MAPIFolder &target)
{
    auto folderFor = [&](int itemClass, int folderType) {
        return target.DefaultItemType() == itemClass ? target : DefaultFolderInStore(target, folderType);
    };
    const CalendarTargets targets{folderFor(olAppointment, olFolderCalendar), folderFor(olTask, olFolderTasks),
                                  folderFor(olJournal, olFolderJournal)};
    const int type = target.DefaultItemType();
    if (type != olAppointment && type != olTask && type != olJournal)
        throw StoreError(StoreErrTypeMismatch,
                         QStringLiteral("Der Ordner \"%1\" ist kein Kalender-, Aufgaben- oder Journalordner.").arg(target.Name()));
    return targets;
}

void importCalendar(const QString &file, const QByteArray &data, const CalendarTargets &targets, InterchangeReport &report,
                    QSet<QString> &kinds, UidIndex &index, ImportBatch &batch)
{
    const CalendarFile calendar = splitCalendar(data);
    for (const CalendarEntry &entry : calendar.entries)
        kinds.insert(entry.kind);
    if (!calendar.sawCalendar) {
        report.skip(EntryPosition(file), QStringLiteral("Die Datei enthält keinen Kalender (BEGIN:VCALENDAR fehlt)."));
        return;
    }
    if (!calendar.strayLines.isEmpty())
        report.note(QStringLiteral("%1: %2 Zeile(n) außerhalb des Kalenders übergangen (erste: Zeile %3).")
                        .arg(EntryPosition(file))
                        .arg(calendar.strayLines.size())
                        .arg(calendar.strayLines.first()));
    IcalZones zones;
    for (const CalendarEntry &entry : calendar.entries)
        if (entry.kind == u"VTIMEZONE" && entry.damage.isEmpty())
            if (icalcomponent *vtimezone = icalparser_parse_string(entry.text.constData()))
                zones.add(vtimezone);
    for (const CalendarEntry &entry : calendar.entries) {
        if (entry.kind == u"VTIMEZONE")
            continue;
        const QString where = EntryPosition(file, entry.line);
        QStringList lost;
        const Item saved = ImportEntry(report, where, [&] {
            if (!entry.damage.isEmpty())
                throw EntryDamage{entry.damage};
            icalcomponent *component = icalparser_parse_string(entry.text.constData());
            if (!component)
                throw EntryDamage{QStringLiteral("libical kann den Eintrag nicht lesen.")};
            for (const QString &error : takeParseErrors(component))
                lost << QStringLiteral("fehlerhafte Zeile (%1)").arg(error);
            try {
                Item existing;
                const QString key = report.updateByUid ? ComponentUidKey(component, zones) : QString();
                const MAPIFolder folder = TargetOfComponent(component, targets);
                if (!key.isEmpty() && !folder.isNull())
                    existing = index.find(folder, key);
                Item item = ItemOfComponent(component, targets, zones, lost, existing);
                icalcomponent_free(component);
                return item;
            } catch (...) {
                icalcomponent_free(component);
                throw;
            }
        });
        if (!saved.isNull()) {
            index.add(saved);
            batch.step();
        }
        for (const QString &text : std::as_const(lost))
            report.note(QStringLiteral("%1: nicht übernommen: %2").arg(where, text));
    }
}

// The calendar text of components, with the export zone's definition.
QByteArray calendarText(const QList<icalcomponent *> &components)
{
    icalcomponent *calendar = icalcomponent_new(ICAL_VCALENDAR_COMPONENT);
    icalcomponent_add_property(calendar, icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar, icalproperty_new_prodid("-//Nordquell//Varnex//DE"));
    if (ExportZone() != icaltimezone_get_utc_timezone())
        icalcomponent_add_component(calendar, icalcomponent_new_clone(icaltimezone_get_component(ExportZone())));
    for (icalcomponent *c : components)
        icalcomponent_add_component(calendar, c);
    char *text = icalcomponent_as_ical_string_r(calendar);
    QByteArray bytes(text);
    icalmemory_free_buffer(text);
    icalcomponent_free(calendar);
    return bytes;
}

bool isCalendarItem(int itemClass)
{
    return itemClass == olAppointment || itemClass == olTask || itemClass == olJournal;
}

} // namespace

void ImportICalendar(const QString &path, const MAPIFolder &target, InterchangeReport &report)
{
    const CalendarTargets targets = targetsFor(target);
    QSet<QString> kinds;
    UidIndex index;
    ImportBatch batch(target, report);
    for (const QString &file : InputFiles(path, {QStringLiteral("ics"), QStringLiteral("ical"), QStringLiteral("ifb")})) {
        try {
            importCalendar(file, ReadInputFile(file), targets, report, kinds, index, batch);
        } catch (const EntryDamage &damage) {
            report.skip(EntryPosition(file), damage.reason);
        }
    }
    const QList<std::pair<const char *, const MAPIFolder *>> byKind = {
        {"VEVENT", &targets.appointments}, {"VTODO", &targets.tasks}, {"VJOURNAL", &targets.journal}};
    for (const auto &[kind, folder] : byKind)
        if (kinds.contains(QLatin1String(kind)) && !(*folder == target))
            report.note(QStringLiteral("Die Einträge %1 liegen im Ordner \"%2\".")
                            .arg(QLatin1String(kind), folder->isNull() ? QStringLiteral("(keiner)") : folder->Name()));
}

void ImportICalendarData(const QByteArray &data, const QString &sourceName, const MAPIFolder &target,
                         InterchangeReport &report, UidIndex *index)
{
    const CalendarTargets targets = targetsFor(target);
    QSet<QString> kinds;
    UidIndex own;
    ImportBatch batch(target, report);
    importCalendar(sourceName, data, targets, report, kinds, index ? *index : own, batch);
}

QByteArray ICalendarText(const QList<Item> &items)
{
    QList<icalcomponent *> components;
    for (const Item &item : items)
        if (isCalendarItem(item.Class()))
            components << ComponentOfItem(item);
    return calendarText(components);
}

void ExportICalendar(const MAPIFolder &source, const QString &path, InterchangeReport &report)
{
    const bool perItem = ExportsToFolder(path);
    if (perItem && !QDir().mkpath(path))
        throw StoreError(StoreErrDisk, QStringLiteral("Der Ordner %1 kann nicht angelegt werden.").arg(QDir::toNativeSeparators(path)));
    QList<icalcomponent *> components;
    QString error;
    for (const Item &item : source.Items()) {
        if (!isCalendarItem(item.Class())) {
            report.skip(item.Subject(), QStringLiteral("kein Termin, keine Aufgabe und kein Journaleintrag (%1)")
                                            .arg(item.MessageClass()));
            continue;
        }
        components << ComponentOfItem(item);
        if (!perItem)
            continue;
        const QString file = ExportFileName(path, item.Subject().isEmpty() ? QStringLiteral("Termin") : item.Subject(),
                                            QStringLiteral("ics"));
        const QByteArray bytes = calendarText(components);
        components.clear();
        if (!WriteFileAtomically(file, bytes, &error))
            throw StoreError(StoreErrDisk, error);
        report.countExported();
    }
    if (perItem)
        return;
    const int count = int(components.size());
    if (!WriteFileAtomically(path, calendarText(components), &error))
        throw StoreError(StoreErrDisk, error);
    for (int i = 0; i < count; ++i)
        report.countExported();
}
