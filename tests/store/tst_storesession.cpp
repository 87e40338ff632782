// The session: name space, the address book with recipients and another
// user's folders, the table reader with its utilities, Clear and the
// inspector hook.
#include "store/StoreTestProfile.h"
#include "support/TestSupport.h"

#include <QtTest>

namespace {

// Petra shares calendar and contacts, Thomas nothing.
void addOtherUsers()
{
    const MAPIFolder petra = AddAddressBookUser(QStringLiteral("Petra Schneider"), {QStringLiteral("pschneider")},
                                                QStringLiteral("petra.schneider@example.de"));
    SetMailboxAccess(QStringLiteral("Petra Schneider"), olFolderCalendar, true);
    SetMailboxAccess(QStringLiteral("pschneider"), olFolderContacts, true);
    Item meeting = petra.Folders().Item(QStringLiteral("Kalender")).Items().Add();
    meeting.setSubject(QStringLiteral("Teamrunde"));
    meeting.Save();
    AddAddressBookUser(QStringLiteral("Thomas Wagner"), {QStringLiteral("twagner")}, QStringLiteral("thomas.wagner@example.de"));
    SetMailboxAccess(QStringLiteral("Thomas Wagner"), olFolderCalendar, false);
}

} // namespace

class tst_StoreSession : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void namespaceIsMapiOnly();
    void recipientsResolve_data();
    void recipientsResolve();
    void sharedDefaultFolder_data();
    void sharedDefaultFolder();
    void sharedFolderIdsKeepTheirAccess();
    void unsharedFoldersStayClosed();
    void addressBookRefusesClashes();
    void tableReadsSubfoldersInOneGo();
    void tableNeedsMoveToStartAndKnownColumns();
    void clearRunsCleanupAndLogsFailures();
    void inspectorGoesToTheInstalledHandler();
};

void tst_StoreSession::namespaceIsMapiOnly()
{
    TempProfile profile;
    const Application app;
    QCOMPARE(app.Version().left(2), QStringLiteral("10"));
    QCOMPARE(app.GetNamespace(QStringLiteral("mapi")).Folders().Count(), 1);
    QVERIFY_THROWS_EXCEPTION(StoreError, app.GetNamespace(QStringLiteral("IMAP")));
}

void tst_StoreSession::recipientsResolve_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("resolved");
    QTest::addColumn<QString>("name");
    QTest::newRow("Anzeigename") << "Petra Schneider" << true << "Petra Schneider";
    QTest::newRow("andere Schreibung") << "petra SCHNEIDER" << true << "Petra Schneider";
    QTest::newRow("Alias") << "twagner" << true << "Thomas Wagner";
    QTest::newRow("Adresse") << "petra.schneider@example.de" << true << "Petra Schneider";
    QTest::newRow("Leerzeichen außen") << "  twagner " << true << "Thomas Wagner";
    QTest::newRow("leer") << "" << false << "";
    QTest::newRow("unbekannt") << "Max Mustermann" << false << "Max Mustermann";
    QTest::newRow("nur Vorname") << "Petra" << false << "Petra";
}

void tst_StoreSession::recipientsResolve()
{
    QFETCH(QString, text);
    QFETCH(bool, resolved);
    QFETCH(QString, name);
    TempProfile profile;
    addOtherUsers();
    Recipient safe = MAPIUtils::CreateRecipient(text, true, 0);
    QCOMPARE(safe.Resolved(), false);
    QCOMPARE(safe.Resolve(false), resolved);
    QCOMPARE(safe.Resolved(), resolved);
    QCOMPARE(safe.Name(), name);
    Recipient plain = TempProfile::ns().CreateRecipient(text);
    QCOMPARE(plain.Resolve(), resolved);
}

void tst_StoreSession::sharedDefaultFolder_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("error"); // 0: opens
    QTest::newRow("Kalender freigegeben") << "Petra Schneider" << int(olFolderCalendar) << 0;
    QTest::newRow("Kontakte freigegeben, über Alias") << "pschneider" << int(olFolderContacts) << 0;
    QTest::newRow("Posteingang nicht freigegeben") << "Petra Schneider" << int(olFolderInbox) << int(StoreErrAccessDenied);
    QTest::newRow("ausdrücklich verweigert") << "Thomas Wagner" << int(olFolderCalendar) << int(StoreErrAccessDenied);
    QTest::newRow("gar nichts freigegeben") << "twagner" << int(olFolderTasks) << int(StoreErrAccessDenied);
    QTest::newRow("unbekannter Name") << "Max Mustermann" << int(olFolderCalendar) << int(StoreErrNotFound);
    QTest::newRow("kein solcher Ordnertyp") << "Petra Schneider" << 99 << int(StoreErrNotFound);
}

