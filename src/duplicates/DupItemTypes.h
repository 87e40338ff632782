#pragma once
// The six kinds of items that the duplicate search handles, as data: which
// folders a search takes, which item classes it accepts, which fields it
// compares and how it stores them, what the result tree shows for an item,
// and under which name and number it reports failures. The analyser frame
// (DupsDel.h) is the same for all six; everything in which they differ is
// here.

#include <QString>
#include <QStringList>

#include <span>

// How a compared field is kept in the item table. Equality is exact on what
// is kept, character for character.
enum class DupFieldForm {
    AsRead,     // the value's text form, unchanged
    Normalised, // lower case, then blanks (U+0020) removed at both ends
};

// Where the value of a compared field comes from.
enum class DupFieldSource {
    Property,        // the item property named by member
    AttachmentCount, // the number of attachments, compared as a number
    UserProperty,    // the user property named by the setting KontakteFieldNameStr
};

struct DupField {
    const char *settingKey; // the switch: the column exists only when it is on
    const char *member;     // the property read (Property source)
    DupFieldForm form = DupFieldForm::AsRead;
    DupFieldSource source = DupFieldSource::Property;
    int onlyClass = 0; // read only from items of this Class (0: from all)
};

struct DupItemType {
    const char *analyser;   // RemoveDuplicatesContact ...
    const char *folderKind; // given to CollectFolders: the folders' class
    int classes[2];         // Class numbers accepted (0: unused slot)
    const char *logName;    // name of the error log entry of a run
    int errorId;            // ShowError number of the analyser
    // The caption of an item in the result tree begins with these members'
    // text forms, joined by ", ".
    const char *captionMembers[2];
    std::span<const DupField> fields; // in reading order
    // Task, Mail, Contact and Appointment read their switches with default
    // "1" and convert the text (a value that is no Boolean is an error);
    // Journal and Note take GetBoolSetting with default true.
    bool switchesAsText;
    bool readsSeries;        // IsRecurring, when TerminSerie is on
    bool logsForeignItems;   // an item of another class gets a log line
    bool callsClear;         // Clear() at the end and after an error
    bool errorBoxBeforeReset; // the error box comes before the status reset
};

enum class DupKind { Task, Email, Contact, Appointment, Journal, Note };

[[nodiscard]] const DupItemType &DupTypeOf(DupKind kind);

// The kind that RemoveDuplicates picks for a folder's DefaultMessageClass,
// compared exactly; nullptr for a class without a duplicate search.
[[nodiscard]] const DupItemType *DupTypeForFolderClass(const QString &messageClass);

[[nodiscard]] bool DupAcceptsClass(const DupItemType &type, int itemClass);

// The field switches of a search, read once before the folders are collected.
struct DupSwitches {
    QList<const DupField *> fields; // the switched-on fields, in reading order
    bool folderInside = false;      // compare only items of the same folder
    bool series = false;            // read IsRecurring (Task, Appointment)
    QString userPropertyName;       // KontakteFieldNameStr
};

// Reads the switches of the type. Throws DupError when a switch read as
// text is no Boolean.
[[nodiscard]] DupSwitches ReadDupSwitches(const DupItemType &type);

// Lower case, then blanks removed at both ends (other white space stays).
[[nodiscard]] QString NormaliseDupText(const QString &text);

// The stored form of a field value read as text.
[[nodiscard]] QString StoreDupValue(const DupField &field, const QString &text);

// The caption of an item: the beginning (from captionMembers), then
// " (", folder name, ", ", the creation time as text, ")".
[[nodiscard]] QString DupItemCaption(const QString &beginning, const QString &folderName,
                                     const QString &createdText);
