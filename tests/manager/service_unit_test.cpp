// The manager as a service: its units, and what becomes known to the system.
#include <gmock/gmock.h>
#include <plovix/standalone/manager/service_unit.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace plovix::manager {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class ServiceUnit : public testing::Test {
 protected:
  ServiceUnit() {
    std::string name = (fs::temp_directory_path() / "plovix-unit-XXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~ServiceUnit() override { fs::remove_all(folder_); }
  static std::string Content(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
  }
  fs::path folder_;
};

TEST_F(ServiceUnit, TheSystemAccepts) {
  if (std::system("systemd-analyze --version >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "systemd-analyze is not installed";
  setenv("XDG_RUNTIME_DIR", folder_.c_str(), 1);
  std::string of_system = Content(PLOVIX_SOURCE_DIR "/standalone/manager/plovix-manager@.service");
  const std::string installed = "/usr/bin/plovix-manager";
  of_system.replace(of_system.find(installed), installed.size(), PLOVIX_MANAGER);
  const std::vector<std::tuple<const char*, const char*, std::string>> units{
      {"plovix-manager.service", "--user", UnitFor({PLOVIX_MANAGER, "--data", "/a b/50 % \"x\" $HOME\\é"})},
      {"plovix-manager@anna.service", "--system", of_system}};
  for (const auto& [name, whose, text] : units) {
    std::ofstream(folder_ / name) << text;
    const std::string command = std::string("systemd-analyze ") + whose + " --man=no verify " +
                                (folder_ / name).string() + " >" + (folder_ / "told").string() + " 2>&1";
    const int status = std::system(command.c_str());
    const std::string told = Content(folder_ / "told");
    EXPECT_EQ(status, 0) << told;
    EXPECT_EQ(told.find("plovix-manager"), std::string::npos) << told;
  }
}

TEST_F(ServiceUnit, IsInstalledAndRemovedAsOftenAsOneLikes) {
  const fs::path unit = folder_ / "systemd/user/plovix-manager.service";
  fs::create_directories(folder_ / "systemd/private");
  std::ofstream(folder_ / "systemctl") << "#!/bin/sh\necho \"$@\" >>" << folder_ / "called"
                                       << "\n";
  fs::permissions(folder_ / "systemctl", fs::perms::owner_all);
  const std::string path = std::getenv("PATH");
  setenv("PATH", (folder_.string() + ":" + path).c_str(), 1);
  setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
  setenv("XDG_RUNTIME_DIR", folder_.c_str(), 1);
  ManagerOptions options;
  for (const char* database : {"/a", "/a", "/b c"}) {
    options.database = database;
    EXPECT_EQ(InstallService("/bin/x", options), 0);
  }
  EXPECT_THAT(Content(unit), HasSubstr("\nExecStart=\"/bin/x\" \"--database\" \"/b c\"\n"));
  EXPECT_EQ(RemoveService(), 0);
  EXPECT_FALSE(fs::exists(unit));
  EXPECT_EQ(RemoveService(), 0);
  const std::string install = "--user daemon-reload\n--user enable --now plovix-manager.service\n";
  EXPECT_EQ(Content(folder_ / "called"),
            install + install + install + "--user try-restart plovix-manager.service\n" +
                "--user disable --now plovix-manager.service\n--user daemon-reload\n");
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace plovix::manager
