#include "hmz/os_specific.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "standin/host_services.h"

namespace NKVXHMZ20 {

std::string TOSSpecific::SpawnProcess(const std::string& program,
                                      const std::vector<std::string>& arguments) {
  return standin::Services().spawn_process(program, arguments);
}

std::string TOSSpecific::CaptureFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool TOSSpecific::FileExists(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

TCIMDateTime TOSSpecific::GetLocalTime() { return standin::Services().get_local_time(); }

std::string TOSSpecific::GetMachineName() { return standin::Services().get_machine_name(); }

}  // namespace NKVXHMZ20
