#include "support/TestSupport.h"

#include "frame/RegistryFunctions.h"
#include "store/Profile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTest>

MessageRecorder::MessageRecorder(int defaultAnswer)
    : m_defaultAnswer(defaultAnswer)
{
    m_previous = SetMessageHandler([this](const MessageRequest &request) {
        m_requests.append(request);
        return m_script.isEmpty() ? m_defaultAnswer : m_script.takeFirst();
    });
}

MessageRecorder::~MessageRecorder()
{
    SetMessageHandler(std::move(m_previous));
}

TestEnvironment::TestEnvironment(bool withReferenceDb, bool withDefaults)
    : m_previousFolder(ProgramFolder())
    , m_previousDataFolder(ProgramDataFolder())
    , m_previousSettings(SettingsFile())
    , m_previousProfile(ProfileFolder())
{
    SetProgramFolder(m_dir.path());
    // Never the user's own profile: a test that reads the store without
    // making a profile of its own sees an empty one here.
    SetProfileFolder(m_dir.filePath(QStringLiteral("Profil")));
    SetSettingsFile(m_dir.filePath(QStringLiteral("settings/Varnex.ini")));
    if (withReferenceDb)
        QFile::copy(BuiltReferenceDb(), m_dir.filePath(QStringLiteral("VarnexPub.db")));
    if (withDefaults)
        InitDefaultSettings();
}

TestEnvironment::~TestEnvironment()
{
    SetProgramFolder(m_previousFolder, m_previousDataFolder);
    SetSettingsFile(m_previousSettings);
    SetProfileFolder(m_previousProfile);
}

QString TestEnvironment::settingsFile() const
{
    return SettingsFile();
}

QString TestEnvironment::readLog() const
{
    QFile f(m_dir.filePath(QStringLiteral("errorlog.txt")));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLatin1(f.readAll());
}

QString BuiltReferenceDb()
{
    const QByteArray fromEnv = qgetenv("VARNEX_REFDB");
    if (!fromEnv.isEmpty())
        return QString::fromLocal8Bit(fromEnv);
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("VarnexPub.db"));
}
