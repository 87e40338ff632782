#include "ItemFields.h"

#include "ContentLine.h"

#include <QFileInfo>

namespace {

const QString dateFormat = QStringLiteral("yyyyMMdd'T'HHmmss");

bool isEmptyValue(const PropDef &def, const QVariant &value)
{
    if (def.type == PropType::Date)
        return IsNoDate(value.toDateTime());
    return value == EmptyValue(def);
}

[[noreturn]] void notAValue(const PropDef &def, const QString &text)
{
    throw StoreError(StoreErrTypeMismatch,
                     QStringLiteral("Der Wert \"%1\" passt nicht zur Eigenschaft %2.").arg(text.left(80), QLatin1String(def.name)));
}

} // namespace

void InterchangeReport::countImported()
{
    ++imported;
    if (progress)
        progress(*this);
}

void InterchangeReport::countUpdated()
{
    ++updated;
    if (progress)
        progress(*this);
}

void InterchangeReport::countExported()
{
    ++exported;
    if (progress)
        progress(*this);
}

void InterchangeReport::skip(const QString &where, const QString &why)
{
    skipped << (where.isEmpty() ? why : where + QStringLiteral(": ") + why);
}

QString InterchangeReport::summary(bool isImport) const
{
    QString text = isImport ? QStringLiteral("Import beendet: %1 Einträge gelesen, %2 Element(e) importiert")
                                  .arg(read)
                                  .arg(imported)
                            : QStringLiteral("Export beendet: %1 Element(e) exportiert").arg(exported);
    if (isImport && updated > 0)
        text += QStringLiteral(", %1 vorhandene(s) Element(e) mit derselben UID aktualisiert").arg(updated);
    text += QStringLiteral(", %1 übersprungen.\n").arg(skipped.size());
    for (const QString &line : skipped)
        text += QStringLiteral("  übersprungen: ") + line + u'\n';
    for (const QString &line : notes)
        text += QStringLiteral("  Hinweis: ") + line + u'\n';
    return text;
}

QString EntryPosition(const QString &filePath, int line)
{
    const QString name = QFileInfo(filePath).fileName();
    return line > 0 ? QStringLiteral("%1, Zeile %2").arg(name).arg(line) : name;
}

Item ImportEntry(InterchangeReport &report, const QString &where, const std::function<Item()> &build)
{
    report.countRead();
    try {
        Item item = build();
        const bool update = !item.EntryID().isEmpty();
        item.Save();
        update ? report.countUpdated() : report.countImported();
        if (report.saved)
            report.saved(item, update);
        return item;
    } catch (const EntryDamage &damage) {
        report.skip(where, damage.reason);
    } catch (const StoreError &e) {
        // A store that cannot be written (a full disk above all) or a
        // damaged one fails every further entry the same way: the import
        // stops at the first with one message.
        if (e.number() == StoreErrDisk || e.number() == StoreErrCorrupt)
            throw;
        report.skip(where, e.description());
    }
    return {};
}

QString UidKey(const QString &uid, const QString &occurrence)
{
    return occurrence.isEmpty() ? uid : uid + u'\n' + occurrence;
}

namespace {

void addKeys(QHash<QString, QString> &ids, const Item &item)
{
    const QString occurrence = UserText(item, QLatin1String(OccurrenceProperty));
    const QString uid = UserText(item, QLatin1String(UidProperty));
    if (!uid.isEmpty())
        ids.insert(UidKey(uid, occurrence), item.EntryID());
    ids.insert(UidKey(item.EntryID(), occurrence), item.EntryID());
}

} // namespace

Item UidIndex::find(const MAPIFolder &folder, const QString &key)
{
    const QString folderId = folder.EntryID();
    auto it = m_folders.find(folderId);
    if (it == m_folders.end()) {
        it = m_folders.insert(folderId, {});
        for (const Item &item : folder.Items())
            addKeys(*it, item);
    }
    const QString id = it->value(key);
    if (id.isEmpty())
        return {};
    try {
        return Application().GetNamespace().GetItemFromID(id, folder.StoreID());
    } catch (const StoreError &) {
        return {}; // deleted meanwhile
    }
}

void UidIndex::add(const Item &saved)
{
    const auto it = m_folders.find(saved.Parent().EntryID());
    if (it != m_folders.end())
        addKeys(*it, saved);
}

ImportBatch::ImportBatch(const MAPIFolder &target, InterchangeReport &report)
    : m_batch(target), m_report(report), m_imported(report.imported), m_updated(report.updated)
{
}

ImportBatch::~ImportBatch()
{
    if (m_pending == 0)
        return;
    try {
        commit();
    } catch (const StoreError &) {
        // named in the report by commit()
    }
}

