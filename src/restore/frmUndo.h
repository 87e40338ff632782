#pragma once
// "Daten wiederherstellen": asks which changes of the contact runs to take
// back in the ticked contact folders, names, telephone numbers or both; each
// is a full pass of its own with its own closing message.

#include <QDialog>

class QCheckBox;

class frmUndo : public QDialog
{
    Q_OBJECT
public:
    explicit frmUndo(QWidget *parent = nullptr);

private:
    void cmdUndo();

    QCheckBox *m_chkName = nullptr;
    QCheckBox *m_chkTel = nullptr;
};

// Opens the dialog modally (menu entry "&Daten wiederherstellen...").
void OpenUndo(QWidget *parent);
