#include "malign/run_driver.hpp"

#include "shell/errors.hpp"

std::FILE* outfp = nullptr;
PctHomTable pctHomMatrix{};

int ravlin_main(const std::string& parmsPath, const std::string& outPath) {
  fatal_err("ravlin_main", "not built yet");
}
