// Items of every class: typed properties by name, composite fields, Save,
// Delete and Move, and what survives a reopen.
#include "store/StoreTestProfile.h"

#include <QtTest>

class tst_StoreItems : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void propertiesRoundTripThroughReopen_data();
    void propertiesRoundTripThroughReopen();
    void namesIgnoreCase();
    void unknownPropertyAndBadValueAreRefused_data();
    void unknownPropertyAndBadValueAreRefused();
    void emptyDatesReadAsNoDate();
    void fullNameSplitsAndPartsRecompose_data();
    void fullNameSplitsAndPartsRecompose();
    void addressSplitsAndPartsRecompose_data();
    void addressSplitsAndPartsRecompose();
    void timesStayConsistent();
    void noteSubjectFollowsBody();
    void unsavedItemLeavesNoTrace();
    void deleteMovesToDeletedItemsThenRemoves();
    void moveGivesNewIdWithinAndAcrossStores();
    void creationTimeOnlyBeforeFirstSave();
};

void tst_StoreItems::propertiesRoundTripThroughReopen_data()
{
    QTest::addColumn<int>("folderType");
    QTest::addColumn<int>("itemClass");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    const QDateTime when(QDate(2024, 3, 5), QTime(14, 30));
    QTest::newRow("Kontakt Telefon") << int(olFolderContacts) << int(olContact) << "MobileTelephoneNumber" << QVariant("0171 1234567");
    QTest::newRow("Kontakt Geburtstag") << int(olFolderContacts) << int(olContact) << "Birthday" << QVariant(QDateTime(QDate(1970, 2, 1), QTime(0, 0)));
    QTest::newRow("Kontakt Umlaute") << int(olFolderContacts) << int(olContact) << "CompanyName" << QVariant("Müller GmbH & Co. KG");
    QTest::newRow("Termin Beginn") << int(olFolderCalendar) << int(olAppointment) << "Start" << QVariant(when);
    QTest::newRow("Termin ganztägig") << int(olFolderCalendar) << int(olAppointment) << "AllDayEvent" << QVariant(true);
    QTest::newRow("Termin frei") << int(olFolderCalendar) << int(olAppointment) << "BusyStatus" << QVariant(0);
    QTest::newRow("Aufgabe fällig") << int(olFolderTasks) << int(olTask) << "DueDate" << QVariant(when);
    QTest::newRow("Aufgabe Kilometer") << int(olFolderTasks) << int(olTask) << "Mileage" << QVariant("120 km");
    QTest::newRow("Mail Empfänger") << int(olFolderInbox) << int(olMail) << "To" << QVariant("Anna Berg; Hans Müller");
    QTest::newRow("Mail empfangen") << int(olFolderInbox) << int(olMail) << "ReceivedTime" << QVariant(when);
    QTest::newRow("Notiz Farbe") << int(olFolderNotes) << int(olNote) << "Color" << QVariant(int(olBlue));
    QTest::newRow("Journal Dauer") << int(olFolderJournal) << int(olJournal) << "Duration" << QVariant(45);
    QTest::newRow("langer Text") << int(olFolderInbox) << int(olMail) << "Body" << QVariant(QString(100000, u'ä'));
}

void tst_StoreItems::propertiesRoundTripThroughReopen()
{
    QFETCH(int, folderType);
    QFETCH(int, itemClass);
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    TempProfile profile;
    QString entryId;
    {
        Item item = TempProfile::folderOf(folderType).Items().Add();
        QCOMPARE(item.Class(), itemClass);
        item.set(property, value);
        item.Save();
        entryId = item.EntryID();
    }
    profile.reopen();
    const Item again = TempProfile::ns().GetItemFromID(entryId);
    QCOMPARE(again.get(property), value);
    QCOMPARE(again.Class(), itemClass);
    QCOMPARE(TempProfile::folderOf(folderType).Items().Count(), 1);
}

void tst_StoreItems::namesIgnoreCase()
{
    TempProfile profile;
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    contact.set(QStringLiteral("Fullname"), QStringLiteral("Hans Müller"));
    QCOMPARE(contact.get(QStringLiteral("FULLNAME")).toString(), QStringLiteral("Hans Müller"));
    QCOMPARE(contact.text(QStringLiteral("fullName")), QStringLiteral("Hans Müller"));
    contact.Save();
    QCOMPARE(contact.get(QStringLiteral("entryid")).toString(), contact.EntryID());
}

