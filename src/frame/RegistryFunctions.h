#pragma once
// The settings store: one flat list of named strings in an INI file at the
// user's configuration location (Nordquell/Varnex.ini, group 3.0/Settings).
//
// There is no cache between calls: every read asks the file again, and every
// write is flushed to disk before SaveSetting returns, so a change is visible
// to the next read and survives a crash.

#include <QString>
#include <QtGlobal>

// The value of the setting, or defaultValue when it does not exist or is not
// a plain string. An empty value exists.
QString GetSetting(const QString &name, const QString &defaultValue = QString());

// True for "1", false for "0", defaultValue for anything else.
bool GetBoolSetting(const QString &name, bool defaultValue);

// Writes the value and flushes it. A failed write shows the box "saf".
void SaveSetting(const QString &name, const QString &value);

// Writes defaultValue only when the setting is missing (a value of exactly
// "NotExisting" counts as missing).
void InitSetting(const QString &name, const QString &defaultValue);

// Writes every missing default of the program's settings.
void InitDefaultSettings();

// The settings file; tests and embedders point it elsewhere. An empty path
// restores the user's own file.
QString SettingsFile();
void SetSettingsFile(const QString &path);

// Grows with every change of the settings: the writes of this process
// (SaveSetting, InitSetting, a new settings file) at once, a change of the
// file by anyone else (a second Varnex, a hand edit) as soon as FileWatch
// has seen it. Readers that cache derived values compare it to see a change.
quint64 SettingsGeneration();

// Name and default of every setting that InitDefaultSettings writes.
struct SettingDefault {
    const char *name;
    const char *value;
};
const QList<SettingDefault> &DefaultSettings();
