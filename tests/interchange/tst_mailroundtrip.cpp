// Mail and posts go out as EML or mbox and come back as the same items:
// every field, every user property (backups too), every attachment with its
// name, bytes and hidden flag, whatever the text holds.
#include "MailTestItems.h"
#include "interchange/Interchange.h"
#include "interchange/MailFormat.h"

#include <QDir>
#include <QFile>

class tst_MailRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void init() { PinGermanLocale(); }
    void exportThenImportGivesTheSameItem_data();
    void exportThenImportGivesTheSameItem();
    void mboxOfManyMailsKeepsEachOne();
    void otherItemsAreSkippedOnExport();
    void exportedMailReadsWellElsewhere();
};

namespace {

MailFixture plainMail()
{
    MailFixture m;
    m.fields = {{QStringLiteral("Subject"), QStringLiteral("Angebot Umbau")},
                {QStringLiteral("SenderName"), QStringLiteral("Hans Müller")},
                {QStringLiteral("SenderEmailAddress"), QStringLiteral("hans.mueller@example.de")},
                {QStringLiteral("To"), QStringLiteral("Erika Mustermann <erika@example.de>")},
                {QStringLiteral("SentOn"), At(2025, 3, 14, 9, 30, 12)},
                {QStringLiteral("ReceivedTime"), At(2025, 3, 14, 9, 31, 5)},
                {QStringLiteral("Body"), QStringLiteral("Sehr geehrte Frau Mustermann,\r\nanbei unser Angebot.\r\n\r\nGrüße\r\n")}};
    return m;
}

QByteArray binaryBytes(int size)
{
    QByteArray bytes(size, 0);
    for (int i = 0; i < size; ++i)
        bytes[i] = char((i * 131 + 7) % 256);
    return bytes;
}

void addRow(const char *name, const MailFixture &fixture)
{
    for (const char *format : {"eml", "mbox"})
        QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(format), QString::fromUtf8(name))))
            << QString::fromLatin1(format) << fixture;
}

} // namespace

