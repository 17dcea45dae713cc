// Output helpers of smgrctl: tables, JSON, failure lines and value names taken
// from the library itself so that the CLI shows the system's own texts.
#include "output.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <sstream>
#include <string_view>

#include "exit_codes.h"

namespace smgrctl {
namespace {
bool g_connected = false;
int g_reportedStatus = 0;
}  // namespace

GlobalOptions& Globals() {
  static GlobalOptions options;
  return options;
}

bool Connect() {
  if (g_connected) return true;
  DWORD version = 0;
  if (!SessMgrLib_Init(SMGR_API_VERSION_1_0, &version)) {
    const SMGR_RESULT code = SessMgr_GetLastError();
    const int error = SessMgr_GetLastErrno();
    char text[256];
    SessMgr_GetLastErrorString(text, sizeof text);
    const char* queue = getenv("SESSMGR_DAEMON_QUEUE");
    std::string message = text;
    if (error == ENOENT) {
      message = std::string("no daemon serves the queue ") + (queue && *queue ? queue : "/vdsessmgr") + " (" +
                text + ")";
    } else if (error == EMFILE || error == ENOSPC) {
      message +=
          "; the per-user message-queue memory is used up: look at /dev/mqueue "
          "(mount -t mqueue none /dev/mqueue) for queues left behind";
    }
    FailWith("connect to sessmgrd", code, message, kExitUnreachable);
    return false;
  }
  g_connected = true;
  return true;
}

void Disconnect() {
  if (!g_connected) return;
  SessMgrLib_Shutdown();
  g_connected = false;
}

int FailWith(const std::string& operation, SMGR_RESULT code, const std::string& text, int status) {
  if (Globals().json) {
    const std::string symbol = ResultSymbol(code);
    nlohmann::ordered_json error{
        {"code", code},
        {"symbol", symbol.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(symbol)},
        {"text", text},
        {"operation", operation}};
    std::cout << nlohmann::ordered_json{{"error", error}}.dump() << "\n";
  } else {
    std::cerr << "smgrctl: " << operation << ": " << text << "\n";
  }
  g_reportedStatus = status;
  return status;
}

int Fail(const std::string& operation) {
  const SMGR_RESULT code = SessMgr_GetLastError();
  char text[256];
  SessMgr_GetLastErrorString(text, sizeof text);
  const ExitStatus status = ExitStatusOf(code);
  return FailWith(operation, code, text, status == kExitSuccess ? kExitRefused : status);
}

int Usage(const std::string& operation, const std::string& text) {
  return FailWith(operation, SMGR_ERROR_INVALID_PARAMETERS, text, kExitUsage);
}

int ReportedFailureStatus() { return g_reportedStatus; }

void Table::alignRight(const std::string& header) {
  right_.resize(headers_.size(), false);
  for (size_t i = 0; i < headers_.size(); ++i) {
    if (headers_[i] == header) right_[i] = true;
  }
}

std::string Table::render() const {
  std::vector<size_t> width(headers_.size(), 0);
  for (size_t i = 0; i < headers_.size(); ++i) width[i] = headers_[i].size();
  for (const auto& row : rows_) {
    for (size_t i = 0; i < row.size() && i < width.size(); ++i) width[i] = std::max(width[i], row[i].size());
  }
  std::ostringstream out;
  auto line = [&](const std::vector<std::string>& cells) {
    std::string text;
    for (size_t i = 0; i < width.size(); ++i) {
      const std::string cell = i < cells.size() ? cells[i] : "";
      const std::string pad(width[i] - cell.size(), ' ');
      const bool right = i < right_.size() && right_[i];
      if (i) text += "  ";
      text += right ? pad + cell : cell + (i + 1 < width.size() ? pad : "");
    }
    out << text << "\n";
  };
  line(headers_);
  for (const auto& row : rows_) line(row);
  return out.str();
}

void PrintJson(const nlohmann::json& value) { std::cout << value.dump(2) << "\n"; }

// Every value name of the library through one buffer of the right size.
std::string ValueText(char* (*nameOf)(int, char*, size_t), int value) {
  char text[128];
  return nameOf(value, text, sizeof text);
}

std::string AddressText(const SMGR_IP_ADDRESS& address) {
  char text[600];
  return SessMgr_GetIPAddressString(&address, text, sizeof text);
}

std::string DurationText(uint64_t seconds) {
  char text[32];
  if (seconds >= 86400) {
    snprintf(
        text, sizeof text, "%llud %02llu:%02llu:%02llu", static_cast<unsigned long long>(seconds / 86400),
        static_cast<unsigned long long>(seconds / 3600 % 24),
        static_cast<unsigned long long>(seconds / 60 % 60), static_cast<unsigned long long>(seconds % 60));
  } else {
    snprintf(text, sizeof text, "%02llu:%02llu:%02llu", static_cast<unsigned long long>(seconds / 3600),
             static_cast<unsigned long long>(seconds / 60 % 60),
             static_cast<unsigned long long>(seconds % 60));
  }
  return text;
}

SMGR_OBJECT_SELECTOR ParseSelector(const std::string& text) {
  SMGR_OBJECT_SELECTOR selector{};
  std::string_view digits = text;
  bool byId = false;
  if (text.rfind("id:", 0) == 0) {
    digits.remove_prefix(3);
    byId = true;
  }
  const bool numeric =
      !digits.empty() && digits.size() < 10 &&
      std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isdigit(c); });
  if (numeric && (byId || text.rfind("name:", 0) != 0)) {
    selector.enType = SMGR_SELECTBY_OBJECT_ID;
    selector.Via.ID = std::stoi(std::string(digits));
  } else {
    selector.enType = SMGR_SELECTBY_OBJECT_NAME;
    selector.Via.szName = text.c_str() + (text.rfind("name:", 0) == 0 ? 5 : 0);
  }
  return selector;
}

std::string TimestampText() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  char text[48];
  size_t used = strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
  used += snprintf(text + used, sizeof text - used, ".%03ld", now.tv_nsec / 1000000);
  strftime(text + used, sizeof text - used, "%z", &local);
  return text;
}

}  // namespace smgrctl
