#!/usr/bin/env python3
"""Builds the telephone tables of the reference database from libphonenumber.

Reads  <source>/libphonenumber/PhoneNumberMetadata.xml, geocoding/ and carrier/
Writes <out>/T_CountryCodes.csv and <out>/T_CountryAndAreaCodes.csv, and the
       generated block of the telephone section in <out>/SOURCES.md.

    python3 tools/refdata/telephone.py [--source ../shared/refdata] [--out data/refdb]

The defaults are the shared reference folder beside the repository and the
repository's data/refdb. The conversion is deterministic: running it twice on
the same source gives the same files, so a diff after a re-run shows exactly
what the source changed.

Rules (the reasons are written into SOURCES.md as well):
- T_CountryCodes: one row per calling code, with the national prefix of the
  territory that libphonenumber marks as the main one for that code (or the
  only one); none gives NULL.
- Area codes of Germany, Austria and Switzerland come from the geocoding
  files. libphonenumber's formatting rules tell how long the area code of a
  number is; a geocoding prefix that is shorter (the source lists only a
  common prefix) is expanded to all continuations of the right length, and
  one that is longer (a block of subscriber numbers) is cut back.
- The normaliser takes the shortest matching area code, so a code that has a
  shorter code of the same country as its start could never be found: such
  rows are left out and listed.
- Mobile blocks at the length people write them as "Vorwahl".
- Switzerland keeps its old code 1 (Zurich), so that the conversion 1 -> 44
  can find it.
- Countries with a closed numbering plan get one row with AreaCode NULL.
"""

import argparse
import csv
import io
import re
import sys
import xml.etree.ElementTree as ET
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]
NULL = None

# Geographic area codes: calling code, region of the formatting rules, file.
GEOCODING = [
    ("41", "CH", "geocoding/en/41.txt"),
    ("43", "AT", "geocoding/de/43.txt"),
    ("49", "DE", "geocoding/de/49.txt"),
]

# The old Zurich code, converted to 44 by the option "SchweizKonv".
SWISS_OLD_CODE = "1"

# Closed plans that the metadata rule below does not catch: a national prefix
# exists on paper but no national number begins with it (LI, MC), or the
# lengths vary while there are still no area codes (LU).
CLOSED_PLAN_EXTRA = {
    "352": "no area codes, numbers of different lengths (added by hand)",
    "377": "8 digits; the national prefix 0 never stands before a number (added by hand)",
    "423": "7 digits; the national prefix 0 never stands before a number (added by hand)",
}


def clean(text):
    return re.sub(r"\s+", "", text or "")


def load_territories(metadata):
    root = ET.parse(metadata).getroot()
    by_code = {}
    for territory in root.iter("territory"):
        by_code.setdefault(territory.get("countryCode"), []).append(territory)
    return by_code


def main_territory(territories):
    for territory in territories:
        if territory.get("mainCountryForCode") == "true":
            return territory
    return territories[0]


def national_lengths(territory, kind):
    element = territory.find(kind)
    if element is None or element.find("possibleLengths") is None:
        return None
    return element.find("possibleLengths").get("national")


def closed_plan_reason(code, territory):
    """Why the country gets a NULL area row, or None."""
    if code in CLOSED_PLAN_EXTRA:
        return CLOSED_PLAN_EXTRA[code]
    if territory.get("id") == "001":
        return "worldwide service without area codes"
    fixed = national_lengths(territory, "fixedLine")
    if territory.get("nationalPrefix") is None and fixed and fixed.isdigit():
        return f"no national prefix, fixed line always {fixed} digits"
    return None


