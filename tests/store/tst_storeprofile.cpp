// Profiles: the default store and its folders, more stores, reopening,
// folder IDs, and damaged files that are refused and left untouched.
#include "store/StoreTestProfile.h"
#include "support/TestSupport.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <unistd.h>

namespace {

QByteArray digest(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

// Reads everything the profile holds; throws StoreError on the first failure.
int readEverything()
{
    int items = 0;
    std::function<void(const Folders &)> walk = [&](const Folders &folders) {
        for (const MAPIFolder &folder : folders) {
            for (const Item &item : folder.Items()) {
                (void)item.Subject();
                ++items;
            }
            walk(folder.Folders());
        }
    };
    walk(Application().GetNamespace().Folders());
    return items;
}

} // namespace

class tst_StoreProfile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void defaultStoreHasDefaultFolders_data();
    void defaultStoreHasDefaultFolders();
    void profileIsCreatedOnceAndFoundAgain();
    void furtherStoresFollowTheDefaultStore();
    void folderAddTakesKindOfParentOrType();
    void folderNamesAreUniqueIgnoringCase();
    void unusualFolderNamesAreFoundAgain_data();
    void unusualFolderNamesAreFoundAgain();
    void folderIdsResolveAndGoneIdsFail_data();
    void folderIdsResolveAndGoneIdsFail();
    void damagedStoreIsRefusedAndUntouched_data();
    void damagedStoreIsRefusedAndUntouched();
    void damagedProfileFileIsRefusedAndUntouched();
    void databaseFailureIsToldInGerman();
    void readOnlyProfileIsNamedAsSuch();
    void storeFileOfAnotherVersionIsRefused();
};

void tst_StoreProfile::defaultStoreHasDefaultFolders_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("containerClass");
    QTest::addColumn<QString>("messageClass");
    QTest::addColumn<int>("type");
    QTest::newRow("Posteingang") << "Posteingang" << "IPF.Note" << "IPM.Note" << int(olFolderInbox);
    QTest::newRow("Gesendete Objekte") << "Gesendete Objekte" << "IPF.Note" << "IPM.Note" << int(olFolderSentMail);
    QTest::newRow("Gelöschte Objekte") << "Gelöschte Objekte" << "IPF.Note" << "IPM.Note" << int(olFolderDeletedItems);
    QTest::newRow("Entwürfe") << "Entwürfe" << "IPF.Note" << "IPM.Note" << int(olFolderDrafts);
    QTest::newRow("Kalender") << "Kalender" << "IPF.Appointment" << "IPM.Appointment" << int(olFolderCalendar);
    QTest::newRow("Kontakte") << "Kontakte" << "IPF.Contact" << "IPM.Contact" << int(olFolderContacts);
    QTest::newRow("Aufgaben") << "Aufgaben" << "IPF.Task" << "IPM.Task" << int(olFolderTasks);
    QTest::newRow("Notizen") << "Notizen" << "IPF.StickyNote" << "IPM.StickyNote" << int(olFolderNotes);
    QTest::newRow("Journal") << "Journal" << "IPF.Journal" << "IPM.Activity" << int(olFolderJournal);
}

void tst_StoreProfile::defaultStoreHasDefaultFolders()
{
    QFETCH(QString, name);
    QFETCH(QString, containerClass);
    QFETCH(QString, messageClass);
    QFETCH(int, type);
    TempProfile profile;
    const Folders roots = TempProfile::ns().Folders();
    QCOMPARE(roots.Count(), 1);
    const MAPIFolder root = roots.Item(1);
    QCOMPARE(root.Name(), QStringLiteral("Persönliche Ordner"));
    QCOMPARE(root.ContainerClass(), QString());
    const MAPIFolder folder = root.Folders().Item(name);
    QCOMPARE(folder.ContainerClass(), containerClass);
    QCOMPARE(folder.DefaultMessageClass(), messageClass);
    QCOMPARE(folder.DefaultFolderType(), type);
    QCOMPARE(TempProfile::ns().GetDefaultFolder(type), folder);
    QCOMPARE(folder.StoreID(), root.StoreID());
    QCOMPARE(folder.Parent(), root);
    QCOMPARE(folder.Items().Add().MessageClass(), messageClass);
}

