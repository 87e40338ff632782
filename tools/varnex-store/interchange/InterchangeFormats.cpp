// The formats of varnex-store import and export. One row per format; each
// format's functions are declared in its own header (see Interchange.h for
// the contract). Keep the groups apart, so that additions do not meet.
#include "Interchange.h"

// Contacts and calendars
#include "IcalFormat.h"
#include "VCardFormat.h"

// Mail

const QList<InterchangeFormat> &InterchangeFormats()
{
    static const QList<InterchangeFormat> formats = {
        // Contacts and calendars
        {QStringLiteral("vcard"), {QStringLiteral("vcf"), QStringLiteral("vcard3")},
         QStringLiteral("Kontakte als vCard 3.0 (liest auch 2.1 und 4.0)"), olFolderContacts, ImportVCard, ExportVCard3},
        {QStringLiteral("vcard4"), {}, QStringLiteral("Kontakte als vCard 4.0 (liest auch 2.1 und 3.0)"), olFolderContacts,
         ImportVCard, ExportVCard4},
        {QStringLiteral("ical"), {QStringLiteral("ics"), QStringLiteral("icalendar")},
         QStringLiteral("Termine, Aufgaben und Journal als iCalendar (Serien bleiben Serien)"), olFolderCalendar,
         ImportICalendar, ExportICalendar},


        // Mail

    };
    return formats;
}