void ImportBatch::step()
{
    // A commit costs about as much as a few hundred saves in it.
    if (++m_pending >= 500)
        commit();
}

void ImportBatch::commit()
{
    m_pending = 0;
    try {
        m_batch.commit();
    } catch (const StoreError &e) {
        const int lost = m_report.imported - m_imported + m_report.updated - m_updated;
        m_report.imported = m_imported;
        m_report.updated = m_updated;
        m_report.skip(QString(), QStringLiteral("%1 zuletzt gelesene(s) Element(e) nicht gespeichert: %2")
                                     .arg(lost)
                                     .arg(e.description()));
        throw;
    }
    m_imported = m_report.imported;
    m_updated = m_report.updated;
}

void ClearForUpdate(Item &item)
{
    for (const QString &name : item.PropertyNames()) {
        const PropDef &def = PropertyAt(PropertySlot(name));
        if (!def.readOnly && name != u"MessageClass" && name != u"CreationTime")
            item.set(name, EmptyValue(def));
    }
    ::UserProperties props = item.UserProperties();
    for (const char *own : {UidProperty, SeriesProperty, OccurrenceProperty}) {
        UserProperty p = props.Find(QLatin1String(own));
        if (!p.isNull())
            p.Delete();
    }
}

QString EncodeExtensionValue(const PropDef &def, const QVariant &value)
{
    switch (def.type) {
    case PropType::Date: {
        // Milliseconds only where there are some (times the store set itself).
        const QDateTime when = value.toDateTime();
        return when.time().msec() ? when.toString(dateFormat + QStringLiteral(".zzz")) : when.toString(dateFormat);
    }
    case PropType::Boolean: return value.toBool() ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
    case PropType::Integer: return QString::number(value.toInt());
    case PropType::Text: return value.toString();
    }
    return value.toString();
}

QVariant DecodeExtensionValue(const PropDef &def, const QString &text)
{
    switch (def.type) {
    case PropType::Date: {
        QDateTime when = QDateTime::fromString(text.trimmed(), dateFormat);
        if (!when.isValid())
            when = QDateTime::fromString(text.trimmed(), dateFormat + QStringLiteral(".zzz"));
        if (!when.isValid())
            notAValue(def, text);
        return when;
    }
    case PropType::Boolean: {
        const QString t = text.trimmed().toUpper();
        if (t != u"TRUE" && t != u"FALSE")
            notAValue(def, text);
        return t == u"TRUE";
    }
    case PropType::Integer: {
        bool ok = false;
        const int n = text.trimmed().toInt(&ok);
        if (!ok)
            notAValue(def, text);
        return n;
    }
    case PropType::Text: return text;
    }
    return text;
}

QList<ExtensionField> LeftoverFields(const Item &item, const QSet<QString> &mapped)
{
    QList<ExtensionField> fields;
    const int itemClass = item.Class();
    for (const QString &name : PropertyNamesOf(itemClass)) {
        const PropDef &def = PropertyAt(PropertySlot(name));
        const bool creation = name == u"CreationTime";
        if ((def.readOnly && !creation) || name == u"MessageClass" || mapped.contains(name.toLower()))
            continue;
        const QVariant value = item.get(name);
        if (!isEmptyValue(def, value))
            fields.append({name, EncodeExtensionValue(def, value)});
    }
    return fields;
}

bool ApplyExtensionField(Item &item, const QString &name, const QString &text)
{
    const int slot = PropertySlotFor(item.Class(), name);
    if (slot < 0)
        return false;
    const PropDef &def = PropertyAt(slot);
    const bool creation = QString::fromLatin1(def.name) == u"CreationTime";
    if (def.readOnly && !creation)
        return false;
    if (creation && !item.EntryID().isEmpty())
        return true; // an updated item keeps the time it came into the store
    item.set(QString::fromLatin1(def.name), DecodeExtensionValue(def, text));
    return true;
}

QString EncodeUserProperty(const UserProperty &property)
{
    const QVariant value = property.Value();
    QString text;
    switch (property.Type()) {
    case olDateTime: text = value.toDateTime().toString(dateFormat); break;
    case olYesNo: text = value.toBool() ? QStringLiteral("TRUE") : QStringLiteral("FALSE"); break;
    case olNumber: text = QString::number(value.toDouble(), 'g', 17); break;
    default: text = value.toString();
    }
    return EscapeText(property.Name()) + u';' + QString::number(property.Type()) + u';' + EscapeText(text);
}

