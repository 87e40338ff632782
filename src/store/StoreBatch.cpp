#include "store/StoreBatch.h"

#include "store/MAPIFolder.h"
#include "store/StoreFile_p.h"

StoreBatch::StoreBatch(const MAPIFolder &folder) : m_store(folder.store())
{
    if (m_store) {
        m_store->beginBulk();
        m_open = true;
    }
}

StoreBatch::~StoreBatch()
{
    if (!m_open)
        return;
    try {
        m_store->endBulk(true);
    } catch (...) {
        // commit() reports failures; here the saves are lost as in a crash
    }
}

void StoreBatch::commit()
{
    if (!m_open)
        return;
    m_open = false;
    m_store->endBulk(true); // rolls back and throws on failure
    m_store->beginBulk();
    m_open = true;
}
