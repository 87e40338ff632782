// The contact name run over a real temporary store with the shipped tables.
#include "frame/CommandRegistry.h"
#include "frame/FileWatch.h"
#include "frame/MainCommands.h"
#include "frame/RegistryFunctions.h"
#include "names/NameCorrectionFunctions.h"
#include "restore/UndoFunctions.h"
#include "support/SelectionFixture.h"

#include <QFile>
#include <QLocale>
#include <QTest>

namespace {

const QStringList kNameFields{"FullName", "Title",   "FirstName", "MiddleName", "LastName",
                              "Suffix",   "FileAs",  "Subject",   "CompanyName"};
const QStringList kBackupNames{"Fullname", "Title",  "FirstName", "MiddleName", "LastName",
                               "Suffix",   "FileAs", "Subject",   "CompanyName"};

MAPIFolder contactsFolder()
{
    return Application().GetNamespace().GetDefaultFolder(olFolderContacts);
}

Item addContact(const Values &values, const MAPIFolder &folder = contactsFolder())
{
    return SelectionFixture::addItem(folder, olContact, values);
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
    void initTestCase()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        RegisterMainCommands();
    }
    void contactChanges_data();
    void contactChanges();
    void unchangedContactIsNotSaved();
    void countsAndFolders();
    void secondRunChangesNothing();
    void restoreBringsBackEveryField_data();
    void restoreBringsBackEveryField();
    void failureEndsRun_data();
    void failureEndsRun();
    void command_data();
    void command();
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
        << true << QStringList{"", "", "Muster", "", "GmbH", "", "Muster", "Muster GmbH", "Muster GmbH"};
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
    SelectionFixture fx(true);
    SaveSetting("BusinessNameCheck", businessCheck ? "1" : "0");
    SaveSetting("SubjectNameCorrect", subjectToo ? "1" : "0");
    const Item item = addContact(contact);
    const QStringList before = nameFields(item);

    CorrectNamesInFolders({contactsFolder()});

    QCOMPARE(fx.boxes.count(), 1);
    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("%1 Kontakt(e) geändert.").arg(saved ? 1 : 0));
    QCOMPARE(fx.boxes.last().buttons, int(MsgInformation));
    QCOMPARE(fx.boxes.last().title, QStringLiteral("Fertig!"));
    QVERIFY(!fx.host.running);
    const Item stored = fx.reread(item);
    QCOMPARE(nameFields(stored), after);
    QCOMPARE(backups(stored), saved ? before : QStringList());
}

// A contact whose fields already are what the analysis and the layouts give
// is neither backed up nor saved: a save would fail here.
void tst_ContactNameRun::unchangedContactIsNotSaved()
{
    SelectionFixture fx(true);
    const Values correct{{"Title", "Frau"}, {"FirstName", "Anna"}, {"LastName", "Huber"}, {"FileAs", "Huber, Anna"}};
    const Item unchanged = addContact(correct);
    Values handMade = correct;
    handMade.last().second = "Anna (Tennis)";
    const Item byHand = addContact(handMade);
    StoreFaults::FailItem(unchanged.EntryID(), StoreFaults::FailSave);

    CorrectNamesInFolders({contactsFolder()});

    QCOMPARE(fx.boxes.count(), 1);
    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("1 Kontakt(e) geändert."));
    QVERIFY(backups(fx.reread(unchanged)).isEmpty());
    const Item fixed = fx.reread(byHand);
    QCOMPARE(fixed.text("FileAs"), QStringLiteral("Huber, Anna"));
    QCOMPARE(fixed.UserProperties().Find("VX Backup FileAs").Value().toString(), QStringLiteral("Anna (Tennis)"));
}

