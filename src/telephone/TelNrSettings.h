#pragma once
// The settings that the number normaliser reads, in one value. The members
// carry the names of their settings keys.
//
// CurrentTelNrSettings keeps the value until the settings change
// (SettingsGeneration), so a change made in the options, the format editor,
// a second Varnex or by hand applies from the next number on.

#include "telephone/TelNrError.h"

#include <QList>
#include <QString>
#include <optional>

// The width of one number block: a whole number, 0 for a text that is no
// number; nullopt when the number does not fit a 16-bit count (an error
// when the block is reached).
using BlockWidth = std::optional<int>;

// One block set ("BlockA", "BlockS", "BlockT"): its widths in order and the
// text set between two blocks.
struct BlockSet {
    QList<BlockWidth> widths;
    QString separator;
};

struct TelNrSettings {
    QString durchwahlTrenn = QStringLiteral("-"); // extension separator of input numbers, untrimmed
    bool plus = false;
    QString iddp = QStringLiteral("00");
    bool schweizKonv = true;
    bool useNumberBlocksAreaNo = false;
    bool useNumberBlocksAreaPres = false;
    bool ignoreCountryCode = false;
    QString iddpOut = QStringLiteral("+");
    QString durchwahlTrennOut = QStringLiteral("-");
    QString vorwahlTrennOut1 = QStringLiteral(" (");
    QString vorwahlTrennOut2 = QStringLiteral(") ");
    QString vorwahlTrennOutSingle = QStringLiteral(" ");
    QString countryCode = QStringLiteral("49");
    QString nddp = QStringLiteral("0");
    bool filterTel = false;
    bool filterCountry = false;
    QString filterCountryStr;
    bool filterArea = false;
    QString filterAreaStr;
    BlockSet blockA{{0, 0}, QStringLiteral(" ")};
    BlockSet blockS{{0, 0, 0, 0, 0}, QStringLiteral(" ")};
    BlockSet blockT{{0, 0, 0, 0, 0}, QStringLiteral(" ")};
    // Plus or SchweizKonv holds no boolean: every number fails with this.
    std::optional<TelNrError> invalid;
};

// All settings of the normaliser, read from the store now.
TelNrSettings ReadTelNrSettings();

// The settings as of the last change of the settings (SettingsGeneration).
// The reference stays valid until the next call.
const TelNrSettings &CurrentTelNrSettings();

// A block set by its key as FormatNumberBlocks reads it: "BlockA" has two
// blocks, every other key five; "BlockT" is separated by BlockTrennAreaNo,
// every other key by BlockTrennAreaPres.
BlockSet ReadBlockSet(const QString &blockKey);

// Text to boolean as the flags Plus and SchweizKonv are converted: a number
// is true unless 0, "True"/"Wahr" and "False"/"Falsch" in any case count
// too; anything else throws TelNrError (TypeMismatch).
bool SettingAsBoolean(const QString &text);

// Text to block width: a number (point or comma as decimal separator)
// rounded to a whole number, half to even; 0 for anything else.
BlockWidth BlockWidthFromText(const QString &text);
