// Stream family of the simulator: the wire side of create, delete, open,
// close, start, stop, pause, resume, info, statistics and enumeration, over
// the StreamModel of the appliance.
#include <algorithm>
#include <cstring>

#include "dispatch.h"
#include "sim_log.h"
#include "stream_model.h"

namespace sim {
namespace {

constexpr size_t kSelectRequestSize = sizeof(SMGRPROT_MSG_STREAM_SELECT_REQ);
constexpr size_t kResultResponseSize = sizeof(SMGRPROT_MSG_STREAM_RESULT_RSP);
constexpr size_t kEnumerateHeadSize = offsetof(SMGRPROT_MSG_STREAM_ENUMERATE_RSP, Data.StreamInfo);

StreamModel& Streams(Context& context) { return context.appliance().family<StreamModel>(); }

// Decodes the request's selector; on failure answers 2 and returns false.
bool Select(const Request& request, Reply& reply, ObjectSelector* selector) {
  auto message = request.as<SMGRPROT_MSG_STREAM_SELECT_REQ>();
  if (ParseWireSelector(message.Data.Select, selector)) return true;
  SIM_LOG_WARN("stream request %u with a bad selector (type %d)", request.header().wMsgType,
               message.Data.Select.enType);
  reply.result(SMGR_ERROR_INVALID_PARAMETERS);
  return false;
}

void LogOutcome(const char* operation, const Outcome& outcome) {
  if (outcome.result == SMGR_ERROR_SUCCESS) return;
  SIM_LOG_INFO("%s refused with %u: %s", operation, outcome.result, outcome.description.c_str());
}

// Handler for the selector requests whose response carries the result alone.
HandlerFn Control(const char* operation, Outcome (StreamModel::*action)(const ObjectSelector&)) {
  return [operation, action](Context& context, const Request& request, Reply& reply) {
    ObjectSelector selector;
    if (!Select(request, reply, &selector)) return;
    Outcome outcome = (Streams(context).*action)(selector);
    LogOutcome(operation, outcome);
    reply.result(outcome.result);
  };
}

void OnCreate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_STREAM_CREATE_REQ>();
  Outcome outcome = Streams(context).create(message.Data.StreamCfg, message.Data.ContentSources,
                                            SMGR_MAX_STREAM_CONTENT_SOURCES, context.client().pid);
  LogOutcome("create", outcome);
  auto* response = reply.as<SMGRPROT_MSG_STREAM_CREATE_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result == SMGR_ERROR_SUCCESS) {
    response->Data.iStreamID = outcome.id;
    snprintf(response->Data.szName, sizeof response->Data.szName, "%s", outcome.name.c_str());
    SIM_LOG_INFO("pid %d created stream %d \"%s\"", context.client().pid, outcome.id, outcome.name.c_str());
  }
}

void OnOpen(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  Outcome outcome = Streams(context).open(selector, context.client().pid);
  auto* response = reply.as<SMGRPROT_MSG_STREAM_OPEN_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result == SMGR_ERROR_SUCCESS) {
    response->Data.iStreamID = outcome.id;
    snprintf(response->Data.szName, sizeof response->Data.szName, "%s", outcome.name.c_str());
  }
}

void OnClose(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_STREAM_CLOSE_REQ>();
  reply.result(Streams(context).close(message.Data.iStreamID, context.client().pid).result);
}

void OnStart(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  Outcome outcome = Streams(context).start(selector);
  LogOutcome("start", outcome);
  reply.result(outcome.result);
  if (outcome.result != SMGR_ERROR_SUCCESS) reply.describe("%s", outcome.description.c_str());
}

void OnDelete(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  Outcome outcome = Streams(context).remove(selector);
  LogOutcome("delete", outcome);
  if (outcome.result == SMGR_ERROR_SUCCESS) SIM_LOG_INFO("stream %d deleted", outcome.id);
  reply.result(outcome.result);
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_STREAM_GETINFO_RSP>();
  SMGR_STREAM_INFO info{};
  response->Data.Result = Streams(context).info(selector, &info);
  if (response->Data.Result == SMGR_ERROR_SUCCESS) memcpy(&response->Data.StreamInfo, &info, sizeof info);
}