void tst_StoreProfile::profileIsCreatedOnceAndFoundAgain()
{
    TempProfile profile;
    QVERIFY(!ProfileExists(profile.folder()));
    const QString storeId = TempProfile::ns().Folders().Item(1).StoreID();
    QVERIFY(ProfileExists(profile.folder()));
    CreateProfile(profile.folder()); // an existing profile stays as it is
    profile.reopen();
    QCOMPARE(TempProfile::ns().Folders().Count(), 1);
    QCOMPARE(TempProfile::ns().Folders().Item(1).StoreID(), storeId);
    QCOMPARE(QDir(profile.folder()).entryList({QStringLiteral("*.vxstore")}).size(), 1);
}

void tst_StoreProfile::furtherStoresFollowTheDefaultStore()
{
    TempProfile profile;
    const MAPIFolder archive = AddStore(QStringLiteral("Archiv"));
    const MAPIFolder old = AddStore(QStringLiteral("Alte Daten"), true);
    QCOMPARE(archive.Folders().Count(), 0);
    QCOMPARE(old.Folders().Count(), 9);
    profile.reopen();
    QStringList names;
    for (const MAPIFolder &root : TempProfile::ns().Folders())
        names << root.Name();
    QCOMPARE(names, (QStringList{"Persönliche Ordner", "Archiv", "Alte Daten"}));
    QVERIFY(archive.StoreID() != old.StoreID());
    // The default folders are those of the first store.
    QCOMPARE(TempProfile::ns().GetDefaultFolder(olFolderContacts).StoreName(), QStringLiteral("Persönliche Ordner"));
}

void tst_StoreProfile::folderAddTakesKindOfParentOrType()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const MAPIFolder sub = contacts.Folders().Add(QStringLiteral("Duplikate (erstellt von Varnex)"));
    QCOMPARE(sub.DefaultMessageClass(), QStringLiteral("IPM.Contact"));
    QCOMPARE(sub.ContainerClass(), QStringLiteral("IPF.Contact"));
    QCOMPARE(sub.DefaultFolderType(), 0);
    const MAPIFolder root = contacts.Parent();
    QCOMPARE(root.Folders().Add(QStringLiteral("Ablage")).ContainerClass(), QStringLiteral("IPF.Note"));
    QCOMPARE(root.Folders().Add(QStringLiteral("Termine 2"), olFolderCalendar).DefaultMessageClass(),
             QStringLiteral("IPM.Appointment"));
    profile.reopen();
    const MAPIFolder again = TempProfile::folderOf(olFolderContacts).Folders().Item(QStringLiteral("duplikate (ERSTELLT von varnex)"));
    QCOMPARE(again.EntryID(), sub.EntryID());
    QVERIFY_THROWS_EXCEPTION(StoreError, TempProfile::ns().Folders().Add(QStringLiteral("Neu")));
}

void tst_StoreProfile::folderNamesAreUniqueIgnoringCase()
{
    TempProfile profile;
    Folders folders = TempProfile::folderOf(olFolderContacts).Parent().Folders();
    try {
        folders.Add(QStringLiteral("KONTAKTE"));
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrCollision));
    }
    QVERIFY_THROWS_EXCEPTION(StoreError, folders.Add(QStringLiteral("  ")));
    QVERIFY(folders.Find(QStringLiteral("Gibt es nicht")).isNull());
    QVERIFY_THROWS_EXCEPTION(StoreError, folders.Item(QStringLiteral("Gibt es nicht")));
}

void tst_StoreProfile::unusualFolderNamesAreFoundAgain_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("halbes Paar vorn") << QString(QChar(0xD83D)) + QStringLiteral("Kunden");
    QTest::newRow("halbes Paar hinten") << QStringLiteral("Kunden") + QString(QChar(0xDE00));
    QTest::newRow("halbes Paar vor einem Zeichen") << QStringLiteral("A") + QString(QChar(0xD83D)) + QStringLiteral("B");
    QTest::newRow("ganzes Paar") << QStringLiteral("Kunden \U0001F600");
    QTest::newRow("Steuerzeichen") << QStringLiteral("Kunden\tNord\x01");
}

// A folder is found again by the name it was created with, after a reopen.
void tst_StoreProfile::unusualFolderNamesAreFoundAgain()
{
    QFETCH(QString, name);
    TempProfile profile;
    TempProfile::folderOf(olFolderContacts).Folders().Add(name);
    profile.reopen();
    const MAPIFolder found = TempProfile::folderOf(olFolderContacts).Folders().Find(name);
    QVERIFY(!found.isNull());
    QCOMPARE(TempProfile::folderOf(olFolderContacts).Folders().Count(), 1);
}

