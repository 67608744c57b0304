// Tasks in one text file: the storage of this host, in place of the tables that an application has. Each task
// is a line "#ID VERSION MODIFIED OWNER" and, below it, the text that an export writes.
#pragma once

#include <plovix/standalone/exchange/task_export.h>
#include <plovix/standalone/tasks/task_storage.h>
#include <plovix/standalone/text/iso_time.h>
#include <plovix/standalone/text/ordinary_file.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

// For one program at a time: of two that save at the same moment, the later one wins.
class TextStorage final : public plovix::TaskStorage {
 public:
  // `texts` words the failures; it outlives the storage.
  TextStorage(std::string path, const plovix::TextTable& texts) : path_(std::move(path)), texts_(texts) {}

  std::vector<plovix::TaskRecord> List() override {
    std::vector<plovix::TaskRecord> tasks;
    if (!std::filesystem::exists(path_)) return tasks;
    std::istringstream file(plovix::ReadOrdinaryFile(path_, kLargestFile, texts_));
    // Within an exported task every line begins with a blank or a bracket.
    for (std::string head, body; file.get() == '#' && std::getline(file, head); body.clear()) {
      for (std::string line; file.good() && file.peek() != '#' && std::getline(file, line);)
        body += line + '\n';
      plovix::TaskRecord task = plovix::ReadExport(body, path_ + " #" + head, texts_).task;
      std::string modified;
      std::istringstream fields(head);
      fields >> task.id >> task.version >> modified >> std::ws;
      std::getline(fields, task.owner);
      task.modified = plovix::ParseIsoDateTime(modified).value_or(plovix::kZeroDate);
      tasks.push_back(std::move(task));
    }
    return tasks;
  }

  std::optional<plovix::TaskRecord> Load(std::int64_t id) override {
    Tasks tasks = List();
    const auto found = std::ranges::find(tasks, id, &plovix::TaskRecord::id);
    return found == tasks.end() ? std::nullopt : std::optional(*found);
  }

  plovix::TaskRecord Save(const plovix::TaskRecord& task, plovix::DateTime now) override {
    Tasks tasks = List();
    auto place = Find(tasks, task.id, task.version);
    plovix::TaskRecord saved = task;
    saved.modified = now;
    StartSchedule(saved, now);
    if (task.id == 0) {
      saved.id = tasks.empty() ? 1 : tasks.back().id + 1;
      saved.version = now.time_since_epoch().count();  // not that of a deleted task of this number
      AskGuard(nullptr, &saved);
      place = tasks.insert(tasks.end(), saved);
    } else {
      if (place == tasks.end()) throw plovix::TaskConflict(kRefused, "Somebody has deleted the task.");
      saved.version = plovix::NextVersion(task.version);
      AskGuard(&*place, &saved);
      *place = saved;
    }
    Write(tasks);
    return saved;
  }

  void Delete(std::int64_t id, std::int64_t version) override {
    Tasks tasks = List();
    const auto place = Find(tasks, id, version);
    if (place == tasks.end()) return;
    AskGuard(&*place, nullptr);
    tasks.erase(place);
    Write(tasks);
  }

 private:
  using Tasks = std::vector<plovix::TaskRecord>;

  // The end when there is none of that id.
  static Tasks::iterator Find(Tasks& tasks, std::int64_t id, std::int64_t version) {
    const auto found = std::ranges::find(tasks, id, &plovix::TaskRecord::id);
    if (found != tasks.end() && found->version != version)
      throw plovix::TaskConflict(kRefused, "Somebody has changed the task.");
    return found;
  }

  // The new file takes the place of the old one when all of it is written, and can be read again.
  void Write(const Tasks& tasks) {
    const std::string written = path_ + ".new";
    std::ofstream file(written, std::ios::binary);
    for (const plovix::TaskRecord& task : tasks) {
      const std::string text = plovix::WriteExport(task, {}, texts_);
      (void)plovix::ReadExport(text, path_, texts_);  // refuses a text that is too long
      file << '#' << task.id << ' ' << task.version << ' ' << plovix::IsoDateTime(task.modified) << ' '
           << task.owner << '\n'
           << text;
    }
    file.close();
    std::error_code problem;
    if (file) std::filesystem::rename(written, path_, problem);
    if (!file || problem) throw plovix::Failure(kRefused, "The tasks cannot be written to " + path_ + ".");
  }

  static constexpr int kRefused = plovix::failure_number::kInvalidCall;
  static constexpr std::size_t kLargestFile = std::size_t{64} * 1024 * 1024;  // bytes
  std::string path_;
  const plovix::TextTable& texts_;
};
