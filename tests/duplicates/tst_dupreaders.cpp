// Reading items into the duplicate table on real temporary stores: what
// each kind compares and how it stores it, foreign items, read failures with
// retries and give-ups, and the search over two folders.
#include "support/RecordingRunHost.h"
#include "DupTestData.h"
#include "duplicates/DupComparison.h"
#include "duplicates/DupError.h"
#include "duplicates/DupsDel.h"
#include "frame/RunHost.h"
#include "support/TestSupport.h"

#include <QTest>

namespace {


const QDateTime kMonday(QDate(2024, 4, 8), QTime(9, 30));

} // namespace

class tst_DupReaders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void init();
    void cleanup();
    void fieldsAsStored_data();
    void fieldsAsStored();
    void foreignItems_data();
    void foreignItems();
    void readFailures_data();
    void readFailures();
    void searchOverTwoFolders();
    void duplicatesFolderIsLeftOut();
    void contactCaptionWithoutFileAs_data();
    void contactCaptionWithoutFileAs();
    void seriesStaysOverSingle();
    void contactUserField();
    void brokenLevelEndsSearch();

private:
    TempProfile *m_profile = nullptr;
    TestEnvironment *m_env = nullptr;
    RecordingRunHost m_host;
};

void tst_DupReaders::init()
{
    m_env = new TestEnvironment(false);
    m_profile = new TempProfile;
    m_host = RecordingRunHost();
    SetRunHost(&m_host);
}

void tst_DupReaders::cleanup()
{
    SetRunHost(nullptr);
    delete m_profile;
    delete m_env;
}

void tst_DupReaders::fieldsAsStored_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("equal");

    auto row = [](const char *name, DupKind kind, const QStringList &switches, const char *first, const char *second,
                  bool equal) {
        QTest::newRow(name) << int(kind) << switches << QString::fromUtf8(first) << QString::fromUtf8(second) << equal;
    };
    using K = DupKind;
    row("Aufgabe: Betreff ohne Groß/klein und Ränder", K::Task, {"AufgabenSubject"}, "48|Subject=Angebot Meier",
        "48|Subject=  angebot MEIER ", true);
    row("Aufgabe: Besitzer normalisiert", K::Task, {"AufgabenOwner"}, "48|Owner=Anna", "48|Owner=anna", true);
    row("Aufgabe: Startdatum verschieden", K::Task, {"AufgabenStartDate"}, "48|StartDate=08.04.2024",
        "48|StartDate=09.04.2024", false);
    row("Journal: Betreff wie geschrieben", K::Journal, {"JournalSubject"}, "42|Subject=Angebot Meier",
        "42|Subject=  angebot MEIER ", false);
    row("Journal: Dauer verschieden", K::Journal, {"JournalDuration"}, "42|Duration=30", "42|Duration=45", false);
    row("Mail: Text wie geschrieben", K::Email, {"EmailBody"}, "43|Body=Hallo Anna", "43|Body=hallo anna", false);
    row("Mail: Betreff normalisiert", K::Email, {"EmailSubject"}, "43|Subject=Rechnung", "43|Subject=RECHNUNG ",
        true);
    row("Mail: zwei Anlagen gegen eine", K::Email, {"EmailAttachments"}, "43|Attachments=2", "43|Attachments=1",
        false);
    row("Mail: gleich viele Anlagen", K::Email, {"EmailAttachments"}, "43|Attachments=2", "43|Attachments=2", true);
    row("Mail und Post, An leer", K::Email, {"EmailSubject", "EmailTo"}, "43|Subject=Info", "45|Subject=Info", true);
    row("Mail und Post, An gefüllt", K::Email, {"EmailSubject", "EmailTo"}, "43|Subject=Info|To=Anna Berg",
        "45|Subject=Info", false);
    row("Mail: Empfangszeit", K::Email, {"EmailReceivedTime"}, "43|ReceivedTime=08.04.2024 09:30:00",
        "43|ReceivedTime=08.04.2024 09:30:01", false);
    row("Notiz: Text ohne Groß/klein", K::Note, {"NotizenBody"}, "44|Body=Einkaufen", "44|Body= einkaufen", true);
    row("Notiz: Farbe verschieden", K::Note, {"NotizenColor"}, "44|Color=1", "44|Color=3", false);
    row("Termin: Betreff und Text normalisiert", K::Appointment, {"TermineSubject", "TermineBody"},
        "26|Subject=Treffen|Body=Raum 4", "26|Subject=treffen |Body=RAUM 4", true);
    row("Termin: ganztägig gegen nicht", K::Appointment, {"TermineAllDayEvent"}, "26|AllDayEvent=1",
        "26|AllDayEvent=0", false);
    row("Termin: Beginn gleich", K::Appointment, {"TermineStart"}, "26|Start=08.04.2024 10:00",
        "26|Start=08.04.2024 10:00", true);
    row("Kontakt: Telefon mit und ohne Landesvorwahl", K::Contact, {"KontakteBusinessTelephoneNumber"},
        "40|BusinessTelephoneNumber=+49 30 1234", "40|BusinessTelephoneNumber=030 1234", false);
    row("Kontakt: Firma normalisiert", K::Contact, {"KontakteCompanyName"}, "40|CompanyName=Nordquell GmbH",
        "40|CompanyName= nordquell gmbh", true);
    row("Kontakt: E-Mail normalisiert", K::Contact, {"KontakteEmail1Address"}, "40|Email1Address=Max@Example.org",
        "40|Email1Address=max@example.org", true);
    row("Kontakt: Anschrift wie geschrieben", K::Contact, {"KontakteHomeAddress"},
        "40|HomeAddress=Hauptstr. 1\r\n10115 Berlin", "40|HomeAddress=hauptstr. 1\r\n10115 Berlin", false);
    row("Kontakt: alle Felder leer", K::Contact, {"KontakteLastName", "KontakteFirstName"}, "40", "40", true);
}

