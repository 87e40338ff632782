// The file names of exported attachments: what CleanFileName removes and
// keeps, and how UniqueFileName numbers a path that is taken.
#include "attachments/AttachmentSaveFunctions.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

class tst_AttachmentFileNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanFileName_data();
    void cleanFileName();
    void fitFileName_data();
    void fitFileName();
    void uniqueFileName_data();
    void uniqueFileName();
    void uniqueFileNameNumbersOnAfterEachSave();

private:
    // Creates what the row says exists: "name" a file, "name/" a folder,
    // "name@" a link that points nowhere.
    void createEntries(const QDir &base, const QStringList &entries);
};

void tst_AttachmentFileNames::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_AttachmentFileNames::cleanFileName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("sauberer Name bleibt") << "Bericht 2024.pdf" << "Bericht 2024.pdf";
    QTest::newRow("alle neun verbotenen Zeichen")
        << "a\\b/c:d*e?f\"g<h>i|j.txt" << "abcdefghij.txt";
    QTest::newRow("nur verbotene Zeichen") << "?*" << "ohneName";
    QTest::newRow("leerer Name") << "" << "ohneName";
    QTest::newRow("nur Leerzeichen") << "   " << "ohneName";
    QTest::newRow("verbotene Zeichen und Leerzeichen") << " ? | " << "ohneName";
    QTest::newRow("Leerzeichen außen weg, innen bleiben")
        << "  Brief an  Oma.doc  " << "Brief an  Oma.doc";
    QTest::newRow("getrimmt erst nach dem Entfernen") << "? Brief ?" << "Brief";
    QTest::newRow("Umlaute bleiben") << "Übersicht für Jürgen.xlsx" << "Übersicht für Jürgen.xlsx";
    QTest::newRow("andere Sonderzeichen bleiben")
        << "Rechnung #12 (Kopie) & 50% [neu].pdf" << "Rechnung #12 (Kopie) & 50% [neu].pdf";
    QTest::newRow("Pfad wird zum Namen") << "C:\\Temp\\a.txt" << "CTempa.txt";
    QTest::newRow("Punkte bleiben") << "..." << "...";
    QTest::newRow("NUL wie die verbotenen Zeichen")
        << QString(QStringLiteral("Teil A") + QString(QChar(0)) + QStringLiteral("eins.txt")) << "Teil Aeins.txt";
}

void tst_AttachmentFileNames::cleanFileName()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(CleanFileName(name), expected);
}

void tst_AttachmentFileNames::fitFileName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("maxBytes");
    QTest::addColumn<QString>("expected");
    const QString a130(130, u'ä');
    QTest::newRow("passt") << "Bericht.pdf" << 11 << "Bericht.pdf";
    QTest::newRow("130 ä: Endung bleibt, kein halbes ä") << a130 + ".txt" << 247 << QString(121, u'ä') + ".txt";
    QTest::newRow("ungerade Grenze") << a130 + ".txt" << 248 << QString(122, u'ä') + ".txt";
    QTest::newRow("Akzent bleibt am Buchstaben") << QStringLiteral("e\u0301e\u0301e\u0301.doc") << 10
                                                << QStringLiteral("e\u0301e\u0301.doc");
    QTest::newRow("Zeichen außerhalb der Grundebene") << QStringLiteral("\U0001F600\U0001F600\U0001F600") << 11
                                                     << QStringLiteral("\U0001F600\U0001F600");
    QTest::newRow("lange Endung zählt nicht") << "ab." + QString(20, u'x') << 10 << "ab.xxxxxxx";
    QTest::newRow("ohne Endung") << QString(300, u'x') << 255 << QString(255, u'x');
}

void tst_AttachmentFileNames::fitFileName()
{
    QFETCH(QString, name);
    QFETCH(int, maxBytes);
    QFETCH(QString, expected);
    const QString fitted = FitFileName(name, maxBytes);
    QCOMPARE(fitted, expected);
    QVERIFY(fitted.toUtf8().size() <= maxBytes);
}

