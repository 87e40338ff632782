// School holidays into calendars on a real profile: two calendars with the
// repeat question, the members of an inserted appointment, periods without
// dates, failures of the tables, the shipped tables, and the dialog.
#include "itemtools/HolidayFunctions.h"
#include "itemtools/frmHoliday.h"
#include "store/Store.h"
#include "support/SelectionFixture.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

namespace {

const QString kQuestion = QStringLiteral("Es befinden sich bereits Schulferien im Kalender-Ordner %1.\r\n"
                                         "Möchten Sie die Schulferien ein weiteres Mal hinzufügen?");
const QString kAdded = QStringLiteral("Schulferien hinzugefügt.");
const QString kChooseState = QStringLiteral("Bitte wählen Sie zuerst ein Bundesland.");

// A small reference database: periods 2 to 4 (ten columns, one of them of
// free use), and names for DE and, only for period 2, for AT.
void writeSampleDb(const QString &path)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("sample"));
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QSqlQuery q(db);
        const QStringList statements{
            "CREATE TABLE T_Holidays (State TEXT, Country TEXT, Year INTEGER, From2 TEXT, To2 TEXT, From3 TEXT, "
            "To3 TEXT, From4 TEXT, To4 TEXT, Remark TEXT)",
            "INSERT INTO T_Holidays VALUES ('BY', 'DE', 2027, '2027-02-08', '2027-02-12', NULL, NULL, "
            "'2027-05-18', '2027-05-18', 'ein Tag')",
            "INSERT INTO T_Holidays VALUES ('HE', 'DE', 2027, '2027-03-22', '2027-04-02', '2027-06-28', "
            "'2027-08-06', NULL, NULL, '')",
            "INSERT INTO T_Holidays VALUES ('XX', 'DE', 2027, '2027-01-04', NULL, NULL, NULL, NULL, NULL, '')",
            "INSERT INTO T_Holidays VALUES ('W', 'AT', 2027, '2027-02-01', '2027-02-05', '2027-03-20', "
            "'2027-03-29', NULL, NULL, '')",
            "CREATE TABLE T_HolidaysDes (\"Index\" INTEGER, Country TEXT, Description TEXT)",
            "INSERT INTO T_HolidaysDes VALUES (2, 'DE', 'Winterferien'), (3, 'DE', 'Osterferien'), "
            "(4, 'DE', 'Pfingstferien'), (2, 'AT', 'Semesterferien')",
        };
        for (const QString &statement : statements)
            QVERIFY2(q.exec(statement), qPrintable(statement));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("sample"));
}

// Two calendars: Kalender and its subfolder Familie.
struct HolidayProfile : SelectionFixture {
    explicit HolidayProfile(bool shippedTables = false)
    {
        const QString db = QDir(environment.folder()).filePath(QStringLiteral("VarnexPub.db"));
        if (shippedTables)
            QFile::copy(BuiltReferenceDb(), db);
        else
            writeSampleDb(db);
        SelectionFixture::folder("Kalender").Folders().Add(QStringLiteral("Familie"));
        readTree();
    }
    static QList<MAPIFolder> calendars()
    {
        return {SelectionFixture::folder("Kalender"), SelectionFixture::folder("Kalender/Familie")};
    }
    // Subjects of the folder's items, sorted.
    static QStringList subjects(const MAPIFolder &folder)
    {
        QStringList result;
        for (const Item &item : folder.Items())
            result << item.Subject();
        result.sort();
        return result;
    }
};

} // namespace

class tst_Holidays : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void twoCalendars_data();
    void twoCalendars();
    void appointmentMembers();
    void stateNotInTable_data();
    void stateNotInTable();
    void tableFaults_data();
    void tableFaults();
    void shippedTables();
    void dialogInsertsIntoTickedCalendars();
    void dialogWithoutCalendar();
    void dialogTakesCodeAsTyped_data();
    void dialogTakesCodeAsTyped();
};

