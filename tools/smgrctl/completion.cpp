// The bash completion's helper: `smgrctl __complete WORD...` prints the
// subcommands and options that may follow the words, walking the same CLI11
// tree that parses the command line, so completion never lags behind a new noun.
#include <sstream>

#include "commands.h"

namespace smgrctl {

std::string CompletionWords(CLI::App& app, const std::vector<std::string>& words) {
  CLI::App* current = &app;
  for (const std::string& word : words) {
    if (word.empty() || word[0] == '-') continue;
    CLI::App* next = nullptr;
    for (CLI::App* sub : current->get_subcommands({})) {
      if (sub->get_name() == word) next = sub;
    }
    if (next == nullptr) break;  // a positional value: stay on this command
    current = next;
  }
  std::ostringstream out;
  for (CLI::App* sub : current->get_subcommands({})) out << sub->get_name() << "\n";
  for (const CLI::Option* option : current->get_options()) {
    for (const std::string& name : option->get_lnames()) out << "--" << name << "\n";
  }
  if (current != &app) {  // the global options go anywhere
    for (const CLI::Option* option : app.get_options()) {
      for (const std::string& name : option->get_lnames())
        if (name != "help") out << "--" << name << "\n";
    }
  }
  return out.str();
}

}  // namespace smgrctl
