#include "frame/GlobalFunctions.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringEncoder>
#include <cstdio>

namespace {

MessageHandler &messageHandler()
{
    static MessageHandler handler;
    return handler;
}

QString &programFolderOverride()
{
    static QString folder;
    return folder;
}

QString &dataFolderOverride()
{
    static QString folder;
    return folder;
}

const QString kReferenceDb = QStringLiteral("VarnexPub.db");

// The folders by the rule, worked out once per process; the user's folder is
// created then, so that the first log entry finds it.
const ProgramFolders &resolvedFolders()
{
    static const ProgramFolders folders = [] {
        const QString executable =
            QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QDir::currentPath();
        ProgramFolders found = ResolveProgramFolders(
            executable, QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
        if (found.program != found.data)
            QDir().mkpath(found.program);
        return found;
    }();
    return folders;
}

// A log failure is shown once per streak of failures.
bool s_logFailureReported = false;
bool s_reportingLogFailure = false;

int defaultAnswer(int buttons)
{
    if (buttons == MsgQuestion)
        return AnswerYes;
    if (buttons == MsgQuestionDefaultNo)
        return AnswerNo;
    return AnswerOk;
}

const QString kSupportAddress = QStringLiteral("https://www.nordquell.de/Varnex/Support.htm");

} // namespace

MessageHandler SetMessageHandler(MessageHandler handler)
{
    MessageHandler previous = std::move(messageHandler());
    messageHandler() = std::move(handler);
    return previous;
}

int ShowMessage(const QString &prompt, int buttons, const QString &title, int timeoutSeconds)
{
    const MessageRequest request{prompt, buttons, title, timeoutSeconds};
    if (messageHandler())
        return messageHandler()(request);
    std::fprintf(stderr, "[%s] %s\n", qPrintable(title), qPrintable(prompt));
    return defaultAnswer(buttons);
}

void ShowError(const QString &description, const QVariant &number, int errorId, const QString &info)
{
    const QString errorText = QStringLiteral("Err. No.: %1, Err. Des.: %2, Info: %3")
                                  .arg(number.toString(), description, info);
    WriteErrorLog(errorText, QString::number(errorId));
    if (errorId == 1)
        return;
    const QStringList lines{
        QStringLiteral("Bei der Programmausführung ist folgender Fehler aufgetreten:"),
        QStringLiteral("Nr.: %1 / %2, %3").arg(QString::number(errorId), number.toString(), description),
        QStringLiteral("Weitere Infos unter ") + kSupportAddress,
        info,
    };
    ShowMessage(lines.join(QStringLiteral("\r\n")), MsgStop, QStringLiteral("Fehler!"));
}

namespace {

// The bytes of a log text: ISO 8859-1, and every character outside it as
// \uXXXX (\UXXXXXXXX beyond U+FFFF), so that the user can find "日本.txt"
// again.
QByteArray LogText(const QString &text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const char32_t c : text.toUcs4()) {
        if (c <= 0xFF)
            bytes += char(c);
        else if (c <= 0xFFFF)
            bytes += "\\u" + QByteArray::number(uint(c), 16).toUpper().rightJustified(4, '0');
        else
            bytes += "\\U" + QByteArray::number(uint(c), 16).toUpper().rightJustified(8, '0');
    }
    return bytes;
}

} // namespace

bool WriteErrorLog(const QString &text, const QString &sub)
{
    const QString crlf = QStringLiteral("\r\n");
    const QString entry = QStringLiteral("Date: ") + GermanDateTime(QDateTime::currentDateTime())
        + QStringLiteral("Sub: ") + sub + crlf + crlf + text + crlf + QString(76, u'-') + crlf;
    const QByteArray bytes = LogText(entry);

    QFile log(ProgramFile(QStringLiteral("errorlog.txt")));
    const bool ok = log.open(QIODevice::WriteOnly | QIODevice::Append)
        && log.write(bytes) == bytes.size() && log.flush();
    const QString failure = log.errorString();
    log.close();
    if (ok) {
        s_logFailureReported = false;
        return true;
    }
    if (!s_logFailureReported && !s_reportingLogFailure) {
        s_logFailureReported = true;
        s_reportingLogFailure = true;
        // ShowError writes the log again; that write fails silently because
        // the failure is already being reported.
        ShowError(QStringLiteral("Das Fehlerprotokoll %1 kann nicht geschrieben werden: %2")
                      .arg(QDir::toNativeSeparators(log.fileName()), failure),
                  QVariant(75), 202);
        s_reportingLogFailure = false;
    }
    return false;
}

QString GermanDateTime(const QDateTime &when)
{
    return when.toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
}

ProgramFolders ResolveProgramFolders(const QString &executableFolder, const QString &userDataHome)
{
    const QDir executable(executableFolder);
    if (!QFileInfo::exists(executable.filePath(kReferenceDb))) {
        const QString shipped = QDir::cleanPath(executable.filePath(QStringLiteral("../share/varnex")));
        if (QFileInfo::exists(QDir(shipped).filePath(kReferenceDb)))
            return {QDir(userDataHome).filePath(QStringLiteral("Nordquell/Varnex")), shipped};
    }
    return {executableFolder, executableFolder};
}

QString ProgramFolder()
{
    if (!programFolderOverride().isEmpty())
        return programFolderOverride();
    return resolvedFolders().program;
}

QString ProgramDataFolder()
{
    if (!dataFolderOverride().isEmpty())
        return dataFolderOverride();
    if (!programFolderOverride().isEmpty())
        return programFolderOverride();
    return resolvedFolders().data;
}

void SetProgramFolder(const QString &folder, const QString &dataFolder)
{
    programFolderOverride() = folder;
    dataFolderOverride() = dataFolder;
}

QString ProgramFile(const QString &fileName)
{
    return QDir(ProgramFolder()).filePath(fileName);
}

QString ProgramDataFile(const QString &fileName)
{
    return QDir(ProgramDataFolder()).filePath(fileName);
}

QString ReferenceDatabaseFile()
{
    const QString path = ProgramFile(kReferenceDb);
    if (QFileInfo::exists(path))
        return path;
    const QString shipped = ProgramDataFile(kReferenceDb);
    if (QFileInfo(shipped) == QFileInfo(path) || !QFileInfo::exists(shipped))
        return path;
    QDir().mkpath(ProgramFolder());
    const QString partial = path + QStringLiteral(".%1.neu").arg(QCoreApplication::applicationPid());
    QFile::remove(partial);
    if (QFile::copy(shipped, partial)) {
        // The shipped file is read-only; the copy is the user's to edit.
        QFile::setPermissions(partial, QFile::permissions(partial) | QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        // Another process may have been quicker; its copy is as good.
        if (!QFile::rename(partial, path))
            QFile::remove(partial);
    }
    return path;
}

QString ProgramVersion()
{
    return QStringLiteral(VARNEX_VERSION);
}

void ReadTimeZoneFileOnce()
{
    if (qEnvironmentVariableIsEmpty("TZ"))
        qputenv("TZ", ":/etc/localtime");
}
