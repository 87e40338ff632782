// The five pages of the options dialog, built control by control; the
// controls carry the names their settings are bound by.
#include "options/frmOptions.h"

#include "controls/SettingsBinding.h"
#include "frame/GlobalFunctions.h"
#include "names/NameCorrectionFunctions.h"
#include "controls/Help.h"
#include "options/frmOptionFields.h"
#include "frame/RegistryFunctions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace {

std::function<void(QWidget *)> s_openFormat;
std::function<void(QWidget *)> s_openTables;

struct BoxCaption {
    const char *name;
    const char *caption;
};

// The compared fields of the duplicate search, one list per item type in tab order.
const QList<QList<BoxCaption>> &duplicateBoxes()
{
    static const QList<QList<BoxCaption>> boxes{
        {{"KontakteLastName", "Nachname"}, {"KontakteFirstName", "Vorname"},
         {"KontakteCompanyName", "Firmenname"}, {"KontakteFileAs", "SpeichernUnter"},
         {"KontakteBusinessTelephoneNumber", "Telefon geschäftlich"},
         {"KontakteHomeTelephoneNumber", "Telefon privat"},
         {"KontakteMobileTelephoneNumber", "Telefon mobil"}, {"KontakteEmail1Address", "Email"},
         {"KontakteHomeAddress", "Adresse privat"}, {"KontakteBusinessAddress", "Adresse geschäftlich"},
         {"KontakteFieldName", "benutzerdefiniertes Feld"}},
        {{"TermineStart", "Start"}, {"TermineEnd", "Ende"}, {"TermineSubject", "Betreff"},
         {"TermineAllDayEvent", "Ganztägig"}, {"TermineBusyStatus", "Belegt Status"},
         {"TermineBody", "Beschreibung"}},
        {{"EmailBody", "Text"}, {"EmailSenderName", "Absender"}, {"EmailSubject", "Betreff"},
         {"EmailTo", "Empfänger"}, {"EmailSentOn", "Sendezeit"}, {"EmailReceivedTime", "Empfangszeit"},
         {"EmailAttachments", "Anlagenanzahl"}},
        {{"NotizenBody", "Text"}, {"NotizenColor", "Farbe"}},
        {{"AufgabenBody", "Beschreibung"}, {"AufgabenOwner", "Zuständig"},
         {"AufgabenStartDate", "Beginn"}, {"AufgabenSubject", "Betreff"}},
        {{"JournalBody", "Beschreibung"}, {"JournalDuration", "Dauer"}, {"JournalStart", "Start"},
         {"JournalSubject", "Betreff"}},
    };
    return boxes;
}

QLabel *label(const QString &name, const QString &text, QWidget *parent)
{
    auto *l = new QLabel(text, parent);
    l->setObjectName(name);
    l->setWordWrap(true);
    return l;
}

QCheckBox *checkBox(const QString &name, const QString &text, QWidget *parent)
{
    auto *c = new QCheckBox(text, parent);
    c->setObjectName(name);
    return c;
}

QRadioButton *option(const QString &name, const QString &text, QWidget *parent)
{
    auto *o = new QRadioButton(text, parent);
    o->setObjectName(name);
    return o;
}

} // namespace

void frmOptions::setTelephoneDialogs(std::function<void(QWidget *)> openFormat,
                                     std::function<void(QWidget *)> openTables)
{
    s_openFormat = std::move(openFormat);
    s_openTables = std::move(openTables);
}

