#ifndef MODEL_KRAID_RECORD_H_
#define MODEL_KRAID_RECORD_H_

#include <string>

#include "hmz/plugin_management.h"

/// What all records of the model have in common. The order of the virtual operations, destructor
/// then InitData, is part of the binary interface: records add none in front of them.
class KRaidRecord {
 public:
  explicit KRaidRecord(NKVXHMZ20::TPluginManagerProvider* /*provider*/) {}
  virtual ~KRaidRecord() = default;
  KRaidRecord(const KRaidRecord&) = delete;
  KRaidRecord& operator=(const KRaidRecord&) = delete;

  virtual void InitData() {}

  /// The number of the controller that the record is about; "" before a reading.
  std::string GetControllerNum() const { return controller_num_; }

 protected:
  std::string controller_num_;
};

#endif  // MODEL_KRAID_RECORD_H_
