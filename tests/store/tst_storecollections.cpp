// Items: counting, positions, iteration, adding, Restrict and Find, and how
// the collection follows changes of its folder.
#include "store/StoreTestProfile.h"

#include <QtTest>

namespace {

Item addContact(const MAPIFolder &folder, const QString &fullName, const QString &country = QString())
{
    Item item = folder.Items().Add();
    item.set(QStringLiteral("FullName"), fullName);
    item.set(QStringLiteral("HomeAddressCountry"), country);
    item.Save();
    return item;
}

QStringList lastNames(const Items &items)
{
    QStringList names;
    for (const Item &item : items)
        names << item.text(QStringLiteral("LastName"));
    return names;
}

} // namespace

class tst_StoreCollections : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void positionsAreOneBasedInOrderOfArrival();
    void outOfRangePositionsFail_data();
    void outOfRangePositionsFail();
    void addGivesClassOfFolderOrArgument_data();
    void addGivesClassOfFolderOrArgument();
    void collectionFollowsDeleteAndMove();
    void savingKeepsPositions();
    void itemsSharedWithinProcess();
    void manyItemsAcrossBatches();
    void restrictAndFind_data();
    void restrictAndFind();
    void badFiltersAreRefused_data();
    void badFiltersAreRefused();
    void findWithoutMatchGivesNullItem();
    void restrictionOfRestrictionKeepsBoth();
};

void tst_StoreCollections::positionsAreOneBasedInOrderOfArrival()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    for (const char *name : {"Anna Berg", "Hans Müller", "Eva Huber"})
        addContact(contacts, QString::fromUtf8(name));
    const Items items = contacts.Items();
    QCOMPARE(items.Count(), 3);
    QCOMPARE(items.Item(1).text(QStringLiteral("LastName")), QStringLiteral("Berg"));
    QCOMPARE(items.Item(3).text(QStringLiteral("LastName")), QStringLiteral("Huber"));
    QCOMPARE(lastNames(items), (QStringList{"Berg", "Müller", "Huber"}));
    QCOMPARE(items.Parent(), contacts);
}

void tst_StoreCollections::outOfRangePositionsFail_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("null") << 0;
    QTest::newRow("negativ") << -1;
    QTest::newRow("hinter dem letzten") << 3;
}

void tst_StoreCollections::outOfRangePositionsFail()
{
    QFETCH(int, index);
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    addContact(contacts, QStringLiteral("Anna Berg"));
    addContact(contacts, QStringLiteral("Hans Müller"));
    try {
        (void)contacts.Items().Item(index);
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrNotFound));
    }
}

void tst_StoreCollections::addGivesClassOfFolderOrArgument_data()
{
    QTest::addColumn<int>("folderType");
    QTest::addColumn<QString>("argument"); // "" : none; a number: a Class; else a message class
    QTest::addColumn<int>("itemClass");
    QTest::addColumn<QString>("messageClass");
    QTest::newRow("Kontaktordner") << int(olFolderContacts) << "" << int(olContact) << "IPM.Contact";
    QTest::newRow("Verteilerliste") << int(olFolderContacts) << "69" << int(olDistributionList) << "IPM.DistList";
    QTest::newRow("eigenes Formular") << int(olFolderContacts) << "IPM.Contact.Kunde" << int(olContact) << "IPM.Contact.Kunde";
    QTest::newRow("Bereitstellung im Posteingang") << int(olFolderInbox) << "IPM.Post" << int(olPost) << "IPM.Post";
    QTest::newRow("Kalender") << int(olFolderCalendar) << "" << int(olAppointment) << "IPM.Appointment";
    QTest::newRow("Notizen") << int(olFolderNotes) << "" << int(olNote) << "IPM.StickyNote";
    QTest::newRow("Journal") << int(olFolderJournal) << "" << int(olJournal) << "IPM.Activity";
    QTest::newRow("Aufgaben") << int(olFolderTasks) << "" << int(olTask) << "IPM.Task";
}

void tst_StoreCollections::addGivesClassOfFolderOrArgument()
{
    QFETCH(int, folderType);
    QFETCH(QString, argument);
    QFETCH(int, itemClass);
    QFETCH(QString, messageClass);
    TempProfile profile;
    const Items items = TempProfile::folderOf(folderType).Items();
    bool isNumber = false;
    const int number = argument.toInt(&isNumber);
    Item item = argument.isEmpty() ? items.Add() : (isNumber ? items.Add(number) : items.Add(argument));
    QCOMPARE(item.Class(), itemClass);
    QCOMPARE(item.MessageClass(), messageClass);
    item.Save();
    profile.reopen();
    const Item again = TempProfile::folderOf(folderType).Items().Item(1);
    QCOMPARE(again.Class(), itemClass);
    QCOMPARE(again.MessageClass(), messageClass);
}

