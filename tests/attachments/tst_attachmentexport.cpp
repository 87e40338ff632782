// The attachment export on a real profile: files byte for byte, links in the
// place of the attachments, the size limit, hidden attachments, names that
// need cleaning and numbering, and failures that must not lose anything.
#include "attachments/AttachmentFixture.h"
#include "attachments/AttachmentSaveFunctions.h"

#include <QLocale>

class tst_AttachmentExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void exportsFilesAndLeavesLinks();
    void sizeLimit_data();
    void sizeLimit();
    void whatStaysInTheItem_data();
    void whatStaysInTheItem();
    void namesCleanedAndNumbered();
    void secondRunFindsNothing();
    void withoutExportFolderNothingHappens();
    void missingExportFolderEndsTheRun();
    void saveFailingInTheMiddleLosesNothing_data();
    void saveFailingInTheMiddleLosesNothing();
};

void tst_AttachmentExport::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_AttachmentExport::exportsFilesAndLeavesLinks()
{
    AttachmentFixture f;
    const QByteArray pdf = SampleBytes(70000, 1);
    const QByteArray text = SampleBytes(10, 2);
    const Item mail = f.addMail("Posteingang", "Rechnung", {{"Rechnung.pdf", pdf}, {"Notiz.txt", text}});
    const Item post = f.addMail("Posteingang", "Aushang", {{"Plan.png", SampleBytes(300, 3)}}, "IPM.Post");
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().prompt, QStringLiteral("3 Anlagen gespeichert."));
    QCOMPARE(messages.last().buttons, int(MsgInformation));
    QCOMPARE(messages.last().title, QStringLiteral("Info!"));
    QCOMPARE(f.exportedFiles(), (QStringList{"Notiz.txt", "Plan.png", "Rechnung.pdf"}));
    QCOMPARE(ReadWholeFile(f.exported("Rechnung.pdf")), pdf);
    QCOMPARE(ReadWholeFile(f.exported("Notiz.txt")), text);
    // Walked from the last attachment to the first: the links stand reversed.
    QCOMPARE(DescribeAttachments(f.reread(mail)),
             (QStringList{"4 Notiz.txt -> Notiz.txt", "4 Rechnung.pdf -> Rechnung.pdf"}));
    QCOMPARE(DescribeAttachments(f.reread(post)), (QStringList{"4 Plan.png -> Plan.png"}));
    QVERIFY(f.host.statusTexts.contains(QStringLiteral("Exportiere Anlagen...")));
    QCOMPARE(f.host.progressMaxima, (QList<int>{2}));
    QCOMPARE(f.host.progressValue, 0);
    QVERIFY(!f.host.running);
}

void tst_AttachmentExport::sizeLimit_data()
{
    QTest::addColumn<QString>("attSize");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("exported");

    QTest::newRow("genau AttSize KB") << "100" << 102400 << true;
    QTest::newRow("ein Byte zu klein") << "100" << 102399 << false;
    QTest::newRow("größer") << "100" << 102401 << true;
    QTest::newRow("1 KB, 1023 Bytes") << "1" << 1023 << false;
    QTest::newRow("0 nimmt auch leere Anlagen") << "0" << 0 << true;
    QTest::newRow("keine Zahl zählt als 0") << "viel" << 1 << true;
    QTest::newRow("leer zählt als 0") << "" << 1 << true;
    QTest::newRow("Leerzeichen um die Zahl") << " 2 " << 2047 << false;
}