void tst_Holidays::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_Holidays::twoCalendars_data()
{
    QTest::addColumn<bool>("firstHoldsThem");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<bool>("closingMessage");

    const QStringList once{"Pfingstferien (BY)", "Winterferien (BY)"};
    QTest::newRow("keiner hat sie") << false << int(AnswerYes) << once << true;
    QTest::newRow("erster hat sie, Nein") << true << int(AnswerNo)
                                          << QStringList{"Winterferien (BY)"} << false;
    QTest::newRow("erster hat sie, Ja")
        << true << int(AnswerYes)
        << QStringList{"Pfingstferien (BY)", "Winterferien (BY)", "Winterferien (BY)"} << true;
}

void tst_Holidays::twoCalendars()
{
    QFETCH(bool, firstHoldsThem);
    QFETCH(int, answer);
    QFETCH(QStringList, first);
    QFETCH(bool, closingMessage);

    HolidayProfile p;
    if (firstHoldsThem) {
        Item earlier = SelectionFixture::folder("Kalender").Items().Add();
        earlier.setSubject(QStringLiteral("Winterferien (BY)"));
        earlier.Save();
    }
    // Holidays of another state do not count as already there.
    Item other = SelectionFixture::folder("Kalender/Familie").Items().Add();
    other.setSubject(QStringLiteral("Winterferien (HE)"));
    other.Save();
    MessageRecorder messages;
    messages.script({answer});

    InsertHolidays(QStringLiteral("BY"), QStringLiteral("DE"), HolidayProfile::calendars());

    QCOMPARE(HolidayProfile::subjects(SelectionFixture::folder("Kalender")), first);
    QCOMPARE(HolidayProfile::subjects(SelectionFixture::folder("Kalender/Familie")),
             (QStringList{"Pfingstferien (BY)", "Winterferien (BY)", "Winterferien (HE)"}));
    QStringList prompts;
    for (const MessageRequest &request : messages.requests())
        prompts << request.prompt;
    QStringList expected;
    if (firstHoldsThem)
        expected << kQuestion.arg(QStringLiteral("Kalender"));
    if (closingMessage)
        expected << kAdded;
    QCOMPARE(prompts, expected);
    if (firstHoldsThem) {
        QCOMPARE(messages.requests().first().buttons, int(MsgQuestion));
        QCOMPARE(messages.requests().first().title, QStringLiteral("Frage?"));
    }
}

void tst_Holidays::appointmentMembers()
{
    HolidayProfile p;
    MessageRecorder messages;

    InsertHolidays(QStringLiteral("BY"), QStringLiteral("DE"), {SelectionFixture::folder("Kalender")});

    const Items items = SelectionFixture::folder("Kalender").Items();
    QCOMPARE(items.Count(), 2); // period 3 has no dates
    const Item winter = items.Find(QStringLiteral("[Subject] = 'Winterferien (BY)'"));
    const Item whitsun = items.Find(QStringLiteral("[Subject] = 'Pfingstferien (BY)'"));
    QVERIFY(!winter.isNull() && !whitsun.isNull());
    QCOMPARE(winter.get(QStringLiteral("AllDayEvent")).toBool(), true);
    QCOMPARE(winter.get(QStringLiteral("Start")).toDateTime(), QDateTime(QDate(2027, 2, 8), QTime(0, 0)));
    QCOMPARE(winter.get(QStringLiteral("End")).toDateTime(), QDateTime(QDate(2027, 2, 13), QTime(0, 0)));
    QCOMPARE(winter.Body(), QStringLiteral("Schulferien eingefügt von Varnex. Alle Angaben ohne Gewähr."));
    QCOMPARE(winter.get(QStringLiteral("BusyStatus")).toInt(), 0);
    QCOMPARE(winter.get(QStringLiteral("Categories")).toString(), QStringLiteral("Schulferien"));
    QCOMPARE(winter.get(QStringLiteral("ReminderSet")).toBool(), false);
    // A one-day period ends at the start of the next day.
    QCOMPARE(whitsun.get(QStringLiteral("Start")).toDateTime(), QDateTime(QDate(2027, 5, 18), QTime(0, 0)));
    QCOMPARE(whitsun.get(QStringLiteral("End")).toDateTime(), QDateTime(QDate(2027, 5, 19), QTime(0, 0)));
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().prompt, kAdded);
    QCOMPARE(messages.last().buttons, int(MsgInformation));
    QCOMPARE(messages.last().title, QStringLiteral("Info!"));
}

