#ifndef STANDIN_HOST_SERVICES_H_
#define STANDIN_HOST_SERVICES_H_

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "hmz/api.h"
#include "hmz/cim_date_time.h"
#include "standin/regular_file.h"

namespace standin {

HMZ_API bool RealFileExists(const std::string& path);

/// The ways in which the stand-in host reaches the world outside: the one place to change them,
/// for the command (limits, log, progress) and for tests (canned tools, a fixed clock and name).
struct HostServices {
  /// As TOSSpecific::SpawnProcess, exceptions included.
  std::function<std::string(const std::string& program, const std::vector<std::string>& arguments)>
      spawn_process;
  std::function<NKVXHMZ20::TCIMDateTime()> get_local_time;
  std::function<std::string()> get_machine_name;
  /// Takes each message of the core logger.
  std::function<void(int level, const std::string& text)> log;

  // Files, as TOSSpecific and OpenHostFile have them.
  std::function<bool(const std::string& path)> file_exists = RealFileExists;
  std::function<std::string(const std::string& path)> capture_file = RealCaptureFile;
  /// For reading; the caller closes it. Null, with errno set, when it cannot be opened.
  std::function<std::FILE*(const std::string& path)> open_file = RealOpenFile;
  /// Told by the two above of each file that they do not give whole.
  std::function<void(const FileCut& cut)> file_cut = [](const FileCut&) {};
};

/// The real process service, clock and name; messages are dropped.
HMZ_API HostServices RealServices();

/// What is in force in this process; starts as RealServices().
HMZ_API HostServices& Services();

/// Puts other services in force for as long as it lives, and then those from before again.
class HMZ_API ScopedServices {
 public:
  explicit ScopedServices(HostServices services);
  ~ScopedServices();
  ScopedServices(const ScopedServices&) = delete;
  ScopedServices& operator=(const ScopedServices&) = delete;

 private:
  HostServices before_;
};

}  // namespace standin

#endif  // STANDIN_HOST_SERVICES_H_
