#include "store/ItemSchema.h"

#include "store/StoreConstants.h"
#include "store/StoreError.h"

#include <QHash>

namespace {

constexpr unsigned C = BitContact, A = BitAppointment, T = BitTask, M = BitMail, P = BitPost,
                   N = BitNote, J = BitJournal, D = BitDistList, ALL = BitAll;

using PT = PropType;

// Every property of every class. Item identity and times come first; they
// are answered by the item itself and are read-only (CreationTime may be set
// once, before the first Save, by importers and tests).
const PropDef s_props[] = {
    {"Class", PT::Integer, ALL, 0, true},
    {"EntryID", PT::Text, ALL, 0, true},
    {"CreationTime", PT::Date, ALL, 0, true},
    {"LastModificationTime", PT::Date, ALL, 0, true},
    {"MessageClass", PT::Text, ALL, 0, false},
    {"Subject", PT::Text, ALL, 0, false},
    {"Body", PT::Text, ALL, 0, false},
    {"Categories", PT::Text, ALL, 0, false},
    {"BillingInformation", PT::Text, ALL, 0, false},
    {"Mileage", PT::Text, ALL, 0, false},
    {"Companies", PT::Text, ALL, 0, false},
    {"Importance", PT::Integer, ALL, 1, false},
    {"Sensitivity", PT::Integer, ALL, 0, false},
    // Appointment
    {"Start", PT::Date, A | J, 0, false},
    {"End", PT::Date, A | J, 0, false},
    {"Duration", PT::Integer, A | J, 0, false},
    {"AllDayEvent", PT::Boolean, A, 0, false},
    {"BusyStatus", PT::Integer, A, olBusy, false},
    {"IsRecurring", PT::Boolean, A | T, 0, false},
    {"Location", PT::Text, A, 0, false},
    {"ReminderSet", PT::Boolean, A | T, 0, false},
    {"ReminderMinutesBeforeStart", PT::Integer, A, 15, false},
    {"Organizer", PT::Text, A, 0, false},
    // Task
    {"StartDate", PT::Date, T, 0, false},
    {"DueDate", PT::Date, T, 0, false},
    {"DateCompleted", PT::Date, T, 0, false},
    {"Owner", PT::Text, T, 0, false},
    {"Role", PT::Text, T, 0, false},
    {"ContactNames", PT::Text, T | J, 0, false},
    {"Status", PT::Integer, T, 0, false},
    {"PercentComplete", PT::Integer, T, 0, false},
    {"Complete", PT::Boolean, T, 0, false},
    // Mail and post
    {"SenderName", PT::Text, M | P, 0, false},
    {"SenderEmailAddress", PT::Text, M | P, 0, false},
    {"To", PT::Text, M, 0, false},
    {"CC", PT::Text, M, 0, false},
    {"BCC", PT::Text, M, 0, false},
    {"SentOn", PT::Date, M | P, 0, false},
    {"ReceivedTime", PT::Date, M | P, 0, false},
    {"UnRead", PT::Boolean, M | P, 0, false},
    // Note
    {"Color", PT::Integer, N, olYellow, false},
    // Journal
    {"Type", PT::Text, J, 0, false},
    // Distribution list
    {"DLName", PT::Text, D, 0, false},
    {"MemberCount", PT::Integer, D, 0, false},
    // Contact: names
    {"FullName", PT::Text, C, 0, false},
    {"Title", PT::Text, C, 0, false},
    {"FirstName", PT::Text, C, 0, false},
    {"MiddleName", PT::Text, C, 0, false},
    {"LastName", PT::Text, C, 0, false},
    {"Suffix", PT::Text, C, 0, false},
    {"FileAs", PT::Text, C, 0, false},
    {"CompanyName", PT::Text, C, 0, false},
    {"NickName", PT::Text, C, 0, false},
    {"Initials", PT::Text, C, 0, false},
    // Contact: addresses
    {"BusinessAddress", PT::Text, C, 0, false},
    {"BusinessAddressStreet", PT::Text, C, 0, false},
    {"BusinessAddressPostOfficeBox", PT::Text, C, 0, false},
    {"BusinessAddressPostalCode", PT::Text, C, 0, false},
    {"BusinessAddressCity", PT::Text, C, 0, false},
    {"BusinessAddressState", PT::Text, C, 0, false},
    {"BusinessAddressCountry", PT::Text, C, 0, false},
    {"HomeAddress", PT::Text, C, 0, false},
    {"HomeAddressStreet", PT::Text, C, 0, false},
    {"HomeAddressPostOfficeBox", PT::Text, C, 0, false},
    {"HomeAddressPostalCode", PT::Text, C, 0, false},
    {"HomeAddressCity", PT::Text, C, 0, false},
    {"HomeAddressState", PT::Text, C, 0, false},
    {"HomeAddressCountry", PT::Text, C, 0, false},
    {"OtherAddress", PT::Text, C, 0, false},
    {"OtherAddressStreet", PT::Text, C, 0, false},
    {"OtherAddressPostOfficeBox", PT::Text, C, 0, false},
    {"OtherAddressPostalCode", PT::Text, C, 0, false},
    {"OtherAddressCity", PT::Text, C, 0, false},
    {"OtherAddressState", PT::Text, C, 0, false},
    {"OtherAddressCountry", PT::Text, C, 0, false},
    // Contact: telephone
    {"BusinessFaxNumber", PT::Text, C, 0, false},
    {"HomeFaxNumber", PT::Text, C, 0, false},
    {"OtherFaxNumber", PT::Text, C, 0, false},
    {"BusinessTelephoneNumber", PT::Text, C, 0, false},
    {"HomeTelephoneNumber", PT::Text, C, 0, false},
    {"MobileTelephoneNumber", PT::Text, C, 0, false},
    {"AssistantTelephoneNumber", PT::Text, C, 0, false},
    {"Business2TelephoneNumber", PT::Text, C, 0, false},
    {"CallbackTelephoneNumber", PT::Text, C, 0, false},
    {"CarTelephoneNumber", PT::Text, C, 0, false},
    {"CompanyMainTelephoneNumber", PT::Text, C, 0, false},
    {"Home2TelephoneNumber", PT::Text, C, 0, false},
    {"ISDNNumber", PT::Text, C, 0, false},
    {"OtherTelephoneNumber", PT::Text, C, 0, false},
    {"PagerNumber", PT::Text, C, 0, false},
    {"PrimaryTelephoneNumber", PT::Text, C, 0, false},
    {"RadioTelephoneNumber", PT::Text, C, 0, false},
    {"TelexNumber", PT::Text, C, 0, false},
    {"TTYTDDTelephoneNumber", PT::Text, C, 0, false},
    // Contact: the rest of the field catalogue
    {"Department", PT::Text, C, 0, false},
    {"Profession", PT::Text, C, 0, false},
    {"OfficeLocation", PT::Text, C, 0, false},
    {"ComputerNetworkName", PT::Text, C, 0, false},
    {"Email1Address", PT::Text, C, 0, false},
    {"Email1AddressType", PT::Text, C, 0, false},
    {"Email1DisplayName", PT::Text, C, 0, false},
    {"Email2Address", PT::Text, C, 0, false},
    {"Email2AddressType", PT::Text, C, 0, false},
    {"Email2DisplayName", PT::Text, C, 0, false},
    {"Email3Address", PT::Text, C, 0, false},
    {"Email3AddressType", PT::Text, C, 0, false},
    {"Email3DisplayName", PT::Text, C, 0, false},
    {"ReferredBy", PT::Text, C, 0, false},
    {"FTPSite", PT::Text, C, 0, false},
    {"Birthday", PT::Date, C, 0, false},
    {"Anniversary", PT::Date, C, 0, false},
    {"Hobby", PT::Text, C, 0, false},
    {"IMAddress", PT::Text, C, 0, false},
    {"Children", PT::Text, C, 0, false},
    {"Account", PT::Text, C, 0, false},
    {"CustomerID", PT::Text, C, 0, false},
    {"NetMeetingAlias", PT::Text, C, 0, false},
    {"NetMeetingServer", PT::Text, C, 0, false},
    {"OrganizationalIDNumber", PT::Text, C, 0, false},
    {"Spouse", PT::Text, C, 0, false},
    {"JobTitle", PT::Text, C, 0, false},
    {"GovernmentIDNumber", PT::Text, C, 0, false},
    {"User1", PT::Text, C, 0, false},
    {"User2", PT::Text, C, 0, false},
    {"User3", PT::Text, C, 0, false},
    {"User4", PT::Text, C, 0, false},
    {"AssistantName", PT::Text, C, 0, false},
    {"InternetFreeBusyAddress", PT::Text, C, 0, false},
    {"ManagerName", PT::Text, C, 0, false},
    {"WebPage", PT::Text, C, 0, false},
    {"BusinessHomePage", PT::Text, C, 0, false},
    {"PersonalHomePage", PT::Text, C, 0, false},
};

constexpr int s_count = int(std::size(s_props));

const QHash<QString, int> &slotsByLowerName()
{
    static const QHash<QString, int> map = [] {
        QHash<QString, int> m;
        for (int i = 0; i < s_count; ++i)
            m.insert(QString::fromLatin1(s_props[i].name).toLower(), i);
        return m;
    }();
    return map;
}

QDateTime parseGermanDate(const QString &text, bool *ok)
{
    const QString t = text.trimmed();
    for (const char *format : {"dd.MM.yyyy hh:mm:ss", "dd.MM.yyyy hh:mm", "dd.MM.yyyy", "d.M.yyyy H:mm:ss",
                               "d.M.yyyy H:mm", "d.M.yyyy"}) {
        const QDateTime when = QDateTime::fromString(t, QLatin1String(format));
        if (when.isValid()) {
            *ok = true;
            return when;
        }
    }
    *ok = false;
    return {};
}

[[noreturn]] void refuse(const PropDef &def, const QVariant &value)
{
    throw StoreError(StoreErrTypeMismatch, QStringLiteral("Der Wert \"%1\" passt nicht zur Eigenschaft %2.")
                                               .arg(value.toString(), QLatin1String(def.name)));
}

} // namespace

