// Starts the program.
#include "program.h"

int main(int argc, char** argv) {
  return plovix::app::RunProgram(argc, argv);
}
