#include "frame/Main.h"

#include "controls/ItemView.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/frmHaupt.h"
#include "frame/MainGeometry.h"
#include "frame/frmSplash.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QScreen>
#include <QTimer>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>

frmHaupt *Main()
{
    InitDefaultSettings();
    // Inspector::Display opens the read-only item view (the duplicate panel's
    // "Element anzeigen").
    InstallItemView();

    frmSplash splash;
    splash.show();
    if (QScreen *screen = QGuiApplication::primaryScreen())
        splash.move(screen->availableGeometry().center() - splash.rect().center());
    QCoreApplication::processEvents();

    auto *haupt = new frmHaupt;
    haupt->setAttribute(Qt::WA_DeleteOnClose);
    haupt->load();
    RestoreMainGeometry(*haupt, QSize(1280, 800));

    splash.close();
    haupt->show();
    // The window manager adds its frame after the window is shown.
    QTimer::singleShot(300, haupt, [haupt] { KeepFrameOnScreen(*haupt); });
    return haupt;
}

bool LoadQtGermanTranslations()
{
    static QTranslator *translator = nullptr;
    if (translator)
        return true;
    auto *candidate = new QTranslator(qApp);
    // Chosen by name, not by the user's locale: the whole interface is German.
    if (!candidate->load(QStringLiteral("qtbase_de"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete candidate;
        return false;
    }
    QCoreApplication::installTranslator(candidate);
    translator = candidate;
    return true;
}

void EndProcess()
{
    std::fflush(nullptr);
    std::_Exit(0);
}