// A distribution list is counted but never touched; each folder has its own
// progress and ends with "Bereit".
void tst_ContactNameRun::countsAndFolders()
{
    SelectionFixture fx(true);
    const MAPIFolder folder = contactsFolder();
    MAPIFolder second = folder.Folders().Add("Verein");
    addContact({{"FullName", "Hans Müller"}});
    const Item list = SelectionFixture::addItem(folder, olDistributionList, {{"Subject", "Hans Müller"}});
    addContact({{"FullName", "Maria Huber"}});
    addContact({{"FullName", "Peter Meier"}}, second);
    const QDateTime listModified = fx.reread(list).LastModificationTime();

    CorrectNamesInFolders({contactsFolder(), second});

    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("3 Kontakt(e) geändert."));
    QCOMPARE(fx.host.progressMaxima, (QList<int>{3, 1}));
    QCOMPARE(fx.host.statusTexts,
             (QStringList{"Bearbeite Kontakt 1 von 3 (Kontakte)", "Bearbeite Kontakt 2 von 3 (Kontakte)",
                          "Bearbeite Kontakt 3 von 3 (Kontakte)", "Bereit", "Bearbeite Kontakt 1 von 1 (Verein)",
                          "Bereit"}));
    const Item storedList = fx.reread(list);
    QCOMPARE(storedList.UserProperties().Count(), 0);
    QCOMPARE(storedList.LastModificationTime(), listModified);
}

// Running again changes nothing that the first run has settled; a later
// change of a contact replaces its backups (one generation).
void tst_ContactNameRun::secondRunChangesNothing()
{
    SelectionFixture fx(true);
    SaveSetting("SubjectNameCorrect", "1");
    for (const char *name : {"Prof. Dr. med. Hans-Peter Müller-Lüdenscheidt jun.", "Meier, Anna-Maria",
                             "Hans und Maria Schmid", "Dipl.-Ing. (FH) Urs Keller", "Muster GmbH & Co. KG"})
        addContact({{"FullName", QString::fromUtf8(name)}});
    Item item = addContact({{"FullName", "Müller, Hans"}});
    CorrectNamesInFolders({contactsFolder()});
    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("6 Kontakt(e) geändert."));
    // The company moved to CompanyName; now it is a contact with a company
    // and no name, whose FileAs the layout gives.
    item = fx.reread(item);
    item.set("FullName", "Huber, Maria");
    item.Save();
    const QStringList second = nameFields(fx.reread(item));
    CorrectNamesInFolders({contactsFolder()});
    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("2 Kontakt(e) geändert."));
    const Item company = contactsFolder().Items().Find("[CompanyName] = 'Muster GmbH & Co. KG'");
    QCOMPARE(company.text("FileAs"), QStringLiteral("(Muster GmbH & Co. KG)"));
    const Item stored = fx.reread(item);
    QCOMPARE(backups(stored), second);
    QCOMPARE(stored.text("FileAs"), QStringLiteral("Huber, Maria"));
    SetProfileFolder(ProfileFolder());
    CorrectNamesInFolders({contactsFolder()});
    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("0 Kontakt(e) geändert."));
}

// The restore of the kind "Names" undoes a run: every field comes back
// exactly, the form "Last, First" and the company case included.
void tst_ContactNameRun::restoreBringsBackEveryField_data()
{
    QTest::addColumn<Values>("contact");
    QTest::newRow("Person mit Titel") << Values{{"FullName", "Dr. Hans Peter Müller"}, {"FileAs", "Hansi"}, {"Subject", "alt"}};
    QTest::newRow("Firma") << Values{{"FullName", "Muster GmbH"}, {"FileAs", "Muster"}};
    QTest::newRow("Nachname, Vorname") << Values{{"FullName", "Müller, Hans"}, {"FileAs", "Müller, Hans"}};
    QTest::newRow("Nachname, Titel Vorname") << Values{{"FullName", "Berg, Dr. Anna Maria"}, {"CompanyName", "Berg AG"}};
    QTest::newRow("Teile einzeln") << Values{{"FirstName", "Hans"}, {"LastName", "Schmidt"}, {"Suffix", "jun."}};
}

void tst_ContactNameRun::restoreBringsBackEveryField()
{
    QFETCH(Values, contact);
    SelectionFixture fx(true);
    SaveSetting("SubjectNameCorrect", "1");
    const Item item = addContact(contact);
    const QStringList before = nameFields(item);
    CorrectNamesInFolders({contactsFolder()});
    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("1 Kontakt(e) geändert."));
    QVERIFY(nameFields(fx.reread(item)) != before);

    SetProfileFolder(ProfileFolder());
    QCOMPARE(RestoreContactBackupsIn({contactsFolder()}, 1, QStringLiteral("Names")), 1);
    QCOMPARE(fx.boxes.last().prompt, QStringLiteral("Namen bei 1 Kontakten wiederhergestellt."));
    const Item restored = fx.reread(item);
    QCOMPARE(nameFields(restored), before);
    QCOMPARE(restored.UserProperties().Count(), 0);
}

