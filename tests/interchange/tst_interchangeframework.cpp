// The shared part of import and export: one entry becomes one saved item or
// one skip with its reason, never half an item; store folders by path; files
// written whole or not at all; the report in German.
#include "interchange/ContentLine.h"
#include "InterchangeTestItems.h"
#include "interchange/Interchange.h"
#include "store/StoreFaults_p.h"
#include "store/StoreTestProfile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

class tst_InterchangeFramework : public QObject
{
    Q_OBJECT

private slots:
    void init() { PinGermanLocale(); }
    void oneEntryIsOneItemOrOneSkip_data();
    void oneEntryIsOneItemOrOneSkip();
    void storeFolderByPath_data();
    void storeFolderByPath();
    void fileIsWrittenWholeOrNotAtAll();
    void reportNamesEverySkip();
    void extensionValuesRoundTrip_data();
    void extensionValuesRoundTrip();
    void commandExitCodes_data();
    void commandExitCodes();
    void secondImportUpdatesByUid_data();
    void secondImportUpdatesByUid();
    void fullDiskStopsTheImportOnce();
};

namespace {

// The EntryID that the next new item of the store will get: row numbers only
// grow, and an EntryID ends in its row number.
QString nextEntryId(const MAPIFolder &folder)
{
    Item twin = folder.Items().Add();
    twin.set(QStringLiteral("FullName"), QStringLiteral("Zwilling"));
    twin.Save();
    const QString id = twin.EntryID();
    const qulonglong next = id.right(16).toULongLong(nullptr, 16) + 1;
    return id.left(id.size() - 16) + QString::number(next, 16).toUpper().rightJustified(16, u'0');
}

} // namespace

void tst_InterchangeFramework::oneEntryIsOneItemOrOneSkip_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("reasonPart");
    QTest::newRow("intakter Eintrag") << "" << "";
    QTest::newRow("beschädigter Eintrag") << "damage" << "Zeile ohne Doppelpunkt";
    QTest::newRow("Wert passt nicht zum Feld") << "value" << "passt nicht";
    QTest::newRow("Speichern scheitert") << "save" << "gespeichert";
}

void tst_InterchangeFramework::oneEntryIsOneItemOrOneSkip()
{
    QFETCH(QString, fault);
    QFETCH(QString, reasonPart);
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const QString failingId = nextEntryId(contacts);
    if (fault == u"save")
        StoreFaults::FailItem(failingId, StoreFaults::FailSave);
    InterchangeReport report;
    ImportEntry(report, QStringLiteral("kontakte.vcf, Zeile 7"), [&] {
        Item item = contacts.Items().Add();
        item.set(QStringLiteral("FullName"), QStringLiteral("Jürgen Weiß"));
        if (fault == u"damage")
            throw EntryDamage{QStringLiteral("Zeile ohne Doppelpunkt")};
        if (fault == u"value")
            item.set(QStringLiteral("Birthday"), QStringLiteral("irgendwann"));
        return item;
    });
    StoreFaults::Reset();
    QCOMPARE(report.read, 1);
    const bool ok = fault.isEmpty();
    QCOMPARE(report.imported, ok ? 1 : 0);
    QCOMPARE(contacts.Items().Count(), ok ? 2 : 1); // the twin is always there
    QCOMPARE(report.skipped.size(), ok ? 0 : 1);
    if (!ok) {
        QVERIFY2(report.skipped.first().startsWith(QStringLiteral("kontakte.vcf, Zeile 7: ")), qPrintable(report.skipped.first()));
        QVERIFY2(report.skipped.first().contains(reasonPart), qPrintable(report.skipped.first()));
    }
}

void tst_InterchangeFramework::storeFolderByPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("create");
    QTest::addColumn<QString>("expected"); // "Store/Parent/Name", or "" when refused
    QTest::newRow("leer ist der Standardordner") << "" << false << "Persönliche Ordner/Kontakte";
    QTest::newRow("mit Informationsspeicher") << "Persönliche Ordner/Kontakte" << false << "Persönliche Ordner/Kontakte";
    QTest::newRow("ohne Informationsspeicher") << "Kontakte" << false << "Persönliche Ordner/Kontakte";
    QTest::newRow("Groß- und Kleinschreibung gleich") << "persönliche ordner/KONTAKTE" << false
                                                      << "Persönliche Ordner/Kontakte";
    QTest::newRow("neuer Unterordner beim Import") << "Kontakte/Kunden Süd" << true << "Kontakte/Kunden Süd";
    QTest::newRow("fehlender Ordner beim Export") << "Kontakte/Kunden Süd" << false << "";
}

