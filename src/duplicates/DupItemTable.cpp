#include "duplicates/DupItemTable.h"

void DupItemTable::reserve(int itemCount)
{
    m_items.reserve(size_t(itemCount));
    m_values.reserve(size_t(itemCount) * size_t(m_columnCount));
}

int DupItemTable::addItem()
{
    m_items.emplace_back();
    m_values.resize(m_values.size() + size_t(m_columnCount));
    return itemCount();
}
