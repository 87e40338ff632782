#include "PstItems.h"

#include "GMimeSupport.h"
#include "ItemFields.h"
#include "MailHeaders.h"
#include "MimeContent.h"

#include <QTimeZone>
#include <QtEndian>

#include <memory>

namespace {

using ContactText = pst_string pst_item_contact::*;

struct ContactField {
    const char *property;
    ContactText member;
};

// Contact fields that are one text each; names and addresses go through
// the composite rules below.
const ContactField s_contactFields[] = {
    {"CompanyName", &pst_item_contact::company_name},
    {"Department", &pst_item_contact::department},
    {"JobTitle", &pst_item_contact::job_title},
    {"NickName", &pst_item_contact::nickname},
    {"Initials", &pst_item_contact::initials},
    {"Profession", &pst_item_contact::profession},
    {"OfficeLocation", &pst_item_contact::office_loc},
    {"ComputerNetworkName", &pst_item_contact::computer_name},
    {"CustomerID", &pst_item_contact::customer_id},
    {"GovernmentIDNumber", &pst_item_contact::gov_id},
    {"OrganizationalIDNumber", &pst_item_contact::org_id},
    {"Hobby", &pst_item_contact::hobbies},
    {"Spouse", &pst_item_contact::spouse_name},
    {"AssistantName", &pst_item_contact::assistant_name},
    {"ManagerName", &pst_item_contact::manager_name},
    {"Account", &pst_item_contact::account_name},
    {"BillingInformation", &pst_item_contact::billing_information},
    {"Mileage", &pst_item_contact::mileage},
    {"FTPSite", &pst_item_contact::ftp_site},
    {"PersonalHomePage", &pst_item_contact::personal_homepage},
    {"BusinessHomePage", &pst_item_contact::business_homepage},
    {"InternetFreeBusyAddress", &pst_item_contact::free_busy_address},
    {"Email1Address", &pst_item_contact::address1},
    {"Email1AddressType", &pst_item_contact::address1_transport},
    {"Email1DisplayName", &pst_item_contact::address1_desc},
    {"Email2Address", &pst_item_contact::address2},
    {"Email2AddressType", &pst_item_contact::address2_transport},
    {"Email2DisplayName", &pst_item_contact::address2_desc},
    {"Email3Address", &pst_item_contact::address3},
    {"Email3AddressType", &pst_item_contact::address3_transport},
    {"Email3DisplayName", &pst_item_contact::address3_desc},
    {"BusinessTelephoneNumber", &pst_item_contact::business_phone},
    {"Business2TelephoneNumber", &pst_item_contact::business_phone2},
    {"HomeTelephoneNumber", &pst_item_contact::home_phone},
    {"Home2TelephoneNumber", &pst_item_contact::home_phone2},
    {"MobileTelephoneNumber", &pst_item_contact::mobile_phone},
    {"AssistantTelephoneNumber", &pst_item_contact::assistant_phone},
    {"CallbackTelephoneNumber", &pst_item_contact::callback_phone},
    {"CarTelephoneNumber", &pst_item_contact::car_phone},
    {"CompanyMainTelephoneNumber", &pst_item_contact::company_main_phone},
    {"ISDNNumber", &pst_item_contact::isdn_phone},
    {"OtherTelephoneNumber", &pst_item_contact::other_phone},
    {"PagerNumber", &pst_item_contact::pager_phone},
    {"PrimaryTelephoneNumber", &pst_item_contact::primary_phone},
    {"RadioTelephoneNumber", &pst_item_contact::radio_phone},
    {"TelexNumber", &pst_item_contact::telex},
    {"TTYTDDTelephoneNumber", &pst_item_contact::ttytdd_phone},
    {"BusinessFaxNumber", &pst_item_contact::business_fax},
    {"HomeFaxNumber", &pst_item_contact::home_fax},
};

struct AddressMembers {
    const char *prefix;
    ContactText whole, street, poBox, postalCode, city, state, country;
};
const AddressMembers s_addresses[] = {
    {"BusinessAddress", &pst_item_contact::business_address, &pst_item_contact::business_street,
     &pst_item_contact::business_po_box, &pst_item_contact::business_postal_code, &pst_item_contact::business_city,
     &pst_item_contact::business_state, &pst_item_contact::business_country},
    {"HomeAddress", &pst_item_contact::home_address, &pst_item_contact::home_street, &pst_item_contact::home_po_box,
     &pst_item_contact::home_postal_code, &pst_item_contact::home_city, &pst_item_contact::home_state,
     &pst_item_contact::home_country},
    {"OtherAddress", &pst_item_contact::other_address, &pst_item_contact::other_street, &pst_item_contact::other_po_box,
     &pst_item_contact::other_postal_code, &pst_item_contact::other_city, &pst_item_contact::other_state,
     &pst_item_contact::other_country},
};

struct TextOf {
    pst_item *item;
    QString operator()(const pst_string &text) const { return PstText(item, text); }
};

void setText(Item &target, const char *property, const QString &value)
{
    if (!value.isEmpty())
        target.set(QLatin1String(property), value);
}

void setDate(Item &target, const char *property, const FILETIME *when)
{
    const QDateTime date = DateOfFileTime(when);
    if (date.isValid())
        target.set(QLatin1String(property), date);
}

void fillContact(Item &target, pst_item *item, const TextOf &text)
{
    pst_item_contact *c = item->contact;
    const NameParts parts{text(c->display_name_prefix), text(c->first_name), text(c->middle_name), text(c->surname),
                          text(c->suffix)};
    SetNameFields(target, parts, text(c->fullname));
    setText(target, "FileAs", text(item->file_as));
    for (const ContactField &field : s_contactFields)
        setText(target, field.property, text(c->*field.member));
    for (const AddressMembers &a : s_addresses) {
        const AddressParts address{text(c->*a.street), text(c->*a.poBox), text(c->*a.postalCode),
                                   text(c->*a.city),   text(c->*a.state), text(c->*a.country)};
        SetAddressFields(target, QLatin1String(a.prefix), address, text(c->*a.whole));
    }
    setDate(target, "Birthday", c->birthday);
    setDate(target, "Anniversary", c->wedding_anniversary);
}

void fillAppointment(Item &target, pst_item *item, const TextOf &text)
{
    const pst_item_appointment *a = item->appointment;
    setDate(target, "Start", a->start);
    setDate(target, "End", a->end);
    setText(target, "Location", text(a->location));
    target.set(QStringLiteral("AllDayEvent"), a->all_day == 1);
    if (a->showas >= olFree && a->showas <= olOutOfOffice)
        target.set(QStringLiteral("BusyStatus"), int(a->showas));
    target.set(QStringLiteral("ReminderSet"), a->alarm == 1);
    if (a->alarm == 1)
        target.set(QStringLiteral("ReminderMinutesBeforeStart"), int(a->alarm_minutes));
    target.set(QStringLiteral("IsRecurring"), a->is_recurring == 1);
}

// --- the rule of a series ---

quint32 le32(const QByteArray &bytes, qsizetype at)
{
    return at + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + at) : 0;
}

