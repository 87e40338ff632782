// The contact telephone run over a real temporary store: fields changed and
// backed up, the fax rule with and without HideFax, unchanged contacts
// neither saved nor counted, other items skipped, the country restriction,
// the status line and progress, and a failing save that ends the run with
// error 802 while what was saved before stays saved.
#include "support/RecordingRunHost.h"
#include "restore/BackupFunctions.h"
#include "store/StoreTestProfile.h"
#include "support/TelSampleDb.h"
#include "support/TestSupport.h"
#include "frame/RegistryFunctions.h"
#include "frame/RunHost.h"
#include "telephone/ContactTelNrRun.h"

#include <QTest>

using Fields = QList<QPair<QString, QString>>;
Q_DECLARE_METATYPE(Fields)

namespace {


// The backup of field on the stored contact, or "<keine>".
QString backupOf(const Item &contact, const QString &field)
{
    const UserProperty property = contact.UserProperties().Find(BackupPropertyName(field));
    return property.isNull() ? QStringLiteral("<keine>") : property.Value().toString();
}

} // namespace

class tst_ContactTelNrRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { PinGermanLocale(); }
    void init();
    void cleanup();
    void oneField_data();
    void oneField();
    void unchangedContactsNotSavedNorCounted();
    void otherItemsMoveOnlyTheProgress();
    void secondRunChangesNothing();
    void countryRestriction_data();
    void countryRestriction();
    void failingSaveEndsWith802();
    void everyFieldInOrder();

private:
    Item addContact(const MAPIFolder &folder, const Fields &fields);
    // The contact as it lies in the store, read from a fresh session.
    Item stored(const QString &entryId);
    [[nodiscard]] MAPIFolder contacts() const { return TempProfile::folderOf(olFolderContacts); }

    TestEnvironment *m_env = nullptr;
    TempProfile *m_profile = nullptr;
    MessageRecorder *m_boxes = nullptr;
    RecordingRunHost m_host;
};

void tst_ContactTelNrRun::init()
{
    m_env = new TestEnvironment(false, false);
    CopyDefaultSettings(*m_env);
    QVERIFY(WriteSampleTelDb(m_env->folder()));
    m_profile = new TempProfile;
    m_boxes = new MessageRecorder;
    m_host = RecordingRunHost();
    SetRunHost(&m_host);
}

void tst_ContactTelNrRun::cleanup()
{
    SetRunHost(nullptr);
    delete m_boxes;
    delete m_profile;
    delete m_env;
}

Item tst_ContactTelNrRun::addContact(const MAPIFolder &folder, const Fields &fields)
{
    Item contact = folder.Items().Add();
    for (const auto &[name, value] : fields)
        contact.set(name, value);
    contact.Save();
    return contact;
}

Item tst_ContactTelNrRun::stored(const QString &entryId)
{
    m_profile->reopen();
    return TempProfile::ns().GetItemFromID(entryId);
}

