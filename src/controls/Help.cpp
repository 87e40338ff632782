#include "controls/Help.h"

#include "frame/GlobalFunctions.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

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

QPointer<QDialog> s_helpWindow;

} // namespace

bool BrowserAvailable()
{
    if (QStandardPaths::findExecutable(QStringLiteral("xdg-open")).isEmpty())
        return false;
    if (!qEnvironmentVariableIsEmpty("BROWSER")
        || !QStandardPaths::findExecutable(QStringLiteral("x-www-browser")).isEmpty())
        return true;
    // Desktops register their browser as the handler of web pages.
    QProcess query;
    query.start(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"), QStringLiteral("text/html")});
    if (!query.waitForFinished(3000)) {
        query.kill();
        query.waitForFinished(1000);
        return false;
    }
    return query.exitCode() == 0 && !query.readAllStandardOutput().trimmed().isEmpty();
}

QWidget *ShowHelpWindow(const QString &path)
{
    if (!s_helpWindow) {
        auto *window = new QDialog(QApplication::activeWindow(), Qt::Window);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setObjectName(QStringLiteral("frmHilfe"));
        window->setWindowTitle(QStringLiteral("Varnex - Hilfe"));
        auto *page = new QTextBrowser(window);
        page->setObjectName(QStringLiteral("txtHilfe"));
        page->setOpenExternalLinks(true);
        auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, window);
        buttons->button(QDialogButtonBox::Close)->setText(QStringLiteral("Schließen"));
        QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
        auto *layout = new QVBoxLayout(window);
        layout->addWidget(page);
        layout->addWidget(buttons);
        window->resize(720, 560);
        s_helpWindow = window;
    }
    auto *page = s_helpWindow->findChild<QTextBrowser *>();
    page->setSource(QUrl::fromLocalFile(path));
    if (!page->documentTitle().isEmpty())
        s_helpWindow->setWindowTitle(page->documentTitle());
    s_helpWindow->show();
    s_helpWindow->raise();
    s_helpWindow->activateWindow();
    return s_helpWindow;
}

bool OpenHelp()
{
    const QString path = ProgramDataFile(QStringLiteral("Varnex.html"));
    if (!QFileInfo::exists(path)) {
        ShowMessage(QStringLiteral("Die Hilfedatei wurde nicht gefunden:\r\n") + path, MsgExclamation,
                    QStringLiteral("Hinweis!"));
        return false;
    }
    if (s_opener)
        return s_opener(path);
    if (BrowserAvailable()
        && QProcess::startDetached(QStringLiteral("xdg-open"), {QUrl::fromLocalFile(path).toString()}))
        return true;
    ShowHelpWindow(path);
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
