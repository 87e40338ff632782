#pragma once
// The numeric and literal constants of the mail store's object model.

#include <QDateTime>
#include <QString>

// Item Class numbers.
enum OlObjectClass : int {
    olAppointment = 26,
    olContact = 40,
    olJournal = 42,
    olMail = 43,
    olNote = 44,
    olPost = 45,
    olTask = 48,
    olDistributionList = 69,
};

// Default folder types (NameSpace::GetDefaultFolder, GetSharedDefaultFolder).
enum OlDefaultFolders : int {
    olFolderDeletedItems = 3,
    olFolderSentMail = 5,
    olFolderInbox = 6,
    olFolderCalendar = 9,
    olFolderContacts = 10,
    olFolderJournal = 11,
    olFolderNotes = 12,
    olFolderTasks = 13,
    olFolderDrafts = 16,
};

// Types of user properties. Only text is used by the program; the others
// exist so that a store written elsewhere can be read.
enum OlUserPropertyType : int {
    olText = 1,
    olNumber = 3,
    olDateTime = 5,
    olYesNo = 6,
};

// Attachment types.
enum OlAttachmentType : int {
    olByValue = 1,
    olByReference = 4,
    olEmbeddeditem = 5,
};

// Busy status of appointments.
enum OlBusyStatus : int {
    olFree = 0,
    olTentative = 1,
    olBusy = 2,
    olOutOfOffice = 3,
};

// Colours of notes.
enum OlNoteColor : int {
    olBlue = 0,
    olGreen = 1,
    olPink = 2,
    olYellow = 3,
    olWhite = 4,
};

// MAPI property tags of the table reader and of attachments.
enum MapiPropertyTag : unsigned int {
    PR_ENTRYID = 0x0FFF0102,
    PR_STORE_ENTRYID = 0x0FFB0102,
    PR_DISPLAY_NAME = 0x3001001E,
    PR_CONTAINER_CLASS = 0x3613001E,
    PR_ATTACH_PATHNAME = 0x3708001E,
    PR_ATTACHMENT_HIDDEN = 0x7FFE000B,
};

// Message classes (items) and container classes (folders), literal.
namespace MessageClass {
inline constexpr char Appointment[] = "IPM.Appointment";
inline constexpr char Contact[] = "IPM.Contact";
inline constexpr char Task[] = "IPM.Task";
inline constexpr char Note[] = "IPM.Note"; // mail
inline constexpr char Post[] = "IPM.Post";
inline constexpr char StickyNote[] = "IPM.StickyNote";
inline constexpr char Activity[] = "IPM.Activity"; // journal entry
// The base class that the message class change compares with, exactly.
inline constexpr char Distlist[] = "IPM.Distlist";
// The class that a new distribution list of this store gets, as the platform
// writes it (with a capital L: the class change passes over such lists).
inline constexpr char DistListAsWritten[] = "IPM.DistList";
} // namespace MessageClass

namespace ContainerClass {
inline constexpr char Note[] = "IPF.Note";
inline constexpr char Task[] = "IPF.Task";
inline constexpr char Journal[] = "IPF.Journal";
inline constexpr char Appointment[] = "IPF.Appointment";
inline constexpr char Contact[] = "IPF.Contact";
inline constexpr char StickyNote[] = "IPF.StickyNote";
} // namespace ContainerClass

// The value of a date property that holds no date: 01.01.4501 00:00, as the
// platform shows it.
QDateTime NoDate();
[[nodiscard]] bool IsNoDate(const QDateTime &when);

// The Class number of a message class, by its base (ignoring case, as the
// platform does when it creates an item); 0 for a class it does not know.
[[nodiscard]] int ClassOfMessageClass(const QString &messageClass);

// The message class of a new item of the Class number; "" for an unknown one.
[[nodiscard]] QString MessageClassOfClass(int itemClass);