void tst_MailRoundTrip::exportThenImportGivesTheSameItem_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<MailFixture>("fixture");
    addRow("einfache Mail", plainMail());

    MailFixture umlauts = plainMail();
    umlauts.fields << std::pair{QStringLiteral("Subject"),
                                QStringLiteral("Änderung der Übergabe – Größe und Maße für Jürgens Büro, bitte prüfen und "
                                               "bis Freitag zurückmelden (Straße 5, Köln)")};
    umlauts.fields << std::pair{QStringLiteral("Body"), QStringLiteral("Grüße aus Köln – €100 für 3 Äpfel.\r\n")};
    addRow("Umlaute in Betreff und Text", umlauts);

    MailFixture bareLines = plainMail();
    bareLines.fields << std::pair{QStringLiteral("Body"), QStringLiteral("Zeile eins\nZeile zwei\rDrei\r\n  eingerückt  ")};
    addRow("Text mit gemischten Zeilenenden", bareLines);

    MailFixture fromLines = plainMail();
    fromLines.fields << std::pair{QStringLiteral("Body"),
                                  QStringLiteral("Hallo,\r\nFrom here on we talk German.\r\n>From the last mail:\r\n"
                                                 ">>From deeper\r\n\r\nFrom Bonn\r\n")};
    addRow("From-Zeilen im Text", fromLines);

    MailFixture attachments = plainMail();
    attachments.attachments = {{QStringLiteral("Überweisung März 2025.pdf"), binaryBytes(70000)},
                               {QStringLiteral("Logo.png"), binaryBytes(900), true},
                               {QStringLiteral("notiz.txt"), QByteArray("Text ohne Zeilenende"), false,
                                QStringLiteral("Notiz für Jörg")},
                               {QStringLiteral("leer.bin"), QByteArray()}};
    addRow("Anlagen mit Umlautnamen, versteckt und leer", attachments);

    MailFixture link = plainMail();
    link.attachments = {{QString(), {}, false, QStringLiteral("Vertrag"), QStringLiteral("/srv/ablage/Vertrag Müller.pdf")}};
    addRow("verknüpfte Anlage", link);

    MailFixture post = plainMail();
    post.messageClass = QStringLiteral("IPM.Post");
    post.fields.removeIf([](const auto &f) { return f.first == u"To"; });
    addRow("Bereitstellung", post);

    MailFixture ownClass = plainMail();
    ownClass.messageClass = QStringLiteral("IPM.Note.Rechnung");
    addRow("eigene Nachrichtenklasse", ownClass);

    MailFixture flags = plainMail();
    flags.fields << std::pair{QStringLiteral("Importance"), 2} << std::pair{QStringLiteral("Sensitivity"), 3}
                 << std::pair{QStringLiteral("UnRead"), true}
                 << std::pair{QStringLiteral("Categories"), QStringLiteral("Firma, Büro")};
    addRow("Wichtigkeit, Vertraulichkeit, ungelesen, Kategorien", flags);

    MailFixture awkward = plainMail();
    awkward.fields << std::pair{QStringLiteral("SenderEmailAddress"), QString()}
                   << std::pair{QStringLiteral("To"), QStringLiteral("Müller, Hans <hans@example.de>; Ich; \"Team\"")}
                   << std::pair{QStringLiteral("CC"), QStringLiteral("Ärzte-Team")}
                   << std::pair{QStringLiteral("BCC"), QStringLiteral("geheim@example.de")}
                   << std::pair{QStringLiteral("ReceivedTime"), QDateTime()}
                   << std::pair{QStringLiteral("Subject"), QStringLiteral("  Leerzeichen außen =?utf-8?q?x?= ")};
    addRow("Absender ohne Adresse, Empfänger ohne Adressen", awkward);

    MailFixture leftovers = plainMail();
    leftovers.fields << std::pair{QStringLiteral("BillingInformation"), QStringLiteral("Projekt 4711\r\nKostenstelle 12")}
                     << std::pair{QStringLiteral("Mileage"), QStringLiteral("42 km")}
                     << std::pair{QStringLiteral("Companies"), QStringLiteral("Müller & Söhne")}
                     << std::pair{QStringLiteral("CreationTime"), At(2025, 3, 14, 9, 31, 7)};
    leftovers.userProperties = {{QStringLiteral("VX Backup Subject"), olText, QStringLiteral("alter Betreff; mit Semikolon")},
                                {QStringLiteral("Projekt"), olText, QStringLiteral("Zeile 1\r\nZeile 2\\ mit Rückstrich")},
                                {QStringLiteral("Betrag"), olNumber, 1234.5},
                                {QStringLiteral("Erledigt"), olYesNo, true},
                                {QStringLiteral("Frist"), olDateTime, At(2025, 4, 1, 12, 0)}};
    addRow("Felder ohne Heimat und Benutzereigenschaften", leftovers);

    MailFixture headers = plainMail();
    headers.userProperties = {{QStringLiteral("VX Kopfzeilen"), olText,
                               QStringLiteral("Received: from mx.example.de\r\n by mail.example.de; Fri, 14 Mar 2025 10:05:00 +0000\r\n"
                                              "Message-ID: <4711@example.de>\r\nIn-Reply-To: <4710@example.de>\r\n"
                                              "List-Id: <bau.example.de>")}};
    addRow("Message-ID und Transportkopfzeilen", headers);

    MailFixture html = plainMail();
    html.attachments = {{QStringLiteral("Anlage1.html"), QByteArray("<p>Sehr geehrte Frau <b>Mustermann</b></p>\n"), true},
                        {QStringLiteral("Logo.png"), binaryBytes(300), true}};
    addRow("HTML-Text als Alternative", html);
    MailFixture namedHtml = plainMail();
    namedHtml.attachments = {{QStringLiteral("Nachricht.html"), QByteArray("<p>Gr\xfc\xdf" "e</p>\r\n"), true}};
    addRow("HTML-Text mit Namen und CR LF", namedHtml);

    MailFixture forwarded = plainMail();
    forwarded.attachments = {{QStringLiteral("Ursprung.eml"), QByteArray("From: a@example.de\nSubject: Ursprung\n\nAlter Text\n")},
                             {QStringLiteral("Grüße.eml"), QByteArray("From: b@example.de\nSubject: =?utf-8?q?Gr=C3=BC=C3=9Fe?=\n\nGrüße\n")},
                             {QStringLiteral("kaputt.eml"), binaryBytes(200)}};
    addRow("angehängte Mails", forwarded);

    MailFixture empty;
    empty.fields = {{QStringLiteral("Subject"), QStringLiteral("nur Betreff")}};
    addRow("fast leere Mail", empty);
}

void tst_MailRoundTrip::exportThenImportGivesTheSameItem()
{
    QFETCH(QString, format);
    QFETCH(MailFixture, fixture);
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    MAPIFolder source = inbox.Folders().Add(QStringLiteral("Quelle"));
    const MAPIFolder target = inbox.Folders().Add(QStringLiteral("Ziel"));
    const Item original = SaveFixture(source, fixture);

    const InterchangeFormat *codec = FindInterchangeFormat(format);
    QVERIFY(codec);
    const QString path = profile.scratch(format == u"eml" ? QStringLiteral("export/") : QStringLiteral("export.mbox"));
    InterchangeReport out;
    codec->exporter(source, path, out);
    QVERIFY2(out.skipped.isEmpty(), qPrintable(out.skipped.join(u'\n')));
    QCOMPARE(out.exported, 1);

    InterchangeReport in;
    codec->importer(path, target, in);
    QVERIFY2(in.skipped.isEmpty(), qPrintable(in.skipped.join(u'\n')));
    QCOMPARE(in.read, 1);
    QCOMPARE(in.imported, 1);
    QCOMPARE(target.Items().Count(), 1);
    const QStringList differences = ItemDifferences(original, target.Items().Item(1));
    QVERIFY2(differences.isEmpty(), qPrintable(differences.join(u'\n')));
}

