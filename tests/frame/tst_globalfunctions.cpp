// Messages, the error box and the error log.
#include "frame/GlobalFunctions.h"
#include "support/TestSupport.h"
#include "telephone/TelTables.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

class tst_GlobalFunctions : public QObject
{
    Q_OBJECT
private slots:
    void logEntryIsFourCrLfLines();
    void errorBoxHasFourLines_data();
    void errorBoxHasFourLines();
    void errorIdOneIsOnlyLogged();
    void logIsLatin1_data();
    void logIsLatin1();
    void failingLogShowsOneBoxAndNeverLoops();
    void messageWithoutHandlerAnswersDefaultButton_data();
    void messageWithoutHandlerAnswersDefaultButton();
    void programFoldersByLayout_data();
    void programFoldersByLayout();
    void referenceDbCopiedOnFirstUse();
};

void tst_GlobalFunctions::logEntryIsFourCrLfLines()
{
    TestEnvironment env(false, false);
    QVERIFY(WriteErrorLog(QStringLiteral("Text der Meldung"), QStringLiteral("909")));
    QVERIFY(WriteErrorLog(QStringLiteral("zweite"), QStringLiteral("1")));
    QFile f(env.folder() + QStringLiteral("/errorlog.txt"));
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    const QList<QByteArray> lines = bytes.split('\n');
    QCOMPARE(lines.size(), 9); // two entries of four lines, and the empty rest after the last CR LF
    QVERIFY(lines.last().isEmpty());
    for (int i = 0; i < 8; ++i)
        QVERIFY2(lines.at(i).endsWith('\r'), qPrintable(QStringLiteral("line %1 lacks CR").arg(i)));
    static const QRegularExpression head(QStringLiteral("^Date: \\d\\d\\.\\d\\d\\.\\d{4} \\d\\d:\\d\\d:\\d\\dSub: 909\\r$"));
    QVERIFY2(head.match(QString::fromLatin1(lines.at(0))).hasMatch(), lines.at(0).constData());
    QCOMPARE(lines.at(1), QByteArray("\r"));
    QCOMPARE(lines.at(2), QByteArray("Text der Meldung\r"));
    QCOMPARE(lines.at(3), QByteArray(76, '-') + '\r');
    QVERIFY(lines.at(4).endsWith("Sub: 1\r"));
}

void tst_GlobalFunctions::errorBoxHasFourLines_data()
{
    QTest::addColumn<QString>("info");
    QTest::newRow("mit Info") << QStringLiteral("Kontakt Meier");
    QTest::newRow("leere Info bleibt vierte Zeile") << QString();
}

void tst_GlobalFunctions::errorBoxHasFourLines()
{
    QFETCH(QString, info);
    TestEnvironment env(false, false);
    MessageRecorder boxes;
    ShowError(QStringLiteral("Objekt nicht gefunden"), QVariant(-2147221233), 802, info);
    QCOMPARE(boxes.count(), 1);
    const MessageRequest box = boxes.last();
    QCOMPARE(box.buttons, int(MsgStop));
    QCOMPARE(box.title, QStringLiteral("Fehler!"));
    const QStringList lines = box.prompt.split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.at(0), QStringLiteral("Bei der Programmausführung ist folgender Fehler aufgetreten:"));
    QCOMPARE(lines.at(1), QStringLiteral("Nr.: 802 / -2147221233, Objekt nicht gefunden"));
    QVERIFY(lines.at(2).startsWith(QStringLiteral("Weitere Infos unter ")));
    QVERIFY(lines.at(2).endsWith(QStringLiteral("/Varnex/Support.htm")));
    QCOMPARE(lines.at(3), info);
    QVERIFY(env.readLog().contains(
        QStringLiteral("Err. No.: -2147221233, Err. Des.: Objekt nicht gefunden, Info: ") + info + QStringLiteral("\r\n")));
    QVERIFY(env.readLog().contains(QStringLiteral("Sub: 802\r\n")));
}

void tst_GlobalFunctions::errorIdOneIsOnlyLogged()
{
    TestEnvironment env(false, false);
    MessageRecorder boxes;
    ShowError(QStringLiteral("Speicher nicht lesbar"), QVariant(5), 1, QStringLiteral("Clear"));
    QCOMPARE(boxes.count(), 0);
    QVERIFY(env.readLog().contains(QStringLiteral("Err. No.: 5, Err. Des.: Speicher nicht lesbar, Info: Clear")));
}

void tst_GlobalFunctions::logIsLatin1_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("Umlaute in Latin-1") << "Größe ändern" << QByteArray("Gr\xf6\xdf" "e \xe4ndern");
    QTest::newRow("Euro") << "5 €" << QByteArray("5 \\u20AC");
    QTest::newRow("Japanisch") << "/Anlagen/日本.txt" << QByteArray("/Anlagen/\\u65E5\\u672C.txt");
    QTest::newRow("jenseits von U+FFFF") << "Bild 😀.png" << QByteArray("Bild \\U0001F600.png");
}

void tst_GlobalFunctions::logIsLatin1()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    TestEnvironment env(false, false);
    WriteErrorLog(text, QStringLiteral("1"));
    QFile f(env.folder() + QStringLiteral("/errorlog.txt"));
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray written = f.readAll();
    QVERIFY2(written.contains("\r\n\r\n" + bytes + "\r\n"), written.constData());
}

