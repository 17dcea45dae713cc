// Trace capture for tests: installs the companion services' capture hook and a
// level override for its lifetime.
#include "trace_capture.h"

#include <algorithm>

#include "util_dbg.h"

namespace smgr::test {

TraceCapture::TraceCapture(int nLevel) {
  smgr::util::SetDebugLevelOverride(nLevel);
  smgr::util::SetTraceCaptureHook([this](const char* szChannel, int nTraceLevel, const char* szFunction,
                                         const char* szFile, int nLine, const std::string& text) {
    std::lock_guard lock(mutex_);
    traces_.push_back({szChannel, nTraceLevel, szFunction, szFile, nLine, text});
  });
}

TraceCapture::~TraceCapture() {
  smgr::util::SetTraceCaptureHook(nullptr);
  smgr::util::SetDebugLevelOverride(-1);
}

std::vector<CapturedTrace> TraceCapture::traces() const {
  std::lock_guard lock(mutex_);
  return traces_;
}

std::vector<std::string> TraceCapture::texts() const {
  std::lock_guard lock(mutex_);
  std::vector<std::string> texts;
  for (const auto& trace : traces_) texts.push_back(trace.text);
  return texts;
}

bool TraceCapture::has(const std::string& text) const {
  std::lock_guard lock(mutex_);
  return std::any_of(traces_.begin(), traces_.end(), [&](const CapturedTrace& t) { return t.text == text; });
}

bool TraceCapture::hasFragment(const std::string& fragment) const {
  std::lock_guard lock(mutex_);
  return std::any_of(traces_.begin(), traces_.end(),
                     [&](const CapturedTrace& t) { return t.text.find(fragment) != std::string::npos; });
}

void TraceCapture::clear() {
  std::lock_guard lock(mutex_);
  traces_.clear();
}

}  // namespace smgr::test
