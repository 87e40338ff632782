// Test faults: chosen items fail for real on read, save, delete and move,
// items vanish, stores answer slowly. A failed change leaves the file as it
// was.
#include "store/StoreTestProfile.h"
#include "support/DamagedItem.h"

#include <QElapsedTimer>
#include <QtTest>

namespace {

Item savedContact(const QString &fullName)
{
    Item item = TempProfile::folderOf(olFolderContacts).Items().Add();
    item.set(QStringLiteral("FullName"), fullName);
    item.Save();
    return item;
}

} // namespace

class tst_StoreFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void faultKindsHitOnlyTheirOperation_data();
    void faultKindsHitOnlyTheirOperation();
    void failedSaveLeavesStoredItemAsItWas();
    void failedFirstSaveLeavesNoItem();
    void faultCountRunsOut();
    void vanishedItemIsGoneForEveryone();
    void slowStoreWaitsPerFolderAccess();
    void damagedItemDataIsRefusedAndKept_data();
    void damagedItemDataIsRefusedAndKept();
};

void tst_StoreFaults::faultKindsHitOnlyTheirOperation_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("fails");
    const QStringList operations = {"read", "save", "delete", "move"};
    const QList<std::pair<int, QString>> kinds = {{StoreFaults::FailRead, "read"}, {StoreFaults::FailSave, "save"},
                                                  {StoreFaults::FailDelete, "delete"}, {StoreFaults::FailMove, "move"}};
    const QMap<QString, QString> german = {{"read", "Lesen"}, {"save", "Speichern"}, {"delete", "Löschen"}, {"move", "Verschieben"}};
    for (const auto &[kind, kindName] : kinds)
        for (const QString &operation : operations)
            QTest::addRow("Fehler beim %s, %s", qPrintable(german[kindName]), qPrintable(german[operation]))
                << kind << operation << (kindName == operation);
}

void tst_StoreFaults::faultKindsHitOnlyTheirOperation()
{
    QFETCH(int, kind);
    QFETCH(QString, operation);
    QFETCH(bool, fails);
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const MAPIFolder target = contacts.Folders().Add(QStringLiteral("Duplikate (erstellt von Varnex)"));
    Item item = savedContact(QStringLiteral("Hans Müller"));
    const QString entryId = item.EntryID();
    StoreFaults::FailItem(entryId, kind);
    bool failed = false;
    try {
        if (operation == u"read")
            (void)item.get(QStringLiteral("LastName"));
        else if (operation == u"save")
            item.Save();
        else if (operation == u"delete")
            item.Delete();
        else
            item.Move(target);
    } catch (const StoreError &e) {
        failed = true;
        QCOMPARE(e.number(), int(StoreErrCallFailed));
    }
    QCOMPARE(failed, fails);
    // EntryID stays readable for the error text of a tolerant run.
    QVERIFY(!item.EntryID().isEmpty());
    StoreFaults::Reset();
    profile.reopen();
    // A failed delete or move leaves the item where it was.
    const int stays = (operation == u"delete" || operation == u"move") && !fails ? 0 : 1;
    QCOMPARE(TempProfile::folderOf(olFolderContacts).Items().Count(), stays);
    if (stays)
        QCOMPARE(TempProfile::ns().GetItemFromID(entryId).text(QStringLiteral("LastName")), QStringLiteral("Müller"));
}

void tst_StoreFaults::failedSaveLeavesStoredItemAsItWas()
{
    TempProfile profile;
    Item item = savedContact(QStringLiteral("Hans Müller"));
    item.Attachments().AddData("x", QStringLiteral("neu.txt"));
    item.UserProperties().Add(QStringLiteral("VX Backup Fullname"), olText).setValue(QStringLiteral("Hans Müller"));
    item.set(QStringLiteral("FullName"), QStringLiteral("Müller, Hans-Peter"));
    StoreFaults::FailItem(item.EntryID(), StoreFaults::FailSave, 1);
    QVERIFY_THROWS_EXCEPTION(StoreError, item.Save());
    QVERIFY(item.isDirty());
    const QString entryId = item.EntryID();
    {
        // What another program sees: the item as saved before.
        profile.reopen();
        const Item stored = TempProfile::ns().GetItemFromID(entryId);
        QCOMPARE(stored.text(QStringLiteral("FullName")), QStringLiteral("Hans Müller"));
        QCOMPARE(stored.Attachments().Count(), 0);
        QCOMPARE(stored.UserProperties().Count(), 0);
    }
    // The fault was for one save: the handle saves now, with all changes.
    item.Save();
    profile.reopen();
    const Item stored = TempProfile::ns().GetItemFromID(entryId);
    QCOMPARE(stored.text(QStringLiteral("FirstName")), QStringLiteral("Hans-Peter"));
    QCOMPARE(stored.Attachments().Count(), 1);
    QCOMPARE(stored.UserProperties().Count(), 1);
}