void tst_StoreItems::unknownPropertyAndBadValueAreRefused_data()
{
    QTest::addColumn<int>("folderType");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("number");
    QTest::newRow("Tippfehler") << int(olFolderContacts) << "FulName" << QVariant("x") << int(StoreErrUnknownMember);
    QTest::newRow("Feld einer anderen Klasse") << int(olFolderNotes) << "Start" << QVariant("01.01.2024") << int(StoreErrUnknownMember);
    QTest::newRow("kein Datum") << int(olFolderContacts) << "Birthday" << QVariant("32.13.2006") << int(StoreErrTypeMismatch);
    QTest::newRow("keine Zahl") << int(olFolderCalendar) << "BusyStatus" << QVariant("viel") << int(StoreErrTypeMismatch);
    QTest::newRow("Klasse schreibgeschützt") << int(olFolderContacts) << "Class" << QVariant(43) << int(StoreErrReadOnly);
    QTest::newRow("EntryID schreibgeschützt") << int(olFolderContacts) << "EntryID" << QVariant("00") << int(StoreErrReadOnly);
}

void tst_StoreItems::unknownPropertyAndBadValueAreRefused()
{
    QFETCH(int, folderType);
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(int, number);
    TempProfile profile;
    Item item = TempProfile::folderOf(folderType).Items().Add();
    try {
        item.set(property, value);
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), number);
        QVERIFY(!e.description().isEmpty());
    }
}

void tst_StoreItems::emptyDatesReadAsNoDate()
{
    TempProfile profile;
    Item task = TempProfile::folderOf(olFolderTasks).Items().Add();
    QCOMPARE(task.get(QStringLiteral("DueDate")).toDateTime(), QDateTime(QDate(4501, 1, 1), QTime(0, 0)));
    QCOMPARE(task.text(QStringLiteral("DueDate")), QStringLiteral("01.01.4501"));
    task.set(QStringLiteral("DueDate"), QStringLiteral("24.12.2024"));
    QCOMPARE(task.text(QStringLiteral("DueDate")), QStringLiteral("24.12.2024"));
    task.set(QStringLiteral("DueDate"), QStringLiteral("24.12.2024 18:15"));
    QCOMPARE(task.text(QStringLiteral("DueDate")), QStringLiteral("24.12.2024 18:15:00"));
    task.set(QStringLiteral("DueDate"), QString());
    QCOMPARE(task.text(QStringLiteral("DueDate")), QStringLiteral("01.01.4501"));
    task.set(QStringLiteral("DueDate"), QStringLiteral("01.01.4501"));
    QVERIFY(IsNoDate(task.get(QStringLiteral("DueDate")).toDateTime()));
    QCOMPARE(task.CreationTime(), NoDate());
}

void tst_StoreItems::fullNameSplitsAndPartsRecompose_data()
{
    QTest::addColumn<QString>("fullName");
    QTest::addColumn<QStringList>("parts"); // title, first, middle, last, suffix
    QTest::addColumn<QString>("withEva");   // FullName after FirstName = "Eva"
    QTest::newRow("Vor- und Nachname") << "Hans Müller" << QStringList{"", "Hans", "", "Müller", ""} << "Eva Müller";
    QTest::newRow("Doppelname mit Titel") << "Dr. Hans-Peter Müller" << QStringList{"Dr.", "Hans-Peter", "", "Müller", ""}
                                          << "Dr. Eva Müller";
    QTest::newRow("Nachname, Vorname") << "Müller, Hans" << QStringList{"", "Hans", "", "Müller", ""} << "Müller, Eva";
    QTest::newRow("Nachname, Titel Vorname Zusatz") << "Schmidt,  Dr. Karl Otto jun."
                                                    << QStringList{"Dr.", "Karl", "Otto", "Schmidt", "jun."}
                                                    << "Schmidt, Dr. Eva Otto jun.";
    QTest::newRow("mehrere Titel und von") << "Prof. Dr. med. Anna von Berg" << QStringList{"Prof. Dr. med.", "Anna", "", "von Berg", ""}
                                           << "Prof. Dr. med. Eva von Berg";
    QTest::newRow("zweiter Vorname und Zusatz") << "Karl Otto Schmidt jun." << QStringList{"", "Karl", "Otto", "Schmidt", "jun."}
                                                << "Eva Otto Schmidt jun.";
    QTest::newRow("nur ein Wort") << "Müller" << QStringList{"", "", "", "Müller", ""} << "Eva Müller";
    QTest::newRow("leer") << "" << QStringList{"", "", "", "", ""} << "Eva";
}

