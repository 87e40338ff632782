// The options dialog and the assistant, driven through their widgets.
#include "controls/sevText.h"
#include "frame/RegistryFunctions.h"
#include "options/frmOptions.h"
#include "options/frmQuickOptions.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

namespace {

template <typename T>
T *child(QWidget *form, const QString &name)
{
    T *w = form->findChild<T *>(name);
    if (!w)
        qFatal("control %s missing", qPrintable(name));
    return w;
}

QString textOf(QWidget *form, const QString &name)
{
    QWidget *w = child<QWidget>(form, name);
    if (auto *combo = qobject_cast<QComboBox *>(w))
        return combo->currentText();
    return w->property("text").toString();
}

} // namespace

class tst_frmOptions : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void freshInstallShowsTheRemovalThatRuns();
    void okWritesEveryBoundSetting();
    void okRefusesATypeWithoutFields_data();
    void okRefusesATypeWithoutFields();
    void sliderPushesTheOtherAway();
    void countryQuickSelection();
    void filterFrameEnablesItsControls();
    void pagesKeepTheirPlace();
    void tabGoesRowByRow_data();
    void tabGoesRowByRow();
    void attachmentFolderOnlyByChooser();
    void insertButtonsAndOneStepBack();
    void cancelStoresNothing();
    void assistantCaptionsAndSaveAtEnd();
    void assistantClosedEarlyStoresNothing();
};

// Until the options are saved once, MoveToFolder is missing and the
// removal moves: the dialog shows that, not "löschen".
void tst_frmOptions::freshInstallShowsTheRemovalThatRuns()
{
    TestEnvironment env;
    frmOptions dialog;
    QVERIFY(child<QRadioButton>(&dialog, QStringLiteral("chkMoveToFolder"))->isChecked());
    QVERIFY(!child<QRadioButton>(&dialog, QStringLiteral("chkDupDel"))->isChecked());
}

void tst_frmOptions::okWritesEveryBoundSetting()
{
    TestEnvironment env;
    frmOptions dialog;
    child<QCheckBox>(&dialog, QStringLiteral("chkHideFax"))->setChecked(true);
    child<QRadioButton>(&dialog, QStringLiteral("chkMoveToFolder"))->setChecked(true);
    child<QLineEdit>(&dialog, QStringLiteral("txtNDDP"))->setText(QStringLiteral("8"));
    child<QSlider>(&dialog, QStringLiteral("sldPrio(2)"))->setValue(2);
    const quint64 writes = SettingsGeneration();
    dialog.clickOk();
    // The whole dialog in one write of the file (which the file watch may
    // count once more), not one per setting.
    QVERIFY2(SettingsGeneration() - writes <= 2, qPrintable(QString::number(SettingsGeneration() - writes)));
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(GetSetting(QStringLiteral("HideFax")), QStringLiteral("1"));
    QCOMPARE(GetSetting(QStringLiteral("MoveToFolder")), QStringLiteral("1"));
    QCOMPARE(GetSetting(QStringLiteral("DupDel")), QStringLiteral("0"));
    QCOMPARE(GetSetting(QStringLiteral("NDDP")), QStringLiteral("8"));
    // Untouched settings without a default are written too.
    QCOMPARE(GetSetting(QStringLiteral("FolderInside"), QStringLiteral("NotExisting")), QStringLiteral("0"));
    QCOMPARE(GetSetting(QStringLiteral("AttPath"), QStringLiteral("NotExisting")), QString());
    QCOMPARE(GetSetting(QStringLiteral("FilterTel"), QStringLiteral("NotExisting")), QStringLiteral("0"));
    QCOMPARE(GetSetting(QStringLiteral("SaveAs"), QStringLiteral("NotExisting")), QStringLiteral("1"));
    // The quick selection is no setting.
    QCOMPARE(GetSetting(QStringLiteral("CountrySelect"), QStringLiteral("NotExisting")), QStringLiteral("NotExisting"));
    // Slider 2 moved from 0 to 2, slider 0 took the free 0: Priority.s = value of slider s.
    QCOMPARE(GetSetting(QStringLiteral("Priority.0")), QStringLiteral("0"));
    QCOMPARE(GetSetting(QStringLiteral("Priority.1")), QStringLiteral("1"));
    QCOMPARE(GetSetting(QStringLiteral("Priority.2")), QStringLiteral("2"));
}

