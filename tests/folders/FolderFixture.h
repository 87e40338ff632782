#pragma once
// A real temporary profile for the folder tests, with helpers to find
// folders by path, fill them with items and read the tree back.

#include "controls/NodeTree.h"
#include "folders/FolderState.h"
#include "store/Store.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

class FolderProfile
{
public:
    FolderProfile()
        : m_previous(ProfileFolder())
    {
        QStandardPaths::setTestModeEnabled(true);
        SetProfileFolder(m_dir.filePath(QStringLiteral("Profil")));
        CreateProfile();
    }
    ~FolderProfile()
    {
        StoreFaults::Reset();
        SetProfileFolder(m_previous);
    }
    FolderProfile(const FolderProfile &) = delete;
    FolderProfile &operator=(const FolderProfile &) = delete;

    [[nodiscard]] QString path() const { return m_dir.filePath(QStringLiteral("Profil")); }

    // "Persönliche Ordner/Kontakte/Familie": a store root, then folder names.
    static MAPIFolder folder(const QString &path)
    {
        const QStringList parts = path.split(QLatin1Char('/'));
        MAPIFolder current = Application().GetNamespace().Folders().Item(parts.first());
        for (qsizetype i = 1; i < parts.size(); ++i)
            current = current.Folders().Item(parts.at(i));
        return current;
    }

    // Saves count new items of the folder's default class.
    static void addItems(const MAPIFolder &folder, int count)
    {
        for (int i = 0; i < count; ++i) {
            Item item = folder.Items().Add();
            item.setSubject(QStringLiteral("Eintrag %1").arg(i + 1));
            item.Save();
        }
    }

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

// The node of the tree whose text path ("Persönliche Ordner/Kontakte") is
// given; 0 when there is none.
inline int nodeOfPath(const NodeTree &tree, const QString &path)
{
    for (int i = 1; i <= tree.nodeCount(); ++i) {
        QStringList parts;
        for (const QTreeWidgetItem *item = tree.node(i); item; item = item->parent())
            parts.prepend(item->text(0));
        if (parts.join(QLatin1Char('/')) == path)
            return i;
    }
    return 0;
}
