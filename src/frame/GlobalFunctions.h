#pragma once
// The services with which the whole program reports to the user: the message
// box, the error box and the error log, plus the program folder they use.
//
// Core code never shows a widget itself. The widget layer installs the real
// box through SetMessageHandler; tests install a scripted answerer that
// records prompt, style and title.

#include <QString>
#include <QVariant>
#include <functional>

// Style numbers of the message box, as the platform's box knows them.
enum MessageStyle : int {
    MsgPlain = 0,              // OK only, no icon (the "saf" box of a failed setting write)
    MsgStop = 16,              // stop sign, OK
    MsgQuestion = 36,          // question, Yes and No, Yes is default
    MsgExclamation = 48,       // exclamation mark, OK
    MsgInformation = 64,       // information, OK
    MsgQuestionDefaultNo = 292 // question, Yes and No, No is default
};

// Answers of the message box.
enum MessageAnswer : int {
    AnswerOk = 1,
    AnswerYes = 6,
    AnswerNo = 7,
};

struct MessageRequest {
    QString prompt;
    int buttons = MsgPlain;
    QString title;
    int timeoutSeconds = 0; // 0: the box stays until answered
};

using MessageHandler = std::function<int(const MessageRequest &)>;

// Installs the handler that shows (or answers) every box; returns the one it
// replaces. Without a handler a box is written to stderr and answered with
// its default button.
MessageHandler SetMessageHandler(MessageHandler handler);

// Shows a modal box and returns the answer (AnswerYes, AnswerNo, AnswerOk).
// With a timeout the box closes by itself after that many seconds; callers
// treat anything but AnswerYes as a refusal.
int ShowMessage(const QString &prompt, int buttons, const QString &title, int timeoutSeconds = 0);

// Writes the four-line log entry and, unless errorId is 1, shows the error
// box with style 16 under "Fehler!".
void ShowError(const QString &description, const QVariant &number, int errorId, const QString &info = QString());

// Appends one entry to errorlog.txt in the program folder. Returns false when
// the log could not be written. A failed write is reported once as error 202
// (box only: the log it would go to is the one that failed); further failures
// stay silent until a write succeeds again, so a broken log never loops and
// never floods the user with boxes.
bool WriteErrorLog(const QString &text, const QString &sub);

// The text form of a date and time in log entries and messages: German,
// whatever the system locale.
QString GermanDateTime(const QDateTime &when);

// The program folder holds what the program writes: errorlog.txt,
// Preferences/ and the reference database VarnexPub.db that the tables
// dialog edits. The data folder holds what the program only reads: the help
// page and the reference database as shipped.
//
// Run from a build folder (VarnexPub.db beside the executable) both are the
// folder of the executable. Run from an installation (no VarnexPub.db beside
// the executable, but ../share/varnex/VarnexPub.db) the data folder is
// <prefix>/share/varnex and the program folder is the user's data folder
// ($XDG_DATA_HOME/Nordquell/Varnex, which also holds the profile); the
// reference database is copied there on first use, so the user's table edits
// survive updates. Anything else: the folder of the executable, as in a
// build folder.
struct ProgramFolders {
    QString program;
    QString data;
};
ProgramFolders ResolveProgramFolders(const QString &executableFolder, const QString &userDataHome);

// Tests and embedders point the folders elsewhere; an empty dataFolder means
// the same folder as the program folder, an empty folder the rule above.
QString ProgramFolder();
QString ProgramDataFolder();
void SetProgramFolder(const QString &folder, const QString &dataFolder = QString());

// Full path of a file in the program folder or in the data folder.
QString ProgramFile(const QString &fileName);
QString ProgramDataFile(const QString &fileName);

// The reference database in the program folder. When it is missing there
// and the data folder is another folder that holds it, it is copied first
// (under a temporary name, then renamed, so that no reader sees half a
// file). A failed copy leaves it missing; its readers report that.
QString ReferenceDatabaseFile();

// The program's version as three numbers joined by ".".
QString ProgramVersion();

// Call first thing in main(), before any thread starts. Without TZ the C
// library reads the zone file again at every local time conversion (half
// the time of a store import); pointing TZ at the system's file has it read
// once. A TZ the user set is kept.
void ReadTimeZoneFileOnce();
