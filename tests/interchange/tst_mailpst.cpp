// PST import. No program in reach writes PST files: the mapping is tested on
// items built the way libpst hands them over (pst_item, freed by libpst
// itself), the whole road on a small PST file that the test writes
// (PstTestFile.h) and libpst reads; files libpst must refuse are skipped and
// never changed.
#include "MailTestItems.h"
#include "PstTestFile.h"
#include "interchange/Interchange.h"
#include "interchange/PstFormat.h"
#include "interchange/PstItems.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QTimeZone>

#include <cstring>
#include <functional>

class tst_MailPst : public QObject
{
    Q_OBJECT

private slots:
    void init() { PinGermanLocale(); }
    void pstItemBecomesStoreItem_data();
    void pstItemBecomesStoreItem();
    void itemsThatCannotComeOverAreSkipped();
    void folderKindFollowsContainerClass_data();
    void folderKindFollowsContainerClass();
    void unreadableFileIsSkippedAndLeftAlone_data();
    void unreadableFileIsSkippedAndLeftAlone();
    void pstFileComesInWithItsFolderTree();
};

namespace {

// 14.03.2025 09:30:00 UTC as a FILETIME.
constexpr quint64 MarchFourteenth = 133864182000000000ULL;

pst_string text(const char *value, bool utf8 = true)
{
    return pst_string{utf8 ? 1 : 0, strdup(value)};
}

FILETIME *fileTime(quint64 ticks)
{
    auto *when = static_cast<FILETIME *>(malloc(sizeof(FILETIME)));
    when->dwLowDateTime = uint32_t(ticks & 0xFFFFFFFFu);
    when->dwHighDateTime = uint32_t(ticks >> 32);
    return when;
}

template<typename T>
T *zeroed()
{
    return static_cast<T *>(calloc(1, sizeof(T)));
}

struct PstItemFree {
    void operator()(pst_item *item) const { pst_freeItem(item); }
};
using OwnedPstItem = std::unique_ptr<pst_item, PstItemFree>;

QString local(quint64 ticks)
{
    const qint64 seconds = qint64(ticks / 10000000) - Q_INT64_C(11644473600);
    const QDateTime when = QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::utc()).toLocalTime();
    return QDateTime(when.date(), when.time()).toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
}

void addAttachment(pst_item *item, const char *name, const QByteArray &data, bool inlinePicture)
{
    auto *a = zeroed<pst_item_attach>();
    a->filename2 = text(name);
    a->method = PST_ATTACH_BY_VALUE;
    a->data.size = size_t(data.size());
    a->data.data = static_cast<char *>(malloc(size_t(data.size()) + 1));
    memcpy(a->data.data, data.constData(), size_t(data.size()));
    if (inlinePicture)
        a->content_id = text("bild1@pst");
    a->next = item->attach;
    item->attach = a;
}

// The Monday whose occurrence the series of the rows deletes.
const QDate DeletedMonday(2025, 3, 17);

// A series as the recurrence data of an appointment holds it: every second
// week on Monday and Wednesday, ten times, one occurrence deleted.
QByteArray weeklyRule()
{
    QByteArray rule;
    const auto add16 = [&rule](quint16 v) { rule += QByteArray(reinterpret_cast<const char *>(&v), 2); };
    const auto add32 = [&rule](quint32 v) { rule += QByteArray(reinterpret_cast<const char *>(&v), 4); };
    add16(0x3004); add16(0x3004); add16(0x200B); add16(1); add16(0); // versions, weekly, week pattern, calendar
    add32(0); add32(2); add32(0); add32(0x02 | 0x08);                 // first date, every 2 weeks, sliding, MO WE
    add32(0x2022); add32(10); add32(1);                               // ends after 10, week starts Monday
    add32(1); add32(quint32(QDate(1601, 1, 1).daysTo(DeletedMonday) * 24 * 60)); // deleted
    add32(0);                                                         // changed
    add32(0); add32(0);
    return rule;
}

