// The field catalogue of find and replace and the date rules of its types.
#include "replace/ReplaceDates.h"
#include "replace/ReplaceFields.h"
#include "store/ItemSchema.h"
#include "store/StoreConstants.h"

#include <QLocale>
#include <QSet>
#include <QTest>

class tst_ReplaceCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void types_data();
    void types();
    void listsHaveNoTwins();
    void parseDateText_data();
    void parseDateText();
    void dateToWrite_data();
    void dateToWrite();
    void readTextParsesBack_data();
    void readTextParsesBack();
    void propertiesExistInTheStore();
};

void tst_ReplaceCatalogue::types_data()
{
    QTest::addColumn<QString>("folderClass");
    QTest::addColumn<int>("itemClass");
    QTest::addColumn<int>("fieldCount");
    QTest::addColumn<QString>("dateFields"); // property names, comma-separated

    QTest::newRow("Termine") << "IPM.Appointment" << 26 << 6 << "Start,End";
    QTest::newRow("Kontakte") << "IPM.Contact" << 40 << 95 << "Birthday,Anniversary";
    QTest::newRow("Aufgaben") << "IPM.Task" << 48 << 11 << "DateCompleted,DueDate,StartDate";
    QTest::newRow("E-Mail") << "IPM.Note" << 43 << 2 << "";
    QTest::newRow("Bereitstellen") << "IPM.Post" << 45 << 2 << "";
    QTest::newRow("Notizen") << "IPM.StickyNote" << 44 << 1 << "";
    QTest::newRow("Journal") << "IPM.Activity" << 42 << 2 << "";
    QTest::newRow("eigenes Kontaktformular") << "IPM.Contact.Custom" << -1 << 0 << "";
    QTest::newRow("andere Schreibung") << "ipm.contact" << -1 << 0 << "";
    QTest::newRow("kein Ordner") << "" << -1 << 0 << "";
    QTest::newRow("Verteilerliste") << "IPM.DistList" << -1 << 0 << "";
}

void tst_ReplaceCatalogue::types()
{
    QFETCH(QString, folderClass);
    QFETCH(int, itemClass);
    QFETCH(int, fieldCount);
    QFETCH(QString, dateFields);

    const ReplaceItemType *type = ReplaceTypeForClass(folderClass);
    if (itemClass < 0) {
        QVERIFY2(!type, qPrintable(folderClass));
        return;
    }
    QVERIFY2(type, qPrintable(folderClass));
    QCOMPARE(type->itemClass, itemClass);
    QCOMPARE(int(type->fields.size()), fieldCount);
    QStringList dates;
    for (const ReplaceField &field : type->fields) {
        if (field.isDate)
            dates << field.propertyName();
    }
    QCOMPARE(dates.join(u','), dateFields);
    QVERIFY(!type->field(-1));
    QVERIFY(!type->field(fieldCount));
}

// Two rows of one list with the same caption or property would make the
// user unable to tell them apart, or an undo write the wrong field.
void tst_ReplaceCatalogue::listsHaveNoTwins()
{
    for (const ReplaceItemType &type : ReplaceItemTypes()) {
        QSet<QString> captions, properties;
        for (const ReplaceField &field : type.fields) {
            QVERIFY2(!captions.contains(field.captionText()), field.caption);
            QVERIFY2(!properties.contains(field.propertyName().toLower()), field.property);
            captions << field.captionText();
            properties << field.propertyName().toLower();
        }
    }
}

void tst_ReplaceCatalogue::parseDateText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("expected"); // invalid: not a date

    const QDateTime none;
    QTest::newRow("Tag ohne Zeit") << "24.12.2006" << QDateTime(QDate(2006, 12, 24), QTime(0, 0));
    QTest::newRow("einstellig") << "1.2.2006" << QDateTime(QDate(2006, 2, 1), QTime(0, 0));
    QTest::newRow("mit Sekunden") << "24.12.2006 18:30:15" << QDateTime(QDate(2006, 12, 24), QTime(18, 30, 15));
    QTest::newRow("ohne Sekunden") << "24.12.2006 8:05" << QDateTime(QDate(2006, 12, 24), QTime(8, 5));
    QTest::newRow("kein Datum in Outlook") << "01.01.4501" << QDateTime(QDate(4501, 1, 1), QTime(0, 0));
    QTest::newRow("zweistellig 2000er") << "3.4.07" << QDateTime(QDate(2007, 4, 3), QTime(0, 0));
    QTest::newRow("zweistellig 1900er") << "3.4.65" << QDateTime(QDate(1965, 4, 3), QTime(0, 0));
    QTest::newRow("Blanks außen") << " 24.12.2006 " << QDateTime(QDate(2006, 12, 24), QTime(0, 0));
    QTest::newRow("Schalttag") << "29.02.2008" << QDateTime(QDate(2008, 2, 29), QTime(0, 0));
    QTest::newRow("kein Schalttag") << "29.02.2007" << none;
    QTest::newRow("Monat 13") << "32.13.2006" << none;
    QTest::newRow("Stunde 25") << "24.12.2006 25:00" << none;
    QTest::newRow("leer") << "" << none;
    QTest::newRow("Text") << "morgen" << none;
    QTest::newRow("ohne Jahr") << "24.12." << none;
    QTest::newRow("Rest dahinter") << "24.12.2006 abends" << none;
    QTest::newRow("dreistelliges Jahr") << "24.12.206" << none;
}

