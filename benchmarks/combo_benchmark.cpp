// Compares a combo box of the Qt surface with very many entries with a plain QComboBox with the same ones, in
// the same run; needs no screen. Each act is timed until the screen is drawn; undoing it is not timed. The
// table at the end gives milliseconds and ratios, and the memory of the open popup. Exit status 1: an act
// takes longer than its limit, or the popup grows with the list.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <plovix/designs/design.h>
#include <plovix/surfaces/qt/form_widget.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace plovix::qt {
namespace {

constexpr int kEntries = 100'000;
constexpr int kFewEntries = 1'000;       // still a long list
constexpr std::size_t kGrowth = 16'384;  // bytes: tolerance for caches

constexpr auto kDesign = MakeDesign(
    "Choice", {{"lblEntry", Kind::kLabel, "Entry"}, {"lstEntry", Kind::kComboBox}}, {"lblEntry lstEntry"});

// All except the last begin alike.
std::string EntryText(int index, int count) {
  return index + 1 == count ? "Z, the last one" : "Customer number " + std::to_string(index);
}

void Draw() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

void PressKey(int key, const QString& text = {}) {
  QWidget* popup = QApplication::activePopupWidget();
  QWidget* target = popup != nullptr ? popup->focusWidget() : QApplication::focusWidget();
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(target, &press);
}

// One of the two compared: its combo box in a window, and how it gets its entries.
class Subject {
 public:
  virtual ~Subject() = default;
  [[nodiscard]] virtual QComboBox& Box() = 0;
  virtual void Fill() = 0;

  void Show() {
    Fill();
    Box().window()->resize(600, 400);
    Box().window()->show();
    Box().window()->activateWindow();
    Box().setFocus();
    Draw();
    Select();
  }
  void Select() { Box().setCurrentIndex(Box().count() / 2); }
};

class Ours final : public Subject, private UserListener {
 public:
  explicit Ours(int count) : count_(count), page_(form_, user_, {}) { Show(); }
  [[nodiscard]] QComboBox& Box() override { return dynamic_cast<QComboBox&>(*page_.WidgetOf("lstEntry")); }
  void Fill() override {
    auto& list = dynamic_cast<ComboBox&>(form_->Get("lstEntry"));
    list.Clear();
    const EntryBatch batch(list);
    for (int index = 0; index < count_; ++index) list.AddItem(EntryText(index, count_));
  }

 private:
  void EventFailed(const Failure& /*failure*/, std::string_view /*procedure*/) override {}
  void EventBegins() override {}
  void EventEnds() override {}

  int count_;
  std::shared_ptr<Form> form_ = std::make_shared<Form>(kDesign.View());
  User user_{*this};
  FormWidget page_;
};

class Plain final : public Subject {
 public:
  explicit Plain(int count) : count_(count) {
    box_.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    Show();
  }
  [[nodiscard]] QComboBox& Box() override { return box_; }
  void Fill() override {
    box_.clear();
    for (int index = 0; index < count_; ++index) {
      box_.addItem(QString::fromStdString(EntryText(index, count_)));
    }
  }

 private:
  int count_;
  QComboBox box_;
};

// Something that a user or a page does, with its preparation, which is not timed.
struct Act {
  const char* name = nullptr;
  double limit = 0;  // milliseconds; 0: none
  std::function<void(Subject&)> prepare;
  std::function<void(Subject&)> act;
};

void Close(Subject& subject) {
  subject.Box().hidePopup();
  Draw();
}
void Open(Subject& subject) {
  subject.Box().showPopup();
  Draw();
}
void OpenAnew(Subject& subject) {
  Close(subject);
  subject.Select();
  Open(subject);
}

// The letter is that of the last entry, so that both search the whole list.
const Act kActs[] = {
    {"fill the list", 0, Close, [](Subject& subject) { subject.Fill(); }},
    {"open the popup", 50,
     [](Subject& subject) {
       Close(subject);
       subject.Select();
     },
     Open},
    {"a letter in the popup", 30, OpenAnew, [](Subject&) { PressKey(Qt::Key_Z, "z"); }},
    {"arrow key in the popup", 30, OpenAnew, [](Subject&) { PressKey(Qt::Key_Down); }},
    {"choose", 30, OpenAnew, [](Subject&) { PressKey(Qt::Key_Return); }},
    {"a letter in the closed box", 30,
     [](Subject& subject) {
       Close(subject);
       subject.Select();
     },
     [](Subject&) { PressKey(Qt::Key_Z, "z"); }},
};

void Register(const std::string& name, const std::shared_ptr<Subject>& subject, const Act& act) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [subject, &act](benchmark::State& state) {
                                 subject->Box().window()->activateWindow();
                                 subject->Box().setFocus();
                                 for ([[maybe_unused]] auto _ : state) {
                                   act.prepare(*subject);
                                   const auto start = std::chrono::steady_clock::now();
                                   act.act(*subject);
                                   Draw();
                                   const std::chrono::duration<double> taken =
                                       std::chrono::steady_clock::now() - start;
                                   state.SetIterationTime(taken.count());
                                 }
                                 Close(*subject);
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond)
      ->Iterations(10);
}

// The bytes that the open popup takes, in a box that has been opened before.
std::size_t PopupMemory(int count) {
  Ours subject(count);
  OpenAnew(subject);
  Close(subject);
  const std::size_t before = mallinfo2().uordblks;
  Open(subject);
  const std::size_t open = mallinfo2().uordblks;
  Close(subject);
  return open - before;
}

class Table final : public benchmark::ConsoleReporter {
 public:
  Table() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) milliseconds_[run.run_name.function_name] = run.GetAdjustedRealTime();
  }

  // Returns whether every act keeps its limit.
  [[nodiscard]] bool Print() const {
    bool within = true;
    std::printf("\n%-30s %10s %10s %10s %10s\n", "100000 entries", "ours ms", "limit ms", "plain ms",
                "plain/ours");
    for (const Act& act : kActs) {
      const auto ours = milliseconds_.find(std::string(act.name) + "/ours");
      const auto plain = milliseconds_.find(std::string(act.name) + "/plain");
      if (ours == milliseconds_.end() || plain == milliseconds_.end()) continue;  // filtered out
      within = within && (act.limit == 0 || ours->second <= act.limit);
      std::printf("%-30s %10.2f %10.0f %10.2f %10.1f\n", act.name, ours->second, act.limit, plain->second,
                  plain->second / ours->second);
    }
    return within;
  }

 private:
  std::map<std::string, double> milliseconds_;
};

int Run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const QApplication application(argc, argv);
  const std::size_t few = PopupMemory(kFewEntries);
  const std::size_t many = PopupMemory(kEntries);
  const auto ours = std::make_shared<Ours>(kEntries);
  const auto plain = std::make_shared<Plain>(kEntries);
  for (const Act& act : kActs) {
    Register(std::string(act.name) + "/ours", ours, act);
    Register(std::string(act.name) + "/plain", plain, act);
  }
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  benchmark::ClearRegisteredBenchmarks();  // windows are destroyed before the application
  const bool within = table.Print();
  std::printf("open popup, KiB: %zu with %d entries, %zu with %d\n", few / 1024, kFewEntries, many / 1024,
              kEntries);
  return within && many <= few + kGrowth ? 0 : 1;
}

}  // namespace
}  // namespace plovix::qt

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  return plovix::qt::Run(argc, argv);
}
