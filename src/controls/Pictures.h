#pragma once
// The pictures of the main window, drawn rather than loaded: the buttons of
// the command bar (by button key) and the image list of the folder tree (by
// container class and "Post" for a store).

#include <QHash>
#include <QIcon>

// Picture of a command bar button: "Dup", "Suc", "Att", "Hol", "For", "Nam",
// "Tel", "Opt", "Hil". An unknown key gives an empty icon.
QIcon CommandPicture(const QString &key);

// The image list of the folder tree: "IPF.Note", "IPF.Task", "IPF.Journal",
// "IPF.Appointment", "IPF.Contact", "IPF.StickyNote", "Post".
const QHash<QString, QIcon> &FolderImageList();

// The image list of the duplicate results: "Note", "Task", "Activity",
// "Appointment", "Contact", "StickyNote", "Post".
const QHash<QString, QIcon> &DuplicateImageList();
