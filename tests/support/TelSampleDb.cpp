#include "support/TelSampleDb.h"

#include "frame/FileWatch.h"
#include "frame/RegistryFunctions.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

namespace {

QVariant sqlValue(const std::optional<QString> &value)
{
    return value ? QVariant(*value) : QVariant(QMetaType::fromType<QString>());
}

bool fillTables(QSqlDatabase &db, const QList<CountryCodeRow> &countries, const QList<AreaCodeRow> &areas)
{
    QSqlQuery q(db);
    const bool created = q.exec(QStringLiteral("CREATE TABLE T_CountryCodes (CountryCode TEXT, NationalDDPrefix TEXT)"))
        && q.exec(QStringLiteral("CREATE TABLE T_CountryAndAreaCodes (CountryCode TEXT, AreaCode TEXT)"));
    if (!created) {
        qWarning() << q.lastError().text();
        return false;
    }
    q.prepare(QStringLiteral("INSERT INTO T_CountryCodes VALUES (?, ?)"));
    for (const CountryCodeRow &row : countries) {
        q.addBindValue(sqlValue(row.countryCode));
        q.addBindValue(sqlValue(row.nationalDDPrefix));
        if (!q.exec())
            return false;
    }
    q.prepare(QStringLiteral("INSERT INTO T_CountryAndAreaCodes VALUES (?, ?)"));
    for (const AreaCodeRow &row : areas) {
        q.addBindValue(sqlValue(row.countryCode));
        q.addBindValue(sqlValue(row.areaCode));
        if (!q.exec())
            return false;
    }
    return true;
}

} // namespace

bool WriteTelDb(const QString &path, const QList<CountryCodeRow> &countries, const QList<AreaCodeRow> &areas)
{
    const QString temp = path + QStringLiteral(".new");
    QFile::remove(temp);
    const QString name = QStringLiteral("TelSampleDbWriter");
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(temp);
        // One transaction: a test database needs no flush per row.
        ok = db.open() && db.transaction() && fillTables(db, countries, areas) && db.commit();
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    QFile::remove(path);
    ok = ok && QFile::rename(temp, path);
    SyncFileWatches(); // the change reaches the tables' watch before the next call
    if (!ok)
        QTest::qFail("the sample telephone database could not be written", __FILE__, __LINE__);
    return ok;
}

QList<CountryCodeRow> SampleCountryRows()
{
    const QString zero = QStringLiteral("0");
    return {
        {QStringLiteral("39"), std::nullopt},
        {QStringLiteral("41"), zero},
        {QStringLiteral("423"), std::nullopt},
        {QStringLiteral("49"), zero},
    };
}

QList<AreaCodeRow> SampleAreaRows()
{
    auto row = [](const char *country, std::optional<QString> area) {
        return AreaCodeRow{QString::fromLatin1(country), std::move(area)};
    };
    return {
        row("49", QStringLiteral("30")), row("49", QStringLiteral("221")), row("49", QStringLiteral("5202")),
        row("41", QStringLiteral("1")), row("41", QStringLiteral("44")),
        row("39", QStringLiteral("06")),
        row("423", std::nullopt),
    };
}

bool WriteSampleTelDb(const QString &folder)
{
    return WriteTelDb(QDir(folder).filePath(QStringLiteral("VarnexPub.db")), SampleCountryRows(), SampleAreaRows());
}

void CopyDefaultSettings(const TestEnvironment &env)
{
    static QTemporaryDir s_templateDir;
    static const QString s_template = [] {
        const QString file = s_templateDir.filePath(QStringLiteral("Varnex.ini"));
        const QString previous = SettingsFile();
        SetSettingsFile(file);
        InitDefaultSettings();
        SetSettingsFile(previous);
        return file;
    }();
    const QString target = env.settingsFile();
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile::remove(target);
    if (!QFile::copy(s_template, target))
        QTest::qFail("the default settings could not be copied", __FILE__, __LINE__);
    // The file changed behind the store's back: let cached readers see it.
    SetSettingsFile(target);
}
