#ifndef INVENTORY_BASE_SINK_H_
#define INVENTORY_BASE_SINK_H_

#include <string>
#include <string_view>

/// Where printers write. Errors are the business of whoever opened it: printers write on.
class Sink {
 public:
  virtual ~Sink() = default;
  virtual void Write(std::string_view text) = 0;
};

/// Keeps all in memory.
class TextSink final : public Sink {
 public:
  void Write(std::string_view piece) override { text += piece; }

  std::string text;
};

#endif  // INVENTORY_BASE_SINK_H_
