// The companion tool varnex-store, run as the user runs it: as a program of
// its own on a temporary profile, with its data location pointed into the
// temporary folder too, so that the user's own profile is never touched.
// Commands with their exit codes and messages; the demo profile with what
// the commands of Varnex need to be tried; and every folder and item of the
// demo found again, changed and unchanged, after a reopen.
#include "store/StoreTestProfile.h"
#include "support/DamagedItem.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

namespace {

struct ToolRun {
    int exitCode = -1;
    QString out;
    QString err;
};

// Runs the tool; "%P" in the arguments stands for the profile folder.
ToolRun runTool(const TempProfile &profile, QStringList args)
{
    args.replaceInStrings(QStringLiteral("%P"), profile.folder());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DATA_HOME"), profile.scratch(QStringLiteral("daten")));
    QProcess tool;
    tool.setProcessEnvironment(environment);
    tool.start(QCoreApplication::applicationDirPath() + QStringLiteral("/varnex-store"), args);
    ToolRun run;
    if (!tool.waitForFinished(120000) || tool.exitStatus() != QProcess::NormalExit)
        return run;
    run.exitCode = tool.exitCode();
    run.out = QString::fromUtf8(tool.readAllStandardOutput());
    run.err = QString::fromUtf8(tool.readAllStandardError());
    return run;
}

QList<Item> itemsOf(const MAPIFolder &folder)
{
    QList<Item> items;
    for (const Item &item : folder.Items())
        items << item;
    return items;
}

QStringList textsOf(const QList<Item> &items, const QString &property)
{
    QStringList texts;
    for (const Item &item : items)
        if (item.hasProperty(property))
            texts << item.text(property);
    return texts;
}

// Whether the pattern is found in one of the texts.
bool anyMatches(const QStringList &texts, const QString &pattern)
{
    const QRegularExpression re(pattern);
    return std::any_of(texts.cbegin(), texts.cend(), [&](const QString &text) { return re.match(text).hasMatch(); });
}

// Every folder of the profile's own stores, depth first.
QList<MAPIFolder> allFolders()
{
    QList<MAPIFolder> result;
    std::function<void(const Folders &)> walk = [&](const Folders &folders) {
        for (const MAPIFolder &folder : folders) {
            result << folder;
            walk(folder.Folders());
        }
    };
    walk(TempProfile::ns().Folders());
    return result;
}

// All an item holds, as text: every property of its class, the user
// properties and the attachments.
QStringList contentOf(const Item &item)
{
    QStringList content;
    for (const QString &name : item.PropertyNames())
        content << name + u'=' + item.text(name);
    const UserProperties properties = item.UserProperties();
    for (int i = 1; i <= properties.Count(); ++i)
        content << QStringLiteral("user %1=%2").arg(properties.Item(i).Name(), properties.Item(i).Value().toString());
    const Attachments attachments = item.Attachments();
    for (int i = 1; i <= attachments.Count(); ++i) {
        const Attachment a = attachments.Item(i);
        content << QStringLiteral("attachment %1 %2 %3 %4 %5")
                       .arg(a.FileName())
                       .arg(a.Type())
                       .arg(a.Size())
                       .arg(a.GetProperty(PR_ATTACHMENT_HIDDEN).toBool())
                       .arg(a.GetProperty(PR_ATTACH_PATHNAME).toString());
    }
    return content;
}

} // namespace

class tst_StoreTool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void commands_data();
    void commands();
    void withoutProfileOptionTheDefaultProfileIsUsed();
    void demoGoesOnlyIntoANewOrEmptyProfile_data();
    void demoGoesOnlyIntoANewOrEmptyProfile();
    void demoHoldsWhatTheCommandsNeed();
    void demoIsFoundAgainAfterReopen();
    void listGoesOnPastDamagedStore();
    void exportRefusesDamagedItem_data();
    void exportRefusesDamagedItem();
};

