// The text field with a remembered list, driven through its widgets: the
// list file (format, damage, missing folder, a folder that cannot be
// written), auto-add, choosing and removing entries, number and folder
// modes, the checked look, and the binding to settings by name.
#include "controls/ListFile.h"
#include "controls/SettingsBinding.h"
#include "controls/sevText.h"
#include "frame/RegistryFunctions.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

class tst_sevText : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void entriesSurviveTheFile_data();
    void entriesSurviveTheFile();
    void damagedFileIsReadAsFarAsItGoes_data();
    void damagedFileIsReadAsFarAsItGoes();
    void autoAddCreatesFolderAndFile();
    void autoAddPutsNewestFirst_data();
    void autoAddPutsNewestFirst();
    void closingTheFormRemembers();
    void chooseFromList();
    void deleteRemovesEntry();
    void twoFieldsShareOneFile();
    void unwritableFolderIsLoggedOnce();
    void numberMode_data();
    void numberMode();
    void folderMode();
    void checkedLookGoesWithEdit();
    void bindsToSettingsByName();

private:
    QString prefsFile(const QString &name) const { return ListFilePath(name); }
    void writeRaw(const QString &name, const QByteArray &bytes);
    void typeAndEnter(sevText &field, const QString &text);

    TestEnvironment *m_env = nullptr;
    MessageRecorder *m_boxes = nullptr;
};

void tst_sevText::init()
{
    m_env = new TestEnvironment(false, false);
    CopyDefaultSettings(*m_env);
    m_boxes = new MessageRecorder;
}

void tst_sevText::cleanup()
{
    delete m_boxes;
    delete m_env;
}

