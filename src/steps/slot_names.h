// The names that slots and arcs have in recipes, and what is said where one holds nothing.
#pragma once

#include <string_view>

#include "app/session.h"

namespace halmek {

// The slot of frame, arc1, arc2, spectrum or object.
int SlotNamed(std::string_view name);

// The other way round.
std::string_view NameOfSlot(int slot);

// The arc of arc1 or arc2.
inline int ArcNamed(std::string_view name) { return name == "arc1" ? 1 : 2; }

// Throws Refusal, "Hey, ...", where the slot holds nothing.
void RequireLoaded(const Session& session, int slot);

// The same for the frame.
void RequireFrame(const Session& session);

// Throws Refusal where Arc 2 is meant and only one arc is in use, and where the arc is not loaded.
void RequireArcInUse(const Session& session, int a);

}  // namespace halmek
