// Exported tasks: what is written comes back, whatever is damaged is refused with its place; and what becomes
// of a task in another installation.
#include <gmock/gmock.h>
#include <plovix/standalone/exchange/import_task.h>
#include <plovix/standalone/text/languages.h>

#include <ctime>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/support/failure_of.h"
#include "tests/support/full_task.h"

namespace plovix {
namespace {

using Json = nlohmann::json;
using test::FullTask;
using testing::ElementsAre;
using testing::HasSubstr;

const std::vector<PatternRecord> kPatterns = {
    PatternRecord{}, DailyRecord{3, true}, WeeklyRecord{2, {true, false, true}},
    MonthlyRecord{1, {true, 31, -4, 9}}, YearlyRecord{12, {false, 29, 1, 2}}};

std::vector<TagRecord> Tags(const std::string& odd) {
  return {{"NameTag" + odd, {{"en", odd}, {"fr", ""}}}, {odd + "2", {}}};
}

TaskExport Read(const std::string& text) {
  return ReadExport(text, "f.json", TextTable::Ids());
}
std::string Write(const TaskExport& file) {
  TaskRecord task = file.task;
  if (file.is_personal) task.owner = "somebody";
  return WriteExport(task, file.tags, TextTable::Ids());
}

TEST(TaskExports, BringBackWhatWasWritten) {
  for (const std::string& odd :
       {std::string("ö\u202e\U0001F600\"\\\n"), std::string("\xFF\0\xC3\xED\xA0\x80", 6),
        std::string("\uFEFF\U0010FFFF\x34\x31"), std::string(900, 'x')}) {
    for (const PatternRecord& pattern : kPatterns) {
      const TaskExport file{FullTask(pattern, odd), pattern.index() % 2 == 0, Tags(odd)};
      EXPECT_EQ(Read(Write(file)), file) << odd.substr(0, 20) << pattern.index();
    }
  }
  const TaskExport empty{};
  EXPECT_EQ(Read(Write(empty)), empty);
  TaskRecord local = FullTask({});
  local.id = local.version = 7;
  local.owner = "somebody";
  local.may_run = local.may_edit = local.may_delete = false;
  EXPECT_EQ(WriteExport(local, {}, TextTable::Ids()), Write({FullTask({}), true, {}})) << "stays behind";
  // 65,536 years on, what holds a year shows the same one again.
  for (const DateTime far : {DateTime(std::chrono::local_days{std::chrono::year{10000} / 1 / 1}),
                             kZeroDate + std::chrono::days{23'936'533}}) {
    local.base_date = far;
    EXPECT_THROW((void)Write({local, false, {}}), Failure) << "would not come back";
  }
  EXPECT_THROW((void)Write({{}, false, {{std::string(kLargestExport / 6, '\1'), {}}}}), Failure);
}

TEST(TaskExports, AreReadAsTheDocumentedExample) {
  std::ostringstream text;
  text << std::ifstream(PLOVIX_SOURCE_DIR "/docs/task-export.md").rdbuf();
  const std::size_t start = text.str().find("    {\n");
  const TaskExport file = Read(text.str().substr(start, text.str().find("## The members") - start));
  EXPECT_EQ(file.task.actions.at(0).settings.at("timeLimit"), "60");
  EXPECT_THAT(TagsUsed(file.task, file.tags), ElementsAre(file.tags.at(0)));
}

// Either the file is refused, or nothing of it is lost.
bool RefusedOrKept(const std::string& text) {
  try {
    const TaskExport file = Read(text);
    EXPECT_EQ(Json::parse(Write(file)), Json::parse(text));
    return false;
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), failure_number::kInvalidCall);
    return true;
  }
}

// Every value in the file, lists and objects too.
std::set<std::string> Places(const Json& file) {
  std::set<std::string> places;
  const Json flat = file.flatten();
  for (const auto& [leaf, value] : flat.items())
    for (Json::json_pointer at(leaf); !at.empty(); at = at.parent_pointer()) places.insert(at.to_string());
  return places;
}

