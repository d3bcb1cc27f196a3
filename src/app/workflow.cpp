// Changes of the workflow that several procedures make.
#include "app/workflow.h"

namespace halmek {

void ClearFrameStatus(Workflow& workflow) {
  workflow.traceStatus.clear();
  workflow.sliceStatus.clear();
  workflow.crunchStatus.clear();
  workflow.continuumStatus.clear();
}

void ClearFitStatus(Workflow::ArcStatus& status) {
  status.deviationStatus.clear();
  status.fitStatus.clear();
  status.fitWindowStatus.clear();
}

}  // namespace halmek
