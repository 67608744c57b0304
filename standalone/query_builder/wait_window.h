// The small window shown during work on data that takes longer than a moment. Used wherever a window needs an
// answer before it can go on.
#pragma once

#include <plovix/standalone/data/background_job.h>
#include <plovix/standalone/text/text_table.h>

namespace plovix::app {

// Waits for a moment without a window, and then with one that the user can cancel; it closes by itself if the
// answer takes too long. All windows are drawn meanwhile. `texts` outlives it.
[[nodiscard]] JobWait WaitWithWindow(const TextTable& texts);

}  // namespace plovix::app