void tst_StoreProfile::folderIdsResolveAndGoneIdsFail_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("Element-ID statt Ordner-ID") << "item";
    QTest::newRow("fremde StoreID") << "otherStore";
    QTest::newRow("verstümmelte ID") << "garbage";
    QTest::newRow("leere ID") << "empty";
    QTest::newRow("Ordner eines entfernten Speichers") << "unknownStore";
}

void tst_StoreProfile::folderIdsResolveAndGoneIdsFail()
{
    QFETCH(QString, kind);
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    const MAPIFolder archive = AddStore(QStringLiteral("Archiv"));
    QCOMPARE(TempProfile::ns().GetFolderFromID(contacts.EntryID(), contacts.StoreID()), contacts);
    QCOMPARE(TempProfile::ns().GetFolderFromID(contacts.EntryID().toLower()), contacts);
    Item item = contacts.Items().Add();
    item.Save();
    QString entryId = contacts.EntryID();
    QString storeId = contacts.StoreID();
    if (kind == u"item")
        entryId = item.EntryID();
    else if (kind == u"otherStore")
        storeId = archive.StoreID();
    else if (kind == u"garbage")
        entryId = QStringLiteral("ZZ") + entryId.mid(2);
    else if (kind == u"empty")
        entryId.clear();
    else
        entryId = entryId.left(8) + QString(32, u'A') + entryId.mid(40);
    try {
        (void)TempProfile::ns().GetFolderFromID(entryId, storeId);
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrNotFound));
    }
}

void tst_StoreProfile::damagedStoreIsRefusedAndUntouched_data()
{
    QTest::addColumn<QString>("damage");
    QTest::newRow("leere Datei") << "empty";
    QTest::newRow("Textdatei") << "text";
    QTest::newRow("fremde SQLite-Datenbank") << "foreign";
    QTest::newRow("Kopf zerstört") << "header";
    QTest::newRow("Seiten überschrieben") << "pages";
    QTest::newRow("eine Seite der Elemente überschrieben") << "itempage";
    QTest::newRow("abgeschnitten") << "truncated";
}

void tst_StoreProfile::damagedStoreIsRefusedAndUntouched()
{
    QFETCH(QString, damage);
    TempProfile profile;
    MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    for (int n = 0; n < 300; ++n) {
        Item item = contacts.Items().Add();
        item.set(QStringLiteral("FullName"), QStringLiteral("Kontakt %1").arg(n));
        item.setBody(QString(500, u'x'));
        item.Save();
    }
    const QString path = QDir(profile.folder()).filePath(QStringLiteral("store1.vxstore"));
    contacts = MAPIFolder();
    SetProfileFolder(profile.scratch(QStringLiteral("elsewhere"))); // closes the files
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    QFile file(path);
    if (damage == u"foreign") {
        QFile::remove(path);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("foreign"));
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QSqlQuery(db).exec(QStringLiteral("CREATE TABLE kunden(name TEXT)"));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("foreign"));
    } else {
        QVERIFY(file.open(QIODevice::ReadWrite));
        if (damage == u"empty" || damage == u"text")
            file.resize(0);
        if (damage == u"text")
            file.write("Name;Telefon\nMüller;0171 1234567\n");
        if (damage == u"header")
            file.write("kaputt kaputt kaputt kaputt");
        if (damage == u"pages") {
            for (qint64 at = 4096; at < file.size(); at += 4096 * 3) {
                file.seek(at);
                file.write(QByteArray(4096, '\xA5'));
            }
        }
        if (damage == u"itempage") {
            file.seek(file.size() - 4 * 4096);
            file.write(QByteArray(4096, '\xA5'));
        }
        if (damage == u"truncated")
            file.resize(file.size() / 3);
        file.close();
    }
    const QByteArray before = digest(path);
    profile.reopen();
    try {
        readEverything();
        QFAIL("the damage went unnoticed");
    } catch (const StoreError &e) {
        QVERIFY2(e.number() == StoreErrCorrupt || e.number() == StoreErrDisk, qPrintable(e.description()));
        QVERIFY2(e.description().contains(QStringLiteral("store1.vxstore")), qPrintable(e.description()));
    }
    // Another try, a new item in the default folder: still refused.
    QVERIFY_THROWS_EXCEPTION(StoreError, TempProfile::folderOf(olFolderContacts).Items().Add().Save());
    profile.reopen();
    QCOMPARE(digest(path), before);
}

