#pragma once
// The contact telephone run ("Tel.-Nr. vereinheitlichen"): every number
// field of the contacts in the ticked contact folders goes through the
// number normaliser. Before a field changes, its old value goes to its
// backup property (restore/BackupFunctions.h); a contact is saved once after
// its last field, and only when something changed. With HideFax the fax
// numbers get the prefix "Fax: ", which hides them from the address book;
// with the filter settings FilterTel and CountryFilter the run keeps to the
// contacts whose address names the country of CountryFilterText.

#include <QList>
#include <QString>
#include <QStringList>

class Item;
class MAPIFolder;

// The three fax fields (fax rule), then the sixteen telephone fields (plain
// rule), in the order in which the run handles them.
[[nodiscard]] const QStringList &FaxNumberFields();
[[nodiscard]] const QStringList &PlainNumberFields();

struct TelRunOptions {
    bool hideFax = false;
    // Country name for Items.Restrict; empty: no restriction.
    QString countryRestriction;
};

// The restriction filter on the three address countries, the name quoted
// for the filter (a quote inside is doubled).
[[nodiscard]] QString CountryRestrictionFilter(const QString &country);

// Brings the 19 number fields of one contact into normal form, writing a
// backup before each change. Returns whether any field changed; the contact
// is not saved here. Throws StoreError.
bool NormaliseContactNumbers(Item &contact, bool hideFax);

// The run over the given folders, with the running state, the status line,
// the progress bar and the closing message; a store failure ends it with
// error 802 (what was saved stays saved). Returns the number of contacts
// changed, or -1 after a failure.
int RunContactTelNrOn(const QList<MAPIFolder> &folders, bool hideFax);

// The command: reads HideFax, collects the ticked contact folders and runs.
void RunContactTelNr();
