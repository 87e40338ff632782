// Contacts as vCard 3.0 and 4.0: export then import gives the same contacts
// (every field, user properties and backups); cards from elsewhere land in
// the right fields; damaged files and cards are skipped with their place.
#include "InterchangeTestItems.h"
#include "interchange/VCardFormat.h"
#include "store/StoreTestProfile.h"

#include <QStringDecoder>
#include <QTemporaryDir>

class tst_VCard : public QObject
{
    Q_OBJECT

private slots:
    void init() { PinGermanLocale(); }
    void exportThenImportGivesTheSameContacts_data();
    void exportThenImportGivesTheSameContacts();
    void cardsFromElsewhere_data();
    void cardsFromElsewhere();
    void damagedInput_data();
    void damagedInput();
    void foldedLinesStayWithinSeventyFiveOctets();
};

namespace {

// A contact with every field the store has, in German with umlauts and the
// characters that vCard escapes.
Item fullContact(const MAPIFolder &folder)
{
    Item c = folder.Items().Add(QStringLiteral("IPM.Contact.Kunde"));
    const QSet<QString> composite = {QStringLiteral("FullName"), QStringLiteral("BusinessAddress"),
                                     QStringLiteral("HomeAddress"), QStringLiteral("OtherAddress"),
                                     QStringLiteral("MessageClass"), QStringLiteral("Categories")};
    int n = 0;
    for (const QString &name : c.PropertyNames()) {
        const PropDef &def = PropertyAt(PropertySlot(name));
        if (def.readOnly || composite.contains(name))
            continue;
        if (def.type == PropType::Text)
            c.set(name, QStringLiteral("Wert %1: Größe; Maß, Straße\\%2").arg(name).arg(++n));
    }
    c.set(QStringLiteral("Body"), QStringLiteral("Erste Zeile: Grüße aus Köln\r\nZweite Zeile; mit, Zeichen\r\n"));
    c.set(QStringLiteral("Categories"), QStringLiteral("Kunde, Geschäftlich") + QChar(0x201A) + QStringLiteral(" Nord"));
    c.set(QStringLiteral("Birthday"), QDateTime(QDate(1961, 3, 14), QTime(0, 0)));
    c.set(QStringLiteral("Anniversary"), QDateTime(QDate(1990, 6, 1), QTime(14, 30)));
    c.set(QStringLiteral("Importance"), 2);
    c.set(QStringLiteral("Sensitivity"), 3);
    UserProperties props = c.UserProperties();
    props.Add(QStringLiteral("VX Backup FullName"), olText).setValue(QStringLiteral("Müller, Hans-Jürgen"));
    props.Add(QStringLiteral("VX Backup BusinessTelephoneNumber"), olText).setValue(QStringLiteral("089/1234-56"));
    props.Add(QStringLiteral("Kundennummer; intern"), olNumber).setValue(4711.5);
    props.Add(QStringLiteral("Letzter Besuch"), olDateTime).setValue(QDateTime(QDate(2024, 2, 29), QTime(9, 15)));
    props.Add(QStringLiteral("Stammkunde"), olYesNo).setValue(true);
    return c;
}

void addCompanyAndWrittenForms(const MAPIFolder &folder)
{
    Item company = folder.Items().Add();
    company.set(QStringLiteral("CompanyName"), QStringLiteral("Bäckerei Schäfer GmbH & Co. KG"));
    company.set(QStringLiteral("BusinessTelephoneNumber"), QStringLiteral("0221 123456"));
    company.set(QStringLiteral("Categories"), QStringLiteral("Lieferant,Köln"));
    company.Save();
    Item written = folder.Items().Add();
    written.set(QStringLiteral("FullName"), QStringLiteral("Weiß, Jürgen"));
    written.set(QStringLiteral("HomeAddress"), QStringLiteral("Am Hang 3\r\nHinterhaus\r\nD-50667 Köln\r\nDeutschland"));
    written.set(QStringLiteral("Body"), QString(300000, u'ä') + QStringLiteral("\r\nEnde"));
    written.Save();
}

} // namespace

