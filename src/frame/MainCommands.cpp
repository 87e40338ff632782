// The dispatch table of the main window: one line per command key, grouped by
// subsystem. Each subsystem adds its own lines (and includes) in its section;
// a key without a line does nothing when clicked. A dialog command opens its
// dialog modally with MainWindow() as parent; a run is called directly.
#include "frame/MainCommands.h"

#include "frame/CommandRegistry.h"
#include "frame/frmHaupt.h"

// Folders
#include "folders/frmSharedFolderOpen.h"

// Accounts
#include "frame/AccountSync.h"
#include <QInputDialog>
#include <QLineEdit>

// Telephone
#include "telephone/ContactTelNrRun.h"
#include "telephone/frmTelDB.h"
#include "telephone/frmTelPruef.h"
#include "telephone/frmVorwahlen.h"

// Duplicates
#include "duplicates/frmDups.h"

// Names
#include "names/NameCorrectionFunctions.h"
#include "names/frmNameCheck.h"

// Replace
#include "replace/frmReplace.h"

// Restore
#include "restore/frmUndo.h"

// Attachments
#include "attachments/AttachmentSaveFunctions.h"
#include "controls/ShellFolderBrowser.h"

// Item tools
#include "itemtools/frmHoliday.h"
#include "itemtools/frmMClassChange.h"

// Options
#include "options/frmOptions.h"
#include "options/frmQuickOptions.h"

void RegisterMainCommands()
{
    // Folders: "SharedOpen"
    RegisterCommand(QStringLiteral("SharedOpen"), [] {
        frmSharedFolderOpen dialog(MainWindow());
        dialog.exec();
    });

    // Accounts: "DavSync"
    RegisterCommand(QStringLiteral("DavSync"), [] {
        SyncAccounts([](const QString &prompt) -> std::optional<QString> {
            bool ok = false;
            const QString password = QInputDialog::getText(MainWindow(), QStringLiteral("Konten synchronisieren"), prompt,
                                                           QLineEdit::Password, QString(), &ok);
            return ok ? std::optional<QString>(password) : std::nullopt;
        });
    });

    // Telephone: "Tel", "TelTest"; the options dialog opens the format
    // editor and the tables.
    RegisterCommand(QStringLiteral("Tel"), [] { RunContactTelNr(); });
    RegisterCommand(QStringLiteral("TelTest"), [] { OpenNumberTest(MainWindow()); });
    frmOptions::setTelephoneDialogs(OpenNumberFormatEditor, OpenTelephoneTables);

    // Duplicates: "Dup", "DupDel", "DupView", "DupsClose", "DupsClear"
    RegisterDuplicateCommands();

    // Names: "Nam", "NameCheck"
    RegisterCommand(QStringLiteral("Nam"), [] { CorrectContactNames(); });
    RegisterCommand(QStringLiteral("NameCheck"), [] {
        frmNameCheck dialog(MainWindow());
        dialog.exec();
    });

    // Replace: "Suc"
    RegisterCommand(QStringLiteral("Suc"), [] {
        frmReplace dialog(MainWindow());
        dialog.exec();
    });

    // Restore: "Undo"
    RegisterCommand(QStringLiteral("Undo"), [] { OpenUndo(MainWindow()); });

    // Attachments: "Att", "AttUndo", "AttMove"
    RegisterCommand(QStringLiteral("Att"), SaveAttachments);
    RegisterCommand(QStringLiteral("AttUndo"), ImportAttachments);
    RegisterCommand(QStringLiteral("AttMove"), MoveAttachments);
    InstallShellFolderBrowser();

    // Item tools: "For", "Hol"
    RegisterCommand(QStringLiteral("For"), [] {
        frmMClassChange dialog(MainWindow());
        dialog.exec();
    });
    RegisterCommand(QStringLiteral("Hol"), [] {
        frmHoliday dialog(MainWindow());
        dialog.exec();
    });

    // Options: "Opt", "QuickOption"
    RegisterCommand(QStringLiteral("Opt"), [] {
        frmOptions dialog(MainWindow());
        dialog.exec();
    });
    RegisterCommand(QStringLiteral("QuickOption"), [] {
        frmQuickOptions dialog(MainWindow());
        dialog.exec();
    });
}
