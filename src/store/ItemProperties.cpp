// Reading and writing item properties by name, with the composite fields
// (ItemSchema.h) kept consistent.
#include "store/Item.h"

#include "store/ItemData_p.h"
#include "store/ItemSchema.h"
#include "store/StoreError.h"
#include "store/StoreFaults.h"
#include "store/StoreFaults_p.h"
#include "store/StoreFile_p.h"
#include "store/StoreIds_p.h"
#include "store/StoreTime_p.h"

#include <QRegularExpression>

#include <array>

namespace {

struct Slots {
    int itemClass, entryId, creationTime, lastModification, messageClass, subject, body;
    int start, end, duration;
    int fullName;
    std::array<int, 5> nameParts; // title, first, middle, last, suffix
    std::array<std::array<int, 7>, 3> addresses; // whole, street, box, postal code, city, state, country
};

const Slots &slotsOf()
{
    static const Slots s = [] {
        Slots s{};
        auto slot = [](const char *name) { return PropertySlot(QLatin1String(name)); };
        s.itemClass = slot("Class");
        s.entryId = slot("EntryID");
        s.creationTime = slot("CreationTime");
        s.lastModification = slot("LastModificationTime");
        s.messageClass = slot("MessageClass");
        s.subject = slot("Subject");
        s.body = slot("Body");
        s.start = slot("Start");
        s.end = slot("End");
        s.duration = slot("Duration");
        s.fullName = slot("FullName");
        s.nameParts = {slot("Title"), slot("FirstName"), slot("MiddleName"), slot("LastName"), slot("Suffix")};
        const char *kinds[] = {"Business", "Home", "Other"};
        const char *parts[] = {"", "Street", "PostOfficeBox", "PostalCode", "City", "State", "Country"};
        for (int k = 0; k < 3; ++k)
            for (int p = 0; p < 7; ++p)
                s.addresses[k][p] = slot((QByteArray(kinds[k]) + "Address" + parts[p]).constData());
        return s;
    }();
    return s;
}

QVariant stored(const ItemData &d, int slot)
{
    const QVariant *v = d.value(slot);
    return v ? *v : EmptyValue(PropertyAt(slot));
}

QString storedText(const ItemData &d, int slot)
{
    return stored(d, slot).toString();
}

int minutesBetween(const QDateTime &from, const QDateTime &to)
{
    if (IsNoDate(from) || IsNoDate(to))
        return 0;
    return int(from.secsTo(to) / 60);
}

void putNameParts(ItemData &d, const NameParts &p)
{
    const Slots &s = slotsOf();
    const QString values[] = {p.title, p.firstName, p.middleName, p.lastName, p.suffix};
    for (int i = 0; i < 5; ++i)
        d.put(s.nameParts[size_t(i)], values[i]);
}

NameParts namePartsOf(const ItemData &d)
{
    const Slots &s = slotsOf();
    return {storedText(d, s.nameParts[0]), storedText(d, s.nameParts[1]), storedText(d, s.nameParts[2]),
            storedText(d, s.nameParts[3]), storedText(d, s.nameParts[4])};
}

// Contact: full name and addresses. Returns true when slot was one of them.
bool setContactComposite(ItemData &d, int slot, const QVariant &value)
{
    const Slots &s = slotsOf();
    if (slot == s.fullName) {
        d.put(slot, value);
        // A company's name leaves FullName empty and the person's parts alone.
        if (!value.toString().trimmed().isEmpty())
            putNameParts(d, SplitFullName(value.toString()));
        return true;
    }
    if (std::find(s.nameParts.begin(), s.nameParts.end(), slot) != s.nameParts.end()) {
        d.put(slot, value);
        // Writing back what FullName already says (a restore, an undo) keeps
        // it as written.
        const QString whole = storedText(d, s.fullName);
        const NameParts parts = namePartsOf(d);
        if (SplitFullName(whole) != parts)
            d.put(s.fullName, ComposeFullName(parts, whole));
        return true;
    }
    for (const auto &a : s.addresses) {
        const auto at = std::find(a.begin(), a.end(), slot);
        if (at == a.end())
            continue;
        d.put(slot, value);
        if (at == a.begin()) {
            const AddressParts p = SplitAddress(value.toString());
            const QString values[] = {p.street, p.postOfficeBox, p.postalCode, p.city, p.state, p.country};
            for (int i = 0; i < 6; ++i)
                d.put(a[size_t(i) + 1], values[i]);
        } else {
            const AddressParts p{storedText(d, a[1]), storedText(d, a[2]), storedText(d, a[3]),
                                 storedText(d, a[4]), storedText(d, a[5]), storedText(d, a[6])};
            d.put(a[0], ComposeAddress(p));
        }
        return true;
    }
    return false;
}

// Appointment and journal times. Returns true when slot was one of them.
bool setTimes(ItemData &d, int slot, const QVariant &value)
{
    const Slots &s = slotsOf();
    const bool appointment = d.itemClass == olAppointment;
    if (slot == s.start) {
        const QDateTime oldStart = stored(d, s.start).toDateTime();
        const QDateTime oldEnd = stored(d, s.end).toDateTime();
        d.put(slot, value);
        if (appointment && !IsNoDate(oldStart) && !IsNoDate(oldEnd) && !IsNoDate(value.toDateTime()))
            d.put(s.end, value.toDateTime().addSecs(oldStart.secsTo(oldEnd)));
        return true;
    }
    if (slot == s.duration) {
        if (appointment) {
            const QDateTime start = stored(d, s.start).toDateTime();
            if (!IsNoDate(start))
                d.put(s.end, start.addSecs(qint64(value.toInt()) * 60));
        } else {
            d.put(slot, value);
        }
        return true;
    }
    if (slot == s.end && !appointment) {
        d.put(s.duration, minutesBetween(stored(d, s.start).toDateTime(), value.toDateTime()));
        return true;
    }
    return false;
}

} // namespace

