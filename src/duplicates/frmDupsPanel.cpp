// The buttons of the duplicate panel frmDups: the removal of the ticked
// items, the item view and closing.
#include "duplicates/frmDups.h"

#include "controls/NodeTree.h"
#include "duplicates/DupsDel.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "frame/frmHaupt.h"
#include "store/Application.h"
#include "store/Inspector.h"
#include "store/StoreError.h"

#include <QGroupBox>
#include <QPushButton>

namespace {

// The item number behind a node key ("K" and the number).
int itemNumberOf(const QString &key)
{
    return key.mid(1).toInt();
}

// The panel's buttons and tree, disabled while a removal runs.
void lockPanel(frmHaupt &window, bool locked)
{
    DupResult().removing = locked;
    for (QWidget *widget : {static_cast<QWidget *>(window.cmdDupDel()), static_cast<QWidget *>(window.cmdDupView()),
                            static_cast<QWidget *>(window.cmdDupsClose()),
                            static_cast<QWidget *>(window.tvwDups())})
        widget->setEnabled(!locked);
}

void closeRemoval(frmHaupt &window)
{
    RunHost &host = CurrentRunHost();
    host.setStatusText(QStringLiteral("Bereit"));
    host.setProgressValue(0);
    window.frmDups()->setVisible(false);
    SetRunning(false);
}

void removeTicked(frmHaupt &window)
{
    // Attach first: a store that cannot be opened ends the run before anything.
    (void)Application().GetNamespace();
    NodeTree &tree = *window.tvwDups();
    const bool move = GetBoolSetting(QStringLiteral("MoveToFolder"), true);
    EnableCommands(true);
    QList<int> ticked;
    for (int index = 1; index <= tree.nodeCount(); ++index) {
        if (tree.isChecked(index))
            ticked.append(itemNumberOf(tree.nodeKey(index)));
    }
    CurrentRunHost().setProgressValue(0);
    if (!ticked.isEmpty())
        RemoveDupItems(ticked, move);
}

} // namespace

void RemoveMarkedItems()
{
    frmHaupt *window = MainWindow();
    if (!window || DupResult().removing)
        return;
    lockPanel(*window, true);
    try {
        removeTicked(*window);
    } catch (const StoreError &error) {
        lockPanel(*window, false);
        closeRemoval(*window);
        ShowError(error.description(), error.number(), 910);
        return;
    }
    lockPanel(*window, false);
    closeRemoval(*window);
}

void cmdDupViewClick()
{
    frmHaupt *window = MainWindow();
    if (!window || DupResult().removing)
        return;
    const NodeTree &tree = *window->tvwDups();
    if (tree.selectedIndex() == 0)
        return;
    const int n = itemNumberOf(tree.nodeKey(tree.selectedIndex()));
    try {
        const NameSpace ns = Application().GetNamespace();
        CurrentRunHost().processEvents();
        const Inspector inspector = ns.GetItemFromID(DupResult().entryIds.value(n), DupResult().storeIds.value(n))
                                        .GetInspector();
        CurrentRunHost().processEvents();
        inspector.Display();
    } catch (const StoreError &error) {
        // A node without an item behind it is passed over, as no node is.
        if (error.number() != StoreErrNoObject)
            ShowError(error.description(), error.number(), 1203);
    }
}

void cmdDupsCloseClick()
{
    frmHaupt *window = MainWindow();
    if (!window || DupResult().removing)
        return;
    window->frmDups()->setVisible(false);
    window->tvwDups()->clearNodes();
    ClearDupIds();
    CurrentRunHost().setStatusText(QStringLiteral("Bereit"));
}
