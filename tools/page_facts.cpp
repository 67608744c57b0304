// Writes docs/page-flow.md, page-calls.md, page-texts.md and page-controls.md from what the pages really do,
// by running every page. The tests start it to compare; with PLOVIX_UPDATE_DOCS set it writes the files
// first.
#include <gmock/gmock.h>
#include <plovix/designs/design.h>
#include <plovix/framework/page_identifiers.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "tests/support/faults.h"

namespace plovix {
namespace {

using namespace testing_support;

std::string Read(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(std::string(PLOVIX_SOURCE_DIR) + path).rdbuf();
  return text.str();
}

void ExpectDocument(const std::string& path, const std::string& text) {
  if (std::getenv("PLOVIX_UPDATE_DOCS") != nullptr) std::ofstream(PLOVIX_SOURCE_DIR + path) << text;
  EXPECT_EQ(Read(path), text) << "to write it anew: PLOVIX_UPDATE_DOCS=1 ./test -R PageFacts";
}

template <class Texts>
std::string Joined(const Texts& texts, const std::string& separator) {
  std::string joined;
  for (const auto& text : texts) joined += (joined.empty() ? "" : separator) + std::string(text);
  return joined;
}

// What can decide the page that follows; a case takes one value of each.
enum : std::size_t { kImporting, kAutomation, kMode, kTexts, kRight, kKind, kConditions };
const std::array<std::vector<std::string>, kConditions> kValues = {{
    {"not imported", "imported"},
    {"not scheduled", "scheduled"},
    {"no data", "single record", "query results"},
    {"literal texts", "language tags"},
    {"without right 114", "with right 114"},
    {"daily", "weekly", "monthly", "yearly", "no kind yet"},
}};
using Case = std::array<std::size_t, kConditions>;

std::vector<Case> Cases(std::size_t conditions = kConditions) {
  std::vector<Case> cases(1);
  for (std::size_t condition = 0; condition < conditions; ++condition) {
    std::vector<Case> more;
    for (Case row : cases) {
      for (row[condition] = 0; row[condition] < kValues[condition].size(); ++row[condition])
        more.push_back(row);
    }
    cases = more;
  }
  return cases;
}

TaskRecord TaskOf(const Case& row) {
  static const PatternRecord kPatterns[] = {DailyRecord{1, false}, WeeklyRecord{1, {true}},
                                            MonthlyRecord{1, {false, 1, 0, 0}},
                                            YearlyRecord{1, {false, 1, 0, 0}}, PatternRecord{}};
  TaskRecord task = CompleteTask(static_cast<std::int16_t>(row[kMode]));
  task.allow_automation_manager = row[kAutomation] == 1;
  task.uses_language_tags = row[kTexts] == 1;
  task.name_tag = task.description_tag = "tag";
  task.recurrence = Scheduled(kPatterns[row[kKind]]);
  return task;
}

// Sets the scene to a case; gives the entries of the wizard's store.
Entries SceneOf(Scene& scene, const Case& row) {
  Furnish(scene);
  scene.state.rights[kRightGoOnWithLanguageTags] = row[kRight] == 1;
  return {{store_key::kImporting, row[kImporting] == 1}};
}

using Answers = std::map<Case, std::string>;

// The values of the conditions under which something is answered: a set of them for each condition, as bits.
using Term = std::array<unsigned, kConditions>;

bool Fits(const Term& term, const Case& row) {
  for (std::size_t i = 0; i < kConditions; ++i) {
    if ((term[i] >> row[i] & 1U) == 0) return false;
  }
  return true;
}

std::string Text(const Term& term) {
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < kConditions; ++i) {
    if (term[i] == (1U << kValues[i].size()) - 1) continue;
    std::vector<std::string> values;
    for (std::size_t value = 0; value < kValues[i].size(); ++value) {
      if ((term[i] >> value & 1U) != 0) values.push_back(kValues[i][value]);
    }
    parts.push_back(Joined(values, " or "));
  }
  return Joined(parts, ", ");
}

// Every term over the conditions on which the answers depend.
std::vector<Term> Terms(const Answers& answers) {
  std::vector<Term> terms(1);
  for (std::size_t i = 0; i < kConditions; ++i) {
    const bool decides = std::ranges::any_of(answers, [&](const auto& answer) {
      Case other = answer.first;
      other[i] = 0;
      return answers.at(other) != answer.second;
    });
    const unsigned all = (1U << kValues[i].size()) - 1;
    std::vector<Term> more;
    for (Term term : terms) {
      for (term[i] = all; term[i] > 0; term[i] = decides ? term[i] - 1 : 0) more.push_back(term);
    }
    terms = more;
  }
  return terms;
}

// When an answer is given: few terms, each as wide as it can be and true by itself.
std::string When(const Answers& answers, const std::string& answer) {
  std::set<Case> open;
  for (const auto& [row, given] : answers) {
    if (given == answer) open.insert(row);
  }
  std::vector<std::string> texts;
  const std::vector<Term> terms = Terms(answers);
  while (!open.empty()) {
    std::pair<long, long> best = {0, 0};
    const Term* chosen = nullptr;
    for (const Term& term : terms) {
      const auto fits = [&](const auto& given) { return Fits(term, given.first); };
      if (std::ranges::any_of(answers,
                              [&](const auto& given) { return fits(given) && given.second != answer; }))
        continue;
      const std::pair<long, long> reach = {
          std::ranges::count_if(open, [&](const Case& row) { return Fits(term, row); }),
          std::ranges::count_if(answers, fits)};
      if (reach > best) std::tie(best, chosen) = std::pair(reach, &term);
    }
    texts.push_back(Text(*chosen));
    std::erase_if(open, [&](const Case& row) { return Fits(*chosen, row); });
  }
  return Joined(texts, "; or ");
}

using Arrows = std::vector<std::pair<std::string, std::string>>;  // answer, when

Arrows ArrowsOf(const Answers& answers) {
  Arrows arrows;
  for (const auto& [row, answer] : answers) {
    if (std::ranges::find(arrows, answer, &Arrows::value_type::first) == arrows.end())
      arrows.emplace_back(answer, When(answers, answer));
  }
  return arrows;
}

std::string Name(const std::string& identifier) {
  return identifier.empty() ? "Finish" : identifier.substr(identifier.find('.') + 1);
}

// The pages in the order in which they are reached, those that answer alike together.
std::vector<std::pair<std::vector<std::string>, Arrows>> Flow() {
  std::vector<std::pair<std::vector<std::string>, Arrows>> flow;
  std::vector<std::string> pages = {page_identifier::kAutoTaskType};
  for (std::size_t i = 0; i < pages.size(); ++i) {
    Answers answers;
    for (const Case& row : Cases()) {
      Scene scene;
      const Entries entries = SceneOf(scene, row);
      answers[row] = Bench(scene, pages[i], TaskOf(row), entries).Initialize().Next("");
    }
    const Arrows arrows = ArrowsOf(answers);
    const auto alike = std::ranges::find(flow, arrows, &decltype(flow)::value_type::second);
    if (alike != flow.end()) alike->first.push_back(Name(pages[i]));
    if (alike == flow.end()) flow.push_back({{Name(pages[i])}, arrows});
    for (const auto& [next, when] : arrows) {
      if (!next.empty() && std::ranges::find(pages, next) == pages.end()) pages.push_back(next);
    }
  }
  EXPECT_EQ(pages.size(), Scene().registry.Identifiers().size()) << "a page that no road leads to";
  return flow;
}

// The pages that a user sees who presses Next until there is Finish.
std::string Road(const Case& row) {
  Scene scene;
  const Entries entries = SceneOf(scene, row);
  VeloWiz wizard(scene.Parts(), TaskOf(row), entries);
  std::vector<std::string> road;
  wizard.Open(page_identifier::kAutoTaskType);
  while (wizard.IsOpen() && road.size() < kValues.size() * 2) {
    const bool pattern = dynamic_cast<TextBox*>(wizard.Controls()->Find("txtDays")) != nullptr;
    road.push_back(pattern ? "(pattern)" : Name(wizard.Identifier()));
    if (!wizard.Finish()) wizard.Next();
  }
  EXPECT_EQ(wizard.End(), WizardEnd::kFinished) << Joined(road, " ");
  return Joined(road, ", ");
}

TEST(PageFacts, Flow) {
  std::string chart, table;
  for (const auto& [pages, arrows] : Flow()) {
    const std::string from = pages.size() == 1 ? pages[0] : "patterns";
    if (pages.size() > 1)
      chart += "  subgraph patterns [the pattern pages]\n    " + Joined(pages, "\n    ") + "\n  end\n";
    for (const auto& [next, when] : arrows) {
      chart += "  " + from + " -->" + (when.empty() ? " " : "|\"" + when + "\"| ") + Name(next) + "\n";
      table += "| " + Joined(pages, ", ") + " | " + (next.empty() ? "none: Finish" : Name(next)) + " | " +
               (when.empty() ? "always" : when) + " |\n";
    }
  }
  Answers roads;
  for (const Case& row : Cases(kKind)) roads[row] = Road(row);
  std::string walked;
  for (const auto& [road, when] : ArrowsOf(roads)) walked += "| " + road + " | " + when + " |\n";
  ExpectDocument("/docs/page-flow.md", R"(# The flow of the pages

Written by `tools/page_facts.cpp`, which asks every page for the page that follows, in all combinations of what
can decide it: the record mode of the task, the check box that gives it to the automation manager ("scheduled"), whether
it is being imported, whether its texts are language tags, whether the user has right 114, and the kind of its
recurrence. A condition that is not named does not matter.

```mermaid
flowchart TD
  Finish([the wizard ends])
)" + chart + "```\n\n| page | page that follows | when |\n|---|---|---|\n" +
                                           table + R"(
The answer is computed anew at each call, from the task and from the page's controls, and may change while the user
types. No page names the one before it: the way back is the wizard's.

## Roads

What a user sees who starts with the first page and presses Next until the button is Finish; `(pattern)` stands for one of
the four pattern pages. The first page takes a task on a single record away from the automation manager.

| pages | when |
|---|---|
)" + walked);
}

std::string PagesOf(const std::set<std::string>& pages) {
  if (pages.size() == Scene().registry.Identifiers().size()) return "every page";
  return pages.empty() ? "no page" : Joined(pages, ", ");
}

// Does whatever a user can do on the page, with good and bad entries.
void DoEverything(Scene& scene, Bench& bench) {
  scene.dialogs.chosen_tag = scene.dialogs.chosen_query = "chosen";
  scene.dialogs.chosen_categories = {{"one", true}};
  scene.dialogs.chosen_permissions = PermissionSet{};
  bench.user.Show(bench.Controls());
  for (const char* text : {"3", "x", "0", "31"}) {
    EnterSomething(bench);
    for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
      Control& control = bench.Controls().At(i);
      bench.user.DropDown(control);
      bench.user.Pick(control, 1);
      bench.user.DoubleClick(control);
      bench.user.Leave(control);
      if (control.GetKind() == Kind::kHostSlot) (void)bench.ActionRows().OfferedKinds();
      for (std::size_t box = 0; box < bench.Controls().Count(); ++box) {
        bench.user.Type(bench.Controls().At(box), text);
      }
      bench.user.Click(control);
      (void)bench.Leave(ChangeDirection::kNext);
    }
  }
  (void)bench.Leave(ChangeDirection::kBack);
}