void tst_VCard::exportThenImportGivesTheSameContacts_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("folderPerItem");
    QTest::newRow("vCard 3.0 in einer Datei") << "vcard" << false;
    QTest::newRow("vCard 4.0 in einer Datei") << "vcard4" << false;
    QTest::newRow("vCard 3.0 eine Datei je Kontakt") << "vcard" << true;
    QTest::newRow("vCard 4.0 eine Datei je Kontakt") << "vcard4" << true;
}

void tst_VCard::exportThenImportGivesTheSameContacts()
{
    QFETCH(QString, format);
    QFETCH(bool, folderPerItem);
    TempProfile profile;
    const MAPIFolder source = TempProfile::folderOf(olFolderContacts).Folders().Add(QStringLiteral("Quelle"));
    Item full = fullContact(source);
    full.Save();
    addCompanyAndWrittenForms(source);

    const QString path = profile.scratch(folderPerItem ? QStringLiteral("karten/") : QStringLiteral("kontakte.vcf"));
    InterchangeReport out;
    FindInterchangeFormat(format)->exporter(source, path, out);
    QCOMPARE(out.exported, 3);
    QCOMPARE(out.skipped, QStringList());
    if (folderPerItem)
        QCOMPARE(QDir(path).entryList(QDir::Files).size(), 3);

    InterchangeReport in;
    const MAPIFolder copy = ImportInto(format, path, QStringLiteral("Kopie"), in, olFolderContacts);
    QCOMPARE(in.skipped, QStringList());
    QVERIFY2(in.notes.isEmpty(), qPrintable(in.notes.join(u'\n')));
    QCOMPARE(in.read, 3);
    QCOMPARE(in.imported, 3);
    for (const Item &original : source.Items()) {
        const Item back = FindCopyOf(copy, original);
        QVERIFY2(!back.isNull(), qPrintable(original.text(QStringLiteral("FullName"))));
        const QStringList diffs = ItemDifferences(original, back);
        QVERIFY2(diffs.isEmpty(), qPrintable(diffs.join(u'\n')));
    }
}

