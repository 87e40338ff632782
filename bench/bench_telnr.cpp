// bench_telnr: numbers per second through StandardTelNr, and through
// libphonenumber (parse with region DE, format INTERNATIONAL) on the same
// inputs as a point of reference. Times are processor time of the thread,
// medians of the repetitions.
//
//   build/bin/bench_telnr [count] [repetitions]
//
// The inputs are generated with a fixed seed: German, Austrian and Swiss
// numbers in the forms people type (with and without prefixes, mobile,
// extensions, labels; the Austrian and Swiss ones always with their country
// code, so that they stay foreign), numbers of other countries that the
// tables resolve, and things that are no numbers (none of them blank: a
// blank input costs either side nothing). The reference database beside the
// program and a temporary settings file with the defaults are used; the
// user's settings are not touched.
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "telephone/TelNrStandard.h"
#include "telephone/TelTables.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#ifdef HAVE_LIBPHONENUMBER
#include <phonenumbers/phonenumberutil.h>
#endif

namespace {

QString digits(QRandomGenerator &random, int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text.append(QChar(u'0' + random.bounded(i == 0 ? 1 : 0, 10)));
    return text;
}

// Spreads the digits of a subscriber number the way people write them.
QString spaced(QRandomGenerator &random, const QString &number)
{
    switch (random.bounded(4)) {
    case 0:
        return number;
    case 1:
        return number.left(3) + u' ' + number.mid(3);
    case 2: {
        QString text;
        for (qsizetype i = 0; i < number.size(); i += 2)
            text += (i ? QStringLiteral(" ") : QString()) + number.mid(i, 2);
        return text;
    }
    default:
        return number.left(number.size() - 2) + u'-' + number.right(2);
    }
}

struct AreaSample {
    const char *country;
    const char *area;
};

// Real area codes and mobile blocks of the three countries.
const AreaSample kAreas[] = {
    {"49", "30"}, {"49", "40"}, {"49", "89"}, {"49", "69"}, {"49", "221"}, {"49", "211"}, {"49", "711"},
    {"49", "5202"}, {"49", "6221"}, {"49", "33203"}, {"49", "4651"}, {"49", "7602"}, {"49", "8031"},
    {"49", "171"}, {"49", "151"}, {"49", "1577"}, {"49", "176"}, {"49", "160"},
    {"43", "1"}, {"43", "316"}, {"43", "512"}, {"43", "5574"}, {"43", "664"}, {"43", "699"},
    {"41", "44"}, {"41", "31"}, {"41", "61"}, {"41", "79"}, {"41", "76"}, {"41", "1"},
};

QString realisticNumber(QRandomGenerator &random)
{
    const AreaSample &sample = kAreas[random.bounded(int(std::size(kAreas)))];
    const QString country = QString::fromLatin1(sample.country);
    const QString area = QString::fromLatin1(sample.area);
    const QString subscriber = spaced(random, digits(random, random.bounded(5, 9)));
    const bool domestic = country == QLatin1String("49");
    // How the area code is written without an international prefix in
    // front: a foreign one keeps its country code.
    const QString national = domestic ? u'0' + area : u'+' + country + u' ' + area;
    switch (random.bounded(12)) {
    case 0:
        return domestic ? u'0' + area + u' ' + subscriber : u'+' + country + u' ' + area + u' ' + subscriber;
    case 1:
        return u'(' + (domestic ? QStringLiteral("0") : QStringLiteral("0") + country) + area + QStringLiteral(") ") + subscriber;
    case 2:
        return national + QStringLiteral(" / ") + subscriber;
    case 3:
        return u'+' + country + QStringLiteral(" (0)") + area + u' ' + subscriber;
    case 4:
        return QStringLiteral("00") + country + u'-' + area + u'-' + subscriber;
    case 5:
        return QStringLiteral("Tel.: +") + country + u' ' + area + u' ' + subscriber;
    case 6:
        return u'+' + country + QStringLiteral(" (") + area + QStringLiteral(") ") + subscriber.simplified().remove(u' ');
    case 7:
        return national + u'-' + subscriber + QStringLiteral(" App. ") + digits(random, 2);
    case 8: {
        // Countries without area codes in the tables: resolved to +CC digits.
        static const char *const foreign[] = {"+45 12 34 56 78", "+423 235 12 34", "+34 912 34 56 78",
                                              "+352 26 12 34 56", "0047 22 12 34 56", "+420 212 345 678"};
        return QString::fromLatin1(foreign[random.bounded(int(std::size(foreign)))]);
    }
    case 9: {
        static const char *const junk[] = {"siehe Notiz", "12.03.2024", "D-33602 Bielefeld", "110",
                                           "0800 1234567", "1234567"};
        return QString::fromLatin1(junk[random.bounded(int(std::size(junk)))]);
    }
    default:
        return domestic ? u'0' + area + subscriber.simplified().remove(u' ')
                        : QStringLiteral("00") + country + area + subscriber.simplified().remove(u' ');
    }
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2.0;
}

// Processor time of this thread: the machine is shared, and the wall clock
// would measure the neighbours too.
double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

template <typename Run>
double medianSeconds(int repetitions, Run run)
{
    std::vector<double> seconds;
    for (int r = 0; r < repetitions; ++r) {
        const double start = threadSeconds();
        run();
        seconds.push_back(threadSeconds() - start);
    }
    return median(seconds);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, atoi(argv[1])) : 200000;
    const int repetitions = argc > 2 ? std::max(1, atoi(argv[2])) : 7;