// Plays every page in every state; look(page, scene, bench, calls) sees what came of it.
template <class Look>
void PlayEverything(Look look) {
  for (const std::string& page : Scene().registry.Identifiers()) {
    for (const State& state : kStates) {
      Scene scene;
      Furnish(scene);
      TaskRecord task = RecordOf(state);
      task.id = state.data_object ? 1 : 0;
      task.actions.push_back({.kind = "fits nothing", .name = "", .settings = {}});
      Bench bench(scene, page, task, EntriesOf(scene, state));
      const Injector calls;
      bench.Initialize();
      scene.dialogs.boxes = {bench.page->IWizardPage_Title(), bench.page->IWizardPage_Description(),
                             bench.Next()};
      DoEverything(scene, bench);
      look(Name(page), scene, bench, calls.calls);
    }
  }
}

TEST(PageFacts, Calls) {
  std::map<std::string, std::set<std::string>> callers;  // by member
  PlayEverything([&](const std::string& page, const Scene&, const Bench&, const auto& calls) {
    for (const std::string& member : calls) callers[member].insert(page);
  });
  std::map<std::string, std::map<std::set<std::string>, std::vector<std::string>>> table;  // by interface
  for (const std::string_view listed : kHostMembers) {
    const std::string member(listed);
    const std::size_t point = member.find('.');
    table[member.substr(0, point)][callers[member]].push_back(member.substr(point + 1));
  }
  std::string rows;
  for (const auto& [interface, members] : table) {
    for (const auto& [pages, names] : members)
      rows += "| `" + interface + "` | " + Joined(names, ", ") + " | " + PagesOf(pages) + " |\n";
  }
  ExpectDocument("/docs/page-calls.md", R"(# What the pages call

Written by `tools/page_facts.cpp`, which plays a user on every page and writes down the calls. Beside these,
every page asks `HostServices::Application` and, when something fails, `HostApplication::ErrorReporter`. Some interfaces have a
longer name in the headers: `DatabaseConnection`, `DataObjectCollection`, `SessionUser`, `ActionListControl` (here
`VeloActionList`); what the monthly and the yearly pattern share is `DayInMonthPattern`.

| interface | members | called by |
|---|---|---|
)" + rows);
}