void frmOptions::buildDuplicatePage(QFrame *page)
{
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(label(QStringLiteral("lblDupDescription"),
                            QStringLiteral("Welche Eigenschaften sollen bei der Duplikatsuche verwendet werden?"), page));
    m_tabStrip1 = new QTabBar(page);
    m_tabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    for (const QString &caption : DuplicateTypeCaptions())
        m_tabStrip1->addTab(caption);
    layout->addWidget(m_tabStrip1);

    auto *typePages = new QWidget(page);
    // A stack: it is as tall as the tallest page, so the rest of the page
    // does not jump when the item type changes.
    auto *typeLayout = new QStackedLayout(typePages);
    typeLayout->setContentsMargins(0, 0, 0, 0);
    for (int t = 0; t < 6; ++t) {
        QFrame *tab = new QFrame(typePages);
        tab->setObjectName(QStringLiteral("frmTab(%1)").arg(t));
        tab->setProperty("Tag", QString::number(t));
        tab->setFrameShape(QFrame::StyledPanel);
        auto *grid = new QGridLayout(tab);
        const auto &boxes = duplicateBoxes().at(t);
        for (int b = 0; b < boxes.size(); ++b) {
            QCheckBox *box = checkBox(QStringLiteral("chk") + QString::fromUtf8(boxes[b].name),
                                      QString::fromUtf8(boxes[b].caption), tab);
            grid->addWidget(box, b % 6, (b / 6) * 2);
        }
        if (t == 0) {
            // The user field's name stands beside its box.
            QWidget *field = CreateListField(QStringLiteral("txtKontakteFieldNameStr"),
                                             QStringLiteral("ContactUserField.dat"), QStringLiteral("Namen"), tab);
            grid->addWidget(field, (boxes.size() - 1) % 6, 3);
        }
        grid->setColumnStretch(4, 1);
        grid->setRowStretch(6, 1);
        m_frmTab[t] = tab;
        typeLayout->addWidget(tab);
    }
    layout->addWidget(typePages);
    connect(m_tabStrip1, &QTabBar::currentChanged, this, &frmOptions::showTypePage);

    auto *prio = new QGroupBox(QStringLiteral("Elemente bevorzugt beibehalten"), page);
    prio->setObjectName(QStringLiteral("frmDupPrio"));
    auto *prioGrid = new QGridLayout(prio);
    prioGrid->addWidget(label(QStringLiteral("lblLogicDup"),
                              QStringLiteral("Wählen Sie, welches Element bei der Duplikatsuche nicht markiert werden soll?"),
                              prio), 0, 0, 1, 3);
    prioGrid->addWidget(label(QStringLiteral("lblPrio"), QStringLiteral("Priorität"), prio), 1, 2);
    prioGrid->addWidget(checkBox(QStringLiteral("chkMasterFolder"), QStringLiteral("aus markiertem Ordner"), prio), 2, 0);
    prioGrid->addWidget(checkBox(QStringLiteral("chkTerminSerie"), QStringLiteral("Serienelemente"), prio), 3, 0);
    auto *ageRow = new QWidget(prio);
    auto *ageLayout = new QHBoxLayout(ageRow);
    ageLayout->setContentsMargins(0, 0, 0, 0);
    ageLayout->addWidget(option(QStringLiteral("chkOldDel"), QStringLiteral("ältestes Element"), ageRow));
    ageLayout->addWidget(option(QStringLiteral("chkOldDelDis"), QStringLiteral("jüngstes Element"), ageRow));
    ageLayout->addStretch();
    prioGrid->addWidget(ageRow, 4, 0);
    for (int i = 0; i < 3; ++i) {
        m_sldPrio[i] = new QSlider(Qt::Horizontal, prio);
        m_sldPrio[i]->setObjectName(QStringLiteral("sldPrio(%1)").arg(i));
        m_sldPrio[i]->setRange(0, 2);
        m_sldPrio[i]->setPageStep(1);
        m_sldPrio[i]->setTickPosition(QSlider::TicksBelow);
        m_sldPrio[i]->setFixedWidth(120);
        prioGrid->addWidget(m_sldPrio[i], 2 + i, 2);
        connect(m_sldPrio[i], &QSlider::valueChanged, this, [this, i] { sliderChanged(i); });
    }
    prioGrid->setColumnStretch(1, 1);
    // Tab goes row by row: each criterion, then its slider.
    const QList<QWidget *> prioRows{prio->findChild<QWidget *>(QStringLiteral("chkMasterFolder")), m_sldPrio[0],
                                    prio->findChild<QWidget *>(QStringLiteral("chkTerminSerie")), m_sldPrio[1],
                                    prio->findChild<QWidget *>(QStringLiteral("chkOldDel")),
                                    prio->findChild<QWidget *>(QStringLiteral("chkOldDelDis")), m_sldPrio[2]};
    for (qsizetype i = 1; i < prioRows.size(); ++i)
        QWidget::setTabOrder(prioRows.at(i - 1), prioRows.at(i));

    auto *dupOpt = new QGroupBox(QStringLiteral("Duplikate..."), page);
    dupOpt->setObjectName(QStringLiteral("fmDupOpt"));
    auto *optLayout = new QVBoxLayout(dupOpt);
    optLayout->addWidget(option(QStringLiteral("chkDupDel"), QStringLiteral("löschen"), dupOpt));
    optLayout->addWidget(option(QStringLiteral("chkMoveToFolder"), QStringLiteral("in Unterordner verschieben"), dupOpt));
    optLayout->addWidget(option(QStringLiteral("chkDupEntryIDSave"),
                                QStringLiteral("nicht entfernen, sondern die Outlook ID des bevorzugten Elementes in "
                                               "diesem benutzerdef. Feld eintragen:"), dupOpt));
    optLayout->addWidget(CreateListField(QStringLiteral("txtFieldNameEntryID"), QStringLiteral("NameEntryID.dat"),
                                         QStringLiteral("Namen"), dupOpt));
    for (QRadioButton *o : dupOpt->findChildren<QRadioButton *>())
        o->setAutoExclusive(true);

    auto *row = new QHBoxLayout;
    row->addWidget(prio, 1);
    row->addWidget(dupOpt, 1);
    layout->addLayout(row);
    layout->addWidget(checkBox(QStringLiteral("chkFolderInside"),
                               QStringLiteral("nur innerhalb des Ordners nach Duplikaten suchen"), page));
    layout->addStretch();
    showTypePage(0);
}

