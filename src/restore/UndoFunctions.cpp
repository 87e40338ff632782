#include "restore/UndoFunctions.h"

#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "restore/BackupFunctions.h"
#include "store/Item.h"
#include "store/Items.h"
#include "store/MAPIFolder.h"
#include "store/StoreError.h"
#include "store/UserProperties.h"

namespace {

const int kErrorRestore = 401;

struct RestoreCounts {
    int itemsSeen = 0;
    int fieldsRestored = 0;
    int contactsRestored = 0;
};

void restoreFolder(const MAPIFolder &folder, const QStringList &fields, RestoreCounts &counts)
{
    RunHost &host = CurrentRunHost();
    const Items items = folder.Items();
    const int count = items.Count();
    for (int i = 1; i <= count; ++i) {
        ++counts.itemsSeen;
        host.setStatusText(QStringLiteral("Wiederherstellung..."));
        host.setProgressValue(counts.itemsSeen);
        host.processEvents();
        Item item = items.Item(i);
        if (item.Class() != olContact)
            continue;
        int restoredHere = 0;
        for (const QString &field : fields)
            restoredHere += RestoreField(item, field) ? 1 : 0;
        if (restoredHere > 0) {
            counts.fieldsRestored += restoredHere;
            ++counts.contactsRestored;
            item.Save();
        }
    }
}

} // namespace

const QStringList &BackupFields(const QString &kind)
{
    static const QStringList telephone{
        "BusinessTelephoneNumber", "BusinessFaxNumber", "HomeFaxNumber", "HomeTelephoneNumber",
        "MobileTelephoneNumber", "AssistantTelephoneNumber", "Business2TelephoneNumber", "CallbackTelephoneNumber",
        "CarTelephoneNumber", "CompanyMainTelephoneNumber", "Home2TelephoneNumber", "ISDNNumber", "OtherFaxNumber",
        "OtherTelephoneNumber", "PagerNumber", "PrimaryTelephoneNumber", "RadioTelephoneNumber", "TelexNumber",
        "TTYTDDTelephoneNumber"};
    static const QStringList names{"Fullname", "FirstName", "MiddleName", "LastName", "Suffix",
                                   "Title", "FileAs", "Subject", "CompanyName"};
    static const QStringList none;
    if (kind == QStringLiteral("Telephone"))
        return telephone;
    if (kind == QStringLiteral("Names"))
        return names;
    return none;
}

bool RestoreField(Item &item, const QString &field)
{
    UserProperty backup = item.UserProperties().Find(BackupPropertyName(field));
    if (backup.isNull())
        return false;
    item.set(field, backup.Value().toString());
    backup.Delete();
    return true;
}

int RestoreContactBackupsIn(const QList<MAPIFolder> &folders, int itemCount, const QString &kind)
{
    const QStringList &fields = BackupFields(kind);
    if (fields.isEmpty())
        return -1;
    RunHost &host = CurrentRunHost();
    host.SetRunning(true);
    // The items seen run across all folders: the bar gets their total.
    host.setProgressMax(itemCount);
    RestoreCounts counts;
    try {
        for (const MAPIFolder &folder : folders)
            restoreFolder(folder, fields, counts);
    } catch (const StoreError &error) {
        ShowError(error.description(), error.number(), kErrorRestore, QString());
        host.SetRunning(false);
        return -1;
    }
    host.SetRunning(false);
    const QString what = kind == QStringLiteral("Names") ? QStringLiteral("Namen") : QStringLiteral("Telefonnummern");
    ShowMessage(QStringLiteral("%1 bei %2 Kontakten wiederhergestellt.").arg(what).arg(counts.contactsRestored),
                MsgInformation, QStringLiteral("Info!"));
    return counts.contactsRestored;
}
