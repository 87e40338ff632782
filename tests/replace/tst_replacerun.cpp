// The find and replace run over real temporary stores of every item type:
// text and date fields, the user field, the undo lists, failed saves and
// failures that end the run.
#include "ReplaceTestStore.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QTest>

namespace {


ReplaceUndoLists ListsFor(const char *folderClass)
{
    ReplaceUndoLists lists;
    lists.folderClass = QString::fromLatin1(folderClass);
    return lists;
}

ReplaceOptions Find(const QString &find, const QString &replacement)
{
    ReplaceOptions options;
    options.find = find;
    options.replacement = replacement;
    return options;
}

ReplaceOptions Whole(const QString &replacement)
{
    ReplaceOptions options;
    options.replacement = replacement;
    options.replaceWhole = true;
    return options;
}

QStringList Prompts(const MessageRecorder &boxes)
{
    QStringList prompts;
    for (const MessageRequest &request : boxes.requests())
        prompts << request.prompt;
    return prompts;
}

const QDateTime kBirthday(QDate(1970, 5, 1), QTime(0, 0));

} // namespace

class tst_ReplaceRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void textFieldOfEachType_data();
    void textFieldOfEachType();
    void dateFields_data();
    void dateFields();
    void invalidDateStillSavesTheItem();
    void unchangedItemIsNotSaved();
    void userField_data();
    void userField();
    void failedSaveCountsTheItemOnce();
    void failingReadEndsTheRunWithError59();
    void failingUserFieldSaveEndsTheRun();
    void selectionIsReadForEachItem();
    void stopEndsAfterTheCurrentItem();
    void runWithoutListForTheClass();
};

void tst_ReplaceRun::textFieldOfEachType_data()
{
    QTest::addColumn<int>("folderType");
    QTest::addColumn<int>("itemClass");
    QTest::addColumn<int>("otherClass"); // an item of another class in the same folder
    QTest::addColumn<QString>("folderClass");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    // Each row finds "MÜLLER" and replaces it with "Meier".
    QTest::newRow("Kontakt Nachname") << int(olFolderContacts) << int(olContact) << int(olDistributionList)
                                      << "IPM.Contact" << 39 << "Müller" << "Meier";
    QTest::newRow("Kontakt Unternehmen") << int(olFolderContacts) << int(olContact) << int(olDistributionList)
                                         << "IPM.Contact" << 87 << "Müller & Söhne" << "Meier & Söhne";
    QTest::newRow("Termin Ort") << int(olFolderCalendar) << int(olAppointment) << int(olMail)
                                << "IPM.Appointment" << 5 << "Praxis Müller" << "Praxis Meier";
    QTest::newRow("Aufgabe Zuständig") << int(olFolderTasks) << int(olTask) << int(olMail) << "IPM.Task" << 10
                                       << "Frau müller" << "Frau Meier";
    QTest::newRow("Aufgabe Reisekilometer") << int(olFolderTasks) << int(olTask) << int(olMail) << "IPM.Task"
                                            << 8 << "120 km zu Müller" << "120 km zu Meier";
    QTest::newRow("Mail Betreff") << int(olFolderInbox) << int(olMail) << int(olPost) << "IPM.Note" << 0
                                  << "Re: Müller" << "Re: Meier";
    QTest::newRow("Bereitstellen Text") << int(olFolderInbox) << int(olPost) << int(olMail) << "IPM.Post" << 1
                                        << "Gruß\r\nMüller" << "Gruß\r\nMeier";
    QTest::newRow("Notiz Text") << int(olFolderNotes) << int(olNote) << int(olMail) << "IPM.StickyNote" << 0
                                << "Müller anrufen" << "Meier anrufen";
    QTest::newRow("Journal Betreff") << int(olFolderJournal) << int(olJournal) << int(olMail) << "IPM.Activity"
                                     << 0 << "Anruf Müller" << "Anruf Meier";
}

