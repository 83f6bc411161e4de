#include "hmz/os_specific.h"

#include "standin/host_services.h"

namespace NKVXHMZ20 {

std::string TOSSpecific::SpawnProcess(const std::string& program,
                                      const std::vector<std::string>& arguments) {
  return standin::Services().spawn_process(program, arguments);
}

std::string TOSSpecific::CaptureFile(const std::string& path) {
  return standin::Services().capture_file(path);
}

bool TOSSpecific::FileExists(const std::string& path) {
  return standin::Services().file_exists(path);
}

TCIMDateTime TOSSpecific::GetLocalTime() { return standin::Services().get_local_time(); }

std::string TOSSpecific::GetMachineName() { return standin::Services().get_machine_name(); }

std::FILE* OpenHostFile(const std::string& path) { return standin::Services().open_file(path); }

}  // namespace NKVXHMZ20
