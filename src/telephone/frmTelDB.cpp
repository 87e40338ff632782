#include "telephone/frmTelDB.h"

#include "controls/DataGrid.h"
#include "controls/Help.h"
#include "frame/GlobalFunctions.h"
#include "telephone/TelTables.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmTelDB::frmTelDB(QWidget *parent)
    : QDialog(parent)
    , m_GridCountryArea(new DataGrid(this))
    , m_GridNDDP(new DataGrid(this))
{
    setObjectName(QStringLiteral("frmTelDB"));
    setWindowTitle(QStringLiteral("Telefonnummer Optionen"));
    auto *layout = new QVBoxLayout(this);

    auto *frmCaution = new QGroupBox(QStringLiteral("Achtung!"), this);
    frmCaution->setObjectName(QStringLiteral("frmCaution"));
    auto *caution = new QVBoxLayout(frmCaution);
    auto *lblCautionDes = new QLabel(QStringLiteral("Änderung an den Tabellen werden sofort gespeichert!"), frmCaution);
    lblCautionDes->setObjectName(QStringLiteral("lblCautionDes"));
    caution->addWidget(lblCautionDes);
    layout->addWidget(frmCaution);

    m_GridCountryArea->setObjectName(QStringLiteral("GridCountryArea"));
    m_GridCountryArea->setToolTip(QStringLiteral("Ortvorwahlen ohne nationales Präfix; eine leere Ortvorwahl "
                                                 "kennzeichnet ein Land ohne Ortvorwahlen."));
    m_GridNDDP->setObjectName(QStringLiteral("GridNDDP"));
    m_GridNDDP->setToolTip(QStringLiteral("Ein leeres nationales Präfix bedeutet: das Land hat keines."));
    for (DataGrid *grid : {m_GridCountryArea, m_GridNDDP}) {
        grid->setColumnCaption(QStringLiteral("CountryCode"), QStringLiteral("Ländervorwahl"));
        grid->setColumnCaption(QStringLiteral("AreaCode"), QStringLiteral("Ortvorwahl"));
        grid->setColumnCaption(QStringLiteral("NationalDDPrefix"), QStringLiteral("Nationales Präfix"));
        connect(grid, &DataGrid::beforeDelete, this, [](bool &cancel) {
            cancel = ShowMessage(QStringLiteral("Möchten Sie den Datensatz löschen?"), MsgQuestion,
                                 QStringLiteral("Frage?")) != AnswerYes;
        });
        connect(grid, &DataGrid::addFailed, this, [] {
            ShowMessage(QStringLiteral("Fehler beim Hinzufügen der neuen Datenzeile, prüfen Sie ob die Daten bereits "
                                       "vorhanden sind."), MsgStop, QStringLiteral("Fehler!"));
        });
        connect(grid, &DataGrid::writeFailed, this, [] {
            ShowMessage(QStringLiteral("Die Änderung konnte nicht gespeichert werden. Prüfen Sie, ob die Daten bereits "
                                       "vorhanden sind und ob die Ländervorwahl ausgefüllt ist."),
                        MsgStop, QStringLiteral("Fehler!"));
        });
        // The normaliser reads the tables anew from its next number on.
        connect(grid, &DataGrid::written, this, [] { NotifyTelTablesChanged(); });
    }

    auto *grids = new QHBoxLayout;
    grids->addWidget(gridFrame(QStringLiteral("frmCountryCodes"), QStringLiteral("Länder- und Ortvorwahlen"),
                               m_GridCountryArea, QStringLiteral("cmdNew1")), 1);
    grids->addWidget(gridFrame(QStringLiteral("frmNDDP"), QStringLiteral("Nationale Präfixe"), m_GridNDDP,
                               QStringLiteral("cmdNew2")), 1);
    layout->addLayout(grids, 1);

    auto *cmdHelp = new QPushButton(QStringLiteral("Hilfe"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    auto *cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdHelp);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    layout->addLayout(buttons);
    connect(cmdHelp, &QPushButton::clicked, this, [this] { SendHelpKey(this); });
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    resize(720, 540);

    bindGrids();
}

frmTelDB::~frmTelDB()
{
    // The grids' queries go before their connection.
    delete m_GridCountryArea;
    delete m_GridNDDP;
}

QWidget *frmTelDB::gridFrame(const QString &name, const QString &caption, DataGrid *grid, const QString &newButton)
{
    auto *frame = new QGroupBox(caption, this);
    frame->setObjectName(name);
    auto *layout = new QVBoxLayout(frame);
    grid->setParent(frame);
    layout->addWidget(grid, 1);
    auto *cmdNew = new QPushButton(QStringLiteral("Neu"), frame);
    cmdNew->setAutoDefault(false);
    cmdNew->setObjectName(newButton);
    connect(cmdNew, &QPushButton::clicked, grid, &DataGrid::addRow);
    layout->addWidget(cmdNew, 0, Qt::AlignLeft);
    return frame;
}

void frmTelDB::bindGrids()
{
    QString error;
    try {
        m_connection = std::make_unique<ReferenceDbConnection>(true);
        if (m_GridCountryArea->bind(m_connection->database(), QStringLiteral("T_CountryAndAreaCodes"),
                                    QStringLiteral("CountryCode"), error)
            && m_GridNDDP->bind(m_connection->database(), QStringLiteral("T_CountryCodes"),
                                QStringLiteral("CountryCode"), error))
            return;
    } catch (const TelNrError &failure) {
        ShowError(failure.description, failure.number, 2302);
        return;
    }
    ShowError(error, TelNrErrors::Database, 2302);
}

void frmTelDB::done(int result)
{
    m_GridCountryArea->finishNewRow();
    m_GridNDDP->finishNewRow();
    QDialog::done(result);
}

void OpenTelephoneTables(QWidget *parent)
{
    frmTelDB dialog(parent);
    dialog.exec();
}
