#include "DavCommand.h"

#include "DavClient.h"
#include "DavState.h"
#include "DavSync.h"

#include "store/Store.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <termios.h>
#include <unistd.h>

namespace {

struct Options {
    QStringList words;
    QString user;
    QString passwordFile;
    bool allowHttp = false;
    bool bad = false;
};

Options parse(const QStringList &args)
{
    Options o;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &a = args.at(i);
        if (a == u"--allow-http")
            o.allowHttp = true;
        else if ((a == u"--user" || a == u"--password-file") && i + 1 < args.size())
            (a == u"--user" ? o.user : o.passwordFile) = args.at(++i);
        else if (a.startsWith(u"--"))
            o.bad = true;
        else
            o.words << a;
    }
    return o;
}

// One line from standard input; without echo when it is a terminal.
QString readSecretLine(const QString &prompt, QTextStream &err)
{
    const bool terminal = isatty(STDIN_FILENO);
    termios saved{};
    err << prompt; // the window answers it when the input is no terminal
    err.flush();
    if (terminal) {
        tcgetattr(STDIN_FILENO, &saved);
        termios quiet = saved;
        quiet.c_lflag &= ~tcflag_t(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    QByteArray line;
    for (int c = std::getchar(); c != EOF && c != '\n'; c = std::getchar())
        line += char(c);
    if (terminal) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
        err << "\n";
    }
    if (line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}

QString password(const Options &o, const DavAccount &account, QTextStream &err)
{
    if (qEnvironmentVariableIsSet("VARNEX_DAV_PASSWORD"))
        return qEnvironmentVariable("VARNEX_DAV_PASSWORD");
    if (!o.passwordFile.isEmpty()) {
        QFile file(o.passwordFile);
        if (!file.open(QIODevice::ReadOnly))
            throw DavError{DavError::Refused, QStringLiteral("Die Passwortdatei %1 kann nicht gelesen werden.")
                                                  .arg(QDir::toNativeSeparators(o.passwordFile))};
        return QString::fromUtf8(file.readLine()).remove(u'\n').remove(u'\r');
    }
    return readSecretLine(QStringLiteral("Passwort für das Konto \"%1\" (Benutzer %2): ").arg(account.name, account.user), err);
}

int add(const Options &o, DavState &state, QTextStream &out, QTextStream &err)
{
    if (o.words.size() != 3)
        return 2;
    DavAccount account;
    account.name = o.words.at(1).trimmed();
    const QUrl url = QUrl::fromUserInput(o.words.at(2));
    account.user = !o.user.isEmpty() ? o.user : !url.userName().isEmpty() ? url.userName() : qEnvironmentVariable("USER");
    QUrl clean = url;
    clean.setUserInfo(QString());
    account.url = clean.toString();
    account.allowHttp = o.allowHttp;
    if (account.name.isEmpty())
        return 2;
    if (state.account(account.name)) {
        err << "Ein Konto \"" << account.name << "\" gibt es schon.\n";
        return 1;
    }
    DavClient client(clean, account.user, password(o, account, err), account.allowHttp);
    const QStringList folders = AddDavAccount(state, account, client);
    out << "Konto \"" << account.name << "\" angelegt (" << account.url << ", Benutzer " << account.user
        << "). Ordner im Informationsspeicher \"" << account.name << "\":\n";
    for (const QString &name : folders)
        out << "  " << name << "\n";
    out << "Mit \"varnex-store dav sync " << account.name << "\" werden die Daten abgeglichen.\n";
    return 0;
}

int sync(const Options &o, DavState &state, QTextStream &out, QTextStream &err)
{
    QList<DavAccount> accounts;
    if (o.words.size() == 2) {
        const auto account = state.account(o.words.at(1));
        if (!account) {
            err << "Ein Konto \"" << o.words.at(1) << "\" gibt es nicht.\n";
            return 1;
        }
        accounts << *account;
    } else if (o.words.size() == 1) {
        accounts = state.accounts();
    } else {
        return 2;
    }
    int code = 0;
    for (const DavAccount &account : std::as_const(accounts)) {
        DavClient client(QUrl(account.url), account.user, password(o, account, err), account.allowHttp);
        DavSyncReport report;
        report.progress = [&err](int done, int total, const QString &collection) {
            err << "\r" << collection << ": " << done << "/" << total << " ...";
            err.flush();
        };
        try {
            SyncDavAccount(state, account, client, report);
        } catch (...) {
            err << "\n";
            out << report.summary(account.name);
            throw;
        }
        err << "\n";
        out << report.summary(account.name);
        if (!report.skipped.isEmpty())
            code = 3;
    }
    return code;
}

int list(DavState &state, QTextStream &out)
{
    const QList<DavAccount> accounts = state.accounts();
    if (accounts.isEmpty())
        out << "Keine Konten.\n";
    for (const DavAccount &account : accounts) {
        out << account.name << "  " << account.url << "  Benutzer " << account.user
            << (account.allowHttp ? "  (http erlaubt)" : "") << "\n";
        for (const DavCollectionState &c : state.collections(account.name))
            out << "  " << (c.addressBook ? "Adressbuch " : "Kalender   ") << c.name << "  " << c.href
                << (c.syncToken.isEmpty() ? "  (noch nicht abgeglichen)" : "") << "\n";
    }
    return 0;
}

int remove(const Options &o, DavState &state, QTextStream &out, QTextStream &err)
{
    if (o.words.size() != 2)
        return 2;
    const auto account = state.account(o.words.at(1));
    if (!account) {
        err << "Ein Konto \"" << o.words.at(1) << "\" gibt es nicht.\n";
        return 1;
    }
    const QString kept = RemoveDavAccount(state, *account);
    out << "Konto \"" << account->name << "\" entfernt. Die Daten auf dem Server bleiben; der Informationsspeicher "
        << "liegt noch als " << QDir::toNativeSeparators(kept) << " im Profilordner.\n";
    return 0;
}

} // namespace

QString DavUsage()
{
    return QStringLiteral(
        "        varnex-store [--profile ORDNER] dav add NAME URL [--user BENUTZER] [--password-file DATEI] [--allow-http]\n"
        "        varnex-store [--profile ORDNER] dav sync [NAME] [--password-file DATEI]\n"
        "        varnex-store [--profile ORDNER] dav list\n"
        "        varnex-store [--profile ORDNER] dav remove NAME\n");
}

int RunDavCommand(const QStringList &args, QTextStream &out, QTextStream &err)
{
    const Options o = parse(args);
    const QString verb = o.words.value(0);
    if (o.bad || !QStringList{QStringLiteral("add"), QStringLiteral("sync"), QStringLiteral("list"), QStringLiteral("remove")}
                     .contains(verb)) {
        err << "Aufruf:\n" << DavUsage();
        return 2;
    }
    try {
        CreateProfile();
        DavState state(ProfileFolder());
        int code = 2;
        if (verb == u"add")
            code = add(o, state, out, err);
        else if (verb == u"sync")
            code = sync(o, state, out, err);
        else if (verb == u"list")
            code = o.words.size() == 1 ? list(state, out) : 2;
        else
            code = remove(o, state, out, err);
        if (code == 2)
            err << "Aufruf:\n" << DavUsage();
        return code;
    } catch (const DavError &e) {
        err << "Abgebrochen: " << e.message << "\n";
        return 1;
    } catch (const StoreError &e) {
        err << "Abgebrochen: " << e.description() << " (" << e.number() << ")\n";
        return 1;
    }
}
