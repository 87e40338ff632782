#pragma once
// The text fields of the options dialogs: with a remembered list, a number
// field with a maximum, and a read-only folder field with a chooser button.
// Each carries its objectName (so the binding by name finds it) and a
// "text" property.

#include <QString>
#include <functional>

class QComboBox;
class QLineEdit;
class QObject;
class QWidget;

QWidget *CreateListField(const QString &name, const QString &listFile, const QString &listTitle, QWidget *parent);
QWidget *CreateNumberField(const QString &name, int maximum, QWidget *parent);
QWidget *CreateFolderField(const QString &name, QWidget *parent);
// A short field that takes only what `pattern` allows (digits of a prefix,
// the extension separator).
QLineEdit *CreateDigitsField(const QString &name, int maxLength, const QString &pattern, QWidget *parent);
// The country quick selection: the preset countries in German alphabetical
// order, none chosen yet; not bound to a setting.
QComboBox *CreateCountrySelectBox(QWidget *parent);

// Calls `handler` whenever the field's text changes, by typing or by choice.
void OnTextChanged(QWidget *field, QObject *context, std::function<void()> handler);
// Calls `handler` when the field gets the focus.
void OnFocusIn(QWidget *field, QObject *context, std::function<void()> handler);
