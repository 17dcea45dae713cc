// Rules of the simulated video inputs: signals from the profile, lock and
// check counters on the appliance clock, settings with their checks.
#include "video_input_model.h"

#include <cstdio>
#include <cstring>

#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr uint64_t kSetInterface = 0x1;
constexpr uint64_t kSetColorSpace = 0x2;
constexpr uint64_t kSetFirFilter = 0x4;
constexpr int kMaxColorSpace = 3;
constexpr UINT kAudioChannels = 16;

// The default signals (JSON texts): a steady HD picture, an interlaced one, a UHD one that
// drops out every minute, and nothing.
const char* DefaultSignal(size_t index) {
  static const char* const kDefaults[] = {R"("1080p50")", R"("1080i25")", R"([["2160p50",50],["none",10]])",
                                          R"("none")"};
  return index < 4 ? kDefaults[index] : R"("none")";
}

unsigned WidthOfLines(unsigned lines) {
  switch (lines) {
    case 2160:
      return 3840;
    case 1080:
      return 1920;
    case 720:
      return 1280;
    default:
      return 720;  // 576 and 480
  }
}

}  // namespace

int64_t PackVideoFormat(unsigned width, unsigned height, unsigned rate, bool interlaced) {
  uint64_t code = 0x8000000000000000ull | (uint64_t{width & 0x1FFF} << 22) |
                  (uint64_t{height & 0x1FFF} << 9) | (uint64_t{rate & 0xFF} << 1) | (interlaced ? 1u : 0u);
  return static_cast<int64_t>(code);
}

int64_t ParseVideoFormatText(const std::string& text) {
  unsigned width = 0, height = 0, rate = 0;
  char scan = 0;
  int used = 0;
  if (sscanf(text.c_str(), "%ux%u%c%u%n", &width, &height, &scan, &rate, &used) == 4 &&
      static_cast<size_t>(used) == text.size()) {
  } else if (sscanf(text.c_str(), "%u%c%u%n", &height, &scan, &rate, &used) == 3 &&
             static_cast<size_t>(used) == text.size()) {
    width = WidthOfLines(height);
  } else {
    return 0;
  }
  if ((scan != 'p' && scan != 'i') || width == 0 || width > 8191 || height == 0 || height > 8191 ||
      rate == 0 || rate > 255)
    return 0;
  return PackVideoFormat(width, height, rate, scan == 'i');
}

unsigned VideoFormatWidth(int64_t format) {
  return format < 0 ? static_cast<unsigned>((static_cast<uint64_t>(format) >> 22) & 0x1FFF) : 0;
}
unsigned VideoFormatHeight(int64_t format) {
  return format < 0 ? static_cast<unsigned>((static_cast<uint64_t>(format) >> 9) & 0x1FFF) : 0;
}

namespace {

// One signal description: "none", a format text, or [[format, seconds], ...].
bool ParseSchedule(const nlohmann::json& value, std::vector<std::pair<int64_t, int64_t>>* out) {
  auto one = [](const std::string& text) {
    return text == "none" ? kVideoFormatUnknown : ParseVideoFormatText(text);
  };
  if (value.is_string()) {
    int64_t format = one(value.get<std::string>());
    if (format == 0) return false;
    out->push_back({format, 0});
    return true;
  }
  if (!value.is_array() || value.empty()) return false;
  for (const auto& item : value) {
    if (!item.is_array() || item.size() != 2 || !item[0].is_string() || !item[1].is_number_integer())
      return false;
    int64_t format = one(item[0].get<std::string>());
    int64_t seconds = item[1].get<int64_t>();
    if (format == 0 || seconds <= 0) return false;
    out->push_back({format, seconds * 1000});
  }
  return true;
}

}  // namespace

VideoInputModel::VideoInputModel(Appliance& appliance) : appliance_(appliance), bootMs_(appliance.nowMs()) {
  const ApplianceProfile& profile = appliance.profile();
  const nlohmann::json signals = profile.document.value("video_input_signals", nlohmann::json::object());
  size_t index = 0;
  for (const ProfileObject& object : profile.videoInputs) {
    Input input;
    input.object = object;
    input.statsSinceMs = bootMs_;
    nlohmann::json description =
        signals.contains(object.name) ? signals.at(object.name) : nlohmann::json::parse(DefaultSignal(index));
    std::vector<std::pair<int64_t, int64_t>> schedule;
    if (!ParseSchedule(description, &schedule)) {
      SIM_LOG_WARN("video input %s: signal %s not understood, taken as none", object.name.c_str(),
                   description.dump().c_str());
      schedule = {{kVideoFormatUnknown, 0}};
    }
    for (auto& [format, ms] : schedule) input.schedule.push_back({format, ms});
    inputs_[object.id] = std::move(input);
    ++index;
  }
}

