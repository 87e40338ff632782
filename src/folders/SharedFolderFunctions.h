#pragma once
// Another user's folder: resolving a name in the address book and opening
// one of that user's default folders. While such a folder is open it is the
// whole selection of every run (CollectFolders).

#include <QList>
#include <QString>

class MAPIFolder;

// The default folders that can be opened, in the order of the dialog's list.
struct SharedFolderType {
    QString text;   // "Kalender", "Kontakte", ...
    int folderType; // the store's default folder type (9, 10, 6, 12, 13, 11)
};
const QList<SharedFolderType> &SharedFolderTypes();

// The address book's name for text, or "" when text does not resolve.
// Throws the store's StoreError when the address book cannot be read.
[[nodiscard]] QString ResolveName(const QString &text);

// Opens the default folder of folderType of the user with this resolved name
// and makes it the open folder of another user, replacing one that was open.
// Throws StoreError when the folder is refused (no access, no such user);
// the open folder stays as it was then.
void OpenSharedFolder(const QString &resolvedName, int folderType);

// Closes the folder of another user; the tree counts again.
void CloseSharedFolder();

[[nodiscard]] bool IsSharedFolderOpen();
