#include "frame/MainGeometry.h"

#include "frame/RegistryFunctions.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace {

const QString kGeometrySetting = QStringLiteral("frmHaupt.Geometry");

QRect availableFor(const QWidget &window)
{
    QScreen *screen = window.screen();
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

} // namespace

QRect FitFrameInto(const QRect &available, const QMargins &frame, const QSize &wanted)
{
    const QSize room = available.size().shrunkBy(frame);
    const QSize inner = wanted.boundedTo(room).expandedTo(QSize(1, 1));
    const QSize outer = inner.grownBy(frame);
    const QPoint frameTopLeft(available.x() + std::max(0, (available.width() - outer.width()) / 2),
                              available.y() + std::max(0, (available.height() - outer.height()) / 2));
    return QRect(frameTopLeft + QPoint(frame.left(), frame.top()), inner);
}

QMargins FrameMargins(const QWidget &window)
{
    const QRect outer = window.frameGeometry();
    const QRect inner = window.geometry();
    if (window.isVisible() && outer != inner)
        return QMargins(inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
                        outer.bottom() - inner.bottom());
    const int border = 4;
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    return QMargins(border, std::max(title, 24) + border, border, border);
}

bool RestoreMainGeometry(QWidget &window, const QSize &wanted)
{
    const QByteArray saved = QByteArray::fromBase64(GetSetting(kGeometrySetting).toLatin1());
    if (!saved.isEmpty() && window.restoreGeometry(saved))
        return true;
    const QRect available = availableFor(window);
    if (available.isEmpty())
        window.resize(wanted);
    else
        window.setGeometry(FitFrameInto(available, FrameMargins(window), wanted));
    return false;
}

void SaveMainGeometry(const QWidget &window)
{
    SaveSetting(kGeometrySetting, QString::fromLatin1(window.saveGeometry().toBase64()));
}

void KeepFrameOnScreen(QWidget &window)
{
    if (window.isMaximized() || window.isFullScreen())
        return;
    const QRect available = availableFor(window);
    if (available.isEmpty() || available.contains(window.frameGeometry()))
        return;
    const QMargins frame = FrameMargins(window);
    const QRect fitted = FitFrameInto(available, frame, window.size());
    window.setGeometry(fitted);
}
