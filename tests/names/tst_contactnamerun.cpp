// The contact name run over a real temporary store with the shipped tables.
#include "support/RecordingRunHost.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "names/NameCorrectionFunctions.h"
#include "restore/UndoFunctions.h"
#include "store/Store.h"
#include "support/TestSupport.h"

#include <QFile>
#include <QLocale>
#include <QTest>
#include <memory>

namespace {

using Values = QList<QPair<QString, QVariant>>;

const QStringList kNameFields{"FullName", "Title",   "FirstName", "MiddleName", "LastName",
                              "Suffix",   "FileAs",  "Subject",   "CompanyName"};
const QStringList kBackupNames{"Fullname", "Title",  "FirstName", "MiddleName", "LastName",
                               "Suffix",   "FileAs", "Subject",   "CompanyName"};


// Installs a recording host for the life of the object.
struct HostScope {
    RecordingRunHost host;
    HostScope() { SetRunHost(&host); }
    ~HostScope() { SetRunHost(nullptr); }
};

MAPIFolder contactsFolder()
{
    return Application().GetNamespace().GetDefaultFolder(olFolderContacts);
}

Item addItem(const MAPIFolder &folder, int itemClass, const Values &values)
{
    Item item = folder.Items().Add(itemClass);
    for (const auto &[name, value] : values)
        item.set(name, value);
    item.Save();
    return item;
}

// The item as the file holds it: a new session, so unsaved changes do not show.
Item reread(const Item &item)
{
    SetProfileFolder(ProfileFolder());
    return Application().GetNamespace().GetItemFromID(item.EntryID(), item.StoreID());
}

QStringList nameFields(const Item &item)
{
    QStringList values;
    for (const QString &field : kNameFields)
        values.append(item.text(field));
    return values;
}

// The nine backup values, or an empty list when the contact has none.
QStringList backups(const Item &item)
{
    QStringList values;
    for (const QString &field : kBackupNames) {
        const UserProperty p = item.UserProperties().Find("VX Backup " + field);
        if (p.isNull())
            return {};
        values.append(p.Value().toString());
    }
    return values;
}

} // namespace

class tst_ContactNameRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void contactChanges_data();
    void contactChanges();
    void unchangedContactIsNotSaved();
    void distributionListOnlyCounted();
    void severalFolders();
    void secondRunChangesNothing();
    void laterChangeOverwritesBackup();
    void restoreBringsBackEveryField();
    void storeFailureEndsRun();
    void analysisFailureEndsRun();
};

void tst_ContactNameRun::contactChanges_data()
{
    QTest::addColumn<Values>("contact");
    QTest::addColumn<bool>("businessCheck");
    QTest::addColumn<bool>("subjectToo");
    QTest::addColumn<bool>("saved");
    QTest::addColumn<QStringList>("after"); // the nine fields in the order of kNameFields

    QTest::newRow("Nachname, Vorname")
        << Values{{"FullName", "Müller, Hans"}} << true << false << true
        << QStringList{"Herr Hans Müller", "Herr", "Hans", "", "Müller", "", "Müller, Hans", "", ""};
    QTest::newRow("Firma erkannt")
        << Values{{"FullName", "Muster GmbH"}, {"FileAs", "Muster"}, {"Subject", "Muster GmbH"}} << true << false
        << true << QStringList{"", "", "", "", "", "", "Muster", "Muster GmbH", "Muster GmbH"};
    QTest::newRow("Firma schon eingetragen")
        << Values{{"FullName", "Muster GmbH"}, {"CompanyName", "Muster AG"}, {"FileAs", "x"}} << true << false
        << true
        << QStringList{"Muster GmbH", "", "", "", "Muster GmbH", "", "Muster GmbH (Muster AG)", "", "Muster AG"};
    QTest::newRow("Firmenprüfung aus")
        << Values{{"FullName", "Muster GmbH"}, {"FileAs", "x"}} << false << false << true
        << QStringList{"Muster GmbH", "", "", "", "Muster GmbH", "", "Muster GmbH", "", ""};
    QTest::newRow("leerer Name mit Firma")
        << Values{{"CompanyName", "Muster AG"}, {"FileAs", "Muster AG"}, {"Subject", "Muster AG"}} << true << true
        << true << QStringList{"", "", "", "", "", "", "(Muster AG)", "", "Muster AG"};
    QTest::newRow("Betreff wird mitgeschrieben")
        << Values{{"FullName", "Dr. Hans Peter Müller jun."}, {"Subject", "alt"}} << true << true << true
        << QStringList{"Herr Dr. Hans Peter Müller jun.", "Herr Dr.", "Hans", "Peter", "Müller", "jun.",
                       "Müller, Hans", "Hans Müller jun.", ""};
    QTest::newRow("Betreff bleibt ohne Einstellung")
        << Values{{"FullName", "Dr. Hans Peter Müller jun."}, {"Subject", "alt"}} << true << false << true
        << QStringList{"Herr Dr. Hans Peter Müller jun.", "Herr Dr.", "Hans", "Peter", "Müller", "jun.",
                       "Müller, Hans", "alt", ""};
    QTest::newRow("Betreff allein ist keine Änderung")
        << Values{{"Title", "Herr"}, {"FirstName", "Hans"}, {"LastName", "Müller"}, {"FileAs", "Müller, Hans"},
                  {"Subject", "alt"}}
        << true << false << false
        << QStringList{"Herr Hans Müller", "Herr", "Hans", "", "Müller", "", "Müller, Hans", "alt", ""};
}

