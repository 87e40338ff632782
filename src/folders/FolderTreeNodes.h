#pragma once
// The folder tree TvwOrdner as the core sees it: nodes with a key, a text, an
// image key, a tick and an expanded state, kept in the order in which they were
// added (node index 1 is the first node added). The tree widget of the main
// window implements this; the folder reader fills it and the folder selection
// reads it, so both stay free of widgets.

#include <QList>
#include <QString>

class FolderTreeNodes
{
public:
    virtual ~FolderTreeNodes() = default;

    // Removes every node; nothing is marked afterwards.
    virtual void clearNodes() = 0;
    // Adds a node under the node with parentKey, or at the top level when
    // parentKey is empty. Returns false, and adds nothing, when the key is
    // taken, the parent is unknown or the image list lacks imageKey.
    virtual bool addNode(const QString &parentKey, const QString &key, const QString &text,
                         const QString &imageKey) = 0;

    // Number of nodes; node indexes run from 1 to nodeCount() in adding order.
    [[nodiscard]] virtual int nodeCount() const = 0;
    [[nodiscard]] virtual QString nodeKey(int index) const = 0;
    // Index of the node with this key, 0 when there is none.
    [[nodiscard]] virtual int nodeIndex(const QString &key) const = 0;

    [[nodiscard]] virtual bool isChecked(int index) const = 0;
    virtual void setChecked(int index, bool checked) = 0;
    [[nodiscard]] virtual bool isExpanded(int index) const = 0;
    virtual void setExpanded(int index, bool expanded) = 0;

    // The marked node: its index, 0 when no node is marked.
    [[nodiscard]] virtual int selectedIndex() const = 0;
    virtual void setSelectedIndex(int index) = 0;

    // The children of a node in their order, as node indexes.
    [[nodiscard]] virtual QList<int> childIndexes(int index) const = 0;
};

// cmdAlleRück: every node loses its tick and is collapsed; the marked node
// stays marked.
void UncheckAllNodes(FolderTreeNodes &tree);

// cmdZweigMark: expands the marked node and ticks it with all its descendants
// to any depth; deeper nodes keep their expanded state. Nothing happens when
// no node is marked.
void CheckMarkedBranch(FolderTreeNodes &tree);

// Ticks the node and all its descendants.
void CheckBranch(FolderTreeNodes &tree, int index);
