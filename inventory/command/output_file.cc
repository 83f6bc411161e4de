#include "inventory/command/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace fs = std::filesystem;

namespace {

/// The permissions of the file that is replaced, or those of any new file.
mode_t ModeOf(const fs::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(const fs::path& path) {
  std::error_code ignored;
  if (path.empty()) {
    file_ = stdout;
  } else if (const fs::file_status status = fs::status(path, ignored);
             fs::exists(status) && !fs::is_regular_file(status)) {
    file_ = std::fopen(path.c_str(), "wbe");
    if (file_ == nullptr) Fail();
  } else {
    target_ = path;
    // A link stays one, also when what it points to is not there yet.
    for (int links = 0; fs::is_symlink(fs::symlink_status(target_, ignored)); ++links) {
      if (links == 40) {
        errno = ELOOP;
        Fail();
        return;
      }
      target_ = target_.parent_path() / fs::read_symlink(target_, ignored);
    }
    OpenTemporary();
  }
}

void OutputFile::OpenTemporary() {
  const int descriptor = unfinished_.Create(target_.parent_path());
  if (descriptor < 0) return Fail();
  fchmod(descriptor, ModeOf(target_));
  file_ = fdopen(descriptor, "wb");
  if (file_ == nullptr) {
    Fail();
    close(descriptor);
  }
}

OutputFile::~OutputFile() {
  if (file_ != nullptr && file_ != stdout) std::fclose(file_);
}

void OutputFile::Write(std::string_view text) {
  if (error_.empty() && std::fwrite(text.data(), 1, text.size(), file_) != text.size()) Fail();
}

void OutputFile::Finish() {
  if (!error_.empty()) return;
  if (std::fflush(file_) != 0) return Fail();
  if (target_.empty()) return;
  if (fsync(fileno(file_)) != 0) return Fail();
  if (!unfinished_.MoveTo(target_)) Fail();
}

void OutputFile::Fail() {
  broken_pipe_ = errno == EPIPE;
  error_ = std::strerror(errno);
}
