// varnex-store: the command-line companion of Varnex for profiles of the
// mail store. The program itself has no command line; this tool creates a
// profile, fills a demo profile, lists what a profile holds, and imports and
// exports other programs' files (interchange/).
#include "frame/GlobalFunctions.h"
#include "Demo.h"
#include "dav/DavCommand.h"
#include "interchange/Interchange.h"
#include "interchange/MailFormat.h"

#include "store/Store.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include <new>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

void usage()
{
    err() << "Aufruf: varnex-store [--profile ORDNER] BEFEHL\n"
             "        varnex-store [--profile ORDNER] import [--immer-neu] FORMAT DATEI|ORDNER [SPEICHERORDNER]\n"
             "        varnex-store [--profile ORDNER] export FORMAT DATEI|ORDNER [SPEICHERORDNER]\n"
             "\n"
             "Befehle:\n"
             "  init     legt das Profil an (mit \"Persönliche Ordner\"), wenn es fehlt\n"
             "  exists   Rückgabewert 0, wenn das Profil besteht, sonst 1\n"
             "  list     zeigt Informationsspeicher, Ordner, Anzahl der Elemente und das Adressbuch\n"
             "  demo     füllt ein neues oder leeres Profil mit deutschen Beispieldaten\n"
             "  import   liest die Datei (oder alle passenden Dateien des Ordners) in den\n"
             "           Speicherordner; fehlende Ordner werden angelegt. Ein Eintrag, dessen UID\n"
             "           ein Element des Ordners schon trägt, aktualisiert dieses Element\n"
             "           (mit --immer-neu wird jeder Eintrag ein neues Element); eine Mail mit einer\n"
             "           Message-ID, die der Ordner schon hat, wird nur mit --immer-neu übernommen\n"
             "  export   schreibt die Elemente des Speicherordners in die Datei, oder eine\n"
             "           Datei je Element, wenn ein Ordner (oder ein Pfad mit / am Ende) genannt ist\n"
             "\n"
             "SPEICHERORDNER: \"Persönliche Ordner/Kontakte/Kunden\" oder \"Kontakte/Kunden\" (im\n"
             "ersten Informationsspeicher); ohne Angabe der Standardordner des Formats.\n"
             "\n"
             "Formate:\n"
          << InterchangeFormatsUsage()
          << "\n"
             "Konten (CardDAV/CalDAV), zweiseitiger Abgleich mit einem Informationsspeicher gleichen Namens:\n"
          << DavUsage()
          << "\n"
             "Rückgabewert von import und export: 0 alles übernommen, 3 Einträge übersprungen\n"
             "(im Bericht mit Datei, Zeile und Grund), 1 abgebrochen, 2 falscher Aufruf.\n"
             "\n"
             "Ohne --profile gilt das Standardprofil: "
          << QDir::toNativeSeparators(DefaultProfileFolder()) << "\n";
}

QString folderTypeName(int type)
{
    switch (type) {
    case olFolderCalendar: return QStringLiteral("Kalender");
    case olFolderContacts: return QStringLiteral("Kontakte");
    case olFolderInbox: return QStringLiteral("Posteingang");
    case olFolderNotes: return QStringLiteral("Notizen");
    case olFolderTasks: return QStringLiteral("Aufgaben");
    case olFolderJournal: return QStringLiteral("Journal");
    default: return QString::number(type);
    }
}

void listFolders(const Folders &folders, int depth)
{
    for (const MAPIFolder &folder : folders) {
        out() << QString(depth * 2, u' ') << folder.Name() << "  [" << folder.ContainerClass() << "]  "
              << folder.Items().Count() << " Element(e)\n";
        listFolders(folder.Folders(), depth + 1);
    }
}

