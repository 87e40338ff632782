#include "DavSync.h"

#include "DavDiscovery.h"
#include "DavMapping.h"

#include "store/RemoveStore.h"

#include <QRegularExpression>
#include <QSet>
#include <QUuid>

namespace {

constexpr int s_batch = 100;
const QString s_conflictFolder = QStringLiteral("Konflikte");

QString xmlHref(const QUrl &url)
{
    return url.path(QUrl::FullyEncoded).toHtmlEscaped();
}

// A name that can stand in an address: the UID when it is plain, else a new one.
QString resourceName(const QString &uid)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9@._-]{1,120}$"));
    return plain.match(uid).hasMatch() ? uid : QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString itemTitle(const Item &item)
{
    for (const char *field : {"FileAs", "FullName", "CompanyName", "Email1Address"})
        if (item.hasProperty(QLatin1String(field)) && !item.text(QLatin1String(field)).isEmpty())
            return item.text(QLatin1String(field));
    return item.Subject().isEmpty() ? QStringLiteral("(ohne Titel)") : item.Subject();
}

class CollectionSync
{
public:
    CollectionSync(DavState &state, DavClient &client, DavSyncReport &report, const DavCollectionState &collection,
                   const DavFolders &folders, const QList<MAPIFolder> &folderList)
        : m_state(state), m_client(client), m_report(report), m_c(collection), m_folders(folders),
          m_folderList(folderList), m_book(collection.addressBook)
    {
    }

    void run()
    {
        m_known = m_state.resources(m_c.id);
        for (const MAPIFolder &folder : m_folderList)
            for (const Item &item : folder.Items())
                m_local.insert(item.EntryID(), item);
        pull();
        push();
    }

private:
    // --- what the state knows and the store holds
    QList<Item> itemsOf(const DavResourceState &r) const
    {
        QList<Item> items;
        for (const QString &id : r.items)
            if (const auto it = m_local.constFind(id); it != m_local.cend())
                items << *it;
        return items;
    }

    bool changedLocally(const DavResourceState &r, const QList<Item> &items) const
    {
        if (items.size() != r.items.size())
            return true;
        return ChangeStamp(items) != r.stamp && ContentHash(m_book, items) != r.hash;
    }

    void remember(const QString &href, const QByteArray &etag, const QString &uid, const QList<Item> &items,
                  const QByteArray &raw)
    {
        DavResourceState r{href, etag, uid, {}, raw, ChangeStamp(items), ContentHash(m_book, items)};
        for (const Item &item : items) {
            r.items << item.EntryID();
            m_local.insert(item.EntryID(), item);
        }
        m_state.putResource(m_c.id, r);
        m_known.insert(href, r);
    }

    void forget(const QString &href)
    {
        m_state.removeResource(m_c.id, href);
        m_known.remove(href);
    }

    MAPIFolder conflictFolder(const MAPIFolder &parent)
    {
        MAPIFolder folder = parent.Folders().Find(s_conflictFolder);
        return folder.isNull() ? parent.Folders().Add(s_conflictFolder) : folder;
    }

    // Moves the local version out of the synced folder, into "Konflikte".
    void keepAsConflict(const QList<Item> &items, const QString &why)
    {
        for (Item item : items) {
            const QString title = itemTitle(item);
            const MAPIFolder parent = item.Parent();
            m_local.remove(item.EntryID());
            item.Move(conflictFolder(parent));
            m_report.conflicts << QStringLiteral("%1: \"%2\" %3; die lokale Fassung liegt in \"%1/%4\".")
                                      .arg(parent.Name(), title, why, s_conflictFolder);
        }
    }

