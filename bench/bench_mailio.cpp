// Mail import and export of varnex-store on a temporary profile: messages
// per second for export and import as mbox (one file) and as EML (one file
// per mail), and for the MIME writing and reading alone (no files, no
// saves), so that the share of the store shows. Mails are German, about
// 1 KB of text; every 10th has a 20 KB attachment, every 5th a user
// property. Arguments: number of mails (default 20000), rounds (3).
// Prints medians.
#include "interchange/Interchange.h"
#include "interchange/MailFormat.h"
#include "interchange/MimeMail.h"
#include "store/Store.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

void fillFolder(const MAPIFolder &folder, int mails)
{
    const QString text = QStringLiteral("Sehr geehrte Frau Müller,\r\nvielen Dank für Ihre Nachricht vom Montag. "
                                        "Anbei die Übersicht der Maßnahmen für das Büro in Köln.\r\n")
                             .repeated(6);
    QByteArray attachment(20000, Qt::Uninitialized);
    for (int i = 0; i < attachment.size(); ++i)
        attachment[i] = char((i * 131) % 256);
    const QDateTime base(QDate(2025, 1, 2), QTime(8, 0));
    for (int m = 0; m < mails; ++m) {
        Item mail = folder.Items().Add();
        mail.setSubject(QStringLiteral("Rückfrage zur Lieferung Nr. %1 – Größe und Maße").arg(m));
        mail.set(QStringLiteral("SenderName"), QStringLiteral("Jürgen Weiß"));
        mail.set(QStringLiteral("SenderEmailAddress"), QStringLiteral("j.weiss%1@example.de").arg(m % 97));
        mail.set(QStringLiteral("To"), QStringLiteral("Erika Müller <erika@example.de>; Büro <buero@example.de>"));
        mail.set(QStringLiteral("SentOn"), base.addSecs(m * 60));
        mail.set(QStringLiteral("ReceivedTime"), base.addSecs(m * 60 + 30));
        mail.setBody(text);
        if (m % 10 == 0)
            mail.Attachments().AddData(attachment, QStringLiteral("Übersicht %1.pdf").arg(m));
        if (m % 5 == 0)
            mail.UserProperties().Add(QStringLiteral("VX Backup Subject"), olText).setValue(QStringLiteral("alt %1").arg(m));
        mail.Save();
    }
}

// Messages per second of one timed run over `count` messages.
double rate(int count, const std::function<void()> &run)
{
    QElapsedTimer timer;
    timer.start();
    run();
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    return seconds > 0 ? count / seconds : 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int mails = argc > 1 ? std::max(1, atoi(argv[1])) : 20000;
    const int rounds = argc > 2 ? std::max(1, atoi(argv[2])) : 3;
    QTemporaryDir dir;
    SetProfileFolder(dir.filePath(QStringLiteral("Profil")));
    CreateProfile();
    const MAPIFolder inbox = Application().GetNamespace().GetDefaultFolder(olFolderInbox);
    MAPIFolder source = inbox.Folders().Add(QStringLiteral("Quelle"));
    QElapsedTimer fill;
    fill.start();
    fillFolder(source, mails);
    std::printf("%d Mails angelegt in %.1f s\n", mails, double(fill.elapsed()) / 1000);

    QList<double> writeMime, readMime, exportMbox, importMbox, exportEml, importEml;
    for (int round = 0; round < rounds; ++round) {
        QList<QByteArray> messages;
        messages.reserve(mails);
        writeMime << rate(mails, [&] {
            const Items items = source.Items();
            for (int i = 1; i <= items.Count(); ++i)
                messages << WriteMimeMail(items.Item(i));
        });
        const MAPIFolder scratch = inbox.Folders().Add(QStringLiteral("Lesen %1").arg(round));
        readMime << rate(mails, [&] {
            for (const QByteArray &message : messages)
                (void)ReadMimeMail(message, scratch); // built in memory, never saved
        });
        const QString mbox = dir.filePath(QStringLiteral("runde%1.mbox").arg(round));
        const QString emlFolder = dir.filePath(QStringLiteral("eml%1/").arg(round));
        InterchangeReport out1, out2, in1, in2;
        exportMbox << rate(mails, [&] { ExportMbox(source, mbox, out1); });
        exportEml << rate(mails, [&] { ExportEml(source, emlFolder, out2); });
        const MAPIFolder fromMbox = inbox.Folders().Add(QStringLiteral("mbox %1").arg(round));
        const MAPIFolder fromEml = inbox.Folders().Add(QStringLiteral("eml %1").arg(round));
        importMbox << rate(mails, [&] { ImportMbox(mbox, fromMbox, in1); });
        importEml << rate(mails, [&] { ImportEml(emlFolder, fromEml, in2); });
        if (out1.exported != mails || out2.exported != mails || in1.imported != mails || in2.imported != mails)
            std::printf("Runde %d: nicht alles übernommen (%d %d %d %d)\n", round + 1, out1.exported, out2.exported,
                        in1.imported, in2.imported);
        QDir(emlFolder).removeRecursively();
    }
    std::printf("Mails pro Sekunde (Median aus %d Runden, %d Mails):\n", rounds, mails);
    std::printf("  MIME schreiben (ohne Datei)   %9.0f\n", median(writeMime));
    std::printf("  MIME lesen (ohne Speichern)   %9.0f\n", median(readMime));
    std::printf("  Export mbox                   %9.0f\n", median(exportMbox));
    std::printf("  Import mbox                   %9.0f\n", median(importMbox));
    std::printf("  Export EML (Datei je Mail)    %9.0f\n", median(exportEml));
    std::printf("  Import EML (Datei je Mail)    %9.0f\n", median(importEml));
    std::printf("  Verhältnis Import/Export mbox %9.2f\n", median(importMbox) / median(exportMbox));
    std::printf("  Anteil Speichern am mbox-Import %7.0f %%\n",
                100.0 * (1.0 - median(importMbox) / median(readMime)));
    return 0;
}
