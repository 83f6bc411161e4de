#ifndef TESTS_PUBLISH_MACHINE_H_
#define TESTS_PUBLISH_MACHINE_H_

#include <boost/make_shared.hpp>

#include "collect/kraid_collect_data.h"
#include "plugin/dispatch.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/repository.h"
#include "tests/fake_host.h"

/// All that the plug-in publishes on the sample machine, its manager's log included, without a
/// process and from any place.
inline boost::shared_ptr<standin::Repository> PublishSampleMachine() {
  FakeHost host;
  host.Load("sample");
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
