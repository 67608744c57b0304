// Checks of the application behind the pages: services, message boxes, reports, rights and texts.
#include <ctime>
#include <thread>

#include "object_checks.h"

namespace plovix::conformance {
namespace {

// The kit's own form, with the kinds of tag that designs have.
constexpr ControlInfo kTaggedRows[] = {{"lblText", Kind::kLabel, "old", "Lng=4;"},
                                       {"chkText", Kind::kCheckBox, "old", "lng=4"},
                                       {"lblPlain", Kind::kLabel, "old"},
                                       {"lblMissing", Kind::kLabel, "old", "Lng=987654;"}};
constexpr std::string_view kTaggedLines[] = {"lblText chkText lblPlain lblMissing"};

DateTime MachineTime() {
  using namespace std::chrono;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  const auto date = year{local.tm_year + 1900} / (local.tm_mon + 1) / local.tm_mday;
  return local_days{date} + hours{local.tm_hour} + minutes{local.tm_min} + seconds{local.tm_sec};
}

bool IsMadeOnAnyThread(const ServicesProvider& services) {
  bool made = false;
  std::thread([&] {
    try {
      made = services.host_services() != nullptr && services.utilities() != nullptr;
    } catch (...) {
      made = false;
    }
  }).join();
  return made;
}

bool AnswersBoxes(const Examination& exam) {
  using namespace message_box;
  const std::pair<int, int> boxes[] = {
      {kOkWarning, kOk},      {kOkInformation, kOk}, {kOkCancelWarning, kCancel}, {kOkCancelQuestion, kOk},
      {kYesNoQuestion, kYes}, {kYesNoQuestion, kNo}, {kOkCancelQuestion, kCancel}};
  const auto application = exam.Application();
  for (const auto& [buttons, answer] : boxes) {
    Needed(exam.host.answer_boxes, "answer_boxes")(answer);
    if (application->MsgBox("Text", buttons, application->Title(), "") != answer) return false;
  }
  return true;
}

bool AnswersReports(const Examination& exam) {
  const auto reporter = Given(exam.Application()->ErrorReporter(), "ErrorReporter");
  for (const std::int32_t number : {0, 1, 2, 7, -1}) {
    const auto answer = static_cast<ReportAction>(number);
    Needed(exam.host.answer_reports, "answer_reports")(answer);
    if (reporter->Report(91, "Größe \"%s\"", kModule, "Details", "SaveValues", 12) != answer) return false;
    if (reporter->Report(51, "", "", "", "", 0) != answer) return false;
  }
  return true;
}

bool AnswersRights(const Examination& exam) {
  const auto rights = Given(exam.Application()->UserRights(), "UserRights");
  for (const int number : {kRightEditCategories, kRightSeeAllCategories, kRightGoOnWithLanguageTags}) {
    for (const bool held : {false, true}) {
      Needed(exam.host.hold_right, "hold_right")(number, held);
      if (rights->HasRight(number) != held) return false;
    }
  }
  return true;
}

void CheckHost(Examination& exam) {
  exam.Check("The provider gives nothing on another thread: pages there would report failure 429", [&] {
    Needed(exam.host.services.host_services, "services");
    return IsMadeOnAnyThread(exam.host.services);
  });
  exam.Check("DecimalSeparator is neither \".\" nor \",\": no fraction that is typed would be read", [&] {
    const std::string separator = exam.Application()->DecimalSeparator();
    return separator == "." || separator == ",";
  });
  exam.Check("Now is not the local time: dates would be offered and judged by another day", [&] {
    const DateTime expected = exam.host.wall_clock ? exam.host.wall_clock() : MachineTime();
    return std::chrono::abs(exam.Application()->Now() - expected) <= std::chrono::minutes{1};
  });
  exam.Check("MsgBox does not give the user's answer: actions would go though the user declined",
             [&] { return AnswersBoxes(exam); });
  exam.Check("Report does not give the answer as it is: a statement would be skipped, not run again",
             [&] { return AnswersReports(exam); });
  exam.Check("HasRight is not the right of this moment: a user could do what is not allowed",
             [&] { return AnswersRights(exam); });
}

void CheckUtilities(Examination& exam) {
  Needed(exam.host.services.utilities, "services");
  Utilities& tools = ServicesUtilities();
  exam.Check("BoolToCheck or CheckToBool is not as a check box has it: the page would fail with 380", [&] {
    return tools.BoolToCheck(true) == 1 && tools.BoolToCheck(false) == 0 && !tools.CheckToBool(0) &&
           tools.CheckToBool(1) && tools.CheckToBool(-1);
  });
  exam.Check("FoldCase does not fold by Unicode: a category would be offered twice, or two as one", [&] {
    const auto same = [&](const char* a, const char* b) { return tools.FoldCase(a) == tools.FoldCase(b); };
    return same("Straße", "STRASSE") && same("É", "e\u0301") && same("ΣΊΣΥΦΟΣ", "σίσυφος") &&
           same("I", "i") && !same("e", "é") && !same("a", "a ");
  });
  exam.Check("BuildPath does not put one separator between: the marker file would not be found", [&] {
    const std::string path = tools.BuildPath("folder", "file");
    return path.starts_with("folder") && path.ends_with("file") && path.size() == 11 &&
           tools.BuildPath(path.substr(0, 7), "file") == path;
  });
  exam.Check("FileExists finds a file that there is not: texts would be typed instead of tags chosen",
             [&] { return !tools.FileExists(tools.BuildPath("no such folder", "no such file")); });
  exam.Check("ObjectFromHandle does not fail with 91 for no handle: no choice would become an object",
             [&] { return FailsWith(91, [&] { (void)tools.ObjectFromHandle(0); }); });
}

bool KnowsTags(const Examination& exam, LanguageTable& language) {
  const auto& file = Needed(exam.host.file_tag, "file_tag");
  for (const char* text : {"one", "two", "three"}) file(std::string("tag.") + text, text);
  const auto task = exam.Task();
  task->SetNameTag("tag.one");
  task->SetShortDescriptionTag("tag.two");
  task->SetDescriptionTag("tag.three");
  const auto category = exam.New(&ObjectFactory::NewCategory);
  category->SetTag("tag.one");
  return language.TagText("tag.two", nullptr) == "two" && category->Text() == "one" &&
         task->LocalizedName() == "one" && task->LocalizedShortDescription() == "two" &&
         task->LocalizedDescription() == "three";
}

void CheckLanguage(Examination& exam) {
  const auto language = Given(exam.Application()->Language(), "Language");
  exam.Check("A text of the pages is missing: the user would see its number in brackets", [&] {
    const std::string text = language->GetString(4, kModule, {});
    return !text.empty() && text != "[4]";
  });
  exam.Check("Parameters are not put in their places: a question would not say what it asks about", [&] {
    const std::string text = language->GetString(56, kModule, {"DAY31"});
    return text.find("DAY31") != std::string::npos && text.find("{1}") == std::string::npos;
  });
  exam.Check("A missing text is not its number in brackets: the user would see an empty box", [&] {
    return language->GetString(987654, kModule, {}) == "[987654]" &&
           !language->GetString(4, "Nobody", {}).empty();
  });
  exam.Check("A tag's text is not the one that was filed: the details page would show another one",
             [&] { return KnowsTags(exam, *language); });
  exam.Check("TagForText gives a tag of another text: the category would not be the one typed", [&] {
    for (const char* text : {"House & Garden", "Größe", ""}) {
      if (language->TagText(language->TagForText("tag.one", text, ""), nullptr) != text) return false;
    }
    return true;
  });
  exam.Check("EditTag does not give the chosen tag, on Cancel the former one: texts would change", [&] {
    const auto& answer = Needed(exam.host.answer_tag_editor, "answer_tag_editor");
    answer("tag.two");
    const bool chosen =
        language->EditTag("tag.one", exam.New(&ObjectFactory::NewTextCollection)) == "tag.two";
    answer(std::nullopt);
    return chosen && language->EditTag("tag.one", nullptr) == "tag.one";
  });
}

void CheckTranslator(Examination& exam) {
  const auto translator = Given(exam.Application()->Translator(), "Translator");
  Form form({"Probe", kTaggedRows, kTaggedLines});
  translator->TranslateControls(form, kModule, 1);
  exam.Check("A caption tagged \"Lng=4;\" or \"lng=4\" is not replaced: it stays in another language", [&] {
    const std::string text = Given(exam.Application()->Language(), "Language")->GetString(4, kModule, {});
    return form.At(0).Caption() == text && form.At(1).Caption() == text;
  });
  exam.Check("A control without a tag or a text loses its caption: the user would see an empty place",
             [&] { return form.At(2).Caption() == "old" && form.At(3).Caption() == "old"; });
  exam.Check("SetLinkStyle does not make a label a link: nobody would know where to click", [&] {
    auto& label = dynamic_cast<Label&>(form.At(0));
    translator->SetLinkStyle(label, true);
    return label.Link();
  });
}

}  // namespace

void CheckApplication(Examination& exam) {
  exam.About("HostApplication", [&] { CheckHost(exam); });
  exam.About("Utilities", [&] { CheckUtilities(exam); });
  exam.About("LanguageTable", [&] { CheckLanguage(exam); });
  exam.About("Translator", [&] { CheckTranslator(exam); });
}

}  // namespace plovix::conformance