    // --- pull
    void pull()
    {
        QHash<QString, QByteArray> changed;
        QStringList removed;
        QString token;
        if (!listBySyncToken(changed, removed, token))
            listByEtags(changed, removed);
        const QStringList hrefs = changed.keys();
        for (qsizetype at = 0; at < hrefs.size(); at += s_batch) {
            fetch(hrefs.mid(at, s_batch), removed);
            if (m_report.progress)
                m_report.progress(int(std::min<qsizetype>(at + s_batch, hrefs.size())), int(hrefs.size()), m_c.name);
        }
        for (const QString &href : std::as_const(removed))
            removedOnServer(href);
        if (!token.isEmpty())
            m_state.setSyncToken(m_c.id, token);
    }

    bool listBySyncToken(QHash<QString, QByteArray> &changed, QStringList &removed, QString &token)
    {
        if (!m_c.syncCollection)
            return false;
        for (QString from = m_c.syncToken;; from.clear()) {
            const QByteArray body = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                    "<d:sync-collection xmlns:d=\"DAV:\"><d:sync-token>" +
                                    from.toHtmlEscaped().toUtf8() +
                                    "</d:sync-token><d:sync-level>1</d:sync-level><d:prop><d:getetag/></d:prop>"
                                    "</d:sync-collection>";
            int status = 0;
            const DavMultiStatus answer = m_client.report(m_client.resolve(m_c.href), 0, body, &status);
            if (status != 207) {
                if (!from.isEmpty() && (status == 403 || status == 409 || status == 400 || status == 412))
                    continue; // the token is no longer valid: start afresh
                return false;
            }
            for (const DavEntry &entry : answer.entries) {
                if (isCollection(entry.href))
                    continue;
                if (entry.status == 404) {
                    removed << entry.href;
                    continue;
                }
                const QByteArray etag = entry.props.value(QStringLiteral("getetag")).text.toUtf8();
                if (!m_known.contains(entry.href) || m_known.value(entry.href).etag != etag)
                    changed.insert(entry.href, etag);
            }
            // A fresh listing names every resource: the rest are gone.
            if (from.isEmpty()) {
                QSet<QString> listed;
                for (const DavEntry &entry : answer.entries)
                    if (entry.status != 404)
                        listed.insert(entry.href);
                for (const DavResourceState &r : std::as_const(m_known))
                    if (!listed.contains(r.href))
                        removed << r.href;
            }
            token = answer.syncToken;
            return true;
        }
    }

    void listByEtags(QHash<QString, QByteArray> &changed, QStringList &removed)
    {
        const DavMultiStatus answer = m_client.propfind(m_client.resolve(m_c.href), 1, "<d:getetag/>");
        QSet<QString> seen;
        for (const DavEntry &entry : answer.entries) {
            if (isCollection(entry.href))
                continue;
            seen.insert(entry.href);
            const QByteArray etag = entry.props.value(QStringLiteral("getetag")).text.toUtf8();
            if (!m_known.contains(entry.href) || m_known.value(entry.href).etag != etag)
                changed.insert(entry.href, etag);
        }
        for (const DavResourceState &r : std::as_const(m_known))
            if (!seen.contains(r.href))
                removed << r.href;
    }

    bool isCollection(const QString &href) const
    {
        return href == m_c.href || href + u'/' == m_c.href || href.endsWith(u'/');
    }

    void fetch(const QStringList &hrefs, QStringList &removed)
    {
        QByteArray body = m_book ? "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<card:addressbook-multiget "
                                   "xmlns:d=\"DAV:\" xmlns:card=\"urn:ietf:params:xml:ns:carddav\">"
                                   "<d:prop><d:getetag/><card:address-data/></d:prop>"
                                 : "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<c:calendar-multiget "
                                   "xmlns:d=\"DAV:\" xmlns:c=\"urn:ietf:params:xml:ns:caldav\">"
                                   "<d:prop><d:getetag/><c:calendar-data/></d:prop>";
        for (const QString &href : hrefs)
            body += "<d:href>" + xmlHref(m_client.resolve(href)).toUtf8() + "</d:href>";
        body += m_book ? "</card:addressbook-multiget>" : "</c:calendar-multiget>";
        const DavMultiStatus answer = m_client.report(m_client.resolve(m_c.href), 1, body);
        const QString dataName = m_book ? QStringLiteral("address-data") : QStringLiteral("calendar-data");
        QSet<QString> answered;
        m_state.begin();
        try {
            for (const DavEntry &entry : answer.entries) {
                answered.insert(entry.href);
                if (entry.props.contains(dataName))
                    changedOnServer(entry.href, entry.props.value(QStringLiteral("getetag")).text.toUtf8(),
                                    entry.props.value(dataName).text.toUtf8());
                else if (entry.status == 404)
                    removed << entry.href;
            }
            m_state.commit();
        } catch (...) {
            m_state.commit(); // what was saved in the store stays remembered
            throw;
        }
        for (const QString &href : hrefs)
            if (!answered.contains(href))
                m_report.skipped << QStringLiteral("%1: der Server hat %2 nicht geliefert.").arg(m_c.name, href);
    }

