#include <gtest/gtest.h>

#include <QCoreApplication>
#include <string_view>

#include "storage_support.h"

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc == 5 && std::string_view(argv[1]) == "--save") {
    return plovix::test::RunSavingProcess(argv[2], argv[3], std::stoi(argv[4]));
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
