#pragma once
// "Namen testen": shows what the name analysis makes of a typed full name,
// without touching any contact. Every change of the text and every click of
// the company box analyses the whole text anew.

#include <QDialog>

class QCheckBox;
class QLabel;
class sevText;

class frmNameCheck : public QDialog
{
    Q_OBJECT
public:
    explicit frmNameCheck(QWidget *parent = nullptr);

private:
    void refresh();

    sevText *m_txtFullname = nullptr;
    QCheckBox *m_chkBusinessCheck = nullptr;
    QLabel *m_lblTitle = nullptr;
    QLabel *m_lblFirstname = nullptr;
    QLabel *m_lblMiddleName = nullptr;
    QLabel *m_lblLastName = nullptr;
    QLabel *m_lblSuffix = nullptr;
    QLabel *m_lblDes = nullptr;
};
