#include "Demo.h"

#include "DemoData.h"
#include "store/Store.h"

namespace {

MAPIFolder contactFolderBeside(const NameSpace &ns)
{
    const MAPIFolder contacts = ns.GetDefaultFolder(olFolderContacts);
    MAPIFolder old = contacts.Parent().Folders().Find(QStringLiteral("Kontakte Alt"));
    return old.isNull() ? contacts.Parent().Folders().Add(QStringLiteral("Kontakte Alt"), olFolderContacts) : old;
}

void fillArchive()
{
    const MAPIFolder archive = AddStore(QStringLiteral("Archiv"), false);
    MAPIFolder mail = archive.Folders().Add(QStringLiteral("Mail 2019"), olFolderInbox);
    for (int n = 1; n <= 3; ++n) {
        Item item = mail.Items().Add();
        item.set(QStringLiteral("SenderName"), QStringLiteral("Stadtwerke Bonn"));
        item.setSubject(QStringLiteral("Abschlag %1/2019").arg(n));
        item.set(QStringLiteral("ReceivedTime"), QDateTime(QDate(2019, n, 15), QTime(9, 0)));
        item.Attachments().AddData(QByteArray(60 * 1024, char('a' + n)), QStringLiteral("Abschlag_%1.pdf").arg(n));
        item.set(QStringLiteral("CreationTime"), QDateTime(QDate(2019, n, 15), QTime(9, 0)));
        item.Save();
    }
    MAPIFolder contacts = archive.Folders().Add(QStringLiteral("Kontakte 2015"), olFolderContacts);
    Item old = contacts.Items().Add();
    old.set(QStringLiteral("FullName"), QStringLiteral("Sabine Schulze"));
    old.set(QStringLiteral("HomeTelephoneNumber"), QStringLiteral("040 223344"));
    old.Save();
}

void fillOtherUsers()
{
    const MAPIFolder petra = AddAddressBookUser(QStringLiteral("Petra Schneider"), {QStringLiteral("pschneider")},
                                                QStringLiteral("petra.schneider@example.de"));
    SetMailboxAccess(QStringLiteral("Petra Schneider"), olFolderCalendar, true);
    SetMailboxAccess(QStringLiteral("Petra Schneider"), olFolderContacts, true);
    Item meeting = petra.Folders().Item(QStringLiteral("Kalender")).Items().Add();
    meeting.setSubject(QStringLiteral("Teamrunde"));
    meeting.set(QStringLiteral("Start"), QDateTime(QDate::currentDate().addDays(2), QTime(9, 0)));
    meeting.set(QStringLiteral("End"), QDateTime(QDate::currentDate().addDays(2), QTime(10, 0)));
    meeting.Save();
    Item contact = petra.Folders().Item(QStringLiteral("Kontakte")).Items().Add();
    contact.set(QStringLiteral("FullName"), QStringLiteral("Tobias Neumann"));
    contact.set(QStringLiteral("BusinessTelephoneNumber"), QStringLiteral("0221/98765"));
    contact.Save();

    const MAPIFolder thomas = AddAddressBookUser(QStringLiteral("Thomas Wagner"), {QStringLiteral("twagner")},
                                                 QStringLiteral("thomas.wagner@example.de"));
    SetMailboxAccess(QStringLiteral("Thomas Wagner"), olFolderCalendar, false);
    Item secret = thomas.Folders().Item(QStringLiteral("Kalender")).Items().Add();
    secret.setSubject(QStringLiteral("Privat"));
    secret.Save();
}

} // namespace

DemoSummary FillDemoProfile()
{
    const NameSpace ns = Application().GetNamespace();
    DemoSummary summary;
    summary.contacts = FillDemoContacts(ns.GetDefaultFolder(olFolderContacts), contactFolderBeside(ns));
    summary.appointments = FillDemoCalendar(ns.GetDefaultFolder(olFolderCalendar));
    summary.mails = FillDemoMail(ns.GetDefaultFolder(olFolderInbox), ns.GetDefaultFolder(olFolderSentMail));
    summary.tasks = FillDemoTasks(ns.GetDefaultFolder(olFolderTasks));
    summary.notes = FillDemoNotes(ns.GetDefaultFolder(olFolderNotes));
    summary.journal = FillDemoJournal(ns.GetDefaultFolder(olFolderJournal));
    fillArchive();
    fillOtherUsers();
    return summary;
}
