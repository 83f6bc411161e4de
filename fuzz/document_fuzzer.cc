// Documents to compare with: each is read, written again, and compared with the sample machine.

#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "fuzz/expect.h"
#include "fuzz/sections.h"
#include "fuzz/views.h"
#include "inventory/print/document_reader.h"
#include "inventory/runs/recording_reader.h"

namespace {

/// A file in memory.
class File {
 public:
  explicit File(std::string_view text) : descriptor_(memfd_create("document", MFD_CLOEXEC)) {
    Expect(write(descriptor_, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
           "no file");
  }
  ~File() { close(descriptor_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  std::string GetPath() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Collected sample = CollectAgain(ReadRecording(KRAID_SOURCE_DIR "/demo"));
  const File file(TextOf(data, size));
  try {
    EarlierMachine earlier = ReadDocument(file.GetPath());
    ExpectReadBack(earlier.machine);
    const Report& report = *sample.report;
    // The other way round first, as what is earlier becomes a part of the comparison.
    const Comparison back = Compare({"", report.host, sample.machine, report.problems},
                                    earlier.machine, earlier.host, earlier.problems);
    ExpectGoodViews({earlier.host, 0, earlier.problems, report.repository}, earlier.machine, &back);
    const Comparison comparison =
        Compare(std::move(earlier), sample.machine, report.host, report.problems);
    ExpectGoodViews(report, sample.machine, &comparison);
  } catch (const std::runtime_error& error) {
    ExpectOneLine(error.what());
  }
  return 0;
}