void frmOptions::buildTelephonePage(QFrame *page)
{
    auto *layout = new QVBoxLayout(page);
    auto *quick = new QGroupBox(QStringLiteral("Ländereinstellung"), page);
    quick->setObjectName(QStringLiteral("frTelQuick"));
    auto *grid = new QGridLayout(quick);
    grid->addWidget(label(QStringLiteral("lblTelQuick"), QStringLiteral("Schnellauswahl"), quick), 0, 0);
    QComboBox *cmbCountrySelect = CreateCountrySelectBox(quick);
    grid->addWidget(cmbCountrySelect, 1, 0);
    connect(cmbCountrySelect, &QComboBox::textActivated, this, &frmOptions::countrySelected);

    m_txtCountryCode = CreateDigitsField(QStringLiteral("txtCountryCode"), 3, QStringLiteral("\\d{0,3}"), quick);
    m_txtIDDP = CreateDigitsField(QStringLiteral("txtIDDP"), 3, QStringLiteral("\\d{0,3}"), quick);
    m_txtNDDP = CreateDigitsField(QStringLiteral("txtNDDP"), 3, QStringLiteral("\\d{0,3}"), quick);
    QLineEdit *txtDurchwahlTrenn = CreateDigitsField(QStringLiteral("txtDurchwahlTrenn"), 1, QStringLiteral("[0-9-]?"), quick);
    const QList<QPair<QString, QLineEdit *>> rows{
        {QStringLiteral("Eigene Ländervorwahl"), m_txtCountryCode},
        {QStringLiteral("Eigenes internationales Präfix"), m_txtIDDP},
        {QStringLiteral("Eigenes nationales Präfix"), m_txtNDDP},
        {QStringLiteral("Eigenes Durchwahltrennzeichen"), txtDurchwahlTrenn}};
    for (int r = 0; r < rows.size(); ++r) {
        grid->addWidget(new QLabel(rows[r].first, quick), r, 1);
        grid->addWidget(rows[r].second, r, 2);
    }
    grid->setColumnStretch(3, 1);
    layout->addWidget(quick);

    layout->addWidget(checkBox(QStringLiteral("chkHideFax"), QStringLiteral("Faxnummern im Adressbuch verstecken"), page));
    layout->addWidget(checkBox(QStringLiteral("chkPlus"),
                               QStringLiteral("Ländervorwahl auch bei Rufnummern ohne internationales Präfix erkennen"), page));
    layout->addWidget(checkBox(QStringLiteral("chkSchweizKonv"),
                               QStringLiteral("Alte schweizer Vorwahl (1) in (44) umwandeln"), page));
    layout->addWidget(checkBox(QStringLiteral("chkIgnoreCountryCode"),
                               QStringLiteral("vorhandene Ländervorwahl ignorieren"), page));

    m_frFilterTel = new QGroupBox(QStringLiteral("Filter aktiv"), page);
    m_frFilterTel->setObjectName(QStringLiteral("frFilterTel"));
    m_frFilterTel->setCheckable(true);
    auto *filter = new QGridLayout(m_frFilterTel);
    filter->addWidget(checkBox(QStringLiteral("chkFilterCountry"), QStringLiteral("Ländervorwahl"), m_frFilterTel), 0, 0);
    filter->addWidget(CreateDigitsField(QStringLiteral("txtFilterCountryStr"), 4, QStringLiteral("\\d{0,4}"), m_frFilterTel), 0, 1);
    filter->addWidget(checkBox(QStringLiteral("chkFilterArea"), QStringLiteral("Ortvorwahl (ohne nationales Präfix)"),
                               m_frFilterTel), 1, 0);
    filter->addWidget(CreateDigitsField(QStringLiteral("txtFilterAreaStr"), 10, QStringLiteral("\\d{0,10}"), m_frFilterTel), 1, 1);
    filter->addWidget(checkBox(QStringLiteral("chkCountryFilter"), QStringLiteral("Land"), m_frFilterTel), 2, 0);
    filter->addWidget(CreateListField(QStringLiteral("cmbCountryFilterText"), QStringLiteral("CountryFilter.dat"),
                                      QStringLiteral("Länder"), m_frFilterTel), 2, 1);
    filter->setColumnStretch(2, 1);
    layout->addWidget(m_frFilterTel);
    // Only a click on the frame's box enables the country name filter.
    connect(m_frFilterTel, &QGroupBox::clicked, this, [this](bool on) { setFilterEnabled(on, true); });

    auto *cmdTelOptions = new QPushButton(QStringLiteral("benutzerdefiniertes Telefonnummernformat..."), page);
    cmdTelOptions->setObjectName(QStringLiteral("cmdTelOptions"));
    auto *cmdTelDB = new QPushButton(QStringLiteral("Tabellen für Vorwahlen..."), page);
    cmdTelDB->setObjectName(QStringLiteral("cmdTelDB"));
    connect(cmdTelOptions, &QPushButton::clicked, this, [this] { if (s_openFormat) s_openFormat(this); });
    connect(cmdTelDB, &QPushButton::clicked, this, [this] { if (s_openTables) s_openTables(this); });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdTelOptions);
    buttons->addWidget(cmdTelDB);
    buttons->addStretch();
    layout->addLayout(buttons);
    layout->addStretch();
}

