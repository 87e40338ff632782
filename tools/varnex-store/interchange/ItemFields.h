#pragma once
// What every format shares: the run report, the extension form of store
// properties and user properties that a format has no place for, the
// composite name and address fields, and the folder named on the command
// line.

#include "store/Store.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

// User properties that keep what a format holds and the store has no field
// for: the identity of an item in other programs, the rule of a series and,
// on an exception of a series, the occurrence it replaces.
inline constexpr char UidProperty[] = "VX UID";
inline constexpr char SeriesProperty[] = "VX Serie";
inline constexpr char OccurrenceProperty[] = "VX Ausnahme";

// Counts and problems of one import or export run. Formats count through
// the methods, so that the command line can show progress.
struct InterchangeReport {
    int read = 0;     // entries found in the input
    int imported = 0; // items saved in the store
    int exported = 0; // items written out
    QStringList skipped; // "kontakte.vcf, Zeile 12: Grund"
    QStringList notes;   // what the user should know that is no skip
    // Called after each counted item; may be empty.
    std::function<void(const InterchangeReport &)> progress;

    void countRead() { ++read; }
    void countImported();
    void countExported();
    void skip(const QString &where, const QString &why);
    void note(const QString &text) { notes << text; }
    // The German report of the run: counts, then every skip and note.
    [[nodiscard]] QString summary(bool isImport) const;
};

// Position of an entry in the input, for the report: "kontakte.vcf, Zeile 12"
// (the file name only; line 0 leaves the line out).
[[nodiscard]] QString EntryPosition(const QString &filePath, int line = 0);

// Thrown by a format while it builds an item from a damaged entry; the entry
// is skipped with the reason, the item never saved.
struct EntryDamage {
    QString reason;
};

// Reads one entry into a new item and saves it once: counts it read, calls
// build (which returns the filled, unsaved item), saves, counts it
// imported. EntryDamage and StoreError (a value the store refuses, a failed
// Save) skip the entry with its position; a failed first Save leaves nothing
// in the store.
void ImportEntry(InterchangeReport &report, const QString &where, const std::function<Item()> &build);

// The text of a property value in an extension field, and back. Dates are
// written as yyyyMMddTHHmmss (local time), booleans as TRUE/FALSE. Decoding
// throws StoreError for text that does not fit the property.
[[nodiscard]] QString EncodeExtensionValue(const PropDef &def, const QVariant &value);
[[nodiscard]] QVariant DecodeExtensionValue(const PropDef &def, const QString &text);

struct ExtensionField {
    QString name; // canonical property name
    QString text; // EncodeExtensionValue
};
// The properties of the item that hold a value and are not in `mapped`
// (names in lower case): what a format writes as extension fields.
// CreationTime is among them; other read-only properties and MessageClass
// are not.
[[nodiscard]] QList<ExtensionField> LeftoverFields(const Item &item, const QSet<QString> &mapped);
// Sets a property from its extension field. False when the item's class
// has no property of that name (a field from a newer version or another
// item kind): it is passed over.
bool ApplyExtensionField(Item &item, const QString &name, const QString &text);

// A user property as one text: escaped name ; type ; escaped value.
[[nodiscard]] QString EncodeUserProperty(const UserProperty &property);
// Adds (or overwrites) the user property of an encoded text; false when the
// text is not of that form.
bool ApplyUserProperty(Item &item, const QString &encoded);
// The item's user properties except those named in `except` (lower case).
[[nodiscard]] QList<UserProperty> UserPropertiesOf(const Item &item, const QSet<QString> &except = {});
// A user property's text, "" when the item has none.
[[nodiscard]] QString UserText(const Item &item, const QString &name);
void SetUserText(Item &item, const QString &name, const QString &value);

// Name and address parts of a contact, written so that the item ends up as
// the original: the parts alone when the whole is their composition, else
// the whole as written as well (which the store splits into the same parts).
void SetNameFields(Item &contact, const NameParts &parts, const QString &fullName);
void SetAddressFields(Item &contact, const QString &prefix, const AddressParts &parts, const QString &whole);
[[nodiscard]] NameParts NameFieldsOf(const Item &contact);
[[nodiscard]] AddressParts AddressFieldsOf(const Item &contact, const QString &prefix);

// The folder of a path like "Persönliche Ordner/Kontakte/Kunden" or
// "Kontakte/Kunden" (then in the default store). Missing folders are
// created of the kind of defaultFolderType when `create` is set; else a
// missing folder throws StoreError. An empty path gives the default folder.
MAPIFolder ResolveStoreFolder(const QString &path, int defaultFolderType, bool create);
