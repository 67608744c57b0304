#include "output_text.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <plovix/standalone/runner/descriptor.h>
#include <sys/stat.h>

#include <algorithm>

namespace plovix::app {
namespace {

constexpr std::size_t kMostSought = 4096;  // bytes, for the end of the first line
constexpr int kLongestLine = 1000;         // UTF-16 units; layout takes the square of a line's length
constexpr int kMostMarks = 8;              // on one character; layout takes long for each

[[noreturn]] void RefuseReading(const std::string& words) {
  throw Failure(failure_number::kInvalidCall, words);
}

bool IsLineEnd(QChar unit) {
  return unit == u'\n' || unit == u'\r' || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator;
}

// "^[" for the character that begins a terminal's commands, and so on: every font has that.
bool IsControl(QChar unit) {
  return (unit < u' ' && unit != u'\t') || unit == u'\x7F';
}
QString Caret(QChar unit) {
  return QString(u'^') + QChar(static_cast<char16_t>(unit.unicode() ^ 0x40U));
}

// What turns the direction of the text around it, or is not to be seen.
bool IsUnseen(QChar unit) {
  const char16_t code = unit.unicode();
  return (code >= u'\x80' && code < u'\xA0') || (code >= u'\u202A' && code <= u'\u202E') ||
         (code >= u'\u2066' && code <= u'\u2069') || code == u'\u200E' || code == u'\u200F' ||
         code == u'\u061C' || unit == QChar::ObjectReplacementCharacter;
}

}  // namespace

std::optional<OutputPart> ReadOutput(const std::string& path, std::optional<std::int64_t> offset) {
  constexpr int kHow = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const runner::Descriptor file(open(path.c_str(), kHow));
  if (!file.IsOpen() && (errno == ENOENT || errno == ENOTDIR)) return std::nullopt;
  if (!file.IsOpen()) RefuseReading(errno == ELOOP ? "it is a link" : runner::SystemWords(errno));
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) RefuseReading(runner::SystemWords(errno));
  if (!S_ISREG(status.st_mode)) RefuseReading("it is no ordinary file");
  OutputPart part;
  part.size = status.st_size;
  const std::int64_t from_end = std::max<std::int64_t>(0, part.size - static_cast<std::int64_t>(kMostRead));
  part.offset = offset.value_or(from_end);
  part.bytes.resize(kMostRead);
  ssize_t count = -1;
  do count = pread(file.Get(), part.bytes.data(), kMostRead, part.offset);
  while (count < 0 && errno == EINTR);
  if (count < 0) RefuseReading(runner::SystemWords(errno));
  part.bytes.resize(static_cast<std::size_t>(count));
  return part;
}

std::string_view FromWholeLine(const OutputPart& part) {
  std::string_view bytes = part.bytes;
  if (part.offset == 0) return bytes;
  const std::size_t end = bytes.substr(0, kMostSought).find('\n');
  if (end != std::string_view::npos) return bytes.substr(end + 1);
  const auto begins = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  return bytes.substr(static_cast<std::size_t>(std::ranges::find_if(bytes, begins) - bytes.begin()));
}

std::size_t WholeCharacters(std::string_view bytes) {
  constexpr std::size_t kLongestCharacter = 4;  // bytes
  for (std::size_t back = 1; back <= std::min(kLongestCharacter, bytes.size()); ++back) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
    if ((byte & 0xC0U) == 0x80U) continue;
    const std::size_t length = byte < 0xC0U ? 1 : byte < 0xE0U ? 2 : byte < 0xF0U ? 3 : kLongestCharacter;
    return length > back ? bytes.size() - back : bytes.size();
  }
  return bytes.size();
}

QString VisibleText(std::string_view bytes) {
  const QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QString shown;
  shown.reserve(text.size());
  int in_line = 0, marks = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar unit = text[i];
    if (IsLineEnd(unit)) {
      const bool ends_twice = unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n';
      if (!ends_twice) shown += u'\n';
      in_line = marks = 0;
      continue;
    }
    marks = unit.isMark() ? marks + 1 : 0;
    if (marks > kMostMarks) continue;
    if (++in_line > kLongestLine && !unit.isLowSurrogate() && marks == 0) {
      shown += u'\n';
      in_line = 1;
    }
    if (IsControl(unit))
      shown += Caret(unit);
    else
      shown += IsUnseen(unit) ? QChar(QChar::ReplacementCharacter) : unit;
  }
  return shown;
}

}  // namespace plovix::app
