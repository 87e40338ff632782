#include "store/Inspector.h"

#include "store/StoreError.h"

namespace {
InspectorHandler &handler()
{
    static InspectorHandler h;
    return h;
}
} // namespace

void Inspector::Display(bool modal) const
{
    if (m_item.isNull())
        throw StoreError(StoreErrNoObject, QStringLiteral("Es ist kein Element angegeben."));
    if (!handler())
        throw StoreError(StoreErrCallFailed, QStringLiteral("Elemente können hier nicht angezeigt werden."));
    handler()(m_item, modal);
}

InspectorHandler SetInspectorHandler(InspectorHandler h)
{
    InspectorHandler previous = std::move(handler());
    handler() = std::move(h);
    return previous;
}