void tst_StoreSession::sharedDefaultFolder()
{
    QFETCH(QString, user);
    QFETCH(int, type);
    QFETCH(int, error);
    TempProfile profile;
    addOtherUsers();
    profile.reopen();
    const NameSpace ns = TempProfile::ns();
    Recipient recipient = ns.CreateRecipient(user);
    try {
        const MAPIFolder folder = ns.GetSharedDefaultFolder(recipient, type);
        QCOMPARE(error, 0);
        QCOMPARE(folder.DefaultFolderType(), type);
        QVERIFY(folder.StoreName().contains(QStringLiteral("Petra Schneider")));
        if (type == olFolderCalendar)
            QCOMPARE(folder.Items().Item(1).Subject(), QStringLiteral("Teamrunde"));
        // The other user's store is not one of the profile's stores.
        QCOMPARE(ns.Folders().Count(), 1);
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), error);
    }
}

void tst_StoreSession::sharedFolderIdsKeepTheirAccess()
{
    TempProfile profile;
    addOtherUsers();
    const NameSpace ns = TempProfile::ns();
    const MAPIFolder calendar = ns.GetSharedDefaultFolder(ns.CreateRecipient(QStringLiteral("Petra Schneider")), olFolderCalendar);
    const MAPIFolder sub = calendar.Folders().Add(QStringLiteral("Urlaub"));
    profile.reopen();
    QCOMPARE(TempProfile::ns().GetFolderFromID(sub.EntryID(), sub.StoreID()).Name(), QStringLiteral("Urlaub"));
    const QString itemId = calendar.Items().Item(1).EntryID();
    QCOMPARE(TempProfile::ns().GetItemFromID(itemId).Subject(), QStringLiteral("Teamrunde"));
}

void tst_StoreSession::unsharedFoldersStayClosed()
{
    TempProfile profile;
    const MAPIFolder karl = AddAddressBookUser(QStringLiteral("Karl Klein"), {}, QString());
    SetMailboxAccess(QStringLiteral("Karl Klein"), olFolderCalendar, true);
    const QString inboxId = karl.Folders().Item(QStringLiteral("Posteingang")).EntryID();
    const NameSpace ns = TempProfile::ns();
    const MAPIFolder calendar = ns.GetSharedDefaultFolder(ns.CreateRecipient(QStringLiteral("Karl Klein")), olFolderCalendar);
    QCOMPARE(calendar.Items().Count(), 0);
    const QList<std::function<void()>> refused = {
        [&] { (void)ns.GetFolderFromID(inboxId); },
        [&] { (void)calendar.Parent().Folders(); },
        [&] { (void)calendar.Parent().Items(); },
    };
    for (const auto &attempt : refused) {
        try {
            attempt();
            QFAIL("no StoreError");
        } catch (const StoreError &e) {
            QCOMPARE(e.number(), int(StoreErrAccessDenied));
        }
    }
    // Access given later counts at once.
    SetMailboxAccess(QStringLiteral("Karl Klein"), olFolderInbox, true);
    QCOMPARE(ns.GetFolderFromID(inboxId).Name(), QStringLiteral("Posteingang"));
}

void tst_StoreSession::addressBookRefusesClashes()
{
    TempProfile profile;
    addOtherUsers();
    QVERIFY_THROWS_EXCEPTION(StoreError, AddAddressBookUser(QStringLiteral("PETRA SCHNEIDER"), {}, QString()));
    QVERIFY_THROWS_EXCEPTION(StoreError, AddAddressBookUser(QStringLiteral("Peter Wagner"), {QStringLiteral("TWAGNER")}, QString()));
    QVERIFY_THROWS_EXCEPTION(StoreError, SetMailboxAccess(QStringLiteral("Niemand"), olFolderCalendar, true));
    const QList<AddressBookEntry> book = AddressBook();
    QCOMPARE(book.size(), 2);
    QCOMPARE(book.at(0).grantedFolderTypes, (QList<int>{olFolderCalendar, olFolderContacts}));
    QVERIFY(book.at(1).grantedFolderTypes.isEmpty());
}

