// The undo of find and replace over real temporary stores: every record
// fetched, written and saved on its own, gone items counted, error 60.
#include "ReplaceTestStore.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QTemporaryFile>
#include <QTest>

namespace {

QStringList Prompts(const MessageRecorder &boxes)
{
    QStringList prompts;
    for (const MessageRequest &request : boxes.requests())
        prompts << request.prompt;
    return prompts;
}

// Replaces "Müller" by "Meier" in the rows of the contacts given.
ReplaceUndoLists RunOnContacts(const MAPIFolder &contacts, const QSet<int> &rows)
{
    FixedInputs inputs;
    inputs.options.find = QStringLiteral("Müller");
    inputs.options.replacement = QStringLiteral("Meier");
    inputs.selected = rows;
    ReplaceUndoLists lists;
    lists.folderClass = QStringLiteral("IPM.Contact");
    RunReplace({contacts}, inputs, lists);
    return lists;
}

} // namespace

class tst_ReplaceUndo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void undoRestoresFieldsAndUserField();
    void undoRestoresDates_data();
    void undoRestoresDates();
    void goneItemsAreCounted_data();
    void goneItemsAreCounted();
    void undoAfterBrokenRun();
    void emptyListsSayNothing();
    void storeThatCannotBeOpenedIsError60();
};

void tst_ReplaceUndo::undoRestoresFieldsAndUserField()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    Item first = contacts.Items().Add(olContact);
    first.set("FullName", "Müller, Hans");
    first.set("Body", "Herr Müller");
    first.UserProperties().Add(QStringLiteral("Akte"), olText).setValue(QStringLiteral("Müller 2006"));
    first.Save();
    const Item second = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "MÜLLER"}});

    FixedInputs inputs;
    inputs.options.find = QStringLiteral("Müller");
    inputs.options.replacement = QStringLiteral("Meier");
    inputs.selected = {39, 45};
    ReplaceUndoLists lists;
    lists.folderClass = QStringLiteral("IPM.Contact");
    lists.useUserField = true;
    lists.userFieldName = QStringLiteral("Akte");
    RunReplace({contacts}, inputs, lists);
    QCOMPARE(lists.recordCount(), 4);
    QCOMPARE(store.reread(first).text("Body"), QStringLiteral("Herr Meier"));
    QCOMPARE(store.reread(first).text("FullName"), QStringLiteral("Meier, Hans"));
    boxes.clear();

    const ReplaceUndoOutcome outcome = UndoReplace(lists);
    QCOMPARE(outcome.records, 4);
    QCOMPARE(outcome.failures, 0);
    QCOMPARE(Prompts(boxes), QStringList{"4 Ersetzungen rückgängig gemacht."});
    QCOMPARE(boxes.last().buttons, int(MsgInformation));
    QCOMPARE(boxes.last().title, QStringLiteral("Info!"));
    const Item firstAgain = store.reread(first);
    QCOMPARE(firstAgain.text("LastName"), QStringLiteral("Müller"));
    QCOMPARE(firstAgain.text("FullName"), QStringLiteral("Müller, Hans"));
    QCOMPARE(firstAgain.text("Body"), QStringLiteral("Herr Müller"));
    QCOMPARE(firstAgain.UserProperties().Find("Akte").Value().toString(), QStringLiteral("Müller 2006"));
    QCOMPARE(store.reread(second).text("LastName"), QStringLiteral("MÜLLER"));
    // The lists stay; the dialog keeps them from being applied twice.
    QCOMPARE(lists.recordCount(), 4);
}

void tst_ReplaceUndo::undoRestoresDates_data()
{
    QTest::addColumn<int>("folderType");
    QTest::addColumn<int>("itemClass");
    QTest::addColumn<QString>("folderClass");
    QTest::addColumn<QString>("property");
    QTest::addColumn<int>("index");
    QTest::addColumn<QDateTime>("before"); // invalid: no date
    QTest::addColumn<QString>("replacement");

    const QDateTime none;
    const QDateTime noon(QDate(2007, 3, 4), QTime(12, 0));
    QTest::newRow("Geburtstag ohne Datum") << int(olFolderContacts) << int(olContact) << "IPM.Contact"
                                           << "Birthday" << 27 << none << "24.12.2006";
    QTest::newRow("Jahrestag geleert") << int(olFolderContacts) << int(olContact) << "IPM.Contact"
                                       << "Anniversary" << 31 << QDateTime(QDate(1999, 6, 1), QTime(0, 0)) << "";
    QTest::newRow("Aufgabe fällig geleert") << int(olFolderTasks) << int(olTask) << "IPM.Task"
                                            << "DueDate" << 3 << noon << "";
    QTest::newRow("Termin Ende verschoben") << int(olFolderCalendar) << int(olAppointment) << "IPM.Appointment"
                                            << "End" << 2 << noon << "05.03.2007 12:00";
}

