// The statement runner: how every named procedure with a handler deals with failures. Each call runs one
// source statement. What a statement does before it fails stays done, so compute first and change state last.
#pragma once

#include <plovix/base/failure.h>

#include <optional>
#include <source_location>
#include <string_view>
#include <type_traits>

namespace plovix {

// Whether a procedure ran to its end or was left because of the reporter's answer.
enum class Outcome { kCompleted, kLeft };

// Passed to a procedure's body. Calling it runs one statement. A failure goes to the host's error reporter,
// whose answer retries the statement, skips it, or leaves the procedure. The result of a skipped statement is
// unknown, and unknown values are not written.
class Statements {
 public:
  Statements(std::string_view page, std::string_view procedure) : page_(page), procedure_(procedure) {}

  // False if the statement was skipped.
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

  // The result of `read`, as one statement; nothing if it was skipped.
  template <class Expression>
  [[nodiscard]] auto Read(Expression&& read, std::source_location where = std::source_location::current()) {
    std::optional<std::decay_t<std::invoke_result_t<Expression&>>> value;
    (*this)([&] { value = read(); }, where);
    return value;
  }

  // The same for what has a value of its own for nothing: that value when it was skipped.
  template <class Expression>
  [[nodiscard]] auto Get(Expression&& read, std::source_location where = std::source_location::current()) {
    return Read(read, where).value_or(std::decay_t<std::invoke_result_t<Expression&>>());
  }

  // Evaluates a condition as one statement; if it was skipped, it counts as false. Only for conditions for
  // which false loses nothing; otherwise use Read.
  template <class Condition>
  [[nodiscard]] bool If(Condition&& condition, std::source_location where = std::source_location::current()) {
    return Get(condition, where);
  }

  // How many statements have been skipped so far.
  [[nodiscard]] int Skipped() const noexcept { return skipped_; }

  // Leaves the procedure because one that it called was left.
  [[noreturn]] static void Leave() { throw Left{}; }

 private:
  template <class Body>
  friend Outcome RunProcedure(std::string_view page, std::string_view procedure, Body&& body);
  struct Left {};

  // Reports a failure; returns true for retry, false for continue, and throws Left for any other answer.
  // Called with no exception alive, because the reporter may show a dialog.
  bool WantsRetry(const Failure& failure, int line) const;

  std::string_view page_;
  std::string_view procedure_;
  int skipped_ = 0;
};

// What a helper takes in place of the Statements of the procedure that calls it: its statements count as that
// procedure's, at the line of the call, which must not be broken into several lines.
struct RunAt {
  RunAt(Statements& run,  // NOLINT(google-explicit-constructor): made by the call
        std::source_location line = std::source_location::current())
      : statements(run), where(line) {}
  template <class Statement>
  bool operator()(Statement&& statement) const {
    return statements(statement, where);
  }
  template <class Expression>
  [[nodiscard]] auto Read(Expression&& read) const {
    return statements.Read(read, where);
  }
  template <class Condition>
  [[nodiscard]] bool If(Condition&& condition) const {
    return statements.If(condition, where);
  }

  Statements& statements;
  const std::source_location where;
};

// Runs `body`, with a Statements as argument, as the named procedure of a page.
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
