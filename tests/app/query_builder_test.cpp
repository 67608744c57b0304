// The query builder, driven by keyboard and mouse.
#include <plovix/standalone/data/sqlite_data_source.h>
#include <plovix/standalone/query/query_text.h>
#include <plovix/standalone/query_builder/query_builder_dialog.h>
#include <plovix/standalone/query_builder/wait_window.h>

#include <future>

#include "tests/app/program_support.h"

namespace plovix::app {
namespace {

using testing::HasSubstr;

class QueryBuilderTest : public testing::Test {
 protected:
  QueryBuilderTest() {
    QLocale::setDefault(QLocale::French);
    const Connection connection(path_, std::chrono::milliseconds{50}, Access::kReadWrite);
    connection.Run("CREATE TABLE \"a & b\" (\"50% \"\"o\"\" & é\" TEXT, total REAL, n INT, paid BOOL)");
    connection.Run("INSERT INTO \"a & b\" VALUES ('x', 0.5, 1, 1), ('y', 2, 2, 0), (NULL, 3, 3, 0)");
  }
  ~QueryBuilderTest() override { QLocale::setDefault(QLocale::C); }

  void Open(const std::string& text) {
    dialog_ = std::make_unique<QueryBuilderDialog>(texts_, source_, *source_.Find("a & b"), text,
                                                   QueryTarget{path_}, nullptr);
    dialog_->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
  }
  [[nodiscard]] QPlainTextEdit* Text() const { return dialog_->findChild<QPlainTextEdit*>(); }
  // By accessible name, or caption without its mnemonic, of what can be seen.
  template <typename Widget>
  [[nodiscard]] Widget* Find(const char* name) const {
    for (Widget* widget : dialog_->findChildren<Widget*>()) {
      QString known = widget->accessibleName();
      if (known.isEmpty()) known = widget->property("text").toString().remove(u'&');
      if (widget->isVisible() && known == QString::fromUtf8(name)) return widget;
    }
    return nullptr;
  }
  template <typename Widget>
  [[nodiscard]] Widget* Get(const char* name) const {
    Widget* found = Find<Widget>(name);
    if (found == nullptr) throw Failure(failure_number::kInvalidCall, name);
    return found;
  }
  void Pick(const char* name, const char* entry) const {
    Get<QComboBox>(name)->setCurrentText(QString::fromUtf8(entry));
  }
  [[nodiscard]] bool Tells(const char* part) const { return Told(*dialog_).find(part) != std::string::npos; }
  void TypeText(const QString& text) const {
    Text()->setFocus();
    Text()->selectAll();
    QTest::keyClicks(Text(), text);
  }
  // Presses OK or Cancel and answers the question that comes with a key.
  void Answer(Qt::Key button, const std::string& question, Qt::Key answer) const {
    const Answers answers({Reads(question, answer, Qt::AltModifier)});
    QTest::keyClick(dialog_.get(), button);
    QTest::qWait(100);
  }

  QTemporaryDir folder_;
  std::string path_ = FromQt(folder_.filePath(QStringLiteral("d.sqlite")));
  SqliteDataSource source_{path_};
  TextTable texts_ = LoadLanguage("en");
  std::unique_ptr<QueryBuilderDialog> dialog_;
};

constexpr auto kAll = R"(SELECT * FROM "a & b")";

TEST_F(QueryBuilderTest, RowsAreBuiltByKeyboardAndWrittenAsText) {
  Open(" ");
  EXPECT_EQ(dialog_->Query(), kAll);
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("3 records match"); }));
  EXPECT_TRUE(Get<QRadioButton>("All records")->hasFocus());
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Down);
  Get<QPushButton>("Cancel")->setFocus();
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(Get<QRadioButton>("Records that match")->hasFocus()) << "Tab goes round";
  for (int i = 0; i < 2; ++i) QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(Get<QComboBox>("Field of condition 1")->hasFocus());
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Down);
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  QTest::keyClicks(dialog_->focusWidget(), "0,");
  QTest::keyClick(dialog_.get(), Qt::Key_Return);  // "0." is a number, and Enter means OK
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_EQ(dialog_->Query(), std::string(kAll) + R"( WHERE "total" = 0.)");
  Open(dialog_->Query());
  QTest::keyClicks(Get<QLineEdit>("Value of condition 1"), "5");
  Get<QPushButton>("Add group")->click();
  Pick("Field of condition 2", "50% \"o\" & é");
  Pick("Comparison of condition 2", "contains");
  QTest::keyClicks(Get<QLineEdit>("Value of condition 2"), "5%'");
  Get<QPushButton>("Add a condition to group 2")->click();
  Pick("Field of condition 3", "paid");
  Pick("How the conditions are joined", "any of these conditions");
  EXPECT_EQ(dialog_->Query(),
            std::string(kAll) + R"( WHERE "total" = 0.5 OR ("50% ""o"" & é" LIKE '%5\%''%' ESCAPE '\' OR )" +
                R"("paid" = 1))");
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("1 record matches"); }));
  Get<QPushButton>("Remove condition 1")->click();
  Get<QPushButton>("Remove group 1")->click();
  EXPECT_EQ(dialog_->Query(), kAll);
}

