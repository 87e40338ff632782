#pragma once
// The binding of dialog controls to settings by their names: the setting of
// a control is its objectName without the three-letter prefix (chkHideFax ->
// HideFax, txtIDDP -> IDDP, cmbAttSize -> AttSize, optSaveAs -> SaveAs).
//
// Bound are: text fields (any widget named txt... or cmb... that has a
// "text" property, or an editable list box) unless their dynamic property
// "Tag" is "n"; check boxes
// (stored "1"/"0"); option buttons (stored "1" when on, else "0"). Every
// other control is left alone. Frames with a check box in their title
// (checkable group boxes) are not bound: their dialog stores them by hand.

#include "frame/SettingValues.h"

class QWidget;

// The setting name of a bound control, or an empty text when the control is
// not bound.
QString BoundSettingName(const QWidget *control);

// Reading direction: text fields get GetSetting(name, ""), boxes and options
// GetBoolSetting(name, false).
void LoadBoundSettings(QWidget *form);

// Writing direction: the value of every bound control, touched or not ...
SettingValues BoundSettingValues(QWidget *form);
// ... written in one go.
void SaveBoundSettings(QWidget *form);
