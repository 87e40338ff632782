#include "store/MAPIUtils.h"

#include "store/Application.h"
#include "store/Session_p.h"

QString MAPIUtils::BinaryToHex(const QVariant &value)
{
    if (value.typeId() != QMetaType::QByteArray)
        return {};
    return QString::fromLatin1(value.toByteArray().toHex().toUpper());
}

Recipient MAPIUtils::CreateRecipient(const QString &name, bool /*showDialog*/, long long /*parentWindow*/)
{
    return Recipient(Session::current(), name);
}

void MAPIUtils::Cleanup()
{
    Session::current()->cleanup();
}