void tst_InterchangeFramework::storeFolderByPath()
{
    QFETCH(QString, path);
    QFETCH(bool, create);
    QFETCH(QString, expected);
    TempProfile profile;
    if (expected.isEmpty()) {
        QVERIFY_THROWS_EXCEPTION(StoreError, ResolveStoreFolder(path, olFolderContacts, create));
        return;
    }
    const MAPIFolder folder = ResolveStoreFolder(path, olFolderContacts, create);
    QCOMPARE(folder.Parent().Name() + u'/' + folder.Name(), expected);
    QCOMPARE(folder.DefaultItemType(), int(olContact));
}

void tst_InterchangeFramework::fileIsWrittenWholeOrNotAtAll()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("kontakte.vcf"));
    QVERIFY(WriteFileAtomically(path, "alt", nullptr));
    QString error;
    // A folder in the way of the file: the old file stays as it was.
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("gesperrt")));
    QVERIFY(!WriteFileAtomically(dir.filePath(QStringLiteral("gesperrt")), "neu", &error));
    QVERIFY(error.contains(QStringLiteral("kann nicht geschrieben werden")));
    QVERIFY(WriteFileAtomically(path, "neu", nullptr));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("neu"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("kontakte.vcf")});
}

void tst_InterchangeFramework::reportNamesEverySkip()
{
    InterchangeReport report;
    report.read = 3;
    report.imported = 1;
    report.skip(EntryPosition(QStringLiteral("/tmp/x/kontakte.vcf"), 12), QStringLiteral("Die Datei endet vor END:VCARD"));
    report.skip(EntryPosition(QStringLiteral("/tmp/x/alt.vcf")), QStringLiteral("Die Datei ist leer."));
    report.note(QStringLiteral("2 Aufgaben liegen im Ordner \"Aufgaben\"."));
    QCOMPARE(report.summary(true),
             QStringLiteral("Import beendet: 3 Einträge gelesen, 1 Element(e) importiert, 2 übersprungen.\n"
                            "  übersprungen: kontakte.vcf, Zeile 12: Die Datei endet vor END:VCARD\n"
                            "  übersprungen: alt.vcf: Die Datei ist leer.\n"
                            "  Hinweis: 2 Aufgaben liegen im Ordner \"Aufgaben\".\n"));
}

void tst_InterchangeFramework::extensionValuesRoundTrip_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("Datum mit Uhrzeit") << "Birthday" << QVariant(QDateTime(QDate(1961, 2, 28), QTime(13, 5, 9)));
    QTest::newRow("Wahrheitswert") << "AllDayEvent" << QVariant(true);
    QTest::newRow("Zahl") << "Sensitivity" << QVariant(2);
    QTest::newRow("Text mit Zeilen und Trennern") << "Body" << QVariant(QStringLiteral("a;b,c\\d\r\nÄußeres"));
}

void tst_InterchangeFramework::extensionValuesRoundTrip()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    const PropDef &def = PropertyAt(PropertySlot(property));
    const QString text = EncodeExtensionValue(def, value);
    QCOMPARE(DecodeExtensionValue(def, text), value);
    QCOMPARE(UnescapeText(EscapeText(text)), text);
    if (def.type != PropType::Text)
        QVERIFY_THROWS_EXCEPTION(StoreError, DecodeExtensionValue(def, QStringLiteral("Unsinn")));
}

void tst_InterchangeFramework::commandExitCodes_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("fileContent"); // "" for no file at all
    QTest::addColumn<QString>("storeFolder");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("textPart"); // in the report (out) or the problem (err)
    const QString card = QStringLiteral("BEGIN:VCARD\r\nFN:Anna Berg\r\nEND:VCARD\r\n");
    QTest::newRow("Import ohne Probleme") << "import" << "vcf" << card << "Kontakte/Neu" << 0
                                          << "1 Einträge gelesen, 1 Element(e) importiert, 0 übersprungen.";
    QTest::newRow("Import mit übersprungener Karte") << "import" << "vcard" << card + "BEGIN:VCARD\r\nFN:Rest" << "" << 3
                                                     << "übersprungen: daten.vcf, Zeile 4: Die Datei endet vor END:VCARD";
    QTest::newRow("unbekanntes Format") << "import" << "csv" << card << "" << 2 << "Das Format \"csv\" gibt es nicht.";
    QTest::newRow("fehlende Datei") << "import" << "vcard" << "" << "" << 1 << "gibt es nicht.";
    QTest::newRow("Ordner der falschen Art") << "import" << "vcard" << card << "Kalender" << 1
                                             << "Der Ordner \"Kalender\" ist kein Kontaktordner.";
    QTest::newRow("Export aus fehlendem Ordner") << "export" << "vcard" << "" << "Kontakte/Gibtsnicht" << 1
                                                 << "Den Ordner \"Kontakte/Gibtsnicht\" gibt es nicht.";
    QTest::newRow("Export ohne Probleme") << "export" << "vcard4" << "" << "" << 0
                                          << "Export beendet: 0 Element(e) exportiert, 0 übersprungen.";
}

