#include "frame/GlobalFunctions.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
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

QString ProgramFolder()
{
    if (!programFolderOverride().isEmpty())
        return programFolderOverride();
    if (QCoreApplication::instance()) {
        // The executable stays where it is; asked at every number and name.
        static const QString folder = QCoreApplication::applicationDirPath();
        return folder;
    }
    return QDir::currentPath();
}

void SetProgramFolder(const QString &folder)
{
    programFolderOverride() = folder;
}

QString ProgramFile(const QString &fileName)
{
    return QDir(ProgramFolder()).filePath(fileName);
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
