#include "restore/BackupFunctions.h"

#include "store/Item.h"
#include "store/StoreError.h"
#include "store/StoreRoutines.h"

QString BackupPropertyName(const QString &field)
{
    return QStringLiteral("VX Backup ") + field;
}

void WriteBackup(Item &item, const QString &field, const QString &oldValue)
{
    UserProperty property = GetUserProperty(item, BackupPropertyName(field));
    if (property.isNull())
        throw StoreError(StoreErrNoObject, QStringLiteral("Die Sicherung des Feldes %1 kann nicht angelegt werden.")
                                              .arg(field));
    property.setValue(oldValue);
}
