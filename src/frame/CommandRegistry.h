#pragma once
// The one dispatch table of the main window: every command of the command bar,
// the menus and the duplicate panel is found here by its key.
//
// The main window knows only the keys. Each subsystem connects its routine in
// src/frame/MainCommands.cpp (RegisterMainCommands), so that connecting a
// command never touches the layout of the window. A key that nobody has
// registered does nothing when it is run.
//
// Keys of the command bar (group "AktGrp" Allgemein, "KonGrp" Kontakte,
// "ExtGrp" Extras), also used by the menu entries that do the same:
//   "Dup"  RemoveDuplicates            (bar, mnuKontaktDupLoeschen)
//   "Suc"  frmReplace                  (bar, mnuFindReplace)
//   "Att"  SaveAttachments             (bar, mnuAttSave)
//   "Hol"  frmHoliday                  (bar, mnuHoliday)
//   "For"  frmMClassChange             (bar, mnuFormularWechsel)
//   "Nam"  CorrectContactNames         (bar, mnuNameCorrection)
//   "Tel"  RunContactTelNr             (bar, mnuTelNorm)
//   "Opt"  frmOptions                  (bar, mnuOptionen)
//   "Hil"  the help page; built in, the same as F1 and mnuHilfe
// Keys of menu entries without a bar button:
//   "Undo"        frmUndo              (mnuUndo)
//   "AttUndo"     ImportAttachments    (mnuAttUndo; the window asks
//                 "Möchten Sie die verknüpften Anlagen wieder (zurück)importieren?"
//                 first and runs the key only on Yes)
//   "AttMove"     MoveAttachments      (mnuAttMove)
//   "NameCheck"   frmNameCheck         (mnuNameCheck)
//   "TelTest"     frmTelPruef          (mnuTelTest)
//   "QuickOption" frmQuickOptions      (mnuQuickOption)
//   "SharedOpen"  frmSharedFolderOpen  (mnuSharedOpen; built in)
//   "DavSync"     SyncAccounts         (mnuKontenSync, Datei -> "Konten
//                 synchronisieren"; frame/AccountSync.h)
// Keys of the duplicate panel frmDups:
//   "DupDel"      RemoveMarkedItems    (cmdDupDel)
//   "DupView"     shows the ticked item (cmdDupView)
//   "DupsClose"   closes the panel     (cmdDupsClose)
//   "DupsClear"   not a button: SetRunning(true) runs it to drop the IDs of
//                 the last duplicate search, after it has hidden the panel and
//                 cleared tvwDups.

#include <QString>
#include <QStringList>
#include <functional>

using CommandRoutine = std::function<void()>;

// Connects a key to its routine; a second registration replaces the first.
void RegisterCommand(const QString &key, CommandRoutine routine);

// Runs the routine of the key. Returns false when no routine is registered
// (nothing happens then).
bool RunCommand(const QString &key);

[[nodiscard]] bool IsCommandRegistered(const QString &key);

// The keys that the main window offers, in the order of the list above.
[[nodiscard]] const QStringList &MainCommandKeys();

// Drops every registration (tests).
void ClearCommands();
