#pragma once
// What a batch run needs of the main window, seen from the core: the running
// state, the status line, the progress bar and one turn of the event loop.
//
// The main window installs itself as the host; without one (tests, the
// command-line tool) a quiet host keeps the texts and values so they can be
// checked, and turns the event loop of the running application if any.

#include <QString>

class RunHost
{
public:
    virtual ~RunHost() = default;

    // Ready or running: disables or enables the commands of the window and
    // resets status line and progress bar.
    virtual void SetRunning(bool running) = 0;
    // Disables the commands while running (enables them when not); the end
    // command, the help menu and the duplicate panel are never touched.
    virtual void EnableCommands(bool running) = 0;
    // lblStatus
    virtual void setStatusText(const QString &text) = 0;
    // ProgressBar1.Max and .Value
    virtual void setProgressMax(int max) = 0;
    virtual void setProgressValue(int value) = 0;
    // Lets the event loop run once, so the window repaints and the user can
    // end the program between two items.
    virtual void processEvents() = 0;
};

// A host without a window: it remembers what a run told it.
class QuietRunHost : public RunHost
{
public:
    void SetRunning(bool running) override;
    void EnableCommands(bool running) override { commandsEnabled = !running; }
    void setStatusText(const QString &text) override { statusText = text; }
    void setProgressMax(int max) override { progressMax = max; }
    void setProgressValue(int value) override { progressValue = value; }
    void processEvents() override;

    bool running = false;
    bool commandsEnabled = true;
    QString statusText = QStringLiteral("Bereit");
    int progressMax = 0;
    int progressValue = 0;
    int runningChanges = 0; // how often SetRunning was called
};

// The host of the current process; never null.
RunHost &CurrentRunHost();
// Installs a host (the main window); nullptr returns to the quiet host.
void SetRunHost(RunHost *host);

// The status text of the contact runs: "Bearbeite Kontakt n von m (Ordner)".
QString ContactStatusText(int n, int m, const QString &folderName);

// SetRunning and EnableCommands of the current host, under the names the runs
// use.
void SetRunning(bool running);
void EnableCommands(bool running);