void tst_StoreTool::initTestCase()
{
    PinGermanLocale();
    QVERIFY2(QFileInfo(QCoreApplication::applicationDirPath() + QStringLiteral("/varnex-store")).isExecutable(),
             "varnex-store is not built beside the tests");
}

void tst_StoreTool::commands_data()
{
    QTest::addColumn<bool>("profileBefore");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message"); // in the output or the error output
    QTest::addColumn<bool>("profileAfter");

    QTest::newRow("exists ohne Profil") << false << QStringList{"--profile", "%P", "exists"} << 1 << "" << false;
    QTest::newRow("exists mit Profil") << true << QStringList{"--profile", "%P", "exists"} << 0 << "" << true;
    QTest::newRow("init legt an") << false << QStringList{"--profile", "%P", "init"} << 0 << "Profil angelegt: " << true;
    QTest::newRow("init ein zweites Mal") << true << QStringList{"--profile", "%P", "init"} << 0 << "Profil besteht schon: " << true;
    QTest::newRow("list ohne Profil legt keines an") << false << QStringList{"--profile", "%P", "list"} << 1 << "Es gibt kein Profil in" << false;
    QTest::newRow("list zeigt Speicher und Ordner") << true << QStringList{"--profile", "%P", "list"} << 0
                                                   << "Informationsspeicher \"Persönliche Ordner\"" << true;
    QTest::newRow("list zählt Elemente") << true << QStringList{"--profile", "%P", "list"} << 0
                                        << "  Kontakte  [IPF.Contact]  0 Element(e)\n" << true;
    QTest::newRow("unbekannter Befehl") << false << QStringList{"--profile", "%P", "löschen"} << 2 << "Aufruf: varnex-store" << false;
    QTest::newRow("zwei Befehle") << false << QStringList{"--profile", "%P", "init", "list"} << 2 << "Aufruf: varnex-store" << false;
    QTest::newRow("ohne Befehl") << false << QStringList{} << 2 << "Befehle:" << false;
    QTest::newRow("Hilfe") << false << QStringList{"--help"} << 0 << "demo     füllt ein neues oder leeres Profil" << false;
}

void tst_StoreTool::commands()
{
    QFETCH(bool, profileBefore);
    QFETCH(QStringList, args);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    QFETCH(bool, profileAfter);
    TempProfile profile;
    if (profileBefore)
        CreateProfile(profile.folder());
    const ToolRun run = runTool(profile, args);
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2((run.out + run.err).contains(message), qPrintable(run.out + run.err));
    QCOMPARE(ProfileExists(profile.folder()), profileAfter);
    QVERIFY2(!QFileInfo::exists(profile.scratch(QStringLiteral("daten/Nordquell"))),
             "the default profile was touched");
}

void tst_StoreTool::withoutProfileOptionTheDefaultProfileIsUsed()
{
    TempProfile profile;
    const ToolRun run = runTool(profile, {QStringLiteral("init")});
    QCOMPARE(run.exitCode, 0);
    const QString expected = profile.scratch(QStringLiteral("daten/Nordquell/Varnex/Profil"));
    QVERIFY2(run.out.contains(QDir::toNativeSeparators(expected)), qPrintable(run.out));
    QVERIFY(ProfileExists(expected));
    QCOMPARE(runTool(profile, {QStringLiteral("exists")}).exitCode, 0);
    QVERIFY(!ProfileExists(profile.folder()));
}

void tst_StoreTool::demoGoesOnlyIntoANewOrEmptyProfile_data()
{
    QTest::addColumn<QString>("before"); // "none", "empty", "contact", "store"
    QTest::addColumn<int>("exitCode");
    QTest::newRow("kein Profil") << "none" << 0;
    QTest::newRow("leeres Profil") << "empty" << 0;
    QTest::newRow("Profil mit einem Kontakt") << "contact" << 1;
    QTest::newRow("Profil mit zweitem Speicher") << "store" << 1;
}

