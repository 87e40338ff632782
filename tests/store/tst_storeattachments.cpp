// Attachments and user properties of items, and GetUserProperty.
#include "store/StoreTestProfile.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

QString writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(content);
    return path;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Item savedMail()
{
    Item mail = TempProfile::folderOf(olFolderInbox).Items().Add();
    mail.setSubject(QStringLiteral("Mit Anlagen"));
    mail.Save();
    return mail;
}

QStringList displayNames(const Attachments &attachments)
{
    QStringList names;
    for (int i = 1; i <= attachments.Count(); ++i)
        names << attachments.Item(i).DisplayName();
    return names;
}

} // namespace

class tst_StoreAttachments : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void byValueKeepsBytesThroughReopen();
    void byReferenceKeepsPathOnly();
    void positionsOfAdd_data();
    void positionsOfAdd();
    void deleteAndAddAreSavedWithTheItem();
    void hiddenFlagAndTags();
    void missingSourceAndBadTargetFail();
    void userPropertiesByNameIgnoringCase();
    void userPropertyAddTwiceFails();
    void getUserPropertyAddsTextOnce();
    void getUserPropertyFailureShowsError206();
};

void tst_StoreAttachments::byValueKeepsBytesThroughReopen()
{
    TempProfile profile;
    const QByteArray content = QByteArray(102400, 'x') + "Ende";
    const QString source = writeFile(profile.scratch(QStringLiteral("Angebot 2024.pdf")), content);
    Item mail = savedMail();
    Attachment added = mail.Attachments().Add(source);
    QCOMPARE(added.FileName(), QStringLiteral("Angebot 2024.pdf"));
    QCOMPARE(added.DisplayName(), QStringLiteral("Angebot 2024.pdf"));
    QCOMPARE(added.Type(), int(olByValue));
    QCOMPARE(added.Size(), qint64(content.size()));
    QVERIFY(added.GetProperty(PR_ATTACH_PATHNAME).isNull());
    mail.Save();
    QFile::remove(source); // the store keeps its own copy
    const QString entryId = mail.EntryID();
    profile.reopen();
    const Item again = TempProfile::ns().GetItemFromID(entryId);
    QCOMPARE(again.Attachments().Count(), 1);
    const QString target = profile.scratch(QStringLiteral("zurück.pdf"));
    again.Attachments().Item(1).SaveAsFile(target);
    QCOMPARE(readFile(target), content);
}

void tst_StoreAttachments::byReferenceKeepsPathOnly()
{
    TempProfile profile;
    const QString source = writeFile(profile.scratch(QStringLiteral("Bericht.docx")), "Bericht");
    Item mail = savedMail();
    Attachment link = mail.Attachments().Add(source, olByReference, 0, QStringLiteral("Bericht (alt).docx"));
    QCOMPARE(link.Type(), int(olByReference));
    QCOMPARE(link.Size(), qint64(0));
    QCOMPARE(link.DisplayName(), QStringLiteral("Bericht (alt).docx"));
    mail.Save();
    profile.reopen();
    const Attachment again = TempProfile::ns().GetItemFromID(mail.EntryID()).Attachments().Item(1);
    QCOMPARE(again.GetProperty(PR_ATTACH_PATHNAME).toString(), source);
    QCOMPARE(again.FileName(), QStringLiteral("Bericht.docx"));
    // A link may point to a file that has gone; saving it then fails.
    QFile::remove(source);
    QVERIFY_THROWS_EXCEPTION(StoreError, again.SaveAsFile(profile.scratch(QStringLiteral("x.docx"))));
}

void tst_StoreAttachments::positionsOfAdd_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QStringList>("order");
    QTest::newRow("ohne Position ans Ende") << 0 << QStringList{"a", "b", "c", "neu"};
    QTest::newRow("an den Anfang") << 1 << QStringList{"neu", "a", "b", "c"};
    QTest::newRow("in die Mitte") << 2 << QStringList{"a", "neu", "b", "c"};
    QTest::newRow("hinter das Ende") << 9 << QStringList{"a", "b", "c", "neu"};
}

void tst_StoreAttachments::positionsOfAdd()
{
    QFETCH(int, position);
    QFETCH(QStringList, order);
    TempProfile profile;
    Item mail = savedMail();
    for (const char *name : {"a", "b", "c"})
        mail.Attachments().AddData("x", QString::fromLatin1(name));
    mail.Save();
    const QString source = writeFile(profile.scratch(QStringLiteral("neu")), "neu");
    mail.Attachments().Add(source, olByValue, position);
    QCOMPARE(displayNames(mail.Attachments()), order);
    mail.Save();
    profile.reopen();
    QCOMPARE(displayNames(TempProfile::ns().GetItemFromID(mail.EntryID()).Attachments()), order);
}

