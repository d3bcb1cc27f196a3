// Pictures in PNG, SVG and PDF.
#include "platform/picture_file.h"

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPageLayout>
#include <QPdfWriter>
#include <QScreen>
#include <algorithm>
#include <cctype>
#include <filesystem>

#include "files/failure.h"
#include "platform/painting.h"
#include "platform/text.h"
#include "platform/twips.h"
#include "platform/vector_painting.h"
#include "plot/picture.h"
#include "plot/svg.h"

namespace halmek {
namespace {

// The caption and the texts of the axes.
void PaintTexts(QPainter& painter, const Drawing& drawing, double unitsPerTwip) {
  QFont font = QApplication::font();
  font.setPixelSize(std::max(1, qRound(pictureTextHeight * unitsPerTwip)));
  painter.setFont(font);
  PaintCaption(painter, Shown(drawing.caption), PictureSize(drawing).width, unitsPerTwip);
  const QFontMetricsF metrics(font, painter.device());
  for (const DrawingItem& item : drawing.items)
    if (const Text* const text = std::get_if<Text>(&item)) {
      const QString shown = Shown(text->text).trimmed();
      const double left = LeftOf(*text, static_cast<float>(metrics.horizontalAdvance(shown) / unitsPerTwip));
      painter.drawText(QPointF(left, text->topLeft.y) * unitsPerTwip + QPointF(0, metrics.ascent()), shown);
    }
}

std::string PngOf(const Drawing& drawing) {
  constexpr double timesScreen = 2;
  const QScreen* const screen = QGuiApplication::primaryScreen();
  const double ratio = timesScreen * (screen == nullptr ? 1 : screen->devicePixelRatio());
  const double pixelsPerTwip = PixelsPerTwip();
  const WindowSize size = PictureSize(drawing);
  QImage image((QSizeF(size.width, size.height) * pixelsPerTwip * ratio).toSize(), QImage::Format_RGB32);
  if (image.isNull())
    throw RunTimeError(run_time_error::outOfMemory);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    PaintDrawing(painter, drawing, pixelsPerTwip);
    PaintTexts(painter, drawing, pixelsPerTwip);
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "PNG"))
    throw RunTimeError(run_time_error::outOfMemory);
  return bytes.toStdString();
}

std::string PdfOf(const Drawing& drawing) {
  constexpr int twipsPerPoint = 20, pointsPerInch = 72, unitsPerTwip = 1;
  const WindowSize size = PictureSize(drawing);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setTitle(Shown(drawing.caption));
  writer.setCreator("Halmek");
  writer.setResolution(unitsPerTwip * twipsPerPoint * pointsPerInch);
  // The page is as large as the picture.
  writer.setPageLayout(QPageLayout(
      QPageSize(QSizeF(size.width, size.height) / twipsPerPoint, QPageSize::Point, {}, QPageSize::ExactMatch),
      QPageLayout::Portrait, QMarginsF()));
  QPainter painter(&writer);
  PaintVectors(painter, drawing, unitsPerTwip);
  PaintTexts(painter, drawing, unitsPerTwip);
  if (!painter.end())
    throw RunTimeError(run_time_error::outOfMemory);
  return bytes.toStdString();
}

// In small letters.
std::string EndingOf(const std::string& file) {
  std::string ending = std::filesystem::path(file).extension().string();
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
  return ending;
}

}  // namespace

std::string PictureBytes(const Drawing& drawing, const std::string& file) {
  const std::string ending = EndingOf(file);
  if (ending == ".png")
    return PngOf(drawing);
  if (ending == ".svg")
    return SvgOf(drawing);
  if (ending == ".pdf")
    return PdfOf(drawing);
  throw Refusal("Sorry, a picture's name must end in .png, .svg or .pdf.  Please try again.");
}

FileKind KindOfPicture(const std::string& file) {
  return EndingOf(file) == ".svg" ? FileKind::plot : FileKind::picture;
}

}  // namespace halmek
