#include "attachments/AttachmentSaveFunctions.h"

#include "attachments/AttachmentFiles.h"
#include "attachments/AttachmentRun_p.h"
#include "folders/FolderFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "store/Store.h"

#include <QFile>
#include <QFileInfo>
#include <QTextBoundaryFinder>

#include <unistd.h>

namespace {

bool pathTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

QString CleanFileName(const QString &name)
{
    static const QString forbidden = QStringLiteral("\\/:*?\"<>|");
    QString kept;
    kept.reserve(name.size());
    for (const QChar c : name) {
        // NUL ends a name for the file system: the file would be written
        // under the cut-off name while the link keeps the whole one.
        if (!forbidden.contains(c) && c != QChar(0))
            kept.append(c);
    }
    kept = kept.trimmed();
    return kept.isEmpty() ? QStringLiteral("ohneName") : kept;
}

QString FitFileName(const QString &name, int maxBytes)
{
    if (name.toUtf8().size() <= maxBytes)
        return name;
    const qsizetype dot = name.lastIndexOf(u'.');
    QString extension = dot > 0 ? name.mid(dot) : QString();
    if (extension.toUtf8().size() * 2 > maxBytes)
        extension.clear();
    const QString stem = name.left(name.size() - extension.size());
    const qsizetype room = maxBytes - extension.toUtf8().size();
    // Whole characters (a letter with its accents) from the front, as many
    // as fit.
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, stem);
    qsizetype kept = 0;
    qsizetype bytes = 0;
    for (qsizetype next = characters.toNextBoundary(); next > 0; next = characters.toNextBoundary()) {
        bytes += stem.mid(kept, next - kept).toUtf8().size();
        if (bytes > room)
            break;
        kept = next;
    }
    return stem.left(kept).trimmed() + extension;
}

int FileNameLimit(const QString &folder)
{
    const long limit = ::pathconf(QFile::encodeName(folder).constData(), _PC_NAME_MAX);
    return limit > 0 && limit < 100000 ? int(limit) : 255;
}

QString UniqueFileName(const QString &path)
{
    if (!pathTaken(path))
        return path;
    const qsizetype dot = path.lastIndexOf(u'.');
    const QString stem = dot < 0 ? path : path.left(dot);
    const QString extension = dot < 0 ? QString() : path.mid(dot);
    for (qint64 n = 1;; ++n) {
        const QString candidate = stem + u'(' + QString::number(n) + u')' + extension;
        if (!pathTaken(candidate))
            return candidate;
    }
}

namespace {

// The smallest size in bytes that an attachment must have: AttSize KB; a
// value that is no whole number counts as 0.
qint64 minimumAttachmentSize()
{
    bool ok = false;
    const qint64 kilobytes = GetSetting(QStringLiteral("AttSize"), QStringLiteral("0")).trimmed().toLongLong(&ok);
    return ok ? kilobytes * 1024 : 0;
}

bool qualifiesForExport(const Attachment &attachment, qint64 minimumSize)
{
    return attachment.Type() == olByValue && attachment.Size() >= minimumSize
        && attachment.GetProperty(PR_ATTACHMENT_HIDDEN).toBool() != true;
}

// Exports the qualifying attachments of one item, from the last to the first
// (a deleted one changes the positions of those behind it). Each link is
// appended in the same save that removes its attachment, so that at every
// instant the item holds the attachment or a link to its complete file; the
// links end up in the order noted, behind the attachments that stay, as if
// they had been added after the last deletion. Returns the number exported.
int exportAttachments(Item &item, const QString &folder, qint64 minimumSize)
{
    Attachments attachments = item.Attachments();
    QStringList paths;
    QStringList unsaved; // written, but the item does not name them yet
    // The room for a name leaves space for the number that UniqueFileName
    // may add ("(12)").
    const int nameRoom = FileNameLimit(folder) - 8;
    try {
        for (int n = attachments.Count(); n >= 1; --n) {
            Attachment attachment = attachments.Item(n);
            if (!qualifiesForExport(attachment, minimumSize))
                continue;
            const QString path = UniqueFileName(folder + FitFileName(CleanFileName(attachment.FileName()), nameRoom));
            const QString name = attachment.FileName();
            attachment.SaveAsFile(path);
            SyncFile(path, attachment.Size());
            unsaved << path;
            attachment.Delete();
            attachments.Add(path, olByReference, 0, name);
            item.Save();
            DurableStep();
            unsaved.removeOne(path);
            paths << path;
        }
    } catch (...) {
        LogFilesWithoutLink(QStringLiteral("SaveAttachments"), item, unsaved,
                            QStringLiteral("Export abgebrochen, die Anlage blieb im Element, diese Datei ist eine "
                                           "überzählige Kopie"));
        throw;
    }
    return int(paths.size());
}

} // namespace

void SaveAttachments()
{
    RunGuarded(1501, [] {
        QString folder = GetSetting(QStringLiteral("AttPath"), QString());
        if (folder.isEmpty()) {
            ShowMessage(QStringLiteral("Kein Dateiordner gewählt. Bitte wählen Sie in den Optionen zuerst einen "
                                       "Dateiordner für diese Funktion aus."),
                        MsgStop, QStringLiteral("Info!"));
            return;
        }
        if (!folder.endsWith(u'/'))
            folder += u'/';
        const qint64 minimumSize = minimumAttachmentSize();

        const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyMail));
        if (!selection.ok)
            return;
        SetRunning(true);
        CurrentRunHost().setProgressMax(selection.itemCount);
        CurrentRunHost().setStatusText(QStringLiteral("Exportiere Anlagen..."));
        int total = 0;
        ForEachMailItem(selection, [&](Item &item) { total += exportAttachments(item, folder, minimumSize); });
        ShowMessage(QString::number(total) + QStringLiteral(" Anlagen gespeichert."), MsgInformation,
                    QStringLiteral("Info!"));
        SetRunning(false);
    });
}
