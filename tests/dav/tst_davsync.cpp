// Two-way sync with a real server (radicale on 127.0.0.1, tests/support/
// RadicaleServer.h): discovery, changes pulled and pushed, conflicts, what
// the store has no field for, interrupted syncs and refused logins.
#include "support/RadicaleServer.h"
#include "support/TestSupport.h"

#include "frame/AccountSync.h"

#include "dav/DavCommand.h"
#include "dav/DavDiscovery.h"
#include "dav/DavSync.h"
#include "interchange/ItemFields.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

namespace {

const QString s_account = QStringLiteral("Server");

QByteArray card(const QString &uid, const QString &family, const QByteArray &extra = {})
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + uid.toUtf8() + "\r\nN:" + family.toUtf8() + ";Anna;;;\r\nFN:Anna " +
           family.toUtf8() + "\r\n" + extra + "END:VCARD\r\n";
}

QByteArray calendarEvent(const QString &uid, const QString &summary, const QByteArray &extra = {})
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Test//DE\r\nBEGIN:VEVENT\r\nUID:" + uid.toUtf8() +
           "\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:20260310T090000Z\r\nDTEND:20260310T100000Z\r\nSUMMARY:" +
           summary.toUtf8() + "\r\n" + extra + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

// What the items of a folder are called: the family name of a contact, the
// subject of anything else; sorted.
QStringList titles(const MAPIFolder &folder)
{
    QStringList list;
    for (const Item &item : folder.Items())
        list << (item.Class() == olContact ? item.text(QStringLiteral("LastName")) : item.Subject());
    list.sort();
    return list;
}

QString field(bool book)
{
    return book ? QStringLiteral("LastName") : QStringLiteral("Subject");
}

} // namespace

class tst_DavSync : public QObject
{
    Q_OBJECT

    RadicaleServer m_server;
    std::unique_ptr<TestEnvironment> m_env;
    QString m_book, m_calendar;

    void addAccount(const QString &path = QString())
    {
        DavState state(ProfileFolder());
        DavClient client(m_server.url().resolved(QUrl(path)), m_server.user(), m_server.password(), false);
        AddDavAccount(state, {s_account, client.base().toString(), m_server.user(), false, {}}, client);
    }

    DavSyncReport sync(const std::function<void(int, int)> &progress = {})
    {
        DavState state(ProfileFolder());
        const DavAccount account = *state.account(s_account);
        DavClient client(QUrl(account.url), account.user, m_server.password(), false);
        DavSyncReport report;
        if (progress)
            report.progress = [&](int done, int total, const QString &) { progress(done, total); };
        SyncDavAccount(state, account, client, report);
        return report;
    }

    static MAPIFolder folder(const QString &name)
    {
        return Application().GetNamespace().Folders().Item(s_account).Folders().Item(name);
    }

    // The folder and collection of a kind, and a resource text for it.
    MAPIFolder localFolder(bool book) { return folder(book ? QStringLiteral("Kontakte") : QStringLiteral("Kalender")); }
    QString collection(bool book) const { return book ? m_book : m_calendar; }
    static QByteArray text(bool book, const QString &uid, const QString &title, const QByteArray &extra = {})
    {
        return book ? card(uid, title, extra) : calendarEvent(uid, title, extra);
    }
    static QString href(const QString &collection, bool book, const QString &uid)
    {
        return collection + uid + (book ? QStringLiteral(".vcf") : QStringLiteral(".ics"));
    }

    // Two resources on the server (uid a: "Alt", uid b: "Bleibt"), pulled.
    void pullTwo(bool book)
    {
        m_server.put(href(collection(book), book, QStringLiteral("a")), text(book, QStringLiteral("a"), QStringLiteral("Alt")));
        m_server.put(href(collection(book), book, QStringLiteral("b")), text(book, QStringLiteral("b"), QStringLiteral("Bleibt")));
        addAccount();
        sync();
    }

    static Item itemOf(const MAPIFolder &folder, bool book, const QString &title)
    {
        for (const Item &item : folder.Items())
            if (item.text(field(book)) == title)
                return item;
        return {};
    }

