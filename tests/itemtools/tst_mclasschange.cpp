// The message class change on a real profile: every item keeps its base
// class and gets the name, other classes are passed over, an empty folder
// gets a note that closes by itself, failing items are reported once per
// folder; and the dialog that starts it.
#include "controls/ListFile.h"
#include "controls/sevText.h"
#include "itemtools/MClassChangeFunctions.h"
#include "itemtools/frmMClassChange.h"
#include "store/Store.h"
#include "support/SelectionFixture.h"

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

Item addClassItem(const QString &folderPath, const QString &messageClass, const QString &subject)
{
    Item item = SelectionFixture::folder(folderPath).Items().Add(messageClass);
    item.setSubject(subject);
    item.Save();
    return item;
}

// Kontakte: two contacts with an old custom form and a distribution list;
// Kontakte/Leer: nothing; Kalender: an appointment; Notizen: a note.
struct ClassProfile : SelectionFixture {
    ClassProfile()
    {
        SelectionFixture::folder("Kontakte").Folders().Add(QStringLiteral("Leer"));
        contacts = {addClassItem("Kontakte", "IPM.Contact.Alt", "Anna"), addClassItem("Kontakte", "IPM.Contact", "Bernd")};
        list = SelectionFixture::folder("Kontakte").Items().Add(int(olDistributionList));
        list.setSubject(QStringLiteral("Verteiler"));
        list.Save();
        appointment = addClassItem("Kalender", "IPM.Appointment", "Termin");
        note = addClassItem("Notizen", "IPM.StickyNote", "Notiz");
        readTree();
    }
    QString classOnDisk(const Item &item) const
    {
        const QString id = item.EntryID();
        SetProfileFolder(profile.path());
        return Application().GetNamespace().GetItemFromID(id).MessageClass();
    }
    QList<Item> contacts;
    Item list;
    Item appointment;
    Item note;
};

} // namespace

class tst_MClassChange : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void changesEveryItemByItsBase_data();
    void changesEveryItemByItsBase();
    void emptyFolderAmongOthers();
    void allFoldersEmpty();
    void failingItemsReportedOncePerFolder();
    void dialogStartsTheRun();
};

void tst_MClassChange::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_MClassChange::changesEveryItemByItsBase_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("contactClass");
    QTest::addColumn<QString>("appointmentClass");

    QTest::newRow("Name angehängt, alter Zusatz fällt weg") << "Kunde" << "IPM.Contact.Kunde" << "IPM.Appointment.Kunde";
    QTest::newRow("ein Leerzeichen gibt die Standardklasse") << " " << "IPM.Contact" << "IPM.Appointment";
    QTest::newRow("Leerzeichen außen weg, innen bleiben")
        << "  Neue Kunden " << "IPM.Contact.Neue Kunden" << "IPM.Appointment.Neue Kunden";
    QTest::newRow("IPM. im Namen wird angehängt wie jeder Name")
        << "IPM.Contact.Firma" << "IPM.Contact.IPM.Contact.Firma" << "IPM.Appointment.IPM.Contact.Firma";
}

void tst_MClassChange::changesEveryItemByItsBase()
{
    QFETCH(QString, name);
    QFETCH(QString, contactClass);
    QFETCH(QString, appointmentClass);

    ClassProfile p;
    QVERIFY(p.select({"Kontakte", "Kalender", "Notizen"}));
    MessageRecorder messages;

    ChangeMessageClass(name);

    QCOMPARE(messages.count(), 0); // no closing message
    for (const Item &contact : p.contacts)
        QCOMPARE(p.classOnDisk(contact), contactClass);
    QCOMPARE(p.classOnDisk(p.appointment), appointmentClass);
    QCOMPARE(p.classOnDisk(p.note), QStringLiteral("IPM.StickyNote"));
    QCOMPARE(p.classOnDisk(p.list), QStringLiteral("IPM.DistList"));
    QVERIFY(p.host.statusTexts.contains(QStringLiteral("Bearbeite Elemente...")));
    QCOMPARE(p.host.statusText, QStringLiteral("Bereit"));
    QCOMPARE(p.host.progressValue, 0);
    QVERIFY(!p.host.running);
    QCOMPARE(p.host.runningChanges, 2);
}

