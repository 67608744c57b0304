// Compares the pages in Qt with the same pages hand-written as a QWizard (peer_wizard.h), in the same run: a
// page created, shown and drawn; a key that completes a page or makes it incomplete; a whole wizard; the
// memory of each. Times are processor times, which other programs lengthen little; the two take turns and
// medians count. Exit status 1: a ratio far from the usual; 2: the two differ. "--table" prints the tables of
// docs/performance.md, "--short" measures roughly.
#include <malloc.h>
#include <plovix/designs/design.h>
#include <plovix/framework/page_base.h>
#include <plovix/standalone/app/host_surface_texts.h>
#include <plovix/standalone/editors/action_list_widget.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/wizard/velo_wiz.h>
#include <plovix/surfaces/qt/form_widget.h>
#include <plovix/surfaces/qt/theme.h>

#include <QApplication>
#include <QBackingStore>
#include <QBoxLayout>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPixmapCache>
#include <QPushButton>
#include <QRadioButton>
#include <cstdio>
#include <cstring>
#include <functional>

#include "bench_support.h"
#include "peer_wizard.h"

namespace plovix {
namespace {

using app::ToQt;

constexpr double kLimit = 2;
constexpr int kRounds = 101, kShortRounds = 9;  // of both
constexpr int kKeys = 20;                       // pairs of keys in a sample
const QSize kWindow(760, 620);
const std::string kStart = "Benchmark.Start";

struct PageRow {
  peer::PageId peer;
  const std::string& identifier;
  const char* number;  // a text box that must not be empty
  const char* field;   // the peer's
};
const PageRow kPages[] = {{peer::kTaskType, page_identifier::kAutoTaskType, "", ""},
                          {peer::kDetails, page_identifier::kDetails, "", ""},
                          {peer::kRecords, page_identifier::kRecords, "", ""},
                          {peer::kTime, page_identifier::kRecurrenceTime, "txtMinutes", "minutes"},
                          {peer::kPattern, page_identifier::kRecurrencePattern, "", ""},
                          {peer::kDaily, page_identifier::kDailyRecurrence, "txtDays", "days"},
                          {peer::kWeekly, page_identifier::kWeeklyRecurrence, "txtWeeks", "weeks"},
                          {peer::kMonthly, page_identifier::kMonthlyRecurrence, "txtDay", "monthDay"},
                          {peer::kYearly, page_identifier::kYearlyRecurrence, "txtSpecificDay", "yearDay"},
                          {peer::kQuery, page_identifier::kQuery, "", ""},
                          {peer::kActions, page_identifier::kActions, "", ""}};

void Check(bool same, const std::string& what) {
  if (same) return;
  std::fprintf(stderr, "the two did not do the same: %s\n", what.c_str());
  std::exit(2);
}

// Lays out and draws what has changed.
void Draw() {
  QCoreApplication::processEvents();
}

// The page before the measured ones on both sides: one label, which any page can follow.
constexpr auto kStartDesign = MakeDesign("Start", {{"lblTitle", Kind::kLabel, "Start"}}, {"lblTitle"});
class StartPage final : public PageBase {
 public:
  explicit StartPage(const std::string& target) : PageBase(kStartDesign.View()), target_(target) {}
  void IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> store) override {
    Begin(std::move(host), std::move(store));
    Wizard->Refresh(true);
  }
  void IWizardPage_GetNextPage(std::string& next) override { next = target_; }
  bool IWizardPage_CanChangePage(ChangeDirection /*direction*/) override { return true; }

 private:
  const std::string& target_;
};
class StartFactory final : public PageFactory {
 public:
  explicit StartFactory(const std::string& target) : target_(target) {}
  [[nodiscard]] const std::string& Identifier() const noexcept override { return kStart; }
  [[nodiscard]] std::shared_ptr<WizardPage> CreatePage() override {
    return std::make_shared<StartPage>(target_);
  }

 private:
  const std::string& target_;
};
class PeerStartPage final : public QWizardPage {
 public:
  PeerStartPage(const peer::TaskWizard& owner, peer::PageId target) : target_(target) {
    setTitle(owner.Text(4));
    setSubTitle(owner.Text(5));
    (new QVBoxLayout(this))->addWidget(new QLabel("Start"));
  }
  [[nodiscard]] int nextId() const override { return target_; }

