#ifndef INVENTORY_RUNS_TRUST_H_
#define INVENTORY_RUNS_TRUST_H_

#include <filesystem>
#include <string>

#include "standin/descriptor.h"

/// A file that is about to be executed or loaded with root's rights: whether only root could have
/// put it where it is. That is so when it and every folder above it, up to "/", belong to root and
/// can be written to by nobody else; a sticky folder for all is not good enough. Links are followed
/// to where they lead. Of a script the same goes for its interpreter.
class TrustedFile {
 public:
  /// A relative path is one of the working folder.
  explicit TrustedFile(const std::filesystem::path& path);

  /// "" when only root could have put a file there, whether there is one or not. Otherwise what is
  /// wrong, for a person: the first folder from the root on that is to blame, and the command that
  /// mends it.
  const std::string& WhyNot() const { return why_not_; }

  /// Whether nothing was at the path.
  bool IsAbsent() const { return is_absent_; }

  /// The file that was looked at, open; it belongs to this object. -1 when there is none, and for a
  /// script: its interpreter reads the path again, whatever was opened here.
  int GetDescriptor() const { return opened_.Get(); }

 private:
  std::string why_not_;
  bool is_absent_ = false;
  standin::Descriptor opened_;
};

#endif  // INVENTORY_RUNS_TRUST_H_
