// The number format editor and the number test dialog, driven through
// their widgets: the examples follow every change, OK stores unaltered and
// Cancel stores nothing, the live result with its colour.
#include "controls/ListFile.h"
#include "controls/SettingsBinding.h"
#include "controls/sevText.h"
#include "frame/RegistryFunctions.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"
#include "telephone/frmTelPruef.h"
#include "telephone/frmVorwahlen.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

class tst_TelFormDialogs : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void loadShowsSettings();
    void examplesFollowEveryChange_data();
    void examplesFollowEveryChange();
    void okStoresUnaltered();
    void cancelStoresNothingButListsRemember();
    void widthTooLargeIsError304();
    void numberTestShowsResult_data();
    void numberTestShowsResult();
    void numberTestSeesNewSettings();

private:
    static void retype(sevText *field, const QString &text);

    TestEnvironment *m_env = nullptr;
    MessageRecorder *m_boxes = nullptr;
};

namespace {

sevText *field(QWidget *form, const QString &name)
{
    auto *result = form->findChild<sevText *>(name);
    if (!result)
        qFatal("no field %s", qPrintable(name));
    return result;
}

QString labelText(QWidget *form, const QString &name)
{
    return form->findChild<QLabel *>(name)->text();
}

} // namespace

void tst_TelFormDialogs::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_TelFormDialogs::init()
{
    m_env = new TestEnvironment(false, false);
    CopyDefaultSettings(*m_env);
    QVERIFY(WriteSampleTelDb(m_env->folder()));
    m_boxes = new MessageRecorder;
}

void tst_TelFormDialogs::cleanup()
{
    delete m_boxes;
    delete m_env;
}

void tst_TelFormDialogs::retype(sevText *field, const QString &text)
{
    field->editor()->selectAll();
    if (text.isEmpty())
        QTest::keyClick(field->editor(), Qt::Key_Backspace);
    else
        QTest::keyClicks(field->editor(), text);
}

void tst_TelFormDialogs::loadShowsSettings()
{
    SaveSetting("BlockT1", "4");
    SaveSetting("UseNumberBlocksAreaNo", "1");
    SaveSetting("UseNumberBlocksAreaPres", "0");
    frmVorwahlen dialog;
    QCOMPARE(field(&dialog, "cmbVorwahlTrennOut1")->text(), QStringLiteral(" ("));
    QCOMPARE(field(&dialog, "cmbBlockA1")->text(), QStringLiteral(" "));
    QCOMPARE(field(&dialog, "cmbBlockT1")->text(), QStringLiteral("4"));
    QVERIFY(dialog.findChild<QGroupBox *>("frmNumberBlocksAreaNo")->isChecked());
    QVERIFY(!dialog.findChild<QGroupBox *>("frmNumberBlocksAreaPres")->isChecked());
    QVERIFY(field(&dialog, "cmbBlockT1")->isEnabled());
    QVERIFY(!field(&dialog, "cmbBlockS1")->isEnabled());
    QVERIFY(!field(&dialog, "cmbBlockTrennAreaPres")->isEnabled());
    QCOMPARE(labelText(&dialog, "lblTelo"), QStringLiteral("+423 1234 567"));
}

