// Reading messages that other mail programs wrote: encoded headers, bodies
// in quoted-printable and base64 in several character sets, alternatives,
// attachments with names beyond ASCII, forwarded mails; and damaged files,
// which are read as far as they go, with a note of the damage; only a file
// without any header is skipped.
#include "MailTestItems.h"
#include "interchange/Interchange.h"
#include "interchange/MailFormat.h"

#include <QDir>
#include <QFile>
#include <QTimeZone>

class tst_MailReading : public QObject
{
    Q_OBJECT

private slots:
    void init() { PinGermanLocale(); }
    void foreignMessageGivesItsFields_data();
    void foreignMessageGivesItsFields();
    void damagedFileIsReadAsFarAsItGoes_data();
    void damagedFileIsReadAsFarAsItGoes();
};

namespace {

const QByteArray head = "From: Hans =?utf-8?q?M=C3=BCller?= <hans@example.de>\n"
                        "To: Erika Mustermann <erika@example.de>, ich@example.de\n"
                        "Date: Fri, 14 Mar 2025 09:30:00 +0000\n"
                        "Message-ID: <1@example.de>\n";

QString localText(int hour, int minute)
{
    const QDateTime utc(QDate(2025, 3, 14), QTime(hour, minute), QTimeZone::utc());
    const QDateTime local = utc.toLocalTime();
    return QDateTime(local.date(), local.time()).toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
}

QByteArray multipart(const QByteArray &type, const QList<QByteArray> &parts, bool closed = true)
{
    QByteArray out = head + "Subject: Teile\nMIME-Version: 1.0\nContent-Type: multipart/" + type +
                     "; boundary=\"GRENZE\"\n\nVorspann\n";
    for (const QByteArray &part : parts)
        out += "--GRENZE\n" + part + "\n";
    return closed ? out + "--GRENZE--\n" : out;
}

} // namespace