void tst_ContactNameRun::contactChanges()
{
    QFETCH(Values, contact);
    QFETCH(bool, businessCheck);
    QFETCH(bool, subjectToo);
    QFETCH(bool, saved);
    QFETCH(QStringList, after);
    TestEnvironment env;
    SaveSetting("BusinessNameCheck", businessCheck ? "1" : "0");
    SaveSetting("SubjectNameCorrect", subjectToo ? "1" : "0");
    MessageRecorder boxes;
    HostScope scope;
    const Item item = addItem(contactsFolder(), olContact, contact);
    const QStringList before = nameFields(item);

    CorrectNamesInFolders({contactsFolder()});

    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().prompt, QStringLiteral("%1 Kontakt(e) geändert.").arg(saved ? 1 : 0));
    QCOMPARE(boxes.last().buttons, int(MsgInformation));
    QCOMPARE(boxes.last().title, QStringLiteral("Fertig!"));
    QVERIFY(!scope.host.running);
    const Item stored = reread(item);
    QCOMPARE(nameFields(stored), after);
    QCOMPARE(backups(stored), saved ? before : QStringList());
}

// A contact whose fields already are what the analysis and the layouts give
// is neither backed up nor saved: a save would fail here.
void tst_ContactNameRun::unchangedContactIsNotSaved()
{
    TestEnvironment env;
    MessageRecorder boxes;
    HostScope scope;
    const Values correct{{"Title", "Frau"}, {"FirstName", "Anna"}, {"LastName", "Huber"}, {"FileAs", "Huber, Anna"}};
    const Item unchanged = addItem(contactsFolder(), olContact, correct);
    Values handMade = correct;
    handMade.last().second = "Anna (Tennis)";
    const Item byHand = addItem(contactsFolder(), olContact, handMade);
    StoreFaults::FailItem(unchanged.EntryID(), StoreFaults::FailSave);

    CorrectNamesInFolders({contactsFolder()});

    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().prompt, QStringLiteral("1 Kontakt(e) geändert."));
    QVERIFY(backups(reread(unchanged)).isEmpty());
    const Item fixed = reread(byHand);
    QCOMPARE(fixed.text("FileAs"), QStringLiteral("Huber, Anna"));
    QCOMPARE(fixed.UserProperties().Find("VX Backup FileAs").Value().toString(), QStringLiteral("Anna (Tennis)"));
    StoreFaults::Reset();
}

