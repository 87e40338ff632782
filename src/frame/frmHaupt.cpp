#include "frame/frmHaupt.h"

#include "controls/Help.h"
#include "controls/NodeTree.h"
#include "controls/OutBar.h"
#include "folders/FolderState.h"
#include "folders/FolderStructureFunctions.h"
#include "folders/SharedFolderFunctions.h"
#include "frame/CommandRegistry.h"
#include "frame/GlobalFunctions.h"
#include "frame/Main.h"
#include "frame/MainCommands.h"
#include "frame/MainGeometry.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>

namespace {

frmHaupt *s_mainWindow = nullptr;

} // namespace

frmHaupt *MainWindow()
{
    return s_mainWindow;
}

frmHaupt::frmHaupt(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmHaupt"));
    buildLayout();
    // Main() fits the frame into the screen or restores the last place.
    resize(1280, 800);

    connect(m_cmdAlleRueck, &QPushButton::clicked, this, [this] { UncheckAllNodes(*m_tvwOrdner); });
    connect(m_cmdZweigMark, &QPushButton::clicked, this, [this] { CheckMarkedBranch(*m_tvwOrdner); });
    connect(m_cmdAktualisieren, &QPushButton::clicked, this, &frmHaupt::cmdAktualisierenClick);
    connect(m_cmdCloseShared, &QPushButton::clicked, this, [this] {
        CloseSharedFolder();
        hideSharedFolder();
    });
    connect(m_cmdDupDel, &QPushButton::clicked, this, [this] { runKey(QStringLiteral("DupDel")); });
    connect(m_cmdDupView, &QPushButton::clicked, this, [this] { runKey(QStringLiteral("DupView")); });
    connect(m_cmdDupsClose, &QPushButton::clicked, this, [this] { runKey(QStringLiteral("DupsClose")); });

    s_mainWindow = this;
    SetRunHost(this);
    SetFolderTree(m_tvwOrdner);
    RegisterMainCommands();
    InstallHelpKey();
}

frmHaupt::~frmHaupt()
{
    if (s_mainWindow == this) {
        s_mainWindow = nullptr;
        SetRunHost(nullptr);
        SetFolderTree(nullptr);
    }
}

void frmHaupt::load()
{
    // The texts of bar, menus and buttons are set as the widgets are made.
    m_lblStatus->setText(QStringLiteral("Bereit"));
    setWindowTitle(QStringLiteral("Varnex"));
    tvwFolderFill();
}

QTimer *frmHaupt::Timer1() const
{
    return &FolderReadTimer();
}

QAction *frmHaupt::menuEntry(const QString &name) const
{
    return findChild<QAction *>(name);
}

void frmHaupt::SetRunning(bool running)
{
    if (running) {
        // A new run drops the result of the last duplicate search.
        m_frmDups->setVisible(false);
        m_tvwDups->clearNodes();
        try {
            RunCommand(QStringLiteral("DupsClear"));
        } catch (const std::exception &error) {
            ShowError(QString::fromLocal8Bit(error.what()), 0, 203);
        }
        m_cmdDupDel->setEnabled(true);
        m_cmdDupView->setEnabled(true);
    }
    m_progressBar->setValue(0);
    m_lblStatus->setText(QStringLiteral("Bereit"));
    EnableCommands(running);
}

void frmHaupt::EnableCommands(bool running)
{
    const bool enabled = !running;
    m_outBar->setEnabled(enabled);
    m_mnuAktion->menuAction()->setEnabled(enabled);
    m_mnuExtras->menuAction()->setEnabled(enabled);
    m_cmdAlleRueck->setEnabled(enabled);
    m_cmdZweigMark->setEnabled(enabled);
    m_tvwOrdner->setEnabled(enabled);
    m_cmdAktualisieren->setEnabled(enabled);
    menuEntry(QStringLiteral("mnuSharedOpen"))->setEnabled(enabled);
    menuEntry(QStringLiteral("mnuKontenSync"))->setEnabled(enabled);
}

void frmHaupt::setStatusText(const QString &text)
{
    m_lblStatus->setText(text);
}

void frmHaupt::setProgressMax(int max)
{
    m_progressBar->setMaximum(max);
}

void frmHaupt::setProgressValue(int value)
{
    m_progressBar->setValue(value);
}

void frmHaupt::processEvents()
{
    QCoreApplication::processEvents();
}

void frmHaupt::OutBar1ItemClick(const QString &, const QString &itemKey, int mouseButton)
{
    if (mouseButton != 1)
        return;
    runKey(itemKey);
}

void frmHaupt::runKey(const QString &key)
{
    if (key == QLatin1String("Hil")) {
        SendHelpKey(this);
        return;
    }
    RunCommand(key);
}

void frmHaupt::mnuAttUndoClick()
{
    if (ShowMessage(QStringLiteral("Möchten Sie die verknüpften Anlagen wieder (zurück)importieren?"), MsgQuestion,
                    QStringLiteral("Frage?"))
        == AnswerYes)
        runKey(QStringLiteral("AttUndo"));
}

void frmHaupt::mnuInfoClick()
{
    ShowMessage(QStringLiteral("Version ") + ProgramVersion() + QStringLiteral("\r\n© Nordquell"), MsgInformation,
                QStringLiteral("Info!"));
}

void frmHaupt::cmdAktualisierenClick()
{
    // A click while the tree is being read (the window stays usable) would
    // only announce the running read before it ends; that read gives the
    // message once, when it is done.
    if (FolderData().reading)
        return;
    tvwFolderFill();
    ShowMessage(QStringLiteral("Alle Ordner neu eingelesen."), MsgInformation, QStringLiteral("Info!"));
}

void frmHaupt::showSharedFolder(const QString &name, const QString &folderType)
{
    m_lblSharedName->setText(name);
    m_lblSharedTyp->setText(folderType);
    m_frmSharedFolder->setVisible(true);
    m_frame3Pages->setCurrentWidget(m_frmSharedFolder);
}

void frmHaupt::hideSharedFolder()
{
    m_frmSharedFolder->setVisible(false);
    m_frame3Pages->setCurrentIndex(0);
}

void frmHaupt::closeEvent(QCloseEvent *event)
{
    event->accept();
    SaveMainGeometry(*this);
    EndProcess();
}
