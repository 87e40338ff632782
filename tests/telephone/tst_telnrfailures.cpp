// The normaliser's failures (error 801, once per number, empty result) and
// its caches: a change of settings or tables applies from the next call on.
#include "telephone/TelNrStandard.h"

#include "telephone/TelTables.h"
#include "frame/FileWatch.h"
#include "frame/RegistryFunctions.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

class tst_TelNrFailures : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void missingDatabaseReportsEachNumber();
    void failures_data();
    void failures();
    void nullCountryRowFailsOnlyWhenReached_data();
    void nullCountryRowFailsOnlyWhenReached();
    void tablesAreKeptWhileTheFileStays();
    void savedSettingAppliesAtNextCall();
    void settingEditedElsewhereApplies();
    void changedDatabaseIsSeen();
};

namespace {

QString dbPath(const TestEnvironment &env)
{
    return QDir(env.folder()).filePath(QStringLiteral("VarnexPub.db"));
}

QString normalised(const QString &number)
{
    bool changed = false;
    return StandardTelNr(number, changed);
}

void execOnDatabase(const QString &path, const QString &statement)
{
    const QString name = QStringLiteral("tst_TelNrFailures");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QSqlQuery q(db);
        QVERIFY(q.exec(statement));
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    SyncFileWatches(); // another program's change, seen a moment later
}

} // namespace

void tst_TelNrFailures::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_TelNrFailures::missingDatabaseReportsEachNumber()
{
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    MessageRecorder boxes;
    const QStringList numbers{QStringLiteral("030 1234"), QStringLiteral("keine Nummer"), QStringLiteral("+41 44 1234")};
    for (const QString &number : numbers) {
        bool changed = true;
        QCOMPARE(StandardTelNr(number, changed), QString());
        QVERIFY(!changed);
    }
    // Blank input needs no table and reports nothing.
    bool changed = true;
    QCOMPARE(StandardTelNr(QStringLiteral("  "), changed), QString());
    QVERIFY(!changed);

    QCOMPARE(boxes.count(), numbers.size());
    for (int i = 0; i < numbers.size(); ++i) {
        const MessageRequest &box = boxes.requests().at(i);
        QCOMPARE(box.buttons, int(MsgStop));
        QCOMPARE(box.title, QStringLiteral("Fehler!"));
        QVERIFY2(box.prompt.contains(QStringLiteral("Nr.: 801 / 53, Datei nicht gefunden: ")), qPrintable(box.prompt));
        QVERIFY2(box.prompt.endsWith(QStringLiteral("(Telephone number.: ") + numbers.at(i) + u')'), qPrintable(box.prompt));
    }
    QCOMPARE(env.readLog().count(QStringLiteral("Sub: 801")), numbers.size());
    // The error did not create a database on the way.
    QVERIFY(!QFile::exists(dbPath(env)));
}

void tst_TelNrFailures::failures_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("fault");
    QTest::newRow("Plus ist kein Wahrheitswert")
        << QStringLiteral("Plus") << QStringLiteral("ja") << QStringLiteral("030 1234") << QStringLiteral("13, Typen unverträglich");
    QTest::newRow("Plus leer")
        << QStringLiteral("Plus") << QString() << QStringLiteral("keine Nummer") << QStringLiteral("13, Typen unverträglich");
    QTest::newRow("SchweizKonv ist kein Wahrheitswert")
        << QStringLiteral("SchweizKonv") << QStringLiteral("vielleicht") << QStringLiteral("030 1234") << QStringLiteral("13, Typen unverträglich");
    QTest::newRow("Blockbreite über 16 Bit")
        << QStringLiteral("BlockS2") << QStringLiteral("40000") << QStringLiteral("030 1234567") << QStringLiteral("6, Überlauf");
}

void tst_TelNrFailures::failures()
{
    QFETCH(QString, setting);
    QFETCH(QString, value);
    QFETCH(QString, number);
    QFETCH(QString, fault);
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    SaveSetting(QStringLiteral("UseNumberBlocksAreaPres"), QStringLiteral("1"));
    SaveSetting(QStringLiteral("BlockS1"), QStringLiteral("3"));
    SaveSetting(setting, value);
    MessageRecorder boxes;
    bool changed = true;
    QCOMPARE(StandardTelNr(number, changed), QString());
    QVERIFY(!changed);
    QCOMPARE(boxes.count(), 1);
    QVERIFY2(boxes.last().prompt.contains(QStringLiteral("Nr.: 801 / ") + fault), qPrintable(boxes.last().prompt));
}

void tst_TelNrFailures::nullCountryRowFailsOnlyWhenReached_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("boxCount");
    QTest::newRow("Land vor der NULL-Zeile") << QStringLiteral("+49 30 1234") << QStringLiteral("+49 (30) 1234") << 0;
    QTest::newRow("Land hinter der NULL-Zeile") << QStringLiteral("+41 44 1234") << QString() << 1;
    QTest::newRow("ohne Land läuft die Suche durch") << QStringLiteral("030 1234") << QString() << 1;
}

