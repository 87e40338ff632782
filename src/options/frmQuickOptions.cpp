#include "options/frmQuickOptions.h"

#include "controls/SettingsBinding.h"
#include "options/OptionsLogic.h"
#include "options/frmOptionFields.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QLabel *label(const QString &name, const QString &text, QWidget *parent)
{
    auto *l = new QLabel(text, parent);
    l->setObjectName(name);
    l->setWordWrap(true);
    return l;
}

} // namespace

frmQuickOptions::frmQuickOptions(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmQuickOptions"));
    setWindowTitle(QStringLiteral("Optionen-Assistent"));
    auto *pages = new QWidget(this);
    auto *pagesLayout = new QVBoxLayout(pages);
    for (int i = 0; i < 4; ++i) {
        m_frMain[i] = new QFrame(pages);
        m_frMain[i]->setObjectName(QStringLiteral("frMain(%1)").arg(i));
        pagesLayout->addWidget(m_frMain[i]);
    }

    // Welcome
    auto *welcome = new QVBoxLayout(m_frMain[0]);
    QLabel *title = label(QStringLiteral("sevLabel4"), QStringLiteral("Willkommen zum Optionen-Assistent..."), m_frMain[0]);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.4);
    big.setBold(true);
    title->setFont(big);
    welcome->addWidget(title);
    welcome->addWidget(label(QStringLiteral("sevLabel5"),
                             QStringLiteral("Mit diesem Assistenten können Sie die wichtigsten Einstellungen für die "
                                            "Varnex vornehmen. Viele weitere Einstellungen finden Sie in den Optionen."),
                             m_frMain[0]));
    welcome->addStretch();

    // Telephone
    auto *tel = new QVBoxLayout(m_frMain[1]);
    tel->addWidget(label(QStringLiteral("sevLabel2"),
                         QStringLiteral("Wählen Sie hier Ihre persönlichen Telefonnummern Einstellungen..."), m_frMain[1]));
    auto *country = new QGroupBox(QStringLiteral("Ländereinstellung"), m_frMain[1]);
    auto *grid = new QGridLayout(country);
    grid->addWidget(new QLabel(QStringLiteral("Schnellauswahl"), country), 0, 0);
    QComboBox *cmbCountrySelect = CreateCountrySelectBox(country);
    grid->addWidget(cmbCountrySelect, 1, 0);
    QLineEdit *countryCode = CreateDigitsField(QStringLiteral("txtCountryCode"), 3, QStringLiteral("\\d{0,3}"), country);
    QLineEdit *iddp = CreateDigitsField(QStringLiteral("txtIDDP"), 3, QStringLiteral("\\d{0,3}"), country);
    QLineEdit *nddp = CreateDigitsField(QStringLiteral("txtNDDP"), 3, QStringLiteral("\\d{0,3}"), country);
    grid->addWidget(new QLabel(QStringLiteral("Eigene Ländervorwahl:"), country), 0, 1);
    grid->addWidget(countryCode, 0, 2);
    grid->addWidget(new QLabel(QStringLiteral("Eigenes internationales Präfix:"), country), 1, 1);
    grid->addWidget(iddp, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Eigenes nationales Präfix:"), country), 2, 1);
    grid->addWidget(nddp, 2, 2);
    grid->setColumnStretch(3, 1);
    tel->addWidget(country);
    connect(cmbCountrySelect, &QComboBox::currentTextChanged, this, [=](const QString &entry) {
        if (const auto preset = CountryPresetFor(entry)) {
            countryCode->setText(preset->countryCode);
            iddp->setText(preset->iddp);
            nddp->setText(preset->nddp);
        }
    });
    auto *extension = new QGroupBox(QStringLiteral("Durchwahltrennzeichen"), m_frMain[1]);
    auto *extLayout = new QHBoxLayout(extension);
    QLabel *extText = new QLabel(QStringLiteral("Geben Sie hier ihr bis jetzt verwendetes Trennzeichen für die Durchwahl ein."),
                                 extension);
    extText->setWordWrap(true);
    extLayout->addWidget(extText, 1);
    extLayout->addWidget(CreateDigitsField(QStringLiteral("txtDurchwahlTrenn"), 1, QStringLiteral("[0-9-]?"), extension));
    tel->addWidget(extension);
    tel->addStretch();

    // Attachments
    auto *att = new QVBoxLayout(m_frMain[2]);
    att->addWidget(label(QStringLiteral("sevLabel1"),
                         QStringLiteral("In welchem Ordner sollen die exportierten Anlagen gespeichert werden?"), m_frMain[2]));
    att->addWidget(CreateFolderField(QStringLiteral("txtAttPath"), m_frMain[2]));
    att->addStretch();

    // Name layout
    auto *names = new QVBoxLayout(m_frMain[3]);
    names->addWidget(label(QStringLiteral("sevLabel7"),
                           QStringLiteral("Wählen Sie dass Layout für die Namen korrigieren - Funktion..."), m_frMain[3]));
    names->addWidget(label(QStringLiteral("sevLabel6"), QStringLiteral("Layout für Speichern unter - Feld"), m_frMain[3]));
    auto *layoutField = new QComboBox(m_frMain[3]);
    layoutField->setObjectName(QStringLiteral("cmbFileAsLayoutEx"));
    layoutField->setEditable(true);
    layoutField->setCompleter(nullptr); // a typed layout is stored as typed
    names->addWidget(layoutField);
    names->addWidget(label(QStringLiteral("sevLabel8"),
                           QStringLiteral("Hinweis: In den Optionen können Sie auch ein individuelles Format festlegen."),
                           m_frMain[3]));
    names->addStretch();

    m_cmdBack = new QPushButton(QStringLiteral("&Zurück"), this);
    m_cmdBack->setObjectName(QStringLiteral("cmdBack"));
    m_cmdForward = new QPushButton(QStringLiteral("&Weiter"), this);
    m_cmdForward->setObjectName(QStringLiteral("cmdForward"));
    m_cmdForward->setDefault(true);
    connect(m_cmdBack, &QPushButton::clicked, this, &frmQuickOptions::clickBack);
    connect(m_cmdForward, &QPushButton::clicked, this, &frmQuickOptions::clickForward);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cmdBack);
    buttons->addWidget(m_cmdForward);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(pages, 1);
    layout->addLayout(buttons);

    // Loading: the stored values first, then the fixed layout entries (the
    // stored layout stays the field's text).
    LoadBoundSettings(this);
    const QString storedLayout = layoutField->currentText();
    layoutField->addItems({QStringLiteral("Nachname, Vorname"), QStringLiteral("Vorname Nachname Namenszusatz"),
                           QStringLiteral("Firma"), QStringLiteral("Nachname, Vorname (Firma)"),
                           QStringLiteral("Firma (Nachname, Vorname)")});
    layoutField->setCurrentText(storedLayout);
    m_cmdBack->setEnabled(false);
    showStep();
    resize(560, 380);
}

void frmQuickOptions::showStep()
{
    for (int i = 0; i < int(m_frMain.size()); ++i)
        m_frMain[i]->setVisible(i == m_step);
}

void frmQuickOptions::clickForward()
{
    ++m_step;
    if (m_step > 3) {
        SaveBoundSettings(this);
        accept();
        return;
    }
    showStep();
    if (m_step == 3)
        m_cmdForward->setText(QStringLiteral("&Fertigstellen"));
    if (m_step > 0)
        m_cmdBack->setEnabled(true);
}

void frmQuickOptions::clickBack()
{
    --m_step;
    showStep();
    if (m_step == 0)
        m_cmdBack->setEnabled(false);
    m_cmdForward->setText(QStringLiteral("&Weiter"));
}