void tst_StoreAttachments::deleteAndAddAreSavedWithTheItem()
{
    TempProfile profile;
    Item mail = savedMail();
    for (const char *name : {"eins.pdf", "zwei.pdf", "drei.pdf"})
        mail.Attachments().AddData(QByteArray(1000, 'z'), QString::fromLatin1(name));
    mail.Save();
    // Walk backwards as the export does: deleting keeps the lower positions.
    Attachments attachments = mail.Attachments();
    for (int i = attachments.Count(); i >= 1; --i)
        if (attachments.Item(i).FileName() != u"zwei.pdf")
            attachments.Item(i).Delete();
    QCOMPARE(displayNames(attachments), QStringList{"zwei.pdf"});
    // Not saved: a reopen brings all three back.
    const QString entryId = mail.EntryID();
    mail = Item();
    attachments = Attachments();
    profile.reopen();
    Item again = TempProfile::ns().GetItemFromID(entryId);
    QCOMPARE(again.Attachments().Count(), 3);
    again.Attachments().Remove(1);
    again.Save();
    profile.reopen();
    QCOMPARE(displayNames(TempProfile::ns().GetItemFromID(entryId).Attachments()), (QStringList{"zwei.pdf", "drei.pdf"}));
}

void tst_StoreAttachments::hiddenFlagAndTags()
{
    TempProfile profile;
    Item mail = savedMail();
    mail.Attachments().AddData("logo", QStringLiteral("logo.gif")).setHidden(true);
    mail.Attachments().AddData("text", QStringLiteral("brief.txt"));
    mail.Save();
    profile.reopen();
    const Attachments again = TempProfile::ns().GetItemFromID(mail.EntryID()).Attachments();
    QCOMPARE(again.Item(1).GetProperty(PR_ATTACHMENT_HIDDEN).toBool(), true);
    QCOMPARE(again.Item(2).GetProperty(0x7FFE000B).toBool(), false);
    try {
        (void)again.Item(1).GetProperty(0x0037001E);
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QVERIFY(e.description().contains(QStringLiteral("0x0037001E")));
    }
}

void tst_StoreAttachments::missingSourceAndBadTargetFail()
{
    TempProfile profile;
    Item mail = savedMail();
    QVERIFY_THROWS_EXCEPTION(StoreError, mail.Attachments().Add(profile.scratch(QStringLiteral("fehlt.pdf"))));
    QCOMPARE(mail.Attachments().Count(), 0);
    mail.Attachments().AddData("x", QStringLiteral("a.txt"));
    QVERIFY_THROWS_EXCEPTION(StoreError,
                             mail.Attachments().Item(1).SaveAsFile(profile.scratch(QStringLiteral("fehlt/a.txt"))));
    QVERIFY_THROWS_EXCEPTION(StoreError, mail.Attachments().Item(2));
}

void tst_StoreAttachments::userPropertiesByNameIgnoringCase()
{
    TempProfile profile;
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    UserProperties properties = contact.UserProperties();
    UserProperty backup = properties.Add(QStringLiteral("VX Backup Fullname"), olText);
    backup.setValue(QStringLiteral("Müller, Hans"));
    properties.Add(QStringLiteral("Outlook ID (created by Varnex)"), olText).setValue(QStringLiteral("0000ABCD"));
    contact.Save();
    profile.reopen();
    Item again = TempProfile::ns().GetItemFromID(contact.EntryID());
    UserProperties reread = again.UserProperties();
    QCOMPARE(reread.Count(), 2);
    QCOMPARE(reread.Item(1).Name(), QStringLiteral("VX Backup Fullname"));
    UserProperty found = reread.Find(QStringLiteral("vx backup FULLNAME"));
    QVERIFY(!found.isNull());
    QCOMPARE(found.Value().toString(), QStringLiteral("Müller, Hans"));
    QCOMPARE(found.Type(), int(olText));
    QVERIFY(reread.Find(QStringLiteral("VX Backup FirstName")).isNull());
    found.Delete();
    again.Save();
    profile.reopen();
    QCOMPARE(TempProfile::ns().GetItemFromID(contact.EntryID()).UserProperties().Count(), 1);
}

void tst_StoreAttachments::userPropertyAddTwiceFails()
{
    TempProfile profile;
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    contact.UserProperties().Add(QStringLiteral("Feld"), olText);
    try {
        contact.UserProperties().Add(QStringLiteral("FELD"), olText);
        QFAIL("no StoreError");
    } catch (const StoreError &e) {
        QCOMPARE(e.number(), int(StoreErrCollision));
    }
    QCOMPARE(contact.UserProperties().Count(), 1);
}

void tst_StoreAttachments::getUserPropertyAddsTextOnce()
{
    TempProfile profile;
    MessageRecorder boxes;
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    UserProperty first = GetUserProperty(contact, QStringLiteral("VX Backup HomeTelephoneNumber"));
    QVERIFY(!first.isNull());
    first.setValue(QStringLiteral("030 1234"));
    UserProperty second = GetUserProperty(contact, QStringLiteral("vx backup hometelephonenumber"));
    QCOMPARE(second.Value().toString(), QStringLiteral("030 1234"));
    QCOMPARE(contact.UserProperties().Count(), 1);
    QCOMPARE(second.Type(), int(olText));
    QCOMPARE(boxes.count(), 0);
}

void tst_StoreAttachments::getUserPropertyFailureShowsError206()
{
    TempProfile profile;
    TestEnvironment environment(false);
    MessageRecorder boxes;
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    contact.Save();
    StoreFaults::FailItem(contact.EntryID(), StoreFaults::FailRead);
    const UserProperty property = GetUserProperty(contact, QStringLiteral("VX Backup Title"));
    QVERIFY(property.isNull());
    QCOMPARE(boxes.count(), 1);
    QVERIFY(environment.readLog().contains(QStringLiteral("206")));
}

QTEST_GUILESS_MAIN(tst_StoreAttachments)
#include "tst_storeattachments.moc"
