#pragma once
// Utilities of the safe helper library: ID conversion, recipients, cleanup.

#include "store/Recipient.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

class MAPIUtils
{
public:
    // Upper-case hexadecimal form of a binary value (a QByteArray from
    // MAPITable::GetRows), as GetFolderFromID takes it; "" for anything else.
    [[nodiscard]] static QString BinaryToHex(const QVariant &value);
    // A recipient of the current profile's address book (unresolved).
    // showDialog and parentWindow are accepted and ignored.
    [[nodiscard]] static Recipient CreateRecipient(const QString &name, bool showDialog = true, long long parentWindow = 0);
    // Releases what the session holds without need: item caches of folders
    // no longer in use, and folds the write-ahead logs into the store files.
    static void Cleanup();
};
