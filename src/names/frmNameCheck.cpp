#include "names/frmNameCheck.h"

#include "controls/sevText.h"
#include "names/NameCorrectionFunctions.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// A frame with its caption around the label that shows one name part.
QLabel *partFrame(const QString &frameName, const QString &caption, const QString &labelName,
                  QGridLayout *grid, int row, int column, QWidget *parent)
{
    auto *frame = new QGroupBox(caption, parent);
    frame->setObjectName(frameName);
    auto *label = new QLabel(frame);
    label->setObjectName(labelName);
    // Plain text and no buddy: "&" and "<" show as they stand, no mnemonic.
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumHeight(label->fontMetrics().height() + 4);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(label);
    grid->addWidget(frame, row, column);
    return label;
}

} // namespace

frmNameCheck::frmNameCheck(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmNameCheck"));
    setWindowTitle(QStringLiteral("Namen testen"));

    auto *lblInfo = new QLabel(this);
    lblInfo->setObjectName(QStringLiteral("lblInfo"));
    lblInfo->setWordWrap(true);
    lblInfo->setText(QStringLiteral("Geben Sie einen vollständigen Namen ein.\r\n\r\n"
                                    "Hiermit können Sie testen wie die Namen korrigieren-Funktion arbeitet."));

    m_txtFullname = new sevText(this);
    m_txtFullname->setObjectName(QStringLiteral("txtFullname"));
    m_txtFullname->setList(QStringLiteral("Fullname.dat"), QStringLiteral("Namen"));

    m_chkBusinessCheck = new QCheckBox(QStringLiteral("Firmennamen erkennen"), this);
    m_chkBusinessCheck->setObjectName(QStringLiteral("chkBusinessCheck"));

    auto *parts = new QGridLayout;
    m_lblTitle = partFrame(QStringLiteral("frAddress"), QStringLiteral("Anrede"), QStringLiteral("lblTitle"),
                           parts, 0, 0, this);
    m_lblFirstname = partFrame(QStringLiteral("sevFrame1"), QStringLiteral("Vorname"),
                               QStringLiteral("lblFirstname"), parts, 0, 1, this);
    m_lblMiddleName = partFrame(QStringLiteral("sevFrame2"), QStringLiteral("weitere Vornamen"),
                                QStringLiteral("lblMiddleName"), parts, 1, 0, this);
    m_lblLastName = partFrame(QStringLiteral("sevFrame3"), QStringLiteral("Nachname"),
                              QStringLiteral("lblLastName"), parts, 1, 1, this);
    m_lblSuffix = partFrame(QStringLiteral("sevFrame4"), QStringLiteral("Namenzusatz"),
                            QStringLiteral("lblSuffix"), parts, 2, 0, this);

    m_lblDes = new QLabel(this);
    m_lblDes->setObjectName(QStringLiteral("lblDes"));
    m_lblDes->setStyleSheet(QStringLiteral("font-weight: bold;"));

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(QStringLiteral("Schließen"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblInfo);
    layout->addWidget(m_txtFullname);
    layout->addWidget(m_chkBusinessCheck);
    layout->addLayout(parts);
    layout->addWidget(m_lblDes);
    layout->addStretch();
    layout->addWidget(buttons);

    connect(m_txtFullname, &sevText::textChanged, this, &frmNameCheck::refresh);
    connect(m_chkBusinessCheck, &QCheckBox::clicked, this, &frmNameCheck::refresh);
    resize(520, 360);
}

void frmNameCheck::refresh()
{
    QString title, first, middle, last, suffix;
    bool isBusiness = false;
    AnalyzeFullName(m_txtFullname->text(), title, first, middle, last, suffix, isBusiness,
                    m_chkBusinessCheck->isChecked());
    m_lblDes->setText(QString());
    m_lblTitle->setText(title);
    m_lblFirstname->setText(first);
    m_lblMiddleName->setText(middle);
    m_lblLastName->setText(last);
    m_lblSuffix->setText(suffix);
    if (isBusiness)
        m_lblDes->setText(QStringLiteral("Es wurde ein Firmenname erkannt!"));
}
