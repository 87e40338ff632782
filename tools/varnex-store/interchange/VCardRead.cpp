// A vCard (2.1, 3.0 or 4.0) as a new contact. The whole card is read into
// the unsaved item; the caller saves it once.
#include "VCardFormat.h"

#include <QHash>
#include <QTimeZone>

#include <algorithm>

namespace {

// Lines that carry nothing for the contact and need no mention.
const QSet<QString> &silentProperties()
{
    static const QSet<QString> names = {QStringLiteral("VERSION"), QStringLiteral("PRODID"), QStringLiteral("REV"),
                                        QStringLiteral("KIND"), QStringLiteral("SOURCE"), QStringLiteral("NAME"),
                                        QStringLiteral("PROFILE"), QStringLiteral("MAILER"),
                                        QStringLiteral("SORT-STRING"), QStringLiteral("X-VX-MESSAGECLASS")};
    return names;
}

// The year of a date without one (--0203), as address books write it.
constexpr int NoYear = 1604;

// A date of a card: a date, a date-time (local, UTC or with an offset such
// as -0500 or +01:00, then in local time) or a date without a year.
// zoned tells that the time had a zone.
QDateTime parseCardDate(QString text, bool *zoned)
{
    text = text.trimmed();
    *zoned = false;
    if (text.startsWith(QLatin1String("--"))) {
        const QString digits = text.mid(2).remove(u'-').left(4);
        const QDate date(NoYear, digits.left(2).toInt(), digits.mid(2).toInt());
        return digits.size() == 4 && date.isValid() ? QDateTime(date, QTime(0, 0)) : QDateTime();
    }
    QString datePart = text.section(u'T', 0, 0), timePart = text.section(u'T', 1);
    int offset = 0;
    if (timePart.endsWith(u'Z')) {
        timePart.chop(1);
        *zoned = true;
    } else if (const qsizetype sign = std::max(timePart.indexOf(u'+'), timePart.indexOf(u'-')); sign > 0) {
        const QString zone = timePart.mid(sign + 1).remove(u':');
        bool ok = false;
        const int hhmm = (zone.size() == 2 ? zone + QStringLiteral("00") : zone).toInt(&ok);
        if (!ok || zone.size() > 4)
            return {};
        offset = (hhmm / 100 * 3600 + hhmm % 100 * 60) * (timePart[sign] == u'-' ? -1 : 1);
        timePart.truncate(sign);
        *zoned = true;
    }
    QDate date;
    for (const char *format : {"yyyy-MM-dd", "yyyyMMdd"})
        if (!date.isValid())
            date = QDate::fromString(datePart, QLatin1String(format));
    QTime time(0, 0);
    if (!timePart.isEmpty()) {
        time = QTime();
        for (const char *format : {"HH:mm:ss", "HHmmss", "HH:mm", "HHmm", "HH"})
            if (!time.isValid())
                time = QTime::fromString(timePart.section(u'.', 0, 0).section(u',', 0, 0), QLatin1String(format));
    }
    if (!date.isValid() || !time.isValid())
        return {};
    if (!*zoned)
        return QDateTime(date, time);
    return QDateTime(date, time, Qt::OffsetFromUTC, offset).toLocalTime();
}

// Contact fields that common extensions of other programs fill.
struct ForeignField {
    const char *property; // upper case, as parsed
    const char *field;
};
constexpr ForeignField ForeignFields[] = {
    {"X-MS-SPOUSE", "Spouse"},
    {"X-EVOLUTION-SPOUSE", "Spouse"},
    {"X-KADDRESSBOOK-X-SPOUSESNAME", "Spouse"},
    {"X-MS-MANAGER", "ManagerName"},
    {"X-EVOLUTION-MANAGER", "ManagerName"},
    {"X-KADDRESSBOOK-X-MANAGERSNAME", "ManagerName"},
    {"X-MS-ASSISTANT", "AssistantName"},
    {"X-EVOLUTION-ASSISTANT", "AssistantName"},
    {"X-KADDRESSBOOK-X-ASSISTANTSNAME", "AssistantName"},
    {"X-KADDRESSBOOK-X-OFFICE", "OfficeLocation"},
    {"X-EVOLUTION-FILE-AS", "FileAs"},
    {"X-MS-IMADDRESS", "IMAddress"},
    {"X-AIM", "IMAddress"},
    {"X-ICQ", "IMAddress"},
    {"X-JABBER", "IMAddress"},
    {"X-SKYPE", "IMAddress"},
    {"X-SKYPE-USERNAME", "IMAddress"},
    {"X-MSN", "IMAddress"},
    {"X-YAHOO", "IMAddress"},
    {"X-GOOGLE-TALK", "IMAddress"},
    {"X-GADUGADU", "IMAddress"},
    {"X-GROUPWISE", "IMAddress"},
};
constexpr const char *ForeignAnniversaries[] = {"X-ANNIVERSARY", "X-MS-ANNIVERSARY", "X-EVOLUTION-ANNIVERSARY",
                                                "X-KADDRESSBOOK-X-ANNIVERSARY"};
// X-MS-TEL;TYPE=...: the telephone fields vCard has no type for.
constexpr ForeignField MicrosoftTelephones[] = {
    {"ASSISTANT", "AssistantTelephoneNumber"}, {"CALLBACK", "CallbackTelephoneNumber"},
    {"COMPANY", "CompanyMainTelephoneNumber"}, {"RADIO", "RadioTelephoneNumber"},
    {"TTYTDD", "TTYTDDTelephoneNumber"},       {"TELEX", "TelexNumber"},
};

// Fields that take a second value of a card after a separator; the others
// keep the first and name the second in the report.
QString joinSeparator(const QString &field)
{
    if (field == u"Body")
        return QStringLiteral("\r\n");
    if (field == u"NickName" || field == u"JobTitle" || field == u"Profession")
        return QStringLiteral(", ");
    return {};
}

// A category holds no comma in the store, which separates them by commas: an
// escaped comma in a category is kept as the low comma U+201A (written back
// as \, by the export).
QStringList categoriesOf(const QString &value)
{
    QStringList list = SplitStructured(value, u',');
    for (QString &c : list)
        c.replace(u',', QChar(0x201A));
    return list;
}

// Store fields a TEL line from elsewhere may fill, best first.
QStringList telephoneCandidates(const QStringList &types)
{
    auto has = [&](const char *t) { return types.contains(QLatin1String(t)); };
    if (has("FAX"))
        return {has("WORK") ? QStringLiteral("BusinessFaxNumber")
                            : has("HOME") ? QStringLiteral("HomeFaxNumber") : QStringLiteral("OtherFaxNumber"),
                QStringLiteral("OtherFaxNumber")};
    QStringList list;
    if (has("CELL"))
        list << QStringLiteral("MobileTelephoneNumber");
    if (has("PAGER"))
        list << QStringLiteral("PagerNumber");
    if (has("CAR"))
        list << QStringLiteral("CarTelephoneNumber");
    if (has("ISDN"))
        list << QStringLiteral("ISDNNumber");
    if (has("TEXTPHONE"))
        list << QStringLiteral("TTYTDDTelephoneNumber");
    if (has("WORK"))
        list << QStringLiteral("BusinessTelephoneNumber") << QStringLiteral("Business2TelephoneNumber")
             << QStringLiteral("CompanyMainTelephoneNumber");
    if (has("HOME"))
        list << QStringLiteral("HomeTelephoneNumber") << QStringLiteral("Home2TelephoneNumber");
    list << QStringLiteral("OtherTelephoneNumber") << QStringLiteral("CallbackTelephoneNumber");
    return list;
}

QStringList tableCandidates(std::span<const SharedField> table, const QStringList &types)
{
    QStringList typed, rest;
    for (const SharedField &f : table) {
        const QString t = QLatin1String(f.types);
        (!t.isEmpty() && t != u"INTERNET" && types.contains(t) ? typed : rest) << QLatin1String(f.property);
    }
    return typed + rest;
}

class CardReader
{
public:
    CardReader(Item &contact, CardNotes &notes) : m_item(contact), m_notes(notes) {}
    void apply(const ContentLine &line);
    void finish();

private:
    void shared(const ContentLine &line, std::span<const SharedField> table, const QStringList &candidates);
    void single(const ContentLine &line, const QString &field);
    bool foreign(const ContentLine &line);
    void resolveAddresses();
    void date(const ContentLine &line, const char *property);

