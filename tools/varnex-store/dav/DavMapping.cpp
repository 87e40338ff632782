#include "DavMapping.h"

#include "interchange/ContentLine.h"
#include "interchange/VCardFormat.h"

#include <QCryptographicHash>
#include <QSet>

namespace {

// iCalendar properties whose content the store holds: the store's value
// replaces them. Others (ATTENDEE, ORGANIZER, GEO, URL, X- of other
// programs ...) stay as the server had them.
bool ownedByStore(icalproperty_kind kind, icalcomponent_kind component)
{
    switch (kind) {
    case ICAL_SUMMARY_PROPERTY: case ICAL_DESCRIPTION_PROPERTY: case ICAL_CATEGORIES_PROPERTY:
    case ICAL_CLASS_PROPERTY: case ICAL_PRIORITY_PROPERTY: case ICAL_UID_PROPERTY: case ICAL_CREATED_PROPERTY:
    case ICAL_DTSTART_PROPERTY: case ICAL_DTEND_PROPERTY: case ICAL_DURATION_PROPERTY: case ICAL_DUE_PROPERTY:
    case ICAL_COMPLETED_PROPERTY: case ICAL_PERCENTCOMPLETE_PROPERTY: case ICAL_RRULE_PROPERTY:
    case ICAL_RDATE_PROPERTY: case ICAL_EXDATE_PROPERTY: case ICAL_RECURRENCEID_PROPERTY: case ICAL_DTSTAMP_PROPERTY:
    case ICAL_LASTMODIFIED_PROPERTY:
        return true;
    case ICAL_LOCATION_PROPERTY: case ICAL_TRANSP_PROPERTY: return component == ICAL_VEVENT_COMPONENT;
    case ICAL_STATUS_PROPERTY: return component == ICAL_VTODO_COMPONENT;
    default: return false;
    }
}

bool isItemComponent(icalcomponent_kind kind)
{
    return kind == ICAL_VEVENT_COMPONENT || kind == ICAL_VTODO_COMPONENT || kind == ICAL_VJOURNAL_COMPONENT;
}

QByteArray icalText(icalcomponent *component)
{
    char *text = icalcomponent_as_ical_string_r(component);
    QByteArray bytes(text);
    icalmemory_free_buffer(text);
    return bytes;
}

// Owns a parsed component.
struct IcalHolder {
    icalcomponent *c = nullptr;
    explicit IcalHolder(icalcomponent *component) : c(component) {}
    ~IcalHolder() { if (c) icalcomponent_free(c); }
    IcalHolder(const IcalHolder &) = delete;
    IcalHolder &operator=(const IcalHolder &) = delete;
};

IcalZones *zonesOf(icalcomponent *calendar, IcalZones &zones)
{
    for (icalcomponent *tz = icalcomponent_get_first_component(calendar, ICAL_VTIMEZONE_COMPONENT); tz;
         tz = icalcomponent_get_next_component(calendar, ICAL_VTIMEZONE_COMPONENT))
        zones.add(icalcomponent_new_clone(tz));
    return &zones;
}

// The RECURRENCE-ID of a component in UTC, "" for the master.
QString occurrenceOf(icalcomponent *component, const IcalZones &zones)
{
    icalproperty *p = icalcomponent_get_first_property(component, ICAL_RECURRENCEID_PROPERTY);
    return p ? NormalizedRecurrenceLine(p, zones) : QString();
}

QByteArray withoutLines(const QByteArray &text, const QList<QByteArray> &names)
{
    QByteArray out;
    out.reserve(text.size());
    for (const QByteArray &line : text.split('\n')) {
        bool drop = false;
        for (const QByteArray &name : names)
            drop = drop || (line.startsWith(name) && (line.size() > name.size()) &&
                            (line.at(name.size()) == ':' || line.at(name.size()) == ';'));
        if (!drop)
            out += line + '\n';
    }
    return out;
}

QString lineName(const QString &line)
{
    int end = 0;
    while (end < line.size() && line.at(end) != u':' && line.at(end) != u';')
        ++end;
    const QString name = line.left(end).toUpper();
    return name.section(u'.', -1);
}

// A decoded content line cut at its first colon outside quotes.
std::pair<QString, QString> splitLine(const QString &line)
{
    bool quoted = false;
    for (int i = 0; i < line.size(); ++i) {
        if (line.at(i) == u'"')
            quoted = !quoted;
        else if (line.at(i) == u':' && !quoted)
            return {line.left(i), line.mid(i + 1)};
    }
    return {line, QString()};
}

QByteArray vcardText(const Item &contact, const QByteArray &raw, const DavFolders &folders)
{
    const bool v4 = raw.contains("VERSION:4.0");
    ContentWriter writer;
    WriteVCard(contact, v4 ? VCardVersion::V4 : VCardVersion::V3, writer);
    if (raw.isEmpty())
        return writer.bytes();
    const QList<ContentBlock> blocks = ReadContentBlocks(raw, QStringLiteral("VCARD"));
    if (blocks.isEmpty() || !blocks.first().damage.isEmpty())
        return writer.bytes();
    // The names the mapping passes over, found by reading the last text anew
    // into an item that is never saved.
    CardNotes notes;
    try {
        (void)ContactOfCard(blocks.first().lines, folders.contacts, notes);
    } catch (const EntryDamage &) {
    }
    if (notes.unknown.isEmpty())
        return writer.bytes();
    QByteArray text = writer.bytes();
    const qsizetype end = text.lastIndexOf("END:VCARD");
    text.truncate(end);
    ContentWriter kept;
    for (const LogicalLine &logical : UnfoldLines(raw)) {
        const QString line = DecodeLineBytes(logical.raw);
        if (notes.unknown.contains(lineName(line))) {
            const auto [head, value] = splitLine(line);
            kept.add(head, value);
        }
    }
    return text + kept.bytes() + "END:VCARD\r\n";
}

QByteArray calendarText(const QList<Item> &items, const QByteArray &raw)
{
    IcalHolder calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT));
    icalcomponent_add_property(calendar.c, icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.c, icalproperty_new_prodid("-//Nordquell//Varnex//DE"));
    if (ExportZone() != icaltimezone_get_utc_timezone())
        icalcomponent_add_component(calendar.c, icalcomponent_new_clone(icaltimezone_get_component(ExportZone())));
    IcalHolder old(raw.isEmpty() ? nullptr : icalparser_parse_string(raw.constData()));
    IcalZones zones;
    if (old.c)
        zonesOf(old.c, zones);
    for (const Item &item : items) {
        icalcomponent *component = ComponentOfItem(item);
        const icalcomponent_kind kind = icalcomponent_isa(component);
        const QString occurrence = occurrenceOf(component, zones);
        for (icalcomponent *was = old.c ? icalcomponent_get_first_component(old.c, kind) : nullptr; was;
             was = icalcomponent_get_next_component(old.c, kind)) {
            if (occurrenceOf(was, zones) != occurrence)
                continue;
            for (icalproperty *p = icalcomponent_get_first_property(was, ICAL_ANY_PROPERTY); p;
                 p = icalcomponent_get_next_property(was, ICAL_ANY_PROPERTY)) {
                const icalproperty_kind pk = icalproperty_isa(p);
                const bool ownX = pk == ICAL_X_PROPERTY && qstrnicmp(icalproperty_get_x_name(p), "X-VX-", 5) == 0;
                if (!ownedByStore(pk, kind) && !ownX)
                    icalcomponent_add_property(component, icalproperty_new_clone(p));
            }
            for (icalcomponent *sub = icalcomponent_get_first_component(was, ICAL_ANY_COMPONENT); sub;
                 sub = icalcomponent_get_next_component(was, ICAL_ANY_COMPONENT))
                if (icalcomponent_isa(sub) != ICAL_VALARM_COMPONENT)
                    icalcomponent_add_component(component, icalcomponent_new_clone(sub));
            break;
        }
        icalcomponent_add_component(calendar.c, component);
    }
    return icalText(calendar.c);
}

} // namespace

