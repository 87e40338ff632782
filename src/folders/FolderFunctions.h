#pragma once
// Folder selection: turns the ticks and the mark in the folder tree into a
// validated list of folders, with the total number of their items. Every
// batch run calls CollectFolders first and works only from what it returns.
//
// While another user's folder is open (frmSharedFolderOpen) the tree is
// ignored altogether and that folder is the whole selection.

#include "store/MAPIFolder.h"

#include <QList>
#include <QString>

// The values of folderKind that are not a message class. Any other string is
// taken as the message class that every selected folder must have.
namespace FolderKind {
inline constexpr char OnlyContacts[] = "OnlyContacts";       // "IPM.Contact"
inline constexpr char OnlyAppointment[] = "OnlyAppointment"; // "IPM.Appointment"
inline constexpr char OnlyMail[] = "OnlyMail";               // "IPM.Note" or "IPM.Post"
inline constexpr char AllTypes[] = "AllTypes";               // no test
} // namespace FolderKind

struct FolderSelection {
    // The ticked folders in tree order (node index order), or the one folder
    // of another user.
    QList<MAPIFolder> folders;
    // Sum of Items.Count over the folders.
    int itemCount = 0;
    // Position of the marked folder in folders (0 is the first), -1 when the
    // marked folder is not among them.
    int markedIndex = -1;
    // True: the caller may run, and every entry of folders is a real folder.
    // False: the user has been told why (or there is nothing to do) and the
    // caller stops at once without another message.
    bool ok = false;
};

// Collects the ticked folders and checks them against folderKind:
// - no marked node: ok false, no message;
// - marked node without a tick: asks "Der markierte Ordner ist nicht
//   aktiviert. Möchten Sie Ihn aktivieren?" and ticks it on Yes;
// - a folder of the wrong class: the message of folderKind (style 48,
//   "Hinweis!"), ok false;
// - no items at all and allowEmpty false: "Keine Elemente vorhanden.", ok false.
// A store failure (a folder gone since the tree was read) shows error 55 and
// gives ok false: no run starts from a half-filled list.
[[nodiscard]] FolderSelection CollectFolders(const QString &folderKind, bool allowEmpty = false);

// The folder of a node key ("K" and the node number). Throws the store's
// StoreError when the folder cannot be fetched; the caller's handler reports it.
[[nodiscard]] MAPIFolder GetFolderByKey(const QString &key);

// DefaultMessageClass of the folder that a run would take as its type: the
// open folder of another user, else the marked folder; "" when no node is
// marked or after an error (shown as error 55).
[[nodiscard]] QString GetSelectedFolderClass();
