// Name layouts: the parts of the options preview, with the parts a row names
// left empty.
#include "names/NameCorrectionFunctions.h"

#include <QLocale>
#include <QTest>

class tst_NameLayout : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void layout_data();
    void layout();
    void layoutCode_data();
    void layoutCode();
};

void tst_NameLayout::layout_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("emptyParts"); // code letters of the parts left empty
    QTest::addColumn<QString>("expected");

    auto row = [](const char *name, const QString &layout, const QString &empty, const QString &expected) {
        QTest::newRow(name) << layout << empty << expected;
    };
    row("Nachname, Vorname (Firma)", "Nachname, Vorname (Firma)", "", "Mustermann, Max (Outlook GmbH)");
    row("ohne Firma fällt die Klammer", "Nachname, Vorname (Firma)", "F", "Mustermann, Max");
    row("ohne Nachname fällt das Komma", "Nachname, Vorname (Firma)", "N", "Max (Outlook GmbH)");
    row("Vorname Nachname Namenszusatz", "Vorname Nachname Namenszusatz", "", "Max Mustermann jun.");
    row("ohne Nachname nur Vorname", "Vorname Nachname Namenszusatz", "NZ", "Max");
    row("Firma (Nachname, Vorname)", "Firma (Nachname, Vorname)", "", "Outlook GmbH (Mustermann, Max)");
    row("gefüllte Klammer bleibt ohne Firma", "Firma (Nachname, Vorname)", "F", "(Mustermann, Max)");
    row("Bindestrich und Schrägstrich", "Nachname - Vorname / Firma", "",
        "Mustermann - Max / Outlook GmbH");
    row("eckige Klammer", "Firma [Nachname]", "", "Outlook GmbH [Mustermann]");
    row("geschweifte Klammer", "Firma {Vorname}", "", "Outlook GmbH {Max}");
    row("Trenner geht mit dem Teil", "Firma - Nachname", "F", "Mustermann");
    row("Komma vor Klammer fällt", "Nachname, (Firma)", "", "Mustermann (Outlook GmbH)");
    row("Klammer vor Komma fällt", "(Nachname), Vorname", "", "(Mustermann) Max");
    row("Kurzform", "VN", "", "Max Mustermann");
    row("Kurzform klein geschrieben", "vn", "", "Max Mustermann");
    row("alle Teile leer", "Nachname, Vorname (Firma)", "AVWNZF", "");
    row("leeres Layout", "", "", "");
    row("Groß- und Kleinschreibung der Namen", "nachname, VORNAME", "", "Mustermann, Max");
    row("alle sechs Teile", "Anrede Vorname weitere Vorn. Nachname Namenszusatz Firma", "",
        "Prof. Dr. Herr Max Maria Mustermann jun. Outlook GmbH");
    row("Ersatzlayout mit L", "N,LV", "", "Mustermann,LMax");
    row("Semikolon nur dahinter mit Leerzeichen", "N;V", "", "Mustermann; Max");
    row("Trenner am Anfang und Ende fallen", ",-N/;", "", "Mustermann");
    row("übersprungenes Zeichen nach Entfernen", "N,-,V", "", "Mustermann - Max");
    row("fremdes Zeichen wörtlich", "N.V", "", "Mustermann.Max");
    row("leere Klammer aus Layout", "N () V", "", "Mustermann Max");
    row("mittlerer Teil fehlt", "V W N", "W", "Max Mustermann");
}

void tst_NameLayout::layout()
{
    QFETCH(QString, layout);
    QFETCH(QString, emptyParts);
    QFETCH(QString, expected);
    auto part = [&](QChar code, const char *text) {
        return emptyParts.contains(code) ? QString() : QString::fromUtf8(text);
    };
    const QString result = BuildNameLayout(part(u'A', "Prof. Dr. Herr"), part(u'V', "Max"), part(u'W', "Maria"),
                                           part(u'N', "Mustermann"), part(u'Z', "jun."),
                                           part(u'F', "Outlook GmbH"), layout);
    QCOMPARE(result, expected);
}

void tst_NameLayout::layoutCode_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<bool>("expected");
    QTest::newRow("Code") << "L" << true;
    QTest::newRow("klein geschrieben") << "n" << false;
    QTest::newRow("anderer Buchstabe") << "B" << false;
    QTest::newRow("zwei Zeichen") << "NV" << false;
}

void tst_NameLayout::layoutCode()
{
    QFETCH(QString, character);
    QFETCH(bool, expected);
    QCOMPARE(IsLayoutCode(character), expected);
}

QTEST_GUILESS_MAIN(tst_NameLayout)
#include "tst_namelayout.moc"