void ItemData::ensureDecoded()
{
    if (!decoded)
        DecodeItem(*this, *store);
}

const QVariant *ItemData::value(int slot) const
{
    const auto it = std::lower_bound(props.begin(), props.end(), slot,
                                     [](const auto &p, int s) { return p.first < s; });
    return it != props.end() && it->first == slot ? &it->second : nullptr;
}

void ItemData::put(int slot, const QVariant &v)
{
    const auto it = std::lower_bound(props.begin(), props.end(), slot,
                                     [](const auto &p, int s) { return p.first < s; });
    const bool empty = v == EmptyValue(PropertyAt(slot));
    if (it != props.end() && it->first == slot) {
        if (empty)
            props.erase(it);
        else
            it->second = v;
    } else if (!empty) {
        props.insert(it, {slot, v});
    }
}

int ItemData::userPropIndex(const QString &name) const
{
    for (int i = 0; i < userProps.size(); ++i)
        if (userProps.at(i).name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QVariant Item::get(const QString &name) const
{
    ItemData &d = checked();
    const int slot = PropertySlotFor(d.itemClass, name);
    if (slot < 0)
        throw StoreError(StoreErrUnknownMember, QStringLiteral("Das Element hat keine Eigenschaft \"%1\".").arg(name));
    const Slots &s = slotsOf();
    if (slot == s.entryId)
        return EntryID();
    if (ItemFaultsActive() && d.id != 0)
        CheckItemFault(StoreFaults::FailRead, EntryID());
    if (slot == s.itemClass)
        return d.itemClass;
    if (slot == s.messageClass)
        return d.messageClass;
    if (slot == s.creationTime)
        return d.created != 0 ? DecodeItemTime(d.created) : NoDate();
    if (slot == s.lastModification)
        return d.modified != 0 ? DecodeItemTime(d.modified) : NoDate();
    d.ensureDecoded();
    if (slot == s.duration && d.itemClass == olAppointment)
        return minutesBetween(stored(d, s.start).toDateTime(), stored(d, s.end).toDateTime());
    if (slot == s.end && d.itemClass == olJournal) {
        const QDateTime start = stored(d, s.start).toDateTime();
        return IsNoDate(start) ? NoDate() : start.addSecs(qint64(stored(d, s.duration).toInt()) * 60);
    }
    return stored(d, slot);
}

void Item::set(const QString &name, const QVariant &value)
{
    ItemData &d = checked();
    const int slot = PropertySlotFor(d.itemClass, name);
    if (slot < 0)
        throw StoreError(StoreErrUnknownMember, QStringLiteral("Das Element hat keine Eigenschaft \"%1\".").arg(name));
    const PropDef &def = PropertyAt(slot);
    const Slots &s = slotsOf();
    const QVariant converted = ConvertForProperty(def, value);
    if (slot == s.messageClass) {
        d.messageClass = converted.toString();
    } else if (slot == s.creationTime && d.id == 0) {
        d.created = IsNoDate(converted.toDateTime()) ? 0 : EncodeStoreTime(converted.toDateTime());
    } else if (def.readOnly) {
        throw StoreError(StoreErrReadOnly, QStringLiteral("Die Eigenschaft \"%1\" kann nicht geändert werden.").arg(name));
    } else {
        d.ensureDecoded();
        const bool composite = (d.itemClass == olContact && setContactComposite(d, slot, converted))
                               || ((d.itemClass == olAppointment || d.itemClass == olJournal)
                                   && setTimes(d, slot, converted));
        if (!composite)
            d.put(slot, converted);
        if (d.itemClass == olNote && slot == s.body)
            d.put(s.subject, converted.toString().section(QRegularExpression(QStringLiteral("\\r\\n|\\n|\\r")), 0, 0));
    }
    d.dirty = true;
}

QString Item::text(const QString &name) const
{
    return TextOfValue(get(name));
}

bool Item::hasProperty(const QString &name) const
{
    return PropertySlotFor(checked().itemClass, name) >= 0;
}

QStringList Item::PropertyNames() const
{
    return PropertyNamesOf(checked().itemClass);
}
