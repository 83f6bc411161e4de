// The records that kelvcmd's "getconfig" fills line by line.

#include <gtest/gtest.h>

#include <stdexcept>

#include "model/array_stripe_order.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "tests/fields.h"

namespace {

std::string Fields(const KRaidLogicalDevice& drive) {
  using L = KRaidLogicalDevice;
  return Fields<L>(
      drive, {&L::GetControllerNum, &L::GetLogicalDriveNum, &L::GetStatusOfLogicalDrive,
              &L::GetAdditionalInformation, &L::GetRaidLevel, &L::GetSize, &L::GetWriteCacheStatus,
              &L::GetNumberOfChunks, &L::GetStripeUnitSize, &L::GetAccessBlocked,
              &L::GetPartOfArray, &L::GetPartOfMergeGroup});
}

constexpr char kStatus[] = "Status of logical drive : OKY\n";
constexpr char kAdditional[] = "Additional information : sync\n";
constexpr char kLevelAndSize[] = "RAID level : 5\nSize (in MB) : 100\n";
constexpr char kRest[] =
    "Write cache status : WB\nNumber of chunks : 3\nStripe-unit size : 16K\n"
    "Access blocked : No\nPart of array : A\n";
constexpr char kMerge[] = "Part of merge group : 207\n";

TEST(LogicalDevice, ReadsItsLinesOneByOne) {
  const std::string head = "Logical drive number 1 \n";
  const struct {
    const char* what;
    std::string text;
    const char* fields;
    const char* next;
  } cases[] = {
      {"all lines", head + kStatus + kAdditional + kLevelAndSize + kRest + kMerge + "next\n",
       "2|7| OKY$| sync$| 5$| 100$| WB$| 3$| 16K$| No$| A$| 207$|", "next\n"},
      {"without the optional ones", head + kStatus + kLevelAndSize + kRest + "next\n",
       "2|7| OKY$|| 5$| 100$| WB$| 3$| 16K$| No$| A$||", "next\n"},
      {"a missing line shifts the others out of their places",
       head + kStatus + "RAID level : 5\n" + kRest + kMerge + "1\n2\n", "2|7| OKY$|| 5$||||||||",
       "1\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CollectedData cursor(nullptr, c.text);
    KRaidLogicalDevice drive(nullptr);
    drive.SetConfigData(&cursor, "7", "2");
    EXPECT_EQ(Fields(drive), c.fields);
    EXPECT_EQ(cursor.GetNextLine(), c.next);
  }
}

TEST(LogicalDevice, ThrowsWhenTheOutputEndsWithinIt) {
  // Also when it ends where an optional line may stand.
  for (const std::string& text :
       {std::string(kStatus), std::string(kStatus) + kLevelAndSize + kRest}) {
    CollectedData cursor(nullptr, "heading\n" + text);
    KRaidLogicalDevice drive(nullptr);
    EXPECT_THROW(drive.SetConfigData(&cursor, "1", "1"), std::out_of_range);
  }
}

TEST(LogicalDevice, LooksItselfUpInAWholeText) {
  CollectedData cursor(nullptr, std::string("h\n") + kStatus + kLevelAndSize + kRest + kMerge);
  KRaidLogicalDevice drive(nullptr);
  drive.SetConfigData(&cursor, "2", "1");
  constexpr char kText[] =
      "Logical drive number 1\nRAID level : 0 \nLogical drive number 2\nRAID level : 10 \n"
      "Size :5\nEmpty :\nEnd : x";
  EXPECT_EQ(drive.ParseLogicalDeviceData("RAID level", kText), "10");
  EXPECT_EQ(drive.ParseLogicalDeviceData("Size", kText), "");
  EXPECT_EQ(drive.ParseLogicalDeviceData("Empty", kText), "");
  EXPECT_EQ(drive.ParseLogicalDeviceData("End", kText), "");
  EXPECT_EQ(drive.ParseLogicalDeviceData("Absent", kText), "");
  EXPECT_EQ(drive.ParseLogicalDeviceData("RAID level", "Logical drive number 1\nRAID level : 0 \n"),
            "");
}

std::string Fields(const KRaidPhysicalDevice& device) {
  using P = KRaidPhysicalDevice;
  return Fields<P>(device,
                   {&P::GetControllerNum, &P::GetChannelNum, &P::GetDeviceType, &P::GetScsiID,
                    &P::GetPfa, &P::GetState, &P::GetSize, &P::GetDeviceID, &P::GetDeviceCode,
                    &P::GetFirmwareVer, &P::GetDeviceSerialNum, &P::GetFru});
}

std::string Device(const std::string& type, const std::string& id, const std::string& fru) {
  return "Target on SCSI ID 5\nDevice is a" + type +
         "\nSCSI ID : 5\nPFA (Yes/No) : No\nState : ONL\n"
         "Size (in MB)/(in sectors) : 9/18\nDevice ID :" +
         id + "\n" + fru + "next\n";
}

TEST(PhysicalDevice, ReadsItsLinesAndSplitsTheIdentification) {
  constexpr char kFru[] = "FRU part number : F\n";
  const auto with_type = [](const std::string& type) {
    return "1|2|" + type + "$| 5$| No$| ONL$| 9/18$|";
  };
  const struct {
    const char* what;
    std::string text;
    std::string fields;
  } cases[] = {
      {"a disk", Device(" Hard disk", "0123456789abcdefghijklmnopqrstuvwxyzABC", kFru),
       with_type(" Hard disk") +
           "0123456789abcdefghijklmnopqrstuvwxyzABC$|0123456789abcdef|hijk|klmnopqr| F$|"},
      {"28 characters are enough", Device(" Hard disk", "0123456789abcdefghijklmnopq", kFru),
       with_type(" Hard disk") +
           "0123456789abcdefghijklmnopq$|0123456789abcdef|hijk|klmnopq$| F$|"},
      {"27 are not", Device(" Hard disk", "0123456789abcdefghijklmnop", kFru),
       with_type(" Hard disk") + "0123456789abcdefghijklmnop$|0123456789abcdef||| F$|"},
      {"very short", Device(" Hard disk", " x", ""), with_type(" Hard disk") + " x$| x$||||"},
      {"a tape", Device(" Tape", "0123456789abcdefghijklmnopqrst", ""),
       with_type(" Tape") + "0123456789abcdefghijklmnopqrst$|0123456789abcdefghijklmnopqrst$||||"},
      {"a tape first of all", Device(" Tape or Hard disk", "0123456789abcdefghijklmnopqrst", ""),
       with_type(" Tape or Hard disk") +
           "0123456789abcdefghijklmnopqrst$|0123456789abcdefghijklmnopqrst$||||"},
      {"another device", Device(" Processor device", "0123456789abcdefghijklmnopqrst", kFru),
       with_type(" Processor device") + "0123456789abcdefghijklmnopqrst$|||| F$|"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CollectedData cursor(nullptr, c.text);
    KRaidPhysicalDevice device(nullptr);
    device.SetConfigData(&cursor, "1", "2");
    EXPECT_EQ(Fields(device), c.fields);
    EXPECT_EQ(cursor.GetNextLine(), "next\n");
  }
}

TEST(PhysicalDevice, ReadsOnPastMissingLines) {
  CollectedData cursor(nullptr,
                       "t\nother\nSCSI ID : 5\nState : ONL\nSize (in MB)/(in sectors) : 1\n"
                       "Device ID : d\nFRU part number : F\nnext\n");
  KRaidPhysicalDevice device(nullptr);
  device.SetConfigData(&cursor, "1", "2");
  EXPECT_EQ(Fields(device), "1|2|| 5$|||||||||");  // one is missing: all others come late
  EXPECT_EQ(cursor.GetNextLine(), "next\n");
}

TEST(StripeOrder, TakesOneLineMoreWhenItBeginsWithADigit) {
  using A = ArrayStripeOrder;
  const struct {
    std::string text;
    const char* fields;
    const char* next;
  } cases[] = {
      {"Array B stripe order (Channel/SCSI ID) : 1,0 1,1\n  \t2,0\n3,0\n",
       "2|KelvaRAID2ArrayB|B| 1,0 1,1$2,0$|", "3,0\n"},  // the third line is lost
      {"Array B stripe order (Channel/SCSI ID) : 1,0\n\nnext\n", "2|KelvaRAID2ArrayB|B| 1,0$|",
       "\n"},
      {"Array B stripe order (Channel/SCSI ID) : 1,0\nArray C\n", "2|KelvaRAID2ArrayB|B| 1,0$|",
       "Array C\n"},
      {" stripe order (Channel/SCSI ID) : 1,0\nnext\n", "2|KelvaRAID2Array|| 1,0$|", "next\n"},
      {"Array B stripe order (Channel/SCSI ID)\nnext\n", "2|KelvaRAID2ArrayB|B||", "next\n"},
      {"Array B stripe order\nnext\n", "2||||", "next\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    CollectedData cursor(nullptr, c.text);
    A order(nullptr);
    order.SetConfigData(&cursor, "2");
    EXPECT_EQ(Fields<A>(order, {&A::GetControllerNum, &A::GetCollectionID, &A::GetArrayData,
                                &A::GetStripeOrder}),
              c.fields);
    EXPECT_EQ(cursor.GetNextLine(), c.next);
  }
  CollectedData cursor(nullptr, "Array B stripe order (Channel/SCSI ID) : 1,0\n");
  EXPECT_THROW(A(nullptr).SetConfigData(&cursor, "2"), std::out_of_range);
}

}  // namespace
