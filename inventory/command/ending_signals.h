#ifndef INVENTORY_COMMAND_ENDING_SIGNALS_H_
#define INVENTORY_COMMAND_ENDING_SIGNALS_H_

#include <string>

/// Ends a run that a signal ends: the tool in progress and all unfinished files go with it. Signals
/// that the caller of this program had ignored stay ignored.
void CleanUpOnSignals();

/// What is written to standard output when a signal ends this program; "" for nothing. At most 4096
/// bytes of it are, which a pipe takes without waiting.
void SayWhenASignalEnds(const std::string& text);

/// A file on its way to its place: until it gets there it goes with the object, and with this
/// program when a signal ends it, unless it is to stay then. Not for programs with several threads.
class UnfinishedFile {
 public:
  UnfinishedFile() = default;
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  /// Makes the file, empty and for nobody else, under a new name in the folder, whose descriptor
  /// stays open for as long as this lives. To be called once. Returns a descriptor to write to,
  /// which the caller closes, or -1 with errno set.
  int Create(int folder);
  /// Gives the file this name in the folder, where it stays. Returns false with errno set when it
  /// cannot.
  bool MoveTo(const std::string& name);
  /// Instead of going the file gets this name, where it can.
  void MoveAtTheEnd(const std::string& name);
  /// Removes the file, if there is one.
  void Remove();

  /// Removes all that there are, or gives them the names that they get then; async-signal-safe.
  static void EndAll() noexcept;

 private:
  void Forget();

  static UnfinishedFile* first_;
  UnfinishedFile* next_ = nullptr;
  int folder_ = -1;
  std::string name_;       // "" when there is no file
  std::string last_name_;  // that it gets instead of going; "" for none
};

#endif  // INVENTORY_COMMAND_ENDING_SIGNALS_H_
