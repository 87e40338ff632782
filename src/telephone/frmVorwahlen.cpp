#include "telephone/frmVorwahlen.h"

#include "controls/Help.h"
#include "controls/SettingsBinding.h"
#include "controls/sevText.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "telephone/TelNrStandard.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// The seven controls with a remembered list, and their files.
const QList<QPair<const char *, const char *>> kListFiles{
    {"cmbIDDPOut", "IDDPOut.dat"},
    {"cmbVorwahlTrennOut1", "HyphenOut1.dat"},
    {"cmbVorwahlTrennOut2", "HyphenOut2.dat"},
    {"cmbDurchwahlTrennOut", "HyphenOut.dat"},
    {"cmbVorwahlTrennOutSingle", "HyphenOutSgl.dat"},
    {"cmbBlockTrennAreaPres", "BlockAreaPres.dat"},
    {"cmbBlockTrennAreaNo", "BlockAreaNo.dat"},
};

QLabel *label(const QString &name, const QString &text, QWidget *parent)
{
    auto *result = new QLabel(text, parent);
    result->setObjectName(name);
    return result;
}

QLabel *exampleLabel(const QString &name, QWidget *parent)
{
    QLabel *result = label(name, QString(), parent);
    result->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    result->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return result;
}

QLabel *heading(const QString &name, const QString &text, QWidget *parent)
{
    QLabel *result = label(name, text, parent);
    QFont bold = result->font();
    bold.setBold(true);
    result->setFont(bold);
    return result;
}

QGroupBox *exampleFrame(const QString &name, QLabel *example, QWidget *parent)
{
    auto *frame = new QGroupBox(QStringLiteral("Beispiel"), parent);
    frame->setObjectName(name);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(example);
    return frame;
}

// The column labels 1. to 5. above the width controls.
void columnLabels(QGridLayout *grid, QWidget *parent)
{
    for (int column = 1; column <= 5; ++column)
        grid->addWidget(new QLabel(QStringLiteral("%1.").arg(column), parent), 0, column, Qt::AlignCenter);
}

} // namespace

