/// @file
/// The host application as the pages see it: texts, message boxes, rights, time.
#pragma once

#include <cstdint>
#include <string>

#include "data_object.h"
#include "database.h"
#include "error_reporter.h"
#include "language_table.h"
#include "session.h"
#include "value.h"

namespace plovix {

/// Buttons values of HostApplication::MsgBox, then its answers.
namespace message_box {
inline constexpr int kOkWarning = 48;         ///< OK
inline constexpr int kOkInformation = 64;     ///< OK
inline constexpr int kOkCancelWarning = 49;   ///< OK, Cancel
inline constexpr int kOkCancelQuestion = 33;  ///< OK, Cancel
inline constexpr int kYesNoQuestion = 36;     ///< Yes, No
inline constexpr int kOk = 1;                 ///< answer
inline constexpr int kCancel = 2;             ///< answer, also when the box was closed
inline constexpr int kYes = 6;                ///< answer
inline constexpr int kNo = 7;                 ///< answer
}  // namespace message_box

/// The right to open the category editor.
inline constexpr int kRightEditCategories = 112;
/// The right to see categories that are not public.
inline constexpr int kRightSeeAllCategories = 113;
/// The right to go on from a pattern page although the task's texts are language tags.
inline constexpr int kRightGoOnWithLanguageTags = 114;

/// The current user's rights; never cached by a page.
class UserRights {
 public:
  virtual ~UserRights() = default;
  /// `number` is one of the kRight constants.
  [[nodiscard]] virtual bool HasRight(int number) = 0;
};

/// From HostServices::Application. Every reference returned is shared with the host and never null. Pages ask
/// for it each time, so it may be another object after a change of language or user.
class HostApplication {
 public:
  virtual ~HostApplication() = default;
  /// @{
  /// The host's object of that kind.
  [[nodiscard]] virtual Ref<LanguageTable> Language() = 0;
  [[nodiscard]] virtual Ref<plovix::Translator> Translator() = 0;
  [[nodiscard]] virtual Ref<plovix::ErrorReporter> ErrorReporter() = 0;
  [[nodiscard]] virtual Ref<plovix::UserRights> UserRights() = 0;
  [[nodiscard]] virtual Ref<plovix::Session> Session() = 0;
  [[nodiscard]] virtual Ref<plovix::Database> Database() = 0;
  [[nodiscard]] virtual Ref<plovix::DataObjectCatalog> DataObjectCatalog() = 0;
  [[nodiscard]] virtual Ref<ObjectLoader> Loader() = 0;
  /// @}
  [[nodiscard]] virtual std::string Title() = 0;  ///< title of message boxes
  [[nodiscard]] virtual std::string
  Path() = 0;  ///< the folder in which a file "forceusertask.txt" forces literal texts
  /// Whether new tasks get language tags instead of literal texts, unless that file exists.
  [[nodiscard]] virtual bool LanguageTagMode() = 0;
  /// What separates whole digits from the fraction in numbers that the user types: "." or ",".
  [[nodiscard]] virtual std::string DecimalSeparator() = 0;
  /// The host's clock: local date and time. Pages read no other clock.
  [[nodiscard]] virtual DateTime Now() = 0;
  /// Shows a modal message box and returns the answer. `buttons` and the answer are message_box values;
  /// `title` may be empty, `help_file` always is.
  [[nodiscard]] virtual int MsgBox(const std::string& prompt, int buttons, const std::string& title,
                                   const std::string& help_file) = 0;
};

}  // namespace plovix