void tst_frmOptions::okRefusesATypeWithoutFields_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("caption");
    QTest::newRow("Journal") << 5 << QStringLiteral("Journal");
    QTest::newRow("Kontakte") << 0 << QStringLiteral("Kontakte");
}

void tst_frmOptions::okRefusesATypeWithoutFields()
{
    QFETCH(int, tab);
    QFETCH(QString, caption);
    TestEnvironment env;
    frmOptions dialog;
    QWidget *page = child<QWidget>(&dialog, QStringLiteral("frmTab(%1)").arg(tab));
    for (QCheckBox *box : page->findChildren<QCheckBox *>())
        box->setChecked(false);
    child<QCheckBox>(&dialog, QStringLiteral("chkHideFax"))->setChecked(true);
    MessageRecorder boxes;
    dialog.clickOk();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.last().prompt, QStringLiteral("Bitte wählen Sie mindestens eine Option die Registerkarte ") + caption);
    QCOMPARE(boxes.last().buttons, 48);
    QCOMPARE(boxes.last().title, QStringLiteral("Hinweis!"));
    QCOMPARE(dialog.result(), 0);
    QCOMPARE(GetSetting(QStringLiteral("HideFax")), QStringLiteral("0")); // nothing saved
}

void tst_frmOptions::sliderPushesTheOtherAway()
{
    TestEnvironment env;
    frmOptions dialog;
    QSlider *s0 = child<QSlider>(&dialog, QStringLiteral("sldPrio(0)"));
    QSlider *s1 = child<QSlider>(&dialog, QStringLiteral("sldPrio(1)"));
    QCOMPARE(s0->value(), 2);
    QCOMPARE(s1->value(), 1);
    s0->setValue(1);
    QCOMPARE(s1->value(), 2);
    QCOMPARE(dialog.sliderValues(), (std::array<int, 3>{1, 2, 0}));
}

void tst_frmOptions::countryQuickSelection()
{
    TestEnvironment env;
    // German order also on a machine whose locale is C.
    QLocale::setDefault(QLocale::c());
    frmOptions dialog;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    auto *select = child<QComboBox>(&dialog, QStringLiteral("cmbCountrySelect"));
    QStringList shown;
    for (int i = 0; i < select->count(); ++i)
        shown << select->itemText(i);
    QCOMPARE(shown, (QStringList{"Deutschland", "Frankreich", "Niederlande", "Österreich", "Schweiz", "USA",
                                 "Vereinigtes Königreich"}));
    const int usa = select->findText(QStringLiteral("USA"));
    select->setCurrentIndex(usa);
    emit select->textActivated(QStringLiteral("USA"));
    QCOMPARE(textOf(&dialog, QStringLiteral("txtCountryCode")), QStringLiteral("1"));
    QCOMPARE(textOf(&dialog, QStringLiteral("txtIDDP")), QStringLiteral("011"));
    QCOMPARE(textOf(&dialog, QStringLiteral("txtNDDP")), QStringLiteral("1"));
}

void tst_frmOptions::filterFrameEnablesItsControls()
{
    TestEnvironment env;
    SaveSetting(QStringLiteral("FilterTel"), QStringLiteral("1"));
    frmOptions dialog;
    auto *frame = child<QGroupBox>(&dialog, QStringLiteral("frFilterTel"));
    QVERIFY(frame->isChecked());
    QVERIFY(child<QWidget>(&dialog, QStringLiteral("chkFilterArea"))->isEnabled());
    QVERIFY(child<QWidget>(&dialog, QStringLiteral("txtFilterCountryStr"))->isEnabled());
    // The country name filter starts disabled whatever is stored.
    QVERIFY(!child<QWidget>(&dialog, QStringLiteral("chkCountryFilter"))->isEnabled());
    QVERIFY(!child<QWidget>(&dialog, QStringLiteral("cmbCountryFilterText"))->isEnabled());
    frame->setChecked(false);
    emit frame->clicked(false);
    QVERIFY(!child<QWidget>(&dialog, QStringLiteral("chkFilterArea"))->isEnabled());
    frame->setChecked(true);
    emit frame->clicked(true);
    QVERIFY(child<QWidget>(&dialog, QStringLiteral("chkCountryFilter"))->isEnabled());
    QVERIFY(child<QWidget>(&dialog, QStringLiteral("cmbCountryFilterText"))->isEnabled());
}

