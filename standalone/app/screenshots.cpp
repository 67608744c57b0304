#include "screenshots.h"

#include <plovix/component/entry_points.h>
#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/data/sample_database.h>
#include <plovix/standalone/data/sqlite_data_source.h>
#include <plovix/standalone/editors/action_dialog.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/query_builder/query_builder_dialog.h>
#include <plovix/standalone/runs/memory_run_store.h>
#include <plovix/standalone/schedule/outlook.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/theme.h>

#include <QDir>
#include <QElapsedTimer>
#include <QLayout>
#include <QLocale>
#include <QMessageBox>
#include <QTemporaryDir>

#include "editor_samples.h"
#include "import_report_dialog.h"
#include "list_samples.h"
#include "qt_dialogs.h"
#include "run_samples.h"
#include "runner_bar.h"
#include "task_list_window.h"
#include "wizard_window.h"

namespace plovix::app {
namespace {

constexpr int kListWidth = 180;  // characters: every column, whatever the size of the screen
constexpr int kHistoryWidth = 220;
constexpr int kPreviewMilliseconds = 800;
constexpr int kActionsWillBeLostText = 117;
constexpr int kNameMissingText = 27;

ActionRecord SampleAction(std::string_view kind, const std::string& setting, const std::string& value) {
  ActionRecord action = NewAction(*FindActionKind(kind));
  action.settings[setting] = value;
  return action;
}

RecurrenceRecord Sample(const PatternRecord& pattern) {
  RecurrenceRecord record;
  record.recurrence_type = static_cast<std::int32_t>(pattern.index()) - 1;
  record.pattern = pattern;
  return record;
}

// A schedule of the kind that the page edits.
RecurrenceRecord SampleFor(const std::string& identifier) {
  using namespace page_identifier;
  if (identifier == kDailyRecurrence) return Sample(DailyRecord{3, true});
  if (identifier == kMonthlyRecurrence) return Sample(MonthlyRecord{1, {.day_of_month = 31}});
  if (identifier == kYearlyRecurrence) return Sample(YearlyRecord{4, {true, 1, 4, 9}});
  RecurrenceRecord weekly = Sample(WeeklyRecord{2, {false, true, false, false, false, true}});
  if (identifier == kRecurrenceTime) {
    weekly.time_kind = time_kind::kEveryNHours;
    weekly.interval = 4;
  }
  return weekly;
}

TaskRecord SampleTask() {
  TaskRecord task;
  task.name = "Month-end reports";
  task.short_description = "Prints and archives the reports";
  task.description = "Runs the report program for the closed month,\nthen notes the result in the log.";
  task.categories = {{"Accounting", true}, {"Reports", true}};
  task.allow_automation_manager = true;
  task.recurrence = SampleFor({});
  task.actions = {SampleAction("run-program", "path", "/usr/local/bin/month-end"),
                  SampleAction("run-sql", "statement", "DELETE FROM Drafts WHERE Closed = 1"),
                  SampleAction("write-log", "text", "Month closed")};
  return task;
}

ImportReport SampleReport() {
  return {{"exchange.note.dataObject", {"invoices"}},
          {"exchange.note.action", {"2", "send-mail"}},
          {"exchange.note.user", {"anna"}},
          {"exchange.note.tag", {"Accounting"}}};
}

// One language with one palette.
class Session {
 public:
  Session(const std::string& folder, const std::string& language, std::string suffix)
      : folder_(ToQt(folder)), suffix_(std::move(suffix)) {
    state_.texts = LoadLanguage(language);
    state_.dialogs = &dialogs_;
    state_.title = state_.texts.Host("list.title");
    data_->entries = {{{"invoices", "Invoices", "id"}, {{"total", FieldType::kReal}}}};
    state_.data = data_;
    dialogs_.Use(tables_, {});
    SetUser(state_, tables_, user_);
    state_.clock = [] {
      return std::chrono::local_days{std::chrono::year{2026} / 2 / 27} + std::chrono::hours{10};
    };
    RegisterPages(registry_);
    InstallHost(state_);
  }

  int SaveAll() {
    SaveLists();
    SavePages();
    SaveDialogs();
    return count_;
  }

 private:
  void Save(QWidget& widget, const std::string& what) {
    widget.show();
    QCoreApplication::processEvents();
    const QString path = folder_.filePath(ToQt(what + "-" + suffix_ + ".png"));
    if (!widget.grab().save(path)) {
      throw Failure(failure_number::kInvalidCall, FromQt(path) + ": the picture cannot be written");
    }
    widget.hide();
    ++count_;
  }

  void SaveLists() {
    TaskListWindow empty(parts_);
    auto* nobody = new RunnerBar(state_.texts);
    WhoRuns who;
    who.problem = "/home/anna/tasks: others may write it";
    nobody->Show(who);
    empty.layout()->addWidget(nobody);
    Save(empty, "TaskListEmpty");
    TaskRecord task = SampleTask();
    storage_.Save(task, state_.Now());
    task.name = "Nightly clean-up";
    task.short_description = "Removes what nobody needs";
    task.categories = {{"Maintenance", true}};
    task.owner = "anna";
    task.recurrence = Sample(DailyRecord{});
    storage_.Save(task, state_.Now());
    TaskListWindow list(parts_);
    list.resize(list.fontMetrics().averageCharWidth() * kListWidth, list.height());
    auto* runner = new RunnerBar(state_.texts);
    who = {};
    who.who = WhoRuns::Who::kOther;
    who.other = {1,        ManagerKind::kService,
                 "office", "anna",
                 1,        std::chrono::sys_days{std::chrono::year{2026} / 2 / 1}};
    runner->Show(who);
    list.layout()->addWidget(runner);
    Save(list, "TaskList");
    PictureList(parts_, [this](QWidget& window, const std::string& name) { Save(window, name); });
  }

