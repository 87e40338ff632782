#pragma once
// A small WebDAV client for CardDAV (RFC 6352) and CalDAV (RFC 4791) on
// QtNetwork: one request at a time, waited for in a local event loop, with
// Basic authentication sent at once. Multistatus answers are read into
// DavEntry rows (the properties by local name, namespaces set aside, which
// the two protocols never need to tell apart).
//
// Failures that end a sync (no connection, wrong password, TLS, an address
// that is no server) throw DavError with a German text; HTTP answers that a
// caller must judge (404, 412 ...) come back as DavResponse.

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QString>
#include <QStringList>
#include <QUrl>

struct DavError {
    enum Kind { Network, Authentication, Tls, NotFound, Refused, Protocol };
    Kind kind = Network;
    QString message; // German, for the user
};

struct DavResponse {
    int status = 0;
    QByteArray body;
    QByteArray etag; // the ETag header, quotes kept
    [[nodiscard]] bool ok() const { return status >= 200 && status < 300; }
};

struct DavProp {
    QString text;         // the text of the element (address-data, getetag ...)
    QStringList children; // local names of child elements (resourcetype)
    QStringList descendants; // local names of all elements inside (report sets)
    QStringList hrefs;    // texts of href children (home sets, principal)
    QStringList comps;    // name attributes of comp children (components)
};

struct DavEntry {
    QString href;   // as the server wrote it, percent-decoded
    int status = 0; // of the response element; 0 when given per propstat
    QHash<QString, DavProp> props; // found ones (200), by local name
};

struct DavMultiStatus {
    QList<DavEntry> entries;
    QString syncToken;
};

// Reads a 207 body; throws DavError (Protocol) for text that is no XML.
[[nodiscard]] DavMultiStatus ParseMultiStatus(const QByteArray &xml);
// The status code of a status line ("HTTP/1.1 404 Not Found" is 404).
[[nodiscard]] int StatusOfLine(const QString &line);
// Whether a plain http address may be used: a loopback host (127.0.0.0/8,
// ::1, localhost) or allowHttp. https always may.
[[nodiscard]] bool HttpAllowed(const QUrl &url, bool allowHttp);

class DavClient
{
public:
    // Throws DavError (Refused) for an address that is neither https nor
    // allowed http, or no address at all.
    DavClient(const QUrl &base, const QString &user, const QString &password, bool allowHttp);

    [[nodiscard]] QUrl base() const { return m_base; }
    // An href of the server as a full address.
    [[nodiscard]] QUrl resolve(const QString &href) const;

    // Any request; follows redirects (up to five, each checked like the
    // base address). Throws DavError for failures that are no HTTP answer,
    // for 401 and 403 on the account's addresses, and on a timeout.
    DavResponse request(const QByteArray &method, const QUrl &url, const QByteArray &body = {},
                        const QList<std::pair<QByteArray, QByteArray>> &headers = {});

    // PROPFIND of the named properties (XML of the prop element's children).
    DavMultiStatus propfind(const QUrl &url, int depth, const QByteArray &props);
    // REPORT; a non-207 answer is returned as status in *status (may be null).
    DavMultiStatus report(const QUrl &url, int depth, const QByteArray &body, int *status = nullptr);
    DavResponse get(const QUrl &url);
    // PUT with If-Match of the ETag, or If-None-Match: * when etag is empty.
    DavResponse put(const QUrl &url, const QByteArray &body, const QByteArray &contentType, const QByteArray &etag);
    DavResponse remove(const QUrl &url, const QByteArray &etag);

    // Seconds a request may take before the sync is given up.
    void setTimeout(int seconds) { m_timeoutMs = seconds * 1000; }

private:
    QNetworkAccessManager m_manager;
    QUrl m_base;
    QByteArray m_authorization;
    bool m_allowHttp = false;
    int m_timeoutMs = 60000;
};