class AreaRules:
    """libphonenumber's formatting rules of one region: the length of the
    area code is the width of the first group of the first format that fits."""

    def __init__(self, territory):
        self.formats = []
        for fmt in territory.find("availableFormats").findall("numberFormat"):
            if clean(fmt.findtext("intlFormat")) == "NA":
                continue  # short codes, never written with a country code
            leading = [clean(e.text) for e in fmt.findall("leadingDigits")]
            group = re.match(r"\(\\d(?:\{(\d+)(?:,\d+)?\})?\)", clean(fmt.get("pattern")))
            if group:
                self.formats.append((leading[-1] if leading else "", int(group.group(1) or 1)))

    def area_length(self, national_number):
        for leading, length in self.formats:
            if re.match(leading, national_number):
                return length
        return None

    def lengths_behind(self, prefix):
        """Area code lengths of the numbers that begin with prefix."""
        return {self.area_length(prefix + str(d) + "0" * 8) for d in range(10)}


def expand(prefix, length):
    if len(prefix) >= length:
        return [prefix]
    return [code for d in "0123456789" for code in expand(prefix + d, length)]


def read_prefix_file(path, calling_code):
    """(prefix behind the calling code, description) of a geocoding or
    carrier file."""
    entries = []
    for line in path.read_text(encoding="utf-8").splitlines():
        line = line.strip()
        if not line or line.startswith("#"):
            continue
        number, _, description = line.partition("|")
        if not number.startswith(calling_code):
            sys.exit(f"{path}: {number} does not belong to {calling_code}")
        entries.append((number[len(calling_code):], description))
    return entries


def geographic_codes(path, calling_code, rules, notes):
    codes = set()
    for prefix, place in read_prefix_file(path, calling_code):
        lengths = rules.lengths_behind(prefix)
        if len(lengths) != 1 or None in lengths or lengths == {len(prefix)}:
            codes.add(prefix)  # as listed (212: 2129 behind it is another code)
            continue
        length = lengths.pop()
        result = expand(prefix, length) if length > len(prefix) else [prefix[:length]]
        shown = result[0] if len(result) == 1 else f"{result[0]} to {result[-1]}"
        notes.append(f"{calling_code} {prefix} ({place}) -> {shown}")
        codes.update(result)
    return codes


def mobile_codes(source, calling_code):
    carrier = {p for p, _ in read_prefix_file(source / "libphonenumber" / "carrier" / "en" / f"{calling_code}.txt", calling_code)}
    if calling_code == "49":
        # 0151 as one block; 0152x, 0155x, 0157x, 0159x are split among the
        # operators by the fifth digit and written that way (01577 1234567).
        codes = {"151", "160", "162", "163"} | {f"17{d}" for d in range(10)}
        codes |= {f"15{b}{d}" for b in "2579" for d in range(10)}
    elif calling_code == "43":
        codes = {p[:3] for p in carrier if "650" <= p[:3] <= "699"}
    else:
        codes = {f"7{d}" for d in range(5, 10)}
    # Every block must lie in a range that the carrier file knows as mobile.
    for code in codes:
        if not any(p[:2] == code[:2] and (p.startswith(code[:3]) or code.startswith(p)) for p in carrier):
            sys.exit(f"mobile block {calling_code} {code} is not in the carrier file")
    return codes


def drop_shadowed(codes):
    """Codes that a shorter code of the same country hides from the
    shortest-match lookup."""
    kept, dropped = set(), []
    for code in sorted(codes, key=lambda c: (len(c), c)):
        shorter = next((k for k in kept if code.startswith(k)), None)
        if shorter is None:
            kept.add(code)
        else:
            dropped.append((code, shorter))
    return kept, dropped


def csv_text(header, rows, statements):
    out = io.StringIO()
    out.write("# Generated by tools/refdata/telephone.py from libphonenumber; do not edit.\n")
    out.write("".join(f"#! {statement}\n" for statement in statements))
    writer = csv.writer(out, lineterminator="\n")
    writer.writerow(header)
    for row in rows:
        writer.writerow(["\\N" if v is NULL else v for v in row])
    return out.getvalue()