// A date goes back as the text it was read with, no date included.
void tst_ReplaceUndo::undoRestoresDates()
{
    QFETCH(int, folderType);
    QFETCH(int, itemClass);
    QFETCH(QString, folderClass);
    QFETCH(QString, property);
    QFETCH(int, index);
    QFETCH(QDateTime, before);
    QFETCH(QString, replacement);

    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder folder = store.folder(folderType);
    QList<QPair<QString, QVariant>> values;
    if (itemClass == olAppointment)
        values.append({"Start", before.addSecs(-3600)});
    if (before.isValid())
        values.append({property, before});
    const Item item = ReplaceTestStore::addItem(folder, itemClass, values);
    const QString oldText = item.text(property);

    FixedInputs inputs;
    inputs.options.replacement = replacement;
    inputs.options.replaceWhole = true;
    inputs.selected = {index};
    ReplaceUndoLists lists;
    lists.folderClass = folderClass;
    RunReplace({folder}, inputs, lists);
    QVERIFY(store.reread(item).text(property) != oldText);

    UndoReplace(lists);
    QCOMPARE(store.reread(item).text(property), oldText);
}

void tst_ReplaceUndo::goneItemsAreCounted_data()
{
    QTest::addColumn<int>("fieldsPerItem");
    QTest::addColumn<bool>("deleteInStore"); // Delete into "Gelöschte Objekte" instead of vanishing
    QTest::addColumn<QStringList>("messages");

    QTest::newRow("ein Element verschwunden")
        << 1 << false << QStringList{"3 Ersetzungen rückgängig gemacht.", "1 Elemente nicht gefunden."};
    QTest::newRow("Element mit zwei Feldern verschwunden")
        << 2 << false << QStringList{"6 Ersetzungen rückgängig gemacht.", "2 Elemente nicht gefunden."};
    QTest::newRow("ein Element gelöscht")
        << 1 << true << QStringList{"3 Ersetzungen rückgängig gemacht.", "1 Elemente nicht gefunden."};
}

// An item gone between run and undo fails its own records only; the sum
// counts every record all the same.
void tst_ReplaceUndo::goneItemsAreCounted()
{
    QFETCH(int, fieldsPerItem);
    QFETCH(bool, deleteInStore);
    QFETCH(QStringList, messages);

    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    QList<Item> items;
    for (const char *name : {"Anna Müller", "Bernd Müller", "Clara Müller"})
        items << ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}, {"Body", name}});
    const QSet<int> rows = fieldsPerItem == 1 ? QSet<int>{39} : QSet<int>{39, 45};
    const ReplaceUndoLists lists = RunOnContacts(contacts, rows);
    QCOMPARE(lists.recordCount(), 3 * fieldsPerItem);

    if (deleteInStore)
        Item(items[1]).Delete();
    else
        StoreFaults::Vanish(items[1].EntryID());
    boxes.clear();
    const ReplaceUndoOutcome outcome = UndoReplace(lists);

    QCOMPARE(outcome.failures, fieldsPerItem);
    QCOMPARE(Prompts(boxes), messages);
    QCOMPARE(boxes.last().buttons, int(MsgStop));
    QCOMPARE(boxes.last().title, QStringLiteral("Fehler!"));
    QCOMPARE(store.reread(items[0]).text("LastName"), QStringLiteral("Müller"));
    QCOMPARE(store.reread(items[2]).text("LastName"), QStringLiteral("Müller"));
    QCOMPARE(store.reread(items[2]).text("Body"), QStringLiteral("Clara Müller"));
}

// After a run that ended through its error handler, the records made until
// then are undone.
void tst_ReplaceUndo::undoAfterBrokenRun()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    const Item first = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}});
    const Item broken = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}});
    StoreFaults::FailItem(broken.EntryID(), StoreFaults::FailRead);
    const ReplaceUndoLists lists = RunOnContacts(contacts, {39});
    QCOMPARE(lists.recordCount(), 1);
    QCOMPARE(store.reread(first).text("LastName"), QStringLiteral("Meier"));

    StoreFaults::Reset();
    boxes.clear();
    UndoReplace(lists);
    QCOMPARE(Prompts(boxes), QStringList{"1 Ersetzungen rückgängig gemacht."});
    QCOMPARE(store.reread(first).text("LastName"), QStringLiteral("Müller"));
}

void tst_ReplaceUndo::emptyListsSayNothing()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    ReplaceUndoLists lists;
    lists.folderClass = QStringLiteral("IPM.Contact");
    const ReplaceUndoOutcome outcome = UndoReplace(lists);
    QCOMPARE(outcome.records, 0);
    QCOMPARE(boxes.count(), 0);
}

// A store that cannot be opened ends the undo through error 60 before any
// record is touched.
void tst_ReplaceUndo::storeThatCannotBeOpenedIsError60()
{
    TestEnvironment env;
    MessageRecorder boxes;
    QTemporaryFile blocker; // a file where the profile folder would have to be
    QVERIFY(blocker.open());
    SetProfileFolder(blocker.fileName() + QStringLiteral("/Profil"));

    ReplaceUndoLists lists;
    lists.folderClass = QStringLiteral("IPM.Contact");
    lists.fields.append({QStringLiteral("Müller"), QStringLiteral("00"), QStringLiteral("00"), 39});
    const ReplaceUndoOutcome outcome = UndoReplace(lists);
    SetProfileFolder(QString());

    QVERIFY(outcome.broken);
    QCOMPARE(boxes.count(), 1);
    QVERIFY2(boxes.last().prompt.contains("Nr.: 60 /"), qPrintable(boxes.last().prompt));
    QVERIFY(env.readLog().contains("Sub: 60"));
}

QTEST_GUILESS_MAIN(tst_ReplaceUndo)
#include "tst_replaceundo.moc"
