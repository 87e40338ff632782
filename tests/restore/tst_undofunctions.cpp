// Restore of the contact backups over a real temporary store: both kinds,
// twice, after one and after two telephone runs, with backups of only some
// fields, empty backups, other items in the folder, and a failing save that
// ends the restore with error 401.
#include "restore/BackupFunctions.h"
#include "restore/UndoFunctions.h"
#include "store/StoreTestProfile.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"
#include "frame/RunHost.h"
#include "telephone/ContactTelNrRun.h"

#include <QTest>

using Fields = QList<QPair<QString, QString>>;
Q_DECLARE_METATYPE(Fields)

class tst_UndoFunctions : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { PinGermanLocale(); }
    void init();
    void cleanup();
    void restoreKind_data();
    void restoreKind();
    void telephoneRunRestoredTwice();
    void restoreGivesValueBeforeLastRun();
    void unknownKindDoesNothing();
    void otherItemsCountedNotTouched();
    void failingSaveEndsWith401();

private:
    Item addContact(const Fields &fields);
    Item stored(const QString &entryId);
    [[nodiscard]] static MAPIFolder contacts() { return TempProfile::folderOf(olFolderContacts); }
    int restore(const QString &kind) { return RestoreContactBackupsIn({contacts()}, contacts().Items().Count(), kind); }

    TestEnvironment *m_env = nullptr;
    TempProfile *m_profile = nullptr;
    MessageRecorder *m_boxes = nullptr;
    QuietRunHost m_host;
};

void tst_UndoFunctions::init()
{
    m_env = new TestEnvironment(false, false);
    CopyDefaultSettings(*m_env);
    QVERIFY(WriteSampleTelDb(m_env->folder()));
    m_profile = new TempProfile;
    m_boxes = new MessageRecorder;
    m_host = QuietRunHost();
    SetRunHost(&m_host);
}

void tst_UndoFunctions::cleanup()
{
    SetRunHost(nullptr);
    delete m_boxes;
    delete m_profile;
    delete m_env;
}

Item tst_UndoFunctions::addContact(const Fields &fields)
{
    Item contact = contacts().Items().Add();
    for (const auto &[name, value] : fields)
        contact.set(name, value);
    contact.Save();
    return contact;
}

Item tst_UndoFunctions::stored(const QString &entryId)
{
    m_profile->reopen();
    return TempProfile::ns().GetItemFromID(entryId);
}

void tst_UndoFunctions::restoreKind_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<Fields>("present");  // the fields as they are now
    QTest::addColumn<Fields>("backups");  // field, backup value
    QTest::addColumn<Fields>("expected"); // the fields after the restore
    QTest::addColumn<QString>("message");
    QTest::newRow("Telefon, nur einige Felder gesichert")
        << "Telephone" << Fields{{"HomeTelephoneNumber", "+49 (30) 1"}, {"PagerNumber", "neu"}}
        << Fields{{"HomeTelephoneNumber", "030 1"}}
        << Fields{{"HomeTelephoneNumber", "030 1"}, {"PagerNumber", "neu"}}
        << "Telefonnummern bei 1 Kontakten wiederhergestellt.";
    QTest::newRow("Telefon, leere Sicherung leert das Feld")
        << "Telephone" << Fields{{"OtherFaxNumber", "Fax: 123"}} << Fields{{"OtherFaxNumber", ""}}
        << Fields{{"OtherFaxNumber", ""}} << "Telefonnummern bei 1 Kontakten wiederhergestellt.";
    QTest::newRow("Namen, alle neun")
        << "Names"
        << Fields{{"FirstName", "Anna"}, {"LastName", "Muster"}, {"FileAs", "Muster, Anna"}, {"Subject", "Anna Muster"},
                  {"CompanyName", ""}}
        << Fields{{"Fullname", "Dr. Anna Muster"}, {"FirstName", "Anna"}, {"MiddleName", ""}, {"LastName", "Muster"},
                  {"Suffix", ""}, {"Title", "Dr."}, {"FileAs", "Dr. Anna Muster"}, {"Subject", "Dr. Anna Muster"},
                  {"CompanyName", "Muster AG"}}
        << Fields{{"FullName", "Dr. Anna Muster"}, {"Title", "Dr."}, {"FileAs", "Dr. Anna Muster"},
                  {"CompanyName", "Muster AG"}}
        << "Namen bei 1 Kontakten wiederhergestellt.";
    QTest::newRow("Namen lassen Telefonsicherungen liegen")
        << "Names" << Fields{{"HomeTelephoneNumber", "+49 (30) 1"}} << Fields{{"HomeTelephoneNumber", "030 1"}}
        << Fields{{"HomeTelephoneNumber", "+49 (30) 1"}} << "Namen bei 0 Kontakten wiederhergestellt.";
}

void tst_UndoFunctions::restoreKind()
{
    QFETCH(QString, kind);
    QFETCH(Fields, present);
    QFETCH(Fields, backups);
    QFETCH(Fields, expected);
    QFETCH(QString, message);
    Item contact = addContact(present);
    for (const auto &[field, value] : backups)
        WriteBackup(contact, field, value);
    contact.Save();
    const bool restores = !message.contains(QStringLiteral(" 0 "));
    QCOMPARE(restore(kind), restores ? 1 : 0);
    QCOMPARE(m_boxes->last().prompt, message);
    QCOMPARE(m_boxes->last().title, QStringLiteral("Info!"));
    QCOMPARE(m_boxes->last().buttons, int(MsgInformation));
    const Item after = stored(contact.EntryID());
    for (const auto &[field, value] : expected)
        QCOMPARE(after.text(field), value);
    QCOMPARE(after.UserProperties().Count(), restores ? 0 : int(backups.size()));
}

