// The surface's own texts from the host's language table, and its rules. Used by the windows that show pages.
#pragma once

#include <plovix/standalone/objects/host_state.h>
#include <plovix/surfaces/qt/surface_options.h>
#include <plovix/surfaces/qt/surface_texts.h>

#include "entry_rules.h"

namespace plovix::app {

// `texts` outlives the result.
[[nodiscard]] inline qt::SurfaceTexts SurfaceTextsOf(const TextTable& texts) {
  return {.search = texts.Host("surface.search"),
          .no_match = texts.Host("surface.noMatch"),
          .more = [&texts](const std::string& count) { return texts.Host("surface.more", {count}); }};
}

// What may be typed into the pages' fields. `state` outlives the result.
[[nodiscard]] inline qt::SurfaceOptions SurfaceOptionsOf(const HostState& state) {
  return {.refuse = [&state](const Control& control, const std::string& text) {
    return EntryProblem(control, text, state.decimal_separator, state.texts);
  }};
}

}  // namespace plovix::app
