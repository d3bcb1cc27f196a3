// Window placement.
#include "platform/placement.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/twips.h"

namespace halmek {
namespace {

// In pixels: how much of a title bar must be in sight, across and down.
constexpr int graspAcross = 60, graspDown = 20;

QList<QRect> Screens() {
  QList<QRect> areas;
  for (const QScreen* screen : QGuiApplication::screens())
    areas.push_back(screen->availableGeometry());
  return areas;
}

bool CanBeGrasped(const QRect& outer, const QRect& screen) {
  const QRect seen = QRect(outer.topLeft(), QSize(outer.width(), graspDown)).intersected(screen);
  return seen.width() >= std::min(graspAcross, outer.width()) && seen.height() >= graspDown;
}

int DistanceTo(const QRect& screen, const QPoint& point) {
  const int x = std::clamp(point.x(), screen.left(), screen.right());
  const int y = std::clamp(point.y(), screen.top(), screen.bottom());
  return (QPoint(x, y) - point).manhattanLength();
}

// The nearest of the screens, of which there must be one.
QRect NearestTo(const QPoint& point, const QList<QRect>& screens) {
  return *std::min_element(screens.begin(), screens.end(), [&](const QRect& a, const QRect& b) {
    return DistanceTo(a, point) < DistanceTo(b, point);
  });
}

// Moved until all of it is on the screen, or its upper left corner where it is too large.
QRect MovedInto(const QRect& screen, QRect placed) {
  placed.moveRight(std::min(placed.right(), screen.right()));
  placed.moveBottom(std::min(placed.bottom(), screen.bottom()));
  placed.moveLeft(std::max(placed.left(), screen.left()));
  placed.moveTop(std::max(placed.top(), screen.top()));
  return placed;
}

// The twips of a pixel position; those it came from where they give the same pixel.
int16_t TwipsAt(int pixels, int16_t before) {
  if (PixelsOf(before) == pixels)
    return before;
  const double twips = std::round(TwipsOf(pixels));
  return static_cast<int16_t>(std::clamp<double>(twips, INT16_MIN, INT16_MAX));
}

QMargins MarginsNow(const QWidget& window) {
  if (!window.isVisible() || window.windowType() != Qt::Window)
    return {};
  const QRect outer = window.frameGeometry(), inner = window.geometry();
  return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
          outer.bottom() - inner.bottom()};
}

// Whether the desktop is at it: it may put a window into a frame of one pixel, in a corner of the screen, and
// give that its size and its place afterwards.
bool IsBeingFramed(const QWidget& window) {
  const QMargins now = MarginsNow(window);
  return now.left() < 0 || now.top() < 0 || now.right() < 0 || now.bottom() < 0;
}

// The frame around a window that is shown; none before the desktop has drawn it.
QMargins OwnMargins(const QWidget& window) { return IsBeingFramed(window) ? QMargins{} : MarginsNow(window); }

QSize InnerSize(const QSize& outer, const QWidget& window) {
  const QMargins frame = FrameMargins(window);
  return {std::max(1, outer.width() - frame.left() - frame.right()),
          std::max(1, outer.height() - frame.top() - frame.bottom())};
}

// The inner size of a window whose outer one is given in twips, or is that of a smaller screen.
QSize InnerSizeOnScreen(int width, int height, const QWidget& window) {
  const QSize room = window.screen()->availableGeometry().size();
  return InnerSize(QSize(PixelsOf(width), PixelsOf(height)).boundedTo(room), window);
}

// Where a window is seen that is put at a place; all of it, at the place where all windows begin.
QRect SeenPlace(int left, int top, const QSize& size) {
  const QRect seen = InSight({QPoint(PixelsOf(left), PixelsOf(top)), size}, Screens());
  const bool isChosen = left != WindowPlacement{}.left || top != WindowPlacement{}.top;
  return isChosen || Screens().isEmpty() ? seen : MovedInto(NearestTo(seen.topLeft(), Screens()), seen);
}

QRect SeenPlace(const WindowPlacement& placement, const QWidget& window) {
  return SeenPlace(placement.left, placement.top, window.size().grownBy(FrameMargins(window)));
}

QRect SeenPlace(const SizedPlacement& placement) {
  return SeenPlace(placement.left, placement.top,
                   {std::max(1, PixelsOf(placement.width)), std::max(1, PixelsOf(placement.height))});
}

}  // namespace

