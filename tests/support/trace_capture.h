// Collects the traces of every debug channel for one scope (all channels forced to
// a level, capture hook installed), so tests can check the exact trace texts.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace smgr::test {

struct CapturedTrace {
  std::string channel;
  int level;
  std::string function;
  std::string file;
  int line;
  std::string text;  // as formatted, trailing newline included
};

class TraceCapture {
 public:
  explicit TraceCapture(int nLevel = 7);
  ~TraceCapture();
  TraceCapture(const TraceCapture&) = delete;
  TraceCapture& operator=(const TraceCapture&) = delete;

  std::vector<CapturedTrace> traces() const;
  // Texts only, in order.
  std::vector<std::string> texts() const;
  // TRUE when some trace's text equals `text` exactly.
  bool has(const std::string& text) const;
  // TRUE when some trace's text contains `fragment`.
  bool hasFragment(const std::string& fragment) const;
  void clear();

 private:
  mutable std::mutex mutex_;
  std::vector<CapturedTrace> traces_;
};

}  // namespace smgr::test
