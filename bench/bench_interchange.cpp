// Import and export of varnex-store: 50,000 contacts as vCard 3.0 and
// 50,000 appointments as iCalendar (every tenth a weekly series), in a
// temporary profile. Prints items per second, the median of three runs,
// and the size of the files.
//
//   build/bin/bench_interchange [count]
#include "frame/GlobalFunctions.h"
#include "interchange/Interchange.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

void fillContacts(const MAPIFolder &folder, int count)
{
    static const char *firstNames[] = {"Jürgen", "Anna", "Hans-Peter", "Sabine", "Özlem", "Luca", "Marie"};
    static const char *lastNames[] = {"Müller", "Schäfer", "von Berg", "Weiß", "Yılmaz", "Rossi", "Groß"};
    for (int i = 0; i < count; ++i) {
        Item c = folder.Items().Add();
        c.set(QStringLiteral("FirstName"), QString::fromUtf8(firstNames[i % 7]));
        c.set(QStringLiteral("LastName"), QString::fromUtf8(lastNames[(i / 7) % 7]) + QString::number(i));
        c.set(QStringLiteral("CompanyName"), QStringLiteral("Beispiel GmbH & Co. KG"));
        c.set(QStringLiteral("BusinessTelephoneNumber"), QStringLiteral("+49 221 %1").arg(100000 + i));
        c.set(QStringLiteral("MobileTelephoneNumber"), QStringLiteral("0171 %1").arg(2000000 + i));
        c.set(QStringLiteral("Email1Address"), QStringLiteral("kontakt%1@beispiel.example").arg(i));
        c.set(QStringLiteral("BusinessAddress"), QStringLiteral("Hohe Straße %1\r\n50667 Köln").arg(i % 200 + 1));
        c.set(QStringLiteral("Birthday"), QDateTime(QDate(1950 + i % 50, 1 + i % 12, 1 + i % 28), QTime(0, 0)));
        c.set(QStringLiteral("Body"), QStringLiteral("Notiz zu Kontakt %1: Grüße, Rückruf; später.").arg(i));
        c.UserProperties().Add(QStringLiteral("VX Backup BusinessTelephoneNumber"), olText).setValue(QStringLiteral("0221-%1").arg(i));
        c.Save();
    }
}

void fillEvents(const MAPIFolder &folder, int count)
{
    const QDateTime base(QDate(2024, 1, 8), QTime(9, 0));
    for (int i = 0; i < count; ++i) {
        Item a = folder.Items().Add();
        a.set(QStringLiteral("Subject"), QStringLiteral("Besprechung %1 – Büro Köln").arg(i));
        a.set(QStringLiteral("Location"), QStringLiteral("Raum %1").arg(i % 40));
        a.set(QStringLiteral("Start"), base.addSecs(qint64(i) * 3600));
        a.set(QStringLiteral("End"), base.addSecs(qint64(i) * 3600 + 1800));
        a.set(QStringLiteral("Body"), QStringLiteral("Tagesordnung:\r\n1. Umsätze\r\n2. Größere Aufträge"));
        a.set(QStringLiteral("ReminderSet"), i % 2 == 0);
        if (i % 10 == 0) {
            a.set(QStringLiteral("IsRecurring"), true);
            a.UserProperties().Add(QLatin1String(SeriesProperty), olText).setValue(QStringLiteral("RRULE:FREQ=WEEKLY;COUNT=20"));
        }
        a.Save();
    }
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void measure(const char *label, const QString &format, const MAPIFolder &source, int folderType, const QString &file)
{
    QList<double> exportRates, importRates;
    for (int run = 0; run < 3; ++run) {
        InterchangeReport out;
        QElapsedTimer timer;
        timer.start();
        FindInterchangeFormat(format)->exporter(source, file, out);
        exportRates << out.exported * 1000.0 / std::max<qint64>(1, timer.elapsed());

        const MAPIFolder target = Application().GetNamespace().GetDefaultFolder(folderType).Folders().Add(
            QStringLiteral("Import %1").arg(run));
        InterchangeReport in;
        timer.restart();
        FindInterchangeFormat(format)->importer(file, target, in);
        importRates << in.imported * 1000.0 / std::max<qint64>(1, timer.elapsed());
        if (!in.skipped.isEmpty() || in.imported != out.exported)
            std::printf("  Lauf %d: %d importiert, %lld übersprungen\n", run + 1, in.imported, qlonglong(in.skipped.size()));
    }
    std::printf("%-22s Export %8.0f Elemente/s   Import %8.0f Elemente/s   Datei %6.1f MB\n", label,
                median(exportRates), median(importRates), QFileInfo(file).size() / 1048576.0);
}

} // namespace

int main(int argc, char *argv[])
{
    ReadTimeZoneFileOnce();
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 50000;
    QTemporaryDir dir;
    SetProfileFolder(dir.filePath(QStringLiteral("Profil")));
    CreateProfile();
    const NameSpace ns = Application().GetNamespace();
    std::printf("bench_interchange: %d Kontakte, %d Termine, Median aus 3 Läufen\n", count, count);
    fillContacts(ns.GetDefaultFolder(olFolderContacts), count);
    measure("vCard 3.0", QStringLiteral("vcard"), ns.GetDefaultFolder(olFolderContacts), olFolderContacts,
            dir.filePath(QStringLiteral("kontakte.vcf")));
    fillEvents(ns.GetDefaultFolder(olFolderCalendar), count);
    measure("iCalendar", QStringLiteral("ical"), ns.GetDefaultFolder(olFolderCalendar), olFolderCalendar,
            dir.filePath(QStringLiteral("termine.ics")));
    return 0;
}
