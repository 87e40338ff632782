// The six item kinds as data: normalisation, the choice of the kind by the
// folder class, and the switches read from the settings.
#include "duplicates/DupError.h"
#include "duplicates/DupItemTypes.h"
#include "frame/RegistryFunctions.h"
#include "support/TestSupport.h"

#include <QLocale>
#include <QTest>

class tst_DupItemTypes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void normalise_data();
    void normalise();
    void kindByFolderClass_data();
    void kindByFolderClass();
    void switchesFromSettings_data();
    void switchesFromSettings();
    void brokenSwitchIsAnError();
};

void tst_DupItemTypes::normalise_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Großbuchstaben") << "Müller GmbH" << "müller gmbh";
    QTest::newRow("Leerzeichen an beiden Enden") << "  Termin  " << "termin";
    QTest::newRow("Leerzeichen innen bleiben") << "a  b" << "a  b";
    QTest::newRow("Tabulator bleibt") << "\tx\t" << "\tx\t";
    QTest::newRow("geschütztes Leerzeichen bleibt") << QStringLiteral("\u00a0x") << QStringLiteral("\u00a0x");
    QTest::newRow("nur Leerzeichen") << "   " << "";
    QTest::newRow("leer") << "" << "";
    QTest::newRow("ß bleibt ß") << "STRASSE Straße" << "strasse straße";
}

void tst_DupItemTypes::normalise()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(NormaliseDupText(text), expected);
}

void tst_DupItemTypes::kindByFolderClass_data()
{
    QTest::addColumn<QString>("folderClass");
    QTest::addColumn<QString>("analyser");
    QTest::newRow("Kalender") << "IPM.Appointment" << "RemoveDuplicatesAppointment";
    QTest::newRow("Kontakte") << "IPM.Contact" << "RemoveDuplicatesContact";
    QTest::newRow("Aufgaben") << "IPM.Task" << "RemoveDuplicatesTask";
    QTest::newRow("Mail") << "IPM.Note" << "RemoveDuplicatesEmail";
    QTest::newRow("Bereitstellung") << "IPM.Post" << "RemoveDuplicatesEmail";
    QTest::newRow("Notizen") << "IPM.StickyNote" << "RemoveDuplicatesNote";
    QTest::newRow("Journal") << "IPM.Activity" << "RemoveDuplicatesJournal";
    QTest::newRow("klein geschrieben") << "ipm.contact" << "";
    QTest::newRow("abgeleitete Klasse") << "IPM.Contact.Kunde" << "";
    QTest::newRow("kein Ordner markiert") << "" << "";
}

void tst_DupItemTypes::kindByFolderClass()
{
    QFETCH(QString, folderClass);
    QFETCH(QString, analyser);
    const DupItemType *type = DupTypeForFolderClass(folderClass);
    QCOMPARE(type ? QString::fromLatin1(type->analyser) : QString(), analyser);
}

void tst_DupItemTypes::switchesFromSettings_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("members"); // the switched-on fields with the stored defaults
    QTest::newRow("Kontakte") << int(DupKind::Contact)
                              << QStringList{"CompanyName", "FirstName", "LastName", "MobileTelephoneNumber",
                                             "HomeTelephoneNumber", "HomeAddress"};
    QTest::newRow("Termine") << int(DupKind::Appointment) << QStringList{"Start", "End", "Subject", "Body"};
    QTest::newRow("Mail") << int(DupKind::Email)
                          << QStringList{"Subject", "To", "Body", "Attachments", "RECEIVEDTIME"};
    QTest::newRow("Aufgaben") << int(DupKind::Task) << QStringList{"StartDate", "Subject", "Body"};
    QTest::newRow("Journal") << int(DupKind::Journal) << QStringList{"Subject", "Body", "Start"};
    QTest::newRow("Notizen") << int(DupKind::Note) << QStringList{"Body"};
}

void tst_DupItemTypes::switchesFromSettings()
{
    QFETCH(int, kind);
    QFETCH(QStringList, members);
    TestEnvironment environment(false);
    const DupSwitches switches = ReadDupSwitches(DupTypeOf(DupKind(kind)));
    QStringList read;
    for (const DupField *field : switches.fields)
        read.append(QString::fromLatin1(field->member));
    QCOMPARE(read, members);
    QVERIFY(!switches.folderInside);
    const bool recurring = DupKind(kind) == DupKind::Task || DupKind(kind) == DupKind::Appointment;
    QCOMPARE(switches.series, recurring);
}

void tst_DupItemTypes::brokenSwitchIsAnError()
{
    TestEnvironment environment(false);
    // The contact switches are converted from their text; the note switches
    // fall back to their default.
    SaveSetting(QStringLiteral("KontakteLastName"), QStringLiteral("ja"));
    QVERIFY_THROWS_EXCEPTION(DupError, (void)ReadDupSwitches(DupTypeOf(DupKind::Contact)));
    SaveSetting(QStringLiteral("NotizenColor"), QStringLiteral("ja"));
    QCOMPARE(ReadDupSwitches(DupTypeOf(DupKind::Note)).fields.size(), 2);
}

QTEST_GUILESS_MAIN(tst_DupItemTypes)
#include "tst_dupitemtypes.moc"