// The country scan fails on a NULL CountryCode only when it reaches that row.
void tst_TelNrFailures::nullCountryRowFailsOnlyWhenReached()
{
    QFETCH(QString, number);
    QFETCH(QString, expected);
    QFETCH(int, boxCount);
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    const QList<CountryCodeRow> countries{{QStringLiteral("49"), QStringLiteral("0")},
                                          {std::nullopt, QStringLiteral("0")},
                                          {QStringLiteral("41"), QStringLiteral("0")}};
    QVERIFY(WriteTelDb(dbPath(env), countries, SampleAreaRows()));
    MessageRecorder boxes;
    QCOMPARE(normalised(number), expected);
    QCOMPARE(boxes.count(), boxCount);
    if (boxCount > 0)
        QVERIFY2(boxes.last().prompt.contains(QStringLiteral("801 / 94, Unzulässige Verwendung von Null")),
                 qPrintable(boxes.last().prompt));
}

// The cache is used: an unchanged file is read once, however young; a
// notification or a write reads it again.
void tst_TelNrFailures::tablesAreKeptWhileTheFileStays()
{
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("+49 (30) 1234"));
    const quint64 reads = TelTablesReadCount();
    QCOMPARE(normalised(QStringLiteral("0221 1234")), QStringLiteral("+49 (221) 1234"));
    QCOMPARE(normalised(QStringLiteral("+423 1234")), QStringLiteral("+423 1234"));
    QCOMPARE(TelTablesReadCount(), reads);

    NotifyTelTablesChanged();
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("+49 (30) 1234"));
    QCOMPARE(TelTablesReadCount(), reads + 1);

    execOnDatabase(dbPath(env), QStringLiteral("DELETE FROM T_CountryAndAreaCodes WHERE AreaCode = '221'"));
    QCOMPARE(normalised(QStringLiteral("0221 1234")), QStringLiteral("0221 1234"));
    QCOMPARE(TelTablesReadCount(), reads + 2);
}

void tst_TelNrFailures::savedSettingAppliesAtNextCall()
{
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("+49 (30) 1234"));
    SaveSetting(QStringLiteral("IDDPOut"), QStringLiteral("00"));
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("0049 (30) 1234"));
    SaveSetting(QStringLiteral("Plus"), QStringLiteral("1"));
    QCOMPARE(normalised(QStringLiteral("4930 1234")), QStringLiteral("0049 (30) 1234"));
    SaveSetting(QStringLiteral("BlockS1"), QStringLiteral("2"));
    QCOMPARE(FormatNumberBlocks(QStringLiteral("1234"), QStringLiteral("BlockS")), QStringLiteral("12 34"));
}

// A second Varnex or a hand edit changes the file behind the settings store
// of this process: no write of this process tells the cache.
void tst_TelNrFailures::settingEditedElsewhereApplies()
{
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("+49 (30) 1234"));
    QFile file(env.settingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray text = file.readAll();
    file.close();
    QVERIFY(text.contains("IDDPOut=+\n"));
    text.replace("IDDPOut=+\n", "IDDPOut=00\n");
    QSaveFile edited(env.settingsFile()); // written beside and renamed, as editors do
    QVERIFY(edited.open(QIODevice::WriteOnly));
    edited.write(text);
    QVERIFY(edited.commit());
    QTRY_COMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("0049 (30) 1234"));
}

// A rewritten file, a row changed in place by another connection (same file,
// same size), another program folder and a removed file: each is seen at
// the next call.
void tst_TelNrFailures::changedDatabaseIsSeen()
{
    TestEnvironment env(false, false);
    CopyDefaultSettings(env);
    QVERIFY(WriteSampleTelDb(env.folder()));
    MessageRecorder boxes;
    QCOMPARE(normalised(QStringLiteral("040 1234")), QStringLiteral("040 1234"));
    QList<AreaCodeRow> areas = SampleAreaRows();
    areas.append({QStringLiteral("49"), QStringLiteral("40")});
    QVERIFY(WriteTelDb(dbPath(env), SampleCountryRows(), areas));
    QCOMPARE(normalised(QStringLiteral("040 1234")), QStringLiteral("+49 (40) 1234"));

    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("+49 (30) 1234"));
    execOnDatabase(dbPath(env), QStringLiteral("DELETE FROM T_CountryAndAreaCodes WHERE AreaCode = '30'"));
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("030 1234"));
    execOnDatabase(dbPath(env), QStringLiteral("INSERT INTO T_CountryAndAreaCodes VALUES ('49', '3')"));
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("+49 (3) 01234"));

    QTemporaryDir other;
    QVERIFY(WriteSampleTelDb(other.path()));
    SetProgramFolder(other.path());
    QCOMPARE(normalised(QStringLiteral("040 1234")), QStringLiteral("040 1234"));
    SetProgramFolder(env.folder());
    QCOMPARE(normalised(QStringLiteral("040 1234")), QStringLiteral("+49 (40) 1234"));

    QVERIFY(QFile::remove(dbPath(env)));
    SyncFileWatches();
    QCOMPARE(normalised(QStringLiteral("030 1234")), QString());
    QCOMPARE(boxes.count(), 1);
    QVERIFY(WriteSampleTelDb(env.folder()));
    QCOMPARE(normalised(QStringLiteral("030 1234")), QStringLiteral("+49 (30) 1234"));
    QCOMPARE(boxes.count(), 1);
}

QTEST_GUILESS_MAIN(tst_TelNrFailures)
#include "tst_telnrfailures.moc"
