// The records that the "getconfig" of hrconf and arcconf fills.

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "model/array_stripe_order.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "tests/fields.h"

namespace {

TEST(NewerLogicalDevice, KnowsWhichLinesMayBeMissing) {
  using L = KRaidLogicalDevice;
  constexpr auto kHrconf = &L::SetConfigHrconfData;
  constexpr auto kArcconf = &L::SetConfigArcconfData;
  const struct {
    const char* what;
    void (L::*read)(CollectedData*, const std::string&, const std::string&);
    const char* text;  // name, RAID level, status, information, size, read and write cache,
                       // setting, chunks, stripe unit, drives
    const char* fields;
    const char* next;
  } cases[] = {
      {"hrconf, all", kHrconf,
       "Logical drive name : n\nRAID level : 5\nStatus of logical drive : ok\n"
       "Additional information : i\nSize : 9\nWrite cache status : wb\nNumber of chunks : 3\n"
       "Stripe-unit size : 64\nnext\n",
       "2|7| n$| 5$| ok$| i$| 9$|| wb$|| 3$| 64$||", "next\n"},
      {"hrconf, without those that may be missing", kHrconf,
       "Size : 9\nNumber of chunks : 3\nnext\n", "2|7||||| 9$|||| 3$|||", "next\n"},
      {"hrconf, without its size", kHrconf,
       "RAID level : 5\nWrite cache status : wb\nNumber of chunks : 3\nStripe-unit size : "
       "64\nnext\n",
       "2|7|| 5$||||||| 3$| 64$||", "next\n"},
      {"hrconf, without its chunks", kHrconf,
       "Size : 9\nWrite cache status : wb\nStripe-unit size : 64\nnext\n", "2|7||||| 9$|| wb$|||||",
       "next\n"},
      {"arcconf, all", kArcconf,
       "Logical drive name : n\nRAID level : 5\nStatus of logical drive : ok\nSize : 9\n"
       "Read-cache mode : r\nWrite-cache mode : w\nWrite-cache setting : s\nNumber of chunks : 3\n"
       "Stripe-unit size : 64\nDrive(s) : d\nnext\n",
       "2|7| n$| 5$| ok$|| 9$| r$| w$| s$| 3$| 64$| d$|", "next\n"},
      {"arcconf, without those that may be missing", kArcconf,
       "Logical drive name : n\nRAID level : 5\nStatus of logical drive : ok\nSize : 9\n"
       "Read-cache mode : r\nWrite-cache mode : w\nWrite-cache setting : s\nNumber of chunks : 3\n"
       "next\n",
       "2|7| n$| 5$| ok$|| 9$| r$| w$| s$| 3$|||", "next\n"},
      {"arcconf, without its read cache", kArcconf,
       "Logical drive name : n\nRAID level : 5\nStatus of logical drive : ok\nSize : 9\n"
       "Write-cache mode : w\nWrite-cache setting : s\nNumber of chunks : 3\n"
       "Stripe-unit size : 64\nDrive(s) : d\nnext\n",
       "2|7| n$| 5$| ok$|| 9$|||||| d$|", "next\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CollectedData cursor(nullptr, std::string("Logical drive number 7\n") + c.text);
    L drive(nullptr);
    (drive.*c.read)(&cursor, "7", "2");
    EXPECT_EQ(
        Fields<L>(drive, {&L::GetControllerNum, &L::GetLogicalDriveNum, &L::GetLogicalDriveName,
                          &L::GetRaidLevel, &L::GetStatusOfLogicalDrive,
                          &L::GetAdditionalInformation, &L::GetSize, &L::GetReadCacheStatus,
                          &L::GetWriteCacheStatus, &L::GetWriteCacheSetting, &L::GetNumberOfChunks,
                          &L::GetStripeUnitSize, &L::GetLogicalDriveList}),
        c.fields);
    EXPECT_EQ(cursor.GetNextLine(), c.next);
  }
}

/// Each line in turn without its label: that field alone stays empty, unless the row steps back.
template <class Record, class Read, class Describe>
void ExpectEachLineToBeConsumed(const std::vector<std::string>& lines, const Read& read,
                                const Describe& describe) {
  for (std::size_t missing = 0; missing < lines.size(); ++missing) {
    std::string text = "heading\n";
    for (std::size_t i = 0; i < lines.size(); ++i) text += i == missing ? "x : x\n" : lines[i];
    CollectedData cursor(nullptr, text + "next\n");
    Record record(nullptr);
    read(record, cursor);
    std::string expected;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (i != missing) expected += lines[i].substr(lines[i].find(':') + 1);
    }
    EXPECT_EQ(describe(record), expected) << lines[missing];
    EXPECT_EQ(cursor.GetNextLine(), "next\n") << lines[missing];
  }
}

TEST(NewerLogicalDevice, ConsumesEachLineOfArcconf) {
  using L = KRaidLogicalDevice;
  ExpectEachLineToBeConsumed<L>(
      {"Logical drive name : 1\n", "RAID level : 2\n", "Status of logical drive : 3\n",
       "Size : 4\n", "Read-cache mode : 5\n", "Write-cache mode : 6\n", "Write-cache set : 7\n",
       "Number of chunks : 8\n"},
      [](L& drive, CollectedData& cursor) {
        // The two lines behind them may be missing.
        drive.SetConfigArcconfData(&cursor, "7", "2");
      },
      [](const L& drive) {
        return drive.GetLogicalDriveName() + drive.GetRaidLevel() +
               drive.GetStatusOfLogicalDrive() + drive.GetSize() + drive.GetReadCacheStatus() +
               drive.GetWriteCacheStatus() + drive.GetWriteCacheSetting() +
               drive.GetNumberOfChunks();
      });
}

TEST(NewerPhysicalDevice, ConsumesTheLinesThatEachKindHas) {
  using P = KRaidPhysicalDevice;
  const auto describe = [](const P& device) {
    return device.GetState() + device.GetTransferSpeed() + device.GetVendor() + device.GetModel() +
           device.GetFirmwareVer() + device.GetSize() + device.GetWriteCache() + device.GetFru() +
           device.GetPfa();
  };
  const struct {
    const char* type;
    std::vector<std::string> lines;
  } kinds[] = {
      {"Hard drive",
       {"State : 1\n", "Transfer Speed : 2\n", "Vendor : 3\n", "Model : 4\n", "Firmware : 5\n",
        "Size : 6\n", "Write Cache : 7\n", "FRU : 8\n", "PFA : 9\n"}},
      {"Enclosure", {"State : 1\n", "Vendor : 3\n", "Model : 4\n", "Firmware : 5\n"}},
      {"Unknown", {"State : 1\n", "Vendor : 3\n", "Model : 4\n", "Firmware : 5\n"}},
  };
  for (const auto& kind : kinds) {
    ExpectEachLineToBeConsumed<P>(
        kind.lines,
        [&kind](P& device, CollectedData& cursor) {
          // The type line comes first: the cursor is put before it.
          CollectedData type(nullptr, std::string("h\nDevice is a ") + kind.type + "\n");
          EXPECT_THROW(device.SetConfigHrconfData(&type, "2", "1", "d"), std::out_of_range);
          cursor.decrementLinePtr();
          device.SetConfigHrconfData(&cursor, "2", "1", "d");
        },
        describe);
  }
}

TEST(NewerPhysicalDevice, ReadsTheLinesOfItsKind) {
  using P = KRaidPhysicalDevice;
  constexpr auto kHrconf = &P::SetConfigHrconfData;
  constexpr auto kArcconf = &P::SetConfigArcconfData;
  const std::string head = "State : s\nTransfer Speed : t\n";
  const std::string tail =
      "Vendor : v\nModel : m\nFirmware : f\nSerial number : sn\nWorld-wide name : w\nSize : 9\n"
      "Write Cache : c\nFRU : r\nPFA : p\nnext\n";
  const struct {
    const char* what;
    void (P::*read)(CollectedData*, const std::string&, const std::string&, const std::string&);
    std::string text;
    const char* fields;
  } cases[] = {
      {"a drive, all lines", kHrconf,
       " Device is a Hard drive\n" + head + "Reported Channel : 0\nReported Enclosure : e\n" + tail,
       " Hard drive$| s$| t$| 0$| e$| v$| m$| f$| sn$| w$| 9$| c$| r$| p$|"},
      {"a drive, without those that may be missing", kHrconf,
       "Device is a Hard drive\n" + head +
           "Vendor : v\nModel : m\nFirmware : f\nSize : 9\nWrite Cache : c\nFRU : r\nPFA : p\n"
           "next\n",
       " Hard drive$| s$| t$||| v$| m$| f$||| 9$| c$| r$| p$|"},
      {"arcconf needs the reported channel", kArcconf,
       "Device is a Hard drive\n" + head + "other\nReported Enclosure : e\n" + tail,
       " Hard drive$| s$| t$|| e$| v$| m$| f$| sn$| w$| 9$| c$| r$| p$|"},
      {"arcconf's serial number has any label with the word", kArcconf,
       "Device is a Hard drive\n" + head +
           "Reported Channel : 0\nVendor : v\nModel : m\nFirmware : f\nSerial no. : sn\nSize : 9\n"
           "Write Cache : c\nFRU : r\nPFA : p\nnext\n",
       " Hard drive$| s$| t$| 0$|| v$| m$| f$| sn$|| 9$| c$| r$| p$|"},
      {"arcconf, without a serial number", kArcconf,
       "Device is a Hard drive\n" + head +
           "Reported Channel : 0\nVendor : v\nModel : m\nFirmware : f\nWorld-wide name : w\n"
           "Size : 9\nWrite Cache : c\nFRU : r\nPFA : p\nnext\n",
       " Hard drive$| s$| t$| 0$|| v$| m$| f$|| w$| 9$| c$| r$| p$|"},
      {"hrconf's has not", kHrconf,
       "Device is a Hard drive\n" + head +
           "Reported Channel : 0\nVendor : v\nModel : m\nFirmware : f\nSerial no. : sn\nx\n"
           "Write Cache : c\nFRU : r\nPFA : p\nnext\n",
       // The line stands where the size has to.
       " Hard drive$| s$| t$| 0$|| v$| m$| f$|||||||"},
      {"a missing speed takes the next line", kHrconf,
       "Device is a Hard drive\nState : s\nReported Channel : 0\n" + tail,
       " Hard drive$| s$|||| v$| m$| f$| sn$| w$| 9$| c$| r$| p$|"},
      {"an enclosure", kHrconf,
       "Device is a Enclosure\n" + head + "Vendor : v\nModel : m\nFirmware : f\nnext\n",
       " Enclosure$| s$| t$||| v$| m$| f$|||||||"},
      {"an enclosure without its speed", kArcconf,
       "Device is a Enclosure\nState : s\nReported Channel : 0\nVendor : v\nModel : m\n"
       "Firmware : f\nnext\n",
       " Enclosure$| s$|| 0$|| v$| m$| f$|||||||"},
      {"unknown, before all else", kHrconf,
       "Device is a Unknown Enclosure\nState : s\nReported Channel : 0\nVendor : v\nModel : "
       "m\nFirmware : f\nnext\n",
       " Unknown Enclosure$| s$|| 0$|| v$| m$| f$|||||||"},
      {"any other kind", kArcconf, "Device is a Tape\nnext\n", " Tape$||||||||||||||"},
      {"no kind", kHrconf, "State : s\nnext\n", "||||||||||||||"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CollectedData cursor(nullptr, "Device #3\n" + c.text);
    P device(nullptr);
    (device.*c.read)(&cursor, "2", "1", "Device #3\n");
    EXPECT_EQ(
        Fields<P>(device, {&P::GetDeviceType, &P::GetState, &P::GetTransferSpeed,
                           &P::GetReportedChannel, &P::GetEnclosure, &P::GetVendor, &P::GetModel,
                           &P::GetFirmwareVer, &P::GetDeviceSerialNum, &P::GetWorldWideName,
                           &P::GetSize, &P::GetWriteCache, &P::GetFru, &P::GetPfa}),
        c.fields);
    EXPECT_EQ(Fields<P>(device, {&P::GetControllerNum, &P::GetChannelNum, &P::GetDeviceNum,
                                 &P::GetDeviceID, &P::GetScsiID, &P::GetDeviceCode}),
              "2|1|Device #3$|Controller: 1Device #3$|||");
    if (std::string(c.what) == "hrconf's has not") continue;  // it read past the next one
    EXPECT_EQ(cursor.GetNextLine(), "next\n");
  }
}

TEST(NewerStripeOrder, TakesAllLinesThatBeginWithADigit) {
  using A = ArrayStripeOrder;
  const struct {
    const char* text;
    const char* fields;
    const char* next;
  } cases[] = {
      {"Stripe order (Channel,Device) : 0,0\n 0,1\n\t0,2\nend\n",
       "2|KelvaRaidCntrlr2LogicalDrv7 0,0$ 0,1$ 0,2$|Stripe order (Channel,Device) : 0,0$|"
       " 0,0$ 0,1$ 0,2$|",
       "end\n"},
      {"Stripe order (Channel,Device) : 0,0\n\n",
       "2|KelvaRaidCntrlr2LogicalDrv7 0,0$|Stripe order (Channel,Device) : 0,0$| 0,0$|", "\n"},
      {"Stripe order : 0,0\nend\n", "2||||", "end\n"},
  };
  for (const auto read : {&A::SetConfigHrconfData, &A::SetConfigArcConfData}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(c.text);
      CollectedData cursor(nullptr, c.text);
      A order(nullptr);
      (order.*read)(&cursor, "2", "7");
      EXPECT_EQ(Fields<A>(order, {&A::GetControllerNum, &A::GetCollectionID, &A::GetArrayData,
                                  &A::GetStripeOrder}),
                c.fields);
      EXPECT_EQ(cursor.GetNextLine(), c.next);
    }
    for (const std::string& text : {std::string("Stripe order (Channel,Device) : 0,0\n0,1\n"),
                                    std::string("Stripe order (Channel,Device) : 0,0\n\0\n", 38)}) {
      CollectedData cursor(nullptr, text);
      A order(nullptr);
      EXPECT_THROW((order.*read)(&cursor, "2", "7"), std::out_of_range);
    }
  }
}

}  // namespace
