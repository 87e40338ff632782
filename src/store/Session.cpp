#include "store/Session_p.h"

#include "store/StoreConstants.h"
#include "store/StoreError.h"
#include "store/StoreFile_p.h"
#include "store/SqlErrorText_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

namespace {

std::shared_ptr<Session> s_current;
int s_connections = 0;

[[noreturn]] void profileDamaged(const QString &folder)
{
    throw StoreError(StoreErrCorrupt, QStringLiteral("Die Profildatei in \"%1\" ist beschädigt oder keine Profildatei "
                                                     "von Varnex. Sie wurde nicht verändert.")
                                          .arg(QDir::toNativeSeparators(folder)));
}

// A profile that cannot be opened: a refused access, a full disk or a disk
// error is named as such; anything else means the file is damaged.
[[noreturn]] void profileUnusable(const QString &folder, const QSqlError &error)
{
    const QString path = QDir(folder).filePath(QLatin1String(ProfileFileName));
    const int code = SqlPrimaryCode(error);
    const bool refused = code == 3 || code == 8 || code == 14 || code == 23 || !QFileInfo(path).isWritable()
        || !QFileInfo(folder).isWritable();
    if (!refused && code != 10 && code != 13)
        profileDamaged(folder);
    const QString reason = refused ? QStringLiteral("keine Schreibberechtigung für die Datei oder ihren Ordner")
                                   : SqlErrorText(error, QDir::toNativeSeparators(path));
    throw StoreError(refused ? StoreErrAccessDenied : StoreErrDisk,
                     QStringLiteral("Die Profildatei in \"%1\" kann nicht benutzt werden: %2. Sie wurde nicht verändert.")
                         .arg(QDir::toNativeSeparators(folder), reason));
}

void check(bool ok, const QSqlQuery &q, const QString &folder)
{
    if (!ok)
        throw StoreError(StoreErrDisk, QStringLiteral("Fehler in der Profildatei in \"%1\": %2")
                                           .arg(QDir::toNativeSeparators(folder),
                                                SqlErrorText(q.lastError(), QDir::toNativeSeparators(folder))));
}

} // namespace

std::shared_ptr<Session> Session::current()
{
    const QString folder = ProfileFolder();
    if (s_current && s_current->folder() == folder)
        return s_current;
    if (!ProfileExists(folder))
        CreateProfile(folder);
    s_current = std::make_shared<Session>(folder);
    // The connections must close while the SQL layer still exists, that is
    // before the application object goes, not at static destruction.
    static const bool once = (qAddPostRoutine(&Session::endCurrent), true);
    Q_UNUSED(once);
    return s_current;
}

void Session::endCurrent()
{
    s_current.reset();
}

Session::Session(const QString &folder)
    : m_folder(folder)
    , m_connection(QStringLiteral("vxprofile-%1").arg(++s_connections))
{
    const QString path = QDir(folder).filePath(QLatin1String(ProfileFileName));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        profileUnusable(folder, QSqlError());
    if (file.read(16) != QByteArray("SQLite format 3\0", 16))
        profileDamaged(folder);
    file.close();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000"));
    if (!db.open())
        profileUnusable(folder, db.lastError());
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT value FROM meta WHERE key = 'format'"))) {
        const QSqlError error = q.lastError();
        q = QSqlQuery();
        db.close();
        profileUnusable(folder, error);
    }
    if (!q.next() || q.value(0).toString() != QLatin1String("VarnexProfile")) {
        q = QSqlQuery();
        db.close();
        profileDamaged(folder);
    }
    q.exec(QStringLiteral("PRAGMA journal_mode=WAL"));
}