TEST_F(QueryBuilderTest, TheTextAndTheRowsKeepInStep) {
  Open(std::string(kAll) + "  where n = 1 -- as typed");
  EXPECT_EQ(Text()->toPlainText(), QString(kAll) + "  where n = 1 -- as typed");
  TypeText("select * from [A & b] where n>=2 or paid=0");
  EXPECT_TRUE(QTest::qWaitFor([this] { return Find<QComboBox>("Value of condition 2") != nullptr; }));
  EXPECT_EQ(Get<QLineEdit>("Value of condition 1")->text(), "2");
  EXPECT_EQ(Get<QComboBox>("How the conditions are joined")->currentIndex(), 1);
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("2 records match"); }));
  EXPECT_EQ(dialog_->Query(), "select * from [A & b] where n>=2 or paid=0");
  TypeText("select n from [a & b] order by n");
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("chooses columns") && Tells("used as it is"); }));
  EXPECT_FALSE(Get<QLineEdit>("Value of condition 1")->isEnabled());
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("3 records match"); }));
  EXPECT_EQ(Get<QTableWidget>("The first records that the query finds")->columnCount(), 1);
  TypeText(" ");
  QTest::keyClick(dialog_.get(), Qt::Key_Return, Qt::ControlModifier);
  dialog_->accept();
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_TRUE(Tells("no query yet"));
  Get<QRadioButton>("All records")->click();
  EXPECT_EQ(dialog_->Query(), kAll);
  EXPECT_EQ(Text()->toPlainText(), kAll);
  dialog_->accept();
  EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(QueryBuilderTest, NothingWrongPassesUnseenAndNothingTypedIsLost) {
  Open(std::string(kAll) + " WHERE n = 1");
  auto* value = Get<QLineEdit>("Value of condition 1");
  value->selectAll();
  QTest::keyClicks(value, "1,5");
  QTest::keyClick(dialog_.get(), Qt::Key_Return);
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_TRUE(Tells("whole number"));
  EXPECT_THAT(FromQt(value->accessibleDescription()), HasSubstr("whole number"));
  EXPECT_TRUE(value->hasFocus());
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("has no value yet"); }));
  Answer(Qt::Key_Escape, "Discard", Qt::Key_K);
  EXPECT_TRUE(dialog_->isVisible());
  TypeText("select * from nosuch");
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("no such table: nosuch"); }));
  dialog_->findChild<QTableWidget*>()->setFocus();
  Answer(Qt::Key_Return, "no such table", Qt::Key_E);
  EXPECT_TRUE(dialog_->isVisible());
  Answer(Qt::Key_Return, "Keep this query anyway", Qt::Key_K);
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_EQ(dialog_->Query(), "select * from nosuch");
}

TEST_F(QueryBuilderTest, ValuesThatAnEditorWouldChangeGoThroughUnharmed) {
  const std::string odd =
      "a\xC2\xA0"
      "b\r\n\xE2\x80\xA9'&%_\\\xD7\xA9\xF0\x9F\x98\x80" +
      std::string(1, '\0') + std::string(40'000, 'x');
  const std::vector<FieldRecord> fields = source_.Fields("a & b");
  const QueryModel model{"a & b", Join::kAll, {{Join::kAll, {{fields[0].name, Comparison::kEquals, odd}}}}};
  const std::string text = QueryText(model, fields);
  Open(text);
  EXPECT_EQ(dialog_->Query(), text);
  Pick("Comparison of condition 1", "is not");
  Pick("Comparison of condition 1", "is");
  EXPECT_EQ(dialog_->Query(), text);
  Text()->moveCursor(QTextCursor::End);
  QTest::keyClicks(Text(), ";");
  EXPECT_EQ(dialog_->Query(), text + ";");
}

// Where nothing ends a query, or reading the data: measured by a clock that ticks on the window's thread.
TEST_F(QueryBuilderTest, TheWindowsLiveOnWhateverTheDataDo) {
  constexpr auto kEndless =
      "SELECT instr(y, substr(y, 400000) || 'x') FROM (SELECT hex(zeroblob(400000)) AS y)";
  qint64 longest = 0;
  QElapsedTimer since;
  since.start();
  QTimer clock;
  clock.callOnTimeout([&] { longest = std::max(longest, since.restart()); });
  clock.start(5);
  Open(kEndless);
  EXPECT_TRUE(QTest::qWaitFor([this] { return Tells("took too long"); }));
  TypeText(kEndless);
  dialog_->accept();
  dialog_.reset();
  const auto is_freed = std::make_shared<std::promise<void>>();
  const BackgroundJob job([is_freed](const std::stop_token&) { is_freed->get_future().wait(); });
  const auto after = [](int milliseconds, const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(milliseconds, [act] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      act(*box);
    });
  };
  after(400, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_FALSE(WaitWithWindow(texts_)(job));
  after(400, [&](const QMessageBox& box) {
    EXPECT_EQ(FromQt(box.text()), "Reading the data...");
    is_freed->set_value();
  });
  EXPECT_TRUE(WaitWithWindow(texts_)(job));
  EXPECT_LT(longest, 2000) << "milliseconds without a tick";
  RecordProperty("longest", static_cast<int>(longest));
}

}  // namespace
}  // namespace plovix::app
