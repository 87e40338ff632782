// Names per second of AnalyzeFullName over 100,000 realistic full names with
// the shipped tables (VarnexPub.db beside the executable). Target: at least
// 200,000 names per second of processor time. A checksum of every result
// lets two versions be compared. Prints the median of five passes by wall clock and
// by processor time of this thread: on a machine shared with other work the
// wall clock measures the neighbours too.
#include "frame/GlobalFunctions.h"
#include "names/NameCorrectionFunctions.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <algorithm>
#include <cstdio>
#include <ctime>

namespace {

const char *const kLastNames[] = {
    "Müller", "Schmidt", "Schneider", "Fischer", "Meyer", "Weber", "Schulz", "Becker", "Hoffmann", "Koch",
    "Richter", "Klein", "Schröder", "Neumann", "Schwarz", "Braun", "Zimmermann", "Krüger", "Hofmann",
    "Lange", "Krause", "Lehmann", "Köhler", "König", "Mayer", "Kaiser", "Fuchs", "Peters", "Scholz",
    "Möller", "Weiß", "Jung", "Hahn", "Vogel", "Keller", "Berger", "Winkler", "Roth", "Beck", "Baumann",
    "Schuster", "Böhm", "Winter", "Kraus", "Schumacher", "Krämer", "Vogt", "Jäger", "Groß", "Sommer",
    "Seidel", "Brandt", "Haas", "Schreiber", "Graf", "Ziegler", "Kuhn", "Pohl", "Horn", "Busch",
    "Bergmann", "Voigt", "Sauer", "Pfeiffer", "Gruber", "Huber", "Bauer", "Wallner", "Moser", "Steiner",
    "Hofer", "Leitner", "Egger", "Brunner", "Lang", "Gerber", "Meier", "Schmid", "Frei", "Baumgartner",
    "Müller-Lüdenscheidt", "von Bülow", "O'Neil", "Nguyen", "Yılmaz", "Kowalski", "Rossi", "Dubois",
};

const char *const kFormats[] = {
    "%F %L", "%F %L", "%F %L", "%F %L", "%F %L", "%L, %F", "Herr %F %L", "Frau Dr. %F %L",
    "%F %F %L", "%F-%F %L", "Prof. Dr. med. %F %L jun.", "Dipl.-Ing. %F %L", "%F und %F %L",
    "%L GmbH & Co. KG", "%L & Söhne", "Autohaus %L", "Dr. %F %L", "%F %L (geb. %L)", "%L", "Mag. %F %L",
};

QStringList firstNames()
{
    QStringList names;
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
    db.setDatabaseName(ProgramFile(QStringLiteral("VarnexPub.db")));
    if (db.open()) {
        QSqlQuery q(QStringLiteral("SELECT FirstName FROM T_FirstNames"), db);
        while (q.next())
            names.append(q.value(0).toString());
    }
    return names;
}

QStringList realisticNames(int count)
{
    const QStringList first = firstNames();
    QRandomGenerator rng(20240601);
    QStringList names;
    names.reserve(count);
    for (int i = 0; i < count; ++i) {
        QString format = QString::fromUtf8(kFormats[rng.bounded(int(std::size(kFormats)))]);
        QString name;
        for (qsizetype k = 0; k < format.size(); ++k) {
            if (format.at(k) == u'%' && k + 1 < format.size()) {
                const QChar code = format.at(++k);
                name += code == u'F' ? first.at(rng.bounded(int(first.size())))
                                     : QString::fromUtf8(kLastNames[rng.bounded(int(std::size(kLastNames)))]);
            } else {
                name += format.at(k);
            }
        }
        names.append(name);
    }
    return names;
}

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList names = realisticNames(100000);
    if (names.isEmpty() || !QFileInfo::exists(ProgramFile(QStringLiteral("VarnexPub.db")))) {
        std::fprintf(stderr, "bench_names: no reference database beside the program\n");
        return 1;
    }
    QString t, f, m, l, s;
    bool business = false;
    QElapsedTimer load;
    load.start();
    AnalyzeFullName(QStringLiteral("Hans Müller"), t, f, m, l, s, business, true);
    std::printf("first call (reads the tables): %.1f ms\n", load.nsecsElapsed() / 1e6);

    QList<double> rates, cpuRates;
    int companies = 0;
    size_t checksum = 0;
    for (int run = 0; run < 5; ++run) {
        companies = 0;
        checksum = 0;
        QElapsedTimer timer;
        timer.start();
        const double cpuStart = cpuSeconds();
        for (const QString &name : names) {
            AnalyzeFullName(name, t, f, m, l, s, business, true);
            companies += business ? 1 : 0;
            checksum = checksum * 31 + qHashMulti(0, t, f, m, l, s);
        }
        cpuRates.append(names.size() / (cpuSeconds() - cpuStart));
        rates.append(names.size() / (timer.nsecsElapsed() / 1e9));
    }
    std::sort(rates.begin(), rates.end());
    std::sort(cpuRates.begin(), cpuRates.end());
    std::printf("names: %lld, companies found: %d, checksum of the results %zx\n", qint64(names.size()), companies,
                checksum);
    std::printf("names per second, wall clock: median %.0f (min %.0f, max %.0f); target 200000: ratio %.2f\n",
                rates.at(2), rates.first(), rates.last(), rates.at(2) / 200000.0);
    std::printf("names per second, processor time: median %.0f (min %.0f, max %.0f); target 200000: ratio %.2f\n",
                cpuRates.at(2), cpuRates.first(), cpuRates.last(), cpuRates.at(2) / 200000.0);
    return 0;
}
