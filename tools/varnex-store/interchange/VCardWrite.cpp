// A contact as a vCard 3.0 or 4.0: every field with a home in the format
// there, the rest and the user properties as extension lines.
#include "VCardFormat.h"

#include "VCardFields.h"

#include <QSet>

namespace {

class CardWriter
{
public:
    CardWriter(const Item &contact, VCardVersion version, ContentWriter &out)
        : m_item(contact), m_version(version), m_out(out)
    {
    }

    void write();

private:
    QString text(const char *property) const { return m_item.text(QLatin1String(property)); }
    void mark(const QString &property) { m_mapped.insert(property.toLower()); }
    QString typeParam(const char *types, const char *property) const;
    void writeNames();
    void writeShared(const char *vcardName, std::span<const SharedField> table);
    void writeAddresses();
    void writeDates();
    void writeCategories();
    void writeExtensions();

    const Item &m_item;
    VCardVersion m_version;
    ContentWriter &m_out;
    QSet<QString> m_mapped; // store fields written in a home of their own
};

// A date at midnight as a date, else with its time (local, no zone); a date
// of the year 1604 is one without a year (--MMDD in 4.0).
QString cardDate(const QDateTime &when, VCardVersion version)
{
    const bool v3 = version == VCardVersion::V3;
    if (!v3 && when.date().year() == 1604 && when.time() == QTime(0, 0))
        return when.date().toString(u"'--'MMdd");
    if (when.time() == QTime(0, 0))
        return when.date().toString(v3 ? u"yyyy-MM-dd" : u"yyyyMMdd");
    return when.toString(v3 ? u"yyyy-MM-dd'T'HH:mm:ss" : u"yyyyMMdd'T'HHmmss");
}

QString CardWriter::typeParam(const char *types, const char *property) const
{
    QString param = QStringLiteral(";%1=%2").arg(QLatin1String(FieldParam), QLatin1String(property));
    QString list = QLatin1String(types);
    if (m_version == VCardVersion::V4) {
        // vCard 4.0 has no INTERNET type and writes preference as PREF=1.
        QStringList kept;
        for (const QString &t : list.split(u',', Qt::SkipEmptyParts))
            if (t == u"PREF")
                param += QStringLiteral(";PREF=1");
            else if (t != u"INTERNET")
                kept << t.toLower();
        list = kept.join(u',');
    }
    return list.isEmpty() ? param : QStringLiteral(";TYPE=") + list + param;
}

void CardWriter::writeNames()
{
    const NameParts n = NameFieldsOf(m_item);
    const QString fullName = text("FullName");
    m_out.add(QStringLiteral("N"), QStringList{EscapeText(n.lastName), EscapeText(n.firstName), EscapeText(n.middleName),
                                               EscapeText(n.title), EscapeText(n.suffix)}
                                       .join(u';'));
    // FN is required: without a full name it shows the company (or what the
    // card is filed as) and says so, so that reading it back leaves
    // FullName empty.
    if (!fullName.isEmpty()) {
        m_out.add(QStringLiteral("FN"), EscapeText(fullName));
    } else {
        const char *source = !text("CompanyName").isEmpty() ? "CompanyName" : "FileAs";
        m_out.add(QStringLiteral("FN;%1=%2").arg(QLatin1String(FieldParam), QLatin1String(source)),
                  EscapeText(text(source)));
    }
    for (const char *p : {"FullName", "Title", "FirstName", "MiddleName", "LastName", "Suffix"})
        mark(QLatin1String(p));
    const QString company = text("CompanyName"), department = text("Department");
    if (!company.isEmpty() || !department.isEmpty())
        m_out.add(QStringLiteral("ORG"), EscapeText(company) + u';' + EscapeText(department));
    mark(QStringLiteral("CompanyName"));
    mark(QStringLiteral("Department"));
}

void CardWriter::writeShared(const char *vcardName, std::span<const SharedField> table)
{
    for (const SharedField &f : table) {
        const QString value = text(f.property);
        if (!value.isEmpty())
            m_out.add(QLatin1String(vcardName) + typeParam(f.types, f.property), EscapeText(value));
        mark(QLatin1String(f.property));
    }
}

void CardWriter::writeAddresses()
{
    for (const SharedField &f : AddressFields) {
        const QString prefix = QLatin1String(f.property);
        const AddressParts a = AddressFieldsOf(m_item, prefix);
        const QString whole = m_item.text(prefix);
        for (const char *part : {"", "Street", "PostOfficeBox", "PostalCode", "City", "State", "Country"})
            mark(prefix + QLatin1String(part));
        if (whole.isEmpty() && a == AddressParts{})
            continue;
        QString head = QStringLiteral("ADR") + typeParam(f.types, f.property);
        // The whole address as written, when it is not the composition of
        // its parts: LABEL (a parameter in 4.0, a line of its own in 3.0).
        const bool ownLabel = !whole.isEmpty() && whole != ComposeAddress(a);
        if (ownLabel && m_version == VCardVersion::V4)
            head += QStringLiteral(";LABEL=") + ParamValue(whole);
        m_out.add(head, QStringList{EscapeText(a.postOfficeBox), QString(), EscapeText(a.street), EscapeText(a.city),
                                    EscapeText(a.state), EscapeText(a.postalCode), EscapeText(a.country)}
                            .join(u';'));
        if (ownLabel && m_version == VCardVersion::V3)
            m_out.add(QStringLiteral("LABEL") + typeParam(f.types, f.property), EscapeText(whole));
    }
}

void CardWriter::writeDates()
{
    const QDateTime birthday = m_item.get(QStringLiteral("Birthday")).toDateTime();
    if (!IsNoDate(birthday))
        m_out.add(QStringLiteral("BDAY"), cardDate(birthday, m_version));
    const QDateTime anniversary = m_item.get(QStringLiteral("Anniversary")).toDateTime();
    if (!IsNoDate(anniversary))
        m_out.add(QLatin1String(m_version == VCardVersion::V3 ? "X-ANNIVERSARY" : "ANNIVERSARY"),
                  cardDate(anniversary, m_version));
    mark(QStringLiteral("Birthday"));
    mark(QStringLiteral("Anniversary"));
}

void CardWriter::writeCategories()
{
    const QString categories = text("Categories");
    if (categories.isEmpty())
        return;
    QStringList list;
    for (const QString &c : categories.split(u',', Qt::SkipEmptyParts))
        list << EscapeText(c.trimmed()).replace(QChar(0x201A), QLatin1String("\\,")); // a comma of the category
    m_out.add(QStringLiteral("CATEGORIES"), list.join(u','));
    // Read back, the list is joined by ", "; any other spelling goes into
    // the extension line as well, which wins.
    if (JoinCategories(categories.split(u',', Qt::SkipEmptyParts)) == categories)
        mark(QStringLiteral("Categories"));
}

void CardWriter::writeExtensions()
{
    if (m_item.MessageClass() != QLatin1String(MessageClass::Contact))
        m_out.add(QStringLiteral("X-VX-MESSAGECLASS"), EscapeText(m_item.MessageClass()));
    // An empty "Speichern unter" is said, so that reading the card back
    // gives none rather than the one of a new contact.
    if (text("FileAs").isEmpty())
        m_out.add(QLatin1String(ExtensionPrefix) + QStringLiteral("FILEAS"), QString());
    for (const ExtensionField &f : LeftoverFields(m_item, m_mapped))
        m_out.add(QLatin1String(ExtensionPrefix) + f.name.toUpper(), EscapeText(f.text));
    for (const UserProperty &p : UserPropertiesOf(m_item, {QString::fromLatin1(UidProperty).toLower()}))
        m_out.add(QStringLiteral("X-VX-USER"), EncodeUserProperty(p));
}

void CardWriter::write()
{
    m_out.add(QStringLiteral("BEGIN"), QStringLiteral("VCARD"));
    m_out.add(QStringLiteral("VERSION"), QLatin1String(m_version == VCardVersion::V3 ? "3.0" : "4.0"));
    const QString uid = UserText(m_item, QLatin1String(UidProperty));
    m_out.add(QStringLiteral("UID"), EscapeText(uid.isEmpty() ? m_item.EntryID() : uid));
    writeNames();
    writeShared("TEL", TelephoneFields);
    writeShared("EMAIL", EmailFields);
    writeShared("URL", WebFields);
    writeAddresses();
    writeDates();
    for (const SingleField &f : SingleFields) {
        const QString value = text(f.property);
        if (!value.isEmpty())
            m_out.add(QLatin1String(m_version == VCardVersion::V3 ? f.v3 : f.v4), EscapeText(value));
        mark(QLatin1String(f.property));
    }
    writeCategories();
    const QDateTime modified = m_item.LastModificationTime();
    if (!IsNoDate(modified))
        m_out.add(QStringLiteral("REV"), modified.toUTC().toString(u"yyyyMMdd'T'HHmmss'Z'"));
    writeExtensions();
    m_out.add(QStringLiteral("END"), QStringLiteral("VCARD"));
}

} // namespace

QString JoinCategories(const QStringList &categories)
{
    QStringList trimmed;
    for (const QString &c : categories)
        if (!c.trimmed().isEmpty())
            trimmed << c.trimmed();
    return trimmed.join(QStringLiteral(", "));
}

void WriteVCard(const Item &contact, VCardVersion version, ContentWriter &out)
{
    CardWriter(contact, version, out).write();
}
