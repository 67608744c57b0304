// Where every unexpected failure of a page goes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace plovix {

// What is to happen after a failure. Any other value counts as kLeave.
enum class ReportAction : std::int32_t {
  kRetry = 0,     // run the failed statement again
  kContinue = 1,  // go on with the statement after it
  kLeave = 2,     // leave the procedure
};

class ErrorReporter {
 public:
  virtual ~ErrorReporter() = default;
  // `line` is the source line of the failed statement; 0 when the failure came from a procedure without
  // a handler of its own. May show a dialog and run its event loop before it answers.
  [[nodiscard]] virtual ReportAction Report(int number, const std::string& description,
                                            std::string_view project, std::string_view page,
                                            std::string_view procedure, int line) = 0;
};

}  // namespace plovix