// The numbers of all texts that a page has shown, each as "[27]" or "[56:31]".
std::set<int> NumbersShown(const Scene& scene, const Bench& bench) {
  std::string shown = Joined(scene.dialogs.boxes, "") + Joined(scene.dialogs.edited_permissions, "");
  for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
    shown += bench.Controls().At(i).Caption();
    const auto* list = dynamic_cast<const ComboBox*>(&bench.Controls().At(i));
    for (int entry = 0; list != nullptr && entry < list->Count(); ++entry) shown += list->ItemText(entry);
  }
  static const std::regex kNumber(R"(\[(\d+)[:\]])");
  std::set<int> numbers;
  for (std::sregex_iterator found(shown.begin(), shown.end(), kNumber), end; found != end; ++found)
    numbers.insert(std::stoi((*found)[1]));
  return numbers;
}

// Leaves the page with one field wrong at a time, whichever option is chosen.
void LeaveWithEachWrong(Bench& bench) {
  Form& form = bench.Controls();
  for (std::size_t option = 0; option < form.Count(); ++option) {
    if (!bench.user.Choose(form.At(option)) && option > 0) continue;
    for (std::size_t wrong = 0; wrong < form.Count(); ++wrong) {
      for (const char* text : {"", "x"}) {
        for (std::size_t i = 0; i < form.Count(); ++i) bench.user.Type(form.At(i), "3");
        auto* list = dynamic_cast<ComboBox*>(&form.At(wrong));
        if (list != nullptr) list->Select(-1);
        if (bench.user.Type(form.At(wrong), text) || list != nullptr)
          (void)bench.Leave(ChangeDirection::kNext);
      }
    }
  }
}

