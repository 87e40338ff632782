#pragma once
// The options assistant: four pages for the settings a new user should set
// first. Nothing is stored before the last page is finished.

#include <QDialog>
#include <array>

class QFrame;
class QPushButton;

class frmQuickOptions : public QDialog
{
    Q_OBJECT
public:
    explicit frmQuickOptions(QWidget *parent = nullptr);

    [[nodiscard]] int step() const { return m_step; }
    void clickForward();
    void clickBack();

private:
    void showStep();

    int m_step = 0;
    std::array<QFrame *, 4> m_frMain{};
    QPushButton *m_cmdBack = nullptr;
    QPushButton *m_cmdForward = nullptr;
};
