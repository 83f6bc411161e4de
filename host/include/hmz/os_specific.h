#ifndef HMZ_OS_SPECIFIC_H_
#define HMZ_OS_SPECIFIC_H_

#include <cstdio>
#include <string>
#include <vector>

#include "hmz/api.h"
#include "hmz/cim_date_time.h"

namespace NKVXHMZ20 {

/// What plug-ins ask of the operating system.
class HMZ_API TOSSpecific {
 public:
  /// Runs `program` (a path, relative to the working directory) with exactly `arguments`, waits
  /// for its end and returns all that it wrote to standard output, byte for byte. No shell takes
  /// part, no search path is used, and the exit status does not matter.
  /// Throws THMZException when the program cannot be started, is ended by a signal, or runs past
  /// the host's time or output limit.
  static std::string SpawnProcess(const std::string& program,
                                  const std::vector<std::string>& arguments);

  /// The whole text of a file, "" when it cannot be read.
  static std::string CaptureFile(const std::string& path);

  /// True when something exists at `path`.
  static bool FileExists(const std::string& path);

  /// The current local time with its offset from UTC.
  static TCIMDateTime GetLocalTime();

  /// The name of this machine.
  static std::string GetMachineName();
};

/// Opens a file for reading, as std::fopen(path, "rt"). A host may have it or not: a plug-in asks
/// whether it is null before it calls it.
[[gnu::weak]] HMZ_API std::FILE* OpenHostFile(const std::string& path);

}  // namespace NKVXHMZ20

#endif  // HMZ_OS_SPECIFIC_H_
