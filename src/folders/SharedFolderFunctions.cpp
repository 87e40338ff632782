#include "folders/SharedFolderFunctions.h"

#include "folders/FolderState.h"
#include "store/Application.h"
#include "store/MAPIUtils.h"
#include "store/StoreConstants.h"

const QList<SharedFolderType> &SharedFolderTypes()
{
    static const QList<SharedFolderType> types{
        {QStringLiteral("Kalender"), olFolderCalendar}, {QStringLiteral("Kontakte"), olFolderContacts},
        {QStringLiteral("Posteingang"), olFolderInbox}, {QStringLiteral("Notizen"), olFolderNotes},
        {QStringLiteral("Aufgaben"), olFolderTasks},    {QStringLiteral("Journal"), olFolderJournal},
    };
    return types;
}

QString ResolveName(const QString &text)
{
    const Application application; // attaches to the profile, or throws
    Recipient recipient = MAPIUtils::CreateRecipient(text, true, 0);
    recipient.Resolve(false);
    return recipient.Resolved() ? recipient.Name() : QString();
}

void OpenSharedFolder(const QString &resolvedName, int folderType)
{
    const NameSpace nameSpace = Application().GetNamespace(QStringLiteral("MAPI"));
    const Recipient recipient = nameSpace.CreateRecipient(resolvedName);
    const MAPIFolder folder = nameSpace.GetSharedDefaultFolder(recipient, folderType);
    FolderData().sharedFolder = folder;
}

void CloseSharedFolder()
{
    FolderData().sharedFolder = MAPIFolder();
}

bool IsSharedFolderOpen()
{
    return !FolderData().sharedFolder.isNull();
}
