// mbox files: where one message ends and the next begins, ">From " lines,
// junk before and between messages, which is skipped with its byte offset,
// a damaged message among good ones, read with a note of its number and
// offset; the "From " line in ASCII; a message imported once.
#include "MailTestItems.h"
#include "interchange/Interchange.h"
#include "interchange/MailFormat.h"

#include <QFile>
#include <QTimeZone>

class tst_MailMbox : public QObject
{
    Q_OBJECT

private slots:
    void init() { PinGermanLocale(); }
    void fileIsSplitIntoMessages_data();
    void fileIsSplitIntoMessages();
    void fromLinesComeBackExactly_data();
    void fromLinesComeBackExactly();
    void damagedMessageIsReadAndJunkSkippedWithPosition();
    void separatorLineIsPlainAscii_data();
    void separatorLineIsPlainAscii();
    void sameMailIsImportedOnceUnlessAsked();
};

namespace {

QByteArray message(const QByteArray &subject, const QByteArray &body = "Text\n")
{
    return "From: a@example.de\nSubject: " + subject + "\n\n" + body;
}

QByteArray binaryJunk()
{
    QByteArray junk(600, 0);
    for (int i = 0; i < junk.size(); ++i)
        junk[i] = char((i * 37) % 256);
    return junk;
}

} // namespace

void tst_MailMbox::fileIsSplitIntoMessages_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<QByteArray>>("messages");
    QTest::addColumn<QString>("junk"); // "offset:size:afterMessage", joined by " "

    const QByteArray from1 = "From a@example.de Fri Mar 14 09:30:00 2025\n";
    const QByteArray from2 = "From MAILER-DAEMON Sat Mar 15 10:00:00 2025\n";
    QTest::newRow("zwei Mails") << from1 + message("eins") + "\n" + from2 + message("zwei")
                                << QList<QByteArray>{message("eins"), message("zwei")} << QString();
    QTest::newRow("leere Datei") << QByteArray() << QList<QByteArray>{} << QString();
    QTest::newRow("Zeilenenden CR LF")
        << QByteArray(from1 + message("eins") + "\n" + from2 + message("zwei")).replace("\n", "\r\n")
        << QList<QByteArray>{QByteArray(message("eins")).replace("\n", "\r\n"), QByteArray(message("zwei")).replace("\n", "\r\n")}
        << QString();
    QTest::newRow("Text vor der ersten Trennzeile")
        << "Müll\n" + from1 + message("eins") << QList<QByteArray>{message("eins")} << QStringLiteral("0:6:0");
    QTest::newRow("From im Text ohne Leerzeile und ohne Datum bleibt Text")
        << from1 + message("eins", "Zeile\nFrom hier an\n") << QList<QByteArray>{message("eins", "Zeile\nFrom hier an\n")}
        << QString();
    QTest::newRow("Trennzeile mit Datum auch ohne Leerzeile davor")
        << from1 + message("eins", "Zeile\n") + from2 + message("zwei")
        << QList<QByteArray>{message("eins", "Zeile\n"), message("zwei")} << QString();
    const QByteArray first = from1 + message("eins") + "\n";
    QTest::newRow("Trennzeilen \"From - \" ohne Datum und ohne Leerzeile")
        << "From - \n" + message("eins", "Zeile\n") + "From - \n" + message("zwei")
        << QList<QByteArray>{message("eins", "Zeile\n"), message("zwei")} << QString();
    QTest::newRow("From im Text nach Leerzeile ohne Kopfzeile danach bleibt Text")
        << from1 + message("eins", "Hallo\n\nFrom time to time\n") << QList<QByteArray>{message("eins", "Hallo\n\nFrom time to time\n")}
        << QString();
    const QByteArray counted = "From: a@example.de\nContent-Length: 28\n\nText\n\nFrom here on\nFrom: b\n\n";
    QTest::newRow("Content-Length: From-Zeilen im Text bleiben unmaskiert")
        << from1 + counted + "\n" + from2 + message("zwei")
        << QList<QByteArray>{counted, message("zwei")} << QString();
    QTest::newRow("Content-Length, die nicht passt, gilt nicht")
        << from1 + "From: a@example.de\nContent-Length: 3\n\nText\n\n" + from2 + message("zwei")
        << QList<QByteArray>{"From: a@example.de\nContent-Length: 3\n\nText\n", message("zwei")} << QString();
    QTest::newRow("Binärmüll zwischen Mails")
        << first + binaryJunk() + "\n" + from2 + message("zwei") << QList<QByteArray>{message("eins"), message("zwei")}
        << QStringLiteral("%1:%2:1").arg(first.size()).arg(binaryJunk().size() + 1);
}

