#pragma once
// The run of find and replace over the items of a list of folders, and its
// undo. The dialog frmReplace holds the inputs and the undo lists; this module
// does the work, shows the closing messages and reports failures as errors
// 59 (run) and 60 (undo).
//
// The undo data exist only here, in memory: nothing is written to the items
// (no backup properties), to the settings or to a file.

#include "replace/ReplaceText.h"

#include <QList>
#include <QString>

#include <functional>

class MAPIFolder;

// One changed field of an item: the value before the change, where to find
// the item again, and the field's index in the list of its type.
struct FieldUndoRecord {
    QString oldValue;
    QString entryID;
    QString storeID;
    int index = 0;
};

// One item whose user-defined field changed.
struct UserUndoRecord {
    QString oldValue;
    QString entryID;
    QString storeID;
};

// What the last run changed. A run empties the lists at its start, so they
// always describe the last run only.
struct ReplaceUndoLists {
    QList<FieldUndoRecord> fields; // FieldUndoOld, -EntryID, -StoreID, -Index
    QList<UserUndoRecord> user;    // UserUndoOld, -EntryID, -StoreID
    QString folderClass;           // selects the list that gives an index its meaning
    bool useUserField = false;
    QString userFieldName;

    [[nodiscard]] int recordCount() const { return int(fields.size() + user.size()); }
};

// What the run reads from the dialog while it works: the texts and options
// for every field value, and the selection of lstFields anew for each item.
class ReplaceRunInputs
{
public:
    virtual ~ReplaceRunInputs() = default;
    [[nodiscard]] virtual ReplaceOptions replaceOptions() const = 0;
    [[nodiscard]] virtual bool isFieldSelected(int index) const = 0;
    // True when the user asked to stop; the run ends after the current item.
    [[nodiscard]] virtual bool stopRequested() const { return false; }
    // Called once the items are done, before the closing messages (or after
    // error 59 was shown): the dialog stops its activity bar here.
    virtual void workDone() {}
};

struct ReplaceRunOutcome {
    int changes = 0;  // records made, less the items whose save failed
    int failures = 0; // items whose save failed
    // True when a failure ended the run through error 59; the records made
    // until then stay in the lists.
    bool broken = false;
};

// Goes over every item of the folders, by position, and changes the selected
// fields of the items of the folder class's type (and the user field when
// lists.useUserField is set). Empties the lists first and fills them. Lets
// the event loop run once per item. The user field is asked for by the name
// as given, also an empty one: an item without a property of that name
// (ignoring case) is passed over without a word. Ends with "n Ersetzungen wurden
// vorgenommen." and, after failed saves, "n Ersetzungen schlugen fehl.
// Überprüfen Sie die Berechtigungen."; any other failure shows error 59
// instead and sets broken.
ReplaceRunOutcome RunReplace(const QList<MAPIFolder> &folders, ReplaceRunInputs &inputs, ReplaceUndoLists &lists);

struct ReplaceUndoOutcome {
    int records = 0;  // all records, also those that failed
    int failures = 0; // records whose item was gone or could not be written
    bool broken = false; // error 60: the store could not be opened
};

// Writes the old values of the lists back: user-field records first, then
// field records, each a fetch by ID, a write and a save of its own. A record
// that fails is counted and the next one goes on. Items are found by their
// EntryID and StoreID alone: one that has been moved to another store since
// the run (and so has a new EntryID) counts as not found, like a deleted
// one. Ends with "n Ersetzungen rückgängig gemacht." and "n Elemente nicht
// gefunden." when records failed; nothing is shown for empty lists. The
// lists stay as they are. workDone, when given, is called once the records
// are done, before the messages (or after error 60 was shown).
ReplaceUndoOutcome UndoReplace(const ReplaceUndoLists &lists, const std::function<void()> &workDone = {});
