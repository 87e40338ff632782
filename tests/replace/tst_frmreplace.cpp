// The find and replace dialog driven through its widgets, offscreen, on a
// real profile with a real folder tree: the type from the marked folder, the
// option clicks, a run and its undo by the buttons, a close during a run.
#include "controls/WaitBar.h"
#include "controls/sevText.h"
#include "replace/frmReplace.h"
#include "support/SelectionFixture.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace {

template <typename Widget>
Widget *child(const QWidget &dialog, const char *name)
{
    auto *widget = dialog.findChild<Widget *>(QString::fromLatin1(name));
    if (!widget)
        qFatal("no control %s", name);
    return widget;
}

QStringList Prompts(const MessageRecorder &boxes)
{
    QStringList prompts;
    for (const MessageRequest &request : boxes.requests())
        prompts << request.prompt;
    return prompts;
}

// Types text key by key, umlauts included (keyClicks takes ASCII only).
void type(QWidget *widget, const QString &text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

void click(QWidget *widget)
{
    QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(8, widget->height() / 2));
}

void clickRow(QListWidget *list, int row)
{
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

// Types the search and replacement texts and selects "Nachname".
void askForLastName(const QWidget &dialog, const QString &find, const QString &replacement)
{
    type(child<QLineEdit>(dialog, "txtFind"), find);
    type(child<QLineEdit>(dialog, "txtReplace"), replacement);
    clickRow(child<QListWidget>(dialog, "lstFields"), 39);
}

} // namespace

class tst_frmReplace : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void init();
    void cleanup() { m_fx.reset(); }
    void opensWithTheListOfTheMarkedFolder_data();
    void opensWithTheListOfTheMarkedFolder();
    void mixedFoldersDisableBothButtons();
    void nothingMarkedSaysNoValidFolder();
    void optionClicks_data();
    void optionClicks();
    void newStringReadsHiddenFindText();
    void runAndUndoByTheButtons();
    void activityBarStopsBeforeTheMessages();
    void typingInTheListOnlyMovesToARow();
    void nothingSelectedDoesNothing();
    void runWithoutChangesKeepsTheUndo();
    void brokenRunLeavesTheUndoEnabled();
    void closeDuringRunAsksToStop_data();
    void closeDuringRunAsksToStop();
    void userFieldNamesAreRemembered();

private:
    void tickAndMark(const QStringList &names);
    Item contact(const QString &lastName);

    std::unique_ptr<SelectionFixture> m_fx;
};

void tst_frmReplace::init()
{
    m_fx = std::make_unique<SelectionFixture>();
    // One item in every default folder, so that none is refused as empty.
    for (const char *name : {"Kalender", "Aufgaben", "Posteingang", "Notizen", "Journal"})
        FolderProfile::addItems(SelectionFixture::folder(QString::fromUtf8(name)), 1);
}

// Ticks the folders (names below the default store) and marks the first.
void tst_frmReplace::tickAndMark(const QStringList &names)
{
    m_fx->readTree();
    QVERIFY(m_fx->select(names));
}

Item tst_frmReplace::contact(const QString &lastName)
{
    return SelectionFixture::addItem(SelectionFixture::folder("Kontakte"), olContact, {{"LastName", lastName}});
}

void tst_frmReplace::opensWithTheListOfTheMarkedFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("rows");

    QTest::newRow("Kontakte") << "Kontakte" << 95;
    QTest::newRow("Kalender") << "Kalender" << 6;
    QTest::newRow("Aufgaben") << "Aufgaben" << 11;
    QTest::newRow("Posteingang") << "Posteingang" << 2;
    QTest::newRow("Notizen") << "Notizen" << 1;
    QTest::newRow("Journal") << "Journal" << 2;
}

void tst_frmReplace::opensWithTheListOfTheMarkedFolder()
{
    QFETCH(QString, folder);
    QFETCH(int, rows);

    contact(QStringLiteral("Müller"));
    tickAndMark({folder});
    MessageRecorder boxes;
    frmReplace dialog;
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(child<QListWidget>(dialog, "lstFields")->count(), rows);
    QVERIFY(child<QPushButton>(dialog, "cmdReplace")->isEnabled());
    QVERIFY(!child<QPushButton>(dialog, "cmdUndo")->isEnabled());
}

// A ticked folder of another class than the marked one: the selection
// refuses, and the dialog can only be closed.
void tst_frmReplace::mixedFoldersDisableBothButtons()
{
    contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte"), QStringLiteral("Kalender")});
    MessageRecorder boxes;
    frmReplace dialog;
    QCOMPARE(Prompts(boxes), QStringList{"Bitte wählen Sie für diese Funktion nur gleichartige Ordner aus."});
    QCOMPARE(child<QListWidget>(dialog, "lstFields")->count(), 0);
    QVERIFY(!child<QPushButton>(dialog, "cmdReplace")->isEnabled());
    QVERIFY(!child<QPushButton>(dialog, "cmdUndo")->isEnabled());
}

