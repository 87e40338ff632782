#pragma once
// The items of one folder, or the part of them that a filter selects.
//
// Items are in the order they came into the folder (a moved item comes last
// in its new folder). The collection follows the folder: after an item of it
// is added, deleted or moved (also by another program) Count and the
// positions are taken anew at the next access; within a loop that only
// changes fields and saves, positions stay put. Rows are read from the file
// in batches as the positions are visited, so that a pass over a large
// folder costs one query per batch.
//
// Filters (Restrict, Find) take the form "[Prop] = 'text'", joined by AND
// and OR (AND binds closer), with parentheses; inside the quotes a quote is
// doubled. Operators: = <> < <= > >=. Text compares ignoring case; a date
// property compares as a date, given in the German text form. A filter that
// cannot be read (a lone quote, an unknown property) throws StoreError.

#include "store/Item.h"

#include <QString>

#include <memory>

struct ItemsData;
class MAPIFolder;

class Items
{
public:
    Items() = default;
    explicit Items(std::shared_ptr<ItemsData> data);

    [[nodiscard]] int Count() const;
    // 1-based. Throws StoreError for a position outside 1..Count and for an
    // item that has gone since the positions were taken.
    [[nodiscard]] ::Item Item(int index) const;
    // A new, unsaved item of the folder's default class, or of the class
    // given as a Class number (olContact ...) or message class
    // ("IPM.Contact.Kunde"). It enters the folder with its first Save.
    [[nodiscard]] ::Item Add() const;
    [[nodiscard]] ::Item Add(int itemClass) const;
    [[nodiscard]] ::Item Add(const QString &messageClass) const;
    // The items that match the filter, as a collection of their own.
    [[nodiscard]] Items Restrict(const QString &filter) const;
    // The first item that matches; a null Item when none does.
    [[nodiscard]] ::Item Find(const QString &filter) const;
    // The folder the items belong to.
    [[nodiscard]] MAPIFolder Parent() const;

    class const_iterator;
    [[nodiscard]] const_iterator begin() const;
    [[nodiscard]] const_iterator end() const;

private:
    std::shared_ptr<ItemsData> m_data;
};

class Items::const_iterator
{
public:
    using value_type = ::Item;
    const_iterator(const Items *items, int index) : m_items(items), m_index(index) {}
    ::Item operator*() const { return m_items->Item(m_index); }
    const_iterator &operator++() { ++m_index; return *this; }
    bool operator!=(const const_iterator &other) const { return m_index != other.m_index; }
    bool operator==(const const_iterator &other) const { return m_index == other.m_index; }

private:
    const Items *m_items;
    int m_index;
};