void tst_StoreSession::tableReadsSubfoldersInOneGo()
{
    TempProfile profile;
    const MAPIFolder root = TempProfile::ns().Folders().Item(1);
    root.Folders().Item(QStringLiteral("Kontakte")).Folders().Add(QStringLiteral("Kunden"));
    MAPITable table;
    table.setItem(root.Folders());
    table.setColumns({PR_ENTRYID, PR_STORE_ENTRYID, PR_DISPLAY_NAME, PR_CONTAINER_CLASS});
    table.MoveToStart();
    QCOMPARE(table.RowCount(), 9);
    const QList<QVariantList> first = table.GetRows(4);
    const QList<QVariantList> rest = table.GetRows(table.RowCount());
    QCOMPARE(first.size(), 4);
    QCOMPARE(rest.size(), 5);
    const QVariantList contacts = rest.at(1);
    QCOMPARE(contacts.at(2).toString(), QStringLiteral("Kontakte"));
    QCOMPARE(contacts.at(3).toString(), QStringLiteral("IPF.Contact"));
    QCOMPARE(contacts.at(0).typeId(), int(QMetaType::QByteArray));
    const MAPIFolder folder = TempProfile::ns().GetFolderFromID(MAPIUtils::BinaryToHex(contacts.at(0)),
                                                                MAPIUtils::BinaryToHex(contacts.at(1)));
    QCOMPARE(folder.Name(), QStringLiteral("Kontakte"));
    QCOMPARE(MAPIUtils::BinaryToHex(contacts.at(1)), root.StoreID());
    QCOMPARE(MAPIUtils::BinaryToHex(QStringLiteral("kein Binärwert")), QString());

    // A folder without container class gives no string in that column.
    AddStore(QStringLiteral("Archiv"));
    const MAPIFolder archive = TempProfile::ns().Folders().Item(2);
    MAPITable roots;
    roots.setColumns({PR_DISPLAY_NAME, PR_CONTAINER_CLASS});
    roots.setItem(TempProfile::ns().Folders());
    roots.MoveToStart();
    QCOMPARE(roots.RowCount(), 2);
    QVERIFY(!roots.GetRows(2).at(1).at(1).isValid());
    MAPITable empty;
    empty.setItem(archive.Folders());
    empty.setColumns({PR_ENTRYID});
    empty.MoveToStart();
    QCOMPARE(empty.RowCount(), 0);
}

void tst_StoreSession::tableNeedsMoveToStartAndKnownColumns()
{
    TempProfile profile;
    MAPITable table;
    table.setItem(TempProfile::ns().Folders().Item(1).Folders());
    QVERIFY_THROWS_EXCEPTION(StoreError, table.setColumns({PR_ENTRYID, 0x0E070003}));
    table.setColumns({PR_ENTRYID});
    QVERIFY_THROWS_EXCEPTION(StoreError, (void)table.RowCount());
}

void tst_StoreSession::clearRunsCleanupAndLogsFailures()
{
    TempProfile profile;
    TestEnvironment environment(false);
    MessageRecorder boxes;
    Item item = TempProfile::folderOf(olFolderNotes).Items().Add();
    item.setBody(QStringLiteral("Notiz"));
    item.Save();
    Clear();
    QCOMPARE(boxes.count(), 0);
    QVERIFY(environment.readLog().isEmpty());
    // A profile that cannot be opened: the failure is logged, never shown.
    SetProfileFolder(profile.scratch(QStringLiteral("kaputt")));
    QDir().mkpath(profile.scratch(QStringLiteral("kaputt")));
    QFile file(profile.scratch(QStringLiteral("kaputt/Profil.vxprofile")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("kaputt");
    file.close();
    Clear();
    QCOMPARE(boxes.count(), 0);
    QVERIFY(environment.readLog().contains(QStringLiteral("Clear")));
}

void tst_StoreSession::inspectorGoesToTheInstalledHandler()
{
    TempProfile profile;
    Item item = TempProfile::folderOf(olFolderContacts).Items().Add();
    item.set(QStringLiteral("FullName"), QStringLiteral("Anna Berg"));
    item.Save();
    const InspectorHandler before = SetInspectorHandler(nullptr);
    QVERIFY_THROWS_EXCEPTION(StoreError, item.GetInspector().Display());
    QString shown;
    SetInspectorHandler([&](const Item &i, bool modal) { shown = i.text(QStringLiteral("FullName")) + (modal ? "!" : ""); });
    TempProfile::ns().GetItemFromID(item.EntryID()).GetInspector().Display();
    QCOMPARE(shown, QStringLiteral("Anna Berg"));
    SetInspectorHandler(before);
}

QTEST_GUILESS_MAIN(tst_StoreSession)
#include "tst_storesession.moc"
