#ifndef TESTS_PUBLISH_MACHINE_H_
#define TESTS_PUBLISH_MACHINE_H_

#include <boost/make_shared.hpp>
#include <functional>
#include <map>
#include <string>

#include "collect/kraid_collect_data.h"
#include "plugin/dispatch.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/repository.h"
#include "tests/fake_host.h"

/// All that the plug-in publishes on the sample machine, its manager's log included, without a
/// process and from any place. `change` may change what its tools print.
inline boost::shared_ptr<standin::Repository> PublishSampleMachine(
    const std::function<void(std::map<std::string, std::string>& outputs)>& change = nullptr) {
  FakeHost host;
  host.Load("sample");
  if (change) change(host.outputs);
  KraidCollectData collector(nullptr);
  collector.InitData();
  CollectRaidMgrData manager_log(nullptr, ManagerFolder("sample"));
  auto repository = boost::make_shared<standin::Repository>();
  for (const DispatchEntry& entry : DispatchList()) {
    Publish(entry.class_name,
            {repository, repository->GetClass(entry.class_name), collector, manager_log});
  }
  EXPECT_EQ(repository->GetUndeclared(), std::vector<std::string>());
  return repository;
}

#endif  // TESTS_PUBLISH_MACHINE_H_
