// The text rules of find and replace: newString in its four modes and the
// case-insensitive replacement under it.
#include "replace/ReplaceText.h"

#include <QLocale>
#include <QTest>

class tst_ReplaceText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void newStringModes_data();
    void newStringModes();
    void replaceIgnoringCase_data();
    void replaceIgnoringCase();
    void trimBlanks_data();
    void trimBlanks();
};

// Mode letters: L chkLeer (fill empty), R chkReplace (whole field),
// W chkWord (whole word); several may be set, as disabled boxes keep values.
void tst_ReplaceText::newStringModes_data()
{
    QTest::addColumn<QString>("modes");
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    auto row = [](const char *name, const char *modes, const char *find, const char *replacement,
                  const char *value, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(modes) << QString::fromUtf8(find)
                            << QString::fromUtf8(replacement) << QString::fromUtf8(value)
                            << QString::fromUtf8(expected);
    };
    // Plain replacement.
    row("Großschreibung findet Umlaut", "", "MÜLLER", "Meier", "Herr Müller", "Herr Meier");
    row("Kleinschreibung findet Großes", "", "müller", "Meier", "MÜLLER GmbH", "Meier GmbH");
    row("Ersatz steht wie getippt", "", "gmbh", "GmbH & Co. KG", "Müller gmbh", "Müller GmbH & Co. KG");
    row("nur Groß- und Kleinschreibung ändern", "", "müller", "MÜLLER", "Müller", "MÜLLER");
    row("alle Vorkommen", "", "ä", "ae", "Äpfel und Äste", "aepfel und aeste");
    row("ß bleibt ß", "", "straße", "Str.", "Hauptstraße 1", "HauptStr. 1");
    row("ohne Überlappung von vorn", "", "aa", "b", "aaa", "ba");
    row("Teilwort wird ersetzt", "", "Max", "Moritz", "Maxi Muster", "Moritzi Muster");
    row("nichts gefunden", "", "Schmidt", "Schulz", "Müller", "Müller");
    row("leerer Suchtext ändert nichts", "", "", "Muster", "Müller", "Müller");
    row("leerer Suchtext und leeres Feld", "", "", "Muster", "", "");
    row("Zeilenumbruch bleibt", "", "alt", "neu", "alt\r\nalt", "neu\r\nneu");
    row("Ersatz durch nichts", "", "-", "", "0711-123-45", "071112345");

    // chkReplace: the whole field.
    row("ganzes Feld ersetzen", "R", "", "Muster", "Müller", "Muster");
    row("ganzes Feld ersetzen trotz Suchtext", "R", "xyz", "Muster", "Müller", "Muster");
    row("ganzes Feld mit gleichem Text", "R", "", "Müller", "Müller", "Müller");
    row("leeres Feld ganz ersetzen", "R", "", "Muster", "", "Muster");
    row("ganzes Feld leeren", "R", "", "", "Müller", "");

    // chkLeer: empty fields are filled.
    row("leeres Feld füllen", "L", "", "Muster", "", "Muster");
    row("volles Feld bleibt bei leerem Suchtext", "L", "", "Muster", "Müller", "Müller");
    row("volles Feld mit verborgenem Suchtext", "L", "Müller", "Muster", "Herr Müller", "Herr Muster");
    row("verborgenes Wort bei leerem Feld", "LW", "Max", "Moritz", "", "Moritz");
    row("verborgenes Wort bei vollem Feld", "LW", "Max", "Moritz", "Max Muster", "Moritz Muster");

    // chkWord: whole words bounded by blanks or the ends of the text.
    row("Wort am Anfang", "W", "Max", "Moritz", "Max Muster", "Moritz Muster");
    row("Wort am Ende", "W", "Muster", "Meier", "Max Muster", "Max Meier");
    row("Wort in der Mitte", "W", "und", "&", "Müller und Söhne", "Müller & Söhne");
    row("ganzes Feld als Wort", "W", "Max", "Moritz", "Max", "Moritz");
    row("Wortteil bleibt", "W", "Max", "Moritz", "Maxi Muster", "Maxi Muster");
    row("Wort ohne Rücksicht auf Groß und klein", "W", "MAX", "Moritz", "max Muster", "Moritz Muster");
    row("Nachbarn: nur der erste", "W", "Max", "Moritz", "Max Max Muster", "Moritz Max Muster");
    row("Wort mit Abstand dreimal", "W", "Max", "Moritz", "Max Muster Max", "Moritz Muster Moritz");
    row("Satzzeichen gehört zum Wort", "W", "Max", "Moritz", "Max, Muster", "Max, Muster");
    row("Blanks an den Enden fallen weg", "W", "Max", "Moritz", "  Muster  ", "Muster");
    row("Tabulator trennt kein Wort", "W", "Max", "Moritz", "Max\tMuster", "Max\tMuster");
    row("Ersatz durch nichts lässt Blanks", "W", "und", "", "Müller und Söhne", "Müller  Söhne");
    row("leerer Suchtext und doppelter Blank", "W", "", "X", "Max  Muster", "Max X Muster");
    row("leerer Suchtext ohne doppelten Blank", "W", "", "X", "Max Muster", "Max Muster");

    // Order of the rules with several boxes set.
    row("ganzes Feld geht vor leerem Feld", "RL", "", "Muster", "Müller", "Muster");
    row("ganzes Feld geht vor Wort", "RW", "Max", "Moritz", "Max Muster", "Moritz");
}

