#include "app_parts.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

namespace plovix::app {

void TellUser(const HostState& state, std::string_view text, const std::vector<std::string>& parameters,
              int buttons) {
  state.dialogs->MessageBox(state.texts.Host(text, parameters), buttons, state.title);
}

bool DoOrTell(const HostState& state, std::string_view text, const std::function<void()>& work) {
  const auto failure = FailureOf(work);
  if (failure) TellUser(state, text, {failure->Description()});
  return !failure;
}

std::string InSentence(const std::string& name) {
  return FromQt(qt::Shortened(ToQt(name), qt::kLongestShown));
}

}  // namespace plovix::app
