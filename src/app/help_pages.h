// The texts of the help window.
#pragma once

#include <string>
#include <vector>

namespace halmek {

struct HelpPage {
  std::string title;
  std::vector<std::string> paragraphs;
};

enum class HelpTopic { introduction, fileMenu, part1, part2, arc1, arc2 };

HelpPage PageAbout(HelpTopic topic);

}  // namespace halmek