void tst_ReplaceRun::textFieldOfEachType()
{
    QFETCH(int, folderType);
    QFETCH(int, itemClass);
    QFETCH(int, otherClass);
    QFETCH(QString, folderClass);
    QFETCH(int, index);
    QFETCH(QString, value);
    QFETCH(QString, expected);

    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder folder = store.folder(folderType);
    const QString property = ReplaceTypeForClass(folderClass)->field(index)->propertyName();
    const Item other = ReplaceTestStore::addItem(folder, otherClass, {{"Subject", value}});
    const Item target = ReplaceTestStore::addItem(folder, itemClass, {{property, value}});
    const Item untouched = ReplaceTestStore::addItem(folder, itemClass, {{property, QStringLiteral("Schulz")}});

    FixedInputs inputs;
    inputs.options = Find(QStringLiteral("MÜLLER"), QStringLiteral("Meier"));
    inputs.selected = {index};
    ReplaceUndoLists lists = ListsFor(qPrintable(folderClass));
    const ReplaceRunOutcome outcome = RunReplace({folder}, inputs, lists);

    QCOMPARE(outcome.changes, 1);
    QCOMPARE(outcome.failures, 0);
    QVERIFY(!outcome.broken);
    QCOMPARE(Prompts(boxes), QStringList{"1 Ersetzungen wurden vorgenommen."});
    QCOMPARE(boxes.last().buttons, int(MsgInformation));
    QCOMPARE(boxes.last().title, QStringLiteral("Info!"));
    QCOMPARE(lists.fields.size(), 1);
    QCOMPARE(lists.user.size(), 0);
    QCOMPARE(lists.fields[0].oldValue, value);
    QCOMPARE(lists.fields[0].entryID, target.EntryID());
    QCOMPARE(lists.fields[0].storeID, folder.StoreID());
    QCOMPARE(lists.fields[0].index, index);

    QCOMPARE(store.reread(target).text(property), expected);
    QCOMPARE(store.reread(untouched).text(property), QStringLiteral("Schulz"));
    QCOMPARE(store.reread(other).Subject(), value);
}

void tst_ReplaceRun::dateFields_data()
{
    QTest::addColumn<int>("folderType");
    QTest::addColumn<int>("itemClass");
    QTest::addColumn<QString>("folderClass");
    QTest::addColumn<int>("index");
    QTest::addColumn<QDateTime>("before"); // invalid: no date
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("records");

    const QDateTime none;
    const int contacts = olFolderContacts, tasks = olFolderTasks, calendar = olFolderCalendar;
    const QDateTime meeting(QDate(2007, 1, 10), QTime(10, 0));
    auto row = [](const char *name, int folderType, int itemClass, const char *folderClass, int index,
                  const QDateTime &before, const char *replacement, const char *after, int records) {
        QTest::newRow(name) << folderType << itemClass << QString::fromLatin1(folderClass) << index << before
                            << QString::fromUtf8(replacement) << QString::fromUtf8(after) << records;
    };
    row("Geburtstag eintragen", contacts, olContact, "IPM.Contact", 27, none, "24.12.2006", "24.12.2006", 1);
    row("Geburtstag leeren", contacts, olContact, "IPM.Contact", 27, kBirthday, "", "01.01.4501", 1);
    row("Geburtstag ungültig", contacts, olContact, "IPM.Contact", 27, kBirthday, "32.13.2006", "01.05.1970", 1);
    row("Geburtstag Text", contacts, olContact, "IPM.Contact", 27, kBirthday, "Sommer", "01.05.1970", 1);
    row("Geburtstag gleich", contacts, olContact, "IPM.Contact", 27, kBirthday, "01.05.1970", "01.05.1970", 0);
    row("Jahrestag mit Zeit", contacts, olContact, "IPM.Contact", 31, none, "24.12.2006 18:30", "24.12.2006 18:30:00",
        1);
    row("Aufgabe fällig leeren", tasks, olTask, "IPM.Task", 3, kBirthday, "", "01.01.4501", 1);
    row("Aufgabe erledigt eintragen", tasks, olTask, "IPM.Task", 2, none, "5.6.2007", "05.06.2007", 1);
    row("Aufgabe Start ungültig", tasks, olTask, "IPM.Task", 9, kBirthday, "morgen", "01.05.1970", 1);
    row("Termin Beginn verschieben", calendar, olAppointment, "IPM.Appointment", 0, meeting, "11.01.2007 09:00",
        "11.01.2007 09:00:00", 1);
    row("Termin Beginn leeren bleibt", calendar, olAppointment, "IPM.Appointment", 0, meeting, "",
        "10.01.2007 10:00:00", 1);
    row("Termin Ende ungültig bleibt", calendar, olAppointment, "IPM.Appointment", 2, meeting.addSecs(3600),
        "32.13.2006", "10.01.2007 11:00:00", 1);
}

