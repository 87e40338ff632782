#include "store/Recipient.h"

#include "store/Session_p.h"

Recipient::Recipient(std::shared_ptr<Session> session, const QString &name)
    : m_session(std::move(session))
    , m_name(name)
{
}

bool Recipient::Resolve(bool /*showDialog*/)
{
    const std::optional<Session::User> user = m_session ? m_session->resolve(m_name) : std::nullopt;
    m_resolved = user.has_value();
    if (user) {
        m_name = user->entry.name;
        m_address = user->entry.address;
    }
    return m_resolved;
}