// The items of the rows, built by kind.
pst_item *buildItem(const QString &kind)
{
    pst_item *item = zeroed<pst_item>();
    item->type = PST_TYPE_NOTE;
    item->create_date = fileTime(MarchFourteenth - 36000000000ULL);
    if (kind == u"Mail" || kind == u"Post" || kind == u"Besprechung" || kind == u"HTML") {
        item->ascii_type = strdup(kind == u"Post" ? "IPM.Post" : kind == u"Besprechung" ? "IPM.Schedule.Meeting.Request" : "IPM.Note");
        item->subject = text("Angebot für Jörg");
        item->email = zeroed<pst_item_email>();
        item->email->outlook_sender_name = text("Hans Müller");
        item->email->sender_address = text("hans@example.de");
        item->email->sentto_address = text("Jörg Weiß; Anna Berg");
        item->email->cc_address = text("Chef");
        item->email->sent_date = fileTime(MarchFourteenth);
        item->email->arrival_date = fileTime(MarchFourteenth + 600000000ULL);
        item->email->importance = 2;
        item->email->sensitivity = 1;
        item->flags = kind == u"Post" ? PST_FLAG_READ : 0;
        if (kind == u"HTML")
            item->email->htmlbody = text("<p>Guten Tag,</p><p>anbei &amp; gr&uuml;&szlig;e</p>");
        else
            item->body = text("Guten Tag,\r\nanbei das Angebot.");
        if (kind == u"Mail") {
            addAttachment(item, "", QByteArray(), false); // an empty entry of the table: no attachment
            addAttachment(item, "logo.png", QByteArray("\x89PNG", 4), true);
            addAttachment(item, "Angebot März.pdf", QByteArray("%PDF-1.4 Inhalt"), false);
        }
    } else if (kind == u"Kontakt") {
        item->type = PST_TYPE_CONTACT;
        item->ascii_type = strdup("IPM.Contact");
        item->file_as = text("Weiß, Jörg");
        item->contact = zeroed<pst_item_contact>();
        item->contact->first_name = text("Jörg");
        item->contact->surname = text("Weiß");
        item->contact->display_name_prefix = text("Dr.");
        item->contact->fullname = text("Dr. Jörg Weiß");
        item->contact->company_name = text("Müller & Söhne");
        item->contact->business_street = text("Hauptstraße 5");
        item->contact->business_postal_code = text("50667");
        item->contact->business_city = text("Köln");
        item->contact->business_phone = text("0221 12345");
        item->contact->address1 = text("joerg@example.de");
        item->contact->birthday = fileTime(MarchFourteenth);
    } else if (kind == u"Termin") {
        item->type = PST_TYPE_APPOINTMENT;
        item->ascii_type = strdup("IPM.Appointment");
        item->subject = text("Zahnarzt");
        item->appointment = zeroed<pst_item_appointment>();
        item->appointment->start = fileTime(MarchFourteenth);
        item->appointment->end = fileTime(MarchFourteenth + 45ULL * 60 * 10000000);
        item->appointment->location = text("Praxis Dr. Lang");
        item->appointment->showas = PST_FREEBUSY_OUT_OF_OFFICE;
        item->appointment->alarm = 1;
        item->appointment->alarm_minutes = 30;
        item->appointment->is_recurring = 1;
        const QByteArray rule = weeklyRule();
        item->appointment->recurrence_data.size = size_t(rule.size());
        item->appointment->recurrence_data.data = static_cast<char *>(malloc(size_t(rule.size())));
        memcpy(item->appointment->recurrence_data.data, rule.constData(), size_t(rule.size()));
    } else if (kind == u"Journal") {
        item->type = PST_TYPE_JOURNAL;
        item->ascii_type = strdup("IPM.Activity");
        item->subject = text("Anruf Müller");
        item->journal = zeroed<pst_item_journal>();
        item->journal->start = fileTime(MarchFourteenth);
        item->journal->end = fileTime(MarchFourteenth + 20ULL * 60 * 10000000);
        item->journal->type = text("Telefonanruf");
    } else if (kind == u"Notiz") {
        item->type = PST_TYPE_STICKYNOTE;
        item->ascii_type = strdup("IPM.StickyNote");
        item->body = text("Milch kaufen\r\nund Brot");
    } else if (kind == u"Aufgabe") {
        item->type = PST_TYPE_TASK;
        item->ascii_type = strdup("IPM.Task");
        item->subject = text("Steuererkl\xe4rung", false);
        item->message_codepage = 1252;
    }
    return item;
}

} // namespace

