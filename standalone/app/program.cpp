#include "program.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/data/background_data_source.h>
#include <plovix/standalone/data/file_records.h>
#include <plovix/standalone/script/script_runner.h>
#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/storage/sqlite_users_and_tags.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/theme.h>
#include <pwd.h>
#include <unistd.h>

#include <QDir>
#include <QIcon>
#include <QLayout>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "application.h"
#include "desktop_notices.h"
#include "program_host.h"
#include "program_options.h"
#include "run_notices.h"
#include "run_windows.h"
#include "runner_bar.h"
#include "screenshots.h"
#include "task_list_window.h"

namespace plovix::app {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongInput = 2;
// The platforms to try, in order. The last one always starts; falling back to it reveals a named display that
// cannot be reached.
const char* const kPlatforms = "xcb;offscreen";
const char* const kWaylandPlatforms = "wayland;xcb;offscreen";

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

bool HasDisplay() {
  return IsSet("QT_QPA_PLATFORM") || IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY");
}

// Without the variable, the toolkit would use the root folder as the user's home.
void LookUpHome() {
  if (IsSet("HOME")) return;
  const passwd* user = getpwuid(geteuid());
  if (user != nullptr && user->pw_dir != nullptr) setenv("HOME", user->pw_dir, 1);
}

// The options, with the user's own task file if none is named. Creates its folder.
ProgramOptions WithTaskFile(ProgramOptions options) {
  if (options.database) return options;
  options.database = DefaultDatabasePath();
  const auto folder = std::filesystem::path(*options.database).parent_path();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw Failure(failure_number::kInvalidCall,
                  folder.string() + ": the folder for your tasks cannot be made (" + error.message() +
                      "); name a task file elsewhere with --database");
  }
  return options;
}

// If the toolkit cannot show anything, it ends the program with a signal.
[[noreturn]] void EndInWords(const std::string& reason) {
  const char* platform = std::getenv("QT_QPA_PLATFORM");
  std::cerr << "plovix: no window can be shown with QT_QPA_PLATFORM=" << (platform == nullptr ? "" : platform)
            << "; without it the display decides, and \"plovix script FILE\" needs none.\n"
            << reason << std::flush;
  std::_Exit(kFailed);
}

QtMessageHandler toolkits_own_handler = nullptr;

void HandleMessageAtStart(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type == QtFatalMsg) EndInWords(FromQt(message));
  toolkits_own_handler(type, context, message);
}

// `argc` outlives the application.
std::unique_ptr<Application> MakeApplication(int& argc, char** argv) {
  toolkits_own_handler = qInstallMessageHandler(HandleMessageAtStart);
  auto application = std::make_unique<Application>(argc, argv);
  qInstallMessageHandler(toolkits_own_handler);
  return application;
}

TextTable ChosenLanguage(const ProgramOptions& options) {
  if (options.language) return LoadLanguage(*options.language);
  std::vector<std::string> preferred;
  for (const QString& name : QLocale::system().uiLanguages()) preferred.push_back(FromQt(name));
  return LoadPreferredLanguage(preferred);
}

qt::Palette ChosenPalette(const ProgramOptions& options) {
  if (!options.palette) return qt::Palette::kSystem;
  return options.palette == "dark" ? qt::Palette::kDark : qt::Palette::kLight;
}

int RunScriptFrom(const std::string& path, const ScriptOptions& script) {
  // A pipe is as good as standard input: another command may write to it.
  std::error_code error;
  const bool is_folder = std::filesystem::is_directory(path, error);
  std::ifstream file(path);
  if (is_folder || !file) {
    std::cerr << path << ": the script cannot be read: "
              << std::generic_category().message(is_folder ? EISDIR : errno) << '\n';
    return kWrongInput;
  }
  return RunScript(file, std::cout, std::cerr, script);
}

// Without a database, a script's tasks stay in memory, separate from the user's.
int RunScriptFile(const ProgramOptions& options) {
  MemoryStorage memory;
  MemoryUsersAndTags memory_tables;
  std::unique_ptr<SqliteStorage> file_storage;
  std::unique_ptr<SqliteRunStore> file_runs;
  std::unique_ptr<FileRecords> file_records;
  std::unique_ptr<SqliteUsersAndTags> file_tables;
  const bool from_input = *options.script == "-";
  ScriptOptions script{.storage = &memory,
                       .texts = ChosenLanguage(options),
                       .tables = &memory_tables,
                       .user = options.user,
                       .interactive = from_input && isatty(STDIN_FILENO) == 1,
                       .source_name = *options.script};
  if (options.database) {
    file_storage = std::make_unique<SqliteStorage>(*options.database);
    script.storage = file_storage.get();
    file_runs = std::make_unique<SqliteRunStore>(*options.database);
    script.runs = file_runs.get();
    script.zone = file_runs->ScheduleZone();
    file_storage->OnWritten([&] { file_storage->EmptyLog(); });  // the next command may be long in coming
    if (options.user) file_tables = std::make_unique<SqliteUsersAndTags>(*options.database);
    if (file_tables) script.tables = file_tables.get();
    script.open_rows = [&](const std::string& query) { return file_storage->OpenRows(query); };
  }
  if (options.data) {
    constexpr std::chrono::seconds kMore{5};  // reading ends earlier, if it ends at all
    script.data =
        std::make_shared<BackgroundDataSource>(*options.data, WaitAtMost(SqliteDataSource::kLongest + kMore));
    file_records = std::make_unique<FileRecords>(*options.data);
    script.records = file_records.get();
  }
  return from_input ? RunScript(std::cin, std::cout, std::cerr, script)
                    : RunScriptFrom(*options.script, script);
}