    Item &m_item;
    CardNotes &m_notes;
    bool m_hasContent = false;
    bool m_fileAsGiven = false; // the card says how the contact is filed
    NameParts m_name;
    QString m_fullName, m_fullNameSource;
    QString m_uid;
    QHash<QString, AddressParts> m_addresses; // by field prefix
    QHash<QString, QString> m_labels;         // by field prefix
    QList<ContentLine> m_addressLines, m_extensions, m_userProperties;
    QStringList m_categories;
};

// Fills the field the line names (written so by the export), else the first
// free candidate.
void CardReader::shared(const ContentLine &line, std::span<const SharedField> table, const QStringList &candidates)
{
    const QString value = UnescapeText(line.value);
    const QString named = line.params.value(QLatin1String(FieldParam));
    for (const SharedField &f : table)
        if (named.compare(QLatin1String(f.property), Qt::CaseInsensitive) == 0) {
            m_item.set(QLatin1String(f.property), value);
            return;
        }
    for (const QString &field : candidates)
        if (m_item.text(field).isEmpty()) {
            m_item.set(field, value);
            return;
        }
    m_notes.lost << QStringLiteral("%1 %2 (kein freies Feld)").arg(line.name, value);
}

// The address field a line names (written so by the export); "" when none.
QString namedAddress(const ContentLine &line)
{
    const QString named = line.params.value(QLatin1String(FieldParam));
    for (const SharedField &f : AddressFields)
        if (named.compare(QLatin1String(f.property), Qt::CaseInsensitive) == 0)
            return QLatin1String(f.property);
    return {};
}

// ADR lines first, then each LABEL to the address of its TYPE (wherever it
// stands on the card); a LABEL gives an address of its own only when there
// is none of its TYPE.
void CardReader::resolveAddresses()
{
    auto lose = [this](const ContentLine &line) {
        m_notes.lost << QStringLiteral("%1 %2 (kein freies Adressfeld)").arg(line.name, UnescapeText(line.value));
    };
    for (const ContentLine &line : std::as_const(m_addressLines)) {
        if (line.name != u"ADR")
            continue;
        QString prefix = namedAddress(line);
        for (const QString &candidate : tableCandidates(AddressFields, line.types()))
            if (prefix.isEmpty() && !m_addresses.contains(candidate))
                prefix = candidate;
        if (prefix.isEmpty()) {
            lose(line);
            continue;
        }
        QStringList p = SplitStructured(line.value);
        p.resize(7);
        QString street = p[2];
        if (!p[1].isEmpty()) // the extended address (flat, suite) goes below the street
            street += (street.isEmpty() ? QString() : QStringLiteral("\r\n")) + p[1];
        m_addresses.insert(prefix, AddressParts{street, p[0], p[5], p[3], p[4], p[6]});
        const QString label = line.params.value(QStringLiteral("LABEL"));
        if (!label.isEmpty())
            m_labels.insert(prefix, StoreLineEnds(label));
    }
    for (const ContentLine &line : std::as_const(m_addressLines)) {
        if (line.name != u"LABEL")
            continue;
        QString prefix = namedAddress(line);
        QStringList typed;
        for (const SharedField &f : AddressFields)
            if (line.hasType(QLatin1String(f.types)))
                typed << QLatin1String(f.property);
        const QStringList candidates = typed.isEmpty() ? tableCandidates(AddressFields, {}) : typed;
        for (bool withAddress : {true, false})
            for (const QString &candidate : candidates)
                if (prefix.isEmpty() && m_addresses.contains(candidate) == withAddress && !m_labels.contains(candidate))
                    prefix = candidate;
        if (prefix.isEmpty())
            lose(line);
        else
            m_labels.insert(prefix, UnescapeText(line.value));
    }
}

// A field of one value: a second value of the card joins the first where
// the field takes several (notes, titles, nicknames), else the report names it.
void CardReader::single(const ContentLine &line, const QString &field)
{
    const QString value = UnescapeText(line.value);
    const QString old = m_item.text(field);
    if (old.isEmpty() || old == value || value.isEmpty()) {
        if (old.isEmpty())
            m_item.set(field, value);
        return;
    }
    const QString separator = joinSeparator(field);
    if (!separator.isEmpty())
        m_item.set(field, old + separator + value);
    else
        m_notes.lost << QStringLiteral("%1 %2 (Feld schon belegt)").arg(line.name, value.left(80));
}

// The common extensions of other programs for fields the store has; false
// when the line is none of them.
bool CardReader::foreign(const ContentLine &line)
{
    const QString &name = line.name;
    for (const ForeignField &f : ForeignFields)
        if (name == QLatin1String(f.property)) {
            single(line, QLatin1String(f.field));
            m_fileAsGiven = m_fileAsGiven || qstrcmp(f.field, "FileAs") == 0;
            return true;
        }
    for (const char *property : ForeignAnniversaries)
        if (name == QLatin1String(property)) {
            date(line, "Anniversary");
            return true;
        }
    if (name == u"X-MS-TEL") {
        for (const ForeignField &f : MicrosoftTelephones)
            if (line.hasType(QLatin1String(f.property)) && m_item.text(QLatin1String(f.field)).isEmpty()) {
                m_item.set(QLatin1String(f.field), UnescapeText(line.value));
                return true;
            }
        shared(line, TelephoneFields, telephoneCandidates(line.types()));
        return true;
    }
    if (name == u"CLASS") {
        const QString c = line.value.trimmed().toUpper();
        m_item.set(QStringLiteral("Sensitivity"), c == u"PRIVATE" ? 2 : c == u"CONFIDENTIAL" ? 3 : 0);
        return true;
    }
    return false;
}

void CardReader::date(const ContentLine &line, const char *property)
{
    bool zoned = false;
    QDateTime when = parseCardDate(line.value, &zoned);
    // A birthday is a day: written with a zone, it is the day as written.
    if (when.isValid() && zoned && qstrcmp(property, "Birthday") == 0)
        when = QDateTime(parseCardDate(line.value.section(u'T', 0, 0), &zoned).date(), QTime(0, 0));
    if (when.isValid())
        m_item.set(QLatin1String(property), when);
    else
        m_notes.lost << QStringLiteral("%1 \"%2\" (kein Datum)").arg(line.name, line.value.left(40));
}

void CardReader::apply(const ContentLine &line)
{
    const QString &name = line.name;
    m_hasContent = m_hasContent || (!silentProperties().contains(name) && !line.value.trimmed().isEmpty());
    if (name == u"N") {
        QStringList p = SplitStructured(line.value);
        p.resize(5);
        m_name = NameParts{p[3], p[1], p[2], p[0], p[4]};
    } else if (name == u"FN") {
        m_fullName = UnescapeText(line.value);
        m_fullNameSource = line.params.value(QLatin1String(FieldParam));
    } else if (name == u"ORG") {
        const QStringList p = SplitStructured(line.value);
        m_item.set(QStringLiteral("CompanyName"), p.value(0));
        m_item.set(QStringLiteral("Department"), p.mid(1).join(QStringLiteral(", ")));
    } else if (name == u"TEL") {
        shared(line, TelephoneFields, telephoneCandidates(line.types()));
    } else if (name == u"EMAIL") {
        shared(line, EmailFields, tableCandidates(EmailFields, {}));
    } else if (name == u"URL") {
        shared(line, WebFields, tableCandidates(WebFields, line.types()));
    } else if (name == u"ADR" || name == u"LABEL") {
        m_addressLines << line;
    } else if (name == u"BDAY") {
        date(line, "Birthday");
    } else if (name == u"ANNIVERSARY") {
        date(line, "Anniversary");
    } else if (name == u"CATEGORIES") {
        m_categories << categoriesOf(line.value);
    } else if (foreign(line)) {
        // a common extension of another program, taken there
    } else if (name == u"UID") {
        m_uid = UnescapeText(line.value);
    } else if (name == u"X-VX-USER") {
        m_userProperties << line;
    } else if (name.startsWith(QLatin1String(ExtensionPrefix)) && !silentProperties().contains(name)) {
        m_extensions << line;
    } else if (name == u"RELATED" && !line.hasType(QStringLiteral("SPOUSE"))) {
        m_notes.unknown.insert(name);
    } else {
        for (const SingleField &f : SingleFields)
            if (name == QLatin1String(f.v3) || name == QString::fromLatin1(f.v4).section(u';', 0, 0)) {
                single(line, QLatin1String(f.property));
                return;
            }
        if (!silentProperties().contains(name))
            m_notes.unknown.insert(name);
    }
}

void CardReader::finish()
{
    if (!m_hasContent)
        throw EntryDamage{QStringLiteral("Die Karte enthält nichts.")};
    // FN fills FullName unless it only shows another field (written so by
    // the export) or, on a card from elsewhere, the company.
    const bool companyOnly = m_name == NameParts{} && m_fullName == m_item.text(QStringLiteral("CompanyName"));
    const bool fnIsName = m_fullNameSource.isEmpty() && !companyOnly;
    SetNameFields(m_item, m_name, fnIsName ? m_fullName : QString());
    resolveAddresses();
    if (!m_categories.isEmpty())
        m_item.set(QStringLiteral("Categories"), JoinCategories(m_categories));
    for (const SharedField &f : AddressFields) {
        const QString prefix = QLatin1String(f.property);
        if (m_addresses.contains(prefix) || m_labels.contains(prefix))
            SetAddressFields(m_item, prefix, m_addresses.value(prefix), m_labels.value(prefix));
    }
    for (const ContentLine &line : std::as_const(m_extensions)) {
        const QString field = line.name.mid(int(qstrlen(ExtensionPrefix)));
        m_fileAsGiven = m_fileAsGiven || field == u"FILEAS";
        try {
            if (!ApplyExtensionField(m_item, field, UnescapeText(line.value)))
                m_notes.unknown.insert(line.name);
        } catch (const StoreError &e) {
            m_notes.lost << QStringLiteral("%1 (%2)").arg(line.name, e.description());
        }
    }
    m_notes.fileAsGiven = m_fileAsGiven;
    if (!m_uid.isEmpty())
        SetUserText(m_item, QLatin1String(UidProperty), m_uid);
    for (const ContentLine &line : std::as_const(m_userProperties))
        if (!ApplyUserProperty(m_item, line.value))
            m_notes.lost << QStringLiteral("X-VX-USER \"%1\" (keine Benutzereigenschaft)").arg(line.value.left(40));
}

} // namespace

QString CardUid(const QList<ContentLine> &lines)
{
    for (const ContentLine &line : lines)
        if (line.name == u"UID")
            return UnescapeText(line.value).trimmed();
    return {};
}

Item ContactOfCard(const QList<ContentLine> &lines, const MAPIFolder &folder, CardNotes &notes, Item existing)
{
    QString messageClass;
    for (const ContentLine &line : lines)
        if (line.name == u"X-VX-MESSAGECLASS")
            messageClass = UnescapeText(line.value);
    const bool ownClass = !messageClass.isEmpty() && ClassOfMessageClass(messageClass) == olContact;
    Item contact = existing;
    if (contact.isNull()) {
        contact = ownClass ? folder.Items().Add(messageClass) : folder.Items().Add(int(olContact));
    } else {
        ClearForUpdate(contact);
        contact.setMessageClass(ownClass ? messageClass : QString::fromLatin1(MessageClass::Contact));
    }
    CardReader reader(contact, notes);
    for (const ContentLine &line : lines)
        reader.apply(line);
    reader.finish();
    return contact;
}
