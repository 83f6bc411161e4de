#include "standin/host_services.h"

#include <sys/time.h>
#include <unistd.h>

#include <climits>
#include <ctime>
#include <filesystem>
#include <utility>

#include "hmz/exception.h"
#include "standin/process.h"

namespace standin {
namespace {

std::string Spawn(const std::string& program, const std::vector<std::string>& arguments) {
  ProcessResult result = RunProcess(program, arguments, ProcessLimits());
  if (!result.failure.empty()) throw NKVXHMZ20::THMZException(result.failure);
  return std::move(result.output);
}

NKVXHMZ20::TCIMDateTime LocalTime() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  const auto small = [](int value) { return static_cast<unsigned short>(value); };
  return {small(local.tm_year + 1900),
          small(local.tm_mon + 1),
          static_cast<unsigned int>(local.tm_mday),
          small(local.tm_hour),
          small(local.tm_min),
          small(local.tm_sec),
          static_cast<unsigned int>(now.tv_nsec / 1000),
          static_cast<short>(local.tm_gmtoff / 60)};
}

std::string MachineName() {
  char name[HOST_NAME_MAX + 1] = "";
  gethostname(name, sizeof name - 1);
  return name;
}

}  // namespace

bool RealFileExists(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

HostServices RealServices() {
  return {Spawn, LocalTime, MachineName, [](int, const std::string&) {}};
}

HostServices& Services() {
  static HostServices services = RealServices();
  return services;
}

ScopedServices::ScopedServices(HostServices services)
    : before_(std::exchange(Services(), std::move(services))) {}

ScopedServices::~ScopedServices() { Services() = std::move(before_); }

}  // namespace standin
