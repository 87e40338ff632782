#pragma once
// The window of an item. The core shows no widgets: Display hands the item
// to the handler that the user interface installs (the item view of
// src/controls); without a handler it throws StoreError.

#include "store/Item.h"

#include <functional>

class Inspector
{
public:
    Inspector() = default;
    explicit Inspector(Item item) : m_item(std::move(item)) {}

    [[nodiscard]] const ::Item &CurrentItem() const { return m_item; }
    void Display(bool modal = false) const;

private:
    ::Item m_item;
};

using InspectorHandler = std::function<void(const Item &item, bool modal)>;
// Installs the handler and returns the one it replaces.
InspectorHandler SetInspectorHandler(InspectorHandler handler);
