#pragma once
// The text field with a remembered list: a line of text with a change event
// and, when it is given a list file, a drop-down button that offers the
// earlier entries kept in that file (see ListFile.h for the format). With
// auto-add on, a new text joins the list by itself when the user finishes
// editing (Enter, leaving the field, closing the form); a chosen or typed
// entry moves to the top. Delete in the open list removes the highlighted
// entry from the list.
//
// It serves as a plain text field (txt...) and, with its list button, as an
// editable combo field (cmb...): either way the "text" property is what the
// binding of controls to settings reads and writes.
//
// Modes: Text; Number, which takes digits only and cuts a value above the
// maximum down to it when editing ends; Folder, read-only, with a chooser
// button (a tab stop of its own; F4 and Alt+Down in the field open it too)
// that asks for a folder and sets its path as the text.
//
// The checked look: setChecked(true) shows the text emphasised (bold), as
// for a name that has been resolved; any change of the text takes the
// emphasis away again.

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <functional>

class QFrame;
class QLineEdit;
class QListWidget;
class QToolButton;

class sevText : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged USER true)
    Q_PROPERTY(QString floskelfile READ floskelFile WRITE setFloskelFile)
    Q_PROPERTY(QString floskeltitle READ floskelTitle WRITE setFloskelTitle)
    Q_PROPERTY(bool floskelautoadd READ floskelAutoAdd WRITE setFloskelAutoAdd)
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked)
public:
    enum class Mode { Text, Number, Folder };

    explicit sevText(QWidget *parent = nullptr);

    [[nodiscard]] QString text() const;
    void setText(const QString &text);

    // The list file, a name in Preferences/ ("Tel.dat"); empty: no list.
    // Setting it reads the file and shows the list button.
    [[nodiscard]] QString floskelFile() const { return m_listFile; }
    void setFloskelFile(const QString &fileName);
    // The title above the opened list ("Namen", "Trennzeichen").
    [[nodiscard]] QString floskelTitle() const { return m_listTitle; }
    void setFloskelTitle(const QString &title) { m_listTitle = title; }
    [[nodiscard]] bool floskelAutoAdd() const { return m_autoAdd; }
    void setFloskelAutoAdd(bool on) { m_autoAdd = on; }

    // List file, title and auto-add at once, as every form sets them.
    void setList(const QString &fileName, const QString &title, bool autoAdd = true);

    [[nodiscard]] Mode mode() const { return m_mode; }
    void setTextMode();
    void setNumberMode(int maximum);
    void setFolderMode();
    [[nodiscard]] int maximum() const { return m_maximum; }

    [[nodiscard]] bool isChecked() const { return m_checked; }
    void setChecked(bool checked);

    // The entries as last read or written, newest first.
    [[nodiscard]] QStringList entries() const { return m_entries; }
    // Puts the text on top of the list and writes the file (read again
    // first, so that entries another field added meanwhile stay). Nothing
    // happens without a list file or for an empty text.
    void remember();

    // Opens the list below the field (the list button, Alt+Down, F4).
    void showList();
    // The open list, or null.
    [[nodiscard]] QListWidget *openList() const;
    // Asks for a folder (folder mode) and takes its path as the text.
    void chooseFolder();

    [[nodiscard]] QLineEdit *editor() const { return m_editor; }
    [[nodiscard]] QToolButton *listButton() const { return m_listButton; }
    [[nodiscard]] QToolButton *folderButton() const { return m_folderButton; }

    // The folder question of the folder mode; tests install an answerer.
    // It gets the field and the present text, and returns the chosen folder
    // or an empty text for "cancelled".
    using FolderChooser = std::function<QString(QWidget *, const QString &)>;
    static FolderChooser setFolderChooser(FolderChooser chooser);

signals:
    // Any change of the text, typed, chosen or set by the program.
    void textChanged(const QString &text);
    // An entry was taken from the list.
    void entryChosen(const QString &text);
    // The user finished editing (Enter or leaving the field).
    void editingFinished();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void finishEditing();
    void takeEntry(const QString &entry);
    void removeEntry(const QString &entry);
    [[nodiscard]] QStringList presentEntries() const;
    void writeEntries(const QStringList &entries);
    void closeList();

    QLineEdit *m_editor = nullptr;
    QToolButton *m_listButton = nullptr;
    QToolButton *m_folderButton = nullptr;
    QPointer<QFrame> m_popup;
    QListWidget *m_popupList = nullptr;
    QString m_listFile;
    QString m_listTitle;
    QStringList m_entries;
    bool m_autoAdd = false;
    bool m_checked = false;
    bool m_writeFailed = false;
    bool m_edited = false; // typed by the user since the last remember
    Mode m_mode = Mode::Text;
    int m_maximum = 0;
};
