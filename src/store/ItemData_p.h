#pragma once
// The shared state behind Item handles (internal to the store).

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>
#include <utility>
#include <vector>

class StoreFile;

struct AttachmentRecord {
    int key = 0;     // stable within the item's life in this process
    qint64 id = 0;   // row in the file; 0 until saved
    int type = 1;
    QString fileName;
    QString displayName;
    QString path;
    bool hidden = false;
    qint64 size = 0;
    QByteArray data; // for a saved one, read on demand
    bool dataLoaded = true;
    bool changed = false; // a saved one whose row needs rewriting
};

struct UserPropRecord {
    QString name;
    int type = 1;
    QVariant value;
};

struct ItemData : std::enable_shared_from_this<ItemData> {
    std::shared_ptr<StoreFile> store;
    qint64 id = 0;       // 0 until the first Save
    qint64 folderId = 0;
    int itemClass = 0;
    QString messageClass;
    qint64 created = 0;  // StoreTime_p.h; 0 until the first Save (reads as no date)
    qint64 modified = 0;

    // Properties, sorted by slot, only those that hold a value. Decoded from
    // blob on first use.
    QByteArray blob;
    bool decoded = true;
    std::vector<std::pair<int, QVariant>> props;
    std::vector<std::pair<qint64, QVariant>> foreign; // names a newer version wrote; kept as they are
    QList<UserPropRecord> userProps;

    bool attachmentsLoaded = false;
    QList<AttachmentRecord> attachments;
    QList<qint64> removedAttachments;
    int nextAttachmentKey = 1;

    bool dirty = false;
    bool gone = false;      // deleted or vanished: Save, Delete, Move fail
    quint64 loadStamp = 0;  // the store's outside-change count when loaded

    void ensureDecoded();
    void ensureAttachments();
    [[nodiscard]] const QVariant *value(int slot) const;
    // Stores a converted value; an empty one removes the slot.
    void put(int slot, const QVariant &value);
    [[nodiscard]] int userPropIndex(const QString &name) const;
};

// Blob encoding of an item's properties and user properties.
QByteArray EncodeItem(const ItemData &item, const StoreFile &store);
// Throws StoreErrCorrupt for damaged bytes (a count or length that the
// bytes cannot hold, a date out of range, bytes cut short or left over).
void DecodeItem(ItemData &item, const StoreFile &store);
// A time of an item row (created, modified); damaged like the blob when out
// of range.
QDateTime DecodeItemTime(qint64 code);
