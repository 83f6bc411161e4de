#include "model/kraid_controller.h"

#include <gtest/gtest.h>

#include "tests/fields.h"

namespace {

TEST(ParseControllerData, CutsTheValueOfTheFirstPlaceWithTheLabel) {
  const struct {
    const char* text;
    const char* value;
  } cases[] = {
      {"   Key : Xyz-6M\nother\n", "Xyz-6M\n"},
      {"Key :Xyz\n", "yz\n"},  // one character is skipped, whatever it is
      {"Key :  two\n", " two\n"},
      {"Key : \n", "\n"},
      {"Key :\nnext : 1\n", ""},  // the skipped character is the newline itself
      {"Key : rest", "rest"},
      {"Key : ", ""},
      {"Key :x", ""},
      {"Key :", ""},
      {"Key without\n", ""},
      {"Key\nLater : 5\n", "5\n"},  // the colon may stand on a later line
      {"a: 1\nKey : first\nKey : second\n", "first\n"},
      {"Keyboard : 3\nKey : 4\n", "3\n"},  // labels are parts of words, too
      {"key : 1\n", ""},
      {"Time Key : 10:20:30\r\n", "10:20:30\r\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(KRaidController::ParseControllerData("Key", c.text), c.value) << c.text;
  }
}

TEST(KRaidController, IsNotFoundWithoutItsSection) {
  KRaidController controller(nullptr);
  controller.SetConfigData("Controller type : X\n", 3);
  EXPECT_FALSE(controller.GetControllerFound());
  EXPECT_EQ(controller.GetControllerNum(), "3");
  EXPECT_EQ(controller.GetControllerType() + controller.GetControllerDeviceID(), "");
}

/// Number, type, status, channels, FRU, BIOS, firmware, driver, boot block, slot, copyback,
/// scrubbing, defunct drives, logical drives, VPD, EC, battery status, over-temperature, capacity,
/// FRU and time, and the device identifier; "\n" as "$".
std::string Fields(const KRaidController& controller) {
  using K = KRaidController;
  return Fields<K>(controller, {&K::GetControllerNum,
                                &K::GetControllerType,
                                &K::GetControllerStatus,
                                &K::GetControllerChannelDescription,
                                &K::GetControllerFRU,
                                &K::GetControllerActualBiosVersion,
                                &K::GetControllerFirmwareVersion,
                                &K::GetControllerDeviceDriverVersion,
                                &K::GetControllerBootBlockVersion,
                                &K::GetControllerSlotInformation,
                                &K::GetControllerCopybackEnabled,
                                &K::GetControllerDataScrubbing,
                                &K::GetControllerDefuncDiskDriveCount,
                                &K::GetControllerLogicalDrives,
                                &K::GetControllerVPD,
                                &K::GetControllerECVersion,
                                &K::GetBatteryStatus,
                                &K::GetBatteryOverTemp,
                                &K::GetBatteryCapacity,
                                &K::GetBatteryFRU,
                                &K::GetBatteryTimeRemaining,
                                &K::GetControllerDeviceID});
}

TEST(KRaidController, ReadsTheConfigurationOfTheNewerTools) {
  constexpr auto kHrconf = &KRaidController::SetConfigHrconfData;
  constexpr auto kArcconf = &KRaidController::SetConfigArcconfData;
  const struct {
    void (KRaidController::*read)(const std::string&, int);
    std::string text;  // behind the section's heading
    const char* fields;
  } cases[] = {
      {kHrconf,
       "Firmware : f\nBIOS : 1\nDriver : 2\nBoot : 3\nController Status : 4\n"
       "Channel description : 5\nDefunct disk drive count : 6\n"
       "Logical drives/Offline/Critical : 7\nController type : t\n",
       "3||4$|5$||1$|Not provided|2$|3$||||6$|7$|||||||||"},
      {kHrconf, "", "3|||||Not provided|Not provided|Not provided|Not provided||||||||||||||"},
      {kArcconf,
       "Controller Model : m\nController type : t\nController Status : 1\n"
       "Channel description : 2\nController FRU# : 3\nBIOS : 4\nFirmware : 5\nDriver : 6\n"
       "Boot : 7\nPhysical Slot : 8\nCopyback : 9\nData scrubbing : 10\n"
       "Defunct disk drive count : 11\nLogical drives/Offline/Critical : 12\n"
       "VPD Assigned : 13\nEC Version : 14\nStatus : 15\nOver temp : 16\nCapacity : 17\n"
       "Battery FRU : 18\nTime remaining : 19\n",
       // The battery's status is the controller's, whose line comes first.
       "3|m$|1$|2$|3$|4$|5$|6$|7$|8$|9$|10$|11$|12$|13$|14$|1$|16$|17$|18$|19$||"},
      {kArcconf, "Status : 1\nController FRU : 2\nController FRU# : 3\nController type : t\n",
       "3|t$|||2$|Not provided|Not provided|Not provided|Not provided||||||||1$||||||"},
      {kArcconf, "Controller Model :\nController type : t\n",
       "3|t$||||Not provided|Not provided|Not provided|Not provided||||||||||||||"},
      {kArcconf, "",
       "3|Unnamed HostRAID||||Not provided|Not provided|Not provided|Not provided"
       "||||||||||||||"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    KRaidController controller(nullptr);
    (controller.*c.read)(c.text, 2);
    EXPECT_FALSE(controller.GetControllerFound());
    EXPECT_EQ(Fields(controller), "2" + std::string(22, '|'));
    (controller.*c.read)("Controller information\n" + c.text, 3);
    EXPECT_TRUE(controller.GetControllerFound());
    EXPECT_EQ(Fields(controller), c.fields);
  }
}

TEST(KRaidController, ReadsItsStatus) {
  CollectedData cursor(nullptr,
                       "Command: getstatus\n"
                       "   Current/most recent operation : Rebuild\n"
                       "   Logical drive                 : 2\n"
                       "   Background operation active   : Yes\n"
                       "   Status                        : Running\n"
                       "   Logical drive size (in stripes): 4000\n"
                       "   Number of remaining stripes   : 100\n");
  cursor.FindLine("Number of");  // where it stands does not matter
  KRaidController controller(nullptr);
  controller.AddStatusData(&cursor);
  EXPECT_EQ(controller.GetControllerCurrentMostRecentOperation(), " Rebuild\n");
  EXPECT_EQ(controller.GetControllerLogicalDrive(), " 2\n");
  EXPECT_EQ(controller.GetControllerBackgroundOperationActive(), " Yes\n");
  EXPECT_EQ(controller.GetControllerLastCommandStatus(), " Running\n");
  EXPECT_EQ(controller.GetControllerLogicalDriveSizeInStripes(), " 4000\n");
  EXPECT_EQ(controller.GetControllerNumberOfRemainingStripes(), " 100\n");

  CollectedData idle(nullptr, "No operation. Status: idle\n");
  controller.AddStatusData(&idle);
  EXPECT_EQ(controller.GetControllerLogicalDrive(), "");
  EXPECT_EQ(controller.GetControllerLastCommandStatus(), " idle\n");
}

}  // namespace
