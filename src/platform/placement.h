// Windows put where they stood, and where they stand.
#pragma once

#include <QList>
#include <QMargins>
#include <QRect>
#include <QWidget>

#include "app/settings.h"

namespace halmek {

// The frame that the desktop draws around a window: its own where it is shown, otherwise that of others that
// are; none where no window is shown yet.
QMargins FrameMargins(const QWidget& window);

// Whether the desktop has drawn that frame. Only then is its width known for sure, and on the way into it the
// window may have stood elsewhere: one that has just been framed is to be placed again.
bool IsFramed(const QWidget& window);

// The outer size of a window, border and title bar included, in twips.
QSizeF OuterTwips(const QWidget& window);

// Puts a window, and with a size sizes it, border and title bar included. One that would be out of sight is
// moved back into it, and made no larger than its screen; one whose place nobody has chosen yet is moved
// until all of it is in sight.
void Place(QWidget& window, const WindowPlacement& placement);
void Place(QWidget& window, const SizedPlacement& placement);

// Stores where the window stands. One that still stands where it was put keeps its place to the twip, also
// where a smaller screen made it smaller, and so does one that the desktop is just putting into its frame.
void Store(WindowPlacement& placement, const QWidget& window);
void Store(SizedPlacement& placement, const QWidget& window);

// `outer`, moved and shrunk so that it lies on one of the screens; the nearest where it lies on none. It
// may reach beyond an edge as long as its title bar can be grasped.
QRect InSight(const QRect& outer, const QList<QRect>& screens);

// `outer`, moved so that it does not cover `free`: below it where the screen has room, otherwise to the
// nearer side that has room, or, as far as the screen allows, to the roomier one.
QRect ClearOf(const QRect& outer, const QRect& free, const QRect& screen);

// Shows a window, above the others and with the keyboard.
void BringToFront(QWidget& window);

// Gives a window its first inner size, in twips, or the room of a smaller screen.
void SetInnerSize(QWidget& window, int width, int height);

// Keeps the outer size of a window at a fixed size, or above a least one, in twips, or the room of a smaller
// screen.
void FixOuterSize(QWidget& window, int width, int height);
void SetLeastOuterSize(QWidget& window, int width, int height);

}  // namespace halmek
