#include "frame/RunHost.h"

#include <QCoreApplication>

namespace {

QuietRunHost &quietHost()
{
    static QuietRunHost host;
    return host;
}

RunHost *s_host = nullptr;

} // namespace

void QuietRunHost::SetRunning(bool isRunning)
{
    running = isRunning;
    progressValue = 0;
    statusText = QStringLiteral("Bereit");
    ++runningChanges;
    EnableCommands(isRunning);
}

void QuietRunHost::processEvents()
{
    if (QCoreApplication::instance())
        QCoreApplication::processEvents();
}

RunHost &CurrentRunHost()
{
    return s_host ? *s_host : quietHost();
}

void SetRunHost(RunHost *host)
{
    s_host = host;
}

QString ContactStatusText(int n, int m, const QString &folderName)
{
    return QStringLiteral("Bearbeite Kontakt %1 von %2 (%3)").arg(n).arg(m).arg(folderName);
}

void SetRunning(bool running)
{
    CurrentRunHost().SetRunning(running);
}

void EnableCommands(bool running)
{
    CurrentRunHost().EnableCommands(running);
}
