#include "attachments/AttachmentFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <utility>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

DurableStepHook &durableStepHook()
{
    static DurableStepHook hook;
    return hook;
}

[[noreturn]] void fail(const QString &path, const QString &what, int error)
{
    int number = 75;
    if (error == ENOENT)
        number = 53;
    else if (error == EEXIST)
        number = 58;
    else if (error == EACCES || error == EPERM || error == EROFS)
        number = 70;
    throw AttachmentFileError{number, QStringLiteral("Die Datei \"%1\" %2: %3")
                                          .arg(QDir::toNativeSeparators(path), what,
                                               QString::fromLocal8Bit(std::strerror(error)))};
}

// Syncs what open() gives for the path: a file's data or a folder's entries.
void syncPath(const QString &path, int flags, const QString &shownPath)
{
    const int fd = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (fd < 0)
        fail(shownPath, QStringLiteral("kann nicht geöffnet werden"), errno);
    if (::fsync(fd) != 0) {
        const int error = errno;
        ::close(fd);
        fail(shownPath, QStringLiteral("kann nicht auf die Festplatte geschrieben werden"), error);
    }
    ::close(fd);
    DurableStep();
}

void syncFolderOf(const QString &path)
{
    syncPath(QFileInfo(path).absolutePath(), O_RDONLY | O_DIRECTORY, path);
}

qint64 sizeOf(const QString &path)
{
    struct stat info {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        fail(path, QStringLiteral("kann nicht gelesen werden"), errno);
    return qint64(info.st_size);
}

void copyAcrossFileSystems(const QString &path, const QString &target)
{
    QFile source(path);
    if (!source.copy(target)) {
        // QFile::copy refuses an existing target; anything else is a failure
        // of the copy, whose remains must not look like a moved file.
        const int error = QFileInfo::exists(target) && !QFileInfo::exists(path) ? EEXIST : EIO;
        fail(target, QStringLiteral("kann nicht angelegt werden (%1)").arg(source.errorString()), error);
    }
    try {
        SyncFile(target, sizeOf(path));
    } catch (...) {
        QFile::remove(target);
        throw;
    }
}

} // namespace

bool FileExists(const QString &path)
{
    return QFileInfo(path).isFile();
}

void SyncFile(const QString &path, qint64 expectedSize)
{
    syncPath(path, O_RDONLY, path);
    if (expectedSize >= 0 && sizeOf(path) != expectedSize)
        fail(path, QStringLiteral("ist unvollständig (%1 statt %2 Bytes)").arg(sizeOf(path)).arg(expectedSize), EIO);
    syncFolderOf(path);
}

void PlaceFileCopy(const QString &path, const QString &target)
{
    const QByteArray from = QFile::encodeName(path);
    const QByteArray to = QFile::encodeName(target);
    // link() never replaces an existing name, unlike rename().
    if (::link(from.constData(), to.constData()) == 0) {
        syncFolderOf(target);
    } else if (errno == EXDEV || errno == EPERM || errno == ENOTSUP || errno == EOPNOTSUPP) {
        // Another file system, or one without hard links.
        if (QFileInfo::exists(target) || QFileInfo(target).isSymLink())
            fail(target, QStringLiteral("existiert bereits"), EEXIST);
        copyAcrossFileSystems(path, target);
    } else {
        fail(target, QStringLiteral("kann nicht angelegt werden"), errno);
    }
}

void DeleteFile(const QString &path)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0)
        fail(path, QStringLiteral("kann nicht gelöscht werden"), errno);
    syncFolderOf(path);
}

DurableStepHook SetDurableStepHook(DurableStepHook hook)
{
    return std::exchange(durableStepHook(), std::move(hook));
}

void DurableStep()
{
    if (durableStepHook())
        durableStepHook()();
}
