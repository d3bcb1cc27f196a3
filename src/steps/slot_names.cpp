// Names and checks of slots.
#include "steps/slot_names.h"

#include "calib/line_list.h"

namespace halmek {
namespace {

constexpr const char* emptyMessages[] = {
    "Hey, no 2-D file has been loaded!",    "Hey, no Arc 1 file has been loaded!",
    "Hey, no Arc 2 file has been loaded!",  "Hey, the frame has not been collapsed to 1-D yet!",
    "Hey, no Object file has been loaded!",
};

}  // namespace

int SlotNamed(std::string_view name) {
  if (name == "arc1")
    return slots::arc1;
  if (name == "arc2")
    return slots::arc2;
  if (name == "spectrum")
    return slots::spectrum;
  return name == "object" ? slots::object : slots::frame;
}

void RequireLoaded(const Session& session, int slot) {
  if (session.slot[slot].fileName.empty() || !session.slot[slot].isWhole)
    throw Refusal(emptyMessages[slot]);
}

void RequireFrame(const Session& session) {
  if (session.slot[slots::frame].fileName.empty() || !session.workflow.fixTraceEnabled)
    throw Refusal(emptyMessages[slots::frame]);
}

void RequireArcInUse(const Session& session, int a) {
  if (a > session.arcCount)
    throw Refusal("Hey, the number of arc files is 1!  Set it to 2 to use Arc 2.");
  RequireArc(session, a);
}

}  // namespace halmek
