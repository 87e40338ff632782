#include "attachments/AttachmentSaveFunctions.h"

#include "attachments/AttachmentFiles.h"
#include "attachments/AttachmentRun_p.h"
#include "folders/FolderFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "store/Store.h"

#include <QFileInfo>

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
        if (!forbidden.contains(c))
            kept.append(c);
    }
    kept = kept.trimmed();
    return kept.isEmpty() ? QStringLiteral("ohneName") : kept;
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
// (a deleted one changes the positions of those behind it), then adds the
// links in the order noted. Returns the number exported.
int exportAttachments(Item &item, const QString &folder, qint64 minimumSize)
{
    Attachments attachments = item.Attachments();
    QStringList paths;
    QStringList names;
    QStringList withoutLink; // written, but their link is not saved yet
    try {
        for (int n = attachments.Count(); n >= 1; --n) {
            Attachment attachment = attachments.Item(n);
            if (!qualifiesForExport(attachment, minimumSize))
                continue;
            const QString path = UniqueFileName(folder + CleanFileName(attachment.FileName()));
            paths << path;
            names << attachment.FileName();
            attachment.SaveAsFile(path);
            SyncFile(path, attachment.Size());
            withoutLink << path;
            attachment.Delete();
            item.Save();
        }
        for (qsizetype k = 0; k < paths.size(); ++k) {
            attachments.Add(paths.at(k), olByReference, 0, names.at(k));
            item.Save();
            withoutLink.removeOne(paths.at(k));
        }
    } catch (...) {
        LogFilesWithoutLink(QStringLiteral("SaveAttachments"), item, withoutLink,
                            QStringLiteral("Export abgebrochen, diese Dateien haben keine Verknüpfung"));
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
