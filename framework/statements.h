// The statement runner: how every named procedure with a handler meets a failure. One source statement
// per call; what a statement does before it fails stays done, so compute first and change state last.
#pragma once

#include <plovix/base/failure.h>

#include <optional>
#include <source_location>
#include <string_view>
#include <type_traits>

namespace plovix {

// Whether a procedure ran to its end or was left by the reporter's answer.
enum class Outcome { kCompleted, kLeft };

// Handed to a procedure's body. Calling it runs one statement; a failure goes to the host's error
// reporter, whose answer runs the statement again, skips it, or leaves the procedure. What a skipped
// statement was to give is not known, and what is not known is not written.
class Statements {
 public:
  Statements(std::string_view page, std::string_view procedure) : page_(page), procedure_(procedure) {}

  // False when the statement was skipped.
  template <class Statement>
  bool operator()(Statement&& statement, std::source_location where = std::source_location::current()) {
    for (;;) {
      std::optional<Failure> failure;
      try {
        statement();
        return true;
      } catch (const Left&) {
        throw;
      } catch (...) {
        failure = CurrentFailure();
      }
      if (WantsRetry(*failure, static_cast<int>(where.line()))) continue;
      ++skipped_;
      return false;
    }
  }

  // What `read` gives, as one statement; nothing when it was skipped.
  template <class Expression>
  [[nodiscard]] auto Read(Expression&& read, std::source_location where = std::source_location::current()) {
    std::optional<std::decay_t<std::invoke_result_t<Expression&>>> value;
    (*this)([&] { value = read(); }, where);
    return value;
  }

  // Evaluates a condition as one statement; one that failed and was skipped counts as false. Only for
  // conditions whose other side loses nothing; else Read.
  template <class Condition>
  [[nodiscard]] bool If(Condition&& condition, std::source_location where = std::source_location::current()) {
    return Read(condition, where).value_or(false);
  }

  // How many statements were skipped so far, by the reporter's answer.
  [[nodiscard]] int Skipped() const noexcept { return skipped_; }

  // Leaves the procedure, because one that it has called was left.
  [[noreturn]] static void Leave() { throw Left{}; }

 private:
  template <class Body>
  friend Outcome RunProcedure(std::string_view page, std::string_view procedure, Body&& body);
  struct Left {};

  // Reports; true for retry, false for continue, throws Left for any other answer. Called with no
  // exception alive, because the reporter may show a dialog.
  bool WantsRetry(const Failure& failure, int line) const;

  std::string_view page_;
  std::string_view procedure_;
  int skipped_ = 0;
};

// Runs `body`, called with a Statements, as the named procedure of a page.
template <class Body>
Outcome RunProcedure(std::string_view page, std::string_view procedure, Body&& body) {
  Statements run(page, procedure);
  try {
    body(run);
  } catch (const Statements::Left&) {
    return Outcome::kLeft;
  }
  return Outcome::kCompleted;
}

}  // namespace plovix
