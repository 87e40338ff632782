#include "itemtools/frmMClassChange.h"

#include "controls/Help.h"
#include "controls/sevText.h"
#include "itemtools/MClassChangeFunctions.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmMClassChange::frmMClassChange(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmMClassChange"));
    setWindowTitle(QStringLiteral("Eingabe!"));

    auto *lblDes = new QLabel(this);
    lblDes->setObjectName(QStringLiteral("lblDes"));
    lblDes->setWordWrap(true);
    lblDes->setTextFormat(Qt::PlainText);
    lblDes->setText(QStringLiteral("Geben Sie den neuen Formularnamen ein: \n"
                                   "Hinweis: Geben Sie ein Leerzeichen ein um die Standard-Klasse zuzuweisen.\n\n"
                                   "Bitte nur den kurzen Formularnamen angeben. IPM.... wird automatisch vom "
                                   "Programm hinzugefügt."));

    m_txtClassName = new sevText(this);
    m_txtClassName->setObjectName(QStringLiteral("txtClassName"));
    m_txtClassName->setList(QStringLiteral("MessageClass.dat"), QStringLiteral("Namen"));

    auto *cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdHelp = new QPushButton(QStringLiteral("Hilfe"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    cmdHelp->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdHelp);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblDes);
    layout->addWidget(m_txtClassName);
    layout->addStretch();
    layout->addLayout(buttons);

    connect(cmdOK, &QPushButton::clicked, this, &frmMClassChange::cmdOK_Click);
    connect(cmdHelp, &QPushButton::clicked, this, [this] { SendHelpKey(this); });
    resize(420, 200);
}

void frmMClassChange::cmdOK_Click()
{
    const QString name = m_txtClassName->text();
    // Closing first: the run goes on behind the main window's status line,
    // and the field remembers the name as it goes.
    accept();
    ChangeMessageClass(name);
}