QList<Item> ItemsOfServerText(bool addressBook, const QByteArray &text, const DavFolders &folders, QString *uid)
{
    QList<Item> items;
    if (addressBook) {
        const QList<ContentBlock> blocks = ReadContentBlocks(text, QStringLiteral("VCARD"));
        if (blocks.isEmpty())
            throw EntryDamage{QStringLiteral("Die Adresse enthält keine vCard.")};
        if (!blocks.first().damage.isEmpty())
            throw EntryDamage{blocks.first().damage};
        CardNotes notes;
        items << ContactOfCard(blocks.first().lines, folders.contacts, notes);
    } else {
        IcalHolder calendar(icalparser_parse_string(text.constData()));
        if (!calendar.c || icalcomponent_isa(calendar.c) != ICAL_VCALENDAR_COMPONENT)
            throw EntryDamage{QStringLiteral("Die Adresse enthält keinen Kalender.")};
        IcalZones zones;
        zonesOf(calendar.c, zones);
        for (icalcomponent *c = icalcomponent_get_first_component(calendar.c, ICAL_ANY_COMPONENT); c;
             c = icalcomponent_get_next_component(calendar.c, ICAL_ANY_COMPONENT)) {
            if (!isItemComponent(icalcomponent_isa(c)))
                continue;
            QStringList lost;
            items << ItemOfComponent(c, folders.calendar, zones, lost);
        }
        if (items.isEmpty())
            throw EntryDamage{QStringLiteral("Der Kalendereintrag enthält keinen Termin, keine Aufgabe und keinen Journaleintrag.")};
    }
    if (uid)
        *uid = UserText(items.first(), QLatin1String(UidProperty));
    return items;
}

