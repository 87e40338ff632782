// The telephone tables dialog, driven through its grids: every change goes
// to the database at once and the normaliser sees it at its next number;
// the delete question; a new row written when the user leaves it or closes
// the dialog; duplicates refused with the message; a missing database.
#include "controls/DataGrid.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"
#include "telephone/TelNrStandard.h"
#include "telephone/frmTelDB.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlQuery>
#include <QTest>

class tst_frmTelDB : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void tablesShownArranged();
    void changeCountsAtNextNumber_data();
    void changeCountsAtNextNumber();
    void emptyCellIsStoredAsNull();
    void deleteAsksFirst();
    void newRowWrittenWhenLeft();
    void closingWritesNewRow();
    void duplicateRowRefused_data();
    void duplicateRowRefused();
    void refusedChangeKeepsOldValue();
    void missingDatabaseIs2302();

private:
    void open(bool realTables);
    DataGrid *grid(const QString &name) const { return m_dialog->findChild<DataGrid *>(name); }
    static int rowOf(DataGrid *grid, const QString &country, const QString &column, const QString &value);
    static QLineEdit *openEditor(DataGrid *grid);
    static void typeInto(DataGrid *grid, const QString &text, Qt::Key finish);
    static void editCell(DataGrid *grid, int row, int column, const QString &text);
    QString scalar(const QString &sql) const;
    static QString normalised(const QString &number);

    TestEnvironment *m_env = nullptr;
    MessageRecorder *m_boxes = nullptr;
    frmTelDB *m_dialog = nullptr;
};

void tst_frmTelDB::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_frmTelDB::open(bool realTables)
{
    m_env = new TestEnvironment(realTables, false);
    CopyDefaultSettings(*m_env);
    if (!realTables)
        QVERIFY(WriteSampleTelDb(m_env->folder()));
    m_boxes = new MessageRecorder;
    m_dialog = new frmTelDB;
    m_dialog->show();
}

void tst_frmTelDB::cleanup()
{
    delete m_dialog;
    m_dialog = nullptr;
    delete m_boxes;
    delete m_env;
}

QLineEdit *tst_frmTelDB::openEditor(DataGrid *grid)
{
    // A closed editor lingers until the event loop deletes it.
    for (QLineEdit *editor : grid->viewport()->findChildren<QLineEdit *>()) {
        if (editor->isVisible())
            return editor;
    }
    return nullptr;
}

int tst_frmTelDB::rowOf(DataGrid *grid, const QString &country, const QString &column, const QString &value)
{
    for (int row = 0; row < grid->rowCountShown(); ++row) {
        if (grid->cellValue(row, QStringLiteral("CountryCode")) == country && grid->cellValue(row, column) == value)
            return row;
    }
    return -1;
}

void tst_frmTelDB::typeInto(DataGrid *grid, const QString &text, Qt::Key finish)
{
    QLineEdit *editor = openEditor(grid);
    QVERIFY2(editor, "no open editor");
    editor->selectAll();
    if (text.isEmpty())
        QTest::keyClick(editor, Qt::Key_Backspace);
    QTest::keyClicks(editor, text);
    if (finish == Qt::Key_unknown)
        return;
    QTest::keyClick(editor, finish);
    // The delegate commits and closes the editor through the event loop.
    QCoreApplication::processEvents();
}

void tst_frmTelDB::editCell(DataGrid *grid, int row, int column, const QString &text)
{
    const QModelIndex index = grid->model()->index(row, column);
    grid->setCurrentIndex(index);
    grid->edit(index);
    typeInto(grid, text, Qt::Key_Return);
}

QString tst_frmTelDB::scalar(const QString &sql) const
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("check"));
    db.setDatabaseName(m_env->folder() + QStringLiteral("/VarnexPub.db"));
    QString result = QStringLiteral("<Fehler>");
    if (db.open()) {
        QSqlQuery query(sql, db);
        if (query.next())
            result = query.value(0).isNull() ? QStringLiteral("<NULL>") : query.value(0).toString();
    }
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("check"));
    return result;
}

QString tst_frmTelDB::normalised(const QString &number)
{
    bool changed = false;
    return StandardTelNr(number, changed);
}

