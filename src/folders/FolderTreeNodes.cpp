#include "folders/FolderTreeNodes.h"

void UncheckAllNodes(FolderTreeNodes &tree)
{
    const int count = tree.nodeCount();
    for (int i = 1; i <= count; ++i) {
        tree.setChecked(i, false);
        tree.setExpanded(i, false);
    }
}

void CheckMarkedBranch(FolderTreeNodes &tree)
{
    const int marked = tree.selectedIndex();
    if (marked == 0)
        return;
    tree.setExpanded(marked, true);
    CheckBranch(tree, marked);
}

void CheckBranch(FolderTreeNodes &tree, int index)
{
    // A work list instead of recursion: a branch may be thousands of levels
    // deep in a damaged store.
    QList<int> pending{index};
    while (!pending.isEmpty()) {
        const int node = pending.takeLast();
        tree.setChecked(node, true);
        pending.append(tree.childIndexes(node));
    }
}
