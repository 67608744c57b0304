#include "program.h"

#include <plovix/base/failure.h>

#include <charconv>
#include <type_traits>

namespace plovix::runner {
namespace {

[[noreturn]] void RefuseFrame() {
  throw Failure(failure_number::kInternal,
                "The manager and the holder of a program are of different versions");
}

// Each member is one text, and a list as many as it has, behind their number. Written and read by one list of
// members, VisitMembers, so that the two cannot differ.
class FrameWriter {
 public:
  explicit FrameWriter(std::string_view word) : frame_{std::string(word)} {}
  void operator()(const std::string& text) { frame_.push_back(text); }
  void operator()(std::int64_t number) { frame_.push_back(std::to_string(number)); }
  void operator()(int number) { (*this)(std::int64_t{number}); }
  void operator()(std::chrono::milliseconds time) { (*this)(std::int64_t{time.count()}); }
  void operator()(BootClock::time_point time) { (*this)(time.time_since_epoch()); }
  void operator()(StopReason reason) { (*this)(static_cast<int>(reason)); }
  void operator()(const std::vector<std::string>& texts) {
    (*this)(static_cast<std::int64_t>(texts.size()));
    for (const std::string& text : texts) (*this)(text);
  }
  template <class Value>
  void operator()(const std::optional<Value>& value) {
    (*this)(value.has_value() ? 1 : 0);
    if (value) (*this)(*value);
  }
  [[nodiscard]] Frame Take() { return std::move(frame_); }

 private:
  Frame frame_;
};

class FrameReader {
 public:
  FrameReader(const Frame& frame, std::string_view word) : frame_(frame) {
    if (Next() != word) RefuseFrame();
  }
  void operator()(std::string& text) { text = Next(); }
  void operator()(std::int64_t& number) {
    const std::string& text = Next();
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) RefuseFrame();
  }
  void operator()(int& number) { number = static_cast<int>(Number()); }
  void operator()(std::chrono::milliseconds& time) { time = std::chrono::milliseconds(Number()); }
  void operator()(BootClock::time_point& time) {
    time = BootClock::time_point(std::chrono::milliseconds(Number()));
  }
  void operator()(StopReason& reason) { reason = static_cast<StopReason>(Number()); }
  void operator()(std::vector<std::string>& texts) {
    for (std::int64_t count = Number(); count > 0; --count) texts.push_back(Next());
  }
  template <class Value>
  void operator()(std::optional<Value>& value) {
    if (Number() != 0) (*this)(value.emplace());
  }

 private:
  const std::string& Next() {
    if (next_ >= frame_.size()) RefuseFrame();
    return frame_[next_++];
  }
  std::int64_t Number() {
    std::int64_t number = 0;
    (*this)(number);
    return number;
  }

  const Frame& frame_;
  std::size_t next_ = 0;
};

template <class Request, class Visit>
void VisitRequest(Request& request, Visit& visit) {
  visit(request.run);
  visit(request.path);
  visit(request.arguments);
  visit(request.environment);
  visit(request.folder);
  visit(request.output_path);
  visit(request.secrets);
  visit(request.time_limit);
  visit(request.patience);
  visit(request.deadline);
  visit(request.lock_path);
  visit(request.lock_offset);
}

template <class End, class Visit>
void VisitEnd(End& end, Visit& visit) {
  visit(end.run);
  visit(end.failure);
  visit(end.exit_status);
  visit(end.signal);
  visit(end.stopped);
  visit(end.leftovers);
  visit(end.output_bytes);
  visit(end.left_out);
  visit(end.output_failure);
}

constexpr std::string_view kRequestFrame = "run";
constexpr std::string_view kEndFrame = "end";

}  // namespace

Frame FrameOf(const ProgramRequest& request) {
  FrameWriter writer(kRequestFrame);
  VisitRequest(request, writer);
  return writer.Take();
}

Frame FrameOf(const ProgramEnd& end) {
  FrameWriter writer(kEndFrame);
  VisitEnd(end, writer);
  return writer.Take();
}

ProgramRequest RequestFrom(const Frame& frame) {
  ProgramRequest request;
  FrameReader reader(frame, kRequestFrame);
  VisitRequest(request, reader);
  return request;
}

ProgramEnd EndFrom(const Frame& frame) {
  ProgramEnd end;
  FrameReader reader(frame, kEndFrame);
  VisitEnd(end, reader);
  return end;
}

Frame NumberFrame(std::string_view word, std::int64_t number) {
  FrameWriter writer(word);
  writer(number);
  return writer.Take();
}

std::int64_t NumberFrom(const Frame& frame) {
  std::int64_t number = 0;
  FrameReader(frame, frame.empty() ? std::string_view() : frame.front())(number);
  return number;
}

}  // namespace plovix::runner