void tst_ReplaceText::newStringModes()
{
    QFETCH(QString, modes);
    QFETCH(QString, find);
    QFETCH(QString, replacement);
    QFETCH(QString, value);
    QFETCH(QString, expected);

    ReplaceOptions options;
    options.find = find;
    options.replacement = replacement;
    options.fillEmpty = modes.contains(u'L');
    options.replaceWhole = modes.contains(u'R');
    options.wholeWord = modes.contains(u'W');
    QCOMPARE(newString(options, value), expected);
}

void tst_ReplaceText::replaceIgnoringCase_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("expected");

    QTest::newRow("Ö und ö") << "Öl und öl" << "öl" << "Fett" << "Fett und Fett";
    QTest::newRow("Ü groß gesucht") << "Übermut" << "ÜBER" << "Unter" << "Untermut";
    QTest::newRow("großes ẞ findet ß") << "Straße" << "STRAẞE" << "Weg" << "Weg";
    QTest::newRow("é und É") << "Café CAFÉ" << "café" << "Bar" << "Bar Bar";
    QTest::newRow("Suchtext länger als Text") << "ab" << "abc" << "x" << "ab";
    QTest::newRow("leerer Text") << "" << "a" << "b" << "";
    QTest::newRow("leerer Suchtext") << "abc" << "" << "-" << "abc";
    QTest::newRow("Ersatz enthält Suchtext") << "a a" << "a" << "aa" << "aa aa";
}

void tst_ReplaceText::replaceIgnoringCase()
{
    QFETCH(QString, text);
    QFETCH(QString, find);
    QFETCH(QString, replacement);
    QFETCH(QString, expected);
    QCOMPARE(ReplaceIgnoringCase(text, find, replacement), expected);
}

void tst_ReplaceText::trimBlanks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Blanks an beiden Enden") << "  a b  " << "a b";
    QTest::newRow("nur Blanks") << "   " << "";
    QTest::newRow("Zeilenumbruch bleibt") << "\na\n" << "\na\n";
    QTest::newRow("Tabulator bleibt") << "\ta " << "\ta";
    QTest::newRow("geschütztes Leerzeichen bleibt") << QStringLiteral(u"\u00a0a") << QStringLiteral(u"\u00a0a");
}

void tst_ReplaceText::trimBlanks()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(TrimBlanks(text), expected);
}

QTEST_GUILESS_MAIN(tst_ReplaceText)
#include "tst_replacetext.moc"
