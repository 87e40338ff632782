#pragma once
// SQLite's failures in German (internal to the store). The user reads what
// happened in German; SQLite's own English text goes to the error log, where
// support finds it.

#include <QString>

class QSqlError;

// SQLite's primary result code of the failure (SQLITE_FULL is 13 ...).
[[nodiscard]] int SqlPrimaryCode(const QSqlError &error);
// A German phrase for the failure ("der Datenträger ist voll"); writes the
// original text with the context to the error log.
[[nodiscard]] QString SqlErrorText(const QSqlError &error, const QString &context);
