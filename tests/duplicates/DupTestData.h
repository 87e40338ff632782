#pragma once
// Helpers of the duplicate tests: items from a compact description, a
// folder selection without the folder tree, and the field switches of a kind
// set to exactly the named fields.

#include "duplicates/DupItemTypes.h"
#include "folders/FolderFunctions.h"
#include "frame/RegistryFunctions.h"
#include "store/StoreTestProfile.h"

#include <QFile>
#include <QTemporaryDir>

// Adds and saves an item. description: the Class number, then "Property=value"
// pieces, all joined by '|'; "Attachments=n" adds n small files. created,
// when valid, becomes the item's CreationTime.
inline Item AddDupItem(const MAPIFolder &folder, const QString &description, const QDateTime &created = {})
{
    const QStringList pieces = description.split(u'|');
    Item item = folder.Items().Add(pieces.first().toInt());
    for (const QString &piece : pieces.mid(1)) {
        const QString name = piece.section(u'=', 0, 0);
        const QString value = piece.section(u'=', 1);
        if (name == QLatin1String("Attachments")) {
            static QTemporaryDir files;
            for (int k = 0; k < value.toInt(); ++k) {
                const QString path = files.filePath(QStringLiteral("Anlage%1.txt").arg(k));
                QFile file(path);
                if (file.open(QIODevice::WriteOnly))
                    file.write("Inhalt");
                file.close();
                item.Attachments().Add(path);
            }
        } else {
            item.set(name, value);
        }
    }
    if (created.isValid())
        item.set(QStringLiteral("CreationTime"), created);
    item.Save();
    return item;
}

// The selection that the folder tree would give for these ticked folders,
// the one at markedIndex marked.
inline FolderSelection SelectionOf(const QList<MAPIFolder> &folders, int markedIndex = 0)
{
    FolderSelection selection;
    selection.folders = folders;
    for (const MAPIFolder &folder : folders)
        selection.itemCount += folder.Items().Count();
    selection.markedIndex = markedIndex;
    selection.ok = true;
    return selection;
}

// Switches on exactly the named fields of the kind.
inline void SwitchOnly(const DupItemType &type, const QStringList &keys)
{
    for (const DupField &field : type.fields)
        SaveSetting(QString::fromLatin1(field.settingKey),
                    keys.contains(QLatin1String(field.settingKey)) ? QStringLiteral("1") : QStringLiteral("0"));
}

// The default folder of each kind.
inline int DefaultFolderOf(DupKind kind)
{
    switch (kind) {
    case DupKind::Task: return olFolderTasks;
    case DupKind::Email: return olFolderInbox;
    case DupKind::Contact: return olFolderContacts;
    case DupKind::Appointment: return olFolderCalendar;
    case DupKind::Journal: return olFolderJournal;
    case DupKind::Note: return olFolderNotes;
    }
    return 0;
}
