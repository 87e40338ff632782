#pragma once
// School holidays: the holidays of one German state or Swiss canton enter
// calendar folders as all-day appointments of the category "Schulferien".

#include <QList>
#include <QString>

class MAPIFolder;

// The subject of a holiday appointment: the period's name and, in brackets,
// the state code ("Sommerferien (BY)").
[[nodiscard]] QString HolidaySubject(const QString &description, const QString &state);

// Inserts every period of the state's first row in T_Holidays into each
// folder. When a folder already holds the first period of that state (same
// subject), asks whether to add the holidays once more; No skips that folder
// and suppresses the closing message "Schulferien hinzugefügt.". A state that
// the table lacks gives "Bitte wählen Sie zuerst ein Bundesland.". Any other
// failure ends the insertion as error 1301; what was saved stays.
void InsertHolidays(const QString &state, const QString &country, const QList<MAPIFolder> &folders);
