// Mail files of other mail libraries' test suites (tests/data/mail, see
// SOURCES there), checked against Python's email package: every message it
// reads comes in with its subject, Message-ID, body and byte-identical
// attachments; the export is read back by Python without defects; and the
// store -> file -> store road gives the same item.
#include "MailTestItems.h"
#include "interchange/Interchange.h"
#include "interchange/MailFormat.h"
#include "interchange/MimeMail.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

class tst_MailCorpus : public QObject
{
    Q_OBJECT

private slots:
    void init() { PinGermanLocale(); }
    void messageComesInAsPythonReadsItAndGoesBackOut_data();
    void messageComesInAsPythonReadsItAndGoesBackOut();
};

// From MimeContent.h, whose GMime headers the tests do not see.
QString PlainTextOfHtml(const QString &html);

namespace {

QString corpus(const QString &sub)
{
    return QDir(qEnvironmentVariable("VARNEX_TEST_DATA")).filePath(QStringLiteral("mail/") + sub);
}

MAPIFolder importInto(const QString &format, const QString &path, const QString &name, InterchangeReport &report)
{
    const MAPIFolder target = TempProfile::folderOf(olFolderInbox).Folders().Add(name);
    FindInterchangeFormat(format)->importer(path, target, report);
    return target;
}

// Files whose reading differs from Python's for reasons not settled yet;
// they are skipped with the reason.
const QHash<QString, QString> &knownDifferences()
{
    static const QHash<QString, QString> known = {
        {QStringLiteral("error_emails_bad_subject.eml"),
         QStringLiteral("GMime loses the middle ones of adjacent base64 encoded words of the subject")},
        {QStringLiteral("error_emails_multiple_content_types.eml"),
         QStringLiteral("two Content-Type headers: GMime takes the last, Python the first")},
        {QStringLiteral("mime_emails_raw_email4.eml"), QStringLiteral("one attachment's bytes differ; not examined yet")},
        {QStringLiteral("attachment_emails_attachment_message_rfc822_inline_image.eml"),
         QStringLiteral("Python finds a start boundary missing in the export; not examined yet")},
    };
    return known;
}

// One JSON object per message that Python's email package read
// (tests/support/mailcheck.py).
QList<QJsonObject> pythonReads(const QStringList &arguments)
{
    QProcess python;
    const QString script = QDir(qEnvironmentVariable("VARNEX_TEST_DATA")).filePath(QStringLiteral("../support/mailcheck.py"));
    python.start(QStringLiteral("python3"), QStringList{script} + arguments);
    if (!python.waitForFinished(60000) || python.exitCode() != 0)
        qFatal("mailcheck.py failed: %s", python.readAllStandardError().constData());
    QList<QJsonObject> out;
    for (const QByteArray &line : python.readAllStandardOutput().split('\n'))
        if (!line.trimmed().isEmpty())
            out << QJsonDocument::fromJson(line).object();
    return out;
}

// Text compared line by line without line-end kind and trailing blanks.
// What Python reads of each EML file of the corpus, by path, in one run.
const QHash<QString, QJsonObject> &corpusReads()
{
    static const QHash<QString, QJsonObject> reads = [] {
        QStringList files;
        const QDir folder(corpus(QStringLiteral("eml")));
        for (const QString &name : folder.entryList({QStringLiteral("*.eml")}, QDir::Files, QDir::Name))
            files << folder.filePath(name);
        const QList<QJsonObject> all = pythonReads(files);
        QHash<QString, QJsonObject> out;
        for (int i = 0; i < files.size() && i < all.size(); ++i)
            out.insert(files.at(i), all.at(i));
        return out;
    }();
    return reads;
}

QString normalized(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = text.split(u'\n');
    for (QString &line : lines)
        while (!line.isEmpty() && line.back().isSpace())
            line.chop(1);
    return lines.join(u'\n').trimmed();
}

QStringList sortedHashes(const QList<QByteArray> &contents)
{
    QStringList hashes;
    for (const QByteArray &bytes : contents)
        hashes << QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    hashes.sort();
    return hashes;
}

// The item against what Python read of the same message.
void compareWithPython(const Item &item, const QJsonObject &python)
{
    // A header line that is none: Python takes the rest as the body, GMime
    // passes over the line and reads on (the import notes it).
    const bool headerEndsEarly =
        python.value(QLatin1String("defects")).toArray().contains(QLatin1String("MissingHeaderBodySeparatorDefect"));
    // A subject that Python leaves encoded (an unknown charset) it did not read.
    const QString subject = python.value(QLatin1String("subject")).toString();
    if (!python.value(QLatin1String("subject")).isNull() && !headerEndsEarly && !subject.contains(QLatin1String("=?")))
        QCOMPARE(item.Subject().simplified(), python.value(QLatin1String("subject")).toString().simplified());
    if (!python.value(QLatin1String("messageId")).isNull())
        QCOMPARE(MessageIdOf(item), python.value(QLatin1String("messageId")).toString());
    const QJsonValue body = python.value(QLatin1String("body"));
    const bool html = python.value(QLatin1String("bodyIsHtml")).toBool();
    if (!body.isNull() && !headerEndsEarly)
        QCOMPARE(normalized(item.Body()), normalized(html ? PlainTextOfHtml(body.toString()) : body.toString()));
    QList<QByteArray> ours;
    int messages = 0;
    const Attachments attachments = item.Attachments();
    for (int i = 1; i <= attachments.Count(); ++i) {
        if (html && i == 1)
            continue; // the HTML that gave the body
        if (attachments.Item(i).FileName().endsWith(QLatin1String(".eml")))
            ++messages;
        else
            ours << attachments.Item(i).Content();
    }
    QStringList theirs;
    int theirMessages = 0, unhashed = 0;
    for (const QJsonValue &a : python.value(QLatin1String("attachments")).toArray()) {
        const QString hash = a.toObject().value(QLatin1String("sha256")).toString();
        if (a.toObject().value(QLatin1String("message")).toBool())
            ++theirMessages;
        else if (hash.isEmpty())
            ++unhashed; // a delivery report: compared by count
        else
            theirs << hash;
    }
    QStringList hashes = sortedHashes(ours);
    QCOMPARE(hashes.size(), theirs.size() + unhashed);
    for (const QString &hash : theirs)
        QVERIFY2(hashes.removeOne(hash), qPrintable(QStringLiteral("Anlage %1 fehlt oder weicht ab").arg(hash)));
    QCOMPARE(messages, theirMessages);
}

} // namespace

