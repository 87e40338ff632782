#include "frame/CommandRegistry.h"

#include <QHash>

namespace {

QHash<QString, CommandRoutine> &registry()
{
    static QHash<QString, CommandRoutine> commands;
    return commands;
}

} // namespace

void RegisterCommand(const QString &key, CommandRoutine routine)
{
    registry().insert(key, std::move(routine));
}

bool RunCommand(const QString &key)
{
    // A copy: the routine may register or replace commands while it runs.
    const CommandRoutine routine = registry().value(key);
    if (!routine)
        return false;
    routine();
    return true;
}

bool IsCommandRegistered(const QString &key)
{
    return bool(registry().value(key));
}

const QStringList &MainCommandKeys()
{
    static const QStringList keys{
        QStringLiteral("Dup"),      QStringLiteral("Suc"),       QStringLiteral("Att"),
        QStringLiteral("Hol"),      QStringLiteral("For"),       QStringLiteral("Nam"),
        QStringLiteral("Tel"),      QStringLiteral("Opt"),       QStringLiteral("Hil"),
        QStringLiteral("Undo"),     QStringLiteral("AttUndo"),   QStringLiteral("AttMove"),
        QStringLiteral("NameCheck"), QStringLiteral("TelTest"),  QStringLiteral("QuickOption"),
        QStringLiteral("SharedOpen"), QStringLiteral("DupDel"),  QStringLiteral("DupView"),
        QStringLiteral("DupsClose"), QStringLiteral("DupsClear"), QStringLiteral("DavSync"),
    };
    return keys;
}

void ClearCommands()
{
    registry().clear();
}
