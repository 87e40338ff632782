#pragma once
// Mail with attachments in a real temporary profile, the export folder, and
// reading back what the store and the disk hold.

#include "frame/RegistryFunctions.h"
#include "store/Store.h"
#include "support/SelectionFixture.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

struct AttachmentSample {
    QString fileName;
    QByteArray content;
    bool hidden = false;
};

// Bytes of every value, in an order given by the seed.
inline QByteArray SampleBytes(int size, quint32 seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator(seed);
    for (char &b : bytes)
        b = char(generator.bounded(256));
    return bytes;
}

inline QByteArray ReadWholeFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void WriteWholeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(path));
    QCOMPARE(file.write(content), content.size());
}

// The content of an attachment, through the store's own export.
inline QByteArray AttachmentBytes(const Attachment &attachment, const QString &scratchFolder)
{
    const QString path = QDir(scratchFolder).filePath(QStringLiteral("anlage.bin"));
    QFile::remove(path);
    attachment.SaveAsFile(path);
    return ReadWholeFile(path);
}

class AttachmentFixture : public SelectionFixture
{
public:
    AttachmentFixture()
    {
        exportFolder = QDir(environment.folder()).filePath(QStringLiteral("Anlagen"));
        QDir().mkpath(exportFolder);
        scratch = QDir(environment.folder()).filePath(QStringLiteral("scratch"));
        QDir().mkpath(scratch);
        SaveSetting(QStringLiteral("AttPath"), exportFolder);
        SaveSetting(QStringLiteral("AttSize"), QStringLiteral("0"));
    }

    // A saved mail (or post, by the message class) in the folder.
    static Item addMail(const QString &folderPath, const QString &subject, const QList<AttachmentSample> &samples,
                        const QString &messageClass = QStringLiteral("IPM.Note"))
    {
        Item mail = folder(folderPath).Items().Add(messageClass);
        mail.setSubject(subject);
        Attachments attachments = mail.Attachments();
        for (const AttachmentSample &entry : samples) {
            Attachment added = attachments.AddData(entry.content, entry.fileName);
            if (entry.hidden)
                added.setHidden(true);
        }
        mail.Save();
        return mail;
    }

    // The item as the file holds it: the session is dropped and the item
    // fetched anew.
    Item reread(const Item &item) const
    {
        const QString id = item.EntryID();
        SetProfileFolder(profile.path());
        return Application().GetNamespace().GetItemFromID(id);
    }

    QString exported(const QString &name) const { return QDir(exportFolder).filePath(name); }

    QStringList exportedFiles() const
    {
        return QDir(exportFolder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QString exportFolder;
    QString scratch;
};

// Type, display name and path (or content) of each attachment, in order, in
// one text per attachment: "4 Bericht.pdf -> /.../Bericht.pdf", "1 a.txt".
inline QStringList DescribeAttachments(const Item &item)
{
    QStringList result;
    const Attachments attachments = item.Attachments();
    for (int i = 1; i <= attachments.Count(); ++i) {
        const Attachment a = attachments.Item(i);
        QString text = QString::number(a.Type()) + u' ' + a.DisplayName();
        if (a.Type() == olByReference)
            text += QStringLiteral(" -> ") + QFileInfo(a.GetProperty(PR_ATTACH_PATHNAME).toString()).fileName();
        result << text;
    }
    return result;
}
