#pragma once
// A run's whole surrounding for tests of batch runs: an isolated program
// folder and settings (with the reference database when asked for), a real
// temporary profile, the folder tree read from it, a run host that records
// every status text and a recorder of every message box. Folders are ticked
// by their path below the default store ("Posteingang", "Kontakte/Kunden")
// or with the store in front ("Archiv/Kontakte").

#include "controls/NodeTree.h"
#include "controls/Pictures.h"
#include "folders/FolderFixture.h"
#include "folders/FolderState.h"
#include "folders/FolderStructureFunctions.h"
#include "frame/RunHost.h"
#include "support/RecordingRunHost.h"
#include "support/TestSupport.h"

#include <QStringList>
#include <QVariant>

// Property values of a test item, in the order they are set.
using Values = QList<QPair<QString, QVariant>>;

class SelectionFixture
{
public:
    explicit SelectionFixture(bool withReferenceDb = false)
        : environment(withReferenceDb)
    {
        SetRunHost(&host);
    }
    ~SelectionFixture()
    {
        SetFolderTree(nullptr);
        SetRunHost(nullptr);
    }
    SelectionFixture(const SelectionFixture &) = delete;
    SelectionFixture &operator=(const SelectionFixture &) = delete;

    static QString storeName() { return QStringLiteral("Persönliche Ordner"); }

    static QString fullPath(const QString &path)
    {
        return path.startsWith(QStringLiteral("Archiv")) ? path : storeName() + u'/' + path;
    }

    // The folder of the path; the tree is not involved.
    static MAPIFolder folder(const QString &path) { return FolderProfile::folder(fullPath(path)); }

    // A saved item of the class in the folder, with the properties given.
    static Item addItem(const MAPIFolder &folder, int itemClass, const Values &values)
    {
        Item item = folder.Items().Add(itemClass);
        for (const auto &[name, value] : values)
            item.set(name, value);
        item.Save();
        return item;
    }

    // The item as the file holds it: a fetch by ID in a new session, so that
    // changes that were never saved do not show.
    Item reread(const Item &item) const
    {
        SetProfileFolder(profile.path());
        return Application().GetNamespace().GetItemFromID(item.EntryID(), item.StoreID());
    }

    // Reads the tree; call after the folders have been made.
    void readTree()
    {
        tree.setImageList(FolderImageList());
        SetFolderTree(&tree);
        tvwFolderFill();
    }

    // Ticks the folders and marks the first of them. Returns false when a
    // path is not in the tree.
    [[nodiscard]] bool select(const QStringList &paths)
    {
        for (const QString &path : paths) {
            const int node = nodeOfPath(tree, fullPath(path));
            if (node <= 0)
                return false;
            tree.setChecked(node, true);
        }
        if (!paths.isEmpty())
            tree.setSelectedIndex(nodeOfPath(tree, fullPath(paths.first())));
        return true;
    }

    TestEnvironment environment;
    FolderProfile profile;
    NodeTree tree;
    RecordingRunHost host;
    MessageRecorder boxes;
};