void tst_StoreTool::demoGoesOnlyIntoANewOrEmptyProfile()
{
    QFETCH(QString, before);
    QFETCH(int, exitCode);
    TempProfile profile;
    if (before != u"none")
        (void)TempProfile::ns();
    if (before == u"contact") {
        Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
        contact.set(QStringLiteral("FullName"), QStringLiteral("Eigene Daten"));
        contact.Save();
    }
    if (before == u"store")
        AddStore(QStringLiteral("Ablage"));
    const ToolRun run = runTool(profile, {QStringLiteral("--profile"), profile.folder(), QStringLiteral("demo")});
    QCOMPARE(run.exitCode, exitCode);
    profile.reopen();
    const int contacts = TempProfile::folderOf(olFolderContacts).Items().Count();
    if (exitCode == 0) {
        QVERIFY2(run.out.contains(QStringLiteral("Beispielprofil angelegt")), qPrintable(run.out));
        QVERIFY(contacts > 10);
        return;
    }
    QVERIFY2(run.err.contains(QStringLiteral("enthält schon Daten")), qPrintable(run.err));
    QCOMPARE(contacts, before == u"contact" ? 1 : 0);
    QCOMPARE(TempProfile::ns().Folders().Count(), before == u"store" ? 2 : 1);
    QVERIFY(AddressBook().isEmpty());
}

