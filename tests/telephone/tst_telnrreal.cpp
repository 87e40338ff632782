// The number normaliser with the shipped reference database and the default
// settings: numbers as people type them into contacts.
#include "telephone/TelNrStandard.h"

#include "support/TelSampleDb.h"
#include "support/TestSupport.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTest>
#include <memory>

class tst_TelNrReal : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void typedNumbers_data();
    void typedNumbers();
    void resultIsStable_data();
    void resultIsStable();

private:
    std::unique_ptr<TestEnvironment> m_env;
    std::unique_ptr<MessageRecorder> m_boxes;
};

namespace {

void addTypedNumbers()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    auto row = [](const char *name, const char *in, const char *out) {
        QTest::newRow(name) << QString::fromUtf8(in) << QString::fromUtf8(out);
    };
    auto same = [](const char *name, const char *in) {
        QTest::newRow(name) << QString::fromUtf8(in) << QString::fromUtf8(in);
    };
    // Germany
    row("Berlin", "030 12345678", "+49 (30) 12345678");
    row("Köln mit Klammern und Durchwahl", "(0221) 9 87 65-0", "+49 (221) 98765-0");
    row("München international mit (0)", "+49 (0) 89 / 123 456 - 78", "+49 (89) 123456-78");
    row("Heidelberg mit 0049", "0049 6221 123456", "+49 (6221) 123456");
    row("vierstellig Leopoldshöhe", "05202/998288", "+49 (5202) 998288");
    row("fünfstellig Kleinmachnow", "033203 12345", "+49 (33203) 12345");
    row("Punkte als Trenner", "0211.123.456", "+49 (211) 123456");
    row("Solingen", "0212 123456", "+49 (212) 123456");
    row("Haan unter Solingen", "02129 12345", "+49 (212) 912345");
    row("Mannheim", "0621 123456", "+49 (621) 123456");
    row("Ludwigshafen unter 0621", "0621 5 123456", "+49 (621) 5123456");
    row("Sylt aus der Sammelvorwahl", "04651 12345", "+49 (4651) 12345");
    row("Beschriftung und Name", "Büro Hr. Meier: 040 / 1234 56", "+49 (40) 123456");
    // German mobile
    row("Mobil 0171", "0171 1234567", "+49 (171) 1234567");
    row("Mobil 0151 achtstellig", "0151/12345678", "+49 (151) 12345678");
    row("Mobil 01577", "01577 1234567", "+49 (1577) 1234567");
    row("Mobil 01520", "+49 1520 1234567", "+49 (1520) 1234567");
    row("Mobil mit Bindestrich", "0176-12345678", "+49 (176) 12345678");
    // Austria
    row("Wien", "+43 1 234 56 78", "+43 (1) 2345678");
    row("Wien mit 0043 und (0)", "0043 (0)1 5 123 456-0", "+43 (1) 5123456-0");
    row("Graz", "+43 (0)316 123456", "+43 (316) 123456");
    row("Klagenfurt aus der Sammelvorwahl", "+43 463 12345", "+43 (463) 12345");
    row("Bregenz", "0043 5574 12345", "+43 (5574) 12345");
    row("Österreich mobil", "+43 664 1234567", "+43 (664) 1234567");
    // Switzerland
    row("Zürich", "+41 44 123 45 67", "+41 (44) 1234567");
    row("Bern mit (0)", "+41 (0)31 123 45 67", "+41 (31) 1234567");
    row("Schweiz mobil", "0041 79 123 45 67", "+41 (79) 1234567");
    row("alte Zürcher Vorwahl", "+41 1 234 56 78", "+41 (44) 2345678");
    // Countries without area codes
    row("Liechtenstein", "+423 235 12 34", "+423 2351234");
    row("Dänemark", "+45 12 34 56 78", "+45 12345678");
    row("Luxemburg", "00352 12 34 56", "+352 123456");
    row("Spanien", "+34 91 123 45 67", "+34 911234567");
    // Recognised, but left as typed
    same("Frankreich ohne Vorwahlen", "+33 1 23 45 67 89");
    same("USA", "+1 212 555 1234");
    same("Italien ohne Vorwahlen", "+39 06 1234567");
    same("kostenlose Rufnummer", "0800 1234567");
    same("Servicenummer", "0180 5 123456");
    // Not telephone numbers, or not resolvable
    same("Datum", "12.03.2024");
    same("Datum mit führender Null", "01.01.2024");
    same("Postleitzahl mit Land", "D-33602 Bielefeld");
    same("Postleitzahl und Ort", "33602 Bielefeld");
    same("Ortsnummer ohne Vorwahl", "123 45 67");
    same("Notruf", "110");
    same("nur Präfix", "0");
    same("nur 00", "00");
    same("nur Ländervorwahl", "+49");
    same("Buchstabenwahl", "0800-FLOWERS");
    same("Text", "siehe Notiz");
    row("leer", "", "");
    row("Leerzeichen", "    ", "");
    row("nur Vorwahl", "0221", "+49 (221) ");
    // Already normalised
    same("schon normalisiert Berlin", "+49 (30) 12345678");
    same("schon normalisiert Durchwahl", "+49 (221) 98765-0");
    same("schon normalisiert Wien", "+43 (1) 2345678");
    same("schon normalisiert Zürich", "+41 (44) 1234567");
    same("schon normalisiert Liechtenstein", "+423 2351234");
}

} // namespace

void tst_TelNrReal::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QVERIFY2(QFile::exists(BuiltReferenceDb()), qPrintable(BuiltReferenceDb()));
    m_env = std::make_unique<TestEnvironment>(true, false);
    CopyDefaultSettings(*m_env);
    // A fresh copy counts as just changed and would be read at every call.
    QFile db(QDir(m_env->folder()).filePath(QStringLiteral("VarnexPub.db")));
    QVERIFY(db.open(QIODevice::ReadWrite));
    QVERIFY(db.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime));
    m_boxes = std::make_unique<MessageRecorder>();
}

void tst_TelNrReal::cleanupTestCase()
{
    QCOMPARE(m_boxes->count(), 0);
    m_boxes.reset();
    m_env.reset();
}

void tst_TelNrReal::typedNumbers_data()
{
    addTypedNumbers();
}

void tst_TelNrReal::typedNumbers()
{
    QFETCH(QString, input);
    QFETCH(QString, expected);
    bool changed = false;
    QCOMPARE(StandardTelNr(input, changed), expected);
    // Blank input gives the empty text and never counts as a change.
    QCOMPARE(changed, expected != input && !IsBlankNumber(input));
}

void tst_TelNrReal::resultIsStable_data()
{
    addTypedNumbers();
}

void tst_TelNrReal::resultIsStable()
{
    QFETCH(QString, expected);
    bool changed = true;
    QCOMPARE(StandardTelNr(expected, changed), expected);
    QVERIFY2(!changed, qPrintable(expected));
}

QTEST_GUILESS_MAIN(tst_TelNrReal)
#include "tst_telnrreal.moc"
