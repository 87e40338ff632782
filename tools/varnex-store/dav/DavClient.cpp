#include "DavClient.h"

#include <QEventLoop>
#include <QHostAddress>
#include <QNetworkReply>
#include <QSslError>
#include <QTimer>
#include <QXmlStreamReader>

namespace {

// The text of an element and its children, as the reader stands on its start.
DavProp readProp(QXmlStreamReader &xml)
{
    DavProp prop;
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            ++depth;
            const QString name = xml.name().toString();
            if (depth == 1)
                prop.children << name;
            prop.descendants << name;
            if (name == u"comp")
                prop.comps << xml.attributes().value(QStringLiteral("name")).toString().toUpper();
            if (name == u"href") {
                // readElementText stops on the end of the element
                prop.hrefs << QUrl::fromPercentEncoding(xml.readElementText().trimmed().toUtf8());
                --depth;
            }
        } else if (token == QXmlStreamReader::EndElement) {
            if (depth == 0)
                break;
            --depth;
        } else if (token == QXmlStreamReader::Characters || token == QXmlStreamReader::EntityReference) {
            if (depth == 0)
                prop.text += xml.text();
        }
    }
    return prop;
}

// One propstat: its props and status; only props of a 2xx status count.
void readPropStat(QXmlStreamReader &xml, DavEntry &entry)
{
    QHash<QString, DavProp> props;
    int status = 200;
    while (xml.readNextStartElement()) {
        if (xml.name() == u"prop") {
            while (xml.readNextStartElement()) {
                const QString name = xml.name().toString();
                props.insert(name, readProp(xml));
            }
        } else if (xml.name() == u"status") {
            status = StatusOfLine(xml.readElementText());
        } else {
            xml.skipCurrentElement();
        }
    }
    if (status >= 200 && status < 300)
        entry.props.insert(props);
}

DavEntry readResponse(QXmlStreamReader &xml)
{
    DavEntry entry;
    while (xml.readNextStartElement()) {
        if (xml.name() == u"href")
            entry.href = QUrl::fromPercentEncoding(xml.readElementText().trimmed().toUtf8());
        else if (xml.name() == u"status")
            entry.status = StatusOfLine(xml.readElementText());
        else if (xml.name() == u"propstat")
            readPropStat(xml, entry);
        else
            xml.skipCurrentElement();
    }
    return entry;
}

QString hostText(const QUrl &url)
{
    return url.port() > 0 ? QStringLiteral("%1:%2").arg(url.host()).arg(url.port()) : url.host();
}

} // namespace

int StatusOfLine(const QString &line)
{
    const QStringList parts = line.simplified().split(u' ');
    return parts.size() >= 2 ? parts.at(1).toInt() : 0;
}

DavMultiStatus ParseMultiStatus(const QByteArray &body)
{
    DavMultiStatus result;
    QXmlStreamReader xml(body);
    if (!xml.readNextStartElement() || xml.name() != u"multistatus")
        throw DavError{DavError::Protocol, QStringLiteral("Der Server hat keine WebDAV-Antwort (multistatus) gegeben.")};
    while (xml.readNextStartElement()) {
        if (xml.name() == u"response")
            result.entries << readResponse(xml);
        else if (xml.name() == u"sync-token")
            result.syncToken = xml.readElementText().trimmed();
        else
            xml.skipCurrentElement();
    }
    if (xml.hasError())
        throw DavError{DavError::Protocol,
                       QStringLiteral("Die WebDAV-Antwort des Servers ist fehlerhaft (%1).").arg(xml.errorString())};
    return result;
}

bool HttpAllowed(const QUrl &url, bool allowHttp)
{
    if (url.scheme() == u"https")
        return true;
    if (url.scheme() != u"http")
        return false;
    if (allowHttp || url.host() == u"localhost")
        return true;
    const QHostAddress address(url.host());
    return !address.isNull() && address.isLoopback();
}

DavClient::DavClient(const QUrl &base, const QString &user, const QString &password, bool allowHttp)
    : m_base(base), m_allowHttp(allowHttp)
{
    if (!base.isValid() || base.host().isEmpty() || (base.scheme() != u"http" && base.scheme() != u"https"))
        throw DavError{DavError::Refused,
                       QStringLiteral("\"%1\" ist keine Adresse eines Servers (https://...).").arg(base.toString())};
    if (!HttpAllowed(base, allowHttp))
        throw DavError{DavError::Refused,
                       QStringLiteral("Unverschlüsselte Verbindungen (http) sind nur zu diesem Rechner erlaubt. "
                                      "Verwenden Sie https:// oder, wenn Sie dem Netz vertrauen, --allow-http.")};
    m_authorization = "Basic " + (user + u':' + password).toUtf8().toBase64();
    m_manager.setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
}

QUrl DavClient::resolve(const QString &href) const
{
    return m_base.resolved(QUrl(QString::fromUtf8(QUrl::toPercentEncoding(href, "/:@!$&'()*+,;=-._~"))));
}

