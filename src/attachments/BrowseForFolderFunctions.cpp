#include "attachments/BrowseForFolderFunctions.h"

#include "frame/GlobalFunctions.h"

#include <exception>
#include <utility>

namespace {

FolderBrowser &installedBrowser()
{
    static FolderBrowser browser;
    return browser;
}

} // namespace

FolderBrowser SetFolderBrowser(FolderBrowser browser)
{
    return std::exchange(installedBrowser(), std::move(browser));
}

QString BrowseFolder(const QString &title)
{
    // A copy: the browser may replace itself while its dialog is open.
    const FolderBrowser browser = installedBrowser();
    if (!browser)
        return QString();
    try {
        return browser(title);
    } catch (const std::exception &e) {
        ShowError(QString::fromUtf8(e.what()), 0, 2202);
    }
    return QString();
}