void tst_DupReaders::fieldsAsStored()
{
    QFETCH(int, kind);
    QFETCH(QStringList, switches);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(bool, equal);
    const DupItemType &type = DupTypeOf(DupKind(kind));
    SwitchOnly(type, switches);
    const MAPIFolder folder = TempProfile::folderOf(DefaultFolderOf(DupKind(kind)));
    AddDupItem(folder, first, kMonday);
    AddDupItem(folder, second, kMonday.addDays(1));
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({folder}));
    QCOMPARE(result.table.itemCount(), 2);
    QCOMPARE(result.table.columnCount(), switches.size());
    QVERIFY(!result.table.item(1).unread && !result.table.item(2).unread);
    QCOMPARE(result.pairs.count(), equal ? 1 : 0);
}

void tst_DupReaders::foreignItems_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("logged");
    QTest::newRow("Kontakte-Ordner mit Aufgabe") << int(DupKind::Contact)
                                                 << "Übersprungenes Element: Fremd (48) \r\n";
    QTest::newRow("Journal-Ordner mit Aufgabe") << int(DupKind::Journal) << "";
}

void tst_DupReaders::foreignItems()
{
    QFETCH(int, kind);
    QFETCH(QString, logged);
    const DupItemType &type = DupTypeOf(DupKind(kind));
    SwitchOnly(type, {});
    const MAPIFolder folder = TempProfile::folderOf(DefaultFolderOf(DupKind(kind)));
    const int ownClass = type.classes[0];
    AddDupItem(folder, QString::number(ownClass), kMonday);
    AddDupItem(folder, QStringLiteral("48|Subject=Fremd"), kMonday);
    AddDupItem(folder, QString::number(ownClass), kMonday);
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({folder}));
    QCOMPARE(result.table.itemCount(), 3);
    const DupItem &foreign = result.table.item(2);
    QVERIFY(foreign.marked && foreign.unread);
    QVERIFY(foreign.entryId.isEmpty());
    // No field switched on: every read item equals every other, the foreign
    // one takes no part.
    QCOMPARE(result.pairs.count(), 1);
    QCOMPARE(result.pairs.second[0], 3);
    const QString log = m_env->readLog();
    if (logged.isEmpty()) {
        QVERIFY(log.isEmpty());
    } else {
        QVERIFY2(log.contains(QStringLiteral("Sub: Remove Duplicates (Contact)")), qPrintable(log));
        QVERIFY2(log.contains(QString::fromLatin1(logged.toLatin1())), qPrintable(log));
    }
}

void tst_DupReaders::readFailures_data()
{
    QTest::addColumn<QList<int>>("failures"); // per item: failing reads before it reads (-1: never)
    QTest::addColumn<QList<int>>("givenUp");
    QTest::newRow("sechs Fehler auf sechs Elementen") << QList<int>{1, 1, 1, 1, 1, 1} << QList<int>{6};
    // A fault counts per failed read of a property; one failed try of an item
    // uses up one. -1: every try fails.
    QTest::newRow("Zähler zählt über Elemente") << QList<int>{1, 1, 1, -1, 0} << QList<int>{4};
    QTest::newRow("unlesbar: sechster Versuch gibt auf") << QList<int>{-1, 0} << QList<int>{1};
    QTest::newRow("Aufgeben setzt den Zähler zurück") << QList<int>{-1, 1, 1, 1, 1, 1} << QList<int>{1};
    QTest::newRow("fünf Fehler werden wiederholt") << QList<int>{5, 0} << QList<int>{};
}