void tst_StoreProfile::damagedProfileFileIsRefusedAndUntouched()
{
    TempProfile profile;
    (void)TempProfile::ns();
    SetProfileFolder(profile.scratch(QStringLiteral("elsewhere")));
    const QString path = QDir(profile.folder()).filePath(QStringLiteral("Profil.vxprofile"));
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("kein Profil");
    file.close();
    const QByteArray before = digest(path);
    profile.reopen();
    try {
        Application app;
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrCorrupt));
        QVERIFY(e.description().contains(QStringLiteral("Profildatei")));
    }
    QCOMPARE(digest(path), before);
}

// SQLite's English text goes to the error log, the user reads German.
void tst_StoreProfile::databaseFailureIsToldInGerman()
{
    TestEnvironment env(false, false);
    TempProfile profile;
    (void)TempProfile::ns();
    SetProfileFolder(profile.scratch(QStringLiteral("elsewhere")));
    const QString path = QDir(profile.folder()).filePath(QStringLiteral("Profil.vxprofile"));
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(3 * 4096); // the table of the stores
    file.write(QByteArray(4096, '\xA5'));
    file.close();
    profile.reopen();
    try {
        (void)Application().GetNamespace().Folders().Count();
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QVERIFY2(e.description().contains(QStringLiteral("beschädigt")), qPrintable(e.description()));
        QVERIFY2(!e.description().contains(QStringLiteral("malformed")), qPrintable(e.description()));
    }
    QVERIFY2(env.readLog().contains(QStringLiteral("malformed")), qPrintable(env.readLog()));
}

// A profile the user may read but not write is no damaged profile.
void tst_StoreProfile::readOnlyProfileIsNamedAsSuch()
{
    TempProfile profile;
    (void)TempProfile::ns();
    SetProfileFolder(profile.scratch(QStringLiteral("elsewhere"))); // closes the files
    const QFileDevice::Permissions readOnly = QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    const QFileDevice::Permissions enter = readOnly | QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther;
    QVERIFY(QFile::setPermissions(QFileInfo(profile.folder()).path(), enter));
    QVERIFY(QFile::setPermissions(profile.folder(), enter));
    for (const QFileInfo &file : QDir(profile.folder()).entryInfoList(QDir::Files))
        QVERIFY(QFile::setPermissions(file.filePath(), readOnly));
    // As root every file is writable: the test takes another user's rights.
    const bool asRoot = geteuid() == 0;
    if (asRoot)
        QVERIFY(setresuid(65534, 65534, 0) == 0);
    QString description;
    try {
        profile.reopen();
        (void)TempProfile::ns().Folders().Count();
    } catch (const StoreError &e) {
        description = e.description();
    }
    if (asRoot)
        QVERIFY(setresuid(0, 0, 0) == 0);
    QFile::setPermissions(profile.folder(), enter | QFileDevice::WriteOwner);
    QFile::setPermissions(QFileInfo(profile.folder()).path(), enter | QFileDevice::WriteOwner);
    QVERIFY2(description.contains(QStringLiteral("keine Schreibberechtigung")), qPrintable(description));
    QVERIFY2(!description.contains(QStringLiteral("beschädigt")), qPrintable(description));
}

void tst_StoreProfile::storeFileOfAnotherVersionIsRefused()
{
    TempProfile profile;
    (void)TempProfile::ns();
    SetProfileFolder(profile.scratch(QStringLiteral("elsewhere")));
    const QString path = QDir(profile.folder()).filePath(QStringLiteral("store1.vxstore"));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("version"));
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QVERIFY(QSqlQuery(db).exec(QStringLiteral("UPDATE meta SET value = '99' WHERE key = 'version'")));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("version"));
    profile.reopen();
    try {
        (void)TempProfile::folderOf(olFolderContacts);
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QVERIFY(e.description().contains(QStringLiteral("neueren")));
    }
}

QTEST_GUILESS_MAIN(tst_StoreProfile)
#include "tst_storeprofile.moc"