    // The unsaved items of a server text; an empty list (and a skip) when
    // the text holds nothing the store can take.
    QList<Item> fresh(const QString &href, const QByteArray &text, QString *uid)
    {
        try {
            return ItemsOfServerText(m_book, text, m_folders, uid);
        } catch (const EntryDamage &damage) {
            m_report.skipped << QStringLiteral("%1: %2: %3").arg(m_c.name, href, damage.reason);
        } catch (const StoreError &e) {
            m_report.skipped << QStringLiteral("%1: %2: %3").arg(m_c.name, href, e.description());
        }
        return {};
    }

    // The local items of a UID that no resource claims yet: left by a sync
    // that was stopped before it remembered them.
    QList<Item> unclaimed(const QString &uid)
    {
        if (uid.isEmpty())
            return {};
        if (!m_uidIndexBuilt) {
            m_uidIndexBuilt = true;
            QSet<QString> claimed;
            for (const DavResourceState &r : std::as_const(m_known))
                for (const QString &id : r.items)
                    claimed.insert(id);
            for (const Item &item : std::as_const(m_local))
                if (!claimed.contains(item.EntryID()))
                    m_unclaimed.insert(UserText(item, QLatin1String(UidProperty)), item.EntryID());
        }
        QList<Item> items;
        for (const QString &id : m_unclaimed.values(uid))
            if (m_local.contains(id))
                items << m_local.value(id);
        m_unclaimed.remove(uid);
        return items;
    }

    QList<Item> saveFresh(QList<Item> items)
    {
        for (Item &item : items)
            item.Save();
        return items;
    }

    static QString occurrenceKey(const Item &item)
    {
        return UserText(item, QLatin1String(OccurrenceProperty));
    }

    // The server's content into the local items: an item of the same
    // occurrence takes it in place, the rest is added or deleted.
    QList<Item> update(const QList<Item> &current, const QList<Item> &incoming)
    {
        QList<Item> result, left = current;
        for (const Item &in : incoming) {
            auto match = std::find_if(left.begin(), left.end(), [&](const Item &i) {
                return i.Class() == in.Class() && occurrenceKey(i) == occurrenceKey(in);
            });
            if (match == left.end()) {
                Item added = in;
                added.Save();
                result << added;
                continue;
            }
            Item target = *match;
            left.erase(match);
            TakeContent(target, in);
            target.Save();
            result << target;
        }
        for (Item item : left) {
            m_local.remove(item.EntryID());
            item.Delete();
        }
        return result;
    }