void tst_TelFormDialogs::examplesFollowEveryChange_data()
{
    QTest::addColumn<QStringList>("edits"); // control name, text, ...
    QTest::addColumn<bool>("blocksWithArea");
    QTest::addColumn<bool>("blocksWithoutArea");
    QTest::addColumn<QString>("tel");
    QTest::addColumn<QString>("telo");
    QTest::newRow("Voreinstellungen") << QStringList{} << false << false
                                      << "+49 (5202) 998288-10" << "+423 1234567";
    QTest::newRow("Empfängernummer 3 3 mit Rahmen") << QStringList{"cmbBlockS1", "3", "cmbBlockS2", "3"} << true << false
                                                    << "+49 (5202) 998 288-10" << "+423 1234567";
    QTest::newRow("Empfängernummer 3 3 ohne Rahmen") << QStringList{"cmbBlockS1", "3", "cmbBlockS2", "3"} << false << false
                                                     << "+49 (5202) 998288-10" << "+423 1234567";
    QTest::newRow("Ortvorwahl 2 2 mit Punkt")
        << QStringList{"cmbBlockA1", "2", "cmbBlockA2", "2", "cmbBlockTrennAreaPres", "."} << true << false
        << "+49 (52.02) 998288-10" << "+423 1234567";
    QTest::newRow("Breite x zählt als 0") << QStringList{"cmbBlockS1", "x", "cmbBlockS2", "3"} << true << false
                                          << "+49 (5202) 998 288-10" << "+423 1234567";
    QTest::newRow("ohne Ortvorwahl 3 2 2") << QStringList{"cmbBlockT1", "3", "cmbBlockT2", "2", "cmbBlockT3", "2"}
                                           << false << true << "+49 (5202) 998288-10" << "+423 123 45 67";
    QTest::newRow("Präfix leer, Trenner lang")
        << QStringList{"cmbIDDPOut", "", "cmbVorwahlTrennOutSingle", " - ", "cmbDurchwahlTrennOut", "/"} << false << false
        << "49 (5202) 998288/10" << "423 - 1234567";
    QTest::newRow("Trennzeichen um die Ortvorwahl")
        << QStringList{"cmbIDDPOut", "00", "cmbVorwahlTrennOut1", "-", "cmbVorwahlTrennOut2", "-"} << false << false
        << "0049-5202-998288-10" << "00423 1234567";
}

void tst_TelFormDialogs::examplesFollowEveryChange()
{
    QFETCH(QStringList, edits);
    QFETCH(bool, blocksWithArea);
    QFETCH(bool, blocksWithoutArea);
    QFETCH(QString, tel);
    QFETCH(QString, telo);
    frmVorwahlen dialog;
    dialog.show();
    // A click on the frame's box, as the user does it.
    auto *pres = dialog.findChild<QGroupBox *>("frmNumberBlocksAreaPres");
    auto *no = dialog.findChild<QGroupBox *>("frmNumberBlocksAreaNo");
    pres->setChecked(true);
    no->setChecked(true);
    for (qsizetype i = 0; i + 1 < edits.size(); i += 2)
        retype(field(&dialog, edits.at(i)), edits.at(i + 1));
    pres->setChecked(blocksWithArea);
    no->setChecked(blocksWithoutArea);
    QCOMPARE(labelText(&dialog, "lblTel"), tel);
    QCOMPARE(labelText(&dialog, "lblTelo"), telo);
    QCOMPARE(m_boxes->count(), 0);
}

