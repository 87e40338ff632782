#include "RadicaleServer.h"

#include "dav/DavClient.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>

namespace {

int freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

bool writeFile(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace

RadicaleServer::RadicaleServer() = default;

RadicaleServer::~RadicaleServer()
{
    m_client.reset();
    stop();
}

bool RadicaleServer::start(QString *error, bool tls)
{
    m_tls = tls;
    QString tlsConfig;
    if (tls) {
        const QString cert = m_dir.filePath(QStringLiteral("cert.pem")), key = m_dir.filePath(QStringLiteral("key.pem"));
        const int made = QProcess::execute(QStringLiteral("openssl"),
                                           {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                                            QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"), key,
                                            QStringLiteral("-out"), cert, QStringLiteral("-days"), QStringLiteral("2"),
                                            QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1")});
        if (made != 0) {
            if (error)
                *error = QStringLiteral("openssl kann kein Zertifikat anlegen");
            return false;
        }
        tlsConfig = QStringLiteral("ssl = True\ncertificate = %1\nkey = %2\n").arg(cert, key);
    }
    const QString program = QStandardPaths::findExecutable(QStringLiteral("radicale"));
    if (program.isEmpty()) {
        if (error)
            *error = QStringLiteral("radicale fehlt (scripts/setup.sh installiert es)");
        return false;
    }
    if (m_port == 0)
        m_port = freePort();
    const QString config = m_dir.filePath(QStringLiteral("config"));
    if (!QFile::exists(m_dir.filePath(QStringLiteral("users"))))
        writeFile(m_dir.filePath(QStringLiteral("users")), (user() + u':' + password() + u'\n').toUtf8());
    writeFile(config, QStringLiteral("[server]\n%4hosts = 127.0.0.1:%1\n"
                                     "[auth]\ntype = htpasswd\nhtpasswd_filename = %2\nhtpasswd_encryption = plain\n"
                                     "delay = 0\n"
                                     "[storage]\nfilesystem_folder = %3\n"
                                     "[rights]\ntype = owner_only\n[logging]\nlevel = warning\n")
                          .arg(m_port)
                          .arg(m_dir.filePath(QStringLiteral("users")), m_dir.filePath(QStringLiteral("storage")), tlsConfig)
                          .toUtf8());
    m_process.setProgram(program);
    m_process.setArguments({QStringLiteral("--config"), config});
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // A test that crashes takes its server along.
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start();
    if (!m_process.waitForStarted(10000)) {
        if (error)
            *error = QStringLiteral("radicale startet nicht: ") + m_process.errorString();
        return false;
    }
    for (int i = 0; i < 200; ++i) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, quint16(m_port));
        if (socket.waitForConnected(100))
            return true;
        if (m_process.state() == QProcess::NotRunning)
            break;
        QThread::msleep(50);
    }
    if (error)
        *error = QStringLiteral("radicale antwortet nicht auf Port %1").arg(m_port);
    return false;
}

void RadicaleServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

void RadicaleServer::useNewUser()
{
    m_user = QStringLiteral("nutzer%1").arg(++m_users);
    QFile file(m_dir.filePath(QStringLiteral("users")));
    if (file.open(QIODevice::Append))
        file.write((m_user + u':' + password() + u'\n').toUtf8());
    m_client.reset();
}

bool RadicaleServer::running() const
{
    return m_process.state() == QProcess::Running;
}

QUrl RadicaleServer::url() const
{
    return QUrl(QStringLiteral("%1://127.0.0.1:%2/").arg(m_tls ? QStringLiteral("https") : QStringLiteral("http")).arg(m_port));
}

DavClient &RadicaleServer::client()
{
    if (!m_client)
        m_client = std::make_unique<DavClient>(url(), user(), password(), false);
    return *m_client;
}

QString RadicaleServer::makeAddressBook(const QString &name, bool displayName)
{
    const QString href = QStringLiteral("/%1/%2/").arg(user(), name);
    client().request("MKCOL", client().resolve(href),
                     QByteArray("<?xml version=\"1.0\"?><d:mkcol xmlns:d=\"DAV:\" xmlns:card=\"urn:ietf:params:xml:ns:carddav\">"
                     "<d:set><d:prop><d:resourcetype><d:collection/><card:addressbook/></d:resourcetype>") +
                         (displayName ? "<d:displayname>" + name.toUtf8() + "</d:displayname>" : QByteArray()) +
                         "</d:prop></d:set></d:mkcol>");
    return href;
}

QString RadicaleServer::makeCalendar(const QString &name, const QStringList &components)
{
    const QString href = QStringLiteral("/%1/%2/").arg(user(), name);
    QByteArray comps;
    if (!components.isEmpty()) {
        comps = "<c:supported-calendar-component-set>";
        for (const QString &c : components)
            comps += "<c:comp name=\"" + c.toUtf8() + "\"/>";
        comps += "</c:supported-calendar-component-set>";
    }
    client().request("MKCOL", client().resolve(href),
                     "<?xml version=\"1.0\"?><d:mkcol xmlns:d=\"DAV:\" xmlns:c=\"urn:ietf:params:xml:ns:caldav\">"
                     "<d:set><d:prop><d:resourcetype><d:collection/><c:calendar/></d:resourcetype>"
                     "<d:displayname>" + name.toUtf8() + "</d:displayname>" + comps +
                         "</d:prop></d:set></d:mkcol>");
    return href;
}

QByteArray RadicaleServer::put(const QString &href, const QByteArray &text)
{
    const QByteArray type = text.contains("BEGIN:VCARD") ? "text/vcard" : "text/calendar";
    return client().request("PUT", client().resolve(href), text, {{"Content-Type", type}}).etag;
}

QByteArray RadicaleServer::get(const QString &href)
{
    const DavResponse response = client().get(client().resolve(href));
    return response.ok() ? response.body : QByteArray();
}

bool RadicaleServer::remove(const QString &href)
{
    return client().remove(client().resolve(href), {}).ok();
}

QStringList RadicaleServer::members(const QString &collectionHref)
{
    QStringList hrefs;
    for (const DavEntry &entry : client().propfind(client().resolve(collectionHref), 1, "<d:getetag/>").entries)
        if (!entry.href.endsWith(u'/'))
            hrefs << entry.href;
    hrefs.sort();
    return hrefs;
}
