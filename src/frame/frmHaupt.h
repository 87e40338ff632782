#pragma once
// The main window: command bar, folder tree, status line. It holds no logic of
// its own; each command calls a run or opens a dialog.

#include <QMainWindow>

class QLabel;
class QProgressBar;

class frmHaupt : public QMainWindow
{
    Q_OBJECT
public:
    explicit frmHaupt(QWidget *parent = nullptr);

    // The load handler: texts, status line, caption, then the folder tree.
    void load();

    [[nodiscard]] QLabel *lblStatus() const { return m_lblStatus; }
    [[nodiscard]] QProgressBar *ProgressBar1() const { return m_progressBar; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QLabel *m_lblStatus = nullptr;
    QProgressBar *m_progressBar = nullptr;
};
