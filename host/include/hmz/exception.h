#ifndef HMZ_EXCEPTION_H_
#define HMZ_EXCEPTION_H_

#include <exception>
#include <string>

#include "hmz/api.h"

namespace NKVXHMZ20 {

/// The host's exception. `what()` carries a reason that a person can act on.
class HMZ_API THMZException : public std::exception {
 public:
  explicit THMZException(std::string reason);
  ~THMZException() override;

  const char* what() const noexcept override;

 private:
  std::string reason_;
};

}  // namespace NKVXHMZ20

#endif  // HMZ_EXCEPTION_H_
