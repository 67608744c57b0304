// The host application as the pages see it: texts, boxes, rights, time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "data_object.h"
#include "database.h"
#include "error_reporter.h"
#include "language_table.h"
#include "session.h"
#include "value.h"

namespace plovix {

// Buttons values of HostApplication::MsgBox and its answers.
namespace message_box {
inline constexpr int kOkWarning = 48;
inline constexpr int kOkInformation = 64;
inline constexpr int kOkCancelWarning = 49;
inline constexpr int kOkCancelQuestion = 33;
inline constexpr int kYesNoQuestion = 36;
inline constexpr int kOk = 1;
inline constexpr int kCancel = 2;
inline constexpr int kYes = 6;
inline constexpr int kNo = 7;
}  // namespace message_box

// Rights by number.
inline constexpr int kRightEditCategories = 112;
inline constexpr int kRightSeeAllCategories = 113;      // also those that are not public
inline constexpr int kRightGoOnWithLanguageTags = 114;  // a pattern page leads on though the texts are tags

class UserRights {
 public:
  virtual ~UserRights() = default;
  [[nodiscard]] virtual bool HasRight(int number) = 0;
};

// Every reference returned is shared with the host and never nothing.
class HostApplication {
 public:
  virtual ~HostApplication() = default;
  [[nodiscard]] virtual std::shared_ptr<LanguageTable> Language() = 0;
  [[nodiscard]] virtual std::shared_ptr<plovix::Translator> Translator() = 0;
  [[nodiscard]] virtual std::shared_ptr<plovix::ErrorReporter> ErrorReporter() = 0;
  [[nodiscard]] virtual std::shared_ptr<plovix::UserRights> UserRights() = 0;
  [[nodiscard]] virtual std::shared_ptr<plovix::Session> Session() = 0;
  [[nodiscard]] virtual std::shared_ptr<plovix::Database> Database() = 0;
  [[nodiscard]] virtual std::shared_ptr<plovix::DataObjectCatalog> DataObjectCatalog() = 0;
  [[nodiscard]] virtual std::shared_ptr<ObjectLoader> Loader() = 0;
  [[nodiscard]] virtual std::string Title() = 0;  // title of message boxes
  [[nodiscard]] virtual std::string Path() = 0;   // the application's folder
  // Whether new tasks get language tags instead of literal texts.
  [[nodiscard]] virtual bool LanguageTagMode() = 0;
  // What parts a number's whole digits from its fraction when a user types one: "." or ",".
  [[nodiscard]] virtual std::string DecimalSeparator() = 0;
  // The host's clock: local date and time. Pages read no clock of their own.
  [[nodiscard]] virtual DateTime Now() = 0;
  // Shows a modal box and returns the answer, one of message_box. `buttons` is one of its five values.
  [[nodiscard]] virtual int MsgBox(const std::string& prompt, int buttons, const std::string& title,
                                   const std::string& help_file) = 0;
};

}  // namespace plovix
