#pragma once
// The item table of one duplicate search: one row per item of the ticked
// folders, in reading order (folder by folder, within a folder by position).
// An item's running number n (1 to itemCount()) is its identity for the rest
// of the search and in the result tree. The compared values lie in
// columnCount() columns, one per switched-on field; a search keeps no column
// for a field that is switched off.
//
// The pairs found are kept beside the table: pair k names two item numbers;
// after the merge the first one of each pair is the first item of its group.

#include <QDateTime>
#include <QList>
#include <QString>

#include <vector>

struct DupItem {
    bool isMaster = false; // lies in the folder that was marked in the tree
    bool isSeries = false; // a recurring task or appointment
    // True when the item could not be read (it stays unread) or lost a
    // comparison and is proposed for removal.
    bool marked = false;
    // True until the item has been read completely. An unread item takes no
    // part in the comparison: what the table holds of it is not the item.
    bool unread = true;
    QDateTime created;
    QString folderId; // EntryID of the item's folder
    QString caption;  // text of its node in the result tree
    QString entryId;  // the item's EntryID (empty when never read)
    QString storeId;  // the StoreID of its folder
};

class DupItemTable
{
public:
    explicit DupItemTable(int columnCount = 0) : m_columnCount(columnCount) {}

    [[nodiscard]] int columnCount() const { return m_columnCount; }
    [[nodiscard]] int itemCount() const { return int(m_items.size()); }

    void reserve(int itemCount);
    // Adds an empty row and returns its item number.
    int addItem();

    [[nodiscard]] DupItem &item(int n) { return m_items[size_t(n - 1)]; }
    [[nodiscard]] const DupItem &item(int n) const { return m_items[size_t(n - 1)]; }
    [[nodiscard]] QString &value(int n, int column) { return m_values[cell(n, column)]; }
    [[nodiscard]] const QString &value(int n, int column) const { return m_values[cell(n, column)]; }

private:
    [[nodiscard]] size_t cell(int n, int column) const { return size_t(n - 1) * size_t(m_columnCount) + size_t(column); }

    int m_columnCount;
    std::vector<DupItem> m_items;
    std::vector<QString> m_values;
};

struct DupPairs {
    QList<int> first;  // PairFirst: item numbers, pair k at index k
    QList<int> second; // PairSecond

    [[nodiscard]] int count() const { return int(first.size()); }
    void add(int i, int j)
    {
        first.append(i);
        second.append(j);
    }
};
