// Names and checks of slots.
#include "steps/slot_names.h"

#include <algorithm>
#include <iterator>

#include "calib/line_list.h"

namespace halmek {
namespace {

constexpr std::string_view slotNames[] = {"frame", "arc1", "arc2", "spectrum", "object"};

constexpr const char* emptyMessages[] = {
    "Hey, no 2-D file has been loaded!",    "Hey, no Arc 1 file has been loaded!",
    "Hey, no Arc 2 file has been loaded!",  "Hey, the frame has not been collapsed to 1-D yet!",
    "Hey, no Object file has been loaded!",
};

}  // namespace

int SlotNamed(std::string_view name) {
  const auto found = std::find(std::begin(slotNames), std::end(slotNames), name);
  return found == std::end(slotNames) ? slots::frame : static_cast<int>(found - std::begin(slotNames));
}

std::string_view NameOfSlot(int slot) { return slotNames[slot]; }

void RequireLoaded(const Session& session, int slot) {
  if (session.slot[slot].fileName.empty())
    throw Refusal(emptyMessages[slot]);
}

void RequireFrame(const Session& session) { RequireLoaded(session, slots::frame); }

void RequireArcInUse(const Session& session, int a) {
  if (a > session.arcCount)
    throw Refusal("Hey, the number of arc files is 1!  Set it to 2 to use Arc 2.");
  RequireArc(session, a);
}

}  // namespace halmek