void tst_frmReplace::nothingMarkedSaysNoValidFolder()
{
    m_fx->readTree();
    MessageRecorder boxes;
    frmReplace dialog;
    QCOMPARE(Prompts(boxes), QStringList{"Kein gültiger Ordner gewählt."});
    QCOMPARE(boxes.last().buttons, int(MsgStop));
    QCOMPARE(boxes.last().title, QStringLiteral("Hinweis!"));
    QCOMPARE(child<QListWidget>(dialog, "lstFields")->count(), 0);
    QVERIFY(!child<QPushButton>(dialog, "cmdReplace")->isEnabled());
}

void tst_frmReplace::optionClicks_data()
{
    // Clicks: L chkLeer, R chkReplace, W chkWord, U chkUserDef. The state
    // letters: F txtFind visible; l/r/w enabled boxes; L/R/W checked boxes;
    // T txtUserDef enabled.
    QTest::addColumn<QString>("clicks");
    QTest::addColumn<QString>("state");

    QTest::newRow("beim Öffnen") << "" << "FlrwT";
    QTest::newRow("leere Felder an") << "L" << "lLT";
    QTest::newRow("leere Felder wieder aus") << "LL" << "FlrwT";
    QTest::newRow("ganzes Feld an") << "R" << "rRT";
    QTest::newRow("ganzes Feld wieder aus") << "RR" << "FlrwT";
    QTest::newRow("ganzes Feld sperrt leere Felder") << "RL" << "rRT";
    QTest::newRow("Wort bleibt gesetzt, wenn gesperrt") << "WL" << "lLWT";
    QTest::newRow("Wort wieder frei") << "WLL" << "FlrwWT";
    QTest::newRow("benutzerdefiniertes Feld an") << "U" << "FlrwT";
    QTest::newRow("benutzerdefiniertes Feld aus") << "UU" << "Flrw";
}

void tst_frmReplace::optionClicks()
{
    QFETCH(QString, clicks);
    QFETCH(QString, state);

    contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    auto *leer = child<QCheckBox>(dialog, "chkLeer");
    auto *replace = child<QCheckBox>(dialog, "chkReplace");
    auto *word = child<QCheckBox>(dialog, "chkWord");
    auto *userDef = child<QCheckBox>(dialog, "chkUserDef");
    for (const QChar c : clicks)
        click(c == u'L' ? leer : c == u'R' ? replace : c == u'W' ? word : userDef);

    QString actual;
    auto add = [&](bool on, char letter) {
        if (on)
            actual += QLatin1Char(letter);
    };
    add(child<QLineEdit>(dialog, "txtFind")->isVisible(), 'F');
    add(leer->isEnabled(), 'l');
    add(leer->isChecked(), 'L');
    add(replace->isEnabled(), 'r');
    add(replace->isChecked(), 'R');
    add(word->isEnabled(), 'w');
    add(word->isChecked(), 'W');
    add(child<sevText>(dialog, "txtUserDef")->isEnabled(), 'T');
    QCOMPARE(actual, state);
}

// A hidden search text and a disabled whole-word box still count.
void tst_frmReplace::newStringReadsHiddenFindText()
{
    contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    type(child<QLineEdit>(dialog, "txtFind"), QStringLiteral("Max"));
    type(child<QLineEdit>(dialog, "txtReplace"), QStringLiteral("Moritz"));
    click(child<QCheckBox>(dialog, "chkWord"));
    click(child<QCheckBox>(dialog, "chkLeer"));
    QVERIFY(!child<QLineEdit>(dialog, "txtFind")->isVisible());
    QCOMPARE(dialog.newString(QString()), QStringLiteral("Moritz"));
    QCOMPARE(dialog.newString(QStringLiteral("Max Muster")), QStringLiteral("Moritz Muster"));
    QCOMPARE(dialog.newString(QStringLiteral("Maxi Muster")), QStringLiteral("Maxi Muster"));
}

