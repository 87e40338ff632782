// The settings store: missing values, empty values, other types, defaults.
#include "frame/FileWatch.h"
#include "frame/RegistryFunctions.h"
#include "support/TestSupport.h"

#include <QFile>
#include <QSettings>
#include <QTest>

class tst_RegistryFunctions : public QObject
{
    Q_OBJECT
private slots:
    void firstStartWritesEveryDefault();
    void settingsWithoutDefaultStayAbsent_data();
    void settingsWithoutDefaultStayAbsent();
    void laterStartKeepsExistingValues_data();
    void laterStartKeepsExistingValues();
    void boolSetting_data();
    void boolSetting();
    void otherTypeCountsAsMissing();
    void writeIsVisibleToNextRead();
    void writeIsOnDiskAtOnce();
    void umlautsSurvive();
    void failedWritesShowOneSafBox();
    void damagedLineLosesOnlyItself_data();
    void damagedLineLosesOnlyItself();
};

void tst_RegistryFunctions::firstStartWritesEveryDefault()
{
    TestEnvironment env(false, false);
    QVERIFY(!QFile::exists(env.settingsFile()));
    InitDefaultSettings();
    for (const SettingDefault &d : DefaultSettings())
        QCOMPARE(GetSetting(QString::fromUtf8(d.name), QStringLiteral("?")), QString::fromUtf8(d.value));
    QCOMPARE(GetSetting(QStringLiteral("IdleTime")), QStringLiteral("30"));
    QCOMPARE(GetSetting(QStringLiteral("VorwahlTrennOut2")), QStringLiteral(") "));
    QCOMPARE(GetSetting(QStringLiteral("BlockS3")), QStringLiteral(" "));
    QCOMPARE(GetSetting(QStringLiteral("FileAsLayoutEx")), QStringLiteral("Nachname, Vorname (Firma)"));
}

void tst_RegistryFunctions::settingsWithoutDefaultStayAbsent_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"OldDelDis", "FolderInside", "MoveToFolder", "DupEntryIDSave", "FieldNameEntryID",
                             "IgnoreCountryCode", "FilterTel", "CountryFilterText", "AttPath",
                             "FolderStructureSkip", "KontakteFieldNameStr", "SaveAs", "Betreff"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void tst_RegistryFunctions::settingsWithoutDefaultStayAbsent()
{
    QFETCH(QString, name);
    TestEnvironment env(false, true);
    QCOMPARE(GetSetting(name, QStringLiteral("NotExisting")), QStringLiteral("NotExisting"));
}

void tst_RegistryFunctions::laterStartKeepsExistingValues_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("afterStart");
    QTest::newRow("eigener Wert bleibt") << QStringLiteral("41") << QStringLiteral("41");
    QTest::newRow("leerer Wert existiert") << QString() << QString();
    QTest::newRow("NotExisting gilt als fehlend") << QStringLiteral("NotExisting") << QStringLiteral("49");
}

void tst_RegistryFunctions::laterStartKeepsExistingValues()
{
    QFETCH(QString, stored);
    QFETCH(QString, afterStart);
    TestEnvironment env(false, false);
    SaveSetting(QStringLiteral("CountryCode"), stored);
    InitDefaultSettings();
    QCOMPARE(GetSetting(QStringLiteral("CountryCode"), QStringLiteral("?")), afterStart);
}

void tst_RegistryFunctions::boolSetting_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("defaultValue");
    QTest::addColumn<bool>("expected");
    QTest::newRow("1 ist wahr") << QStringLiteral("1") << false << true;
    QTest::newRow("0 ist falsch") << QStringLiteral("0") << true << false;
    QTest::newRow("True gilt nicht") << QStringLiteral("True") << false << false;
    QTest::newRow("leer gibt Vorgabe") << QString() << true << true;
    QTest::newRow("Leerzeichen gibt Vorgabe") << QStringLiteral(" 1") << false << false;
    QTest::newRow("fehlend gibt Vorgabe") << QStringLiteral("<absent>") << true << true;
}

void tst_RegistryFunctions::boolSetting()
{
    QFETCH(QString, stored);
    QFETCH(bool, defaultValue);
    QFETCH(bool, expected);
    TestEnvironment env(false, false);
    if (stored != QStringLiteral("<absent>"))
        SaveSetting(QStringLiteral("HideFax"), stored);
    QCOMPARE(GetBoolSetting(QStringLiteral("HideFax"), defaultValue), expected);
}

