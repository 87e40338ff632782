// Opening, creating and validating store files; folders; transactions.
#include "store/StoreFile_p.h"
#include "store/SqlErrorText_p.h"

#include "store/ItemSchema.h"
#include "store/StoreConstants.h"
#include "store/StoreDurability.h"
#include "store/StoreError.h"
#include "store/StoreIds_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QUuid>

namespace {

constexpr char s_format[] = "VarnexStore";
constexpr int s_version = 1;
StoreDurability s_durability = StoreDurability::WalNormal;

const char *const s_schema[] = {
    "CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE names(pid INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE)",
    "CREATE TABLE folders(id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER REFERENCES folders(id),"
    " name TEXT NOT NULL, container_class TEXT, message_class TEXT NOT NULL, default_type INTEGER NOT NULL)",
    "CREATE TABLE items(id INTEGER PRIMARY KEY AUTOINCREMENT, folder INTEGER NOT NULL REFERENCES folders(id),"
    " class INTEGER NOT NULL, message_class TEXT NOT NULL, created INTEGER NOT NULL, modified INTEGER NOT NULL,"
    " props BLOB NOT NULL)",
    "CREATE INDEX items_folder ON items(folder, id)",
    "CREATE TABLE attachments(id INTEGER PRIMARY KEY AUTOINCREMENT, item INTEGER NOT NULL REFERENCES items(id),"
    " position INTEGER NOT NULL, type INTEGER NOT NULL, file_name TEXT, display_name TEXT, path TEXT,"
    " hidden INTEGER NOT NULL, size INTEGER NOT NULL, data BLOB)",
    "CREATE INDEX attachments_item ON attachments(item, position)",
};

int s_connections = 0;

QString notAStore(const QString &path)
{
    return QStringLiteral("Die Datei \"%1\" ist kein Informationsspeicher von Varnex oder sie ist beschädigt. "
                          "Sie wurde nicht verändert.")
        .arg(QDir::toNativeSeparators(path));
}

bool hasSqliteHeader(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return file.read(16) == QByteArray("SQLite format 3\0", 16);
}

void exec(QSqlQuery &q, const QString &sql, const QString &path)
{
    if (!(sql.isEmpty() ? q.exec() : q.exec(sql)))
        throw StoreError(StoreErrDisk, QStringLiteral("Der Informationsspeicher \"%1\" konnte nicht angelegt werden: %2")
                                           .arg(QDir::toNativeSeparators(path),
                                                SqlErrorText(q.lastError(), QDir::toNativeSeparators(path))));
}

} // namespace

void SetStoreDurability(StoreDurability durability)
{
    s_durability = durability;
}

StoreDurability CurrentStoreDurability()
{
    return s_durability;
}

const QList<DefaultFolderDef> &DefaultFolderDefs()
{
    static const QList<DefaultFolderDef> folders = {
        {"Posteingang", ContainerClass::Note, MessageClass::Note, olFolderInbox},
        {"Gesendete Objekte", ContainerClass::Note, MessageClass::Note, olFolderSentMail},
        {"Gelöschte Objekte", ContainerClass::Note, MessageClass::Note, olFolderDeletedItems},
        {"Entwürfe", ContainerClass::Note, MessageClass::Note, olFolderDrafts},
        {"Kalender", ContainerClass::Appointment, MessageClass::Appointment, olFolderCalendar},
        {"Kontakte", ContainerClass::Contact, MessageClass::Contact, olFolderContacts},
        {"Aufgaben", ContainerClass::Task, MessageClass::Task, olFolderTasks},
        {"Notizen", ContainerClass::StickyNote, MessageClass::StickyNote, olFolderNotes},
        {"Journal", ContainerClass::Journal, MessageClass::Activity, olFolderJournal},
    };
    return folders;
}

void ThrowNotFound(const QString &what)
{
    throw StoreError(StoreErrNotFound, what);
}

StoreFile::StoreFile(const QString &path, const QString &connection)
    : m_path(path)
    , m_connection(connection)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(path);
    // Another program on the same profile may hold the write lock for a
    // moment; wait for it rather than fail.
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000"));
    if (!db.open())
        throw StoreError(StoreErrDisk, QStringLiteral("Der Informationsspeicher \"%1\" kann nicht geöffnet werden: %2")
                                           .arg(QDir::toNativeSeparators(path),
                                                SqlErrorText(db.lastError(), QDir::toNativeSeparators(path))));
}

