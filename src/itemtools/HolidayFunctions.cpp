#include "itemtools/HolidayFunctions.h"

#include "frame/GlobalFunctions.h"
#include "itemtools/HolidayTables.h"
#include "store/Store.h"

#include <QTime>

namespace {

const QString kCategory = QStringLiteral("Schulferien");
const QString kBody = QStringLiteral("Schulferien eingefügt von Varnex. Alle Angaben ohne Gewähr.");

// A filter value in quotes, with its quotes doubled.
QString quoted(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
}

// Whether the folder already holds the period under that subject. The
// look-up is tolerant: a folder that cannot be searched counts as free.
bool holdsSubject(const MAPIFolder &folder, const std::optional<QString> &description, const QString &state)
{
    if (!description)
        return false;
    try {
        return !folder.Items().Find(QStringLiteral("[Subject] = ") + quoted(HolidaySubject(*description, state))).isNull();
    } catch (const StoreError &) {
        return false;
    }
}

void addHolidayAppointment(const MAPIFolder &folder, const QDate &first, const QDate &last, const QString &subject)
{
    Item appointment = folder.Items().Add();
    appointment.set(QStringLiteral("AllDayEvent"), true);
    appointment.set(QStringLiteral("Start"), QDateTime(first, QTime(0, 0)));
    appointment.set(QStringLiteral("End"), QDateTime(last.addDays(1), QTime(0, 0)));
    appointment.setSubject(subject);
    appointment.setBody(kBody);
    appointment.set(QStringLiteral("BusyStatus"), int(olFree));
    appointment.set(QStringLiteral("Categories"), kCategory);
    appointment.set(QStringLiteral("ReminderSet"), false);
    appointment.Save();
}

bool askAddAgain(const MAPIFolder &folder)
{
    return ShowMessage(QStringLiteral("Es befinden sich bereits Schulferien im Kalender-Ordner ") + folder.Name()
                           + QStringLiteral(".\r\nMöchten Sie die Schulferien ein weiteres Mal hinzufügen?"),
                       MsgQuestion, QStringLiteral("Frage?"))
        != AnswerNo;
}

// Inserts the periods into one folder; false when the user refused.
bool insertIntoFolder(HolidayTables &tables, const HolidayRow &row, const MAPIFolder &folder, const QString &state,
                      const QString &country)
{
    for (int period = kFirstHolidayPeriod; period <= row.lastPeriod(); ++period) {
        // A missing name is no failure yet: it is needed only for a period
        // with dates.
        const std::optional<QString> description = tables.description(period, country);
        if (period == kFirstHolidayPeriod && holdsSubject(folder, description, state) && !askAddAgain(folder))
            return false;
        const std::optional<QDate> first = row.from(period);
        if (!first)
            continue;
        const QDate last = row.to(period);
        if (!description)
            throw HolidayError{HolidayErrors::NoCurrentRow, QStringLiteral("Kein aktueller Datensatz.")};
        addHolidayAppointment(folder, *first, last, HolidaySubject(*description, state));
    }
    return true;
}

} // namespace

QString HolidaySubject(const QString &description, const QString &state)
{
    return description + QStringLiteral(" (") + state + u')';
}

void InsertHolidays(const QString &state, const QString &country, const QList<MAPIFolder> &folders)
{
    try {
        HolidayTables tables;
        const std::optional<HolidayRow> row = tables.holidays(state, country);
        if (!row) {
            ShowMessage(QStringLiteral("Bitte wählen Sie zuerst ein Bundesland."), MsgInformation,
                        QStringLiteral("Info!"));
            return;
        }
        bool refused = false;
        for (const MAPIFolder &folder : folders) {
            if (!insertIntoFolder(tables, *row, folder, state, country))
                refused = true;
        }
        if (!refused)
            ShowMessage(QStringLiteral("Schulferien hinzugefügt."), MsgInformation, QStringLiteral("Info!"));
    } catch (const HolidayError &e) {
        ShowError(e.description, e.number, 1301);
    } catch (const StoreError &e) {
        ShowError(e.description(), e.number(), 1301);
    }
}
