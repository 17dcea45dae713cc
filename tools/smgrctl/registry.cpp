// The registry of smgrctl's command groups (see commands.h).
#include <map>
#include <string>

#include "commands.h"

namespace smgrctl {
namespace {

std::map<std::string, AddCommandsFn>& Groups() {
  static std::map<std::string, AddCommandsFn> groups;
  return groups;
}

}  // namespace

CommandGroup::CommandGroup(const char* name, AddCommandsFn add) { Groups().emplace(name, add); }

void AddRegisteredCommands(Command& command) {
  for (const auto& [name, add] : Groups()) add(command);
}

}  // namespace smgrctl
