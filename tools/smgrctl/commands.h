// How command groups plug into smgrctl: each noun file (stream.cpp, debug.cpp,
// ...) defines one static CommandGroup that adds its subcommands when main()
// builds the application. Option values live in storage the group asks the
// Command for, owned by the application, not in function statics.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

namespace smgrctl {

// What a group gets while it adds its subcommands.
class Command {
 public:
  explicit Command(CLI::App& app) : app_(app) {}
  CLI::App& app() { return app_; }
  // The exit status of the command that ran; callbacks assign it.
  int& status() { return status_; }
  // Storage for one subcommand's option values, alive as long as the application.
  template <typename T>
  T& keep() {
    auto owned = std::make_shared<T>();
    storage_.push_back(owned);
    return *owned;
  }

 private:
  CLI::App& app_;
  int status_ = 0;
  std::vector<std::shared_ptr<void>> storage_;
};

using AddCommandsFn = void (*)(Command& command);

// Static registration of one noun's commands; main() adds every group in name order.
struct CommandGroup {
  CommandGroup(const char* name, AddCommandsFn add);
};

// Adds every registered group to the command's application.
void AddRegisteredCommands(Command& command);

// What smgrctl --version prints: the CLI's version and the loaded library's version record.
std::string VersionText();

// The words that may follow `words` on the command line (subcommands and options of
// the command they name), one per line: the bash completion asks for them.
std::string CompletionWords(CLI::App& app, const std::vector<std::string>& words);

}  // namespace smgrctl