void tst_ContactNameRun::distributionListOnlyCounted()
{
    TestEnvironment env;
    MessageRecorder boxes;
    HostScope scope;
    const MAPIFolder folder = contactsFolder();
    addItem(folder, olContact, {{"FullName", "Hans Müller"}});
    const Item list = addItem(folder, olDistributionList, {{"Subject", "Hans Müller"}});
    addItem(folder, olContact, {{"FullName", "Maria Huber"}});
    const QDateTime listModified = reread(list).LastModificationTime();

    CorrectNamesInFolders({folder});

    QCOMPARE(boxes.last().prompt, QStringLiteral("2 Kontakt(e) geändert."));
    QCOMPARE(scope.host.progressMaxima, QList<int>{3});
    QCOMPARE(scope.host.statusTexts.mid(0, 4),
             (QStringList{"Bearbeite Kontakt 1 von 3 (Kontakte)", "Bearbeite Kontakt 2 von 3 (Kontakte)",
                          "Bearbeite Kontakt 3 von 3 (Kontakte)", "Bereit"}));
    const Item storedList = reread(list);
    QCOMPARE(storedList.UserProperties().Count(), 0);
    QCOMPARE(storedList.LastModificationTime(), listModified);
}

void tst_ContactNameRun::severalFolders()
{
    TestEnvironment env;
    MessageRecorder boxes;
    HostScope scope;
    MAPIFolder second = contactsFolder().Folders().Add("Verein");
    addItem(contactsFolder(), olContact, {{"FullName", "Hans Müller"}});
    addItem(second, olContact, {{"FullName", "Maria Huber"}});
    addItem(second, olContact, {{"FullName", "Peter Meier"}});

    CorrectNamesInFolders({contactsFolder(), second});

    QCOMPARE(boxes.last().prompt, QStringLiteral("3 Kontakt(e) geändert."));
    QCOMPARE(scope.host.progressMaxima, (QList<int>{1, 2}));
    QVERIFY(scope.host.statusTexts.contains("Bearbeite Kontakt 2 von 2 (Verein)"));
    QCOMPARE(scope.host.statusTexts.count("Bereit"), 2); // after each folder
}

// Running again changes nothing that the first run has settled.
void tst_ContactNameRun::secondRunChangesNothing()
{
    TestEnvironment env;
    SaveSetting("SubjectNameCorrect", "1");
    MessageRecorder boxes;
    HostScope scope;
    for (const char *name : {"Prof. Dr. med. Hans-Peter Müller-Lüdenscheidt jun.", "Meier, Anna-Maria",
                             "Hans und Maria Schmid", "Dipl.-Ing. (FH) Urs Keller", "Muster GmbH & Co. KG"})
        addItem(contactsFolder(), olContact, {{"FullName", QString::fromUtf8(name)}});
    CorrectNamesInFolders({contactsFolder()});
    QCOMPARE(boxes.last().prompt, QStringLiteral("5 Kontakt(e) geändert."));
    // The company moved to CompanyName; now it is a contact with a company
    // and no name, whose FileAs the layout gives.
    SetProfileFolder(ProfileFolder());
    CorrectNamesInFolders({contactsFolder()});
    QCOMPARE(boxes.last().prompt, QStringLiteral("1 Kontakt(e) geändert."));
    const Item company = contactsFolder().Items().Find("[CompanyName] = 'Muster GmbH & Co. KG'");
    QCOMPARE(company.text("FileAs"), QStringLiteral("(Muster GmbH & Co. KG)"));
    SetProfileFolder(ProfileFolder());
    CorrectNamesInFolders({contactsFolder()});
    QCOMPARE(boxes.last().prompt, QStringLiteral("0 Kontakt(e) geändert."));
}

// One generation: a second change of the contact replaces its backups.
void tst_ContactNameRun::laterChangeOverwritesBackup()
{
    TestEnvironment env;
    MessageRecorder boxes;
    HostScope scope;
    Item item = addItem(contactsFolder(), olContact, {{"FullName", "Müller, Hans"}});
    CorrectNamesInFolders({contactsFolder()});
    item = reread(item);
    item.set("FullName", "Huber, Maria");
    item.Save();
    const QStringList second = nameFields(reread(item));
    CorrectNamesInFolders({contactsFolder()});
    const Item stored = reread(item);
    QCOMPARE(backups(stored), second);
    QCOMPARE(stored.text("FileAs"), QStringLiteral("Huber, Maria"));
}

