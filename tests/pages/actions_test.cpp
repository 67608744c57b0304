// The actions page: the context it hands to the action list, what it loads once, and what it saves.
#include <plovix/framework/page_identifiers.h>

#include "tests/support/snapshot.h"

namespace plovix {
namespace {

using namespace testing_support;

// Keeps the context that the page gives out: an action list that asks on demand.
class AskingList final : public ActionListControl {
 public:
  void Load(const std::shared_ptr<ActionList>& actions) override { loaded = actions; }
  std::shared_ptr<ActionList> Actions() override { return std::make_shared<ActionListObject>(); }
  void OnContextRequest(ContextRequest handler) override { request = std::move(handler); }
  std::shared_ptr<StoreObject> Ask() {
    std::shared_ptr<ValueStore> context;
    request(context);
    return std::dynamic_pointer_cast<StoreObject>(context);
  }
  std::shared_ptr<ActionList> loaded;
  ContextRequest request;
};

class ActionsTest : public testing::Test, protected FormObserver {
 protected:
  std::unique_ptr<Bench> Open(std::int16_t mode, const Entries& entries = {}) {
    TaskRecord task;
    task.record_mode = mode;
    task.actions = {LogAction("one")};
    auto bench = std::make_unique<Bench>(scene, page_identifier::kActions, task, entries);
    list = std::make_shared<AskingList>();
    bench->Get<HostSlot>("VeloActionList").Embed(list);
    bench->Initialize();
    observed = &bench->Controls();
    observed->Observe(this);
    return bench;
  }
  void PointerChanged() override { pointers.push_back(static_cast<int>(observed->MousePointer())); }
  void RedrawRequested() override {}

  Scene scene;
  std::shared_ptr<AskingList> list;
  Form* observed = nullptr;
  std::vector<int> pointers;
};

TEST_F(ActionsTest, ContextByRecordMode) {
  const std::vector<std::pair<std::int16_t, std::optional<std::int32_t>>> rows = {
      {0, 16}, {1, 1}, {2, 8}, {3, {}}};
  for (const auto& [mode, type] : rows) {
    const auto bench = Open(mode);
    EXPECT_EQ(list->loaded, bench->task->Actions());
    pointers.clear();
    auto values = list->Ask()->values;
    EXPECT_EQ(pointers, (std::vector{11, 0}));
    EXPECT_EQ(std::get<std::string>(values.at("DataObjectKey")), "");
    EXPECT_EQ(std::get<ObjectRef>(values.at("DataObject")), nullptr);
    EXPECT_TRUE(ObjectFrom<ObjectCollection>(values.at("DataObjects")));
    EXPECT_TRUE(ObjectFrom<ObjectCollection>(values.at("DesignerObjects")));
    EXPECT_EQ(values.contains("DesignerObjectType"), type.has_value());
    if (type) {
      EXPECT_EQ(std::get<std::int32_t>(values.at("DesignerObjectType")), *type);
    }
    EXPECT_EQ(values.size(), type ? 5U : 4U);
    EXPECT_NE(list->Ask(), list->Ask()) << "each context is a fresh one";
  }
}

TEST_F(ActionsTest, TheStoresObjectsAreUsedAndNeverReplaced) {
  const auto customer =
      std::make_shared<DataObjectObject>(DataObjectRecord{"Customer", "Customers", "CustomerId"});
  const auto data = std::make_shared<DataObjectsObject>();
  const auto designer = std::make_shared<DesignerObjectsObject>();
  const Entries entries = {{store_key::kDataObject, ObjectRef(customer)},
                           {store_key::kDataObjects, ObjectRef(data)},
                           {store_key::kDesignerObjects, ObjectRef(designer)}};
  const CallLog log;
  const auto bench = Open(2, entries);
  auto values = list->Ask()->values;
  EXPECT_EQ(std::get<std::string>(values.at("DataObjectKey")), "CustomerId");
  EXPECT_EQ(ObjectFrom<DataObject>(values.at("DataObject")), customer);
  EXPECT_EQ(ObjectFrom<ObjectCollection>(values.at("DataObjects")), data);
  EXPECT_EQ(ObjectFrom<ObjectCollection>(values.at("DesignerObjects")), designer);
  // An entry that somebody put there in the meantime stays, too.
  const auto later = std::make_shared<DataObjectsObject>();
  bench->store->values[store_key::kDataObjects] = ObjectRef(later);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(ObjectFrom<ObjectCollection>(bench->store->values.at(store_key::kDataObjects)), later);
  EXPECT_EQ(log.Count("ObjectLoader.LoadDataObjects") + log.Count("ObjectLoader.LoadDesignerObjects"), 0);
}

TEST_F(ActionsTest, CollectionsAreLoadedOnceAndKept) {
  const CallLog log;
  auto bench = Open(0);
  const auto first = list->Ask()->values;
  EXPECT_EQ(list->Ask()->values.at("DataObjects"), first.at("DataObjects"));
  EXPECT_FALSE(bench->store->values.contains(store_key::kDataObjects)) << "kept until the page is left";
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  EXPECT_EQ(bench->store->values.at(store_key::kDataObjects), first.at("DataObjects"));
  EXPECT_EQ(bench->store->values.at(store_key::kDesignerObjects), first.at("DesignerObjects"));
  bench = Open(0, bench->store->values);
  EXPECT_EQ(list->Ask()->values.at("DataObjects"), first.at("DataObjects"));
  EXPECT_EQ(log.Count("ObjectLoader.LoadDataObjects"), 1);
  EXPECT_EQ(log.Count("ObjectLoader.LoadDesignerObjects"), 1);
  bench = Open(0);  // never asked: nothing to keep
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_FALSE(bench->store->values.contains(store_key::kDataObjects));
}

TEST_F(ActionsTest, AContextThatWasLeftLeavesTheWaitPointer) {
  struct FailsLoading final : CallObserver {
    void HostCalled(std::string_view member) override {
      if (member == "ObjectLoader.LoadDataObjects") throw Failure(failure_number::kInternal, "no");
    }
  } observer;
  const auto bench = Open(0);
  {
    const ObserveCalls observe(observer);
    EXPECT_EQ(list->Ask(), nullptr);
    ASSERT_EQ(scene.dialogs.reports.size(), 1U);
    EXPECT_EQ(scene.dialogs.reports[0].procedure, "GetProperties");
    EXPECT_EQ(bench->Controls().MousePointer(), Pointer::kWait);
  }
  EXPECT_NE(list->Ask(), nullptr);
  EXPECT_EQ(bench->Controls().MousePointer(), Pointer::kDefault);
}

TEST_F(ActionsTest, EditingReachesTheTaskWhenThePageIsLeft) {
  for (const ChangeDirection direction :
       {ChangeDirection::kNext, ChangeDirection::kBack, ChangeDirection::kFinish, ChangeDirection::kCancel}) {
    TaskRecord task;
    task.actions = {LogAction("one")};
    Bench bench(scene, page_identifier::kActions, task);
    bench.Initialize();
    bench.ActionRows().Append(LogAction("two"));
    EXPECT_EQ(bench.task->Record(), task) << "the loaded list is not the task's own";
    EXPECT_TRUE(bench.Leave(direction));
    if (direction != ChangeDirection::kCancel) task.actions.push_back(LogAction("two"));
    EXPECT_EQ(bench.task->Record(), task);
  }
}

}  // namespace
}  // namespace plovix
