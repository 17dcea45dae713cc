// Configuration store family of the simulator: the wire side of save, load,
// delete, delete all, the saved flag and auto-save. Save and load take their
// time (sending progress indications) as the daemon's file work does.
#include <unistd.h>

#include <algorithm>
#include <string>

#include "config_store.h"
#include "dispatch.h"
#include "objects.h"

namespace sim {
namespace {

ConfigStore& Store(Context& context) { return context.appliance().family<ConfigStore>(); }

// Spends durationMs in steps of 100 ms, reporting the share done after each.
void TakeTime(Context& context, int durationMs) {
  for (int spent = 0; spent < durationMs; spent += 100) {
    usleep(static_cast<useconds_t>(std::min(100, durationMs - spent)) * 1000);
    context.progress(static_cast<unsigned>(std::min(100, (spent + 100) * 100 / durationMs)));
  }
}

// A request's name field; unterminated names read as refused paths.
std::string NameField(const char* field, size_t size) {
  return Terminated(field, size) ? std::string(field) : std::string("\x01");
}

void OnWrite(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_CONFIG_WRITE_REQ>();
  TakeTime(context, Store(context).saveMs());
  reply.result(
      Store(context).save(NameField(message.szFileName, sizeof message.szFileName), message.enStartup));
}

void OnRead(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_CONFIG_READ_REQ>();
  TakeTime(context, Store(context).loadMs());
  reply.result(Store(context).load(NameField(message.szFileName, sizeof message.szFileName)));
}

void OnDelete(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_CONFIG_DELETE_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_CONFIG_VALUE_RSP>();
  response->Result =
      Store(context).remove(NameField(message.szFileName, sizeof message.szFileName), &response->iValue);
}

void OnDeleteAll(Context& context, const Request&, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP>();
  response->Result = Store(context).removeAll(&response->nDeletedCount, &response->iErrno);
}

void OnIsSaved(Context& context, const Request&, Reply& reply) {
  Store(context).catchUpAutoSave();
  auto* response = reply.as<SMGRPROT_MSG_CONFIG_VALUE_RSP>();
  response->iValue = Store(context).isSaved() ? TRUE : FALSE;
}

void OnSetAutoSave(Context& context, const Request& request, Reply& reply) {
  Store(context).setAutoSave(request.as<SMGRPROT_MSG_CONFIG_VALUE_REQ>().iValue != FALSE);
  reply.result(SMGR_ERROR_SUCCESS);
}

void OnGetAutoSave(Context& context, const Request&, Reply& reply) {
  Store(context).catchUpAutoSave();
  reply.as<SMGRPROT_MSG_CONFIG_VALUE_RSP>()->iValue = Store(context).autoSave() ? TRUE : FALSE;
}

const FamilyRegistration kConfig{
    "config",
    {
        {SMGRPROT_CONFIG_WRITE_REQ, "config write", sizeof(SMGRPROT_MSG_CONFIG_WRITE_REQ),
         SMGRPROT_CONFIG_WRITE_RSP, sizeof(SMGRPROT_MSG_CONFIG_WRITE_RSP), OnWrite},
        {SMGRPROT_CONFIG_READ_REQ, "config read", sizeof(SMGRPROT_MSG_CONFIG_READ_REQ),
         SMGRPROT_CONFIG_READ_RSP, sizeof(SMGRPROT_MSG_CONFIG_READ_RSP), OnRead},
        {SMGRPROT_CONFIG_DELETE_REQ, "config delete", sizeof(SMGRPROT_MSG_CONFIG_DELETE_REQ),
         SMGRPROT_CONFIG_DELETE_RSP, sizeof(SMGRPROT_MSG_CONFIG_DELETE_RSP), OnDelete},
        {SMGRPROT_IS_CONFIG_SAVED_REQ, "config is saved", sizeof(SMGRPROT_MSG_IS_CONFIG_SAVED_REQ),
         SMGRPROT_IS_CONFIG_SAVED_RSP, sizeof(SMGRPROT_MSG_IS_CONFIG_SAVED_RSP), OnIsSaved},
        {SMGRPROT_CONFIG_DELETE_ALL_REQ, "config delete all", sizeof(SMGRPROT_MSG_CONFIG_DELETE_ALL_REQ),
         SMGRPROT_CONFIG_DELETE_ALL_RSP, sizeof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP), OnDeleteAll},
        {SMGRPROT_CONFIG_SET_AUTOSAVE_REQ, "config set auto-save",
         sizeof(SMGRPROT_MSG_CONFIG_SET_AUTOSAVE_REQ), SMGRPROT_CONFIG_SET_AUTOSAVE_RSP,
         sizeof(SMGRPROT_MSG_CONFIG_SET_AUTOSAVE_RSP), OnSetAutoSave},
        {SMGRPROT_CONFIG_GET_AUTOSAVE_REQ, "config get auto-save",
         sizeof(SMGRPROT_MSG_CONFIG_GET_AUTOSAVE_REQ), SMGRPROT_CONFIG_GET_AUTOSAVE_RSP,
         sizeof(SMGRPROT_MSG_CONFIG_GET_AUTOSAVE_RSP), OnGetAutoSave},
    }};

}  // namespace
}  // namespace sim