void tst_VCard::cardsFromElsewhere_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("expected"); // "Field=value"
    QTest::newRow("vCard 2.1 mit Quoted-Printable und nackten Typen")
        << QByteArray("BEGIN:VCARD\r\nVERSION:2.1\r\nN:Schmidt;Karl\r\nTEL;WORK;VOICE:0711 123\r\n"
                      "TEL;CELL:0170 999\r\nNOTE;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Gr=C3=BC=C3=9Fe=0D=0A=\r\n"
                      "aus Stuttgart\r\nEND:VCARD\r\n")
        << QStringList{"LastName=Schmidt", "FirstName=Karl", "BusinessTelephoneNumber=0711 123",
                       "MobileTelephoneNumber=0170 999", "Body=Grüße\r\naus Stuttgart"};
    QTest::newRow("Latin-1 Datei")
        << QByteArray("BEGIN:VCARD\nVERSION:3.0\nN:M\xfcller;J\xfcrgen;;;\nFN:J\xfcrgen M\xfcller\n"
                      "ADR;TYPE=HOME:;;Stra\xdf" "e 1;K\xf6ln;;50667;\nEND:VCARD\n")
        << QStringList{"FullName=Jürgen Müller", "HomeAddressStreet=Straße 1", "HomeAddressCity=Köln"};
    QTest::newRow("Faltung mitten in einem UTF-8 Zeichen")
        << QByteArray("BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Ren\xc3\r\n \xa9 Gr\xc3\xa4\r\n\tf\r\nN:Gr\xc3\xa4" "f;Ren\xc3\xa9;;;\r\nEND:VCARD\r\n")
        << QStringList{"FullName=René Gräf", "LastName=Gräf"};
    QTest::newRow("Gruppen und Typen ohne Feldangabe")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Eva Huber\r\nN:Huber;Eva;;;\r\nitem1.TEL;type=WORK:01\r\n"
                      "item2.TEL;type=WORK:02\r\nTEL;TYPE=HOME,FAX:03\r\nTEL:04\r\nEMAIL;TYPE=HOME:a@b.example\r\n"
                      "EMAIL;TYPE=WORK:c@d.example\r\nURL;TYPE=WORK:https://huber.example\r\nEND:VCARD\r\n")
        << QStringList{"BusinessTelephoneNumber=01", "Business2TelephoneNumber=02", "HomeFaxNumber=03",
                       "OtherTelephoneNumber=04", "Email1Address=a@b.example", "Email2Address=c@d.example",
                       "BusinessHomePage=https://huber.example"};
    QTest::newRow("Firma ohne Personennamen")
        << QByteArray("BEGIN:VCARD\r\nVERSION:4.0\r\nKIND:org\r\nFN:Stadtwerke Bonn\r\nORG:Stadtwerke Bonn;Kundendienst\r\n"
                      "END:VCARD\r\n")
        << QStringList{"FullName=", "LastName=", "CompanyName=Stadtwerke Bonn", "Department=Kundendienst",
                       "FileAs=Stadtwerke Bonn"};
    QTest::newRow("N gibt die Teile, FN nur wo es dieselben ergibt (RFC 2426)")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Public;John;Quinlan;Mr.;Esq.\r\nFN:Mr. John Q. Public\\, Esq.\r\n"
                      "END:VCARD\r\n")
        << QStringList{"LastName=Public", "FirstName=John", "MiddleName=Quinlan", "Title=Mr.", "Suffix=Esq.",
                       "FullName=Mr. John Quinlan Public Esq.", "FileAs=Public, John"};
    QTest::newRow("kurzes FN neben vollem N")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Friedman;Nat;D;Mr.\r\nFN:Nat\r\nEND:VCARD\r\n")
        << QStringList{"LastName=Friedman", "FirstName=Nat", "MiddleName=D", "Title=Mr.", "FileAs=Friedman, Nat"};
    QTest::newRow("FN mit Komma, das dieselben Teile ergibt, bleibt")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Weiß;Jürgen;;;\r\nFN:Weiß\\, Jürgen\r\nTEL:1\r\nBAD LINE\r\n"
                      "END:VCARD\r\n")
        << QStringList{"FullName=Weiß, Jürgen", "LastName=Weiß", "FileAs=Weiß, Jürgen", "OtherTelephoneNumber=1"};
    QTest::newRow("LABEL gehört zur ADR seines Typs, wo immer sie steht")
        << QByteArray("BEGIN:VCARD\r\nVERSION:2.1\r\nN:Huber;Eva\r\nLABEL;WORK:Firma Huber\\nWerkstr. 1\\n50667 K\xc3\xb6ln\r\n"
                      "ADR;WORK:;;Werkstr. 1;K\xc3\xb6ln;;50667;\r\nADR;HOME:;;Am Hang 3;Bonn;;53111;\r\n"
                      "LABEL;HOME:Eva Huber\\nAm Hang 3\\n53111 Bonn\r\nEND:VCARD\r\n")
        << QStringList{"BusinessAddress=Firma Huber\r\nWerkstr. 1\r\n50667 Köln", "BusinessAddressCity=Köln",
                       "HomeAddress=Eva Huber\r\nAm Hang 3\r\n53111 Bonn", "HomeAddressCity=Bonn", "OtherAddress="};
    QTest::newRow("nackte Kodierung, Zeichensatz und Zeilenenden CR CR LF")
        << QByteArray("BEGIN:VCARD\r\r\nVERSION:2.1\r\r\nN:Huber;Eva\r\r\nTEL;CELL;QUOTED-PRINTABLE:0170=20999\r\r\n"
                      "NOTE;QUOTED-PRINTABLE;CHARSET=ISO-8859-1:Gr=FC=DFe=0Aaus K=F6ln=0D=0D=0Aund Bonn\r\r\n"
                      "TITLE;CHARSET=SHIFT_JIS:\x8f\x5c\r\r\nEND:VCARD\r\r\n")
        << QStringList{"LastName=Huber", "FirstName=Eva", "MobileTelephoneNumber=0170 999",
                       "Body=Grüße\r\naus Köln\r\nund Bonn", "JobTitle=" + QString(QChar(0x5341))};
    QTest::newRow("zweite Werte werden angehängt")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Huber;Eva;;;\r\nNOTE:eins\r\nNOTE:zwei\r\nTITLE:Leiterin\r\n"
                      "TITLE:Prokuristin\r\nNICKNAME:Evi\r\nNICKNAME:Eve\r\nCATEGORIES:Kunden\\, K\xc3\xb6ln,VIP\r\n"
                      "CATEGORIES:Privat\r\nEND:VCARD\r\n")
        << QStringList{"Body=eins\r\nzwei", "JobTitle=Leiterin, Prokuristin", "NickName=Evi, Eve",
                       "Categories=Kunden" + QString(QChar(0x201A)) + " Köln, VIP, Privat"};
    QTest::newRow("Erweiterungen anderer Programme")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Huber;Eva;;;\r\nX-MS-SPOUSE:Maria\r\nX-MS-MANAGER:Chef\r\n"
                      "X-EVOLUTION-ASSISTANT:Hilfe\r\nX-KADDRESSBOOK-X-Office:Raum 5\r\nX-SKYPE:eva.huber\r\n"
                      "X-MS-TEL;TYPE=CALLBACK:0221 9\r\nCLASS:PRIVATE\r\nX-EVOLUTION-FILE-AS:Huber\\, Eva (privat)\r\n"
                      "X-MS-ANNIVERSARY:2001-05-04\r\nEND:VCARD\r\n")
        << QStringList{"Spouse=Maria", "ManagerName=Chef", "AssistantName=Hilfe", "OfficeLocation=Raum 5",
                       "IMAddress=eva.huber", "CallbackTelephoneNumber=0221 9", "Sensitivity=2",
                       "FileAs=Huber, Eva (privat)", "Anniversary=04.05.2001"};
    QTest::newRow("Geburtstag mit Zone ist der Tag, wie er dasteht; Tag ohne Jahr")
        << QByteArray("BEGIN:VCARD\r\nVERSION:4.0\r\nN:Huber;Eva;;;\r\nBDAY:19800101T230000Z\r\nANNIVERSARY:--0203\r\n"
                      "END:VCARD\r\n")
        << QStringList{"Birthday=01.01.1980", "Anniversary=03.02.1604"};
    QTest::newRow("Geburtstag mit Versatz")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Huber;Eva;;;\r\nBDAY:1953-10-15T23:10:00-05:00\r\n"
                      "ANNIVERSARY:20100605T120000+0200\r\nEND:VCARD\r\n")
        << QStringList{"Birthday=15.10.1953", "Anniversary=" + QDateTime(QDate(2010, 6, 5), QTime(10, 0), Qt::UTC)
                                                                  .toLocalTime()
                                                                  .toString(u"dd.MM.yyyy hh:mm:ss")};
    QTest::newRow("Speichern unter der Karte bleibt")
        << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nN:Weiß;Jürgen;;;\r\nX-VX-FILEAS:Jürgen (Vereinskasse)\r\nEND:VCARD\r\n")
        << QStringList{"FileAs=Jürgen (Vereinskasse)"};
    QTest::newRow("Datum mit Zeitzone UTC und Jahrestag 4.0")
        << QByteArray("BEGIN:VCARD\r\nVERSION:4.0\r\nFN:A B\r\nBDAY:19800229\r\nANNIVERSARY:20100605T120000Z\r\n"
                      "END:VCARD\r\n")
        << QStringList{"Birthday=29.02.1980", "Anniversary=" + QDateTime(QDate(2010, 6, 5), QTime(12, 0), Qt::UTC)
                                                                     .toLocalTime()
                                                                     .toString(u"dd.MM.yyyy hh:mm:ss")};
}

