// The two commands on link attachments: back into the item, or the linked
// files into another folder. Any attachment by reference counts as a link,
// not only those that the export made.
#include "attachments/AttachmentFiles.h"
#include "attachments/AttachmentRun_p.h"
#include "attachments/AttachmentSaveFunctions.h"
#include "attachments/BrowseForFolderFunctions.h"
#include "folders/FolderFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/Store.h"

#include <QDir>
#include <QFileInfo>

namespace {

struct LinkCounts {
    int handled = 0;
    int notFound = 0;
};

QString linkedPath(const Attachment &attachment)
{
    return attachment.GetProperty(PR_ATTACH_PATHNAME).toString();
}

// Embeds the linked files of one item, from the last attachment to the
// first. A file goes only after the item that holds its bytes is saved.
void importLinks(Item &item, LinkCounts &counts)
{
    Attachments attachments = item.Attachments();
    for (int n = attachments.Count(); n >= 1; --n) {
        Attachment link = attachments.Item(n);
        if (link.Type() != olByReference)
            continue;
        const QString path = linkedPath(link);
        if (!FileExists(path)) {
            ++counts.notFound;
            continue;
        }
        ++counts.handled;
        attachments.Add(path);
        link.Delete();
        item.Save();
        DurableStep();
        DeleteFile(path);
    }
}

// Moves the linked files of one item into target (which ends with a
// separator) and renews their links. A file that lies there already stays.
// The file gets its new name first (a hard link, or a synced copy on another
// file system), then the item is saved with the new link, and only then the
// old name goes: at every instant the link names a file that exists.
void moveLinks(Item &item, const QString &target, LinkCounts &counts)
{
    Attachments attachments = item.Attachments();
    for (int n = attachments.Count(); n >= 1; --n) {
        Attachment link = attachments.Item(n);
        if (link.Type() != olByReference)
            continue;
        const QString path = linkedPath(link);
        const QString formed = target + QFileInfo(path).fileName();
        const QString unique = UniqueFileName(formed);
        if (!FileExists(path)) {
            ++counts.notFound;
            continue;
        }
        if (QDir::cleanPath(path) == QDir::cleanPath(formed))
            continue;
        ++counts.handled;
        PlaceFileCopy(path, unique);
        try {
            attachments.Add(unique, olByReference);
            link.Delete();
            item.Save();
            DurableStep();
        } catch (...) {
            LogFilesWithoutLink(QStringLiteral("MoveAttachments"), item, {unique},
                                QStringLiteral("Verschieben abgebrochen, die Verknüpfung zeigt noch auf \"%1\", "
                                               "diese Datei ist eine überzählige Kopie")
                                    .arg(QDir::toNativeSeparators(path)));
            throw;
        }
        DeleteFile(path);
    }
}

// The closing messages of both commands.
void reportCounts(const LinkCounts &counts, const QString &done, const QString &notDone)
{
    ShowMessage(QString::number(counts.handled) + done, MsgInformation, QStringLiteral("Info!"));
    if (counts.notFound > 0)
        ShowMessage(QString::number(counts.notFound) + notDone, MsgStop, QStringLiteral("Fehler!"));
}

} // namespace

void ImportAttachments()
{
    RunGuarded(1502, [] {
        const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyMail));
        if (!selection.ok)
            return;
        SetRunning(true);
        CurrentRunHost().setProgressMax(selection.itemCount);
        CurrentRunHost().setStatusText(QStringLiteral("Importiere Anlagen..."));
        LinkCounts counts;
        ForEachMailItem(selection, [&](Item &item) { importLinks(item, counts); });
        reportCounts(counts, QStringLiteral(" Anlagen importiert."),
                     QStringLiteral(" Anlagen konnten nicht importiert werden, weil das verknüpfte Element "
                                    "nicht gefunden wurde."));
        SetRunning(false);
    });
}

void MoveAttachments()
{
    RunGuarded(1503, [] {
        QString target = BrowseFolder(QStringLiteral("Geben Sie den Zielordner an:"));
        if (target.isEmpty())
            return;
        if (!target.endsWith(u'/'))
            target += u'/';
        const FolderSelection selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyMail));
        if (!selection.ok)
            return;
        SetRunning(true);
        CurrentRunHost().setProgressMax(selection.itemCount);
        CurrentRunHost().setStatusText(QStringLiteral("Verschiebe Anlagen..."));
        LinkCounts counts;
        ForEachMailItem(selection, [&](Item &item) { moveLinks(item, target, counts); });
        reportCounts(counts, QStringLiteral(" Anlagen verschoben."),
                     QStringLiteral(" Anlagen konnten nicht verschoben werden, weil das verknüpfte Element "
                                    "nicht gefunden wurde."));
        SetRunning(false);
    });
}
