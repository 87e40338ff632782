#include "restore/frmUndo.h"

#include "restore/UndoFunctions.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmUndo::frmUndo(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmUndo"));
    setWindowTitle(QStringLiteral("Daten wiederherstellen"));
    auto *layout = new QVBoxLayout(this);
    auto *sevLabel1 = new QLabel(
        QStringLiteral("Welche Änderungen möchten Sie an den ausgewählen Kontakten wiederherstellen?"), this);
    sevLabel1->setObjectName(QStringLiteral("sevLabel1"));
    sevLabel1->setWordWrap(true);
    layout->addWidget(sevLabel1);
    m_chkName = new QCheckBox(QStringLiteral("Namen wiederherstellen"), this);
    m_chkName->setObjectName(QStringLiteral("chkName"));
    layout->addWidget(m_chkName);
    m_chkTel = new QCheckBox(QStringLiteral("Telefonnummern wiederherstellen"), this);
    m_chkTel->setObjectName(QStringLiteral("chkTel"));
    layout->addWidget(m_chkTel);
    auto *cmdUndoButton = new QPushButton(QStringLiteral("Wiederherstellen"), this);
    cmdUndoButton->setObjectName(QStringLiteral("cmdUndo"));
    cmdUndoButton->setDefault(true);
    layout->addWidget(cmdUndoButton, 0, Qt::AlignRight);
    connect(cmdUndoButton, &QPushButton::clicked, this, &frmUndo::cmdUndo);
    setMinimumWidth(380);
}

void frmUndo::cmdUndo()
{
    if (m_chkName->isChecked())
        RestoreContactBackups(QStringLiteral("Names"));
    if (m_chkTel->isChecked())
        RestoreContactBackups(QStringLiteral("Telephone"));
    accept();
}

void OpenUndo(QWidget *parent)
{
    frmUndo dialog(parent);
    dialog.exec();
}
