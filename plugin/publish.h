#ifndef PLUGIN_PUBLISH_H_
#define PLUGIN_PUBLISH_H_

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>

#include "hmz/cim_object_model.h"
#include "hmz/cim_value.h"

class KraidCollectData;

/// What the publishing of one requested class works with.
struct PublishContext {
  boost::shared_ptr<NKVXHMZ20::ICIMNamespace> cim_namespace;
  boost::shared_ptr<NKVXHMZ20::ICIMClass> cim_class;  // the requested one
  KraidCollectData& collector;
};

/// One property of a published class. Tables of rows are in the order in which the properties are
/// set; a property that stands twice is set twice.
template <class Source>
struct PropertyRow {
  const char* name;
  NKVXHMZ20::TCIMValue (*value)(const Source&);
};

/// The value of a row that publishes what a getter returns, as it is.
template <auto Getter, class Source>
NKVXHMZ20::TCIMValue Value(const Source& source) {
  return NKVXHMZ20::TCIMValue((source.*Getter)());
}

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

/// Logs a message of the publishing code: the text, then the place.
void LogPublishing(const char* text);

#endif  // PLUGIN_PUBLISH_H_
