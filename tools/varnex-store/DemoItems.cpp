// The demo appointments, mail, tasks, notes and journal entries, with the
// duplicates that the duplicate search is meant to find.
#include "DemoData.h"

#include "store/Store.h"

namespace {

QDateTime at(int daysFromNow, int hour, int minute = 0)
{
    return QDateTime(QDate::currentDate().addDays(daysFromNow), QTime(hour, minute));
}

Item saved(Item item, int age)
{
    item.set(QStringLiteral("CreationTime"), DemoTime(age));
    item.Save();
    return item;
}

Item appointment(const MAPIFolder &calendar, const QString &subject, const QDateTime &start, int minutes,
                 const QString &location)
{
    Item item = calendar.Items().Add();
    item.setSubject(subject);
    item.set(QStringLiteral("Start"), start);
    item.set(QStringLiteral("End"), start.addSecs(minutes * 60));
    item.set(QStringLiteral("Location"), location);
    return item;
}

} // namespace

QDateTime DemoTime(int daysAgo)
{
    return QDateTime(QDate::currentDate().addDays(-daysAgo), QTime(8 + daysAgo % 10, (daysAgo * 7) % 60));
}

int FillDemoCalendar(const MAPIFolder &calendar)
{
    saved(appointment(calendar, QStringLiteral("Zahnarzt"), at(3, 9, 30), 45, QStringLiteral("Praxis Dr. Lang")), 30);
    saved(appointment(calendar, QStringLiteral("Zahnarzt"), at(3, 9, 30), 45, QStringLiteral("Praxis Dr. Lang")), 12);
    saved(appointment(calendar, QStringLiteral("zahnarzt "), at(3, 9, 30), 45, QStringLiteral("Praxis Dr. Lang")), 5);
    Item series = appointment(calendar, QStringLiteral("Jour fixe Vertrieb"), at(1, 10), 60, QStringLiteral("Raum 2.14"));
    series.set(QStringLiteral("IsRecurring"), true);
    series.setBody(QStringLiteral("Wöchentlich montags."));
    saved(series, 200);
    saved(appointment(calendar, QStringLiteral("Jour fixe Vertrieb"), at(1, 10), 60, QStringLiteral("Raum 2.14")), 7);
    Item holiday = appointment(calendar, QStringLiteral("Betriebsausflug"), at(20, 0), 24 * 60, QStringLiteral("Tegernsee"));
    holiday.set(QStringLiteral("AllDayEvent"), true);
    holiday.set(QStringLiteral("BusyStatus"), int(olOutOfOffice));
    holiday.set(QStringLiteral("Categories"), QStringLiteral("Firma"));
    saved(holiday, 60);
    saved(appointment(calendar, QStringLiteral("Projektbesprechung Umbau"), at(5, 14), 90, QStringLiteral("Baustelle")), 15);
    saved(appointment(calendar, QStringLiteral("Geburtstag Oma"), at(40, 15), 180, QStringLiteral("Kassel")), 90);
    return 8;
}