void tst_MClassChange::emptyFolderAmongOthers()
{
    ClassProfile p;
    QVERIFY(p.select({"Kontakte/Leer", "Kalender"}));
    MessageRecorder messages;

    ChangeMessageClass(QStringLiteral("Kunde"));

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().prompt, QStringLiteral("Keine Elemente vorhanden, im Ordner: Leer"));
    QCOMPARE(messages.last().buttons, int(MsgInformation));
    QCOMPARE(messages.last().title, QStringLiteral("Hinweis!"));
    QCOMPARE(messages.last().timeoutSeconds, 5);
    QCOMPARE(p.classOnDisk(p.appointment), QStringLiteral("IPM.Appointment.Kunde"));
}

void tst_MClassChange::allFoldersEmpty()
{
    ClassProfile p;
    QVERIFY(p.select({"Kontakte/Leer"}));
    MessageRecorder messages;

    ChangeMessageClass(QStringLiteral("Kunde"));

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().prompt, QStringLiteral("Keine Elemente vorhanden."));
    QVERIFY(!p.host.running);
}

void tst_MClassChange::failingItemsReportedOncePerFolder()
{
    ClassProfile p;
    const Item third = addClassItem("Kontakte", "IPM.Contact", "Clara");
    p.readTree();
    QVERIFY(p.select({"Kontakte", "Kalender"}));
    StoreFaults::FailItem(p.contacts.at(0).EntryID(), StoreFaults::FailSave);
    StoreFaults::FailItem(third.EntryID(), StoreFaults::FailSave);
    MessageRecorder messages;

    ChangeMessageClass(QStringLiteral("Kunde"));

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().buttons, int(MsgStop));
    QCOMPARE(p.environment.readLog().count(QStringLiteral("Sub: 1002")), 1);
    StoreFaults::Reset();
    QCOMPARE(p.classOnDisk(p.contacts.at(0)), QStringLiteral("IPM.Contact.Alt"));
    QCOMPARE(p.classOnDisk(third), QStringLiteral("IPM.Contact"));
    QCOMPARE(p.classOnDisk(p.contacts.at(1)), QStringLiteral("IPM.Contact.Kunde"));
    QCOMPARE(p.classOnDisk(p.appointment), QStringLiteral("IPM.Appointment.Kunde"));
    // The failed item is left as it was in memory too: a later save of it
    // writes nothing of the change.
    Item again = p.contacts.at(0);
    QCOMPARE(again.MessageClass(), QStringLiteral("IPM.Contact.Alt"));
}

void tst_MClassChange::dialogStartsTheRun()
{
    ClassProfile p;
    QVERIFY(QDir().mkpath(QDir(p.environment.folder()).filePath(QStringLiteral("Preferences"))));
    QVERIFY(p.select({"Kontakte"}));
    MessageRecorder messages;

    frmMClassChange dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Eingabe!"));
    auto *field = dialog.findChild<sevText *>(QStringLiteral("txtClassName"));
    QVERIFY(field);
    QCOMPARE(field->floskelFile(), QStringLiteral("MessageClass.dat"));
    QCOMPARE(field->floskelTitle(), QStringLiteral("Namen"));
    QVERIFY(dialog.findChild<QPushButton *>(QStringLiteral("cmdHelp")));
    QTest::keyClicks(field->editor(), QStringLiteral("Kunde"));
    dialog.grab().save(QDir(p.environment.folder()).filePath(QStringLiteral("frmMClassChange.png")));
    if (!qEnvironmentVariableIsEmpty("VARNEX_SHOTS"))
        dialog.grab().save(qEnvironmentVariable("VARNEX_SHOTS") + QStringLiteral("/frmMClassChange.png"));

    QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("cmdOK")), Qt::LeftButton);

    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(p.classOnDisk(p.contacts.at(0)), QStringLiteral("IPM.Contact.Kunde"));
    QCOMPARE(ReadListFile(ListFilePath(QStringLiteral("MessageClass.dat"))).entries, (QStringList{"Kunde"}));
}

QTEST_MAIN(tst_MClassChange)
#include "tst_mclasschange.moc"