// What the issue of the demo promises, checked on what the tool wrote, and
// the counts it printed.
void tst_StoreTool::demoHoldsWhatTheCommandsNeed()
{
    TempProfile profile;
    const ToolRun run = runTool(profile, {QStringLiteral("--profile"), profile.folder(), QStringLiteral("demo")});
    QCOMPARE(run.exitCode, 0);
    const NameSpace ns = TempProfile::ns();
    QCOMPARE(ns.Folders().Count(), 2);
    QCOMPARE(ns.Folders().Item(2).Name(), QStringLiteral("Archiv"));

    const MAPIFolder contactsFolder = ns.GetDefaultFolder(olFolderContacts);
    const MAPIFolder oldFolder = contactsFolder.Parent().Folders().Item(QStringLiteral("Kontakte Alt"));
    QCOMPARE(oldFolder.ContainerClass(), QStringLiteral("IPF.Contact"));
    QList<Item> contacts = itemsOf(contactsFolder);
    const QList<Item> old = itemsOf(oldFolder);
    const QStringList names = textsOf(contacts, QStringLiteral("FullName"));
    // Duplicates across the two folders and within one.
    int acrossFolders = 0;
    for (const QString &name : textsOf(old, QStringLiteral("FullName")))
        acrossFolders += names.contains(name) ? 1 : 0;
    QVERIFY(acrossFolders >= 2);
    QVERIFY(names.size() > QSet<QString>(names.begin(), names.end()).size());
    // Full names in all forms, companies, a distribution list.
    QVERIFY(anyMatches(names, QStringLiteral("^[^ ,]+, [^ ]+$")));
    QVERIFY(anyMatches(textsOf(contacts, QStringLiteral("Title")), QStringLiteral("^Prof\\. Dr\\.")));
    QVERIFY(anyMatches(textsOf(contacts, QStringLiteral("Suffix")), QStringLiteral(".")));
    QVERIFY(anyMatches(textsOf(contacts, QStringLiteral("LastName")), QStringLiteral("^von ")));
    QVERIFY(anyMatches(names, QStringLiteral("GmbH")));
    QVERIFY(anyMatches(textsOf(contacts, QStringLiteral("CompanyName")), QStringLiteral(".")));
    QVERIFY(textsOf(contacts, QStringLiteral("Class")).contains(QString::number(olDistributionList)));
    // Numbers typed every which way.
    QStringList numbers;
    for (const QString &field : QStringList{"BusinessTelephoneNumber", "MobileTelephoneNumber", "HomeTelephoneNumber",
                                            "BusinessFaxNumber"})
        numbers << textsOf(contacts, field);
    for (const char *form : {"^\\+49 ", "^\\+49\\(0\\)", "^0049", "^00(?!49)", "^\\+4[13] ", "/", "\\(\\d+\\)", "-",
                             "^\\d+ \\d+ \\d+", "[A-Za-z]", "^110$"})
        QVERIFY2(anyMatches(numbers, QString::fromLatin1(form)), form);

    // Appointments: the same one three times, a series with a single twin.
    const QList<Item> appointments = itemsOf(ns.GetDefaultFolder(olFolderCalendar));
    const QStringList subjects = textsOf(appointments, QStringLiteral("Subject"));
    QVERIFY(subjects.count(QStringLiteral("Zahnarzt")) >= 2);
    QStringList series;
    for (const Item &a : appointments)
        series << QStringLiteral("%1 %2").arg(a.Subject(), a.text(QStringLiteral("IsRecurring")));
    QVERIFY(series.contains(QStringLiteral("Jour fixe Vertrieb Wahr")));
    QVERIFY(series.contains(QStringLiteral("Jour fixe Vertrieb Falsch")));

    // Mail with attachments (one hidden), a mail twice, a post.
    const QList<Item> inbox = itemsOf(ns.GetDefaultFolder(olFolderInbox));
    int withAttachments = 0, hidden = 0;
    for (const Item &mail : inbox) {
        withAttachments += mail.Attachments().Count() > 0 ? 1 : 0;
        for (int i = 1; i <= mail.Attachments().Count(); ++i)
            hidden += mail.Attachments().Item(i).GetProperty(PR_ATTACHMENT_HIDDEN).toBool() ? 1 : 0;
    }
    QVERIFY(withAttachments >= 2);
    QCOMPARE(hidden, 1);
    QCOMPARE(textsOf(inbox, QStringLiteral("Subject")).count(QStringLiteral("Angebot Umbau")), 2);
    QVERIFY(textsOf(inbox, QStringLiteral("Class")).contains(QString::number(olPost)));

    // Tasks, notes and journal entries.
    const int tasks = ns.GetDefaultFolder(olFolderTasks).Items().Count();
    const int notes = ns.GetDefaultFolder(olFolderNotes).Items().Count();
    const int journal = ns.GetDefaultFolder(olFolderJournal).Items().Count();
    QVERIFY(tasks > 0 && notes > 0 && journal > 0);

    // Another user shares the calendar, the second user nothing.
    const MAPIFolder shared = ns.GetSharedDefaultFolder(ns.CreateRecipient(QStringLiteral("pschneider")), olFolderCalendar);
    QCOMPARE(shared.Items().Count(), 1);
    QVERIFY_THROWS_EXCEPTION(StoreError,
                             ns.GetSharedDefaultFolder(ns.CreateRecipient(QStringLiteral("twagner")), olFolderCalendar));

    // The printed summary counts what is there.
    int contactItems = 0;
    for (const Item &item : contacts + old)
        contactItems += item.Class() == olContact ? 1 : 0;
    const QString summary = QStringLiteral("%1 Kontakte, %2 Termine, ").arg(contactItems).arg(appointments.size());
    QVERIFY2(run.out.contains(summary), qPrintable(run.out + summary));
    QVERIFY2(run.out.contains(QStringLiteral("%1 Aufgaben, %2 Notizen, %3 Journaleinträge").arg(tasks).arg(notes).arg(journal)),
             qPrintable(run.out));
}

