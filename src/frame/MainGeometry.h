#pragma once
// Where the main window sits: the whole frame (title bar and borders
// included) inside the screen's free area, and the place and size the user
// left it in, remembered across starts.

#include <QMargins>
#include <QRect>
#include <QSize>

class QWidget;

// The inner geometry of a window whose frame adds `frame` around it, at the
// wanted inner size or smaller, so that the frame lies inside `available`
// and is centred there.
QRect FitFrameInto(const QRect &available, const QMargins &frame, const QSize &wanted);

// The frame the window manager puts around the window; before the window is
// shown, a title bar of the style's height and thin borders.
QMargins FrameMargins(const QWidget &window);

// Places the window as it was left last time (setting "frmHaupt.Geometry"),
// or at the wanted inner size fitted into its screen. Returns true when the
// remembered geometry was used.
bool RestoreMainGeometry(QWidget &window, const QSize &wanted);

// Remembers the window's place and size (written at once).
void SaveMainGeometry(const QWidget &window);

// Once the window is on the screen: shrinks and moves it when its frame
// reaches beyond the screen's free area.
void KeepFrameOnScreen(QWidget &window);
