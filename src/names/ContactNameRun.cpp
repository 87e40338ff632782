// The run over contacts: analyses each full name, composes FileAs and
// Subject from the layouts and writes a contact back, with backups of its
// nine name fields, only when something differs.
#include "names/NameCorrectionFunctions.h"

#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "restore/BackupFunctions.h"
#include "store/Item.h"
#include "store/Items.h"
#include "store/MAPIFolder.h"
#include "store/StoreError.h"

namespace {

const int kErrorContactRun = 2501;

struct RunOptions {
    bool businessCheck = false;
    bool subjectToo = false; // SubjectNameCorrect: compose and write Subject
};

// The nine name fields of a contact, in the order of their backups.
struct ContactNames {
    QString fullName, title, firstName, middleName, lastName, suffix, fileAs, subject, companyName;

    static ContactNames read(const Item &contact)
    {
        return {contact.text(QStringLiteral("FullName")), contact.text(QStringLiteral("Title")),
                contact.text(QStringLiteral("FirstName")), contact.text(QStringLiteral("MiddleName")),
                contact.text(QStringLiteral("LastName")), contact.text(QStringLiteral("Suffix")),
                contact.text(QStringLiteral("FileAs")), contact.text(QStringLiteral("Subject")),
                contact.text(QStringLiteral("CompanyName"))};
    }

    void backUp(Item &contact) const
    {
        WriteBackup(contact, QStringLiteral("Fullname"), fullName);
        WriteBackup(contact, QStringLiteral("Title"), title);
        WriteBackup(contact, QStringLiteral("FirstName"), firstName);
        WriteBackup(contact, QStringLiteral("MiddleName"), middleName);
        WriteBackup(contact, QStringLiteral("LastName"), lastName);
        WriteBackup(contact, QStringLiteral("Suffix"), suffix);
        WriteBackup(contact, QStringLiteral("FileAs"), fileAs);
        WriteBackup(contact, QStringLiteral("Subject"), subject);
        WriteBackup(contact, QStringLiteral("CompanyName"), companyName);
    }

    // The fields the comparison looks at; CompanyName is not among them.
    [[nodiscard]] bool samePerson(const ContactNames &o) const
    {
        return firstName == o.firstName && title == o.title && middleName == o.middleName && lastName == o.lastName
            && suffix == o.suffix && fileAs == o.fileAs && subject == o.subject;
    }
};

enum class ContactResult { Unchanged, Saved, AnalysisFailed };

ContactResult correctContact(Item &contact, const RunOptions &options)
{
    const ContactNames old = ContactNames::read(contact);
    // A contact that already has a company is always a person.
    const bool checkBusiness = old.companyName.isEmpty() && options.businessCheck;
    ContactNames now = old;
    bool isBusiness = false;
    if (!AnalyzeFullName(old.fullName, now.title, now.firstName, now.middleName, now.lastName, now.suffix,
                         isBusiness, checkBusiness))
        return ContactResult::AnalysisFailed;
    const QString company = isBusiness ? old.fullName : old.companyName;
    // The layouts are read anew for every contact. Their fallbacks count only
    // for a key that goes missing while the program runs (the defaults are
    // written at start); the "L" of "N,LV" stands for no part and stays in
    // the result as a literal letter.
    now.fileAs = BuildNameLayout(now.title, now.firstName, now.middleName, now.lastName, now.suffix, company,
                                 GetSetting(QStringLiteral("FileAsLayoutEx"), QStringLiteral("N,LV")));
    if (options.subjectToo)
        now.subject = BuildNameLayout(now.title, now.firstName, now.middleName, now.lastName, now.suffix, company,
                                      GetSetting(QStringLiteral("SubjectLayout"), QStringLiteral("VN")));
    if (!isBusiness && now.samePerson(old))
        return ContactResult::Unchanged;

    old.backUp(contact);
    contact.set(QStringLiteral("FullName"), QString());
    if (isBusiness) {
        contact.set(QStringLiteral("CompanyName"), company);
    } else {
        contact.set(QStringLiteral("Title"), now.title);
        contact.set(QStringLiteral("FirstName"), now.firstName);
        contact.set(QStringLiteral("MiddleName"), now.middleName);
        contact.set(QStringLiteral("LastName"), now.lastName);
        contact.set(QStringLiteral("Suffix"), now.suffix);
        contact.set(QStringLiteral("FileAs"), now.fileAs);
        if (options.subjectToo)
            contact.set(QStringLiteral("Subject"), now.subject);
    }
    contact.Save();
    return ContactResult::Saved;
}

// Returns false when an analysis failed: the run ends there.
bool correctFolder(const MAPIFolder &folder, const RunOptions &options, int &changed)
{
    RunHost &host = CurrentRunHost();
    const Items items = folder.Items();
    const QString folderName = folder.Name();
    const int count = items.Count();
    host.setProgressMax(count);
    for (int i = 1; i <= count; ++i) {
        Item item = items.Item(i);
        if (item.Class() == olContact) {
            const ContactResult result = correctContact(item, options);
            if (result == ContactResult::AnalysisFailed)
                return false;
            if (result == ContactResult::Saved)
                ++changed;
        }
        host.setStatusText(ContactStatusText(i, count, folderName));
        host.setProgressValue(i);
        host.processEvents();
    }
    host.setStatusText(QStringLiteral("Bereit"));
    host.setProgressValue(0);
    return true;
}

} // namespace

void CorrectNamesInFolders(const QList<MAPIFolder> &folders)
{
    const RunOptions options{GetBoolSetting(QStringLiteral("BusinessNameCheck"), false),
                             GetBoolSetting(QStringLiteral("SubjectNameCorrect"), false)};
    RunHost &host = CurrentRunHost();
    host.SetRunning(true);
    int changed = 0;
    try {
        for (const MAPIFolder &folder : folders) {
            if (!correctFolder(folder, options, changed)) {
                // The analysis has shown its error; nothing more is written.
                host.SetRunning(false);
                return;
            }
        }
    } catch (const StoreError &e) {
        ShowError(e.description(), e.number(), kErrorContactRun, QString());
        host.SetRunning(false);
        return;
    }
    ShowMessage(QStringLiteral("%1 Kontakt(e) geändert.").arg(changed), MsgInformation, QStringLiteral("Fertig!"));
    host.SetRunning(false);
}
