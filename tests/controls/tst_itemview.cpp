// The item view behind Inspector::Display.
#include "controls/ItemView.h"
#include "store/StoreTestProfile.h"

#include <QApplication>
#include <QTableWidget>
#include <QtTest>

namespace {

QMap<QString, QString> rowsOf(const ItemView &view)
{
    QMap<QString, QString> rows;
    for (int r = 0; r < view.table()->rowCount(); ++r)
        rows.insert(view.table()->item(r, 0)->text(), view.table()->item(r, 1)->text());
    return rows;
}

} // namespace

class tst_ItemView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { PinGermanLocale(); }
    void listsFieldsWithValuesUserPropertiesAndAttachments();
    void displayOpensTheViewAndFailuresReachTheCaller();
};

void tst_ItemView::listsFieldsWithValuesUserPropertiesAndAttachments()
{
    TempProfile profile;
    Item contact = TempProfile::folderOf(olFolderContacts).Items().Add();
    contact.set(QStringLiteral("FullName"), QStringLiteral("Dr. Hans-Peter Müller"));
    contact.set(QStringLiteral("BusinessAddress"), QStringLiteral("Leopoldstr. 12\r\n80802 München"));
    contact.set(QStringLiteral("Birthday"), QStringLiteral("14.03.1961"));
    contact.setSubject(QStringLiteral("Hans-Peter Müller"));
    contact.UserProperties().Add(QStringLiteral("VX Backup Fullname"), olText).setValue(QStringLiteral("Müller, Hans"));
    contact.Attachments().AddData(QByteArray(2048, 'x'), QStringLiteral("Visitenkarte.vcf"));
    contact.Save();
    const ItemView view(contact);
    const QMap<QString, QString> rows = rowsOf(view);
    QCOMPARE(view.windowTitle(), QStringLiteral("Kontakt: Hans-Peter Müller"));
    QCOMPARE(rows.value("Title"), QStringLiteral("Dr."));
    QCOMPARE(rows.value("BusinessAddress"), QStringLiteral("Leopoldstr. 12 / 80802 München"));
    QCOMPARE(rows.value("Birthday"), QStringLiteral("14.03.1961"));
    QCOMPARE(rows.value("VX Backup Fullname"), QStringLiteral("Müller, Hans"));
    QVERIFY(rows.value("Anlage 1").startsWith(QStringLiteral("Visitenkarte.vcf (2")));
    QVERIFY(!rows.contains("HomeAddress")); // empty fields are left out
    QVERIFY(!rows.contains("Anniversary"));
    if (qEnvironmentVariableIsSet("VARNEX_GRAB"))
        const_cast<ItemView &>(view).grab().save(qEnvironmentVariable("VARNEX_GRAB"));
}

void tst_ItemView::displayOpensTheViewAndFailuresReachTheCaller()
{
    TempProfile profile;
    InstallItemView();
    Item note = TempProfile::folderOf(olFolderNotes).Items().Add();
    note.setBody(QStringLiteral("Einkaufen\r\nMilch"));
    note.Save();
    note.GetInspector().Display();
    ItemView *shown = nullptr;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *v = qobject_cast<ItemView *>(w); v && v->isVisible())
            shown = v;
    QVERIFY(shown);
    QCOMPARE(shown->windowTitle(), QStringLiteral("Notiz: Einkaufen"));
    shown->close();
    StoreFaults::FailItem(note.EntryID(), StoreFaults::FailRead);
    QVERIFY_THROWS_EXCEPTION(StoreError, note.GetInspector().Display());
    SetInspectorHandler(nullptr);
}

QTEST_MAIN(tst_ItemView)
#include "tst_itemview.moc"
