/// @file
/// The few texts that the surface has of its own, in English. A host that speaks another language gives the
/// form widget its own; the surface knows no languages.
#pragma once

#include <plovix/base/requirements.h>

#include <functional>
#include <string>

namespace plovix::qt {

/// UTF-8, without mnemonics.
struct SurfaceTexts {
  std::string search = "Search";                         ///< names the field that narrows a long list
  std::string no_match = "No entry contains this text";  ///< below it, when the list has become empty
  /// Below a list that shows only a part; `count` is what it leaves out, written as a number for people.
  std::function<std::string(const std::string& count)> more = [](const std::string& count) {
    return count + " more; type to narrow";
  };
};

}  // namespace plovix::qt
