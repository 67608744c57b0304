#include "file_records.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <limits>

#include "field_binding.h"
#include "query_run.h"
#include "record_query.h"
#include "sqlite_data_source.h"
#include "text_guard.h"

namespace plovix {
namespace {

constexpr std::chrono::milliseconds kPatienceForWriters{5000};
constexpr std::chrono::minutes kLongestQuery{10};

[[noreturn]] void RefuseTask(const std::string& why) {
  throw Failure(failure_number::kInvalidCall, why);
}

// "2026-03-01 08:00:00" and "2026-03-01" are times, too.
std::optional<DateTime> TimeIn(std::string text) {
  constexpr std::size_t kDayLength = 10, kTimeLength = 19;
  if (text.size() == kDayLength) text += "T00:00:00";
  if (text.size() > kTimeLength) text.resize(kTimeLength);
  if (text.size() > kDayLength && text[kDayLength] == ' ') text[kDayLength] = 'T';
  return ParseIsoDateTime(text);
}

class FilePass final : public RecordPass {
 public:
  FilePass(const std::string& path, DataObjectRecord object, std::optional<std::string> change)
      : object_(std::move(object)),
        change_(std::move(change)),
        connection_(path, kPatienceForWriters, Access::kReadOnly),
        time_(connection_, kLongestQuery),
        guard_(connection_, false) {}

  void ReadKeys(const std::string& query, const std::vector<std::string>& wanted) {
    const std::string sql = KeysStatement(object_, query);
    if (guard_.IsTooNested(sql)) RefuseTask("the query is built on too many others");
    Statement statement = guard_.Prepare(sql, time_);
    std::string former;
    statement.ForEachRow([&](const Statement& row) {
      const FieldValue key = FieldIn(row, 0);
      const std::string text = KeyOf(key);
      if (std::holds_alternative<std::monostate>(key) || std::holds_alternative<Blob>(key) ||
          text == former) {
        RefuseTask("the field \"" + object_.key + "\" of \"" + object_.caption +
                   "\" does not tell its records apart");
      }
      former = text;
      if (wanted.empty() || std::ranges::find(wanted, text) != wanted.end()) keys_.push_back(key);
    });
  }

  std::optional<SourceRecord> Next() override {
    while (next_ < keys_.size()) {
      const FieldValue& key = keys_[next_++];
      Statement statement = guard_.Prepare(RecordStatement(object_), time_);
      BindField(statement, 0, key);
      if (!statement.Step()) continue;
      SourceRecord record;
      record.key = KeyOf(key);
      for (int column = 0; column < statement.Columns(); ++column)
        record.values.push_back({std::string(statement.Name(column)), FieldIn(statement, column)});
      NoteChange(record);
      return record;
    }
    return std::nullopt;
  }

  bool TellsChange() const override { return change_.has_value(); }

 private:
  void NoteChange(SourceRecord& record) const {
    const FieldValue* changed = change_ ? FindValue(record.values, *change_) : nullptr;
    if (changed == nullptr || std::holds_alternative<std::monostate>(*changed)) return;
    record.change = TextOf(*changed);
    record.changed_at = TimeIn(*record.change);
  }

  DataObjectRecord object_;
  std::optional<std::string> change_;
  Connection connection_;
  TimeLimit time_;
  TextGuard guard_;
  std::vector<FieldValue> keys_;
  std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<RecordPass> FileRecords::Open(const TaskRecord& task, const std::vector<std::string>& keys) {
  SqliteDataSource source(path_);
  const auto object = source.Find(task.data_object_name);
  if (!object || HasHiddenName(object->name) || object->reads_hidden)
    RefuseTask("there is no data object \"" + task.data_object_name + "\" in " + path_);
  if (object->key.empty())
    RefuseTask("the data object \"" + object->caption + "\" has no field that tells its records apart");
  if (!task.query.empty()) {
    if (const auto problem = CheckQuery({path_, false}, task.query)) {
      RefuseTask("the query cannot be run" + (problem->detail.empty()
                                                  ? ": it is not one statement that only reads"
                                                  : ": " + problem->detail));
    }
  }
  auto pass = std::make_unique<FilePass>(path_, *object, ChangeFieldOf(source.Fields(object->name)));
  pass->ReadKeys(task.query, keys);
  return pass;
}

}  // namespace plovix
