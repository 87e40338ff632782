#include "duplicates/DupError.h"

#include "frame/RegistryFunctions.h"
#include "frame/SettingValues.h"

bool DupSettingAsBoolean(const QString &text)
{
    if (const std::optional<bool> value = TextAsBoolean(text))
        return *value;
    throw DupError{DupErrors::TypeMismatch, QStringLiteral("Typen unverträglich")};
}

bool DupBoolSetting(const QString &name, const QString &defaultValue)
{
    return DupSettingAsBoolean(GetSetting(name, defaultValue));
}
