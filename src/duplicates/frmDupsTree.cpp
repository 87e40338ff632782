#include "duplicates/frmDups.h"

#include "controls/NodeTree.h"
#include "duplicates/DupsDel.h"
#include "frame/RegistryFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "frame/frmHaupt.h"

#include <QGroupBox>

namespace {

struct TreeError {
    int number;
    QString description;
};

QString nodeKey(int itemNumber)
{
    return u'K' + QString::number(itemNumber);
}

// Adds the node or throws what the tree control reports for a refused node.
int addNode(NodeTree &tree, const QString &parentKey, int itemNumber, const DupItemTable &table,
            const QString &imageKey)
{
    const QString key = nodeKey(itemNumber);
    if (tree.nodeIndex(key) != 0)
        throw TreeError{35602, QStringLiteral("Schlüssel ist nicht eindeutig in Auflistung")};
    if (!tree.addNode(parentKey, key, table.item(itemNumber).caption, imageKey))
        throw TreeError{35601, QStringLiteral("Element nicht gefunden")};
    const int index = tree.nodeCount();
    tree.setChecked(index, table.item(itemNumber).marked);
    return index;
}

void fillTree(NodeTree &tree, const DupPairs &pairs, const DupItemTable &table, const QString &imageKey)
{
    const QColor colours[2] = {QColor(255, 255, 255), QColor::fromRgb(kDupGroupColour)};
    std::vector<bool> rootMade(size_t(table.itemCount()) + 1, false);
    bool toggle = false;
    for (int k = 0; k < pairs.count(); ++k) {
        const int first = pairs.first[k];
        if (!rootMade[size_t(first)]) {
            const int root = addNode(tree, QString(), first, table, imageKey);
            tree.setExpanded(root, true);
            tree.setBackColor(root, colours[toggle]);
            toggle = !toggle;
            rootMade[size_t(first)] = true;
        }
        const int child = addNode(tree, nodeKey(first), pairs.second[k], table, imageKey);
        tree.setBackColor(child, tree.backColor(tree.nodeIndex(nodeKey(first))));
        if (tree.nodeCount() >= kDupTreeLimit) {
            ShowMessage(QStringLiteral("Es werden nur die ersten 32.767 Elemente angezeigt. Starten Sie nach der "
                                       "Bereinigung dieser Elemente einen weiteren Durchlauf um alle Duplikate zu "
                                       "entfernen."),
                        MsgExclamation, QStringLiteral("Hinweis!"));
            return;
        }
    }
}

} // namespace

void ShowDuplicateTree(const DupPairs &pairs, const DupItemTable &table, const QString &itemTypeName)
{
    frmHaupt *window = MainWindow();
    if (!window)
        return;
    RunHost &host = CurrentRunHost();
    if (pairs.count() < 1) {
        host.setStatusText(QStringLiteral("Bereit"));
        ShowMessage(QStringLiteral("Keine Duplikate gefunden."), MsgInformation, QStringLiteral("Info!"));
        window->frmDups()->setVisible(false);
    } else {
        host.setStatusText(QString::number(pairs.count()) + QStringLiteral(" Duplikate gefunden..."));
        window->frmDups()->setVisible(true);
    }
    NodeTree &tree = *window->tvwDups();
    tree.clearNodes();
    host.processEvents();
    try {
        // One repaint for the whole tree instead of one per node.
        tree.setUpdatesEnabled(false);
        fillTree(tree, pairs, table, itemTypeName);
        tree.setUpdatesEnabled(true);
    } catch (const TreeError &error) {
        tree.setUpdatesEnabled(true);
        ShowError(error.description, error.number, 902);
        return;
    }
    host.setProgressValue(0);
}

void ShowDuplicates(const DupSearchResult &result)
{
    if (GetBoolSetting(QStringLiteral("DupEntryIDSave"), false))
        WriteDuplicateIds(result);
    else
        ShowDuplicateTree(result.pairs, result.table, result.itemTypeName);
}
