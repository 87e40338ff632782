#!/usr/bin/env python3
"""Builds data/refdb/T_Holidays.csv and T_HolidaysDes.csv from the public
school holiday dates of the German states and the Swiss cantons.

Input:  ../shared/refdata/holidays/de-schulferien.csv (school years, one line
        per state and period) and schulferien-schweiz.json (MIT licence,
        cantonal dates by school year); see SOURCES.md.
Output: T_Holidays.csv, one row per state or canton and calendar year:
        State, Country ("DE" or "CH"), Year, then From<i> and To<i> for the
        periods 2 to 7 (ISO dates, \\N where there is no such period).
        T_HolidaysDes.csv names the periods per country.

The holiday insertion counts the periods from the number of columns of
T_Holidays ((columns - 1) div 2 is the last period), so the three leading
columns and the twelve date columns must stay as they are.

Rules (SOURCES.md explains them to the reader of the data):
- Germany, calendar year Y: winter, Easter, Whitsun and summer holidays of
  the school year Y-1/Y, autumn and Christmas holidays of Y/Y+1. Single free
  days outside a period (extra_days) are left out.
- Switzerland, calendar year Y: of each kind of holidays the cantonal period
  that starts in Y. Dates set locally ("varies", or only by district) give no
  period. Where a canton publishes dates per language region, the region of
  the canton's main language is taken; regional exceptions (a single
  commune) are left out.

Run from anywhere:
    python3 tools/refdata/holidays.py [--year 2027] [--ch-year 2026]
                                      [--source DIR] [--output DIR]
"""

import argparse
import csv
import datetime
import json
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
REPO = os.path.normpath(os.path.join(HERE, "..", ".."))
DEFAULT_OUTPUT = os.path.join(REPO, "data", "refdb")

FIRST_PERIOD = 2
# Period number -> (description, school year offset: 0 is Y-1/Y, 1 is Y/Y+1).
DE_PERIODS = {
    2: ("Winterferien", 0),
    3: ("Osterferien", 0),
    4: ("Pfingstferien", 0),
    5: ("Sommerferien", 0),
    6: ("Herbstferien", 1),
    7: ("Weihnachtsferien", 1),
}
# Period number -> holiday type of the Swiss source.
CH_PERIODS = {
    2: "school_vacation_sport",
    3: "school_vacation_spring",
    4: "school_vacation_summer",
    5: "school_vacation_autumn",
    6: "school_vacation_winter",
}
LAST_PERIOD = max(max(DE_PERIODS), max(CH_PERIODS))
REGION_LANGUAGE = {"german": "de", "french": "fr", "moesano": "it", "italian": "it"}
NULL = "\\N"


def default_source():
    # The shared folder lies beside the main work tree or beside the folder
    # of the work trees.
    for up in (("..",), ("..", "..")):
        candidate = os.path.normpath(os.path.join(REPO, *up, "shared", "refdata", "holidays"))
        if os.path.isdir(candidate):
            return candidate
    return os.path.normpath(os.path.join(REPO, "..", "shared", "refdata", "holidays"))


def iso(text):
    return datetime.date.fromisoformat(text).isoformat() if text else None


def german_rows(path, year):
    wanted = {offset: f"{year - 1 + offset}/{year + offset}" for offset in (0, 1)}
    periods = {}  # (state, number) -> (from, to)
    states = []
    with open(path, encoding="utf-8", newline="") as f:
        for line in csv.DictReader(f):
            number = next((n for n, (name, offset) in DE_PERIODS.items()
                           if name == line["period"] and wanted[offset] == line["school_year"]), None)
            if line["state"] not in states:
                states.append(line["state"])
            if number is None:
                continue
            key = (line["state"], number)
            if key in periods:
                sys.exit(f"{line['state']}: {line['period']} {line['school_year']} twice")
            start, end = iso(line["start"]), iso(line["end"])
            if (start is None) != (end is None):
                sys.exit(f"{line['state']}: {line['period']} has only one of start and end")
            if start and not start.startswith(str(year)):
                sys.exit(f"{line['state']}: {line['period']} starts {start}, outside {year}")
            periods[key] = (start, end) if start else None
    if not states:
        sys.exit(f"{path}: no rows")
    rows = []
    for state in states:
        if all(periods.get((state, n)) is None for n in DE_PERIODS):
            sys.exit(f"{state}: no periods for {year}; does the source cover that year?")
        rows.append(table_row(state, "DE", year, {n: periods.get((state, n)) for n in DE_PERIODS}))
    return rows


