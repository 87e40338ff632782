#pragma once
// Helpers of the find and replace tests: a temporary profile with items in
// its default folders, and inputs that stand in for the dialog.

#include "replace/ReplaceFields.h"
#include "replace/ReplaceRun.h"
#include "store/StoreTestProfile.h"
#include "support/TestSupport.h"

#include <QSet>
#include <functional>

using Values = QList<QPair<QString, QVariant>>;

// An isolated program folder and a fresh profile in a temporary folder,
// current for the life of the object, and the message boxes recorded.
class ReplaceTestStore
{
public:
    [[nodiscard]] static MAPIFolder folder(int defaultFolderType) { return TempProfile::folderOf(defaultFolderType); }

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
    [[nodiscard]] Item reread(const Item &item) const
    {
        m_profile.reopen();
        return TempProfile::ns().GetItemFromID(item.EntryID(), item.StoreID());
    }

    [[nodiscard]] const TempProfile &profile() const { return m_profile; }

    TestEnvironment env;

private:
    TempProfile m_profile;

public:
    MessageRecorder boxes;
};

// The dialog's part of a run: fixed options and selected rows. onLook runs at
// each look at the selection, so that a test can act during a run.
class FixedInputs : public ReplaceRunInputs
{
public:
    ReplaceOptions options;
    QSet<int> selected;
    bool stop = false;
    std::function<void()> onLook;

    [[nodiscard]] ReplaceOptions replaceOptions() const override { return options; }
    [[nodiscard]] bool isFieldSelected(int index) const override
    {
        if (onLook)
            onLook();
        return selected.contains(index);
    }
    [[nodiscard]] bool stopRequested() const override { return stop; }
};
