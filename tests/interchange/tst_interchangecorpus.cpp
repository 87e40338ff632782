// Real files of other projects' test suites (corpus/, see SOURCES): nothing
// crashes, every entry an independent parser (python3-vobject,
// python3-icalendar) reads is imported, the export is read by that parser
// with as many entries, and store -> file -> store gives the same items.
#include "InterchangeTestItems.h"
#include "store/StoreTestProfile.h"

#include <QProcess>
#include <QTimeZone>

#include <ctime>

class tst_InterchangeCorpus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }
    void init() { PinGermanLocale(); }
    void corpusFile_data();
    void corpusFile();
};

namespace {

const QString corpus = QStringLiteral(QT_TESTCASE_SOURCEDIR "/interchange/corpus/");

// The entries the independent parser finds; -1 when it cannot read the file.
int independentCount(const QString &path)
{
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), {corpus + QStringLiteral("count_entries.py"), path});
    if (!python.waitForFinished(60000) || python.exitStatus() != QProcess::NormalExit || python.exitCode() != 0)
        return -1;
    return python.readAllStandardOutput().trimmed().toInt();
}

QString identity(const Item &item)
{
    const QString uid = UserText(item, QLatin1String(UidProperty));
    return UidKey(uid.isEmpty() ? item.EntryID() : uid, UserText(item, QLatin1String(OccurrenceProperty)));
}

} // namespace

void tst_InterchangeCorpus::corpusFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("expected"); // "Field=text" of the first item of the target folder
    QTest::addColumn<QString>("gap");          // what is known not to work yet with the file
    QTest::newRow("RFC 6350 Karte") << "vobject-vcard40_full.vcf"
                                    << QStringList{"LastName=Public", "FirstName=John", "MiddleName=Quinlan",
                                                   "BusinessAddressCity=Any Town", "HomeAddressCity=Somewhere",
                                                   "JobTitle=CEO", "Profession=Executive", "CompanyName=Example Corp.",
                                                   "Birthday=15.04.1985", "Categories=BUSINESS, NETWORKING",
                                                   "FileAs=Public, John"}
                                    << QString();
    QTest::newRow("Karte mit GEO") << "vobject-radicale-1587.vcf" << QStringList{"LastName=Family", "Suffix=Suffix"} << QString();
    QTest::newRow("Kategorien mit Komma") << "icalendar-issue_127_categories_with_commas.ics"
                                          << QStringList{"Categories=Meeting" + QString(QChar(0x201A)) + " John, Work"
                                                         + QString(QChar(0x201A)) + " Sarah, Project"}
                                          << QString();
    for (const char *file : {"icalendar-america_new_york.ics", "icalendar-example.ics", "icalendar-issue_165_missing_event.ics",
                             "icalendar-issue_218_bad_tzid.ics", "vobject-ms_tzid.ics", "vobject-radicale-0827.ics",
                             "vobject-ruby_rrule.ics", "vobject-tzid_8bit.ics", "vobject-vtodo.ics"})
        QTest::newRow(file) << file << QStringList{} << QString();
    QTest::newRow("icalendar-issue_722_missing_timezones.ics")
        << "icalendar-issue_722_missing_timezones.ics" << QStringList{}
        << "a TZID without VTIMEZONE that libical does not know costs the entry its DTSTART";
}

void tst_InterchangeCorpus::corpusFile()
{
    QFETCH(QString, file);
    QFETCH(QStringList, expected);
    QFETCH(QString, gap);
    TempProfile profile;
    const bool cards = file.endsWith(u".vcf");
    const QString format = cards ? QStringLiteral("vcard") : QStringLiteral("ical");
    const int folderType = cards ? int(olFolderContacts) : int(olFolderCalendar);
    InterchangeReport in;
    const MAPIFolder target = ImportInto(format, corpus + file, QStringLiteral("Korpus"), in, folderType);
    const int count = independentCount(corpus + file);
    if (!gap.isEmpty())
        QEXPECT_FAIL("", qPrintable(gap), Continue);
    if (count >= 0)
        QVERIFY2(in.imported + in.updated == count, qPrintable(in.summary(true)));
    for (const QString &pair : expected)
        QCOMPARE(target.Items().Item(1).text(pair.section(u'=', 0, 0)), pair.section(u'=', 1));

    QList<MAPIFolder> folders{target};
    if (!cards)
        folders << TempProfile::folderOf(olFolderTasks) << TempProfile::folderOf(olFolderJournal);
    for (const MAPIFolder &folder : std::as_const(folders)) {
        if (folder.Items().Count() == 0)
            continue;
        const QString path = profile.scratch(folder.Name() + (cards ? QStringLiteral(".vcf") : QStringLiteral(".ics")));
        InterchangeReport out;
        FindInterchangeFormat(format)->exporter(folder, path, out);
        QCOMPARE(independentCount(path), folder.Items().Count());
        InterchangeReport back;
        const MAPIFolder copy = ImportInto(format, path, folder.Name() + QStringLiteral(" zurück"), back,
                                           folder == target ? folderType : folder.DefaultFolderType());
        QCOMPARE(back.skipped, QStringList());
        QCOMPARE(copy.Items().Count(), folder.Items().Count());
        QHash<QString, Item> byIdentity;
        for (const Item &item : copy.Items())
            byIdentity.insert(identity(item), item);
        for (const Item &original : folder.Items()) {
            const Item again = byIdentity.value(identity(original));
            QVERIFY2(!again.isNull(), qPrintable(identity(original)));
            const QStringList diffs = ItemDifferences(original, again);
            QVERIFY2(diffs.isEmpty(), qPrintable(file + u'\n' + diffs.join(u'\n')));
        }
    }
}

QTEST_GUILESS_MAIN(tst_InterchangeCorpus)
#include "tst_interchangecorpus.moc"
