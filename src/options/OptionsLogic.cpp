#include "options/OptionsLogic.h"

#include "frame/RegistryFunctions.h"

const QStringList &CountrySelectEntries()
{
    static const QStringList entries{
        QStringLiteral("USA"), QStringLiteral("Österreich"), QStringLiteral("Frankreich"),
        QStringLiteral("Deutschland"), QStringLiteral("Niederlande"),
        QStringLiteral("Vereinigtes Königreich"), QStringLiteral("Schweiz")};
    return entries;
}

std::optional<CountryPreset> CountryPresetFor(const QString &entry)
{
    struct Row {
        const char *entry;
        CountryPreset preset;
    };
    static const Row rows[] = {
        {"USA", {QStringLiteral("1"), QStringLiteral("011"), QStringLiteral("1")}},
        {"Österreich", {QStringLiteral("43"), QStringLiteral("00"), QStringLiteral("0")}},
        {"Frankreich", {QStringLiteral("33"), QStringLiteral("00"), QStringLiteral("0")}},
        {"Deutschland", {QStringLiteral("49"), QStringLiteral("00"), QStringLiteral("0")}},
        {"Niederlande", {QStringLiteral("31"), QStringLiteral("00"), QStringLiteral("0")}},
        {"Vereinigtes Königreich", {QStringLiteral("44"), QStringLiteral("00"), QStringLiteral("0")}},
        {"Schweiz", {QStringLiteral("41"), QStringLiteral("00"), QStringLiteral("0")}},
    };
    for (const Row &row : rows) {
        if (entry == QString::fromUtf8(row.entry))
            return row.preset;
    }
    return std::nullopt;
}

void RepairPriorities(std::array<int, 3> &sliders, int changed)
{
    const int difference = (0 + 1 + 2) - (sliders[0] + sliders[1] + sliders[2]);
    for (int i = 0; i < 3; ++i) {
        if (i != changed && sliders[i] == sliders[changed])
            sliders[i] += difference;
    }
}

std::optional<std::array<int, 3>> LoadPrioritySliders()
{
    std::array<int, 3> sliders{0, 1, 2};
    std::array<bool, 3> seen{false, false, false};
    for (int slider = 0; slider < 3; ++slider) {
        bool ok = false;
        const int level = GetSetting(QStringLiteral("Priority.%1").arg(slider), QStringLiteral("0")).toInt(&ok);
        if (!ok || level < 0 || level > 2 || seen[level])
            return std::nullopt;
        seen[level] = true;
        sliders[slider] = level;
    }
    return sliders;
}

SettingValues PrioritySliderValues(const std::array<int, 3> &sliders)
{
    SettingValues values;
    for (int slider = 0; slider < 3; ++slider)
        values.append({QStringLiteral("Priority.%1").arg(slider), QString::number(sliders[slider])});
    return values;
}

void SavePrioritySliders(const std::array<int, 3> &sliders)
{
    SaveSettings(PrioritySliderValues(sliders));
}

const QStringList &DuplicateTypeCaptions()
{
    static const QStringList captions{QStringLiteral("Kontakte"), QStringLiteral("Kalender"),
                                      QStringLiteral("Email"),    QStringLiteral("Notizen"),
                                      QStringLiteral("Aufgaben"), QStringLiteral("Journal")};
    return captions;
}

QStringList DuplicateFieldCheckMessages(const std::array<int, 6> &checkedPerType)
{
    QStringList messages;
    for (int i = 0; i < 6; ++i) {
        if (checkedPerType[i] < 1)
            messages.append(QStringLiteral("Bitte wählen Sie mindestens eine Option die Registerkarte ")
                            + DuplicateTypeCaptions().at(i));
    }
    return messages;
}

QString LayoutEditor::insert(const QString &current, const QString &element)
{
    m_previous = current;
    return current + element + u' ';
}

QString LayoutEditor::stepBack(const QString &current) const
{
    return m_previous ? *m_previous : current;
}
