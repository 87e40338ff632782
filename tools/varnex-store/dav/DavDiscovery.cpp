#include "DavDiscovery.h"

namespace {

const QByteArray collectionProps = "<d:resourcetype/><d:displayname/><c:supported-calendar-component-set/>"
                                   "<d:supported-report-set/><d:sync-token/>";

std::optional<DavCollectionInfo> collectionOf(const DavEntry &entry)
{
    const QStringList types = entry.props.value(QStringLiteral("resourcetype")).children;
    const bool book = types.contains(QStringLiteral("addressbook"));
    if (!book && !types.contains(QStringLiteral("calendar")))
        return std::nullopt;
    DavCollectionInfo info;
    info.href = entry.href.endsWith(u'/') ? entry.href : entry.href + u'/';
    info.name = entry.props.value(QStringLiteral("displayname")).text.trimmed();
    // Without a name of its own some servers give the path ("anna/kontakte").
    if (info.name.isEmpty() || info.name.contains(u'/'))
        info.name = info.href.section(u'/', -2, -2);
    info.addressBook = book;
    if (!book) {
        info.components = entry.props.value(QStringLiteral("supported-calendar-component-set")).comps;
        if (info.components.isEmpty()) // no set given: every kind
            info.components = {QStringLiteral("VEVENT"), QStringLiteral("VTODO"), QStringLiteral("VJOURNAL")};
    }
    // The report set is told in two ways: as a list, or only by a sync-token.
    info.syncCollection = entry.props.contains(QStringLiteral("sync-token")) ||
                          entry.props.value(QStringLiteral("supported-report-set")).descendants.contains(QStringLiteral("sync-collection"));
    return info;
}

// The principal of the user at the address, "" when it names none.
QString principalAt(DavClient &client, const QUrl &url)
{
    try {
        const DavMultiStatus found = client.propfind(url, 0, "<d:current-user-principal/>");
        for (const DavEntry &entry : found.entries) {
            const QStringList hrefs = entry.props.value(QStringLiteral("current-user-principal")).hrefs;
            if (!hrefs.isEmpty())
                return hrefs.first();
        }
    } catch (const DavError &e) {
        if (e.kind == DavError::Authentication)
            throw;
    }
    return {};
}

} // namespace

QList<DavCollectionInfo> DiscoverCollections(DavClient &client)
{
    const QUrl start = client.base();
    QList<DavCollectionInfo> found;
    // The address may name a collection itself.
    const DavMultiStatus self = client.propfind(start, 0, collectionProps + "<d:current-user-principal/>");
    for (const DavEntry &entry : self.entries)
        if (const auto info = collectionOf(entry))
            return {*info};
    QString principal;
    for (const DavEntry &entry : self.entries)
        if (const QStringList hrefs = entry.props.value(QStringLiteral("current-user-principal")).hrefs; !hrefs.isEmpty())
            principal = hrefs.first();
    for (const char *wellKnown : {"/.well-known/carddav", "/.well-known/caldav"})
        if (principal.isEmpty())
            principal = principalAt(client, start.resolved(QUrl(QLatin1String(wellKnown))));
    if (principal.isEmpty())
        throw DavError{DavError::NotFound, QStringLiteral("Unter %1 ist kein CardDAV- oder CalDAV-Konto zu finden "
                                                          "(der Server nennt keinen Benutzer).")
                                               .arg(start.toString())};
    const DavMultiStatus homes =
        client.propfind(client.resolve(principal), 0, "<card:addressbook-home-set/><c:calendar-home-set/>");
    QStringList homeSets;
    for (const DavEntry &entry : homes.entries)
        for (const char *name : {"addressbook-home-set", "calendar-home-set"})
            for (const QString &href : entry.props.value(QLatin1String(name)).hrefs)
                if (!homeSets.contains(href))
                    homeSets << href;
    if (homeSets.isEmpty())
        homeSets << principal;
    QStringList seen;
    for (const QString &home : std::as_const(homeSets)) {
        const DavMultiStatus listing = client.propfind(client.resolve(home), 1, collectionProps);
        for (const DavEntry &entry : listing.entries)
            if (const auto info = collectionOf(entry); info && !seen.contains(info->href)) {
                seen << info->href;
                found << *info;
            }
    }
    return found;
}
