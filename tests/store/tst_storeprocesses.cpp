// Two programs on one profile, and a program killed in the middle of its
// saves, deletes and moves: every saved item and change survives whole, no
// half item appears, an item that was moved lies in one place, and the
// files stay sound. The test starts itself as the second program.
#include "store/StoreTestProfile.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

namespace {

const QStringList s_numberFields = {
    "BusinessFaxNumber", "HomeFaxNumber", "OtherFaxNumber", "BusinessTelephoneNumber", "HomeTelephoneNumber",
    "MobileTelephoneNumber", "AssistantTelephoneNumber", "Business2TelephoneNumber", "CallbackTelephoneNumber",
    "CarTelephoneNumber", "CompanyMainTelephoneNumber", "Home2TelephoneNumber", "ISDNNumber", "OtherTelephoneNumber",
    "PagerNumber", "PrimaryTelephoneNumber", "RadioTelephoneNumber", "TelexNumber", "TTYTDDTelephoneNumber"};

QString numberOf(int n, int field)
{
    return QStringLiteral("+49 (30) %1-%2").arg(n).arg(field);
}

QString bodyOf(int n)
{
    return QString(2000 + n % 500, QChar(u'a' + n % 26));
}

// The child's loop: a new contact per step, and every third step a change
// of two fields of an older contact in one save. After each save the number
// goes to the marker file.
int childSaveLoop(const QString &profile, const QString &marker)
{
    SetProfileFolder(profile);
    QFile log(marker);
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append))
        return 3;
    const MAPIFolder contacts = Application().GetNamespace().GetDefaultFolder(olFolderContacts);
    QList<QString> ids;
    for (int n = 1;; ++n) {
        Item item = contacts.Items().Add();
        item.set(QStringLiteral("FullName"), QStringLiteral("Kontakt %1").arg(n));
        for (int f = 0; f < s_numberFields.size(); ++f)
            item.set(s_numberFields.at(f), numberOf(n, f));
        item.setBody(bodyOf(n));
        item.Attachments().AddData(QByteArray(5000, char(n % 256)), QStringLiteral("anlage-%1.bin").arg(n));
        item.Save();
        ids << item.EntryID();
        if (n % 3 == 0) {
            Item older = Application().GetNamespace().GetItemFromID(ids.at(n / 2));
            older.set(QStringLiteral("JobTitle"), QStringLiteral("geändert %1").arg(n));
            older.set(QStringLiteral("Department"), QStringLiteral("geändert %1").arg(n));
            older.Save();
        }
        log.write(QByteArray::number(n) + '\n');
        log.flush();
    }
}

// The step of the save loop that changes contact k, 0 for none: step n
// changes contact n / 2 + 1 when n is a multiple of 3.
int changingStep(int k)
{
    for (int n : {2 * k - 2, 2 * k - 1})
        if (n > 0 && n % 3 == 0)
            return n;
    return 0;
}

const int s_moveTasks = 400;

// Where the move loop sends the task of step n (and so "Aufgabe n").
QString targetOf(int n)
{
    static const QString targets[] = {QStringLiteral("Gelöschte Objekte"), QStringLiteral("Ablage"),
                                      QStringLiteral("Archiv")};
    return targets[n % 3];
}

// The child's moves: at each step the first task of "Aufgaben" is deleted,
// moved to its subfolder "Ablage" or moved into the store "Archiv", in turn.
int childMoveLoop(const QString &profile, const QString &marker)
{
    SetProfileFolder(profile);
    QFile log(marker);
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append))
        return 3;
    const NameSpace ns = Application().GetNamespace();
    const MAPIFolder tasks = ns.GetDefaultFolder(olFolderTasks);
    const MAPIFolder shelf = tasks.Folders().Item(QStringLiteral("Ablage"));
    const MAPIFolder archive = ns.Folders().Item(QStringLiteral("Archiv")).Folders().Item(QStringLiteral("Aufgaben"));
    for (int n = 1;; ++n) {
        Item task = tasks.Items().Item(1);
        if (targetOf(n) == u"Gelöschte Objekte")
            task.Delete();
        else
            task.Move(targetOf(n) == u"Ablage" ? shelf : archive);
        log.write(QByteArray::number(n) + '\n');
        log.flush();
    }
}

int childAdd(const QString &profile, const QString &prefix, int count)
{
    SetProfileFolder(profile);
    const MAPIFolder tasks = Application().GetNamespace().GetDefaultFolder(olFolderTasks);
    for (int n = 1; n <= count; ++n) {
        Item task = tasks.Items().Add();
        task.setSubject(prefix + QString::number(n));
        task.Save();
    }
    return 0;
}

