// Plays a random user on a wizard and checks after every step what wizard and pages guarantee: nothing
// escapes or is reported without need, the buttons are what the page says, a refusal changes nothing, a page
// that is shown again has lost nothing, and the storage changes only by Finish and returns what it was given.
// Each seed gives one walk: PLOVIX_WALK_SEED chooses it, PLOVIX_WALK_STEPS its length (default: 100,000 steps
// through the wizard, a fifth of that under a sanitizer), and with PLOVIX_WALK_TRACE every step is printed
// before it is taken.
#pragma once

#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/tasks/category_column.h>
#include <plovix/standalone/tasks/text_limits.h>

#include <cstdlib>
#include <iostream>
#include <random>
#include <set>

#include "faults.h"
#include "task_parts.h"

namespace plovix::testing_support {

enum class Button { kBack, kNext, kFinish, kCancel };

// The page created last, and the number of pages; it is not kept alive, so that premature destruction is
// noticed.
struct PageMade {
  std::weak_ptr<WizardPage> page;
  int count = 0;
};

class Walker {
 public:
  explicit Walker(Scene& scene) : scene_(scene), storage_(scene.storage) {
    for (const std::string& id : scene.registry.Identifiers()) {
      const auto real = scene.registry.Find(id);
      scene.registry.Remove(id);
      scene.registry.Add(std::make_shared<FactoryOf>(id, [this, real] {
        auto page = real->CreatePage();
        page_ = {page, page_.count + 1};
        return page;
      }));
    }
    scene.state.tag_texts = {{"Name", "Nom"}, {"empty", ""}, {"one", "Un"}};
    scene.state.clock = [this] { return now_; };
    scene.state.open_rows = [this](const std::string&) {
      std::vector<std::string> columns;
      for (const TaskRecord& task : stored_) columns.push_back(EncodeCategories(task.categories));
      return CategoryRows(columns);
    };
    scene.dialogs.on_box = [this](const std::string&, int buttons) { return Answer(buttons); };
    scene.dialogs.on_report = [this](const FailureReport&) { return Below(3); };
    Furnish(scene);
    // After a declined choice the details page looks for the former data object by its name among captions.
    for (auto& entry : scene.data->entries) entry.record.caption = entry.record.name;
  }

  // PLOVIX_WALK_DIVISOR comes from the build: walks and sweeps under the sanitizers are shorter.
  void Walk(int usual_steps) {
    usual_steps /= PLOVIX_WALK_DIVISOR;
    const int seed = FromEnvironment("PLOVIX_WALK_SEED", 1);
    const int steps = FromEnvironment("PLOVIX_WALK_STEPS", usual_steps);
    random_.seed(static_cast<unsigned>(seed));
    while (steps_ < steps && !testing::Test::HasFailure()) {
      try {
        Step();
        Check();
      } catch (...) {
        ADD_FAILURE() << "escaped: " << CurrentFailure().Description();
      }
    }
    std::cout << steps_ << " steps with seed " << seed << ":";
    for (const auto& [what, times] : counts_) std::cout << " " << what << " " << times << ",";
    std::cout << " roads " << roads_.size() << "\n";
    if (testing::Test::HasFailure()) {
      std::cout << "Again: PLOVIX_WALK_TRACE=1 PLOVIX_WALK_SEED=" << seed << " PLOVIX_WALK_STEPS=" << steps_
                << "\n";
    } else if (steps >= usual_steps) {
      for (const char* what : {"saved", "cancelled", "walked through", "refused", "returns", "conflicts"})
        EXPECT_GT(counts_[what], 0) << what;
      for (const std::string& page : scene_.registry.Identifiers()) EXPECT_GT(counts_[page], 0) << page;
      EXPECT_GT(roads_.size(), 8);
    }
  }