void tst_StoreCollections::collectionFollowsDeleteAndMove()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const MAPIFolder old = contacts.Folders().Add(QStringLiteral("Alt"));
    for (const char *name : {"Anna Berg", "Hans Müller", "Eva Huber", "Urs Meier"})
        addContact(contacts, QString::fromUtf8(name));
    const Items items = contacts.Items();
    QCOMPARE(items.Count(), 4);
    items.Item(2).Delete();
    QCOMPARE(items.Count(), 3);
    QCOMPARE(items.Item(2).text(QStringLiteral("LastName")), QStringLiteral("Huber"));
    items.Item(1).Move(old);
    QCOMPARE(lastNames(items), (QStringList{"Huber", "Meier"}));
    QCOMPARE(lastNames(old.Items()), QStringList{"Berg"});
    addContact(contacts, QStringLiteral("Neu Zugang"));
    QCOMPARE(items.Count(), 3);
}

void tst_StoreCollections::savingKeepsPositions()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    for (int n = 1; n <= 5; ++n)
        addContact(contacts, QStringLiteral("Kontakt Nummer%1").arg(n));
    const Items items = contacts.Items();
    for (int i = 1; i <= items.Count(); ++i) {
        Item item = items.Item(i);
        item.set(QStringLiteral("MobileTelephoneNumber"), QStringLiteral("+49 (171) %1").arg(i));
        item.Save();
    }
    for (int i = 1; i <= 5; ++i)
        QCOMPARE(items.Item(i).text(QStringLiteral("LastName")), QStringLiteral("Nummer%1").arg(i));
}

void tst_StoreCollections::itemsSharedWithinProcess()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const QString entryId = addContact(contacts, QStringLiteral("Anna Berg")).EntryID();
    Item byPosition = contacts.Items().Item(1);
    byPosition.set(QStringLiteral("JobTitle"), QStringLiteral("Ärztin"));
    Item byId = TempProfile::ns().GetItemFromID(entryId);
    QCOMPARE(byId.text(QStringLiteral("JobTitle")), QStringLiteral("Ärztin"));
    QVERIFY(byId.isDirty());
    byId.Save();
    QVERIFY(!byPosition.isDirty());
    profile.reopen();
    QCOMPARE(TempProfile::ns().GetItemFromID(entryId).text(QStringLiteral("JobTitle")), QStringLiteral("Ärztin"));
}

void tst_StoreCollections::manyItemsAcrossBatches()
{
    TempProfile profile;
    const MAPIFolder tasks = TempProfile::folderOf(olFolderTasks);
    const int count = 2600; // more than two batches of rows
    for (int n = 1; n <= count; ++n) {
        Item task = tasks.Items().Add();
        task.setSubject(QStringLiteral("Aufgabe %1").arg(n));
        task.Save();
    }
    tasks.Items().Item(1500).Delete();
    const Items items = tasks.Items();
    QCOMPARE(items.Count(), count - 1);
    int n = 0;
    for (const Item &task : items) {
        ++n;
        QCOMPARE(task.Subject(), QStringLiteral("Aufgabe %1").arg(n < 1500 ? n : n + 1));
    }
    QCOMPARE(n, count - 1);
}

void tst_StoreCollections::restrictAndFind_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("lastNames");
    QTest::newRow("gleich") << "[LastName] = 'Müller'" << QStringList{"Müller"};
    QTest::newRow("Groß- und Kleinschreibung egal") << "[lastname] = 'MÜLLER'" << QStringList{"Müller"};
    QTest::newRow("Land in drei Adressen") << "[BusinessAddressCountry] = 'Schweiz' OR [HomeAddressCountry] = 'Schweiz' OR [OtherAddressCountry] = 'Schweiz'" << QStringList{"Meier", "Huber"};
    QTest::newRow("und vor oder") << "[LastName] = 'Berg' OR [LastName] = 'Meier' AND [FirstName] = 'Urs'" << QStringList{"Berg", "Meier"};
    QTest::newRow("Klammern") << "([LastName] = 'Berg' OR [LastName] = 'Meier') AND [FirstName] = 'Urs'" << QStringList{"Meier"};
    QTest::newRow("ungleich") << "[HomeAddressCountry] <> 'Schweiz'" << QStringList{"Berg", "Müller", "O'Brien"};
    QTest::newRow("verdoppeltes Hochkomma") << "[LastName] = 'O''Brien'" << QStringList{"O'Brien"};
    QTest::newRow("leerer Wert") << "[HomeAddressCountry] = ''" << QStringList{"Berg", "O'Brien"};
    QTest::newRow("kein Treffer") << "[LastName] = 'Niemand'" << QStringList{};
    QTest::newRow("Datum") << "[Birthday] >= '01.01.1970'" << QStringList{"Huber"};
    QTest::newRow("ohne Datum") << "[Birthday] = ''" << QStringList{"Berg", "Müller", "Meier", "O'Brien"};
}