// The restore of the kind "Names" undoes a run, the company case included.
void tst_ContactNameRun::restoreBringsBackEveryField()
{
    TestEnvironment env;
    SaveSetting("SubjectNameCorrect", "1");
    MessageRecorder boxes;
    HostScope scope;
    const MAPIFolder folder = contactsFolder();
    const Item person = addItem(folder, olContact,
                                {{"FullName", "Dr. Hans Peter Müller"}, {"FileAs", "Hansi"}, {"Subject", "alt"}});
    const Item company = addItem(folder, olContact, {{"FullName", "Muster GmbH"}, {"FileAs", "Muster"}});
    const QStringList personBefore = nameFields(person);
    const QStringList companyBefore = nameFields(company);
    CorrectNamesInFolders({folder});
    QCOMPARE(boxes.last().prompt, QStringLiteral("2 Kontakt(e) geändert."));
    QVERIFY(nameFields(reread(person)) != personBefore);
    QCOMPARE(reread(company).text("CompanyName"), QStringLiteral("Muster GmbH"));

    SetProfileFolder(ProfileFolder());
    QCOMPARE(RestoreContactBackupsIn({contactsFolder()}, 2, QStringLiteral("Names")), 2);
    QCOMPARE(boxes.last().prompt, QStringLiteral("Namen bei 2 Kontakten wiederhergestellt."));
    for (const auto &[item, before] : {std::pair{person, personBefore}, std::pair{company, companyBefore}}) {
        const Item restored = reread(item);
        QCOMPARE(nameFields(restored), before);
        QCOMPARE(restored.UserProperties().Count(), 0);
    }
}

void tst_ContactNameRun::storeFailureEndsRun()
{
    TestEnvironment env;
    MessageRecorder boxes;
    HostScope scope;
    const Item first = addItem(contactsFolder(), olContact, {{"FullName", "Hans Müller"}});
    const Item failing = addItem(contactsFolder(), olContact, {{"FullName", "Maria Huber"}});
    const Item third = addItem(contactsFolder(), olContact, {{"FullName", "Peter Meier"}});
    const QStringList failingBefore = nameFields(failing);
    const QStringList thirdBefore = nameFields(third);
    StoreFaults::FailItem(failing.EntryID(), StoreFaults::FailSave);

    CorrectNamesInFolders({contactsFolder()});
    StoreFaults::Reset();

    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().buttons, int(MsgStop));
    QVERIFY2(env.readLog().contains("Sub: 2501"), qPrintable(env.readLog()));
    QVERIFY(!scope.host.running);
    QCOMPARE(reread(first).text("Title"), QStringLiteral("Herr"));
    QCOMPARE(backups(reread(first)).size(), 9);
    QCOMPARE(nameFields(reread(failing)), failingBefore);
    QVERIFY(backups(reread(failing)).isEmpty());
    QCOMPARE(nameFields(reread(third)), thirdBefore);
}

// Without the name tables the first contact brings error 2502 and the run
// ends there: no contact is written, no further box, no closing message.
void tst_ContactNameRun::analysisFailureEndsRun()
{
    TestEnvironment env;
    MessageRecorder boxes;
    HostScope scope;
    const Item a = addItem(contactsFolder(), olContact, {{"FullName", "Hans Müller"}});
    const Item b = addItem(contactsFolder(), olContact, {{"FullName", "Maria Huber"}});
    const QStringList beforeA = nameFields(a);
    QVERIFY(QFile::remove(ProgramFile("VarnexPub.db")));

    CorrectNamesInFolders({contactsFolder()});

    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().title, QStringLiteral("Fehler!"));
    QVERIFY(env.readLog().contains("Sub: 2502"));
    QVERIFY(!scope.host.running);
    QCOMPARE(nameFields(reread(a)), beforeA);
    QVERIFY(backups(reread(a)).isEmpty());
    QVERIFY(backups(reread(b)).isEmpty());
}

QTEST_GUILESS_MAIN(tst_ContactNameRun)
#include "tst_contactnamerun.moc"
