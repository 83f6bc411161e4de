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
bool IsLoaded() {
  void* library = dlopen(kPlugin, RTLD_NOW | RTLD_NOLOAD);
  if (library != nullptr) dlclose(library);
  return library != nullptr;
}

class PluginLoad : public testing::Test {
 protected:
  /// One request for these classes; the number of instances that it commits.
  std::size_t Ask(standin::LoadedPlugin& plugin, const std::vector<std::string>& names) {
    const std::size_t before = repository_->GetCommitted().size();
    std::vector<boost::shared_ptr<NKVXHMZ20::ICIMClass>> classes;
    for (const std::string& name : names) classes.push_back(repository_->GetOrDeclareClass(name));
    plugin.GetQueries().GetData(repository_, classes);
    return repository_->GetCommitted().size() - before;
  }

  FakeHost host_;
  boost::shared_ptr<standin::Repository> repository_ = boost::make_shared<standin::Repository>();
};

TEST_F(PluginLoad, CollectsOnceForEachLoading) {
  host_.outputs["./kraid/kelvcmd getconfig 1 al"] = kMinimalConfig;
  {
    standin::LoadedPlugin plugin(kPlugin);
    EXPECT_NE(plugin.GetCallbacks().provider, nullptr);
    EXPECT_EQ(Ask(plugin, {}), 0U);  // nothing asked for, collected all the same
    const std::size_t runs = host_.runs.size();
    EXPECT_EQ(runs, 64U + 8U + 7U + 16U + 8U + 8U + 8U);
    host_.outputs["./kraid/kelvcmd getconfig 2 al"] = kMinimalConfig;
    EXPECT_EQ(Ask(plugin, {"KVXSG_krSCSIProtocolController", "Unknown", "KVXSG_krRawData"}), 2U);
    EXPECT_EQ(Ask(plugin, {"KVXSG_krSCSIProtocolController", "KVXSG_krSCSIProtocolController"}),
              2U);
    EXPECT_EQ(host_.runs.size(), runs);
    EXPECT_TRUE(IsLoaded());
  }
  EXPECT_FALSE(IsLoaded());
  standin::LoadedPlugin plugin(kPlugin);
  EXPECT_EQ(Ask(plugin, {"KVXSG_krSCSIProtocolController"}), 2U);  // the second one, too
}

TEST_F(PluginLoad, CollectsAgainAfterACollectionThatThrew) {
  host_.outputs["./kraid/kelvcmd getconfig 1 al"] = kMinimalConfig;
  host_.outputs["./kraid/kelvcmd getconfig 2 al"] =
      "Controller information\nPhysical device information\n";
  standin::LoadedPlugin plugin(kPlugin);
  EXPECT_THROW(Ask(plugin, {"KVXSG_krSCSIProtocolController"}), std::out_of_range);
  host_.outputs["./kraid/kelvcmd getconfig 2 al"] = kMinimalConfig;
  EXPECT_EQ(Ask(plugin, {"KVXSG_krSCSIProtocolController"}), 2U);
}

TEST_F(PluginLoad, PassesOnOtherExceptionsOfAToolRun) {
  host_.before_run = [](const std::string&) { throw std::bad_alloc(); };
  standin::LoadedPlugin plugin(kPlugin);
  EXPECT_THROW(Ask(plugin, {}), std::bad_alloc);
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
  EXPECT_NE(refusal("/absent.so").find("cannot be loaded"), std::string::npos);
  EXPECT_EQ(refusal(KRAID_BUILD_DIR "/lib/libhmzcore.so"), "registers no plug-in");
  const standin::LoadedPlugin plugin(kPlugin);
  EXPECT_EQ(refusal(kPlugin), "registers no plug-in");  // loaded already
}

}  // namespace
