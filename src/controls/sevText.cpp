#include "controls/sevText.h"

#include "controls/ListFile.h"
#include "frame/GlobalFunctions.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// The number of the file access error of the platform, as the log shows it.
constexpr int kFileAccessError = 75;

sevText::FolderChooser &folderChooser()
{
    static sevText::FolderChooser chooser = [](QWidget *field, const QString &current) {
        return QFileDialog::getExistingDirectory(field, QStringLiteral("Ordner auswählen"), current);
    };
    return chooser;
}

QToolButton *sideButton(const QString &name, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(name);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    button->hide();
    return button;
}

} // namespace

sevText::sevText(QWidget *parent)
    : QWidget(parent)
    , m_editor(new QLineEdit(this))
    , m_listButton(sideButton(QStringLiteral("listButton"), this))
    , m_folderButton(sideButton(QStringLiteral("folderButton"), this))
{
    m_editor->setObjectName(QStringLiteral("editor"));
    m_listButton->setArrowType(Qt::DownArrow);
    m_listButton->setToolTip(QStringLiteral("Liste öffnen"));
    m_folderButton->setText(QStringLiteral("..."));
    m_folderButton->setToolTip(QStringLiteral("Ordner auswählen"));

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_editor, 1);
    layout->addWidget(m_listButton);
    layout->addWidget(m_folderButton);
    setFocusProxy(m_editor);
    setSizePolicy(m_editor->sizePolicy());
    m_editor->installEventFilter(this);

    connect(m_editor, &QLineEdit::textChanged, this, [this](const QString &text) {
        setChecked(false);
        emit textChanged(text);
    });
    connect(m_editor, &QLineEdit::textEdited, this, [this] { m_edited = true; });
    connect(m_editor, &QLineEdit::editingFinished, this, &sevText::finishEditing);
    connect(m_listButton, &QToolButton::clicked, this, &sevText::showList);
    connect(m_folderButton, &QToolButton::clicked, this, &sevText::chooseFolder);
}

QString sevText::text() const
{
    return m_editor->text();
}

void sevText::setText(const QString &text)
{
    m_editor->setText(text);
}

void sevText::setFloskelFile(const QString &fileName)
{
    m_listFile = fileName;
    m_entries.clear();
    m_listButton->setVisible(!fileName.isEmpty());
    if (fileName.isEmpty())
        return;
    const QString path = ListFilePath(fileName);
    const ListFileContent content = ReadListFile(path);
    m_entries = content.entries;
    if (content.damaged)
        ShowError(QStringLiteral("Die Listendatei ist beschädigt und wurde nur bis zur ersten fehlerhaften Zeile gelesen."),
                  kFileAccessError, 1, path);
}

void sevText::setList(const QString &fileName, const QString &title, bool autoAdd)
{
    setFloskelTitle(title);
    setFloskelAutoAdd(autoAdd);
    setFloskelFile(fileName);
}

void sevText::setTextMode()
{
    m_mode = Mode::Text;
    m_maximum = 0;
    m_editor->setValidator(nullptr);
    m_editor->setMaxLength(32767);
    m_editor->setReadOnly(false);
    m_folderButton->hide();
    m_folderButton->setFocusPolicy(Qt::NoFocus);
}

void sevText::setNumberMode(int maximum)
{
    setTextMode();
    m_mode = Mode::Number;
    m_maximum = maximum;
    m_editor->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d*")), m_editor));
    m_editor->setMaxLength(int(QString::number(maximum).size()));
}

void sevText::setFolderMode()
{
    setTextMode();
    m_mode = Mode::Folder;
    // The path comes from the chooser only; its button is a tab stop of its
    // own (Space opens it, as do F4 and Alt+Down in the field).
    m_editor->setReadOnly(true);
    m_folderButton->setFocusPolicy(Qt::StrongFocus);
    m_folderButton->show();
}

void sevText::setChecked(bool checked)
{
    if (checked == m_checked)
        return;
    m_checked = checked;
    QFont font = m_editor->font();
    font.setBold(checked);
    m_editor->setFont(font);
}

void sevText::remember()
{
    m_edited = false;
    if (m_listFile.isEmpty() || text().isEmpty())
        return;
    const QStringList present = presentEntries();
    if (!present.isEmpty() && present.first() == text()) {
        m_entries = present;
        return;
    }
    writeEntries(WithEntryOnTop(present, text()));
}

QStringList sevText::presentEntries() const
{
    // While the file cannot be written, the list of this session is the
    // present one; otherwise the file, which another field may have changed.
    if (m_writeFailed)
        return m_entries;
    return ReadListFile(ListFilePath(m_listFile)).entries;
}

