#pragma once
// One item of the mail store, of any class: contact, appointment, task, mail,
// post, note, journal entry or distribution list. A cheap handle: copies
// share one item, and within the process every fetch of the same item (by
// position in Items or by GetItemFromID) gives handles onto the same data,
// so a change made through one is seen through all until Save.
//
// Properties are read and written by name, ignoring case, with the types of
// ItemSchema.h; a name that the item's class lacks throws StoreError 438.
// Nothing reaches the file before Save; Save writes the whole item (fields,
// user properties, attachment changes) in one transaction.

#include "store/StoreConstants.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class MAPIFolder;
class UserProperties;
class Attachments;
class Inspector;
struct ItemData;

class Item
{
public:
    Item() = default; // the null item: Items::Find without a match
    explicit Item(std::shared_ptr<ItemData> data);

    [[nodiscard]] bool isNull() const { return !m_data; }

    [[nodiscard]] int Class() const;
    [[nodiscard]] QString MessageClass() const;
    void setMessageClass(const QString &messageClass);
    // "" until the first Save.
    [[nodiscard]] QString EntryID() const;
    // The StoreID of the store that holds the item.
    [[nodiscard]] QString StoreID() const;
    // No date (01.01.4501) until the first Save.
    [[nodiscard]] QDateTime CreationTime() const;
    [[nodiscard]] QDateTime LastModificationTime() const;
    [[nodiscard]] QString Subject() const;
    void setSubject(const QString &subject);
    [[nodiscard]] QString Body() const;
    void setBody(const QString &body);

    // A property by name: QString, QDateTime, bool or int.
    [[nodiscard]] QVariant get(const QString &name) const;
    // Writes a property (see ItemSchema.h for conversions and composite
    // fields). CreationTime can be written only before the first Save.
    void set(const QString &name, const QVariant &value);
    // The text form of a property (ItemSchema.h TextOfValue).
    [[nodiscard]] QString text(const QString &name) const;
    // Whether the item's class has a property of that name.
    [[nodiscard]] bool hasProperty(const QString &name) const;
    // The canonical names of all properties of the item's class.
    [[nodiscard]] QStringList PropertyNames() const;
    // True while there are changes that Save has not written.
    [[nodiscard]] bool isDirty() const;

    void Save();
    // Moves the item to the "Gelöschte Objekte" folder of its store; an item
    // that already lies there (or in a store without one) is removed for good.
    void Delete();
    // Moves the item to the folder (any store) and returns it there. The
    // moved item has a new EntryID; this handle follows it. Unsaved changes
    // go with it.
    Item Move(const MAPIFolder &folder);
    // The folder the item lies in (or will lie in after its first Save).
    [[nodiscard]] MAPIFolder Parent() const;

    [[nodiscard]] Inspector GetInspector() const;
    [[nodiscard]] ::UserProperties UserProperties() const;
    [[nodiscard]] ::Attachments Attachments() const;

    // Same item (same shared data), or both null.
    bool operator==(const Item &other) const { return m_data == other.m_data; }

    // For the store's own classes.
    [[nodiscard]] const std::shared_ptr<ItemData> &data() const { return m_data; }

private:
    ItemData &checked() const;
    std::shared_ptr<ItemData> m_data;
};
