// Output helpers of smgrctl: aligned text tables, JSON, the failure line, and
// the library session (initialised on first need, shut down at exit).
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sessmgr_api.h"

namespace smgrctl {

// Options every command shares.
struct GlobalOptions {
  bool json = false;
};
GlobalOptions& Globals();

// Connects to the daemon once; false (after reporting the failure, exit status 4)
// when it cannot.
bool Connect();
void Disconnect();

// Reports a failed operation from the calling thread's last error and returns its
// exit status (exit_codes.h): "smgrctl: <operation>: <text>" on stderr, or with
// --json one object {"error": {"code", "symbol", "text", "operation"}} on stdout.
int Fail(const std::string& operation);
// The same with a code, text and exit status of our own.
int FailWith(const std::string& operation, SMGR_RESULT code, const std::string& text, int status);
// Bad arguments: reported like a failure with code 2, exit status 2.
int Usage(const std::string& operation, const std::string& text);
// The exit status of the last failure reported (0 when none was): main() returns it
// for a command that failed, whatever non-zero status the command itself returned.
int ReportedFailureStatus();

class Table {
 public:
  explicit Table(std::vector<std::string> headers) : headers_(std::move(headers)) {}
  // Columns whose header is listed here are right-aligned (numbers).
  void alignRight(const std::string& header);
  void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  std::string render() const;
  bool empty() const { return rows_.empty(); }

 private:
  std::vector<std::string> headers_;
  std::vector<bool> right_;
  std::vector<std::vector<std::string>> rows_;
};

void PrintJson(const nlohmann::json& value);

// A library value name (SessMgr_Get...String) into std::string.
std::string ValueText(char* (*nameOf)(int, char*, size_t), int value);
std::string AddressText(const SMGR_IP_ADDRESS& address);
std::string DurationText(uint64_t seconds);

// A field of a packed record by value (a reference to it may be misaligned).
template <typename T>
constexpr T Val(T value) {
  return value;
}

// "12" and "id:12" select by ID, "name:12" and anything else by name (so that a name
// made of digits is still selectable). The text must outlive the selector.
SMGR_OBJECT_SELECTOR ParseSelector(const std::string& text);

// The local time as ISO 8601 with milliseconds and offset, for JSON samples.
std::string TimestampText();

}  // namespace smgrctl