    void changedOnServer(const QString &href, const QByteArray &etag, const QByteArray &text)
    {
        QString uid;
        const QList<Item> incoming = fresh(href, text, &uid);
        const bool isKnown = m_known.contains(href);
        const DavResourceState was = m_known.value(href);
        if (incoming.isEmpty()) {
            // Kept as it is, without items: never written back, never deleted.
            if (!isKnown || was.items.isEmpty())
                m_state.putResource(m_c.id, {href, etag, uid, {}, text, 0, {}});
            return;
        }
        QList<Item> current = isKnown ? itemsOf(was) : unclaimed(uid);
        if (current.isEmpty() && isKnown && !was.items.isEmpty())
            m_report.conflicts << QStringLiteral("%1: %2 wurde hier gelöscht und auf dem Server geändert; "
                                                 "die Fassung des Servers ist wieder da.").arg(m_c.name, href);
        if (current.isEmpty()) {
            remember(href, etag, uid, saveFresh(incoming), text);
            ++m_report.pulledNew;
            return;
        }
        const bool localChange = !isKnown || changedLocally(was, current);
        if (localChange && ContentHash(m_book, current) != ContentHash(m_book, incoming)) {
            keepAsConflict(current, isKnown ? QStringLiteral("wurde hier und auf dem Server geändert")
                                            : QStringLiteral("steht mit derselben UID hier und auf dem Server"));
            remember(href, etag, uid, saveFresh(incoming), text);
            return;
        }
        remember(href, etag, uid, localChange ? current : update(current, incoming), text);
        if (!localChange)
            ++m_report.pulledChanged;
    }

    void removedOnServer(const QString &href)
    {
        if (!m_known.contains(href))
            return;
        const DavResourceState was = m_known.value(href);
        const QList<Item> current = itemsOf(was);
        if (!current.isEmpty() && changedLocally(was, current)) {
            keepAsConflict(current, QStringLiteral("wurde auf dem Server gelöscht und hier geändert"));
        } else {
            for (Item item : current) {
                m_local.remove(item.EntryID());
                item.Delete();
            }
            if (!current.isEmpty())
                ++m_report.pulledDeleted;
        }
        forget(href);
    }

    // --- push
    QByteArray contentType() const
    {
        return m_book ? "text/vcard; charset=utf-8" : "text/calendar; charset=utf-8";
    }

    QByteArray etagAfterWrite(const DavResponse &response, const QString &href)
    {
        if (!response.etag.isEmpty())
            return response.etag;
        const DavMultiStatus answer = m_client.propfind(m_client.resolve(href), 0, "<d:getetag/>");
        return answer.entries.isEmpty() ? QByteArray()
                                        : answer.entries.first().props.value(QStringLiteral("getetag")).text.toUtf8();
    }

    // A write refused because the server's version changed: its version is
    // taken as a change from the server (a conflict when both changed).
    void settleRefusedWrite(const QString &href)
    {
        const DavResponse now = m_client.get(m_client.resolve(href));
        if (now.ok())
            changedOnServer(href, now.etag, now.body);
        else if (now.status == 404)
            removedOnServer(href);
        else
            m_report.skipped << QStringLiteral("%1: %2 kann nicht gelesen werden (Antwort %3).").arg(m_c.name, href).arg(now.status);
    }

    void push()
    {
        const QList<DavResourceState> known = m_known.values();
        int done = 0;
        for (const DavResourceState &r : known) {
            if (m_report.progress && ++done % s_batch == 0)
                m_report.progress(done, int(known.size()), m_c.name);
            if (r.items.isEmpty() || !m_known.contains(r.href))
                continue;
            const QList<Item> current = itemsOf(r);
            if (current.isEmpty()) {
                pushDelete(r);
            } else if (changedLocally(r, current)) {
                pushChange(r, current);
            } else if (ChangeStamp(current) != r.stamp) {
                remember(r.href, r.etag, r.uid, current, r.raw); // saved without change: new stamp
            }
        }
        pushNew();
    }

    void pushDelete(const DavResourceState &r)
    {
        const DavResponse response = m_client.remove(m_client.resolve(r.href), r.etag);
        if (response.ok() || response.status == 404) {
            forget(r.href);
            ++m_report.pushedDeleted;
        } else if (response.status == 412) {
            m_report.conflicts << QStringLiteral("%1: %2 wurde hier gelöscht und auf dem Server geändert; "
                                                 "die Fassung des Servers ist wieder da.").arg(m_c.name, r.href);
            forget(r.href);
            settleRefusedWrite(r.href);
        } else {
            m_report.skipped << QStringLiteral("%1: %2 kann nicht gelöscht werden (Antwort %3).").arg(m_c.name, r.href).arg(response.status);
        }
    }

