#include "frame/AccountSync.h"

#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "store/Profile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

namespace {

// Progress lines of the tool: "\rKontakte: 100/250 ...".
void showProgress(const QString &line)
{
    static const QRegularExpression progress(QStringLiteral("^(.*): (\\d+)/(\\d+) \\.\\.\\.$"));
    const QRegularExpressionMatch m = progress.match(line.trimmed());
    if (!m.hasMatch())
        return;
    RunHost &host = CurrentRunHost();
    host.setProgressMax(m.captured(3).toInt());
    host.setProgressValue(m.captured(2).toInt());
    host.setStatusText(QStringLiteral("Abgleich %1: %2 von %3").arg(m.captured(1), m.captured(2), m.captured(3)));
}

} // namespace

QString StoreToolPath()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("varnex-store"));
}

AccountSyncResult SyncAccounts(const PasswordPrompt &askPassword)
{
    AccountSyncResult result;
    if (!QFileInfo::exists(QDir(ProfileFolder()).filePath(QStringLiteral("Konten.vxdav")))) {
        ShowMessage(QStringLiteral("Es ist kein Konto eingerichtet. Ein Konto richten Sie mit\n"
                                   "varnex-store dav add NAME ADRESSE --user BENUTZER\nein."),
                    MsgInformation, QStringLiteral("Info!"));
        result.exitCode = 2;
        return result;
    }
    if (!QFileInfo(StoreToolPath()).isExecutable()) {
        ShowMessage(QStringLiteral("Das Programm varnex-store fehlt neben Varnex (%1).").arg(QDir::toNativeSeparators(StoreToolPath())),
                    MsgStop, QStringLiteral("Fehler!"));
        result.exitCode = 1;
        return result;
    }
    SetRunning(true);
    CurrentRunHost().setStatusText(QStringLiteral("Konten werden abgeglichen ..."));
    QProcess tool;
    tool.start(StoreToolPath(), {QStringLiteral("--profile"), ProfileFolder(), QStringLiteral("dav"), QStringLiteral("sync")});
    QByteArray pending;
    bool cancelled = false;
    while (tool.state() != QProcess::NotRunning || tool.bytesAvailable() > 0) {
        tool.waitForReadyRead(40);
        result.report += QString::fromUtf8(tool.readAllStandardOutput());
        pending += tool.readAllStandardError();
        // Lines end in CR (progress) or LF; a password prompt ends in ": ".
        qsizetype cut;
        while ((cut = pending.indexOf('\r')) >= 0 || (cut = pending.indexOf('\n')) >= 0) {
            const QString line = QString::fromUtf8(pending.left(cut));
            pending.remove(0, cut + 1);
            showProgress(line);
            if (!line.trimmed().isEmpty() && !line.contains(QStringLiteral(" ...")))
                result.problems += line.trimmed() + u'\n';
        }
        if (pending.startsWith("Passwort für") && pending.endsWith(": ")) {
            const std::optional<QString> password = askPassword(QString::fromUtf8(pending).trimmed());
            pending.clear();
            if (!password) {
                cancelled = true;
                tool.kill();
            } else {
                tool.write(password->toUtf8() + '\n');
            }
        }
        CurrentRunHost().processEvents();
        if (tool.state() == QProcess::NotRunning && tool.bytesAvailable() == 0)
            break;
    }
    tool.waitForFinished();
    result.report += QString::fromUtf8(tool.readAllStandardOutput());
    result.problems += QString::fromUtf8(pending).trimmed();
    result.exitCode = cancelled ? 1 : tool.exitStatus() == QProcess::NormalExit ? tool.exitCode() : 1;
    SetRunning(false);
    QString text = result.report.trimmed();
    if (cancelled)
        text += QStringLiteral("\nDer Abgleich wurde abgebrochen.");
    if (!result.problems.trimmed().isEmpty())
        text += u'\n' + result.problems.trimmed();
    ShowMessage(text.trimmed().isEmpty() ? QStringLiteral("Der Abgleich ist beendet.") : text.trimmed(),
                result.exitCode == 1 ? MsgStop : MsgInformation,
                result.exitCode == 1 ? QStringLiteral("Fehler!") : QStringLiteral("Info!"));
    return result;
}
