#pragma once
// A name to be looked up in the profile's address book. Resolve finds the
// user whose name, alias or address equals the text, ignoring case and the
// blanks around it; Name is then the user's display name.

#include <QString>

#include <memory>

class Session;

class Recipient
{
public:
    Recipient() = default;
    Recipient(std::shared_ptr<Session> session, const QString &name);

    // showDialog is accepted and ignored: there is no dialog to show.
    bool Resolve(bool showDialog = false);
    [[nodiscard]] bool Resolved() const { return m_resolved; }
    // The resolved display name; the text as given while unresolved.
    [[nodiscard]] QString Name() const { return m_name; }
    // The user's address ("" while unresolved).
    [[nodiscard]] QString Address() const { return m_address; }

private:
    std::shared_ptr<Session> m_session;
    QString m_name;
    QString m_address;
    bool m_resolved = false;
};