TEST(TaskExports, AreRefusedWhereverTheyAreDamaged) {
  const Json wrong_values =
      Json::parse(R"([null, true, "x", 1.5, -1, 99999999999, 18446744073709551615, [], {}])");
  const std::string mark = "<again>";  // taken out of the text: what is marked so stands twice under one name
  std::string text;
  const auto check = [&](const Json& file, const std::string& place, bool must_refuse) {
    text = file.dump();
    if (const auto found = text.find(mark); found != std::string::npos) text.erase(found, mark.size());
    EXPECT_TRUE(RefusedOrKept(text) || !must_refuse) << place;
  };
  for (const PatternRecord& pattern : kPatterns) {
    const Json file = Json::parse(Write({FullTask(pattern, "'"), true, Tags("'")}));
    for (const std::string& place : Places(file)) {
      const Json::json_pointer at(place);
      const Json &value = file.at(at), &parent = file.at(at.parent_pointer());
      Json damaged = file;
      for (const Json& wrong : wrong_values) {
        damaged[at] = wrong;
        check(damaged, place, wrong.type_name() != std::string(value.type_name()) && !wrong.is_null());
      }
      damaged = file;
      if (value.is_object()) {
        damaged[at]["further"] = 1;
        check(damaged, place + " further", true);
        damaged = file;
      }
      if (parent.is_object()) {
        damaged[at.parent_pointer()][at.back() + mark] = value;
        check(damaged, place + " twice", true);
      }
      check(file.patch({{{"op", "remove"}, {"path", place}}}), place + " missing", false);
    }
    Json further = file;
    further["further"] = 1;
    check(further, "further", true);
    check(file, "", false);
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    (void)RefusedOrKept(std::string(text).erase(i, 1));
    EXPECT_TRUE(RefusedOrKept(text.substr(0, i))) << i;
  }
}

TEST(TaskExports, OfTheFirstVersionHaveTheirBracesDoubled) {
  TaskExport file;
  file.task.actions = {{"write-log", "", 0, 0, {{"text", "{x}"}, {"file", "/{y}"}}}};
  std::string text = Write(file);
  text.replace(text.find("\"version\": 2"), 12, "\"version\": 1");
  const auto settings = ReadExport(text, "old", TextTable::Ids()).task.actions.at(0).settings;
  EXPECT_EQ(settings, (std::map<std::string, std::string>{{"text", "{{x}}"}, {"file", "/{y}"}}));
}

