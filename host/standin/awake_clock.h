#ifndef STANDIN_AWAKE_CLOCK_H_
#define STANDIN_AWAKE_CLOCK_H_

#include <chrono>

namespace standin {

/// A steady clock that stands still while this process is suspended, as by a stop signal. It has to
/// be looked at every kHeartbeat: a look that comes much later tells of a suspension.
class AwakeClock {
 public:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kHeartbeat{500};

  Clock::time_point Now() {
    const Clock::time_point now = Clock::now();
    // A second more than is due: a busy machine is late, too.
    if (now - last_ > kHeartbeat + std::chrono::seconds{1}) suspended_ += now - last_;
    last_ = now;
    return now - suspended_;
  }

  Clock::duration GetSuspended() const { return suspended_; }

 private:
  Clock::time_point last_ = Clock::now();
  Clock::duration suspended_{};
};

}  // namespace standin

#endif  // STANDIN_AWAKE_CLOCK_H_