unsigned ClassBitOf(int itemClass)
{
    switch (itemClass) {
    case olAppointment: return BitAppointment;
    case olContact: return BitContact;
    case olJournal: return BitJournal;
    case olMail: return BitMail;
    case olNote: return BitNote;
    case olPost: return BitPost;
    case olTask: return BitTask;
    case olDistributionList: return BitDistList;
    default: return 0;
    }
}

int PropertyCount()
{
    return s_count;
}

const PropDef &PropertyAt(int slot)
{
    return s_props[slot];
}

int PropertySlot(const QString &name)
{
    // Callers use a handful of spellings over and over: remember each one,
    // so that the lower-casing is paid once per spelling.
    thread_local QHash<QString, int> seen;
    const auto hit = seen.constFind(name);
    if (hit != seen.cend())
        return *hit;
    const int slot = slotsByLowerName().value(name.toLower(), -1);
    if (seen.size() < 4096)
        seen.insert(name, slot);
    return slot;
}

int PropertySlotFor(int itemClass, const QString &name)
{
    const int slot = PropertySlot(name);
    if (slot < 0 || !(s_props[slot].classes & ClassBitOf(itemClass)))
        return -1;
    return slot;
}

QStringList PropertyNamesOf(int itemClass)
{
    QStringList names;
    const unsigned bit = ClassBitOf(itemClass);
    for (const PropDef &def : s_props)
        if (def.classes & bit)
            names << QString::fromLatin1(def.name);
    return names;
}