def cantonal_lists(canton):
    """The lists of holidays that apply to the whole canton (or its main
    language region), whatever their school year label."""
    if "holidays_cantonal" in canton:
        source = canton["holidays_cantonal"]
    else:
        source = canton["holidays"]
        regions = {k: v for k, v in source.items() if isinstance(v, dict)}
        if regions:
            main = [v for k, v in regions.items()
                    if any(REGION_LANGUAGE.get(part) == canton["language"] for part in k.split("_"))]
            if len(main) != 1:
                sys.exit(f"{canton['name']}: no single region for language {canton['language']}")
            source = main[0]
    return [v for v in source.values() if isinstance(v, list)]


def swiss_rows(path, year):
    with open(path, encoding="utf-8") as f:
        data = json.load(f)
    rows = []
    for code, canton in sorted(data["cantons"].items()):
        periods = {}
        for entries in cantonal_lists(canton):
            for entry in entries:
                start = entry.get("start")
                if entry.get("varies") or not start or not entry.get("end"):
                    continue
                number = next((n for n, kind in CH_PERIODS.items() if kind == entry["type"]), None)
                if number is None or not start.startswith(str(year)):
                    continue
                if number in periods:
                    sys.exit(f"{code}: two periods of {entry['type']} start in {year}")
                periods[number] = (iso(start), iso(entry["end"]))
        if not periods:
            sys.exit(f"{code}: no periods start in {year}; does the source cover that year?")
        rows.append(table_row(code, "CH", year, periods))
    return rows


def table_row(state, country, year, periods):
    row = [state, country, str(year)]
    for number in range(FIRST_PERIOD, LAST_PERIOD + 1):
        found = periods.get(number)
        if found and found[1] < found[0]:
            sys.exit(f"{state}: period {number} ends before it starts")
        row += list(found) if found else [NULL, NULL]
    return row


def descriptions(path_json):
    with open(path_json, encoding="utf-8") as f:
        kinds = json.load(f)["taxonomy"]["holiday_types"]
    rows = [[str(n), "DE", name] for n, (name, _) in DE_PERIODS.items()]
    rows += [[str(n), "CH", kinds[kind]["de"]] for n, kind in CH_PERIODS.items()]
    return rows


def write_csv(path, comment, header, rows):
    with open(path, "w", encoding="utf-8", newline="") as f:
        for line in comment:
            f.write(f"# {line}\n")
        writer = csv.writer(f, lineterminator="\n")
        writer.writerow(header)
        writer.writerows(rows)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--year", type=int, default=2027, help="calendar year of the German rows")
    parser.add_argument("--ch-year", type=int, default=2026, help="calendar year of the Swiss rows")
    parser.add_argument("--source", default=default_source())
    parser.add_argument("--output", default=DEFAULT_OUTPUT)
    args = parser.parse_args()

    de_file = os.path.join(args.source, "de-schulferien.csv")
    ch_file = os.path.join(args.source, "schulferien-schweiz.json")
    rows = german_rows(de_file, args.year) + swiss_rows(ch_file, args.ch_year)
    header = ["State", "Country", "Year:INTEGER"]
    for number in range(FIRST_PERIOD, LAST_PERIOD + 1):
        header += [f"From{number}", f"To{number}"]
    write_csv(os.path.join(args.output, "T_Holidays.csv"),
              [f"School holidays: German states {args.year}, Swiss cantons {args.ch_year}.",
               "Generated by tools/refdata/holidays.py; see SOURCES.md. Do not edit by hand."],
              header, rows)
    write_csv(os.path.join(args.output, "T_HolidaysDes.csv"),
              ["Names of the holiday periods of T_Holidays, per country.",
               "Generated by tools/refdata/holidays.py; see SOURCES.md. Do not edit by hand."],
              ["Index:INTEGER", "Country", "Description"], descriptions(ch_file))
    print(f"T_Holidays: {len(rows)} rows; T_HolidaysDes written to {args.output}")


if __name__ == "__main__":
    main()
