// Session family of the simulator: the wire side of create, delete, close,
// start, stop, info, statistics and enumeration over the SessionModel.
#include <cstdio>

#include "dispatch.h"
#include "session_model.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr size_t kSelectRequestSize = sizeof(SMGRPROT_MSG_SESSION_SELECT_REQ);
constexpr size_t kResultResponseSize = sizeof(SMGRPROT_MSG_SESSION_RESULT_RSP);

SessionModel& Sessions(Context& context) { return context.appliance().family<SessionModel>(); }

bool Select(const Request& request, Reply& reply, ObjectSelector* selector) {
  auto message = request.as<SMGRPROT_MSG_SESSION_SELECT_REQ>();
  if (ParseWireSelector(message.Data.Select, selector)) return true;
  reply.result(SMGR_ERROR_INVALID_PARAMETERS);
  return false;
}

HandlerFn Control(const char* operation, Outcome (SessionModel::*action)(const ObjectSelector&)) {
  return [operation, action](Context& context, const Request& request, Reply& reply) {
    ObjectSelector selector;
    if (!Select(request, reply, &selector)) return;
    Outcome outcome = (Sessions(context).*action)(selector);
    if (outcome.result != SMGR_ERROR_SUCCESS)
      SIM_LOG_INFO("session %s refused with %u: %s", operation, outcome.result, outcome.description.c_str());
    reply.result(outcome.result);
  };
}

void OnCreate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_SESSION_CREATE_REQ>();
  Outcome outcome = Sessions(context).create(message.Data.SessionCfg, message.Data.Streams);
  auto* response = reply.as<SMGRPROT_MSG_SESSION_CREATE_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result != SMGR_ERROR_SUCCESS) {
    SIM_LOG_INFO("session create refused with %u: %s", outcome.result, outcome.description.c_str());
    return;
  }
  response->Data.iSessionID = outcome.id;
  snprintf(response->Data.szName, sizeof response->Data.szName, "%s", outcome.name.c_str());
  SIM_LOG_INFO("pid %d created session %d \"%s\"", context.client().pid, outcome.id, outcome.name.c_str());
}

void OnClose(Context& context, const Request& request, Reply& reply) {
  reply.result(Sessions(context).close(request.as<SMGRPROT_MSG_SESSION_CLOSE_REQ>().Data.iSessionID).result);
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_SESSION_GETINFO_RSP>();
  response->Data.Result = Sessions(context).info(selector, &response->Data.SessionInfo);
}

void OnGetStats(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_SESSION_GETSTATS_RSP>();
  response->Data.Result = Sessions(context).stats(selector, &response->Data.SessionStats);
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_SESSION_ENUMERATE_REQ>();
  // Counts beyond INT32_MAX read as negative and are refused like the streams' ones.
  AnswerPage(context, reply, static_cast<int32_t>(message.Data.nNumOfSessions),
             static_cast<int32_t>(message.Data.nStartOffset), Sessions(context).list());
}

const FamilyRegistration kSessions{
    "sessions",
    {
        {SMGRPROT_SESSION_CREATE_REQ, "session create", sizeof(SMGRPROT_MSG_SESSION_CREATE_REQ),
         SMGRPROT_SESSION_CREATE_RSP, sizeof(SMGRPROT_MSG_SESSION_CREATE_RSP), OnCreate},
        {SMGRPROT_SESSION_DELETE_REQ, "session delete", kSelectRequestSize, SMGRPROT_SESSION_DELETE_RSP,
         kResultResponseSize, Control("delete", &SessionModel::remove)},
        {SMGRPROT_SESSION_ENUMERATE_REQ, "session enumerate", sizeof(SMGRPROT_MSG_SESSION_ENUMERATE_REQ),
         SMGRPROT_SESSION_ENUMERATE_RSP, SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET, OnEnumerate},
        {SMGRPROT_SESSION_CLOSE_REQ, "session close", sizeof(SMGRPROT_MSG_SESSION_CLOSE_REQ),
         SMGRPROT_SESSION_CLOSE_RSP, kResultResponseSize, OnClose},
        {SMGRPROT_SESSION_START_REQ, "session start", kSelectRequestSize, SMGRPROT_SESSION_START_RSP,
         kResultResponseSize, Control("start", &SessionModel::start)},
        {SMGRPROT_SESSION_STOP_REQ, "session stop", kSelectRequestSize, SMGRPROT_SESSION_STOP_RSP,
         kResultResponseSize, Control("stop", &SessionModel::stop)},
        {SMGRPROT_SESSION_GETINFO_REQ, "session getinfo", kSelectRequestSize, SMGRPROT_SESSION_GETINFO_RSP,
         sizeof(SMGRPROT_MSG_SESSION_GETINFO_RSP), OnGetInfo},
        {SMGRPROT_SESSION_GETSTATS_REQ, "session getstats", kSelectRequestSize, SMGRPROT_SESSION_GETSTATS_RSP,
         sizeof(SMGRPROT_MSG_SESSION_GETSTATS_RSP), OnGetStats},
    }};

}  // namespace
}  // namespace sim
