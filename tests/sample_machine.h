#ifndef TESTS_SAMPLE_MACHINE_H_
#define TESTS_SAMPLE_MACHINE_H_

#include <boost/make_shared.hpp>
#include <filesystem>
#include <string>

#include "collect/kraid_collect_data.h"
#include "plugin/dispatch.h"
#include "plugin/publishers.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/repository.h"
#include "tests/fake_host.h"
#include "tests/golden.h"

/// All that the plug-in publishes on the sample machine, its manager's log included, without a
/// process and from any place.
inline boost::shared_ptr<standin::Repository> PublishSampleMachine() {
  FakeHost host;
  for (const auto& file :
       std::filesystem::recursive_directory_iterator(KRAID_SOURCE_DIR "/demo/kraid")) {
    if (file.path().extension() != ".txt") continue;
    const std::filesystem::path number = file.path().parent_path();
    std::string command = file.path().stem().string();
    command.replace(command.find('-'), 1, " " + number.filename().string() + " ");
    host.outputs["./kraid/" + number.parent_path().stem().string() + " " + command] =
        ReadFile(file.path());
  }
  KraidCollectData collector(nullptr);
  collector.InitData();
  CollectRaidMgrData manager_log(nullptr, KRAID_SOURCE_DIR "/demo/KelvMgr/");
  auto repository = boost::make_shared<standin::Repository>();
  for (const DispatchEntry& entry : DispatchList()) {
    Publish(entry.class_name,
            {repository, repository->GetClass(entry.class_name), collector, manager_log});
  }
  return repository;
}

#endif  // TESTS_SAMPLE_MACHINE_H_
