#include "standin/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "standin/host_services.h"

namespace standin {
namespace {

ssize_t ReadAt(int descriptor, char* buffer, std::size_t size, off_t at) {
  ssize_t count = 0;
  do {
    count = pread(descriptor, buffer, size, at);
  } while (count < 0 && errno == EINTR);
  return count;
}

void TellOfCut(const std::string& path, const RegularFile& file) {
  if (file.GetLeft() == file.GetWholeSize()) return;
  Services().file_cut({path, file.GetLeft(), file.GetWholeSize()});
}

// A stream over it; the cookie is the file, which goes with the stream.

ssize_t ReadStream(void* file, char* buffer, std::size_t size) {
  return static_cast<RegularFile*>(file)->Read(buffer, size);
}

int CloseStream(void* file) {
  delete static_cast<RegularFile*>(file);
  return 0;
}

}  // namespace

RegularFile::RegularFile(const std::string& path) {
  struct stat status {};
  // Opening a device may do something already, so it is looked at before, and again behind it.
  if (stat(path.c_str(), &status) != 0) return;
  if (S_ISREG(status.st_mode)) {
    descriptor_ = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor_ < 0) return;
  }
  if (descriptor_ < 0 || fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
    errno = ENOENT;
    return;
  }
  end_ = status.st_size;
  if (end_ > kMostRead) at_ = FirstLineStart(end_ - kMostRead);
  at_ = NewestLines(at_);
}

RegularFile::~RegularFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

/// Visits the places of the line ends from `begin` on, up to the last byte, behind which no line
/// begins; the first for which `visit` is true, or -1.
template <class Visit>
off_t RegularFile::FindLineEnd(off_t begin, const Visit& visit) const {
  char buffer[1 << 16];
  for (off_t at = begin; at < end_ - 1;) {
    const std::size_t left = static_cast<std::size_t>(end_ - 1 - at);
    const ssize_t count = ReadAt(descriptor_, buffer, std::min(left, sizeof buffer), at);
    if (count <= 0) break;
    const char* const behind = buffer + count;
    for (const char* end = buffer; (end = std::find(end, behind, '\n')) != behind; ++end) {
      if (visit()) return at + (end - buffer);
    }
    at += count;
  }
  return -1;
}

/// From `begin` on; `begin` itself where none is to be found.
off_t RegularFile::FirstLineStart(off_t begin) const {
  const off_t end = FindLineEnd(begin - 1, [] { return true; });
  return end < 0 ? begin : end + 1;
}

/// Where the newest kMostLines lines begin, at `begin` or behind it.
off_t RegularFile::NewestLines(off_t begin) const {
  if (end_ - begin <= kMostLines) return begin;  // a line has a byte at least
  off_t lines = 1;
  FindLineEnd(begin, [&lines] {
    ++lines;
    return false;
  });
  off_t surplus = lines - kMostLines;
  if (surplus <= 0) return begin;
  return FindLineEnd(begin, [&surplus] { return --surplus == 0; }) + 1;
}

ssize_t RegularFile::Read(char* buffer, std::size_t size) {
  const ssize_t count = ReadAt(descriptor_, buffer, std::min(size, GetLeft()), at_);
  if (count > 0) at_ += count;
  return count;
}

std::string RealCaptureFile(const std::string& path) {
  RegularFile file(path);
  if (!file.IsOpen()) return "";
  TellOfCut(path, file);
  std::string text(file.GetLeft(), '\0');
  std::size_t size = 0;
  while (size < text.size()) {
    const ssize_t count = file.Read(text.data() + size, text.size() - size);
    if (count < 0) return "";
    if (count == 0) break;  // somebody has made it shorter
    size += static_cast<std::size_t>(count);
  }
  text.resize(size);
  return text;
}

std::FILE* RealOpenFile(const std::string& path) {
  auto file = std::make_unique<RegularFile>(path);
  if (!file->IsOpen()) return nullptr;
  TellOfCut(path, *file);
  std::FILE* const stream =
      fopencookie(file.get(), "r", {ReadStream, nullptr, nullptr, CloseStream});
  if (stream != nullptr) static_cast<void>(file.release());
  return stream;
}

}  // namespace standin
