#pragma once
// "Schulferien einfügen": the school holidays of one German state or Swiss
// canton go into every ticked calendar folder as all-day appointments.
//
// The folders are collected once, when the dialog opens; when the selection
// is refused (no calendar ticked), the dialog opens all the same with
// "Einfügen" disabled. The dialog stays open after an insertion, so that
// further states can follow.

#include "folders/FolderFunctions.h"
#include "store/MAPIFolder.h"

#include <QDialog>

class QComboBox;
class QPushButton;

class frmHoliday : public QDialog
{
    Q_OBJECT
public:
    explicit frmHoliday(QWidget *parent = nullptr);

    // Fills the list of txtState with the states of the country in
    // txtCountry; the typed text stays. Failures are shown as error 1302.
    void FillStates();

private:
    void cmdEinfuegen_Click();

    // txtCountry and txtState: a text with a list of choices.
    QComboBox *m_txtCountry = nullptr;
    QComboBox *m_txtState = nullptr;
    QPushButton *m_cmdEinfuegen = nullptr;
    FolderSelection m_selection;
};
