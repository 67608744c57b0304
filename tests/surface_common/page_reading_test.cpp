// What every surface asks of pages, captions and lists, without a toolkit.
#include <plovix/base/utf8.h>
#include <plovix/surfaces/common/entry_search.h>
#include <plovix/surfaces/common/page_reading.h>
#include <plovix/surfaces/common/widths.h>

#include "tests/support/every_kind.h"

namespace plovix::surface {
namespace {

// Knows a few letters only, so that no test hangs on a locale.
Unicode German() {
  Unicode unicode;
  unicode.is_letter_or_digit = [](char32_t character) {
    return character == U'Ä' || character == U'\U00010400';
  };
  unicode.fold = [](char32_t character) { return character == U'Ö' ? U'ö' : character; };
  return unicode;
}

class PageReadingTest : public testing_support::EveryKindTest {
 protected:
  [[nodiscard]] std::string Stops(TabOrder order) const {
    std::string names;
    for (const Control* stop : reading.TabStops(order)) names.append(stop->Name()).append(" ");
    return names;
  }
  PageReading reading{*form};
};

TEST_F(PageReadingTest, TabStopsAtWhatCanBeUsedAndAtOneOption) {
  Get<OptionButton>("optB").Select();
  Get("fra").SetEnabled(false);
  EXPECT_EQ(Stops(TabOrder::kReading), "txt cmd cbo optB lst txtDay chk dtp tim memo lblLink slot ");
  EXPECT_EQ(Stops(TabOrder::kDeclared), "slot cmd memo tim dtp chk txtDay lst optB cbo txt lblLink ");
}

TEST_F(PageReadingTest, TheFirstFocusAndTheArrowsKeepToUsableControls) {
  auto& option_a = Get<OptionButton>("optA");
  auto& option_b = Get<OptionButton>("optB");
  EXPECT_EQ(reading.FirstFocus(), &Get("txt"));
  for (const char* name : {"txt", "cmd", "cbo"}) Get(name).SetEnabled(false);
  EXPECT_EQ(reading.FirstFocus(), &option_a);
  option_b.Select();
  EXPECT_EQ(reading.FirstFocus(), &option_b);
  for (const int step : {1, -1}) EXPECT_EQ(reading.OptionAfter(option_a, step), &option_b);
  option_b.SetVisible(false);
  EXPECT_EQ(reading.OptionAfter(option_a, 1), nullptr);
  EXPECT_EQ(reading.Heading(), &Get("lblTitle"));
}

TEST(Captions, MarkTheirMnemonicOnce) {
  constexpr auto kNone = std::string_view::npos;
  const struct {
    const char *caption, *text;
    std::size_t mnemonic;
  } rows[] = {{"R&&D", "R&D", kNone},
              {"Research & more&", "Research & more&", kNone},
              {"&&&All", "&All", 1},
              {"&One &Two", "One &Two", 0},
              {"a&Ä&2", "aÄ&2", 1},
              {"a&Öl &2", "a&Öl 2", 6},
              {"&\U00010400", "\U00010400", 0},
              {"&\xC3", "&\xC3", kNone}};
  for (const auto& row : rows) {
    const Caption read = ReadCaption(row.caption, German());
    EXPECT_EQ(std::pair(read.text, read.mnemonic), std::pair(std::string(row.text), row.mnemonic))
        << row.caption;
  }
}

TEST(Captions, PositionsCountCharacters) {
  const std::string text = "a\U0001F600b\u20AC";
  for (const auto& [count, bytes] : {std::pair(-1, 0U), {0, 0U}, {1, 1U}, {2, 5U}, {3, 6U}, {4, 9U}, {9, 9U}})
    EXPECT_EQ(FirstCharacters(text, count).size(), bytes) << count;
}

TEST_F(PageReadingTest, ASearchShowsTheBestMatchAmongItsNeighbours) {
  auto& list = Get<ComboBox>("lst");
  list.Clear();
  for (const char* text : {"a river", "Riverside", "RIVER", "die Öse", "öse", "x"}) list.AddItem(text);
  list.Select(4);
  const struct {
    const char* typed;
    std::optional<int> around;
    std::vector<int> entries;
    int row, hidden;
  } rows[] = {{"river", {}, {1, 2}, 1, 1}, {"rivers", {}, {1}, 0, 0},  {"ÖSE", {}, {3, 4}, 1, 0},
              {"river", 0, {0, 1}, 0, 1},  {"river", 9, {1, 2}, 1, 1}, {"y", {}, {}, -1, 0},
              {"y", 0, {}, -1, 0},         {"", {}, {3, 4}, 1, 4}};
  for (const auto& row : rows) {
    const Matches found = FindMatches(list, row.typed, row.around, 2, German());
    EXPECT_EQ(std::tuple(found.entries, found.row, found.hidden),
              std::tuple(row.entries, row.row, row.hidden))
        << row.typed;
  }
  ListWidth width;
  EXPECT_EQ(width.Of(list), 9);
  list.AddItem(std::string(100, 'x'));
  EXPECT_EQ(width.Of(list), kWidestList);
  list.Clear();
  EXPECT_EQ(width.Of(list), 0);
}

}  // namespace
}  // namespace plovix::surface
