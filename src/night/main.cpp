// halmek-night: makes a sample night with known truth.
#include <exception>
#include <iostream>

#include "files/process.h"
#include "night/command_line.h"

int main(int argc, char** argv) {
  halmek::PrepareProcess();
  try {
    return halmek::night::RunCommandLine(argc, argv, std::cout, std::cerr);
  } catch (const std::exception& error) {
    std::cerr << "halmek-night: " << error.what() << "\n";
    return 1;
  }
}
