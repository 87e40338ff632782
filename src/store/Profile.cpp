// Profile folders: where they are, creating them, and the administration of
// stores and the address book.
#include "store/Profile.h"
#include "store/RemoveStore.h"

#include "store/MAPIFolder.h"
#include "store/Session_p.h"
#include "store/StoreError.h"
#include "store/StoreFile_p.h"
#include "store/SqlErrorText_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>

namespace {

QString s_profileFolder; // "" : the default
int s_createConnections = 0;

const char *const s_profileSchema[] = {
    "CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE stores(position INTEGER PRIMARY KEY, file TEXT NOT NULL UNIQUE, store_key TEXT NOT NULL)",
    "CREATE TABLE users(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, address TEXT NOT NULL,"
    " mailbox_file TEXT NOT NULL, store_key TEXT NOT NULL)",
    "CREATE TABLE aliases(user INTEGER NOT NULL REFERENCES users(id), alias TEXT NOT NULL)",
    "CREATE TABLE access(user INTEGER NOT NULL REFERENCES users(id), folder_type INTEGER NOT NULL,"
    " granted INTEGER NOT NULL, PRIMARY KEY(user, folder_type))",
    "INSERT INTO meta(key, value) VALUES('format', 'VarnexProfile')",
    "INSERT INTO meta(key, value) VALUES('version', '1')",
};

[[noreturn]] void cannotCreate(const QString &folder, const QString &why)
{
    throw StoreError(StoreErrDisk, QStringLiteral("Das Profil in \"%1\" konnte nicht angelegt werden: %2")
                                       .arg(QDir::toNativeSeparators(folder), why));
}

// Writes the profile file beside its place and renames it there.
void writeProfileFile(const QString &folder, const QString &storeFile, const QByteArray &storeKey)
{
    const QString target = QDir(folder).filePath(QLatin1String(ProfileFileName));
    const QString building = target + QStringLiteral(".neu");
    QFile::remove(building);
    const QString connection = QStringLiteral("vxprofile-create-%1").arg(++s_createConnections);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(building);
        if (!db.open())
            cannotCreate(folder, SqlErrorText(db.lastError(), QDir::toNativeSeparators(building)));
        QSqlQuery q(db);
        bool ok = q.exec(QStringLiteral("PRAGMA synchronous=FULL")) && q.exec(QStringLiteral("BEGIN"));
        for (const char *statement : s_profileSchema)
            ok = ok && q.exec(QLatin1String(statement));
        ok = ok && q.prepare(QStringLiteral("INSERT INTO stores(position, file, store_key) VALUES(1, ?, ?)"));
        q.addBindValue(storeFile);
        q.addBindValue(QString::fromLatin1(storeKey.toHex()));
        ok = ok && q.exec() && q.exec(QStringLiteral("COMMIT"));
        const QString error = ok ? QString() : SqlErrorText(q.lastError(), QDir::toNativeSeparators(building));
        db.close();
        if (!ok) {
            QFile::remove(building);
            cannotCreate(folder, error);
        }
    }
    QSqlDatabase::removeDatabase(connection);
    if (!QFile::rename(building, target)) {
        QFile::remove(building);
        cannotCreate(folder, QStringLiteral("die Profildatei kann nicht geschrieben werden"));
    }
}

std::shared_ptr<Session> session()
{
    return Session::current();
}

} // namespace

QString DefaultProfileFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
        .filePath(QStringLiteral("Nordquell/Varnex/Profil"));
}

QString ProfileFolder()
{
    return s_profileFolder.isEmpty() ? DefaultProfileFolder() : s_profileFolder;
}

void SetProfileFolder(const QString &folder)
{
    s_profileFolder = folder.isEmpty() ? QString() : QDir(folder).absolutePath();
    Session::endCurrent();
}

bool ProfileExists(const QString &folder)
{
    return QFileInfo(QDir(folder).filePath(QLatin1String(ProfileFileName))).isFile();
}

void CreateProfile(const QString &folder)
{
    if (!QDir().mkpath(folder))
        cannotCreate(folder, QStringLiteral("der Ordner kann nicht angelegt werden"));
    // Two programs starting at once on a new profile create it once.
    QLockFile lock(QDir(folder).filePath(QStringLiteral(".profil.lock")));
    lock.setStaleLockTime(30000);
    if (!lock.tryLock(30000))
        cannotCreate(folder, QStringLiteral("ein anderes Programm legt es gerade an"));
    if (ProfileExists(folder))
        return;
    // A store file left by an interrupted creation is never overwritten:
    // the new store takes the next free name.
    QString fileName;
    for (int n = 1; fileName.isEmpty(); ++n)
        if (!QFileInfo::exists(QDir(folder).filePath(QStringLiteral("store%1.vxstore").arg(n))))
            fileName = QStringLiteral("store%1.vxstore").arg(n);
    const QByteArray key = StoreFile::create(QDir(folder).filePath(fileName), QStringLiteral("Persönliche Ordner"), true);
    writeProfileFile(folder, fileName, key);
}

MAPIFolder AddStore(const QString &displayName, bool defaultFolders)
{
    const std::shared_ptr<StoreFile> store = session()->addStore(displayName, defaultFolders);
    return MAPIFolder(store, store->root());
}

QString RemoveStore(const QString &storeId)
{
    return session()->removeStore(storeId);
}

MAPIFolder AddAddressBookUser(const QString &name, const QStringList &aliases, const QString &address)
{
    const std::shared_ptr<Session> s = session();
    const Session::User user = s->addUser(name, aliases, address);
    // Opened apart from the session, without the access rule, so that the
    // caller can fill the mailbox as its owner would.
    const std::shared_ptr<StoreFile> store = StoreFile::open(QDir(s->folder()).filePath(user.mailboxFile));
    return MAPIFolder(store, store->root());
}

void SetMailboxAccess(const QString &userName, int folderType, bool granted)
{
    session()->setAccess(userName, folderType, granted);
}

QList<AddressBookEntry> AddressBook()
{
    QList<AddressBookEntry> entries;
    for (const Session::User &user : session()->users())
        entries << user.entry;
    return entries;
}
