#pragma once
// The user properties of an item: named values that the user or a program
// added to it, kept in the item's own order. Names compare ignoring case.
// Changes are part of the item and reach the file with its Save.

#include <QString>
#include <QVariant>

#include <memory>

struct ItemData;

class UserProperty
{
public:
    UserProperty() = default; // the null property: Find without a match
    UserProperty(std::shared_ptr<ItemData> item, const QString &name);

    [[nodiscard]] bool isNull() const { return !m_item; }
    [[nodiscard]] QString Name() const;
    [[nodiscard]] int Type() const;
    [[nodiscard]] QVariant Value() const;
    // A text property takes the value's text.
    void setValue(const QVariant &value);
    // Removes the property from the item.
    void Delete();

private:
    std::shared_ptr<ItemData> m_item;
    QString m_name;
};

class UserProperties
{
public:
    UserProperties() = default;
    explicit UserProperties(std::shared_ptr<ItemData> item);

    [[nodiscard]] int Count() const;
    // 1-based.
    [[nodiscard]] UserProperty Item(int index) const;
    // By name, ignoring case; a null property when the item has none.
    [[nodiscard]] UserProperty Find(const QString &name) const;
    // Adds a property of the type (olText ...); throws StoreError when the
    // item has one of that name already, or the name is empty.
    UserProperty Add(const QString &name, int type);
    void Remove(int index);

private:
    std::shared_ptr<ItemData> m_item;
};
