// The shared library from outside, as a host that loads it at run time has it: this program is not linked
// with the pages.
#include <gmock/gmock.h>
#include <plovix/component/page_library.h>
#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/objects/task_object.h>
#include <plovix/standalone/objects/velo_action_list.h>

#include <array>
#include <cstdio>

#include "tests/support/failure_of.h"

namespace plovix {
namespace {

using testing::HasSubstr;

bool IsLoaded() {
  void* handle = dlopen(PLOVIX_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

class LibraryTest : public testing::Test {
 protected:
  ~LibraryTest() override {
    factory.reset();
    library.reset();
    EXPECT_FALSE(IsLoaded());
  }
  template <class Pointer>
  Pointer Entry(const char* name) {
    return library->Function<Pointer>(name);
  }
  bool CanUnload() { return Entry<decltype(&plovix_can_unload)>("plovix_can_unload")(); }
  EntryResult Register(std::uint32_t version, PageRegistry* into) {
    return Entry<decltype(&plovix_register)>("plovix_register")(version, into, &error);
  }
  EntryResult Unregister(PageRegistry* from) {
    return Entry<decltype(&plovix_unregister)>("plovix_unregister")(kInterfaceVersion, from, &error);
  }
  EntryResult Factory(const char* identifier) {
    return Entry<decltype(&plovix_class_factory)>("plovix_class_factory")(kInterfaceVersion, identifier,
                                                                          &factory, &error);
  }

  PageRegistry registry;
  std::optional<PageLibrary> library{std::in_place, PLOVIX_LIBRARY, registry};
  std::shared_ptr<PageFactory> factory;
  EntryError error{};
};

TEST_F(LibraryTest, EntryPointsRefuseInWordsAndChangeNothing) {
  PageRegistry other;
  EXPECT_EQ(Register(kInterfaceVersion + 1, &other), EntryResult::kWrongVersion);
  EXPECT_THAT(error.text, HasSubstr("interface version " + std::to_string(kInterfaceVersion + 1)));
  EXPECT_EQ(Register(kInterfaceVersion, nullptr), EntryResult::kInvalidArgument);
  EXPECT_EQ(Unregister(&other), EntryResult::kNotRegistered);
  EXPECT_EQ(Factory("Plovix.Nonsense"), EntryResult::kUnknownIdentifier);
  EXPECT_THAT(error.text, HasSubstr("\"Plovix.Nonsense\""));
  EXPECT_EQ(Factory("\u00E9\xC3\n"), EntryResult::kUnknownIdentifier);
  EXPECT_THAT(error.text, HasSubstr("\"\u00E9\uFFFD\uFFFD\"")) << "is readable";
  EXPECT_EQ(Factory(std::string(1000, 'x').c_str()), EntryResult::kUnknownIdentifier);
  EXPECT_EQ(std::string(error.text).size(), sizeof error.text - 1);
  std::string two_bytes_each;
  while (two_bytes_each.size() < 600) two_bytes_each += "\u00E9";
  for (const char* shift : {"", "x"}) {
    EXPECT_EQ(Factory((shift + two_bytes_each).c_str()), EntryResult::kUnknownIdentifier);
    EXPECT_TRUE(std::string(error.text).ends_with("\u00E9")) << "a character was cut in two";
  }
  EXPECT_EQ(Factory(nullptr), EntryResult::kInvalidArgument);

  ASSERT_EQ(Factory("Plovix.Query"), EntryResult::kDone);
  EXPECT_STREQ(error.text, "");
  other.Add(factory);
  EXPECT_EQ(Register(kInterfaceVersion, &other), EntryResult::kAlreadyRegistered);
  EXPECT_THAT(error.text, HasSubstr("Plovix.Query"));
  EXPECT_EQ(other.Identifiers().size(), 1U);
  const auto pages = registry.Identifiers();
  EXPECT_THROW(PageLibrary(PLOVIX_LIBRARY, registry), Failure);
  EXPECT_EQ(registry.Identifiers(), pages);
  EXPECT_THROW(PageLibrary("libplovix-nowhere.so", other), Failure);
  EXPECT_THROW(PageLibrary("libstdc++.so.6", other), Failure);
}

// Each of these alone keeps the library in use: a factory, a page, a weak reference to one, and a function
// that a page has left with the host.
TEST_F(LibraryTest, WhatIsAliveKeepsTheLibrary) {
  EXPECT_FALSE(CanUnload());
  ASSERT_EQ(Factory("Plovix.Actions"), EntryResult::kDone);
  ASSERT_EQ(Unregister(&registry), EntryResult::kDone);
  EXPECT_FALSE(CanUnload());
  std::shared_ptr<WizardPage> page = factory->CreatePage();
  factory.reset();
  EXPECT_FALSE(CanUnload());
  std::weak_ptr<WizardPage> weak = page;
  page.reset();
  EXPECT_FALSE(CanUnload());
  weak.reset();
  EXPECT_TRUE(CanUnload());

  HostState state;
  InstallHost(state);
  const auto actions = std::make_shared<VeloActionList>();
  ASSERT_EQ(Factory("Plovix.Actions"), EntryResult::kDone);
  page = std::exchange(factory, nullptr)->CreatePage();
  dynamic_cast<HostSlot&>(page->Controls().Get("VeloActionList")).Embed(actions);
  const auto store = std::make_shared<StoreObject>();
  store->values[store_key::kAutoTask] = ObjectRef(MakeTask(state, {}));
  page->IWizardPage_Initialize(nullptr, store);
  page.reset();
  EXPECT_FALSE(CanUnload());
  actions->OnContextRequest({});
  EXPECT_TRUE(CanUnload());
  InstallServices({});
}

TEST_F(LibraryTest, FailuresAndObjectsPassBetweenHostAndPages) {
  for (const std::string& identifier : registry.Identifiers()) {
    const auto page = registry.Create(identifier);
    EXPECT_EQ("Plovix." + std::string(page->PageName()), identifier);
    EXPECT_EQ(test::FailureOf([&] { (void)page->IWizardPage_Title(); }).Number(),
              failure_number::kCannotCreateObject);
  }
}

TEST(LibraryFile, ExportsItsEntryPointsAlone) {
  std::string symbols;
  std::FILE* const output = popen("nm -D --defined-only --format=just-symbols " PLOVIX_LIBRARY, "r");
  std::array<char, 256> line{};
  while (std::fgets(line.data(), line.size(), output) != nullptr) symbols += line.data();
  ASSERT_EQ(pclose(output), 0);
  EXPECT_EQ(symbols,
            "PLOVIX_1\nplovix_can_unload@@PLOVIX_1\nplovix_class_factory@@PLOVIX_1\n"
            "plovix_interface_version@@PLOVIX_1\nplovix_register@@PLOVIX_1\nplovix_unregister@@PLOVIX_1\n");
}

}  // namespace
}  // namespace plovix
