#pragma once
// Helpers of the import and export tests: the differences between two
// items (every property and user property), files written for a test, and
// a run of one format into a fresh folder.

#include "interchange/Interchange.h"
#include "store/StoreTestProfile.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTest>

// The properties in which the copy differs from the original, as
// "Name: original | copy". Identity and modification time are the copy's
// own; the user property "VX UID" is the identity the copy keeps of its
// original.
inline QStringList ItemDifferences(const Item &original, const Item &copy)
{
    QStringList diffs;
    if (original.MessageClass() != copy.MessageClass())
        diffs << QStringLiteral("MessageClass: %1 | %2").arg(original.MessageClass(), copy.MessageClass());
    for (const QString &name : original.PropertyNames()) {
        if (name == u"EntryID" || name == u"LastModificationTime")
            continue;
        QVariant a = original.get(name), b = copy.get(name);
        if (a.typeId() == QMetaType::QDateTime) {
            a = a.toDateTime().toMSecsSinceEpoch();
            b = b.toDateTime().toMSecsSinceEpoch();
        }
        if (a != b)
            diffs << QStringLiteral("%1: %2 | %3").arg(name, original.text(name).left(60), copy.text(name).left(60));
    }
    auto userProps = [](const Item &item) {
        QMap<QString, QString> map;
        const UserProperties props = item.UserProperties();
        for (int i = 1; i <= props.Count(); ++i) {
            const UserProperty p = props.Item(i);
            if (p.Name() != QLatin1String(UidProperty))
                map.insert(p.Name(), QString::number(p.Type()) + u'=' + p.Value().toString());
        }
        return map;
    };
    const auto ua = userProps(original), ub = userProps(copy);
    if (ua != ub)
        diffs << QStringLiteral("Benutzereigenschaften: %1 | %2")
                     .arg(QStringList(ua.keyBegin(), ua.keyEnd()).join(u','), QStringList(ub.keyBegin(), ub.keyEnd()).join(u','));
    return diffs;
}

// The item of the folder whose property has the value; a null item when none.
inline Item FindByText(const MAPIFolder &folder, const QString &property, const QString &value)
{
    for (const Item &item : folder.Items())
        if (item.text(property) == value)
            return item;
    return {};
}

// The copy of an exported item: the item that keeps its EntryID as "VX UID".
inline Item FindCopyOf(const MAPIFolder &folder, const Item &original)
{
    for (const Item &item : folder.Items())
        if (UserText(item, QLatin1String(UidProperty)) == original.EntryID())
            return item;
    return {};
}

inline QString WriteTestFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

inline QByteArray ReadTestFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Imports the path with the format into a new subfolder of the default
// folder of folderType and returns the folder.
inline MAPIFolder ImportInto(const QString &format, const QString &path, const QString &folderName,
                             InterchangeReport &report, int folderType)
{
    const MAPIFolder parent = Application().GetNamespace().GetDefaultFolder(folderType);
    const MAPIFolder target = parent.Folders().Add(folderName);
    FindInterchangeFormat(format)->importer(path, target, report);
    return target;
}

// The body of a damaged-input test: the current row's "file" is imported
// with the format into a new folder "Fremd"; "read" and "imported" are the
// expected counts, and each skip must contain its part of "skipParts", in
// order. Returns the folder for checks of what came through.
inline MAPIFolder ImportDamagedRow(const QString &format, const QString &fileName, int folderType, TempProfile &profile)
{
    QFETCH(QByteArray, file);
    QFETCH(int, read);
    QFETCH(int, imported);
    QFETCH(QStringList, skipParts);
    InterchangeReport report;
    const QString path = WriteTestFile(profile.scratch(fileName), file);
    const MAPIFolder folder = ImportInto(format, path, QStringLiteral("Fremd"), report, folderType);
    [&] {
        QCOMPARE(report.read, read);
        QCOMPARE(report.imported, imported);
        QCOMPARE(report.skipped.size(), skipParts.size());
        for (int i = 0; i < skipParts.size(); ++i)
            QVERIFY2(report.skipped[i].contains(skipParts[i]), qPrintable(report.skipped[i]));
    }();
    return folder;
}