void tst_MailRoundTrip::mboxOfManyMailsKeepsEachOne()
{
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    MAPIFolder source = inbox.Folders().Add(QStringLiteral("Quelle"));
    const MAPIFolder target = inbox.Folders().Add(QStringLiteral("Ziel"));
    for (int i = 1; i <= 30; ++i) {
        MailFixture m = plainMail();
        m.fields << std::pair{QStringLiteral("Subject"), QStringLiteral("Mail Nr. %1 für Jörg").arg(i)}
                 << std::pair{QStringLiteral("Body"), QStringLiteral("Text %1\r\n\r\nFrom %1 on\r\n").arg(i)};
        if (i % 3 == 0)
            m.attachments = {{QStringLiteral("Anhang %1.bin").arg(i), binaryBytes(i * 100)}};
        SaveFixture(source, m);
    }
    const QString path = profile.scratch(QStringLiteral("alle.mbox"));
    InterchangeReport out, in;
    ExportMbox(source, path, out);
    ImportMbox(path, target, in);
    QCOMPARE(in.read, 30);
    QCOMPARE(in.imported, 30);
    for (int i = 1; i <= 30; ++i) {
        const QStringList differences = ItemDifferences(source.Items().Item(i), target.Items().Item(i));
        QVERIFY2(differences.isEmpty(), qPrintable(QStringLiteral("Mail %1: ").arg(i) + differences.join(u'\n')));
    }
}

void tst_MailRoundTrip::otherItemsAreSkippedOnExport()
{
    TempProfile profile;
    MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    SaveFixture(inbox, plainMail());
    Item task = inbox.Items().Add(olTask);
    task.setSubject(QStringLiteral("Steuererklärung"));
    task.Save();
    InterchangeReport report;
    ExportEml(inbox, profile.scratch(QStringLiteral("eml/")), report);
    QCOMPARE(report.exported, 1);
    QCOMPARE(report.skipped.size(), 1);
    QVERIFY2(report.skipped.first().contains(QStringLiteral("Steuererklärung")), qPrintable(report.skipped.first()));
    QVERIFY(report.skipped.first().contains(QStringLiteral("weder Mail noch Bereitstellung")));
    QCOMPARE(QDir(profile.scratch(QStringLiteral("eml"))).entryList(QDir::Files).size(), 1);
}

// What another mail program reads first: the standard headers in their
// encoded form, a Message-ID, the body as quoted-printable UTF-8 with its
// HTML alternative, the file name RFC 2231, an attached message as it is.
void tst_MailRoundTrip::exportedMailReadsWellElsewhere()
{
    TempProfile profile;
    MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    MailFixture m = plainMail();
    m.fields << std::pair{QStringLiteral("Subject"), QStringLiteral("Grüße")};
    m.attachments = {{QStringLiteral("Anlage1.html"), QByteArray("<p>Gr\xc3\xbc\xc3\x9f" "e</p>"), true},
                     {QStringLiteral("Übersicht.pdf"), QByteArray("%PDF-1.4")},
                     {QStringLiteral("Ursprung.eml"), QByteArray("From: a@example.de\nSubject: Ursprung\n\nAlter Text\n")}};
    SaveFixture(inbox, m);
    const QString folder = profile.scratch(QStringLiteral("eml/"));
    InterchangeReport report;
    ExportEml(inbox, folder, report);
    QFile file(QDir(folder).filePath(QStringLiteral("Grüße.eml")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    for (const char *expected :
         {"Subject: =?UTF-8?", "<hans.mueller@example.de>", "Date: Fri, 14 Mar 2025 09:30:12",
          "Content-Transfer-Encoding: quoted-printable", "Sehr geehrte Frau Mustermann,\nanbei unser Angebot.",
          "bersicht.pdf\nContent-Transfer-Encoding: base64\nContent-Disposition: attachment; filename*=", "X-Varnex-MessageClass: IPM.Note",
          "Content-Type: multipart/alternative", "Content-Type: text/html; charset=utf-8\n",
          "Content-Type: message/rfc822; name=Ursprung.eml\nContent-Transfer-Encoding: 7bit\n", "Message-Id: <"})
        QVERIFY2(text.contains(expected), qPrintable(QStringLiteral("%1 fehlt in:\n%2").arg(QLatin1String(expected), QString::fromUtf8(text.left(1500)))));
    QVERIFY(!text.contains('\r'));
}

QTEST_GUILESS_MAIN(tst_MailRoundTrip)
#include "tst_mailroundtrip.moc"
