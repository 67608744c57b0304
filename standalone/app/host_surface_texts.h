// The surface's own texts from the host's language table. Used by the windows that show pages.
#pragma once

#include <plovix/standalone/model/text_table.h>
#include <plovix/surfaces/qt/surface_texts.h>

namespace plovix::app {

// `texts` outlives what is returned.
[[nodiscard]] inline qt::SurfaceTexts SurfaceTextsOf(const TextTable& texts) {
  return {.search = texts.Host("surface.search"),
          .no_match = texts.Host("surface.noMatch"),
          .more = [&texts](const std::string& count) { return texts.Host("surface.more", {count}); }};
}

}  // namespace plovix::app
