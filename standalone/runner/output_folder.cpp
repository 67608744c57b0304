#include "output_folder.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace plovix::runner {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "run-";
constexpr std::string_view kEnding = ".log";

struct Output {
  std::pair<std::int64_t, std::int64_t> written;  // seconds and nanoseconds
  std::int64_t run = 0, size = 0;
  fs::path path;
};

std::optional<std::int64_t> RunOf(std::string_view name) {
  if (!name.starts_with(kPrefix) || !name.ends_with(kEnding)) return std::nullopt;
  name.remove_prefix(kPrefix.size());
  name.remove_suffix(kEnding.size());
  std::int64_t run = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), run);
  return error == std::errc{} && end == name.data() + name.size() ? std::optional(run) : std::nullopt;
}

std::vector<Output> OutputsIn(const std::string& folder) {
  std::vector<Output> outputs;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    struct stat found {};
    const auto run = RunOf(entry->path().filename().native());
    if (!run || lstat(entry->path().c_str(), &found) != 0 || !S_ISREG(found.st_mode)) continue;
    outputs.push_back({{found.st_mtim.tv_sec, found.st_mtim.tv_nsec}, *run, found.st_size, entry->path()});
  }
  return outputs;
}

}  // namespace

std::string OutputFolder(const std::string& task_file) {
  std::error_code error;
  return fs::weakly_canonical(task_file, error).string() + "-logs";
}

std::string OutputPath(const std::string& folder, std::int64_t run) {
  return folder + "/" + std::string(kPrefix) + std::to_string(run) + std::string(kEnding);
}

void TrimOutputs(const std::string& folder, std::int64_t most, const std::set<std::int64_t>& running) {
  std::vector<Output> outputs = OutputsIn(folder);
  std::int64_t all = 0;
  for (const Output& output : outputs) all += output.size;
  if (all <= most) return;
  std::ranges::sort(outputs, {}, [](const Output& output) { return std::pair(output.written, output.run); });
  for (const Output& output : outputs) {
    std::error_code error;
    if (all <= most) return;
    if (!running.contains(output.run) && fs::remove(output.path, error)) all -= output.size;
  }
}

}  // namespace plovix::runner
