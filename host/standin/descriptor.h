#ifndef STANDIN_DESCRIPTOR_H_
#define STANDIN_DESCRIPTOR_H_

#include <unistd.h>

#include <utility>

namespace standin {

/// An open file of this process's own: a descriptor that is closed with the object; -1 for none.
/// Async-signal-safe.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    Close(std::exchange(number_, other.Release()));
    return *this;
  }
  ~Descriptor() { Close(number_); }

  int Get() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  /// From now on the caller closes it.
  int Release() { return std::exchange(number_, -1); }

 private:
  static void Close(int number) {
    if (number >= 0) close(number);  // Never retried: Linux frees it even when interrupted.
  }

  int number_ = -1;
};

}  // namespace standin

#endif  // STANDIN_DESCRIPTOR_H_