// "Allgemein" keeps its labels on one line; the duplicate page does not jump
// when the item type changes.
void tst_frmOptions::pagesKeepTheirPlace()
{
    TestEnvironment env;
    frmOptions dialog;
    dialog.show();
    child<QTabBar>(&dialog, QStringLiteral("TabMain"))->setCurrentIndex(4);
    for (const char *name : {"lblSkipFolder", "lblIdleTime"}) {
        auto *l = child<QLabel>(&dialog, QString::fromLatin1(name));
        QVERIFY2(l->height() < 2 * l->fontMetrics().lineSpacing(), name);
    }
    const QString shots = qEnvironmentVariable("VARNEX_SHOTS");
    if (!shots.isEmpty())
        dialog.grab().save(shots + QStringLiteral("/frmOptions-Allgemein.png"));
    child<QTabBar>(&dialog, QStringLiteral("TabMain"))->setCurrentIndex(0);
    QWidget *below = child<QWidget>(&dialog, QStringLiteral("frmDupPrio"));
    QList<int> tops;
    for (int t = 5; t >= 0; --t) {
        child<QTabBar>(&dialog, QStringLiteral("TabStrip1"))->setCurrentIndex(t);
        child<QWidget>(&dialog, QStringLiteral("frMain(0)"))->layout()->activate();
        tops << below->mapTo(&dialog, QPoint()).y();
        if (!shots.isEmpty())
            dialog.grab().save(shots + QStringLiteral("/frmOptions-Duplikate-%1.png").arg(t));
    }
    QCOMPARE(tops, QList<int>(6, tops.first()));
}

void tst_frmOptions::tabGoesRowByRow_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QStringList>("order");
    QTest::newRow("Prioritäten") << 0
                                 << QStringList{"chkMasterFolder", "sldPrio(0)", "chkTerminSerie", "sldPrio(1)",
                                                "chkOldDel", "chkOldDelDis", "sldPrio(2)"};
    QTest::newRow("Namen") << 3 << QStringList{"optSaveAs", "cmbFileAsLayoutEx", "optBetreff", "cmbSubjectLayout"};
    QTest::newRow("Anlagen") << 2 << QStringList{"txtAttPath", "folderButton", "cmbAttSize"};
}

void tst_frmOptions::tabGoesRowByRow()
{
    QFETCH(int, page);
    QFETCH(QStringList, order);
    TestEnvironment env;
    frmOptions dialog;
    dialog.show();
    child<QTabBar>(&dialog, QStringLiteral("TabMain"))->setCurrentIndex(page);
    // The tab stops of the list in the order of the focus chain (a text
    // field takes the focus in its editor).
    QStringList seen;
    QWidget *w = child<QWidget>(&dialog, order.first());
    w = w->focusProxy() ? w->focusProxy() : w;
    for (int steps = 0; steps < 500 && seen.size() < order.size(); ++steps, w = w->nextInFocusChain()) {
        const QString name = w->objectName() == u"editor" ? w->parentWidget()->objectName() : w->objectName();
        if (order.contains(name) && !seen.contains(name) && (w->focusPolicy() & Qt::TabFocus))
            seen << name;
    }
    QCOMPARE(seen, order);
}