Session::~Session()
{
    m_open.clear();
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

QSqlDatabase Session::db() const
{
    return QSqlDatabase::database(m_connection, false);
}

QStringList Session::ownStoreFiles()
{
    QSqlQuery q(db());
    check(q.exec(QStringLiteral("SELECT file FROM stores ORDER BY position")), q, m_folder);
    QStringList files;
    while (q.next())
        files << q.value(0).toString();
    return files;
}

std::shared_ptr<StoreFile> Session::openFile(const QString &fileName)
{
    if (const auto it = m_open.constFind(fileName); it != m_open.cend())
        return *it;
    std::shared_ptr<StoreFile> store = StoreFile::open(QDir(m_folder).filePath(fileName));
    if (mailboxOwner(*store)) {
        std::weak_ptr<Session> session = weak_from_this();
        store->setAccessRule([session](StoreFile &file, qint64 folder) {
            if (const std::shared_ptr<Session> s = session.lock())
                s->checkAccess(file, folder);
        });
    }
    m_open.insert(fileName, store);
    return store;
}

std::shared_ptr<StoreFile> Session::ownStore(int index)
{
    const QStringList files = ownStoreFiles();
    if (index < 0 || index >= files.size())
        throw StoreError(StoreErrNotFound, QStringLiteral("Einen Informationsspeicher %1 gibt es nicht.").arg(index + 1));
    return openFile(files.at(index));
}

std::shared_ptr<StoreFile> Session::storeByKey(const QByteArray &key)
{
    for (const std::shared_ptr<StoreFile> &store : std::as_const(m_open))
        if (store->key() == key)
            return store;
    QSqlQuery q(db());
    check(q.exec(QStringLiteral("SELECT file, store_key FROM stores UNION ALL SELECT mailbox_file, store_key FROM users")),
          q, m_folder);
    while (q.next())
        if (QByteArray::fromHex(q.value(1).toString().toLatin1()) == key)
            return openFile(q.value(0).toString());
    return nullptr;
}

QList<Session::User> Session::users()
{
    QSqlQuery q(db());
    check(q.exec(QStringLiteral("SELECT id, name, address, mailbox_file FROM users ORDER BY id")), q, m_folder);
    QList<User> list;
    while (q.next()) {
        User u;
        u.id = q.value(0).toLongLong();
        u.entry.name = q.value(1).toString();
        u.entry.address = q.value(2).toString();
        u.mailboxFile = q.value(3).toString();
        list << u;
    }
    for (User &u : list) {
        QSqlQuery a(db());
        a.prepare(QStringLiteral("SELECT alias FROM aliases WHERE user = ? ORDER BY rowid"));
        a.addBindValue(u.id);
        check(a.exec(), a, m_folder);
        while (a.next())
            u.entry.aliases << a.value(0).toString();
        a.prepare(QStringLiteral("SELECT folder_type FROM access WHERE user = ? AND granted = 1 ORDER BY folder_type"));
        a.addBindValue(u.id);
        check(a.exec(), a, m_folder);
        while (a.next())
            u.entry.grantedFolderTypes << a.value(0).toInt();
    }
    return list;
}

std::optional<Session::User> Session::resolve(const QString &text)
{
    const QString wanted = text.trimmed();
    if (wanted.isEmpty())
        return std::nullopt;
    for (const User &u : users()) {
        bool match = u.entry.name.compare(wanted, Qt::CaseInsensitive) == 0
                     || (!u.entry.address.isEmpty() && u.entry.address.compare(wanted, Qt::CaseInsensitive) == 0);
        for (const QString &alias : u.entry.aliases)
            match = match || alias.compare(wanted, Qt::CaseInsensitive) == 0;
        if (match)
            return u;
    }
    return std::nullopt;
}

std::optional<Session::User> Session::mailboxOwner(const StoreFile &store)
{
    QSqlQuery q(db());
    q.prepare(QStringLiteral("SELECT name FROM users WHERE store_key = ?"));
    q.addBindValue(QString::fromLatin1(store.key().toHex()));
    check(q.exec(), q, m_folder);
    if (!q.next())
        return std::nullopt;
    return resolve(q.value(0).toString());
}

std::shared_ptr<StoreFile> Session::mailbox(const User &user)
{
    return openFile(user.mailboxFile);
}

void Session::checkAccess(StoreFile &store, qint64 folderId)
{
    const std::optional<User> owner = mailboxOwner(store);
    if (!owner)
        return;
    // The rights are given per default folder; a subfolder inherits them.
    for (qint64 id = folderId; id != 0; id = store.folder(id).parent) {
        const int type = store.folder(id).defaultType;
        if (type != 0 && owner->entry.grantedFolderTypes.contains(type))
            return;
    }
    throw StoreError(StoreErrAccessDenied, QStringLiteral("Sie haben keine Berechtigung für diesen Ordner von %1.")
                                               .arg(owner->entry.name));
}

QString Session::freeFileName(const QString &stem) const
{
    for (int n = 1;; ++n) {
        const QString name = QStringLiteral("%1%2.vxstore").arg(stem).arg(n);
        if (!QFileInfo::exists(QDir(m_folder).filePath(name)))
            return name;
    }
}

std::shared_ptr<StoreFile> Session::addStore(const QString &displayName, bool defaultFolders)
{
    const QString fileName = freeFileName(QStringLiteral("store"));
    const QByteArray key = StoreFile::create(QDir(m_folder).filePath(fileName), displayName, defaultFolders);
    QSqlQuery q(db());
    q.prepare(QStringLiteral("INSERT INTO stores(position, file, store_key) "
                             "VALUES((SELECT coalesce(max(position), 0) + 1 FROM stores), ?, ?)"));
    q.addBindValue(fileName);
    q.addBindValue(QString::fromLatin1(key.toHex()));
    check(q.exec(), q, m_folder);
    return openFile(fileName);
}

QString Session::removeStore(const QString &storeId)
{
    const QStringList files = ownStoreFiles();
    for (qsizetype i = 1; i < files.size(); ++i) {
        const std::shared_ptr<StoreFile> store = openFile(files.at(i));
        if (store->storeId() != storeId)
            continue;
        QSqlQuery q(db());
        q.prepare(QStringLiteral("DELETE FROM stores WHERE file = ?"));
        q.addBindValue(files.at(i));
        check(q.exec(), q, m_folder);
        m_open.remove(files.at(i));
        return store->path();
    }
    throw StoreError(StoreErrNotFound, QStringLiteral("Diesen Informationsspeicher gibt es nicht, oder er ist der "
                                                      "erste des Profils, der bleiben muss."));
}

Session::User Session::addUser(const QString &name, const QStringList &aliases, const QString &address)
{
    if (name.trimmed().isEmpty())
        throw StoreError(StoreErrCallFailed, QStringLiteral("Ein Benutzer braucht einen Namen."));
    const QStringList names = QStringList(aliases) << name << address;
    for (const QString &text : names)
        if (!text.trimmed().isEmpty() && resolve(text))
            throw StoreError(StoreErrCollision, QStringLiteral("\"%1\" steht schon im Adressbuch.").arg(text));
    const QString fileName = freeFileName(QStringLiteral("mailbox"));
    const QByteArray key = StoreFile::create(QDir(m_folder).filePath(fileName),
                                             QStringLiteral("Postfach - %1").arg(name.trimmed()), true);
    QSqlDatabase database = db();
    QSqlQuery q(database);
    check(q.exec(QStringLiteral("BEGIN IMMEDIATE")), q, m_folder);
    q.prepare(QStringLiteral("INSERT INTO users(name, address, mailbox_file, store_key) VALUES(?, ?, ?, ?)"));
    q.addBindValue(name.trimmed());
    q.addBindValue(address.trimmed().isEmpty() ? QStringLiteral("") : address.trimmed()); // never NULL
    q.addBindValue(fileName);
    q.addBindValue(QString::fromLatin1(key.toHex()));
    bool ok = q.exec();
    const qint64 id = q.lastInsertId().toLongLong();
    for (const QString &alias : aliases) {
        q.prepare(QStringLiteral("INSERT INTO aliases(user, alias) VALUES(?, ?)"));
        q.addBindValue(id);
        q.addBindValue(alias.trimmed());
        ok = ok && q.exec();
    }
    if (!ok) {
        const QString error = SqlErrorText(q.lastError(), QDir::toNativeSeparators(m_folder));
        q.exec(QStringLiteral("ROLLBACK"));
        throw StoreError(StoreErrDisk, QStringLiteral("Das Adressbuch konnte nicht geändert werden: %1").arg(error));
    }
    check(q.exec(QStringLiteral("COMMIT")), q, m_folder);
    return *resolve(name);
}

void Session::setAccess(const QString &userName, int folderType, bool granted)
{
    const std::optional<User> user = resolve(userName);
    if (!user)
        throw StoreError(StoreErrNotFound, QStringLiteral("\"%1\" steht nicht im Adressbuch.").arg(userName));
    QSqlQuery q(db());
    q.prepare(QStringLiteral("INSERT OR REPLACE INTO access(user, folder_type, granted) VALUES(?, ?, ?)"));
    q.addBindValue(user->id);
    q.addBindValue(folderType);
    q.addBindValue(granted ? 1 : 0);
    check(q.exec(), q, m_folder);
}

void Session::cleanup()
{
    for (const std::shared_ptr<StoreFile> &store : std::as_const(m_open))
        store->cleanup();
}
