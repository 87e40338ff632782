// Appointments, tasks and journal entries as iCalendar: a realistic file
// from elsewhere lands in the right fields (series with exceptions, time
// zones, all-day events, completed tasks); export then import gives the same
// items; damaged files and entries are skipped with their place.
#include "InterchangeTestItems.h"
#include "interchange/IcalFormat.h"
#include "store/StoreTestProfile.h"

#include <QTimeZone>

#include <ctime>

class tst_ICalendar : public QObject
{
    Q_OBJECT

private slots:
    // Times are written in the local zone with its definition when libical
    // knows the zone: run in a zone with summer time, whatever the machine's.
    void initTestCase()
    {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }
    void init() { PinGermanLocale(); }
    void fileFromElsewhere_data();
    void fileFromElsewhere();
    void exportThenImportGivesTheSameItems_data();
    void exportThenImportGivesTheSameItems();
    void damagedInput_data();
    void damagedInput();
};

namespace {

const QByteArray berlin = "BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\nBEGIN:DAYLIGHT\r\nTZOFFSETFROM:+0100\r\n"
                          "TZOFFSETTO:+0200\r\nTZNAME:MESZ\r\nDTSTART:19700329T020000\r\n"
                          "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:DAYLIGHT\r\nBEGIN:STANDARD\r\n"
                          "TZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nTZNAME:MEZ\r\nDTSTART:19701025T030000\r\n"
                          "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";

QByteArray calendar(const QByteArray &components)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Beispiel//DE\r\n" + berlin + components + "END:VCALENDAR\r\n";
}

const QByteArray series =
    "BEGIN:VEVENT\r\nUID:jourfixe-2024@beispiel.de\r\nDTSTART;TZID=Europe/Berlin:20240108T090000\r\n"
    "DTEND;TZID=Europe/Berlin:20240108T100000\r\nRRULE:FREQ=WEEKLY;UNTIL=20241230T080000Z;BYDAY=MO\r\n"
    "EXDATE;TZID=Europe/Berlin:20240401T090000\r\nSUMMARY:Jour fixe Vertrieb – Büro Köln\r\n"
    "DESCRIPTION:Tagesordnung:\\n1. Umsätze\\n2. Größere Aufträge\r\n"
    "LOCATION:Besprechungsraum \"Rhein\"\\; 3. OG\r\nCATEGORIES:Besprechung,Vertrieb\r\nCLASS:PRIVATE\r\n"
    "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT10M\r\nDESCRIPTION:Erinnerung\r\nEND:VALARM\r\nEND:VEVENT\r\n"
    "BEGIN:VEVENT\r\nUID:jourfixe-2024@beispiel.de\r\nRECURRENCE-ID;TZID=Europe/Berlin:20240115T090000\r\n"
    "DTSTART;TZID=Europe/Berlin:20240115T140000\r\nDTEND;TZID=Europe/Berlin:20240115T150000\r\n"
    "SUMMARY:Jour fixe Vertrieb (verschoben)\r\nEND:VEVENT\r\n";
const QByteArray allDay = "BEGIN:VEVENT\r\nUID:weihnachten@beispiel.de\r\nDTSTART;VALUE=DATE:20241224\r\n"
                          "DTEND;VALUE=DATE:20241227\r\nSUMMARY:Weihnachtsferien\r\nTRANSP:TRANSPARENT\r\nEND:VEVENT\r\n";
const QByteArray task = "BEGIN:VTODO\r\nUID:steuer@beispiel.de\r\nDTSTART;VALUE=DATE:20240301\r\nDUE;VALUE=DATE:20240531\r\n"
                        "COMPLETED:20240520T101500Z\r\nPERCENT-COMPLETE:100\r\nSTATUS:COMPLETED\r\nPRIORITY:1\r\n"
                        "SUMMARY:Steuererklärung abgeben\r\nEND:VTODO\r\n";
const QByteArray journal = "BEGIN:VJOURNAL\r\nUID:anruf@beispiel.de\r\nDTSTART:20240212T083000Z\r\n"
                           "SUMMARY:Anruf Herr Weiß\r\nDESCRIPTION:Rückruf wegen Angebot\r\nEND:VJOURNAL\r\n";