void tst_ContactTelNrRun::oneField_data()
{
    QTest::addColumn<Fields>("settings");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("input");
    QTest::addColumn<bool>("hideFax");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("backup");
    const Fields none;
    const QString noBackup = QStringLiteral("<keine>");
    QTest::newRow("Telefon geschäftlich") << none << "BusinessTelephoneNumber" << "030 / 123 45-6" << false
                                          << "+49 (30) 12345-6" << "030 / 123 45-6";
    QTest::newRow("letztes Feld TTY/TDD") << none << "TTYTDDTelephoneNumber" << "0221/123-45" << false
                                          << "+49 (221) 123-45" << "0221/123-45";
    QTest::newRow("schon in Normalform") << none << "HomeTelephoneNumber" << "+49 (30) 1234567" << false
                                         << "+49 (30) 1234567" << noBackup;
    QTest::newRow("nicht auflösbar") << none << "MobileTelephoneNumber" << "1234567" << false << "1234567" << noBackup;
    QTest::newRow("Telefonfeld behält kein Fax-Präfix") << none << "PagerNumber" << "Fax: 030 1234" << true
                                                        << "+49 (30) 1234" << "Fax: 030 1234";
    QTest::newRow("Fax ohne HideFax") << none << "BusinessFaxNumber" << "030 1234" << false << "+49 (30) 1234"
                                      << "030 1234";
    QTest::newRow("HideFax setzt Präfix") << none << "HomeFaxNumber" << "030 1234" << true << "Fax: +49 (30) 1234"
                                          << "030 1234";
    QTest::newRow("HideFax, unauflösbar") << none << "OtherFaxNumber" << "1234567" << true << "Fax: 1234567"
                                          << "1234567";
    QTest::newRow("HideFax, schon mit Präfix") << none << "BusinessFaxNumber" << "Fax: +49 (30) 1234" << true
                                               << "Fax: +49 (30) 1234" << noBackup;
    QTest::newRow("HideFax, Präfix und unauflösbar") << none << "BusinessFaxNumber" << "Fax: 1234567" << true
                                                     << "Fax: 1234567" << noBackup;
    QTest::newRow("HideFax, leeres Feld") << none << "HomeFaxNumber" << "" << true << "" << noBackup;
    QTest::newRow("HideFax aus nimmt Präfix ab") << none << "OtherFaxNumber" << "Fax: +49 (30) 1234" << false
                                                 << "+49 (30) 1234" << "Fax: +49 (30) 1234";
    QTest::newRow("HideFax aus, unauflösbar mit Präfix") << none << "HomeFaxNumber" << "Fax: 1234567" << false
                                                         << "1234567" << "Fax: 1234567";
    const Fields onlySwiss{{"FilterTel", "1"}, {"FilterCountry", "1"}, {"FilterCountryStr", "41"}};
    QTest::newRow("Filter hält Fax fern, Präfix kommt") << onlySwiss << "BusinessFaxNumber" << "030 1234" << true
                                                        << "Fax: 030 1234" << "030 1234";
    QTest::newRow("Filter hält Telefon fern") << onlySwiss << "BusinessTelephoneNumber" << "030 1234" << true
                                              << "030 1234" << noBackup;
}

void tst_ContactTelNrRun::oneField()
{
    QFETCH(Fields, settings);
    QFETCH(QString, field);
    QFETCH(QString, input);
    QFETCH(bool, hideFax);
    QFETCH(QString, expected);
    QFETCH(QString, backup);
    for (const auto &[name, value] : settings)
        SaveSetting(name, value);
    const QString entryId = addContact(contacts(), {{"LastName", "Muster"}, {field, input}}).EntryID();
    const int changed = RunContactTelNrOn({contacts()}, hideFax);
    const bool changes = backup != QStringLiteral("<keine>");
    QCOMPARE(changed, changes ? 1 : 0);
    QCOMPARE(m_boxes->last().prompt, QStringLiteral("%1 Kontakt(e) geändert.").arg(changed));
    QCOMPARE(m_boxes->last().title, QStringLiteral("Fertig!"));
    QCOMPARE(m_boxes->last().buttons, int(MsgInformation));
    const Item contact = stored(entryId);
    QCOMPARE(contact.text(field), expected);
    QCOMPARE(backupOf(contact, field), backup);
    QCOMPARE(contact.UserProperties().Count(), changes ? 1 : 0);
}

void tst_ContactTelNrRun::unchangedContactsNotSavedNorCounted()
{
    const Item normal = addContact(contacts(), {{"LastName", "Normal"}, {"HomeTelephoneNumber", "+49 (30) 1234"}});
    const Item empty = addContact(contacts(), {{"LastName", "Leer"}});
    const Item local = addContact(contacts(), {{"LastName", "Ort"}, {"HomeTelephoneNumber", "1234"}});
    addContact(contacts(), {{"LastName", "Neu"}, {"HomeTelephoneNumber", "030 555"}});
    // A save of any of the first three would fail the run.
    for (const Item &untouched : {normal, empty, local})
        StoreFaults::FailItem(untouched.EntryID(), StoreFaults::FailSave);
    QCOMPARE(RunContactTelNrOn({contacts()}, false), 1);
    QCOMPARE(m_boxes->count(), 1);
    QCOMPARE(m_host.progressMaxima, QList<int>{4});
    QCOMPARE(m_host.progressValues, (QList<int>{1, 2, 3, 4, 0}));
    QCOMPARE(m_host.statusTexts, (QStringList{"Bearbeite Kontakt 1 von 4 (Kontakte)", "Bearbeite Kontakt 2 von 4 (Kontakte)",
                                              "Bearbeite Kontakt 3 von 4 (Kontakte)", "Bearbeite Kontakt 4 von 4 (Kontakte)",
                                              "Bereit"}));
    QVERIFY(!m_host.running);
    QCOMPARE(m_host.runningChanges, 2);
}

