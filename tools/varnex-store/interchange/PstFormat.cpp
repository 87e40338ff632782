#include "PstFormat.h"

#include "Interchange.h"
#include "PstItems.h"

#include <QFileInfo>

namespace {

struct PstItemFree {
    void operator()(pst_item *item) const { pst_freeItem(item); }
};
using PstItemPtr = std::unique_ptr<pst_item, PstItemFree>;

// Items that Outlook keeps out of sight: the folder's associated contents
// (views, rules, settings) and configuration messages.
bool isHiddenItem(const pst_item *item)
{
    if (item->flags & PST_FLAG_ASSOCIATED)
        return true;
    const QByteArray messageClass = QByteArray(item->ascii_type ? item->ascii_type : "").toLower();
    for (const char *prefix : {"ipm.configuration.", "ipm.microsoft.", "ipm.extendedrule.", "ipm.rule.",
                               "ipm.aggregation", "ipm.ruleorganizer"})
        if (messageClass.startsWith(prefix))
            return true;
    return false;
}

struct PstImport {
    pst_file *file;
    QString fileName;
    InterchangeReport &report;
    int hidden = 0; // hidden items passed over

    QString position(const QString &folderPath, int number) const
    {
        return QStringLiteral("%1, Ordner \"%2\", Element %3").arg(fileName, folderPath.isEmpty() ? QStringLiteral("/") : folderPath).arg(number);
    }

    MAPIFolder subfolder(const MAPIFolder &parent, pst_item *folderItem) const
    {
        QString title = PstText(folderItem, folderItem->file_as);
        title = title.simplified();
        if (title.isEmpty())
            title = QStringLiteral("Ordner");
        const MAPIFolder existing = parent.Folders().Find(title);
        if (!existing.isNull())
            return existing;
        const QString containerClass = QString::fromLatin1(folderItem->ascii_type ? folderItem->ascii_type : "");
        return parent.Folders().Add(title, FolderTypeOfContainerClass(containerClass));
    }

    void walk(pst_desc_tree *first, const MAPIFolder &target, const QString &folderPath)
    {
        int number = 0;
        for (pst_desc_tree *node = first; node; node = node->next) {
            PstItemPtr item(pst_parse_item(file, node, nullptr));
            if (item && item->folder) {
                MAPIFolder folder;
                try {
                    folder = subfolder(target, item.get());
                } catch (const StoreError &e) {
                    report.skip(position(folderPath, 0), QStringLiteral("Ordner nicht angelegt: ") + e.description());
                    continue;
                }
                if (node->child)
                    walk(node->child, folder, folderPath + u'/' + folder.Name());
                continue;
            }
            if (item && isHiddenItem(item.get())) {
                ++hidden;
                continue;
            }
            ++number;
            const QString where = position(folderPath, number);
            if (!item) {
                report.countRead();
                report.skip(where, QStringLiteral("Das Element kann nicht gelesen werden (beschädigt?)."));
                continue;
            }
            QStringList notes;
            ImportEntry(report, where, [&] { return ItemFromPst(item.get(), target, file, &notes); });
            for (const QString &note : notes)
                report.note(where + QStringLiteral(": ") + note);
        }
    }
};

} // namespace

void ImportPst(const QString &path, const MAPIFolder &target, InterchangeReport &report)
{
    for (const QString &name : InputFiles(path, {QStringLiteral("pst"), QStringLiteral("ost")})) {
        const QString shown = QFileInfo(name).fileName();
        pst_file file{};
        // libpst opens the file with "rb": it never writes.
        if (pst_open(&file, QFile::encodeName(name).constData(), "windows-1252") != 0) {
            report.skip(shown, QStringLiteral("Die Datei ist keine lesbare PST-Datei."));
            continue;
        }
        if (pst_load_index(&file) != 0) {
            report.skip(shown, QStringLiteral("Das Verzeichnis der PST-Datei ist beschädigt."));
            pst_close(&file);
            continue;
        }
        pst_load_extended_attributes(&file);
        PstItemPtr root(pst_parse_item(&file, file.d_head, nullptr));
        pst_desc_tree *top = root ? pst_getTopOfFolders(&file, root.get()) : nullptr;
        if (!top) {
            report.skip(shown, QStringLiteral("Die PST-Datei hat keinen Ordner der persönlichen Ordner."));
        } else {
            PstImport run{&file, shown, report};
            run.walk(top->child, target, QString());
            if (run.hidden > 0)
                report.note(QStringLiteral("%1: %2 verborgene Einträge (Ansichten, Regeln, Einstellungen) übergangen.")
                                .arg(shown).arg(run.hidden));
        }
        pst_close(&file);
    }
}