void tst_frmReplace::runAndUndoByTheButtons()
{
    const Item first = contact(QStringLiteral("Müller"));
    const Item second = contact(QStringLiteral("MÜLLER-Lüdenscheidt"));
    const Item other = contact(QStringLiteral("Schulz"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    askForLastName(dialog, QStringLiteral("müller"), QStringLiteral("Meier"));
    click(child<QPushButton>(dialog, "cmdReplace"));

    QCOMPARE(Prompts(boxes), QStringList{"2 Ersetzungen wurden vorgenommen."});
    QCOMPARE(dialog.undoLists().fields.size(), 2);
    QVERIFY(child<QPushButton>(dialog, "cmdUndo")->isEnabled());
    QVERIFY(child<QPushButton>(dialog, "cmdReplace")->isEnabled());
    QVERIFY(child<QLineEdit>(dialog, "txtFind")->isEnabled());
    QVERIFY(!child<WaitBar>(dialog, "sevWaitBar1")->isRunning());
    NameSpace session = Application().GetNamespace();
    QCOMPARE(session.GetItemFromID(first.EntryID()).text("LastName"), QStringLiteral("Meier"));
    QCOMPARE(session.GetItemFromID(second.EntryID()).text("LastName"), QStringLiteral("Meier-Lüdenscheidt"));
    QCOMPARE(session.GetItemFromID(other.EntryID()).text("LastName"), QStringLiteral("Schulz"));

    boxes.clear();
    click(child<QPushButton>(dialog, "cmdUndo"));
    QCOMPARE(Prompts(boxes), QStringList{"2 Ersetzungen rückgängig gemacht."});
    QVERIFY(!child<QPushButton>(dialog, "cmdUndo")->isEnabled());
    QVERIFY(child<QPushButton>(dialog, "cmdReplace")->isEnabled());
    QCOMPARE(session.GetItemFromID(first.EntryID()).text("LastName"), QStringLiteral("Müller"));
    QCOMPARE(session.GetItemFromID(second.EntryID()).text("LastName"), QStringLiteral("MÜLLER-Lüdenscheidt"));

    // A second click on the disabled button cannot apply the lists twice.
    boxes.clear();
    click(child<QPushButton>(dialog, "cmdUndo"));
    QCOMPARE(boxes.count(), 0);
}

// Each closing box of a run and of its undo finds the activity bar stopped.
void tst_frmReplace::activityBarStopsBeforeTheMessages()
{
    contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    auto *bar = child<WaitBar>(dialog, "sevWaitBar1");
    QStringList seen;
    MessageHandler recorder = SetMessageHandler(nullptr);
    SetMessageHandler([&](const MessageRequest &request) {
        seen << request.prompt + (bar->isRunning() ? QStringLiteral(" (läuft)") : QString());
        return recorder(request);
    });
    askForLastName(dialog, QStringLiteral("Müller"), QStringLiteral("Meier"));
    click(child<QPushButton>(dialog, "cmdReplace"));
    click(child<QPushButton>(dialog, "cmdUndo"));
    SetMessageHandler(recorder);
    QCOMPARE(seen, (QStringList{"1 Ersetzungen wurden vorgenommen.", "1 Ersetzungen rückgängig gemacht."}));
}

// Type-ahead moves to the row whose caption starts with the letters, but
// chooses nothing on its way; the space bar chooses the row.
void tst_frmReplace::typingInTheListOnlyMovesToARow()
{
    contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    auto *list = child<QListWidget>(dialog, "lstFields");
    list->setFocus();
    QTest::keyClicks(list, QStringLiteral("Unternehmensname"));
    QCOMPARE(list->currentRow(), 87);
    QVERIFY(list->selectedItems().isEmpty());
    QTest::keyClick(list, Qt::Key_Space);
    QCOMPARE(list->selectedItems().size(), 1);
    QCOMPARE(list->selectedItems().first()->text(), QStringLiteral("Unternehmensname"));
    QTest::keyClick(list, Qt::Key_Space);
    QVERIFY(list->selectedItems().isEmpty());
}

void tst_frmReplace::nothingSelectedDoesNothing()
{
    contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    type(child<QLineEdit>(dialog, "txtFind"), QStringLiteral("Müller"));
    click(child<QPushButton>(dialog, "cmdReplace"));
    QCOMPARE(boxes.count(), 0);
    QVERIFY(!child<QPushButton>(dialog, "cmdUndo")->isEnabled());
}

// A later run without changes leaves the undo enabled, with empty lists.
void tst_frmReplace::runWithoutChangesKeepsTheUndo()
{
    const Item item = contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    askForLastName(dialog, QStringLiteral("Müller"), QStringLiteral("Meier"));
    click(child<QPushButton>(dialog, "cmdReplace"));
    click(child<QPushButton>(dialog, "cmdReplace")); // nothing left to find
    QCOMPARE(Prompts(boxes),
             (QStringList{"1 Ersetzungen wurden vorgenommen.", "0 Ersetzungen wurden vorgenommen."}));
    QVERIFY(child<QPushButton>(dialog, "cmdUndo")->isEnabled());
    QCOMPARE(dialog.undoLists().recordCount(), 0);

    boxes.clear();
    click(child<QPushButton>(dialog, "cmdUndo"));
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(Application().GetNamespace().GetItemFromID(item.EntryID()).text("LastName"), QStringLiteral("Meier"));
}

// A run that ends through error 59 leaves its records for the undo.
void tst_frmReplace::brokenRunLeavesTheUndoEnabled()
{
    const Item first = contact(QStringLiteral("Müller"));
    const Item broken = contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    frmReplace dialog;
    dialog.show();
    StoreFaults::FailItem(broken.EntryID(), StoreFaults::FailRead);
    askForLastName(dialog, QStringLiteral("Müller"), QStringLiteral("Meier"));
    click(child<QPushButton>(dialog, "cmdReplace"));

    QCOMPARE(boxes.count(), 1);
    QVERIFY2(boxes.last().prompt.contains("Nr.: 59 /"), qPrintable(boxes.last().prompt));
    QVERIFY(child<QPushButton>(dialog, "cmdUndo")->isEnabled());
    QVERIFY(child<QPushButton>(dialog, "cmdReplace")->isEnabled());
    QVERIFY(child<QCheckBox>(dialog, "chkWord")->isEnabled());
    QVERIFY(!child<WaitBar>(dialog, "sevWaitBar1")->isRunning());

    StoreFaults::Reset();
    boxes.clear();
    click(child<QPushButton>(dialog, "cmdUndo"));
    QCOMPARE(Prompts(boxes), QStringList{"1 Ersetzungen rückgängig gemacht."});
    QCOMPARE(Application().GetNamespace().GetItemFromID(first.EntryID()).text("LastName"), QStringLiteral("Müller"));
}

void tst_frmReplace::closeDuringRunAsksToStop_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("changes");
    QTest::newRow("Ja hält nach dem Element an") << int(AnswerYes) << 1;
    QTest::newRow("Nein lässt weiterlaufen") << int(AnswerNo) << 3;
}

// Closing during a run never closes the dialog (its undo data would be
// lost); it offers to stop after the current item.
void tst_frmReplace::closeDuringRunAsksToStop()
{
    QFETCH(int, answer);
    QFETCH(int, changes);

    for (int i = 0; i < 3; ++i)
        contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    boxes.script({answer});
    frmReplace dialog;
    dialog.show();
    askForLastName(dialog, QStringLiteral("Müller"), QStringLiteral("Meier"));

    bool inputsDisabled = false;
    QTimer::singleShot(0, &dialog, [&] {
        inputsDisabled = !child<QPushButton>(dialog, "cmdReplace")->isEnabled()
            && !child<QPushButton>(dialog, "cmdUndo")->isEnabled()
            && !child<QLineEdit>(dialog, "txtFind")->isEnabled()
            && child<QListWidget>(dialog, "lstFields")->isEnabled()
            && child<WaitBar>(dialog, "sevWaitBar1")->isRunning();
        dialog.close();
    });
    click(child<QPushButton>(dialog, "cmdReplace"));

    QVERIFY(inputsDisabled);
    QVERIFY(dialog.isVisible());
    QCOMPARE(Prompts(boxes),
             (QStringList{"Der Ersetzungsvorgang läuft noch. Möchten Sie ihn nach dem aktuellen Element abbrechen?",
                          QString::number(changes) + " Ersetzungen wurden vorgenommen."}));
    QCOMPARE(boxes.requests().first().buttons, int(MsgQuestionDefaultNo));
    QVERIFY(child<QPushButton>(dialog, "cmdUndo")->isEnabled());

    // Once idle, the dialog closes as usual.
    dialog.close();
    QVERIFY(!dialog.isVisible());
}

void tst_frmReplace::userFieldNamesAreRemembered()
{
    contact(QStringLiteral("Müller"));
    tickAndMark({QStringLiteral("Kontakte")});
    MessageRecorder boxes;
    {
        frmReplace dialog;
        dialog.show();
        click(child<QCheckBox>(dialog, "chkUserDef"));
        auto *userDef = child<sevText>(dialog, "txtUserDef");
        QCOMPARE(userDef->floskelFile(), QStringLiteral("ReplaceUserField.dat"));
        QCOMPARE(userDef->floskelTitle(), QStringLiteral("Namen"));
        type(userDef->editor(), QStringLiteral("Kundennummer"));
        QTest::keyClick(userDef->editor(), Qt::Key_Return);
    }
    frmReplace again;
    QCOMPARE(child<sevText>(again, "txtUserDef")->entries(), QStringList{"Kundennummer"});
}

QTEST_MAIN(tst_frmReplace)
#include "tst_frmreplace.moc"
