#pragma once
// A real CardDAV/CalDAV server for the tests: Debian's radicale, started on
// a free port of 127.0.0.1 with its own storage folder and a plain htpasswd
// file. Each test takes a user of its own (useNewUser), so that its
// collections are apart from those of the others. Nothing outside the
// machine is ever contacted. The server can be stopped and started again on the same
// port and storage, to cut a sync off in the middle.

#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

class DavClient;

class RadicaleServer
{
public:
    RadicaleServer();
    ~RadicaleServer();
    RadicaleServer(const RadicaleServer &) = delete;
    RadicaleServer &operator=(const RadicaleServer &) = delete;

    // Starts the server and waits until it answers; false (with the
    // reason) when radicale is missing or does not come up. With tls the
    // server speaks https with a self-signed certificate made by openssl,
    // which no client trusts.
    bool start(QString *error = nullptr, bool tls = false);
    void stop();
    [[nodiscard]] bool running() const;

    [[nodiscard]] QUrl url() const;
    [[nodiscard]] QString user() const { return m_user; }
    static QString password() { return QStringLiteral("geheim"); }
    // Adds a user (read by the server at the next login) and acts as it.
    void useNewUser();

    // A client of the server acting as another program of the user.
    [[nodiscard]] DavClient &client();
    // Creates a collection below the user's home (MKCOL); returns its href.
    // Without displayName the server shows its path as the name.
    QString makeAddressBook(const QString &name, bool displayName = true);
    // components: "VEVENT", "VTODO" ...; none means the server's default.
    QString makeCalendar(const QString &name, const QStringList &components = {});
    // Writes a resource as another client would (no condition); its ETag.
    QByteArray put(const QString &href, const QByteArray &text);
    // The resource's text, empty when it is gone.
    QByteArray get(const QString &href);
    bool remove(const QString &href);
    // The hrefs of the resources of a collection.
    QStringList members(const QString &collectionHref);

private:
    QTemporaryDir m_dir;
    int m_port = 0;
    int m_users = 0;
    bool m_tls = false;
    QString m_user = QStringLiteral("anna");
    QProcess m_process;
    std::unique_ptr<DavClient> m_client;
};