void tst_sevText::writeRaw(const QString &name, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(prefsFile(name)).absolutePath());
    QFile file(prefsFile(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

void tst_sevText::typeAndEnter(sevText &field, const QString &text)
{
    field.editor()->clear();
    QTest::keyClicks(field.editor(), text);
    QTest::keyClick(field.editor(), Qt::Key_Return);
}

void tst_sevText::entriesSurviveTheFile_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<int>("kept"); // the first entries that fit into what is read
    QTest::newRow("Trennzeichen mit Blanks") << QStringList{QStringLiteral(" ("), QStringLiteral(") "), QStringLiteral(" ")} << 3;
    QTest::newRow("Umlaute") << QStringList{QStringLiteral("Österreich"), QStringLiteral("Großbritannien")} << 2;
    QTest::newRow("Backslash und Zeilenumbruch")
        << QStringList{QStringLiteral("C:\\Anlagen\\neu"), QStringLiteral("zwei\nZeilen"), QStringLiteral("\\n wörtlich")} << 3;
    QTest::newRow("Tabulator") << QStringList{QStringLiteral("a\tb")} << 1;
    QTest::newRow("Steuerzeichen")
        << QStringList{QStringLiteral("Esc\x1b"), QStringLiteral("Klingel\a"), QString(QChar(0)) + QStringLiteral("Null"), QStringLiteral("Entf\x7f"),
                       QStringLiteral("\\u0041 wörtlich")} << 5;
    QTest::newRow("halbe Surrogatpaare")
        << QStringList{QString(QChar(0xD800)) + QStringLiteral("hoch"), QStringLiteral("tief") + QString(QChar(0xDC00)), QStringLiteral("ganz \U0001F600")} << 3;
    QStringList longOnes;
    for (int i = 0; i < MaxListEntries; ++i)
        longOnes << QString(2000, QChar(u'a' + i % 26)) + QString::number(i);
    QTest::newRow("50 lange Einträge") << longOnes << int((MaxListFileBytes - 13) / 2003);
}

void tst_sevText::entriesSurviveTheFile()
{
    QFETCH(QStringList, entries);
    QFETCH(int, kept);
    QVERIFY(WriteListFile(prefsFile(QStringLiteral("x.dat")), entries));
    sevText field;
    field.setList(QStringLiteral("x.dat"), QStringLiteral("Namen"));
    QCOMPARE(field.entries(), entries.mid(0, kept));
    QFile file(prefsFile(QStringLiteral("x.dat")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.size() <= MaxListFileBytes);
    QCOMPARE(file.readLine(), QByteArray("VarnexList 1\n"));
    QCOMPARE(file.readAll().count('\n'), kept);
}

void tst_sevText::damagedFileIsReadAsFarAsItGoes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("Kopfzeile fehlt") << QByteArray("eins\nzwei\n") << QStringList{};
    QTest::newRow("ungültiges UTF-8 in Zeile 3")
        << QByteArray("VarnexList 1\neins\nzw\xff\xfei\ndrei\n") << QStringList{QStringLiteral("eins")};
    QTest::newRow("Nullbyte") << QByteArray("VarnexList 1\neins\nzw") + QByteArray(1, '\0') + QByteArray("ei\n") << QStringList{QStringLiteral("eins")};
    QTest::newRow("unbekanntes Escape") << QByteArray("VarnexList 1\neins\n\\q\ndrei\n") << QStringList{QStringLiteral("eins")};
    QTest::newRow("Escape am Zeilenende") << QByteArray("VarnexList 1\neins\nzwei\\\n") << QStringList{QStringLiteral("eins")};
    QTest::newRow("abgeschnitten ohne Zeilenende")
        << QByteArray("VarnexList 1\neins\nzw") << QStringList{QStringLiteral("eins"), QStringLiteral("zw")};
    QTest::newRow("CR LF und Leerzeilen")
        << QByteArray("VarnexList 1\r\neins\r\n\r\nzwei\r\n") << QStringList{QStringLiteral("eins"), QStringLiteral("zwei")};
    QTest::newRow("doppelte Einträge") << QByteArray("VarnexList 1\na\nb\na\n") << QStringList{QStringLiteral("a"), QStringLiteral("b")};
    QTest::newRow("leere Datei") << QByteArray() << QStringList{};
    QByteArray many("VarnexList 1\n");
    QStringList first;
    for (int i = 0; i < 80; ++i) {
        many += QByteArray::number(i) + '\n';
        if (i < MaxListEntries)
            first << QString::number(i);
    }
    QTest::newRow("mehr als 50 Einträge") << many << first;
    QByteArray huge("VarnexList 1\nkurz\n");
    huge += QByteArray(MaxListFileBytes * 4, 'x') + '\n';
    QTest::newRow("riesige Zeile") << huge << QStringList{QStringLiteral("kurz")};
}

void tst_sevText::damagedFileIsReadAsFarAsItGoes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, expected);
    writeRaw(QStringLiteral("Tel.dat"), bytes);
    sevText field;
    field.setList(QStringLiteral("Tel.dat"), QStringLiteral("Namen"));
    QCOMPARE(field.entries(), expected);
    field.showList();
    QVERIFY(field.openList());
    QCOMPARE(field.openList()->count(), qMax<qsizetype>(expected.size(), 1));
    QCOMPARE(m_boxes->count(), 0);
    QTest::keyClick(field.openList(), Qt::Key_Escape);
    // The next entry rewrites the file from what could be read.
    typeAndEnter(field, QStringLiteral("030 1234"));
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("Tel.dat"))).entries,
             WithEntryOnTop(expected, QStringLiteral("030 1234")));
    QVERIFY(!ReadListFile(prefsFile(QStringLiteral("Tel.dat"))).damaged);
}

void tst_sevText::autoAddCreatesFolderAndFile()
{
    QVERIFY(!QDir(m_env->folder() + QStringLiteral("/Preferences")).exists());
    sevText field;
    field.setList(QStringLiteral("Tel.dat"), QStringLiteral("Namen"));
    QVERIFY(field.listButton()->isVisibleTo(&field));
    typeAndEnter(field, QStringLiteral("0221/123-45"));
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("Tel.dat"))).entries, QStringList{QStringLiteral("0221/123-45")});
}

