#include "process_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <memory>
#include <optional>
#include <set>
#include <string_view>

#include "descriptor.h"

namespace plovix::runner {
namespace {

template <class Number>
bool ReadNumber(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end != text.data();
}

// Takes the next number and the blank behind it.
pid_t NextNumber(std::string_view& text) {
  pid_t number = 0;
  (void)ReadNumber(text, number);
  text.remove_prefix(std::min(text.find(' '), text.size() - 1) + 1);
  return number;
}

// From "/proc/ID/stat": "ID (NAME) STATE PARENT GROUP SESSION ...", where the name may hold anything.
std::optional<ProcessInfo> ReadProcess(pid_t id) {
  const std::string path = "/proc/" + std::to_string(id) + "/stat";
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::array<char, 512> block{};
  const ssize_t count = file.IsOpen() ? read(file.Get(), block.data(), block.size()) : 0;
  if (count <= 0) return std::nullopt;
  std::string_view text(block.data(), static_cast<std::size_t>(count));
  const std::size_t open = text.find('('), close = text.rfind(')');
  constexpr std::size_t kStateAt = 2, kParentAt = 4;  // behind the name
  if (open == std::string_view::npos || close == std::string_view::npos || close < open ||
      text.size() <= close + kParentAt)
    return std::nullopt;
  ProcessInfo process;
  process.id = id;
  process.state = text[close + kStateAt];
  process.name = text.substr(open + 1, close - open - 1);
  text.remove_prefix(close + kParentAt);
  process.parent = NextNumber(text);
  NextNumber(text);  // the group
  process.session = NextNumber(text);
  return process;
}

std::vector<ProcessInfo> AllProcesses() {
  struct CloseFolder {
    void operator()(DIR* folder) const noexcept { closedir(folder); }
  };
  const std::unique_ptr<DIR, CloseFolder> folder(opendir("/proc"));
  std::vector<ProcessInfo> processes;
  if (!folder) return processes;
  while (const dirent* entry = readdir(folder.get())) {
    pid_t id = 0;
    if (!ReadNumber(std::string_view(entry->d_name), id)) continue;
    if (auto process = ReadProcess(id)) processes.push_back(std::move(*process));
  }
  return processes;
}

// `is_meant` looks at the process once its number can no longer become another one's. Whether it got the
// signal.
template <class IsMeant>
bool SignalProcess(pid_t id, int signal, const IsMeant& is_meant) {
  const Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, id, 0)));
  if (!handle.IsOpen()) return false;
  const auto now = ReadProcess(id);
  return now && is_meant(*now) && syscall(SYS_pidfd_send_signal, handle.Get(), signal, nullptr, 0) == 0;
}

}  // namespace

// The processes were not read at one moment, so their parents are not relied on to form a tree.
std::vector<ProcessInfo> Descendants() {
  const std::vector<ProcessInfo> all = AllProcesses();
  std::vector<ProcessInfo> found;
  std::set<pid_t> tree{getpid()};
  for (std::size_t before = 0; before != tree.size();) {
    before = tree.size();
    for (const ProcessInfo& process : all) {
      if (tree.contains(process.parent) && tree.insert(process.id).second) found.push_back(process);
    }
  }
  return found;
}

void SignalDescendants(int signal) {
  for (const ProcessInfo& process : Descendants()) {
    SignalProcess(process.id, signal, [&process](const ProcessInfo& now) {
      return now.parent == process.parent || now.parent == getpid();
    });
  }
}

void KillSession(pid_t session) {
  constexpr int kMostRounds = 100;  // each finds what the last one's processes have started
  bool found = true;
  for (int round = 0; found && round < kMostRounds; ++round) {
    found = false;
    for (const ProcessInfo& process : AllProcesses()) {
      const auto is_member = [session](const ProcessInfo& now) {
        return now.session == session && now.state != 'Z';
      };
      if (is_member(process)) found |= SignalProcess(process.id, SIGKILL, is_member);
    }
  }
}

}  // namespace plovix::runner
