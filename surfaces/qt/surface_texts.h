/// @file
/// The surface's own few texts, in English. A host in another language passes its own texts to the form
/// widget; the surface knows no languages.
#pragma once

#include <plovix/base/requirements.h>

#include <functional>
#include <string>

namespace plovix::qt {

/// UTF-8, without mnemonics.
struct SurfaceTexts {
  std::string search = "Search";                         ///< names the field that narrows a long list
  std::string no_match = "No entry contains this text";  ///< below it, when no entry is left
  /// Shown below a list of which only a part is shown; `count` is the formatted number of omitted entries.
  std::function<std::string(const std::string& count)> more = [](const std::string& count) {
    return count + " more; type to narrow";
  };
};

}  // namespace plovix::qt