VideoInputModel::Input* VideoInputModel::find(int id) {
  auto it = inputs_.find(id);
  return it == inputs_.end() ? nullptr : &it->second;
}

int64_t VideoInputModel::formatAt(const Input& input, int64_t ms) const {
  int64_t period = 0;
  for (const Segment& segment : input.schedule) period += segment.ms;
  if (period == 0) return input.schedule.front().format;
  int64_t into = (ms - bootMs_) % period;
  for (const Segment& segment : input.schedule) {
    if (into < segment.ms) return segment.format;
    into -= segment.ms;
  }
  return input.schedule.back().format;
}

uint64_t VideoInputModel::lockChanges(const Input& input, int64_t fromMs, int64_t toMs,
                                      int64_t* lastMs) const {
  *lastMs = -1;
  int64_t period = 0;
  for (const Segment& segment : input.schedule) period += segment.ms;
  if (period == 0 || toMs <= fromMs) return 0;
  // Boundaries where the signal changes, as offsets within one period.
  std::vector<int64_t> changes;
  int64_t at = 0;
  for (size_t i = 0; i < input.schedule.size(); ++i) {
    at += input.schedule[i].ms;
    const Segment& next = input.schedule[(i + 1) % input.schedule.size()];
    if (next.format != input.schedule[i].format) changes.push_back(at % period);
  }
  if (changes.empty()) return 0;
  // Count boundaries b + k*period (relative to boot) in (fromMs, toMs].
  uint64_t count = 0;
  const int64_t from = fromMs - bootMs_, to = toMs - bootMs_;
  for (int64_t b : changes) {
    auto upTo = [&](int64_t t) -> int64_t { return t < b ? 0 : (t - b) / period + 1; };  // boundaries <= t
    int64_t n = upTo(to) - upTo(from);
    if (n <= 0) continue;
    count += static_cast<uint64_t>(n);
    int64_t last = b + (upTo(to) - 1) * period + bootMs_;
    if (last > *lastMs) *lastMs = last;
  }
  return count;
}

void VideoInputModel::fill(Input& input, SMGR_VIDEO_INPUT_INFO* info) {
  const int64_t now = appliance_.nowMs();
  const bool sdi = appliance_.profile().personality == 0;
  *info = SMGR_VIDEO_INPUT_INFO{};
  info->nSize = sizeof *info;
  snprintf(info->szName, sizeof info->szName, "%s", input.object.name.c_str());
  info->nID = static_cast<UINT>(input.object.id);
  info->dwCapabilities = SMGR_VIDIN_CAPABILITY_HD | SMGR_VIDIN_CAPABILITY_UHD | SMGR_VIDIN_CAPABILITY_AUDIO |
                         (sdi ? SMGR_VIDIN_CAPABILITY_SDI : 0u);
  info->enCfgInterfaceType = input.cfgInterfaceType;
  info->enInterfaceType = SMGR_VIF_TYPE_SDI;
  const int64_t format = formatAt(input, now);
  const bool present = format != kVideoFormatUnknown;
  info->enState = present ? SMGR_VIDIN_STATE_ACTIVE : SMGR_VIDIN_STATE_INACTIVE;
  info->enInputFormat = format;
  int64_t lastChange = -1;
  info->nFormatLockStateChanges = lockChanges(input, input.statsSinceMs, now, &lastChange);
  if (lastChange >= 0)
    info->nLastFormatLockStateChangeUPTimeInSecs = static_cast<UINT>((lastChange - bootMs_) / 1000);
  info->nNumOfAudioChannels = present ? kAudioChannels : 0;
  info->nInputChecks = static_cast<uint64_t>((now - input.statsSinceMs) / 1000);
  info->nLastInputCheckUPTimeInSecs = static_cast<UINT>((now - bootMs_) / 1000);
  info->bEnableFIRFilter = input.firFilter;
  // H.273: BT.709 for HD, BT.2020/2100 for UHD, BT.601 for SD; unspecified without a signal.
  const unsigned height = VideoFormatHeight(format);
  if (!present) {
    info->ColorPrimaries = info->TransferCharacteristics = info->MatrixCoefficients = 2;
  } else if (height >= 2160) {
    info->ColorPrimaries = 9;
    info->TransferCharacteristics = 14;
    info->MatrixCoefficients = 9;
  } else if (height >= 720) {
    info->ColorPrimaries = info->TransferCharacteristics = info->MatrixCoefficients = 1;
  } else {
    const bool pal = height == 576;
    info->ColorPrimaries = pal ? 5 : 6;
    info->TransferCharacteristics = 6;
    info->MatrixCoefficients = pal ? 5 : 6;
  }
}