// The rooms of Plovix::Host whose code names a text, by its key.
std::map<std::string, std::set<std::string>> KeysNamed() {
  static const std::regex kComment("//[^\n]*"), kKey(R"re("(\w+(\.\w+)+)")re");
  std::map<std::string, std::set<std::string>> keys;
  std::istringstream rooms(PLOVIX_HOST_ROOMS);
  for (std::string room; std::getline(rooms, room, ' ');) {
    for (const auto& file : std::filesystem::directory_iterator(PLOVIX_SOURCE_DIR "/" + room)) {
      const std::string text = Read("/" + room + "/" + file.path().filename().string());
      const std::string code = std::regex_replace(text, kComment, "");
      for (std::sregex_iterator found(code.begin(), code.end(), kKey), end; found != end; ++found)
        keys[(*found)[1]].insert(room);
    }
  }
  return keys;
}

TEST(PageFacts, Texts) {
  std::map<int, std::set<std::string>> places, pages;
  const PageRegistry registry = Scene().registry;
  for (const std::string& identifier : registry.Identifiers()) {
    const auto page = registry.Create(identifier);  // the rows are the page's
    for (const ControlInfo& row : page->Controls().Design().rows) {
      if (const auto number = TextNumber(row.tag))
        places[*number].insert(Name(identifier) + "." + std::string(row.name));
    }
  }
  PlayEverything([&](const std::string& page, const Scene& scene, Bench& bench, const auto&) {
    LeaveWithEachWrong(bench);
    for (const int number : NumbersShown(scene, bench)) pages[number].insert(page);
  });
  const auto file = nlohmann::json::parse(Read("/languages/en.json"));
  std::map<int, std::string> english;
  for (const auto& [number, text] : file.at("pages").items()) english[std::stoi(number)] = text;
  std::string rows, keys;
  for (const auto& [number, text] : english) {
    if (!places.contains(number)) places[number] = {PagesOf(pages[number])};
    rows += "| " + std::to_string(number) + " | " + text + " | " + Joined(places[number], ", ") + " |\n";
    EXPECT_NE(places[number], std::set<std::string>{"no page"}) << number;
    pages.erase(number);
  }
  EXPECT_THAT(pages, testing::IsEmpty()) << "texts that the table lacks";
  for (const auto& [key, rooms] : KeysNamed()) {
    if (!file.at("host").contains(key)) continue;  // the name of a file
    const std::string text =
        std::regex_replace(file.at("host").at(key).get<std::string>(), std::regex("\n"), " ");
    keys += "| `" + key + "` | " + text + " | " + Joined(rooms, ", ") + " |\n";
  }
  ExpectDocument("/docs/page-texts.md", R"(# The texts that a host supplies

Written by `tools/page_facts.cpp` from the pages, from the sources of `Plovix::Host` and from `languages/en.json`.
`{1}` stands for the first parameter.

## The pages' texts, by number

A host supplies all of them. Numbers count within the module "Plovix". Where a page is named in place of a control, it asks for
the text as a title, a message, or an entry of a list.

| number | English | shown by |
|---|---|---|
)" + rows + R"(
## The plain host's texts, by key

A host that uses `Plovix::Host` supplies them, as far as it uses the room that shows them. A missing one is shown as its key in
brackets.

| key | English | shown by |
|---|---|---|
)" + keys);
}

