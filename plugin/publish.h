#ifndef PLUGIN_PUBLISH_H_
#define PLUGIN_PUBLISH_H_

#include <algorithm>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

#include "collect/kraid_collect_data.h"
#include "hmz/cim_object_model.h"
#include "hmz/cim_value.h"
#include "model/kraid_controller.h"

class CollectRaidMgrData;

/// What the publishing of one requested class works with.
struct PublishContext {
  boost::shared_ptr<NKVXHMZ20::ICIMNamespace> cim_namespace;
  boost::shared_ptr<NKVXHMZ20::ICIMClass> cim_class;  // the requested one
  KraidCollectData& collector;
  CollectRaidMgrData& manager_log;
};

/// One property of a published class. Tables of rows are in the order in which the properties are
/// set; a property that stands twice is set twice.
template <class Source>
struct PropertyRow {
  const char* name;
  NKVXHMZ20::TCIMValue (*value)(const Source&);
};

/// A record together with the controller that it belongs to: the source of most classes.
template <class Record>
struct Child {
  const KRaidController& controller;
  const Record& record;
};

// What a row's value may come from. Texts are published as they are.

/// What a getter of the source returns.
template <auto Getter, class Source>
NKVXHMZ20::TCIMValue Value(const Source& source) {
  return NKVXHMZ20::TCIMValue((source.*Getter)());
}

/// What a getter of the record returns.
template <auto Getter, class Record>
NKVXHMZ20::TCIMValue OfRecord(const Child<Record>& child) {
  return NKVXHMZ20::TCIMValue((child.record.*Getter)());
}

/// The number of the record's controller, asked of the controller.
template <class Record>
NKVXHMZ20::TCIMValue OwnersNumber(const Child<Record>& child) {
  return child.controller.GetControllerNum();
}

/// A text that can be the argument of a template.
template <std::size_t kSize>
struct FixedText {
  // NOLINTNEXTLINE(google-explicit-constructor): a literal is to become one
  constexpr FixedText(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); }
  char text[kSize];
};

/// Always the same text.
template <FixedText kText, class Source>
NKVXHMZ20::TCIMValue Fixed(const Source& /*source*/) {
  return kText.text;
}

/// The class of the computer system that all devices name as theirs; it is not published itself.
template <class Source>
NKVXHMZ20::TCIMValue SystemClass(const Source& /*source*/) {
  return "KVXSG_ComputerSystem";
}

/// The name of this machine.
NKVXHMZ20::TCIMValue MachineName();
template <class Source>
NKVXHMZ20::TCIMValue SystemName(const Source& /*source*/) {
  return MachineName();
}

/// An array of strings.
NKVXHMZ20::TCIMValue StringArray(std::initializer_list<std::string> texts);

/// Creates, fills and commits one instance of the class.
template <class Source, std::size_t kCount>
void PublishInstance(NKVXHMZ20::ICIMClass& cim_class, const PropertyRow<Source> (&rows)[kCount],
                     const Source& source) {
  const boost::shared_ptr<NKVXHMZ20::ICIMInstance> instance = cim_class.CreateInstance({});
  for (const PropertyRow<Source>& row : rows) {
    instance->SetPropertyValue(row.name, row.value(source), {});
  }
  instance->Commit({});
}

/// One instance for each record of each controller; `records` is the controller's getter.
template <class Record, std::size_t kCount>
void PublishChildren(const PublishContext& context,
                     std::vector<Record*> (KRaidController::*records)() const,
                     const PropertyRow<Child<Record>> (&rows)[kCount]) {
  for (const KRaidController* controller : context.collector.GetControllers()) {
    for (const Record* record : (controller->*records)()) {
      PublishInstance(*context.cim_class, rows, Child<Record>{*controller, *record});
    }
  }
}

/// Logs a message of the publishing code: the text, then the place.
void LogPublishing(const char* text);

#endif  // PLUGIN_PUBLISH_H_