def build(source):
    territories = load_territories(source / "libphonenumber" / "PhoneNumberMetadata.xml")
    codes = sorted(territories, key=int)
    country_rows = [(c, main_territory(territories[c]).get("nationalPrefix")) for c in codes]

    closed = {}
    for code in codes:
        reason = closed_plan_reason(code, main_territory(territories[code]))
        if reason:
            closed[code] = (main_territory(territories[code]).get("id"), reason)

    area_rows, notes, shadowed = [], [], []
    for calling_code, region, path in GEOCODING:
        territory = next(t for t in territories[calling_code] if t.get("id") == region)
        found = geographic_codes(source / "libphonenumber" / path, calling_code, AreaRules(territory), notes)
        found |= mobile_codes(source, calling_code)
        if calling_code == "41":
            found.add(SWISS_OLD_CODE)
        kept, dropped = drop_shadowed(found)
        shadowed += [(calling_code, code, shorter) for code, shorter in dropped]
        area_rows += [(calling_code, code) for code in kept]
    area_rows += [(code, NULL) for code in closed]
    area_rows.sort(key=lambda r: (int(r[0]), r[1] is not NULL, r[1] or ""))
    return country_rows, area_rows, closed, notes, shadowed


def sources_block(country_rows, area_rows, closed, notes, shadowed):
    count = {}
    for code, _ in area_rows:
        count[code] = count.get(code, 0) + 1
    lines = [
        f"- `T_CountryCodes`: {len(country_rows)} calling codes, "
        f"{sum(1 for _, p in country_rows if p is NULL)} of them without a national prefix (NULL).",
        f"- `T_CountryAndAreaCodes`: {count['49']} rows for 49, {count['43']} for 43, "
        f"{count['41']} for 41, and {len(closed)} NULL rows.",
        "- Geocoding prefixes changed to the area code length of libphonenumber's formatting rules:",
    ]
    lines += [f"  - {note}" for note in notes]
    lines.append("- Left out because a shorter code of the same country stands before them "
                 "(the normaliser takes the shortest match):")
    lines += [f"  - {cc} {code} (behind {shorter})" for cc, code, shorter in shadowed]
    lines += ["- Closed numbering plans, one row with `AreaCode` NULL:", "",
              "  | Code | Region | Why |", "  |---|---|---|"]
    lines += [f"  | {code} | {region} | {reason} |" for code, (region, reason) in closed.items()]
    return "\n".join(lines)


BEGIN, END = "<!-- telephone:begin -->", "<!-- telephone:end -->"


def update_sources(path, block):
    text = path.read_text(encoding="utf-8")
    start, end = text.find(BEGIN), text.find(END)
    if start < 0 or end < start:
        sys.exit(f"{path}: markers {BEGIN} / {END} missing")
    path.write_text(text[: start + len(BEGIN)] + "\n" + block + "\n" + text[end:], encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--source", type=Path, default=REPO.parent / "shared" / "refdata")
    parser.add_argument("--out", type=Path, default=REPO / "data" / "refdb")
    args = parser.parse_args()
    if not (args.source / "libphonenumber").is_dir():
        sys.exit(f"{args.source / 'libphonenumber'} not found; name the reference folder with --source")

    country_rows, area_rows, closed, notes, shadowed = build(args.source)
    # The telephone tables dialog relies on the database refusing a row that
    # is already present; NULL and empty count as the same "no area code".
    (args.out / "T_CountryCodes.csv").write_text(csv_text(
        ["CountryCode:TEXT NOT NULL", "NationalDDPrefix"], country_rows,
        ["CREATE UNIQUE INDEX UX_CountryCodes ON T_CountryCodes (CountryCode)"]), encoding="utf-8")
    (args.out / "T_CountryAndAreaCodes.csv").write_text(csv_text(
        ["CountryCode:TEXT NOT NULL", "AreaCode"], area_rows,
        ["CREATE UNIQUE INDEX UX_CountryAndAreaCodes ON T_CountryAndAreaCodes "
         "(CountryCode, ifnull(AreaCode, ''))"]), encoding="utf-8")
    update_sources(args.out / "SOURCES.md", sources_block(country_rows, area_rows, closed, notes, shadowed))
    print(f"{len(country_rows)} country codes, {len(area_rows)} area rows ({len(closed)} NULL)")


if __name__ == "__main__":
    main()
