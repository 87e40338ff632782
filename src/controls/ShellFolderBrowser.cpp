#include "controls/ShellFolderBrowser.h"

#include "attachments/BrowseForFolderFunctions.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

void InstallShellFolderBrowser()
{
    SetFolderBrowser([](const QString &title) {
        const QString folder = QFileDialog::getExistingDirectory(QApplication::activeWindow(), title, QDir::homePath(),
                                                                 QFileDialog::ShowDirsOnly);
        return QDir::toNativeSeparators(folder);
    });
}
