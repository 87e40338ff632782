#include "duplicates/DupError.h"

#include "frame/RegistryFunctions.h"

bool DupSettingAsBoolean(const QString &text)
{
    const QString trimmed = text.trimmed();
    for (const char *word : {"true", "wahr"}) {
        if (trimmed.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return true;
    }
    for (const char *word : {"false", "falsch"}) {
        if (trimmed.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return false;
    }
    bool isNumber = false;
    const double value = trimmed.toDouble(&isNumber);
    if (isNumber)
        return value != 0.0;
    throw DupError{DupErrors::TypeMismatch, QStringLiteral("Typen unverträglich")};
}

bool DupBoolSetting(const QString &name, const QString &defaultValue)
{
    return DupSettingAsBoolean(GetSetting(name, defaultValue));
}