void tst_MailPst::pstItemBecomesStoreItem_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("expected"); // "Property=text form"
    QTest::addColumn<QString>("attachments");
    const QString sent = local(MarchFourteenth);
    const QDateTime start = QDateTime::fromString(sent, QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    const QString deletedUtc =
        QDateTime(DeletedMonday, start.time()).toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QTest::newRow("Mail mit Anlagen")
        << QStringLiteral("Mail")
        << QStringList{QStringLiteral("MessageClass=IPM.Note"), QStringLiteral("Subject=Angebot für Jörg"),
                       QStringLiteral("SenderName=Hans Müller"), QStringLiteral("SenderEmailAddress=hans@example.de"),
                       QStringLiteral("To=Jörg Weiß; Anna Berg"), QStringLiteral("CC=Chef"), QStringLiteral("SentOn=") + sent,
                       QStringLiteral("ReceivedTime=") + local(MarchFourteenth + 600000000ULL),
                       QStringLiteral("Importance=2"), QStringLiteral("Sensitivity=1"), QStringLiteral("UnRead=Wahr"),
                       QStringLiteral("Body=Guten Tag,\r\nanbei das Angebot."),
                       QStringLiteral("CreationTime=") + local(MarchFourteenth - 36000000000ULL)}
        << QStringLiteral("Angebot März.pdf 15 sichtbar + logo.png 4 versteckt");
    QTest::newRow("nur HTML-Text")
        << QStringLiteral("HTML") << QStringList{QStringLiteral("Body=Guten Tag,\r\nanbei & grüße")}
        << QStringLiteral("Nachricht.html 52 versteckt");
    QTest::newRow("Bereitstellung, gelesen")
        << QStringLiteral("Post")
        << QStringList{QStringLiteral("MessageClass=IPM.Post"), QStringLiteral("SenderName=Hans Müller"),
                       QStringLiteral("UnRead=Falsch"), QStringLiteral("SentOn=") + sent}
        << QString();
    QTest::newRow("Besprechungsanfrage wird Mail")
        << QStringLiteral("Besprechung") << QStringList{QStringLiteral("MessageClass=IPM.Note"), QStringLiteral("To=Jörg Weiß; Anna Berg")}
        << QString();
    QTest::newRow("Kontakt mit Namen und Adresse")
        << QStringLiteral("Kontakt")
        << QStringList{QStringLiteral("FullName=Dr. Jörg Weiß"), QStringLiteral("Title=Dr."), QStringLiteral("FirstName=Jörg"),
                       QStringLiteral("LastName=Weiß"), QStringLiteral("FileAs=Weiß, Jörg"),
                       QStringLiteral("CompanyName=Müller & Söhne"), QStringLiteral("BusinessAddressCity=Köln"),
                       QStringLiteral("BusinessAddress=Hauptstraße 5\r\n50667 Köln"),
                       QStringLiteral("BusinessTelephoneNumber=0221 12345"), QStringLiteral("Email1Address=joerg@example.de"),
                       QStringLiteral("Birthday=") + sent}
        << QString();
    QTest::newRow("Termin als Serie")
        << QStringLiteral("Termin")
        << QStringList{QStringLiteral("Subject=Zahnarzt"), QStringLiteral("Start=") + sent, QStringLiteral("Duration=45"),
                       QStringLiteral("Location=Praxis Dr. Lang"), QStringLiteral("BusyStatus=3"),
                       QStringLiteral("ReminderSet=Wahr"), QStringLiteral("ReminderMinutesBeforeStart=30"),
                       QStringLiteral("IsRecurring=Wahr"), QStringLiteral("AllDayEvent=Falsch"),
                       QStringLiteral("VX Serie=RRULE:FREQ=WEEKLY;COUNT=10;INTERVAL=2;BYDAY=MO,WE\r\nEXDATE:") + deletedUtc}
        << QString();
    QTest::newRow("Journaleintrag")
        << QStringLiteral("Journal")
        << QStringList{QStringLiteral("MessageClass=IPM.Activity"), QStringLiteral("Start=") + sent,
                       QStringLiteral("Duration=20"), QStringLiteral("Type=Telefonanruf")}
        << QString();
    QTest::newRow("Notiz: Betreff aus der ersten Zeile")
        << QStringLiteral("Notiz") << QStringList{QStringLiteral("Subject=Milch kaufen"), QStringLiteral("Body=Milch kaufen\r\nund Brot")}
        << QString();
    QTest::newRow("Aufgabe mit Text in Windows-1252")
        << QStringLiteral("Aufgabe") << QStringList{QStringLiteral("MessageClass=IPM.Task"), QStringLiteral("Subject=Steuererklärung")}
        << QString();
}