QString berlinLocal(int y, int m, int d, int h, int min)
{
    return QDateTime(QDate(y, m, d), QTime(h, min), QTimeZone("Europe/Berlin")).toLocalTime().toString(u"dd.MM.yyyy hh:mm:ss");
}

// Fills every writable field of the item that has no value yet: texts in
// German with the characters iCalendar escapes.
void fillTexts(Item &item)
{
    for (const QString &name : item.PropertyNames()) {
        const PropDef &def = PropertyAt(PropertySlot(name));
        if (!def.readOnly && def.type == PropType::Text && name != u"MessageClass" && item.text(name).isEmpty())
            item.set(name, QStringLiteral("%1: Größe; Maß, Straße\\").arg(name));
    }
    item.set(QStringLiteral("Body"), QStringLiteral("Zeile eins, mit Komma\r\nZeile zwei; mit Semikolon"));
    item.set(QStringLiteral("Categories"), QStringLiteral("Privat, Familie"));
    UserProperties props = item.UserProperties();
    props.Add(QStringLiteral("VX Backup Subject"), olText).setValue(QStringLiteral("Alter Betreff: Grüße"));
    props.Add(QStringLiteral("Abrechnung"), olNumber).setValue(12.25);
}

void addNativeItems(const MAPIFolder &calendarFolder, const MAPIFolder &tasks, const MAPIFolder &journal)
{
    Item a = calendarFolder.Items().Add(QStringLiteral("IPM.Appointment.Besprechung"));
    fillTexts(a);
    a.set(QStringLiteral("Start"), QDateTime(QDate(2024, 7, 3), QTime(9, 30)));
    a.set(QStringLiteral("End"), QDateTime(QDate(2024, 7, 3), QTime(11, 0)));
    a.set(QStringLiteral("BusyStatus"), int(olOutOfOffice));
    a.set(QStringLiteral("ReminderSet"), true);
    a.set(QStringLiteral("ReminderMinutesBeforeStart"), 30);
    a.set(QStringLiteral("Importance"), 2);
    a.set(QStringLiteral("Sensitivity"), 1);
    a.Save();
    Item t = tasks.Items().Add();
    fillTexts(t);
    t.set(QStringLiteral("DueDate"), QDateTime(QDate(2024, 9, 30), QTime(0, 0)));
    t.set(QStringLiteral("Status"), 3);
    t.set(QStringLiteral("PercentComplete"), 25);
    t.set(QStringLiteral("ReminderSet"), true);
    t.Save();
    Item j = journal.Items().Add();
    fillTexts(j);
    j.set(QStringLiteral("Start"), QDateTime(QDate(2024, 2, 12), QTime(10, 0)));
    j.set(QStringLiteral("Duration"), 45);
    j.Save();
}

Item copyOf(const MAPIFolder &folder, const Item &original)
{
    const QString uid = UserText(original, QLatin1String(UidProperty));
    const QString occurrence = UserText(original, QLatin1String(OccurrenceProperty));
    for (const Item &item : folder.Items())
        if (UserText(item, QLatin1String(UidProperty)) == (uid.isEmpty() ? original.EntryID() : uid)
            && UserText(item, QLatin1String(OccurrenceProperty)) == occurrence)
            return item;
    return {};
}

} // namespace

