#include "replace/frmReplace.h"

#include "controls/WaitBar.h"
#include "controls/sevText.h"
#include "folders/FolderFunctions.h"
#include "frame/GlobalFunctions.h"
#include "replace/ReplaceFields.h"
#include "store/MAPIFolder.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

// A labelled frame around one control.
QGroupBox *frameAround(const QString &name, const QString &caption, QWidget *control, QWidget *parent)
{
    auto *frame = new QGroupBox(caption, parent);
    frame->setObjectName(name);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(control);
    return frame;
}

// The list of fields. Rows are chosen by a click or the space bar; typing the
// start of a caption only moves to the row. (A plain list in this mode would
// toggle every row that the typed letters pass on the way, so that a run
// would change fields the user never chose.)
class FieldList : public QListWidget
{
public:
    using QListWidget::QListWidget;

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override
    {
        if (!event)
            return QItemSelectionModel::NoUpdate;
        return QListWidget::selectionCommand(index, event);
    }
};

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

} // namespace

frmReplace::frmReplace(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmReplace"));
    buildControls();
    load();
}

frmReplace::~frmReplace() = default;

void frmReplace::buildControls()
{
    setWindowTitle(QStringLiteral("Suchen und Ersetzen"));

    m_txtFind = named(new QLineEdit(this), "txtFind");
    m_frFind = frameAround(QStringLiteral("frFind"), QStringLiteral("Suchen nach:"), m_txtFind, this);
    m_txtReplace = named(new QLineEdit(this), "txtReplace");
    m_frReplace = frameAround(QStringLiteral("frReplace"), QStringLiteral("Ersetzen durch:"), m_txtReplace, this);

    m_lstFields = named<QListWidget>(new FieldList(this), "lstFields");
    m_lstFields->setSelectionMode(QAbstractItemView::MultiSelection);
    m_frFields = frameAround(QStringLiteral("frFields"), QStringLiteral("Felder"), m_lstFields, this);

    m_chkUserDef = named(new QCheckBox(QStringLiteral("benutzerdefiniertes Feld"), this), "chkUserDef");
    m_txtUserDef = named(new sevText(this), "txtUserDef");
    // The field names the user has typed before.
    m_txtUserDef->setList(QStringLiteral("ReplaceUserField.dat"), QStringLiteral("Namen"));

    m_chkLeer = named(new QCheckBox(QStringLiteral("In leeren Feldern neuen Text einfügen."), this), "chkLeer");
    m_chkReplace = named(new QCheckBox(QStringLiteral("Feldinhalt durch neuen Text ersetzen."), this), "chkReplace");
    m_chkWord = named(new QCheckBox(QStringLiteral("Nur ganzes Wort suchen."), this), "chkWord");
    m_sevFrame1 = named(new QGroupBox(QStringLiteral("Optionen"), this), "sevFrame1");
    auto *options = new QVBoxLayout(m_sevFrame1);
    options->addWidget(m_chkLeer);
    options->addWidget(m_chkReplace);
    options->addWidget(m_chkWord);

    m_lblDescription = named(new QLabel(this), "lblDescription");
    m_lblDescription->setWordWrap(true);
    m_lblDescription->setText(QStringLiteral(
        "Hinweis: Änderungen an Feldern, die mit einem Ausrufezeichen gekennzeichnet sind, beeinflussen auch "
        "die entsprechenden Teilfelder. Z.B. wirkt sich eine Änderung im vollständigen Namen auch auf die "
        "Anrede, den Vornamen, den Nachnamen... aus."));
    m_frDescription = frameAround(QStringLiteral("frDescription"), QString(), m_lblDescription, this);

    m_cmdReplace = named(new QPushButton(QStringLiteral("Ersetzen"), this), "cmdReplace");
    m_cmdUndo = named(new QPushButton(QStringLiteral("Rückgängig"), this), "cmdUndo");
    m_cmdUndo->setEnabled(false);
    m_cmdClose = named(new QPushButton(QStringLiteral("Schließen"), this), "cmdClose");
    m_sevWaitBar1 = named(new WaitBar(this), "sevWaitBar1");
    // Enter in a text box must not start a run.
    for (QPushButton *button : {m_cmdReplace, m_cmdUndo, m_cmdClose})
        button->setAutoDefault(false);

    auto *userField = new QHBoxLayout;
    userField->addWidget(m_chkUserDef);
    userField->addWidget(m_txtUserDef, 1);

    auto *left = new QVBoxLayout;
    left->addWidget(m_frFind);
    left->addWidget(m_frReplace);
    left->addWidget(m_sevFrame1);
    left->addLayout(userField);
    left->addWidget(m_frDescription);
    left->addStretch();

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_sevWaitBar1, 1);
    buttons->addWidget(m_cmdReplace);
    buttons->addWidget(m_cmdUndo);
    buttons->addWidget(m_cmdClose);

    auto *grid = new QGridLayout(this);
    grid->addLayout(left, 0, 0);
    grid->addWidget(m_frFields, 0, 1);
    grid->addLayout(buttons, 1, 0, 1, 2);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 2);

    connect(m_chkLeer, &QCheckBox::clicked, this, &frmReplace::chkLeerClicked);
    connect(m_chkReplace, &QCheckBox::clicked, this, &frmReplace::chkReplaceClicked);
    connect(m_chkUserDef, &QCheckBox::clicked, this, &frmReplace::chkUserDefClicked);
    connect(m_cmdReplace, &QPushButton::clicked, this, &frmReplace::cmdReplaceClicked);
    connect(m_cmdUndo, &QPushButton::clicked, this, &frmReplace::cmdUndoClicked);
    connect(m_cmdClose, &QPushButton::clicked, this, &frmReplace::reject);
    resize(620, 460);
}

