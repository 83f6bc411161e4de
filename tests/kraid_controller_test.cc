#include "model/kraid_controller.h"

#include <gtest/gtest.h>

#include "model/kraid_event_words.h"

namespace {

using K = KRaidController;

TEST(ParseControllerData, CutsTheValueOfTheFirstPlaceWithTheLabel) {
  const std::pair<const char*, const char*> cases[] = {
      {"   Key : Xyz-6M\nother\n", "Xyz-6M\n"},
      {"Key :Xyz\n", "yz\n"},  // one character is skipped, whatever it is
      {"Key :  two\n", " two\n"},
      {"Key : \n", "\n"},
      {"Key :\nnext : 1\n", ""},  // the skipped character is the newline itself
      {"Key : rest", "rest"},
      {"Key : ", ""},
      {"Key :", ""},
      {"Key without\n", ""},
      {"Key\nLater : 5\n", "5\n"},  // the colon may stand on a later line
      {"a: 1\nKey : first\nKey : second\n", "first\n"},
      {"Keyboard : 3\nKey : 4\n", "3\n"},  // labels are parts of words, too
      {"key : 1\n", ""},
      {"Time Key : 10:20:30\r\n", "10:20:30\r\n"},
  };
  for (const auto& [text, value] : cases) {
    EXPECT_EQ(K::ParseControllerData("Key", text), value) << text;
  }
}

/// A log that tells when it goes.
template <class Log>
struct Watched : Log {
  using Log::Log;
  ~Watched() override { ++gone_; }
  static inline int gone_ = 0;
};

TEST(KRaidController, GivesTheLatestLogAndKeepsTheOneBefore) {
  using Soft = Watched<KRaidEventSoftData>;
  using Hard = Watched<KRaidEventHardData>;
  {
    K controller(nullptr);
    EXPECT_TRUE(controller.GetEventSoftData() == nullptr &&
                controller.GetEventHardData() == nullptr);
    for (int i = 0; i < 2; ++i) {
      auto* soft = new Soft(nullptr);
      auto* hard = new Hard(nullptr);
      controller.AddEventSoftData(std::unique_ptr<Soft>(soft));
      controller.AddEventHardData(std::unique_ptr<Hard>(hard));
      EXPECT_EQ(controller.GetEventSoftData(), soft);
      EXPECT_EQ(controller.GetEventHardData(), hard);
    }
    EXPECT_EQ(Soft::gone_ + Hard::gone_, 0);
  }
  EXPECT_EQ(Soft::gone_ + Hard::gone_, 4);
}

}  // namespace