void tst_MailMbox::fileIsSplitIntoMessages()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<QByteArray>, messages);
    QFETCH(QString, junk);
    QList<MboxJunk> found;
    const QList<MboxEntry> entries = SplitMbox(file, &found);
    QCOMPARE(entries.size(), messages.size());
    for (int i = 0; i < entries.size(); ++i)
        QCOMPARE(entries[i].message, messages[i]);
    if (!entries.isEmpty() && !file.startsWith("From - "))
        QCOMPARE(entries.first().envelopeDate.toUTC(), QDateTime(QDate(2025, 3, 14), QTime(9, 30), QTimeZone::utc()));
    QStringList junkText;
    for (const MboxJunk &j : found)
        junkText << QStringLiteral("%1:%2:%3").arg(j.offset).arg(j.size).arg(j.afterMessage);
    QCOMPARE(junkText.join(u' '), junk);
}

void tst_MailMbox::fromLinesComeBackExactly_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("From am Zeilenanfang") << QByteArray("From here\n");
    QTest::newRow("schon maskiert") << QByteArray(">From here\n>>From there\n");
    QTest::newRow("From ohne Leerzeichen bleibt") << QByteArray("From:\nFromage\n");
    QTest::newRow("letzte Zeile ohne Zeilenende") << QByteArray("x\nFrom y");
    QTest::newRow("From in der ersten Zeile") << QByteArray("From a b Fri Mar 14 09:30:00 2025\n\nFrom c\n");
}

void tst_MailMbox::separatorLineIsPlainAscii_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("Adresse") << QStringLiteral("hans@example.de") << QByteArray("From hans@example.de Fri Mar 14 08:30:00 2025\n");
    QTest::newRow("Umlaute") << QStringLiteral("jörg@müller.de") << QByteArray("From MAILER-DAEMON Fri Mar 14 08:30:00 2025\n");
    QTest::newRow("Leerzeichen") << QStringLiteral("Hans Müller") << QByteArray("From MAILER-DAEMON Fri Mar 14 08:30:00 2025\n");
    QTest::newRow("leer") << QString() << QByteArray("From MAILER-DAEMON Fri Mar 14 08:30:00 2025\n");
}

void tst_MailMbox::separatorLineIsPlainAscii()
{
    QFETCH(QString, sender);
    QFETCH(QByteArray, line);
    const QDateTime utc(QDate(2025, 3, 14), QTime(8, 30), QTimeZone::utc());
    const QDateTime local = utc.toLocalTime();
    const QByteArray record = MboxRecord(message("x"), sender, QDateTime(local.date(), local.time()));
    QCOMPARE(record.left(record.indexOf('\n') + 1), line);
}