bool ApplyUserProperty(Item &item, const QString &encoded)
{
    const QStringList parts = SplitStructured(encoded);
    if (parts.size() != 3 || parts[0].isEmpty())
        return false;
    bool ok = false;
    const int type = parts[1].toInt(&ok);
    if (!ok || (type != olText && type != olNumber && type != olDateTime && type != olYesNo))
        return false;
    QVariant value = parts[2];
    if (type == olDateTime)
        value = QDateTime::fromString(parts[2], dateFormat);
    else if (type == olYesNo)
        value = parts[2] == u"TRUE";
    else if (type == olNumber)
        value = parts[2].toDouble();
    ::UserProperties props = item.UserProperties();
    UserProperty property = props.Find(parts[0]);
    if (property.isNull())
        property = props.Add(parts[0], type);
    property.setValue(value);
    return true;
}

QList<UserProperty> UserPropertiesOf(const Item &item, const QSet<QString> &except)
{
    QList<UserProperty> list;
    const ::UserProperties props = item.UserProperties();
    for (int i = 1; i <= props.Count(); ++i) {
        const UserProperty p = props.Item(i);
        if (!except.contains(p.Name().toLower()))
            list << p;
    }
    return list;
}

QString UserText(const Item &item, const QString &name)
{
    const UserProperty p = item.UserProperties().Find(name);
    return p.isNull() ? QString() : p.Value().toString();
}

void SetUserText(Item &item, const QString &name, const QString &value)
{
    ::UserProperties props = item.UserProperties();
    UserProperty p = props.Find(name);
    if (p.isNull())
        p = props.Add(name, olText);
    p.setValue(value);
}

NameParts NameFieldsOf(const Item &c)
{
    return {c.text(QStringLiteral("Title")), c.text(QStringLiteral("FirstName")), c.text(QStringLiteral("MiddleName")),
            c.text(QStringLiteral("LastName")), c.text(QStringLiteral("Suffix"))};
}

void SetNameFields(Item &c, const NameParts &p, const QString &fullName)
{
    c.set(QStringLiteral("Title"), p.title);
    c.set(QStringLiteral("FirstName"), p.firstName);
    c.set(QStringLiteral("MiddleName"), p.middleName);
    c.set(QStringLiteral("LastName"), p.lastName);
    c.set(QStringLiteral("Suffix"), p.suffix);
    if (!fullName.isEmpty() && fullName != ComposeFullName(p) && (p == NameParts{} || SplitFullName(fullName) == p))
        c.set(QStringLiteral("FullName"), fullName);
}

QString DefaultFileAs(const Item &c)
{
    QStringList name;
    for (const char *part : {"LastName", "FirstName"})
        if (!c.text(QLatin1String(part)).isEmpty())
            name << c.text(QLatin1String(part));
    if (!name.isEmpty())
        return name.join(QStringLiteral(", "));
    const QString company = c.text(QStringLiteral("CompanyName"));
    return company.isEmpty() ? c.text(QStringLiteral("FullName")) : company;
}

AddressParts AddressFieldsOf(const Item &c, const QString &prefix)
{
    auto part = [&](const char *name) { return c.text(prefix + QLatin1String(name)); };
    return {part("Street"), part("PostOfficeBox"), part("PostalCode"), part("City"), part("State"), part("Country")};
}

void SetAddressFields(Item &c, const QString &prefix, const AddressParts &p, const QString &whole)
{
    c.set(prefix + QStringLiteral("Street"), p.street);
    c.set(prefix + QStringLiteral("PostOfficeBox"), p.postOfficeBox);
    c.set(prefix + QStringLiteral("PostalCode"), p.postalCode);
    c.set(prefix + QStringLiteral("City"), p.city);
    c.set(prefix + QStringLiteral("State"), p.state);
    c.set(prefix + QStringLiteral("Country"), p.country);
    if (!whole.isEmpty() && whole != ComposeAddress(p))
        c.set(prefix, whole);
}

MAPIFolder ResolveStoreFolder(const QString &path, int defaultFolderType, bool create)
{
    const NameSpace ns = Application().GetNamespace();
    QStringList parts = path.split(u'/', Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return ns.GetDefaultFolder(defaultFolderType);
    MAPIFolder folder = ns.Folders().Find(parts.first());
    if (folder.isNull())
        folder = ns.Folders().Item(1);
    else
        parts.removeFirst();
    for (const QString &name : parts) {
        MAPIFolder next = folder.Folders().Find(name);
        if (next.isNull()) {
            if (!create)
                throw StoreError(StoreErrNotFound, QStringLiteral("Den Ordner \"%1\" gibt es nicht.").arg(path));
            next = folder.Folders().Add(name, folder.isRoot() ? defaultFolderType : 0);
        }
        folder = next;
    }
    return folder;
}
