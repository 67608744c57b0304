#include "data_changes.h"

#include <plovix/base/utf8.h>

#include "field_binding.h"

namespace plovix {
namespace {

// Checked before it is opened, because a connection for writing would create it.
std::string Existing(const std::string& path) {
  if (FileAt(path) == FileId{})
    throw Failure(failure_number::kFileNotFound, path + ": the data file does not exist");
  return path;
}

std::string WordsFor(const Refusal& refused) {
  switch (refused.what) {
    case Refusal::What::kTable:
      return "an action may not use the table " + Quoted(refused.name);
    case Refusal::What::kFunction:
      return "an action may not call the function " + Quoted(refused.name);
    case Refusal::What::kAction:
      break;
  }
  return "an action may only change data" + (refused.name.empty() ? "" : ", not use " + Quoted(refused.name));
}

}  // namespace

DataChanges::DataChanges(const std::string& path, std::chrono::milliseconds patience)
    : connection_(Existing(path), patience, Access::kReadWrite, "data file") {
  connection_.Run("PRAGMA foreign_keys = ON");
  connection_.StopWhen([this] { return interrupted_.load(); });
}

void DataChanges::Run(const std::string& sql, const std::vector<FieldValue>& parameters) {
  CheckInterrupted();
  const auto change = [&] {
    Statement statement = connection_.Prepare(sql);
    for (std::size_t i = 0; i < parameters.size(); ++i)
      BindField(statement, static_cast<int>(i), parameters[i]);
    statement.Run();
    CheckInterrupted();  // the last moment at which nothing is changed
  };
  try {
    // If the commit's outcome is in doubt, it counts as a failure: the manager has a policy for that.
    connection_.Write([&] { connection_.WithChangeGuard(change); }, [] { return false; });
  } catch (const SqlFailure& failure) {
    if (!failure.Refused()) throw;
    const std::string words = WordsFor(*failure.Refused());
    throw SqlFailure(connection_.Path() + ": " + words, words, -1, failure.Refused());
  }
}

void DataChanges::CheckInterrupted() const {
  if (interrupted_) connection_.Refuse(failure_number::kInterrupted, "the statement was interrupted");
}

}  // namespace plovix
