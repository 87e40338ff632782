#pragma once
// "Suchen und Ersetzen": finds and replaces text in chosen fields of the
// items in the ticked folders, and takes the last run back.
//
// The item type comes from the marked folder when the dialog opens; the
// folders ticked at that moment stay with the dialog for its whole life. The
// undo data of the last run die with the dialog.
//
// Closing the dialog while a run works does not close it: the user is asked
// whether to stop, and on Yes the run ends after the current item, with its
// closing messages, and the dialog stays open so that the undo can take back
// what was done. During an undo a close is refused silently; the undo ends by
// itself after one fetch per record.

#include "replace/ReplaceRun.h"

#include <QDialog>
#include <QList>

class MAPIFolder;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class WaitBar;
class sevText;

class frmReplace : public QDialog, private ReplaceRunInputs
{
    Q_OBJECT
public:
    explicit frmReplace(QWidget *parent = nullptr);
    ~frmReplace() override;

    // The new value of a field under the texts and options the dialog holds
    // now (see ::newString).
    [[nodiscard]] QString newString(const QString &value) const;

    [[nodiscard]] QString folderClass() const { return m_folderClass; }
    [[nodiscard]] const ReplaceUndoLists &undoLists() const { return m_undo; }
    [[nodiscard]] bool isWorking() const { return m_working; }

    void reject() override;

private:
    void buildControls();
    void load();
    void chkLeerClicked();
    void chkReplaceClicked();
    void chkUserDefClicked();
    void cmdReplaceClicked();
    void cmdUndoClicked();
    void setRunInputsEnabled(bool enabled);
    // Asks whether a run should stop after the current item.
    void confirmStop();

    // ReplaceRunInputs
    [[nodiscard]] ReplaceOptions replaceOptions() const override;
    [[nodiscard]] bool isFieldSelected(int index) const override;
    [[nodiscard]] bool stopRequested() const override { return m_stopRequested; }
    void workDone() override;

    QGroupBox *m_frFind = nullptr;
    QLineEdit *m_txtFind = nullptr;
    QGroupBox *m_frReplace = nullptr;
    QLineEdit *m_txtReplace = nullptr;
    QGroupBox *m_frFields = nullptr;
    QListWidget *m_lstFields = nullptr;
    QCheckBox *m_chkUserDef = nullptr;
    sevText *m_txtUserDef = nullptr;
    QGroupBox *m_sevFrame1 = nullptr;
    QCheckBox *m_chkLeer = nullptr;
    QCheckBox *m_chkReplace = nullptr;
    QCheckBox *m_chkWord = nullptr;
    QPushButton *m_cmdReplace = nullptr;
    QPushButton *m_cmdUndo = nullptr;
    QPushButton *m_cmdClose = nullptr;
    WaitBar *m_sevWaitBar1 = nullptr;
    QGroupBox *m_frDescription = nullptr;
    QLabel *m_lblDescription = nullptr;

    QString m_folderClass;               // FolderClass
    QList<MAPIFolder> m_replaceFolders;  // ReplaceFolders
    ReplaceUndoLists m_undo;
    bool m_working = false;       // a run or an undo is under way
    bool m_runInProgress = false; // it is a run (which can be stopped)
    bool m_stopRequested = false;
};
