#ifndef INVENTORY_COMMAND_COLLECTION_LOCK_H_
#define INVENTORY_COMMAND_COLLECTION_LOCK_H_

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "standin/descriptor.h"

/// Keeps two collections below one root from asking the same controllers at a time: holds an
/// advisory lock (flock) on a file in /run/lock or, where that cannot be written to,
/// XDG_RUNTIME_DIR, until the object ends and takes the file away.
class CollectionLock {
 public:
  CollectionLock() = default;
  ~CollectionLock();
  CollectionLock(const CollectionLock&) = delete;
  CollectionLock& operator=(const CollectionLock&) = delete;

  /// Waits for the lock of this root, for ever without a limit, of which it takes what it has
  /// waited, but for the time during which this program was suspended. `on_waiting` is told once
  /// when there is something to wait for. Returns "", or why there is no lock: who holds it, or
  /// what is in the way.
  std::string Take(const std::filesystem::path& root,
                   std::optional<std::chrono::milliseconds>& limit,
                   const std::function<void(const std::string& holder)>& on_waiting);

 private:
  std::string Open(const std::filesystem::path& root);
  bool IsInPlace() const;

  std::filesystem::path file_;
  standin::Descriptor opened_;
};

#endif  // INVENTORY_COMMAND_COLLECTION_LOCK_H_