void tst_VCard::cardsFromElsewhere()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, expected);
    TempProfile profile;
    InterchangeReport report;
    const QString path = WriteTestFile(profile.scratch(QStringLiteral("fremd.vcf")), file);
    const MAPIFolder folder = ImportInto(QStringLiteral("vcard"), path, QStringLiteral("Fremd"), report, olFolderContacts);
    QCOMPARE(report.skipped, QStringList());
    QCOMPARE(report.imported, 1);
    const Item c = folder.Items().Item(1);
    for (const QString &pair : expected) {
        const QString field = pair.section(u'=', 0, 0), value = pair.section(u'=', 1);
        QCOMPARE(c.text(field), value);
    }
}

void tst_VCard::damagedInput_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("read");
    QTest::addColumn<int>("imported");
    QTest::addColumn<QStringList>("skipParts"); // each skip contains its part, in order
    const QByteArray good = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Anna Berg\r\nN:Berg;Anna;;;\r\nEND:VCARD\r\n";
    QTest::newRow("abgeschnittene Datei") << good + "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Bernd K" << 2 << 1
                                          << QStringList{"Zeile 6: Die Datei endet vor END:VCARD"};
    QTest::newRow("fehlendes END vor der nächsten Karte")
        << "BEGIN:VCARD\r\nFN:Ohne Ende\r\n" + good << 2 << 1
        << QStringList{"Zeile 1: BEGIN:VCARD ohne END:VCARD"};
    QTest::newRow("Müll zwischen den Karten") << good + "Hallo\r\n\x01\x02\xff\r\n" + good << 2 << 2 << QStringList{};
    QTest::newRow("Zeile ohne Doppelpunkt kostet nur sich")
        << "BEGIN:VCARD\r\nFN:Anna\r\nKaputt\r\nEND:VCARD\r\n" + good << 2 << 2 << QStringList{};
    QTest::newRow("leere Karte") << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nEND:VCARD\r\n") + good << 2 << 1
                                 << QStringList{"Zeile 1: Die Karte enthält nichts."};
    QTest::newRow("keine vCard") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11) << 0 << 0
                                 << QStringList{"fremd.vcf: Die Datei enthält keine vCard."};
    QTest::newRow("riesiges Feld") << "BEGIN:VCARD\r\nFN:Groß\r\nNOTE:" + QByteArray(5 << 20, 'x') + "\r\nEND:VCARD\r\n"
                                   << 1 << 1 << QStringList{};
}