    void pushChange(const DavResourceState &r, const QList<Item> &current)
    {
        const QByteArray text = ServerTextOfItems(m_book, current, r.raw, m_folders);
        const DavResponse response = m_client.put(m_client.resolve(r.href), text, contentType(), r.etag);
        if (response.ok()) {
            remember(r.href, etagAfterWrite(response, r.href), r.uid, current, text);
            ++m_report.pushedChanged;
        } else if (response.status == 412 || response.status == 404) {
            settleRefusedWrite(r.href);
        } else {
            m_report.skipped << QStringLiteral("%1: \"%2\" kann nicht geschrieben werden (Antwort %3).")
                                    .arg(m_c.name, itemTitle(current.first()))
                                    .arg(response.status);
        }
    }

    void pushNew()
    {
        QSet<QString> claimed;
        for (const DavResourceState &r : std::as_const(m_known))
            for (const QString &id : r.items)
                claimed.insert(id);
        // Items of one UID (a series and its changed occurrences) are one resource.
        QList<QList<Item>> groups;
        QHash<QString, int> groupOfUid;
        for (const Item &item : std::as_const(m_local)) {
            if (claimed.contains(item.EntryID()))
                continue;
            const QString uid = UserText(item, QLatin1String(UidProperty));
            if (!m_book && !uid.isEmpty() && groupOfUid.contains(uid)) {
                groups[groupOfUid.value(uid)] << item;
                continue;
            }
            if (!uid.isEmpty())
                groupOfUid.insert(uid, int(groups.size()));
            groups.append({item});
        }
        int done = 0;
        for (QList<Item> &items : groups) {
            if (m_report.progress && ++done % s_batch == 0)
                m_report.progress(done, int(groups.size()), m_c.name);
            QString uid = UserText(items.first(), QLatin1String(UidProperty));
            if (uid.isEmpty()) {
                uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
                for (Item &item : items) {
                    SetUserText(item, QLatin1String(UidProperty), uid);
                    item.Save();
                }
            }
            const QByteArray text = ServerTextOfItems(m_book, items, {}, m_folders);
            const QString suffix = m_book ? QStringLiteral(".vcf") : QStringLiteral(".ics");
            QString href = m_c.href + resourceName(uid) + suffix;
            DavResponse response = m_client.put(m_client.resolve(href), text, contentType(), {});
            if (response.status == 412) { // the name is taken: another one
                href = m_c.href + QUuid::createUuid().toString(QUuid::WithoutBraces) + suffix;
                response = m_client.put(m_client.resolve(href), text, contentType(), {});
            }
            if (!response.ok()) {
                m_report.skipped << QStringLiteral("%1: \"%2\" kann nicht angelegt werden (Antwort %3).")
                                        .arg(m_c.name, itemTitle(items.first()))
                                        .arg(response.status);
                continue;
            }
            remember(href, etagAfterWrite(response, href), uid, items, text);
            ++m_report.pushedNew;
        }
    }

    DavState &m_state;
    DavClient &m_client;
    DavSyncReport &m_report;
    DavCollectionState m_c;
    DavFolders m_folders;
    QList<MAPIFolder> m_folderList;
    bool m_book;
    QHash<QString, DavResourceState> m_known;
    QHash<QString, Item> m_local;
    bool m_uidIndexBuilt = false;
    QMultiHash<QString, QString> m_unclaimed;
};

MAPIFolder folderOfId(const QString &entryId, const QString &storeId)
{
    if (entryId.isEmpty())
        return {};
    return Application().GetNamespace().GetFolderFromID(entryId, storeId);
}

QString freeName(const MAPIFolder &root, const QString &wanted)
{
    QString name = wanted.trimmed().isEmpty() ? QStringLiteral("Sammlung") : wanted.trimmed();
    name.replace(u'/', u'-');
    const QString base = name;
    for (int n = 2; !root.Folders().Find(name).isNull(); ++n)
        name = QStringLiteral("%1 (%2)").arg(base).arg(n);
    return name;
}

} // namespace