void frmOptions::buildAttachmentPage(QFrame *page)
{
    auto *layout = new QGridLayout(page);
    layout->addWidget(label(QStringLiteral("lblFolderAtt"), QStringLiteral("Ordner für exportierte Anlagen"), page), 0, 0, 1, 3);
    layout->addWidget(CreateFolderField(QStringLiteral("txtAttPath"), page), 1, 0, 1, 3);
    layout->addWidget(label(QStringLiteral("lblSizeAtt"),
                            QStringLiteral("Nur Anlagen exportieren die mindestens diese Größe haben:"), page), 2, 0);
    layout->addWidget(CreateNumberField(QStringLiteral("cmbAttSize"), 999999, page), 2, 1);
    layout->addWidget(new QLabel(QStringLiteral("kB"), page), 2, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(3, 1);
}

void frmOptions::buildNamePage(QFrame *page)
{
    auto *layout = new QGridLayout(page);
    m_optSaveAs = option(QStringLiteral("optSaveAs"), QString(), page);
    m_optBetreff = option(QStringLiteral("optBetreff"), QString(), page);
    m_cmbFileAsLayoutEx = CreateListField(QStringLiteral("cmbFileAsLayoutEx"), QStringLiteral("FileAsLayoutEx.dat"),
                                          QStringLiteral("Layout"), page);
    m_cmbSubjectLayout = CreateListField(QStringLiteral("cmbSubjectLayout"), QStringLiteral("SubjectLayoutEx.dat"),
                                         QStringLiteral("Layout"), page);
    layout->addWidget(m_optSaveAs, 0, 0);
    QLabel *fileAsLabel = label(QStringLiteral("sevLabel3"), QStringLiteral("Layout für Speichern unter"), page);
    QLabel *subjectLabel = label(QStringLiteral("sevLabel4"), QStringLiteral("Layout für Betreff"), page);
    fileAsLabel->setWordWrap(false);
    subjectLabel->setWordWrap(false);
    layout->addWidget(fileAsLabel, 0, 1);
    layout->addWidget(m_cmbFileAsLayoutEx, 0, 2);
    layout->addWidget(m_optBetreff, 1, 0);
    layout->addWidget(subjectLabel, 1, 1);
    layout->addWidget(m_cmbSubjectLayout, 1, 2);
    // Tab goes row by row: the option, then its layout field.
    QWidget::setTabOrder(m_optSaveAs, m_cmbFileAsLayoutEx->focusProxy());
    QWidget::setTabOrder(m_cmbFileAsLayoutEx->focusProxy(), m_optBetreff);
    QWidget::setTabOrder(m_optBetreff, m_cmbSubjectLayout->focusProxy());

    // The insert buttons; index 5 does not exist.
    struct Insert {
        int index;
        const char *caption;
        const char *tag;
    };
    static const Insert inserts[] = {
        {0, "(A)nrede", "Anrede"}, {1, "(V)orname", "Vorname"}, {2, "(W)eitere Vorn.", "weitere Vorn."},
        {3, "(N)achname", "Nachname"}, {4, "Namens(Z)usatz", "Namenszusatz"}, {16, "(F)irma", "Firma"},
        {6, "-", "-"}, {7, "/", "/"}, {8, ",", ","}, {9, ";", ";"},
        {10, "(", "("}, {11, "[", "["}, {12, "{", "{"}, {13, ")", ")"}, {14, "]", "]"}, {15, "}", "}"},
    };
    auto *insertBox = new QWidget(page);
    auto *insertRows = new QVBoxLayout(insertBox);
    insertRows->setContentsMargins(0, 0, 0, 0);
    auto *nameRow = new QHBoxLayout;
    auto *charRow = new QHBoxLayout;
    insertRows->addLayout(nameRow);
    insertRows->addLayout(charRow);
    for (const Insert &insert : inserts) {
        auto *button = new QPushButton(QString::fromUtf8(insert.caption), insertBox);
        button->setObjectName(QStringLiteral("cmdZeichen(%1)").arg(insert.index));
        button->setProperty("Tag", QString::fromUtf8(insert.tag));
        const bool isCharacter = insert.index >= 6 && insert.index <= 15;
        if (isCharacter)
            button->setFixedWidth(32);
        (isCharacter ? charRow : nameRow)->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this, button] {
            QWidget *field = chosenLayoutField();
            field->setProperty("text", chosenLayoutEditor().insert(field->property("text").toString(),
                                                                    button->property("Tag").toString()));
        });
    }
    nameRow->addStretch();
    charRow->addStretch();
    auto *cmdDelLayout = new QPushButton(style()->standardIcon(QStyle::SP_DialogDiscardButton), QString(), insertBox);
    cmdDelLayout->setObjectName(QStringLiteral("cmdDelLayout"));
    cmdDelLayout->setToolTip(QStringLiteral("Layout leeren"));
    auto *roCommand1 = new QPushButton(style()->standardIcon(QStyle::SP_ArrowBack), QString(), insertBox);
    roCommand1->setObjectName(QStringLiteral("roCommand1"));
    roCommand1->setToolTip(QStringLiteral("Letzte Einfügung zurücknehmen"));
    charRow->addWidget(cmdDelLayout);
    charRow->addWidget(roCommand1);
    connect(cmdDelLayout, &QPushButton::clicked, this, [this] { chosenLayoutField()->setProperty("text", QString()); });
    connect(roCommand1, &QPushButton::clicked, this, [this] {
        QWidget *field = chosenLayoutField();
        field->setProperty("text", chosenLayoutEditor().stepBack(field->property("text").toString()));
    });
    layout->addWidget(insertBox, 2, 0, 1, 3);

    auto *example = new QGroupBox(QStringLiteral("Beispiel"), page);
    auto *exampleLayout = new QVBoxLayout(example);
    m_lblExample = label(QStringLiteral("lblExample"), QString(), example);
    m_lblExample->setTextInteractionFlags(Qt::TextSelectableByMouse);
    exampleLayout->addWidget(m_lblExample);
    layout->addWidget(example, 3, 0, 1, 3);

    auto *more = new QGroupBox(QStringLiteral("weitere Optionen"), page);
    auto *moreLayout = new QVBoxLayout(more);
    moreLayout->addWidget(checkBox(QStringLiteral("chkSubjectNameCorrect"), QStringLiteral("\"Betreff\"-Feld ändern"), more));
    moreLayout->addWidget(checkBox(QStringLiteral("chkBusinessNameCheck"), QStringLiteral("Firmennamen erkennen"), more));
    layout->addWidget(more, 4, 0, 1, 3);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(5, 1);

    connect(m_optSaveAs, &QRadioButton::toggled, this, &frmOptions::updateExample);
    connect(m_optBetreff, &QRadioButton::toggled, this, &frmOptions::updateExample);
    OnTextChanged(m_cmbFileAsLayoutEx, this, [this] { updateExample(); });
    OnTextChanged(m_cmbSubjectLayout, this, [this] { updateExample(); });
    OnFocusIn(m_cmbFileAsLayoutEx, this, [this] { m_optSaveAs->setChecked(true); });
    OnFocusIn(m_cmbSubjectLayout, this, [this] { m_optBetreff->setChecked(true); });
}

void frmOptions::buildGeneralPage(QFrame *page)
{
    auto *layout = new QGridLayout(page);
    // The labels keep their line; the fields take the rest of the width.
    const auto oneLine = [](QLabel *l) {
        l->setWordWrap(false);
        return l;
    };
    layout->addWidget(oneLine(label(QStringLiteral("lblSkipFolder"), QStringLiteral("Diese Ordnerstruktur nicht einlesen:"), page)), 0, 0);
    layout->addWidget(CreateListField(QStringLiteral("txtFolderStructureSkip"), QStringLiteral("FolderStructureSkip.dat"),
                                      QStringLiteral("Ordner"), page), 0, 1, 1, 2);
    layout->addWidget(oneLine(label(QStringLiteral("lblIdleTime"), QStringLiteral("Timeout für Ordnerstruktur einlesen:"), page)), 1, 0);
    layout->addWidget(CreateNumberField(QStringLiteral("cmbIdleTime"), 3600, page), 1, 1);
    layout->addWidget(new QLabel(QStringLiteral("sec."), page), 1, 2);
    layout->setColumnStretch(3, 1);
    layout->setRowStretch(2, 1);
}
