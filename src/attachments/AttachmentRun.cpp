#include "attachments/AttachmentRun_p.h"

#include "attachments/AttachmentFiles.h"
#include "folders/FolderFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/Store.h"

#include <QDir>

void ForEachMailItem(const FolderSelection &selection, const std::function<void(Item &)> &perItem)
{
    RunHost &host = CurrentRunHost();
    int seen = 0;
    for (const MAPIFolder &folder : selection.folders) {
        const Items items = folder.Items();
        const int count = items.Count();
        for (int i = 1; i <= count; ++i) {
            host.setProgressValue(++seen);
            Item item = items.Item(i);
            const int itemClass = item.Class();
            if (itemClass != olMail && itemClass != olPost)
                continue;
            host.processEvents();
            perItem(item);
        }
    }
}

void RunGuarded(int errorId, const std::function<void()> &body)
{
    try {
        body();
        return;
    } catch (const StoreError &e) {
        ShowError(e.description(), e.number(), errorId);
    } catch (const AttachmentFileError &e) {
        ShowError(e.description, e.number, errorId);
    } catch (const std::exception &e) {
        ShowError(QString::fromUtf8(e.what()), 0, errorId);
    }
    SetRunning(false);
}

void LogFilesWithoutLink(const QString &sub, const Item &item, const QStringList &files, const QString &what)
{
    if (files.isEmpty())
        return;
    QString subject;
    try {
        subject = item.Subject();
    } catch (const StoreError &) {
        // The item cannot be read any more; the files are named all the same.
    }
    QStringList shown;
    for (const QString &file : files)
        shown << QDir::toNativeSeparators(file);
    // One line: an entry of the log keeps its text on one line.
    WriteErrorLog(QStringLiteral("%1 (Element \"%2\"): %3").arg(what, subject, shown.join(QStringLiteral("; "))), sub);
}
