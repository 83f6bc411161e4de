#ifndef MODEL_OWNED_H_
#define MODEL_OWNED_H_

#include <memory>
#include <vector>

/// The objects that a container owns, as plain pointers for its readers.
template <class T>
std::vector<T*> PointersTo(const std::vector<std::unique_ptr<T>>& owned) {
  std::vector<T*> pointers;
  pointers.reserve(owned.size());
  for (const std::unique_ptr<T>& object : owned) pointers.push_back(object.get());
  return pointers;
}

/// The one that was added last; null when there is none.
template <class T>
T* LatestOf(const std::vector<std::unique_ptr<T>>& owned) {
  return owned.empty() ? nullptr : owned.back().get();
}

#endif  // MODEL_OWNED_H_
