// Each system call fails once, in turn, wherever the program makes it: nothing may crash, hang,
// stay behind or be half written, and whatever did not work is told.

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>

#include "fuzz/system_calls.h"
#include "inventory/command/collection_lock.h"
#include "inventory/command/exit_status.h"
#include "inventory/command/inventory_run.h"
#include "standin/process.h"
#include "tests/machine_files.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

/// The descriptors of this process and its children, those that wait to be reaped included.
std::string Belongings() {
  std::string text = ReadFile("/proc/thread-self/children");
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    text += " " + entry.path().filename().string();
  }
  return text;
}

/// What `attempt` does between the two calls that it is given is done again for each system call of
/// it, which fails then.
void FailEachCall(const std::function<void(const std::function<void()>& begin,
                                           const std::function<void()>& end)>& attempt) {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  int faults = 0;
  attempt([] {}, [] {});  // what is loaded and opened once for all
  for (const std::string& name : SystemCalls()) {
    bool has_failed = true;
    for (int nth = 1; has_failed && nth < 10'000; ++nth, ++faults) {
      SCOPED_TRACE(name + ", the call number " + std::to_string(nth));
      const std::string before = Belongings();
      attempt([&] { FailCall(name, nth); }, [&] { has_failed = StopFailing(); });
      EXPECT_EQ(Belongings(), before);
      if (testing::Test::HasFailure()) return;
    }
  }
  testing::Test::RecordProperty("faults", faults);
  EXPECT_GE(faults, 20) << "the calls do not come through here";
}

class Faults : public testing::Test {
 protected:
  Faults() {
    // As root it has to be a folder that nobody else can write to.
    std::string pattern = (geteuid() == 0 ? "/run/" : testing::TempDir()) + "kraid-XXXXXX";
    folder_ = mkdtemp(pattern.data());
  }
  ~Faults() override { fs::remove_all(folder_); }

  fs::path folder_;
};

TEST_F(Faults, OfAToolRunAreToldAndLeaveNoProcess) {
  const struct {
    const char* script;
    standin::ProcessLimits limits;
    const char* result;  // unless it fails
  } cases[] = {
      {"echo out; echo error >&2; exit 3", {.time = 5s}, "out\n|error\n|3"},
      {"echo out; exec sleep 60", {.time = 50ms, .grace = 50ms}, "no result"},
      {"exec yes", {.time = 5s, .output_bytes = 1000, .grace = 50ms}, "no result"},
  };
  for (const auto& c : cases) {
    FailEachCall([&c](const auto& begin, const auto& end) {
      begin();
      const auto start = std::chrono::steady_clock::now();
      const auto result = standin::RunProcess("/bin/sh", {"-c", c.script}, c.limits);
      end();
      EXPECT_LT(std::chrono::steady_clock::now() - start, 4s);
      if (result.failure.empty()) {
        EXPECT_EQ(
            result.output + "|" + result.error_output + "|" + std::to_string(result.exit_status),
            c.result);
      }
      EXPECT_TRUE(result.failure.empty() || result.failure.starts_with("/bin/sh: "))
          << result.failure;
    });
  }
}

TEST_F(Faults, OfTheCommandAreToldAndLeaveNoHalfFile) {
  const Texts runs[] = {
      {"--format", "json", "--output", "out", "--log", "log", "--record", "recording", "--timeout",
       "0.001"},  // few runs: those have had their test
      {"--format", "json", "--output", "out", "--replay", "recording"},
      {"--format", "openmetrics", "--output", "metrics", "--replay", "recording"},
      {"--format", "openmetrics", "--output", "metrics", "--record", "other", "--timeout", "0.001"},
      {"--check", "--expect", "out", "--timeout", "0.001"},
      {"--check", "--replay", "recording"},
      {"--check", "--no-lock", "--root", "tools", "--timeout", "0.001"},
  };
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  // A program and a script.
  fs::create_directories("tools/kraid");
  fs::copy("/bin/true", "tools/kraid/kelvcmd");
  std::ofstream("tools/kraid/hrconf") << "#!/bin/sh\n";
  fs::permissions("tools/kraid/hrconf", fs::perms(0755));
  for (const Texts& arguments : runs) {
    std::vector<const char*> argv = {"kraid-inventory"};
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    const bool is_check = arguments[0] == "--check";
    FailEachCall([&](const auto& begin, const auto& end) {
      std::ofstream("metrics") << "old";
      testing::internal::CaptureStdout();
      testing::internal::CaptureStderr();
      begin();
      const int status = RunCommand(static_cast<int>(argv.size()), argv.data());
      end();
      fs::current_path(folder_);
      const std::string err = testing::internal::GetCapturedStderr();
      const std::string out = testing::internal::GetCapturedStdout();
      if (is_check) {
        EXPECT_TRUE(out.starts_with("KRAID UNKNOWN - ") || status == kExitOutput) << out;
        EXPECT_EQ(status, 3) << "there is no controller";
      } else {
        EXPECT_EQ(status == kExitAnswered, err.empty()) << status << err;
        EXPECT_LE(status, kExitOutput);
        const std::string metrics = ReadFile("metrics");
        const bool is_old = metrics == "old" && (arguments[1] == "json" || status == kExitOutput);
        EXPECT_TRUE(is_old || metrics.ends_with("# EOF\n")) << status << err << metrics;
        // What was there before is whole as well.
        EXPECT_TRUE(nlohmann::json::accept(ReadFile("out")));
        EXPECT_TRUE(nlohmann::json::accept(ReadFile("recording/recording.json")));
      }
      for (const auto& entry : fs::directory_iterator(".")) {
        const std::string name = entry.path().filename();
        if (name == "out" || name == "log" || name == "recording" || name == "tools") continue;
        if (name == "metrics" || name == "other") continue;
        // What cannot be taken away is named.
        EXPECT_NE(err.find(name), std::string::npos) << name << " " << err;
        fs::remove_all(entry);
      }
    });
  }
  fs::current_path(before);
}

}  // namespace
