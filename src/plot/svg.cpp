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

std::string Escaped(std::string_view bytes) {
  std::string text;
  for (char c : Utf8Of(bytes)) {
    switch (c) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      default:
        text += c;
    }
  }
  return text;
}

class Writer {
 public:
  explicit Writer(std::string& out) : out_(out) {}

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

  // What curves are cut to.
  void ClipPath(Point topLeft, Point bottomRight) {
    out_ += "<clipPath id=\"plot\"><rect x=\"";
    Number(topLeft.x);
    out_ += "\" y=\"";
    Number(topLeft.y);
    out_ += "\" width=\"";
    Number(std::max(0.0f, bottomRight.x - topLeft.x));
    out_ += "\" height=\"";
    Number(std::max(0.0f, bottomRight.y - topLeft.y));
    out_ += "\"/></clipPath>\n";
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

  // A tenth of a twip is far below what any device shows.
  void Number(float value) {
    std::array<char, 64> text;
    const double tenths = std::isfinite(value) ? std::round(static_cast<double>(value) * 10) / 10 : 0;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), tenths, std::chars_format::fixed).ptr;
    out_.append(text.data(), end);
  }

  std::string& out_;
};

}  // namespace

std::string SvgOf(const Drawing& drawing) {
  const auto [width, height] = PictureSize(drawing);
  std::string out = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                    std::to_string(width / twipsPerPixel) + "\" height=\"" +
                    std::to_string(height / twipsPerPixel) + "\" viewBox=\"0 0 " + std::to_string(width) +
                    ' ' + std::to_string(height) + "\" font-family=\"sans-serif\" font-size=\"" +
                    std::to_string(pictureTextHeight) + "\">\n<title>" + Escaped(drawing.caption) +
                    "</title>\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  Writer writer(out);
  writer.ClipPath(drawing.plotTopLeft, drawing.plotBottomRight);
  writer(Text{captionTopLeft, drawing.caption, {}});
  for (const DrawingItem& item : drawing.items)
    std::visit(writer, item);
  out += "</svg>\n";
  return out;
}

}  // namespace halmek
