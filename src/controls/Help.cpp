#include "controls/Help.h"

#include "frame/GlobalFunctions.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QKeyEvent>
#include <QUrl>

namespace {

bool (*s_opener)(const QString &path) = nullptr;

class HelpKeyFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_F1
            && watched->isWidgetType()) {
            OpenHelp();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

bool OpenHelp()
{
    const QString path = ProgramFile(QStringLiteral("Varnex.html"));
    if (!QFileInfo::exists(path)) {
        ShowMessage(QStringLiteral("Die Hilfedatei wurde nicht gefunden:\r\n") + path, MsgExclamation,
                    QStringLiteral("Hinweis!"));
        return false;
    }
    if (s_opener)
        return s_opener(path);
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        ShowMessage(QStringLiteral("Die Hilfedatei kann nicht geöffnet werden:\r\n") + path, MsgExclamation,
                    QStringLiteral("Hinweis!"));
        return false;
    }
    return true;
}

void InstallHelpKey()
{
    static HelpKeyFilter *filter = nullptr;
    if (!filter && qApp) {
        filter = new HelpKeyFilter(qApp);
        qApp->installEventFilter(filter);
    }
}

void SendHelpKey(QObject *receiver)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    QCoreApplication::sendEvent(receiver, &press);
}

void SetHelpOpener(bool (*opener)(const QString &path))
{
    s_opener = opener;
}