void tst_ReplaceRun::dateFields()
{
    QFETCH(int, folderType);
    QFETCH(int, itemClass);
    QFETCH(QString, folderClass);
    QFETCH(int, index);
    QFETCH(QDateTime, before);
    QFETCH(QString, replacement);
    QFETCH(QString, after);
    QFETCH(int, records);

    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder folder = store.folder(folderType);
    const QString property = ReplaceTypeForClass(folderClass)->field(index)->propertyName();
    Values values;
    if (before.isValid())
        values.append({property, before});
    if (itemClass == olAppointment) // an appointment always has both dates
        values = {{"Start", QDateTime(QDate(2007, 1, 10), QTime(10, 0))},
                  {"End", QDateTime(QDate(2007, 1, 10), QTime(11, 0))}};
    const Item item = ReplaceTestStore::addItem(folder, itemClass, values);
    const QString oldText = item.text(property);

    FixedInputs inputs;
    inputs.options = Whole(replacement);
    inputs.selected = {index};
    ReplaceUndoLists lists = ListsFor(qPrintable(folderClass));
    const ReplaceRunOutcome outcome = RunReplace({folder}, inputs, lists);

    QCOMPARE(outcome.changes, records);
    QCOMPARE(lists.fields.size(), records);
    if (records)
        QCOMPARE(lists.fields[0].oldValue, oldText);
    QCOMPARE(Prompts(boxes), QStringList{QString::number(records) + " Ersetzungen wurden vorgenommen."});
    QCOMPARE(store.reread(item).text(property), after);
}

// A date that cannot be written leaves the field as it was, but the record
// is made and the item is saved all the same: a refused save shows it.
void tst_ReplaceRun::invalidDateStillSavesTheItem()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    const Item item = ReplaceTestStore::addItem(contacts, olContact, {{"Birthday", kBirthday}});
    StoreFaults::FailItem(item.EntryID(), StoreFaults::FailSave);

    FixedInputs inputs;
    inputs.options = Whole(QStringLiteral("32.13.2006"));
    inputs.selected = {27};
    ReplaceUndoLists lists = ListsFor("IPM.Contact");
    const ReplaceRunOutcome outcome = RunReplace({contacts}, inputs, lists);
    QCOMPARE(outcome.failures, 1);
    QCOMPARE(lists.fields.size(), 1);
}

void tst_ReplaceRun::unchangedItemIsNotSaved()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    const Item same = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Schulz"}});
    StoreFaults::FailItem(same.EntryID(), StoreFaults::FailSave);

    FixedInputs inputs;
    inputs.options = Whole(QStringLiteral("Schulz")); // the same text as the field holds
    inputs.selected = {39};
    ReplaceUndoLists lists = ListsFor("IPM.Contact");
    const ReplaceRunOutcome outcome = RunReplace({contacts}, inputs, lists);
    QCOMPARE(outcome.failures, 0);
    QCOMPARE(outcome.changes, 0);
    QCOMPARE(Prompts(boxes), QStringList{"0 Ersetzungen wurden vorgenommen."});
}

void tst_ReplaceRun::userField_data()
{
    QTest::addColumn<QString>("fieldName");
    QTest::addColumn<int>("records");
    QTest::newRow("Name wie angelegt") << "Projekt" << 1;
    QTest::newRow("Name in anderer Schreibung") << "PROJEKT" << 1;
    QTest::newRow("unbekannter Name") << "Kostenstelle" << 0;
    QTest::newRow("leerer Name") << "" << 0;
}

