#include "statements.h"

#include <plovix/host/services.h>

namespace plovix {

bool Statements::WantsRetry(const Failure& failure, int line) const {
  switch (Services().Application()->ErrorReporter()->Report(failure.Number(), failure.Description(), kModule,
                                                            page_, procedure_, line)) {
    case ReportAction::kRetry:
      return true;
    case ReportAction::kContinue:
      return false;
    case ReportAction::kLeave:
      break;
  }
  throw Left{};  // even for an answer outside the enumeration
}

}  // namespace plovix
