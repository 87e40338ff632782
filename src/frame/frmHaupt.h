#pragma once
// The main window: command bar, menus, folder tree with its three buttons, the
// panels for another user's folder and for found duplicates, the help text and
// the status line. It holds no logic of its own: every command is dispatched
// by its key through the command table (frame/CommandRegistry.h), and the
// window is the run host through which runs reach status line, progress bar
// and the running state.

#include "frame/RunHost.h"

#include <QMainWindow>

class NodeTree;
class OutBar;
class QAction;
class QGroupBox;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTimer;

class frmHaupt : public QMainWindow, public RunHost
{
    Q_OBJECT
public:
    explicit frmHaupt(QWidget *parent = nullptr);
    ~frmHaupt() override;

    // The load handler: texts, status line, caption, then the folder tree.
    void load();

    // RunHost
    void SetRunning(bool running) override;
    void EnableCommands(bool running) override;
    void setStatusText(const QString &text) override;
    void setProgressMax(int max) override;
    void setProgressValue(int value) override;
    void processEvents() override;

    // Dispatch of a command bar click: only the first mouse button counts,
    // an unknown key does nothing.
    void OutBar1ItemClick(const QString &groupKey, const QString &itemKey, int mouseButton);

    // Another user's folder: shows the panel over the tree with the resolved
    // name and the folder type's text, or hides it again.
    void showSharedFolder(const QString &name, const QString &folderType);
    void hideSharedFolder();

    [[nodiscard]] OutBar *OutBar1() const { return m_outBar; }
    [[nodiscard]] NodeTree *TvwOrdner() const { return m_tvwOrdner; }
    [[nodiscard]] QPushButton *cmdAlleRueck() const { return m_cmdAlleRueck; }
    [[nodiscard]] QPushButton *cmdZweigMark() const { return m_cmdZweigMark; }
    [[nodiscard]] QPushButton *cmdAktualisieren() const { return m_cmdAktualisieren; }
    [[nodiscard]] QGroupBox *frmSharedFolder() const { return m_frmSharedFolder; }
    [[nodiscard]] QPushButton *cmdCloseShared() const { return m_cmdCloseShared; }
    [[nodiscard]] QGroupBox *frmDups() const { return m_frmDups; }
    [[nodiscard]] NodeTree *tvwDups() const { return m_tvwDups; }
    [[nodiscard]] QPushButton *cmdDupDel() const { return m_cmdDupDel; }
    [[nodiscard]] QPushButton *cmdDupView() const { return m_cmdDupView; }
    [[nodiscard]] QPushButton *cmdDupsClose() const { return m_cmdDupsClose; }
    [[nodiscard]] QLabel *lblHilfe() const { return m_lblHilfe; }
    [[nodiscard]] QLabel *lblStatus() const { return m_lblStatus; }
    [[nodiscard]] QProgressBar *ProgressBar1() const { return m_progressBar; }
    [[nodiscard]] QTimer *Timer1() const;
    // A menu entry or menu by its name (mnuBeenden, mnuAktion ...).
    [[nodiscard]] QAction *menuEntry(const QString &name) const;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    // frmHauptLayout.cpp: the widgets and their places.
    void buildLayout();
    QWidget *buildFolderFrame();
    QWidget *buildSharedFolderFrame();
    QWidget *buildDuplicateFrame();
    QWidget *buildHelpPanel();
    QWidget *buildBanner();
    void buildMenus();
    void buildCommandBar();
    QAction *addEntry(QMenu *menu, const QString &name, const QString &caption);

    // Handlers
    void runKey(const QString &key);
    void mnuAttUndoClick();
    void mnuInfoClick();
    void cmdAktualisierenClick();

    OutBar *m_outBar = nullptr;
    QStackedWidget *m_frame3Pages = nullptr;
    NodeTree *m_tvwOrdner = nullptr;
    QPushButton *m_cmdAlleRueck = nullptr;
    QPushButton *m_cmdZweigMark = nullptr;
    QPushButton *m_cmdAktualisieren = nullptr;
    QGroupBox *m_frmSharedFolder = nullptr;
    QLabel *m_lblSharedName = nullptr;
    QLabel *m_lblSharedTyp = nullptr;
    QPushButton *m_cmdCloseShared = nullptr;
    QGroupBox *m_frmDups = nullptr;
    NodeTree *m_tvwDups = nullptr;
    QPushButton *m_cmdDupDel = nullptr;
    QPushButton *m_cmdDupView = nullptr;
    QPushButton *m_cmdDupsClose = nullptr;
    QLabel *m_lblHilfe = nullptr;
    QLabel *m_lblStatus = nullptr;
    QProgressBar *m_progressBar = nullptr;
    QMenu *m_mnuAktion = nullptr;
    QMenu *m_mnuExtras = nullptr;
};

// The main window of the process, for dialogs that need a parent; nullptr
// before it exists.
frmHaupt *MainWindow();