Outcome VideoInputModel::open(const std::string& name) {
  for (auto& [id, input] : inputs_)
    if (input.object.name == name) return Outcome(SMGR_ERROR_SUCCESS, {}, id, name);
  return Outcome(SMGR_ERROR_NO_MATCHING_INPUT_FOUND, "no input named " + name);
}

SMGR_RESULT VideoInputModel::info(int id, SMGR_VIDEO_INPUT_INFO* info) {
  Input* input = find(id);
  if (input == nullptr) return SMGR_ERROR_NO_MATCHING_INPUT_FOUND;
  fill(*input, info);
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoInputModel::resetStats(int id) {
  Input* input = find(id);
  if (input == nullptr) return SMGR_ERROR_NO_MATCHING_INPUT_FOUND;
  input->statsSinceMs = appliance_.nowMs();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoInputModel::configure(int id, const SMGR_VIDEO_INPUT_CFG& cfg) {
  Input* input = find(id);
  if (input == nullptr) return SMGR_ERROR_NO_MATCHING_INPUT_FOUND;
  const uint64_t flags = cfg.SetFieldsFlag;
  if (cfg.nSize < sizeof cfg || (flags & ~(kSetInterface | kSetColorSpace | kSetFirFilter)) != 0)
    return SMGR_ERROR_INVALID_PARAMETERS;
  // The inputs are SDI (or ST 2110) links: auto-detect or SDI, never composite.
  if ((flags & kSetInterface) && cfg.enInterfaceType != SMGR_VIF_TYPE_AUTO_DETECT &&
      cfg.enInterfaceType != SMGR_VIF_TYPE_SDI)
    return SMGR_ERROR_INVALID_PARAMETERS;
  if ((flags & kSetColorSpace) && (cfg.enColorSpace < 0 || cfg.enColorSpace > kMaxColorSpace))
    return SMGR_ERROR_INVALID_PARAMETERS;
  if ((flags & kSetFirFilter) && cfg.bEnableFIRFilter != FALSE && cfg.bEnableFIRFilter != TRUE)
    return SMGR_ERROR_INVALID_PARAMETERS;
  if ((flags & kSetInterface) && cfg.enInterfaceType != input->cfgInterfaceType && inUse_ && inUse_(id))
    return SMGR_ERROR_INPUT_DEVICE_IN_USE;
  if (flags & kSetInterface) input->cfgInterfaceType = cfg.enInterfaceType;
  if (flags & kSetColorSpace) input->colorSpace = cfg.enColorSpace;
  if (flags & kSetFirFilter) input->firFilter = cfg.bEnableFIRFilter;
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_VIDEO_INPUT_INFO> VideoInputModel::list() {
  std::vector<SMGR_VIDEO_INPUT_INFO> all;
  for (auto& [id, input] : inputs_) {
    all.emplace_back();
    fill(input, &all.back());
  }
  return all;
}

VideoInputModel::Signal VideoInputModel::signalOf(int id) {
  Input* input = find(id);
  if (input == nullptr) return {};
  const int64_t format = formatAt(*input, appliance_.nowMs());
  return {format != kVideoFormatUnknown, format};
}

nlohmann::json VideoInputModel::save() const {
  nlohmann::json section = nlohmann::json::object();
  for (const auto& [id, input] : inputs_)
    section[input.object.name] = {{"interface", input.cfgInterfaceType},
                                  {"color_space", input.colorSpace},
                                  {"fir_filter", input.firFilter != FALSE}};
  return section;
}

void VideoInputModel::load(const nlohmann::json& section) {
  if (!section.is_object()) return;
  for (auto& [id, input] : inputs_) {
    if (!section.contains(input.object.name)) continue;
    const nlohmann::json& saved = section.at(input.object.name);
    input.cfgInterfaceType = saved.value("interface", SMGR_VIF_TYPE_AUTO_DETECT);
    input.colorSpace = saved.value("color_space", 0);
    input.firFilter = saved.value("fir_filter", false) ? TRUE : FALSE;
  }
}

namespace {

const PersistedSection kVideoInputSettings{
    "video_inputs", 10, [](Appliance& appliance) { return appliance.family<VideoInputModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& section) {
      appliance.family<VideoInputModel>().load(section);
    }};

}  // namespace

}  // namespace sim
