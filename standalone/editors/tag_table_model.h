// Language tags as rows of a table: the tag and its text in one language. Used by the tag editor.
#pragma once

#include <plovix/standalone/tasks/users_and_tags.h>

#include <QAbstractTableModel>
#include <set>
#include <string>
#include <vector>

namespace plovix::app {

// "English", "Français"; the code itself for an unknown language.
[[nodiscard]] QString LanguageName(const std::string& code);

class TagTableModel final : public QAbstractTableModel {
 public:
  enum Column { kTag, kText, kColumnCount };
  static constexpr int kSearchRole = Qt::UserRole;  // the tag and its texts in every language

  // `language` is the code of the texts shown. The headers belong to the columns.
  TagTableModel(std::string language, QStringList headers, QObject* parent);

  // Suggested tags come first, each part in the order of the tags. A suggested tag that is not among `tags`
  // gets a row without texts.
  void SetTags(std::vector<TagRecord> tags, const std::set<std::string>& suggested);
  void ShowSuggestedOnly(bool only);
  // Updates the texts of a tag, or adds a new tag.
  void Put(const TagRecord& tag);

  [[nodiscard]] const TagRecord& Tag(int row) const { return rows_.at(static_cast<std::size_t>(row)).tag; }
  // -1 if it has no row.
  [[nodiscard]] int RowOf(const std::string& tag) const;
  // Whether there is a stored tag with that name, ignoring case.
  [[nodiscard]] bool HasName(const std::string& name) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Row {
    TagRecord tag;
    std::string folded;  // the tag by FoldCase
    QString search;
  };
  [[nodiscard]] static Row MakeRow(TagRecord tag);
  [[nodiscard]] QString CellText(const Row& row, int column) const;

  std::string language_;
  QStringList headers_;
  std::vector<Row> rows_;
  std::size_t suggested_ = 0;  // the number of suggested rows, which come first
  bool suggested_only_ = false;
};

}  // namespace plovix::app
