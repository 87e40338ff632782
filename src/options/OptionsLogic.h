#pragma once
// The rules behind the options dialogs that need no widget: the country quick
// selection, the priority sliders, the check on OK and the layout editing.

#include "frame/SettingValues.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

// Own country code, international and national prefix of a country of the
// quick selection.
struct CountryPreset {
    QString countryCode;
    QString iddp;
    QString nddp;
};

// The entries of the quick selection in the order they are filled in.
const QStringList &CountrySelectEntries();
// The preset of an entry; nothing for any other text.
std::optional<CountryPreset> CountryPresetFor(const QString &entry);

// The three priority sliders always hold a permutation of 0, 1 and 2. After
// slider `changed` took a new value, the slider that stood on that value
// moves to the value that has become free.
void RepairPriorities(std::array<int, 3> &sliders, int changed);

// Reads Priority.0 to Priority.2 into slider values. Slider s stands in the
// row of criterion s (0 marked folder, 1 series, 2 age) and its value is the
// level of that criterion (2 consulted first): Priority.s, as the search
// reads it. Nothing when the stored values are no permutation of 0 to 2.
std::optional<std::array<int, 3>> LoadPrioritySliders();
// The reverse, as settings to write: Priority.s = value of slider s.
SettingValues PrioritySliderValues(const std::array<int, 3> &sliders);
void SavePrioritySliders(const std::array<int, 3> &sliders);

// The six item types of the duplicate pages, in tab order.
const QStringList &DuplicateTypeCaptions();
// The messages of the check on OK: one per item type with no compared field.
QStringList DuplicateFieldCheckMessages(const std::array<int, 6> &checkedPerType);

// Editing a layout field with the insert buttons and the one step back.
class LayoutEditor
{
public:
    // Appends the element and a blank; remembers the text before.
    [[nodiscard]] QString insert(const QString &current, const QString &element);
    // The text before the last insertion (once; then the text stays).
    [[nodiscard]] QString stepBack(const QString &current) const;

private:
    std::optional<QString> m_previous;
};
