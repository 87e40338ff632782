#include "store/StoreConstants.h"

#include <iterator>

namespace {

struct ClassName {
    int itemClass;
    const char *messageClass;
};

// Longer bases first, so that "IPM.Note" does not catch "IPM.NoteX" before
// an exact base has been tried; a base matches the whole class or up to a
// point ("IPM.Contact.Kunde").
constexpr ClassName s_classes[] = {
    {olAppointment, MessageClass::Appointment}, {olContact, MessageClass::Contact},
    {olJournal, MessageClass::Activity},        {olMail, MessageClass::Note},
    {olNote, MessageClass::StickyNote},         {olPost, MessageClass::Post},
    {olTask, MessageClass::Task},               {olDistributionList, MessageClass::DistListAsWritten},
};

} // namespace

QDateTime NoDate()
{
    return QDateTime(QDate(4501, 1, 1), QTime(0, 0));
}

bool IsNoDate(const QDateTime &when)
{
    return !when.isValid() || when.date() == QDate(4501, 1, 1);
}

int ClassOfMessageClass(const QString &messageClass)
{
    for (const ClassName &c : s_classes) {
        const QLatin1String base(c.messageClass);
        if (messageClass.startsWith(base, Qt::CaseInsensitive)
            && (messageClass.size() == base.size() || messageClass.at(base.size()) == u'.'))
            return c.itemClass;
    }
    return 0;
}

QString MessageClassOfClass(int itemClass)
{
    for (const ClassName &c : s_classes)
        if (c.itemClass == itemClass)
            return QString::fromLatin1(c.messageClass);
    return {};
}
