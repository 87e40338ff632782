#include "replace/ReplaceRun.h"

#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "replace/ReplaceDates.h"
#include "replace/ReplaceFields.h"
#include "store/Application.h"
#include "store/ItemSchema.h"
#include "store/Items.h"
#include "store/StoreError.h"
#include "store/UserProperties.h"

namespace {

// Writes the new text of a field; a date field takes it by its type's rule
// and may be left as it is.
void WriteField(Item &item, const ReplaceField &field, ReplaceDateRule rule, const QString &value)
{
    if (!field.isDate) {
        item.set(field.propertyName(), value);
        return;
    }
    if (const std::optional<QDateTime> date = DateToWrite(rule, value))
        item.set(field.propertyName(), *date);
}

class ReplaceRunner
{
public:
    ReplaceRunner(ReplaceRunInputs &inputs, ReplaceUndoLists &lists, ReplaceRunOutcome &outcome)
        : m_inputs(inputs), m_lists(lists), m_outcome(outcome), m_type(ReplaceTypeForClass(lists.folderClass))
    {
    }

    void run(const QList<MAPIFolder> &folders)
    {
        if (!m_type)
            return;
        for (const MAPIFolder &folder : folders) {
            const QString storeID = folder.StoreID();
            const Items items = folder.Items();
            const int count = items.Count();
            for (int i = 1; i <= count; ++i) {
                Item item = items.Item(i);
                CurrentRunHost().processEvents();
                if (item.Class() == m_type->itemClass)
                    replaceInItem(item, storeID);
                if (m_inputs.stopRequested())
                    return;
            }
        }
    }

private:
    void replaceInItem(Item &item, const QString &storeID)
    {
        if (m_lists.useUserField)
            replaceUserField(item, storeID);
        bool changed = false;
        for (int k = 0; k < int(m_type->fields.size()); ++k) {
            if (!m_inputs.isFieldSelected(k))
                continue;
            const ReplaceField &field = m_type->fields[size_t(k)];
            const QString oldValue = item.text(field.propertyName());
            const QString newValue = ::newString(m_inputs.replaceOptions(), oldValue);
            if (newValue == oldValue)
                continue;
            WriteField(item, field, m_type->dateRule, newValue);
            m_lists.fields.append({oldValue, item.EntryID(), storeID, k});
            changed = true;
        }
        if (!changed)
            return;
        // A refused save costs this item only; its records stay, so that an
        // undo can still try to write the old values back.
        try {
            item.Save();
        } catch (const StoreError &) {
            ++m_outcome.failures;
        }
    }

    // An item without the property is passed over; a failing save of the
    // user field ends the run.
    void replaceUserField(Item &item, const QString &storeID)
    {
        UserProperty property = item.UserProperties().Find(m_lists.userFieldName);
        if (property.isNull())
            return;
        const QString oldValue = TextOfValue(property.Value());
        const QString newValue = ::newString(m_inputs.replaceOptions(), oldValue);
        if (newValue == oldValue)
            return;
        m_lists.user.append({oldValue, item.EntryID(), storeID});
        property.setValue(newValue);
        item.Save();
    }

    ReplaceRunInputs &m_inputs;
    ReplaceUndoLists &m_lists;
    ReplaceRunOutcome &m_outcome;
    const ReplaceItemType *m_type;
};

void ShowRunMessages(const ReplaceRunOutcome &outcome)
{
    ShowMessage(QString::number(outcome.changes) + QStringLiteral(" Ersetzungen wurden vorgenommen."),
                MsgInformation, QStringLiteral("Info!"));
    if (outcome.failures > 0)
        ShowMessage(QString::number(outcome.failures)
                        + QStringLiteral(" Ersetzungen schlugen fehl. Überprüfen Sie die Berechtigungen."),
                    MsgStop, QStringLiteral("Fehler!"));
}

// Fetches the item of a record anew, lets write change it and saves it.
// Returns false when any of that fails; nothing of another record is touched.
template <typename Write>
bool RestoreRecord(const NameSpace &session, const QString &entryID, const QString &storeID, Write write)
{
    try {
        Item item = session.GetItemFromID(entryID, storeID);
        CurrentRunHost().processEvents();
        if (!write(item))
            return false;
        item.Save();
        return true;
    } catch (const StoreError &error) {
        // Counted for the closing message; the cause (a gone item, damaged
        // data, a failed save) goes to the error log.
        ShowError(error.description(), error.number(), 1, QStringLiteral("UndoReplace"));
        return false;
    }
}

} // namespace

ReplaceRunOutcome RunReplace(const QList<MAPIFolder> &folders, ReplaceRunInputs &inputs, ReplaceUndoLists &lists)
{
    ReplaceRunOutcome outcome;
    try {
        // The lists grow as records come (amortised constant time): sizing
        // them up front for every selected field of every item would take
        // hundreds of megabytes for a large folder and all contact fields.
        lists.fields.clear();
        lists.user.clear();
        ReplaceRunner(inputs, lists, outcome).run(folders);
    } catch (const StoreError &error) {
        ShowError(error.description(), error.number(), 59, QString());
        inputs.workDone();
        outcome.broken = true;
        outcome.changes = lists.recordCount() - outcome.failures;
        return outcome;
    }
    inputs.workDone();
    outcome.changes = lists.recordCount() - outcome.failures;
    ShowRunMessages(outcome);
    return outcome;
}

ReplaceUndoOutcome UndoReplace(const ReplaceUndoLists &lists, const std::function<void()> &workDone)
{
    const auto done = [&workDone] {
        if (workDone)
            workDone();
    };
    ReplaceUndoOutcome outcome;
    NameSpace session;
    try {
        session = Application().GetNamespace(QStringLiteral("MAPI"));
    } catch (const StoreError &error) {
        ShowError(error.description(), error.number(), 60, QString());
        done();
        outcome.broken = true;
        return outcome;
    }

    for (const UserUndoRecord &record : lists.user) {
        const bool restored = RestoreRecord(session, record.entryID, record.storeID, [&](Item &item) {
            UserProperty property = item.UserProperties().Find(lists.userFieldName);
            if (property.isNull())
                return false;
            property.setValue(record.oldValue);
            return true;
        });
        outcome.failures += restored ? 0 : 1;
    }
    const ReplaceItemType *type = ReplaceTypeForClass(lists.folderClass);
    for (const FieldUndoRecord &record : lists.fields) {
        const bool restored = RestoreRecord(session, record.entryID, record.storeID, [&](Item &item) {
            const ReplaceField *field = type ? type->field(record.index) : nullptr;
            if (!field)
                return false;
            // The old text goes back as it was read, dates included.
            item.set(field->propertyName(), record.oldValue);
            return true;
        });
        outcome.failures += restored ? 0 : 1;
    }

    done();
    outcome.records = lists.recordCount();
    if (outcome.records > 0) {
        ShowMessage(QString::number(outcome.records) + QStringLiteral(" Ersetzungen rückgängig gemacht."),
                    MsgInformation, QStringLiteral("Info!"));
        if (outcome.failures > 0)
            ShowMessage(QString::number(outcome.failures) + QStringLiteral(" Elemente nicht gefunden."), MsgStop,
                        QStringLiteral("Fehler!"));
    }
    return outcome;
}