void tst_DupReaders::readFailures()
{
    QFETCH(QList<int>, failures);
    QFETCH(QList<int>, givenUp);
    const DupItemType &type = DupTypeOf(DupKind::Contact);
    SwitchOnly(type, {"KontakteLastName"});
    const MAPIFolder folder = TempProfile::folderOf(olFolderContacts);
    for (int k = 0; k < failures.size(); ++k) {
        const Item item = AddDupItem(folder, QStringLiteral("40|LastName=Name %1|Subject=Kontakt %1").arg(k + 1));
        if (failures[k] != 0)
            StoreFaults::FailItem(item.EntryID(), StoreFaults::FailRead, failures[k]);
    }
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({folder}));
    QList<int> unread;
    for (int n = 1; n <= result.table.itemCount(); ++n) {
        if (result.table.item(n).unread) {
            unread.append(n);
            QVERIFY(result.table.item(n).marked);
        } else {
            QCOMPARE(result.table.value(n, 0), QStringLiteral("name %1").arg(n));
        }
    }
    QCOMPARE(unread, givenUp);
    const QString log = m_env->readLog();
    QCOMPARE(log.count(QStringLiteral("Err No.: ")), givenUp.size());
    if (!givenUp.isEmpty())
        QVERIFY2(log.contains(QStringLiteral(", Err Des: Das Element konnte nicht gelesen werden., Element: ")),
                 qPrintable(log));
}

// The items moved by an earlier search are not found again.
void tst_DupReaders::duplicatesFolderIsLeftOut()
{
    const DupItemType &type = DupTypeOf(DupKind::Contact);
    SwitchOnly(type, {"KontakteLastName"});
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const MAPIFolder moved = contacts.Folders().Add(QString::fromLatin1(kDupFolderName));
    for (const MAPIFolder &folder : {contacts, moved, contacts})
        AddDupItem(folder, QStringLiteral("40|LastName=Berg"), kMonday);
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({moved, contacts}, 1));
    QCOMPARE(result.table.itemCount(), 2);
    QCOMPARE(result.pairs.count(), 1);
    QVERIFY(result.masterFolder == contacts);
    QCOMPARE(m_host.progressMaxima.first(), 2);
}

void tst_DupReaders::contactCaptionWithoutFileAs_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("caption");
    const QString tail = QStringLiteral(" (Kontakte, 08.04.2024 09:30:00)");
    QTest::newRow("Speichern unter") << "40|FullName=Anna Berg|FileAs=Berg, Anna" << "Berg, Anna" + tail;
    QTest::newRow("nur voller Name") << "40|FullName=Anna Berg|FileAs=" << "Anna Berg" + tail;
    QTest::newRow("nur Firma") << "40|CompanyName=Berg GmbH|FileAs=" << "Berg GmbH" + tail;
    QTest::newRow("nichts") << "40|Body=Notiz" << tail;
}

// A contact without "Speichern unter" shows its full name or company.
void tst_DupReaders::contactCaptionWithoutFileAs()
{
    QFETCH(QString, description);
    QFETCH(QString, caption);
    const DupItemType &type = DupTypeOf(DupKind::Contact);
    SwitchOnly(type, {"KontakteLastName"});
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    AddDupItem(contacts, description, kMonday);
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({contacts}));
    QCOMPARE(result.table.item(1).caption, caption);
}

void tst_DupReaders::searchOverTwoFolders()
{
    const DupItemType &type = DupTypeOf(DupKind::Contact);
    SwitchOnly(type, {"KontakteLastName", "KontakteFirstName"});
    SaveSetting(QStringLiteral("MasterFolder"), QStringLiteral("1"));
    SaveSetting(QStringLiteral("OldDel"), QStringLiteral("1"));
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const MAPIFolder customers = contacts.Folders().Add(QStringLiteral("Kunden"));
    AddDupItem(contacts, QStringLiteral("40|FirstName=Anna|LastName=Berg|FileAs=Berg, Anna"), kMonday);
    AddDupItem(contacts, QStringLiteral("40|FirstName=Hans|LastName=Kurz|FileAs=Kurz, Hans"), kMonday);
    AddDupItem(customers, QStringLiteral("40|FirstName=anna|LastName=Berg |FileAs=Anna Berg"), kMonday.addDays(2));

    // The customers folder is marked: its younger copy stays.
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({contacts, customers}, 1));
    QCOMPARE(result.itemTypeName, QStringLiteral("Contact"));
    QVERIFY(result.masterFolder == customers);
    QCOMPARE(result.pairs.count(), 1);
    QCOMPARE(result.pairs.first[0], 1);
    QCOMPARE(result.pairs.second[0], 3);
    QVERIFY(result.table.item(1).marked);
    QVERIFY(!result.table.item(3).marked);
    QVERIFY(result.table.item(3).isMaster && !result.table.item(1).isMaster);
    QCOMPARE(result.table.item(1).caption, QStringLiteral("Berg, Anna (Kontakte, 08.04.2024 09:30:00)"));
    QCOMPARE(result.table.item(3).caption, QStringLiteral("Anna Berg (Kunden, 10.04.2024 09:30:00)"));
    QCOMPARE(result.table.item(3).folderId, customers.EntryID());
    QCOMPARE(result.table.item(3).storeId, customers.StoreID());
    QVERIFY(!result.table.item(3).entryId.isEmpty());

    QCOMPARE(m_host.statusTexts.value(0), QStringLiteral("Phase 1: Element 1 von 3 einlesen"));
    QVERIFY(m_host.statusTexts.contains(QStringLiteral("Phase 2: Analysiere Element 1")));
}