 private:
  peer::PageId target_;
};

struct Scene : BenchHost {
  Scene() {
    state.texts = LoadLanguage("en");
    registry.Add(std::make_shared<StartFactory>(target));
    for (const std::string& name : categories) category_names << ToQt(name);
    for (const std::string& name : data_objects) object_names << ToQt(name);
  }
  MemoryStorage storage;
  QStringList category_names, object_names;
  std::string target;  // of the start page
};

// One of the two wizards. It is shown after one of the Open...
class Subject {
 public:
  virtual ~Subject() = default;
  virtual QDialog& Window() = 0;
  virtual void OpenBefore(const PageRow& page) = 0;  // on a start page
  virtual void OpenOn(const PageRow& page) = 0;      // without the other pages
  virtual void OpenWhole() = 0;
  virtual QPushButton* Button(bool next) = 0;  // Back, or whichever of Next and Finish is current
  virtual QLineEdit* Field(const PageRow& page) = 0;
  virtual TaskRecord Finished() = 0;

  void Show() {
    Window().resize(kWindow);
    Window().show();
    Window().activateWindow();
    Draw();
  }
};

// The wizard in a window of a host, with the parts that QWizard has.
class Ours final : public Subject, private QDialog, private WizardView {
 public:
  explicit Ours(Scene& scene)
      : scene_(scene),
        wizard_({scene.state, scene.registry, scene.storage, MakeActionList}, scene.task),
        layout_(new QVBoxLayout(this)) {
    QFont bold;
    bold.setBold(true);
    title_->setFont(bold);
    for (QLabel* label : {title_, description_}) {
      label->setTextFormat(Qt::PlainText);
      label->setWordWrap(true);
      layout_->addWidget(label);
    }
    for (int i = 0; i < 2; ++i) {
      auto* rule = new QFrame(this);
      rule->setFrameStyle(QFrame::HLine | QFrame::Sunken);
      layout_->addWidget(rule);
    }
    auto* row = new QHBoxLayout;
    row->addStretch();
    layout_->addLayout(row);
    back_ = AddButton(row, "button.back", &VeloWiz::Back);
    next_ = AddButton(row, "button.next", &VeloWiz::Next);
    finish_ = AddButton(row, "button.finish", &VeloWiz::Finish);
    cancel_ = AddButton(row, "button.cancel", &VeloWiz::Cancel);
    wizard_.SetView(this);
  }
  ~Ours() override { wizard_.SetView(nullptr); }

  QDialog& Window() override { return *this; }
  void OpenBefore(const PageRow& page) override {
    scene_.target = page.identifier;
    wizard_.Open(kStart);
  }
  void OpenOn(const PageRow& page) override { wizard_.Open(page.identifier); }
  void OpenWhole() override { wizard_.Open(kPages[0].identifier); }
  QPushButton* Button(bool next) override {
    if (!next) return back_;
    return wizard_.Buttons().finish ? finish_ : next_;
  }
  QLineEdit* Field(const PageRow& page) override {
    return dynamic_cast<QLineEdit*>(page_->WidgetOf(page.number));
  }
  TaskRecord Finished() override { return wizard_.Saved(); }

 private:
  QPushButton* AddButton(QBoxLayout* row, const char* text, bool (VeloWiz::*verb)()) {
    auto* button = new QPushButton(ToQt(scene_.state.texts.Host(text)), this);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, verb] { (wizard_.*verb)(); });
    row->addWidget(button);
    return button;
  }
  void PageShown() override {
    if (page_ != nullptr) {
      layout_->removeWidget(page_);
      page_->hide();
      page_->deleteLater();
    }
    const TextTable& texts = scene_.state.texts;
    page_ = new qt::FormWidget(
        wizard_.Controls(), wizard_.User(),
        [&texts](HostControl& control, QWidget* parent) {
          return new app::ActionListWidget(dynamic_cast<VeloActionList&>(control), texts, parent);
        },
        this, app::SurfaceTextsOf(texts));
    layout_->insertWidget(3, page_, 1);
    page_->show();
    setWindowTitle(page_->Heading());
    title_->setText(ToQt(wizard_.Title()));
    description_->setText(ToQt(wizard_.Description()));
    ButtonsChanged();
    page_->FocusFirst();
  }
  void ButtonsChanged() override {
    const WizardButtons buttons = wizard_.Buttons();
    back_->setEnabled(buttons.back);
    next_->setEnabled(buttons.next);
    finish_->setEnabled(buttons.finish);
    cancel_->setEnabled(buttons.cancel);
    (buttons.finish ? finish_ : next_)->setDefault(true);
  }
  void Closed(WizardEnd end) override { done(end == WizardEnd::kFinished ? Accepted : Rejected); }

  Scene& scene_;
  VeloWiz wizard_;
  QVBoxLayout* layout_;
  QLabel *title_ = new QLabel(this), *description_ = new QLabel(this);
  QPushButton *back_, *next_, *finish_, *cancel_;
  qt::FormWidget* page_ = nullptr;
};

