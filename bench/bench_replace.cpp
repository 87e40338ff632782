// Find and replace over a contact folder of a temporary profile: the run
// over three fields of 2,000 contacts (every one changes and is saved), the
// undo of that run, and a pass that only reads the same fields, as the floor
// a run cannot go below. Also newString alone over 1,000,000 values.
// Prints medians of five repetitions and the ratios to the read pass.
#include "frame/GlobalFunctions.h"
#include "replace/ReplaceRun.h"
#include "store/Store.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kContacts = 2000;
constexpr int kRepeats = 5;

class Inputs : public ReplaceRunInputs
{
public:
    ReplaceOptions options;
    [[nodiscard]] ReplaceOptions replaceOptions() const override { return options; }
    [[nodiscard]] bool isFieldSelected(int index) const override
    {
        return index == 39 || index == 45 || index == 87; // LastName, Body, CompanyName
    }
};

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void fill(const MAPIFolder &contacts)
{
    for (int i = 0; i < kContacts; ++i) {
        Item item = contacts.Items().Add(olContact);
        item.set(QStringLiteral("FirstName"), QStringLiteral("Anna %1").arg(i));
        item.set(QStringLiteral("LastName"), QStringLiteral("Müller"));
        item.set(QStringLiteral("CompanyName"), QStringLiteral("Müller & Söhne GmbH"));
        item.set(QStringLiteral("Body"), QStringLiteral("Kundin seit 2004.\r\nAnsprechpartner Herr Müller, Einkauf."));
        item.Save();
    }
}

double readPass(const MAPIFolder &contacts)
{
    QElapsedTimer timer;
    timer.start();
    qsizetype characters = 0;
    const Items items = contacts.Items();
    for (int i = 1; i <= items.Count(); ++i) {
        const Item item = items.Item(i);
        for (const char *name : {"LastName", "Body", "CompanyName"})
            characters += item.text(QString::fromLatin1(name)).size();
    }
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    return characters > 0 ? ms : -1;
}

double newStringPass()
{
    ReplaceOptions options;
    options.find = QStringLiteral("MÜLLER");
    options.replacement = QStringLiteral("Meier");
    const QString value = QStringLiteral("Ansprechpartner Herr Müller, Einkauf");
    QElapsedTimer timer;
    timer.start();
    qsizetype total = 0;
    for (int i = 0; i < 1000000; ++i)
        total += newString(options, value).size();
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    return total > 0 ? ms : -1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    SetProgramFolder(dir.path());
    SetProfileFolder(dir.filePath(QStringLiteral("Profil")));
    SetMessageHandler([](const MessageRequest &) { return int(AnswerOk); });
    const MAPIFolder contacts = Application().GetNamespace().GetDefaultFolder(olFolderContacts);
    fill(contacts);

    QList<double> reads, runs, undos, strings;
    for (int r = 0; r < kRepeats; ++r) {
        reads << readPass(contacts);
        Inputs inputs;
        inputs.options.find = QStringLiteral("MÜLLER");
        inputs.options.replacement = QStringLiteral("Meier");
        ReplaceUndoLists lists;
        lists.folderClass = QStringLiteral("IPM.Contact");
        QElapsedTimer timer;
        timer.start();
        const ReplaceRunOutcome outcome = RunReplace({contacts}, inputs, lists);
        runs << double(timer.nsecsElapsed()) / 1e6;
        timer.restart();
        UndoReplace(lists);
        undos << double(timer.nsecsElapsed()) / 1e6;
        strings << newStringPass();
        if (outcome.changes != 3 * kContacts) {
            std::fprintf(stderr, "unexpected change count %d\n", outcome.changes);
            return 1;
        }
    }

    const double read = median(reads), run = median(runs), undo = median(undos);
    std::printf("contacts: %d, three fields each, medians of %d\n", kContacts, kRepeats);
    std::printf("read pass:   %8.1f ms  (%.3f ms per contact)\n", read, read / kContacts);
    std::printf("replace run: %8.1f ms  (%.3f ms per contact, %.1f x read pass)\n", run, run / kContacts,
                run / read);
    std::printf("undo:        %8.1f ms  (%.3f ms per record, %.1f x read pass)\n", undo, undo / (3 * kContacts),
                undo / read);
    std::printf("newString:   %8.1f ms per 1,000,000 values\n", median(strings));
    return 0;
}
