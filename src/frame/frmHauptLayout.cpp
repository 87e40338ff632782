// The widgets of the main window and their places. Behaviour is in
// frmHaupt.cpp.
#include "frame/frmHaupt.h"

#include "controls/NodeTree.h"
#include "controls/OutBar.h"
#include "controls/Pictures.h"
#include "frame/Main.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

const QString HelpText = QStringLiteral(
    "Aktivieren Sie zuerst die gewünschten Ordner, indem Sie ein Häkchen in das entsprechende Kästchen setzen."
    "\n\n"
    "Einen von den aktivierten Ordnern müssen Sie markieren. Diesem Ordner können Sie (über Extras/Optionen) "
    "besondere Eigenschaften zuweisen."
    "\n\n"
    "Wählen Sie anschließend die gewünschte Aktion aus."
    "\n\n"
    "Vor der ersten Nutzung der Funktionen, sollten Sie über Extras/Optionen-Assistent Ihre persönlichen "
    "Einstellungen vornehmen."
    "\n\n"
    "Weitere Informationen finden Sie auch in der Hilfe.");

// The command bar: group key, group caption, then its buttons (key, tooltip).
struct BarButton {
    const char *key;
    const char *toolTip;
};
struct BarGroup {
    const char *key;
    const char *caption;
    QList<BarButton> buttons;
};

const QList<BarGroup> &barGroups()
{
    static const QList<BarGroup> groups{
        {"AktGrp", "Allgemein",
         {{"Dup", "Duplikate entfernen"},
          {"Suc", "Suchen und Ersetzen"},
          {"Att", "Anlagen in Ordner speichern"},
          {"Hol", "Schulferien hinzufügen"},
          {"For", "Nachrichtenklasse ändern"}}},
        {"KonGrp", "Kontakte", {{"Nam", "Namen korrigieren"}, {"Tel", "Telefonnummern vereinheitlichen"}}},
        {"ExtGrp", "Extras", {{"Opt", "Optionen"}, {"Hil", "Hilfe"}}},
    };
    return groups;
}

// The banner above the work area: the program's name on the splash colours.
class Banner : public QWidget
{
public:
    using QWidget::QWidget;
    QSize sizeHint() const override { return {600, 46}; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        QLinearGradient g(0, 0, width(), 0);
        g.setColorAt(0, QColor(0x1f, 0x4e, 0x79));
        g.setColorAt(1, QColor(0x2e, 0x86, 0xc1));
        p.fillRect(rect(), g);
        p.setPen(Qt::white);
        QFont title = font();
        title.setPointSize(17);
        title.setBold(true);
        p.setFont(title);
        const QRect text = rect().adjusted(16, 0, -16, 0);
        p.drawText(text, Qt::AlignVCenter | Qt::AlignLeft, QStringLiteral("Varnex"));
        QFont sub = font();
        sub.setPointSize(10);
        p.setFont(sub);
        p.drawText(text, Qt::AlignVCenter | Qt::AlignRight,
                   QStringLiteral("Kontakte, Termine und Nachrichten aufräumen"));
    }
};

QPushButton *namedButton(const QString &name, const QString &caption, QWidget *parent)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(name);
    return button;
}

} // namespace