int list()
{
    const NameSpace ns = Application().GetNamespace();
    out() << "Profil: " << QDir::toNativeSeparators(ProfileFolder()) << "\n";
    // A store that cannot be opened is named on the error output; the
    // others are listed all the same, and the exit code tells.
    int result = 0;
    const Folders stores = ns.Folders();
    const int storeCount = stores.Count();
    for (int index = 1; index <= storeCount; ++index) {
        try {
            const MAPIFolder root = stores.Item(index);
            out() << "\nInformationsspeicher \"" << root.Name() << "\"\n";
            listFolders(root.Folders(), 1);
        } catch (const StoreError &e) {
            out().flush();
            err() << "Fehler: " << e.description() << " (" << e.number() << ")\n";
            result = 1;
        }
    }
    const QList<AddressBookEntry> book = AddressBook();
    out() << "\nAdressbuch: " << book.size() << " Benutzer\n";
    for (const AddressBookEntry &entry : book) {
        QStringList granted;
        for (int type : entry.grantedFolderTypes)
            granted << folderTypeName(type);
        out() << "  " << entry.name << " <" << entry.address << ">";
        if (!entry.aliases.isEmpty())
            out() << " (" << entry.aliases.join(QStringLiteral(", ")) << ")";
        out() << "  freigegeben: " << (granted.isEmpty() ? QStringLiteral("nichts") : granted.join(QStringLiteral(", ")))
              << "\n";
    }
    return result;
}

bool defaultStoreIsEmpty()
{
    const NameSpace ns = Application().GetNamespace();
    if (ns.Folders().Count() > 1)
        return false;
    std::function<bool(const Folders &)> empty = [&](const Folders &folders) {
        for (const MAPIFolder &folder : folders)
            if (folder.Items().Count() > 0 || !empty(folder.Folders()))
                return false;
        return true;
    };
    return empty(ns.Folders().Item(1).Folders()) && AddressBook().isEmpty();
}

int demo()
{
    if (ProfileExists() && !defaultStoreIsEmpty()) {
        err() << "Das Profil " << QDir::toNativeSeparators(ProfileFolder())
              << " enthält schon Daten. Die Beispieldaten werden nur in ein neues oder leeres Profil geschrieben.\n";
        return 1;
    }
    CreateProfile();
    const DemoSummary s = FillDemoProfile();
    out() << "Beispielprofil angelegt: " << QDir::toNativeSeparators(ProfileFolder()) << "\n"
          << "  " << s.contacts << " Kontakte, " << s.appointments << " Termine, " << s.mails << " Mails, " << s.tasks
          << " Aufgaben, " << s.notes << " Notizen, " << s.journal << " Journaleinträge,\n"
          << "  dazu der Informationsspeicher \"Archiv\" und zwei Benutzer im Adressbuch.\n";
    return 0;
}

int run(const QString &command)
{
    if (command == u"exists")
        return ProfileExists() ? 0 : 1;
    if (command == u"init") {
        const bool existed = ProfileExists();
        CreateProfile();
        out() << (existed ? "Profil besteht schon: " : "Profil angelegt: ") << QDir::toNativeSeparators(ProfileFolder())
              << "\n";
        return 0;
    }
    if (command == u"list") {
        if (!ProfileExists()) {
            err() << "Es gibt kein Profil in " << QDir::toNativeSeparators(ProfileFolder()) << ".\n";
            return 1;
        }
        return list();
    }
    if (command == u"demo")
        return demo();
    usage();
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    ReadTimeZoneFileOnce();
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const int profileAt = args.indexOf(QStringLiteral("--profile"));
    if (profileAt >= 0 && profileAt + 1 < args.size()) {
        SetProfileFolder(args.at(profileAt + 1));
        args.remove(profileAt, 2);
    }
    const bool alwaysNew = args.removeAll(QStringLiteral("--immer-neu")) > 0;
    // Mail imports take messages that the folder holds already as well.
    SetMailDuplicatesImported(alwaysNew);
    const QString command = args.value(0);
    if (command == u"dav")
        return RunDavCommand(args.mid(1), out(), err());
    const bool interchange = command == u"import" || command == u"export";
    const bool fits = interchange ? (args.size() == 3 || args.size() == 4) : args.size() == 1;
    if (!fits || command == u"--help" || command == u"help") {
        usage();
        return args.size() == 1 && !interchange ? 0 : 2;
    }
    try {
        if (interchange)
            return RunInterchangeCommand(command, args.at(1), args.at(2), args.value(3), out(), err(),
                                         !alwaysNew);
        return run(command);
    } catch (const StoreError &e) {
        err() << "Fehler: " << e.description() << " (" << e.number() << ")\n";
        return 1;
    } catch (const std::bad_alloc &) {
        err() << "Fehler: Der Arbeitsspeicher reicht nicht aus.\n";
        return 1;
    }
}