int runChild(const QStringList &args)
{
    try {
        if (args.at(1) == u"--child-save-loop")
            return childSaveLoop(args.at(2), args.at(3));
        if (args.at(1) == u"--child-move-loop")
            return childMoveLoop(args.at(2), args.at(3));
        if (args.at(1) == u"--child-add")
            return childAdd(args.at(2), args.at(3), args.at(4).toInt());
    } catch (const StoreError &e) {
        qWarning("%s", qPrintable(e.description()));
        return 4;
    }
    return 2;
}

int markedCount(const QString &marker)
{
    QFile file(marker);
    return file.open(QIODevice::ReadOnly) ? int(file.readAll().count('\n')) : 0;
}

// Starts the child loop and kills it once it has marked killAfter steps;
// returns the number of marked steps.
int killChildAfter(const QString &mode, const TempProfile &profile, int killAfter)
{
    const QString marker = profile.scratch(QStringLiteral("erledigt.txt"));
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {mode, profile.folder(), marker});
    if (!child.waitForStarted())
        return -1;
    QElapsedTimer waited;
    waited.start();
    while (markedCount(marker) < killAfter && child.state() == QProcess::Running && waited.elapsed() < 120000)
        QTest::qWait(2);
    if (child.state() != QProcess::Running)
        return -1; // the loop ended by itself: no kill to test
    child.kill(); // SIGKILL: no chance to tidy up
    child.waitForFinished();
    return markedCount(marker);
}

QString integrity(const QString &path)
{
    QString result;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("check"));
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(QStringLiteral("PRAGMA integrity_check")) && q.next())
                result = q.value(0).toString();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("check"));
    return result;
}

// "file: result" of SQLite's integrity check for each store file of the profile.
QStringList integrityOfStores(const TempProfile &profile)
{
    QStringList reports;
    const QDir folder(profile.folder());
    for (const QString &file : folder.entryList({QStringLiteral("*.vxstore")}))
        reports << file + QStringLiteral(": ") + integrity(folder.filePath(file));
    return reports;
}

} // namespace

class tst_StoreProcesses : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void twoProgramsOnOneProfile();
    void killedWhileSavingLosesNothingSaved_data();
    void killedWhileSavingLosesNothingSaved();
    void killedWhileMovingKeepsEveryItem_data();
    void killedWhileMovingKeepsEveryItem();
};

void tst_StoreProcesses::twoProgramsOnOneProfile()
{
    TempProfile profile;
    const MAPIFolder tasks = TempProfile::folderOf(olFolderTasks);
    const Items items = tasks.Items();
    QCOMPARE(items.Count(), 0);
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--child-add"), profile.folder(), QStringLiteral("Kind "), QStringLiteral("300")});
    QVERIFY(child.waitForStarted());
    for (int n = 1; n <= 300; ++n) {
        Item task = tasks.Items().Add();
        task.setSubject(QStringLiteral("Eltern %1").arg(n));
        task.Save();
    }
    QVERIFY(child.waitForFinished(120000));
    QCOMPARE(child.exitCode(), 0);
    // The other program's items are seen without a reopen.
    QCOMPARE(items.Count(), 600);
    QSet<QString> subjects;
    for (const Item &task : items)
        subjects.insert(task.Subject());
    QCOMPARE(subjects.size(), 600);
    QVERIFY(subjects.contains(QStringLiteral("Kind 300")) && subjects.contains(QStringLiteral("Eltern 1")));
}

void tst_StoreProcesses::killedWhileSavingLosesNothingSaved_data()
{
    QTest::addColumn<int>("killAfter");
    QTest::newRow("früh") << 5;
    QTest::newRow("mittendrin") << 120;
    QTest::newRow("spät") << 400;
}

void tst_StoreProcesses::killedWhileSavingLosesNothingSaved()
{
    QFETCH(int, killAfter);
    TempProfile profile;
    (void)TempProfile::ns(); // the profile exists before the child starts
    const int saved = killChildAfter(QStringLiteral("--child-save-loop"), profile, killAfter);
    QVERIFY2(saved >= killAfter, "the child ended before it was killed");
    const QStringList reports = integrityOfStores(profile);
    QVERIFY(!reports.isEmpty());
    for (const QString &report : reports)
        QVERIFY2(report.endsWith(QStringLiteral(": ok")), qPrintable(report));
    profile.reopen();
    QHash<QString, Item> byName;
    for (const Item &item : TempProfile::folderOf(olFolderContacts).Items())
        byName.insert(item.text(QStringLiteral("FullName")), item);
    // Every saved item, and at most one more whose save ended before its mark.
    QVERIFY2(byName.size() >= saved && byName.size() <= saved + 1,
             qPrintable(QStringLiteral("%1 Elemente, %2 gespeichert").arg(byName.size()).arg(saved)));
    for (int n = 1; n <= byName.size(); ++n) {
        const Item item = byName.value(QStringLiteral("Kontakt %1").arg(n));
        QVERIFY2(!item.isNull(), qPrintable(QStringLiteral("Kontakt %1 fehlt").arg(n)));
        for (int f = 0; f < s_numberFields.size(); ++f)
            QCOMPARE(item.text(s_numberFields.at(f)), numberOf(n, f));
        QCOMPARE(item.Body(), bodyOf(n));
        QCOMPARE(item.Attachments().Count(), 1);
        QCOMPARE(item.Attachments().Item(1).Size(), qint64(5000));
        // Two fields changed in one save are changed together or not at all;
        // a change marked as saved is there, one not yet begun is not.
        const QString job = item.text(QStringLiteral("JobTitle"));
        QCOMPARE(item.text(QStringLiteral("Department")), job);
        const int step = changingStep(n);
        const QString changed = QStringLiteral("geändert %1").arg(step);
        if (step == 0 || step > saved + 1)
            QCOMPARE(job, QString());
        else if (step <= saved)
            QCOMPARE(job, changed);
        else
            QVERIFY2(job.isEmpty() || job == changed, qPrintable(job));
    }
}