void tst_frmTelDB::tablesShownArranged()
{
    open(true);
    QCOMPARE(m_dialog->windowTitle(), QStringLiteral("Telefonnummer Optionen"));
    DataGrid *areas = grid(QStringLiteral("GridCountryArea"));
    DataGrid *prefixes = grid(QStringLiteral("GridNDDP"));
    QCOMPARE(QString::number(areas->rowCountShown()), scalar("SELECT COUNT(*) FROM T_CountryAndAreaCodes"));
    QCOMPARE(QString::number(prefixes->rowCountShown()), scalar("SELECT COUNT(*) FROM T_CountryCodes"));
    QCOMPARE(areas->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Ortvorwahl"));
    QCOMPARE(prefixes->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Nationales Präfix"));
    for (DataGrid *table : {areas, prefixes}) {
        QCOMPARE(table->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Ländervorwahl"));
        for (int row = 1; row < table->rowCountShown(); ++row) {
            const int before = table->cellValue(row - 1, "CountryCode").value_or("0").toInt();
            const int here = table->cellValue(row, "CountryCode").value_or("0").toInt();
            QVERIFY2(before <= here, qPrintable(QStringLiteral("Zeile %1").arg(row)));
        }
    }
}

void tst_frmTelDB::changeCountsAtNextNumber_data()
{
    QTest::addColumn<QString>("gridName");
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("oldValue");
    QTest::addColumn<QString>("newValue");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("Ortvorwahl geändert") << "GridCountryArea" << "49" << "AreaCode" << "5202" << "5203"
                                         << "05203 12" << "05203 12" << "+49 (5203) 12";
    QTest::newRow("nationales Präfix geändert") << "GridNDDP" << "49" << "NationalDDPrefix" << "0" << "9"
                                                << "+49 030 1234" << "+49 (30) 1234" << "+49 030 1234";
    QTest::newRow("Ländervorwahl der Ortvorwahl geändert") << "GridCountryArea" << "41" << "CountryCode" << "41" << "49"
                                                           << "+49 44 123" << "+49 44 123" << "+49 (44) 123";
}

void tst_frmTelDB::changeCountsAtNextNumber()
{
    QFETCH(QString, gridName);
    QFETCH(QString, country);
    QFETCH(QString, column);
    QFETCH(QString, oldValue);
    QFETCH(QString, newValue);
    QFETCH(QString, number);
    QFETCH(QString, before);
    QFETCH(QString, after);
    open(false);
    QCOMPARE(normalised(number), before);
    DataGrid *table = grid(gridName);
    const int columnIndex = column == QStringLiteral("CountryCode") ? 0 : 1;
    // The 41 row to move is the one with area code 44.
    const QString keyColumn = column == QStringLiteral("CountryCode") ? QStringLiteral("AreaCode") : column;
    const QString keyValue = column == QStringLiteral("CountryCode") ? QStringLiteral("44") : oldValue;
    const int row = rowOf(table, country, keyColumn, keyValue);
    QVERIFY(row >= 0);
    editCell(table, row, columnIndex, newValue);
    QCOMPARE(normalised(number), after);
    QCOMPARE(m_boxes->count(), 0);
}

void tst_frmTelDB::emptyCellIsStoredAsNull()
{
    open(false);
    DataGrid *prefixes = grid(QStringLiteral("GridNDDP"));
    editCell(prefixes, rowOf(prefixes, "41", "NationalDDPrefix", "0"), 1, QString());
    QCOMPARE(scalar("SELECT NationalDDPrefix FROM T_CountryCodes WHERE CountryCode = '41'"), QStringLiteral("<NULL>"));
}

void tst_frmTelDB::deleteAsksFirst()
{
    open(false);
    DataGrid *areas = grid(QStringLiteral("GridCountryArea"));
    const int rows = areas->rowCountShown();
    areas->setCurrentIndex(areas->model()->index(rowOf(areas, "49", "AreaCode", "30"), 1));
    m_boxes->script({AnswerNo});
    QTest::keyClick(areas, Qt::Key_Delete);
    QCOMPARE(m_boxes->count(), 1);
    QCOMPARE(m_boxes->last().prompt, QStringLiteral("Möchten Sie den Datensatz löschen?"));
    QCOMPARE(m_boxes->last().title, QStringLiteral("Frage?"));
    QCOMPARE(m_boxes->last().buttons, int(MsgQuestion));
    QCOMPARE(areas->rowCountShown(), rows);
    QCOMPARE(normalised("030 1234"), QStringLiteral("+49 (30) 1234"));

    m_boxes->script({AnswerYes});
    QTest::keyClick(areas, Qt::Key_Delete);
    QCOMPARE(areas->rowCountShown(), rows - 1);
    QCOMPARE(rowOf(areas, "49", "AreaCode", "30"), -1);
    QCOMPARE(scalar("SELECT COUNT(*) FROM T_CountryAndAreaCodes WHERE AreaCode = '30'"), QStringLiteral("0"));
    // Closed at once: the next number no longer finds the area code.
    m_dialog->close();
    QCOMPARE(normalised("030 1234"), QStringLiteral("030 1234"));
}

void tst_frmTelDB::newRowWrittenWhenLeft()
{
    open(false);
    DataGrid *areas = grid(QStringLiteral("GridCountryArea"));
    const int rows = areas->rowCountShown();
    QTest::mouseClick(m_dialog->findChild<QPushButton *>("cmdNew1"), Qt::LeftButton);
    QCOMPARE(areas->rowCountShown(), rows + 1);
    typeInto(areas, "49", Qt::Key_Tab);
    // Half a row is not written yet.
    QCOMPARE(scalar("SELECT COUNT(*) FROM T_CountryAndAreaCodes"), QString::number(rows));
    typeInto(areas, "89", Qt::Key_Return);
    QCOMPARE(normalised("089 123"), QStringLiteral("089 123"));
    areas->setCurrentIndex(areas->model()->index(0, 0));
    QCOMPARE(scalar("SELECT COUNT(*) FROM T_CountryAndAreaCodes WHERE CountryCode = '49' AND AreaCode = '89'"),
             QStringLiteral("1"));
    QCOMPARE(normalised("089 123"), QStringLiteral("+49 (89) 123"));
    QCOMPARE(m_boxes->count(), 0);
}

void tst_frmTelDB::closingWritesNewRow()
{
    open(false);
    DataGrid *prefixes = grid(QStringLiteral("GridNDDP"));
    QTest::mouseClick(m_dialog->findChild<QPushButton *>("cmdNew2"), Qt::LeftButton);
    typeInto(prefixes, "44", Qt::Key_Tab);
    QLineEdit *editor = openEditor(prefixes);
    QVERIFY(editor);
    QTest::keyClicks(editor, "0");
    // The editor is still open when OK is clicked.
    QTest::mouseClick(m_dialog->findChild<QPushButton *>("cmdOK"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(scalar("SELECT NationalDDPrefix FROM T_CountryCodes WHERE CountryCode = '44'"), QStringLiteral("0"));
}

void tst_frmTelDB::duplicateRowRefused_data()
{
    QTest::addColumn<QString>("gridName");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("leave");
    // Every way a user leaves the refused row: the row goes, the message
    // comes once, and the grid keeps running.
    QTest::newRow("Ortvorwahl doppelt, Neu") << "GridCountryArea" << "cmdNew1" << "30" << "T_CountryAndAreaCodes"
                                             << "Neu";
    QTest::newRow("Ortvorwahl doppelt, OK") << "GridCountryArea" << "cmdNew1" << "30" << "T_CountryAndAreaCodes"
                                            << "OK";
    QTest::newRow("Ortvorwahl doppelt, Klick") << "GridCountryArea" << "cmdNew1" << "30" << "T_CountryAndAreaCodes"
                                               << "Klick";
    QTest::newRow("Ländervorwahl doppelt, Tab") << "GridNDDP" << "cmdNew2" << "7" << "T_CountryCodes" << "Tab";
    QTest::newRow("Ländervorwahl doppelt, Neu") << "GridNDDP" << "cmdNew2" << "7" << "T_CountryCodes" << "Neu";
    QTest::newRow("Ländervorwahl doppelt, OK") << "GridNDDP" << "cmdNew2" << "7" << "T_CountryCodes" << "OK";
}

void tst_frmTelDB::duplicateRowRefused()
{
    QFETCH(QString, gridName);
    QFETCH(QString, button);
    QFETCH(QString, second);
    QFETCH(QString, table);
    QFETCH(QString, leave);
    open(true);
    DataGrid *target = grid(gridName);
    const int rows = target->rowCountShown();
    const QString count = scalar("SELECT COUNT(*) FROM " + table);
    QTest::mouseClick(m_dialog->findChild<QPushButton *>(button), Qt::LeftButton);
    typeInto(target, "49", Qt::Key_Tab);
    // Tab leaves the last cell for the next row; the other ways leave the
    // editor open.
    typeInto(target, second, leave == QStringLiteral("Tab") ? Qt::Key_Tab : Qt::Key_unknown);
    if (leave == QStringLiteral("Neu"))
        QTest::mouseClick(m_dialog->findChild<QPushButton *>(button), Qt::LeftButton);
    else if (leave == QStringLiteral("OK"))
        QTest::mouseClick(m_dialog->findChild<QPushButton *>("cmdOK"), Qt::LeftButton);
    else if (leave == QStringLiteral("Klick"))
        QTest::mouseClick(target->viewport(), Qt::LeftButton, {},
                          target->visualRect(target->model()->index(0, 1)).center());
    QCOMPARE(m_boxes->count(), 1);
    QCOMPARE(m_boxes->last().prompt, QStringLiteral("Fehler beim Hinzufügen der neuen Datenzeile, prüfen Sie ob die "
                                                    "Daten bereits vorhanden sind."));
    QCOMPARE(m_boxes->last().title, QStringLiteral("Fehler!"));
    QCOMPARE(m_boxes->last().buttons, int(MsgStop));
    QCOMPARE(target->rowCountShown(), rows);
    QCOMPARE(scalar("SELECT COUNT(*) FROM " + table), count);
    QCOMPARE(m_dialog->isVisible(), leave != QStringLiteral("OK"));
    if (leave == QStringLiteral("OK"))
        return;
    // The grid keeps running: the next row goes in.
    QTest::mouseClick(m_dialog->findChild<QPushButton *>(button), Qt::LeftButton);
    typeInto(target, "999", Qt::Key_Tab);
    typeInto(target, "1", Qt::Key_Return);
    target->setCurrentIndex(target->model()->index(0, 0));
    QCOMPARE(scalar("SELECT COUNT(*) FROM " + table), QString::number(count.toInt() + 1));
    QCOMPARE(m_boxes->count(), 1);
}

void tst_frmTelDB::refusedChangeKeepsOldValue()
{
    open(true);
    DataGrid *areas = grid(QStringLiteral("GridCountryArea"));
    const int row = rowOf(areas, "49", "AreaCode", "30");
    editCell(areas, row, 1, "221");
    QCOMPARE(m_boxes->count(), 1);
    QVERIFY(m_boxes->last().prompt.startsWith(QStringLiteral("Die Änderung konnte nicht gespeichert werden.")));
    QCOMPARE(areas->cellValue(row, "AreaCode"), std::optional<QString>(QStringLiteral("30")));
    QCOMPARE(normalised("030 1234"), QStringLiteral("+49 (30) 1234"));
}

void tst_frmTelDB::missingDatabaseIs2302()
{
    m_env = new TestEnvironment(false, false);
    CopyDefaultSettings(*m_env);
    m_boxes = new MessageRecorder;
    m_dialog = new frmTelDB;
    m_dialog->show();
    QCOMPARE(m_boxes->count(), 1);
    QVERIFY2(m_boxes->last().prompt.contains(QStringLiteral("Nr.: 2302")), qPrintable(m_boxes->last().prompt));
    QTest::mouseClick(m_dialog->findChild<QPushButton *>("cmdNew1"), Qt::LeftButton);
    QCOMPARE(grid(QStringLiteral("GridCountryArea"))->rowCountShown(), 0);
    QTest::mouseClick(m_dialog->findChild<QPushButton *>("cmdOK"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
}

QTEST_MAIN(tst_frmTelDB)
#include "tst_frmteldb.moc"
