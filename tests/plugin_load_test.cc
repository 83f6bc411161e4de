// The plug-in as a file that a host loads.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <cstring>
#include <stdexcept>

#include "hmz/root_object.h"
#include "standin/plugin_manager.h"
#include "standin/registry.h"
#include "standin/repository.h"
#include "tests/fake_host.h"

namespace {

using namespace NKVXHMZ20;  // NOLINT(google-build-using-namespace): the host's whole face
using Classes = std::vector<boost::shared_ptr<ICIMClass>>;

constexpr char kPlugin[] = KRAID_BUILD_DIR "/lib/libkraid.pi.so";
constexpr char kControllers[] = "KVXSG_krSCSIProtocolController";
constexpr char kRawData[] = "KVXSG_krRawData";

class PluginLoad : public testing::Test {
 protected:
  PluginLoad() { host_.outputs["./kraid/kelvcmd getconfig 1 al"] = kMinimalConfig; }

  Classes ClassesOf(const std::vector<std::string>& names) {
    Classes classes;
    classes.reserve(names.size());
    for (const std::string& name : names) classes.push_back(repository_->GetOrDeclareClass(name));
    return classes;
  }

  /// One request for these classes; the classes of what it commits, by what is behind "KVXSG_kr".
  std::string Ask(standin::LoadedPlugin& plugin, const std::vector<std::string>& names) {
    repository_ = boost::make_shared<standin::Repository>();
    Classes classes = ClassesOf(names);
    plugin.GetQueries().GetData(repository_, classes);
    std::string committed;
    for (const auto& instance : repository_->GetCommitted()) {
      committed += instance->class_name->substr(8) + " ";
    }
    return committed;
  }

