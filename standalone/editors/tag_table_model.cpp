#include "tag_table_model.h"

#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QLocale>
#include <algorithm>

namespace plovix::app {

QString LanguageName(const std::string& code) {
  // Without a country: "English", not "American English".
  const QLocale locale(QLocale(ToQt(code)).language(), QLocale::World);
  QString name = locale.language() == QLocale::C ? QString() : locale.nativeLanguageName();
  if (name.isEmpty()) return ToQt(code);
  name[0] = name[0].toUpper();
  return name;
}

TagTableModel::TagTableModel(std::string language, QStringList headers, QObject* parent)
    : QAbstractTableModel(parent), language_(std::move(language)), headers_(std::move(headers)) {}

TagTableModel::Row TagTableModel::MakeRow(TagRecord tag) {
  QString search = ToQt(tag.tag);
  for (const auto& [code, text] : tag.texts) search += u'\n' + ToQt(text);
  std::string folded = FoldCase(tag.tag);
  return {std::move(tag), std::move(folded), std::move(search)};
}

void TagTableModel::SetTags(std::vector<TagRecord> tags, const std::set<std::string>& suggested) {
  beginResetModel();
  rows_.clear();
  rows_.reserve(tags.size() + suggested.size());
  std::set<std::string> missing = suggested;
  for (TagRecord& tag : tags) {
    missing.erase(tag.tag);
    rows_.push_back(MakeRow(std::move(tag)));
  }
  for (const std::string& tag : missing) rows_.push_back(MakeRow({tag, {}}));
  std::ranges::stable_sort(rows_, {}, &Row::folded);
  const auto rest =
      std::ranges::stable_partition(rows_, [&](const Row& row) { return suggested.contains(row.tag.tag); });
  suggested_ = rows_.size() - rest.size();
  endResetModel();
}

void TagTableModel::ShowSuggestedOnly(bool only) {
  beginResetModel();
  suggested_only_ = only;
  endResetModel();
}

void TagTableModel::Put(const TagRecord& tag) {
  const auto found = std::ranges::find(rows_, tag.tag, [](const Row& row) { return row.tag.tag; });
  beginResetModel();
  if (found != rows_.end()) {
    *found = MakeRow(tag);
  } else {
    rows_.insert(rows_.begin(), MakeRow(tag));  // at the top, where the user expects it
    ++suggested_;
  }
  endResetModel();
}

int TagTableModel::RowOf(const std::string& tag) const {
  const auto found = std::ranges::find(rows_, tag, [](const Row& row) { return row.tag.tag; });
  const auto row = found - rows_.begin();
  return row < rowCount() ? static_cast<int>(row) : -1;
}

bool TagTableModel::HasName(const std::string& name) const {
  return std::ranges::any_of(rows_, [folded = FoldCase(name)](const Row& row) {
    return !row.tag.texts.empty() && row.folded == folded;
  });
}

int TagTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(suggested_only_ ? suggested_ : rows_.size());
}

int TagTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant TagTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Row& row = rows_.at(static_cast<std::size_t>(index.row()));
  switch (role) {
    case kSearchRole:
      return row.search;
    case Qt::ToolTipRole:
      return qt::ToolTip(CellText(row, index.column()));
    case Qt::DisplayRole:
      return qt::Shortened(CellText(row, index.column()), qt::kLongestShown);
    default:
      return {};
  }
}

QString TagTableModel::CellText(const Row& row, int column) const {
  if (column == kTag) return ToQt(row.tag.tag);
  const auto text = row.tag.texts.find(language_);
  return text == row.tag.texts.end() ? QString() : ToQt(text->second).simplified();
}

QVariant TagTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return headers_.at(section);
}

}  // namespace plovix::app
