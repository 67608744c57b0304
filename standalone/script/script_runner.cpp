#include "script_runner.h"

#include <istream>
#include <optional>
#include <ostream>
#include <vector>

#include "commands.h"

namespace plovix {
namespace {

constexpr int kDone = 0;
constexpr int kWrongLine = 2;
constexpr std::string_view kPrompt = "plovix> ";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestLine = std::size_t{1024} * 1024;  // bytes; a device may have no line ends

int RunLines(script::ScriptSession& session, std::istream& in, std::ostream& err,
             const ScriptOptions& options) {
  std::vector<char> line(kLongestLine + 1);
  int number = 1;
  for (;; ++number) {
    if (options.interactive) err << kPrompt << std::flush;
    if (!in.getline(line.data(), static_cast<std::streamsize>(line.size()))) break;
    // The count includes the line end, which the last line may lack.
    std::string_view text(line.data(), static_cast<std::size_t>(in.gcount()) - (in.eof() ? 0 : 1));
    if (number == 1 && text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    // A storage that fails is told like a wrong line.
    if (const auto problem = FailureOf([&] { script::RunCommand(session, script::SplitLine(text)); })) {
      err << options.source_name << ':' << number << ": " << problem->Description() << '\n' << std::flush;
      if (!options.interactive) return kWrongLine;
    }
  }
  if (options.interactive) err << '\n' << std::flush;
  if (in.eof() && !in.bad()) return kDone;
  err << options.source_name << ':' << number << ": "
      << (in.bad() ? "the script cannot be read to its end" : "the line is longer than 1 MB") << '\n'
      << std::flush;
  return kWrongLine;
}

}  // namespace

int RunScript(std::istream& in, std::ostream& out, std::ostream& err, const ScriptOptions& options) {
  std::optional<script::ScriptSession> session;
  if (const auto failure = FailureOf([&] { session.emplace(out, err, options); })) {
    err << options.source_name << ": " << failure->Description() << '\n' << std::flush;
    return kWrongLine;
  }
  return RunLines(*session, in, err, options);
}

}  // namespace plovix