void tst_AttachmentExport::sizeLimit()
{
    QFETCH(QString, attSize);
    QFETCH(int, size);
    QFETCH(bool, exported);

    AttachmentFixture f;
    SaveSetting(QStringLiteral("AttSize"), attSize);
    const Item mail = f.addMail("Posteingang", "Groß", {{"Daten.bin", SampleBytes(size, 7)}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();

    QCOMPARE(messages.last().prompt, QStringLiteral("%1 Anlagen gespeichert.").arg(exported ? 1 : 0));
    QCOMPARE(f.exportedFiles().size(), exported ? 1 : 0);
    QCOMPARE(f.reread(mail).Attachments().Item(1).Type(), exported ? int(olByReference) : int(olByValue));
}

void tst_AttachmentExport::whatStaysInTheItem_data()
{
    QTest::addColumn<QList<AttachmentSample>>("attachments");
    QTest::addColumn<QStringList>("expected");

    const QByteArray big = SampleBytes(2048, 11);
    const QByteArray small = SampleBytes(100, 12);
    QTest::newRow("versteckte Anlage bleibt")
        << QList<AttachmentSample>{{"Logo.png", big, true}, {"Vertrag.pdf", big}}
        << QStringList{"1 Logo.png", "4 Vertrag.pdf -> Vertrag.pdf"};
    QTest::newRow("fünf Anlagen, zwei groß genug")
        << QList<AttachmentSample>{{"a.txt", small}, {"B.pdf", big}, {"c.txt", small}, {"D.zip", big}, {"e.txt", small}}
        << QStringList{"1 a.txt", "1 c.txt", "1 e.txt", "4 D.zip -> D.zip", "4 B.pdf -> B.pdf"};
}

void tst_AttachmentExport::whatStaysInTheItem()
{
    QFETCH(QList<AttachmentSample>, attachments);
    QFETCH(QStringList, expected);

    AttachmentFixture f;
    SaveSetting(QStringLiteral("AttSize"), QStringLiteral("1"));
    const Item mail = f.addMail("Posteingang", "Gemischt", attachments);
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();

    QCOMPARE(DescribeAttachments(f.reread(mail)), expected);
}

void tst_AttachmentExport::namesCleanedAndNumbered()
{
    AttachmentFixture f;
    WriteWholeFile(f.exported("Bericht.pdf"), "schon da");
    const QByteArray first = SampleBytes(10, 21);
    const QByteArray second = SampleBytes(11, 22);
    const QByteArray report = SampleBytes(12, 23);
    const Item mail = f.addMail("Posteingang", "Namen",
                                {{"?*", first}, {"Bericht.pdf", report}, {"a:b|c.txt", SampleBytes(5, 24)},
                                 {"  <>  ", second}, {QString(130, u'ä') + ".txt", SampleBytes(6, 25)}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();

    // 130 "ä" are 260 bytes: the name is cut to what the file system takes,
    // less the room for a number.
    const QString shortened = QString(121, u'ä') + ".txt";
    QCOMPARE(f.exportedFiles(),
             (QStringList{"Bericht(1).pdf", "Bericht.pdf", "abc.txt", "ohneName", "ohneName(1)", shortened}));
    QCOMPARE(ReadWholeFile(f.exported("Bericht.pdf")), QByteArray("schon da"));
    QCOMPARE(ReadWholeFile(f.exported("Bericht(1).pdf")), report);
    // The last attachment is named first.
    QCOMPARE(ReadWholeFile(f.exported("ohneName")), second);
    QCOMPARE(ReadWholeFile(f.exported("ohneName(1)")), first);
    // The links keep the names as they were.
    QCOMPARE(DescribeAttachments(f.reread(mail)),
             (QStringList{"4 " + QString(130, u'ä') + ".txt -> " + shortened, "4   <>   -> ohneName",
                          "4 a:b|c.txt -> abc.txt", "4 Bericht.pdf -> Bericht(1).pdf", "4 ?* -> ohneName(1)"}));
}

void tst_AttachmentExport::secondRunFindsNothing()
{
    AttachmentFixture f;
    const Item mail = f.addMail("Posteingang", "Zweimal", {{"Liste.csv", SampleBytes(50, 31)}});
    // A contact that lies in the mail folder is passed over.
    Item contact = SelectionFixture::folder("Posteingang").Items().Add(int(olContact));
    contact.set(QStringLiteral("FullName"), QStringLiteral("Max Muster"));
    contact.Attachments().AddData(SampleBytes(40, 32), QStringLiteral("Foto.jpg"));
    contact.Save();
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();
    SaveAttachments();

    QCOMPARE(messages.requests().at(0).prompt, QStringLiteral("1 Anlagen gespeichert."));
    QCOMPARE(messages.requests().at(1).prompt, QStringLiteral("0 Anlagen gespeichert."));
    QCOMPARE(f.exportedFiles(), (QStringList{"Liste.csv"}));
    QCOMPARE(DescribeAttachments(f.reread(mail)), (QStringList{"4 Liste.csv -> Liste.csv"}));
    QCOMPARE(DescribeAttachments(f.reread(contact)), (QStringList{"1 Foto.jpg"}));
}

void tst_AttachmentExport::withoutExportFolderNothingHappens()
{
    AttachmentFixture f;
    SaveSetting(QStringLiteral("AttPath"), QString());
    const Item mail = f.addMail("Posteingang", "Bleibt", {{"x.txt", "x"}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().prompt,
             QStringLiteral("Kein Dateiordner gewählt. Bitte wählen Sie in den Optionen zuerst einen Dateiordner "
                            "für diese Funktion aus."));
    QCOMPARE(messages.last().buttons, int(MsgStop));
    QCOMPARE(messages.last().title, QStringLiteral("Info!"));
    QCOMPARE(f.host.runningChanges, 0);
    QCOMPARE(DescribeAttachments(f.reread(mail)), (QStringList{"1 x.txt"}));
}

void tst_AttachmentExport::missingExportFolderEndsTheRun()
{
    AttachmentFixture f;
    SaveSetting(QStringLiteral("AttPath"), f.exported("gibt es nicht"));
    const Item mail = f.addMail("Posteingang", "Bleibt", {{"x.txt", "x"}, {"y.txt", "y"}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    MessageRecorder messages;

    SaveAttachments();

    QCOMPARE(messages.count(), 1); // the error, no closing message
    QCOMPARE(messages.last().buttons, int(MsgStop));
    QVERIFY(f.environment.readLog().contains(QStringLiteral("Sub: 1501")));
    QVERIFY(!f.host.running);
    QCOMPARE(DescribeAttachments(f.reread(mail)), (QStringList{"1 x.txt", "1 y.txt"}));
}

void tst_AttachmentExport::saveFailingInTheMiddleLosesNothing_data()
{
    QTest::addColumn<int>("savesBeforeFailure");
    QTest::addColumn<QStringList>("inStore");
    QTest::addColumn<QString>("spare"); // the file written whose save failed

    // One save per attachment, from the last: it removes the attachment and
    // appends its link together.
    QTest::newRow("erste Speicherung") << 0 << QStringList{"1 Teil1.bin", "1 Teil2.bin"} << "Teil2.bin";
    QTest::newRow("zweite Speicherung") << 1 << QStringList{"1 Teil1.bin", "4 Teil2.bin -> Teil2.bin"} << "Teil1.bin";
}

void tst_AttachmentExport::saveFailingInTheMiddleLosesNothing()
{
    QFETCH(int, savesBeforeFailure);
    QFETCH(QStringList, inStore);
    QFETCH(QString, spare);

    AttachmentFixture f;
    const QByteArray part1 = SampleBytes(4000, 41);
    const QByteArray part2 = SampleBytes(5000, 42);
    const Item mail = f.addMail("Posteingang", "Bruch", {{"Teil1.bin", part1}, {"Teil2.bin", part2}});
    f.readTree();
    QVERIFY(f.select({"Posteingang"}));
    StoreFaults::FailItem(mail.EntryID(), StoreFaults::FailSave, 1, savesBeforeFailure);
    MessageRecorder messages;

    SaveAttachments();

    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.last().buttons, int(MsgStop));
    QVERIFY(!f.host.running);
    QCOMPARE(f.host.statusText, QStringLiteral("Bereit"));
    StoreFaults::Reset();
    QCOMPARE(DescribeAttachments(f.reread(mail)), inStore);
    // Every attachment is in the item or in the file its link names; the
    // file of the failed save is a spare copy, and the log names it.
    const QString log = f.environment.readLog();
    QVERIFY(log.contains(QStringLiteral("Sub: 1501")));
    QCOMPARE(ReadWholeFile(f.exported("Teil2.bin")), part2);
    if (savesBeforeFailure == 1)
        QCOMPARE(ReadWholeFile(f.exported("Teil1.bin")), part1);
    QVERIFY2(log.contains(f.exported(spare)), qPrintable(log));
    QCOMPARE(f.exportedFiles().size(), savesBeforeFailure + 1);
}

QTEST_MAIN(tst_AttachmentExport)
#include "tst_attachmentexport.moc"
