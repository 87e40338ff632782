#pragma once
// Fills the current profile with realistic German demo data: contacts with
// numbers and names typed every which way, duplicates across two contact
// folders, appointments with duplicates and a series, mail with
// attachments, tasks, notes, journal entries, a second store "Archiv" and
// two other users, one of whom shares calendar and contacts.

#include <QString>

struct DemoSummary {
    int contacts = 0;
    int appointments = 0;
    int mails = 0;
    int tasks = 0;
    int notes = 0;
    int journal = 0;
};

// Throws StoreError. The profile must exist.
DemoSummary FillDemoProfile();