void sevText::writeEntries(const QStringList &entries)
{
    m_entries = entries;
    const QString path = ListFilePath(m_listFile);
    if (WriteListFile(path, entries)) {
        m_writeFailed = false;
        return;
    }
    // Logged once per field: the list still works for this session.
    if (!m_writeFailed)
        ShowError(QStringLiteral("Die Liste konnte nicht gespeichert werden."), kFileAccessError, 1, path);
    m_writeFailed = true;
}

void sevText::finishEditing()
{
    if (m_mode == Mode::Number && !text().isEmpty() && text().toLongLong() > m_maximum)
        setText(QString::number(m_maximum));
    if (m_autoAdd && m_edited)
        remember();
    emit editingFinished();
}

void sevText::hideEvent(QHideEvent *event)
{
    // A form closed while the field still had the focus: what the user typed
    // is remembered all the same.
    if (m_autoAdd && m_edited)
        remember();
    QWidget::hideEvent(event);
}

void sevText::showList()
{
    if (m_listFile.isEmpty())
        return;
    closeList();
    m_entries = presentEntries();

    m_popup = new QFrame(this, Qt::Popup);
    m_popup->setAttribute(Qt::WA_DeleteOnClose);
    m_popup->setObjectName(QStringLiteral("listPopup"));
    m_popup->setFrameShape(QFrame::Box);
    auto *layout = new QVBoxLayout(m_popup);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    auto *title = new QLabel(m_listTitle, m_popup);
    title->setObjectName(QStringLiteral("lblListTitle"));
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addWidget(title);

    m_popupList = new QListWidget(m_popup);
    m_popupList->setObjectName(QStringLiteral("lstEntries"));
    m_popupList->addItems(m_entries);
    if (m_entries.isEmpty()) {
        auto *none = new QListWidgetItem(QStringLiteral("(keine Einträge)"), m_popupList);
        none->setFlags(Qt::NoItemFlags);
    } else {
        const qsizetype current = m_entries.indexOf(text());
        m_popupList->setCurrentRow(int(qMax<qsizetype>(current, 0)));
    }
    m_popupList->installEventFilter(this);
    layout->addWidget(m_popupList);
    connect(m_popupList, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { takeEntry(item->text()); });
    connect(m_popupList, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) { takeEntry(item->text()); });

    const int rows = qBound(1, int(m_entries.size()), 10);
    const int height = title->sizeHint().height() + rows * m_popupList->sizeHintForRow(0) + 16;
    QPoint below = mapToGlobal(QPoint(0, this->height()));
    const QRect screen = this->screen() ? this->screen()->availableGeometry() : QRect();
    if (screen.isValid() && below.y() + height > screen.bottom())
        below.setY(mapToGlobal(QPoint(0, 0)).y() - height);
    m_popup->setGeometry(QRect(below, QSize(qMax(width(), 160), height)));
    m_popup->show();
    m_popupList->setFocus();
}

QListWidget *sevText::openList() const
{
    return m_popup ? m_popupList : nullptr;
}

void sevText::closeList()
{
    if (m_popup)
        m_popup->close();
    m_popupList = nullptr;
}

void sevText::takeEntry(const QString &entry)
{
    closeList();
    setText(entry);
    m_editor->setFocus();
    emit entryChosen(entry);
    // A chosen entry is the newest one, auto-add or not.
    m_edited = false;
    writeEntries(WithEntryOnTop(presentEntries(), entry));
}

void sevText::removeEntry(const QString &entry)
{
    QStringList entries = presentEntries();
    entries.removeAll(entry);
    writeEntries(entries);
    delete m_popupList->currentItem();
}

void sevText::chooseFolder()
{
    const QString folder = folderChooser()(this, text());
    if (folder.isEmpty())
        return;
    setText(QDir::toNativeSeparators(folder));
    m_edited = true;
    finishEditing();
}

sevText::FolderChooser sevText::setFolderChooser(FolderChooser chooser)
{
    FolderChooser previous = folderChooser();
    folderChooser() = std::move(chooser);
    return previous;
}

bool sevText::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (watched == m_editor) {
        const bool opens = key->key() == Qt::Key_F4
            || (key->key() == Qt::Key_Down && (key->modifiers() & Qt::AltModifier));
        if (opens && m_mode == Mode::Folder) {
            chooseFolder();
            return true;
        }
        if (opens && !m_listFile.isEmpty()) {
            showList();
            return true;
        }
    } else if (m_popupList && watched == m_popupList) {
        if (key->key() == Qt::Key_Escape) {
            closeList();
            m_editor->setFocus();
            return true;
        }
        if (key->key() == Qt::Key_Delete && m_popupList->currentItem()
            && (m_popupList->currentItem()->flags() & Qt::ItemIsEnabled)) {
            removeEntry(m_popupList->currentItem()->text());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