void tst_MailReading::foreignMessageGivesItsFields_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QStringList>("expected"); // "Property=text form"
    QTest::addColumn<QString>("attachments");

    QTest::newRow("Betreff ISO-8859-1 Q, Text quoted-printable Latin-1")
        << head + "Subject: =?ISO-8859-1?Q?Gr=FC=DFe_aus_K=F6ln?=\nContent-Type: text/plain; charset=iso-8859-1\n"
                  "Content-Transfer-Encoding: quoted-printable\n\nSch=F6ne Gr=FC=DFe,=\n gleich weiter.\nZeile 2\n"
        << QStringList{QStringLiteral("Subject=Grüße aus Köln"), QStringLiteral("SenderName=Hans Müller"),
                       QStringLiteral("SenderEmailAddress=hans@example.de"),
                       QStringLiteral("To=Erika Mustermann <erika@example.de>; ich@example.de"),
                       QStringLiteral("Body=Schöne Grüße, gleich weiter.\r\nZeile 2"),
                       QStringLiteral("SentOn=") + localText(9, 30), QStringLiteral("ReceivedTime=") + localText(9, 30),
                       QStringLiteral("MessageClass=IPM.Note")}
        << QString();
    QTest::newRow("Betreff UTF-8 B über zwei Wörter, Text base64")
        << head + "Subject: =?UTF-8?B?w5xiZXJnYWJl?= =?UTF-8?B?IGltIELDvHJv?=\nContent-Type: text/plain; charset=utf-8\n"
                  "Content-Transfer-Encoding: base64\n\n" + QByteArray("Grüße\r\nZeile 2\r\n").toBase64() + "\n"
        << QStringList{QStringLiteral("Subject=Übergabe im Büro"), QStringLiteral("Body=Grüße\r\nZeile 2\r\n")} << QString();
    QTest::newRow("Datei mit CR LF")
        << QByteArray(head + "Subject: Windows\nContent-Type: text/plain; charset=windows-1252\n\nZeile \xe4\nZeile 2\n")
               .replace("\n", "\r\n")
        << QStringList{QStringLiteral("Subject=Windows"), QStringLiteral("Body=Zeile ä\r\nZeile 2")} << QString();
    QTest::newRow("Alternative: Text und HTML")
        << multipart("alternative", {"Content-Type: text/plain; charset=utf-8\n\nHallo Welt",
                                     "Content-Type: text/html; charset=utf-8\n\n<p>Hallo <b>Welt</b></p>"})
        << QStringList{QStringLiteral("Body=Hallo Welt")} << QStringLiteral("Anlage1.html 24 versteckt");
    QTest::newRow("nur HTML")
        << multipart("mixed", {"Content-Type: text/html; charset=iso-8859-1\n\n<html><head><style>p{}</style></head>"
                               "<body><p>Hallo&nbsp;Welt</p>\n<p>Gr&uuml;&szlig;e &amp; Tsch\xfc&#223;</p></body></html>"})
        << QStringList{QStringLiteral("Body=Hallo Welt\r\nGrüße & Tschüß")} << QStringLiteral("Anlage1.html 121 versteckt");
    QTest::newRow("Anlage mit RFC-2231-Namen und Bild mit Content-ID")
        << multipart("mixed", {"Content-Type: text/plain\n\nAnbei.",
                               "Content-Type: application/pdf\nContent-Disposition: attachment;\n"
                               " filename*=utf-8''Rechnung%20M%C3%A4rz.pdf\nContent-Transfer-Encoding: base64\n\nJVBERi0xLjQ=",
                               "Content-Type: image/png\nContent-ID: <logo@x>\nContent-Disposition: inline\n"
                               "Content-Transfer-Encoding: base64\n\niVBORw0KGgo="})
        << QStringList{QStringLiteral("Body=Anbei.")}
        << QStringLiteral("Rechnung März.pdf 8 sichtbar + Anlage2.png 8 versteckt");
    QTest::newRow("Anlage mit RFC-2047-Namen und Beschreibung")
        << multipart("mixed", {"Content-Type: text/plain\n\nAnbei.",
                               "Content-Type: text/plain; name=\"=?utf-8?q?=C3=9Cbersicht=2Etxt?=\"\n"
                               "Content-Description: =?utf-8?q?Liste_f=C3=BCr_J=C3=B6rg?=\n"
                               "Content-Disposition: attachment\n\nEintrag"})
        << QStringList{QStringLiteral("Body=Anbei.")} << QStringLiteral("Übersicht.txt 7 sichtbar");
    QTest::newRow("weitergeleitete Mail")
        << multipart("mixed", {"Content-Type: text/plain\n\nSiehe unten.",
                               "Content-Type: message/rfc822\n\nFrom: a@example.de\nSubject: Ursprung\n\nAlter Text"})
        << QStringList{QStringLiteral("Body=Siehe unten.")} << QStringLiteral("Ursprung.eml 48 sichtbar");
    QTest::newRow("X-Priority, Status, Received, Vertraulichkeit, Keywords")
        << head + "Subject: Dringend\nX-Priority: 1 (Highest)\nStatus: O\nSensitivity: Private\nKeywords: Firma, Steuer\n"
                  "Received: from mx.example.de by mail.example.de; Fri, 14 Mar 2025 10:05:00 +0000\n"
                  "Received: from a by b; Fri, 14 Mar 2025 09:59:00 +0000\n\nText\n"
        << QStringList{QStringLiteral("Importance=2"), QStringLiteral("UnRead=Wahr"), QStringLiteral("Sensitivity=2"),
                       QStringLiteral("Categories=Firma, Steuer"), QStringLiteral("ReceivedTime=") + localText(10, 5)}
        << QString();
    QTest::newRow("7-Bit-Textanlage in einer CR-LF-Mail behält ihre Bytes")
        << QByteArray(multipart("mixed", {"Content-Type: text/plain\n\nAnbei.",
                                          "Content-Type: text/plain; name=notiz.txt\nContent-Disposition: attachment\n"
                                          "Content-Transfer-Encoding: 7bit\n\nZeile 1\nZeile 2"}))
               .replace("\n", "\r\n")
        << QStringList{QStringLiteral("Body=Anbei.")} << QStringLiteral("notiz.txt 16 sichtbar");
    QTest::newRow("Message-ID, Antwortbezug, Listen und Received bleiben")
        << QByteArray("Return-Path: <hans@example.de>\nReceived: from mx by mail; Fri, 14 Mar 2025 10:05:00 +0000\n"
                      "Received: from a\n by b; Fri, 14 Mar 2025 09:59:00 +0000\nFrom: hans@example.de\n"
                      "Message-ID: <2@example.de>\nIn-Reply-To: <1@example.de>\nReferences: <0@example.de>\n <1@example.de>\n"
                      "Reply-To: Liste <liste@example.de>\nList-Id: Bauliste <bau.example.de>\nSubject: Re: Bau\n\nText\n")
        << QStringList{QStringLiteral("VX Kopfzeilen=Return-Path: <hans@example.de>\r\n"
                                      "Received: from mx by mail; Fri, 14 Mar 2025 10:05:00 +0000\r\n"
                                      "Received: from a\r\n by b; Fri, 14 Mar 2025 09:59:00 +0000\r\n"
                                      "Message-ID: <2@example.de>\r\nIn-Reply-To: <1@example.de>\r\n"
                                      "References: <0@example.de>\r\n <1@example.de>\r\n"
                                      "Reply-To: Liste <liste@example.de>\r\nList-Id: Bauliste <bau.example.de>"),
                       QStringLiteral("Subject=Re: Bau")}
        << QString();
    QTest::newRow("Newsgroups ergibt Bereitstellung")
        << QByteArray("From: leser@example.de\nNewsgroups: de.comp.misc\nSubject: Frage\nX-Mozilla-Status: 0001\n\nText\n")
        << QStringList{QStringLiteral("MessageClass=IPM.Post"), QStringLiteral("UnRead=Falsch")} << QString();
    QTest::newRow("falscher Zeichensatz: us-ascii mit UTF-8")
        << head + "Subject: x\nContent-Type: text/plain; charset=us-ascii\nContent-Transfer-Encoding: 8bit\n\nGrüße\n"
        << QStringList{QStringLiteral("Body=Grüße")} << QString();
    QTest::newRow("falscher Zeichensatz: ISO-8859-1 mit UTF-8")
        << head + "Subject: x\nContent-Type: text/plain; charset=iso-8859-1\n\nGrüße\n"
        << QStringList{QStringLiteral("Body=Grüße")} << QString();
    QTest::newRow("unbekannter Zeichensatz mit Windows-1252")
        << head + "Subject: x\nContent-Type: text/plain; charset=x-erfunden\n\nGr\xfc\xdf" "e \x80" "5\n"
        << QStringList{QStringLiteral("Body=Grüße €5")} << QString();
    QTest::newRow("rohe 8-Bit-Kopfzeilen")
        << head + "Subject: Gr\xc3\xbc\xc3\x9f" "e\nX-Dummy: 1\nComments: Gr\xfc\xdf" "e\n\nText\n"
        << QStringList{QStringLiteral("Subject=Grüße")} << QString();
    QTest::newRow("kaputtes Encoded Word bleibt lesbar")
        << head + "Subject: =?utf-8?q?Gr=C3=BC=C3=9Fe?= und =?bogus?x?kaputt\n\nText\n"
        << QStringList{QStringLiteral("Subject=Grüße und =?bogus?x?kaputt")} << QString();
}

