#include "store/StoreError.h"

StoreError::StoreError(int number, const QString &description)
    : m_number(number)
    , m_description(description)
    , m_what(description.toUtf8())
{
}