void tst_ReplaceCatalogue::parseDateText()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, expected);
    const std::optional<QDateTime> parsed = ParseDateText(text);
    QCOMPARE(parsed.has_value(), expected.isValid());
    if (parsed)
        QCOMPARE(*parsed, expected);
}

void tst_ReplaceCatalogue::dateToWrite_data()
{
    QTest::addColumn<QString>("folderClass");
    QTest::addColumn<QString>("newText");
    QTest::addColumn<QDateTime>("expected"); // invalid: nothing is written

    const QDateTime none;
    const QDateTime noDate(QDate(4501, 1, 1), QTime(0, 0));
    const QDateTime christmas(QDate(2006, 12, 24), QTime(0, 0));
    for (const char *type : {"IPM.Contact", "IPM.Task", "IPM.Appointment"}) {
        const QString cls = QString::fromLatin1(type);
        QTest::newRow(qPrintable(cls + " gültiges Datum")) << cls << "24.12.2006" << christmas;
        QTest::newRow(qPrintable(cls + " ungültiges Datum")) << cls << "32.13.2006" << none;
        QTest::newRow(qPrintable(cls + " Text")) << cls << "Heiligabend" << none;
    }
    QTest::newRow("IPM.Contact leer ist kein Datum") << "IPM.Contact" << "" << noDate;
    QTest::newRow("IPM.Task leer ist kein Datum") << "IPM.Task" << "" << noDate;
    QTest::newRow("IPM.Appointment leer schreibt nichts") << "IPM.Appointment" << "" << none;
}

void tst_ReplaceCatalogue::dateToWrite()
{
    QFETCH(QString, folderClass);
    QFETCH(QString, newText);
    QFETCH(QDateTime, expected);
    const ReplaceItemType *type = ReplaceTypeForClass(folderClass);
    QVERIFY(type);
    const std::optional<QDateTime> written = DateToWrite(type->dateRule, newText);
    QCOMPARE(written.has_value(), expected.isValid());
    if (written)
        QCOMPARE(*written, expected);
}

void tst_ReplaceCatalogue::readTextParsesBack_data()
{
    QTest::addColumn<QDateTime>("value");
    QTest::newRow("Mitternacht ohne Zeit") << QDateTime(QDate(2006, 1, 2), QTime(0, 0));
    QTest::newRow("mit Zeit") << QDateTime(QDate(2006, 1, 2), QTime(9, 5, 7));
    QTest::newRow("kein Datum") << NoDate();
}

// What a date field reads as text must come back unchanged when it is
// written as it stands (whole-field mode with the same date, the undo).
void tst_ReplaceCatalogue::readTextParsesBack()
{
    QFETCH(QDateTime, value);
    const QString text = TextOfValue(value);
    QCOMPARE(ParseDateText(text).value_or(QDateTime()), value);
}

// Every property of a list is one that the store knows for the type's item
// class, with the kind (date or text) the list expects.
void tst_ReplaceCatalogue::propertiesExistInTheStore()
{
    for (const ReplaceItemType &type : ReplaceItemTypes()) {
        for (const ReplaceField &field : type.fields) {
            const QString where = QStringLiteral("%1 %2").arg(type.folderClass, field.property);
            const int slot = PropertySlotFor(type.itemClass, field.propertyName());
            QVERIFY2(slot >= 0, qPrintable(where));
            const PropDef &def = PropertyAt(slot);
            QVERIFY2((def.type == PropType::Date) == field.isDate, qPrintable(where));
            QVERIFY2(def.type == PropType::Date || def.type == PropType::Text, qPrintable(where));
            QVERIFY2(!def.readOnly, qPrintable(where));
        }
    }
}

QTEST_GUILESS_MAIN(tst_ReplaceCatalogue)
#include "tst_replacecatalogue.moc"