void tst_sevText::autoAddPutsNewestFirst_data()
{
    QTest::addColumn<bool>("autoAdd");
    QTest::addColumn<QStringList>("typed");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("neuer Eintrag oben") << true << QStringList{"a", "b", "c"} << QStringList{"c", "b", "a"};
    QTest::newRow("wiederholter Eintrag rückt nach oben") << true << QStringList{"a", "b", "a"} << QStringList{"a", "b"};
    QTest::newRow("Blank ist ein Eintrag") << true << QStringList{" ", "-"} << QStringList{"-", " "};
    QTest::newRow("ohne Auto-Add bleibt die Liste leer") << false << QStringList{"a", "b"} << QStringList{};
}

void tst_sevText::autoAddPutsNewestFirst()
{
    QFETCH(bool, autoAdd);
    QFETCH(QStringList, typed);
    QFETCH(QStringList, expected);
    sevText field;
    field.setList(QStringLiteral("HyphenOut.dat"), QStringLiteral("Trennzeichen"), autoAdd);
    for (const QString &text : typed)
        typeAndEnter(field, text);
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("HyphenOut.dat"))).entries, expected);
}

void tst_sevText::closingTheFormRemembers()
{
    QWidget form;
    auto *field = new sevText(&form);
    field->setList(QStringLiteral("Fullname.dat"), QStringLiteral("Namen"));
    field->setText(QStringLiteral("vom Programm gesetzt"));
    form.show();
    form.hide();
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("Fullname.dat"))).entries, QStringList{});
    form.show();
    QTest::keyClicks(field->editor(), QStringLiteral(" neu"));
    form.hide();
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("Fullname.dat"))).entries,
             QStringList{QStringLiteral("vom Programm gesetzt neu")});
}

void tst_sevText::chooseFromList()
{
    WriteListFile(prefsFile(QStringLiteral("IDDPOut.dat")), {QStringLiteral("+"), QStringLiteral("00"), QStringLiteral("+ ")});
    sevText field;
    field.setList(QStringLiteral("IDDPOut.dat"), QStringLiteral("Trennzeichen"));
    field.setText(QStringLiteral("+"));
    field.show();
    QSignalSpy changed(&field, &sevText::textChanged);
    QSignalSpy chosen(&field, &sevText::entryChosen);
    QTest::mouseClick(field.listButton(), Qt::LeftButton);
    QListWidget *list = field.openList();
    QVERIFY(list);
    QCOMPARE(list->parentWidget()->findChild<QLabel *>(QStringLiteral("lblListTitle"))->text(), QStringLiteral("Trennzeichen"));
    QCOMPARE(list->currentRow(), 0);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(field.text(), QStringLiteral("+ "));
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(changed.count(), 1);
    QVERIFY(!field.openList());
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("IDDPOut.dat"))).entries,
             (QStringList{QStringLiteral("+ "), QStringLiteral("+"), QStringLiteral("00")}));

    // F4 in the field opens the list again; Escape closes it unchanged.
    QTest::keyClick(field.editor(), Qt::Key_F4);
    QVERIFY(field.openList());
    QTest::keyClick(field.openList(), Qt::Key_Escape);
    QVERIFY(!field.openList());
    QCOMPARE(field.text(), QStringLiteral("+ "));
}

void tst_sevText::deleteRemovesEntry()
{
    WriteListFile(prefsFile(QStringLiteral("Tel.dat")), {QStringLiteral("eins"), QStringLiteral("zwei")});
    sevText field;
    field.setList(QStringLiteral("Tel.dat"), QStringLiteral("Namen"));
    field.show();
    field.showList();
    QTest::keyClick(field.openList(), Qt::Key_Delete);
    QCOMPARE(field.openList()->count(), 1);
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("Tel.dat"))).entries, QStringList{QStringLiteral("zwei")});
    QCOMPARE(field.text(), QString());
}

void tst_sevText::twoFieldsShareOneFile()
{
    sevText first;
    sevText second;
    first.setList(QStringLiteral("Namen.dat"), QStringLiteral("Namen"));
    second.setList(QStringLiteral("Namen.dat"), QStringLiteral("Namen"));
    typeAndEnter(first, QStringLiteral("Anna"));
    typeAndEnter(second, QStringLiteral("Bert"));
    QCOMPARE(ReadListFile(prefsFile(QStringLiteral("Namen.dat"))).entries,
             (QStringList{QStringLiteral("Bert"), QStringLiteral("Anna")}));
}