// The dates (minutes since 1601, local midnight) of the occurrences that
// the series deletes, and of those among them that were changed, after
// the pattern in the recurrence data (0x8216): the fields that follow the
// end type and count are the first day of the week, then the two lists.
struct SeriesExceptions {
    QList<quint32> deleted, modified;
};

SeriesExceptions seriesExceptions(const pst_item_appointment *a)
{
    static const int patternFields[] = {3, 4, 4, 5}; // per pattern type: first date, period, sliding, own
    SeriesExceptions out;
    const QByteArray data(a->recurrence_data.data, qsizetype(a->recurrence_data.size));
    const quint32 patternType = le32(data, 6) & 0xFFFF;
    if (data.size() < 10 || patternType > 3)
        return out;
    qsizetype at = 10 + 4 * patternFields[patternType] + 4 + 4 + 4;
    const quint32 deleted = le32(data, at);
    at += 4;
    for (quint32 i = 0; i < deleted && at + 4 <= data.size() && i < 100000; ++i, at += 4)
        out.deleted << le32(data, at);
    const quint32 modified = le32(data, at);
    at += 4;
    for (quint32 i = 0; i < modified && at + 4 <= data.size() && i < 100000; ++i, at += 4)
        out.modified << le32(data, at);
    return out;
}

QString utcStamp(const QDateTime &local)
{
    return local.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
}

