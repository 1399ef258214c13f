// SPDX-License-Identifier: MIT
// quillmere-cli: Quillmere without a window.
#include <exception>
#include <string>

#include "cli/arguments.h"
#include "cli/command.h"
#include "cli/terminal.h"

int main(int argc, char** argv) {
  using namespace quillmere::cli;
  PrepareStreams();
  try {
    return RunCommandLine(argc, argv);
  } catch (const std::exception& failure) {
    return Fail(std::string("Given up: ") + failure.what());
  }
}
