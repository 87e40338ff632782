#pragma once
// The filters of Items::Restrict and Items::Find (internal to the store):
// "[Prop] op 'text'" terms joined by AND and OR, with parentheses.

#include <QString>

#include <memory>
#include <vector>

class Item;

class ItemFilter
{
public:
    // Throws StoreError (StoreErrBadFilter) for a filter it cannot read.
    static std::shared_ptr<const ItemFilter> parse(const QString &filter);
    [[nodiscard]] bool matches(const Item &item) const;

    enum class Op { Eq, Ne, Lt, Le, Gt, Ge };
    struct Node {
        enum Kind { Term, And, Or } kind = Term;
        QString property; // Term
        Op op = Op::Eq;
        QString literal;
        std::unique_ptr<Node> left, right; // And, Or
    };

private:
    std::unique_ptr<Node> m_root;
};