// Another program wrote the demo. Every folder and item is found by its IDs
// after a reopen, with all it holds; so are the changes this program saves
// to each of them.
void tst_StoreTool::demoIsFoundAgainAfterReopen()
{
    TempProfile profile;
    QCOMPARE(runTool(profile, {QStringLiteral("--profile"), profile.folder(), QStringLiteral("demo")}).exitCode, 0);
    QHash<QString, QStringList> folderRows; // EntryID -> StoreID, name, item count
    QHash<QString, QStringList> contents; // EntryID -> content
    QHash<QString, QString> storeOf;
    QSet<int> classes;
    int n = 0;
    for (const MAPIFolder &folder : allFolders()) {
        folderRows.insert(folder.EntryID(), {folder.StoreID(), folder.Name(), QString::number(folder.Items().Count())});
        for (Item item : folder.Items()) {
            if (++n % 2 == 0) { // every other item changed, so that both kinds are checked
                item.UserProperties().Add(QStringLiteral("Geprüft"), olText).setValue(QStringLiteral("Nr. %1").arg(n));
                item.set(QStringLiteral("Categories"), QStringLiteral("Prüfung %1").arg(n));
                item.Save();
            }
            contents.insert(item.EntryID(), contentOf(item));
            storeOf.insert(item.EntryID(), item.StoreID());
            classes.insert(item.Class());
        }
    }
    QCOMPARE(classes, (QSet<int>{olContact, olDistributionList, olAppointment, olMail, olPost, olTask, olNote, olJournal}));
    QVERIFY(contents.size() > 50);

    profile.reopen();
    const NameSpace ns = TempProfile::ns();
    QCOMPARE(allFolders().size(), folderRows.size());
    for (auto it = folderRows.cbegin(); it != folderRows.cend(); ++it) {
        const MAPIFolder folder = ns.GetFolderFromID(it.key(), it.value().at(0));
        QCOMPARE((QStringList{folder.StoreID(), folder.Name(), QString::number(folder.Items().Count())}), it.value());
    }
    for (auto it = contents.cbegin(); it != contents.cend(); ++it)
        QCOMPARE(contentOf(ns.GetItemFromID(it.key(), storeOf.value(it.key()))), it.value());
}

void tst_StoreTool::exportRefusesDamagedItem_data()
{
    QTest::addColumn<int>("damage");
    for (const auto &[name, damage] : ItemDamages())
        QTest::addRow("%s", name) << int(damage);
}

// The export stops at an item whose stored data is damaged, with the German
// message and exit code 1; it writes no file and leaves the bytes alone.
void tst_StoreTool::exportRefusesDamagedItem()
{
    QFETCH(int, damage);
    TempProfile profile;
    CreateProfile(profile.folder());
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    contact.set(QStringLiteral("FullName"), QStringLiteral("Hans Müller"));
    contact.Save();
    const QString entryId = contact.EntryID();
    const QByteArray stored = DamageItemData(entryId, ItemDamage(damage));
    const QString file = profile.scratch(QStringLiteral("kontakte.vcf"));
    const ToolRun run = runTool(profile, {"--profile", "%P", "export", "vcard", file});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(QStringLiteral("Die Daten eines Elements sind beschädigt.")), qPrintable(run.err));
    QVERIFY(!QFileInfo::exists(file));
    QCOMPARE(StoredItemData(entryId), stored);
}

// A store file that cannot be opened is named on the error output; the
// stores after it are listed, and the exit code says that one failed.
void tst_StoreTool::listGoesOnPastDamagedStore()
{
    TempProfile profile;
    CreateProfile(profile.folder());
    AddStore(QStringLiteral("Archiv"), true);
    SetProfileFolder(profile.scratch(QStringLiteral("anderswo"))); // closes the files
    QFile file(QDir(profile.folder()).filePath(QStringLiteral("store1.vxstore")));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.write("kaputt kaputt kaputt kaputt");
    file.close();
    const ToolRun run = runTool(profile, {"--profile", "%P", "list"});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(QStringLiteral("store1.vxstore")), qPrintable(run.err));
    QVERIFY2(run.out.contains(QStringLiteral("Informationsspeicher \"Archiv\"")), qPrintable(run.out));
    QVERIFY2(run.out.contains(QStringLiteral("Adressbuch: 0 Benutzer")), qPrintable(run.out));
}

QTEST_GUILESS_MAIN(tst_StoreTool)
#include "tst_storetool.moc"