void tst_InterchangeFramework::commandExitCodes()
{
    QFETCH(QString, command);
    QFETCH(QString, format);
    QFETCH(QString, fileContent);
    QFETCH(QString, storeFolder);
    QFETCH(int, exitCode);
    QFETCH(QString, textPart);
    TempProfile profile;
    CreateProfile();
    const QString path = profile.scratch(QStringLiteral("daten.vcf"));
    if (!fileContent.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(fileContent.toUtf8());
    }
    QString outText, errText;
    QTextStream out(&outText), err(&errText);
    QCOMPARE(RunInterchangeCommand(command, format, path, storeFolder, out, err), exitCode);
    out.flush();
    err.flush();
    QVERIFY2((outText + errText).contains(textPart), qPrintable(outText + errText));
}

void tst_InterchangeFramework::secondImportUpdatesByUid_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("folderType");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second"); // "" imports Varnex's own export of the folder
    QTest::addColumn<bool>("updateByUid");
    QTest::addColumn<int>("items");     // in the folder after the second import
    QTest::addColumn<QStringList>("subjects"); // Subject (FileAs of contacts) after it, sorted
    const QByteArray card = "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:kunde-7\r\nN:Berg;Anna;;;\r\nTEL;TYPE=WORK:0221 1\r\n"
                            "X-VX-USER:Kundennummer;1;7\r\nEND:VCARD\r\n";
    QByteArray renamed = card;
    renamed.replace("N:Berg;Anna", "N:Berg-Weiß;Anna").replace("TEL;TYPE=WORK:0221 1\r\n", "");
    QTest::newRow("vCard mit derselben UID") << "vcard" << int(olFolderContacts) << card << renamed << true << 1
                                             << QStringList{"Berg-Weiß, Anna"};
    QTest::newRow("vCard, jeder Eintrag neu") << "vcard" << int(olFolderContacts) << card << renamed << false << 2
                                              << QStringList{"Berg, Anna", "Berg-Weiß, Anna"};
    QTest::newRow("eigener vCard-Export zurück") << "vcard" << int(olFolderContacts) << card << QByteArray() << true << 1
                                                 << QStringList{"Berg, Anna"};
    auto calendar = [](const QByteArray &seriesSubject, const QByteArray &exceptionSubject) {
        return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:serie-1\r\nDTSTART:20240108T080000Z\r\n"
               "DTEND:20240108T090000Z\r\nRRULE:FREQ=WEEKLY;COUNT=5\r\nSUMMARY:" + seriesSubject + "\r\n"
               "CREATED:20231201T100000Z\r\nEND:VEVENT\r\nBEGIN:VEVENT\r\nUID:serie-1\r\n"
               "RECURRENCE-ID:20240115T080000Z\r\nDTSTART:20240115T130000Z\r\nDTEND:20240115T140000Z\r\n"
               "SUMMARY:" + exceptionSubject + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
    };
    QTest::newRow("Serie und Ausnahme mit derselben UID")
        << "ical" << int(olFolderCalendar) << calendar("Jour fixe", "verschoben") << calendar("Jour fixe neu", "abgesagt")
        << true << 2 << QStringList{"Jour fixe neu", "abgesagt"};
    QTest::newRow("iCalendar, jeder Eintrag neu")
        << "ical" << int(olFolderCalendar) << calendar("Jour fixe", "verschoben") << calendar("Jour fixe neu", "abgesagt")
        << false << 4 << QStringList{"Jour fixe", "Jour fixe neu", "abgesagt", "verschoben"};
    QTest::newRow("eigener iCalendar-Export zurück") << "ical" << int(olFolderCalendar) << calendar("Jour fixe", "verschoben")
                                                     << QByteArray() << true << 2 << QStringList{"Jour fixe", "verschoben"};
}