void tst_DupReaders::seriesStaysOverSingle()
{
    const DupItemType &type = DupTypeOf(DupKind::Appointment);
    SwitchOnly(type, {"TermineSubject"});
    SaveSetting(QStringLiteral("TerminSerie"), QStringLiteral("1"));
    SaveSetting(QStringLiteral("OldDel"), QStringLiteral("1"));
    // Series above age: level 2 series, level 1 age, level 0 folder.
    SaveSetting(QStringLiteral("Priority.1"), QStringLiteral("2"));
    SaveSetting(QStringLiteral("Priority.2"), QStringLiteral("1"));
    SaveSetting(QStringLiteral("Priority.0"), QStringLiteral("0"));
    const MAPIFolder calendar = TempProfile::folderOf(olFolderCalendar);
    AddDupItem(calendar, QStringLiteral("26|Subject=Jour fixe|Start=08.04.2024 10:00"), kMonday);
    AddDupItem(calendar, QStringLiteral("26|Subject=Jour fixe|Start=15.04.2024 10:00|IsRecurring=1"),
               kMonday.addDays(3));
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({calendar}));
    QCOMPARE(result.pairs.count(), 1);
    QVERIFY(result.table.item(1).marked);  // the older single appointment goes
    QVERIFY(!result.table.item(2).marked); // the series stays
    QCOMPARE(result.table.item(1).caption,
             QStringLiteral("Jour fixe, 08.04.2024 10:00:00 (Kalender, 08.04.2024 09:30:00)"));
}

void tst_DupReaders::contactUserField()
{
    const DupItemType &type = DupTypeOf(DupKind::Contact);
    SwitchOnly(type, {"KontakteFieldName"});
    SaveSetting(QStringLiteral("KontakteFieldNameStr"), QStringLiteral("Kundennummer"));
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    for (const char *number : {"K-17", "", "K-17", "K-18"}) {
        Item item = contacts.Items().Add(olContact);
        if (*number)
            item.UserProperties().Add(QStringLiteral("Kundennummer"), olText).setValue(QString::fromLatin1(number));
        item.Save();
    }
    const DupSearchResult result = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({contacts}));
    QCOMPARE(result.table.value(1, 0), QStringLiteral("K-17"));
    QCOMPARE(result.table.value(2, 0), QString());
    QCOMPARE(result.pairs.count(), 1);
    QCOMPARE(result.pairs.second[0], 3);
    // The contact without the field is no failure of the next one.
    for (int n = 1; n <= 4; ++n)
        QVERIFY(!result.table.item(n).unread);
    QVERIFY(m_env->readLog().isEmpty());
}

void tst_DupReaders::brokenLevelEndsSearch()
{
    const DupItemType &type = DupTypeOf(DupKind::Note);
    SwitchOnly(type, {"NotizenBody"});
    SaveSetting(QStringLiteral("Priority.1"), QStringLiteral("3"));
    const MAPIFolder notes = TempProfile::folderOf(olFolderNotes);
    AddDupItem(notes, QStringLiteral("44|Body=Milch"));
    const DupSearchResult single = SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({notes}));
    QCOMPARE(single.pairs.count(), 0); // no pair, no level read
    AddDupItem(notes, QStringLiteral("44|Body=Milch"));
    try {
        (void)SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({notes}));
        QFAIL("no error");
    } catch (const DupError &error) {
        QCOMPARE(error.number, int(DupErrors::OutOfRange));
    }
}

QTEST_GUILESS_MAIN(tst_DupReaders)
#include "tst_dupreaders.moc"
