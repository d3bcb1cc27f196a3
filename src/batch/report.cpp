// Summary and report.
#include "batch/report.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "app/session.h"
#include "files/known_file.h"
#include "plot/number_text.h"
#include "plot/text_encoding.h"
#include "plot/wording.h"

namespace halmek::batch {
namespace {

constexpr size_t columns = 7;
using Row = std::array<std::string, columns>;

// The first two are texts, the others numbers.
constexpr size_t textColumns = 2;
const Row heading{"file", "object", "lines", "RMS (A)", "scale (A/pixel)", "S/N", "warnings"};

// One entry for each arc.
template <class Values, class Text>
std::string Listed(const Values& values, Text text) {
  std::string list;
  for (const auto& value : values)
    list += (list.empty() ? "" : ", ") + text(value);
  return list.empty() ? "-" : list;
}

Row RowOf(const Ran& run) {
  const Summary& s = run.result.record.summary;
  return {Printable(run.name),
          Printable(s.object.empty() ? "-" : s.object),
          Listed(s.lines, [](int lines) { return std::to_string(lines); }),
          Listed(s.rms, [](double rms) { return FixedText(rms, 4); }),
          s.scale ? FixedText(*s.scale, 5) : "-",
          s.signalToNoise ? FixedText(*s.signalToNoise, 0) : "-",
          run.result.succeeded ? std::to_string(run.result.warnings.size()) : "FAILED"};
}

// Characters, of which UTF-8 makes several bytes.
size_t Length(const std::string& text) {
  return static_cast<size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
}

std::string Escaped(const std::string& text) { return MarkupText(Printable(text)); }

// The end of a long name, which tells more than its folders do.
std::string Short(const std::string& name) {
  constexpr size_t most = 40;
  if (Length(name) <= most)
    return name;
  size_t start = name.size() - (most - 3);
  while (start < name.size() && (name[start] & '\xC0') == '\x80')
    ++start;
  return "..." + name.substr(start);
}

std::ptrdiff_t FailuresAmong(const AllRan& all) {
  return std::count_if(all.runs.begin(), all.runs.end(), [](const Ran& r) { return !r.result.succeeded; });
}

std::string Anchor(size_t run) { return "run" + std::to_string(run + 1); }

constexpr const char* style = R"(
:root { color-scheme: light; }
body { margin: 2em auto; max-width: 62em; padding: 0 1em; font: 1em/1.45 sans-serif; color: #111; background: #fff; }
h1 { font-size: 1.6em; margin-bottom: .2em; }
h2 { font-size: 1.25em; margin: 2.2em 0 .4em; border-top: 1px solid #888; padding-top: .6em; }
.table { overflow-x: auto; }
table { border-collapse: collapse; margin: 1em 0; font-variant-numeric: tabular-nums; }
th, td { padding: .2em .8em; border-bottom: 1px solid #ccc; text-align: right; white-space: nowrap; }
th:nth-child(-n+2), td:nth-child(-n+2) { text-align: left; }
.failed { background: #fbdcd8; font-weight: bold; }
.warned td:last-child { background: #fff1c4; }
figure { margin: 1em 0; break-inside: avoid; }
figure > svg { width: 100%; height: auto; border: 1px solid #ccc; }
figcaption { margin-bottom: .2em; }
h2, figcaption { overflow-wrap: anywhere; }
.message { border-left: .3em solid #d9a400; padding: .1em .8em; margin: .5em 0; overflow-wrap: anywhere; }
.failure { border-color: #c0392b; }
pre { background: #f4f4f4; padding: .8em; white-space: pre-wrap; overflow-wrap: anywhere; font-size: .88em; }
summary { cursor: pointer; }
a { color: #0b4f9e; }
thead { display: table-header-group; }
tr { break-inside: avoid; }
@media print {
  body { margin: 0; max-width: none; font-size: 9.5pt; }
  th, td { padding: .15em .5em; }
  h2 { break-after: avoid; }
  figcaption { break-after: avoid; }
}
)";

std::string TableOf(const AllRan& all) {
  std::string html = "<div class=\"table\"><table>\n<thead><tr>";
  for (const std::string& title : heading)
    html += "<th scope=\"col\">" + title + "</th>";
  html += "</tr></thead>\n<tbody>\n";
  for (size_t i = 0; i < all.runs.size(); ++i) {
    const JobResult& result = all.runs[i].result;
    const Row row = RowOf(all.runs[i]);
    html += !result.succeeded          ? "<tr class=\"failed\">"
            : !result.warnings.empty() ? "<tr class=\"warned\">"
                                       : "<tr>";
    html += "<td><a href=\"#" + Anchor(i) + "\">" + Escaped(row[0]) + "</a></td>";
    for (size_t c = 1; c < columns; ++c)
      html += "<td>" + Escaped(row[c]) + "</td>";
    html += "</tr>\n";
  }
  html += "</tbody>\n</table></div>\n";
  for (const std::string& sentence : all.overwritten)
    html += "<p class=\"message failure\">" + Escaped(sentence) + "</p>\n";
  return html;
}

std::string SectionOf(const Ran& run, const std::string& anchor) {
  const JobResult& result = run.result;
  std::string html =
      "<h2 id=\"" + anchor + "\">" + Escaped(run.name) +
      (result.record.summary.object.empty() ? "" : " &middot; " + Escaped(result.record.summary.object)) +
      "</h2>\n";
  if (!result.succeeded)
    html += "<p class=\"message failure\">" + Escaped(result.failure) + "</p>\n";
  for (const std::string& warning : result.warnings)
    html += "<p class=\"message\">Warning: " + Escaped(warning) + "</p>\n";
  for (const Figure& figure : result.record.figures)
    html += "<figure>\n<figcaption><b>" + Escaped(figure.of) + "</b>: " + Escaped(figure.found) +
            "</figcaption>\n" + figure.svg + "</figure>\n";
  html +=
      "<details><summary>" + Count(static_cast<int>(result.found.size()), "step") + " and what each found";
  html += "</summary>\n<pre>";
  for (const std::string& line : result.found)
    html += Escaped(line) + "\n";
  return html + "</pre></details>\n";
}

}  // namespace

bool HaveFailed(const AllRan& all) { return FailuresAmong(all) > 0 || !all.overwritten.empty(); }

std::string SummaryTable(const AllRan& all) {
  std::vector<Row> rows{heading};
  for (const Ran& run : all.runs) {
    rows.push_back(RowOf(run));
    rows.back()[0] = Short(rows.back()[0]);
  }
  std::array<size_t, columns> widths{};
  for (const Row& row : rows)
    for (size_t c = 0; c < columns; ++c)
      widths[c] = std::max(widths[c], Length(row[c]));

  std::string table;
  for (const Row& row : rows) {
    for (size_t c = 0; c < columns; ++c) {
      const std::string padding(widths[c] - Length(row[c]), ' ');
      table += (c == 0 ? "" : "  ") + (c < textColumns ? row[c] + padding : padding + row[c]);
    }
    table += "\n";
  }
  return table;
}

std::string ReportPage(const std::string& recipeName, const std::string& recipe, const AllRan& all) {
  const std::string title = "Reduction by " + Escaped(LeafName(recipeName));
  const auto failed = FailuresAmong(all);
  std::string html = std::string(first_lines::report) +
                     "\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + title +
                     "</title>\n<meta name=\"viewport\" content=\"width=device-width\">\n<style>" + style +
                     "</style>\n</head>\n<body>\n<h1>" + title + "</h1>\n<p>" +
                     Count(static_cast<int>(all.runs.size()), "run") +
                     (failed > 0 ? ", of which " + std::to_string(failed) + " failed" : std::string()) +
                     ". Lines and RMS (Angstroms) are those of the arcs; the scale is that of the corrected "
                     "object, else of the first arc. S/N is the median of the spectrum over its noise from "
                     "pixel to pixel, a lower limit where there are many lines.</p>\n" +
                     TableOf(all);
  for (size_t i = 0; i < all.runs.size(); ++i)
    html += SectionOf(all.runs[i], Anchor(i));
  return html + "<h2>The recipe</h2>\n<pre>" + Escaped(recipe) + "</pre>\n</body>\n</html>\n";
}

}  // namespace halmek::batch