void tst_ContactTelNrRun::otherItemsMoveOnlyTheProgress()
{
    addContact(contacts(), {{"HomeTelephoneNumber", "030 1"}});
    Item list = contacts().Items().Add(olDistributionList);
    list.setSubject(QStringLiteral("Verteiler"));
    list.Save();
    addContact(contacts(), {{"HomeTelephoneNumber", "030 2"}});
    QCOMPARE(RunContactTelNrOn({contacts()}, false), 2);
    QCOMPARE(m_host.progressValues.mid(0, 3), (QList<int>{1, 2, 3}));
    QCOMPARE(m_host.statusTexts.mid(0, 2),
             (QStringList{"Bearbeite Kontakt 1 von 3 (Kontakte)", "Bearbeite Kontakt 3 von 3 (Kontakte)"}));
    QCOMPARE(stored(list.EntryID()).UserProperties().Count(), 0);
}

void tst_ContactTelNrRun::secondRunChangesNothing()
{
    const QString entryId = addContact(contacts(), {{"HomeTelephoneNumber", "030 1234"},
                                                    {"BusinessFaxNumber", "0221 55"}}).EntryID();
    QCOMPARE(RunContactTelNrOn({contacts()}, true), 1);
    StoreFaults::FailItem(entryId, StoreFaults::FailSave);
    QCOMPARE(RunContactTelNrOn({contacts()}, true), 0);
    QCOMPARE(m_boxes->last().prompt, QStringLiteral("0 Kontakt(e) geändert."));
    const Item contact = stored(entryId);
    QCOMPARE(contact.text("BusinessFaxNumber"), QStringLiteral("Fax: +49 (221) 55"));
    QCOMPARE(backupOf(contact, "HomeTelephoneNumber"), QStringLiteral("030 1234"));
    QCOMPARE(backupOf(contact, "BusinessFaxNumber"), QStringLiteral("0221 55"));
}

void tst_ContactTelNrRun::countryRestriction_data()
{
    QTest::addColumn<Fields>("settings");
    QTest::addColumn<QStringList>("changedNames");
    const QStringList all{"Abidjan", "Berlin", "Zürich", "Ohne"};
    QTest::newRow("Land mit Apostroph") << Fields{{"FilterTel", "1"}, {"CountryFilter", "1"},
                                                  {"CountryFilterText", "Côte d'Ivoire"}}
                                        << QStringList{"Abidjan"};
    QTest::newRow("Land in der Geschäftsadresse") << Fields{{"FilterTel", "1"}, {"CountryFilter", "1"},
                                                            {"CountryFilterText", "Deutschland"}}
                                                  << QStringList{"Berlin"};
    QTest::newRow("Land in der weiteren Adresse") << Fields{{"FilterTel", "1"}, {"CountryFilter", "1"},
                                                            {"CountryFilterText", "Schweiz"}}
                                                  << QStringList{"Zürich"};
    QTest::newRow("kein Kontakt passt") << Fields{{"FilterTel", "1"}, {"CountryFilter", "1"},
                                                  {"CountryFilterText", "Frankreich"}}
                                        << QStringList{};
    QTest::newRow("Filter aus") << Fields{{"FilterTel", "0"}, {"CountryFilter", "1"},
                                          {"CountryFilterText", "Deutschland"}}
                                << all;
    QTest::newRow("Länderfilter aus") << Fields{{"FilterTel", "1"}, {"CountryFilter", "0"},
                                                {"CountryFilterText", "Deutschland"}}
                                      << all;
}

