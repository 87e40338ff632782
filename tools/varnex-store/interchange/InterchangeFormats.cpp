// The formats of varnex-store import and export. One row per format; each
// format's functions are declared in its own header (see Interchange.h for
// the contract). Keep the groups apart, so that additions do not meet.
#include "Interchange.h"

// Contacts and calendars
#include "IcalFormat.h"
#include "VCardFormat.h"

// Mail
#include "MailFormat.h"
#include "PstFormat.h"

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
        {QStringLiteral("eml"), {}, QStringLiteral("Mails und Bereitstellungen, eine .eml-Datei je Nachricht (Ordner)"),
         olFolderInbox, ImportEml, ExportEml},
        {QStringLiteral("mbox"), {QStringLiteral("mbx")}, QStringLiteral("Mails und Bereitstellungen in einer mbox-Datei"),
         olFolderInbox, ImportMbox, ExportMbox},
        {QStringLiteral("pst"), {QStringLiteral("ost")},
         QStringLiteral("Outlook-Datendatei: Ordnerbaum mit Mails, Kontakten, Terminen ..."), olFolderInbox,
         ImportPst, nullptr},
    };
    return formats;
}
