// The pairwise stage's thread count: the setting, else the environment, else the cores.
#include "malign/pair_stage.hpp"

#include <cstdlib>
#include <string>
#include <thread>
#include <tuple>

#include "support/test_support.hpp"

TEST(PairStage, ThreadCountFromTheSettingTheEnvironmentOrTheCores) {
  const int cores = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  const std::tuple<int, const char*, int> cases[] = {
      {0, "3", 3},      {0, "5000", 1024}, {0, "0", cores},     {0, "-2", cores},
      {0, "2x", cores}, {0, "", cores},    {0, nullptr, cores}, {5, "3", 5},
  };
  for (const auto& [set, env, expected] : cases) {
    if (env != nullptr)
      setenv("RAVLIN_THREADS", env, 1);
    else
      unsetenv("RAVLIN_THREADS");
    set_pair_threads(set);
    EXPECT_EQ(pair_threads(), expected) << set << " " << (env ? env : "(unset)");
  }
  set_pair_threads(0);
  unsetenv("RAVLIN_THREADS");
}