void tst_frmOptions::attachmentFolderOnlyByChooser()
{
    TestEnvironment env;
    frmOptions dialog;
    dialog.show();
    child<QTabBar>(&dialog, QStringLiteral("TabMain"))->setCurrentIndex(2);
    auto *field = child<sevText>(&dialog, QStringLiteral("txtAttPath"));
    const sevText::FolderChooser previous = sevText::setFolderChooser([](QWidget *, const QString &) {
        return QStringLiteral("/tmp/Anlagen");
    });
    QTest::keyClicks(field->editor(), QStringLiteral("abc"));
    QCOMPARE(field->text(), QString()); // read-only
    // Tab reaches the folder button, Space opens the chooser.
    QApplication::setActiveWindow(&dialog);
    field->editor()->setFocus();
    QTest::keyClick(field->editor(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(field->folderButton()));
    QTest::keyClick(field->folderButton(), Qt::Key_Space);
    sevText::setFolderChooser(previous);
    QCOMPARE(field->text(), QStringLiteral("/tmp/Anlagen"));
}

void tst_frmOptions::insertButtonsAndOneStepBack()
{
    TestEnvironment env;
    frmOptions dialog;
    child<QRadioButton>(&dialog, QStringLiteral("optBetreff"))->setChecked(true);
    child<QPushButton>(&dialog, QStringLiteral("cmdDelLayout"))->click();
    QCOMPARE(textOf(&dialog, QStringLiteral("cmbSubjectLayout")), QString());
    child<QPushButton>(&dialog, QStringLiteral("cmdZeichen(3)"))->click();
    child<QPushButton>(&dialog, QStringLiteral("cmdZeichen(8)"))->click();
    child<QPushButton>(&dialog, QStringLiteral("cmdZeichen(1)"))->click();
    QCOMPARE(textOf(&dialog, QStringLiteral("cmbSubjectLayout")), QStringLiteral("Nachname , Vorname "));
    QVERIFY(!dialog.findChild<QPushButton *>(QStringLiteral("cmdZeichen(5)")));
    child<QPushButton>(&dialog, QStringLiteral("roCommand1"))->click();
    QCOMPARE(textOf(&dialog, QStringLiteral("cmbSubjectLayout")), QStringLiteral("Nachname , "));
    child<QPushButton>(&dialog, QStringLiteral("roCommand1"))->click();
    QCOMPARE(textOf(&dialog, QStringLiteral("cmbSubjectLayout")), QStringLiteral("Nachname , "));
    // The other layout was not touched.
    QCOMPARE(textOf(&dialog, QStringLiteral("cmbFileAsLayoutEx")), QStringLiteral("Nachname, Vorname (Firma)"));
}

void tst_frmOptions::cancelStoresNothing()
{
    TestEnvironment env;
    frmOptions dialog;
    child<QLineEdit>(&dialog, QStringLiteral("txtIDDP"))->setText(QStringLiteral("011"));
    child<QPushButton>(&dialog, QStringLiteral("cmdCancel"))->click();
    QCOMPARE(GetSetting(QStringLiteral("IDDP")), QStringLiteral("00"));
    QCOMPARE(GetSetting(QStringLiteral("SaveAs"), QStringLiteral("NotExisting")), QStringLiteral("NotExisting"));
}

void tst_frmOptions::assistantCaptionsAndSaveAtEnd()
{
    TestEnvironment env;
    frmQuickOptions wizard;
    auto *forward = child<QPushButton>(&wizard, QStringLiteral("cmdForward"));
    auto *back = child<QPushButton>(&wizard, QStringLiteral("cmdBack"));
    QVERIFY(!back->isEnabled());
    forward->click();
    QVERIFY(back->isEnabled());
    auto *select = child<QComboBox>(&wizard, QStringLiteral("cmbCountrySelect"));
    select->setCurrentText(QStringLiteral("Schweiz"));
    QCOMPARE(textOf(&wizard, QStringLiteral("txtCountryCode")), QStringLiteral("41"));
    forward->click();
    forward->click();
    QCOMPARE(wizard.step(), 3);
    QCOMPARE(forward->text(), QStringLiteral("&Fertigstellen"));
    back->click();
    QCOMPARE(forward->text(), QStringLiteral("&Weiter"));
    forward->click();
    QCOMPARE(forward->text(), QStringLiteral("&Fertigstellen"));
    QCOMPARE(GetSetting(QStringLiteral("CountryCode")), QStringLiteral("49")); // not yet saved
    child<QComboBox>(&wizard, QStringLiteral("cmbFileAsLayoutEx"))->setCurrentText(QStringLiteral("Firma"));
    forward->click();
    QCOMPARE(wizard.result(), int(QDialog::Accepted));
    QCOMPARE(GetSetting(QStringLiteral("CountryCode")), QStringLiteral("41"));
    QCOMPARE(GetSetting(QStringLiteral("FileAsLayoutEx")), QStringLiteral("Firma"));
    QCOMPARE(GetSetting(QStringLiteral("AttPath"), QStringLiteral("NotExisting")), QString());
    QCOMPARE(GetSetting(QStringLiteral("CountrySelect"), QStringLiteral("NotExisting")), QStringLiteral("NotExisting"));
}

void tst_frmOptions::assistantClosedEarlyStoresNothing()
{
    TestEnvironment env;
    {
        frmQuickOptions wizard;
        child<QLineEdit>(&wizard, QStringLiteral("txtNDDP"))->setText(QStringLiteral("7"));
        child<QPushButton>(&wizard, QStringLiteral("cmdForward"))->click();
        wizard.reject();
    }
    QCOMPARE(GetSetting(QStringLiteral("NDDP")), QStringLiteral("0"));
}

QTEST_MAIN(tst_frmOptions)
#include "tst_frmoptions.moc"
