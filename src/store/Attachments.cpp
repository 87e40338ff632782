#include "store/Attachments.h"

#include "store/ItemData_p.h"
#include "store/StoreConstants.h"
#include "store/StoreError.h"
#include "store/StoreFile_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

ItemData &itemOf(const std::shared_ptr<ItemData> &item)
{
    if (!item)
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist kein Element angegeben."));
    item->ensureAttachments();
    return *item;
}

int indexOfKey(const ItemData &d, int key)
{
    for (int i = 0; i < d.attachments.size(); ++i)
        if (d.attachments.at(i).key == key)
            return i;
    ThrowNotFound(QStringLiteral("Die Anlage gibt es nicht mehr."));
}

[[noreturn]] void fileError(const QString &path, const QString &why)
{
    throw StoreError(StoreErrDisk, QStringLiteral("Die Datei \"%1\" %2.").arg(QDir::toNativeSeparators(path), why));
}

} // namespace

void ItemData::ensureAttachments()
{
    if (attachmentsLoaded)
        return;
    attachments = id == 0 ? QList<AttachmentRecord>() : store->loadAttachments(id);
    for (AttachmentRecord &a : attachments)
        a.key = nextAttachmentKey++;
    removedAttachments.clear();
    attachmentsLoaded = true;
}

Attachment::Attachment(std::shared_ptr<ItemData> item, int key)
    : m_item(std::move(item))
    , m_key(key)
{
}

AttachmentRecord &Attachment::record() const
{
    ItemData &d = itemOf(m_item);
    return d.attachments[indexOfKey(d, m_key)];
}

QString Attachment::FileName() const { return record().fileName; }
QString Attachment::DisplayName() const { return record().displayName; }
int Attachment::Type() const { return record().type; }
qint64 Attachment::Size() const { return record().size; }
int Attachment::Index() const { return indexOfKey(itemOf(m_item), m_key) + 1; }

void Attachment::SaveAsFile(const QString &path) const
{
    AttachmentRecord &a = record();
    if (a.type == olByReference) {
        if (!QFileInfo::exists(a.path))
            fileError(a.path, QStringLiteral("der verknüpften Anlage wurde nicht gefunden"));
        QFile::remove(path);
        if (!QFile::copy(a.path, path))
            fileError(path, QStringLiteral("kann nicht geschrieben werden"));
        return;
    }
    const QByteArray data = Content();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        fileError(path, QStringLiteral("kann nicht geschrieben werden"));
}

QByteArray Attachment::Content() const
{
    AttachmentRecord &a = record();
    if (a.type == olByReference)
        return {};
    if (!a.dataLoaded) {
        a.data = m_item->store->attachmentData(a.id);
        a.dataLoaded = true;
    }
    return a.data;
}

void Attachment::Delete()
{
    ItemData &d = itemOf(m_item);
    const int index = indexOfKey(d, m_key);
    if (d.attachments.at(index).id != 0)
        d.removedAttachments << d.attachments.at(index).id;
    d.attachments.removeAt(index);
    d.dirty = true;
}

QVariant Attachment::GetProperty(unsigned int tag) const
{
    const AttachmentRecord &a = record();
    switch (tag) {
    case PR_ATTACH_PATHNAME: return a.path.isEmpty() ? QVariant() : QVariant(a.path);
    case PR_ATTACHMENT_HIDDEN: return a.hidden;
    default:
        throw StoreError(StoreErrNotFound, QStringLiteral("Die Eigenschaft 0x%1 gibt es bei Anlagen nicht.")
                                               .arg(QString::number(tag, 16).rightJustified(8, u'0').toUpper()));
    }
}

void Attachment::SetProperty(unsigned int tag, const QVariant &value)
{
    if (tag != PR_ATTACHMENT_HIDDEN)
        throw StoreError(StoreErrReadOnly, QStringLiteral("Die Eigenschaft 0x%1 kann nicht geändert werden.")
                                               .arg(QString::number(tag, 16).rightJustified(8, u'0').toUpper()));
    record().hidden = value.toBool();
    m_item->dirty = true;
}

Attachments::Attachments(std::shared_ptr<ItemData> item)
    : m_item(std::move(item))
{
}

int Attachments::Count() const
{
    return int(itemOf(m_item).attachments.size());
}

Attachment Attachments::Item(int index) const
{
    const ItemData &d = itemOf(m_item);
    if (index < 1 || index > d.attachments.size())
        throw StoreError(StoreErrNotFound, QStringLiteral("Eine Anlage %1 gibt es nicht.").arg(index));
    return Attachment(m_item, d.attachments.at(index - 1).key);
}

Attachment Attachments::Add(const QString &source, int type, int position, const QString &displayName)
{
    ItemData &d = itemOf(m_item);
    AttachmentRecord a;
    a.type = type;
    a.fileName = QFileInfo(source).fileName();
    a.displayName = displayName.isEmpty() ? a.fileName : displayName;
    if (type == olByReference) {
        a.path = source;
    } else if (type == olByValue) {
        QFile file(source);
        if (!file.open(QIODevice::ReadOnly))
            fileError(source, QStringLiteral("kann nicht gelesen werden"));
        a.data = file.readAll();
        a.size = a.data.size();
    } else {
        throw StoreError(StoreErrTypeMismatch, QStringLiteral("Den Anlagentyp %1 gibt es nicht.").arg(type));
    }
    a.key = d.nextAttachmentKey++;
    const int at = position >= 1 && position <= d.attachments.size() ? position - 1 : int(d.attachments.size());
    d.attachments.insert(at, a);
    d.dirty = true;
    return Attachment(m_item, a.key);
}

Attachment Attachments::AddData(const QByteArray &content, const QString &fileName, const QString &displayName)
{
    ItemData &d = itemOf(m_item);
    AttachmentRecord a;
    a.type = olByValue;
    a.fileName = fileName;
    a.displayName = displayName.isEmpty() ? fileName : displayName;
    a.data = content;
    a.size = content.size();
    a.key = d.nextAttachmentKey++;
    d.attachments.append(a);
    d.dirty = true;
    return Attachment(m_item, a.key);
}

void Attachments::Remove(int index)
{
    Item(index).Delete();
}
