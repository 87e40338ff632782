// The message classes that the class change gives: base class by item type,
// exact in case, and the short name appended.
#include "itemtools/MClassChangeFunctions.h"

#include <QTest>

class tst_MClassNames : public QObject
{
    Q_OBJECT

private slots:
    void baseClass_data();
    void baseClass();
    void newMessageClass_data();
    void newMessageClass();
};

void tst_MClassNames::baseClass_data()
{
    QTest::addColumn<int>("itemClass");
    QTest::addColumn<QString>("messageClass");
    QTest::addColumn<QString>("expected");

    QTest::newRow("Termin") << 26 << "IPM.Appointment" << "IPM.Appointment";
    QTest::newRow("Kontakt mit eigenem Formular") << 40 << "IPM.Contact.Kunde" << "IPM.Contact";
    QTest::newRow("Aufgabe") << 48 << "IPM.Task" << "IPM.Task";
    QTest::newRow("Mail") << 43 << "IPM.Note" << "IPM.Note";
    QTest::newRow("Mail mit Formular") << 43 << "IPM.Note.Rechnung" << "IPM.Note";
    QTest::newRow("Bereitstellung") << 45 << "IPM.Post" << "IPM.Post";
    QTest::newRow("Verteilerliste") << 69 << "IPM.Distlist" << "IPM.Distlist";
    QTest::newRow("Verteilerliste mit großem L") << 69 << "IPM.DistList" << "";
    QTest::newRow("Journal") << 42 << "IPM.Activity" << "IPM.Activity";
    QTest::newRow("Notiz hat keine Basis") << 44 << "IPM.StickyNote" << "";
    QTest::newRow("Kontakt klein geschrieben") << 40 << "ipm.contact" << "";
    QTest::newRow("Klasse passt nicht zum Typ") << 40 << "IPM.Note" << "";
    QTest::newRow("leere Klasse") << 43 << "" << "";
    QTest::newRow("nur der Anfang zählt, kein Punkt nötig") << 48 << "IPM.TaskRequest" << "IPM.Task";
    QTest::newRow("Besprechungsanfrage ist keine Mail") << 53 << "IPM.Schedule.Meeting.Request" << "";
}

void tst_MClassNames::baseClass()
{
    QFETCH(int, itemClass);
    QFETCH(QString, messageClass);
    QFETCH(QString, expected);
    QCOMPARE(BaseClassFor(itemClass, messageClass), expected);
}

void tst_MClassNames::newMessageClass_data()
{
    QTest::addColumn<QString>("baseClass");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("Name angehängt") << "IPM.Contact" << "Kunde" << "IPM.Contact.Kunde";
    QTest::newRow("ein Leerzeichen gibt die Standardklasse") << "IPM.Contact" << " " << "IPM.Contact";
    QTest::newRow("leerer Name") << "IPM.Task" << "" << "IPM.Task";
    QTest::newRow("Leerzeichen außen weg, innen bleiben")
        << "IPM.Note" << "  Neue Rechnung  " << "IPM.Note.Neue Rechnung";
    QTest::newRow("IPM. im Namen wird nicht erkannt")
        << "IPM.Contact" << "IPM.Contact.Firma" << "IPM.Contact.IPM.Contact.Firma";
}

void tst_MClassNames::newMessageClass()
{
    QFETCH(QString, baseClass);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(NewMessageClass(baseClass, name), expected);
}

QTEST_GUILESS_MAIN(tst_MClassNames)
#include "tst_mclassnames.moc"
