// smgrctl error CODE: the text of a result code, from the library alone (no daemon needed).
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "commands.h"
#include "exit_codes.h"
#include "output.h"

namespace smgrctl {
namespace {

int RunError(const std::string& text) {
  SMGR_RESULT code = 0;
  try {
    size_t used = 0;
    unsigned long long value = std::stoull(text, &used, 0);
    if (used != text.size() || value > 0xFFFFFFFFull) throw std::out_of_range("code");
    code = static_cast<SMGR_RESULT>(value);
  } catch (...) {
    return Usage("error", "\"" + text + "\" is not a result code (decimal or 0x hexadecimal)");
  }
  char message[256];
  SessMgr_GetErrorString(code, message, sizeof message);
  // A code the results header does not define: the library's fallback text, and a usage error.
  const std::string symbol = ResultSymbol(code);
  if (symbol.empty()) return Usage("error", message);
  if (Globals().json) {
    PrintJson({{"code", code},
               {"hex",
                [&] {
                  char hex[16];
                  snprintf(hex, sizeof hex, "0x%08X", code);
                  return std::string(hex);
                }()},
               {"symbol", symbol},
               {"text", message},
               {"warning", (code & SMGR_IS_SUCCESS_WITH_WARNING) != 0}});
  } else {
    std::cout << message << "\n";
  }
  return 0;
}

void AddErrorCommand(Command& command) {
  int& status = command.status();
  std::string& code = command.keep<std::string>();
  auto* error = command.app().add_subcommand("error", "Text of a result code (no daemon needed)");
  error->add_option("code", code, "Result code, decimal or 0x hexadecimal")->required();
  error->callback([&status, &code] { status = RunError(code); });
}

const CommandGroup kErrorCommand{"error", AddErrorCommand};

}  // namespace
}  // namespace smgrctl
