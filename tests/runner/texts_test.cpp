// What surrounds programs: masked secrets, log lines, files of secrets, and what an action asks for.
#include <gmock/gmock.h>
#include <plovix/base/failure.h>
#include <plovix/standalone/runner/log_line.h>
#include <plovix/standalone/runner/output_folder.h>
#include <plovix/standalone/runner/program_action.h>
#include <plovix/standalone/runner/secret_mask.h>
#include <plovix/standalone/runner/secrets_file.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "runner_support.h"

namespace plovix::runner::test {
namespace {

using testing::HasSubstr;

template <class Work>
std::string WordsOf(const Work& work) {
  const auto failure = FailureOf(work);
  return failure ? failure->Description() : "";
}

TEST(Secrets, AreMaskedWhereverTheOutputIsCut) {
  const struct {
    std::vector<std::string> secrets;
    std::string written, masked;
  } cases[] = {{{"abc"}, "xabcabcx", "x******x"}, {{"abc"}, "ababcab", "ab***ab"},
               {{"aab"}, "aaab", "a***"},         {{"ab", "abcd"}, "abcabcdab", "***c******"},
               {{"", "z"}, "abc", "abc"},         {{}, "abc", "abc"}};
  for (const auto& row : cases) {
    for (std::size_t length = 1; length <= row.written.size(); ++length) {
      SecretMask mask(row.secrets);
      std::string masked;
      for (std::size_t at = 0; at < row.written.size(); at += length)
        masked += mask.Next(row.written.substr(at, length));
      EXPECT_EQ(masked + mask.End(), row.masked) << length;
    }
  }
}

TEST(Secrets, AreOnlyTakenFromFilesOfTheUserAlone) {
  const OwnFolder folder;
  const std::string path = folder / "secrets", link = folder / "link";
  const struct {
    std::string content;
    mode_t mode;
    std::string words;
  } cases[] = {{"# a\n\nmail=p=w \nx=\r\n", 0600, ""},
               {"mail=x", 0640, "others have access"},
               {"mail=x", 0602, "others have access"},
               {"a=b\nhidden", 0600, "line 2 is no NAME=VALUE"},
               {"=hidden", 0600, "line 1 is no NAME=VALUE"},
               {"a=hidden\na=hidden", 0600, "line 2 names a secret again"},
               {std::string(1024 * 1024 + 1, '#'), 0600, "larger than 1 MiB"}};
  for (const auto& row : cases) {
    std::ofstream(path) << row.content;
    chmod(path.c_str(), row.mode);
    const std::string words = WordsOf([&] { (void)ReadSecrets(path); });
    EXPECT_THAT(words, HasSubstr(row.words));
    EXPECT_EQ(words.empty(), row.words.empty()) << words;
    EXPECT_EQ(words.find("hidden"), std::string::npos);
    const plovix::Secrets read = row.words.empty() ? ReadSecrets(path) : plovix::Secrets();
    EXPECT_EQ(read, (row.words.empty() ? plovix::Secrets{{"mail", "p=w "}, {"x", ""}} : plovix::Secrets()));
    fs::remove(path);
  }
  fs::create_symlink("/etc/passwd", link);
  EXPECT_THAT(WordsOf([&] { (void)ReadSecrets(link); }), HasSubstr("the file is a link"));
  EXPECT_THAT(WordsOf([&] { (void)ReadSecrets(folder / ""); }), HasSubstr("no ordinary file"));
  EXPECT_THAT(WordsOf([&] { (void)ReadSecrets("/no/such"); }), HasSubstr("it does not exist"));
  fs::remove(link);
  std::ofstream(folder / "mail") << "p\nw\n";
  chmod((folder / "mail").c_str(), 0400);
  EXPECT_EQ(ReadCredentials(folder / ""), (plovix::Secrets{{"mail", "p\nw"}}));
}

TEST(LogLine, IsAppendedWholeOrRefusedInWords) {
  const OwnFolder folder;
  const std::string path = folder / "log", link = folder / "link", pipe = folder / "pipe";
  fs::create_symlink(path, link);
  mkfifo(pipe.c_str(), 0600);
  AppendLogLine(path, "one");
  AppendLogLine(path, "");
  EXPECT_EQ(BytesOf(path), "one\n\n");
  const std::pair<std::string, const char*> cases[] = {
      {"log", "the path is not absolute"}, {folder / "no/such", "its folder does not exist"},
      {folder / "", "it is a folder"},     {link, "it is a link"},
      {pipe, "it is no ordinary file"},    {"/dev/full", "it is no ordinary file"}};
  for (const auto& [refused, words] : cases)
    EXPECT_THAT(WordsOf([&, &at = refused] { AppendLogLine(at, "x"); }), HasSubstr(words));
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  for (const rlim_t room : {2U, 0U}) {
    const rlimit tight{BytesOf(path).size() + room, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    const std::string words = WordsOf([&] { AppendLogLine(path, "four"); });
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_THAT(words, HasSubstr("the disk is full"));
    EXPECT_EQ(words.ends_with("part of the line is in the file"), room > 0);
  }
}

TEST(TrimOutputs, DeletesTheOldestOfRunsThatAreOver) {
  const OwnFolder folder;
  for (const char* name : {"run-2.log", "run-10.log", "run-9.log", "run-1.log", "run-x.log", "other"}) {
    std::ofstream(folder / name) << "123";
    static int age = 0;
    fs::last_write_time(folder / name, fs::file_time_type(std::chrono::hours(++age)));
  }
  fs::create_symlink(folder / "other", folder / "run-3.log");
  TrimOutputs(folder / ".", 12, {});
  std::set<std::string> left;
  const auto look = [&] {
    left.clear();
    for (const auto& entry : fs::directory_iterator(folder / ".")) left.insert(entry.path().filename());
    return left;
  };
  EXPECT_EQ(look().size(), 7U) << "they are not too large";
  TrimOutputs(folder / ".", 8, {2});
  EXPECT_EQ(look(), (std::set<std::string>{"run-2.log", "run-1.log", "run-3.log", "run-x.log", "other"}));
}

TEST(ProgramAction, AsksForWhatItsFieldsSay) {
  ActionRecord action = NewAction(*FindActionKind("run-program"));
  action.settings["path"] = " /bin/x ";
  action.settings["arguments"] = "-n {Name} \"{Id} x\"";
  action.settings["variables"] = "TOKEN={secret:t}{Id}\nHOME=/srv";
  const RecordValues record = {{"Id", std::int64_t{42}}, {"Name", std::string("a b")}};
  const plovix::Secrets secrets = {{"t", "geheim"}, {"unused", "x"}};
  const ProgramRequest request = RequestFor(action, record, secrets, FixedEnvironment("Europe/Paris"));
  EXPECT_EQ(request.path, "/bin/x");
  EXPECT_THAT(request.arguments, testing::ElementsAre("-n", "a b", "42 x"));
  EXPECT_THAT(request.environment, testing::IsSupersetOf({"TOKEN=geheim42", "HOME=/srv", "TZ=Europe/Paris"}));
  EXPECT_EQ(request.environment.size(), 8U);
  EXPECT_EQ(request.folder, "/srv");
  EXPECT_THAT(request.secrets, testing::ElementsAre("geheim"));
  EXPECT_EQ(request.time_limit, std::chrono::minutes(1));
  action.settings["arguments"] = "{";
  EXPECT_THAT(WordsOf([&] { (void)RequestFor(action, record, secrets, {}); }), HasSubstr("\"arguments\""));
}

}  // namespace
}  // namespace plovix::runner::test
