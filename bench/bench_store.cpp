// Benchmark of the mail store on a folder of 100,000 contacts: creation,
// opening, a full read pass of 10 fields by position, and 10,000 saves of
// changed items under each durability setting. Prints medians and ratios.
//
//   build/bin/bench_store [contacts [profile folder]]   (default 100000, a temporary profile)
//
// With a profile folder that already holds the contacts, creation is skipped.

#include "store/Store.h"
#include "store/StoreDurability.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <ctime>

namespace {

const QStringList s_fields = {"FullName", "FirstName", "LastName", "CompanyName", "FileAs", "Email1Address",
                              "BusinessTelephoneNumber", "MobileTelephoneNumber", "HomeTelephoneNumber",
                              "BusinessAddress"};

QTextStream &out()
{
    static QTextStream s(stdout);
    return s;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

MAPIFolder contacts()
{
    return Application().GetNamespace().GetDefaultFolder(olFolderContacts);
}

double create(int count)
{
    const MAPIFolder folder = contacts();
    QElapsedTimer t;
    t.start();
    for (int n = 0; n < count; ++n) {
        Item item = folder.Items().Add();
        item.set(QStringLiteral("FullName"), QStringLiteral("Vorname%1 Nachname%2").arg(n % 997).arg(n));
        item.set(QStringLiteral("CompanyName"), QStringLiteral("Firma %1 GmbH").arg(n % 5000));
        item.set(QStringLiteral("FileAs"), QStringLiteral("Nachname%1, Vorname%2").arg(n).arg(n % 997));
        item.set(QStringLiteral("Email1Address"), QStringLiteral("kontakt%1@example.de").arg(n));
        item.set(QStringLiteral("BusinessTelephoneNumber"), QStringLiteral("089/%1-0").arg(100000 + n));
        item.set(QStringLiteral("MobileTelephoneNumber"), QStringLiteral("0171 %1").arg(1000000 + n));
        item.set(QStringLiteral("HomeTelephoneNumber"), QStringLiteral("+49 (30) %1").arg(200000 + n));
        item.set(QStringLiteral("BusinessAddress"), QStringLiteral("Hauptstr. %1\r\n80331 München").arg(n % 200));
        item.setBody(QStringLiteral("Notiz zu Kontakt %1").arg(n));
        item.Save();
        if (n % 10000 == 9999)
            out() << "  " << n + 1 << " angelegt\n" << Qt::flush;
    }
    return t.elapsed() / 1000.0;
}

// Opens the profile anew and reads 10 fields of every item by position.
// Wall-clock time is what the user waits; processor time does not depend
// on what else the machine is doing.
struct ReadTimes {
    double open, read, readCpu;
};

ReadTimes openAndRead(const QString &profile, qint64 *checksum)
{
    QElapsedTimer t;
    t.start();
    SetProfileFolder(profile);
    const Items items = contacts().Items();
    const int count = items.Count();
    const double open = t.elapsed() / 1000.0;
    t.restart();
    const std::clock_t cpu = std::clock();
    qint64 sum = 0;
    for (int i = 1; i <= count; ++i) {
        const Item item = items.Item(i);
        for (const QString &field : s_fields)
            sum += item.get(field).toString().size();
    }
    *checksum = sum;
    return {open, t.elapsed() / 1000.0, double(std::clock() - cpu) / CLOCKS_PER_SEC};
}

// Seconds of wall-clock time; cpu gets the processor time.
double saveChanged(const QString &profile, int saves, int round, double *cpu)
{
    SetProfileFolder(profile);
    const Items items = contacts().Items();
    const int count = items.Count();
    const int step = std::max(1, count / saves);
    QElapsedTimer t;
    t.start();
    const std::clock_t started = std::clock();
    for (int k = 0; k < saves; ++k) {
        Item item = items.Item(1 + (k * step) % count);
        item.set(QStringLiteral("MobileTelephoneNumber"), QStringLiteral("+49 (171) %1-%2").arg(k).arg(round));
        item.Save();
    }
    *cpu = double(std::clock() - started) / CLOCKS_PER_SEC;
    return t.elapsed() / 1000.0;
}

const char *nameOf(StoreDurability d)
{
    switch (d) {
    case StoreDurability::WalNormal: return "WAL, synchronous=NORMAL (Standard)";
    case StoreDurability::WalFull: return "WAL, synchronous=FULL";
    default: return "Rollback-Journal, synchronous=FULL";
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 100000;
    int saves = std::min(10000, count);
    QTemporaryDir dir;
    const QString profile = argc > 2 ? QString::fromLocal8Bit(argv[2]) : dir.filePath(QStringLiteral("Profil"));
    const bool fresh = !ProfileExists(profile);
    SetProfileFolder(profile);
    CreateProfile(profile);

    out() << "Informationsspeicher mit " << count << " Kontakten\n";
    if (fresh) {
        const double created = create(count);
        out() << "Anlegen (jedes Element eine Transaktion): " << created << " s, " << created * 1e6 / count
              << " µs je Element\n";
    }
    if (qEnvironmentVariableIsSet("VARNEX_BENCH_NUR_LESEN"))
        saves = 0;

    QList<double> opens, reads, cpus;
    qint64 checksum = 0;
    for (int round = 0; round < 5; ++round) {
        const ReadTimes times = openAndRead(profile, &checksum);
        opens << times.open;
        reads << times.read;
        cpus << times.readCpu;
    }
    out() << "Öffnen bis Items.Count (Median aus 5): " << median(opens) * 1000 << " ms\n";
    out() << "Lesedurchgang, 10 Felder je Element über die Position (Median aus 5): " << median(reads) * 1000
          << " ms, " << median(reads) * 1e9 / (count * double(s_fields.size())) << " ns je Feld (Prüfsumme "
          << checksum << "), Prozessorzeit " << median(cpus) * 1000 << " ms\n";

    // The settings that flush at every commit are measured on a tenth of the
    // saves: their cost per save is what matters.
    double baseline = 0;
    const QList<StoreDurability> modes = {StoreDurability::WalNormal, StoreDurability::WalFull,
                                          StoreDurability::RollbackFull};
    for (StoreDurability mode : saves > 0 ? modes : QList<StoreDurability>()) {
        SetStoreDurability(mode);
        const int n = mode == StoreDurability::WalNormal ? saves : std::max(1, saves / 10);
        QList<double> times, cpus;
        for (int round = 0; round < 3; ++round) {
            double cpu = 0;
            times << saveChanged(profile, n, round, &cpu) * 1e6 / n;
            cpus << cpu * 1e6 / n;
        }
        const double perSave = median(times);
        if (mode == StoreDurability::WalNormal)
            baseline = perSave;
        out() << n << " geänderte Elemente speichern, " << nameOf(mode) << " (Median aus 3): " << perSave
              << " µs je Save (Prozessorzeit " << median(cpus) << " µs), für 10000: " << perSave * 10000 / 1e6 << " s, "
              << perSave / baseline << "x\n"
              << Qt::flush;
    }
    SetStoreDurability(StoreDurability::WalNormal);
    SetProfileFolder(QString());
    return 0;
}