void tst_GlobalFunctions::failingLogShowsOneBoxAndNeverLoops()
{
    TestEnvironment env(false, false);
    // A folder named like the log makes every append fail.
    QVERIFY(QDir(env.folder()).mkdir(QStringLiteral("errorlog.txt")));
    MessageRecorder boxes;
    ShowError(QStringLiteral("erster Fehler"), QVariant(1), 802);
    QCOMPARE(boxes.count(), 2); // the log failure once, then the error itself
    QVERIFY(boxes.requests().at(0).prompt.contains(QStringLiteral("Nr.: 202 /")));
    QVERIFY(boxes.requests().at(1).prompt.contains(QStringLiteral("Nr.: 802 /")));
    ShowError(QStringLiteral("zweiter Fehler"), QVariant(1), 802);
    QCOMPARE(boxes.count(), 3); // no second log-failure box
    // Once the log works again, a later failure is reported again.
    QVERIFY(QDir(env.folder()).rmdir(QStringLiteral("errorlog.txt")));
    QVERIFY(WriteErrorLog(QStringLiteral("geht wieder"), QStringLiteral("1")));
    QVERIFY(QFile::remove(env.folder() + QStringLiteral("/errorlog.txt")));
    QVERIFY(QDir(env.folder()).mkdir(QStringLiteral("errorlog.txt")));
    QVERIFY(!WriteErrorLog(QStringLiteral("wieder kaputt"), QStringLiteral("1")));
    QCOMPARE(boxes.count(), 4);
}

void tst_GlobalFunctions::messageWithoutHandlerAnswersDefaultButton_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("answer");
    QTest::newRow("Frage, Ja vorgewählt") << 36 << 6;
    QTest::newRow("Frage, Nein vorgewählt") << 292 << 7;
    QTest::newRow("Hinweis") << 48 << 1;
    QTest::newRow("Stopp") << 16 << 1;
}

void tst_GlobalFunctions::messageWithoutHandlerAnswersDefaultButton()
{
    QFETCH(int, style);
    QFETCH(int, answer);
    MessageHandler previous = SetMessageHandler({});
    QCOMPARE(ShowMessage(QStringLiteral("?"), style, QStringLiteral("Frage?")), answer);
    SetMessageHandler(previous);
}

void tst_GlobalFunctions::programFoldersByLayout_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("executable");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("data");
    // Paths below a temporary root; "~" is the user's data folder.
    QTest::newRow("Build-Ordner") << QStringList{"build/bin/VarnexPub.db", "build/bin/Varnex.html"} << "build/bin"
                                  << "build/bin" << "build/bin";
    QTest::newRow("Installation") << QStringList{"usr/share/varnex/VarnexPub.db", "usr/bin/varnex"} << "usr/bin"
                                  << "~/Nordquell/Varnex" << "usr/share/varnex";
    QTest::newRow("Datenbank neben dem Programm geht vor")
        << QStringList{"opt/bin/VarnexPub.db", "opt/share/varnex/VarnexPub.db"} << "opt/bin" << "opt/bin" << "opt/bin";
    QTest::newRow("share ohne Datenbank") << QStringList{"usr/share/varnex/Varnex.html"} << "usr/bin" << "usr/bin"
                                          << "usr/bin";
}

void tst_GlobalFunctions::programFoldersByLayout()
{
    QFETCH(QStringList, files);
    QFETCH(QString, executable);
    QFETCH(QString, program);
    QFETCH(QString, data);
    QTemporaryDir root;
    const QDir dir(root.path());
    for (const QString &file : files) {
        QVERIFY(dir.mkpath(QFileInfo(file).path()));
        QFile f(dir.filePath(file));
        QVERIFY(f.open(QIODevice::WriteOnly));
    }
    QVERIFY(dir.mkpath(executable));
    const auto resolve = [&](const QString &relative) {
        return relative.startsWith(u'~') ? dir.filePath(QStringLiteral("home") + relative.mid(1)) : dir.filePath(relative);
    };
    const ProgramFolders found = ResolveProgramFolders(dir.filePath(executable), dir.filePath(QStringLiteral("home")));
    QCOMPARE(found.program, resolve(program));
    QCOMPARE(found.data, resolve(data));
}

void tst_GlobalFunctions::referenceDbCopiedOnFirstUse()
{
    TestEnvironment env(false);
    const QDir root(env.folder());
    const QString shipped = root.filePath(QStringLiteral("share/varnex/VarnexPub.db"));
    QVERIFY(root.mkpath(QStringLiteral("share/varnex")));
    QVERIFY(QFile::copy(BuiltReferenceDb(), shipped));
    QVERIFY(QFile::setPermissions(shipped, QFileDevice::ReadOwner));
    const QString user = root.filePath(QStringLiteral("home/Nordquell/Varnex"));
    SetProgramFolder(user, root.filePath(QStringLiteral("share/varnex")));

    // The readers of the tables find the copy.
    QVERIFY(CurrentTelTables().matchCountry(u"4930123", u"00", true).has_value());
    const QString copy = ReferenceDatabaseFile();
    QCOMPARE(copy, user + QStringLiteral("/VarnexPub.db"));
    QVERIFY(QFileInfo(copy).isWritable());
    QCOMPARE(QDir(user).entryList(QDir::Files), QStringList{QStringLiteral("VarnexPub.db")});

    // The user's edits stay: the shipped file is never copied over them.
    {
        ReferenceDbConnection connection(true);
        QSqlQuery query(connection.database());
        QVERIFY(query.exec(QStringLiteral("DELETE FROM T_CountryCodes")));
    }
    NotifyTelTablesChanged();
    QCOMPARE(ReferenceDatabaseFile(), copy);
    QVERIFY(!CurrentTelTables().matchCountry(u"4930123", u"00", true).has_value());
    QCOMPARE(QFileInfo(shipped).size(), QFileInfo(BuiltReferenceDb()).size());
}

QTEST_GUILESS_MAIN(tst_GlobalFunctions)
#include "tst_globalfunctions.moc"