// What stands in the cell of a control beside its text: its look, its frame, and the caption of the design
// where that is another one than the table's.
std::string Remarks(const ControlInfo& row, const std::string& text) {
  static const std::pair<Style, const char*> kStyles[] = {{Style::kHeading, "heading"},
                                                          {Style::kMultiLine, "several lines"},
                                                          {Style::kEditable, "editable"},
                                                          {Style::kTime, "time of day"},
                                                          {Style::kHidden, "hidden at first"},
                                                          {Style::kDisabled, "disabled at first"},
                                                          {Style::kLink, "link"}};
  std::vector<std::string> remarks;
  for (const auto& [style, words] : kStyles) {
    if (Has(row.style, style)) remarks.emplace_back(words);
  }
  if (!row.frame.empty()) remarks.push_back("in " + std::string(row.frame));
  if (row.kind == Kind::kHostSlot)
    remarks.push_back("holds " + std::string(row.caption));
  else if (row.caption != text)
    remarks.push_back("in the design: “" + std::string(row.caption) + "”");
  return Joined(remarks, "; ");
}

TEST(PageFacts, Controls) {
  const auto english = nlohmann::json::parse(Read("/languages/en.json")).at("pages");
  const PageRegistry registry = Scene().registry;
  std::string tables;
  for (const std::string& identifier : registry.Identifiers()) {
    const auto page = registry.Create(identifier);
    tables += "\n## " + Name(identifier) +
              "\n\n| line | control | kind | text | remarks |\n|---|---|---|---|---|\n";
    int count = 0;
    for (const std::string_view line : page->Controls().Design().lines) {
      ++count;
      ForEachName(line, [&](std::string_view name) {
        const ControlInfo& row = page->Controls().Get(name).Info();
        const auto number = TextNumber(row.tag);
        const std::string text =
            number ? english.at(std::to_string(*number)).get<std::string>() : std::string(row.caption);
        tables += "| " + std::to_string(count) + " | `" + std::string(name) + "` | " +
                  std::string(KindName(row.kind)) + " | " + (number ? std::to_string(*number) + ": " : "") +
                  (row.kind == Kind::kHostSlot ? "" : text) + " | " + Remarks(row, text) + " |\n";
      });
    }
  }
  ExpectDocument("/docs/page-controls.md", R"(# The controls of the pages

Written by `tools/page_facts.cpp` from the designs of the pages: every control of each page, in reading order, with the number of
its text and the English one. A control without a number shows no text of the tables: what it shows comes from the task, from
data, or from the user. The Tab key may follow this order, or the order of `Form::At`.
)" + tables);
}

}  // namespace
}  // namespace plovix
