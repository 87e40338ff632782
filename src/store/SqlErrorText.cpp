#include "store/SqlErrorText_p.h"

#include "frame/GlobalFunctions.h"

#include <QSqlError>

int SqlPrimaryCode(const QSqlError &error)
{
    return error.nativeErrorCode().toInt() & 0xFF;
}

QString SqlErrorText(const QSqlError &error, const QString &context)
{
    WriteErrorLog(QStringLiteral("%1: %2").arg(context, error.text()), error.nativeErrorCode());
    switch (SqlPrimaryCode(error)) {
    case 3:  // SQLITE_PERM
    case 8:  // SQLITE_READONLY
    case 23: // SQLITE_AUTH
        return QStringLiteral("keine Schreibberechtigung");
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return QStringLiteral("die Datei wird von einem anderen Programm benutzt");
    case 7: // SQLITE_NOMEM
        return QStringLiteral("der Arbeitsspeicher reicht nicht aus");
    case 10: // SQLITE_IOERR
        return QStringLiteral("der Datenträger meldet einen Lese- oder Schreibfehler");
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        return QStringLiteral("die Datei ist beschädigt oder keine Datenbank");
    case 13: // SQLITE_FULL
        return QStringLiteral("der Datenträger ist voll");
    case 14: // SQLITE_CANTOPEN
        return QStringLiteral("die Datei kann nicht geöffnet werden");
    default:
        return QStringLiteral("Fehler %1 der Datenbank, Einzelheiten im Fehlerprotokoll")
            .arg(error.nativeErrorCode().isEmpty() ? QStringLiteral("?") : error.nativeErrorCode());
    }
}
