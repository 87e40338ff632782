#include "options/frmOptions.h"

#include "controls/SettingsBinding.h"
#include "frame/GlobalFunctions.h"
#include "names/NameCorrectionFunctions.h"
#include "controls/Help.h"
#include "frame/RegistryFunctions.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStackedLayout>
#include <QTabBar>
#include <QVBoxLayout>

frmOptions::frmOptions(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Optionen"));

    m_tabMain = new QTabBar(this);
    m_tabMain->setObjectName(QStringLiteral("TabMain"));
    for (const char *caption : {"Duplikatsuche", "Telefonnummern formatieren", "Anlagen speichern",
                                "Namen korrigieren", "Allgemein"})
        m_tabMain->addTab(QString::fromUtf8(caption));

    auto *pages = new QWidget(this);
    auto *pagesLayout = new QVBoxLayout(pages);
    pagesLayout->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 5; ++i) {
        m_frMain[i] = new QFrame(pages);
        m_frMain[i]->setObjectName(QStringLiteral("frMain(%1)").arg(i));
        m_frMain[i]->setFrameShape(QFrame::StyledPanel);
        pagesLayout->addWidget(m_frMain[i]);
    }
    buildDuplicatePage(m_frMain[0]);
    buildTelephonePage(m_frMain[1]);
    buildAttachmentPage(m_frMain[2]);
    buildNamePage(m_frMain[3]);
    buildGeneralPage(m_frMain[4]);

    auto *cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(QStringLiteral("Abbrechen"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *cmdHelp = new QPushButton(QStringLiteral("Hilfe"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdHelp);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabMain);
    layout->addWidget(pages, 1);
    layout->addLayout(buttons);

    connect(m_tabMain, &QTabBar::currentChanged, this, &frmOptions::showMainPage);
    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::clickOk);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdHelp, &QPushButton::clicked, this, [this] { SendHelpKey(this); });

    load();
    showMainPage(0);
    resize(760, 560);
}

void frmOptions::load()
{
    LoadBoundSettings(this);
    // Until the dialog has been saved once, MoveToFolder is missing and the
    // removal moves (its default): the dialog shows that, not "löschen".
    if (GetSetting(QStringLiteral("MoveToFolder"), QStringLiteral("NotExisting")) == u"NotExisting"
        && !GetBoolSetting(QStringLiteral("DupEntryIDSave"), false))
        findChild<QRadioButton *>(QStringLiteral("chkMoveToFolder"))->setChecked(true);
    if (const auto sliders = LoadPrioritySliders()) {
        m_repairing = true;
        for (int i = 0; i < 3; ++i)
            m_sldPrio[i]->setValue((*sliders)[i]);
        m_sliderValues = *sliders;
        m_repairing = false;
    } else {
        ShowError(QStringLiteral("Die gespeicherten Prioritäten (Priority.0 bis Priority.2) sind ungültig."),
                  QVariant(5), 703);
    }
    m_frFilterTel->setChecked(GetBoolSetting(QStringLiteral("FilterTel"), false));
    setFilterEnabled(m_frFilterTel->isChecked(), false);
    m_optSaveAs->setChecked(true);
    updateExample();
}

void frmOptions::showMainPage(int index)
{
    for (int i = 0; i < int(m_frMain.size()); ++i)
        m_frMain[i]->setVisible(i == index);
}

void frmOptions::showTypePage(int index)
{
    if (auto *stack = qobject_cast<QStackedLayout *>(m_frmTab[0]->parentWidget()->layout()))
        stack->setCurrentIndex(index);
    for (int i = 0; i < int(m_frmTab.size()); ++i)
        m_frmTab[i]->setVisible(i == index);
}

void frmOptions::sliderChanged(int index)
{
    if (m_repairing)
        return;
    m_sliderValues[index] = m_sldPrio[index]->value();
    RepairPriorities(m_sliderValues, index);
    m_repairing = true;
    for (int i = 0; i < 3; ++i)
        m_sldPrio[i]->setValue(m_sliderValues[i]);
    m_repairing = false;
}

std::array<int, 3> frmOptions::sliderValues() const
{
    return m_sliderValues;
}

void frmOptions::countrySelected(const QString &entry)
{
    if (const auto preset = CountryPresetFor(entry)) {
        m_txtCountryCode->setText(preset->countryCode);
        m_txtIDDP->setText(preset->iddp);
        m_txtNDDP->setText(preset->nddp);
    }
}

void frmOptions::setFilterEnabled(bool on, bool includingCountryFilter)
{
    for (const char *name : {"txtFilterAreaStr", "txtFilterCountryStr", "chkFilterArea", "chkFilterCountry"})
        findChild<QWidget *>(QString::fromUtf8(name))->setEnabled(on);
    // The country name filter starts disabled whatever is stored; only a
    // click on the frame's box changes it.
    for (const char *name : {"chkCountryFilter", "cmbCountryFilterText"})
        findChild<QWidget *>(QString::fromUtf8(name))->setEnabled(includingCountryFilter && on);
}

QWidget *frmOptions::chosenLayoutField() const
{
    return m_optSaveAs->isChecked() ? m_cmbFileAsLayoutEx : m_cmbSubjectLayout;
}

LayoutEditor &frmOptions::chosenLayoutEditor()
{
    return m_optSaveAs->isChecked() ? m_fileAsEditor : m_subjectEditor;
}

void frmOptions::updateExample()
{
    m_lblExample->setText(BuildNameLayout(QStringLiteral("Prof. Dr. Herr"), QStringLiteral("Max"),
                                          QStringLiteral("Maria"), QStringLiteral("Mustermann"),
                                          QStringLiteral("jun."), QStringLiteral("Outlook GmbH"),
                                          chosenLayoutField()->property("text").toString()));
}

bool frmOptions::checkPassed()
{
    std::array<int, 6> checked{};
    for (int t = 0; t < 6; ++t) {
        for (QCheckBox *box : m_frmTab[t]->findChildren<QCheckBox *>())
            checked[t] += box->isChecked() ? 1 : 0;
    }
    const QStringList messages = DuplicateFieldCheckMessages(checked);
    for (const QString &message : messages)
        ShowMessage(message, MsgExclamation, QStringLiteral("Hinweis!"));
    return messages.isEmpty();
}

void frmOptions::clickOk()
{
    if (!checkPassed())
        return;
    // All of the dialog in one write of the file, on the disk when OK returns.
    SettingValues values = BoundSettingValues(this);
    values += PrioritySliderValues(m_sliderValues);
    values.append({QStringLiteral("FilterTel"), m_frFilterTel->isChecked() ? QStringLiteral("1") : QStringLiteral("0")});
    SaveSettings(values);
    accept();
}