class Peer final : public Subject {
 public:
  explicit Peer(const Scene& scene)
      : wizard_(scene.state.texts, scene.task, scene.category_names, scene.object_names) {}
  QDialog& Window() override { return wizard_; }
  void OpenBefore(const PageRow& page) override {
    wizard_.setPage(peer::kPageCount, new PeerStartPage(wizard_, page.peer));
    wizard_.setStartId(peer::kPageCount);
  }
  void OpenOn(const PageRow& page) override { wizard_.AddPage(page.peer); }
  void OpenWhole() override {
    for (const PageRow& page : kPages) wizard_.AddPage(page.peer);
  }
  QPushButton* Button(bool next) override {
    const auto forward = wizard_.nextId() < 0 ? QWizard::FinishButton : QWizard::NextButton;
    return qobject_cast<QPushButton*>(wizard_.button(next ? forward : QWizard::BackButton));
  }
  QLineEdit* Field(const PageRow& page) override { return wizard_.findChild<QLineEdit*>(page.field); }
  TaskRecord Finished() override { return wizard_.task; }

 private:
  peer::TaskWizard wizard_;
};

std::unique_ptr<Subject> Make(Scene& scene, bool ours) {
  if (ours) return std::make_unique<Ours>(scene);
  return std::make_unique<Peer>(scene);
}

// A page created and, by pressing Next, shown in an open window. The peer creates its pages before.
double ShowPage(Scene& scene, bool ours, const PageRow& page) {
  const auto subject = Make(scene, ours);
  const double create = ours ? 0 : Microseconds([&] { subject->OpenOn(page); });
  subject->OpenBefore(page);
  subject->Show();
  return create + Microseconds([&] {
           subject->Button(true)->click();
           Draw();
         });
}

void Press(int key, const QString& text = {}) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(QApplication::focusWidget(), &press);
}

// From a key press to the button that it enables or disables.
double TypeKeys(Scene& scene, bool ours, const PageRow& page) {
  const auto subject = Make(scene, ours);
  subject->OpenOn(page);
  subject->Show();
  subject->Field(page)->setFocus();
  subject->Field(page)->end(false);
  const QPushButton* next = subject->Button(true);
  double took = 0;
  for (int i = -1; i < kKeys; ++i) {
    const double erased = Microseconds([] { Press(Qt::Key_Backspace); });
    Check(!next->isEnabled(), page.identifier + ": Next stays enabled");
    const double typed = Microseconds([] { Press(Qt::Key_5, "5"); });
    Check(next->isEnabled(), page.identifier + ": Next stays disabled");
    if (i >= 0) took += erased + typed;  // the first time is not typical
    Draw();
  }
  return took / (2 * kKeys);
}