QString DavSyncReport::summary(const QString &account) const
{
    QString text = QStringLiteral("Abgleich des Kontos \"%1\" beendet: vom Server %2 neu, %3 geändert, %4 gelöscht; "
                                  "zum Server %5 neu, %6 geändert, %7 gelöscht; %8 Konflikt(e), %9 übersprungen.\n")
                       .arg(account)
                       .arg(pulledNew)
                       .arg(pulledChanged)
                       .arg(pulledDeleted)
                       .arg(pushedNew)
                       .arg(pushedChanged)
                       .arg(pushedDeleted)
                       .arg(conflicts.size())
                       .arg(skipped.size());
    for (const QString &line : conflicts)
        text += QStringLiteral("  Konflikt: ") + line + u'\n';
    for (const QString &line : skipped)
        text += QStringLiteral("  übersprungen: ") + line + u'\n';
    return text;
}

void SyncDavAccount(DavState &state, const DavAccount &account, DavClient &client, DavSyncReport &report)
{
    for (const DavCollectionState &c : state.collections(account.name)) {
        QList<MAPIFolder> list;
        DavFolders folders;
        if (c.addressBook) {
            folders.contacts = folderOfId(c.folders.value(0), account.storeId);
            list << folders.contacts;
        } else {
            folders.calendar = {folderOfId(c.folders.value(0), account.storeId),
                                folderOfId(c.folders.value(1), account.storeId),
                                folderOfId(c.folders.value(2), account.storeId)};
            for (const MAPIFolder &f : {folders.calendar.appointments, folders.calendar.tasks, folders.calendar.journal})
                if (!f.isNull())
                    list << f;
        }
        CollectionSync(state, client, report, c, folders, list).run();
    }
}

QStringList AddDavAccount(DavState &state, DavAccount account, DavClient &client)
{
    const QList<DavCollectionInfo> found = DiscoverCollections(client);
    if (found.isEmpty())
        throw DavError{DavError::NotFound,
                       QStringLiteral("Das Konto unter %1 hat keine Adressbücher und keine Kalender.").arg(account.url)};
    for (const MAPIFolder &root : Application().GetNamespace().Folders())
        if (root.Name().compare(account.name, Qt::CaseInsensitive) == 0)
            throw StoreError(StoreErrCollision,
                             QStringLiteral("Einen Informationsspeicher \"%1\" gibt es schon.").arg(account.name));
    const MAPIFolder root = AddStore(account.name, false);
    account.storeId = root.StoreID();
    state.addAccount(account);
    QStringList names;
    for (const DavCollectionInfo &info : found) {
        DavCollectionState c;
        c.account = account.name;
        c.href = info.href;
        c.addressBook = info.addressBook;
        c.name = info.name;
        c.syncCollection = info.syncCollection;
        auto add = [&](const QString &name, int type) {
            const MAPIFolder folder = root.Folders().Add(freeName(root, name), type);
            names << folder.Name();
            return folder.EntryID();
        };
        if (info.addressBook) {
            c.folders = {add(info.name, olFolderContacts)};
        } else {
            const bool events = info.components.contains(QStringLiteral("VEVENT"));
            const QString tasksName = events ? info.name + QStringLiteral(" (Aufgaben)") : info.name;
            c.folders = {events ? add(info.name, olFolderCalendar) : QString(),
                         info.components.contains(QStringLiteral("VTODO")) ? add(tasksName, olFolderTasks) : QString(),
                         info.components.contains(QStringLiteral("VJOURNAL"))
                             ? add(info.name + QStringLiteral(" (Journal)"), olFolderJournal)
                             : QString()};
        }
        state.addCollection(c);
    }
    return names;
}

QString RemoveDavAccount(DavState &state, const DavAccount &account)
{
    state.removeAccount(account.name);
    return RemoveStore(account.storeId);
}