void tst_Holidays::stateNotInTable_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("country");

    QTest::newRow("leeres Bundesland") << "" << "DE";
    QTest::newRow("unbekanntes Kürzel") << "ZZ" << "DE";
    QTest::newRow("Kürzel des anderen Landes") << "BY" << "CH";
    QTest::newRow("Apostroph ist nur Text") << "B'Y" << "DE";
    QTest::newRow("Kleinschreibung") << "by" << "DE";
}

void tst_Holidays::stateNotInTable()
{
    QFETCH(QString, state);
    QFETCH(QString, country);

    HolidayProfile p;
    MessageRecorder messages;

    InsertHolidays(state, country, HolidayProfile::calendars());

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().prompt, kChooseState);
    QCOMPARE(messages.last().buttons, int(MsgInformation));
    QCOMPARE(SelectionFixture::folder("Kalender").Items().Count(), 0);
}

void tst_Holidays::tableFaults_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("country");
    QTest::addColumn<bool>("removeDb");
    QTest::addColumn<QStringList>("saved"); // in Kalender, before the failure
    QTest::addColumn<QString>("number");

    QTest::newRow("Ende fehlt, Anfang da") << "XX" << "DE" << false << QStringList{} << "94";
    QTest::newRow("Zeitraum mit Daten ohne Namen")
        << "W" << "AT" << false << QStringList{"Semesterferien (W)"} << "3021";
    QTest::newRow("Referenzdatenbank fehlt") << "BY" << "DE" << true << QStringList{} << "53";
}

void tst_Holidays::tableFaults()
{
    QFETCH(QString, state);
    QFETCH(QString, country);
    QFETCH(bool, removeDb);
    QFETCH(QStringList, saved);
    QFETCH(QString, number);

    HolidayProfile p;
    if (removeDb)
        QVERIFY(QFile::remove(QDir(p.environment.folder()).filePath(QStringLiteral("VarnexPub.db"))));
    MessageRecorder messages;

    InsertHolidays(state, country, HolidayProfile::calendars());

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().buttons, int(MsgStop));
    const QString log = p.environment.readLog();
    QVERIFY2(log.contains(QStringLiteral("Sub: 1301")), qPrintable(log));
    QVERIFY2(log.contains(QStringLiteral("Err. No.: %1,").arg(number)), qPrintable(log));
    QCOMPARE(HolidayProfile::subjects(SelectionFixture::folder("Kalender")), saved);
    QCOMPARE(SelectionFixture::folder("Kalender/Familie").Items().Count(), 0); // not reached
}

void tst_Holidays::shippedTables()
{
    HolidayProfile p(true);
    MessageRecorder messages;

    InsertHolidays(QStringLiteral("BY"), QStringLiteral("DE"), {SelectionFixture::folder("Kalender")});
    InsertHolidays(QStringLiteral("ZH"), QStringLiteral("CH"), {SelectionFixture::folder("Kalender/Familie")});

    QCOMPARE(HolidayProfile::subjects(SelectionFixture::folder("Kalender")),
             (QStringList{"Herbstferien (BY)", "Osterferien (BY)", "Pfingstferien (BY)", "Sommerferien (BY)",
                          "Weihnachtsferien (BY)", "Winterferien (BY)"}));
    // Zurich leaves the sport holidays to its communes.
    QCOMPARE(HolidayProfile::subjects(SelectionFixture::folder("Kalender/Familie")),
             (QStringList{"Frühlingsferien (ZH)", "Herbstferien (ZH)", "Sommerferien (ZH)", "Weihnachtsferien (ZH)"}));
    QCOMPARE(messages.count(), 2);
}