void tst_ICalendar::fileFromElsewhere_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<int>("folderType");
    QTest::addColumn<QStringList>("expected"); // "Field=text"; "VX ..." are user properties
    QTest::newRow("Serie mit Zeitzone, Ausnahme, Erinnerung")
        << "Jour fixe Vertrieb – Büro Köln" << int(olFolderCalendar)
        << QStringList{"Start=" + berlinLocal(2024, 1, 8, 9, 0), "End=" + berlinLocal(2024, 1, 8, 10, 0),
                       "IsRecurring=Wahr", "ReminderSet=Wahr", "ReminderMinutesBeforeStart=10",
                       "Location=Besprechungsraum \"Rhein\"; 3. OG", "Categories=Besprechung, Vertrieb",
                       "Body=Tagesordnung:\r\n1. Umsätze\r\n2. Größere Aufträge", "Sensitivity=2",
                       "VX UID=jourfixe-2024@beispiel.de",
                       "VX Serie=RRULE:FREQ=WEEKLY;UNTIL=20241230T080000Z;BYDAY=MO\r\nEXDATE:20240401T070000Z"};
    QTest::newRow("geänderter Termin der Serie")
        << "Jour fixe Vertrieb (verschoben)" << int(olFolderCalendar)
        << QStringList{"Start=" + berlinLocal(2024, 1, 15, 14, 0), "IsRecurring=Falsch",
                       "VX UID=jourfixe-2024@beispiel.de", "VX Ausnahme=RECURRENCE-ID:20240115T080000Z"};
    QTest::newRow("ganztägig über drei Tage")
        << "Weihnachtsferien" << int(olFolderCalendar)
        << QStringList{"Start=24.12.2024", "End=27.12.2024", "AllDayEvent=Wahr", "BusyStatus=0", "Duration=4320"};
    QTest::newRow("erledigte Aufgabe im Aufgabenordner")
        << "Steuererklärung abgeben" << int(olFolderTasks)
        << QStringList{"StartDate=01.03.2024", "DueDate=31.05.2024", "Status=2", "Complete=Wahr",
                       "PercentComplete=100", "Importance=2",
                       "DateCompleted=" + QDateTime(QDate(2024, 5, 20), QTime(10, 15), Qt::UTC).toLocalTime().toString(u"dd.MM.yyyy hh:mm:ss")};
    QTest::newRow("Journaleintrag im Journalordner")
        << "Anruf Herr Weiß" << int(olFolderJournal)
        << QStringList{"Body=Rückruf wegen Angebot",
                       "Start=" + QDateTime(QDate(2024, 2, 12), QTime(8, 30), Qt::UTC).toLocalTime().toString(u"dd.MM.yyyy hh:mm:ss")};
}

void tst_ICalendar::fileFromElsewhere()
{
    QFETCH(QString, subject);
    QFETCH(int, folderType);
    QFETCH(QStringList, expected);
    TempProfile profile;
    const QString path = WriteTestFile(profile.scratch(QStringLiteral("kalender.ics")),
                                       calendar(series + allDay + task + journal));
    InterchangeReport report;
    const MAPIFolder target = ImportInto(QStringLiteral("ical"), path, QStringLiteral("Import"), report, olFolderCalendar);
    QCOMPARE(report.skipped, QStringList());
    QCOMPARE(report.read, 5);
    QCOMPARE(report.imported, 5);
    const MAPIFolder folder = folderType == olFolderCalendar ? target : TempProfile::folderOf(folderType);
    const Item item = FindByText(folder, QStringLiteral("Subject"), subject);
    QVERIFY(!item.isNull());
    for (const QString &pair : expected) {
        const QString field = pair.section(u'=', 0, 0), value = pair.section(u'=', 1);
        QCOMPARE(field.startsWith(u"VX ") ? UserText(item, field) : item.text(field), value);
    }
}

void tst_ICalendar::exportThenImportGivesTheSameItems_data()
{
    QTest::addColumn<int>("folderType");
    QTest::addColumn<bool>("folderPerItem");
    QTest::newRow("Kalender in einer Datei") << int(olFolderCalendar) << false;
    QTest::newRow("Kalender eine Datei je Termin") << int(olFolderCalendar) << true;
    QTest::newRow("Aufgaben") << int(olFolderTasks) << false;
    QTest::newRow("Journal") << int(olFolderJournal) << false;
}

void tst_ICalendar::exportThenImportGivesTheSameItems()
{
    QFETCH(int, folderType);
    QFETCH(bool, folderPerItem);
    TempProfile profile;
    InterchangeReport first;
    const QString foreign = WriteTestFile(profile.scratch(QStringLiteral("fremd.ics")),
                                          calendar(series + allDay + task + journal));
    const MAPIFolder calendarFolder =
        ImportInto(QStringLiteral("ical"), foreign, QStringLiteral("Import"), first, olFolderCalendar);
    addNativeItems(calendarFolder, TempProfile::folderOf(olFolderTasks), TempProfile::folderOf(olFolderJournal));
    const MAPIFolder source = folderType == olFolderCalendar ? calendarFolder : TempProfile::folderOf(folderType);

    const QString path = profile.scratch(folderPerItem ? QStringLiteral("termine/") : QStringLiteral("export.ics"));
    InterchangeReport out;
    ExportICalendar(source, path, out);
    QCOMPARE(out.skipped, QStringList());
    QCOMPARE(out.exported, source.Items().Count());
    if (!folderPerItem && folderType != olFolderTasks) // tasks here have dates only
        QVERIFY(ReadTestFile(path).contains("DTSTART;TZID=/freeassociation.sourceforge.net/Europe/Berlin:"));

    InterchangeReport in;
    const MAPIFolder copy = ImportInto(QStringLiteral("ical"), path, QStringLiteral("Kopie"), in, folderType);
    QCOMPARE(in.skipped, QStringList());
    QCOMPARE(in.imported, source.Items().Count());
    QCOMPARE(copy.Items().Count(), source.Items().Count());
    for (const Item &original : source.Items()) {
        const Item back = copyOf(copy, original);
        QVERIFY2(!back.isNull(), qPrintable(original.Subject()));
        const QStringList diffs = ItemDifferences(original, back);
        QVERIFY2(diffs.isEmpty(), qPrintable(original.Subject() + u'\n' + diffs.join(u'\n')));
    }
}