StoreFile::~StoreFile()
{
    m_statements.clear();
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

std::shared_ptr<StoreFile> StoreFile::open(const QString &path)
{
    if (!QFileInfo(path).isFile())
        ThrowNotFound(QStringLiteral("Der Informationsspeicher \"%1\" wurde nicht gefunden.").arg(QDir::toNativeSeparators(path)));
    // Check the header ourselves: SQLite would take an empty or foreign file
    // as a new database and write into it.
    if (!hasSqliteHeader(path))
        throw StoreError(StoreErrCorrupt, notAStore(path));
    std::shared_ptr<StoreFile> file(new StoreFile(path, QStringLiteral("vxstore-%1").arg(++s_connections)));
    file->validateAndLoad();
    return file;
}

void StoreFile::validateAndLoad()
{
    QSqlQuery q(db());
    QHash<QString, QString> meta;
    if (!q.exec(QStringLiteral("SELECT key, value FROM meta")))
        throw StoreError(StoreErrCorrupt, notAStore(m_path));
    while (q.next())
        meta.insert(q.value(0).toString(), q.value(1).toString());
    if (meta.value(QStringLiteral("format")) != QLatin1String(s_format))
        throw StoreError(StoreErrCorrupt, notAStore(m_path));
    if (meta.value(QStringLiteral("version")).toInt() > s_version)
        throw StoreError(StoreErrCorrupt, QStringLiteral("Der Informationsspeicher \"%1\" stammt von einer neueren "
                                                         "Version von Varnex und wird nicht geöffnet.")
                                              .arg(QDir::toNativeSeparators(m_path)));
    m_key = QByteArray::fromHex(meta.value(QStringLiteral("key")).toLatin1());
    if (m_key.size() != 16)
        throw StoreError(StoreErrCorrupt, notAStore(m_path));
    m_storeId = StoreIdOf(m_key);
    m_displayName = meta.value(QStringLiteral("display_name"));
    // Damaged pages would show only when a read reaches them, and writes
    // elsewhere in the file would go on: the whole file is checked first.
    if (!q.exec(QStringLiteral("PRAGMA quick_check")) || !q.next() || q.value(0).toString() != QLatin1String("ok"))
        throw StoreError(StoreErrCorrupt, QStringLiteral("Der Informationsspeicher \"%1\" ist beschädigt und wird "
                                                         "nicht geöffnet. Er wurde nicht verändert.")
                                              .arg(QDir::toNativeSeparators(m_path)));
    q.finish();

    const bool wal = s_durability != StoreDurability::RollbackFull;
    q.exec(wal ? QStringLiteral("PRAGMA journal_mode=WAL") : QStringLiteral("PRAGMA journal_mode=DELETE"));
    q.exec(s_durability == StoreDurability::WalNormal ? QStringLiteral("PRAGMA synchronous=NORMAL")
                                                      : QStringLiteral("PRAGMA synchronous=FULL"));
    q.exec(QStringLiteral("PRAGMA foreign_keys=ON"));
    loadDictionary();
    loadFolders();
    checkOutsideChanges();
}

void StoreFile::loadDictionary()
{
    QSqlQuery q(db());
    if (!q.exec(QStringLiteral("SELECT pid, name FROM names")))
        fail(q, QStringLiteral("Lesen der Eigenschaftsnamen"));
    m_pidOfSlot = QVector<qint64>(PropertyCount(), -1);
    m_slotOfPid.clear();
    while (q.next())
        mapPid(q.value(0).toLongLong(), PropertySlot(q.value(1).toString()));
    // Properties that this version added since the file was written.
    if (!m_pidOfSlot.contains(-1))
        return;
    begin();
    QSqlQuery ins(db());
    ins.prepare(QStringLiteral("INSERT INTO names(name) VALUES(?)"));
    for (int slot = 0; slot < PropertyCount(); ++slot) {
        if (m_pidOfSlot[slot] >= 0)
            continue;
        ins.addBindValue(QString::fromLatin1(PropertyAt(slot).name));
        if (!ins.exec()) {
            rollback();
            fail(ins, QStringLiteral("Ergänzen der Eigenschaftsnamen"));
        }
        mapPid(ins.lastInsertId().toLongLong(), slot);
    }
    commit();
}

void StoreFile::mapPid(qint64 pid, int slot)
{
    if (slot < 0 || pid < 0 || pid > 1000000)
        return; // a name this version does not know, or no dictionary number
    m_pidOfSlot[slot] = pid;
    if (pid >= m_slotOfPid.size())
        m_slotOfPid.resize(pid + 1, -1);
    m_slotOfPid[pid] = slot;
}

void StoreFile::loadFolders()
{
    QSqlQuery q(db());
    if (!q.exec(QStringLiteral("SELECT id, parent, name, container_class, message_class, default_type FROM folders ORDER BY id")))
        fail(q, QStringLiteral("Lesen der Ordner"));
    m_folders.clear();
    m_children.clear();
    while (q.next()) {
        indexFolder(FolderRow{q.value(0).toLongLong(), q.value(1).toLongLong(), q.value(2).toString(),
                              q.value(3).toString(), q.value(4).toString(), q.value(5).toInt()});
    }
}

QByteArray StoreFile::create(const QString &path, const QString &displayName, bool defaultFolders)
{
    if (QFileInfo::exists(path))
        throw StoreError(StoreErrCollision, QStringLiteral("Die Datei \"%1\" gibt es schon; sie wird nicht überschrieben.")
                                                .arg(QDir::toNativeSeparators(path)));
    // Built beside the target and renamed at the end, so that a crash never
    // leaves a half store under the real name.
    const QString building = path + QStringLiteral(".neu");
    QFile::remove(building);
    const QByteArray key = QUuid::createUuid().toRfc4122();
    const QString connection = QStringLiteral("vxcreate-%1").arg(++s_connections);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(building);
        if (!db.open())
            throw StoreError(StoreErrDisk, QStringLiteral("Der Informationsspeicher \"%1\" konnte nicht angelegt werden.")
                                               .arg(QDir::toNativeSeparators(path)));
        QSqlQuery q(db);
        exec(q, QStringLiteral("PRAGMA synchronous=FULL"), path);
        exec(q, QStringLiteral("BEGIN"), path);
        for (const char *statement : s_schema)
            exec(q, QLatin1String(statement), path);
        const QList<std::pair<QString, QString>> meta = {
            {QStringLiteral("format"), QLatin1String(s_format)},
            {QStringLiteral("version"), QString::number(s_version)},
            {QStringLiteral("key"), QString::fromLatin1(key.toHex())},
            {QStringLiteral("display_name"), displayName},
        };
        for (const auto &[k, v] : meta) {
            q.prepare(QStringLiteral("INSERT INTO meta(key, value) VALUES(?, ?)"));
            q.addBindValue(k);
            q.addBindValue(v);
            exec(q, QString(), path);
        }
        for (int slot = 0; slot < PropertyCount(); ++slot) {
            q.prepare(QStringLiteral("INSERT INTO names(name) VALUES(?)"));
            q.addBindValue(QString::fromLatin1(PropertyAt(slot).name));
            exec(q, QString(), path);
        }
        q.prepare(QStringLiteral("INSERT INTO folders(parent, name, container_class, message_class, default_type) "
                                 "VALUES(NULL, ?, NULL, ?, 0)"));
        q.addBindValue(displayName);
        q.addBindValue(QString::fromLatin1(MessageClass::Note));
        exec(q, QString(), path);
        const qint64 root = q.lastInsertId().toLongLong();
        for (const DefaultFolderDef &entry : defaultFolders ? DefaultFolderDefs() : QList<DefaultFolderDef>()) {
            q.prepare(QStringLiteral("INSERT INTO folders(parent, name, container_class, message_class, default_type) "
                                     "VALUES(?, ?, ?, ?, ?)"));
            q.addBindValue(root);
            q.addBindValue(QString::fromUtf8(entry.name));
            q.addBindValue(QString::fromLatin1(entry.containerClass));
            q.addBindValue(QString::fromLatin1(entry.messageClass));
            q.addBindValue(entry.type);
            exec(q, QString(), path);
        }
        exec(q, QStringLiteral("COMMIT"), path);
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    if (!QFile::rename(building, path)) {
        QFile::remove(building);
        throw StoreError(StoreErrCollision, QStringLiteral("Der Informationsspeicher \"%1\" konnte nicht angelegt werden.")
                                                .arg(QDir::toNativeSeparators(path)));
    }
    return key;
}
