#include "inventory/runs/recording.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "standin/descriptor.h"

namespace {

using standin::HostServices;

/// A stream that reads the text, as one of a file would.
std::FILE* OpenText(const std::string& text) {
  standin::Descriptor memory(memfd_create("recorded", MFD_CLOEXEC));
  std::FILE* const file = memory.IsOpen() ? fdopen(memory.Get(), "w+") : nullptr;
  if (file == nullptr) return nullptr;
  memory.Release();
  const bool is_written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if (is_written && std::fseek(file, 0, SEEK_SET) == 0) return file;
  std::fclose(file);
  return nullptr;
}

}  // namespace

HostServices Recorder::Watch(HostServices services) {
  real_ = std::move(services);
  HostServices watched = real_;
  watched.get_local_time = [this] { return clock_.emplace_back(real_.get_local_time()); };
  watched.file_exists = [this](const std::string& path) {
    const bool exists = real_.file_exists(path);
    Known& known = files_[path];
    if (exists && !known.is_read) known.text.emplace();
    return exists;
  };
  watched.capture_file = [this](const std::string& path) { return Read(path).value_or(""); };
  watched.open_file = [this](const std::string& path) -> std::FILE* {
    const std::optional<std::string>& text = Read(path);
    if (text) return OpenText(*text);
    errno = ENOENT;
    return nullptr;
  };
  watched.file_cut = [this](const standin::FileCut& cut) {
    files_[cut.path].file_bytes = cut.size;
    real_.file_cut(cut);
  };
  return watched;
}

const std::optional<std::string>& Recorder::Read(const std::string& path) {
  Known& known = files_[path];
  if (!known.is_read) {
    known.is_read = true;
    known.text.reset();
    if (std::FILE* const file = real_.open_file(path); file != nullptr) {
      std::fclose(file);
      known.text = real_.capture_file(path);
    }
  }
  return known.text;
}

std::vector<RecordedFile> Recorder::GetFiles() const {
  std::vector<RecordedFile> files;
  for (const auto& [path, known] : files_) {
    files.push_back({path, known.text, known.file_bytes});
  }
  return files;
}

HostServices ReplayServices(const Recording& recording) {
  std::map<std::string, const RecordedFile*> files;
  for (const RecordedFile& file : recording.files) files[file.path] = &file;
  const auto find = [files](const std::string& path) -> const std::string* {
    const auto found = files.find(path);
    return found == files.end() || !found->second->text ? nullptr : &*found->second->text;
  };
  const auto read = [files, find](const std::string& path) {
    const std::string* const text = find(path);
    const std::uint64_t size = text == nullptr ? 0 : files.at(path)->file_bytes;
    if (size > 0) standin::Services().file_cut({path, text->size(), size});
    return text;
  };
  HostServices services = standin::RealServices();
  // Whoever asks more often than was asked before is told the last time again. Copies of the
  // services go on with the same clock.
  services.get_local_time = [&recording, next = std::make_shared<std::size_t>(0)] {
    if (recording.clock.empty()) return recording.collected_at;
    return recording.clock[std::min((*next)++, recording.clock.size() - 1)];
  };
  services.get_machine_name = [&recording] { return recording.host; };
  services.file_exists = [find](const std::string& path) { return find(path) != nullptr; };
  services.capture_file = [read](const std::string& path) {
    const std::string* const text = read(path);
    return text == nullptr ? "" : *text;
  };
  services.open_file = [read](const std::string& path) -> std::FILE* {
    if (const std::string* const text = read(path); text != nullptr) return OpenText(*text);
    errno = ENOENT;
    return nullptr;
  };
  return services;
}
