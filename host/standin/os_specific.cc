#include "hmz/os_specific.h"

#include <filesystem>
#include <fstream>

#include "standin/host_services.h"

namespace NKVXHMZ20 {

std::string TOSSpecific::SpawnProcess(const std::string& program,
                                      const std::vector<std::string>& arguments) {
  return standin::Services().spawn_process(program, arguments);
}

std::string TOSSpecific::CaptureFile(const std::string& path) {
  std::string text;
  std::ifstream file(path, std::ios::binary);
  std::vector<char> part(std::size_t{1} << 16);
  // A directory, for one, can be opened, but not read: what cannot be read is no text.
  while (file.read(part.data(), static_cast<std::streamsize>(part.size())) || file.gcount() > 0) {
    text.append(part.data(), static_cast<std::size_t>(file.gcount()));
  }
  return file.bad() ? "" : text;
}

bool TOSSpecific::FileExists(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

TCIMDateTime TOSSpecific::GetLocalTime() { return standin::Services().get_local_time(); }

std::string TOSSpecific::GetMachineName() { return standin::Services().get_machine_name(); }

}  // namespace NKVXHMZ20