void tst_InterchangeFramework::secondImportUpdatesByUid()
{
    QFETCH(QString, format);
    QFETCH(int, folderType);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(bool, updateByUid);
    QFETCH(int, items);
    QFETCH(QStringList, subjects);
    TempProfile profile;
    const QString suffix = format == u"vcard" ? QStringLiteral(".vcf") : QStringLiteral(".ics");
    const QString firstPath = WriteTestFile(profile.scratch(QStringLiteral("erste") + suffix), first);
    InterchangeReport firstRun;
    const MAPIFolder folder = ImportInto(format, firstPath, QStringLiteral("Ziel"), firstRun, folderType);
    QCOMPARE(firstRun.imported, first.count("UID:"));
    QMap<QString, QString> idsBefore; // EntryID -> creation time
    for (const Item &item : folder.Items())
        idsBefore.insert(item.EntryID(), item.text(QStringLiteral("CreationTime")));
    QString secondPath = profile.scratch(QStringLiteral("zweite") + suffix);
    if (second.isEmpty()) { // the export writes the kept UIDs and the EntryIDs of items without one
        InterchangeReport out;
        UserProperty uid = folder.Items().Item(1).UserProperties().Find(QLatin1String(UidProperty));
        uid.Delete();
        folder.Items().Item(1).Save();
        FindInterchangeFormat(format)->exporter(folder, secondPath, out);
    } else {
        WriteTestFile(secondPath, second);
    }
    InterchangeReport secondRun;
    secondRun.updateByUid = updateByUid;
    FindInterchangeFormat(format)->importer(secondPath, folder, secondRun);
    QCOMPARE(secondRun.skipped, QStringList());
    QCOMPARE(folder.Items().Count(), items);
    const int updated = updateByUid ? secondRun.read : 0;
    QCOMPARE(secondRun.updated, updated);
    QCOMPARE(secondRun.imported, secondRun.read - updated);
    QCOMPARE(secondRun.summary(true).contains(u"mit derselben UID aktualisiert"), updated > 0);
    QStringList now;
    for (const Item &item : folder.Items()) {
        now << item.text(folderType == olFolderContacts ? QStringLiteral("FileAs") : QStringLiteral("Subject"));
        if (!updateByUid)
            continue;
        // Updated in place: the same item, its creation time, its own user properties, nothing left of the old entry.
        QVERIFY(idsBefore.contains(item.EntryID()));
        QCOMPARE(item.text(QStringLiteral("CreationTime")), idsBefore.value(item.EntryID()));
        if (folderType == olFolderContacts) {
            QCOMPARE(UserText(item, QStringLiteral("Kundennummer")), QStringLiteral("7"));
            QCOMPARE(item.text(QStringLiteral("BusinessTelephoneNumber")), second.isEmpty() ? "0221 1" : "");
        }
    }
    now.sort();
    QCOMPARE(now, subjects);
}

// A full disk fails every further entry alike: the import stops at the
// first with one message instead of one line per entry.
void tst_InterchangeFramework::fullDiskStopsTheImportOnce()
{
    TempProfile profile;
    CreateProfile();
    const QString path = profile.scratch(QStringLiteral("daten.vcf"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (int n = 0; n < 200; ++n)
        file.write(QStringLiteral("BEGIN:VCARD\r\nFN:Kontakt %1\r\nNOTE:%2\r\nEND:VCARD\r\n")
                       .arg(n).arg(QString(2000, u'x')).toUtf8());
    file.close();
    StoreFaults::LimitStoreSize(TempProfile::folderOf(olFolderContacts), 20);
    QString outText, errText;
    QTextStream out(&outText), err(&errText);
    QCOMPARE(RunInterchangeCommand(QStringLiteral("import"), QStringLiteral("vcard"), path, QString(), out, err), 1);
    out.flush();
    err.flush();
    // The message that stops the import, and at most the report's line on
    // the saves of the open batch that could not be committed.
    QVERIFY2((outText + errText).count(QStringLiteral("ist voll")) <= 2, qPrintable(outText + errText));
    QVERIFY2(errText.contains(QStringLiteral("Abgebrochen: Der Datenträger")), qPrintable(errText));
}

QTEST_GUILESS_MAIN(tst_InterchangeFramework)
#include "tst_interchangeframework.moc"
