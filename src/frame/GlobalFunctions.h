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

// The program folder: errorlog.txt, Preferences/, VarnexPub.db and the help
// page lie here. Defaults to the folder of the executable; tests and
// embedders point it elsewhere.
QString ProgramFolder();
void SetProgramFolder(const QString &folder);

// Full path of a file in the program folder.
QString ProgramFile(const QString &fileName);

// The program's version as three numbers joined by ".".
QString ProgramVersion();

// Call first thing in main(), before any thread starts. Without TZ the C
// library reads the zone file again at every local time conversion (half
// the time of a store import); pointing TZ at the system's file has it read
// once. A TZ the user set is kept.
void ReadTimeZoneFileOnce();
