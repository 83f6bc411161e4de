// The plug-in as a file that a host loads.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <stdexcept>

#include "standin/plugin_manager.h"
#include "standin/repository.h"
#include "tests/fake_host.h"

namespace {

constexpr char kPlugin[] = KRAID_BUILD_DIR "/lib/libkraid.pi.so";
constexpr char kControllers[] = "KVXSG_krSCSIProtocolController";

class PluginLoad : public testing::Test {
 protected:
  PluginLoad() { host_.outputs["./kraid/kelvcmd getconfig 1 al"] = kMinimalConfig; }

  /// One request for these classes; the number of instances that it commits.
  std::size_t Ask(standin::LoadedPlugin& plugin, const std::vector<std::string>& names) {
    const std::size_t before = repository_->GetCommitted().size();
    std::vector<boost::shared_ptr<NKVXHMZ20::ICIMClass>> classes;
    classes.reserve(names.size());
    for (const std::string& name : names) classes.push_back(repository_->GetOrDeclareClass(name));
    plugin.GetQueries().GetData(repository_, classes);
    return repository_->GetCommitted().size() - before;
  }

  FakeHost host_;
  boost::shared_ptr<standin::Repository> repository_ = boost::make_shared<standin::Repository>();
};

TEST_F(PluginLoad, CollectsOnceForEachLoading) {
  {
    standin::LoadedPlugin plugin(kPlugin);
    NKVXHMZ20::IPluginCallbacks& callbacks = plugin.GetCallbacks();
    EXPECT_NE(callbacks.provider, nullptr);
    EXPECT_EQ(callbacks.GetType(), 0);
    EXPECT_EQ(callbacks.GetName() + " " + callbacks.GetVersion(), "Kraid collector 1.0");
    EXPECT_EQ(Ask(plugin, {}), 0U);  // nothing asked for, collected all the same
    const std::size_t runs = host_.runs.size();
    EXPECT_EQ(runs, 64U + 8U + 7U + 16U + 8U + 8U + 8U);
    host_.outputs["./kraid/kelvcmd getconfig 2 al"] = kMinimalConfig;
    EXPECT_EQ(Ask(plugin, {kControllers, "Unknown", "KVXSG_krRawData"}), 2U);
    EXPECT_EQ(Ask(plugin, {kControllers, kControllers}), 2U);
    EXPECT_EQ(host_.runs.size(), runs);
  }
  EXPECT_EQ(dlopen(kPlugin, RTLD_NOW | RTLD_NOLOAD), nullptr);  // it is gone
  standin::LoadedPlugin plugin(kPlugin);
  EXPECT_EQ(Ask(plugin, {kControllers}), 2U);  // the second one, too
}

TEST_F(PluginLoad, CollectsAgainAfterACollectionThatThrew) {
  standin::LoadedPlugin plugin(kPlugin);
  host_.before_run = [](const std::string&) { throw std::bad_alloc(); };
  EXPECT_THROW(Ask(plugin, {}), std::bad_alloc);
  host_.before_run = nullptr;
  host_.outputs["./kraid/kelvcmd getconfig 2 al"] =
      "Controller information\nPhysical device information\n";
  EXPECT_THROW(Ask(plugin, {kControllers}), std::out_of_range);
  host_.outputs["./kraid/kelvcmd getconfig 2 al"] = kMinimalConfig;
  EXPECT_EQ(Ask(plugin, {kControllers}), 2U);
}

TEST_F(PluginLoad, RefusesWhatIsNoPlugin) {
  const auto refusal = [](const char* file) -> std::string {
    try {
      standin::LoadedPlugin plugin(file);
    } catch (const NKVXHMZ20::THMZException& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(refusal(KRAID_BUILD_DIR "/lib/libhmzcore.so"), "registers no plug-in");
  const standin::LoadedPlugin plugin(kPlugin);
  EXPECT_EQ(refusal(kPlugin), "registers no plug-in");  // loaded already
}

}  // namespace