void tst_StoreProcesses::killedWhileMovingKeepsEveryItem_data()
{
    QTest::addColumn<int>("killAfter");
    QTest::newRow("früh") << 4;
    QTest::newRow("mittendrin") << 60;
    QTest::newRow("spät") << 180;
}

// A task moved within a store (Delete, Move) lies in exactly one place at
// any moment. Across stores the move is a copy and a delete in two files:
// the one task in flight may lie in both places, never in none.
void tst_StoreProcesses::killedWhileMovingKeepsEveryItem()
{
    QFETCH(int, killAfter);
    TempProfile profile;
    const MAPIFolder tasks = TempProfile::folderOf(olFolderTasks);
    tasks.Folders().Add(QStringLiteral("Ablage"));
    AddStore(QStringLiteral("Archiv")).Folders().Add(QStringLiteral("Aufgaben"), olFolderTasks);
    for (int k = 1; k <= s_moveTasks; ++k) {
        Item task = tasks.Items().Add();
        task.setSubject(QStringLiteral("Aufgabe %1").arg(k));
        task.setBody(bodyOf(k));
        task.Attachments().AddData(QByteArray(3000, char(k % 256)), QStringLiteral("anlage-%1.bin").arg(k));
        task.Save();
    }
    const int moved = killChildAfter(QStringLiteral("--child-move-loop"), profile, killAfter);
    QVERIFY2(moved >= killAfter, "the child ended before it was killed");
    const QStringList reports = integrityOfStores(profile);
    QVERIFY(!reports.isEmpty());
    for (const QString &report : reports)
        QVERIFY2(report.endsWith(QStringLiteral(": ok")), qPrintable(report));

    profile.reopen();
    const NameSpace ns = TempProfile::ns();
    const MAPIFolder ownTasks = ns.GetDefaultFolder(olFolderTasks);
    const QList<std::pair<QString, MAPIFolder>> places = {
        {QStringLiteral("Aufgaben"), ownTasks},
        {QStringLiteral("Ablage"), ownTasks.Folders().Item(QStringLiteral("Ablage"))},
        {QStringLiteral("Gelöschte Objekte"), ns.GetDefaultFolder(olFolderDeletedItems)},
        {QStringLiteral("Archiv"), ns.Folders().Item(QStringLiteral("Archiv")).Folders().Item(QStringLiteral("Aufgaben"))},
    };
    QHash<int, QStringList> whereIs;
    for (const auto &[name, folder] : places) {
        for (const Item &task : folder.Items()) {
            const int k = task.Subject().section(u' ', 1).toInt();
            QCOMPARE(task.Body(), bodyOf(k));
            QCOMPARE(task.Attachments().Count(), 1);
            QCOMPARE(task.Attachments().Item(1).Size(), qint64(3000));
            whereIs[k] << name;
        }
    }
    QCOMPARE(whereIs.size(), s_moveTasks);
    for (int k = 1; k <= s_moveTasks; ++k) {
        const QStringList where = whereIs.value(k);
        const QString what = QStringLiteral("Aufgabe %1 in %2, %3 Schritte").arg(k).arg(where.join(u',')).arg(moved);
        if (k <= moved)
            QVERIFY2(where == QStringList{targetOf(k)}, qPrintable(what));
        else if (k > moved + 1)
            QVERIFY2(where == QStringList{QStringLiteral("Aufgaben")}, qPrintable(what));
        else
            QVERIFY2(where == QStringList{QStringLiteral("Aufgaben")} || where == QStringList{targetOf(k)}
                         || (targetOf(k) == u"Archiv" && where == (QStringList{QStringLiteral("Aufgaben"), QStringLiteral("Archiv")})),
                     qPrintable(what));
    }
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc >= 2 && QByteArray(argv[1]).startsWith("--child-"))
        return runChild(app.arguments());
    tst_StoreProcesses test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_storeprocesses.moc"