// The lines of "VX Serie" (RRULE, EXDATE; times in UTC), as an iCalendar
// import keeps a series; "" when the rule cannot be read.
QString seriesLines(pst_item_appointment *a, QStringList *notes)
{
    if (!a->recurrence_data.data || a->recurrence_data.size < 22)
        return {};
    std::unique_ptr<pst_recurrence, void (*)(pst_recurrence *)> rule(pst_convert_recurrence(a), pst_free_recurrence);
    static const char *const frequencies[] = {"DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
    static const char *const days[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    if (!rule || rule->type > 3)
        return {};
    QString line = QStringLiteral("RRULE:FREQ=") + QLatin1String(frequencies[rule->type]);
    const QDateTime start = DateOfFileTime(a->start);
    if (rule->termination == 0) {
        const QDateTime end = DateOfFileTime(a->recurrence_end);
        if (end.isValid()) // the whole last day: its occurrence starts before its end
            line += QStringLiteral(";UNTIL=") + utcStamp(QDateTime(end.date(), QTime(23, 59, 59)));
    } else if (rule->termination == 1 && rule->count > 0) {
        line += QStringLiteral(";COUNT=%1").arg(rule->count);
    }
    if (rule->interval > 1)
        line += QStringLiteral(";INTERVAL=%1").arg(rule->interval);
    QStringList byDay;
    for (int day = 0; day < 7; ++day)
        if (rule->bydaymask & (1u << day))
            byDay << QLatin1String(days[day]);
    if (!byDay.isEmpty())
        line += QStringLiteral(";BYDAY=") + byDay.join(u',');
    if (rule->dayofmonth > 0 && rule->dayofmonth <= 31)
        line += QStringLiteral(";BYMONTHDAY=%1").arg(rule->dayofmonth);
    if (rule->monthofyear >= 1 && rule->monthofyear <= 12)
        line += QStringLiteral(";BYMONTH=%1").arg(rule->monthofyear);
    if (rule->position >= 1 && rule->position <= 5 && !byDay.isEmpty())
        line += QStringLiteral(";BYSETPOS=%1").arg(rule->position == 5 ? -1 : int(rule->position));
    QStringList lines{line};
    // Deleted occurrences leave the series; changed ones are deleted and
    // stand as items of their own, which libpst does not read: they stay
    // at their first time, with a note.
    const SeriesExceptions exceptions = seriesExceptions(a);
    const QDate epoch(1601, 1, 1);
    for (const quint32 minutes : exceptions.deleted) {
        if (exceptions.modified.contains(minutes) || !start.isValid())
            continue;
        const QDate day = epoch.addDays(minutes / (24 * 60));
        lines << QStringLiteral("EXDATE:") + utcStamp(QDateTime(day, start.time()));
    }
    if (!exceptions.modified.isEmpty())
        notes->append(QStringLiteral("%1 geänderte Termine der Serie liest libpst nicht; sie stehen zu ihrer ersten Zeit in der Serie.")
                          .arg(exceptions.modified.size()));
    return lines.join(QStringLiteral("\r\n"));
}

void fillJournal(Item &target, pst_item *item, const TextOf &text)
{
    const pst_item_journal *j = item->journal;
    setDate(target, "Start", j->start);
    setDate(target, "End", j->end);
    setText(target, "Type", text(j->type));
}

// The Message-ID and the other transport headers, from the internet
// headers the item kept, else from the fields of their own.
void keepTransportHeaders(Item &target, pst_item *item, const TextOf &text)
{
    const pst_item_email *e = item->email;
    QString kept;
    const QString headers = text(e->header);
    if (!headers.isEmpty()) {
        EnsureGMime();
        QByteArray bytes = headers.toUtf8();
        bytes.replace("\r\n", "\n");
        const GPtr<GMimeStream> stream = MemoryStreamOf(bytes + "\n\n");
        GPtr<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
        GPtr<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
        if (message)
            kept = TransportHeadersOf(message.get());
    }
    if (kept.isEmpty()) {
        QStringList lines;
        const QString id = text(e->messageid).trimmed(), reply = text(e->in_reply_to).trimmed();
        if (!id.isEmpty())
            lines << QStringLiteral("Message-ID: ") + id;
        if (!reply.isEmpty())
            lines << QStringLiteral("In-Reply-To: ") + reply;
        kept = lines.join(QStringLiteral("\r\n"));
    }
    if (!kept.isEmpty())
        SetUserText(target, QLatin1String(TransportHeadersProperty), kept);
}

void fillMail(Item &target, pst_item *item, const TextOf &text)
{
    const pst_item_email *e = item->email;
    QString sender = text(e->outlook_sender_name);
    setText(target, "SenderName", sender.isEmpty() ? text(e->outlook_sender_name2) : sender);
    const QString address = text(e->sender_address);
    setText(target, "SenderEmailAddress", address.isEmpty() ? text(e->sender2_address) : address);
    if (target.Class() == olMail) {
        setText(target, "To", text(e->sentto_address));
        setText(target, "CC", text(e->cc_address));
        setText(target, "BCC", text(e->bcc_address));
    }
    setDate(target, "SentOn", e->sent_date);
    setDate(target, "ReceivedTime", e->arrival_date ? e->arrival_date : e->sent_date);
    keepTransportHeaders(target, item, text);
}

void addAttachments(Item &target, pst_item *item, pst_file *file, const TextOf &text, QStringList *notes)
{
    int number = 0;
    for (pst_item_attach *a = item->attach; a; a = a->next) {
        ++number;
        QString name = text(a->filename2);
        if (name.isEmpty())
            name = text(a->filename1);
        const bool named = !name.isEmpty();
        if (!named)
            name = QStringLiteral("Anlage%1").arg(number);
        if (a->method == PST_ATTACH_EMBEDDED || a->method == PST_ATTACH_OLE) {
            notes->append(QStringLiteral("Die eingebettete Anlage %1 (\"%2\") liest libpst nicht; sie fehlt.").arg(number).arg(name));
            continue;
        }
        QByteArray data;
        if (a->data.data) {
            data = QByteArray(a->data.data, qsizetype(a->data.size));
        } else if (file) {
            pst_binary bytes = pst_attach_to_mem(file, a);
            data = QByteArray(bytes.data, qsizetype(bytes.size));
            free(bytes.data);
        }
        // libpst lists entries of the attachment table that hold nothing
        // (no name, no bytes): no attachment of the mail.
        if (!named && data.isEmpty())
            continue;
        Attachment added = target.Attachments().AddData(data, name);
        if (a->content_id.str) // a picture of the HTML text
            added.setHidden(true);
    }
}

} // namespace

QString PstText(pst_item *item, const pst_string &text)
{
    if (!text.str)
        return {};
    if (text.is_utf8)
        return QString::fromUtf8(text.str);
    char charset[30];
    return DecodeCharset(QByteArray(text.str), QString::fromLatin1(pst_default_charset(item, sizeof charset, charset)));
}

QDateTime DateOfFileTime(const FILETIME *when)
{
    if (!when)
        return {};
    const quint64 ticks = (quint64(when->dwHighDateTime) << 32) | when->dwLowDateTime;
    if (ticks == 0)
        return {};
    const qint64 unixSeconds = qint64(ticks / 10000000) - Q_INT64_C(11644473600);
    const QDateTime local = QDateTime::fromSecsSinceEpoch(unixSeconds);
    return QDateTime(local.date(), local.time());
}

QString StoreClassOfPst(const pst_item *item, QString *why)
{
    const QString own = QString::fromLatin1(item->ascii_type ? item->ascii_type : "");
    const int ownClass = ClassOfMessageClass(own);
    if (ownClass == olDistributionList) {
        *why = QStringLiteral("Verteilerlisten übernimmt der PST-Import nicht (libpst liest ihre Mitglieder nicht).");
        return {};
    }
    if (ownClass != 0)
        return own;
    switch (item->type) {
    case PST_TYPE_APPOINTMENT: return QLatin1String(MessageClass::Appointment);
    case PST_TYPE_CONTACT: return QLatin1String(MessageClass::Contact);
    case PST_TYPE_JOURNAL: return QLatin1String(MessageClass::Activity);
    case PST_TYPE_STICKYNOTE: return QLatin1String(MessageClass::StickyNote);
    case PST_TYPE_TASK: return QLatin1String(MessageClass::Task);
    default: return QLatin1String(MessageClass::Note);
    }
}

int FolderTypeOfContainerClass(const QString &containerClass)
{
    const QString base = containerClass.section(u'.', 0, 1);
    if (base.compare(QLatin1String(ContainerClass::Appointment), Qt::CaseInsensitive) == 0)
        return olFolderCalendar;
    if (base.compare(QLatin1String(ContainerClass::Contact), Qt::CaseInsensitive) == 0)
        return olFolderContacts;
    if (base.compare(QLatin1String(ContainerClass::Task), Qt::CaseInsensitive) == 0)
        return olFolderTasks;
    if (base.compare(QLatin1String(ContainerClass::StickyNote), Qt::CaseInsensitive) == 0)
        return olFolderNotes;
    if (base.compare(QLatin1String(ContainerClass::Journal), Qt::CaseInsensitive) == 0)
        return olFolderJournal;
    return olFolderInbox;
}

Item ItemFromPst(pst_item *item, const MAPIFolder &folder, pst_file *file, QStringList *notes)
{
    QString why;
    const QString messageClass = StoreClassOfPst(item, &why);
    if (messageClass.isEmpty())
        throw EntryDamage{why};
    const TextOf text{item};
    Item target = folder.Items().Add(messageClass);
    const int itemClass = target.Class();
    QString body = text(item->body);
    const QString html = item->email ? text(item->email->htmlbody) : QString();
    if (body.isEmpty() && !html.isEmpty())
        body = PlainTextOfHtml(html);
    if (itemClass == olNote)
        target.setBody(body); // its subject is the first line of the body
    else {
        setText(target, "Subject", text(item->subject));
        target.setBody(body);
    }
    setDate(target, "CreationTime", item->create_date);
    if (item->email) {
        if (item->email->importance >= 0 && item->email->importance <= 2)
            target.set(QStringLiteral("Importance"), int(item->email->importance));
        if (item->email->sensitivity >= 0 && item->email->sensitivity <= 3)
            target.set(QStringLiteral("Sensitivity"), int(item->email->sensitivity));
        if (itemClass == olMail || itemClass == olPost)
            fillMail(target, item, text);
    }
    if (itemClass == olMail || itemClass == olPost)
        target.set(QStringLiteral("UnRead"), !(item->flags & PST_FLAG_READ));
    if (itemClass == olContact && item->contact)
        fillContact(target, item, text);
    if (itemClass == olAppointment && item->appointment) {
        fillAppointment(target, item, text);
        if (item->appointment->is_recurring == 1) {
            const QString series = seriesLines(item->appointment, notes);
            if (series.isEmpty())
                notes->append(QStringLiteral("Die Regel der Serie ist unlesbar; der Termin steht nur einmal da."));
            else
                SetUserText(target, QLatin1String(SeriesProperty), series);
        }
    }
    if (itemClass == olJournal && item->journal)
        fillJournal(target, item, text);
    // The formatted text stays beside the plain one, first, as a mail export
    // writes it back as the HTML alternative of the text.
    if (!html.isEmpty())
        target.Attachments().AddData(html.toUtf8(), QStringLiteral("Nachricht.html")).setHidden(true);
    addAttachments(target, item, file, text, notes);
    return target;
}
