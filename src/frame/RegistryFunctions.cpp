#include "frame/RegistryFunctions.h"
#include "frame/SettingValues.h"

#include "frame/FileWatch.h"
#include "frame/GlobalFunctions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

namespace {

const QString kGroup = QStringLiteral("3.0/Settings");
const QString kNotExisting = QStringLiteral("NotExisting");

QString &settingsFileOverride()
{
    static QString path;
    return path;
}

quint64 s_generation = 0;
quint64 s_fileGeneration = 0; // counts the changes of the settings file's path
// Whether a failed write has been shown for the current settings file.
bool s_writeFailureShown = false;

QString groupKey(const QString &name)
{
    return kGroup + u'/' + name;
}

} // namespace

QString SettingsFile()
{
    if (!settingsFileOverride().isEmpty())
        return settingsFileOverride();
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/Nordquell/Varnex.ini");
}

void SetSettingsFile(const QString &path)
{
    settingsFileOverride() = path;
    s_writeFailureShown = false;
    ++s_generation;
    ++s_fileGeneration;
}

quint64 SettingsGeneration()
{
    // The file is watched as well: a second Varnex or a hand edit counts.
    static FileWatch watch;
    static quint64 watchedFor = ~quint64(0);
    if (watchedFor != s_fileGeneration) {
        watch.setPath(SettingsFile());
        watchedFor = s_fileGeneration;
    }
    if (watch.changed())
        ++s_generation;
    return s_generation;
}

QString GetSetting(const QString &name, const QString &defaultValue)
{
    QSettings store(SettingsFile(), QSettings::IniFormat);
    const QVariant value = store.value(groupKey(name));
    // Only a plain string counts; a list or a typed value is "another type".
    if (!value.isValid() || value.typeId() != QMetaType::QString)
        return defaultValue;
    return value.toString();
}

bool GetBoolSetting(const QString &name, bool defaultValue)
{
    const QString value = GetSetting(name, QString());
    if (value == QStringLiteral("1"))
        return true;
    if (value == QStringLiteral("0"))
        return false;
    return defaultValue;
}

