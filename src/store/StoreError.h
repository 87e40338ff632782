#pragma once
// The one failure of the mail store. Every member of the object model that
// cannot do what it is asked (an ID that is gone, a damaged or foreign file,
// a refused access, a bad filter, an injected test fault) throws a
// StoreError. It carries a number, as the routines' error handlers pass it on
// to ShowError, and a German description for the user.

#include <QString>

#include <exception>

// Numbers of the store's failures. The values are those that the platform's
// messaging layer uses for the same situations, so that logs read alike.
enum StoreErrorNumber : int {
    StoreErrNotFound = -2147221233,     // ID or name unknown, item or folder gone
    StoreErrAccessDenied = -2147024891, // another user's folder without rights
    StoreErrCorrupt = -2147221221,      // the file is damaged or no store
    StoreErrDisk = -2147221226,         // the file cannot be read or written
    StoreErrBusy = -2147221227,         // another program holds the file too long
    StoreErrCallFailed = -2147467259,   // a call that failed as a whole
    StoreErrCollision = -2147219964,    // a folder or property of that name exists
    StoreErrTypeMismatch = -2147352571, // a value that the property cannot take
    StoreErrBadFilter = -2147352567,    // Restrict/Find with a filter it cannot read
    StoreErrUnknownMember = 438,        // property or member the object lacks
    StoreErrReadOnly = -2147221246,     // a property that cannot be written
    StoreErrNoObject = 91,              // a null handle (no item, no folder) was used
};

class StoreError : public std::exception
{
public:
    StoreError(int number, const QString &description);

    [[nodiscard]] int number() const noexcept { return m_number; }
    [[nodiscard]] QString description() const { return m_description; }
    // The description in UTF-8, for std::exception users.
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_description;
    QByteArray m_what;
};