void tst_MailReading::foreignMessageGivesItsFields()
{
    QFETCH(QByteArray, message);
    QFETCH(QStringList, expected);
    QFETCH(QString, attachments);
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    const QString file = profile.scratch(QStringLiteral("nachricht.eml"));
    QFile out(file);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(message);
    out.close();
    InterchangeReport report;
    ImportEml(file, inbox, report);
    QVERIFY2(report.skipped.isEmpty(), qPrintable(report.skipped.join(u'\n')));
    QCOMPARE(inbox.Items().Count(), 1);
    const Item item = inbox.Items().Item(1);
    CheckItem(item, expected, attachments);
}

void tst_MailReading::damagedFileIsReadAsFarAsItGoes_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QString>("skip"); // part of the reason; empty: imported
    QTest::addColumn<QString>("note"); // part of the one damage note; empty: none
    QTest::addColumn<QStringList>("expected"); // "Property=text form" of the imported item
    QTest::addColumn<QString>("attachments");

    const QByteArray pdf = "Content-Type: application/pdf\nContent-Disposition: attachment; filename=a.pdf\n"
                           "Content-Transfer-Encoding: base64\n\n";
    const QStringList text{QStringLiteral("Body=Text")};
    QTest::newRow("abgeschnitten mitten in der Anlage")
        << multipart("mixed", {"Content-Type: text/plain\n\nText", pdf + "JVBERi0xLjQKJcfs"}, false).chopped(7)
        << QString() << QStringLiteral("abgeschnitten") << text << QStringLiteral("a.pdf 6 sichtbar");
    QTest::newRow("Schlussgrenze fehlt")
        << multipart("mixed", {"Content-Type: text/plain\n\nText", pdf + "JVBERi0xLjQ="}, false)
        << QString() << QStringLiteral("abgeschnitten") << text << QStringLiteral("a.pdf 8 sichtbar");
    QTest::newRow("Grenze passt nicht zu den Teilen")
        << QByteArray(multipart("mixed", {"Content-Type: text/plain\n\nText"})).replace("boundary=\"GRENZE\"", "boundary=\"ANDERS\"")
        << QString() << QStringLiteral("abgeschnitten")
        << QStringList{QStringLiteral("Body=Vorspann\r\n--GRENZE\r\nContent-Type: text/plain\r\n\r\nText\r\n--GRENZE--")} << QString();
    QTest::newRow("mehrteilig ohne Grenze")
        << QByteArray(multipart("mixed", {"Content-Type: text/plain\n\nText"})).replace("; boundary=\"GRENZE\"", "")
        << QString() << QStringLiteral("keine Grenze")
        << QStringList{QStringLiteral("Body=Vorspann\r\n--GRENZE\r\nContent-Type: text/plain\r\n\r\nText\r\n--GRENZE--")} << QString();
    QTest::newRow("Kopfzeile ohne Doppelpunkt wird übergangen")
        << head + "Subject: x\nDas ist keine Kopfzeile\nTo: b@example.de\n\nText\n" << QString()
        << QStringLiteral("Kopfzeile ist ungültig")
        << QStringList{QStringLiteral("Subject=x"), QStringLiteral("Body=Text"),
                       QStringLiteral("To=Erika Mustermann <erika@example.de>; ich@example.de; b@example.de")}
        << QString();
    QTest::newRow("Zeilenenden nur CR")
        << QByteArray(head + "Subject: Mac\nContent-Type: text/plain; charset=macintosh\n\nZeile 1\nZeile 2\n").replace('\n', '\r')
        << QString() << QStringLiteral("nur mit CR")
        << QStringList{QStringLiteral("Subject=Mac"), QStringLiteral("Body=Zeile 1\r\nZeile 2"),
                       QStringLiteral("To=Erika Mustermann <erika@example.de>; ich@example.de")}
        << QString();
    QTest::newRow("From-Zeile einer mbox am Anfang")
        << "From hans@example.de Fri Mar 14 09:30:00 2025\n" + head + "Subject: gespeichert\n\nText\n" << QString() << QString()
        << QStringList{QStringLiteral("Subject=gespeichert"), QStringLiteral("SenderEmailAddress=hans@example.de")} << QString();
    QTest::newRow("From-Zeile in der angehängten Mail")
        << multipart("mixed", {"Content-Type: text/plain\n\nText",
                               "Content-Type: message/rfc822\n\nFrom a@example.de Fri Mar 14 09:30:00 2025\n"
                               "From: a@example.de\nSubject: Ursprung\n\nAlter Text"})
        << QString() << QString() << text << QStringLiteral("Ursprung.eml 48 sichtbar");
    QByteArray garbage(4000, 0);
    for (int i = 0; i < garbage.size(); ++i)
        garbage[i] = char((i * 7919 + 13) % 251);
    QTest::newRow("Binärmüll") << garbage << QStringLiteral("keine Kopfzeilen") << QString() << QStringList() << QString();
    QTest::newRow("leere Datei") << QByteArray() << QStringLiteral("keine Kopfzeilen") << QString() << QStringList() << QString();
    QTest::newRow("Nachrichtenklasse eines Kontakts")
        << head + "Subject: x\nX-Varnex-MessageClass: IPM.Contact\n\nText\n" << QString()
        << QStringLiteral("weder Mail noch Bereitstellung") << QStringList{QStringLiteral("MessageClass=IPM.Note")} << QString();
    QTest::newRow("Erweiterungsfeld mit falschem Wert")
        << head + "Subject: x\nX-Varnex-SentOn: gestern\n\nText\n" << QString() << QStringLiteral("passt nicht")
        << QStringList{QStringLiteral("SentOn=") + localText(9, 30)} << QString();
    QTest::newRow("Benutzereigenschaft unlesbar")
        << head + "Subject: x\nX-Varnex-UserProperty: nur ein Teil\n\nText\n" << QString()
        << QStringLiteral("Benutzereigenschaft ist unlesbar") << text << QString();
    QTest::newRow("Erweiterungsfeld einer anderen Klasse wird übergangen")
        << head + "Subject: x\nX-Varnex-FullName: Hans\n\nText\n" << QString() << QString() << text << QString();

    QByteArray huge = head + "Subject:";
    for (int i = 0; i < 40000; ++i)
        huge += " Wort" + QByteArray::number(i) + (i % 10 == 9 ? "\n" : "");
    huge += "\nCc:";
    for (int i = 0; i < 5000; ++i)
        huge += " Empf\xc3\xa4nger " + QByteArray::number(i) + " <e" + QByteArray::number(i) + "@example.de>,\n";
    QTest::newRow("riesige Kopfzeilen") << huge + "X-Ende: 1\n\nText\n" << QString() << QString()
                                        << QStringList{QStringLiteral("SenderName=Hans Müller")} << QString();
}

