#include "program_host.h"

#include <plovix/component/entry_points.h>
#include <plovix/standalone/data/background_data_source.h>
#include <plovix/standalone/data/sample_database.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/query_builder/wait_window.h>
#include <plovix/standalone/schedule/outlook.h>
#include <plovix/standalone/tasks/stand_in_data_source.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QCoreApplication>
#include <QLocale>
#include <chrono>
#include <filesystem>

namespace plovix::app {

ProgramHost::ProgramHost(const ProgramOptions& options, TextTable texts) : dialogs_(state_) {
  state_.texts = std::move(texts);
  state_.dialogs = &dialogs_;
  state_.title = state_.texts.Host("list.title");
  state_.path = FromQt(QCoreApplication::applicationDirPath());
  state_.decimal_separator = FromQt(QLocale().decimalPoint());
  const std::string path = options.database.value_or(DefaultDatabasePath());
  storage_ = std::make_unique<SqliteStorage>(path);
  tables_ = std::make_unique<SqliteUsersAndTags>(path);
  runs_ = std::make_unique<SqliteRunStore>(path);
  zone_ = runs_->ScheduleZone();
  user_ = FindUser(*tables_, options.user, state_.texts);
  SetUser(state_, *tables_, user_);
  storage_->SetGuard(GuardFor(*tables_, user_.id, state_.texts));
  storage_->SetPerson(user_.id);
  control_ = std::make_unique<TaskControl>(
      TaskControlParts{.tasks = *storage_,
                       .runs = *runs_,
                       .zone = *zone_,
                       .now = [this] { return InstantOf(state_.clock, state_.clock_offset, *zone_); },
                       .person = user_.id,
                       .user = [this] { return UserOf(*tables_, user_.id); }});
  ReadTags(state_, *tables_, state_.texts.code);
  state_.open_rows = [this](const std::string& query) { return storage_->OpenRows(query); };
  state_.tag_filed = [this](const std::string& tag, const std::string& text) { FileTag(tag, text); };
  EmptyLogWhenIdle();
  OpenData(options.data.value_or(DefaultDataPath()), !options.data);
  RegisterPages(registry_);
  InstallHost(state_);
}

ProgramHost::~ProgramHost() {
  InstallServices({});
}

// Keeps a copy of only the task file, as people and backups make it, complete.
void ProgramHost::EmptyLogWhenIdle() {
  constexpr std::chrono::milliseconds kPause{1000};
  idle_.setSingleShot(true);
  idle_.setInterval(kPause);
  QObject::connect(&idle_, &QTimer::timeout, &idle_, [this] {
    if (!storage_->EmptyLog()) idle_.start();
  });
  const auto begin_again = [this] { idle_.start(); };
  storage_->OnWritten(begin_again);
  tables_->OnWritten(begin_again);
  runs_->OnWritten(begin_again);
  idle_.start();  // there may be a log from before
}

// If somebody else has meanwhile created the tag, the next attempt finds theirs.
void ProgramHost::FileTag(const std::string& tag, const std::string& text) {
  try {
    tables_->SaveTag({tag, {{state_.texts.code, text}}}, {});
  } catch (const RowConflict&) {
    ReadTags(state_, *tables_, state_.texts.code);
    throw;
  }
}

AppParts ProgramHost::Parts() {
  return {.state = state_,
          .registry = registry_,
          .storage = *storage_,
          .tables = *tables_,
          .user = user_,
          .data = data_,
          .runs = *runs_,
          .control = *control_,
          .zone = *zone_,
          .data_file = data_file_,
          .task_file = runs_->Path(),
          .set_zone = [this](const std::string& zone) { runs_->SetZone(zone); }};
}

void ProgramHost::OpenData(const std::string& path, bool make_sample) {
  std::error_code error;
  if (make_sample && !std::filesystem::exists(path, error)) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    DoOrTell(state_, "data.noSample",
             [&] { CreateSampleDatabase(path, std::chrono::floor<std::chrono::days>(state_.Now())); });
  }
  const auto tell = [this](const char* text) {
    return [this, text](const std::string& parameter) { TellUser(state_, text, {parameter}); };
  };
  data_ = std::make_shared<BackgroundDataSource>(path, WaitWithWindow(state_.texts));
  state_.data = std::make_shared<StandInDataSource>(
      data_, StandInDataSource::Tell{tell("data.unreadable"), tell("data.missing")});
  dialogs_.Use(*tables_, path);
  data_file_ = path;
}

}  // namespace plovix::app
