#include "frame/Main.h"

#include "controls/ItemView.h"
#include "frame/GlobalFunctions.h"
#include "frame/RegistryFunctions.h"
#include "frame/frmHaupt.h"
#include "frame/frmSplash.h"

#include <QApplication>
#include <QScreen>
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

    splash.close();
    haupt->show();
    return haupt;
}

void EndProcess()
{
    std::fflush(nullptr);
    std::_Exit(0);
}
