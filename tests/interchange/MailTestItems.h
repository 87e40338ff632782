#pragma once
// Mail tests: a description of an item in words of the store (fields, user
// properties, attachments) and the comparison of two items, so that a round
// trip can be checked field by field with the difference in the message.

#include "interchange/ItemFields.h"
#include "store/StoreTestProfile.h"

#include <QStringList>
#include <QTest>

struct MailFixture {
    QString messageClass = QStringLiteral("IPM.Note");
    QList<std::pair<QString, QVariant>> fields;
    QList<std::tuple<QString, int, QVariant>> userProperties;
    struct File {
        QString fileName;
        QByteArray data;
        bool hidden = false;
        QString displayName;
        QString linkPath; // a link attachment when set
    };
    QList<File> attachments;
};
Q_DECLARE_METATYPE(MailFixture)

inline Item SaveFixture(const MAPIFolder &folder, const MailFixture &fixture)
{
    Item item = folder.Items().Add(fixture.messageClass);
    for (const auto &[name, value] : fixture.fields)
        item.set(name, value);
    for (const auto &[name, type, value] : fixture.userProperties)
        item.UserProperties().Add(name, type).setValue(value);
    for (const MailFixture::File &file : fixture.attachments) {
        Attachment a = file.linkPath.isEmpty()
            ? item.Attachments().AddData(file.data, file.fileName, file.displayName)
            : item.Attachments().Add(file.linkPath, olByReference, 0, file.displayName);
        if (file.hidden)
            a.setHidden(true);
    }
    item.Save();
    return item;
}

// Every difference between two items, one line each; empty when alike.
inline QStringList ItemDifferences(const Item &a, const Item &b)
{
    QStringList out;
    if (a.MessageClass() != b.MessageClass())
        out << QStringLiteral("MessageClass: %1 / %2").arg(a.MessageClass(), b.MessageClass());
    for (const QString &name : a.PropertyNames()) {
        if (name == u"EntryID" || name == u"LastModificationTime")
            continue;
        if (a.get(name) != b.get(name))
            out << QStringLiteral("%1: [%2] / [%3]").arg(name, a.text(name).left(200), b.text(name).left(200));
    }
    const UserProperties pa = a.UserProperties(), pb = b.UserProperties();
    if (pa.Count() != pb.Count())
        out << QStringLiteral("Benutzereigenschaften: %1 / %2").arg(pa.Count()).arg(pb.Count());
    for (int i = 1; i <= qMin(pa.Count(), pb.Count()); ++i) {
        const UserProperty x = pa.Item(i), y = pb.Item(i);
        if (x.Name() != y.Name() || x.Type() != y.Type() || x.Value() != y.Value())
            out << QStringLiteral("Benutzereigenschaft %1: %2/%3/[%4] / %5/%6/[%7]")
                       .arg(i).arg(x.Name()).arg(x.Type()).arg(x.Value().toString())
                       .arg(y.Name()).arg(y.Type()).arg(y.Value().toString());
    }
    const Attachments aa = a.Attachments(), ab = b.Attachments();
    if (aa.Count() != ab.Count())
        out << QStringLiteral("Anlagen: %1 / %2").arg(aa.Count()).arg(ab.Count());
    for (int i = 1; i <= qMin(aa.Count(), ab.Count()); ++i) {
        const Attachment x = aa.Item(i), y = ab.Item(i);
        if (x.FileName() != y.FileName() || x.DisplayName() != y.DisplayName() || x.Type() != y.Type() ||
            x.Content() != y.Content() || x.GetProperty(PR_ATTACHMENT_HIDDEN) != y.GetProperty(PR_ATTACHMENT_HIDDEN) ||
            x.GetProperty(PR_ATTACH_PATHNAME) != y.GetProperty(PR_ATTACH_PATHNAME))
            out << QStringLiteral("Anlage %1: %2 (%3, %4 Byte, versteckt %5) / %6 (%7, %8 Byte, versteckt %9)")
                       .arg(i).arg(x.FileName(), x.DisplayName()).arg(x.Content().size())
                       .arg(x.GetProperty(PR_ATTACHMENT_HIDDEN).toBool())
                       .arg(y.FileName(), y.DisplayName()).arg(y.Content().size())
                       .arg(y.GetProperty(PR_ATTACHMENT_HIDDEN).toBool());
    }
    return out;
}

// "Name Größe versteckt|sichtbar", one per attachment, joined by " + ".
inline QString AttachmentSummary(const Item &item)
{
    QStringList list;
    const Attachments attachments = item.Attachments();
    for (int i = 1; i <= attachments.Count(); ++i) {
        const Attachment a = attachments.Item(i);
        list << QStringLiteral("%1 %2 %3").arg(a.FileName()).arg(a.Size())
                    .arg(a.GetProperty(PR_ATTACHMENT_HIDDEN).toBool() ? QStringLiteral("versteckt") : QStringLiteral("sichtbar"));
    }
    return list.join(QStringLiteral(" + "));
}

// Each "Property=text form" of expected ("VX ...": a user property) must match the item, and its
// attachments must read as given by AttachmentSummary.
inline void CheckItem(const Item &item, const QStringList &expected, const QString &attachments)
{
    for (const QString &check : expected) {
        const QString name = check.section(u'=', 0, 0);
        const QString want = check.section(u'=', 1);
        const QString got = name == u"MessageClass"      ? item.MessageClass()
                            : name.startsWith(QLatin1String("VX ")) ? UserText(item, name) // a user property
                                                                    : item.text(name);
        QVERIFY2(got == want, qPrintable(QStringLiteral("%1: [%2], erwartet [%3]").arg(name, got.left(300), want)));
    }
    QCOMPARE(AttachmentSummary(item), attachments);
}

inline QDateTime At(int year, int month, int day, int hour, int minute, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}