void tst_sevText::unwritableFolderIsLoggedOnce()
{
    // A file where the folder should be: the folder cannot be created.
    QFile blocker(m_env->folder() + QStringLiteral("/Preferences"));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    sevText field;
    field.setList(QStringLiteral("Tel.dat"), QStringLiteral("Namen"));
    typeAndEnter(field, QStringLiteral("eins"));
    typeAndEnter(field, QStringLiteral("zwei"));
    QCOMPARE(field.entries(), (QStringList{QStringLiteral("zwei"), QStringLiteral("eins")}));
    QCOMPARE(m_boxes->count(), 0);
    QCOMPARE(m_env->readLog().count(QStringLiteral("Die Liste konnte nicht gespeichert werden.")), 1);
}

void tst_sevText::numberMode_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Ziffern bleiben") << 3600 << "120" << "120";
    QTest::newRow("Buchstaben werden nicht angenommen") << 3600 << "1a2b" << "12";
    QTest::newRow("über dem Maximum wird gekürzt") << 3600 << "5000" << "3600";
    QTest::newRow("mehr Stellen als das Maximum") << 3600 << "123456" << "1234";
    QTest::newRow("Maximum selbst") << 999999 << "999999" << "999999";
    QTest::newRow("leer bleibt leer") << 3600 << "" << "";
}

void tst_sevText::numberMode()
{
    QFETCH(int, maximum);
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    sevText field;
    field.setNumberMode(maximum);
    typeAndEnter(field, typed);
    QCOMPARE(field.text(), expected);
}

void tst_sevText::folderMode()
{
    sevText field;
    field.setFolderMode();
    QVERIFY(field.folderButton()->isVisibleTo(&field));
    QString offered;
    QString answer = QStringLiteral("/home/anna/Anlagen");
    const auto previous = sevText::setFolderChooser([&](QWidget *, const QString &current) {
        offered = current;
        return answer;
    });
    field.setText(QStringLiteral("/tmp"));
    QSignalSpy changed(&field, &sevText::textChanged);
    QTest::mouseClick(field.folderButton(), Qt::LeftButton);
    QCOMPARE(offered, QStringLiteral("/tmp"));
    QCOMPARE(field.text(), QStringLiteral("/home/anna/Anlagen"));
    QCOMPARE(changed.count(), 1);
    answer.clear(); // cancelled
    QTest::mouseClick(field.folderButton(), Qt::LeftButton);
    QCOMPARE(field.text(), QStringLiteral("/home/anna/Anlagen"));
    sevText::setFolderChooser(previous);
}

void tst_sevText::checkedLookGoesWithEdit()
{
    sevText field;
    field.setText(QStringLiteral("Anna Muster"));
    field.setChecked(true);
    QVERIFY(field.editor()->font().bold());
    QTest::keyClick(field.editor(), Qt::Key_Backspace);
    QVERIFY(!field.isChecked());
    QVERIFY(!field.editor()->font().bold());
}

void tst_sevText::bindsToSettingsByName()
{
    QWidget form;
    auto *combo = new sevText(&form);
    combo->setObjectName(QStringLiteral("cmbVorwahlTrennOut1"));
    auto *text = new sevText(&form);
    text->setObjectName(QStringLiteral("txtAttPath"));
    SaveSetting(QStringLiteral("AttPath"), QStringLiteral("/srv/anlagen"));
    LoadBoundSettings(&form);
    QCOMPARE(combo->text(), QStringLiteral(" ("));
    QCOMPARE(text->text(), QStringLiteral("/srv/anlagen"));
    combo->setText(QStringLiteral(" / "));
    SaveBoundSettings(&form);
    QCOMPARE(GetSetting(QStringLiteral("VorwahlTrennOut1"), QString()), QStringLiteral(" / "));
}

QTEST_MAIN(tst_sevText)
#include "tst_sevtext.moc"
