// Rules of the options dialogs without widgets.
#include "frame/RegistryFunctions.h"
#include "options/OptionsLogic.h"
#include "support/TestSupport.h"

#include <QTest>

using Sliders = std::array<int, 3>;
Q_DECLARE_METATYPE(Sliders)

class tst_OptionsLogic : public QObject
{
    Q_OBJECT
private slots:
    void repairKeepsPermutation_data();
    void repairKeepsPermutation();
    void prioritiesRoundTrip_data();
    void prioritiesRoundTrip();
    void brokenPrioritiesAreRefused_data();
    void brokenPrioritiesAreRefused();
    void countryPresets_data();
    void countryPresets();
    void checkMessagesPerEmptyType();
    void layoutStepBackIsOneStep();
};

void tst_OptionsLogic::repairKeepsPermutation_data()
{
    QTest::addColumn<Sliders>("before");
    QTest::addColumn<int>("changed");
    QTest::addColumn<int>("newValue");
    QTest::addColumn<Sliders>("after");
    QTest::newRow("0 von 2 auf 1 schiebt 1 auf 2") << Sliders{2, 1, 0} << 0 << 1 << Sliders{1, 2, 0};
    QTest::newRow("2 von 0 auf 2 schiebt 0 auf 0") << Sliders{2, 1, 0} << 2 << 2 << Sliders{0, 1, 2};
    QTest::newRow("1 von 1 auf 0 schiebt 2 auf 1") << Sliders{2, 1, 0} << 1 << 0 << Sliders{2, 0, 1};
    QTest::newRow("Wert unverändert") << Sliders{0, 1, 2} << 1 << 1 << Sliders{0, 1, 2};
}

void tst_OptionsLogic::repairKeepsPermutation()
{
    QFETCH(Sliders, before);
    QFETCH(int, changed);
    QFETCH(int, newValue);
    QFETCH(Sliders, after);
    Sliders sliders = before;
    sliders[changed] = newValue;
    RepairPriorities(sliders, changed);
    QCOMPARE(sliders, after);
}

void tst_OptionsLogic::prioritiesRoundTrip_data()
{
    QTest::addColumn<QStringList>("stored");
    QTest::addColumn<Sliders>("sliders");
    QTest::newRow("Vorgabe 2,1,0") << QStringList{QStringLiteral("2"), QStringLiteral("1"), QStringLiteral("0")}
                                   << Sliders{2, 1, 0};
    QTest::newRow("0,2,1") << QStringList{QStringLiteral("0"), QStringLiteral("2"), QStringLiteral("1")}
                           << Sliders{0, 2, 1};
    QTest::newRow("Drehung 1,2,0: jeder Regler seine Zeile")
        << QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("0")} << Sliders{1, 2, 0};
}

void tst_OptionsLogic::prioritiesRoundTrip()
{
    QFETCH(QStringList, stored);
    QFETCH(Sliders, sliders);
    TestEnvironment env(false, false);
    for (int v = 0; v < 3; ++v)
        SaveSetting(QStringLiteral("Priority.%1").arg(v), stored.at(v));
    const auto loaded = LoadPrioritySliders();
    QVERIFY(loaded);
    QCOMPARE(*loaded, sliders);
    for (int v = 0; v < 3; ++v)
        SaveSetting(QStringLiteral("Priority.%1").arg(v), QStringLiteral("x"));
    SavePrioritySliders(sliders);
    for (int v = 0; v < 3; ++v)
        QCOMPARE(GetSetting(QStringLiteral("Priority.%1").arg(v)), stored.at(v));
}

void tst_OptionsLogic::brokenPrioritiesAreRefused_data()
{
    QTest::addColumn<QStringList>("stored");
    QTest::newRow("kein Schieberindex") << QStringList{QStringLiteral("5"), QStringLiteral("1"), QStringLiteral("0")};
    QTest::newRow("Text") << QStringList{QStringLiteral("a"), QStringLiteral("1"), QStringLiteral("0")};
    QTest::newRow("doppelt") << QStringList{QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("0")};
}

void tst_OptionsLogic::brokenPrioritiesAreRefused()
{
    QFETCH(QStringList, stored);
    TestEnvironment env(false, false);
    for (int v = 0; v < 3; ++v)
        SaveSetting(QStringLiteral("Priority.%1").arg(v), stored.at(v));
    QVERIFY(!LoadPrioritySliders());
}

void tst_OptionsLogic::countryPresets_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("countryCode");
    QTest::addColumn<QString>("iddp");
    QTest::addColumn<QString>("nddp");
    QTest::newRow("USA") << QStringLiteral("USA") << QStringLiteral("1") << QStringLiteral("011") << QStringLiteral("1");
    QTest::newRow("Österreich") << QStringLiteral("Österreich") << QStringLiteral("43") << QStringLiteral("00") << QStringLiteral("0");
    QTest::newRow("Vereinigtes Königreich") << QStringLiteral("Vereinigtes Königreich") << QStringLiteral("44")
                                            << QStringLiteral("00") << QStringLiteral("0");
    QTest::newRow("Schweiz") << QStringLiteral("Schweiz") << QStringLiteral("41") << QStringLiteral("00") << QStringLiteral("0");
    QTest::newRow("unbekannt bleibt") << QStringLiteral("Italien") << QString() << QString() << QString();
    QTest::newRow("Groß/klein zählt") << QStringLiteral("schweiz") << QString() << QString() << QString();
}

void tst_OptionsLogic::countryPresets()
{
    QFETCH(QString, entry);
    QFETCH(QString, countryCode);
    QFETCH(QString, iddp);
    QFETCH(QString, nddp);
    const auto preset = CountryPresetFor(entry);
    QCOMPARE(bool(preset), !countryCode.isEmpty());
    if (preset) {
        QCOMPARE(preset->countryCode, countryCode);
        QCOMPARE(preset->iddp, iddp);
        QCOMPARE(preset->nddp, nddp);
    }
}

void tst_OptionsLogic::checkMessagesPerEmptyType()
{
    QCOMPARE(DuplicateFieldCheckMessages({1, 2, 1, 1, 1, 1}), QStringList());
    QCOMPARE(DuplicateFieldCheckMessages({1, 1, 1, 1, 1, 0}),
             QStringList{QStringLiteral("Bitte wählen Sie mindestens eine Option die Registerkarte Journal")});
    QCOMPARE(DuplicateFieldCheckMessages({0, 0, 0, 0, 0, 0}).size(), 6);
    QVERIFY(DuplicateFieldCheckMessages({0, 0, 0, 0, 0, 0}).at(1).endsWith(QStringLiteral(" Kalender")));
}

void tst_OptionsLogic::layoutStepBackIsOneStep()
{
    LayoutEditor editor;
    QCOMPARE(editor.stepBack(QStringLiteral("Firma")), QStringLiteral("Firma")); // nothing inserted yet
    QString text = editor.insert(QString(), QStringLiteral("Nachname"));
    QCOMPARE(text, QStringLiteral("Nachname "));
    text = editor.insert(text, QStringLiteral(","));
    QCOMPARE(text, QStringLiteral("Nachname , "));
    text = editor.stepBack(text);
    QCOMPARE(text, QStringLiteral("Nachname "));
    QCOMPARE(editor.stepBack(text), QStringLiteral("Nachname ")); // a second step changes nothing
}

QTEST_GUILESS_MAIN(tst_OptionsLogic)
#include "tst_optionslogic.moc"
