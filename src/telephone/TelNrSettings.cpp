#include "telephone/TelNrSettings.h"

#include "frame/RegistryFunctions.h"

#include <QLocale>
#include <cmath>

namespace {

QString trimBlanks(const QString &text)
{
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && text.at(start) == u' ')
        ++start;
    while (end > start && text.at(end - 1) == u' ')
        --end;
    return text.mid(start, end - start);
}

// A number as the settings hold it: blanks around it allowed, decimal point
// or comma.
std::optional<double> numberFromText(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    bool ok = false;
    double value = QLocale::c().toDouble(trimmed, &ok);
    if (!ok)
        value = QLocale(QLocale::German, QLocale::Germany).toDouble(trimmed, &ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// The flag setting, or the error it gives; the first error is kept.
bool readFlag(const QString &name, const QString &defaultValue, std::optional<TelNrError> &invalid)
{
    try {
        return SettingAsBoolean(GetSetting(name, defaultValue));
    } catch (const TelNrError &error) {
        if (!invalid)
            invalid = error;
        return false;
    }
}

struct SettingsCache {
    bool valid = false;
    quint64 generation = 0;
    TelNrSettings settings;
};

SettingsCache s_cache;

} // namespace

bool SettingAsBoolean(const QString &text)
{
    const QString trimmed = text.trimmed();
    for (const char *word : {"true", "wahr"}) {
        if (trimmed.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return true;
    }
    for (const char *word : {"false", "falsch"}) {
        if (trimmed.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return false;
    }
    if (const std::optional<double> value = numberFromText(trimmed))
        return *value != 0.0;
    throw TelNrError{TelNrErrors::TypeMismatch, QStringLiteral("Typen unverträglich")};
}

BlockWidth BlockWidthFromText(const QString &text)
{
    const std::optional<double> value = numberFromText(text);
    if (!value)
        return 0;
    const double rounded = std::nearbyint(*value); // half to even in the default rounding mode
    if (rounded < -32768.0 || rounded > 32767.0)
        return std::nullopt;
    return int(rounded);
}

BlockSet ReadBlockSet(const QString &blockKey)
{
    BlockSet set;
    const int count = blockKey == QLatin1String("BlockA") ? 2 : 5;
    for (int i = 1; i <= count; ++i)
        set.widths.append(BlockWidthFromText(GetSetting(blockKey + QString::number(i), QStringLiteral("0"))));
    set.separator = GetSetting(blockKey == QLatin1String("BlockT") ? QStringLiteral("BlockTrennAreaNo")
                                                                   : QStringLiteral("BlockTrennAreaPres"),
                               QStringLiteral(" "));
    return set;
}

TelNrSettings ReadTelNrSettings()
{
    TelNrSettings s;
    s.durchwahlTrenn = GetSetting(QStringLiteral("DurchwahlTrenn"), QStringLiteral("-"));
    s.plus = readFlag(QStringLiteral("Plus"), QStringLiteral("0"), s.invalid);
    s.iddp = trimBlanks(GetSetting(QStringLiteral("IDDP"), QStringLiteral("00")));
    s.schweizKonv = readFlag(QStringLiteral("SchweizKonv"), QStringLiteral("1"), s.invalid);
    s.useNumberBlocksAreaNo = GetBoolSetting(QStringLiteral("UseNumberBlocksAreaNo"), false);
    s.useNumberBlocksAreaPres = GetBoolSetting(QStringLiteral("UseNumberBlocksAreaPres"), false);
    s.ignoreCountryCode = GetBoolSetting(QStringLiteral("IgnoreCountryCode"), false);
    s.iddpOut = trimBlanks(GetSetting(QStringLiteral("IDDPOut"), QStringLiteral("+")));
    s.durchwahlTrennOut = GetSetting(QStringLiteral("DurchwahlTrennOut"), QStringLiteral("-"));
    s.vorwahlTrennOut1 = GetSetting(QStringLiteral("VorwahlTrennOut1"), QStringLiteral(" ("));
    s.vorwahlTrennOut2 = GetSetting(QStringLiteral("VorwahlTrennOut2"), QStringLiteral(") "));
    s.vorwahlTrennOutSingle = GetSetting(QStringLiteral("VorwahlTrennOutSingle"), QStringLiteral(" "));
    s.countryCode = trimBlanks(GetSetting(QStringLiteral("CountryCode"), QStringLiteral("49")));
    s.nddp = trimBlanks(GetSetting(QStringLiteral("NDDP"), QStringLiteral("0")));
    s.filterTel = GetBoolSetting(QStringLiteral("FilterTel"), false);
    s.filterCountry = GetBoolSetting(QStringLiteral("FilterCountry"), false);
    s.filterCountryStr = trimBlanks(GetSetting(QStringLiteral("FilterCountryStr"), QString()));
    s.filterArea = GetBoolSetting(QStringLiteral("FilterArea"), false);
    s.filterAreaStr = trimBlanks(GetSetting(QStringLiteral("FilterAreaStr"), QString()));
    s.blockA = ReadBlockSet(QStringLiteral("BlockA"));
    s.blockS = ReadBlockSet(QStringLiteral("BlockS"));
    s.blockT = ReadBlockSet(QStringLiteral("BlockT"));
    return s;
}

const TelNrSettings &CurrentTelNrSettings()
{
    const quint64 generation = SettingsGeneration();
    if (!s_cache.valid || s_cache.generation != generation) {
        s_cache.settings = ReadTelNrSettings();
        // Reading never writes, so the generation read before is still current.
        s_cache.generation = generation;
        s_cache.valid = true;
    }
    return s_cache.settings;
}