void tst_ContactNameRun::failureEndsRun_data()
{
    QTest::addColumn<bool>("tablesMissing");
    QTest::addColumn<QString>("logged");
    QTest::newRow("Speichern scheitert") << false << "Sub: 2501";
    QTest::newRow("Namenstabellen fehlen") << true << "Sub: 2502";
}

// A save failure ends the run at the failing contact, the tables missing at
// the first one: one error box, no closing message, the rest untouched.
void tst_ContactNameRun::failureEndsRun()
{
    QFETCH(bool, tablesMissing);
    QFETCH(QString, logged);
    SelectionFixture fx(true);
    const Item first = addContact({{"FullName", "Hans Müller"}});
    const Item failing = addContact({{"FullName", "Maria Huber"}});
    const Item third = addContact({{"FullName", "Peter Meier"}});
    const QStringList firstBefore = nameFields(first);
    const QStringList failingBefore = nameFields(failing);
    const QStringList thirdBefore = nameFields(third);
    if (tablesMissing) {
        QVERIFY(QFile::remove(ProgramFile("VarnexPub.db")));
        SyncFileWatches();
    } else
        StoreFaults::FailItem(failing.EntryID(), StoreFaults::FailSave);

    CorrectNamesInFolders({contactsFolder()});
    StoreFaults::Reset();

    QCOMPARE(fx.boxes.count(), 1);
    QCOMPARE(fx.boxes.last().buttons, int(MsgStop));
    QCOMPARE(fx.boxes.last().title, QStringLiteral("Fehler!"));
    QVERIFY2(fx.environment.readLog().contains(logged), qPrintable(fx.environment.readLog()));
    QVERIFY(!fx.host.running);
    if (tablesMissing) {
        QCOMPARE(nameFields(fx.reread(first)), firstBefore);
        QVERIFY(backups(fx.reread(first)).isEmpty());
    } else {
        QCOMPARE(fx.reread(first).text("Title"), QStringLiteral("Herr"));
        QCOMPARE(backups(fx.reread(first)).size(), 9);
    }
    QCOMPARE(nameFields(fx.reread(failing)), failingBefore);
    QVERIFY(backups(fx.reread(failing)).isEmpty());
    QCOMPARE(nameFields(fx.reread(third)), thirdBefore);
}

void tst_ContactNameRun::command_data()
{
    QTest::addColumn<QStringList>("ticked");
    QTest::addColumn<bool>("marked");     // the first ticked folder
    QTest::addColumn<QString>("message"); // the one box the user sees; "" for none
    QTest::addColumn<int>("titled");      // contacts with a salutation afterwards

    QTest::newRow("Kontakte angehakt") << QStringList{"Kontakte"} << true << "2 Kontakt(e) geändert." << 2;
    QTest::newRow("nichts markiert") << QStringList{"Kontakte"} << false << "" << 0;
    QTest::newRow("Kalender dabei") << QStringList{"Kontakte", "Kalender"} << true
                                    << "Bitte wählen Sie für diese Funktion ausschließlich Kontakte-Ordner aus." << 0;
}

// The command "Namen korrigieren" from the ticks of the folder tree.
void tst_ContactNameRun::command()
{
    QFETCH(QStringList, ticked);
    QFETCH(bool, marked);
    QFETCH(QString, message);
    QFETCH(int, titled);
    SelectionFixture fx(true);
    for (const char *name : {"Müller, Hans", "Maria Huber"})
        addContact({{"FullName", QString::fromUtf8(name)}});
    FolderProfile::addItems(SelectionFixture::folder("Kalender"), 1);
    fx.readTree();
    if (marked)
        QVERIFY(fx.select(ticked));
    else
        fx.tree.setChecked(nodeOfPath(fx.tree, SelectionFixture::fullPath(ticked.first())), true);
    QVERIFY(RunCommand(QStringLiteral("Nam")));
    QCOMPARE(fx.boxes.count(), message.isEmpty() ? 0 : 1);
    if (!message.isEmpty())
        QCOMPARE(fx.boxes.last().prompt, message);
    int withTitle = 0;
    for (const Item &contact : contactsFolder().Items())
        withTitle += contact.text("Title").isEmpty() ? 0 : 1;
    QCOMPARE(withTitle, titled);
}

QTEST_MAIN(tst_ContactNameRun)
#include "tst_contactnamerun.moc"
