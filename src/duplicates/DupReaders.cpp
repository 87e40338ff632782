// Phase 1 of the duplicate search: every item of the ticked folders into the
// item table, in tolerant mode.
#include "duplicates/DupProgress.h"
#include "duplicates/DupTolerant.h"
#include "duplicates/DupsDel.h"
#include "store/Attachments.h"
#include "store/ItemSchema.h"
#include "store/Items.h"
#include "store/UserProperties.h"

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// What the reader knows of the folder at hand; read once per folder.
struct FolderFacts {
    QString entryId;
    QString storeId;
    QString name;
    bool isMaster = false;
};

class ItemReader
{
public:
    ItemReader(const DupItemType &type, const DupSwitches &switches, DupItemTable &table, QString &errorText)
        : m_type(type), m_switches(switches), m_table(table), m_errorText(errorText)
    {
    }

    // Reads the item at the position into row n, with retries.
    void read(const Items &items, int position, const FolderFacts &folder, int n);

private:
    enum class Outcome { Foreign, Done };
    Outcome readOnce(const Items &items, int position, const FolderFacts &folder, int n, Tolerant &tolerant);
    void readFields(const Item &raw, int itemClass, int n, Tolerant &tolerant);
    QString captionBeginning(const Item &raw) const;
    void giveUp(const Item &raw, int n, Tolerant &tolerant);
    void readUserProperty(const Item &raw, int n);

    const DupItemType &m_type;
    const DupSwitches &m_switches;
    DupItemTable &m_table;
    QString &m_errorText;
    int m_failedReads = 0; // of the whole run; only a give-up resets it
    Item m_raw;            // the item of the last try
};

void ItemReader::read(const Items &items, int position, const FolderFacts &folder, int n)
{
    Tolerant tolerant;
    for (;;) {
        if (readOnce(items, position, folder, n, tolerant) == Outcome::Foreign) {
            m_table.item(n).marked = true;
            return;
        }
        if (!tolerant.pending()) {
            m_table.item(n).unread = false;
            break;
        }
        if (++m_failedReads > 5) {
            giveUp(m_raw, n, tolerant);
            break;
        }
        tolerant.clear();
        CurrentRunHost().processEvents();
    }
    readUserProperty(m_raw, n);
}

ItemReader::Outcome ItemReader::readOnce(const Items &items, int position, const FolderFacts &folder, int n,
                                         Tolerant &tolerant)
{
    tolerant.run([&] { m_raw = items.Item(position); });
    int itemClass = 0;
    // A class that cannot be read is no foreign class: the failure is caught
    // after the reads, and the item is tried again.
    const bool classKnown = tolerant.run([&] { itemClass = m_raw.Class(); });
    if (classKnown && !DupAcceptsClass(m_type, itemClass)) {
        if (m_type.logsForeignItems) {
            QString subject;
            tolerant.run([&] { subject = m_raw.Subject(); });
            m_errorText += QStringLiteral("Übersprungenes Element: ") + subject + QStringLiteral(" (")
                + QString::number(itemClass) + QStringLiteral(") ") + kCrLf;
        }
        return Outcome::Foreign;
    }
    DupItem &item = m_table.item(n);
    if (m_switches.series)
        tolerant.run([&] { item.isSeries = m_raw.get(QStringLiteral("IsRecurring")).toBool(); });
    readFields(m_raw, itemClass, n, tolerant);
    item.isMaster = folder.isMaster;
    tolerant.run([&] { item.created = m_raw.CreationTime(); });
    tolerant.run([&] { item.entryId = m_raw.EntryID(); });
    item.storeId = folder.storeId;
    item.folderId = folder.entryId;
    tolerant.run([&] {
        item.caption = DupItemCaption(captionBeginning(m_raw), folder.name, TextOfValue(m_raw.CreationTime()));
    });
    return Outcome::Done;
}