void tst_UndoFunctions::telephoneRunRestoredTwice()
{
    const QString one = addContact({{"HomeTelephoneNumber", "030 1"}, {"BusinessFaxNumber", "0221 2"}}).EntryID();
    const QString two = addContact({{"MobileTelephoneNumber", "0221/3-4"}}).EntryID();
    const QString none = addContact({{"HomeTelephoneNumber", "+49 (30) 5"}}).EntryID();
    QCOMPARE(RunContactTelNrOn({contacts()}, true), 2);
    QCOMPARE(stored(one).text("BusinessFaxNumber"), QStringLiteral("Fax: +49 (221) 2"));

    StoreFaults::FailItem(none, StoreFaults::FailSave); // a contact without backups is not saved
    QCOMPARE(restore("Telephone"), 2);
    QCOMPARE(m_boxes->last().prompt, QStringLiteral("Telefonnummern bei 2 Kontakten wiederhergestellt."));
    QCOMPARE(stored(one).text("HomeTelephoneNumber"), QStringLiteral("030 1"));
    QCOMPARE(stored(one).text("BusinessFaxNumber"), QStringLiteral("0221 2"));
    QCOMPARE(stored(two).text("MobileTelephoneNumber"), QStringLiteral("0221/3-4"));
    QCOMPARE(stored(one).UserProperties().Count(), 0);

    // The second restore finds nothing and saves nothing.
    StoreFaults::FailItem(one, StoreFaults::FailSave);
    StoreFaults::FailItem(two, StoreFaults::FailSave);
    QCOMPARE(restore("Telephone"), 0);
    QCOMPARE(m_boxes->last().prompt, QStringLiteral("Telefonnummern bei 0 Kontakten wiederhergestellt."));
    QCOMPARE(m_boxes->count(), 3);
}

void tst_UndoFunctions::restoreGivesValueBeforeLastRun()
{
    const QString id = addContact({{"HomeFaxNumber", "030 1234"}}).EntryID();
    QCOMPARE(RunContactTelNrOn({contacts()}, true), 1);
    QCOMPARE(RunContactTelNrOn({contacts()}, false), 1);
    QCOMPARE(stored(id).text("HomeFaxNumber"), QStringLiteral("+49 (30) 1234"));
    QCOMPARE(restore("Telephone"), 1);
    QCOMPARE(stored(id).text("HomeFaxNumber"), QStringLiteral("Fax: +49 (30) 1234"));
}

void tst_UndoFunctions::unknownKindDoesNothing()
{
    Item contact = addContact({{"HomeTelephoneNumber", "+49 (30) 1"}});
    WriteBackup(contact, "HomeTelephoneNumber", "030 1");
    contact.Save();
    QCOMPARE(restore("Telefon"), -1);
    QCOMPARE(m_boxes->count(), 0);
    QCOMPARE(m_host.runningChanges, 0);
    QCOMPARE(stored(contact.EntryID()).text("HomeTelephoneNumber"), QStringLiteral("+49 (30) 1"));
}

void tst_UndoFunctions::otherItemsCountedNotTouched()
{
    Item list = contacts().Items().Add(olDistributionList);
    list.setSubject(QStringLiteral("Verteiler"));
    list.UserProperties().Add(BackupPropertyName("Subject"), olText).setValue(QStringLiteral("alt"));
    list.Save();
    Item contact = addContact({{"HomeTelephoneNumber", "+49 (30) 1"}});
    WriteBackup(contact, "HomeTelephoneNumber", "030 1");
    contact.Save();
    QCOMPARE(restore("Names"), 0);
    QCOMPARE(restore("Telephone"), 1);
    QCOMPARE(m_host.progressMax, 2);
    QCOMPARE(stored(list.EntryID()).Subject(), QStringLiteral("Verteiler"));
    QCOMPARE(stored(list.EntryID()).UserProperties().Count(), 1);
}

void tst_UndoFunctions::failingSaveEndsWith401()
{
    QStringList ids;
    for (int i = 1; i <= 3; ++i) {
        Item contact = addContact({{"HomeTelephoneNumber", QStringLiteral("+49 (30) %1").arg(i)}});
        WriteBackup(contact, "HomeTelephoneNumber", QStringLiteral("030 %1").arg(i));
        contact.Save();
        ids << contact.EntryID();
    }
    StoreFaults::FailItem(ids.at(1), StoreFaults::FailSave);
    QCOMPARE(restore("Telephone"), -1);
    QCOMPARE(m_boxes->count(), 1);
    QVERIFY2(m_boxes->last().prompt.contains(QStringLiteral("Nr.: 401")), qPrintable(m_boxes->last().prompt));
    QVERIFY(!m_host.running);
    StoreFaults::Reset();
    QCOMPARE(stored(ids.at(0)).text("HomeTelephoneNumber"), QStringLiteral("030 1"));
    QCOMPARE(stored(ids.at(1)).text("HomeTelephoneNumber"), QStringLiteral("+49 (30) 2"));
    QCOMPARE(stored(ids.at(1)).UserProperties().Count(), 1);
    QCOMPARE(stored(ids.at(2)).text("HomeTelephoneNumber"), QStringLiteral("+49 (30) 3"));
}

QTEST_MAIN(tst_UndoFunctions)
#include "tst_undofunctions.moc"