void tst_StoreItems::fullNameSplitsAndPartsRecompose()
{
    QFETCH(QString, fullName);
    QFETCH(QStringList, parts);
    QFETCH(QString, withEva);
    TempProfile profile;
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    const QStringList fields = {"Title", "FirstName", "MiddleName", "LastName", "Suffix"};
    const auto partsNow = [&] {
        QStringList now;
        for (const QString &field : fields)
            now << contact.text(field);
        return now;
    };
    contact.set(QStringLiteral("FullName"), fullName);
    QCOMPARE(contact.text(QStringLiteral("FullName")), fullName); // kept as written
    QCOMPARE(partsNow(), parts);
    // Writing back the parts it splits into (a restore) keeps it as written.
    for (const QString &field : fields)
        contact.set(field, contact.text(field));
    QCOMPARE(contact.text(QStringLiteral("FullName")), fullName);
    // An emptied full name leaves the parts.
    contact.set(QStringLiteral("FullName"), QString());
    QCOMPARE(partsNow(), parts);
    QCOMPARE(contact.text(QStringLiteral("FullName")), QString());
    // Writing a part that differs recomposes the whole, in its form.
    contact.set(QStringLiteral("FullName"), fullName);
    contact.set(QStringLiteral("FirstName"), QStringLiteral("Eva"));
    QCOMPARE(contact.text(QStringLiteral("FullName")), withEva);
}

void tst_StoreItems::addressSplitsAndPartsRecompose_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QStringList>("parts"); // street, box, postal code, city, state, country
    QTest::addColumn<bool>("roundTrip");    // composing the parts gives the text again
    QTest::newRow("Straße PLZ Ort") << "Hauptstr. 1\r\n10115 Berlin" << QStringList{"Hauptstr. 1", "", "10115", "Berlin", "", ""} << true;
    QTest::newRow("mit Land") << "Bahnhofstrasse 3\r\n8001 Zürich\r\nSchweiz" << QStringList{"Bahnhofstrasse 3", "", "8001", "Zürich", "", "Schweiz"} << true;
    QTest::newRow("Bundesland und Land") << "Marienplatz 8\r\n80331 München\r\nBayern\r\nDeutschland" << QStringList{"Marienplatz 8", "", "80331", "München", "Bayern", "Deutschland"} << true;
    QTest::newRow("Postfach") << "Postfach 10 20 30\r\n50667 Köln" << QStringList{"", "Postfach 10 20 30", "50667", "Köln", "", ""} << true;
    QTest::newRow("Länderkennung vor PLZ") << "Ringstr. 2\nD-01067 Dresden" << QStringList{"Ringstr. 2", "", "D-01067", "Dresden", "", ""} << false;
    QTest::newRow("ohne PLZ") << "Am Markt 1\r\nHamburg" << QStringList{"Am Markt 1", "", "", "Hamburg", "", ""} << true;
    QTest::newRow("nur Straße") << "Am Markt 1" << QStringList{"Am Markt 1", "", "", "", "", ""} << true;
}

void tst_StoreItems::addressSplitsAndPartsRecompose()
{
    QFETCH(QString, address);
    QFETCH(QStringList, parts);
    QFETCH(bool, roundTrip);
    TempProfile profile;
    const QStringList suffixes = {"Street", "PostOfficeBox", "PostalCode", "City", "State", "Country"};
    for (const QString kind : {QStringLiteral("Business"), QStringLiteral("Home"), QStringLiteral("Other")}) {
        Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
        contact.set(kind + QStringLiteral("Address"), address);
        for (int i = 0; i < suffixes.size(); ++i)
            QCOMPARE(contact.text(kind + QStringLiteral("Address") + suffixes.at(i)), parts.at(i));
        contact.set(kind + QStringLiteral("AddressCity"), contact.text(kind + QStringLiteral("AddressCity")));
        if (roundTrip)
            QCOMPARE(contact.text(kind + QStringLiteral("Address")), QString(address).replace(QStringLiteral("\r\n"), QStringLiteral("\r\n")));
        contact.set(kind + QStringLiteral("AddressCountry"), QStringLiteral("Österreich"));
        QVERIFY(contact.text(kind + QStringLiteral("Address")).endsWith(QStringLiteral("Österreich")));
    }
}

void tst_StoreItems::timesStayConsistent()
{
    TempProfile profile;
    Item appointment = TempProfile::folderOf(olFolderCalendar).Items().Add();
    appointment.set(QStringLiteral("Start"), QStringLiteral("01.07.2024 10:00"));
    appointment.set(QStringLiteral("End"), QStringLiteral("01.07.2024 11:30"));
    QCOMPARE(appointment.get(QStringLiteral("Duration")).toInt(), 90);
    appointment.set(QStringLiteral("Start"), QStringLiteral("02.07.2024 09:00"));
    QCOMPARE(appointment.text(QStringLiteral("End")), QStringLiteral("02.07.2024 10:30:00"));
    appointment.set(QStringLiteral("Duration"), 30);
    QCOMPARE(appointment.text(QStringLiteral("End")), QStringLiteral("02.07.2024 09:30:00"));

    Item entry = TempProfile::folderOf(olFolderJournal).Items().Add();
    entry.set(QStringLiteral("Start"), QStringLiteral("01.07.2024 10:00"));
    entry.set(QStringLiteral("Duration"), 20);
    QCOMPARE(entry.text(QStringLiteral("End")), QStringLiteral("01.07.2024 10:20:00"));
    entry.set(QStringLiteral("End"), QStringLiteral("01.07.2024 11:00"));
    QCOMPARE(entry.get(QStringLiteral("Duration")).toInt(), 60);
}