QVariant EmptyValue(const PropDef &def)
{
    switch (def.type) {
    case PropType::Text: return QString();
    case PropType::Date: return NoDate();
    case PropType::Boolean: return def.defaultValue != 0;
    case PropType::Integer: return def.defaultValue;
    }
    return {};
}

QVariant ConvertForProperty(const PropDef &def, const QVariant &value)
{
    switch (def.type) {
    case PropType::Text:
        return value.isValid() ? value.toString() : QString();
    case PropType::Date: {
        if (!value.isValid() || value.isNull())
            return NoDate();
        if (value.typeId() == QMetaType::QDateTime)
            return IsNoDate(value.toDateTime()) ? NoDate() : value.toDateTime();
        if (value.typeId() == QMetaType::QDate)
            return QDateTime(value.toDate(), QTime(0, 0));
        const QString text = value.toString().trimmed();
        if (text.isEmpty())
            return NoDate();
        bool ok = false;
        const QDateTime when = parseGermanDate(text, &ok);
        if (!ok)
            refuse(def, value);
        return IsNoDate(when) ? NoDate() : when;
    }
    case PropType::Boolean: {
        if (value.typeId() == QMetaType::QString) {
            const QString t = value.toString().trimmed().toLower();
            if (t == u"wahr" || t == u"true" || t == u"1" || t == u"-1")
                return true;
            if (t == u"falsch" || t == u"false" || t == u"0" || t.isEmpty())
                return false;
            refuse(def, value);
        }
        return value.toBool();
    }
    case PropType::Integer: {
        bool ok = false;
        const int n = value.typeId() == QMetaType::QString ? value.toString().trimmed().toInt(&ok)
                                                           : value.toInt(&ok);
        if (!ok)
            refuse(def, value);
        return n;
    }
    }
    return value;
}

QString TextOfValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QDateTime: {
        const QDateTime when = value.toDateTime();
        if (when.time() == QTime(0, 0))
            return when.toString(QStringLiteral("dd.MM.yyyy"));
        return when.toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    }
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("Wahr") : QStringLiteral("Falsch");
    default:
        return value.toString();
    }
}
