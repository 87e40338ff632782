#!/usr/bin/python3
# Counts the entries of a vCard or iCalendar file with independent parsers:
# the cards (python3-vobject), or the VEVENT, VTODO and VJOURNAL components
# (python3-icalendar, else python3-vobject when the file is too odd for it).
# Exit code 1 when neither can read the file.
import sys

import vobject

path = sys.argv[1]
text = open(path, 'rb').read().decode('utf-8', 'replace')
kinds = ('VEVENT', 'VTODO', 'VJOURNAL')
try:
    if path.lower().endswith('.vcf'):
        print(sum(1 for _ in vobject.readComponents(text)))
        sys.exit(0)
    try:
        import icalendar
        cal = icalendar.Calendar.from_ical(text)
        print(sum(1 for c in cal.walk() if c.name in kinds))
    except Exception:
        count = 0
        for cal in vobject.readComponents(text):
            count += sum(1 for c in cal.getChildren() if c.name in kinds)
        print(count)
except Exception as e:
    print(e, file=sys.stderr)
    sys.exit(1)
