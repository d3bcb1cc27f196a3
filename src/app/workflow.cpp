// Changes of the workflow that several procedures make.
#include "app/workflow.h"

namespace halmek {

void ClearFrameStatus(Workflow& workflow) {
  workflow.traceStatus.clear();
  workflow.sliceStatus.clear();
  workflow.crunchStatus.clear();
  workflow.continuumStatus.clear();
}

}  // namespace halmek
