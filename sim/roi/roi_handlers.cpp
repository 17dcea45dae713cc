// Region-of-interest family of the simulator: the wire side of create,
// delete, close, information, enumeration, configure, enable and disable.
#include <cstdio>

#include "dispatch.h"
#include "objects.h"
#include "roi_model.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr size_t kSelectSize = sizeof(SMGRPROT_MSG_ROI_SELECT_REQ);
constexpr size_t kResultSize = sizeof(SMGRPROT_MSG_ROI_RESULT_RSP);

RoiModel& Regions(Context& context) { return context.appliance().family<RoiModel>(); }

bool Select(const SMGRPROT_OBJECT_SELECTOR& wire, Reply& reply, ObjectSelector* selector) {
  if (ParseWireSelector(wire, selector)) return true;
  reply.result(SMGR_ERROR_INVALID_PARAMETERS);
  return false;
}

void OnCreate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_ROI_CREATE_REQ>();
  Outcome outcome = Regions(context).create(message.Data.ROICfg);
  auto* response = reply.as<SMGRPROT_MSG_ROI_CREATE_RSP>();
  response->Data.Result = outcome.result;
  if (outcome.result != SMGR_ERROR_SUCCESS) {
    SIM_LOG_INFO("ROI create refused with %u", outcome.result);
    return;
  }
  response->Data.iID = outcome.id;
  snprintf(response->Data.szName, sizeof response->Data.szName, "%s", outcome.name.c_str());
}

void OnClose(Context& context, const Request& request, Reply& reply) {
  reply.result(Regions(context).close(request.as<SMGRPROT_MSG_ROI_CLOSE_REQ>().Data.iID));
}

HandlerFn WithSelector(SMGR_RESULT (*action)(RoiModel&, const ObjectSelector&)) {
  return [action](Context& context, const Request& request, Reply& reply) {
    ObjectSelector selector;
    if (!Select(request.as<SMGRPROT_MSG_ROI_SELECT_REQ>().Data.Select, reply, &selector)) return;
    reply.result(action(Regions(context), selector));
  };
}

void OnGetInfo(Context& context, const Request& request, Reply& reply) {
  ObjectSelector selector;
  if (!Select(request.as<SMGRPROT_MSG_ROI_SELECT_REQ>().Data.Select, reply, &selector)) return;
  auto* response = reply.as<SMGRPROT_MSG_ROI_GETINFO_RSP>();
  response->Data.Result = Regions(context).info(selector, &response->Data.ROIInfo);
}

void OnSetConfig(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_ROI_SETCFG_REQ>();
  ObjectSelector selector;
  if (!Select(message.Data.Select, reply, &selector)) return;
  reply.result(Regions(context).configure(selector, message.Data.Config));
}

void OnEnumerate(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_ROI_ENUMERATE_REQ>();
  AnswerPage(context, reply, static_cast<int32_t>(message.Data.nNumOfRegions),
             static_cast<int32_t>(message.Data.nStartOffset), Regions(context).list());
}

const FamilyRegistration kRegions{
    "roi",
    {{SMGRPROT_ROI_CREATE_REQ, "ROI create", sizeof(SMGRPROT_MSG_ROI_CREATE_REQ), SMGRPROT_ROI_CREATE_RSP,
      sizeof(SMGRPROT_MSG_ROI_CREATE_RSP), OnCreate},
     {SMGRPROT_ROI_DELETE_REQ, "ROI delete", kSelectSize, SMGRPROT_ROI_DELETE_RSP, kResultSize,
      WithSelector([](RoiModel& m, const ObjectSelector& s) { return m.remove(s); })},
     {SMGRPROT_ROI_CLOSE_REQ, "ROI close", sizeof(SMGRPROT_MSG_ROI_CLOSE_REQ), SMGRPROT_ROI_CLOSE_RSP,
      kResultSize, OnClose},
     {SMGRPROT_ROI_GETINFO_REQ, "ROI info", kSelectSize, SMGRPROT_ROI_GETINFO_RSP,
      sizeof(SMGRPROT_MSG_ROI_GETINFO_RSP), OnGetInfo},
     {SMGRPROT_ROI_ENUMERATE_REQ, "ROI enumerate", sizeof(SMGRPROT_MSG_ROI_ENUMERATE_REQ),
      SMGRPROT_ROI_ENUMERATE_RSP, offsetof(SMGRPROT_MSG_ROI_ENUMERATE_RSP, Data.RegionInfo), OnEnumerate},
     {SMGRPROT_ROI_SETCFG_REQ, "ROI configure", sizeof(SMGRPROT_MSG_ROI_SETCFG_REQ), SMGRPROT_ROI_SETCFG_RSP,
      kResultSize, OnSetConfig},
     {SMGRPROT_ROI_START_REQ, "ROI enable", kSelectSize, SMGRPROT_ROI_START_RSP, kResultSize,
      WithSelector([](RoiModel& m, const ObjectSelector& s) { return m.enable(s, true); })},
     {SMGRPROT_ROI_STOP_REQ, "ROI disable", kSelectSize, SMGRPROT_ROI_STOP_RSP, kResultSize,
      WithSelector([](RoiModel& m, const ObjectSelector& s) { return m.enable(s, false); })}}};

}  // namespace
}  // namespace sim