  void SavePages() {
    for (const std::string& identifier : registry_.Identifiers()) {
      TaskRecord task = SampleTask();
      task.recurrence = SampleFor(identifier);
      task.record_mode = record_mode::kQueryResults;
      task.data_object_name = "invoices";
      task.data_object_caption = "Invoices";
      task.query = "SELECT * FROM \"invoices\" WHERE \"total\" >= 100";
      if (identifier == page_identifier::kRecords) {
        task.base_date = state_.Now();
      }
      WizardWindow window(parts_, task, StartEditing(state_, user_, task));
      if (window.Start(identifier)) Save(window, identifier.substr(identifier.find('.') + 1));
    }
  }

  // With its own small database; the screenshots wait for the query's results.
  void SaveQueryBuilder() {
    const QTemporaryDir folder;
    const std::string path = FromQt(folder.filePath("sample.sqlite"));
    CreateSampleDatabase(path, std::chrono::floor<std::chrono::days>(state_.Now()));
    SqliteDataSource source(path);
    const std::pair<const char*, const char*> queries[] = {
        {"QueryBuilder",
         "SELECT * FROM orders WHERE (status = 'open' OR status = 'shipped') AND ordered_at >= '2026-01-01'"},
        {"QueryBuilderText", "SELECT count(*) FROM orders GROUP BY status"}};
    for (const auto& [name, query] : queries) {
      QueryBuilderDialog dialog(state_.texts, source, source.Find("orders").value(), query, {.path = path},
                                nullptr);
      dialog.show();
      QElapsedTimer waited;
      for (waited.start(); waited.elapsed() < kPreviewMilliseconds;) QCoreApplication::processEvents();
      Save(dialog, name);
    }
  }

  void SaveDialogs() {
    SaveQueryBuilder();
    for (const ActionKind& kind : ActionKinds()) {
      std::vector<const ActionKind*> kinds;
      for (const ActionKind& offered : ActionKinds()) kinds.push_back(&offered);
      ActionDialog dialog(state_.texts, state_.texts.Host("action.edit.add"), kinds, NewAction(kind), nullptr,
                          data_->entries.front().fields);
      dialog.accept();  // shows what is missing
      Save(dialog, "Action-" + std::string(kind.id));
    }
    Save(*std::make_unique<ImportReportDialog>(state_.texts, "Month-end reports.task.json", SampleReport(),
                                               nullptr),
         "ImportReport");
    const auto text = [this](int id) { return state_.texts.Find(id).value_or(""); };
    Save(*MakeMessageBox(state_.texts, text(kActionsWillBeLostText), message_box::kOkCancelQuestion,
                         state_.title),
         "MessageBoxQuestion");
    Save(*MakeMessageBox(state_.texts, text(kNameMissingText), message_box::kOkInformation, state_.title),
         "MessageBoxInformation");
    Save(*MakeReportBox(state_.texts, {6, "Overflow", "Plovix", "Details", "SaveValues", 170}),
         "ErrorReport");
    Save(
        *MakeWarningQuestion(state_.texts, state_.title, plovix::app::DiscardQuestion(state_.texts), nullptr),
        "DiscardQuestion");
    const auto save = [this](QWidget& window, const std::string& name) { Save(window, name); };
    PictureEditors(state_.texts, save);
    PictureRuns(state_.texts, [&](QWidget& window, const std::string& name) {
      if (name == "History")
        window.resize(window.fontMetrics().averageCharWidth() * kHistoryWidth, window.height());
      save(window, name);
    });
  }

  QDir folder_;
  std::string suffix_;
  int count_ = 0;
  HostState state_;
  QtDialogs dialogs_{state_};
  PageRegistry registry_;
  MemoryStorage storage_;
  MemoryUsersAndTags tables_;
  UserRecord user_ = FirstAdministrator();
  std::shared_ptr<MemoryDataSource> data_ = std::make_shared<MemoryDataSource>();
  MemoryRunStore runs_{storage_};
  Zone zone_ = Zone::Named("Europe/Paris").value_or(Zone::Local());
  TaskControl control_{{.tasks = storage_,
                        .runs = runs_,
                        .zone = zone_,
                        .now = [this] { return InstantOf(state_.clock, state_.clock_offset, zone_); },
                        .person = user_.id}};
  AppParts parts_{state_, registry_, storage_, tables_, user_, data_, runs_, control_, zone_};
};

QtMessageHandler usual_handler = nullptr;

// Suppresses the offscreen platform's warning about the size of every window.
void SayLess(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (!text.endsWith("propagateSizeHints()")) usual_handler(type, context, text);
}

}  // namespace

int SaveScreenshots(QApplication& application, const std::string& folder) {
  if (!QDir().mkpath(ToQt(folder))) {
    throw Failure(failure_number::kInvalidCall, folder + ": the folder cannot be made");
  }
  usual_handler = qInstallMessageHandler(SayLess);
  int count = 0;
  for (const auto& [code, json] : EmbeddedLanguages()) {
    QLocale::setDefault(QLocale(ToQt(code)));
    for (const auto palette : {qt::Palette::kLight, qt::Palette::kDark}) {
      qt::ApplyPalette(application, palette);
      count += Session(folder, code, code + (palette == qt::Palette::kLight ? "-light" : "-dark")).SaveAll();
    }
  }
  InstallServices({});
  qInstallMessageHandler(usual_handler);
  return count;
}

}  // namespace plovix::app