void frmHaupt::buildLayout()
{
    auto *central = new QWidget(this);
    auto *outer = new QVBoxLayout(central);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(buildBanner());

    auto *work = new QHBoxLayout;
    work->setContentsMargins(0, 0, 8, 0);
    work->setSpacing(8);
    buildCommandBar();
    // On a low window the bar scrolls rather than squeezing its buttons.
    auto *barScroller = new QScrollArea(this);
    barScroller->setWidget(m_outBar);
    barScroller->setWidgetResizable(true);
    barScroller->setFrameShape(QFrame::NoFrame);
    // The buttons of the bar take the focus; the scroller around them would
    // be a tab stop that shows nothing.
    barScroller->setFocusPolicy(Qt::NoFocus);
    barScroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    barScroller->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    m_outBar->setMinimumWidth(m_outBar->sizeHint().width());
    barScroller->setFixedWidth(m_outBar->sizeHint().width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    work->addWidget(barScroller);
    auto *panes = new QHBoxLayout;
    panes->setContentsMargins(0, 8, 0, 8);
    panes->setSpacing(8);
    panes->addWidget(buildFolderFrame(), 5);
    panes->addWidget(buildDuplicateFrame(), 5);
    panes->addWidget(buildHelpPanel(), 1);
    work->addLayout(panes, 1);
    outer->addLayout(work, 1);
    setCentralWidget(central);

    m_lblStatus = new QLabel(this);
    m_lblStatus->setObjectName(QStringLiteral("lblStatus"));
    m_progressBar = new QProgressBar(this);
    m_progressBar->setObjectName(QStringLiteral("ProgressBar1"));
    m_progressBar->setMinimum(0);
    m_progressBar->setMaximum(100);
    m_progressBar->setValue(0);
    m_progressBar->setTextVisible(false);
    m_progressBar->setFixedWidth(320);
    statusBar()->addWidget(m_lblStatus, 1);
    statusBar()->addPermanentWidget(m_progressBar);
    buildMenus();
}

QWidget *frmHaupt::buildBanner()
{
    auto *banner = new Banner(this);
    banner->setFixedHeight(46);
    return banner;
}

void frmHaupt::buildCommandBar()
{
    m_outBar = new OutBar(this);
    m_outBar->setObjectName(QStringLiteral("OutBar1"));
    for (const BarGroup &group : barGroups()) {
        const QString groupKey = QString::fromLatin1(group.key);
        m_outBar->addGroup(groupKey, QString::fromUtf8(group.caption));
        for (const BarButton &button : group.buttons) {
            const QString key = QString::fromLatin1(button.key);
            m_outBar->addItem(groupKey, key, QString::fromUtf8(button.toolTip), CommandPicture(key));
        }
    }
    connect(m_outBar, &OutBar::itemClick, this, &frmHaupt::OutBar1ItemClick);
}

QWidget *frmHaupt::buildFolderFrame()
{
    auto *frame3 = new QFrame(this);
    frame3->setObjectName(QStringLiteral("Frame3"));
    auto *layout = new QVBoxLayout(frame3);
    layout->setContentsMargins(0, 0, 0, 0);
    m_frame3Pages = new QStackedWidget(frame3);
    layout->addWidget(m_frame3Pages);

    auto *treePage = new QWidget(m_frame3Pages);
    auto *treeLayout = new QVBoxLayout(treePage);
    treeLayout->setContentsMargins(0, 0, 0, 0);
    m_tvwOrdner = new NodeTree(treePage);
    m_tvwOrdner->setObjectName(QStringLiteral("TvwOrdner"));
    m_tvwOrdner->setImageList(FolderImageList());
    treeLayout->addWidget(m_tvwOrdner, 1);
    auto *buttons = new QHBoxLayout;
    m_cmdAlleRueck = namedButton(QStringLiteral("cmdAlleRück"), QStringLiteral("Alle deaktivieren"), treePage);
    m_cmdZweigMark = namedButton(QStringLiteral("cmdZweigMark"), QStringLiteral("Zweig aktivieren"), treePage);
    m_cmdAktualisieren = namedButton(QStringLiteral("cmdAktualisieren"),
                                     QStringLiteral("Ordnerstruktur neu einlesen"), treePage);
    buttons->addWidget(m_cmdAlleRueck);
    buttons->addWidget(m_cmdZweigMark);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdAktualisieren);
    treeLayout->addLayout(buttons);
    m_frame3Pages->addWidget(treePage);
    m_frame3Pages->addWidget(buildSharedFolderFrame());
    return frame3;
}

