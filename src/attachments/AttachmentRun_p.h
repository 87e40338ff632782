#pragma once
// What the three attachment runs share: the walk over the mail and post
// items of the ticked folders, and the handler that ends a run on failure.

#include <QString>
#include <functional>

class Item;
struct FolderSelection;

// Goes through the folders and their items by position, keeps the progress
// bar at the number of items seen, and calls perItem for every mail (Class
// 43) and post (Class 45), after one turn of the event loop.
void ForEachMailItem(const FolderSelection &selection, const std::function<void(Item &)> &perItem);

// Runs the body; a failure (of the store, of a file, or any other) is shown
// by ShowError with errorId and ends the run with SetRunning(false).
void RunGuarded(int errorId, const std::function<void()> &body);

// Writes a log entry naming the files that a failed run left without their
// link in the item, so that the user can find them again.
void LogFilesWithoutLink(const QString &sub, const Item &item, const QStringList &files, const QString &what);