void tst_RegistryFunctions::otherTypeCountsAsMissing()
{
    TestEnvironment env(false, false);
    {
        QSettings raw(env.settingsFile(), QSettings::IniFormat);
        raw.setValue(QStringLiteral("3.0/Settings/IdleTime"), QStringList{QStringLiteral("a"), QStringLiteral("b")});
        raw.sync();
    }
    QCOMPARE(GetSetting(QStringLiteral("IdleTime"), QStringLiteral("def")), QStringLiteral("def"));
    InitDefaultSettings();
    QCOMPARE(GetSetting(QStringLiteral("IdleTime"), QStringLiteral("def")), QStringLiteral("30"));
}

void tst_RegistryFunctions::writeIsVisibleToNextRead()
{
    TestEnvironment env(false, true);
    const quint64 before = SettingsGeneration();
    SaveSetting(QStringLiteral("NDDP"), QStringLiteral("8"));
    QVERIFY(SettingsGeneration() != before);
    QCOMPARE(GetSetting(QStringLiteral("NDDP")), QStringLiteral("8"));
    // A second writer (the user editing the file, another instance) is seen
    // too, and moves the generation for the caches.
    SyncFileWatches();
    const quint64 beforeOther = SettingsGeneration();
    {
        QSettings other(env.settingsFile(), QSettings::IniFormat);
        other.setValue(QStringLiteral("3.0/Settings/NDDP"), QStringLiteral("9"));
    }
    QCOMPARE(GetSetting(QStringLiteral("NDDP")), QStringLiteral("9"));
    SyncFileWatches();
    QVERIFY(SettingsGeneration() != beforeOther);
}

void tst_RegistryFunctions::writeIsOnDiskAtOnce()
{
    TestEnvironment env(false, false);
    SaveSetting(QStringLiteral("AttPath"), QStringLiteral("/home/anna/Anlagen"));
    QFile f(env.settingsFile());
    QVERIFY(f.open(QIODevice::ReadOnly));
    QVERIFY(f.readAll().contains("AttPath=/home/anna/Anlagen"));
}

void tst_RegistryFunctions::umlautsSurvive()
{
    TestEnvironment env(false, false);
    SaveSetting(QStringLiteral("CountryFilterText"), QStringLiteral("Österreich"));
    QCOMPARE(GetSetting(QStringLiteral("CountryFilterText")), QStringLiteral("Österreich"));
}

void tst_RegistryFunctions::failedWritesShowOneSafBox()
{
    TestEnvironment env(false, false);
    const QString previous = SettingsFile();
    // A settings path below a plain file cannot be written.
    QFile blocker(env.folder() + QStringLiteral("/blocker"));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    SetSettingsFile(env.folder() + QStringLiteral("/blocker/Varnex.ini"));
    MessageRecorder boxes;
    // A first start writes every default: one box, every failure logged.
    InitDefaultSettings();
    SetSettingsFile(previous);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(env.readLog().count(QStringLiteral("konnte nicht in")), DefaultSettings().size());
    QCOMPARE(boxes.last().prompt, QStringLiteral("saf"));
    QCOMPARE(boxes.last().buttons, 0);
    QCOMPARE(boxes.last().title, QString());
}

void tst_RegistryFunctions::damagedLineLosesOnlyItself_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("damaged");
    QTest::newRow("offenes Anführungszeichen") << QByteArray("Settings\\IDDP=\"00") << true;
    QTest::newRow("Backslash am Zeilenende") << QByteArray("Settings\\IDDP=00\\") << true;
    QTest::newRow("escapetes Anführungszeichen ist heil") << QByteArray("Settings\\IDDP=\\\"00") << false;
}

// A damaged line is taken out at the start; the settings behind it stay.
void tst_RegistryFunctions::damagedLineLosesOnlyItself()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, damaged);
    TestEnvironment env(false, false);
    SaveSetting(QStringLiteral("AttPath"), QStringLiteral("/home/anna"));
    SaveSetting(QStringLiteral("CountryCode"), QStringLiteral("41"));
    QFile file(SettingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray text = file.readAll();
    file.close();
    const qsizetype at = text.indexOf("Settings\\CountryCode");
    QVERIFY(at > 0);
    text.insert(at, line + '\n');
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
    file.close();
    MessageRecorder boxes;
    InitDefaultSettings();
    QCOMPARE(GetSetting(QStringLiteral("CountryCode")), QStringLiteral("41"));
    QCOMPARE(GetSetting(QStringLiteral("AttPath")), QStringLiteral("/home/anna"));
    QCOMPARE(boxes.count(), damaged ? 1 : 0);
    if (damaged) {
        QVERIFY2(boxes.last().prompt.contains(QString::fromUtf8(line)), qPrintable(boxes.last().prompt));
        QVERIFY(env.readLog().contains(QString::fromUtf8(line)));
        QCOMPARE(GetSetting(QStringLiteral("IDDP")), QStringLiteral("00"));
    }
}

QTEST_GUILESS_MAIN(tst_RegistryFunctions)
#include "tst_registryfunctions.moc"
