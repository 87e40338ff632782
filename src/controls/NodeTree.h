#pragma once
// A tree view with check boxes, keyed nodes and an image list: the stand-in
// for the tree view control of the folder tree and of the duplicate results.
//
// Nodes keep the order in which they were added (index 1 is the first). The
// marked node is the selected one; a tick set by the user also marks its node
// and is announced by nodeCheck, a tick set by the program is not.

#include "folders/FolderTreeNodes.h"

#include <QColor>
#include <QHash>
#include <QIcon>
#include <QTreeWidget>

class NodeTree : public QTreeWidget, public FolderTreeNodes
{
    Q_OBJECT
public:
    explicit NodeTree(QWidget *parent = nullptr);

    // The images that nodes may name; addNode refuses any other image key
    // (an empty image key adds a node without a picture).
    void setImageList(const QHash<QString, QIcon> &images) { m_images = images; }

    void clearNodes() override;
    bool addNode(const QString &parentKey, const QString &key, const QString &text,
                 const QString &imageKey) override;
    [[nodiscard]] int nodeCount() const override { return int(m_nodes.size()); }
    [[nodiscard]] QString nodeKey(int index) const override;
    [[nodiscard]] int nodeIndex(const QString &key) const override { return m_index.value(key); }
    [[nodiscard]] bool isChecked(int index) const override;
    void setChecked(int index, bool checked) override;
    [[nodiscard]] bool isExpanded(int index) const override;
    void setExpanded(int index, bool expanded) override;
    [[nodiscard]] int selectedIndex() const override;
    void setSelectedIndex(int index) override;
    [[nodiscard]] QList<int> childIndexes(int index) const override;

    [[nodiscard]] QTreeWidgetItem *node(int index) const;
    [[nodiscard]] QString nodeText(int index) const;
    [[nodiscard]] QString nodeImage(int index) const;
    // BackColor of a node, set by the program (no nodeCheck).
    [[nodiscard]] QColor backColor(int index) const;
    void setBackColor(int index, const QColor &colour);

signals:
    // The user ticked or unticked the node (its index); it is marked already.
    void nodeCheck(int index);

private:
    void onItemChanged(QTreeWidgetItem *item, int column);

    QHash<QString, QIcon> m_images;
    QList<QTreeWidgetItem *> m_nodes;   // by index - 1
    QHash<QString, int> m_index;        // key -> index
    int m_programChange = 0;            // > 0 while the program sets ticks
};