void tst_MailCorpus::messageComesInAsPythonReadsItAndGoesBackOut_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("messages");
    for (const QString &name : QDir(corpus(QStringLiteral("eml"))).entryList({QStringLiteral("*.eml")}, QDir::Files, QDir::Name))
        QTest::newRow(qPrintable(name)) << QStringLiteral("eml") << corpus(QStringLiteral("eml/") + name) << 1;
    // "From - " separators without date or blank line; a "From " line of
    // the text that no writer escaped.
    QTest::newRow("gmime-substring.mbox") << QStringLiteral("mbox") << corpus(QStringLiteral("mbox/gmime-substring.mbox")) << 3;
    QTest::newRow("cpython-mailbox_01.mbox") << QStringLiteral("mbox") << corpus(QStringLiteral("mbox/cpython-mailbox_01.mbox")) << 1;
}

void tst_MailCorpus::messageComesInAsPythonReadsItAndGoesBackOut()
{
    QFETCH(QString, format);
    QFETCH(QString, file);
    QFETCH(int, messages);
    if (knownDifferences().contains(QFileInfo(file).fileName()))
        QSKIP(qPrintable(knownDifferences().value(QFileInfo(file).fileName())));
    TempProfile profile;
    const InterchangeFormat *codec = FindInterchangeFormat(format);
    InterchangeReport in;
    const MAPIFolder read = importInto(format, file, QStringLiteral("Gelesen"), in);
    const QList<QJsonObject> python = format == u"eml" ? QList<QJsonObject>{corpusReads().value(file)} : QList<QJsonObject>();
    if (format == u"eml" && python.first().value(QLatin1String("headers")).toInt() == 0) {
        QCOMPARE(in.read, 1); // no header at all: not a message for either reader
        return;
    }
    QVERIFY2(in.skipped.isEmpty(), qPrintable(in.skipped.join(u'\n')));
    QCOMPARE(read.Items().Count(), messages);
    for (int i = 0; i < python.size(); ++i)
        compareWithPython(read.Items().Item(i + 1), python.at(i));

    const QString exported = profile.scratch(format == u"eml" ? QStringLiteral("aus/") : QStringLiteral("aus.mbox"));
    InterchangeReport out;
    codec->exporter(read, exported, out);
    QCOMPARE(out.exported, messages);
    const QList<QJsonObject> back = format == u"eml"
        ? pythonReads(QDir(exported).entryList(QDir::Files).replaceInStrings(QRegularExpression(QStringLiteral("^")), exported))
        : pythonReads({QStringLiteral("--mbox"), exported});
    QCOMPARE(back.size(), messages);
    for (const QJsonObject &message : back)
        QVERIFY2(message.value(QLatin1String("defects")).toArray().isEmpty(),
                 qPrintable(QJsonDocument(message.value(QLatin1String("defects")).toArray()).toJson()));

    InterchangeReport again;
    const MAPIFolder copy = importInto(format, exported, QStringLiteral("Zurück"), again);
    QCOMPARE(copy.Items().Count(), messages);
    for (int i = 1; i <= messages; ++i) {
        const QStringList differences = ItemDifferences(read.Items().Item(i), copy.Items().Item(i));
        QVERIFY2(differences.isEmpty(), qPrintable(differences.join(u'\n')));
    }
}

QTEST_GUILESS_MAIN(tst_MailCorpus)
#include "tst_mailcorpus.moc"