 private:
  static int FromEnvironment(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
  }
  int Below(std::size_t count) { return static_cast<int>(random_() % count); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  template <class List>
  const auto& AnyOf(const List& list) {
    return list[static_cast<std::size_t>(Below(std::size(list)))];
  }
  std::string AnyText() {
    static const std::vector<std::string> texts = [] {
      std::vector<std::string> all{"", std::string(400, '9'), std::string(900, 'x')};
      std::istringstream pieces(
          " |1|2.5|7\t|1e2|25e-1|1e-400|1e309|0|0.6|-3|13|29|31|1,5|2147483647.4|2147483648|1e12|0x10|Nightly"
          "|Un|one|\"'\\%_;--|t\u00E2che \U0001F600|e\u0301|two\nlines");
      for (std::string piece; std::getline(pieces, piece, '|');) all.push_back(piece);
      return all;
    }();
    return AnyOf(texts);
  }
  VeloWiz& Wizard() { return *wizard_; }
  void Note(const std::string& line) {
    ++steps_;
    if (std::getenv("PLOVIX_WALK_TRACE") != nullptr) std::cout << steps_ << " " << line << std::endl;
  }

  int Answer(int buttons) {
    using namespace message_box;
    const bool one_button = buttons == kOkInformation || buttons == kOkWarning;
    const bool declines = !one_button && !walking_through_ && OneIn(3);
    if (buttons == kYesNoQuestion) return declines ? kNo : kYes;
    return declines ? kCancel : kOk;
  }

  // Clears the record of the host's dialogs and draws their next answers.
  void PrepareDialogs() {
    ScriptedDialogs& dialogs = scene_.dialogs;
    dialogs.boxes.clear();
    dialogs.reports.clear();
    const auto maybe = [this](auto value) { return OneIn(2) ? std::optional(value) : std::nullopt; };
    dialogs.chosen_tag = maybe(AnyText());
    dialogs.chosen_query = maybe(AnyText());
    const std::vector<CategoryRecord> categories{{AnyText(), OneIn(2)}, {AnyText(), true}};
    dialogs.chosen_categories = maybe(std::vector(categories.begin(), categories.begin() + Below(3)));
    dialogs.chosen_permissions = maybe(PermissionSet{{AnyText(), OneIn(2), true, OneIn(2), true, false}});
  }

  void Step() {
    PrepareDialogs();
    const int kind = Below(200);
    if (counts_.empty() || !Wizard().IsOpen()) return OpenAny();
    if (kind < 46) return static_cast<void>(Press(Button::kNext));
    if (kind < 52) return static_cast<void>(Press(Button::kBack));
    if (kind < 62) return GoAndReturn();
    if (kind < 70) return static_cast<void>(Press(Button::kFinish));
    if (kind < 71) return static_cast<void>(Press(Button::kCancel));
    if (kind < 73) return ChangeTheWorld();
    Touch();
  }

  void OpenAny() {
    now_ += std::chrono::hours(Below(400));
    for (const int right : {kRightEditCategories, kRightSeeAllCategories, kRightGoOnWithLanguageTags})
      scene_.state.rights[right] = !OneIn(4);
    scene_.state.language_tag_mode = OneIn(4);
    if (stored_.size() > 5) {
      const TaskRecord& gone = AnyOf(stored_);
      storage_.Delete(gone.id, gone.version);
    }
    const State& varied = AnyOf(kStates);
    TaskRecord task = RecordOf(varied);
    if (OneIn(3)) task.name = AnyText().substr(0, kLongestName);
    if (OneIn(4)) task.record_mode = 7;
    task.query = AnyText();
    if (OneIn(4)) task.actions.push_back({"unknown", "y", record_mode_bit::kNoData, 0, {{"k", "v"}}});
    // The wizard creates no task with actions on records but without a data object.
    if (task.data_object_name.empty() && task.record_mode != record_mode::kNoData) task.actions.clear();
    task.allow_automation_manager = !OneIn(4);
    if (stored_ = storage_.List(); !stored_.empty() && OneIn(3)) {
      task = AnyOf(stored_);
    } else if (OneIn(2)) {
      task = storage_.Save(task, now_);
    }
    Open(task, EntriesOf(scene_, varied));
  }

  void Open(const TaskRecord& task, const Entries& entries) {
    using namespace page_identifier;
    Note("opens task " + std::to_string(task.id));
    stored_ = storage_.List();
    opened_ = task;
    entries_ = entries;
    way_.clear();
    conflict_ = false;
    wizard_.emplace(scene_.Parts(), task, entries);
    wizard_->Open(entries.contains(store_key::kImporting) ? kDetails : kAutoTaskType);
    ++counts_["wizards"];
    ++counts_[Wizard().Identifier()];
    EXPECT_FALSE(Wizard().HasChanges());
  }

  // A right changes, time passes, and somebody else may save or delete the task.
  void ChangeTheWorld() {
    Note("the world changes");
    bool& right = scene_.state.rights[kRightGoOnWithLanguageTags];
    right = !right;
    now_ += std::chrono::hours(1);
    Wizard().AskNextPage();
    if (opened_.id == 0 || conflict_ || !OneIn(2)) return;
    conflict_ = true;
    OneIn(3) ? storage_.Delete(opened_.id, opened_.version)
             : static_cast<void>(storage_.Save(*storage_.Load(opened_.id), now_));
    stored_ = storage_.List();
  }

  // Any verb on any control of the page.
  void Touch() {
    Form& form = *Wizard().Controls();
    Control& control = form.At(static_cast<std::size_t>(Below(form.Count())));
    if (auto* slot = dynamic_cast<HostSlot*>(&control))
      return EditActions(dynamic_cast<VeloActionList&>(*slot->Embedded()));
    const auto any_verb = [this] { return static_cast<Verb>(Below(kVerbs.size())); };
    Act act{any_verb(), AnyText(), Below(20), DateTime{std::chrono::minutes(Below(40'000'000))}};
    while (!Fits(act.verb, control) && !OneIn(8)) act.verb = any_verb();
    const bool fits = control.Usable() && Fits(act.verb, control);
    const std::string former_page = Wizard().Identifier(), before = fits ? "" : PageText(Shown);
    const int pages = page_.count;
    Note(std::string(control.Name()) + " " + kVerbs.at(static_cast<std::size_t>(act.verb)) + " \"" +
         act.text + "\" " + std::to_string(act.index) + (fits ? "" : ", in vain"));
    EXPECT_EQ(UserHand(Wizard().User()).Do(control, act), fits);
    EXPECT_TRUE(scene_.dialogs.reports.empty());
    if (page_.count != pages) return Arrived(former_page);
    if (!fits) {
      ++counts_["refused"];
      EXPECT_EQ(PageText(Shown), before);
      return;
    }
    EXPECT_TRUE(act.verb < Verb::kEnter || control.HasFocus() == (act.verb == Verb::kEnter));
  }

  void EditActions(VeloActionList& list) {
    Note("edits the actions");
    const auto kinds = list.OfferedKinds();
    ASSERT_FALSE(kinds.empty()) << "the page gave no context";
    const auto any_row = [&] { return static_cast<std::size_t>(Below(list.Rows().size())); };
    const bool removes = list.Rows().size() > 5 || (!list.Rows().empty() && OneIn(3));
    removes ? list.Remove(any_row()) : list.Append(NewAction(*AnyOf(kinds)));
    if (!list.Rows().empty()) list.MoveUp(any_row());
  }

  // Whether the page was left.
  bool Press(Button button) {
    VeloWiz& wizard = Wizard();
    const auto which = static_cast<std::size_t>(button);
    const auto [back, next, finish, cancel] = wizard.Buttons();
    const bool enabled = std::array{back, next, finish, cancel}.at(which);
    const std::string former = wizard.Identifier(), following = NextPage();
    const int pages = page_.count;
    Note(former + ": presses " + std::array{"Back", "Next", "Finish", "Cancel"}.at(which));
    constexpr std::array verbs{&VeloWiz::Back, &VeloWiz::Next, &VeloWiz::Finish, &VeloWiz::Cancel};
    EXPECT_EQ((wizard.*verbs.at(which))(), enabled);
    const bool moved = page_.count != pages;
    const bool left = moved || !wizard.IsOpen();  // what follows may open another wizard
    const bool told = CheckReports();
    if (!enabled) {
      ++counts_["refused"];
      EXPECT_TRUE(!moved && !told);
    } else if (moved) {
      EXPECT_TRUE(button == Button::kBack || wizard.Identifier() == following);
      Arrived(former, button == Button::kBack);
    } else if (wizard.IsOpen()) {
      EXPECT_TRUE(told || (button == Button::kCancel && wizard.HasChanges())) << "nobody said why it stays";
    } else {
      EXPECT_EQ(wizard.End(), button == Button::kFinish ? WizardEnd::kFinished : WizardEnd::kCancelled);
      button == Button::kFinish ? Finished(former) : static_cast<void>(++counts_["cancelled"]);
    }
    return left;
  }

  void Arrived(const std::string& former, bool back = false) {
    ++counts_[Wizard().Identifier()];
    if (!back) return way_.push_back(former);
    EXPECT_EQ(Wizard().Identifier(), way_.back());
    way_.pop_back();
  }

  // Only saving a number beyond 32 bits may fail. Returns whether the user was told anything.
  bool CheckReports() {
    const ScriptedDialogs& dialogs = scene_.dialogs;
    for (const FailureReport& report : dialogs.reports)
      EXPECT_EQ(report.procedure + std::to_string(report.number), "SaveValues6") << report.description;
    if (!dialogs.reports.empty()) ++counts_["overflows"];
    return !dialogs.reports.empty() || !dialogs.boxes.empty();
  }

  // Leaves the field and goes to the next page and back, or back and forth again, twice: the first time may
  // correct values that the task cannot hold; on the details and query pages there are none. Back from the
  // details saves nothing.
  void GoAndReturn() {
    const bool forth = Wizard().Buttons().next && (!Wizard().Buttons().back || OneIn(2));
    const std::string page = Wizard().Identifier();
    if (Control* focused = Wizard().Controls()->Focused()) Wizard().User().Leave(*focused);
    bool exact = page == page_identifier::kDetails || page == page_identifier::kQuery;
    for (int time = 0; time < 2; ++time, exact = true) {
      const std::string values = PageText(ValueOf);
      PrepareDialogs();
      if (!Press(forth ? Button::kNext : Button::kBack)) return;
      PrepareDialogs();
      if (!Press(forth ? Button::kBack : Button::kNext) || Wizard().Identifier() != page) return;
      if (!forth && page == page_identifier::kDetails) return;
      EXPECT_TRUE(!exact || PageText(ValueOf) == values) << values << "became\n" << PageText(ValueOf);
    }
    ++counts_["returns"];
  }

  // The state of each control, one line each.
  template <class Text>
  std::string PageText(Text text_of) {
    std::string text;
    Form& form = *Wizard().Controls();
    for (std::size_t i = 0; i < form.Count(); ++i)
      text.append(form.At(i).Name()).append(": ").append(text_of(form.At(i))).append("\n");
    return text;
  }

  void Finished(const std::string& last) {
    const TaskRecord& saved = Wizard().Saved();
    ++counts_["saved"];
    if (conflict_) ++counts_["conflicts"];
    way_.push_back(last);
    roads_.insert(way_);
    TaskRecord expected = Wizard().Task().Record();
    StartSchedule(expected, now_);
    if (IsNoCategory(expected.categories)) expected.categories.clear();
    EXPECT_EQ(saved.id == opened_.id, opened_.id != 0 && !conflict_);
    expected.id = saved.id;
    expected.version = saved.id == opened_.id ? opened_.version + 1 : 1;
    expected.modified = now_;
    const auto old = std::ranges::find(stored_, saved.id, &TaskRecord::id);
    old != stored_.end() ? static_cast<void>(*old = expected) : stored_.push_back(expected);
    EXPECT_EQ(Differences(storage_.Load(saved.id), expected), "");
    if (!walking_through_ && OneIn(2)) WalkThrough(expected);
  }

  // A stored task stays unchanged, including its start, if a user goes from page to page, touches nothing and
  // agrees to everything.
  void WalkThrough(TaskRecord task) {
    walking_through_ = true;
    now_ += std::chrono::hours(24);
    Open(task, Entries(entries_));
    for (bool on = true; on && !testing::Test::HasFailure();) {
      Check();
      PrepareDialogs();
      on = Press(Wizard().Buttons().next ? Button::kNext : Button::kFinish) && Wizard().IsOpen();
    }
    walking_through_ = false;
    ++counts_["walked through"];
    ++task.version;
    task.modified = now_;
    // If a number beyond 32 bits was skipped, there may be none yet; the page then stores 1.
    const bool timed = task.recurrence && task.recurrence->time_kind != time_kind::kAtTime;
    if (timed && !entries_.contains(store_key::kImporting) && task.recurrence->interval == 0)
      task.recurrence->interval = 1;
    EXPECT_EQ(Differences(storage_.Load(task.id), task), "");
  }

  std::string NextPage() {
    std::string next;
    page_.page.lock()->IWizardPage_GetNextPage(next);
    return next;
  }

  void Check() {
    EXPECT_TRUE(storage_.List() == stored_) << "nothing but Finish changes the storage";
    if (!Wizard().IsOpen()) return;
    const bool on = Wizard().CanContinue();
    const bool last = NextPage().empty();
    EXPECT_EQ(Wizard().NextIdentifier(), NextPage());
    EXPECT_EQ(Wizard().Buttons(), (WizardButtons{!way_.empty(), on && !last, on && last, true}));
  }

  Scene& scene_;
  TaskStorage& storage_;
  std::optional<VeloWiz> wizard_;
  std::mt19937 random_;
  DateTime now_{std::chrono::seconds{1'800'000'000}};
  PageMade page_;
  std::vector<std::string> way_;    // the pages that Back leads to
  std::vector<TaskRecord> stored_;  // the expected contents of the storage
  TaskRecord opened_;
  Entries entries_;
  bool conflict_ = false;                     // the opened task was changed in the storage
  bool walking_through_ = false;              // by a user who declines nothing
  std::set<std::vector<std::string>> roads_;  // paths to Finish
  std::map<std::string, int> counts_;
  int steps_ = 0;
};

}  // namespace plovix::testing_support