std::optional<bool> TextAsBoolean(const QString &text)
{
    const QString trimmed = text.trimmed();
    for (const char *word : {"true", "wahr"}) {
        if (trimmed.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return true;
    }
    for (const char *word : {"false", "falsch"}) {
        if (trimmed.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return false;
    }
    bool isNumber = false;
    const double value = trimmed.toDouble(&isNumber);
    if (isNumber)
        return value != 0.0;
    return std::nullopt;
}

void SaveSetting(const QString &name, const QString &value)
{
    SaveSettings({{name, value}});
}

void SaveSettings(const SettingValues &values)
{
    if (values.isEmpty())
        return;
    QDir().mkpath(QFileInfo(SettingsFile()).absolutePath());
    QSettings store(SettingsFile(), QSettings::IniFormat);
    for (const auto &[name, value] : values)
        store.setValue(groupKey(name), value);
    store.sync();
    ++s_generation;
    if (store.status() != QSettings::NoError) {
        // An unwritable settings folder fails every write alike: the box
        // comes once, each failed setting goes to the error log, and the
        // program goes on with the defaults.
        for (const auto &[name, value] : values)
            WriteErrorLog(QStringLiteral("Die Einstellung %1 konnte nicht in %2 gespeichert werden.")
                              .arg(name, QDir::toNativeSeparators(SettingsFile())),
                          QStringLiteral("0"));
        if (!s_writeFailureShown) {
            s_writeFailureShown = true;
            ShowMessage(QStringLiteral("saf"), MsgPlain, QString());
        }
    }
}

void InitSetting(const QString &name, const QString &defaultValue)
{
    if (GetSetting(name, kNotExisting) == kNotExisting)
        SaveSetting(name, defaultValue);
}

const QList<SettingDefault> &DefaultSettings()
{
    static const QList<SettingDefault> defaults{
        // Telephone
        {"CountryCode", "49"}, {"NDDP", "0"}, {"IDDP", "00"}, {"DurchwahlTrenn", "-"},
        {"Plus", "0"}, {"SchweizKonv", "1"}, {"HideFax", "0"},
        {"IDDPOut", "+"}, {"VorwahlTrennOut1", " ("}, {"VorwahlTrennOut2", ") "},
        {"VorwahlTrennOutSingle", " "}, {"DurchwahlTrennOut", "-"},
        {"UseNumberBlocksAreaNo", "0"}, {"UseNumberBlocksAreaPres", "0"},
        {"BlockTrennAreaNo", " "}, {"BlockTrennAreaPres", " "},
        {"BlockA1", " "}, {"BlockA2", " "},
        {"BlockS1", " "}, {"BlockS2", " "}, {"BlockS3", " "}, {"BlockS4", " "}, {"BlockS5", " "},
        {"BlockT1", " "}, {"BlockT2", " "}, {"BlockT3", " "}, {"BlockT4", " "}, {"BlockT5", " "},
        // Duplicates: compared fields
        {"KontakteLastName", "1"}, {"KontakteFirstName", "1"}, {"KontakteCompanyName", "1"},
        {"KontakteFileAs", "0"}, {"KontakteBusinessTelephoneNumber", "0"},
        {"KontakteHomeTelephoneNumber", "1"}, {"KontakteMobileTelephoneNumber", "1"},
        {"KontakteEmail1Address", "0"}, {"KontakteHomeAddress", "1"},
        {"KontakteBusinessAddress", "0"}, {"KontakteFieldName", "0"},
        {"TermineStart", "1"}, {"TermineEnd", "1"}, {"TermineSubject", "1"},
        {"TermineAllDayEvent", "0"}, {"TermineBusyStatus", "0"}, {"TermineBody", "1"},
        {"EmailBody", "1"}, {"EmailSenderName", "0"}, {"EmailSubject", "1"}, {"EmailTo", "1"},
        {"EmailSentOn", "0"}, {"EmailReceivedTime", "1"}, {"EmailAttachments", "1"},
        {"AufgabenBody", "1"}, {"AufgabenOwner", "0"}, {"AufgabenStartDate", "1"},
        {"AufgabenSubject", "1"},
        {"NotizenBody", "1"}, {"NotizenColor", "0"},
        {"JournalBody", "1"}, {"JournalDuration", "0"}, {"JournalStart", "1"}, {"JournalSubject", "1"},
        // Duplicates: preferences and action
        {"OldDel", "1"}, {"TerminSerie", "1"}, {"MasterFolder", "1"},
        {"Priority.0", "2"}, {"Priority.1", "1"}, {"Priority.2", "0"}, {"DupDel", "1"},
        // Names
        {"FileAsLayoutEx", "Nachname, Vorname (Firma)"},
        {"SubjectLayout", "Vorname Nachname Namenszusatz"},
        {"SubjectNameCorrect", "0"}, {"BusinessNameCheck", "1"},
        // General
        {"IdleTime", "30"}, {"AttSize", "0"},
    };
    return defaults;
}

namespace {

// Whether the INI reader would carry the line on into the next one: an odd
// number of quotes not escaped by a backslash, or a backslash at its end.
bool runsOn(const QByteArray &line)
{
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line.at(i) == '\\') {
            if (i + 1 == line.size())
                return true;
            ++i;
        } else if (line.at(i) == '"') {
            quoted = !quoted;
        }
    }
    return quoted;
}

// A damaged line of the settings file (a quote left open, a backslash at its
// end) would make the INI reader run on into the lines behind it and lose
// them. Such lines are taken out of the file, every other line stays; each
// is logged, and one box names them.
void repairSettingsFile()
{
    QFile file(SettingsFile());
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QList<QByteArray> lines = file.readAll().split('\n');
    file.close();
    QByteArray kept;
    QStringList removed;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QByteArray line = lines.at(i);
        if (line.endsWith('\r'))
            line.chop(1);
        if (runsOn(line)) {
            removed << QString::fromUtf8(line);
            continue;
        }
        kept += lines.at(i);
        if (i + 1 < lines.size())
            kept += '\n';
    }
    if (removed.isEmpty())
        return;
    QSaveFile repaired(SettingsFile());
    if (!repaired.open(QIODevice::WriteOnly) || repaired.write(kept) != kept.size() || !repaired.commit())
        WriteErrorLog(QStringLiteral("Die Einstellungsdatei %1 konnte nicht berichtigt werden.")
                          .arg(QDir::toNativeSeparators(SettingsFile())),
                      QStringLiteral("0"));
    ++s_generation;
    for (const QString &line : std::as_const(removed))
        WriteErrorLog(QStringLiteral("Beschädigte Zeile der Einstellungsdatei %1 entfernt: %2")
                          .arg(QDir::toNativeSeparators(SettingsFile()), line),
                      QStringLiteral("0"));
    ShowMessage(QStringLiteral("Die Einstellungsdatei %1 war beschädigt. Alle anderen Einstellungen sind erhalten; "
                               "diese Zeilen konnten nicht gelesen werden und gelten wieder mit ihrem Vorgabewert:\r\n%2")
                    .arg(QDir::toNativeSeparators(SettingsFile()), removed.join(QStringLiteral("\r\n"))),
                MsgExclamation, QStringLiteral("Einstellungen"));
}

} // namespace

void InitDefaultSettings()
{
    repairSettingsFile();
    for (const SettingDefault &d : DefaultSettings())
        InitSetting(QString::fromUtf8(d.name), QString::fromUtf8(d.value));
}
