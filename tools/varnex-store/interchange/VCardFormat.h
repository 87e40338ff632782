#pragma once
// Contacts as vCard 3.0 (RFC 2426) and 4.0 (RFC 6350), written by hand:
// import reads 2.1, 3.0 and 4.0 cards, from one file with many cards or a
// folder of .vcf files; export writes one file or one file per contact.

#include "ContentLine.h"
#include "ItemFields.h"
#include "VCardFields.h"

#include <QSet>

void ImportVCard(const QString &path, const MAPIFolder &target, InterchangeReport &report);
void ExportVCard3(const MAPIFolder &source, const QString &path, InterchangeReport &report);
void ExportVCard4(const MAPIFolder &source, const QString &path, InterchangeReport &report);

// The cards of a text (one or many, any version) into the contact folder,
// as the file import reads them: a card whose UID a contact of the folder
// carries updates it (unless report.updateByUid is off), every other card
// is a new contact; a card that does not say how the contact is filed gets
// the "Speichern unter" of a new contact (DefaultFileAs); skips and notes
// name sourceName. index keeps the UIDs
// of the folder across calls (null: one for this call only). Throws
// StoreError when the folder is no contact folder or the store fails.
void ImportVCardData(const QByteArray &data, const QString &sourceName, const MAPIFolder &target,
                     InterchangeReport &report, UidIndex *index = nullptr);
// One contact as the text of one card.
[[nodiscard]] QByteArray VCardText(const Item &contact, VCardVersion version);

// One contact as a card, appended to out.
void WriteVCard(const Item &contact, VCardVersion version, ContentWriter &out);

// What reading one card leaves to tell: fields that found no free place,
// values that are no date, properties the store has no field for.
struct CardNotes {
    QStringList lost;         // "TEL 0171 1234567 (kein freies Telefonfeld)"
    QSet<QString> unknown;    // vCard property names passed over
    bool fileAsGiven = false; // the card says how the contact is filed (X-VX-FILEAS, X-EVOLUTION-FILE-AS)
};
// The contact of a card's lines: `existing` emptied and filled anew when it
// is given (ClearForUpdate; an update), else a new, unsaved contact in the
// folder. Throws EntryDamage for a card that holds no contact (no name of
// any kind).
[[nodiscard]] Item ContactOfCard(const QList<ContentLine> &lines, const MAPIFolder &folder, CardNotes &notes,
                                 Item existing = {});
// The UID of a card's lines, unescaped; "" when it has none.
[[nodiscard]] QString CardUid(const QList<ContentLine> &lines);

// Categories as the store keeps them: joined by ", ".
[[nodiscard]] QString JoinCategories(const QStringList &categories);