QWidget *frmHaupt::buildSharedFolderFrame()
{
    m_frmSharedFolder = new QGroupBox(QStringLiteral("Ordner eines anderen Benutzers"), m_frame3Pages);
    m_frmSharedFolder->setObjectName(QStringLiteral("frmSharedFolder"));
    auto *layout = new QVBoxLayout(m_frmSharedFolder);

    auto *nameFrame = new QGroupBox(QStringLiteral("Name"), m_frmSharedFolder);
    nameFrame->setObjectName(QStringLiteral("sevFrame1"));
    m_lblSharedName = new QLabel(nameFrame);
    m_lblSharedName->setObjectName(QStringLiteral("lblName"));
    m_lblSharedName->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont bold = m_lblSharedName->font();
    bold.setBold(true);
    m_lblSharedName->setFont(bold);
    (new QVBoxLayout(nameFrame))->addWidget(m_lblSharedName);

    auto *folderFrame = new QGroupBox(QStringLiteral("Ordner"), m_frmSharedFolder);
    folderFrame->setObjectName(QStringLiteral("frmFolder"));
    m_lblSharedTyp = new QLabel(folderFrame);
    m_lblSharedTyp->setObjectName(QStringLiteral("lblTyp"));
    m_lblSharedTyp->setFont(bold);
    (new QVBoxLayout(folderFrame))->addWidget(m_lblSharedTyp);

    m_cmdCloseShared = namedButton(QStringLiteral("cmdCloseShared"), QStringLiteral("X"), m_frmSharedFolder);
    m_cmdCloseShared->setFixedSize(28, 24);
    m_cmdCloseShared->setToolTip(QStringLiteral("Ordner schließen"));
    auto *top = new QHBoxLayout;
    top->addStretch(1);
    top->addWidget(m_cmdCloseShared);
    layout->addLayout(top);
    layout->addWidget(nameFrame);
    layout->addWidget(folderFrame);
    auto *note = new QLabel(QStringLiteral("Alle Funktionen arbeiten jetzt nur mit diesem Ordner; die Häkchen im "
                                           "Ordnerbaum gelten erst wieder, wenn Sie ihn mit X schließen."),
                            m_frmSharedFolder);
    note->setWordWrap(true);
    note->setContentsMargins(2, 8, 2, 0);
    layout->addWidget(note);
    layout->addStretch(1);
    m_frmSharedFolder->setVisible(false);
    return m_frmSharedFolder;
}

QWidget *frmHaupt::buildDuplicateFrame()
{
    m_frmDups = new QGroupBox(QStringLiteral("Gefundene Duplikate"), this);
    m_frmDups->setObjectName(QStringLiteral("frmDups"));
    auto *layout = new QVBoxLayout(m_frmDups);
    m_tvwDups = new NodeTree(m_frmDups);
    m_tvwDups->setObjectName(QStringLiteral("tvwDups"));
    m_tvwDups->setImageList(DuplicateImageList());
    layout->addWidget(m_tvwDups, 1);
    auto *buttons = new QHBoxLayout;
    m_cmdDupDel = namedButton(QStringLiteral("cmdDupDel"), QStringLiteral("Elemente entfernen"), m_frmDups);
    m_cmdDupView = namedButton(QStringLiteral("cmdDupView"), QStringLiteral("Element anzeigen"), m_frmDups);
    m_cmdDupsClose = namedButton(QStringLiteral("cmdDupsClose"), QStringLiteral("Schließen"), m_frmDups);
    buttons->addWidget(m_cmdDupDel);
    buttons->addWidget(m_cmdDupView);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdDupsClose);
    layout->addLayout(buttons);
    m_frmDups->setVisible(false);
    return m_frmDups;
}

QWidget *frmHaupt::buildHelpPanel()
{
    m_lblHilfe = new QLabel(HelpText, this);
    m_lblHilfe->setObjectName(QStringLiteral("lblHilfe"));
    m_lblHilfe->setWordWrap(true);
    m_lblHilfe->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    // The help text yields room to the duplicate results on a narrow window.
    m_lblHilfe->setMinimumWidth(190);
    m_lblHilfe->setMaximumWidth(280);
    m_lblHilfe->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    m_lblHilfe->setMargin(12);
    m_lblHilfe->setStyleSheet(QStringLiteral("QLabel { background: #fbf7e4; border: 1px solid #e3dbb4;"
                                             " border-radius: 4px; color: #3a3a3a; }"));
    return m_lblHilfe;
}