void SpeakLanguage(Application& application, const TextTable& texts, QTranslator& translator) {
  const QLocale locale(ToQt(texts.code));
  if (texts.code != "ids")
    QLocale::setDefault(QLocale::system().language() == locale.language() ? QLocale::system() : locale);
  application.setLayoutDirection(texts.right_to_left ? Qt::RightToLeft : Qt::LeftToRight);
  // Texts of the toolkit's own dialogs, if their translation is installed.
  if (translator.load(locale, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&translator);
  }
}

// The manager stands beside this program, in a build as installed.
WindowManager::Settings RunnerSettings(const ProgramOptions& options) {
  return {.program = FromQt(QDir(QCoreApplication::applicationDirPath()).filePath("plovix-manager")),
          .database = options.database.value_or(DefaultDatabasePath()),
          .data = options.data,
          .starts = !options.no_manager};
}

int RunWindows(Application& application, const ProgramOptions& options) {
  const TextTable texts = ChosenLanguage(options);
  QTranslator translator;
  SpeakLanguage(application, texts, translator);
  qt::ApplyPalette(application, ChosenPalette(options));
  // The names under which the package installs them.
  QGuiApplication::setDesktopFileName(QStringLiteral("plovix"));
  QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("plovix")));
  std::unique_ptr<ProgramHost> host;
  const auto failed = FailureOf([&] { host = std::make_unique<ProgramHost>(WithTaskFile(options), texts); });
  if (failed) {
    const std::string text = texts.Host("program.startFailed", {failed->Description()});
    std::cerr << "plovix: " << text << '\n';
    Tell(texts, texts.Host("list.title"), text, nullptr);
    return kFailed;
  }
  HostDialogs& dialogs = *host->Parts().state.dialogs;
  application.OnFailure([&dialogs](const Failure& failure, QObject* receiver) {
    const std::string where = FromQt(receiver->objectName());
    [[maybe_unused]] const auto answer = dialogs.Report(
        {failure.Number(), failure.Description(), "Plovix", receiver->metaObject()->className(), where, 0});
  });
  TaskListWindow window(host->Parts());
  window.layout()->addWidget(new RunnerBar(texts, RunnerSettings(options)));
  DesktopNotices notices;
  notices.OnClick([&](qint64 task) {
    window.raise();
    window.activateWindow();
    ShowHistory(host->Parts(), task, window);
  });
  const RunNotices run_notices(host->Parts(),
                               [&notices](std::int64_t task, const auto& title, const auto& text) {
                                 notices.Show(task, title, text);
                               });
  window.show();
  return QApplication::exec();
}

// The options on a machine without a display: commands from standard input, on the user's own tasks.
ProgramOptions WithoutDisplay(ProgramOptions options) {
  std::cerr
      << "plovix: there is no display, so commands are read from standard input; \"help\" lists them.\n";
  options.script = "-";
  return WithTaskFile(std::move(options));
}

int RunProgram(int argc, char** argv, const ProgramOptions& options) {
  if (options.help) {
    std::cout << Usage();
    return 0;
  }
  if (options.version) {
    std::cout << "plovix " << PLOVIX_VERSION << '\n';
    return 0;
  }
  if (options.screenshots) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const auto application = MakeApplication(argc, argv);
    const auto count = SaveScreenshots(*application, *options.screenshots);
    std::cerr << "plovix: " << count << " pictures in " << *options.screenshots << '\n';
    return 0;
  }
  if (!options.script && HasDisplay()) {
    const bool chosen = IsSet("QT_QPA_PLATFORM");
    if (!chosen) setenv("QT_QPA_PLATFORM", IsSet("WAYLAND_DISPLAY") ? kWaylandPlatforms : kPlatforms, 1);
    const auto application = MakeApplication(argc, argv);
    if (chosen || QGuiApplication::platformName() != "offscreen") return RunWindows(*application, options);
    return RunScriptFile(WithoutDisplay(options));
  }
  return RunScriptFile(options.script ? options : WithoutDisplay(options));
}

}  // namespace

int RunProgram(int argc, char** argv) {
  LookUpHome();
  ProgramOptions options;
  try {
    options = ParseOptions({argv + 1, argv + argc});
  } catch (const Failure& failure) {
    std::cerr << "plovix: " << failure.Description() << "\n\n" << Usage();
    return kWrongInput;
  }
  try {
    return RunProgram(argc, argv, options);
  } catch (const std::exception& failure) {
    std::cerr << "plovix: " << failure.what() << '\n';
    return kFailed;
  }
}

}  // namespace plovix::app
