#pragma once
// "Telefonnummer testen": shows what the number normaliser makes of a typed
// number with the present settings, without touching any contact. The
// result turns green when the normaliser would change the number, black
// when it would leave it alone.

#include <QDialog>

class QLabel;
class sevText;

class frmTelPruef : public QDialog
{
    Q_OBJECT
public:
    explicit frmTelPruef(QWidget *parent = nullptr);

private:
    void numberChanged();

    sevText *m_txtTelNr = nullptr;
    QLabel *m_lblAusgabe = nullptr;
};

// Opens the dialog modally (menu entry "&Telefonnummer testen...").
void OpenNumberTest(QWidget *parent);
