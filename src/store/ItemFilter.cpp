#include "store/ItemFilter_p.h"

#include "store/Item.h"
#include "store/ItemSchema.h"
#include "store/StoreConstants.h"
#include "store/StoreError.h"

namespace {

[[noreturn]] void bad(const QString &filter, const QString &why)
{
    throw StoreError(StoreErrBadFilter, QStringLiteral("Der Filter \"%1\" ist ungültig: %2.").arg(filter, why));
}

class Parser
{
public:
    explicit Parser(const QString &text) : m_text(text) {}

    std::unique_ptr<ItemFilter::Node> parseAll()
    {
        auto node = parseOr();
        skipBlanks();
        if (m_pos != m_text.size())
            bad(m_text, QStringLiteral("unerwartetes Zeichen an Stelle %1").arg(m_pos + 1));
        return node;
    }

private:
    using Node = ItemFilter::Node;

    std::unique_ptr<Node> parseOr()
    {
        auto left = parseAnd();
        while (takeWord(u"OR"))
            left = join(Node::Or, std::move(left), parseAnd());
        return left;
    }
    std::unique_ptr<Node> parseAnd()
    {
        auto left = parsePrimary();
        while (takeWord(u"AND"))
            left = join(Node::And, std::move(left), parsePrimary());
        return left;
    }
    std::unique_ptr<Node> parsePrimary()
    {
        skipBlanks();
        if (take(u'(')) {
            auto inner = parseOr();
            skipBlanks();
            if (!take(u')'))
                bad(m_text, QStringLiteral("schließende Klammer fehlt"));
            return inner;
        }
        auto term = std::make_unique<Node>();
        if (!take(u'['))
            bad(m_text, QStringLiteral("[Eigenschaft] erwartet an Stelle %1").arg(m_pos + 1));
        const qsizetype close = m_text.indexOf(u']', m_pos);
        if (close < 0)
            bad(m_text, QStringLiteral("] fehlt"));
        term->property = m_text.mid(m_pos, close - m_pos).trimmed();
        if (PropertySlot(term->property) < 0)
            bad(m_text, QStringLiteral("die Eigenschaft \"%1\" gibt es nicht").arg(term->property));
        m_pos = close + 1;
        term->op = parseOp();
        term->literal = parseLiteral();
        return term;
    }
    ItemFilter::Op parseOp()
    {
        skipBlanks();
        using Op = ItemFilter::Op;
        static const std::pair<const char16_t *, Op> ops[] = {
            {u"<>", Op::Ne}, {u"<=", Op::Le}, {u">=", Op::Ge}, {u"=", Op::Eq}, {u"<", Op::Lt}, {u">", Op::Gt}};
        for (const auto &[text, op] : ops) {
            const QString t = QString::fromUtf16(text);
            if (QStringView(m_text).mid(m_pos).startsWith(t)) {
                m_pos += t.size();
                return op;
            }
        }
        bad(m_text, QStringLiteral("Vergleich erwartet an Stelle %1").arg(m_pos + 1));
    }
    QString parseLiteral()
    {
        skipBlanks();
        if (!take(u'\'')) { // a bare word: a number or True/False
            const qsizetype start = m_pos;
            while (m_pos < m_text.size() && !m_text.at(m_pos).isSpace() && m_text.at(m_pos) != u')')
                ++m_pos;
            if (m_pos == start)
                bad(m_text, QStringLiteral("Wert erwartet an Stelle %1").arg(m_pos + 1));
            return m_text.mid(start, m_pos - start);
        }
        QString value;
        while (true) {
            if (m_pos >= m_text.size())
                bad(m_text, QStringLiteral("ein Anführungszeichen ist nicht geschlossen"));
            const QChar c = m_text.at(m_pos++);
            if (c != u'\'') {
                value += c;
            } else if (take(u'\'')) {
                value += u'\''; // doubled quote inside the text
            } else {
                return value;
            }
        }
    }
    static std::unique_ptr<Node> join(Node::Kind kind, std::unique_ptr<Node> l, std::unique_ptr<Node> r)
    {
        auto node = std::make_unique<Node>();
        node->kind = kind;
        node->left = std::move(l);
        node->right = std::move(r);
        return node;
    }
    void skipBlanks()
    {
        while (m_pos < m_text.size() && m_text.at(m_pos).isSpace())
            ++m_pos;
    }
    bool take(QChar c)
    {
        if (m_pos < m_text.size() && m_text.at(m_pos) == c) {
            ++m_pos;
            return true;
        }
        return false;
    }
    bool takeWord(QStringView word)
    {
        skipBlanks();
        const QStringView rest = QStringView(m_text).mid(m_pos);
        if (!rest.startsWith(word, Qt::CaseInsensitive))
            return false;
        if (rest.size() > word.size() && !rest.at(word.size()).isSpace() && rest.at(word.size()) != u'(')
            return false;
        m_pos += word.size();
        return true;
    }

    const QString &m_text;
    qsizetype m_pos = 0;
};

int compareValues(const QVariant &value, const QString &literal, const QString &property)
{
    switch (value.typeId()) {
    case QMetaType::QDateTime: {
        const PropDef &def = PropertyAt(PropertySlot(property));
        const QDateTime other = ConvertForProperty(def, literal).toDateTime();
        const QDateTime mine = value.toDateTime();
        return mine < other ? -1 : (other < mine ? 1 : 0);
    }
    case QMetaType::Bool: {
        const bool other = ConvertForProperty(PropertyAt(PropertySlot(property)), literal).toBool();
        return int(value.toBool()) - int(other);
    }
    case QMetaType::Int: {
        const int other = literal.trimmed().toInt();
        return value.toInt() < other ? -1 : (value.toInt() > other ? 1 : 0);
    }
    default:
        return value.toString().compare(literal, Qt::CaseInsensitive);
    }
}

bool evaluate(const ItemFilter::Node &node, const Item &item)
{
    using Node = ItemFilter::Node;
    using Op = ItemFilter::Op;
    switch (node.kind) {
    case Node::And: return evaluate(*node.left, item) && evaluate(*node.right, item);
    case Node::Or: return evaluate(*node.left, item) || evaluate(*node.right, item);
    case Node::Term: break;
    }
    if (!item.hasProperty(node.property))
        return false; // an item of another class lacks it: no match
    const QVariant value = item.get(node.property);
    if (value.typeId() == QMetaType::QDateTime && IsNoDate(value.toDateTime())) {
        // A date that is not set equals only an empty date and is neither
        // before nor after any date.
        const bool literalEmpty = IsNoDate(ConvertForProperty(PropertyAt(PropertySlot(node.property)), node.literal).toDateTime());
        return node.op == Op::Eq ? literalEmpty : node.op == Op::Ne ? !literalEmpty : false;
    }
    const int c = compareValues(value, node.literal, node.property);
    switch (node.op) {
    case Op::Eq: return c == 0;
    case Op::Ne: return c != 0;
    case Op::Lt: return c < 0;
    case Op::Le: return c <= 0;
    case Op::Gt: return c > 0;
    case Op::Ge: return c >= 0;
    }
    return false;
}

} // namespace

std::shared_ptr<const ItemFilter> ItemFilter::parse(const QString &filter)
{
    auto f = std::make_shared<ItemFilter>();
    f->m_root = Parser(filter).parseAll();
    return f;
}

bool ItemFilter::matches(const Item &item) const
{
    return evaluate(*m_root, item);
}
