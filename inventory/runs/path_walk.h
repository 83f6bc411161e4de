#ifndef INVENTORY_RUNS_PATH_WALK_H_
#define INVENTORY_RUNS_PATH_WALK_H_

#include <sys/stat.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standin/descriptor.h"

/// The way along a path, one name at a time, as the kernel goes it. It holds on to what it has
/// reached, whatever is renamed or linked anew behind it; and at each link it is the walker's turn
/// to say how to go on. What fails returns false, with errno set.
class PathWalk {
 public:
  /// A relative path begins in the working folder.
  explicit PathWalk(std::string_view path);

  /// Whether there are more names to go; there are when it begins.
  bool IsAhead() const { return !ahead_.empty(); }
  /// Goes to the next name, but not on from a link.
  bool Step();
  /// At a link: the way goes on as it says.
  bool Follow();
  /// At a link: goes where the kernel goes, which those in /proc do not always say.
  bool GoBehind();

  /// The name that was gone to or looked for last, which can be "/", "." or "..", and its folder,
  /// for `...at` calls only.
  const std::string& GetName() const { return name_; }
  const standin::Descriptor& GetFolder() const { return folder_; }
  standin::Descriptor TakeFolder() { return std::move(folder_); }
  /// What was reached.
  const struct stat& GetStatus() const { return status_; }
  /// The same, for `...at` calls and statfs only.
  const standin::Descriptor& GetReached() const { return here_; }
  bool IsAtLink() const { return S_ISLNK(status_.st_mode); }

 private:
  void Prepend(std::string_view path);
  bool Reach(int flags);

  std::vector<std::string> ahead_;  // the next one is the last
  standin::Descriptor folder_;
  std::string name_;
  standin::Descriptor here_;
  struct stat status_ {};
  int links_ = 0;
};

/// Whether others may add names there, and cannot take away ours; true for a folder that cannot be
/// looked at.
bool IsForAll(int folder);

/// Whether what has this status is somebody else's, neither root's nor the user's of this program,
/// in a folder where everybody may put things: there it may have been planted.
bool IsPlanted(int folder, const struct stat& status);

#endif  // INVENTORY_RUNS_PATH_WALK_H_
