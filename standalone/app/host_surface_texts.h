// The surface's own texts from the host's language table, and its rules. Used by the windows that show pages.
#pragma once

#include <plovix/standalone/objects/host_state.h>
#include <plovix/surfaces/qt/surface_options.h>
#include <plovix/surfaces/qt/surface_texts.h>

namespace plovix::app {

// `texts` outlives what is returned.
[[nodiscard]] qt::SurfaceTexts SurfaceTextsOf(const TextTable& texts);

// What may be typed into the pages' fields: no text that is too long to be stored, and no number that a page
// could not take over. `state` outlives what is returned.
[[nodiscard]] qt::SurfaceOptions SurfaceOptionsOf(const HostState& state);

}  // namespace plovix::app
