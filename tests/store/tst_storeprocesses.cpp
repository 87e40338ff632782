// Two programs on one profile, and a program killed in the middle of its
// saves: every saved item survives whole, no half item appears, and the
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

} // namespace

class tst_StoreProcesses : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void twoProgramsOnOneProfile();
    void killedWhileSavingLosesNothingSaved_data();
    void killedWhileSavingLosesNothingSaved();
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
    const QString marker = profile.scratch(QStringLiteral("gespeichert.txt"));
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--child-save-loop"), profile.folder(), marker});
    QVERIFY(child.waitForStarted());
    QElapsedTimer waited;
    waited.start();
    while (markedCount(marker) < killAfter && child.state() == QProcess::Running && waited.elapsed() < 120000)
        QTest::qWait(2);
    QCOMPARE(child.state(), QProcess::Running);
    child.kill(); // SIGKILL: no chance to tidy up
    QVERIFY(child.waitForFinished());
    const int saved = markedCount(marker);

    for (const QString &file : QDir(profile.folder()).entryList({QStringLiteral("*.vxstore")}))
        QCOMPARE(integrity(QDir(profile.folder()).filePath(file)), QStringLiteral("ok"));
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
        // Two fields changed in one save are changed together or not at all.
        QCOMPARE(item.text(QStringLiteral("JobTitle")), item.text(QStringLiteral("Department")));
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
