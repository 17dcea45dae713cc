// Building the metric families of one poll, label texts, and the registry of
// family collectors.
#include "snapshot.h"

#include <algorithm>
#include <cstring>

namespace exporter {

namespace {

// Length of the valid UTF-8 sequence at text[0..size), 0 when it is not one.
size_t Utf8SequenceLength(const unsigned char* text, size_t size) {
  const unsigned char lead = text[0];
  size_t length = 0;
  unsigned minimum = 0;
  unsigned code = 0;
  if (lead < 0x80) return 1;
  if ((lead & 0xE0) == 0xC0) {
    length = 2, minimum = 0x80, code = lead & 0x1F;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3, minimum = 0x800, code = lead & 0x0F;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4, minimum = 0x10000, code = lead & 0x07;
  } else {
    return 0;
  }
  if (length > size) return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((text[i] & 0xC0) != 0x80) return 0;
    code = (code << 6) | (text[i] & 0x3F);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < minimum || code > 0x10FFFF || surrogate ? 0 : length;
}

std::vector<std::pair<std::string, CollectorFactory>>& Collectors() {
  static std::vector<std::pair<std::string, CollectorFactory>> collectors;
  return collectors;
}

}  // namespace

std::string LabelText(const char* field, size_t fieldSize) {
  const size_t size = strnlen(field, fieldSize);
  const auto* bytes = reinterpret_cast<const unsigned char*>(field);
  std::string text;
  for (size_t i = 0; i < size;) {
    const size_t length = Utf8SequenceLength(bytes + i, size - i);
    if (length == 0) {
      text += "\xEF\xBF\xBD";
      ++i;
    } else {
      text.append(field + i, length);
      i += length;
    }
  }
  return text;
}

LabelList ObjectLabels(long id, const char* nameField, size_t nameFieldSize) {
  return {{"id", std::to_string(id)}, {"name", LabelText(nameField, nameFieldSize)}};
}

prometheus::ClientMetric& SnapshotBuilder::add(const std::string& name, const std::string& help,
                                               prometheus::MetricType type, const LabelList& labels) {
  auto [it, added] = index_.try_emplace(name, families_.size());
  if (added) {
    prometheus::MetricFamily family;
    family.name = name;
    family.help = help;
    family.type = type;
    families_.push_back(std::move(family));
  }
  prometheus::ClientMetric& metric = families_[it->second].metric.emplace_back();
  for (const auto& [label, value] : labels) metric.label.push_back({label, value});
  return metric;
}

void SnapshotBuilder::gauge(const std::string& name, const std::string& help, const LabelList& labels,
                            double value) {
  add(name, help, prometheus::MetricType::Gauge, labels).gauge.value = value;
}

void SnapshotBuilder::counter(const std::string& name, const std::string& help, const LabelList& labels,
                              uint64_t raw) {
  std::string key = name;
  for (const auto& [label, value] : labels) key += '\0' + label + '\0' + value;
  add(name, help, prometheus::MetricType::Counter, labels).counter.value = counters_.next(key, raw);
}

void SnapshotBuilder::states(const std::string& name, const std::string& help, const LabelList& labels,
                             const std::vector<std::pair<int, std::string>>& known, int current) {
  bool listed = false;
  for (const auto& [value, text] : known) {
    LabelList withState = labels;
    withState.emplace_back("state", text);
    gauge(name, help, withState, value == current ? 1 : 0);
    listed = listed || value == current;
  }
  if (!listed) {  // a state this exporter does not know: still shown, by its number
    LabelList withState = labels;
    withState.emplace_back("state", std::to_string(current));
    gauge(name, help, withState, 1);
  }
}

CollectorRegistration::CollectorRegistration(const char* name, CollectorFactory factory) {
  Collectors().emplace_back(name, factory);
}

std::vector<std::pair<std::string, CollectorFactory>> RegisteredCollectors() {
  auto collectors = Collectors();
  std::sort(collectors.begin(), collectors.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  return collectors;
}

}  // namespace exporter
