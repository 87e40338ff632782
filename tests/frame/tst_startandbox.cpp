// The real message box (icons, buttons, default button, timeout) and the
// start sequence (defaults written, splash, main window).
#include "controls/MessageBox.h"
#include "frame/Main.h"
#include "frame/RegistryFunctions.h"
#include "frame/frmHaupt.h"
#include "frame/frmSplash.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

class tst_StartAndBox : public QObject
{
    Q_OBJECT
private slots:
    void boxLooksAsItsStyleSays_data();
    void boxLooksAsItsStyleSays();
    void boxClosesItselfAfterTimeout();
    void splashShowsVersion();
    void startWritesDefaultsAndShowsMainWindow();
    void qtOwnTextsAreGerman();
};

namespace {

// Runs inspect() on the box as soon as it is open, then presses the button
// with the given text (or lets it be when pressText is empty).
void whenBoxOpens(const std::function<void(QMessageBox *)> &inspect)
{
    QTimer::singleShot(0, [inspect] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        inspect(box);
    });
}

} // namespace

void tst_StartAndBox::boxLooksAsItsStyleSays_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("icon");
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<QString>("defaultButton");
    QTest::addColumn<QString>("press");
    QTest::addColumn<int>("answer");
    QTest::newRow("16 Stoppschild") << 16 << int(QMessageBox::Critical) << QStringList{QStringLiteral("OK")}
                                    << QStringLiteral("OK") << QStringLiteral("OK") << 1;
    QTest::newRow("48 Ausrufezeichen") << 48 << int(QMessageBox::Warning) << QStringList{QStringLiteral("OK")}
                                       << QStringLiteral("OK") << QStringLiteral("OK") << 1;
    QTest::newRow("64 Information") << 64 << int(QMessageBox::Information) << QStringList{QStringLiteral("OK")}
                                    << QStringLiteral("OK") << QStringLiteral("OK") << 1;
    QTest::newRow("36 Frage, Ja gedrückt") << 36 << int(QMessageBox::Question)
                                           << QStringList{QStringLiteral("&Ja"), QStringLiteral("&Nein")}
                                           << QStringLiteral("&Ja") << QStringLiteral("&Ja") << 6;
    QTest::newRow("292 Frage, Nein vorgewählt") << 292 << int(QMessageBox::Question)
                                                << QStringList{QStringLiteral("&Ja"), QStringLiteral("&Nein")}
                                                << QStringLiteral("&Nein") << QStringLiteral("&Nein") << 7;
    QTest::newRow("0 ohne Symbol") << 0 << int(QMessageBox::NoIcon) << QStringList{QStringLiteral("OK")}
                                   << QStringLiteral("OK") << QStringLiteral("OK") << 1;
}

void tst_StartAndBox::boxLooksAsItsStyleSays()
{
    QFETCH(int, style);
    QFETCH(int, icon);
    QFETCH(QStringList, buttons);
    QFETCH(QString, defaultButton);
    QFETCH(QString, press);
    QFETCH(int, answer);
    bool inspected = false;
    whenBoxOpens([&](QMessageBox *box) {
        inspected = true;
        QCOMPARE(int(box->icon()), icon);
        QCOMPARE(box->windowTitle(), QStringLiteral("Frage?"));
        QCOMPARE(box->text(), QStringLiteral("Zeile 1\nZeile 2"));
        QStringList texts;
        QAbstractButton *toPress = nullptr;
        for (QAbstractButton *b : box->buttons()) {
            texts.append(b->text());
            if (b->text() == press)
                toPress = b;
        }
        texts.sort();
        QStringList expected = buttons;
        expected.sort();
        QCOMPARE(texts, expected);
        QVERIFY(box->defaultButton());
        QCOMPARE(box->defaultButton()->text(), defaultButton);
        QVERIFY(toPress);
        toPress->click();
    });
    const int result = ShowMessageBox({QStringLiteral("Zeile 1\r\nZeile 2"), style, QStringLiteral("Frage?"), 0});
    QVERIFY(inspected);
    QCOMPARE(result, answer);
}

void tst_StartAndBox::boxClosesItselfAfterTimeout()
{
    QElapsedTimer clock;
    clock.start();
    const int result = ShowMessageBox({QStringLiteral("Weiter?"), 292, QStringLiteral("Frage?"), 1});
    QVERIFY(clock.elapsed() >= 900);
    QVERIFY(result != AnswerYes);
}

void tst_StartAndBox::splashShowsVersion()
{
    frmSplash splash;
    QCOMPARE(splash.findChild<QLabel *>(QStringLiteral("lblVersion"))->text(), QStringLiteral("3.2.2"));
    QVERIFY(splash.findChild<QWidget *>(QStringLiteral("sevWaitBar1")));
}

void tst_StartAndBox::startWritesDefaultsAndShowsMainWindow()
{
    TestEnvironment env(true, false);
    QCOMPARE(GetSetting(QStringLiteral("IdleTime"), QStringLiteral("NotExisting")), QStringLiteral("NotExisting"));
    frmHaupt *haupt = Main();
    QVERIFY(haupt);
    QVERIFY(haupt->isVisible());
    QCOMPARE(haupt->windowTitle(), QStringLiteral("Varnex"));
    QCOMPARE(haupt->lblStatus()->text(), QStringLiteral("Bereit"));
    QCOMPARE(GetSetting(QStringLiteral("IdleTime"), QStringLiteral("NotExisting")), QStringLiteral("30"));
    // The splash window is gone once the main window is up.
    for (QWidget *w : QApplication::topLevelWidgets())
        QVERIFY(!(qobject_cast<frmSplash *>(w) && w->isVisible()));
    haupt->hide();
    delete haupt;
}

void tst_StartAndBox::qtOwnTextsAreGerman()
{
    // An English locale must not matter.
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QVERIFY(LoadQtGermanTranslations());
    QLineEdit edit;
    std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
    QStringList entries;
    for (const QAction *action : menu->actions())
        entries << action->text().section(u'\t', 0, 0);
    QVERIFY2(entries.contains(QStringLiteral("&Rückgängig")), qPrintable(entries.join(u'|')));
    QVERIFY2(entries.contains(QStringLiteral("Einf&ügen")), qPrintable(entries.join(u'|')));

    QFileDialog chooser;
    chooser.setOption(QFileDialog::DontUseNativeDialog);
    QStringList labels;
    for (const QLabel *label : chooser.findChildren<QLabel *>())
        labels << label->text();
    QVERIFY2(labels.contains(QStringLiteral("Suchen in:")), qPrintable(labels.join(u'|')));
}

QTEST_MAIN(tst_StartAndBox)
#include "tst_startandbox.moc"
