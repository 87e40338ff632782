#include "telephone/frmTelPruef.h"

#include "controls/sevText.h"
#include "telephone/TelNrStandard.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QColor kChanged(0, 170, 0);
const QColor kUnchanged(0, 0, 0);

} // namespace

frmTelPruef::frmTelPruef(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmTelPruef"));
    setWindowTitle(QStringLiteral("Telefonnummer testen"));
    auto *layout = new QVBoxLayout(this);

    auto *lblInfo = new QLabel(QStringLiteral("Geben Sie eine beliebig formatierte Telefonnummer ein. Hiermit können "
                                              "Sie das Ergebnis der Tel.-Nr.-vereinheitlichen-Funktion testen."), this);
    lblInfo->setObjectName(QStringLiteral("lblInfo"));
    lblInfo->setWordWrap(true);
    layout->addWidget(lblInfo);

    auto *lblTelNr = new QLabel(QStringLiteral("Telefonnummer"), this);
    lblTelNr->setObjectName(QStringLiteral("lblTelNr"));
    layout->addWidget(lblTelNr);
    m_txtTelNr = new sevText(this);
    m_txtTelNr->setObjectName(QStringLiteral("txtTelNr"));
    m_txtTelNr->setList(QStringLiteral("Tel.dat"), QStringLiteral("Namen"), true);
    lblTelNr->setBuddy(m_txtTelNr);
    layout->addWidget(m_txtTelNr);

    auto *frmOut = new QGroupBox(QStringLiteral("Ausgabe:"), this);
    frmOut->setObjectName(QStringLiteral("frmOut"));
    auto *outLayout = new QVBoxLayout(frmOut);
    m_lblAusgabe = new QLabel(frmOut);
    m_lblAusgabe->setObjectName(QStringLiteral("lblAusgabe"));
    m_lblAusgabe->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_lblAusgabe->setMinimumHeight(m_lblAusgabe->fontMetrics().height() + 4);
    outLayout->addWidget(m_lblAusgabe);
    layout->addWidget(frmOut);

    auto *cmdClose = new QPushButton(QStringLiteral("Schließen"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(cmdClose, 0, Qt::AlignRight);

    connect(m_txtTelNr, &sevText::textChanged, this, &frmTelPruef::numberChanged);
    setMinimumWidth(420);
}

void frmTelPruef::numberChanged()
{
    bool changed = false;
    const QString input = m_txtTelNr->text().trimmed();
    m_lblAusgabe->setText(StandardTelNr(input, changed));
    // Green: the normaliser would change the number. Trailing blanks of the
    // result (a number that ends after its area code) do not count.
    QPalette palette = m_lblAusgabe->palette();
    palette.setColor(QPalette::WindowText, m_lblAusgabe->text().trimmed() != input ? kChanged : kUnchanged);
    m_lblAusgabe->setPalette(palette);
}

void OpenNumberTest(QWidget *parent)
{
    frmTelPruef dialog(parent);
    dialog.exec();
}