QMargins FrameMargins(const QWidget& window) {
  // Some desktops draw less around a window that cannot be resized.
  static QMargins known;
  const auto isResizable = [](const QWidget& w) { return w.minimumSize() != w.maximumSize(); };
  if (const QMargins own = OwnMargins(window); !own.isNull()) {
    if (isResizable(window))
      known = own;
    return own;
  }
  for (const QWidget* other : QApplication::topLevelWidgets())
    if (const QMargins margins = OwnMargins(*other);
        !margins.isNull() && (known.isNull() || isResizable(*other)))
      known = margins;
  return known;
}

bool IsFramed(const QWidget& window) { return !OwnMargins(window).isNull(); }

QSizeF OuterTwips(const QWidget& window) {
  const QSize outer = window.size().grownBy(FrameMargins(window));
  return {TwipsOf(outer.width()), TwipsOf(outer.height())};
}

void Place(QWidget& window, const WindowPlacement& placement) {
  window.move(SeenPlace(placement, window).topLeft());
}

void Place(QWidget& window, const SizedPlacement& placement) {
  window.move(SeenPlace(placement).topLeft());
  window.resize(InnerSize(SeenPlace(placement).size(), window));
}

void Store(WindowPlacement& placement, const QWidget& window) {
  if (IsBeingFramed(window) || window.pos() == SeenPlace(placement, window).topLeft())
    return;
  placement.left = TwipsAt(window.x(), placement.left);
  placement.top = TwipsAt(window.y(), placement.top);
}

void Store(SizedPlacement& placement, const QWidget& window) {
  const QRect outer(window.pos(), window.size().grownBy(FrameMargins(window)));
  if (IsBeingFramed(window) || outer == SeenPlace(placement))
    return;
  placement = {.left = TwipsAt(outer.x(), placement.left),
               .top = TwipsAt(outer.y(), placement.top),
               .width = TwipsAt(outer.width(), placement.width),
               .height = TwipsAt(outer.height(), placement.height)};
}

QRect InSight(const QRect& outer, const QList<QRect>& screens) {
  if (screens.isEmpty())
    return outer;
  const bool isReachable = std::any_of(screens.begin(), screens.end(),
                                       [&](const QRect& screen) { return CanBeGrasped(outer, screen); });
  const QRect screen = NearestTo(outer.topLeft(), screens);
  const QRect placed(outer.topLeft(), outer.size().boundedTo(screen.size()));
  return isReachable ? placed : MovedInto(screen, placed);
}

QRect ClearOf(const QRect& outer, const QRect& free, const QRect& screen) {
  if (!outer.intersects(free))
    return outer;
  QRect below = outer, left = outer, right = outer;
  below.moveTop(free.bottom() + 1);
  if (below.bottom() <= screen.bottom())
    return below;
  left.moveRight(free.left() - 1);
  right.moveLeft(free.right() + 1);
  const bool hasLeft = left.left() >= screen.left(), hasRight = right.right() <= screen.right();
  const int toLeft = outer.left() - left.left(), toRight = right.left() - outer.left();
  if (hasLeft && hasRight)
    return toLeft <= toRight ? left : right;
  if (hasLeft || hasRight)
    return hasLeft ? left : right;
  // Some of it will be covered: as little as the screen allows.
  left.moveLeft(screen.left());
  right.moveRight(screen.right());
  return free.center().x() > screen.center().x() ? left : right;
}

void BringToFront(QWidget& window) {
  window.show();
  window.raise();
  window.activateWindow();
}

void SetInnerSize(QWidget& window, int width, int height) {
  const QSize room = InnerSize(window.screen()->availableGeometry().size(), window);
  window.resize(QSize(PixelsOf(width), PixelsOf(height)).boundedTo(room));
}

void FixOuterSize(QWidget& window, int width, int height) {
  window.setFixedSize(InnerSizeOnScreen(width, height, window));
}

void SetLeastOuterSize(QWidget& window, int width, int height) {
  // Where the text is larger than the screen has room for, the controls need more.
  window.setMinimumSize(InnerSizeOnScreen(width, height, window).expandedTo(window.minimumSizeHint()));
}

}  // namespace halmek