void tst_Holidays::dialogInsertsIntoTickedCalendars()
{
    HolidayProfile p(true);
    QVERIFY(p.select({"Kalender", "Kalender/Familie"}));
    MessageRecorder messages;

    frmHoliday dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Schulferien einfügen"));
    auto *country = dialog.findChild<QComboBox *>(QStringLiteral("txtCountry"));
    auto *state = dialog.findChild<QComboBox *>(QStringLiteral("txtState"));
    auto *insert = dialog.findChild<QPushButton *>(QStringLiteral("cmdEinfügen"));
    QVERIFY(country && state && insert);
    QVERIFY(insert->isEnabled());
    QCOMPARE(country->currentText(), QStringLiteral("DE"));
    QCOMPARE(country->count(), 2);
    QCOMPARE(country->itemText(0), QStringLiteral("DE"));
    QCOMPARE(country->itemText(1), QStringLiteral("CH"));
    QCOMPARE(state->currentText(), QString());
    QCOMPARE(state->count(), 16);
    QCOMPARE(state->itemText(0), QStringLiteral("BB"));

    // Choosing Switzerland refills the states; the list is sorted.
    country->setCurrentIndex(1);
    QCOMPARE(state->count(), 26);
    QCOMPARE(state->itemText(0), QStringLiteral("AG"));
    QCOMPARE(state->itemText(25), QStringLiteral("ZH"));
    QTest::keyClicks(state->lineEdit(), QStringLiteral("BE"));
    if (!qEnvironmentVariableIsEmpty("VARNEX_SHOTS"))
        dialog.grab().save(qEnvironmentVariable("VARNEX_SHOTS") + QStringLiteral("/frmHoliday.png"));

    QTest::mouseClick(insert, Qt::LeftButton);

    QVERIFY(dialog.isVisible()); // stays open for the next state
    QCOMPARE(messages.last().prompt, kAdded);
    for (const MAPIFolder &calendar : HolidayProfile::calendars()) {
        const QStringList subjects = HolidayProfile::subjects(calendar);
        QCOMPARE(subjects.size(), 4); // Bern leaves the sport holidays to its communes
        QVERIFY(subjects.contains(QStringLiteral("Herbstferien (BE)")));
    }
}

void tst_Holidays::dialogWithoutCalendar()
{
    HolidayProfile p(true);
    QVERIFY(p.select({"Kontakte"}));
    MessageRecorder messages;

    frmHoliday dialog;

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().prompt,
             QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Kalender-Ordner aus."));
    auto *insert = dialog.findChild<QPushButton *>(QStringLiteral("cmdEinfügen"));
    QVERIFY(insert && !insert->isEnabled());
    QCOMPARE(dialog.findChild<QComboBox *>(QStringLiteral("txtState"))->count(), 16);
}

void tst_Holidays::dialogTakesCodeAsTyped_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("typed");
    QTest::newRow("B ist nicht BB") << "DE" << "B";
    QTest::newRow("S ist nicht SH") << "CH" << "S";
    QTest::newRow("N ist nicht NI") << "DE" << "N";
}

// A partly typed code is no code: no completion picks a state for the user.
void tst_Holidays::dialogTakesCodeAsTyped()
{
    QFETCH(QString, country);
    QFETCH(QString, typed);
    HolidayProfile p(true);
    QVERIFY(p.select({"Kalender"}));
    MessageRecorder messages;
    frmHoliday dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto *countryField = dialog.findChild<QComboBox *>(QStringLiteral("txtCountry"));
    auto *state = dialog.findChild<QComboBox *>(QStringLiteral("txtState"));
    countryField->lineEdit()->selectAll();
    QTest::keyClicks(countryField->lineEdit(), country);
    state->lineEdit()->setFocus();
    QTest::keyClicks(state->lineEdit(), typed);
    QCOMPARE(state->currentText(), typed);
    QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("cmdEinfügen")), Qt::LeftButton);
    QCOMPARE(messages.last().prompt, kChooseState);
    QCOMPARE(SelectionFixture::folder("Kalender").Items().Count(), 0);
}

QTEST_MAIN(tst_Holidays)
#include "tst_holidays.moc"