void tst_VCard::damagedInput()
{
    TempProfile profile;
    const MAPIFolder folder = ImportDamagedRow(QStringLiteral("vcard"), QStringLiteral("fremd.vcf"), olFolderContacts, profile);
    QFETCH(int, imported);
    QCOMPARE(folder.Items().Count(), imported); // nothing half-written beside the good cards
}

void tst_VCard::foldedLinesStayWithinSeventyFiveOctets()
{
    TempProfile profile;
    const MAPIFolder source = TempProfile::folderOf(olFolderContacts);
    addCompanyAndWrittenForms(source);
    const QString path = profile.scratch(QStringLiteral("kontakte.vcf"));
    InterchangeReport report;
    ExportVCard4(source, path, report);
    const QByteArray data = ReadTestFile(path);
    for (const QByteArray &line : data.split('\n')) {
        QVERIFY(line.size() <= 76); // 75 octets and the CR
        QVERIFY(line.isEmpty() || line.endsWith('\r'));
    }
    // Every physical line is valid UTF-8 on its own: no fold splits a character.
    for (const QByteArray &line : data.split('\n')) {
        QStringDecoder utf8(QStringDecoder::Utf8);
        (void)utf8(line);
        QVERIFY(!utf8.hasError());
    }
}

QTEST_GUILESS_MAIN(tst_VCard)
#include "tst_vcard.moc"
