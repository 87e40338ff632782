#include "folders/frmSharedFolderOpen.h"

#include "controls/sevText.h"
#include "folders/SharedFolderFunctions.h"
#include "frame/GlobalFunctions.h"
#include "frame/frmHaupt.h"
#include "store/StoreError.h"
#include "store/StoreRoutines.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

frmSharedFolderOpen::frmSharedFolderOpen(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmSharedFolderOpen"));
    setWindowTitle(QStringLiteral("Ordner eines anderen Benutzers öffnen"));

    auto *lblName = new QLabel(QStringLiteral("Name"), this);
    lblName->setObjectName(QStringLiteral("lblName"));
    m_txtName = new sevText(this);
    m_txtName->setObjectName(QStringLiteral("txtName"));
    m_txtName->setMinimumWidth(260);
    lblName->setBuddy(m_txtName);
    m_cmdNameCheck = new QPushButton(QStringLiteral("Namen überprüfen"), this);
    m_cmdNameCheck->setObjectName(QStringLiteral("cmdNameCheck"));
    m_cmdNameCheck->setAutoDefault(false);

    auto *lblOrdner = new QLabel(QStringLiteral("Ordner"), this);
    lblOrdner->setObjectName(QStringLiteral("lblOrdner"));
    m_cmbFolderTyp = new QComboBox(this);
    m_cmbFolderTyp->setObjectName(QStringLiteral("cmbFolderTyp"));
    for (const SharedFolderType &type : SharedFolderTypes())
        m_cmbFolderTyp->addItem(type.text, type.folderType);
    m_cmbFolderTyp->setCurrentIndex(0);
    lblOrdner->setBuddy(m_cmbFolderTyp);

    m_cmdOK = new QPushButton(QStringLiteral("OK"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(QStringLiteral("Abbrechen"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);

    auto *grid = new QGridLayout;
    grid->addWidget(lblName, 0, 0);
    grid->addWidget(m_txtName, 0, 1);
    grid->addWidget(m_cmdNameCheck, 0, 2);
    grid->addWidget(lblOrdner, 1, 0);
    grid->addWidget(m_cmbFolderTyp, 1, 1);
    grid->setColumnStretch(1, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    connect(m_cmdNameCheck, &QPushButton::clicked, this, &frmSharedFolderOpen::cmdNameCheckClick);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmSharedFolderOpen::cmdOKClick);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmSharedFolderOpen::showResolvedName(const QString &name)
{
    // The text first: any change of it takes the checked look away.
    m_txtName->setText(name);
    m_txtName->setChecked(true);
}

void frmSharedFolderOpen::showNameNotFound()
{
    ShowMessage(QStringLiteral("Name wurde nicht im Adressbuch gefunden. Bitte überprüfen Sie Ihre Eingabe."),
                MsgExclamation, QStringLiteral("Hinweis!"));
}

void frmSharedFolderOpen::cmdNameCheckClick()
{
    try {
        const QString name = ResolveName(m_txtName->text());
        if (name.isEmpty()) {
            showNameNotFound();
        } else {
            showResolvedName(name);
        }
    } catch (const StoreError &error) {
        ShowError(error.description(), error.number(), 601);
    }
    Clear();
}

void frmSharedFolderOpen::cmdOKClick()
{
    try {
        const QString name = ResolveName(m_txtName->text());
        if (name.isEmpty()) {
            showNameNotFound();
            return;
        }
        showResolvedName(name);
        OpenSharedFolder(name, m_cmbFolderTyp->currentData().toInt());
    } catch (const StoreError &) {
        ShowMessage(QStringLiteral("Ordner konnte nicht geöffnet werden. Überprüfen Sie die Berechtigungen."),
                    MsgExclamation, QStringLiteral("Hinweis!"));
        return;
    }
    if (frmHaupt *window = MainWindow())
        window->showSharedFolder(m_txtName->text(), m_cmbFolderTyp->currentText());
    accept();
    Clear();
}