void OnGetStats(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_STREAM_GETSTATS_RSP>();
  SMGR_STREAM_STATS stats{};
  response->Data.Result = Streams(context).stats(selector, &stats);
  if (response->Data.Result == SMGR_ERROR_SUCCESS) memcpy(&response->Data.StreamStats, &stats, sizeof stats);
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_STREAM_ENUMERATE_REQ>();
  if (message.Data.nNumOfStreams < 0 || message.Data.nStartOffset < 0)
    SIM_LOG_WARN("stream enumeration with count %d, offset %d", message.Data.nNumOfStreams,
                 message.Data.nStartOffset);
  AnswerPage(context, reply, message.Data.nNumOfStreams, message.Data.nStartOffset, Streams(context).list());
}

const FamilyRegistration kStreams{
    "streams",
    {
        {SMGRPROT_STREAM_CREATE_REQ, "stream create", sizeof(SMGRPROT_MSG_STREAM_CREATE_REQ),
         SMGRPROT_STREAM_CREATE_RSP, sizeof(SMGRPROT_MSG_STREAM_CREATE_RSP), OnCreate},
        {SMGRPROT_STREAM_DELETE_REQ, "stream delete", kSelectRequestSize, SMGRPROT_STREAM_DELETE_RSP,
         kResultResponseSize, OnDelete},
        {SMGRPROT_STREAM_ENUMERATE_REQ, "stream enumerate", sizeof(SMGRPROT_MSG_STREAM_ENUMERATE_REQ),
         SMGRPROT_STREAM_ENUMERATE_RSP, kEnumerateHeadSize, OnEnumerate},
        {SMGRPROT_STREAM_START_REQ, "stream start", kSelectRequestSize, SMGRPROT_STREAM_START_RSP,
         sizeof(SMGRPROT_MSG_STREAM_START_RSP), OnStart},
        {SMGRPROT_STREAM_STOP_REQ, "stream stop", kSelectRequestSize, SMGRPROT_STREAM_STOP_RSP,
         kResultResponseSize, Control("stop", &StreamModel::stop)},
        {SMGRPROT_STREAM_GETINFO_REQ, "stream getinfo", kSelectRequestSize, SMGRPROT_STREAM_GETINFO_RSP,
         sizeof(SMGRPROT_MSG_STREAM_GETINFO_RSP), OnGetInfo},
        {SMGRPROT_STREAM_GETSTATS_REQ, "stream getstats", kSelectRequestSize, SMGRPROT_STREAM_GETSTATS_RSP,
         sizeof(SMGRPROT_MSG_STREAM_GETSTATS_RSP), OnGetStats},
        {SMGRPROT_STREAM_RESETSTATS_REQ, "stream resetstats", kSelectRequestSize,
         SMGRPROT_STREAM_RESETSTATS_RSP, kResultResponseSize, Control("reset", &StreamModel::resetStats)},
        {SMGRPROT_STREAM_OPEN_REQ, "stream open", kSelectRequestSize, SMGRPROT_STREAM_OPEN_RSP,
         sizeof(SMGRPROT_MSG_STREAM_OPEN_RSP), OnOpen},
        {SMGRPROT_STREAM_CLOSE_REQ, "stream close", sizeof(SMGRPROT_MSG_STREAM_CLOSE_REQ),
         SMGRPROT_STREAM_CLOSE_RSP, kResultResponseSize, OnClose},
        {SMGRPROT_STREAM_PAUSE_REQ, "stream pause", kSelectRequestSize, SMGRPROT_STREAM_PAUSE_RSP,
         kResultResponseSize, Control("pause", &StreamModel::pause)},
        {SMGRPROT_STREAM_RESUME_REQ, "stream resume", kSelectRequestSize, SMGRPROT_STREAM_RESUME_RSP,
         kResultResponseSize, Control("resume", &StreamModel::resume)},
    }};

}  // namespace
}  // namespace sim