int FillDemoMail(const MAPIFolder &inbox, const MAPIFolder &sent)
{
    struct DemoMail {
        const char *from, *subject, *body;
        int daysAgo;
    };
    const DemoMail mails[] = {
        {"Hans Müller", "Angebot Umbau", "Sehr geehrte Damen und Herren,\r\nanbei unser Angebot.", 3},
        {"Anna von Berg", "Befund", "Guten Tag,\r\nder Befund liegt bei.", 10},
        {"Stadtwerke Bonn", "Ihre Jahresabrechnung", "Ihre Abrechnung finden Sie im Anhang.", 25},
        {"Sabine Schulze", "Urlaubsfotos", "Hallo!\r\nHier die Bilder vom Urlaub.", 40},
        {"Newsletter", "Neuigkeiten im März", "Unsere Neuigkeiten.", 60},
    };
    int count = 0;
    for (const DemoMail &m : mails) {
        Item mail = inbox.Items().Add();
        mail.set(QStringLiteral("SenderName"), QString::fromUtf8(m.from));
        mail.set(QStringLiteral("To"), QStringLiteral("Ich"));
        mail.setSubject(QString::fromUtf8(m.subject));
        mail.setBody(QString::fromUtf8(m.body));
        mail.set(QStringLiteral("SentOn"), DemoTime(m.daysAgo).addSecs(-600));
        mail.set(QStringLiteral("ReceivedTime"), DemoTime(m.daysAgo));
        saved(mail, m.daysAgo);
        ++count;
    }
    // Attachments by value, of several sizes, one hidden (a logo in the signature).
    Item offer = inbox.Items().Item(1);
    offer.Attachments().AddData(QByteArray(150 * 1024, 'A'), QStringLiteral("Angebot 2024-117.pdf"));
    offer.Attachments().AddData(QByteArray(20 * 1024, 'B'), QStringLiteral("Grundriss.png"));
    offer.Attachments().AddData(QByteArray(3 * 1024, 'L'), QStringLiteral("logo.gif")).setHidden(true);
    offer.Save();
    Item photos = inbox.Items().Item(4);
    for (int n = 1; n <= 3; ++n)
        photos.Attachments().AddData(QByteArray(400 * 1024 + n, char('0' + n)), QStringLiteral("IMG_%1.jpg").arg(4710 + n));
    photos.Save();
    Item bill = inbox.Items().Item(3);
    bill.Attachments().AddData(QByteArray(80 * 1024, 'R'), QStringLiteral("Rechnung: 2024/03?.pdf"));
    bill.Save();
    // The same mail twice (delivered again by the server).
    Item again = inbox.Items().Add();
    again.set(QStringLiteral("SenderName"), QStringLiteral("Hans Müller"));
    again.set(QStringLiteral("To"), QStringLiteral("Ich"));
    again.setSubject(QStringLiteral("Angebot Umbau"));
    again.setBody(QStringLiteral("Sehr geehrte Damen und Herren,\r\nanbei unser Angebot."));
    again.set(QStringLiteral("SentOn"), DemoTime(3).addSecs(-600));
    again.set(QStringLiteral("ReceivedTime"), DemoTime(3));
    saved(again, 2);
    Item post = inbox.Items().Add(QStringLiteral("IPM.Post"));
    post.set(QStringLiteral("SenderName"), QStringLiteral("Hausverwaltung Richter"));
    post.setSubject(QStringLiteral("Aushang: Wasser abgestellt"));
    post.setBody(QStringLiteral("Am Donnerstag von 8 bis 12 Uhr."));
    saved(post, 4);
    Item reply = sent.Items().Add();
    reply.set(QStringLiteral("To"), QStringLiteral("Hans Müller"));
    reply.setSubject(QStringLiteral("AW: Angebot Umbau"));
    reply.setBody(QStringLiteral("Vielen Dank, wir melden uns."));
    reply.set(QStringLiteral("SentOn"), DemoTime(2));
    saved(reply, 2);
    return count + 3;
}

int FillDemoTasks(const MAPIFolder &tasks)
{
    const struct {
        const char *subject, *owner;
        int due, age;
    } list[] = {
        {"Steuererklärung abgeben", "Ich", 30, 50},
        {"Steuererklärung abgeben ", "ich", 30, 20},
        {"Reifen wechseln", "Ich", 10, 15},
        {"Angebot Umbau prüfen", "Ich", 4, 3},
    };
    for (const auto &t : list) {
        Item task = tasks.Items().Add();
        task.setSubject(QString::fromUtf8(t.subject));
        task.set(QStringLiteral("Owner"), QString::fromUtf8(t.owner));
        task.set(QStringLiteral("DueDate"), QDate::currentDate().addDays(t.due));
        task.set(QStringLiteral("StartDate"), QDate::currentDate());
        task.set(QStringLiteral("Companies"), QStringLiteral("Finanzamt"));
        saved(task, t.age);
    }
    return 4;
}

int FillDemoNotes(const MAPIFolder &notes)
{
    const char *bodies[] = {"Einkaufen\r\nMilch, Brot, Käse", "einkaufen\r\nmilch, brot, käse",
                            "WLAN-Passwort Gäste: siehe Router", "Zählerstand Gas: 12345,6"};
    int age = 80;
    for (const char *body : bodies) {
        Item note = notes.Items().Add();
        note.setBody(QString::fromUtf8(body));
        saved(note, age -= 13);
    }
    return 4;
}

int FillDemoJournal(const MAPIFolder &journal)
{
    for (int n = 0; n < 3; ++n) {
        Item entry = journal.Items().Add();
        entry.setSubject(n < 2 ? QStringLiteral("Telefonat mit Hans Müller") : QStringLiteral("Telefonat mit Stadtwerke"));
        entry.set(QStringLiteral("Type"), QStringLiteral("Telefonanruf"));
        entry.set(QStringLiteral("Start"), DemoTime(n < 2 ? 6 : 9));
        entry.set(QStringLiteral("Duration"), n < 2 ? 15 : 5);
        entry.setBody(QStringLiteral("Rückruf vereinbart."));
        saved(entry, 6 - n);
    }
    return 3;
}