void ItemReader::readFields(const Item &raw, int itemClass, int n, Tolerant &tolerant)
{
    for (int column = 0; column < m_switches.fields.size(); ++column) {
        const DupField &field = *m_switches.fields[column];
        if (field.onlyClass != 0 && field.onlyClass != itemClass)
            continue;
        QString &value = m_table.value(n, column);
        switch (field.source) {
        case DupFieldSource::Property:
            tolerant.run([&] { value = StoreDupValue(field, raw.text(QString::fromLatin1(field.member))); });
            break;
        case DupFieldSource::AttachmentCount:
            tolerant.run([&] { value = QString::number(raw.Attachments().Count()); });
            break;
        case DupFieldSource::UserProperty:
            break; // read after the retries (readUserProperty)
        }
    }
}

QString ItemReader::captionBeginning(const Item &raw) const
{
    QStringList parts;
    for (const char *member : m_type.captionMembers) {
        if (member)
            parts.append(raw.text(QString::fromLatin1(member)));
    }
    QString beginning = parts.join(QStringLiteral(", "));
    // A contact without "Speichern unter" (one from a plain card) would show
    // only its folder and date: its full name or its company stands in.
    if (beginning.isEmpty() && raw.Class() == olContact) {
        beginning = raw.text(QStringLiteral("FullName"));
        if (beginning.isEmpty())
            beginning = raw.text(QStringLiteral("CompanyName"));
    }
    return beginning;
}

void ItemReader::giveUp(const Item &raw, int n, Tolerant &tolerant)
{
    m_failedReads = 0;
    const QString line = QStringLiteral("Err No.: ") + QString::number(tolerant.number())
        + QStringLiteral(", Err Des: ") + tolerant.description() + QStringLiteral(", Element: ");
    tolerant.clear();
    QString subject;
    tolerant.run([&] { subject = raw.Subject(); });
    m_errorText += line + subject + kCrLf;
    m_table.item(n).marked = true;
}

// The user field of a contact is read after the retries, also for an item
// that was given up. A contact without that field keeps the column empty,
// and the failure ends here: it is no failure of the next item.
void ItemReader::readUserProperty(const Item &raw, int n)
{
    for (int column = 0; column < m_switches.fields.size(); ++column) {
        if (m_switches.fields[column]->source != DupFieldSource::UserProperty)
            continue;
        Tolerant local;
        local.run([&] {
            const UserProperty property = raw.UserProperties().Find(m_switches.userPropertyName);
            if (!property.isNull())
                m_table.value(n, column) = TextOfValue(property.Value());
        });
    }
}

FolderFacts factsOf(const MAPIFolder &folder, bool isMaster, Tolerant &tolerant)
{
    FolderFacts facts;
    facts.isMaster = isMaster;
    tolerant.run([&] { facts.entryId = folder.EntryID(); });
    tolerant.run([&] { facts.storeId = folder.StoreID(); });
    tolerant.run([&] { facts.name = folder.Name(); });
    return facts;
}

} // namespace

DupItemTable ReadDupItems(const DupItemType &type, const DupSwitches &switches, const FolderSelection &selection,
                          QString &errorText)
{
    DupItemTable table(int(switches.fields.size()));
    table.reserve(selection.itemCount);
    ItemReader reader(type, switches, table, errorText);
    RunHost &host = CurrentRunHost();
    int expected = selection.itemCount;
    DupProgress progress;
    for (int f = 0; f < selection.folders.size(); ++f) {
        const MAPIFolder &folder = selection.folders[f];
        Tolerant tolerant; // a folder that cannot be read yields no items
        const FolderFacts facts = factsOf(folder, f == selection.markedIndex, tolerant);
        Items items;
        int count = 0;
        tolerant.run([&] { items = folder.Items(); });
        tolerant.run([&] { count = items.Count(); });
        for (int position = 1; position <= count; ++position) {
            const int n = table.addItem();
            if (n > expected) { // the folder has grown since the count
                expected = n;
                host.setProgressMax(expected);
            }
            progress.step(n, [n, expected] {
                return QStringLiteral("Phase 1: Element %1 von %2 einlesen").arg(n).arg(expected);
            });
            reader.read(items, position, facts, n);
        }
    }
    return table;
}
