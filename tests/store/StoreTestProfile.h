#pragma once
// A temporary profile for one test: the current profile folder points into
// a fresh temporary folder while the object lives, and all store faults are
// cleared again when it goes.

#include "store/Store.h"

#include <QLocale>
#include <QTemporaryDir>

class TempProfile
{
public:
    TempProfile() : m_previous(ProfileFolder())
    {
        SetProfileFolder(m_dir.filePath(QStringLiteral("Profil")));
    }
    ~TempProfile()
    {
        StoreFaults::Reset();
        SetProfileFolder(m_previous);
    }
    TempProfile(const TempProfile &) = delete;
    TempProfile &operator=(const TempProfile &) = delete;

    [[nodiscard]] QString folder() const { return m_dir.filePath(QStringLiteral("Profil")); }
    [[nodiscard]] QString scratch(const QString &name) const { return m_dir.filePath(name); }
    // Drops the session, so that the next Application reads the files anew.
    void reopen() const { SetProfileFolder(folder()); }

    [[nodiscard]] static NameSpace ns() { return Application().GetNamespace(); }
    [[nodiscard]] static MAPIFolder folderOf(int type) { return ns().GetDefaultFolder(type); }

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

inline void PinGermanLocale()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}
