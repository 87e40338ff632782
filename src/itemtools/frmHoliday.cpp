#include "itemtools/frmHoliday.h"

#include "frame/GlobalFunctions.h"
#include "itemtools/HolidayFunctions.h"
#include "itemtools/HolidayTables.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const char kLegend[] =
    "Legende: AG = Aargau, AI = Appenzell Innerrhoden, AR = Appenzell Ausserrhoden, BE = Bern, BL = Basel- "
    "Landschaft, BS = Basel-Stadt, FR = Fribourg/Freiburg, GE = Genève, GL = Glarus, GR = Graubünden, JU = Jura, "
    "LU = Luzern, NE = Neuchâtel, NW = Nidwalden, OW = Obwalden, SG = St.Gallen, SH = Schaffhausen, "
    "SO = Solothurn, SZ = Schwyz, TG = Thurgau, TI = Ticino, UR = Uri, VD = Vaud, VS = Wallis/Valais, ZG = Zug, "
    "ZH = Zürich, FL = Fürstentum Liechtenstein";

QComboBox *textWithList(const QString &name, QWidget *parent)
{
    auto *field = new QComboBox(parent);
    field->setObjectName(name);
    field->setEditable(true);
    // Typed text is not added to the list; the list is the program's. No
    // completion either: "B" must stay "B", not become "BB" and insert
    // Brandenburg's holidays.
    field->setInsertPolicy(QComboBox::NoInsert);
    field->setCompleter(nullptr);
    return field;
}

QGroupBox *frameAround(const QString &name, const QString &caption, QWidget *content, QWidget *parent)
{
    auto *frame = new QGroupBox(caption, parent);
    frame->setObjectName(name);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(content);
    content->setParent(frame);
    return frame;
}

// Replaces the entries of the list and keeps the text as it stands.
void setEntries(QComboBox *field, QStringList entries, bool sorted)
{
    const QString text = field->currentText();
    const QSignalBlocker quiet(field);
    if (sorted)
        entries.sort(Qt::CaseInsensitive);
    field->clear();
    field->addItems(entries);
    field->setCurrentIndex(-1);
    field->setEditText(text);
}

} // namespace

frmHoliday::frmHoliday(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmHoliday"));
    setWindowTitle(QStringLiteral("Schulferien einfügen"));

    m_txtCountry = textWithList(QStringLiteral("txtCountry"), this);
    m_txtCountry->setEditText(QStringLiteral("DE"));
    m_txtState = textWithList(QStringLiteral("txtState"), this);
    auto *sevFrame2 = frameAround(QStringLiteral("sevFrame2"),
                                  QStringLiteral("Länderkürzel (DE=Deutschland, CH=Schweiz)"), m_txtCountry, this);
    auto *sevFrame1 = frameAround(QStringLiteral("sevFrame1"), QStringLiteral("Bundesland / Kanton"), m_txtState, this);

    auto *sevLabel1 = new QLabel(QString::fromUtf8(kLegend), this);
    sevLabel1->setObjectName(QStringLiteral("sevLabel1"));
    sevLabel1->setWordWrap(true);
    sevLabel1->setTextFormat(Qt::PlainText);

    m_cmdEinfuegen = new QPushButton(QStringLiteral("Einfügen"), this);
    m_cmdEinfuegen->setObjectName(QStringLiteral("cmdEinfügen"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cmdEinfuegen);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(sevFrame2);
    layout->addWidget(sevFrame1);
    layout->addWidget(sevLabel1);
    layout->addStretch();
    layout->addLayout(buttons);
    resize(460, 330);

    // Loading: the calendars first (an empty one is welcome), then the lists.
    m_selection = CollectFolders(QString::fromLatin1(FolderKind::OnlyAppointment), true);
    if (!m_selection.ok)
        m_cmdEinfuegen->setEnabled(false);
    FillStates();
    setEntries(m_txtCountry, {QStringLiteral("DE"), QStringLiteral("CH")}, false);

    connect(m_txtCountry, &QComboBox::editTextChanged, this, &frmHoliday::FillStates);
    connect(m_cmdEinfuegen, &QPushButton::clicked, this, &frmHoliday::cmdEinfuegen_Click);
}

void frmHoliday::FillStates()
{
    try {
        HolidayTables tables;
        setEntries(m_txtState, tables.states(m_txtCountry->currentText()), true);
    } catch (const HolidayError &e) {
        ShowError(e.description, e.number, 1302);
    }
}

void frmHoliday::cmdEinfuegen_Click()
{
    InsertHolidays(m_txtState->currentText(), m_txtCountry->currentText(), m_selection.folders);
}
