// The contact telephone run over 10,000 contacts with realistic numbers in
// one folder, with the shipped telephone tables (VarnexPub.db beside the
// executable) and the default settings. Prints contacts per second (median
// of three runs, each on a fresh folder) and the share of the time spent in
// the number normaliser against the store and the rest of the run.
// Target: 10,000 contacts in under 10 seconds.
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "store/Store.h"
#include "telephone/ContactTelNrRun.h"
#include "telephone/TelNrStandard.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kContacts = 10000;
constexpr int kRuns = 3;

// German area codes from the shipped table, so that the numbers resolve as
// real ones do.
QStringList germanAreaCodes(const QString &databasePath)
{
    QStringList codes;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        db.setDatabaseName(databasePath);
        if (db.open()) {
            QSqlQuery q(QStringLiteral("SELECT AreaCode FROM T_CountryAndAreaCodes WHERE CountryCode = '49' "
                                       "AND AreaCode IS NOT NULL"), db);
            while (q.next())
                codes.append(q.value(0).toString().trimmed());
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
    return codes;
}

// One number as users type them: with and without prefixes, with slashes,
// brackets, extensions, labels, already normalised, local only, abroad.
QString realisticNumber(QRandomGenerator &rng, const QStringList &areas)
{
    const QString area = areas.at(rng.bounded(int(areas.size())));
    const QString subscriber = QString::number(rng.bounded(100000, 9999999));
    const QString extension = QString::number(rng.bounded(1, 999));
    switch (rng.bounded(12)) {
    case 0: return QStringLiteral("0%1 / %2").arg(area, subscriber);
    case 1: return QStringLiteral("0%1-%2-%3").arg(area, subscriber, extension);
    case 2: return QStringLiteral("+49 (0)%1 %2").arg(area, subscriber);
    case 3: return QStringLiteral("0049 %1 %2").arg(area, subscriber);
    case 4: return QStringLiteral("(0%1) %2 - %3").arg(area, subscriber, extension);
    case 5: return QStringLiteral("+49 (%1) %2").arg(area, subscriber); // already normal
    case 6: return QStringLiteral("Tel. 0%1 %2").arg(area, subscriber);
    case 7: return subscriber;                                          // local, stays
    case 8: return QStringLiteral("+41 44 %1").arg(subscriber);
    case 9: return QStringLiteral("+43 1 %1").arg(subscriber);
    case 10: return QStringLiteral("0171 %1").arg(subscriber);
    default: return QStringLiteral("+1 212 %1").arg(subscriber);       // no area codes: stays
    }
}

struct Filled {
    MAPIFolder folder;
    QStringList numbers; // every non-empty field value, for the normaliser alone
};

Filled fillFolder(const QString &name, const QStringList &areas, quint32 seed)
{
    QRandomGenerator rng(seed);
    Filled filled;
    filled.folder = Application().GetNamespace().GetDefaultFolder(olFolderContacts).Folders().Add(name);
    const QStringList fields{"BusinessTelephoneNumber", "HomeTelephoneNumber", "MobileTelephoneNumber",
                             "BusinessFaxNumber", "CompanyMainTelephoneNumber"};
    for (int i = 0; i < kContacts; ++i) {
        Item contact = filled.folder.Items().Add();
        contact.set(QStringLiteral("LastName"), QStringLiteral("Kontakt %1").arg(i));
        const int used = 2 + rng.bounded(4); // 2 to 5 numbers
        for (int f = 0; f < used; ++f) {
            const QString number = realisticNumber(rng, areas);
            contact.set(fields.at(f), number);
            filled.numbers.append(number);
        }
        contact.Save();
    }
    return filled;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString shippedDb = QCoreApplication::applicationDirPath() + QStringLiteral("/VarnexPub.db");
    QTemporaryDir dir;
    SetProgramFolder(dir.path());
    if (!QFile::copy(shippedDb, dir.filePath(QStringLiteral("VarnexPub.db")))) {
        std::fprintf(stderr, "VarnexPub.db not found beside the benchmark\n");
        return 1;
    }
    SetSettingsFile(dir.filePath(QStringLiteral("Varnex.ini")));
    InitDefaultSettings();
    SetProfileFolder(dir.filePath(QStringLiteral("Profil")));
    CreateProfile();
    SetMessageHandler([](const MessageRequest &) { return int(AnswerOk); });
    QuietRunHost host;
    SetRunHost(&host);
    const QStringList areas = germanAreaCodes(shippedDb);

    QList<double> runSeconds;
    QList<double> normaliserSeconds;
    int changed = 0;
    for (int run = 0; run < kRuns; ++run) {
        QElapsedTimer fillTimer;
        fillTimer.start();
        const Filled filled = fillFolder(QStringLiteral("Bench %1").arg(run), areas, 4711 + run);
        std::printf("run %d: %d contacts with %lld numbers made in %.2f s\n", run + 1, kContacts,
                    qlonglong(filled.numbers.size()), fillTimer.nsecsElapsed() / 1e9);

        QElapsedTimer timer;
        timer.start();
        changed = RunContactTelNrOn({filled.folder}, false);
        runSeconds.append(timer.nsecsElapsed() / 1e9);

        // The normaliser alone on the same values; the run calls it once more
        // per empty field, which costs next to nothing.
        timer.restart();
        bool dummy = false;
        for (const QString &number : filled.numbers)
            (void)StandardTelNr(number, dummy);
        normaliserSeconds.append(timer.nsecsElapsed() / 1e9);
        std::printf("run %d: %.2f s, %d contacts changed, normaliser alone %.3f s\n", run + 1, runSeconds.last(),
                    changed, normaliserSeconds.last());
    }

    const double seconds = median(runSeconds);
    const double normaliser = median(normaliserSeconds);
    std::printf("\ncontacts per run:           %d (%d changed)\n", kContacts, changed);
    std::printf("run time (median of %d):     %.2f s  (target < 10 s)\n", kRuns, seconds);
    std::printf("contacts per second:        %.0f\n", kContacts / seconds);
    std::printf("normaliser share:           %.1f %%\n", 100.0 * normaliser / seconds);
    std::printf("store and run share:        %.1f %%\n", 100.0 * (seconds - normaliser) / seconds);
    SetRunHost(nullptr);
    return seconds < 10.0 ? 0 : 2;
}
