#ifndef STANDIN_REGULAR_FILE_H_
#define STANDIN_REGULAR_FILE_H_

#include <sys/types.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "hmz/api.h"

namespace standin {

/// Of a file that is larger than what the host reads: its newest end.
struct FileCut {
  std::string path;
  std::uint64_t read = 0;  ///< Bytes.
  std::uint64_t size = 0;  ///< Of the whole file, in bytes.
};

/// A file whose writer is not to be trusted with the time and the memory of this process.
///
/// It is regular, links followed: anything else (a pipe, a device) is not opened at all. Of a large
/// one the newest end counts, at most kMostRead bytes and kMostLines lines; it begins a line, or
/// cuts one where no line begins there. What is written after the opening does not count.
class RegularFile {
 public:
  static constexpr off_t kMostRead = off_t{64} << 20;
  /// Half of what a repository takes, so that short lines leave room for everything else.
  static constexpr off_t kMostLines = 500'000;

  /// Not open, with errno set, when there is no such file or it cannot be opened.
  explicit RegularFile(const std::string& path);
  ~RegularFile();
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;

  bool IsOpen() const { return descriptor_ >= 0; }
  std::uint64_t GetWholeSize() const { return static_cast<std::uint64_t>(end_); }
  /// How much of it is left to be read.
  std::size_t GetLeft() const { return static_cast<std::size_t>(end_ - at_); }

  /// The next bytes of it: how many, 0 at the end, -1 with errno set when they cannot be read.
  ssize_t Read(char* buffer, std::size_t size);

 private:
  off_t FirstLineStart(off_t begin) const;
  off_t NewestLines(off_t begin) const;
  template <class Visit>
  off_t FindLineEnd(off_t begin, const Visit& visit) const;

  int descriptor_ = -1;
  off_t at_ = 0;
  off_t end_ = 0;
};

// The host's services for files. A file that is not read whole is told of to Services().file_cut.
HMZ_API std::string RealCaptureFile(const std::string& path);
HMZ_API std::FILE* RealOpenFile(const std::string& path);

}  // namespace standin

#endif  // STANDIN_REGULAR_FILE_H_