QByteArray ServerTextOfItems(bool addressBook, const QList<Item> &items, const QByteArray &raw, const DavFolders &folders)
{
    return addressBook ? vcardText(items.first(), raw, folders) : calendarText(items, raw);
}

QByteArray ContentHash(bool addressBook, const QList<Item> &items)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const Item &item : items) {
        if (addressBook) {
            ContentWriter writer;
            WriteVCard(item, VCardVersion::V4, writer);
            hash.addData(withoutLines(writer.bytes(), {"REV", "X-VX-CREATIONTIME"}));
        } else {
            IcalHolder component(ComponentOfItem(item));
            hash.addData(withoutLines(icalText(component.c), {"DTSTAMP", "CREATED", "X-VX-CREATIONTIME"}));
        }
    }
    return hash.result();
}

qint64 ChangeStamp(const QList<Item> &items)
{
    qint64 stamp = 0;
    for (const Item &item : items) {
        const QDateTime when = item.LastModificationTime();
        stamp += when.date().toJulianDay() * 86400000 + when.time().msecsSinceStartOfDay();
    }
    return stamp;
}

void TakeContent(Item &target, const Item &source)
{
    static const QSet<QString> composite = {
        QStringLiteral("FullName"), QStringLiteral("Title"), QStringLiteral("FirstName"), QStringLiteral("MiddleName"),
        QStringLiteral("LastName"), QStringLiteral("Suffix"), QStringLiteral("Duration"), QStringLiteral("CreationTime"),
        QStringLiteral("MessageClass")};
    static const QStringList addresses = {QStringLiteral("BusinessAddress"), QStringLiteral("HomeAddress"),
                                          QStringLiteral("OtherAddress")};
    const bool contact = source.Class() == olContact;
    if (target.MessageClass() != source.MessageClass())
        target.setMessageClass(source.MessageClass());
    for (const QString &name : source.PropertyNames()) {
        const PropDef &def = PropertyAt(PropertySlot(name));
        if (def.readOnly || composite.contains(name))
            continue;
        if (contact && std::any_of(addresses.begin(), addresses.end(), [&](const QString &a) { return name.startsWith(a); }))
            continue;
        const QVariant value = source.get(name);
        if (target.get(name) != value)
            target.set(name, value);
    }
    if (contact) {
        SetNameFields(target, NameFieldsOf(source), source.text(QStringLiteral("FullName")));
        for (const QString &prefix : addresses)
            SetAddressFields(target, prefix, AddressFieldsOf(source, prefix), source.text(prefix));
    } else if (target.hasProperty(QStringLiteral("End"))) {
        // Start moves End along; End last gives the length of the source.
        target.set(QStringLiteral("Start"), source.get(QStringLiteral("Start")));
        target.set(QStringLiteral("End"), source.get(QStringLiteral("End")));
    }
    ::UserProperties props = target.UserProperties();
    while (props.Count() > 0)
        props.Remove(1);
    const ::UserProperties from = source.UserProperties();
    for (int i = 1; i <= from.Count(); ++i) {
        const UserProperty p = from.Item(i);
        props.Add(p.Name(), p.Type()).setValue(p.Value());
    }
}
