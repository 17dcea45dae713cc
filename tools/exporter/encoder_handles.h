// The open handles of a handle-based family (video and audio encoders), kept
// across polls so that a poll costs one statistics request per encoder, not an
// open and a close as well. Handles die with the connection.
#pragma once

#include <map>
#include <set>
#include <string>

namespace exporter {

template <typename Handle, auto Open, auto Close>
class HandleCache {
 public:
  ~HandleCache() { forget(); }
  // The handle of the named object, opened on first use; nullptr when the open failed.
  Handle get(const std::string& name) {
    seen_.insert(name);
    auto it = handles_.find(name);
    if (it != handles_.end()) return it->second;
    Handle handle = nullptr;
    if (!Open(name.c_str(), &handle)) return nullptr;
    handles_[name] = handle;
    return handle;
  }
  // After a poll: closes the handles of objects the enumeration no longer lists.
  void closeUnseen() {
    for (auto it = handles_.begin(); it != handles_.end();) {
      if (seen_.count(it->first)) {
        ++it;
        continue;
      }
      Close(&it->second);
      it = handles_.erase(it);
    }
    seen_.clear();
  }
  // The connection is gone: the library's shutdown frees the handles itself.
  void forget() {
    handles_.clear();
    seen_.clear();
  }

 private:
  std::map<std::string, Handle> handles_;
  std::set<std::string> seen_;
};

}  // namespace exporter
