#pragma once
// Reads the subfolder table of a folder in one go: the columns of all
// subfolders as rows of values. Columns are MAPI property tags:
// PR_ENTRYID and PR_STORE_ENTRYID give binary IDs (QByteArray, turned into
// the ID strings by MAPIUtils::BinaryToHex), PR_DISPLAY_NAME the name and
// PR_CONTAINER_CLASS the container class, or an invalid QVariant for a
// folder that has none. Another tag throws StoreError.

#include "store/MAPIFolder.h"

#include <QList>
#include <QVariant>

class MAPITable
{
public:
    MAPITable() = default;

    // The collection to read: a folder's Folders. The table is read from the
    // file at MoveToStart.
    void setItem(const ::Folders &folders);
    void setColumns(const QList<unsigned int> &tags);
    [[nodiscard]] QList<unsigned int> Columns() const { return m_columns; }
    // Reads the table and places it at its first row.
    void MoveToStart();
    [[nodiscard]] int RowCount() const;
    // Up to count rows from the current one on; each row holds one value per
    // column, in the order of Columns.
    [[nodiscard]] QList<QVariantList> GetRows(int count);

private:
    ::Folders m_folders;
    QList<unsigned int> m_columns;
    QList<QVariantList> m_rows;
    bool m_read = false;
    int m_position = 0;
};