void tst_MailReading::damagedFileIsReadAsFarAsItGoes()
{
    QFETCH(QByteArray, message);
    QFETCH(QString, skip);
    QFETCH(QString, note);
    QFETCH(QStringList, expected);
    QFETCH(QString, attachments);
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    const QDir folder(profile.scratch(QStringLiteral("eingang")));
    QVERIFY(QDir().mkpath(folder.path()));
    const QList<std::pair<QString, QByteArray>> files = {
        {QStringLiteral("1 gut.eml"), head + "Subject: vorher\n\nText\n"},
        {QStringLiteral("2 Prüfling.eml"), message},
        {QStringLiteral("3 gut.eml"), head + "Subject: nachher\n\nText\n"}};
    for (const auto &[name, bytes] : files) {
        QFile out(folder.filePath(name));
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    InterchangeReport report;
    SetMailDuplicatesImported(true); // the good ones are alike
    ImportEml(folder.path(), inbox, report);
    SetMailDuplicatesImported(false);
    QCOMPARE(report.read, 3);
    const bool imported = skip.isEmpty();
    QCOMPARE(report.imported, imported ? 3 : 2);
    QCOMPARE(inbox.Items().Count(), imported ? 3 : 2); // never half an item
    QCOMPARE(inbox.Items().Item(1).Subject(), QStringLiteral("vorher"));
    QCOMPARE(inbox.Items().Item(imported ? 3 : 2).Subject(), QStringLiteral("nachher"));
    QVERIFY2(report.notes.size() == (note.isEmpty() ? 0 : 1), qPrintable(report.notes.join(u'\n')));
    if (!note.isEmpty()) {
        QVERIFY2(report.notes.first().startsWith(QStringLiteral("2 Prüfling.eml: ")), qPrintable(report.notes.first()));
        QVERIFY2(report.notes.first().contains(note), qPrintable(report.notes.first()));
    }
    if (imported) {
        QVERIFY2(report.skipped.isEmpty(), qPrintable(report.skipped.join(u'\n')));
        CheckItem(inbox.Items().Item(2), expected, attachments);
        return;
    }
    QCOMPARE(report.skipped.size(), 1);
    QVERIFY2(report.skipped.first().startsWith(QStringLiteral("2 Prüfling.eml: ")), qPrintable(report.skipped.first()));
    QVERIFY2(report.skipped.first().contains(skip), qPrintable(report.skipped.first()));
}

QTEST_GUILESS_MAIN(tst_MailReading)
#include "tst_mailreading.moc"
