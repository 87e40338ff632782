#include "store/StoreRoutines.h"

#include "frame/GlobalFunctions.h"
#include "store/Application.h"
#include "store/Item.h"
#include "store/MAPIUtils.h"
#include "store/StoreConstants.h"
#include "store/StoreError.h"

UserProperty GetUserProperty(const Item &item, const QString &name)
{
    try {
        UserProperties properties = item.UserProperties();
        UserProperty property = properties.Find(name);
        if (property.isNull())
            property = properties.Add(name, olText);
        return property;
    } catch (const StoreError &e) {
        ShowError(e.description(), e.number(), 206);
    }
    return {};
}

void Clear()
{
    try {
        if (Application().Version().left(2) == QLatin1String("10"))
            MAPIUtils::Cleanup();
    } catch (const StoreError &e) {
        ShowError(e.description(), e.number(), 1, QStringLiteral("Clear"));
    }
}
