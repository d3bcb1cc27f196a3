// SVG: one element an item, coordinates in twips under a view box.
#include "plot/svg.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "plot/picture.h"
#include "plot/text_encoding.h"

namespace halmek {
namespace {

constexpr int baseline = 150;  // from the top of a text down to its base line

// The width of a text of digits, by which values are lined up: only the program that shows the file knows its
// font.
constexpr float digitWidth = 0.6f * pictureTextHeight;

std::string Escaped(std::string_view bytes) { return MarkupText(Utf8Of(bytes)); }

enum class Use { file, page };

class Writer {
 public:
  Writer(std::string& out, const Drawing& drawing, Use use)
      : out_(out), topLeft_(drawing.plotTopLeft), bottomRight_(drawing.plotBottomRight), use_(use) {
    if (use_ == Use::file)
      ClipPath();
  }

  void operator()(const Line& line) {
    out_ += "<line x1=\"";
    Number(line.from.x);
    out_ += "\" y1=\"";
    Number(line.from.y);
    out_ += "\" x2=\"";
    Number(line.to.x);
    out_ += "\" y2=\"";
    Number(line.to.y);
    out_ += '"';
    Stroke(line.colour, static_cast<float>(line.penWidth * twipsPerPixel));
    out_ += "/>\n";
  }

  void operator()(const Polyline& line) {
    if (use_ == Use::file)
      WritePolyline(line);
    else
      WritePath(line);
  }

  void operator()(const Circle& circle) {
    const float width = circle.outerRadius - circle.innerRadius;
    out_ += "<circle cx=\"";
    Number(circle.centre.x);
    out_ += "\" cy=\"";
    Number(circle.centre.y);
    out_ += "\" r=\"";
    Number(circle.innerRadius + width / 2);
    out_ += "\" fill=\"none\"";
    Stroke(circle.colour, width);
    out_ += "/>\n";
  }

  void operator()(const Text& text) {
    const size_t blanks = std::min(text.text.find_first_not_of(' '), text.text.size());
    const float width = digitWidth * static_cast<float>(text.text.size() - blanks);
    const float left = LeftOf(text, width);
    const bool endsInLine = left > text.topLeft.x;
    out_ += "<text xml:space=\"preserve\" x=\"";
    Number(endsInLine ? left + width : left);
    out_ += "\" y=\"";
    Number(text.topLeft.y + baseline);
    out_ += endsInLine ? "\" text-anchor=\"end\">" : "\">";
    out_ += Escaped(text.text) + "</text>\n";
  }

 private:
  void Stroke(Colour c, float width) {
    out_ += " stroke=\"rgb(" + std::to_string(c.red) + ',' + std::to_string(c.green) + ',' +
            std::to_string(c.blue) + ")\" stroke-width=\"";
    Number(width);
    out_ += '"';
  }

  void WritePolyline(const Polyline& line) {
    out_ += "<polyline points=\"";
    for (const Point& p : line.points) {
      Number(p.x);
      out_ += ',';
      Number(p.y);
      out_ += ' ';
    }
    out_ += "\" fill=\"none\" stroke-linejoin=\"round\" clip-path=\"url(#plot)\"";
    Stroke(line.colour, static_cast<float>(line.penWidth * twipsPerPixel));
    out_ += "/>\n";
  }

  // An SVG element within another one cuts its content as a clip path would, and needs no name for it.
  void WritePath(const Polyline& line) {
    out_ += "<svg ";
    PlotArea();
    out_ += " viewBox=\"";
    Number(topLeft_.x);
    out_ += ' ';
    Number(topLeft_.y);
    out_ += ' ';
    Number(Width());
    out_ += ' ';
    Number(Height());
    out_ += "\"><path fill=\"none\" stroke-linejoin=\"round\"";
    Stroke(line.colour, static_cast<float>(line.penWidth * twipsPerPixel));
    out_ += " d=\"";
    Steps(line.points);
    out_ += "\"/></svg>\n";
  }

  // "Mx yldx dy dx dy ...": a sign parts two numbers as well as a blank does.
  void Steps(const std::vector<Point>& points) {
    long lastX = 0, lastY = 0;
    const auto step = [&](long by) {
      if (by >= 0)
        out_ += ' ';
      out_ += std::to_string(by);
    };
    for (size_t i = 0; i < points.size(); ++i) {
      const long x = WholeTwips(points[i].x), y = WholeTwips(points[i].y);
      out_ += i == 0 ? "M" : i == 1 ? "l" : "";
      step(x - lastX);
      step(y - lastY);
      lastX = x;
      lastY = y;
    }
  }

  // Curves may leave the plot area by far; beyond a thousand of them nobody sees where they go.
  static long WholeTwips(float value) {
    constexpr float farAway = 1e7f;
    return std::isfinite(value) ? std::lround(std::clamp(value, -farAway, farAway)) : 0;
  }

  float Width() const { return std::max(0.0f, bottomRight_.x - topLeft_.x); }
  float Height() const { return std::max(0.0f, bottomRight_.y - topLeft_.y); }

  void PlotArea() {
    out_ += "x=\"";
    Number(topLeft_.x);
    out_ += "\" y=\"";
    Number(topLeft_.y);
    out_ += "\" width=\"";
    Number(Width());
    out_ += "\" height=\"";
    Number(Height());
    out_ += '"';
  }

  // What curves are cut to.
  void ClipPath() {
    out_ += "<clipPath id=\"plot\"><rect ";
    PlotArea();
    out_ += "/></clipPath>\n";
  }

  // A tenth of a twip is far below what any device shows.
  void Number(float value) {
    std::array<char, 64> text;
    const double parts = use_ == Use::file ? 10 : 1;
    const double rounded = std::isfinite(value) ? std::round(static_cast<double>(value) * parts) / parts : 0;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), rounded, std::chars_format::fixed).ptr;
    out_.append(text.data(), end);
  }

  std::string& out_;
  const Point topLeft_, bottomRight_;  // of the plot area
  const Use use_;
};

// What stands before the items of a drawing, and they.
std::string Element(const Drawing& drawing, Use use) {
  const auto [width, height] = PictureSize(drawing);
  std::string out = "<svg " + std::string(use == Use::file ? "class=\"halmek-plot\" " : "") +
                    "xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width / twipsPerPixel) +
                    "\" height=\"" + std::to_string(height / twipsPerPixel) + "\" viewBox=\"0 0 " +
                    std::to_string(width) + ' ' + std::to_string(height) +
                    "\" font-family=\"sans-serif\" font-size=\"" + std::to_string(pictureTextHeight) +
                    "\">\n<title>" + Escaped(drawing.caption) +
                    "</title>\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  Writer writer(out, drawing, use);
  writer(Text{captionTopLeft, drawing.caption, {}});
  for (const DrawingItem& item : drawing.items)
    std::visit(writer, item);
  out += "</svg>\n";
  return out;
}

}  // namespace

std::string SvgOf(const Drawing& drawing) { return Element(drawing, Use::file); }

std::string InlineSvgOf(const Drawing& drawing) { return Element(drawing, Use::page); }

}  // namespace halmek
