#include "itemtools/MClassChangeFunctions.h"

namespace {

struct BaseClassEntry {
    int itemClass;
    const char *baseClass;
};

// Class number of the item and the message class that its standard form has.
constexpr BaseClassEntry kBaseClasses[] = {
    {26, "IPM.Appointment"}, {40, "IPM.Contact"}, {48, "IPM.Task"},    {43, "IPM.Note"},
    {45, "IPM.Post"},        {69, "IPM.Distlist"}, {42, "IPM.Activity"},
};

} // namespace

QString BaseClassFor(int itemClass, const QString &messageClass)
{
    for (const BaseClassEntry &entry : kBaseClasses) {
        if (entry.itemClass != itemClass)
            continue;
        const QString base = QString::fromLatin1(entry.baseClass);
        return messageClass.startsWith(base, Qt::CaseSensitive) ? base : QString();
    }
    return QString();
}

QString NewMessageClass(const QString &baseClass, const QString &name)
{
    const QString shortName = name.trimmed();
    return shortName.isEmpty() ? baseClass : baseClass + u'.' + shortName;
}
