#pragma once
// The file side of the attachment commands. Every step that the commands
// take before an attachment leaves its item makes sure that its file is
// complete and on the disk: written, synced, and entered in its folder.
// Failures throw AttachmentFileError.

#include <QString>

struct AttachmentFileError {
    int number = 0; // 53 not found, 58 exists already, 70 access refused, 75 other
    QString description;
};

// A regular file (or a link to one) lies at the path; folders do not count.
[[nodiscard]] bool FileExists(const QString &path);

// Flushes the file and the entry of its folder to the disk and checks that
// it holds expectedSize bytes (any size when expectedSize is negative).
void SyncFile(const QString &path, qint64 expectedSize = -1);

// Moves the file to target, which must not exist; an existing file is never
// replaced. Within one file system the file is renamed; across file systems
// it is copied, synced and compared in size before the original goes. Both
// folders are synced.
void MoveFileSafely(const QString &path, const QString &target);

// Deletes the file.
void DeleteFile(const QString &path);
