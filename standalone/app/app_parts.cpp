#include "app_parts.h"

#include <plovix/host/host_application.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

namespace plovix::app {

// The dialog is shown after the catch block, so that no exception is alive while it is open.
bool DoOrTell(const AppParts& parts, std::string_view text, const std::function<void()>& work) {
  std::optional<Failure> failure;
  try {
    work();
    return true;
  } catch (...) {
    failure = CurrentFailure();
  }
  parts.state.dialogs->MessageBox(parts.Text(text, {failure->Description()}), message_box::kOkWarning,
                                  parts.state.title);
  return false;
}

std::string NameInSentence(const AppParts& parts, const TaskRecord& task) {
  return FromQt(qt::Shortened(ToQt(TaskName(parts, task)), qt::kLongestShown));
}

}  // namespace plovix::app
