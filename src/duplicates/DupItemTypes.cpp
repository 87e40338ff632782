#include "duplicates/DupItemTypes.h"

#include "duplicates/DupError.h"
#include "frame/RegistryFunctions.h"

namespace {

using F = DupFieldForm;
using S = DupFieldSource;

// Contacts: telephone numbers and postal addresses are compared as written;
// no number normalisation takes place here.
constexpr DupField kContactFields[] = {
    {"KontakteBusinessTelephoneNumber", "BusinessTelephoneNumber"},
    {"KontakteCompanyName", "CompanyName", F::Normalised},
    {"KontakteFileAs", "FileAs", F::Normalised},
    {"KontakteEmail1Address", "Email1Address", F::Normalised},
    {"KontakteFirstName", "FirstName", F::Normalised},
    {"KontakteLastName", "LastName", F::Normalised},
    {"KontakteMobileTelephoneNumber", "MobileTelephoneNumber"},
    {"KontakteHomeTelephoneNumber", "HomeTelephoneNumber"},
    {"KontakteBusinessAddress", "BusinessAddress"},
    {"KontakteHomeAddress", "HomeAddress"},
    {"KontakteFieldName", "", F::AsRead, S::UserProperty},
};

constexpr DupField kTaskFields[] = {
    {"AufgabenStartDate", "StartDate"},
    {"AufgabenSubject", "Subject", F::Normalised},
    {"AufgabenOwner", "Owner", F::Normalised},
    {"AufgabenBody", "Body", F::Normalised},
};

constexpr DupField kAppointmentFields[] = {
    {"TermineStart", "Start"},
    {"TermineEnd", "End"},
    {"TermineSubject", "Subject", F::Normalised},
    {"TermineAllDayEvent", "AllDayEvent"},
    {"TermineBusyStatus", "BusyStatus"},
    {"TermineBody", "Body", F::Normalised},
};

// Mail and post in one table; a post has no recipients, so its To stays empty.
constexpr DupField kEmailFields[] = {
    {"EmailSenderName", "SenderName"},
    {"EmailSubject", "Subject", F::Normalised},
    {"EmailTo", "To", F::AsRead, S::Property, 43},
    {"EmailBody", "Body"},
    {"EmailAttachments", "Attachments", F::AsRead, S::AttachmentCount},
    {"EmailSentOn", "SentOn"},
    {"EmailReceivedTime", "RECEIVEDTIME"},
};

// The journal keeps everything as written, its subject too.
constexpr DupField kJournalFields[] = {
    {"JournalSubject", "Subject"},
    {"JournalBody", "Body"},
    {"JournalStart", "Start"},
    {"JournalDuration", "Duration"},
};

constexpr DupField kNoteFields[] = {
    {"NotizenColor", "Color"},
    {"NotizenBody", "Body", F::Normalised},
};

const DupItemType kTypes[] = {
    {"RemoveDuplicatesTask", "IPM.Task", {48, 0}, "Remove Duplicates (Task)", 903,
     {"Subject", nullptr}, kTaskFields, true, true, false, true, false},
    {"RemoveDuplicatesEmail", "IPM.Note", {43, 45}, "Remove Duplicates (Email)", 904,
     {"Subject", nullptr}, kEmailFields, true, false, false, true, true},
    {"RemoveDuplicatesContact", "IPM.Contact", {40, 0}, "Remove Duplicates (Contact)", 905,
     {"FileAs", nullptr}, kContactFields, true, false, true, true, false},
    {"RemoveDuplicatesAppointment", "IPM.Appointment", {26, 0}, "Remove Duplicates (Appointment)", 906,
     {"Subject", "Start"}, kAppointmentFields, true, true, false, true, false},
    {"RemoveDuplicatesJournal", "IPM.Activity", {42, 0}, "Remove Duplicates (Journal)", 907,
     {"Body", nullptr}, kJournalFields, false, false, false, true, false},
    {"RemoveDuplicatesNote", "IPM.StickyNote", {44, 0}, "Remove Duplicates (Note)", 908,
     {"Body", nullptr}, kNoteFields, false, false, false, false, false},
};

bool readSwitch(const DupItemType &type, const char *key)
{
    const QString name = QString::fromLatin1(key);
    if (type.switchesAsText)
        return DupBoolSetting(name, QStringLiteral("1"));
    return GetBoolSetting(name, true);
}

} // namespace

const DupItemType &DupTypeOf(DupKind kind)
{
    return kTypes[int(kind)];
}

const DupItemType *DupTypeForFolderClass(const QString &messageClass)
{
    static const struct {
        const char *folderClass;
        DupKind kind;
    } kByClass[] = {
        {"IPM.Appointment", DupKind::Appointment}, {"IPM.Contact", DupKind::Contact},
        {"IPM.Task", DupKind::Task},               {"IPM.Note", DupKind::Email},
        {"IPM.Post", DupKind::Email},              {"IPM.StickyNote", DupKind::Note},
        {"IPM.Activity", DupKind::Journal},
    };
    for (const auto &entry : kByClass) {
        if (messageClass == QLatin1String(entry.folderClass))
            return &DupTypeOf(entry.kind);
    }
    return nullptr;
}

bool DupAcceptsClass(const DupItemType &type, int itemClass)
{
    return itemClass != 0 && (type.classes[0] == itemClass || type.classes[1] == itemClass);
}

DupSwitches ReadDupSwitches(const DupItemType &type)
{
    DupSwitches switches;
    for (const DupField &field : type.fields) {
        if (!readSwitch(type, field.settingKey))
            continue;
        switches.fields.append(&field);
        if (field.source == DupFieldSource::UserProperty)
            switches.userPropertyName = GetSetting(QStringLiteral("KontakteFieldNameStr"), QString());
    }
    switches.folderInside = GetBoolSetting(QStringLiteral("FolderInside"), false);
    if (type.readsSeries)
        switches.series = DupBoolSetting(QStringLiteral("TerminSerie"), QStringLiteral("1"));
    return switches;
}

QString NormaliseDupText(const QString &text)
{
    const QString lower = text.toLower();
    qsizetype begin = 0;
    qsizetype end = lower.size();
    while (begin < end && lower.at(begin) == u' ')
        ++begin;
    while (end > begin && lower.at(end - 1) == u' ')
        --end;
    return lower.mid(begin, end - begin);
}

QString StoreDupValue(const DupField &field, const QString &text)
{
    return field.form == DupFieldForm::Normalised ? NormaliseDupText(text) : text;
}

QString DupItemCaption(const QString &beginning, const QString &folderName, const QString &createdText)
{
    return beginning + QStringLiteral(" (") + folderName + QStringLiteral(", ") + createdText + u')';
}
