// How the lines of a design become a page, at any width and in either direction of reading.
#include <QScrollArea>
#include <QScrollBar>

#include "page_fixture.h"

namespace plovix::qt {
namespace {

class LayoutTest : public PageTest {
 protected:
  [[nodiscard]] QRect Place(std::string_view name) const {
    return {At(name)->mapTo(page, QPoint(0, 0)), At(name)->size()};
  }
};

TEST_F(LayoutTest, LinesBecomeRows) {
  Open();
  EXPECT_EQ(Place("txt").left(), Place("cbo").left());
  EXPECT_GT(Place("txt").left(), Place("lblCategory").right());
  EXPECT_EQ(Place("cmd").right(), Place("cbo").right());
  EXPECT_LT(Place("txtDay").width(), Place("txt").width() / 2);
  EXPECT_LT(Place("lst").right(), Place("txtDay").left());
  EXPECT_EQ(At("chkInside")->parentWidget(), At("fra"));
  EXPECT_LT(Place("memo").top(), Place("lblLink").top());
}

TEST_F(LayoutTest, ANarrowPageWrapsAndScrollsOnlyDown) {
  Open();
  page->setFixedWidth(Place("lblMonths").right());
  page->setFixedHeight(page->minimumSizeHint().height());
  QTest::qWait(0);
  EXPECT_GT(Place("lblMonths").top(), Place("txtDay").bottom());
  const auto* scroll = page->findChild<QScrollArea*>();
  EXPECT_EQ(scroll->horizontalScrollBar()->maximum(), 0);
  EXPECT_FALSE(page->rect().contains(Place("memo")));
  Get<TextBox>("memo").SetFocus();
  EXPECT_TRUE(page->rect().contains(Place("memo")));
}

TEST_F(LayoutTest, ReadsFromTheRightWhereTheLanguageDoes) {
  window.setLayoutDirection(Qt::RightToLeft);
  Open();
  EXPECT_GT(Place("lblName").left(), Place("txt").right());
  EXPECT_GT(Place("lst").left(), Place("txtDay").right());
  Get<OptionButton>("optA").Select();
  At("optA")->setFocus();
  Press("optA", Qt::Key_Left);
  EXPECT_TRUE(Get<OptionButton>("optB").Selected());
}

}  // namespace
}  // namespace plovix::qt
