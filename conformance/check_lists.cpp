// Checks of everything that is kept by reference: stores, the objects of a task, and lists.
#include <algorithm>
#include <climits>

#include "object_checks.h"

namespace plovix::conformance {
namespace {

using Factory = ObjectFactory;

bool Holds(ValueStore& store, const Value& value) {
  store.SetItem("Key", value);
  return Given(store.Item("Key"), "Item")->Value() == value && store.GetValue("Key", 77) == value;
}

void CheckStore(Examination& exam, ValueStore& store, const ObjectRef& object) {
  exam.Check("SetItem or Add copies an object: the pattern that is edited would not be the one stored", [&] {
    store.Add("Held", object);
    return Holds(store, object) && store.GetValue("Held", 77) == Value(object);
  });
  exam.Check("A value comes back as another, or of another kind: a page would report failure 13", [&] {
    const Value values[] = {true, 0, INT_MIN, 0.1, std::string(" é "), std::string(), kZeroDate, Value()};
    return std::ranges::all_of(values, [&](const Value& value) { return Holds(store, value); });
  });
  exam.Check("An empty reference is not stored: a data object that was given up would be back", [&] {
    store.SetItem("Key", object);
    store.SetItem("Key", ObjectRef());
    return store.Exists("Key") && !ObjectFrom<HostObject>(store.GetValue("Key", object));
  });
  exam.Check("Keys that differ in case are one key: a page would take another page's value", [&] {
    store.SetItem("É", 1);
    store.SetItem("é", 2);
    return store.GetValue("É", {}) == Value(1) && !store.Exists("KEY");
  });
  exam.Check("Add does not fail with 457 for a key in use: an earlier page's value would be lost", [&] {
    store.Add("Added", 1);
    return FailsWith(457, [&] { store.Add("Added", 2); }) && store.GetValue("Added", {}) == Value(1);
  });
  exam.Check("Item does not fail with 5 for an absent key: a page would go on with no value",
             [&] { return FailsWith(5, [&] { (void)store.Item("Absent"); }); });
  exam.Check("GetValue does not give the fallback for an absent key: a task would seem imported", [&] {
    const Value fallbacks[] = {Value(), Value(true), Value(object)};
    return std::ranges::all_of(fallbacks,
                               [&](const Value& one) { return store.GetValue("Absent", one) == one; });
  });
}

// Whether the task keeps the very object, and can be set to null after it.
template <class T>
bool Refers(const Examination& exam, const Ref<T>& object, Ref<T> (AutoTask::*get)(),
            void (AutoTask::*set)(Ref<T>)) {
  const auto task = exam.Task();
  ((*task).*set)(Given(object, "The host"));
  if (((*task).*get)() != object) return false;
  ((*task).*set)(nullptr);
  return ((*task).*get)() == nullptr;
}

void CheckReferences(Examination& exam) {
  using T = AutoTask;
  exam.Check("A new task exists already: the details page would show another one's owner",
             [&] { return !exam.Task()->IsExisting(); });
  exam.Check("Recurrence is not the object that was set: a schedule would be lost, or not dropped", [&] {
    return Refers(exam, exam.New(&Factory::NewRecurrence), &T::Recurrence, &T::SetRecurrence);
  });
  exam.Check("Categories is not the object that was set: the task would keep the former ones", [&] {
    return Refers(exam, exam.New(&Factory::NewCategoryList), &T::Categories, &T::SetCategories);
  });
  exam.Check("Permissions is not the object that was set: others could use a personal task", [&] {
    const auto set = Needed(exam.host.make_permissions, "make_permissions")();
    return Refers(exam, set, &T::Permissions, &T::SetPermissions);
  });
  exam.Check("Actions is nothing, or not the list that was set: unfit actions would stay in the task", [&] {
    const auto task = exam.Task();
    const auto actions = exam.New(&Factory::NewActionList);
    if (Given(task->Actions(), "Actions") == actions || actions->Count() != 0) return false;
    task->SetActions(actions);
    return task->Actions() == actions;
  });
}

void CheckRecurrence(Examination& exam) {
  const auto recurrence = exam.New(&Factory::NewRecurrence);
  exam.Check("NewRecurrence has a pattern already: a page would show days that nobody chose", [&] {
    recurrence->SetPattern(exam.New(&Factory::NewDailyPattern));
    return exam.New(&Factory::NewRecurrence)->Pattern() == nullptr;
  });
  exam.Check("Pattern is not the object that was set: what a page saves would not reach the task", [&] {
    const Ref<PatternBase> patterns[] = {
        exam.New(&Factory::NewDailyPattern), exam.New(&Factory::NewWeeklyPattern),
        exam.New(&Factory::NewYearlyPattern), nullptr, exam.New(&Factory::NewMonthlyPattern)};
    return std::ranges::all_of(patterns, [&](const auto& pattern) {
      recurrence->SetPattern(pattern);
      return recurrence->Pattern() == pattern;
    });
  });
  exam.Check("SetRecurrenceType drops the pattern: a user who comes back to it would find it empty", [&] {
    const auto pattern = recurrence->Pattern();
    for (const std::int32_t type : {0, 1, 2, 3, 9}) recurrence->SetRecurrenceType(type);
    return pattern != nullptr && recurrence->Pattern() == pattern;
  });
  exam.Check("ExecutionTime is not the time that was set: the task would start at another second", [&] {
    using namespace std::chrono;
    for (const seconds time : {0s, 86399s, 29107s}) {
      recurrence->SetExecutionTime(kZeroDate + time);
      const DateTime kept = recurrence->ExecutionTime();
      if (kept - floor<days>(kept) != time) return false;
    }
    return true;
  });
}

void CheckWeekly(Examination& exam) {
  const auto pattern = exam.New(&Factory::NewWeeklyPattern);
  exam.Check("Day is not what SetDay gave it, 1 for Sunday: the task would run on other days", [&] {
    for (std::int32_t chosen = 1; chosen <= 7; ++chosen) {
      pattern->SetDay(chosen, true);
      for (std::int32_t day = 1; day <= 7; ++day) {
        if (pattern->Day(day) != (day == chosen)) return false;
      }
      pattern->SetDay(chosen, false);
    }
    return true;
  });
  exam.Check("Day or SetDay does not fail with 9 outside 1 to 7: a wrong day would go unnoticed", [&] {
    return FailsWith(9, [&] { (void)pattern->Day(0); }) && FailsWith(9, [&] { (void)pattern->Day(8); }) &&
           FailsWith(9, [&] { pattern->SetDay(0, true); }) && FailsWith(9, [&] { pattern->SetDay(8, true); });
  });
}

std::vector<std::int32_t> Modes(ActionList& list) {
  std::vector<std::int32_t> modes;
  for (std::int32_t i = 1; i <= list.Count(); ++i)
    modes.push_back(Given(list.Item(i), "Item")->RecordModes());
  return modes;
}

std::vector<std::string> Tags(CategoryList& list) {
  std::vector<std::string> tags;
  for (std::int32_t i = 1; i <= list.Count(); ++i) tags.push_back(Given(list.Item(i), "Item")->Tag());
  return tags;
}

void CheckActionList(Examination& exam) {
  const auto actions = exam.Actions({1, 8, 16});
  exam.Check("Item is not counted from 1 to Count, with 9 outside: unfit actions would stay", [&] {
    return Modes(*actions) == std::vector<std::int32_t>{1, 8, 16} && FailsOutside(*actions);
  });
  exam.Check("Capabilities lacks the automation manager's bit: a fit action would be taken out", [&] {
    return (Given(actions->Item(1), "Item")->Capabilities() & kAutomationManagerCapability) != 0;
  });
  exam.Check("Remove takes another action than that at the index: a fit one would be lost", [&] {
    if (!FailsWith(9, [&] { actions->Remove(0); }) || !FailsWith(9, [&] { actions->Remove(4); }))
      return false;
    actions->Remove(2);
    return Modes(*actions) == std::vector<std::int32_t>{1, 16};
  });
}

void CheckCategoryList(Examination& exam) {
  const auto list = exam.New(&Factory::NewCategoryList);
  exam.Check("A new list or category is not empty and public: nobody would see the one that is typed",
             [&] { return list->Count() == 0 && exam.New(&Factory::NewCategory)->Public(); });
  exam.Check("Add or Item copies a category: the tag that the page sets then would not be stored", [&] {
    const auto first = exam.New(&Factory::NewCategory);
    list->Add(first);
    list->Add(exam.New(&Factory::NewCategory));
    first->SetTag("a");
    Given(list->Item(2), "Item")->SetTag("b");
    return Tags(*list) == std::vector<std::string>{"a", "b"};
  });
  exam.Check("Item does not fail with 9 outside 1 to Count: a category of nobody's would be saved",
             [&] { return FailsOutside(*list); });
  exam.Check("Clone shares its categories: what is entered would reach the task before it is saved", [&] {
    const auto former = Tags(*list);
    const auto clone = Given(list->Clone(), "Clone");
    if (Tags(*clone) != former) return false;
    Given(clone->Item(1), "Item")->SetTag("c");
    clone->Add(exam.New(&Factory::NewCategory));
    return Tags(*list) == former;
  });
}

void CheckFactory(Examination& exam) {
  exam.Check("The factory gives an object again: what is put into one would be in another one, too", [&] {
    const auto fresh = [&](const char* name, auto make) {
      exam.detail = name;
      return exam.New(make) != exam.New(make);
    };
    return fresh("NewActionList", &Factory::NewActionList) &&
           fresh("NewCategoryList", &Factory::NewCategoryList) &&
           fresh("NewTextCollection", &Factory::NewTextCollection) &&
           fresh("NewCategory", &Factory::NewCategory) && fresh("NewRecurrence", &Factory::NewRecurrence) &&
           fresh("NewQueryDefinition", &Factory::NewQueryDefinition);
  });
}

void CheckTexts(Examination& exam) {
  const auto texts = exam.New(&Factory::NewTextCollection);
  exam.Check("Item is not in the order of Add from 1 on, with 9 outside: other tags would be offered", [&] {
    texts->Add("two ", "b");
    texts->Add(" one", "a");
    return texts->Count() == 2 && texts->Item(1) == "two " && texts->Item(2) == " one" &&
           FailsOutside(*texts);
  });
  exam.Check("Add does not fail with 457 for a key in use: a category would be offered twice",
             [&] { return FailsWith(457, [&] { texts->Add("three", "a"); }) && texts->Count() == 2; });
}

}  // namespace

void CheckLists(Examination& exam) {
  exam.About("ValueStore of the wizard", [&] { CheckStore(exam, *exam.Store(), exam.Task()); });
  exam.About("ValueStore of the factory", [&] {
    const auto object = exam.New(&Factory::NewDailyPattern);
    CheckStore(exam, *exam.New(&Factory::NewValueStore), object);
    exam.Check("NewValueStore is not empty: the action list would get the context of another page",
               [&] { return !exam.New(&Factory::NewValueStore)->Exists("Key"); });
  });
  exam.About("AutoTask", [&] { CheckReferences(exam); });
  exam.About("Recurrence", [&] { CheckRecurrence(exam); });
  exam.About("WeeklyPattern", [&] { CheckWeekly(exam); });
  exam.About("ActionList", [&] { CheckActionList(exam); });
  exam.About("CategoryList", [&] { CheckCategoryList(exam); });
  exam.About("ObjectFactory", [&] { CheckFactory(exam); });
  exam.About("TextCollection", [&] { CheckTexts(exam); });
}

}  // namespace plovix::conformance
