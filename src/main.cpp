#include "controls/MessageBox.h"
#include "frame/GlobalFunctions.h"
#include "frame/Main.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    ReadTimeZoneFileOnce();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Varnex"));
    QApplication::setOrganizationName(QStringLiteral("Nordquell"));
    LoadQtGermanTranslations();
    InstallMessageBoxHandler();
    if (!Main())
        return 1;
    return app.exec();
}
