#pragma once
// Pieces of the demo profile (Demo.cpp puts them together).

#include <QDateTime>

class MAPIFolder;

// A creation time that many days (and some hours) in the past.
QDateTime DemoTime(int daysAgo);

int FillDemoContacts(const MAPIFolder &contacts, const MAPIFolder &old);
int FillDemoCalendar(const MAPIFolder &calendar);
int FillDemoMail(const MAPIFolder &inbox, const MAPIFolder &sent);
int FillDemoTasks(const MAPIFolder &tasks);
int FillDemoNotes(const MAPIFolder &notes);
int FillDemoJournal(const MAPIFolder &journal);