void tst_ContactTelNrRun::countryRestriction()
{
    QFETCH(Fields, settings);
    QFETCH(QStringList, changedNames);
    for (const auto &[name, value] : settings)
        SaveSetting(name, value);
    QHash<QString, QString> ids;
    ids["Abidjan"] = addContact(contacts(), {{"LastName", "Abidjan"}, {"HomeAddressCountry", "Côte d'Ivoire"},
                                             {"HomeTelephoneNumber", "030 1"}}).EntryID();
    ids["Berlin"] = addContact(contacts(), {{"LastName", "Berlin"}, {"BusinessAddressCountry", "Deutschland"},
                                            {"HomeTelephoneNumber", "030 2"}}).EntryID();
    ids["Zürich"] = addContact(contacts(), {{"LastName", "Zürich"}, {"OtherAddressCountry", "Schweiz"},
                                            {"HomeTelephoneNumber", "030 3"}}).EntryID();
    ids["Ohne"] = addContact(contacts(), {{"LastName", "Ohne"}, {"HomeTelephoneNumber", "030 4"}}).EntryID();
    QCOMPARE(RunContactTelNrOn({contacts()}, false), changedNames.size());
    QCOMPARE(m_host.progressMaxima, QList<int>{int(changedNames.size())});
    for (auto it = ids.cbegin(); it != ids.cend(); ++it) {
        const bool changed = changedNames.contains(it.key());
        QCOMPARE(stored(it.value()).text("HomeTelephoneNumber").startsWith(QStringLiteral("+49 (30) ")), changed);
    }
}

void tst_ContactTelNrRun::failingSaveEndsWith802()
{
    const QString first = addContact(contacts(), {{"HomeTelephoneNumber", "030 1"}}).EntryID();
    const QString second = addContact(contacts(), {{"HomeTelephoneNumber", "030 2"}}).EntryID();
    const QString third = addContact(contacts(), {{"HomeTelephoneNumber", "030 3"}}).EntryID();
    StoreFaults::FailItem(second, StoreFaults::FailSave);
    QCOMPARE(RunContactTelNrOn({contacts()}, false), -1);
    QCOMPARE(m_boxes->count(), 1);
    QVERIFY2(m_boxes->last().prompt.contains(QStringLiteral("Nr.: 802")), qPrintable(m_boxes->last().prompt));
    QCOMPARE(m_boxes->last().title, QStringLiteral("Fehler!"));
    QVERIFY(m_env->readLog().contains(QStringLiteral("Sub: 802")));
    QVERIFY(!m_host.running);
    QCOMPARE(m_host.statusText, QStringLiteral("Bereit"));
    QCOMPARE(m_host.progressValue, 0);
    StoreFaults::Reset();
    QCOMPARE(stored(first).text("HomeTelephoneNumber"), QStringLiteral("+49 (30) 1"));
    QCOMPARE(backupOf(stored(first), "HomeTelephoneNumber"), QStringLiteral("030 1"));
    QCOMPARE(stored(second).text("HomeTelephoneNumber"), QStringLiteral("030 2"));
    QCOMPARE(stored(second).UserProperties().Count(), 0);
    QCOMPARE(stored(third).text("HomeTelephoneNumber"), QStringLiteral("030 3"));
}

void tst_ContactTelNrRun::everyFieldInOrder()
{
    Fields fields;
    const QStringList all = FaxNumberFields() + PlainNumberFields();
    QCOMPARE(all.size(), 19);
    for (int i = 0; i < all.size(); ++i)
        fields.append({all.at(i), QStringLiteral("030 %1").arg(100 + i)});
    const QString entryId = addContact(contacts(), fields).EntryID();
    QCOMPARE(RunContactTelNrOn({contacts()}, false), 1);
    const Item contact = stored(entryId);
    QCOMPARE(contact.UserProperties().Count(), 19);
    for (int i = 0; i < all.size(); ++i) {
        QCOMPARE(contact.text(all.at(i)), QStringLiteral("+49 (30) %1").arg(100 + i));
        // Backups are added in the order the fields are handled.
        QCOMPARE(contact.UserProperties().Item(i + 1).Name(), BackupPropertyName(all.at(i)));
    }
}

QTEST_MAIN(tst_ContactTelNrRun)
#include "tst_contacttelnrrun.moc"