void tst_MailPst::pstItemBecomesStoreItem()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, expected);
    QFETCH(QString, attachments);
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    OwnedPstItem pst(buildItem(kind));
    QStringList notes;
    InterchangeReport report;
    ImportEntry(report, QStringLiteral("archiv.pst"), [&] { return ItemFromPst(pst.get(), inbox, nullptr, &notes); });
    QVERIFY2(report.skipped.isEmpty(), qPrintable(report.skipped.join(u'\n')));
    QVERIFY(notes.isEmpty());
    QCOMPARE(inbox.Items().Count(), 1);
    profile.reopen(); // what was saved, read back from the file
    const Item item = TempProfile::folderOf(olFolderInbox).Items().Item(1);
    CheckItem(item, expected, attachments);
}

void tst_MailPst::itemsThatCannotComeOverAreSkipped()
{
    TempProfile profile;
    const MAPIFolder contacts = TempProfile::folderOf(olFolderContacts);
    OwnedPstItem list(zeroed<pst_item>());
    list->ascii_type = strdup("IPM.DistList");
    list->subject = text("Team");
    OwnedPstItem embedded(buildItem(QStringLiteral("Mail")));
    embedded->attach->method = PST_ATTACH_EMBEDDED;
    InterchangeReport report;
    QStringList notes;
    ImportEntry(report, QStringLiteral("archiv.pst, Element 1"), [&] { return ItemFromPst(list.get(), contacts, nullptr, &notes); });
    ImportEntry(report, QStringLiteral("archiv.pst, Element 2"), [&] { return ItemFromPst(embedded.get(), contacts, nullptr, &notes); });
    QCOMPARE(report.read, 2);
    QCOMPARE(report.imported, 1);
    QCOMPARE(report.skipped.size(), 1);
    QVERIFY2(report.skipped.first().startsWith(QStringLiteral("archiv.pst, Element 1: Verteilerlisten")), qPrintable(report.skipped.first()));
    QCOMPARE(notes.size(), 1);
    QVERIFY2(notes.first().contains(QStringLiteral("Angebot März.pdf")), qPrintable(notes.first()));
    QCOMPARE(contacts.Items().Item(1).Attachments().Count(), 1); // the readable one
}

void tst_MailPst::folderKindFollowsContainerClass_data()
{
    QTest::addColumn<QString>("containerClass");
    QTest::addColumn<int>("folderType");
    QTest::newRow("Kalender") << "IPF.Appointment" << int(olFolderCalendar);
    QTest::newRow("Kontakte, Unterklasse") << "IPF.Contact.Kunden" << int(olFolderContacts);
    QTest::newRow("Aufgaben") << "IPF.Task" << int(olFolderTasks);
    QTest::newRow("Notizen") << "IPF.StickyNote" << int(olFolderNotes);
    QTest::newRow("Journal") << "ipf.journal" << int(olFolderJournal);
    QTest::newRow("Mail") << "IPF.Note" << int(olFolderInbox);
    QTest::newRow("ohne Klasse") << "" << int(olFolderInbox);
    QTest::newRow("fremde Klasse") << "IPF.Configuration" << int(olFolderInbox);
}

void tst_MailPst::folderKindFollowsContainerClass()
{
    QFETCH(QString, containerClass);
    QFETCH(int, folderType);
    QCOMPARE(FolderTypeOfContainerClass(containerClass), folderType);
}

void tst_MailPst::unreadableFileIsSkippedAndLeftAlone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QByteArray noise(5000, 0);
    for (int i = 0; i < noise.size(); ++i)
        noise[i] = char((i * 7919 + 3) % 253);
    QTest::newRow("keine PST-Datei") << noise << QStringLiteral("keine lesbare PST-Datei");
    QTest::newRow("leere Datei") << QByteArray() << QStringLiteral("keine lesbare PST-Datei");
    QTest::newRow("Kopf einer PST-Datei, dann Rauschen")
        << QByteArray("!BDN\0\0\0\0SM\x17\0", 12) + noise << QStringLiteral("keinen Ordner der persönlichen Ordner");
    QTest::newRow("Kopf einer alten PST-Datei, dann Nullen")
        << QByteArray("!BDN\0\0\0\0SM\x0e\0", 12) + QByteArray(4000, '\0') << QStringLiteral("keinen Ordner der persönlichen Ordner");
}