void tst_StoreItems::noteSubjectFollowsBody()
{
    TempProfile profile;
    Item note = TempProfile::folderOf(olFolderNotes).Items().Add();
    note.setBody(QStringLiteral("Einkaufen\r\nMilch, Brot"));
    QCOMPARE(note.Subject(), QStringLiteral("Einkaufen"));
    QCOMPARE(note.get(QStringLiteral("Color")).toInt(), int(olYellow));
}

void tst_StoreItems::unsavedItemLeavesNoTrace()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    Item contact = contacts.Items().Add();
    contact.set(QStringLiteral("LastName"), QStringLiteral("Entwurf"));
    QCOMPARE(contact.EntryID(), QString());
    QCOMPARE(contacts.Items().Count(), 0);
    contact = Item();
    profile.reopen();
    QCOMPARE(TempProfile::folderOf(olFolderContacts).Items().Count(), 0);
}

void tst_StoreItems::deleteMovesToDeletedItemsThenRemoves()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const MAPIFolder trash = TempProfile::folderOf(olFolderDeletedItems);
    Item contact = contacts.Items().Add();
    contact.set(QStringLiteral("LastName"), QStringLiteral("Weg"));
    contact.Save();
    const QString entryId = contact.EntryID();
    contact.Delete();
    QCOMPARE(contacts.Items().Count(), 0);
    QCOMPARE(trash.Items().Count(), 1);
    QVERIFY_THROWS_EXCEPTION(StoreError, TempProfile::ns().GetItemFromID(entryId));
    QVERIFY_THROWS_EXCEPTION(StoreError, contact.Save());
    Item inTrash = trash.Items().Item(1);
    QCOMPARE(inTrash.text(QStringLiteral("LastName")), QStringLiteral("Weg"));
    inTrash.Delete();
    QCOMPARE(trash.Items().Count(), 0);
}

void tst_StoreItems::moveGivesNewIdWithinAndAcrossStores()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    MAPIFolder old = contacts.Folders().Add(QStringLiteral("Kontakte Alt"));
    Item contact = contacts.Items().Add();
    contact.set(QStringLiteral("FullName"), QStringLiteral("Anna Berg"));
    contact.Attachments().AddData("Inhalt", QStringLiteral("karte.txt"));
    contact.Save();
    const QString firstId = contact.EntryID();
    contact.Move(old);
    QVERIFY(contact.EntryID() != firstId);
    QCOMPARE(old.Items().Count(), 1);
    QCOMPARE(contacts.Items().Count(), 0);
    QVERIFY_THROWS_EXCEPTION(StoreError, TempProfile::ns().GetItemFromID(firstId));

    const MAPIFolder archive = AddStore(QStringLiteral("Archiv"), true);
    const MAPIFolder archiveContacts = archive.Folders().Item(QStringLiteral("Kontakte"));
    contact.set(QStringLiteral("JobTitle"), QStringLiteral("Leiterin"));
    contact.Move(archiveContacts);
    QCOMPARE(contact.StoreID(), archive.StoreID());
    QCOMPARE(old.Items().Count(), 0);
    profile.reopen();
    const Item moved = TempProfile::ns().GetItemFromID(contact.EntryID(), archive.StoreID());
    QCOMPARE(moved.text(QStringLiteral("FullName")), QStringLiteral("Anna Berg"));
    QCOMPARE(moved.text(QStringLiteral("JobTitle")), QStringLiteral("Leiterin"));
    QCOMPARE(moved.Attachments().Count(), 1);
}

void tst_StoreItems::creationTimeOnlyBeforeFirstSave()
{
    TempProfile profile;
    Item mail = TempProfile::folderOf(olFolderInbox).Items().Add();
    const QDateTime then(QDate(2020, 5, 4), QTime(8, 0));
    mail.set(QStringLiteral("CreationTime"), then);
    mail.Save();
    QCOMPARE(mail.CreationTime(), then);
    QVERIFY_THROWS_EXCEPTION(StoreError, mail.set(QStringLiteral("CreationTime"), QDateTime::currentDateTime()));
    Item fresh = TempProfile::folderOf(olFolderInbox).Items().Add();
    fresh.Save();
    QVERIFY(qAbs(fresh.CreationTime().secsTo(QDateTime::currentDateTime())) < 60);
}

QTEST_GUILESS_MAIN(tst_StoreItems)
#include "tst_storeitems.moc"
