// Operation-table rows of the configuration store. Success leaves the last
// error untouched, and without SessMgrLib_Init these operations still try to
// send (they skip the initialisation check), failing with 10.
#include "row_kit.h"

namespace smgr::test {
namespace {

Bytes ValueAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_CONFIG_VALUE_RSP));
  Put(&message, 20, int32_t{1});
  return message;
}

Bytes DeleteAllAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP));
  Put(&message, 20, uint32_t{3});
  return message;
}

// A name of nLength characters in caller memory.
const char* NameOf(CallContext& ctx, size_t nLength, char cFill = 'c') {
  char* sz = ctx.buffer(nLength + 1, static_cast<uint8_t>(cFill)).as<char>();
  sz[nLength] = '\0';
  return sz;
}

const char* ChosenName(CallContext& ctx) {
  static const char* const kNames[] = {"test",  nullptr, "", "/usr/share/ostrelle/config/x.cfg",
                                       "x.cfg", "../y"};
  return kNames[ctx.params.byte() % 6];
}

OperationRow ConfigRow(OperationRow row) {
  row.notInitialisedResult = SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR;
  return row;
}

std::vector<OperationRow> ConfigRows() {
  const Expectation charsRefused{FALSE, LE::Equals, SMGR_ERROR_INVALID_CHARS_IN_FILENAME, false};
  const Expectation tooLong{FALSE, LE::Equals, SMGR_ERROR_FILENAME_TOO_LONG, false};
  const Expectation sentKept{TRUE, LE::Unchanged, 0, true};
  std::vector<OperationRow> rows;
  rows.push_back(ConfigRow(
      {"SessMgr_SaveConfig",
       SMGRPROT_CONFIG_WRITE_REQ,
       SuccessCodes::Untouched,
       ResultOnly,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_SaveConfig(ChosenName(ctx), static_cast<int>(ctx.params.u32()));
       },
       nullptr,
       {{"name with \"*\"", [](CallContext&) { return SessMgr_SaveConfig("a*b", 0); }, charsRefused},
        {"name with a line feed", [](CallContext&) { return SessMgr_SaveConfig("a\nb", 0); }, charsRefused},
        {"288 characters", [](CallContext& ctx) { return SessMgr_SaveConfig(NameOf(ctx, 288), 0); }, tooLong},
        {"287 characters: too long once completed",
         [](CallContext& ctx) { return SessMgr_SaveConfig(NameOf(ctx, 287), 0); }, tooLong},
        {"\"*\" at the end of 300 characters",
         [](CallContext& ctx) {
           char* sz = const_cast<char*>(NameOf(ctx, 300));
           sz[299] = '*';
           return SessMgr_SaveConfig(sz, 0);
         },
         charsRefused}}}));
  rows.push_back(
      ConfigRow({"SessMgr_LoadConfig",
                 SMGRPROT_CONFIG_READ_REQ,
                 SuccessCodes::UntouchedOrWarning,
                 ResultOnly,
                 nullptr,
                 [](CallContext& ctx) { return SessMgr_LoadConfig(ChosenName(ctx)); },
                 nullptr,
                 {{"name with \"!\"", [](CallContext&) { return SessMgr_LoadConfig("a!b"); }, charsRefused},
                  {"256 characters", [](CallContext& ctx) { return SessMgr_LoadConfig(NameOf(ctx, 256)); },
                   invalidNoSend},
                  {"255 characters: too long once completed",
                   [](CallContext& ctx) { return SessMgr_LoadConfig(NameOf(ctx, 255)); }, invalidNoSend}}}));
  rows.push_back(
      ConfigRow({"SessMgr_DeleteConfig",
                 SMGRPROT_CONFIG_DELETE_REQ,
                 SuccessCodes::Untouched,
                 ValueAnswer,
                 nullptr,
                 [](CallContext& ctx) { return SessMgr_DeleteConfig(ChosenName(ctx)); },
                 nullptr,
                 {{"name with \"*\" is not checked", [](CallContext&) { return SessMgr_DeleteConfig("a*b"); },
                   sentKept},
                  {"256 characters", [](CallContext& ctx) { return SessMgr_DeleteConfig(NameOf(ctx, 256)); },
                   invalidNoSend}}}));
  rows.push_back(ConfigRow(
      {"SessMgr_DeleteAllConfigs",
       SMGRPROT_CONFIG_DELETE_ALL_REQ,
       SuccessCodes::Untouched,
       DeleteAllAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_DeleteAllConfigs(OptionalOut<ULONG>(ctx, ctx.params.byte(), 0));
       },
       nullptr,
       {{"NULL count", [](CallContext&) { return SessMgr_DeleteAllConfigs(nullptr); }, sentKept}}}));
  rows.push_back(ConfigRow(
      {"SessMgr_IsCurrentConfigSaved",
       SMGRPROT_IS_CONFIG_SAVED_REQ,
       SuccessCodes::Untouched,
       ValueAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_IsCurrentConfigSaved(ctx.buffer(sizeof(BOOL), 0x77).as<BOOL>());
       },
       nullptr,
       {{"NULL flag", [](CallContext&) { return SessMgr_IsCurrentConfigSaved(nullptr); }, invalidNoSend}}}));
  rows.push_back(ConfigRow(
      {"SessMgr_SetConfigAutoSaveState",
       SMGRPROT_CONFIG_SET_AUTOSAVE_REQ,
       SuccessCodes::Untouched,
       ResultOnly,
       nullptr,
       [](CallContext& ctx) { return SessMgr_SetConfigAutoSaveState(static_cast<BOOL>(ctx.params.u32())); },
       nullptr,
       {{"BOOL 7 passes through", [](CallContext&) { return SessMgr_SetConfigAutoSaveState(7); },
         sentKept}}}));
  rows.push_back(
      ConfigRow({"SessMgr_GetConfigAutoSaveState",
                 SMGRPROT_CONFIG_GET_AUTOSAVE_REQ,
                 SuccessCodes::Untouched,
                 ValueAnswer,
                 nullptr,
                 [](CallContext& ctx) {
                   return SessMgr_GetConfigAutoSaveState(ctx.buffer(sizeof(BOOL), 0x77).as<BOOL>());
                 },
                 nullptr,
                 {{"NULL flag", [](CallContext&) { return SessMgr_GetConfigAutoSaveState(nullptr); },
                   invalidNoSend}}}));
  return rows;
}

const RowRegistration kConfigRows{"config", ConfigRows};

}  // namespace
}  // namespace smgr::test
