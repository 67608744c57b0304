// The binary shape of the page contract, and the small text and value rules of the room.
#include <gtest/gtest.h>
#include <plovix/framework/text_rules.h>
#include <plovix/framework/wizard_page.h>

#include <cstring>

namespace plovix {
namespace {

// Slot of a virtual member: its place in the table of virtual functions. The first word of the pointer
// is the offset in that table, with the lowest bit as a mark where the platform sets it there.
template <class Member>
std::size_t Slot(Member member) {
  std::size_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return (offset & ~std::size_t{1}) / sizeof(void*);
}

TEST(PageContract, OperationsStandInSlotOrder) {
  using Page = IWizardPage;
  const std::size_t slots[] = {Slot(&Page::IWizardPage_Title),         Slot(&Page::IWizardPage_Description),
                               Slot(&Page::IWizardPage_Initialize),    Slot(&Page::IWizardPage_Terminate),
                               Slot(&Page::IWizardPage_GetNextPage),   Slot(&Page::IWizardPage_CanChangePage),
                               Slot(&Page::IWizardPage_BackEnabled),   Slot(&Page::IWizardPage_CancelEnabled),
                               Slot(&Page::IWizardPage_FinishEnabled), Slot(&Page::IWizardPage_NextEnabled),
                               Slot(&Page::IWizardPage_GetMinimumSize)};
  for (std::size_t i = 0; i < std::size(slots); ++i) EXPECT_EQ(slots[i], i);
  static_assert(sizeof(ChangeDirection) == 4);
}

static_assert(Trimmed("  a b\t\r\n") == "a b");
static_assert(Trimmed(" \t\r\n").empty() && Trimmed("").empty());

struct Apple final : HostObject {};
struct Pear final : HostObject {};

TEST(Values, ObjectsAndTruthValues) {
  const auto apple = std::make_shared<Apple>();
  EXPECT_EQ(ObjectFrom<Apple>(ObjectRef(apple)), apple);
  EXPECT_EQ(ObjectFrom<Apple>({}), nullptr);
  EXPECT_EQ(ObjectFrom<Apple>(ObjectRef()), nullptr);
  EXPECT_THROW((void)ObjectFrom<Pear>(ObjectRef(apple)), Failure);
  EXPECT_THROW((void)ObjectFrom<Apple>(true), Failure);
  for (const Value& truth : {Value(true), Value(std::int32_t{-1}), Value(0.5)})
    EXPECT_TRUE(BooleanFrom(truth));
  for (const Value& lie : {Value(false), Value(std::int32_t{0}), Value(0.0)}) EXPECT_FALSE(BooleanFrom(lie));
  for (const Value& neither : {Value(), Value(std::string("true")), Value(ObjectRef(apple))}) {
    EXPECT_THROW((void)BooleanFrom(neither), Failure);
  }
}

}  // namespace
}  // namespace plovix
