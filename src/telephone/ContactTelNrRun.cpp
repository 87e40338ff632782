#include "telephone/ContactTelNrRun.h"

#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "restore/BackupFunctions.h"
#include "store/Item.h"
#include "store/Items.h"
#include "store/MAPIFolder.h"
#include "store/StoreError.h"
#include "telephone/TelNrStandard.h"

namespace {

const int kErrorTelRun = 802;
const QString kFaxPrefix = QStringLiteral("Fax: ");

// Writes the backup of the field, then the new value.
void changeField(Item &contact, const QString &field, const QString &oldValue, const QString &newValue)
{
    WriteBackup(contact, field, oldValue);
    contact.set(field, newValue);
}

bool applyPlainRule(Item &contact, const QString &field)
{
    const QString value = contact.text(field);
    bool changed = false;
    const QString normal = StandardTelNr(value, changed);
    if (changed)
        changeField(contact, field, value, normal);
    return changed;
}

bool applyFaxRule(Item &contact, const QString &field, bool hideFax)
{
    const QString value = contact.text(field);
    bool changed = false;
    const QString normal = StandardTelNr(value, changed);
    if (hideFax) {
        // Also a number the normaliser left alone gets the prefix; a field
        // that has it already (resolved or not) stays.
        if (normal.isEmpty() || value == kFaxPrefix + normal || normal.startsWith(kFaxPrefix))
            return false;
        changeField(contact, field, value, kFaxPrefix + normal);
        return true;
    }
    if (changed) {
        changeField(contact, field, value, normal);
        return true;
    }
    // HideFax switched off: the prefix goes from an unresolved number too.
    if (value.startsWith(kFaxPrefix)) {
        changeField(contact, field, value, value.mid(kFaxPrefix.size()));
        return true;
    }
    return false;
}

TelRunOptions readRunOptions(bool hideFax)
{
    TelRunOptions options;
    options.hideFax = hideFax;
    if (GetBoolSetting(QStringLiteral("FilterTel"), false) && GetBoolSetting(QStringLiteral("CountryFilter"), false))
        options.countryRestriction = GetSetting(QStringLiteral("CountryFilterText"), QString());
    return options;
}

void runFolder(const MAPIFolder &folder, const TelRunOptions &options, int &changedContacts)
{
    RunHost &host = CurrentRunHost();
    const Items items = options.countryRestriction.isEmpty()
        ? folder.Items()
        : folder.Items().Restrict(CountryRestrictionFilter(options.countryRestriction));
    const QString folderName = folder.Name();
    const int count = items.Count();
    host.setProgressMax(count);
    for (int i = 1; i <= count; ++i) {
        Item item = items.Item(i);
        if (item.Class() == olContact) {
            if (NormaliseContactNumbers(item, options.hideFax)) {
                item.Save();
                ++changedContacts;
            }
            host.setStatusText(ContactStatusText(i, count, folderName));
        }
        host.setProgressValue(i);
        host.processEvents();
    }
    host.setStatusText(QStringLiteral("Bereit"));
    host.setProgressValue(0);
}

} // namespace

const QStringList &FaxNumberFields()
{
    static const QStringList fields{"BusinessFaxNumber", "HomeFaxNumber", "OtherFaxNumber"};
    return fields;
}

const QStringList &PlainNumberFields()
{
    static const QStringList fields{
        "BusinessTelephoneNumber", "HomeTelephoneNumber", "MobileTelephoneNumber", "AssistantTelephoneNumber",
        "Business2TelephoneNumber", "CallbackTelephoneNumber", "CarTelephoneNumber", "CompanyMainTelephoneNumber",
        "Home2TelephoneNumber", "ISDNNumber", "OtherTelephoneNumber", "PagerNumber", "PrimaryTelephoneNumber",
        "RadioTelephoneNumber", "TelexNumber", "TTYTDDTelephoneNumber"};
    return fields;
}

QString CountryRestrictionFilter(const QString &country)
{
    QString quoted = country;
    quoted.replace(u'\'', QStringLiteral("''"));
    return QStringLiteral("[BusinessAddressCountry] = '%1' OR [HomeAddressCountry] = '%1' OR "
                          "[OtherAddressCountry] = '%1'").arg(quoted);
}

bool NormaliseContactNumbers(Item &contact, bool hideFax)
{
    bool changed = false;
    for (const QString &field : FaxNumberFields())
        changed = applyFaxRule(contact, field, hideFax) || changed;
    for (const QString &field : PlainNumberFields())
        changed = applyPlainRule(contact, field) || changed;
    return changed;
}

int RunContactTelNrOn(const QList<MAPIFolder> &folders, bool hideFax)
{
    RunHost &host = CurrentRunHost();
    host.SetRunning(true);
    const TelRunOptions options = readRunOptions(hideFax);
    int changedContacts = 0;
    try {
        for (const MAPIFolder &folder : folders)
            runFolder(folder, options, changedContacts);
    } catch (const StoreError &error) {
        ShowError(error.description(), error.number(), kErrorTelRun, QString());
        host.setStatusText(QStringLiteral("Bereit"));
        host.setProgressValue(0);
        host.SetRunning(false);
        return -1;
    }
    ShowMessage(QStringLiteral("%1 Kontakt(e) geändert.").arg(changedContacts), MsgInformation,
                QStringLiteral("Fertig!"));
    host.SetRunning(false);
    return changedContacts;
}
