// The name test dialog, driven through its widgets with the shipped tables.
#include "controls/ListFile.h"
#include "controls/sevText.h"
#include "names/frmNameCheck.h"
#include "support/TestSupport.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTest>

namespace {

QStringList shownParts(const frmNameCheck &dialog)
{
    QStringList parts;
    for (const char *name : {"lblTitle", "lblFirstname", "lblMiddleName", "lblLastName", "lblSuffix", "lblDes"})
        parts.append(dialog.findChild<QLabel *>(name)->text());
    return parts;
}

// Types text key by key, umlauts included.
void typeText(QWidget *field, const QString &text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

} // namespace

class tst_frmNameCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void typing_data();
    void typing();
    void businessBoxAloneRefreshes();
    void missingDatabaseReportsEveryChange();
    void typedNameJoinsTheList();
};

void tst_frmNameCheck::typing_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("checkBusiness");
    QTest::addColumn<QStringList>("expected"); // title, first, middle, last, suffix, note

    const QString note = QStringLiteral("Es wurde ein Firmenname erkannt!");
    QTest::newRow("Person mit Titel") << "Prof. Dr. med. Hans-Peter Müller-Lüdenscheidt jun." << false
                                      << QStringList{"Herr Prof. Dr. med.", "Hans-Peter", "", "Müller-Lüdenscheidt",
                                                     "jun.", ""};
    QTest::newRow("Firma mit Und-Zeichen") << "Meier & Söhne" << true
                                           << QStringList{"", "", "", "Meier & Söhne", "", note};
    QTest::newRow("Firma ohne Prüfung") << "Meier & Söhne" << false
                                        << QStringList{"", "", "", "Meier & Söhne", "", ""};
    QTest::newRow("Person mit Prüfung") << "Maria Huber" << true << QStringList{"Frau", "Maria", "", "Huber", "", ""};
}

// Every keystroke analyses the whole text; the labels show the last state.
void tst_frmNameCheck::typing()
{
    QFETCH(QString, typed);
    QFETCH(bool, checkBusiness);
    QFETCH(QStringList, expected);
    TestEnvironment env;
    MessageRecorder boxes;
    frmNameCheck dialog;
    if (checkBusiness)
        QTest::mouseClick(dialog.findChild<QCheckBox *>("chkBusinessCheck"), Qt::LeftButton);
    QLineEdit *text = dialog.findChild<sevText *>("txtFullname")->editor();
    typeText(text, typed.left(4));
    QCOMPARE(dialog.findChild<QLabel *>("lblFirstname")->text() + dialog.findChild<QLabel *>("lblLastName")->text(),
             typed.left(4));
    typeText(text, typed.mid(4));
    QCOMPARE(shownParts(dialog), expected);

    text->selectAll();
    QTest::keyClick(text, Qt::Key_Backspace);
    QCOMPARE(shownParts(dialog), QStringList(6));
    QCOMPARE(boxes.count(), 0);
}

void tst_frmNameCheck::businessBoxAloneRefreshes()
{
    TestEnvironment env;
    MessageRecorder boxes;
    frmNameCheck dialog;
    auto *box = dialog.findChild<QCheckBox *>("chkBusinessCheck");
    auto *note = dialog.findChild<QLabel *>("lblDes");
    typeText(dialog.findChild<sevText *>("txtFullname")->editor(), "Muster GmbH");
    QVERIFY(note->text().isEmpty());
    QTest::mouseClick(box, Qt::LeftButton);
    QCOMPARE(note->text(), QStringLiteral("Es wurde ein Firmenname erkannt!"));
    QTest::mouseClick(box, Qt::LeftButton);
    QVERIFY(note->text().isEmpty());
    QCOMPARE(dialog.findChild<QLabel *>("lblLastName")->text(), QStringLiteral("Muster GmbH"));
}

void tst_frmNameCheck::missingDatabaseReportsEveryChange()
{
    TestEnvironment env(false);
    MessageRecorder boxes;
    frmNameCheck dialog;
    typeText(dialog.findChild<sevText *>("txtFullname")->editor(), "Hans");
    QCOMPARE(boxes.count(), 4);
    QCOMPARE(boxes.last().title, QStringLiteral("Fehler!"));
    QCOMPARE(shownParts(dialog), QStringList(6));
    QVERIFY(env.readLog().contains("Sub: 2502"));
}

void tst_frmNameCheck::typedNameJoinsTheList()
{
    TestEnvironment env;
    MessageRecorder boxes;
    {
        frmNameCheck dialog;
        dialog.show();
        typeText(dialog.findChild<sevText *>("txtFullname")->editor(), "Hans Müller");
        dialog.close();
    }
    QCOMPARE(ReadListFile(ListFilePath(QStringLiteral("Fullname.dat"))).entries, QStringList{"Hans Müller"});
    frmNameCheck again;
    auto *field = again.findChild<sevText *>("txtFullname");
    QCOMPARE(field->floskelTitle(), QStringLiteral("Namen"));
    QCOMPARE(field->entries(), QStringList{"Hans Müller"});
}

QTEST_MAIN(tst_frmNameCheck)
#include "tst_frmnamecheck.moc"
