#include "manager_program.h"

int main(int argc, char** argv) {
  return plovix::manager::RunManagerProgram(argc, argv);
}
