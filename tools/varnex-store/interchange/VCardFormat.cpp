#include "VCardFormat.h"

#include "Interchange.h"

#include <QDir>

namespace {

void requireContactFolder(const MAPIFolder &folder)
{
    if (folder.DefaultItemType() != olContact)
        throw StoreError(StoreErrTypeMismatch,
                         QStringLiteral("Der Ordner \"%1\" ist kein Kontaktordner.").arg(folder.Name()));
}

void importCards(const QString &sourceName, const QByteArray &data, const MAPIFolder &target, InterchangeReport &report,
                 UidIndex &index, ImportBatch &batch)
{
    QList<int> strayLines;
    const QList<ContentBlock> blocks = ReadContentBlocks(data, QStringLiteral("VCARD"), &strayLines);
    if (blocks.isEmpty()) {
        report.skip(EntryPosition(sourceName), QStringLiteral("Die Datei enthält keine vCard."));
        return;
    }
    if (!strayLines.isEmpty())
        report.note(QStringLiteral("%1: %2 Zeile(n) außerhalb einer Karte übergangen (erste: Zeile %3).")
                        .arg(EntryPosition(sourceName))
                        .arg(strayLines.size())
                        .arg(strayLines.first()));
    QSet<QString> unknown;
    for (const ContentBlock &block : blocks) {
        const QString where = EntryPosition(sourceName, block.firstLine);
        if (!block.damage.isEmpty()) {
            report.countRead();
            report.skip(where, block.damage);
            continue;
        }
        for (int line : block.badLines)
            report.note(QStringLiteral("%1: Zeile %2 ohne Doppelpunkt übergangen").arg(where).arg(line));
        CardNotes notes;
        const Item saved = ImportEntry(report, where, [&] {
            const QString uid = CardUid(block.lines);
            Item existing = report.updateByUid && !uid.isEmpty() ? index.find(target, UidKey(uid)) : Item();
            if (!existing.isNull() && existing.Class() != olContact)
                existing = Item(); // a list of the same UID stays; the card is a contact of its own
            Item contact = ContactOfCard(block.lines, target, notes, existing);
            if (!notes.fileAsGiven) // as a new contact gets it
                contact.set(QStringLiteral("FileAs"), DefaultFileAs(contact));
            return contact;
        });
        if (!saved.isNull()) {
            index.add(saved);
            batch.step();
        }
        for (const QString &lost : std::as_const(notes.lost))
            report.note(QStringLiteral("%1: nicht übernommen: %2").arg(where, lost));
        unknown.unite(notes.unknown);
    }
    if (!unknown.isEmpty()) {
        QStringList names(unknown.begin(), unknown.end());
        names.sort();
        report.note(QStringLiteral("%1: ohne Platz im Kontakt übergangen: %2").arg(EntryPosition(sourceName), names.join(u", ")));
    }
}

QString contactTitle(const Item &contact)
{
    for (const char *field : {"FileAs", "FullName", "CompanyName", "Email1Address"}) {
        const QString text = contact.text(QLatin1String(field));
        if (!text.isEmpty())
            return text;
    }
    return QStringLiteral("Kontakt");
}

void exportCards(const MAPIFolder &source, const QString &path, InterchangeReport &report, VCardVersion version)
{
    const bool perItem = ExportsToFolder(path);
    if (perItem && !QDir().mkpath(path))
        throw StoreError(StoreErrDisk, QStringLiteral("Der Ordner %1 kann nicht angelegt werden.").arg(QDir::toNativeSeparators(path)));
    ContentWriter writer;
    int written = 0;
    QString error;
    for (const Item &item : source.Items()) {
        if (item.Class() != olContact) {
            report.skip(item.Subject(), QStringLiteral("kein Kontakt (%1)").arg(item.MessageClass()));
            continue;
        }
        WriteVCard(item, version, writer);
        if (!perItem) {
            ++written;
            continue;
        }
        if (!WriteFileAtomically(ExportFileName(path, contactTitle(item), QStringLiteral("vcf")), writer.bytes(), &error))
            throw StoreError(StoreErrDisk, error);
        writer.clear();
        report.countExported();
    }
    if (perItem)
        return;
    if (!WriteFileAtomically(path, writer.bytes(), &error))
        throw StoreError(StoreErrDisk, error);
    for (int i = 0; i < written; ++i)
        report.countExported();
}

} // namespace

void ImportVCard(const QString &path, const MAPIFolder &target, InterchangeReport &report)
{
    requireContactFolder(target);
    UidIndex index;
    ImportBatch batch(target, report);
    for (const QString &file : InputFiles(path, {QStringLiteral("vcf"), QStringLiteral("vcard")})) {
        try {
            importCards(file, ReadInputFile(file), target, report, index, batch);
        } catch (const EntryDamage &damage) {
            report.skip(EntryPosition(file), damage.reason);
        }
    }
}

void ImportVCardData(const QByteArray &data, const QString &sourceName, const MAPIFolder &target,
                     InterchangeReport &report, UidIndex *index)
{
    requireContactFolder(target);
    UidIndex own;
    ImportBatch batch(target, report);
    importCards(sourceName, data, target, report, index ? *index : own, batch);
}

QByteArray VCardText(const Item &contact, VCardVersion version)
{
    ContentWriter writer;
    WriteVCard(contact, version, writer);
    return writer.bytes();
}

void ExportVCard3(const MAPIFolder &source, const QString &path, InterchangeReport &report)
{
    exportCards(source, path, report, VCardVersion::V3);
}

void ExportVCard4(const MAPIFolder &source, const QString &path, InterchangeReport &report)
{
    exportCards(source, path, report, VCardVersion::V4);
}