void tst_MailPst::unreadableFileIsSkippedAndLeftAlone()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    TempProfile profile;
    const MAPIFolder inbox = TempProfile::folderOf(olFolderInbox);
    const QString path = profile.scratch(QStringLiteral("Archiv 2019.pst"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner)); // a write would fail loudly
    const QDateTime modified = QFileInfo(path).lastModified();

    InterchangeReport report;
    ImportPst(path, inbox, report);
    QCOMPARE(report.imported, 0);
    QCOMPARE(report.skipped.size(), 1);
    QVERIFY2(report.skipped.first().startsWith(QStringLiteral("Archiv 2019.pst: ")), qPrintable(report.skipped.first()));
    QVERIFY2(report.skipped.first().contains(reason), qPrintable(report.skipped.first()));
    QCOMPARE(inbox.Folders().Count(), 0);
    QCOMPARE(QFileInfo(path).lastModified(), modified);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
}

// A PST file of a store, a top folder, two kinds of folders, a nested one
// and four items, written by PstTestFile and read by libpst for real.
void tst_MailPst::pstFileComesInWithItsFolderTree()
{
    using P = PstTestFile;
    PstTestFile pst;
    const QDateTime sent(QDate(2025, 3, 14), QTime(9, 30));
    const quint32 top = pst.add(0, {P::text(0x3001, QStringLiteral("Oberste Ebene")), P::int32(0x3602, 0)}, true);
    pst.addStore({P::text(0x3001, QStringLiteral("Persönliche Ordner")), PstTestFile::entryIdOf(0x35E0, top)});
    const quint32 inbox = pst.add(top, {P::text(0x3001, QStringLiteral("Posteingang")), P::int32(0x3602, 1),
                                        P::text(0x3613, QStringLiteral("IPF.Note"))}, true);
    const quint32 project = pst.add(inbox, {P::text(0x3001, QStringLiteral("Projekt Umbau")), P::int32(0x3602, 1),
                                            P::text(0x3613, QStringLiteral("IPF.Note"))}, true);
    const quint32 contacts = pst.add(top, {P::text(0x3001, QStringLiteral("Kontakte")), P::int32(0x3602, 1),
                                           P::text(0x3613, QStringLiteral("IPF.Contact"))}, true);
    const quint32 calendar = pst.add(top, {P::text(0x3001, QStringLiteral("Kalender")), P::int32(0x3602, 1),
                                           P::text(0x3613, QStringLiteral("IPF.Appointment"))}, true);
    pst.add(inbox, {P::text(0x001A, QStringLiteral("IPM.Note")), P::text(0x0037, QStringLiteral("Angebot für Jörg")),
                    P::text(0x1000, QStringLiteral("Guten Tag,\r\nanbei das Angebot.")),
                    P::text(0x0042, QStringLiteral("Hans Müller")), P::text(0x0065, QStringLiteral("hans@example.de")),
                    P::text(0x0E04, QStringLiteral("Jörg Weiß")), P::time(0x0039, sent),
                    P::time(0x0E06, sent.addSecs(300)), P::int32(0x0E07, PST_FLAG_READ), P::int32(0x0017, 2)},
            false);
    // Outlook's own hidden items: a configuration message and an associated one.
    pst.add(inbox, {P::text(0x001A, QStringLiteral("IPM.Configuration.Autocomplete")), P::text(0x0037, QStringLiteral("x"))}, false);
    pst.add(inbox, {P::text(0x001A, QStringLiteral("IPM.Note.Ansicht")), P::int32(0x0E07, PST_FLAG_ASSOCIATED)}, false);
    pst.add(project, {P::text(0x001A, QStringLiteral("IPM.Note")), P::text(0x0037, QStringLiteral("Baustelle")),
                      P::text(0x1000, QStringLiteral("Termin am Montag."))},
            false);
    pst.addDamaged(project, QByteArray("\x10\x00\xEC\xBC\x20\x00\x00\x00kaputt und zu kurz", 26));
    pst.add(contacts, {P::text(0x001A, QStringLiteral("IPM.Contact")), P::text(0x3001, QStringLiteral("Weiß, Jörg")),
                       P::text(0x3A06, QStringLiteral("Jörg")), P::text(0x3A11, QStringLiteral("Weiß")),
                       P::text(0x3A16, QStringLiteral("Müller & Söhne")), P::text(0x3A08, QStringLiteral("0221 12345"))},
            false);
    pst.add(calendar, {P::text(0x001A, QStringLiteral("IPM.Appointment")), P::text(0x0037, QStringLiteral("Zahnarzt")),
                       P::time(0x820D, sent), P::time(0x820E, sent.addSecs(45 * 60)),
                       P::text(0x8208, QStringLiteral("Praxis Dr. Lang"))},
            false);
    TempProfile profile;
    const QString path = profile.scratch(QStringLiteral("Archiv.pst"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(pst.bytes());
    out.close();
    const QByteArray before = pst.bytes();
    MAPIFolder target = TempProfile::folderOf(olFolderInbox).Folders().Add(QStringLiteral("Aus PST"));
    InterchangeReport report;
    ImportPst(path, target, report);
    QCOMPARE(report.read, 5);
    QCOMPARE(report.imported, 4);
    QCOMPARE(report.skipped.size(), 1);
    QVERIFY2(report.skipped.first().startsWith(QStringLiteral("Archiv.pst, Ordner \"/Posteingang/Projekt Umbau\", Element 2: ")),
             qPrintable(report.skipped.first()));
    QCOMPARE(report.notes, QStringList{QStringLiteral("Archiv.pst: 2 verborgene Einträge (Ansichten, Regeln, Einstellungen) übergangen.")});

    QStringList tree;
    std::function<void(const MAPIFolder &, const QString &)> list = [&](const MAPIFolder &folder, const QString &path) {
        for (const MAPIFolder &sub : folder.Folders()) {
            tree << QStringLiteral("%1%2 [%3] %4").arg(path, sub.Name(), sub.ContainerClass()).arg(sub.Items().Count());
            list(sub, path + sub.Name() + u'/');
        }
    };
    list(target, QString());
    QCOMPARE(tree, QStringList({QStringLiteral("Posteingang [IPF.Note] 1"),
                                QStringLiteral("Posteingang/Projekt Umbau [IPF.Note] 1"),
                                QStringLiteral("Kontakte [IPF.Contact] 1"), QStringLiteral("Kalender [IPF.Appointment] 1")}));

    const auto check = [](const Item &item, const QStringList &expected) {
        for (const QString &line : expected) {
            const QString name = line.section(u'=', 0, 0), want = line.section(u'=', 1);
            const QString got = name == u"MessageClass" ? item.MessageClass() : item.text(name);
            QVERIFY2(got == want, qPrintable(QStringLiteral("%1: [%2], erwartet [%3]").arg(name, got, want)));
        }
    };
    const QString sentText = sent.toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    check(target.Folders().Item(1).Items().Item(1),
          {QStringLiteral("MessageClass=IPM.Note"), QStringLiteral("Subject=Angebot für Jörg"),
           QStringLiteral("Body=Guten Tag,\r\nanbei das Angebot."), QStringLiteral("SenderName=Hans Müller"),
           QStringLiteral("SenderEmailAddress=hans@example.de"), QStringLiteral("To=Jörg Weiß"),
           QStringLiteral("SentOn=") + sentText,
           QStringLiteral("ReceivedTime=") + sent.addSecs(300).toString(QStringLiteral("dd.MM.yyyy hh:mm:ss")),
           QStringLiteral("UnRead=Falsch"), QStringLiteral("Importance=2")});
    check(target.Folders().Item(1).Folders().Item(1).Items().Item(1),
          {QStringLiteral("Subject=Baustelle"), QStringLiteral("UnRead=Wahr")});
    check(target.Folders().Item(2).Items().Item(1),
          {QStringLiteral("MessageClass=IPM.Contact"), QStringLiteral("FullName=Jörg Weiß"), QStringLiteral("FileAs=Weiß, Jörg"),
           QStringLiteral("CompanyName=Müller & Söhne"), QStringLiteral("BusinessTelephoneNumber=0221 12345")});
    check(target.Folders().Item(3).Items().Item(1),
          {QStringLiteral("MessageClass=IPM.Appointment"), QStringLiteral("Subject=Zahnarzt"),
           QStringLiteral("Start=") + sentText, QStringLiteral("Duration=45"), QStringLiteral("Location=Praxis Dr. Lang")});

    QVERIFY(out.open(QIODevice::ReadOnly));
    QCOMPARE(out.readAll(), before); // read, never written

    InterchangeReport again; // a second import fills the same folders
    ImportPst(path, target, again);
    QCOMPARE(again.imported, 4);
    QCOMPARE(target.Folders().Count(), 3);
    QCOMPARE(target.Folders().Item(1).Items().Count(), 2);
}

QTEST_GUILESS_MAIN(tst_MailPst)
#include "tst_mailpst.moc"
