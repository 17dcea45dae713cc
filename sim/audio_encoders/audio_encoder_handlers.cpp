// Audio encoder family of the simulator: the wire side of open, start, stop,
// mute, configure, information, statistics and enumeration (numeric IDs,
// Result without a description), the persisted configurations, and the audio
// content-source lookup through which streams see these encoders.
#include <cstring>

#include "audio_encoder_model.h"
#include "dispatch.h"
#include "objects.h"
#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr size_t kIdRequest = sizeof(SMGRPROT_MSG_AUDENC_ID_REQ);
constexpr size_t kResultOnly = sizeof(SMGRPROT_MSG_AUDENC_RESULT_RSP);

AudioEncoderModel& Encoders(Context& context) { return context.appliance().family<AudioEncoderModel>(); }

int EncoderId(const Request& request) { return request.as<SMGRPROT_MSG_AUDENC_ID_REQ>().Data.iEncoderID; }

void Log(const char* operation, int id, SMGR_RESULT result) {
  if (result != SMGR_ERROR_SUCCESS)
    SIM_LOG_INFO("audio encoder %d: %s refused with %u", id, operation, result);
}

// Handler of the requests that carry the ID alone and answer Result alone.
HandlerFn Control(const char* operation, SMGR_RESULT (AudioEncoderModel::*action)(int)) {
  return [operation, action](Context& context, const Request& request, Reply& reply) {
    const int id = EncoderId(request);
    const SMGR_RESULT result = (Encoders(context).*action)(id);
    Log(operation, id, result);
    reply.result(result);
  };
}

void OnOpen(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_AUDENC_OPEN_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_AUDENC_OPEN_RSP>();
  if (!Terminated(message.Data.szName, sizeof message.Data.szName)) {
    response->Data.Result = SMGR_ERROR_INVALID_PARAMETERS;
    return;
  }
  int id = 0;
  response->Data.Result = Encoders(context).open(message.Data.szName, &id);
  response->Data.iEncoderID = id;
}

void OnConfigure(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_AUDENC_SETCFG_REQ>();
  const SMGR_RESULT result = Encoders(context).configure(message.Data.iEncoderID, message.Data.Config);
  Log("configure", message.Data.iEncoderID, result);
  reply.result(result);
}

void OnMute(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_AUDENC_MUTE_REQ>();
  const SMGR_RESULT result = Encoders(context).mute(message.Data.iEncoderID, message.Data.bMute != 0);
  Log("mute", message.Data.iEncoderID, result);
  reply.result(result);
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_AUDENC_GETINFO_RSP>();
  response->Data.iEncoderID = EncoderId(request);
  response->Data.Result = Encoders(context).info(EncoderId(request), &response->Data.Config);
}

void OnGetStats(Context& context, const Request& request, Reply& reply) {
  SMGR_AUDIO_ENCODER_STATS stats{};
  const SMGR_RESULT result = Encoders(context).stats(EncoderId(request), &stats);
  auto* response = reply.as<SMGRPROT_MSG_AUDENC_GETSTATS_RSP>();
  response->Data.Result = result;
  response->Data.iEncoderID = EncoderId(request);
  response->Data.Stats = stats;
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_AUDENC_ENUMERATE_REQ>();
  AnswerPage(context, reply, static_cast<int32_t>(message.Data.nNumOfEncoders),
             static_cast<int32_t>(message.Data.nStartOffset), Encoders(context).list());
}

const FamilyRegistration kAudioEncoders{
    "audio_encoders",
    {
        {SMGRPROT_AUDENC_OPEN_REQ, "audio encoder open", sizeof(SMGRPROT_MSG_AUDENC_OPEN_REQ),
         SMGRPROT_AUDENC_OPEN_RSP, sizeof(SMGRPROT_MSG_AUDENC_OPEN_RSP), OnOpen},
        {SMGRPROT_AUDENC_GETINFO_REQ, "audio encoder getinfo", kIdRequest, SMGRPROT_AUDENC_GETINFO_RSP,
         sizeof(SMGRPROT_MSG_AUDENC_GETINFO_RSP), OnGetInfo},
        {SMGRPROT_AUDENC_SETCFG_REQ, "audio encoder setcfg", sizeof(SMGRPROT_MSG_AUDENC_SETCFG_REQ),
         SMGRPROT_AUDENC_SETCFG_RSP, kResultOnly, OnConfigure},
        {SMGRPROT_AUDENC_GETSTATS_REQ, "audio encoder getstats", kIdRequest, SMGRPROT_AUDENC_GETSTATS_RSP,
         sizeof(SMGRPROT_MSG_AUDENC_GETSTATS_RSP), OnGetStats},
        {SMGRPROT_AUDENC_RESETSTATS_REQ, "audio encoder resetstats", kIdRequest,
         SMGRPROT_AUDENC_RESETSTATS_RSP, kResultOnly, Control("reset", &AudioEncoderModel::resetStats)},
        {SMGRPROT_AUDENC_ENUMERATE_REQ, "audio encoder enumerate", sizeof(SMGRPROT_MSG_AUDENC_ENUMERATE_REQ),
         SMGRPROT_AUDENC_ENUMERATE_RSP, SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET, OnEnumerate},
        {SMGRPROT_AUDENC_START_REQ, "audio encoder start", kIdRequest, SMGRPROT_AUDENC_START_RSP, kResultOnly,
         Control("start", &AudioEncoderModel::start)},
        {SMGRPROT_AUDENC_STOP_REQ, "audio encoder stop", kIdRequest, SMGRPROT_AUDENC_STOP_RSP, kResultOnly,
         Control("stop", &AudioEncoderModel::stop)},
        {SMGRPROT_AUDENC_MUTE_REQ, "audio encoder mute", sizeof(SMGRPROT_MSG_AUDENC_MUTE_REQ),
         SMGRPROT_AUDENC_MUTE_RSP, kResultOnly, OnMute},
    }};

// Before streams (order 10) so that their sources resolve when they come back.
const PersistedSection kAudioEncoderState{
    "audio_encoders", 5, [](Appliance& appliance) { return appliance.family<AudioEncoderModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& saved) {
      AudioEncoderModel& model = appliance.family<AudioEncoderModel>();
      model.load(saved);
      appliance.sources().setLookup(
          kContentAudio, [&model](int id, const std::string* name) { return model.lookup(id, name); });
    }};

}  // namespace
}  // namespace sim
