// Every run that reads items meets a contact whose stored data is damaged
// (a count or length the bytes cannot hold, data cut short, a date out of
// range): it ends or goes on as after a failed read, with the German message
// in the error log, never crashes, and the damaged bytes stay as they were.
#include "duplicates/DupTestData.h"
#include "duplicates/DupsDel.h"
#include "itemtools/MClassChangeFunctions.h"
#include "names/NameCorrectionFunctions.h"
#include "replace/ReplaceTestStore.h"
#include "restore/UndoFunctions.h"
#include "support/DamagedItem.h"
#include "support/TestSupport.h"
#include "telephone/ContactTelNrRun.h"

#include <QTest>

namespace {

ReplaceUndoLists replaceMueller(const MAPIFolder &contacts)
{
    FixedInputs inputs;
    inputs.options.find = QStringLiteral("Müller");
    inputs.options.replacement = QStringLiteral("Meier");
    inputs.selected = {39};
    ReplaceUndoLists lists;
    lists.folderClass = QStringLiteral("IPM.Contact");
    RunReplace({contacts}, inputs, lists);
    return lists;
}

// Each run over the contacts folder; prepare runs before the damage (what
// the run needs to find there), the run after it.
struct RunCase {
    const char *name;
    std::function<void(const MAPIFolder &)> prepare;
    std::function<void(const MAPIFolder &)> run;
};

const QList<RunCase> &runCases()
{
    static ReplaceUndoLists lists;
    static const QList<RunCase> cases = {
        {"Telefonnummern", {}, [](const MAPIFolder &f) { RunContactTelNrOn({f}, false); }},
        {"Namen", {}, [](const MAPIFolder &f) { CorrectNamesInFolders({f}); }},
        {"Ersetzen", {}, [](const MAPIFolder &f) { replaceMueller(f); }},
        {"Ersetzen rückgängig", [](const MAPIFolder &f) { lists = replaceMueller(f); },
         [](const MAPIFolder &) { UndoReplace(lists); }},
        {"Sicherungen zurück", [](const MAPIFolder &f) { RunContactTelNrOn({f}, false); },
         [](const MAPIFolder &f) { RestoreContactBackupsIn({f}, f.Items().Count(), QStringLiteral("Telephone")); }},
        {"Nachrichtenklasse", {}, [](const MAPIFolder &f) { ChangeFolderClass(f, QStringLiteral("Kunde")); }},
        {"Duplikate", {},
         [](const MAPIFolder &f) {
             const DupItemType &type = DupTypeOf(DupKind::Contact);
             SwitchOnly(type, {"KontakteLastName"});
             (void)SearchDuplicates(type, ReadDupSwitches(type), SelectionOf({f}));
         }},
    };
    return cases;
}

} // namespace

class tst_DamagedItemRuns : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { PinGermanLocale(); }
    void runRefusesDamagedItem_data();
    void runRefusesDamagedItem();
};

void tst_DamagedItemRuns::runRefusesDamagedItem_data()
{
    QTest::addColumn<int>("run");
    QTest::addColumn<int>("damage");
    for (int r = 0; r < runCases().size(); ++r)
        for (const auto &[name, damage] : ItemDamages())
            QTest::addRow("%s, %s", runCases().at(r).name, name) << r << int(damage);
}

void tst_DamagedItemRuns::runRefusesDamagedItem()
{
    QFETCH(int, run);
    QFETCH(int, damage);
    const RunCase &c = runCases().at(run);
    TestEnvironment env;
    TempProfile profile;
    MessageRecorder boxes;
    QString damagedId;
    for (const QString &name : {QStringLiteral("Hans Müller"), QStringLiteral("Hanna Müller")}) {
        Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
        contact.set(QStringLiteral("FullName"), name);
        contact.set(QStringLiteral("BusinessTelephoneNumber"), QStringLiteral("030 1234567"));
        contact.Save();
        damagedId = contact.EntryID();
    }
    if (c.prepare)
        c.prepare(TempProfile::folderOf(olFolderContacts));
    const QByteArray stored = DamageItemData(damagedId, ItemDamage(damage));
    c.run(TempProfile::folderOf(olFolderContacts));
    QVERIFY2(env.readLog().contains(QStringLiteral("Die Daten eines Elements sind beschädigt.")), qPrintable(env.readLog()));
    profile.reopen();
    QCOMPARE(StoredItemData(damagedId), stored);
}

QTEST_MAIN(tst_DamagedItemRuns)
#include "tst_damageditemruns.moc"