  FakeHost host_;
  boost::shared_ptr<standin::Repository> repository_ = boost::make_shared<standin::Repository>();
};

/// The slots that calls of these virtual operations take, as the ABI writes them into pointers.
template <class... Operation>
std::vector<std::size_t> SlotsOf(Operation... operations) {
  const auto slot = [](auto operation) {
    std::size_t words[2];
    static_assert(sizeof words == sizeof operation);
    std::memcpy(words, &operation, sizeof words);
    return words[0] / sizeof(void*);
  };
  return {slot(operations)...};
}

TEST(Slots, StandInTheOrderInWhichHostAndPluginsCallThem) {
  using I = ICIMInstance;
  using P = IPluginCallbacks;
  using Order = std::vector<std::size_t>;
  EXPECT_EQ(SlotsOf(&P::GetType, &P::GetName, &P::GetVersion, &P::GetInterfaceVersion,
                    &P::PrepareForUnload, &P::Init, &P::DeInit),
            (Order{2, 3, 4, 5, 6, 7, 8}));  // behind the destructor's two
  EXPECT_EQ(SlotsOf(&IPluginBasicQueryCallbacks::GetData), Order{2});
  EXPECT_EQ(SlotsOf(&ICIMClass::GetName, &ICIMClass::CreateInstance, &ICIMClass::EnumerateInstances,
                    &ICIMNamespace::GetClass, &ICIMProperty::GetValue, &ICoreLogger::Log),
            (Order{0, 1, 2, 0, 0, 0}));
  EXPECT_EQ(SlotsOf(&I::Commit, &I::GetReference, &I::GetProperty, &I::SetPropertyValue),
            (Order{0, 1, 2, 3}));
  EXPECT_EQ(SlotsOf(&TPluginManagerNamespace::RegisterPlugin), Order{3});
}

/// Calls the operation in a slot of the table that the object begins with.
template <class Result, class... Arguments>
Result CallSlot(void* object, std::size_t slot, Arguments... arguments) {
  void* const* table = *static_cast<void***>(object);
  return reinterpret_cast<Result (*)(void*, Arguments...)>(table[slot])(object, arguments...);
}

class KeepingManager final : public TPluginManagerNamespace {
 public:
  boost::shared_ptr<ICIMClass> GetClass(const std::string& /*name*/) override { return nullptr; }
  void RegisterPlugin(IPluginCallbacks* callbacks) override { registered.push_back(callbacks); }
  std::vector<IPluginCallbacks*> registered;
};

TEST_F(PluginLoad, AnswersAHostThatKnowsOnlyTheEntryAndTheNumbersOfSlots) {
  const auto manager = boost::make_shared<KeepingManager>();
  const auto standin_manager = TRootObject::GetPluginManager();
  standin::SetPluginManager(manager);
  void* library = dlopen(kPlugin, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr);
  const auto entry = reinterpret_cast<void (*)()>(dlsym(library, "KRPluginInit"));
  ASSERT_NE(entry, nullptr);
  entry();  // once more: loading has called it
  standin::SetPluginManager(standin_manager);
  ASSERT_EQ(manager->registered.size(), 2U);
  for (IPluginCallbacks* callbacks : manager->registered) {
    // The second interface stands behind the first one's table and provider.
    char* const object = static_cast<char*>(dynamic_cast<void*>(callbacks));
    void* const queries = dynamic_cast<IPluginBasicQueryCallbacks*>(callbacks);
    ASSERT_EQ(static_cast<void*>(callbacks), object);
    ASSERT_EQ(queries, object + 2 * sizeof(void*));
    EXPECT_EQ(CallSlot<int>(object, 2), 0);
    EXPECT_EQ(CallSlot<std::string>(object, 3), "Kraid collector");
    EXPECT_EQ(CallSlot<std::string>(object, 4), "1.0");
    EXPECT_EQ(CallSlot<std::string>(object, 5), "1.0");
    CallSlot<void>(object, 7);
    CallSlot<void>(object, 8);
    Classes classes = ClassesOf({kControllers});
    for (const auto& [table, slot] : {std::pair<void*, std::size_t>(object, 9), {queries, 2}}) {
      const std::size_t before = repository_->GetCommitted().size();
      CallSlot<void, boost::shared_ptr<ICIMNamespace>, Classes&>(table, slot, repository_, classes);
      EXPECT_EQ(repository_->GetCommitted().size(), before + 1);
    }
    CallSlot<void>(object, 6);  // it deletes itself
  }
  dlclose(library);
}

TEST_F(PluginLoad, CollectsOnceForEachLoading) {
  {
    standin::LoadedPlugin plugin(kPlugin);
    EXPECT_NE(plugin.GetCallbacks().provider, nullptr);
    EXPECT_EQ(Ask(plugin, {}), "");  // nothing asked for, collected all the same
    const std::size_t runs = host_.runs.size();
    EXPECT_EQ(runs, 64U + 8U + 7U + 16U + 8U + 8U + 8U);
    host_.outputs["./kraid/kelvcmd getconfig 2 al"] = kMinimalConfig;
    EXPECT_EQ(Ask(plugin, {kControllers, "Unknown", kRawData, kRawData}),
              "SCSIProtocolController RawData RawData ");
    EXPECT_EQ(Ask(plugin, {kRawData, kControllers}), "RawData SCSIProtocolController ");
    EXPECT_EQ(host_.runs.size(), runs);
  }
  EXPECT_EQ(dlopen(kPlugin, RTLD_NOW | RTLD_NOLOAD), nullptr);  // it is gone
  standin::LoadedPlugin plugin(kPlugin);
  EXPECT_EQ(Ask(plugin, {kRawData}), "RawData RawData ");  // the second one, too
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
  EXPECT_EQ(Ask(plugin, {kRawData}), "RawData RawData ");
}

TEST_F(PluginLoad, RefusesWhatIsNoPlugin) {
  const auto refusal = [](const char* file) -> std::string {
    try {
      standin::LoadedPlugin plugin(file);
    } catch (const THMZException& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(refusal(KRAID_BUILD_DIR "/lib/libhmzcore.so"), "registers no plug-in");
  const standin::LoadedPlugin plugin(kPlugin);
  EXPECT_EQ(refusal(kPlugin), "registers no plug-in");  // loaded already
}

}  // namespace
