#pragma once
// What every format shares: the run report, the extension form of store
// properties and user properties that a format has no place for, the
// composite name and address fields, and the folder named on the command
// line.

#include "store/Store.h"
#include "store/StoreBatch.h"

#include <QHash>
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
    int updated = 0;  // items of the target that an entry with their UID updated
    QStringList skipped; // "kontakte.vcf, Zeile 12: Grund"
    QStringList notes;   // what the user should know that is no skip
    // An entry whose UID (or the EntryID that an export wrote as UID) an
    // item of its target folder already carries updates that item; false
    // makes every entry a new item.
    bool updateByUid = true;
    // Called after each counted item; may be empty.
    std::function<void(const InterchangeReport &)> progress;
    // Called with each item an import saved (new or updated); may be empty.
    std::function<void(const Item &item, bool updated)> saved;

    void countRead() { ++read; }
    void countImported();
    void countUpdated();
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

// Reads one entry into an item and saves it once: counts it read, calls
// build (which returns the filled item: a new one, or one of the store that
// the entry updates), saves, counts it imported or updated and returns it.
// EntryDamage and StoreError (a value the store refuses, a failed Save)
// skip the entry with its position and return a null item; a failed Save
// leaves the store as it was. A store that cannot be written (StoreErrDisk:
// a full disk ...) or is damaged (StoreErrCorrupt) is thrown on: the import
// stops there.
Item ImportEntry(InterchangeReport &report, const QString &where, const std::function<Item()> &build);

// The identity of an entry: its UID and, for a changed occurrence of a
// series, the RECURRENCE-ID it replaces (as kept in "VX Ausnahme").
[[nodiscard]] QString UidKey(const QString &uid, const QString &occurrence = {});

// The items of folders by the identity that entries of files give them:
// the UID kept in "VX UID", and the EntryID (which an export writes as the
// UID of an item that has none). A folder is read at its first find; add()
// takes in what the run saves, so that a second entry with the same UID
// updates the first. Keep one index for a run over many entries.
class UidIndex
{
public:
    // The item of the folder that carries the key; a null item when none.
    [[nodiscard]] Item find(const MAPIFolder &folder, const QString &key);
    void add(const Item &saved);

private:
    QHash<QString, QHash<QString, QString>> m_folders; // folder EntryID -> key -> item EntryID
};

// The saves of an import in batches of one transaction each (StoreBatch):
// step() after each entry commits now and then, the end commits the rest.
// A killed import leaves whole items only. A failed commit takes the
// entries since the last one out of the counts, names them in the report
// and throws the StoreError on.
class ImportBatch
{
public:
    ImportBatch(const MAPIFolder &target, InterchangeReport &report);
    ~ImportBatch();
    ImportBatch(const ImportBatch &) = delete;
    ImportBatch &operator=(const ImportBatch &) = delete;
    void step();

private:
    void commit();
    StoreBatch m_batch;
    InterchangeReport &m_report;
    int m_pending = 0, m_imported = 0, m_updated = 0;
};

// Empties an item of the store before an entry fills it anew: every field
// that can be written (except the message class and the creation time) and
// the user properties that keep what the file held (UID, series,
// occurrence). The user's own user properties stay; the entry's overwrite
// those of the same name.
void ClearForUpdate(Item &item);

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
// The name parts win over the full name: a full name whose split gives
// other parts ("Mr. John Q. Public, Esq." beside N:Public;John;Quinlan;Mr.;
// Esq.) is not kept, FullName is then the composition of the parts; without
// parts the full name gives them.
void SetNameFields(Item &contact, const NameParts &parts, const QString &fullName);
// The "Speichern unter" a new contact gets: "Nachname, Vorname", else the
// company, else the full name.
[[nodiscard]] QString DefaultFileAs(const Item &contact);
void SetAddressFields(Item &contact, const QString &prefix, const AddressParts &parts, const QString &whole);
[[nodiscard]] NameParts NameFieldsOf(const Item &contact);
[[nodiscard]] AddressParts AddressFieldsOf(const Item &contact, const QString &prefix);

// The folder of a path like "Persönliche Ordner/Kontakte/Kunden" or
// "Kontakte/Kunden" (then in the default store). Missing folders are
// created of the kind of defaultFolderType when `create` is set; else a
// missing folder throws StoreError. An empty path gives the default folder.
MAPIFolder ResolveStoreFolder(const QString &path, int defaultFolderType, bool create);
