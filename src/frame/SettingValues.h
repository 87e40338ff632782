#pragma once
// More of the settings store (RegistryFunctions.h): many values written in
// one go, and the text of a setting read as a Boolean.

#include <QList>
#include <QPair>
#include <QString>
#include <optional>

// Writes all the values in one go: one replacement of the file, flushed
// before the call returns (a dialog's OK). A failed write shows "saf" once.
using SettingValues = QList<QPair<QString, QString>>;
void SaveSettings(const SettingValues &values);

// A setting's text converted to a Boolean, for the settings that are read
// as text: "1" or any other non-zero number, "True" or "Wahr" give true;
// "0", "False" or "Falsch" give false (case ignored, blanks around allowed);
// anything else, the empty text included, gives nullopt.
std::optional<bool> TextAsBoolean(const QString &text);