// The user field alone, without a selected row: an item without the
// property is passed over without a word.
void tst_ReplaceRun::userField()
{
    QFETCH(QString, fieldName);
    QFETCH(int, records);

    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder tasks = store.folder(olFolderTasks);
    Item withField = tasks.Items().Add(olTask);
    withField.UserProperties().Add(QStringLiteral("Projekt"), olText).setValue(QStringLiteral("Umbau Müller"));
    withField.Save();
    const Item without = ReplaceTestStore::addItem(tasks, olTask, {{"Subject", "Umbau Müller"}});

    FixedInputs inputs;
    inputs.options = Find(QStringLiteral("müller"), QStringLiteral("Meier"));
    ReplaceUndoLists lists = ListsFor("IPM.Task");
    lists.useUserField = true;
    lists.userFieldName = fieldName;
    const ReplaceRunOutcome outcome = RunReplace({tasks}, inputs, lists);

    QCOMPARE(outcome.changes, records);
    QCOMPARE(lists.user.size(), records);
    QCOMPARE(lists.fields.size(), 0);
    QCOMPARE(Prompts(boxes), QStringList{QString::number(records) + " Ersetzungen wurden vorgenommen."});
    const QString expected = records ? QStringLiteral("Umbau Meier") : QStringLiteral("Umbau Müller");
    QCOMPARE(store.reread(withField).UserProperties().Find(QStringLiteral("Projekt")).Value().toString(), expected);
    if (records) {
        QCOMPARE(lists.user[0].oldValue, QStringLiteral("Umbau Müller"));
        QCOMPARE(lists.user[0].entryID, withField.EntryID());
    }
    QVERIFY(store.reread(without).UserProperties().Find(QStringLiteral("Projekt")).isNull());
}

// Three changed fields of one item whose save fails lower the count by one;
// the records of that item stay, and the file keeps the old values.
void tst_ReplaceRun::failedSaveCountsTheItemOnce()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    const Values muller{{"LastName", "Müller"}, {"CompanyName", "Müller AG"}, {"Body", "bei Müller"}};
    const Item refused = ReplaceTestStore::addItem(contacts, olContact, muller);
    const Item saved = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}});
    StoreFaults::FailItem(refused.EntryID(), StoreFaults::FailSave);

    FixedInputs inputs;
    inputs.options = Find(QStringLiteral("Müller"), QStringLiteral("Meier"));
    inputs.selected = {39, 45, 87};
    ReplaceUndoLists lists = ListsFor("IPM.Contact");
    const ReplaceRunOutcome outcome = RunReplace({contacts}, inputs, lists);

    QCOMPARE(lists.fields.size(), 4);
    QCOMPARE(outcome.failures, 1);
    QCOMPARE(outcome.changes, 3);
    QCOMPARE(Prompts(boxes), (QStringList{"3 Ersetzungen wurden vorgenommen.",
                                          "1 Ersetzungen schlugen fehl. Überprüfen Sie die Berechtigungen."}));
    QCOMPARE(boxes.requests().at(1).buttons, int(MsgStop));
    QCOMPARE(boxes.requests().at(1).title, QStringLiteral("Fehler!"));
    StoreFaults::Reset();
    QCOMPARE(store.reread(refused).text("LastName"), QStringLiteral("Müller"));
    QCOMPARE(store.reread(refused).text("CompanyName"), QStringLiteral("Müller AG"));
    QCOMPARE(store.reread(saved).text("LastName"), QStringLiteral("Meier"));
}

// A read that fails ends the run through error 59: no closing message, and
// what was done so far stays done and recorded.
void tst_ReplaceRun::failingReadEndsTheRunWithError59()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    const Item first = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}});
    const Item broken = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}});
    const Item last = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}});
    StoreFaults::FailItem(broken.EntryID(), StoreFaults::FailRead);

    FixedInputs inputs;
    inputs.options = Find(QStringLiteral("Müller"), QStringLiteral("Meier"));
    inputs.selected = {39};
    ReplaceUndoLists lists = ListsFor("IPM.Contact");
    const ReplaceRunOutcome outcome = RunReplace({contacts}, inputs, lists);

    QVERIFY(outcome.broken);
    QCOMPARE(boxes.count(), 1);
    QVERIFY2(boxes.last().prompt.contains("Nr.: 59 /"), qPrintable(boxes.last().prompt));
    QCOMPARE(boxes.last().buttons, int(MsgStop));
    QVERIFY(store.env.readLog().contains("Sub: 59"));
    QCOMPARE(lists.fields.size(), 1);
    QCOMPARE(lists.fields[0].entryID, first.EntryID());
    StoreFaults::Reset();
    QCOMPARE(store.reread(first).text("LastName"), QStringLiteral("Meier"));
    QCOMPARE(store.reread(last).text("LastName"), QStringLiteral("Müller"));
}