void tst_StoreFaults::failedFirstSaveLeavesNoItem()
{
    TempProfile profile;
    Item item = TempProfile::folderOf(olFolderContacts).Items().Add();
    item.set(QStringLiteral("FullName"), QStringLiteral("Neu Anlage"));
    // Row numbers only grow: the new item gets the number after its twin's
    // (the last 16 hexadecimal digits of an EntryID).
    Item twin = savedContact(QStringLiteral("Zwilling"));
    const QString twinId = twin.EntryID();
    const qulonglong nextRow = twinId.right(16).toULongLong(nullptr, 16) + 1;
    const QString nextId = twinId.left(twinId.size() - 16) + QString::number(nextRow, 16).toUpper().rightJustified(16, u'0');
    StoreFaults::FailItem(nextId, StoreFaults::FailSave);
    QVERIFY_THROWS_EXCEPTION(StoreError, item.Save());
    QCOMPARE(item.EntryID(), QString());
    QCOMPARE(TempProfile::folderOf(olFolderContacts).Items().Count(), 1);
    StoreFaults::Reset();
    item.Save();
    QCOMPARE(TempProfile::folderOf(olFolderContacts).Items().Count(), 2);
}

void tst_StoreFaults::faultCountRunsOut()
{
    TempProfile profile;
    const Item item = savedContact(QStringLiteral("Anna Berg"));
    StoreFaults::FailItem(item.EntryID(), StoreFaults::FailRead | StoreFaults::FailSave, 2);
    QVERIFY_THROWS_EXCEPTION(StoreError, (void)item.Subject());
    QVERIFY_THROWS_EXCEPTION(StoreError, (void)item.Class());
    QCOMPARE(item.Class(), int(olContact));
    QCOMPARE(item.text(QStringLiteral("LastName")), QStringLiteral("Berg"));
}

void tst_StoreFaults::vanishedItemIsGoneForEveryone()
{
    TempProfile profile;
    savedContact(QStringLiteral("Anna Berg"));
    Item item = savedContact(QStringLiteral("Hans Müller"));
    savedContact(QStringLiteral("Eva Huber"));
    const Items items = TempProfile::folderOf(olFolderContacts).Items();
    QCOMPARE(items.Count(), 3);
    StoreFaults::Vanish(item.EntryID());
    QVERIFY_THROWS_EXCEPTION(StoreError, TempProfile::ns().GetItemFromID(item.EntryID()));
    try {
        item.Save();
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrNotFound));
    }
    QVERIFY_THROWS_EXCEPTION(StoreError, item.Delete());
    QCOMPARE(items.Count(), 2);
    QCOMPARE(items.Item(2).text(QStringLiteral("LastName")), QStringLiteral("Huber"));
}

void tst_StoreFaults::slowStoreWaitsPerFolderAccess()
{
    TempProfile profile;
    const MAPIFolder slow = AddStore(QStringLiteral("Langsam"), true);
    StoreFaults::SetStoreDelay(slow.StoreID(), 40);
    QElapsedTimer timer;
    timer.start();
    MAPITable table;
    table.setItem(slow.Folders());
    table.setColumns({PR_ENTRYID});
    table.MoveToStart();
    for (const QVariantList &row : table.GetRows(table.RowCount()))
        (void)TempProfile::ns().GetFolderFromID(MAPIUtils::BinaryToHex(row.at(0)));
    // One wait for the table and one for each of the nine folders.
    QVERIFY2(timer.elapsed() >= 10 * 40, qPrintable(QString::number(timer.elapsed())));
}

void tst_StoreFaults::damagedItemDataIsRefusedAndKept_data()
{
    QTest::addColumn<int>("damage");
    QTest::addColumn<QString>("access");
    for (const auto &[name, damage] : ItemDamages())
        for (const char *access : {"lesen", "Benutzerfelder", "ändern", "speichern", "in anderen Speicher"})
            QTest::addRow("%s, %s", name, access) << int(damage) << QString::fromUtf8(access);
}

// Damaged bytes are refused like a failed read, whichever access meets them
// first, and never written back over.
void tst_StoreFaults::damagedItemDataIsRefusedAndKept()
{
    QFETCH(int, damage);
    QFETCH(QString, access);
    TempProfile profile;
    const MAPIFolder archive = AddStore(QStringLiteral("Archiv"), true).Folders().Item(QStringLiteral("Kontakte"));
    Item item = savedContact(QStringLiteral("Hans Müller"));
    item.UserProperties().Add(QStringLiteral("Notiz"), olText).setValue(QStringLiteral("frei"));
    item.Save();
    const QString entryId = item.EntryID();
    const QByteArray stored = DamageItemData(entryId, ItemDamage(damage));
    try {
        Item again = TempProfile::ns().GetItemFromID(entryId);
        if (access == u"lesen")
            (void)again.get(QStringLiteral("LastName"));
        else if (access == u"Benutzerfelder")
            (void)again.UserProperties().Count();
        else if (access == u"ändern")
            again.set(QStringLiteral("FirstName"), QStringLiteral("Jan"));
        else if (access == u"speichern")
            again.Save();
        else
            (void)again.Move(TempProfile::ns().GetFolderFromID(archive.EntryID(), archive.StoreID()));
        QFAIL("damaged data was accepted");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrCorrupt));
        QCOMPARE(e.description(), QStringLiteral("Die Daten eines Elements sind beschädigt."));
    }
    profile.reopen();
    QCOMPARE(StoredItemData(entryId), stored);
    QCOMPARE(TempProfile::folderOf(olFolderContacts).Items().Count(), 1);
}

QTEST_GUILESS_MAIN(tst_StoreFaults)
#include "tst_storefaults.moc"
