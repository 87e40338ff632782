// mbox files: where one message ends and the next begins, ">From " lines,
// junk before and between messages, and a damaged message among good ones,
// which is skipped with its number and byte offset.
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
    void damagedMessageIsSkippedWithPosition();
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
    if (!entries.isEmpty())
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

void tst_MailMbox::damagedMessageIsSkippedWithPosition()
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
    QCOMPARE(report.imported, 3);
    QCOMPARE(inbox.Items().Count(), 3);
    QStringList subjects;
    for (int i = 1; i <= 3; ++i)
        subjects << inbox.Items().Item(i).Subject() + u'/' + inbox.Items().Item(i).Body();
    QCOMPARE(subjects, QStringList({QStringLiteral("eins/Text"), QStringLiteral("drei/Text"), QStringLiteral("vier/Text")}));
    QCOMPARE(report.skipped.size(), 2);
    QVERIFY2(report.skipped.at(0).startsWith(QStringLiteral("Archiv.mbox, Byte %1: ").arg(part1.size() + part2.size() + from.size() + message("drei").size() + 1)),
             qPrintable(report.skipped.at(0)));
    QVERIFY2(report.skipped.at(0).contains(QStringLiteral("Binärdaten nach Mail 3")), qPrintable(report.skipped.at(0)));
    QVERIFY2(report.skipped.at(1).startsWith(QStringLiteral("Archiv.mbox, Mail 2 (Byte %1): ").arg(part1.size())),
             qPrintable(report.skipped.at(1)));
    QVERIFY2(report.skipped.at(1).contains(QStringLiteral("abgeschnitten")), qPrintable(report.skipped.at(1)));
}

QTEST_GUILESS_MAIN(tst_MailMbox)
#include "tst_mailmbox.moc"