DavResponse DavClient::request(const QByteArray &method, const QUrl &start, const QByteArray &body,
                               const QList<std::pair<QByteArray, QByteArray>> &headers)
{
    QUrl url = start;
    for (int redirects = 0;; ++redirects) {
        QNetworkRequest request(url);
        request.setRawHeader("Authorization", m_authorization);
        request.setRawHeader("User-Agent", "Varnex");
        for (const auto &[name, value] : headers)
            request.setRawHeader(name, value);
        QNetworkReply *reply = m_manager.sendCustomRequest(request, method, body);
        QEventLoop loop;
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
        timer.start(m_timeoutMs);
        loop.exec();
        if (!reply->isFinished()) {
            reply->abort();
            reply->deleteLater();
            throw DavError{DavError::Network,
                           QStringLiteral("Der Server %1 antwortet nicht (nach %2 Sekunden abgebrochen).")
                               .arg(hostText(url))
                               .arg(m_timeoutMs / 1000)};
        }
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QNetworkReply::NetworkError error = reply->error();
        const QString errorText = reply->errorString();
        DavResponse response{status, reply->readAll(), reply->rawHeader("ETag")};
        const QUrl location = url.resolved(QUrl(QString::fromUtf8(reply->rawHeader("Location"))));
        reply->deleteLater();
        if (status == 0) {
            if (error == QNetworkReply::SslHandshakeFailedError)
                throw DavError{DavError::Tls, QStringLiteral("Die sichere Verbindung (TLS) zu %1 ist gescheitert: %2. "
                                                             "Das Zertifikat des Servers wird nicht anerkannt.")
                                                  .arg(hostText(url), errorText)};
            if (error == QNetworkReply::HostNotFoundError)
                throw DavError{DavError::NotFound, QStringLiteral("Den Server %1 gibt es nicht (Name unbekannt).").arg(url.host())};
            throw DavError{DavError::Network,
                           QStringLiteral("Keine Verbindung zum Server %1: %2").arg(hostText(url), errorText)};
        }
        if ((status == 301 || status == 302 || status == 307 || status == 308) && redirects < 5) {
            if (!HttpAllowed(location, m_allowHttp) || location.host() != url.host())
                throw DavError{DavError::Refused, QStringLiteral("Der Server leitet auf %1 weiter; "
                                                                 "dorthin verbindet sich Varnex nicht von selbst.")
                                                      .arg(location.toString())};
            url = location;
            continue;
        }
        if (status == 401)
            throw DavError{DavError::Authentication,
                           QStringLiteral("Der Server %1 hat die Anmeldung abgelehnt: Benutzername oder Passwort "
                                          "ist falsch.")
                               .arg(hostText(url))};
        return response;
    }
}

DavMultiStatus DavClient::propfind(const QUrl &url, int depth, const QByteArray &props)
{
    const QByteArray body = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                            "<d:propfind xmlns:d=\"DAV:\" xmlns:c=\"urn:ietf:params:xml:ns:caldav\" "
                            "xmlns:card=\"urn:ietf:params:xml:ns:carddav\" xmlns:cs=\"http://calendarserver.org/ns/\">"
                            "<d:prop>" + props + "</d:prop></d:propfind>";
    const DavResponse response = request("PROPFIND", url, body,
                                         {{"Depth", QByteArray::number(depth)},
                                          {"Content-Type", "application/xml; charset=utf-8"}});
    if (response.status == 404)
        throw DavError{DavError::NotFound, QStringLiteral("Unter %1 gibt es keine Adressbücher oder Kalender "
                                                          "(der Server kennt die Adresse nicht).")
                                               .arg(url.toString())};
    if (response.status == 403)
        throw DavError{DavError::Authentication,
                       QStringLiteral("Der Server verweigert den Zugriff auf %1.").arg(url.toString())};
    if (response.status != 207)
        throw DavError{DavError::Protocol, QStringLiteral("%1 ist keine WebDAV-Adresse (Antwort %2 auf PROPFIND).")
                                               .arg(url.toString())
                                               .arg(response.status)};
    return ParseMultiStatus(response.body);
}

DavMultiStatus DavClient::report(const QUrl &url, int depth, const QByteArray &body, int *status)
{
    const DavResponse response = request("REPORT", url, body,
                                         {{"Depth", QByteArray::number(depth)},
                                          {"Content-Type", "application/xml; charset=utf-8"}});
    if (status)
        *status = response.status;
    if (response.status != 207) {
        if (status)
            return {};
        throw DavError{DavError::Protocol,
                       QStringLiteral("Der Server hat die Abfrage (REPORT) von %1 mit %2 beantwortet.")
                           .arg(url.toString())
                           .arg(response.status)};
    }
    return ParseMultiStatus(response.body);
}

DavResponse DavClient::get(const QUrl &url)
{
    return request("GET", url);
}

DavResponse DavClient::put(const QUrl &url, const QByteArray &body, const QByteArray &contentType, const QByteArray &etag)
{
    QList<std::pair<QByteArray, QByteArray>> headers{{"Content-Type", contentType}};
    if (etag.isEmpty())
        headers.append(std::pair<QByteArray, QByteArray>("If-None-Match", "*"));
    else
        headers.append(std::pair<QByteArray, QByteArray>("If-Match", etag));
    return request("PUT", url, body, headers);
}

DavResponse DavClient::remove(const QUrl &url, const QByteArray &etag)
{
    QList<std::pair<QByteArray, QByteArray>> headers;
    if (!etag.isEmpty())
        headers.append(std::pair<QByteArray, QByteArray>("If-Match", etag));
    return request("DELETE", url, {}, headers);
}