void tst_ICalendar::damagedInput_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("read");
    QTest::addColumn<int>("imported");
    QTest::addColumn<QStringList>("skipParts");
    const QByteArray head = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
    QTest::newRow("abgeschnittene Datei") << head + journal + "BEGIN:VEVENT\r\nUID:x\r\nDTSTART:2024" << 2 << 1
                                          << QStringList{"Zeile 9: Die Datei endet vor END:VEVENT"};
    QTest::newRow("fehlendes END vor dem nächsten Eintrag")
        << head + "BEGIN:VTODO\r\nSUMMARY:offen\r\n" + journal + "END:VCALENDAR\r\n" << 2 << 1
        << QStringList{"Zeile 3: BEGIN:VTODO ohne END:VTODO"};
    QTest::newRow("Termin ohne gültigen Beginn")
        << head + "BEGIN:VEVENT\r\nUID:k\r\nDTSTART:kaputt\r\nSUMMARY:Kaputt\r\nEND:VEVENT\r\n" + journal + "END:VCALENDAR\r\n"
        << 2 << 1 << QStringList{"Zeile 3: "};
    QTest::newRow("Müll zwischen den Kalendern")
        << calendar(journal) + "Hallo Welt\r\n\xff\xfe\r\n" + calendar(allDay) << 2 << 2 << QStringList{};
    QTest::newRow("kein Kalender") << QByteArray("Dies ist keine Kalenderdatei.\r\n") << 0 << 0
                                   << QStringList{"fremd.ics: Die Datei enthält keinen Kalender"};
    QTest::newRow("Latin-1 Datei")
        << head + "BEGIN:VJOURNAL\r\nDTSTART:20240212T083000Z\r\nSUMMARY:Gr\xfc\xdf" "e aus K\xf6ln\r\nEND:VJOURNAL\r\nEND:VCALENDAR\r\n"
        << 1 << 1 << QStringList{};
    QTest::newRow("Faltung mitten in einem UTF-8 Zeichen")
        << head + "BEGIN:VJOURNAL\r\nDTSTART:20240212T083000Z\r\nSUMMARY:Gr\xc3\r\n \xbc\xc3\x9f" "e aus K\xc3\xb6ln\r\nEND:VJOURNAL\r\nEND:VCALENDAR\r\n"
        << 1 << 1 << QStringList{};
    QTest::newRow("riesige Beschreibung")
        << head + "BEGIN:VJOURNAL\r\nDTSTART:20240212T083000Z\r\nSUMMARY:Grüße aus Köln\r\nDESCRIPTION:" + QByteArray(4 << 20, 'y')
               + "\r\nEND:VJOURNAL\r\nEND:VCALENDAR\r\n"
        << 1 << 1 << QStringList{};
}

void tst_ICalendar::damagedInput()
{
    TempProfile profile;
    const MAPIFolder folder = ImportDamagedRow(QStringLiteral("ical"), QStringLiteral("fremd.ics"), olFolderJournal, profile);
    if (QTest::currentTestFailed())
        return;
    for (const Item &item : folder.Items())
        if (item.Subject().startsWith(u"Gr"))
            QCOMPARE(item.Subject(), QStringLiteral("Grüße aus Köln"));
}

QTEST_GUILESS_MAIN(tst_ICalendar)
#include "tst_icalendar.moc"
