#pragma once
// The field catalogue of find and replace: for every item type the ordered
// list of captions and the store property each caption stands for.
//
// A field is known by its index in its type's list: the dialog shows the
// captions in index order, and the undo records keep the index, so the order
// of a list is part of its meaning and must never change.

#include <QString>
#include <span>

// How a date field takes a new text (see ReplaceDates.h).
enum class ReplaceDateRule {
    EmptyMeansNoDate,   // contacts and tasks: "" writes the no-date value
    EmptyWritesNothing, // appointments: Start and End always need a date
};

struct ReplaceField {
    const char *caption;  // UTF-8, letter for letter as the list shows it
    const char *property; // store property, looked up without regard to case
    bool isDate = false;

    [[nodiscard]] QString captionText() const { return QString::fromUtf8(caption); }
    [[nodiscard]] QString propertyName() const { return QString::fromLatin1(property); }
};

struct ReplaceItemType {
    const char *folderClass; // the folder's DefaultMessageClass
    int itemClass;           // item Class that the run touches; others are passed over
    ReplaceDateRule dateRule;
    std::span<const ReplaceField> fields;

    // The field of a list index, or nullptr outside the list.
    [[nodiscard]] const ReplaceField *field(int index) const;
};

// The type whose folder class is exactly folderClass (case-sensitive, whole
// string), or nullptr: a class such as "IPM.Contact.Custom" has no list.
[[nodiscard]] const ReplaceItemType *ReplaceTypeForClass(const QString &folderClass);

// All seven types, in the order Appointment, Task, Note, Post, Activity,
// StickyNote, Contact.
[[nodiscard]] std::span<const ReplaceItemType> ReplaceItemTypes();
