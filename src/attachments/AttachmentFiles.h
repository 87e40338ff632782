#pragma once
// The file side of the attachment commands. Every step that the commands
// take before an attachment leaves its item makes sure that its file is
// complete and on the disk: written, synced, and entered in its folder.
// Failures throw AttachmentFileError.

#include <QString>
#include <functional>

struct AttachmentFileError {
    int number = 0; // 53 not found, 58 exists already, 70 access refused, 75 other
    QString description;
};

// A regular file (or a link to one) lies at the path; folders do not count.
[[nodiscard]] bool FileExists(const QString &path);

// Flushes the file and the entry of its folder to the disk and checks that
// it holds expectedSize bytes (any size when expectedSize is negative).
void SyncFile(const QString &path, qint64 expectedSize = -1);

// Gives the file a second name, target, which must not exist; an existing
// file is never replaced. Within one file system target is a hard link;
// across file systems (or without hard links) a copy, synced and compared in
// size. The target's folder is synced. The original stays: the caller
// removes it with DeleteFile once nothing names it any more.
void PlaceFileCopy(const QString &path, const QString &target);

// Deletes the file.
void DeleteFile(const QString &path);

// Test support: called after every step that has reached the disk (each
// fsync here, each saved item of the attachment runs), so that a test can
// end the process at every such instant. Returns the previous hook.
using DurableStepHook = std::function<void()>;
DurableStepHook SetDurableStepHook(DurableStepHook hook);
// The runs call this after each item they saved.
void DurableStep();