TEST(TaskExports, SayWhatIsWrong) {
  const auto damaged = [](const std::string& from, const std::string& to) {
    std::string text = Write({FullTask(DailyRecord{3, true}, "'"), false, {}});
    EXPECT_THAT(text, HasSubstr(from));
    return text.replace(text.find(from), from.size(), to);
  };
  const std::vector<std::pair<std::string, std::string>> cases = {
      {damaged("\"everyNDays\": 3", "\"everyNDays\": \"x\""),
       "task.recurrence.pattern.everyNDays: a whole number was expected, but \"x\" was found."},
      {damaged("\"recordMode\": 32767", "\"recordMode\": 32768"),
       "task.recordMode: a number from -32768 to 32767 was expected, but 32768 was found."},
      {damaged("\"version\": 2", "\"version\": 3"), "the file has version 3; this program reads version 2"},
      {damaged("\"version\": 2", "\"version\": 99999999999999999999"), "the file has version 1e+20; this"},
      {damaged("-task", ""), "format: \"plovix-task\" was expected here."},
      {damaged("Name'", std::string(1001, 'x')), "task.name: this text is longer than 1000 characters."},
      {damaged("Query'", std::string(100'001, 'x')),
       "task.query: this text is longer than 100000 characters."},
      {damaged("\"text\": \"'", '"' + std::string(1001, 'x') + "\": \""),
       "xxx…: this text is longer than 1000"},
      {damaged("9999-12-31", "2026-02-29"), "task.scheduleStart: null or a date such as"},
      {damaged("\"'2\"", "\"\""), "task.permissions[1].subject: a name is empty here."},
      {damaged("\"'2\"", "\"'\""), "task.permissions[1].subject: this is given twice."},
      {"{\n \"ö\": \"\xFF\"}", "line 2, column 8: this is not valid JSON."},
      {std::string("{}\0", 3), "line 1, column 3: this is not valid JSON."},
      {std::string(100'000, '['), "[0][0]: lists and objects are nested deeper than 16 levels."},
      {std::string(kLargestExport + 1, ' '), "it is larger than 16 MB."},
      {damaged("\"DailyPattern\"", '"' + std::string(1000, 'x') + '"'), "xxx… is not a kind"},
  };
  for (const auto& [text, problem] : cases) {
    const std::string words =
        test::FailureOf([&] { (void)ReadExport(text, "f.json", LoadLanguage("en")); }).Description();
    EXPECT_THAT(words, testing::AllOf(HasSubstr("f.json"), HasSubstr(problem)));
    EXPECT_LT(words.size(), 500U);
  }
}

// Quadratic, writing and importing would take half a minute of the processor.
TEST(TaskExports, WithTensOfThousandsOfTagsAreExchangedAtOnce) {
  TaskExport file;
  for (int i = 0; i < 30'000; ++i) {
    file.tags.push_back({"a tag of number " + std::to_string(i), {}});
    file.task.categories.push_back({file.tags.back().tag});
  }
  const std::clock_t start = std::clock();
  const TaskExport read = Read(Write(file));
  ImportTarget target;
  target.tags = TagsUsed(read.task, read.tags);
  EXPECT_TRUE(ForImport(read, target).new_tags.empty());
  EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 10);
}

class OneObject final : public DataSource {
 public:
  std::vector<DataObjectRecord> List() override { return {}; }
  std::optional<DataObjectRecord> Find(std::string_view name) override {
    if (name == "broken") throw Failure(5, "no disk");
    return name == "orders" ? std::optional(DataObjectRecord{"orders", "Orders", ""}) : std::nullopt;
  }
  std::vector<FieldRecord> Fields(std::string_view /*name*/) override { return {}; }
};

TEST(Import, TellsWhatCannotBeTakenOver) {
  OneObject source;
  ImportTarget target{&source, {}, {{"known", {{"en", "Here"}}}, {"same", {}}}, "anna", true};
  for (const char* id : {"anna", "guest", "owner"}) target.users.emplace_back().id = id;
  target.users[0].groups = {"clerks"};
  target.users[0].create_shared = target.users[0].create_personal = target.users[2].create_personal = true;
  using File = TaskExport&;
  using Place = ImportTarget&;
  // What is told, then the owner, the permissions left, "scheduled", the new tags.
  const std::vector<std::pair<std::function<void(File, Place)>, std::string>> cases = {
      {[](File, Place) {}, " -1"},
      {[](File f, Place) { f.task.data_object_name = "no"; }, "[exchange.note.dataObject:no] -1"},
      {[](File f, Place) { f.task.data_object_name = "broken"; },
       "[exchange.note.dataObjectUnknown:broken,no disk] -1"},
      {[](File f, Place) { f.task.actions = FullTask({}).actions; }, "[exchange.note.action:2,] -1"},
      {[](File f, Place) { f.is_personal = true; }, "[exchange.note.yours] anna -1"},
      {[](File f, Place p) { f.is_personal = true, p.user_id = "guest"; },
       "[exchange.note.becomesShared] -1"},
      {[](File, Place p) { p.user_id = "owner"; }, "[exchange.note.becomesPersonal] owner -1"},
      {[](File f, Place) {
         f.task.permissions = {{"anna"}, {"anna", true}, {"clerks", true}, {"bob"}};
       },
       "[exchange.note.group:anna][exchange.note.user:bob] 2"},
      {[](File f, Place) { f.task.permissions = {{"bob"}}; },
       "[exchange.note.user:bob][exchange.note.nobody] 0"},
      {[](File f, Place p) { f.task.permissions = {{"bob"}}, p.users.clear(); }, " 1"},
      {[](File f, Place) { f.task.allow_automation_manager = true, f.task.recurrence.emplace(); },
       " -1 scheduled"},
      {[](File f, Place p) {
         f.task.allow_automation_manager = true, f.task.recurrence.emplace(), p.automation_manager = false;
       },
       "[exchange.note.automationManager] -1"},
      {[](File f, Place) {
         f.task.name_tag = "known", f.task.description_tag = "same", f.task.categories = {{"new"}};
         f.tags = {{"known", {{"en", "There"}}}, {"new", {}}, {"same", {}}, {"unused", {}}};
       },
       "[exchange.note.tag:known] -1 new"}};
  for (const auto& [change, wanted] : cases) {
    TaskExport file;
    file.task.data_object_name = "orders";
    ImportTarget place = target;
    change(file, place);
    const auto [task, new_tags, report] = ForImport(file, place);
    std::string told;
    for (const ImportNote& note : report) told += BracketedText(note.text, note.parameters);
    if (!task.owner.empty()) told += " " + task.owner;
    told += " " + std::to_string(task.permissions ? static_cast<int>(task.permissions->size()) : -1);
    if (task.allow_automation_manager && task.recurrence) told += " scheduled";
    for (const TagRecord& tag : new_tags) told += " " + tag.tag;
    EXPECT_EQ(told, wanted);
  }
}

}  // namespace
}  // namespace plovix
