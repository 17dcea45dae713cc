// Option words of smgrctl's video input, ROI and snapshot commands: a word
// from a short table (in any case) or a plain number, and the packed video
// format as text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace smgrctl {

using Choices = std::vector<std::pair<const char*, int>>;

// The number of a word of the table, or the number written; false for anything else.
inline bool ParseChoice(const std::string& text, const Choices& choices, int* value) {
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
  for (const auto& [word, number] : choices)
    if (lower == word) return *value = number, true;
  char* end = nullptr;
  const long number = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || number < INT32_MIN || number > INT32_MAX) return false;
  *value = static_cast<int>(number);
  return true;
}

inline std::string ChoiceWords(const Choices& choices) {
  std::string words;
  for (const auto& choice : choices) words += (words.empty() ? "" : ", ") + std::string(choice.first);
  return words;
}

// "1920x1080p50" for a packed VIDEO_FORMAT code, "none" for 1 (unknown), the number otherwise.
inline std::string VideoFormatText(int64_t format) {
  if (format == 1) return "none";
  if (format >= 0) return std::to_string(format);
  const uint64_t code = static_cast<uint64_t>(format);
  return std::to_string((code >> 22) & 0x1FFF) + "x" + std::to_string((code >> 9) & 0x1FFF) +
         ((code & 1) ? "i" : "p") + std::to_string((code >> 1) & 0xFF);
}

}  // namespace smgrctl