    QTemporaryDir settingsDir;
    SetSettingsFile(settingsDir.filePath(QStringLiteral("Varnex.ini")));
    InitDefaultSettings();
    if (!QFile::exists(ReferenceDatabasePath())) {
        std::fprintf(stderr, "bench_telnr: %s is missing\n", qPrintable(ReferenceDatabasePath()));
        return 1;
    }

    QRandomGenerator random(20240601);
    QList<QString> inputs;
    inputs.reserve(count);
    for (int i = 0; i < count; ++i)
        inputs.append(realisticNumber(random));

    // The first call reads the tables; then the cached path is measured.
    QElapsedTimer firstCall;
    firstCall.start();
    bool changed = false;
    StandardTelNr(inputs.first(), changed);
    const double firstSeconds = double(firstCall.nsecsElapsed()) / 1e9;

    qsizetype changedCount = 0;
    qsizetype totalLength = 0;
    const double ours = medianSeconds(repetitions, [&] {
        changedCount = 0;
        for (const QString &input : std::as_const(inputs)) {
            const QString result = StandardTelNr(input, changed);
            changedCount += changed;
            totalLength += result.size();
        }
    });
    // The part of it that is the change check of the settings and of the
    // database file, so that a change applies from the next number on.
    const double check = medianSeconds(repetitions, [&] {
        for (int i = 0; i < count; ++i)
            totalLength += qsizetype(&CurrentTelNrSettings() != nullptr) + qsizetype(&CurrentTelTables() != nullptr);
    });
    std::printf("inputs: %d, repetitions: %d, changed by StandardTelNr: %lld\n", count, repetitions,
                static_cast<long long>(changedCount));
    std::printf("StandardTelNr first call (reads the tables): %.2f ms\n", firstSeconds * 1e3);
    std::printf("StandardTelNr:   median %.3f s, %.0f numbers/s, %.2f us/number\n", ours, count / ours,
                ours * 1e6 / count);
    std::printf("  of which the change check of settings and tables: %.2f us/number\n", check * 1e6 / count);

#ifdef HAVE_LIBPHONENUMBER
    using i18n::phonenumbers::PhoneNumber;
    using i18n::phonenumbers::PhoneNumberUtil;
    PhoneNumberUtil *util = PhoneNumberUtil::GetInstance();
    std::vector<std::string> utf8;
    utf8.reserve(size_t(count));
    for (const QString &input : std::as_const(inputs))
        utf8.push_back(input.toStdString());
    qsizetype parsed = 0;
    const double reference = medianSeconds(repetitions, [&] {
        parsed = 0;
        std::string formatted;
        for (const std::string &input : utf8) {
            PhoneNumber number;
            if (util->Parse(input, "DE", &number) == PhoneNumberUtil::NO_PARSING_ERROR) {
                util->Format(number, PhoneNumberUtil::INTERNATIONAL, &formatted);
                ++parsed;
                totalLength += qsizetype(formatted.size());
            }
        }
    });
    std::printf("libphonenumber:  median %.3f s, %.0f numbers/s, %.2f us/number (parsed %lld)\n", reference,
                count / reference, reference * 1e6 / count, static_cast<long long>(parsed));
    std::printf("ratio StandardTelNr / libphonenumber throughput: %.2f\n", reference / ours);
#else
    std::printf("libphonenumber: not available, no reference figure\n");
#endif
    std::printf("tables read: %llu, checksum %lld\n", static_cast<unsigned long long>(TelTablesReadCount()),
                static_cast<long long>(totalLength));
    return 0;
}
