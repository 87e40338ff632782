#pragma once
// The splash window shown while the main window reads the folder tree.

#include <QWidget>

class QLabel;
class WaitBar;

class frmSplash : public QWidget
{
    Q_OBJECT
public:
    explicit frmSplash(QWidget *parent = nullptr);

    [[nodiscard]] QLabel *lblVersion() const { return m_lblVersion; }
    [[nodiscard]] WaitBar *sevWaitBar1() const { return m_waitBar; }

private:
    QLabel *m_image = nullptr;
    QLabel *m_lblVersion = nullptr;
    WaitBar *m_waitBar = nullptr;
};
