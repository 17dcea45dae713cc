// Parsing of the appliance profile: the embedded default and the JSON overlay.
// Object lists accept a count ("video_encoders": 4) or explicit objects.
#include "profile.h"

#include <fstream>
#include <sstream>

namespace sim {
namespace {

constexpr const char* kDefaultProfile = R"json({
  "model": "simulated 4-channel SDI encoder",
  "personality": "SDI",
  "card_type": 7,
  "stream_limit": 16,
  "watchdog": true,
  "video_encoders": {"count": 4, "name": "venc", "bitrate_kbps": 4000},
  "audio_encoders": {"count": 8, "name": "aenc", "bitrate_kbps": 128},
  "video_inputs": {"count": 4, "name": "sdi"},
  "metadata_sources": {"count": 2, "name": "klv", "bitrate_kbps": 64}
})json";

// Reads one object list: a count, {"count","name","bitrate_kbps"} or an array of objects.
bool ReadObjects(const nlohmann::json& node, const char* key, std::vector<ProfileObject>* out,
                 std::string* error) {
  if (!node.contains(key)) return true;
  const nlohmann::json& value = node.at(key);
  std::string prefix = "obj";
  int bitRate = 0;
  int count = -1;
  if (value.is_number_integer()) {
    count = value.get<int>();
    if (!out->empty()) {
      prefix = out->front().name.substr(0, out->front().name.find_first_of("0123456789"));
      bitRate = out->front().bitRateKbps;
    }
  } else if (value.is_object()) {
    count = value.value("count", 0);
    prefix = value.value("name", std::string(key));
    bitRate = value.value("bitrate_kbps", 0);
  } else if (value.is_array()) {
    out->clear();
    int nextId = 1;
    for (const auto& item : value) {
      if (!item.is_object()) {
        *error = std::string(key) + ": every entry must be an object";
        return false;
      }
      ProfileObject object;
      object.id = item.value("id", nextId);
      object.name = item.value("name", std::string(key) + std::to_string(object.id));
      object.bitRateKbps = item.value("bitrate_kbps", 0);
      if (object.name.size() > 63) {
        *error = std::string(key) + ": name longer than 63 characters";
        return false;
      }
      nextId = object.id + 1;
      out->push_back(object);
    }
    return true;
  } else {
    *error = std::string(key) + ": expected a count, an object or an array";
    return false;
  }
  if (count < 0 || count > 64) {
    *error = std::string(key) + ": count must be 0 to 64";
    return false;
  }
  out->clear();
  for (int i = 1; i <= count; ++i) out->push_back({i, prefix + std::to_string(i), bitRate});
  return true;
}

}  // namespace

const char* ApplianceProfile::DefaultJson() { return kDefaultProfile; }

ApplianceProfile ApplianceProfile::Default() {
  ApplianceProfile profile;
  std::string error;
  FromJson(nlohmann::json::object(), &profile, &error);
  return profile;
}

bool ApplianceProfile::FromJson(const nlohmann::json& overlay, ApplianceProfile* profile,
                                std::string* error) {
  try {
    if (!overlay.is_object()) {
      *error = "the profile must be a JSON object";
      return false;
    }
    nlohmann::json doc = nlohmann::json::parse(kDefaultProfile);
    ApplianceProfile result;
    const nlohmann::json* layers[] = {&doc, &overlay};
    for (const nlohmann::json* layer : layers) {
      const nlohmann::json& node = *layer;
      if (node.contains("model")) result.model = node.at("model").get<std::string>();
      if (node.contains("personality")) {
        const auto& p = node.at("personality");
        if (p.is_number_integer()) {
          result.personality = p.get<int>();
        } else {
          std::string text = p.get<std::string>();
          if (text == "SDI") {
            result.personality = 0;
          } else if (text == "2110" || text == "ST2110" || text == "ST 2110") {
            result.personality = 1;
          } else {
            *error = "personality must be \"SDI\" or \"2110\"";
            return false;
          }
        }
        if (result.personality != 0 && result.personality != 1) {
          *error = "personality must be 0 (SDI) or 1 (ST 2110)";
          return false;
        }
      }
      if (node.contains("card_type")) result.cardType = node.at("card_type").get<int>();
      if (node.contains("stream_limit")) result.streamLimit = node.at("stream_limit").get<int>();
      if (node.contains("watchdog")) result.watchdogEnabled = node.at("watchdog").get<bool>();
      if (!ReadObjects(node, "video_encoders", &result.videoEncoders, error) ||
          !ReadObjects(node, "audio_encoders", &result.audioEncoders, error) ||
          !ReadObjects(node, "video_inputs", &result.videoInputs, error) ||
          !ReadObjects(node, "metadata_sources", &result.metadataSources, error)) {
        return false;
      }
    }
    if (result.streamLimit < 0 || result.streamLimit > 1000) {
      *error = "stream_limit must be 0 to 1000";
      return false;
    }
    doc.merge_patch(overlay);
    result.document = std::move(doc);
    *profile = std::move(result);
    return true;
  } catch (const nlohmann::json::exception& e) {
    *error = e.what();
    return false;
  }
}

bool ApplianceProfile::LoadFile(const std::string& path, ApplianceProfile* profile, std::string* error) {
  std::ifstream in(path);
  if (!in) {
    *error = "cannot open " + path;
    return false;
  }
  try {
    nlohmann::json overlay = nlohmann::json::parse(in);
    return FromJson(overlay, profile, error);
  } catch (const nlohmann::json::exception& e) {
    *error = path + ": " + e.what();
    return false;
  }
}

}  // namespace sim
