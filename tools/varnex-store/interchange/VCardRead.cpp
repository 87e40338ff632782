// A vCard (2.1, 3.0 or 4.0) as a new contact. The whole card is read into
// the unsaved item; the caller saves it once.
#include "VCardFormat.h"

#include <QHash>

namespace {

// Lines that carry nothing for the contact and need no mention.
const QSet<QString> &silentProperties()
{
    static const QSet<QString> names = {QStringLiteral("VERSION"), QStringLiteral("PRODID"), QStringLiteral("REV"),
                                        QStringLiteral("KIND"), QStringLiteral("SOURCE"), QStringLiteral("NAME"),
                                        QStringLiteral("PROFILE"), QStringLiteral("CLASS"), QStringLiteral("MAILER"),
                                        QStringLiteral("SORT-STRING"), QStringLiteral("X-VX-MESSAGECLASS")};
    return names;
}

QDateTime parseCardDate(QString text)
{
    text = text.trimmed();
    const bool utc = text.endsWith(u'Z');
    if (utc)
        text.chop(1);
    for (const char *format : {"yyyy-MM-dd", "yyyyMMdd", "yyyy-MM-dd'T'HH:mm:ss", "yyyyMMdd'T'HHmmss",
                               "yyyy-MM-dd'T'HH:mm", "yyyyMMdd'T'HHmm"}) {
        QDateTime when = QDateTime::fromString(text, QLatin1String(format));
        if (when.isValid()) {
            if (utc) {
                when.setTimeSpec(Qt::UTC);
                when = when.toLocalTime();
            }
            return when;
        }
    }
    return {};
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
    void address(const ContentLine &line);
    void date(const ContentLine &line, const char *property);
    QString addressPrefix(const ContentLine &line) const;

    Item &m_item;
    CardNotes &m_notes;
    bool m_hasContent = false;
    bool m_fileAsGiven = false; // the card says how the contact is filed
    NameParts m_name;
    QString m_fullName, m_fullNameSource;
    QString m_uid;
    QHash<QString, AddressParts> m_addresses; // by field prefix
    QHash<QString, QString> m_labels;         // by field prefix
    QList<ContentLine> m_extensions, m_userProperties;
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

QString CardReader::addressPrefix(const ContentLine &line) const
{
    const QString named = line.params.value(QLatin1String(FieldParam));
    for (const SharedField &f : AddressFields)
        if (named.compare(QLatin1String(f.property), Qt::CaseInsensitive) == 0)
            return QLatin1String(f.property);
    for (const QString &prefix : tableCandidates(AddressFields, line.types()))
        if (!m_addresses.contains(prefix) && !m_labels.contains(prefix))
            return prefix;
    return {};
}

void CardReader::address(const ContentLine &line)
{
    const QString prefix = addressPrefix(line);
    if (prefix.isEmpty()) {
        m_notes.lost << QStringLiteral("%1 %2 (kein freies Adressfeld)").arg(line.name, UnescapeText(line.value));
        return;
    }
    if (line.name == u"LABEL") {
        m_labels.insert(prefix, UnescapeText(line.value));
        return;
    }
    QStringList p = SplitStructured(line.value);
    p.resize(7);
    QString street = p[2];
    if (!p[1].isEmpty()) // the extended address (flat, suite) goes below the street
        street += (street.isEmpty() ? QString() : QStringLiteral("\r\n")) + p[1];
    m_addresses.insert(prefix, AddressParts{street, p[0], p[5], p[3], p[4], p[6]});
    const QString label = line.params.value(QStringLiteral("LABEL"));
    if (!label.isEmpty())
        m_labels.insert(prefix, label);
}

void CardReader::date(const ContentLine &line, const char *property)
{
    const QDateTime when = parseCardDate(line.value);
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
        address(line);
    } else if (name == u"BDAY") {
        date(line, "Birthday");
    } else if (name == u"ANNIVERSARY" || name == u"X-ANNIVERSARY") {
        date(line, "Anniversary");
    } else if (name == u"CATEGORIES") {
        m_item.set(QStringLiteral("Categories"), JoinCategories(SplitStructured(line.value, u',')));
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
                m_item.set(QLatin1String(f.property), UnescapeText(line.value));
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
    // A card without "Speichern unter" gets the one a new contact gets.
    if (!m_fileAsGiven)
        m_item.set(QStringLiteral("FileAs"), DefaultFileAs(m_item));
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
