// Checks of the session, the database and the data objects, and of what the host opens on them.
#include <algorithm>
#include <map>

#include "object_checks.h"

namespace plovix::conformance {
namespace {

Ref<DataObject> Find(const Examination& exam) {
  if (exam.host.data_object.empty()) throw Missing{"data_object"};
  const auto catalog = Given(exam.Application()->DataObjectCatalog(), "DataObjectCatalog");
  return Given(catalog->Find(exam.host.data_object), "Find");
}

bool IsGranted(const Examination& exam, Session& session) {
  const auto& grant = Needed(exam.host.grant, "grant");
  const auto object = Find(exam);
  using namespace permission_key;
  for (const std::string_view key : {kView, kRun, kEdit, kDelete}) {
    for (const bool granted : {false, true}) {
      grant(key, granted);
      if (session.HasPermission(key, nullptr) != granted || session.HasPermission(key, object) != granted)
        return false;
    }
  }
  return true;
}

void CheckSession(Examination& exam) {
  const auto session = Given(exam.Application()->Session(), "Session");
  exam.Check("CurrentUser is nobody, or changes: a personal task would be somebody else's", [&] {
    const std::string user = Given(session->CurrentUser(), "CurrentUser")->UserId();
    return !user.empty() && user == Given(session->CurrentUser(), "CurrentUser")->UserId() &&
           session->AccountId() == session->AccountId();
  });
  exam.Check("HasPermission is not what was granted, also without an object: tasks would be too open",
             [&] { return IsGranted(exam, *session); });
  exam.Check("EditPermissions does not give the edited set, on Cancel the former: it would be lost", [&] {
    const auto& answer = Needed(exam.host.answer_permission_editor, "answer_permission_editor");
    const auto set = Needed(exam.host.make_permissions, "make_permissions")();
    const auto edited = [&](const Ref<Permissions>& former) {
      return session->EditPermissions(exam.New(&ObjectFactory::NewPermissionEditor), former, nullptr,
                                      "Title");
    };
    answer(false);
    const bool kept = edited(set) == set && edited(nullptr) == nullptr;
    answer(true);
    return kept && edited(nullptr) != nullptr && edited(set) != nullptr;
  });
}

Ref<Recordset> Open(const Examination& exam) {
  const auto connection =
      Given(Given(exam.Application()->Database(), "Database")->Connection(), "Connection");
  return Given(connection->OpenRecordset("SELECT Category FROM VeloAutoTasks", 4, 0, std::nullopt, -1),
               "OpenRecordset");
}

Value Read(Recordset& rows) {
  return Given(rows.Fields("Category"), "Fields")->Value();
}

void CheckRows(Examination& exam) {
  const auto& store = Needed(exam.host.store_categories, "store_categories");
  exam.Check("Without a row Bof and Eof are not both true: the page would read what there is not", [&] {
    store({});
    const auto rows = Open(exam);
    return rows->Bof() && rows->Eof() && FailsWith(3021, [&] { rows->MoveNext(); });
  });
  exam.Check("Rows do not stand between Bof and Eof, 3021 behind them: categories would be missing", [&] {
    store({"one", "two", "three"});
    const auto rows = Open(exam);
    int count = 0;
    for (; !rows->Eof() && !rows->Bof() && count <= 3; ++count) rows->MoveNext();
    return count == 3 && FailsWith(3021, [&] { (void)Read(*rows); }) &&
           FailsWith(3021, [&] { rows->MoveNext(); });
  });
  exam.Check("Fields does not fail with 3265 for an unknown column: a wrong table would go unnoticed",
             [&] { return FailsWith(3265, [&] { (void)Open(exam)->Fields("NoSuchColumn"); }); });
  exam.Check("Load does not replace the categories by the row's: the page would offer others", [&] {
    const auto rows = Open(exam);
    const auto list = exam.New(&ObjectFactory::NewCategoryList);
    for (const char* text : {"one", "two", "three"}) {
      list->Load(std::get<std::string>(Read(*rows)));
      if (list->Count() != 1) return false;
      const auto category = Given(list->Item(1), "Item");
      if (category->Text() != text || !category->Public()) return false;
      rows->MoveNext();
    }
    return true;
  });
}

// Whether handles are never 0 and never shared, and identify these very objects while they live.
bool HaveHandles(std::vector<Ref<DataObject>> objects) {
  std::map<std::int32_t, std::weak_ptr<DataObject>> handles;
  for (const auto& object : objects) {
    const std::int32_t handle = Given(object, "Item")->Handle();
    if (handle == 0 || handle != object->Handle() || !handles.emplace(handle, object.Shared()).second)
      return false;
    if (ServicesUtilities().ObjectFromHandle(handle) != object) return false;
  }
  objects.clear();
  return std::ranges::all_of(handles, [](const auto& entry) {
    return !entry.second.expired() ||
           FailsWith(91, [&] { (void)ServicesUtilities().ObjectFromHandle(entry.first); });
  });
}

void CheckDataObjects(Examination& exam) {
  const std::string name = Find(exam)->Name();
  const auto loader = Given(exam.Application()->Loader(), "Loader");
  const auto load = [&] {
    const auto objects = Given(loader->LoadDataObjects(), "LoadDataObjects");
    std::vector<Ref<DataObject>> loaded;
    for (std::int32_t index = 1; index <= objects->Count(); ++index)
      loaded.push_back(Given(objects->Item(index), "Item"));
    return loaded;
  };
  exam.Check("Find gives another data object, or one without fields: a task would work on others", [&] {
    const auto object = Find(exam);
    return name == exam.host.data_object && !object->Caption().empty() && !object->Key().empty() &&
           object->Fields();
  });
  exam.Check("Find does not fail with 5 for an unknown name: a task would lose its data object", [&] {
    const auto catalog = Given(exam.Application()->DataObjectCatalog(), "DataObjectCatalog");
    return FailsWith(5, [&] { (void)catalog->Find("no such object"); }) &&
           FailsWith(5, [&] { (void)catalog->Find(""); });
  });
  exam.Check("The loaded objects do not hold each one once, with 9 outside: the list would be wrong", [&] {
    return std::ranges::count_if(load(), [&](const auto& object) { return object->Name() == name; }) == 1 &&
           FailsOutside(*Given(loader->LoadDataObjects(), "LoadDataObjects"));
  });
  exam.Check("A handle does not stand for its object while it lives: another one would be chosen", [&] {
    auto objects = load();
    const auto found = Find(exam);
    if (!std::ranges::count(objects, found)) objects.push_back(found);
    return HaveHandles(std::move(objects));
  });
  exam.Check("LoadDesignerObjects gives nothing: the action list would have no context",
             [&] { return loader->LoadDesignerObjects() != nullptr; });
}

void CheckEditors(Examination& exam) {
  exam.Check("The query builder does not leave what was built, on Cancel the former: it would be lost", [&] {
    const auto& answer = Needed(exam.host.answer_query_builder, "answer_query_builder");
    const auto query = exam.New(&ObjectFactory::NewQueryDefinition);
    const auto fields = Find(exam)->Fields();
    query->SetText("former");
    answer(std::nullopt);
    if (exam.New(&ObjectFactory::NewQueryBuilder)->Show(query, fields) || query->Text() != "former")
      return false;
    answer("built");
    return exam.New(&ObjectFactory::NewQueryBuilder)->Show(query, fields) && query->Text() == "built";
  });
  exam.Check("The category editor does not leave what was confirmed: categories would be lost", [&] {
    const auto& answer = Needed(exam.host.answer_category_editor, "answer_category_editor");
    const auto list = exam.New(&ObjectFactory::NewCategoryList);
    answer(std::nullopt);
    if (list->Edit(false, false, nullptr) || list->Count() != 0) return false;
    answer({{"one", "two"}});
    return list->Edit(false, false, exam.New(&ObjectFactory::NewTextCollection)) && list->Count() == 2 &&
           Given(list->Item(2), "Item")->Text() == "two";
  });
}

void CheckControl(Examination& exam) {
  const auto control = exam.Control();
  exam.Check("Actions is not a list of the control's own: edits would stay though the user cancels", [&] {
    const auto actions = exam.Actions({1, 8});
    control->Load(actions);
    const auto edited = Given(control->Actions(), "Actions");
    if (edited == actions || edited->Count() != 2) return false;
    edited->Remove(1);
    return actions->Count() == 2;
  });
  exam.Check("Editing changes the list that was loaded: edits would stay though the user cancels", [&] {
    const auto& remove = Needed(exam.host.remove_action, "remove_action");
    const auto actions = exam.Actions({1, 8});
    control->Load(actions);
    remove(*control);
    return actions->Count() == 2 && Given(control->Actions(), "Actions")->Count() == 1;
  });
  exam.Check("The control does not ask the handler given last: actions for other data would be offered", [&] {
    const auto& ask = Needed(exam.host.ask_context, "ask_context");
    std::string asked;
    control->OnContextRequest([&](Ref<ValueStore>&) { asked += "former"; });
    control->OnContextRequest([&](Ref<ValueStore>& context) {
      asked += "last";
      context = exam.New(&ObjectFactory::NewValueStore);
    });
    ask(*control);
    control->OnContextRequest(nullptr);
    return asked == "last";
  });
}

}  // namespace

void CheckData(Examination& exam) {
  exam.About("Session", [&] { CheckSession(exam); });
  exam.About("Recordset", [&] { CheckRows(exam); });
  exam.About("DataObject", [&] { CheckDataObjects(exam); });
  exam.About("Editors", [&] { CheckEditors(exam); });
  exam.About("ActionListControl", [&] { CheckControl(exam); });
}

}  // namespace plovix::conformance