void tst_MailMbox::sameMailIsImportedOnceUnlessAsked()
{
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    const QByteArray from = "From a@example.de Fri Mar 14 09:30:00 2025\n";
    const QByteArray withId = "From: a@example.de\nMessage-ID: <1@example.de>\nSubject: eins\n\nText\n";
    const QByteArray file = from + withId + "\n" + from + message("ohne ID") + "\n" + from + withId;
    const QString path = profile.scratch(QStringLiteral("Archiv.mbox"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(file);
    out.close();
    InterchangeReport first, second, asked;
    ImportMbox(path, inbox, first);
    QCOMPARE(first.imported, 2); // the third one is the first again
    QCOMPARE(first.notes.size(), 1);
    QVERIFY2(first.notes.first().contains(QStringLiteral("Mail 3")) && first.notes.first().contains(QStringLiteral("<1@example.de>")),
             qPrintable(first.notes.first()));
    ImportMbox(path, inbox, second); // without a Message-ID: the same text gives the same stable one
    QCOMPARE(second.read, 3);
    QCOMPARE(second.imported, 0);
    QVERIFY(second.skipped.isEmpty());
    SetMailDuplicatesImported(true);
    ImportMbox(path, inbox, asked);
    SetMailDuplicatesImported(false);
    QCOMPARE(asked.imported, 3);
    QCOMPARE(inbox.Items().Count(), 5);
}

void tst_MailMbox::fromLinesComeBackExactly()
{
    QFETCH(QByteArray, body);
    const QByteArray original = message("Test", body);
    QByteArray file = MboxRecord(original, QStringLiteral("a@example.de"), QDateTime(QDate(2025, 3, 14), QTime(9, 30)));
    file += MboxRecord(message("danach"), QString(), QDateTime());
    QVERIFY2(!file.contains("\nFrom here"), file.constData());
    QList<MboxJunk> junk;
    const QList<MboxEntry> entries = SplitMbox(file, &junk);
    QCOMPARE(entries.size(), 2);
    QByteArray expected = original;
    if (!expected.endsWith('\n'))
        expected += '\n'; // a record always ends its last line
    QCOMPARE(entries.first().message, expected);
    QCOMPARE(entries.last().message, message("danach"));
    QVERIFY(junk.isEmpty());
}

void tst_MailMbox::damagedMessageIsReadAndJunkSkippedWithPosition()
{
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    const QByteArray from = "From a@example.de Fri Mar 14 09:30:00 2025\n";
    const QByteArray truncated = "From: a@example.de\nSubject: kaputt\nContent-Type: multipart/mixed; boundary=\"B\"\n\n"
                                 "--B\nContent-Type: text/plain\n\nText\n--B\nContent-Type: application/pdf\n"
                                 "Content-Transfer-Encoding: base64\n\nJVBERi0x\n";
    const QByteArray part1 = from + message("eins") + "\n";
    const QByteArray part2 = from + truncated + "\n";
    const QByteArray part3 = from + message("drei") + "\n" + binaryJunk() + "\n";
    const QByteArray file = part1 + part2 + part3 + from + message("vier");
    const QString path = profile.scratch(QStringLiteral("Archiv.mbox"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(file);
    out.close();

    InterchangeReport report;
    ImportMbox(path, inbox, report);
    QCOMPARE(report.read, 4);
    QCOMPARE(report.imported, 4);
    QStringList subjects;
    for (int i = 1; i <= 4; ++i)
        subjects << inbox.Items().Item(i).Subject() + u'/' + inbox.Items().Item(i).Body();
    QCOMPARE(subjects, QStringList({QStringLiteral("eins/Text"), QStringLiteral("kaputt/Text"), QStringLiteral("drei/Text"),
                                    QStringLiteral("vier/Text")}));
    QCOMPARE(report.skipped.size(), 1);
    QVERIFY2(report.skipped.at(0).startsWith(QStringLiteral("Archiv.mbox, Byte %1: ").arg(part1.size() + part2.size() + from.size() + message("drei").size() + 1)),
             qPrintable(report.skipped.at(0)));
    QVERIFY2(report.skipped.at(0).contains(QStringLiteral("Binärdaten nach Mail 3")), qPrintable(report.skipped.at(0)));
    QCOMPARE(report.notes.size(), 1);
    QVERIFY2(report.notes.at(0).startsWith(QStringLiteral("Archiv.mbox, Mail 2 (Byte %1): ").arg(part1.size())),
             qPrintable(report.notes.at(0)));
    QVERIFY2(report.notes.at(0).contains(QStringLiteral("abgeschnitten")), qPrintable(report.notes.at(0)));
}

QTEST_GUILESS_MAIN(tst_MailMbox)
#include "tst_mailmbox.moc"
