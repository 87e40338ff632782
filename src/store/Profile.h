#pragma once
// Profiles of the mail store. A profile is a folder holding the profile file
// "Profil.vxprofile" (the list of the user's stores and the address book of
// other users with their access rights) and one SQLite file per store
// (*.vxstore): the user's own stores and the mailboxes of the users in the
// address book.
//
// The current profile folder is process-wide, like the program folder:
// Application attaches to it. It defaults to "Nordquell/Varnex/Profil"
// under the user's data location; tests and the companion tool point it
// elsewhere.

#include <QString>
#include <QStringList>

class MAPIFolder;

[[nodiscard]] QString DefaultProfileFolder();
[[nodiscard]] QString ProfileFolder();
// Sets the current profile folder ("" for the default) and ends the session
// of the previous one.
void SetProfileFolder(const QString &folder);

// Whether the folder holds a profile file.
[[nodiscard]] bool ProfileExists(const QString &folder = ProfileFolder());
// Creates a profile with the store "Persönliche Ordner" and its default
// folders (Posteingang, Gesendete Objekte, Gelöschte Objekte, Entwürfe,
// Kalender, Kontakte, Aufgaben, Notizen, Journal). An existing profile stays
// as it is. Throws StoreError when the folder cannot be written.
void CreateProfile(const QString &folder = ProfileFolder());

// Adds a store to the current profile and returns its root. With
// defaultFolders the store gets the default folders, else it is empty.
MAPIFolder AddStore(const QString &displayName, bool defaultFolders = false);

// Adds a user to the address book of the current profile, with a mailbox
// store of the default folders, and returns the mailbox's root as its owner
// sees it, without access rules (so that a demo or a test can fill it). Names and aliases must be unique, ignoring
// case; a clash throws StoreError.
MAPIFolder AddAddressBookUser(const QString &name, const QStringList &aliases, const QString &address);
// Grants or refuses the current user access to one default folder type of
// another user's mailbox. Without an entry access is refused.
void SetMailboxAccess(const QString &userName, int folderType, bool granted);

struct AddressBookEntry {
    QString name;
    QStringList aliases;
    QString address;
    QList<int> grantedFolderTypes;
};
[[nodiscard]] QList<AddressBookEntry> AddressBook();
