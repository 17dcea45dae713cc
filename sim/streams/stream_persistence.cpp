// What of the streams survives a restart of the simulator, and what goes with
// a client: the "streams" section of the appliance state, and the hook that
// drops a departed client's opens.
#include <cstring>

#include "persistence.h"
#include "sim_log.h"
#include "stream_model.h"

namespace sim {
namespace {

// The information record as hexadecimal text without its trailing zero bytes
// (most of it is unused text fields): exact, and small in the state file.
std::string ToHex(const void* data, size_t size) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  while (size > 0 && bytes[size - 1] == 0) --size;
  static const char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(size * 2);
  for (size_t i = 0; i < size; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  return text;
}

bool FromHex(const std::string& text, void* data, size_t size) {
  if (text.size() % 2 || text.size() / 2 > size) return false;
  auto digit = [](char c) {
    return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
  };
  auto* bytes = static_cast<uint8_t*>(data);
  memset(bytes, 0, size);
  for (size_t i = 0; i < text.size() / 2; ++i) {
    const int high = digit(text[2 * i]), low = digit(text[2 * i + 1]);
    if (high < 0 || low < 0) return false;
    bytes[i] = static_cast<uint8_t>(high << 4 | low);
  }
  return true;
}

// A field of a saved entry, or the fallback when it is missing or of another type.
template <typename T>
T Field(const nlohmann::json& object, const char* key, T fallback) {
  if (!object.is_object() || !object.contains(key)) return fallback;
  try {
    return object.at(key).get<T>();
  } catch (const nlohmann::json::exception&) {
    return fallback;
  }
}

}  // namespace

nlohmann::json StreamModel::save() const {
  auto runName = [](Run run) {
    return run == Run::kRunning ? "running" : run == Run::kPaused ? "paused" : "stopped";
  };
  nlohmann::json streams = nlohmann::json::array();
  for (const auto& [id, stream] : streams_) {
    if (stream.info.bNonPersistent) continue;  // kept out of the saved configuration by request
    streams.push_back({{"id", id},
                       {"name", stream.info.szName},
                       {"run", runName(stream.run)},
                       {"auto_start", stream.autoStart != FALSE},
                       {"bitrate_kbps", stream.bitRateKbps},
                       {"info", ToHex(&stream.info, sizeof stream.info)}});
  }
  return {{"next_id", nextId_}, {"streams", streams}};
}

void StreamModel::load(const nlohmann::json& section) {
  streams_.clear();
  nextId_ = 1;
  if (!section.is_object()) return;
  const int64_t now = appliance_.nowMs();
  for (const auto& entry : Field(section, "streams", nlohmann::json::array())) {
    Stream stream;
    const int id = Field(entry, "id", 0);
    const bool valid = id > 0 &&
                       FromHex(Field(entry, "info", std::string()), &stream.info, sizeof stream.info) &&
                       stream.info.nIndex == id && !streams_.count(id) &&
                       Terminated(stream.info.szName, sizeof stream.info.szName);
    if (!valid) {
      SIM_LOG_WARN("saved stream %s is unreadable, left out", entry.dump().substr(0, 80).c_str());
      continue;
    }
    stream.autoStart = Field(entry, "auto_start", false) ? TRUE : FALSE;
    stream.bitRateKbps = Field(entry, "bitrate_kbps", 0);
    Stream& restored = streams_.emplace(id, stream).first->second;
    const std::string run = Field(entry, "run", std::string("stopped"));
    if (run != "stopped") doStart(restored, now);
    if (run == "paused") {
      closeSegment(restored, now);
      restored.run = Run::kPaused;
    }
  }
  const int nextId = Field(section, "next_id", 1);
  nextId_ = nextId >= 1 && nextId <= kMaxStreamId ? nextId : 1;
  SIM_LOG_INFO("%zu saved streams restored", streams_.size());
}

namespace {

// Streams use the content sources of the encoder and metadata families: they load after them.
const PersistedSection kStreamSection{
    "streams", 50, [](Appliance& appliance) { return appliance.family<StreamModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& section) {
      appliance.family<StreamModel>().load(section);
    }};

const ClientDepartureHook kStreamOpens{"streams", [](Appliance& appliance, pid_t pid) {
                                         const int dropped = appliance.family<StreamModel>().dropClient(pid);
                                         if (dropped)
                                           SIM_LOG_INFO("pid %d left %d stream opens", pid, dropped);
                                       }};

}  // namespace
}  // namespace sim