    // What the server holds: the family names or summaries, sorted.
    QStringList serverTitles(bool book)
    {
        QStringList list;
        for (const QString &h : m_server.members(collection(book))) {
            const QByteArray body = m_server.get(h);
            const QByteArray key = book ? "\nN:" : "\nSUMMARY:";
            const qsizetype at = body.indexOf(key) + key.size();
            list << QString::fromUtf8(body.mid(at, body.indexOf(book ? ';' : '\r', at) - at));
        }
        list.sort();
        return list;
    }

private slots:
    void initTestCase()
    {
        QString error;
        QVERIFY2(m_server.start(&error), qPrintable(error));
    }

    void init()
    {
        m_env = std::make_unique<TestEnvironment>(false);
        m_server.useNewUser();
        CreateProfile();
        m_book = m_server.makeAddressBook(QStringLiteral("Kontakte"));
        m_calendar = m_server.makeCalendar(QStringLiteral("Kalender"), {QStringLiteral("VEVENT"), QStringLiteral("VTODO")});
        m_server.makeCalendar(QStringLiteral("Aufgaben"), {QStringLiteral("VTODO")});
    }

    void cleanup()
    {
        m_env.reset();
        if (!m_server.running())
            m_server.start();
    }

    void discovery_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("folders");
        const QStringList all = {QStringLiteral("Aufgaben [IPF.Task]"), QStringLiteral("Kalender (Aufgaben) [IPF.Task]"),
                                 QStringLiteral("Kalender [IPF.Appointment]"), QStringLiteral("Kontakte [IPF.Contact]"),
                                 QStringLiteral("privat [IPF.Contact]")};
        QTest::newRow("Wurzel des Servers (well-known)") << QString() << all;
        QTest::newRow("Principal des Benutzers") << QStringLiteral("/%1/") << all;
        QTest::newRow("ein Adressbuch selbst") << QStringLiteral("/%1/Kontakte/") << QStringList{QStringLiteral("Kontakte [IPF.Contact]")};
        QTest::newRow("ein Adressbuch ohne Anzeigenamen") << QStringLiteral("/%1/privat/")
                                                         << QStringList{QStringLiteral("privat [IPF.Contact]")};
    }

    void discovery()
    {
        QFETCH(QString, path);
        QFETCH(QStringList, folders);
        m_server.makeAddressBook(QStringLiteral("privat"), false);
        addAccount(path.contains(u'%') ? path.arg(m_server.user()) : path);
        QStringList found;
        for (const MAPIFolder &f : Application().GetNamespace().Folders().Item(s_account).Folders())
            found << f.Name() + QStringLiteral(" [") + f.ContainerClass() + u']';
        found.sort();
        QCOMPARE(found, folders);
    }

    void serverChangesArePulled_data()
    {
        QTest::addColumn<bool>("book");
        QTest::addColumn<QString>("change");
        QTest::addColumn<QStringList>("local");
        QTest::addColumn<bool>("etagsOnly"); // as with a server without sync tokens
        for (bool book : {true, false}) {
            const char *kind = book ? "Kontakt" : "Termin";
            QTest::addRow("%s: nichts geändert", kind) << book << QString() << QStringList{"Alt", "Bleibt"} << false;
            QTest::addRow("%s neu", kind) << book << "neu" << QStringList{"Alt", "Bleibt", "Neu"} << false;
            QTest::addRow("%s geändert", kind) << book << "geändert" << QStringList{"Bleibt", "Geändert"} << false;
            QTest::addRow("%s gelöscht", kind) << book << "gelöscht" << QStringList{"Bleibt"} << false;
        }
        QTest::newRow("Kontakt neu, nur ETags") << true << "neu" << QStringList{"Alt", "Bleibt", "Neu"} << true;
        QTest::newRow("Kontakt geändert, nur ETags") << true << "geändert" << QStringList{"Bleibt", "Geändert"} << true;
        QTest::newRow("Kontakt gelöscht, nur ETags") << true << "gelöscht" << QStringList{"Bleibt"} << true;
    }

    void serverChangesArePulled()
    {
        QFETCH(bool, book);
        QFETCH(QString, change);
        QFETCH(QStringList, local);
        QFETCH(bool, etagsOnly);
        pullTwo(book);
        if (etagsOnly) {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("nur-etags"));
            db.setDatabaseName(QDir(ProfileFolder()).filePath(QStringLiteral("Konten.vxdav")));
            QVERIFY(db.open());
            QVERIFY(QSqlQuery(db).exec(QStringLiteral("UPDATE collection SET sync_collection = 0, sync_token = ''")));
            db.close();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(QStringLiteral("nur-etags"));
        }
        const QString entryIdOfA = itemOf(localFolder(book), book, QStringLiteral("Alt")).EntryID();
        if (change == u"neu")
            m_server.put(href(collection(book), book, QStringLiteral("n")), text(book, QStringLiteral("n"), QStringLiteral("Neu")));
        else if (change == u"geändert")
            m_server.put(href(collection(book), book, QStringLiteral("a")), text(book, QStringLiteral("a"), QStringLiteral("Geändert")));
        else if (change == u"gelöscht")
            m_server.remove(href(collection(book), book, QStringLiteral("a")));
        const DavSyncReport report = sync();
        QCOMPARE(titles(localFolder(book)), local);
        QCOMPARE(report.pulledNew + report.pulledChanged + report.pulledDeleted, change.isEmpty() ? 0 : 1);
        QCOMPARE(report.pushedNew + report.pushedChanged + report.pushedDeleted, 0);
        if (change == u"geändert") // changed in place: the item keeps its identity
            QCOMPARE(itemOf(localFolder(book), book, QStringLiteral("Geändert")).EntryID(), entryIdOfA);
        const DavSyncReport idle = sync();
        QCOMPARE(idle.summary(s_account), DavSyncReport().summary(s_account));
    }

    void localChangesArePushed_data()
    {
        QTest::addColumn<bool>("book");
        QTest::addColumn<QString>("change");
        QTest::addColumn<QStringList>("server");
        for (bool book : {true, false}) {
            const char *kind = book ? "Kontakt" : "Termin";
            QTest::addRow("%s geändert", kind) << book << "geändert" << QStringList{"Bleibt", "Geändert"};
            QTest::addRow("%s neu", kind) << book << "neu" << QStringList{"Alt", "Bleibt", "Neu"};
            QTest::addRow("%s gelöscht", kind) << book << "gelöscht" << QStringList{"Bleibt"};
            QTest::addRow("%s als Duplikat entfernt", kind) << book << "Duplikat" << QStringList{"Bleibt"};
        }
    }

    void localChangesArePushed()
    {
        QFETCH(bool, book);
        QFETCH(QString, change);
        QFETCH(QStringList, server);
        if (change == u"Duplikat") // the same entry twice on the server
            m_server.put(href(collection(book), book, QStringLiteral("c")), text(book, QStringLiteral("c"), QStringLiteral("Bleibt")));
        pullTwo(book);
        const MAPIFolder local = localFolder(book);
        Item a = itemOf(local, book, QStringLiteral("Alt"));
        if (change == u"geändert") {
            a.set(field(book), QStringLiteral("Geändert"));
            a.Save();
        } else if (change == u"neu") {
            Item item = local.Items().Add();
            item.set(field(book), QStringLiteral("Neu"));
            if (!book)
                item.set(QStringLiteral("Start"), QDateTime(QDate(2026, 4, 1), QTime(9, 0)));
            item.Save();
        } else if (change == u"gelöscht") {
            a.Delete();
        } else { // the removal of a duplicate run deletes all but one
            a.Delete();
            itemOf(local, book, QStringLiteral("Bleibt")).Delete();
        }
        const DavSyncReport report = sync();
        QVERIFY2(report.conflicts.isEmpty() && report.skipped.isEmpty(), qPrintable(report.summary(s_account)));
        QCOMPARE(serverTitles(book), server);
        QCOMPARE(titles(local), server);
        QCOMPARE(sync().summary(s_account), DavSyncReport().summary(s_account));
    }

    void conflicts_data()
    {
        QTest::addColumn<bool>("book");
        QTest::addColumn<QString>("serverChange"); // "" deletes on the server
        QTest::addColumn<QString>("localChange");  // "" deletes here
        QTest::addColumn<QStringList>("folder");
        QTest::addColumn<QStringList>("conflicts");
        QTest::addColumn<QStringList>("server");
        for (bool book : {true, false}) {
            const char *kind = book ? "Kontakt" : "Termin";
            QTest::addRow("%s beiderseits geändert", kind)
                << book << "Server" << "Lokal" << QStringList{"Bleibt", "Server"} << QStringList{"Lokal"}
                << QStringList{"Bleibt", "Server"};
            QTest::addRow("%s beiderseits gleich geändert", kind)
                << book << "Gleich" << "Gleich" << QStringList{"Bleibt", "Gleich"} << QStringList{}
                << QStringList{"Bleibt", "Gleich"};
            QTest::addRow("%s auf dem Server gelöscht, hier geändert", kind)
                << book << QString() << "Lokal" << QStringList{"Bleibt"} << QStringList{"Lokal"} << QStringList{"Bleibt"};
            QTest::addRow("%s hier gelöscht, auf dem Server geändert", kind)
                << book << "Server" << QString() << QStringList{"Bleibt", "Server"} << QStringList{}
                << QStringList{"Bleibt", "Server"};
        }
    }

    void conflicts()
    {
        QFETCH(bool, book);
        QFETCH(QString, serverChange);
        QFETCH(QString, localChange);
        QFETCH(QStringList, folder);
        QFETCH(QStringList, conflicts);
        QFETCH(QStringList, server);
        pullTwo(book);
        const MAPIFolder local = localFolder(book);
        Item a = itemOf(local, book, QStringLiteral("Alt"));
        if (localChange.isEmpty()) {
            a.Delete();
        } else {
            a.set(field(book), localChange);
            a.Save();
        }
        const QString h = href(collection(book), book, QStringLiteral("a"));
        if (serverChange.isEmpty())
            m_server.remove(h);
        else
            m_server.put(h, text(book, QStringLiteral("a"), serverChange));
        const DavSyncReport report = sync();
        QCOMPARE(titles(local), folder);
        const MAPIFolder kept = local.Folders().Find(QStringLiteral("Konflikte"));
        QCOMPARE(kept.isNull() ? QStringList() : titles(kept), conflicts);
        QCOMPARE(report.conflicts.size(), qsizetype(conflicts.size() + (localChange.isEmpty() ? 1 : 0)));
        QCOMPARE(serverTitles(book), server);
        QCOMPARE(sync().summary(s_account), DavSyncReport().summary(s_account));
    }

    void unknownPropertiesSurviveLocalEdit_data()
    {
        QTest::addColumn<bool>("book");
        QTest::addColumn<QByteArrayList>("kept");
        QTest::newRow("Kontakt") << true
                                 << QByteArrayList{"X-ANDERES-PROGRAMM;TYPE=merk:wert\\, mit Komma",
                                                   "item1.X-ABLABEL:Zweitwohnsitz", "GENDER:F"};
        QTest::newRow("Termin") << false
                                << QByteArrayList{"ATTENDEE;CN=Bernd Beispiel:mailto:bernd@example.org",
                                                  "X-ANDERES-PROGRAMM:wert", "URL:https://example.org/treffen"};
    }

    void unknownPropertiesSurviveLocalEdit()
    {
        QFETCH(bool, book);
        QFETCH(QByteArrayList, kept);
        const QString h = href(collection(book), book, QStringLiteral("a"));
        m_server.put(h, text(book, QStringLiteral("a"), QStringLiteral("Alt"), kept.join("\r\n") + "\r\n"));
        addAccount();
        sync();
        Item a = localFolder(book).Items().Item(1);
        a.set(field(book), QStringLiteral("Geändert"));
        a.Save();
        const DavSyncReport report = sync();
        QCOMPARE(report.pushedChanged, 1);
        const QByteArray now = m_server.get(h).replace("\r\n ", "");
        QVERIFY2(now.contains(book ? "N:Geändert;" : "SUMMARY:Geändert"), now.constData());
        for (const QByteArray &line : kept)
            QVERIFY2(now.contains(line), (line + " fehlt in\n" + now).constData());
    }

    void seriesStaysOneResource()
    {
        const QString h = href(m_calendar, false, QStringLiteral("serie"));
        m_server.put(h, "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Test//DE\r\n"
                        "BEGIN:VEVENT\r\nUID:serie\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:20260302T090000Z\r\n"
                        "DTEND:20260302T100000Z\r\nRRULE:FREQ=WEEKLY;COUNT=5\r\nSUMMARY:Runde\r\nEND:VEVENT\r\n"
                        "BEGIN:VEVENT\r\nUID:serie\r\nDTSTAMP:20260101T000000Z\r\nRECURRENCE-ID:20260309T090000Z\r\n"
                        "DTSTART:20260309T110000Z\r\nDTEND:20260309T120000Z\r\nSUMMARY:Runde verschoben\r\n"
                        "END:VEVENT\r\nEND:VCALENDAR\r\n");
        addAccount();
        QCOMPARE(sync().pulledNew, 1);
        const MAPIFolder local = localFolder(false);
        QCOMPARE(titles(local), (QStringList{"Runde", "Runde verschoben"}));
        Item master = itemOf(local, false, QStringLiteral("Runde"));
        master.setSubject(QStringLiteral("Runde neu"));
        master.Save();
        QCOMPARE(sync().pushedChanged, 1);
        const QByteArray now = m_server.get(h);
        QCOMPARE(now.count("BEGIN:VEVENT"), 2);
        QVERIFY2(now.contains("SUMMARY:Runde neu") && now.contains("SUMMARY:Runde verschoben") &&
                     now.contains("RECURRENCE-ID") && now.contains("RRULE:FREQ=WEEKLY;COUNT=5"),
                 now.constData());
        m_server.remove(h);
        QCOMPARE(sync().pulledDeleted, 1);
        QCOMPARE(local.Items().Count(), 0);
    }

    void interruptedSyncResumes_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Server beim Abruf gestoppt") << "Abruf";
        QTest::newRow("Server beim Senden gestoppt") << "Senden";
        QTest::newRow("Prozess beim Abruf beendet") << "kill";
    }

    void interruptedSyncResumes()
    {
        QFETCH(QString, how);
        constexpr int count = 120; // two batches: cut off after the first
        for (int i = 0; i < count; ++i) {
            const QString uid = QStringLiteral("k%1").arg(i);
            if (how != u"Senden")
                m_server.put(href(m_book, true, uid), card(uid, QStringLiteral("Name%1").arg(i)));
        }
        addAccount();
        if (how == u"Senden") {
            for (int i = 0; i < count; ++i) {
                Item item = folder(QStringLiteral("Kontakte")).Items().Add();
                item.set(QStringLiteral("LastName"), QStringLiteral("Name%1").arg(i));
                item.Save();
            }
        }
        if (how == u"kill") {
            QProcess child;
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("VARNEX_DAV_PASSWORD"), m_server.password());
            child.setProcessEnvironment(env);
            child.start(QCoreApplication::applicationDirPath() + QStringLiteral("/varnex-store"),
                        {QStringLiteral("--profile"), ProfileFolder(), QStringLiteral("dav"), QStringLiteral("sync"), s_account});
            QVERIFY(child.waitForStarted());
            while (!child.readAllStandardError().contains("/") && child.state() == QProcess::Running)
                child.waitForReadyRead(50);
            child.kill();
            child.waitForFinished();
            SetProfileFolder(ProfileFolder()); // the store as the child left it
        } else {
            bool stopped = false;
            try {
                sync([&](int, int) {
                    if (!stopped)
                        m_server.stop();
                    stopped = true;
                });
                QFAIL("Der Abgleich lief trotz gestopptem Server durch.");
            } catch (const DavError &e) {
                QCOMPARE(e.kind, DavError::Network);
            }
            QVERIFY(m_server.start());
        }
        const DavSyncReport resumed = sync();
        QVERIFY2(resumed.conflicts.isEmpty() && resumed.skipped.isEmpty(), qPrintable(resumed.summary(s_account)));
        QCOMPARE(localFolder(true).Items().Count(), count);
        QCOMPARE(m_server.members(m_book).size(), count);
        QSet<QString> names;
        for (const Item &item : localFolder(true).Items())
            names.insert(item.text(QStringLiteral("LastName")));
        QCOMPARE(names.size(), count);
        QCOMPARE(sync().summary(s_account), DavSyncReport().summary(s_account));
    }

    void refusedAccounts_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("message");
        QTest::newRow("falsches Passwort") << QString() << "falsch" << "Benutzername oder Passwort ist falsch";
        QTest::newRow("unbekannte Adresse") << "/%1/gibtsnicht/" << QString() << "kennt die Adresse nicht";
        QTest::newRow("TLS mit fremdem Zertifikat") << "tls" << QString() << "Die sichere Verbindung (TLS) zu 127.0.0.1";
        QTest::newRow("kein Server am Port") << "http://127.0.0.1:1/" << QString() << "Keine Verbindung zum Server";
        QTest::newRow("http zu einem anderen Rechner") << "http://192.0.2.7/dav/" << QString() << "nur zu diesem Rechner erlaubt";
        QTest::newRow("keine Adresse") << "ftp://127.0.0.1/" << QString() << "keine Adresse eines Servers";
    }

    void refusedAccounts()
    {
        QFETCH(QString, url);
        QFETCH(QString, password);
        QFETCH(QString, message);
        qputenv("VARNEX_DAV_PASSWORD", (password.isEmpty() ? m_server.password() : password).toUtf8());
        RadicaleServer tlsServer;
        if (url == u"tls") {
            QString error;
            QVERIFY2(tlsServer.start(&error, true), qPrintable(error));
            url = tlsServer.url().toString();
        }
        const QString address = url.startsWith(u'/') || url.isEmpty()
                                    ? m_server.url().resolved(QUrl(url.contains(u'%') ? url.arg(m_server.user()) : url)).toString()
                                    : url;
        QString outText, errText;
        QTextStream out(&outText), err(&errText);
        const int code = RunDavCommand({QStringLiteral("add"), s_account, address, QStringLiteral("--user"), m_server.user()},
                                       out, err);
        qunsetenv("VARNEX_DAV_PASSWORD");
        QCOMPARE(code, 1);
        QVERIFY2(errText.contains(message), qPrintable(errText));
        QVERIFY(Application().GetNamespace().Folders().Find(s_account).isNull());
    }

    void windowSyncAsksForThePassword_data()
    {
        QTest::addColumn<QString>("answer"); // "-": the user cancels
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("report");
        QTest::addColumn<int>("pulled");
        QTest::newRow("richtiges Passwort") << RadicaleServer::password() << "Info!" << "vom Server 1 neu" << 1;
        QTest::newRow("falsches Passwort") << "falsch" << "Fehler!" << "Passwort ist falsch" << 0;
        QTest::newRow("abgebrochen") << "-" << "Fehler!" << "Der Abgleich wurde abgebrochen." << 0;
    }

    void windowSyncAsksForThePassword()
    {
        QFETCH(QString, answer);
        QFETCH(QString, title);
        QFETCH(QString, report);
        QFETCH(int, pulled);
        m_server.put(href(m_book, true, QStringLiteral("a")), card(QStringLiteral("a"), QStringLiteral("Alt")));
        addAccount();
        MessageRecorder boxes;
        QStringList prompts;
        const AccountSyncResult result = SyncAccounts([&](const QString &prompt) -> std::optional<QString> {
            prompts << prompt;
            return answer == u"-" ? std::nullopt : std::optional<QString>(answer);
        });
        QCOMPARE(prompts, QStringList{QStringLiteral("Passwort für das Konto \"Server\" (Benutzer %1):").arg(m_server.user())});
        QCOMPARE(boxes.count(), 1);
        QCOMPARE(boxes.last().title, title);
        QVERIFY2(boxes.last().prompt.contains(report), qPrintable(boxes.last().prompt));
        QCOMPARE(result.exitCode, pulled ? 0 : 1);
        QCOMPARE(localFolder(true).Items().Count(), pulled);
    }

    void httpOnlyToThisMachine_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("allowHttp");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("https") << "https://dav.example.org/" << false << true;
        QTest::newRow("http 127.0.0.1") << "http://127.0.0.1:5232/" << false << true;
        QTest::newRow("http 127.8.9.10") << "http://127.8.9.10/" << false << true;
        QTest::newRow("http ::1") << "http://[::1]:5232/" << false << true;
        QTest::newRow("http localhost") << "http://localhost/" << false << true;
        QTest::newRow("http im Netz") << "http://192.168.1.20/" << false << false;
        QTest::newRow("http 128.0.0.1") << "http://128.0.0.1/" << false << false;
        QTest::newRow("http im Netz mit --allow-http") << "http://192.168.1.20/" << true << true;
        QTest::newRow("ftp") << "ftp://127.0.0.1/" << true << false;
    }

    void httpOnlyToThisMachine()
    {
        QFETCH(QString, url);
        QFETCH(bool, allowHttp);
        QFETCH(bool, allowed);
        QCOMPARE(HttpAllowed(QUrl(url), allowHttp), allowed);
    }
};

QTEST_GUILESS_MAIN(tst_DavSync)
#include "tst_davsync.moc"
