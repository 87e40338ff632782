// The sync of an account against a local radicale (tests/support/
// RadicaleServer.h): the first pull of 5,000 contacts and 5,000 events, and
// an idle re-sync (nothing changed on either side). Medians of three runs,
// wall clock and the processor time of this process (radicale's own work
// is in the wall clock only).
#include "support/RadicaleServer.h"
#include "support/TestSupport.h"

#include "dav/DavSync.h"
#include "store/Store.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>
#include <ctime>

namespace {

constexpr int s_count = 5000;

QByteArray contacts()
{
    QByteArray text;
    for (int i = 0; i < s_count; ++i)
        text += QStringLiteral("BEGIN:VCARD\r\nVERSION:3.0\r\nUID:kontakt-%1\r\nN:Name%1;Anna;;;\r\nFN:Anna Name%1\r\n"
                               "TEL;TYPE=WORK:+49 30 %1\r\nEMAIL:anna%1@example.org\r\nORG:Firma %2\r\nEND:VCARD\r\n")
                    .arg(i)
                    .arg(i % 97)
                    .toUtf8();
    return text;
}

QByteArray events()
{
    QByteArray text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Bench//DE\r\n";
    for (int i = 0; i < s_count; ++i) {
        const QDateTime start = QDateTime(QDate(2026, 1, 1), QTime(8, 0), Qt::UTC).addSecs(qint64(i) * 5400);
        text += QStringLiteral("BEGIN:VEVENT\r\nUID:termin-%1\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:%2\r\nDTEND:%3\r\n"
                               "SUMMARY:Termin %1\r\nLOCATION:Raum %4\r\nEND:VEVENT\r\n")
                    .arg(i)
                    .arg(start.toString(u"yyyyMMdd'T'HHmmss'Z'"), start.addSecs(3600).toString(u"yyyyMMdd'T'HHmmss'Z'"))
                    .arg(i % 12)
                    .toUtf8();
    }
    return text + "END:VCALENDAR\r\n";
}

struct Times {
    double wall = 0, cpu = 0;
};

Times timed(const std::function<void()> &work)
{
    QElapsedTimer clock;
    const std::clock_t cpu = std::clock();
    clock.start();
    work();
    return {clock.elapsed() / 1000.0, double(std::clock() - cpu) / CLOCKS_PER_SEC};
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int run(QTextStream &out);

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    try {
        return run(out);
    } catch (const DavError &e) {
        out << "Abgebrochen: " << e.message << "\n";
    } catch (const StoreError &e) {
        out << "Abgebrochen: " << e.description() << "\n";
    }
    return 1;
}

int run(QTextStream &out)
{
    RadicaleServer server;
    QString error;
    if (!server.start(&error)) {
        out << error << "\n";
        return 1;
    }
    server.useNewUser();
    server.client().setTimeout(1800); // radicale takes its time over 5,000 entries at once
    server.put(QStringLiteral("/%1/Kontakte/").arg(server.user()), contacts());
    server.put(QStringLiteral("/%1/Kalender/").arg(server.user()), events());
    QList<double> firstWall, firstCpu, idleWall, idleCpu;
    for (int pass = 0; pass < 3; ++pass) {
        TestEnvironment env(false);
        CreateProfile();
        DavState state(ProfileFolder());
        DavClient client(server.url(), server.user(), server.password(), false);
        client.setTimeout(600);
        AddDavAccount(state, {QStringLiteral("Server"), server.url().toString(), server.user(), false, {}}, client);
        const DavAccount account = *state.account(QStringLiteral("Server"));
        DavSyncReport first, idle;
        const Times pull = timed([&] { SyncDavAccount(state, account, client, first); });
        const Times again = timed([&] { SyncDavAccount(state, account, client, idle); });
        if (first.pulledNew != 2 * s_count || idle.pulledNew + idle.pulledChanged + idle.pushedChanged != 0) {
            out << "Unerwartetes Ergebnis:\n" << first.summary(account.name) << idle.summary(account.name);
            return 1;
        }
        out << "Lauf " << pass + 1 << ": erster Abruf " << pull.wall << " s (" << pull.cpu << " s CPU), "
            << "Abgleich ohne Änderung " << again.wall << " s (" << again.cpu << " s CPU)\n";
        out.flush();
        firstWall << pull.wall;
        firstCpu << pull.cpu;
        idleWall << again.wall;
        idleCpu << again.cpu;
    }
    out << "Median: erster Abruf von " << s_count << " Kontakten und " << s_count << " Terminen " << median(firstWall)
        << " s (" << median(firstCpu) << " s CPU); Abgleich ohne Änderung " << median(idleWall) << " s ("
        << median(idleCpu) << " s CPU)\n";
    return 0;
}
