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

// Connects to the daemon once; false (after printing the failure line) when it cannot.
bool Connect();
void Disconnect();

// Prints "smgrctl: <operation>: <last error text>" on stderr and returns the exit status 1.
int Fail(const std::string& operation);
// Same with a text of our own (bad arguments and the like); exit status 2.
int Usage(const std::string& operation, const std::string& text);

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

// "12" selects by ID, anything else by name. The name must outlive the selector.
SMGR_OBJECT_SELECTOR ParseSelector(const std::string& text);

}  // namespace smgrctl
