// Runs the tests of the windows: they need the program's QApplication.
#include <gtest/gtest.h>
#include <plovix/standalone/app/application.h>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  plovix::app::Application application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