void tst_AttachmentFileNames::uniqueFileName_data()
{
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("frei") << QStringList{} << "report.pdf" << "report.pdf";
    QTest::newRow("einmal vorhanden") << QStringList{"report.pdf"} << "report.pdf"
                                      << "report(1).pdf";
    QTest::newRow("zweimal vorhanden") << QStringList{"report.pdf", "report(1).pdf"}
                                       << "report.pdf" << "report(2).pdf";
    QTest::newRow("erste Lücke wird genommen") << QStringList{"report.pdf", "report(2).pdf"}
                                               << "report.pdf" << "report(1).pdf";
    QTest::newRow("nur die Nummer ist frei, nicht der Name")
        << QStringList{"report(1).pdf"} << "report.pdf" << "report.pdf";
    QTest::newRow("letzter Punkt zählt") << QStringList{"archiv.tar.gz"} << "archiv.tar.gz"
                                         << "archiv.tar(1).gz";
    QTest::newRow("ohne Punkt am Ende") << QStringList{"ohneName", "ohneName(1)"}
                                        << "ohneName" << "ohneName(2)";
    QTest::newRow("Punkt im Ordnernamen") << QStringList{"a.b/", "a.b/ohneName"}
                                          << "a.b/ohneName" << "a(1).b/ohneName";
    QTest::newRow("Ordner gleichen Namens") << QStringList{"report.pdf/"} << "report.pdf"
                                            << "report(1).pdf";
    QTest::newRow("Verknüpfung ins Leere") << QStringList{"report.pdf@"} << "report.pdf"
                                           << "report(1).pdf";
    QTest::newRow("versteckte Datei") << QStringList{".profil"} << ".profil" << "(1).profil";
    QTest::newRow("Umlaute") << QStringList{"Grüße.txt"} << "Grüße.txt" << "Grüße(1).txt";
}

void tst_AttachmentFileNames::uniqueFileName()
{
    QFETCH(QStringList, existing);
    QFETCH(QString, path);
    QFETCH(QString, expected);

    QTemporaryDir temp;
    QVERIFY(temp.isValid());
    // The rows count the dots of their own part only; the temporary folder
    // gets a base without any.
    const QDir base(temp.filePath(QStringLiteral("ablage")));
    QVERIFY(QDir().mkpath(base.path()));
    QVERIFY2(!base.path().contains(u'.'), qPrintable(base.path()));
    createEntries(base, existing);
    if (QTest::currentTestFailed())
        return;

    QCOMPARE(UniqueFileName(base.filePath(path)), base.filePath(expected));
}

void tst_AttachmentFileNames::uniqueFileNameNumbersOnAfterEachSave()
{
    // Two attachments of one mail named alike: the second is named after the
    // first is on disk, and so gets the next number.
    QTemporaryDir temp;
    QVERIFY(temp.isValid());
    const QString wanted = temp.filePath(CleanFileName(QStringLiteral("?*")));
    QStringList names;
    for (int i = 0; i < 3; ++i) {
        const QString path = UniqueFileName(wanted);
        QFile file(path);
        QVERIFY(file.open(QIODevice::NewOnly));
        names << QFileInfo(path).fileName();
    }
    QCOMPARE(names, (QStringList{"ohneName", "ohneName(1)", "ohneName(2)"}));
}

void tst_AttachmentFileNames::createEntries(const QDir &base, const QStringList &entries)
{
    for (const QString &entry : entries) {
        if (entry.endsWith(u'/')) {
            QVERIFY(base.mkpath(entry));
        } else if (entry.endsWith(u'@')) {
            QVERIFY(QFile::link(base.filePath(QStringLiteral("gibt-es-nicht")),
                                base.filePath(entry.chopped(1))));
        } else {
            QFile file(base.filePath(entry));
            QVERIFY2(file.open(QIODevice::NewOnly), qPrintable(entry));
        }
    }
}

QTEST_GUILESS_MAIN(tst_AttachmentFileNames)
#include "tst_attachmentfilenames.moc"