// Finds the item type from the marked folder and takes the ticked folders.
// Without a marked folder (or when its class cannot be read) there is no
// type at all: the dialog says so and opens with nothing to do.
void frmReplace::load()
{
    m_folderClass = GetSelectedFolderClass();
    const FolderSelection selection = m_folderClass.isEmpty() ? FolderSelection{}
                                                              : CollectFolders(m_folderClass, false);
    if (!selection.ok) {
        m_cmdReplace->setEnabled(false);
        m_cmdUndo->setEnabled(false);
    }
    const ReplaceItemType *type = ReplaceTypeForClass(m_folderClass);
    if (selection.ok && type) {
        m_replaceFolders = selection.folders;
        for (const ReplaceField &field : type->fields)
            m_lstFields->addItem(field.captionText());
        // Wide enough for the longest caption beside the scroll bar.
        m_lstFields->setMinimumWidth(m_lstFields->sizeHintForColumn(0) + 2 * m_lstFields->frameWidth()
                                     + m_lstFields->verticalScrollBar()->sizeHint().width() + 4);
    } else if (m_folderClass.isEmpty() || selection.ok) {
        ShowMessage(QStringLiteral("Kein gültiger Ordner gewählt."), MsgStop, QStringLiteral("Hinweis!"));
    }
}

// chkLeer and chkReplace exclude each other; each makes the search text and
// whole-word mode pointless. Hiding and disabling keep the values.
void frmReplace::chkLeerClicked()
{
    const bool set = m_chkLeer->isChecked();
    m_txtFind->setVisible(!set);
    m_chkReplace->setEnabled(!set);
    if (set)
        m_chkReplace->setChecked(false);
    m_chkWord->setEnabled(!set);
}

void frmReplace::chkReplaceClicked()
{
    const bool set = m_chkReplace->isChecked();
    m_txtFind->setVisible(!set);
    m_chkLeer->setEnabled(!set);
    if (set)
        m_chkLeer->setChecked(false);
    m_chkWord->setEnabled(!set);
}

void frmReplace::chkUserDefClicked()
{
    m_txtUserDef->setEnabled(m_chkUserDef->isChecked());
}

QString frmReplace::newString(const QString &value) const
{
    return ::newString(replaceOptions(), value);
}

ReplaceOptions frmReplace::replaceOptions() const
{
    ReplaceOptions options;
    options.find = m_txtFind->text();
    options.replacement = m_txtReplace->text();
    options.fillEmpty = m_chkLeer->isChecked();
    options.replaceWhole = m_chkReplace->isChecked();
    options.wholeWord = m_chkWord->isChecked();
    return options;
}

bool frmReplace::isFieldSelected(int index) const
{
    const QListWidgetItem *row = m_lstFields->item(index);
    return row && row->isSelected();
}

void frmReplace::setRunInputsEnabled(bool enabled)
{
    for (QWidget *widget : std::initializer_list<QWidget *>{m_cmdReplace, m_txtFind, m_txtReplace, m_chkLeer,
                                                            m_chkReplace, m_chkWord})
        widget->setEnabled(enabled);
}

void frmReplace::cmdReplaceClicked()
{
    if (m_working || (m_lstFields->selectedItems().isEmpty() && !m_chkUserDef->isChecked()))
        return;
    setRunInputsEnabled(false);
    // The undo must not act during a run; it comes back as it was, or
    // enabled when the run made changes.
    const bool undoWasEnabled = m_cmdUndo->isEnabled();
    m_cmdUndo->setEnabled(false);
    m_undo.folderClass = m_folderClass;
    m_undo.useUserField = m_chkUserDef->isChecked();
    m_undo.userFieldName = m_undo.useUserField ? TrimBlanks(m_txtUserDef->text()) : QString();
    m_working = m_runInProgress = true;
    m_stopRequested = false;
    m_sevWaitBar1->start();
    const ReplaceRunOutcome outcome = RunReplace(m_replaceFolders, *this, m_undo);
    m_working = m_runInProgress = false;
    m_cmdUndo->setEnabled(undoWasEnabled || outcome.broken || m_undo.recordCount() > 0);
    setRunInputsEnabled(true);
}

void frmReplace::cmdUndoClicked()
{
    if (m_working)
        return;
    m_working = true;
    m_sevWaitBar1->start();
    m_cmdReplace->setEnabled(false);
    m_cmdUndo->setEnabled(false);
    UndoReplace(m_undo, [this] { m_sevWaitBar1->stop(); });
    m_working = false;
    m_cmdReplace->setEnabled(true);
}

// The bar stops before the closing messages show.
void frmReplace::workDone()
{
    m_sevWaitBar1->stop();
}

void frmReplace::confirmStop()
{
    if (!m_runInProgress || m_stopRequested)
        return;
    const int answer = ShowMessage(QStringLiteral("Der Ersetzungsvorgang läuft noch. Möchten Sie ihn nach dem "
                                                  "aktuellen Element abbrechen?"),
                                   MsgQuestionDefaultNo, QStringLiteral("Frage?"));
    m_stopRequested = answer == AnswerYes;
}

void frmReplace::reject()
{
    if (m_working) {
        confirmStop();
        return;
    }
    QDialog::reject();
}