QAction *frmHaupt::addEntry(QMenu *menu, const QString &name, const QString &caption)
{
    QAction *entry = caption.isEmpty() ? menu->addSeparator() : menu->addAction(caption);
    entry->setObjectName(name);
    return entry;
}

void frmHaupt::buildMenus()
{
    auto entry = [this](QMenu *menu, const char *name, const char *caption, const char *key) {
        QAction *action = addEntry(menu, QString::fromLatin1(name), QString::fromUtf8(caption));
        if (key)
            connect(action, &QAction::triggered, this, [this, key] { runKey(QString::fromLatin1(key)); });
        return action;
    };
    auto menu = [this](const char *name, const char *caption) {
        QMenu *m = menuBar()->addMenu(QString::fromUtf8(caption));
        m->setObjectName(QString::fromLatin1(name));
        m->menuAction()->setObjectName(QString::fromLatin1(name));
        return m;
    };

    QMenu *datei = menu("mnuDatei", "&Datei");
    entry(datei, "mnuSharedOpen", "&Ordner eines anderen Benutzers öffnen...", "SharedOpen");
    entry(datei, "mnuKontenSync", "&Konten synchronisieren", "DavSync");
    entry(datei, "mnuSep5", "", nullptr);
    connect(entry(datei, "mnuBeenden", "&Beenden", nullptr), &QAction::triggered, this, [] { EndProcess(); });

    m_mnuAktion = menu("mnuAktion", "&Aktion");
    entry(m_mnuAktion, "mnuKontaktDupLoeschen", "&Duplikate entfernen", "Dup");
    entry(m_mnuAktion, "mnuFindReplace", "&Ersetzen...", "Suc");
    entry(m_mnuAktion, "mnuFormularWechsel", "&Nachrichtenklasse ändern...", "For");
    entry(m_mnuAktion, "mnuHoliday", "&Schulferien einfügen...", "Hol");
    entry(m_mnuAktion, "mnuAttSave", "&Anlagen speichern", "Att");
    entry(m_mnuAktion, "mnuTelNorm", "&Tel.-Nr. vereinheitlichen", "Tel");
    entry(m_mnuAktion, "mnuNameCorrection", "&Namen korrigieren", "Nam");
    entry(m_mnuAktion, "Sep5", "", nullptr);
    entry(m_mnuAktion, "mnuUndo", "&Daten wiederherstellen...", "Undo");
    QMenu *anlagen = m_mnuAktion->addMenu(QStringLiteral("An&lagen"));
    anlagen->setObjectName(QStringLiteral("mnuAnlagen"));
    anlagen->menuAction()->setObjectName(QStringLiteral("mnuAnlagen"));
    connect(entry(anlagen, "mnuAttUndo", "&Anlagen wiederherstellen...", nullptr), &QAction::triggered, this,
            &frmHaupt::mnuAttUndoClick);
    entry(anlagen, "mnuAttMove", "Anlagen &verschieben...", "AttMove");

    m_mnuExtras = menu("mnuExtras", "&Extras");
    entry(m_mnuExtras, "mnuNameCheck", "&Namen testen...", "NameCheck");
    entry(m_mnuExtras, "mnuTelTest", "&Telefonnummer testen...", "TelTest");
    entry(m_mnuExtras, "mnuSep", "", nullptr);
    entry(m_mnuExtras, "mnuQuickOption", "Optionen-&Assistent", "QuickOption");
    entry(m_mnuExtras, "mnuOptionen", "&Optionen", "Opt");

    QMenu *hilfe = menu("mnuHilfeRoot", "&?");
    entry(hilfe, "mnuHilfe", "&Hilfe", "Hil");
    entry(hilfe, "mnuSep3", "", nullptr);
    connect(entry(hilfe, "mnuInfo", "&Info", nullptr), &QAction::triggered, this, &frmHaupt::mnuInfoClick);
}
