#pragma once
// Small telephone tables for tests: a reference database written from rows
// given in the test, and the sample rows the normaliser's examples use.

#include "telephone/TelTables.h"

#include <QList>
#include <QString>

// Writes a database holding only T_CountryCodes and T_CountryAndAreaCodes
// with the given rows, in this order, to path (replacing the file by a
// rename, so the file is new). The columns have no constraints, so that tests
// can store what the shipped tables would refuse (a NULL CountryCode).
// Returns false and fails the running test when SQLite refuses.
bool WriteTelDb(const QString &path, const QList<CountryCodeRow> &countries, const QList<AreaCodeRow> &areas);

// The sample rows: 49 (prefix 0) with 30, 221 and 5202; 41 (prefix 0) with 1
// and 44; 39 (prefix NULL) with 06; 423 (prefix NULL) with a NULL row; and
// 33 (prefix 0) without area codes.
QList<CountryCodeRow> SampleCountryRows();
QList<AreaCodeRow> SampleAreaRows();

// Writes the sample tables as VarnexPub.db into folder.
bool WriteSampleTelDb(const QString &folder);

class TestEnvironment;

// Gives the settings file of env all defaults, as TestEnvironment does with
// withDefaults, but as a copy of a file written once per process: writing
// the defaults one by one flushes the file for every setting.
void CopyDefaultSettings(const TestEnvironment &env);
