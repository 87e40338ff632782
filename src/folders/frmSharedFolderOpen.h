#pragma once
// The dialog that opens a default folder of another user: a name, checked
// against the address book, and the kind of folder. On success the folder
// becomes the whole selection of every run and the main window shows it
// over the folder tree.

#include <QDialog>

class QComboBox;
class QPushButton;
class sevText;

class frmSharedFolderOpen : public QDialog
{
    Q_OBJECT
public:
    explicit frmSharedFolderOpen(QWidget *parent = nullptr);

    [[nodiscard]] sevText *txtName() const { return m_txtName; }
    [[nodiscard]] QComboBox *cmbFolderTyp() const { return m_cmbFolderTyp; }
    [[nodiscard]] QPushButton *cmdNameCheck() const { return m_cmdNameCheck; }
    [[nodiscard]] QPushButton *cmdOK() const { return m_cmdOK; }

    void cmdNameCheckClick();
    void cmdOKClick();

private:
    // Shows the resolved name with the checked look.
    void showResolvedName(const QString &name);
    void showNameNotFound();

    sevText *m_txtName = nullptr;
    QComboBox *m_cmbFolderTyp = nullptr;
    QPushButton *m_cmdNameCheck = nullptr;
    QPushButton *m_cmdOK = nullptr;
};
