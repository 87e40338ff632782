#include "store/MAPITable.h"

#include "store/StoreConstants.h"
#include "store/StoreError.h"
#include "store/StoreFaults_p.h"
#include "store/StoreIds_p.h"

void MAPITable::setItem(const ::Folders &folders)
{
    m_folders = folders;
    m_read = false;
    m_rows.clear();
    m_position = 0;
}

void MAPITable::setColumns(const QList<unsigned int> &tags)
{
    for (unsigned int tag : tags)
        if (tag != PR_ENTRYID && tag != PR_STORE_ENTRYID && tag != PR_DISPLAY_NAME && tag != PR_CONTAINER_CLASS)
            throw StoreError(StoreErrNotFound, QStringLiteral("Die Spalte 0x%1 kann nicht gelesen werden.")
                                                   .arg(QString::number(tag, 16).rightJustified(8, u'0').toUpper()));
    m_columns = tags;
    m_read = false;
}

void MAPITable::MoveToStart()
{
    m_rows.clear();
    m_position = 0;
    const int count = m_folders.Count(); // waits for a slow store, once per table
    for (int i = 1; i <= count; ++i) {
        const MAPIFolder folder = m_folders.Item(i);
        QVariantList row;
        for (unsigned int tag : std::as_const(m_columns)) {
            switch (tag) {
            case PR_ENTRYID: row << QByteArray::fromHex(folder.EntryID().toLatin1()); break;
            case PR_STORE_ENTRYID: row << QByteArray::fromHex(folder.StoreID().toLatin1()); break;
            case PR_DISPLAY_NAME: row << folder.Name(); break;
            default: {
                const QString containerClass = folder.ContainerClass();
                row << (containerClass.isEmpty() ? QVariant() : QVariant(containerClass));
            }
            }
        }
        m_rows << row;
    }
    m_read = true;
}

int MAPITable::RowCount() const
{
    if (!m_read)
        throw StoreError(StoreErrCallFailed, QStringLiteral("Die Tabelle wurde noch nicht gelesen (MoveToStart fehlt)."));
    return int(m_rows.size());
}

QList<QVariantList> MAPITable::GetRows(int count)
{
    (void)RowCount(); // throws before MoveToStart
    const QList<QVariantList> rows = m_rows.mid(m_position, count);
    m_position += int(rows.size());
    return rows;
}