frmVorwahlen::frmVorwahlen(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmVorwahlen"));
    setWindowTitle(QStringLiteral("Telefonnummer Optionen"));
    auto *layout = new QVBoxLayout(this);
    buildFormatWithArea(layout);
    layout->addSpacing(10);
    buildFormatWithoutArea(layout);

    auto *cmdHelp = new QPushButton(QStringLiteral("Hilfe"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    auto *cmdOKButton = new QPushButton(QStringLiteral("OK"), this);
    cmdOKButton->setObjectName(QStringLiteral("cmdOK"));
    cmdOKButton->setDefault(true);
    auto *cmdCancel = new QPushButton(QStringLiteral("Abbrechen"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdHelp);
    buttons->addStretch();
    buttons->addWidget(cmdOKButton);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);
    connect(cmdHelp, &QPushButton::clicked, this, [this] { SendHelpKey(this); });
    connect(cmdOKButton, &QPushButton::clicked, this, &frmVorwahlen::cmdOK);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    // Values first, then the frames (which enable their controls), then the
    // lists: loading a value must not count as an entry of the user.
    LoadBoundSettings(this);
    m_frmNumberBlocksAreaPres->setChecked(GetBoolSetting(QStringLiteral("UseNumberBlocksAreaPres"), false));
    m_frmNumberBlocksAreaNo->setChecked(GetBoolSetting(QStringLiteral("UseNumberBlocksAreaNo"), false));
    ShowExample();
    for (const auto &[control, file] : kListFiles) {
        findChild<sevText *>(QString::fromLatin1(control))
            ->setList(QString::fromLatin1(file), QStringLiteral("Trennzeichen"), true);
    }
    // Every change of an entry, typed or chosen from its list, and every
    // click on a frame's box refreshes the examples.
    for (sevText *control : findChildren<sevText *>()) {
        connect(control, &sevText::textChanged, this, &frmVorwahlen::ShowExample);
        connect(control, &sevText::entryChosen, this, &frmVorwahlen::ShowExample);
    }
    connect(m_frmNumberBlocksAreaPres, &QGroupBox::toggled, this, &frmVorwahlen::ShowExample);
    connect(m_frmNumberBlocksAreaNo, &QGroupBox::toggled, this, &frmVorwahlen::ShowExample);
}

sevText *frmVorwahlen::entry(const QString &name, QWidget *parent)
{
    auto *control = new sevText(parent);
    control->setObjectName(name);
    control->setToolTip(name.mid(3));
    const bool isWidth = name.startsWith(QStringLiteral("cmbBlock")) && !name.contains(QStringLiteral("Trenn"));
    control->setFixedWidth(isWidth ? 40 : 70);
    return control;
}

QGroupBox *frmVorwahlen::blockFrame(const QString &name, QWidget *parent, QGridLayout *&grid)
{
    auto *frame = new QGroupBox(QStringLiteral("Nummernblöcke erzeugen"), parent);
    frame->setObjectName(name);
    frame->setCheckable(true);
    grid = new QGridLayout(frame);
    grid->setColumnStretch(6, 1);
    return frame;
}

void frmVorwahlen::buildFormatWithArea(QVBoxLayout *layout)
{
    layout->addWidget(heading(QStringLiteral("lblAreaCodeAv"), QStringLiteral("Ortvorwahlen im Zielland vorhanden"), this));
    // The parts of a number with the separators between them, as they follow
    // one another in the result.
    auto *parts = new QGridLayout;
    parts->addWidget(label(QStringLiteral("lblCountryCode"), QStringLiteral("Ländervorwahl"), this), 0, 2);
    parts->addWidget(label(QStringLiteral("lblAreaCode"), QStringLiteral("Ortvorwahl"), this), 0, 4);
    parts->addWidget(label(QStringLiteral("lblSubscriberNumber"), QStringLiteral("Empfängernummer"), this), 0, 6);
    parts->addWidget(label(QStringLiteral("lblDIDN"), QStringLiteral("Durchwahl"), this), 0, 8);
    parts->addWidget(entry(QStringLiteral("cmbIDDPOut"), this), 1, 1);
    parts->addWidget(new QLabel(QStringLiteral("49"), this), 1, 2);
    parts->addWidget(entry(QStringLiteral("cmbVorwahlTrennOut1"), this), 1, 3);
    parts->addWidget(new QLabel(QStringLiteral("5202"), this), 1, 4);
    parts->addWidget(entry(QStringLiteral("cmbVorwahlTrennOut2"), this), 1, 5);
    parts->addWidget(new QLabel(QStringLiteral("998288"), this), 1, 6);
    parts->addWidget(entry(QStringLiteral("cmbDurchwahlTrennOut"), this), 1, 7);
    parts->addWidget(new QLabel(QStringLiteral("10"), this), 1, 8);
    parts->setColumnStretch(9, 1);
    layout->addLayout(parts);

    QGridLayout *grid = nullptr;
    m_frmNumberBlocksAreaPres = blockFrame(QStringLiteral("frmNumberBlocksAreaPres"), this, grid);
    QWidget *frame = m_frmNumberBlocksAreaPres;
    grid->addWidget(label(QStringLiteral("lblBlocklaenge"), QStringLiteral("Blocklänge"), frame), 0, 0);
    columnLabels(grid, frame);
    grid->addWidget(label(QStringLiteral("lblAreaCode2"), QStringLiteral("Ortvorwahl"), frame), 1, 0);
    for (int i = 1; i <= 2; ++i)
        grid->addWidget(entry(QStringLiteral("cmbBlockA%1").arg(i), frame), 1, i);
    grid->addWidget(label(QStringLiteral("lblSubscriberNumber2"), QStringLiteral("Empfängernummer"), frame), 2, 0);
    for (int i = 1; i <= 5; ++i)
        grid->addWidget(entry(QStringLiteral("cmbBlockS%1").arg(i), frame), 2, i);
    grid->addWidget(label(QStringLiteral("lblTrennzeichen"), QStringLiteral("Trennzeichen"), frame), 3, 0);
    grid->addWidget(entry(QStringLiteral("cmbBlockTrennAreaPres"), frame), 3, 1, 1, 2);
    layout->addWidget(m_frmNumberBlocksAreaPres);

    m_lblTel = exampleLabel(QStringLiteral("lblTel"), this);
    layout->addWidget(exampleFrame(QStringLiteral("frExample"), m_lblTel, this));
}

void frmVorwahlen::buildFormatWithoutArea(QVBoxLayout *layout)
{
    layout->addWidget(heading(QStringLiteral("lblAreaCodeNAv"), QStringLiteral("Im Zielland sind keine Ortvorwahlen vorhanden"), this));
    auto *parts = new QGridLayout;
    parts->addWidget(label(QStringLiteral("lblPrefixCountryCode"), QStringLiteral("Internationales Präfix und Ländervorwahl"), this), 0, 1);
    parts->addWidget(label(QStringLiteral("lblTelephoneNumber"), QStringLiteral("Telefonnummer"), this), 0, 3);
    parts->addWidget(new QLabel(QStringLiteral("423"), this), 1, 1, Qt::AlignRight);
    parts->addWidget(entry(QStringLiteral("cmbVorwahlTrennOutSingle"), this), 1, 2);
    parts->addWidget(new QLabel(QStringLiteral("1234567"), this), 1, 3);
    parts->setColumnStretch(4, 1);
    layout->addLayout(parts);

    QGridLayout *grid = nullptr;
    m_frmNumberBlocksAreaNo = blockFrame(QStringLiteral("frmNumberBlocksAreaNo"), this, grid);
    QWidget *frame = m_frmNumberBlocksAreaNo;
    grid->addWidget(label(QStringLiteral("lblBlocklaenge2"), QStringLiteral("Blocklänge"), frame), 0, 0);
    columnLabels(grid, frame);
    grid->addWidget(label(QStringLiteral("lblTelephoneNumber2"), QStringLiteral("Telefonnummer"), frame), 1, 0);
    for (int i = 1; i <= 5; ++i)
        grid->addWidget(entry(QStringLiteral("cmbBlockT%1").arg(i), frame), 1, i);
    grid->addWidget(label(QStringLiteral("lblTrennzeichen2"), QStringLiteral("Trennzeichen"), frame), 2, 0);
    grid->addWidget(entry(QStringLiteral("cmbBlockTrennAreaNo"), frame), 2, 1, 1, 2);
    layout->addWidget(m_frmNumberBlocksAreaNo);

    m_lblTelo = exampleLabel(QStringLiteral("lblTelo"), this);
    layout->addWidget(exampleFrame(QStringLiteral("frExample2"), m_lblTelo, this));
}

QString frmVorwahlen::ControlValue(const QString &key, const QString &defaultValue) const
{
    const auto *control = findChild<sevText *>(QStringLiteral("cmb") + key);
    return control ? control->text() : defaultValue;
}

QString frmVorwahlen::BlocksFromControls(const QString &text, const QString &blockKey)
{
    const int count = blockKey == QStringLiteral("BlockA") ? 2 : 5;
    const QString separatorKey = blockKey == QStringLiteral("BlockT") ? QStringLiteral("BlockTrennAreaNo")
                                                                     : QStringLiteral("BlockTrennAreaPres");
    QList<BlockWidth> widths;
    for (int i = 1; i <= count; ++i)
        widths.append(BlockWidthFromText(ControlValue(blockKey + QString::number(i), QStringLiteral("0"))));
    try {
        // The samples hold no extension, so no separator stops the blocks.
        return CutIntoBlocks(text, widths, ControlValue(separatorKey, QStringLiteral(" ")), QString());
    } catch (const TelNrError &error) {
        ShowError(error.description, error.number, 304);
        return text;
    }
}

void frmVorwahlen::ShowExample()
{
    QString areaCode = QStringLiteral("5202");
    QString subscriber = QStringLiteral("998288");
    if (m_frmNumberBlocksAreaPres->isChecked()) {
        areaCode = BlocksFromControls(areaCode, QStringLiteral("BlockA"));
        subscriber = BlocksFromControls(subscriber, QStringLiteral("BlockS"));
    }
    const QString iddpOut = ControlValue(QStringLiteral("IDDPOut"), QString());
    m_lblTel->setText(iddpOut + QStringLiteral("49") + ControlValue(QStringLiteral("VorwahlTrennOut1"), QString())
                      + areaCode + ControlValue(QStringLiteral("VorwahlTrennOut2"), QString()) + subscriber
                      + ControlValue(QStringLiteral("DurchwahlTrennOut"), QString()) + QStringLiteral("10"));

    QString number = QStringLiteral("1234567");
    if (m_frmNumberBlocksAreaNo->isChecked())
        number = BlocksFromControls(number, QStringLiteral("BlockT"));
    m_lblTelo->setText(iddpOut + QStringLiteral("423") + ControlValue(QStringLiteral("VorwahlTrennOutSingle"), QString())
                       + number);
}

void frmVorwahlen::cmdOK()
{
    SaveBoundSettings(this);
    const auto flag = [](bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); };
    SaveSetting(QStringLiteral("UseNumberBlocksAreaPres"), flag(m_frmNumberBlocksAreaPres->isChecked()));
    SaveSetting(QStringLiteral("UseNumberBlocksAreaNo"), flag(m_frmNumberBlocksAreaNo->isChecked()));
    accept();
}

void OpenNumberFormatEditor(QWidget *parent)
{
    frmVorwahlen dialog(parent);
    dialog.exec();
}
