// The formats of varnex-store import and export. One row per format; each
// format's functions are declared in its own header (see Interchange.h for
// the contract). Keep the groups apart, so that additions do not meet.
#include "Interchange.h"

// Contacts and calendars

// Mail

const QList<InterchangeFormat> &InterchangeFormats()
{
    static const QList<InterchangeFormat> formats = {
        // Contacts and calendars


        // Mail

    };
    return formats;
}
