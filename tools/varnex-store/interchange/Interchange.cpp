#include "Interchange.h"

#include "attachments/AttachmentSaveFunctions.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>

const InterchangeFormat *FindInterchangeFormat(const QString &name)
{
    const QString wanted = name.toLower();
    for (const InterchangeFormat &format : InterchangeFormats())
        if (format.name == wanted || format.aliases.contains(wanted))
            return &format;
    return nullptr;
}

QStringList InputFiles(const QString &path, const QStringList &suffixes, bool recursive)
{
    const QFileInfo info(path);
    if (!info.isDir())
        return {path};
    QStringList files;
    QDirIterator it(path, QDir::Files | QDir::Readable | QDir::Hidden,
                    recursive ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    while (it.hasNext()) {
        const QString file = it.next();
        const QString suffix = QFileInfo(file).suffix();
        if (suffixes.contains(suffix, Qt::CaseInsensitive))
            files << file;
    }
    std::sort(files.begin(), files.end());
    return files;
}

QByteArray ReadInputFile(const QString &path, qint64 maxBytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw EntryDamage{QStringLiteral("Die Datei kann nicht gelesen werden (%1).").arg(file.errorString())};
    if (file.size() > maxBytes)
        throw EntryDamage{QStringLiteral("Die Datei ist mit %1 MB zu groß.").arg(file.size() >> 20)};
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw EntryDamage{QStringLiteral("Die Datei kann nicht gelesen werden (%1).").arg(file.errorString())};
    return data;
}

bool ExportsToFolder(const QString &path)
{
    return QFileInfo(path).isDir() || path.endsWith(u'/') || path.endsWith(QDir::separator());
}

QString ExportFileName(const QString &folder, const QString &title, const QString &suffix)
{
    QString name = CleanFileName(title.simplified().left(80));
    return UniqueFileName(QDir(folder).filePath(name + u'.' + suffix));
}

bool WriteFileAtomically(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    if (error)
        *error = QStringLiteral("Die Datei %1 kann nicht geschrieben werden (%2).")
                     .arg(QDir::toNativeSeparators(path), file.errorString());
    return false;
}

MAPIFolder DefaultFolderInStore(const MAPIFolder &anyFolder, int folderType)
{
    MAPIFolder root = anyFolder;
    while (!root.isRoot())
        root = root.Parent();
    for (const MAPIFolder &folder : root.Folders())
        if (folder.DefaultFolderType() == folderType)
            return folder;
    return {};
}

namespace {

// Shows the count now and then while a long run goes on.
void showProgress(QTextStream &err, const InterchangeReport &report)
{
    const int done = report.imported + report.updated + report.exported;
    if (done % 1000 == 0) {
        err << "\r" << done << " Element(e) ...";
        err.flush();
    }
}

int exitCode(const InterchangeReport &report)
{
    return report.skipped.isEmpty() ? 0 : 3;
}

} // namespace

int RunInterchangeCommand(const QString &command, const QString &formatName, const QString &path,
                          const QString &storeFolder, QTextStream &out, QTextStream &err, bool updateByUid)
{
    const bool isImport = command == u"import";
    const InterchangeFormat *format = FindInterchangeFormat(formatName);
    if (!format) {
        err << "Das Format \"" << formatName << "\" gibt es nicht. Bekannt sind:\n" << InterchangeFormatsUsage();
        return 2;
    }
    if ((isImport && !format->importer) || (!isImport && !format->exporter)) {
        err << "Das Format \"" << format->name << "\" kann nur " << (isImport ? "exportiert" : "importiert")
            << " werden.\n";
        return 2;
    }
    if (isImport && !QFileInfo::exists(path)) {
        err << "Die Datei oder den Ordner " << QDir::toNativeSeparators(path) << " gibt es nicht.\n";
        return 1;
    }
    if (!isImport && !ProfileExists()) {
        err << "Es gibt kein Profil in " << QDir::toNativeSeparators(ProfileFolder()) << ".\n";
        return 1;
    }
    InterchangeReport report;
    report.updateByUid = updateByUid;
    report.progress = [&err](const InterchangeReport &r) { showProgress(err, r); };
    try {
        const MAPIFolder folder = ResolveStoreFolder(storeFolder, format->folderType, isImport);
        if (isImport)
            format->importer(path, folder, report);
        else
            format->exporter(folder, path, report);
    } catch (const StoreError &e) {
        err << "\nAbgebrochen: " << e.description() << " (" << e.number() << ")\n";
        out << report.summary(isImport);
        return 1;
    }
    if (report.imported + report.updated + report.exported >= 1000)
        err << "\n";
    out << report.summary(isImport);
    return exitCode(report);
}

QString InterchangeFormatsUsage()
{
    QString text;
    for (const InterchangeFormat &format : InterchangeFormats()) {
        QString names = format.name;
        if (!format.aliases.isEmpty())
            names += QStringLiteral(" (") + format.aliases.join(QStringLiteral(", ")) + u')';
        const QString directions = format.importer && format.exporter ? QStringLiteral("Import und Export")
                                   : format.importer                  ? QStringLiteral("nur Import")
                                                                      : QStringLiteral("nur Export");
        text += QStringLiteral("  %1 %2; %3\n").arg(names.leftJustified(26), format.description, directions);
    }
    return text;
}
