#include "controls/NodeTree.h"

#include <QHeaderView>

namespace {

// Where a node keeps its index, its key and its image key.
constexpr int IndexRole = Qt::UserRole;
constexpr int KeyRole = Qt::UserRole + 1;
constexpr int ImageRole = Qt::UserRole + 2;

} // namespace

NodeTree::NodeTree(QWidget *parent)
    : QTreeWidget(parent)
{
    setColumnCount(1);
    header()->hide();
    setSelectionMode(QAbstractItemView::SingleSelection);
    setUniformRowHeights(true);
    setIconSize(QSize(16, 16));
    connect(this, &QTreeWidget::itemChanged, this, &NodeTree::onItemChanged);
}

void NodeTree::clearNodes()
{
    ++m_programChange;
    clear();
    m_nodes.clear();
    m_index.clear();
    --m_programChange;
}

bool NodeTree::addNode(const QString &parentKey, const QString &key, const QString &text,
                       const QString &imageKey)
{
    if (m_index.contains(key) || (!imageKey.isEmpty() && !m_images.contains(imageKey)))
        return false;
    QTreeWidgetItem *parentItem = nullptr;
    if (!parentKey.isEmpty()) {
        parentItem = node(m_index.value(parentKey));
        if (!parentItem)
            return false;
    }
    ++m_programChange;
    auto *item = new QTreeWidgetItem;
    item->setText(0, text);
    item->setIcon(0, m_images.value(imageKey));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    m_nodes.append(item);
    const int index = int(m_nodes.size());
    item->setData(0, IndexRole, index);
    item->setData(0, KeyRole, key);
    item->setData(0, ImageRole, imageKey);
    m_index.insert(key, index);
    if (parentItem)
        parentItem->addChild(item);
    else
        addTopLevelItem(item);
    --m_programChange;
    return true;
}

QTreeWidgetItem *NodeTree::node(int index) const
{
    return (index >= 1 && index <= m_nodes.size()) ? m_nodes.at(index - 1) : nullptr;
}

QString NodeTree::nodeKey(int index) const
{
    const QTreeWidgetItem *item = node(index);
    return item ? item->data(0, KeyRole).toString() : QString();
}

QString NodeTree::nodeText(int index) const
{
    const QTreeWidgetItem *item = node(index);
    return item ? item->text(0) : QString();
}

QString NodeTree::nodeImage(int index) const
{
    const QTreeWidgetItem *item = node(index);
    return item ? item->data(0, ImageRole).toString() : QString();
}

QColor NodeTree::backColor(int index) const
{
    const QTreeWidgetItem *item = node(index);
    return item ? item->background(0).color() : QColor();
}

void NodeTree::setBackColor(int index, const QColor &colour)
{
    if (QTreeWidgetItem *item = node(index)) {
        ++m_programChange;
        item->setBackground(0, colour);
        --m_programChange;
    }
}

bool NodeTree::isChecked(int index) const
{
    const QTreeWidgetItem *item = node(index);
    return item && item->checkState(0) == Qt::Checked;
}

void NodeTree::setChecked(int index, bool checked)
{
    if (QTreeWidgetItem *item = node(index)) {
        ++m_programChange;
        item->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
        --m_programChange;
    }
}

bool NodeTree::isExpanded(int index) const
{
    const QTreeWidgetItem *item = node(index);
    return item && item->isExpanded();
}

void NodeTree::setExpanded(int index, bool expanded)
{
    if (QTreeWidgetItem *item = node(index))
        item->setExpanded(expanded);
}

int NodeTree::selectedIndex() const
{
    // The selection, not the current item: the view makes the first node
    // current when it gets the focus, but that does not mark it.
    const QList<QTreeWidgetItem *> selected = selectedItems();
    return selected.isEmpty() ? 0 : selected.first()->data(0, IndexRole).toInt();
}

void NodeTree::setSelectedIndex(int index)
{
    QTreeWidgetItem *item = node(index);
    if (!item) {
        clearSelection();
        return;
    }
    setCurrentItem(item);
    item->setSelected(true);
}

QList<int> NodeTree::childIndexes(int index) const
{
    QList<int> children;
    if (const QTreeWidgetItem *item = node(index)) {
        children.reserve(item->childCount());
        for (int i = 0; i < item->childCount(); ++i)
            children.append(item->child(i)->data(0, IndexRole).toInt());
    }
    return children;
}

void NodeTree::onItemChanged(QTreeWidgetItem *item, int column)
{
    if (m_programChange > 0 || column != 0)
        return;
    const int index = item->data(0, IndexRole).toInt();
    // A tick in a box also marks its node, whether it is set or taken away.
    setSelectedIndex(index);
    emit nodeCheck(index);
}
