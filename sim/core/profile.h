// The appliance profile: what hardware the simulated appliance has (personality,
// card type, encoders, inputs, metadata sources, limits). An embedded default
// describes an SDI unit; --profile FILE.json overrides any part of it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace sim {

// One content object the profile provides (an encoder, an input, a metadata source).
struct ProfileObject {
  int id = 0;
  std::string name;
  int bitRateKbps = 0;  // nominal output bit rate (encoders and metadata sources)
};

struct ApplianceProfile {
  std::string model;
  int personality = 0;  // 0 SDI, 1 ST 2110
  int cardType = 0;
  int streamLimit = 16;
  std::vector<ProfileObject> videoEncoders;
  std::vector<ProfileObject> audioEncoders;
  std::vector<ProfileObject> videoInputs;
  std::vector<ProfileObject> metadataSources;
  bool watchdogEnabled = true;
  // The whole document, so that families read their own sections ("sessions", ...).
  nlohmann::json document;

  // The embedded SDI default.
  static ApplianceProfile Default();
  // The default overlaid with a JSON document; false (with *error) on a bad document.
  static bool FromJson(const nlohmann::json& overlay, ApplianceProfile* profile, std::string* error);
  static bool LoadFile(const std::string& path, ApplianceProfile* profile, std::string* error);
  // The embedded default as JSON text (for --print-profile).
  static const char* DefaultJson();
};

}  // namespace sim
