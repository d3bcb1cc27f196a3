// Work that is in no file.
#include "steps/unsaved_work.h"

#include "plot/wording.h"
#include "steps/slot_names.h"

namespace halmek {
namespace {

struct Note {
  Session& s;
  Unsaved& unsaved;

  void ChangeFrame() const {
    unsaved.frame = true;
    unsaved.frameIsExtracted = false;
  }
  void ChangeLines(const std::string& arc) const {
    const int a = ArcNamed(arc);
    unsaved.arc[a] = s.arc[a].LineCount > 0;
  }

  void operator()(const steps::FixColumn&) const { ChangeFrame(); }
  void operator()(const steps::Trim&) const { ChangeFrame(); }
  void operator()(const steps::Zap&) const { ChangeFrame(); }
  void operator()(const steps::UndoZap&) const { ChangeFrame(); }
  void operator()(const steps::Crunch&) const { unsaved.spectrum = unsaved.frameIsExtracted = true; }
  void operator()(const steps::NormalizeAuto&) const { unsaved.spectrum = true; }
  void operator()(const steps::NormalizePoints&) const { unsaved.spectrum = true; }
  void operator()(const steps::NormalizeAgain&) const { unsaved.spectrum = true; }
  void operator()(const steps::Revert&) const { unsaved.spectrum = true; }
  void operator()(const steps::Identify& step) const { ChangeLines(step.arc); }
  void operator()(const steps::DeleteLine& step) const { ChangeLines(step.arc); }
  void operator()(const steps::DeleteLines& step) const { ChangeLines(step.arc); }
  // They come from a file.
  void operator()(const steps::ApplyMask& step) const { unsaved.arc[ArcNamed(step.arc)] = false; }
  void operator()(const steps::SaveMask& step) const { unsaved.arc[ArcNamed(step.arc)] = false; }
  void operator()(const steps::Correct&) const { unsaved.object = true; }
  void operator()(const steps::Load& step) const {
    if (step.what == "frame" || step.what == "dao")
      unsaved.frame = unsaved.frameIsExtracted = false;
    else if (step.what == "object")
      unsaved.object = false;
    else if (step.what.starts_with("arc"))
      unsaved.arc[ArcNamed(step.what)] = false;
  }
  void operator()(const steps::Save& step) const {
    if (step.what == "object")
      unsaved.object = false;
    if (step.what == "spectrum")
      unsaved.spectrum = false;
    if (step.what == "frame" || (step.what == "spectrum" && unsaved.frameIsExtracted))
      unsaved.frame = false;
  }
  void operator()(const auto&) const {}
};

std::vector<std::string> FrameWork(const Session& s) {
  if (!s.unsaved.frame)
    return {};
  return {"the changes of the frame " + DataName(s.slot[slots::frame])};
}

std::vector<std::string> SpectrumWork(const Session& s) {
  if (!s.unsaved.spectrum)
    return {};
  return {"the spectrum extracted from " + s.crunchFile};
}

std::vector<std::string> ObjectWork(const Session& s) {
  if (!s.unsaved.object)
    return {};
  return {"the calibrated spectrum of " + DataName(s.slot[slots::object])};
}

std::vector<std::string> ArcWork(const Session& s, int a) {
  if (!s.unsaved.arc[a])
    return {};
  return {"the " + Count(s.arc[a].LineCount, "identified line") + " of Arc " + std::to_string(a)};
}

}  // namespace

void NoteWork(Session& session, const Step& step) { std::visit(Note{session, session.unsaved}, step); }

std::vector<std::string> UnsavedWork(const Session& session) {
  std::vector<std::string> all;
  for (const auto& work : {FrameWork(session), SpectrumWork(session), ArcWork(session, 1),
                           ArcWork(session, 2), ObjectWork(session)})
    all.insert(all.end(), work.begin(), work.end());
  return all;
}

std::vector<std::string> LostBy(const Session& session, const Step& step) {
  // A frame may be extracted again and again; the spectrum of another one is lost by it.
  if (std::holds_alternative<steps::Crunch>(step) &&
      session.crunchLoad != session.slot[slots::frame].loadedFile)
    return SpectrumWork(session);
  const auto* const load = std::get_if<steps::Load>(&step);
  if (load == nullptr)
    return {};
  if (load->what == "frame" || load->what == "dao")
    return FrameWork(session);
  if (load->what == "object")
    return ObjectWork(session);
  return load->what.starts_with("arc") ? ArcWork(session, ArcNamed(load->what)) : std::vector<std::string>{};
}

}  // namespace halmek
