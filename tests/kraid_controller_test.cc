#include "model/kraid_controller.h"

#include <gtest/gtest.h>

#include "tests/fields.h"

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

TEST(KRaidController, ReadsWhatFollowsItsHeading) {
  constexpr auto kKelvcmd = &K::SetConfigData;
  constexpr auto kHrconf = &K::SetConfigHrconfData;
  constexpr auto kArcconf = &K::SetConfigArcconfData;
  const struct {
    void (K::*read)(const std::string&, int);
    const char* text;
    const char* fields;  // type, FRU, BIOS, firmware, driver, boot block, battery and identifier
  } cases[] = {
      {kKelvcmd, "Firmware version : f\n", "|||f$||||KelvaRAID3|"},
      {kHrconf, "Firmware : f\nBIOS : 1\nDriver : 2\nBoot : 3\nStatus : 4\nController type : t\n",
       "||1$|Not provided|2$|3$|||"},
      {kHrconf, "", "||Not provided|Not provided|Not provided|Not provided|||"},
      // The battery's status is the controller's, whose line comes first.
      {kArcconf, "Controller Status : 1\nStatus : 2\nController Model : m\nController type : t\n",
       "m$||Not provided|Not provided|Not provided|Not provided|1$||"},
      {kArcconf, "Controller FRU : 2\nController FRU# : 3\nController type : t\n",
       "t$|2$|Not provided|Not provided|Not provided|Not provided|||"},
      {kArcconf, "Controller Model :\nController type : t\n",
       "t$||Not provided|Not provided|Not provided|Not provided|||"},
      {kArcconf, "", "Unnamed HostRAID||Not provided|Not provided|Not provided|Not provided|||"},
  };
  for (const auto& [read, text, expected] : cases) {
    SCOPED_TRACE(text);
    const auto fields = [](const K& controller) {
      return Fields<K>(
          controller,
          {&K::GetControllerType, &K::GetControllerFRU, &K::GetControllerActualBiosVersion,
           &K::GetControllerFirmwareVersion, &K::GetControllerDeviceDriverVersion,
           &K::GetControllerBootBlockVersion, &K::GetBatteryStatus, &K::GetControllerDeviceID});
    };
    K controller(nullptr);
    (controller.*read)(text, 2);
    EXPECT_FALSE(controller.GetControllerFound());
    EXPECT_EQ(controller.GetControllerNum() + fields(controller), "2||||||||");
    (controller.*read)(std::string("Controller information\n") + text, 3);
    EXPECT_TRUE(controller.GetControllerFound());
    EXPECT_EQ(controller.GetControllerNum(), "3");
    EXPECT_EQ(fields(controller), expected);
  }
}

}  // namespace