void Press(Subject& subject, bool next) {
  subject.Button(next)->click();
  Draw();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Back from the page that follows in a whole wizard. The peer has kept the page; ours creates it again.
double GoBack(Scene& scene, bool ours, const PageRow& page) {
  const auto subject = Make(scene, ours);
  subject->OpenWhole();
  subject->Show();
  for (int shown = 0; shown <= page.peer; ++shown) Press(*subject, true);
  return Microseconds([&] {
    subject->Button(false)->click();
    Draw();
  });
}

// Every page once, choosing each of the four patterns in turn; ends on the last page.
void WalkToEnd(Subject& subject) {
  for (int page = 0; page < 4; ++page) Press(subject, true);
  for (int pattern = 0; pattern < 4; ++pattern) {
    if (pattern > 0) Press(subject, false);
    std::vector<QRadioButton*> options;
    for (auto* option : subject.Window().findChildren<QRadioButton*>()) {
      if (option->isVisible()) options.push_back(option);
    }
    options.at(static_cast<std::size_t>(pattern))->click();
    Press(subject, true);
  }
  for (int page = 0; page < 2; ++page) Press(subject, true);
}

double WholeWizard(Scene& scene, bool ours, const PageRow& /*page*/) {
  TaskRecord task;
  const double took = Microseconds([&] {
    const auto subject = Make(scene, ours);
    subject->OpenWhole();
    subject->Show();
    WalkToEnd(*subject);
    Press(*subject, true);
    Check(subject->Window().result() == QDialog::Accepted, "the wizard does not end");
    task = subject->Finished();
  });
  Check(task.name == scene.task.name && task.actions == scene.task.actions &&
            task.query == scene.task.query && task.recurrence &&
            std::holds_alternative<YearlyRecord>(task.recurrence->pattern),
        "the finished task is another one");
  return took;
}

// Without pictures: a window's is the same for both, and button pictures are in one cache for the whole
// program.
double KibibytesInUse(Subject* subject = nullptr) {
  if (subject != nullptr) subject->Window().backingStore()->resize(QSize(1, 1));
  QPixmapCache::clear();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  const auto state = mallinfo2();
  return static_cast<double>(state.uordblks + state.hblkhd) / 1024;
}

double PageMemory(Scene& scene, bool ours, const PageRow& page) {
  const double before = KibibytesInUse();
  const auto subject = Make(scene, ours);
  subject->OpenOn(page);
  subject->Show();
  return KibibytesInUse(subject.get()) - before;
}

double WholeMemory(Scene& scene, bool ours, const PageRow& /*page*/) {
  const double before = KibibytesInUse();
  const auto subject = Make(scene, ours);
  subject->OpenWhole();
  subject->Show();
  WalkToEnd(*subject);
  return KibibytesInUse(subject.get()) - before;
}

struct Row {
  std::string name;
  double (*sample)(Scene& scene, bool ours, const PageRow& page);
  const PageRow& page;
  std::vector<double> ours = {}, peer = {};

  void Sample(Scene& scene) {
    const bool first = ours.size() % 2 == 0;
    for (const bool side : {first, !first}) (side ? ours : peer).push_back(sample(scene, side, page));
  }
  [[nodiscard]] double Ratio() const { return Median(ours) / Median(peer); }
};

// Prints a group of rows as a table; returns whether every ratio is within the limit.
bool Print(const char* heading, const std::vector<Row>& rows) {
  std::printf("\n| %s | ours | QWizard | ratio |\n|---|---:|---:|---:|\n", heading);
  bool within = true;
  for (const Row& row : rows) {
    if (row.ours.empty()) continue;  // filtered out
    std::printf("| %s | %.*f | %.*f | %.2f |\n", row.name.c_str(), Median(row.ours) < 100 ? 1 : 0,
                Median(row.ours), Median(row.peer) < 100 ? 1 : 0, Median(row.peer), row.Ratio());
    within = within && row.Ratio() <= kLimit;
  }
  return within;
}

void Measure(benchmark::State& state, Scene& scene, Row& row) {
  row.ours = row.peer = {};
  for ([[maybe_unused]] auto _ : state) {
    row.Sample(scene);
    state.SetIterationTime(1e-6 * row.ours.back());
  }
  state.counters["peer_us"] = Median(row.peer);
  state.counters["ratio"] = row.Ratio();
}

int Run(int argc, char** argv) {
  const auto given = [&](const char* option) {
    return std::any_of(argv, argv + argc, [&](const char* word) { return std::strcmp(word, option) == 0; });
  };
  const bool table = given("--table");
  const int rounds = given("--short") ? kShortRounds : kRounds;
  benchmark::Initialize(&argc, argv);
  QApplication application(argc, argv);
  qt::ApplyPalette(application, qt::Palette::kLight);
  QApplication::setFont(qt::PageFont());
  Scene scene;
  std::vector<Row> times, back, keys, memory;
  for (const PageRow& page : kPages) {
    times.push_back({page.identifier, ShowPage, page});
    if (page.peer <= peer::kPattern) back.push_back({page.identifier, GoBack, page});
    if (*page.number != 0) keys.push_back({page.identifier, TypeKeys, page});
    memory.push_back({page.identifier, PageMemory, page});
  }
  times.push_back({"a whole wizard, every page once", WholeWizard, kPages[0]});
  memory.push_back({"a wizard that has shown every page", WholeMemory, kPages[0]});
  for (std::vector<Row>* group : {&times, &back, &keys}) {
    for (Row& row : *group) {
      const char* what = group == &times ? "" : group == &back ? "/back" : "/key";
      benchmark::RegisterBenchmark((row.name + what).c_str(), Measure, std::ref(scene), std::ref(row))
          ->UseManualTime()
          ->Iterations(rounds)
          ->Unit(benchmark::kMicrosecond);
    }
  }
  Quiet quiet;
  benchmark::RunSpecifiedBenchmarks(table ? &quiet : nullptr);
  for (Row& row : memory) {
    for (int i = 0; i < kShortRounds; ++i) row.Sample(scene);
  }
  bool within = Print("created, shown and drawn, µs", times);
  within = Print("back to a page that was shown before, µs", back) && within;
  within = Print("a key to the changed button, µs", keys) && within;
  within = Print("memory, KiB", memory) && within;
  return within ? 0 : 1;
}

}  // namespace
}  // namespace plovix

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  return plovix::Run(argc, argv);
}
