#include "itemtools/MClassChangeFunctions.h"

#include "folders/FolderFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/Store.h"

#include <optional>

namespace {

struct BaseClassEntry {
    int itemClass;
    const char *baseClass;
};

// Class number of the item and the message class that its standard form has.
constexpr BaseClassEntry kBaseClasses[] = {
    {26, "IPM.Appointment"}, {40, "IPM.Contact"}, {48, "IPM.Task"},    {43, "IPM.Note"},
    {45, "IPM.Post"},        {69, "IPM.Distlist"}, {42, "IPM.Activity"},
};

} // namespace

QString BaseClassFor(int itemClass, const QString &messageClass)
{
    for (const BaseClassEntry &entry : kBaseClasses) {
        if (entry.itemClass != itemClass)
            continue;
        const QString base = QString::fromLatin1(entry.baseClass);
        return messageClass.startsWith(base, Qt::CaseSensitive) ? base : QString();
    }
    return QString();
}

QString NewMessageClass(const QString &baseClass, const QString &name)
{
    const QString shortName = name.trimmed();
    return shortName.isEmpty() ? baseClass : baseClass + u'.' + shortName;
}

QString GetBaseClass(const Item &item)
{
    return BaseClassFor(item.Class(), item.MessageClass());
}

namespace {

// Gives one item its new class and saves it. Returns false for an item
// without a base class, which is passed over. A failed save leaves the item
// as it was, also in memory, and throws.
bool changeItemClass(const Items &items, int position, const QString &name)
{
    Item item = items.Item(position);
    const QString base = GetBaseClass(item);
    if (base.isEmpty())
        return false;
    const QString previous = item.MessageClass();
    item.setMessageClass(NewMessageClass(base, name));
    CurrentRunHost().processEvents();
    try {
        item.Save();
    } catch (const StoreError &) {
        try {
            item.setMessageClass(previous);
        } catch (const StoreError &) {
            // The failure of the save is the one that counts.
        }
        throw;
    }
    return true;
}

} // namespace

void ChangeFolderClass(const MAPIFolder &folder, const QString &name)
{
    if (folder.isNull())
        return;
    RunHost &host = CurrentRunHost();
    std::optional<StoreError> lastError;
    try {
        const Items items = folder.Items();
        const int count = items.Count();
        if (count == 0) {
            ShowMessage(QStringLiteral("Keine Elemente vorhanden, im Ordner: ") + folder.Name(), MsgInformation,
                        QStringLiteral("Hinweis!"), 5);
            return;
        }
        host.setProgressMax(count);
        host.setStatusText(QStringLiteral("Bearbeite Elemente..."));
        int changed = 0;
        for (int i = 1; i <= count; ++i) {
            try {
                if (!changeItemClass(items, i, name))
                    continue;
            } catch (const StoreError &e) {
                lastError = e;
            }
            host.setProgressValue(++changed);
            host.processEvents();
        }
    } catch (const StoreError &e) {
        lastError = e;
    }
    host.setProgressValue(0);
    host.setStatusText(QStringLiteral("Bereit"));
    if (lastError)
        ShowError(lastError->description(), lastError->number(), 1002);
}

void ChangeMessageClass(const QString &name)
{
    try {
        SetRunning(true);
        const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::AllTypes), false);
        if (selection.ok) {
            for (const MAPIFolder &folder : selection.folders)
                ChangeFolderClass(folder, name);
        }
    } catch (const StoreError &e) {
        ShowError(e.description(), e.number(), 1001);
    }
    SetRunning(false);
}