void tst_TelFormDialogs::okStoresUnaltered()
{
    frmVorwahlen dialog;
    dialog.show();
    dialog.findChild<QGroupBox *>("frmNumberBlocksAreaPres")->setChecked(true);
    retype(field(&dialog, "cmbVorwahlTrennOut2"), ")  ");
    retype(field(&dialog, "cmbIDDPOut"), " + ");
    retype(field(&dialog, "cmbBlockS1"), "x");
    retype(field(&dialog, "cmbDurchwahlTrennOut"), "");
    QTest::mouseClick(dialog.findChild<QPushButton *>("cmdOK"), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(GetSetting("VorwahlTrennOut2", "?"), QStringLiteral(")  "));
    QCOMPARE(GetSetting("IDDPOut", "?"), QStringLiteral(" + "));
    QCOMPARE(GetSetting("BlockS1", "?"), QStringLiteral("x"));
    QCOMPARE(GetSetting("DurchwahlTrennOut", "?"), QString());
    QCOMPARE(GetSetting("BlockS2", "?"), QStringLiteral(" "));
    QCOMPARE(GetSetting("UseNumberBlocksAreaPres", "?"), QStringLiteral("1"));
    QCOMPARE(GetSetting("UseNumberBlocksAreaNo", "?"), QStringLiteral("0"));
}

void tst_TelFormDialogs::cancelStoresNothingButListsRemember()
{
    frmVorwahlen dialog;
    dialog.show();
    retype(field(&dialog, "cmbVorwahlTrennOut1"), " / ");
    dialog.findChild<QGroupBox *>("frmNumberBlocksAreaNo")->setChecked(true);
    retype(field(&dialog, "cmbBlockT1"), "3");
    QTest::mouseClick(dialog.findChild<QPushButton *>("cmdCancel"), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(GetSetting("VorwahlTrennOut1", "?"), QStringLiteral(" ("));
    QCOMPARE(GetSetting("BlockT1", "?"), QStringLiteral(" "));
    QCOMPARE(GetSetting("UseNumberBlocksAreaNo", "?"), QStringLiteral("0"));
    QCOMPARE(ReadListFile(ListFilePath("HyphenOut1.dat")).entries, QStringList{QStringLiteral(" / ")});
}

void tst_TelFormDialogs::widthTooLargeIsError304()
{
    frmVorwahlen dialog;
    dialog.show();
    dialog.findChild<QGroupBox *>("frmNumberBlocksAreaPres")->setChecked(true);
    retype(field(&dialog, "cmbBlockS1"), "70000");
    QVERIFY(m_boxes->count() >= 1);
    QVERIFY2(m_boxes->last().prompt.contains(QStringLiteral("Nr.: 304")), qPrintable(m_boxes->last().prompt));
    QCOMPARE(labelText(&dialog, "lblTel"), QStringLiteral("+49 (5202) 998288-10"));
    // The dialog goes on working.
    retype(field(&dialog, "cmbBlockS1"), "3");
    QCOMPARE(labelText(&dialog, "lblTel"), QStringLiteral("+49 (5202) 998 288-10"));
}

void tst_TelFormDialogs::numberTestShowsResult_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("green");
    QTest::newRow("Ortsnetz mit Schrägstrich") << "030 / 123 45-6" << "+49 (30) 12345-6" << true;
    QTest::newRow("Blanks um die Nummer") << "  0221/123-45  " << "+49 (221) 123-45" << true;
    QTest::newRow("schon normalisiert") << "+49 (30) 1234567" << "+49 (30) 1234567" << false;
    QTest::newRow("normalisiert mit Blanks") << " +49 (30) 1234567 " << "+49 (30) 1234567" << false;
    QTest::newRow("nicht auflösbar") << "1234567" << "1234567" << false;
    QTest::newRow("nur Vorwahl endet mit Blank") << "030" << "+49 (30) " << true;
    QTest::newRow("leer") << "" << "" << false;
}

void tst_TelFormDialogs::numberTestShowsResult()
{
    QFETCH(QString, typed);
    QFETCH(QString, result);
    QFETCH(bool, green);
    frmTelPruef dialog;
    dialog.show();
    auto *input = field(&dialog, "txtTelNr");
    QCOMPARE(input->floskelFile(), QStringLiteral("Tel.dat"));
    QCOMPARE(input->floskelTitle(), QStringLiteral("Namen"));
    auto *output = dialog.findChild<QLabel *>("lblAusgabe");
    // Something first, so that an empty input is a change too.
    QTest::keyClicks(input->editor(), "99");
    retype(input, typed);
    QCOMPARE(output->text(), result);
    const QColor expected = green ? QColor(0, 170, 0) : QColor(0, 0, 0);
    QCOMPARE(output->palette().color(QPalette::WindowText), expected);
    QCOMPARE(m_boxes->count(), 0);
}

void tst_TelFormDialogs::numberTestSeesNewSettings()
{
    frmTelPruef dialog;
    dialog.show();
    auto *input = field(&dialog, "txtTelNr");
    QTest::keyClicks(input->editor(), "030 123");
    QCOMPARE(dialog.findChild<QLabel *>("lblAusgabe")->text(), QStringLiteral("+49 (30) 123"));
    SaveSetting("IDDPOut", "00");
    QTest::keyClicks(input->editor(), "4");
    QCOMPARE(dialog.findChild<QLabel *>("lblAusgabe")->text(), QStringLiteral("0049 (30) 1234"));
    QTest::keyClick(input->editor(), Qt::Key_Return);
    QCOMPARE(ReadListFile(ListFilePath("Tel.dat")).entries, QStringList{QStringLiteral("030 1234")});
}

QTEST_MAIN(tst_TelFormDialogs)
#include "tst_telformdialogs.moc"
