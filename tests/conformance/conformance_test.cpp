// The conformance kit on the stand-alone host's own classes: whole, and broken in every way that a check
// looks for.
#include <sstream>
#include <thread>

#include "rig.h"

namespace plovix::conformance {
namespace {

using testing_support::Rig;

std::string Text(const Finding& finding) {
  return finding.about + ": " + finding.sentence + " (" + finding.detail + ")\n";
}

// Everything that failed.
std::string Failed(const Findings& findings) {
  std::string text;
  for (const Finding& finding : findings)
    if (finding.verdict == Verdict::kFailed) text += Text(finding);
  return text;
}

TEST(Conformance, TheStandAloneHostPasses) {
  Rig rig;
  rig.host.services = ProviderOf(rig.state);
  rig.state.clock = nullptr;  // the machine's
  rig.host.wall_clock = nullptr;
  std::ostringstream out;
  EXPECT_EQ(Print(CheckHost(rig.host), out), 0) << out.str();
  EXPECT_EQ(Print(CheckHost(Rig().host), out), 0) << "the rig alone: " << out.str();
}

// One thing that a developer gets wrong, and words of the sentences that must say so.
struct Defect {
  std::vector<const char*> words;
  std::function<void(Rig& rig)> apply;
};
using Defects = std::vector<Defect>;

// Something that happens before a member of that name, or beginning, does its work.
std::function<void(Rig&)> On(std::string_view member, std::function<void(Rig&)> act) {
  return [=](Rig& rig) {
    rig.on_call = [=, &rig](std::string_view called) {
      if (called.starts_with(member)) act(rig);
    };
  };
}

// The same with every object of a class that the factory has made.
template <class T, class Act>
std::function<void(Rig&)> On(std::string_view member, Act act) {
  return On(member, [=](Rig& rig) {
    for (const auto& object : rig.factory->All<T>()) act(*object);
  });
}

template <class Act>
std::function<void(Rig&)> OnStore(Act act) {
  return On("ValueStore.", [=](Rig& rig) {
    if (rig.store) act(rig.store->values);
    for (const auto& made : rig.factory->All<StoreObject>()) act(made->values);
  });
}

std::function<void(Rig&)> FailOn(std::string_view member) {
  return On(member, [](Rig&) { throw Failure(failure_number::kInternal, "another number"); });
}

// A wizard's fault, see Meddler.
std::function<void(Rig&)> Wizard(const char* fault) {
  return [=](Rig& rig) { rig.wizard_fault = fault; };
}

bool IsGetter(std::string_view member) {
  return member.find(".Set") == std::string_view::npos;
}

void ForgetTask(Rig& rig) {
  rig.on_call = [&](std::string_view member) {
    if (member.starts_with("AutoTask.") && IsGetter(member)) rig.task->Assign({});
  };
}

void ForgetObjects(Rig& rig) {
  rig.on_call = [&](std::string_view member) {
    if (!IsGetter(member)) return;
    const auto forget = [](const auto& objects) {
      for (const auto& object : objects) object->record = {};
    };
    forget(rig.factory->All<DailyPatternObject>());
    forget(rig.factory->All<WeeklyPatternObject>());
    forget(rig.factory->All<MonthlyPatternObject>());
    forget(rig.factory->All<YearlyPatternObject>());
    forget(rig.factory->All<CategoryObject>());
    for (const auto& recurrence : rig.factory->All<RecurrenceObject>()) recurrence->Assign({});
    for (const auto& query : rig.factory->All<QueryDefinitionObject>()) query->text = "";
  };
}

Defects MemberDefects() {
  using Monthly = MonthlyPatternObject;
  return {
      {{"SetName changes", "SetBaseDate changes", "Permissions is not", "Actions is nothing"}, ForgetTask},
      {{"SetRecordMode changes DataObjectName"},
       On("AutoTask.SetRecordMode", [](Rig& rig) { rig.task->SetDataObjectName(""); })},
      {{"A new task exists"}, [](Rig& rig) { rig.new_task.id = 7; }},
      {{"(ShortDescriptionTag)"},
       [](Rig& rig) { rig.change_stored = [](auto& it) { it.short_description_tag = ""; }; }},
      {{"A stored task is loaded"}, [](Rig& rig) { rig.change_stored = [](auto& it) { it.id = 0; }; }},
      {{"SetEveryNDays changes", "SetText changes", "SetTag changes", "SetRecurrenceType changes"},
       ForgetObjects},
      {{"SetDayOfMonth changes what", "(40)"},
       On<Monthly>("MonthlyPattern.DayOfMonth", [](Monthly& it) { it.record.day.day_of_month %= 32; })},
      {{"SetUseRelativeDay changes DayOfMonth"},
       On<Monthly>("MonthlyPattern.SetUse", [](Monthly& it) { it.record.day.day_of_month = 0; })},
      {{"SetUseRelativeDay changes Month"},
       On<YearlyPatternObject>("YearlyPattern.SetUse", [](auto& it) { it.record.month = 0; })},
      {{"SetWeekdaysOnly changes EveryNDays"},
       On<DailyPatternObject>("DailyPattern.SetWeekdays", [](auto& it) { it.record.every_n_days = 0; })},
      {{"SetTimeKind changes Interval"},
       On<RecurrenceObject>("Recurrence.SetTimeKind", [](auto& it) { it.SetInterval(0); })},
      {{"A new object is not unset, or not new", "NewValueStore is not empty", "NewRecurrence has a pattern",
        "The factory gives an object again"},
       [](Rig& rig) { rig.factory->same = true; }},
  };
}

Defects ListDefects() {
  const auto number = [](auto& values) {
    for (auto& [key, value] : values)
      if (const bool* flag = std::get_if<bool>(&value)) value = *flag ? -1 : 0;
  };
  const auto drop = [](auto& values) {
    std::erase_if(values, [](auto& entry) { return entry.second == Value(ObjectRef()); });
  };
  const auto share = [](Rig& rig) {
    rig.on_call = [&rig, cloned = false](std::string_view member) mutable {
      cloned = cloned || member == "CategoryList.Clone";
      if (cloned && member == "CategoryList.Add") rig.factory->All<CategoryListObject>().back()->Assign({});
    };
  };
  const auto idle = [](auto& records) {
    for (ActionRecord& record : records) record.capabilities = 0;
  };
  const auto backwards = [](auto& records) { std::ranges::reverse(records); };
  using Schedule = RecurrenceObject;
  return {
      {{"SetItem or Add copies"}, OnStore([](auto& values) {
         if (values.contains("Held")) values["Held"] = 7;
       })},
      {{"of another kind"}, OnStore(number)},
      {{"An empty reference is not stored"}, OnStore(drop)},
      {{"Keys that differ in case"}, OnStore([](auto& values) {
         values.insert({"KEY", 1});
       })},
      {{"Add does not fail with 457"}, OnStore([](auto& values) { values.erase("Added"); })},
      {{"Item does not fail with 5", "GetValue does not"},
       OnStore([](auto& values) { values["Absent"] = 7; })},
      {{"Pattern is not the object"},
       On<Schedule>("Recurrence.Pattern",
                    [](auto& it) { it.SetPattern(std::make_shared<DailyPatternObject>()); })},
      {{"SetRecurrenceType drops"},
       On<Schedule>("Recurrence.SetRec", [](Schedule& it) { it.SetPattern(nullptr); })},
      {{"ExecutionTime is not"},
       On<Schedule>("Recurrence.ExecutionTime", [](auto& it) { it.SetExecutionTime(kZeroDate); })},
      {{"Day is not what SetDay"},
       On<WeeklyPatternObject>("WeeklyPattern.Day", [](auto& it) { it.record.days[0] = true; })},
      {{"Day or SetDay does not"}, FailOn("WeeklyPattern.Day")},
      {{"Capabilities lacks"}, [=](Rig& rig) { rig.change_actions = idle; }},
      {{"ActionList: Item is not", "ActionList: Remove takes"},
       [=](Rig& rig) { rig.change_actions = backwards; }},
      {{"list or category is not"},
       On<CategoryObject>("Category.Public", [](auto& it) { it.record.is_public = false; })},
      {{"CategoryList: Add or Item copies"},
       On<CategoryListObject>("Category.SetTag", [](auto& it) { it.Assign(it.Records()); })},
      {{"CategoryList: Item does not"}, FailOn("CategoryList.Item")},
      {{"CategoryList: Clone"}, share},
      {{"TextCollection: Item is not", "TextCollection: Add does not"}, FailOn("TextCollection.Add")},
  };
}

struct OddUtilities : Utilities {
  std::string BuildPath(const std::string& folder, const std::string& file) override { return folder + file; }
  bool FileExists(const std::string&) override { return true; }
  int BoolToCheck(bool value) override { return value ? -1 : 0; }
  bool CheckToBool(int value) override { return value == -1; }
  ObjectRef ObjectFromHandle(std::int32_t) override { return nullptr; }
  std::string FoldCase(const std::string& text) override { return text; }
};

Defects ApplicationDefects() {
  const auto on_one_thread = [](Rig& rig) {
    rig.host.services.host_services = [&rig, here = std::this_thread::get_id()]() -> Ref<HostServices> {
      return std::this_thread::get_id() == here ? rig.services : nullptr;
    };
  };
  const auto clock = [](Rig& rig) {
    rig.state.clock = [&rig] { return rig.host.wall_clock() + std::chrono::hours{1}; };
  };
  const auto odd_utilities = [](Rig& rig) {
    rig.host.services.utilities = [] { return std::make_shared<OddUtilities>(); };
  };
  const auto text = [](int id, const char* other) {
    return [=](Rig& rig) { rig.state.texts.page_texts[id] = other; };
  };
  return {
      {{"on another thread"}, on_one_thread},
      {{"DecimalSeparator is"}, [](Rig& rig) { rig.state.decimal_separator = "'"; }},
      {{"Now is not"}, clock},
      {{"MsgBox does not"}, [](Rig& rig) { rig.host.answer_boxes = [](int) {}; }},
      {{"Report does not"}, [](Rig& rig) { rig.host.answer_reports = [](ReportAction) {}; }},
      {{"HasRight is not"}, On("UserRights.", [](Rig& rig) { rig.state.rights.clear(); })},
      {{"BoolToCheck", "FoldCase", "BuildPath", "FileExists", "ObjectFromHandle", "A handle"}, odd_utilities},
      {{"A text of the pages is"}, [](Rig& rig) { rig.state.texts.page_texts.clear(); }},
      {{"Parameters are not"}, text(56, "The last day?")},
      {{"A missing text is not", "loses its caption"}, text(987654, "")},
      {{"A tag's text is not"}, [](Rig& rig) { rig.host.file_tag = [](auto&, auto&) {}; }},
      {{"TagForText gives"},
       On("LanguageTable.TagT",
          [](Rig& rig) {
            rig.state.tag_texts = {{"Größe", "x"}};
          })},
      {{"EditTag does not"}, [](Rig& rig) { rig.host.answer_tag_editor = [](auto&) {}; }},
      {{"tagged \"Lng=4;\" or"},
       On("LanguageTable.GetString", [](Rig& rig) { rig.state.texts.page_texts[4] += "x"; })},
      {{"SetLinkStyle does not"}, FailOn("Translator.SetLinkStyle")},
      {{"gives nothing"}, [](Rig& rig) { rig.services->no_application = true; }},
      {{"Unknown failure"}, [](Rig& rig) { rig.host.make_task = []() -> Ref<AutoTask> { throw 42; }; }},
  };
}

// A control that edits the very list it was given, and gives it or a copy of it.
struct SharingControl final : ActionListControl {
  explicit SharingControl(bool with_copies) : copies(with_copies) {}
  void Load(const Ref<ActionList>& actions) override { list = actions; }
  Ref<ActionList> Actions() override {
    return copies ? std::make_shared<ActionListObject>(dynamic_cast<ActionListObject&>(*list).records) : list;
  }
  void OnContextRequest(ContextRequest) override {}
  bool copies;
  Ref<ActionList> list;
};

Defects DataDefects() {
  const auto sharing = [](bool copies) {
    return [=](Rig& rig) {
      rig.make_control = [=](auto) { return std::make_shared<SharingControl>(copies); };
      rig.host.remove_action = [](auto& it) { dynamic_cast<SharingControl&>(it).list->Remove(1); };
    };
  };
  const auto offer = [](const char* name) {
    return [=](Rig& rig) { rig.scene.data->entries.push_back({{name, "x", "y"}, {}}); };
  };
  const auto one_row = [](Rig& rig) {
    rig.scene.stored_categories = {"one"};
    rig.host.store_categories = [](auto&) {};
  };
  return {
      {{"CurrentUser is nobody"}, [](Rig& rig) { rig.state.user_id = ""; }},
      {{"HasPermission is not"}, [](Rig& rig) { rig.host.grant = [](auto, bool) {}; }},
      {{"EditPermissions does not"}, [](Rig& rig) { rig.host.answer_permission_editor = [](bool) {}; }},
      {{"Without a row", "Rows do not stand", "Load does not"}, one_row},
      {{"Fields does not"}, FailOn("Recordset.Fields")},
      {{"Find gives another"}, [](Rig& rig) { rig.scene.data->entries[0].record.key = ""; }},
      {{"Find does not fail with 5"}, offer("no such object")},
      {{"The loaded objects"}, offer("Customer")},
      {{"A handle does not"}, On("DataObject.Handle", [](Rig& rig) { *rig.state.handles = {}; })},
      {{"LoadDesignerObjects"}, FailOn("ObjectLoader.LoadDesignerObjects")},
      {{"The query builder"}, [](Rig& rig) { rig.host.answer_query_builder = [](auto&) {}; }},
      {{"The category editor"}, [](Rig& rig) { rig.host.answer_category_editor = [](auto&) {}; }},
      {{"handler given last"}, [](Rig& rig) { rig.host.ask_context = [](auto&) {}; }},
      {{"not a list of the control's own"}, sharing(false)},
      {{"Editing changes the list that was loaded"}, sharing(true)},
  };
}

Defects WizardDefects() {
  return {
      {{"Initialize gets no wizard"}, Wizard("no wizard")},
      {{"does not hold the task"}, Wizard("no task")},
      {{"before the action list is embedded"},
       [](Rig& rig) { rig.make_control = [](auto) { return nullptr; }; }},
      {{"do not share one store"}, Wizard("own store")},
      {{"A page object is shown twice"}, Wizard("same page")},
      {{"is not ended once"}, Wizard("no end")},
      {{"or is kept"}, Wizard("keeps pages")},
      {{"GetNextPage is called with a text"}, Wizard("text in next")},
      {{"shown by User::Show"}, Wizard("no Show")},
      {{"Next does not follow Refresh", "Finish does not follow Refresh"}, Wizard("ignores Refresh")},
      {{"Refresh does not ask", "before the user's last choice"}, Wizard("asks once")},
      {{"A verb does not ask"}, Wizard("asks at Refresh")},
      {{"Back does not lead"}, Wizard("Back to the start")},
      {{"Cancel stores the task"}, Wizard("Cancel stores")},
      {{"Finish does not store"}, Wizard("Finish stores nothing")},
      {{"shown that could not be loaded"}, Wizard("shows what failed")},
      {{"with its own direction"}, Wizard("wrong direction")},
      {{"A page that refuses is left"}, Wizard("ignores refusal")},
      {{"MoveNext is not as Next"}, Wizard("no MoveNext")},
      {{"dropped while its event procedure"}, Wizard("drops page")},
      {{"A failure of a page"}, Wizard("lets through")},
  };
}

Defects WalkDefects() {
  const auto forget = [](auto& it) { it.record = {}; };
  return {
      {{"RecurrenceTime cannot be filled in", "failure 91 in RetrieveValues, line "}, ForgetTask},
      {{"WeeklyRecurrence does not show again what was entered", "txtWeeks lost 3"},
       On<WeeklyPatternObject>("WeeklyPattern.EveryN", forget)},
      {{"WeeklyRecurrence does not show again what was stored", "chkMonday lost"},
       [](Rig& rig) {
         rig.change_stored = [](auto& it) {
           if (auto* weekly = std::get_if<WeeklyRecord>(&it.recurrence->pattern)) weekly->days = {};
         };
       }},
      {{"DailyRecurrence cannot be filled in", "what follows is \"Plovix.Query\""},
       On("DailyPattern.SetEveryN", [](Rig& rig) { rig.task->SetRecordMode(record_mode::kQueryResults); })},
      {{"Details cannot be filled in", "cboDataObject does not take Customers"},
       [](Rig& rig) { rig.denied.insert("view"); }},
      {{"Details cannot be filled in", "failure 51 in RetrieveValues"}, FailOn("CategoryList.Clone")},
      {{"Actions cannot be filled in", "make_control gives nothing"},
       [](Rig& rig) { rig.make_control = [](auto) { return nullptr; }; }},
  };
}

// Holds a defect's words against the findings, and takes what can fail out of `unbroken`: a check that
// answered no, or that failed and is named by the words.
void Hold(const Defect& defect, const Findings& findings, std::set<std::string>& unbroken) {
  const std::string failed = Failed(findings);
  for (const char* words : defect.words)
    EXPECT_NE(failed.find(words), std::string::npos) << words << '\n' << failed;
  for (const Finding& finding : findings) {
    const auto says = [&](const char* words) { return Text(finding).find(words) != std::string::npos; };
    const bool named = !finding.detail.starts_with("failure ") || std::ranges::any_of(defect.words, says);
    if (finding.verdict == Verdict::kFailed && named) unbroken.erase(finding.about + ": " + finding.sentence);
  }
}

TEST(Conformance, EveryDefectIsSaidAndEveryCheckCanFail) {
  std::set<std::string> unbroken;
  const auto check = [](const HostUnderTest& host) {
    Findings findings = CheckObjects(host);
    for (const Finding& finding : CheckWizard(host)) findings.push_back(finding);
    return findings;
  };
  for (const Finding& finding : check(Rig().host)) unbroken.insert(finding.about + ": " + finding.sentence);
  for (const Defects& defects :
       {MemberDefects(), ListDefects(), ApplicationDefects(), DataDefects(), WizardDefects()}) {
    for (const Defect& defect : defects) {
      Rig rig;
      defect.apply(rig);
      Hold(defect, check(rig.host), unbroken);
    }
  }
  for (const std::string& sentence : unbroken) ADD_FAILURE() << "no defect breaks " << sentence;
  for (const Defect& defect : WalkDefects()) {
    Rig rig;
    defect.apply(rig);
    Hold(defect, WalkPages(rig.host), unbroken);
  }
}

// So a host that crashes shows in which check.
TEST(Conformance, ACheckIsNamedBeforeItIsMade) {
  Rig rig;
  std::string named, in_clone;
  rig.host.before_check = [&](const std::string& check) { named = check; };
  rig.on_call = [&](std::string_view member) {
    if (member == "CategoryList.Clone" && in_clone.empty()) in_clone = named;
  };
  (void)CheckHost(rig.host);
  EXPECT_TRUE(in_clone.starts_with("CategoryList: Clone shares")) << in_clone;
}

TEST(Conformance, AFailureOfAnyMemberIsNoticed) {
  for (const std::string_view member : kHostMembers) {
    Rig rig;
    rig.host.services = ProviderOf(rig.state);
    rig.on_call = [&](std::string_view called) {
      if (called == member) throw Failure(failure_number::kInternal, "injected");
    };
    Findings findings = CheckObjects(rig.host);
    if (Failed(findings).empty()) findings = CheckWizard(rig.host);
    if (Failed(findings).empty()) findings = WalkPages(rig.host);
    EXPECT_FALSE(Failed(findings).empty()) << member;
  }
}

TEST(Conformance, WhatIsLeftOutIsNotRunAndNotPassed) {
  const auto without = [](auto... members) {
    Rig rig;
    ((rig.host.*members = {}), ...);
    const Findings findings = CheckHost(rig.host);
    std::ostringstream out;
    EXPECT_EQ(Print(findings, out), 2) << out.str();
    EXPECT_NE(out.str().find(" is missing)"), std::string::npos);
    return std::ranges::count(findings, Verdict::kPassed, &Finding::verdict);
  };
  using Host = HostUnderTest;
  const auto each = [&](auto... members) { return (without(members) + ...); };
  EXPECT_GT(each(&Host::make_task, &Host::make_store, &Host::make_control, &Host::make_actions,
                 &Host::make_permissions, &Host::open_wizard, &Host::data_object, &Host::file_tag,
                 &Host::store_categories, &Host::hold_right, &Host::grant, &Host::answer_reports,
                 &Host::answer_boxes, &Host::answer_tag_editor, &Host::answer_query_builder,
                 &Host::answer_category_editor, &Host::answer_permission_editor, &Host::ask_context,
                 &Host::remove_action, &Host::store_task, &Host::count_tasks),
            0);
  const Findings nothing = CheckHost({});
  for (const Finding& finding : nothing) EXPECT_EQ(finding.verdict, Verdict::kNotRun) << finding.sentence;
}

}  // namespace
}  // namespace plovix::conformance