// The user field is saved at once, outside the counted saves: its failure
// ends the run, and its record stays for the undo.
void tst_ReplaceRun::failingUserFieldSaveEndsTheRun()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder notes = store.folder(olFolderNotes);
    Item note = notes.Items().Add(olNote);
    note.UserProperties().Add(QStringLiteral("Ablage"), olText).setValue(QStringLiteral("Müller"));
    note.Save();
    StoreFaults::FailItem(note.EntryID(), StoreFaults::FailSave);

    FixedInputs inputs;
    inputs.options = Find(QStringLiteral("Müller"), QStringLiteral("Meier"));
    ReplaceUndoLists lists = ListsFor("IPM.StickyNote");
    lists.useUserField = true;
    lists.userFieldName = QStringLiteral("Ablage");
    const ReplaceRunOutcome outcome = RunReplace({notes}, inputs, lists);

    QVERIFY(outcome.broken);
    QCOMPARE(lists.user.size(), 1);
    QCOMPARE(boxes.count(), 1);
    QVERIFY2(boxes.last().prompt.contains("Nr.: 59 /"), qPrintable(boxes.last().prompt));
}

// lstFields stays usable during a run; each item sees the selection of the
// moment.
void tst_ReplaceRun::selectionIsReadForEachItem()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    const Values muller{{"FirstName", "Müller"}, {"LastName", "Müller"}};
    const Item first = ReplaceTestStore::addItem(contacts, olContact, muller);
    const Item second = ReplaceTestStore::addItem(contacts, olContact, muller);

    FixedInputs inputs;
    inputs.options = Find(QStringLiteral("Müller"), QStringLiteral("Meier"));
    inputs.selected = {39};
    int looks = 0;
    inputs.onLook = [&] {
        if (++looks == 96) // the first look at the second item
            inputs.selected = {90};
    };
    ReplaceUndoLists lists = ListsFor("IPM.Contact");
    RunReplace({contacts}, inputs, lists);

    QCOMPARE(store.reread(first).text("LastName"), QStringLiteral("Meier"));
    QCOMPARE(store.reread(first).text("FirstName"), QStringLiteral("Müller"));
    QCOMPARE(store.reread(second).text("LastName"), QStringLiteral("Müller"));
    QCOMPARE(store.reread(second).text("FirstName"), QStringLiteral("Meier"));
}

void tst_ReplaceRun::stopEndsAfterTheCurrentItem()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder inbox = store.folder(olFolderInbox);
    QList<Item> mails;
    for (int i = 0; i < 3; ++i)
        mails << ReplaceTestStore::addItem(inbox, olMail, {{"Subject", "Angebot Müller"}});

    FixedInputs inputs;
    inputs.options = Find(QStringLiteral("Müller"), QStringLiteral("Meier"));
    inputs.selected = {0};
    inputs.onLook = [&] { inputs.stop = true; };
    ReplaceUndoLists lists = ListsFor("IPM.Note");
    const ReplaceRunOutcome outcome = RunReplace({inbox}, inputs, lists);

    QCOMPARE(outcome.changes, 1);
    QCOMPARE(Prompts(boxes), QStringList{"1 Ersetzungen wurden vorgenommen."});
    QCOMPARE(store.reread(mails[0]).Subject(), QStringLiteral("Angebot Meier"));
    QCOMPARE(store.reread(mails[1]).Subject(), QStringLiteral("Angebot Müller"));
}

// A class without a list touches nothing but still ends with its message.
void tst_ReplaceRun::runWithoutListForTheClass()
{
    ReplaceTestStore store;
    MessageRecorder &boxes = store.boxes;
    const MAPIFolder contacts = store.folder(olFolderContacts);
    const Item item = ReplaceTestStore::addItem(contacts, olContact, {{"LastName", "Müller"}});

    FixedInputs inputs;
    inputs.options = Whole(QStringLiteral("Meier"));
    inputs.selected = {0, 39};
    ReplaceUndoLists lists = ListsFor("IPM.Contact.Custom");
    const ReplaceRunOutcome outcome = RunReplace({contacts}, inputs, lists);
    QCOMPARE(outcome.changes, 0);
    QCOMPARE(Prompts(boxes), QStringList{"0 Ersetzungen wurden vorgenommen."});
    QCOMPARE(store.reread(item).text("LastName"), QStringLiteral("Müller"));
}

QTEST_GUILESS_MAIN(tst_ReplaceRun)
#include "tst_replacerun.moc"
