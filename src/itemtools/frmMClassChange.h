#pragma once
// "Eingabe!": asks for the short name of the form that the items of the
// ticked folders get. OK closes the dialog and starts the class change with
// the name; one blank gives the items their standard class back. There is
// no cancel button: the window's close button leaves without a run.

#include <QDialog>

class sevText;

class frmMClassChange : public QDialog
{
    Q_OBJECT
public:
    explicit frmMClassChange(QWidget *parent = nullptr);

private:
    void cmdOK_Click();

    sevText *m_txtClassName = nullptr;
};