void tst_StoreCollections::restrictAndFind()
{
    QFETCH(QString, filter);
    QFETCH(QStringList, lastNames);
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    addContact(contacts, QStringLiteral("Anna Berg"));
    addContact(contacts, QStringLiteral("Hans Müller"), QStringLiteral("Deutschland"));
    addContact(contacts, QStringLiteral("Urs Meier"), QStringLiteral("Schweiz"));
    Item huber = addContact(contacts, QStringLiteral("Eva Huber"), QStringLiteral("schweiz"));
    huber.set(QStringLiteral("Birthday"), QStringLiteral("02.03.1980"));
    huber.Save();
    addContact(contacts, QStringLiteral("Sean O'Brien"));
    Item list = contacts.Items().Add(olDistributionList); // lacks the contact fields: never matches
    list.Save();
    const Items found = contacts.Items().Restrict(filter);
    QCOMPARE(found.Count(), lastNames.size());
    QStringList names;
    for (const Item &item : found)
        names << item.text(QStringLiteral("LastName"));
    QCOMPARE(names, lastNames);
    const Item first = contacts.Items().Find(filter);
    QCOMPARE(first.isNull(), lastNames.isEmpty());
    if (!first.isNull())
        QCOMPARE(first.text(QStringLiteral("LastName")), lastNames.first());
}

void tst_StoreCollections::badFiltersAreRefused_data()
{
    QTest::addColumn<QString>("filter");
    QTest::newRow("Hochkomma im Text nicht verdoppelt") << "[HomeAddressCountry] = 'Côte d'Ivoire'";
    QTest::newRow("Anführung offen") << "[LastName] = 'Müller";
    QTest::newRow("unbekannte Eigenschaft") << "[Nachname] = 'Müller'";
    QTest::newRow("ohne Klammern") << "LastName = 'Müller'";
    QTest::newRow("ohne Vergleich") << "[LastName] 'Müller'";
    QTest::newRow("Klammer offen") << "([LastName] = 'Müller'";
}

void tst_StoreCollections::badFiltersAreRefused()
{
    QFETCH(QString, filter);
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    addContact(contacts, QStringLiteral("Hans Müller"));
    try {
        (void)contacts.Items().Restrict(filter);
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrBadFilter));
    }
}

void tst_StoreCollections::findWithoutMatchGivesNullItem()
{
    TempProfile profile;
    const MAPIFolder calendar = TempProfile::folderOf(olFolderCalendar);
    Item holiday = calendar.Items().Add();
    holiday.setSubject(QStringLiteral("Herbstferien (BY)"));
    holiday.Save();
    QVERIFY(!calendar.Items().Find(QStringLiteral("[Subject] = 'Herbstferien (BY)'")).isNull());
    const Item none = calendar.Items().Find(QStringLiteral("[Subject] = 'Osterferien (BY)'"));
    QVERIFY(none.isNull());
    try {
        (void)none.Subject();
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrNoObject));
    }
}

void tst_StoreCollections::restrictionOfRestrictionKeepsBoth()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    addContact(contacts, QStringLiteral("Urs Meier"), QStringLiteral("Schweiz"));
    addContact(contacts, QStringLiteral("Eva Meier"), QStringLiteral("Deutschland"));
    addContact(contacts, QStringLiteral("Urs Huber"), QStringLiteral("Schweiz"));
    const Items swiss = contacts.Items().Restrict(QStringLiteral("[HomeAddressCountry] = 'Schweiz'"));
    const Items swissMeier = swiss.Restrict(QStringLiteral("[LastName] = 'Meier'"));
    QCOMPARE(swiss.Count(), 2);
    QCOMPARE(swissMeier.Count(), 1);
    QCOMPARE(swissMeier.Item(1).text(QStringLiteral("FullName")), QStringLiteral("Urs Meier"));
    // The restriction follows the folder: a new match is counted.
    addContact(contacts, QStringLiteral("Beat Meier"), QStringLiteral("Schweiz"));
    QCOMPARE(swissMeier.Count(), 2);
}

QTEST_GUILESS_MAIN(tst_StoreCollections)
#include "tst_storecollections.moc"
