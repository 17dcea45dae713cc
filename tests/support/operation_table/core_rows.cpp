// Operation-table rows of the lifecycle, the last error and the companion helpers.
#include "row_kit.h"

namespace smgr::test {
namespace {

std::vector<OperationRow> CoreRows() {
  [[maybe_unused]] const Expectation local{TRUE, LE::Unchanged};
  std::vector<OperationRow> rows;

  // -- Lifecycle (the sweep runs these against the peer; the connect fuzzer covers Init).
  rows.push_back({"SessMgrLib_Init",
                  SMGRPROT_USER_CONNECT_REQ,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"version 1.1",
                    [](CallContext&) { return SessMgrLib_Init(0x00010001u, nullptr); },
                    {FALSE, LE::Equals, SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION, false}},
                   {"version 0 with an output",
                    [](CallContext& ctx) {
                      DWORD* pdw = ctx.buffer(sizeof(DWORD), 0x44).as<DWORD>();
                      return SessMgrLib_Init(0, pdw);
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION, false}}}});
  rows.push_back({"SessMgrLib_Shutdown",
                  SMGRPROT_USER_DISCONNECT_IND,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {}});  // the sweep checks it uninitialised (last error 14, nothing sent)
  rows.push_back({"SessMgrLib_WaitForResponse",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"a response nobody sends, NULL size",
                    [](CallContext&) { return SessMgrLib_WaitForResponse(0x7FFE, 1, nullptr); },
                    {FALSE, LE::Equals, SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR, false}}}});
  rows.push_back({"SessMgr_Shutdown",
                  SMGRPROT_SYSTEM_SHUTDOWN_REQ,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {}});  // no arguments: only the uninitialised case
  rows.push_back({"SessMgrLib_SetUID",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"unknown user",
                    [](CallContext&) { return SessMgrLib_SetUID(static_cast<uid_t>(0x7FFFFFF0)); },
                    {FALSE, LE::Unchanged, 0, false}}}});
  rows.push_back({"AdaptToPIDChange",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"no fork happened", [](CallContext&) { return AdaptToPIDChange(); }, local}}});
  rows.push_back({"__SmgrAPILIB_AutoShutdown",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"called by hand while connected",
                    [](CallContext&) -> BOOL {
                      __SmgrAPILIB_AutoShutdown();
                      return TRUE;
                    },
                    local}}});

  // -- Last error (thread-local, no request).
  rows.push_back({"SessMgr_SetLastError",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"any code",
                    [](CallContext&) -> BOOL {
                      return SessMgr_SetLastError(0xFFFFFFFFu) && SessMgr_GetLastError() == 0xFFFFFFFFu;
                    },
                    {TRUE, LE::Any}}}});
  rows.push_back({"SessMgr_SetLastErrorEx",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL text",
                    [](CallContext&) -> BOOL {
                      return SessMgr_SetLastErrorEx(SMGR_ERROR_INVALID_PARAMETERS, 5, nullptr) &&
                             SessMgr_GetLastErrno() == 5;
                    },
                    {TRUE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
                   {"text of 4000 characters",
                    [](CallContext& ctx) -> BOOL {
                      char* sz = ctx.buffer(4001, 'T').as<char>();
                      sz[4000] = '\0';
                      return SessMgr_SetLastErrorEx(SMGR_ERROR_INVALID_PARAMETERS, 0, sz);
                    },
                    {TRUE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}}}});
  rows.push_back(
      {"SessMgr_GetLastError",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"read twice", [](CallContext&) -> BOOL { return SessMgr_GetLastError() == SessMgr_GetLastError(); },
         local}}});
  rows.push_back({"SessMgr_GetLastErrno",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"read",
                    [](CallContext&) -> BOOL {
                      SessMgr_GetLastErrno();
                      return TRUE;
                    },
                    local}}});
  rows.push_back({"SessMgr_GetLastErrorString",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL buffer",
                    [](CallContext&) -> BOOL {
                      SessMgr_GetLastErrorString(nullptr, 100);
                      return TRUE;
                    },
                    local},
                   {"1-byte and 0-byte buffers",
                    [](CallContext& ctx) -> BOOL {
                      char* sz = ctx.buffer(1, 'x').as<char>();
                      SessMgr_GetLastErrorString(sz, 1);
                      if (sz[0] != '\0') return FALSE;
                      char* szNone = ctx.buffer(1, 'y').as<char>();
                      SessMgr_GetLastErrorString(szNone, 0);
                      return szNone[0] == 'y';
                    },
                    local}}});
  rows.push_back({"SessMgr_GetErrorString",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL buffer",
                    [](CallContext&) -> BOOL {
                      return std::strcmp(SessMgr_GetErrorString(2, nullptr, 10), "Invalid input buffer") == 0;
                    },
                    local},
                   {"unknown and errno codes into 3 bytes",
                    [](CallContext& ctx) -> BOOL {
                      for (SMGR_RESULT code : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x20000000u | 9999u, 0u}) {
                        char* sz = ctx.buffer(3, 'x').as<char>();
                        if (SessMgr_GetErrorString(code, sz, 3) != sz || std::strlen(sz) > 2) return FALSE;
                      }
                      return TRUE;
                    },
                    local}}});

  // -- Companion helpers exported for front ends.
  rows.push_back({"FixUpInputFileName",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL name",
                    [](CallContext&) { return FixUpInputFileName(nullptr, 16, "/tmp/", ".mp4"); },
                    {FALSE, LE::Unchanged}},
                   {"NULL folder and size 0",
                    [](CallContext& ctx) {
                      char* sz = ctx.buffer(16, 'a').as<char>();
                      sz[15] = '\0';
                      return static_cast<BOOL>(FixUpInputFileName(sz, 16, nullptr, ".mp4") ||
                                               FixUpInputFileName(sz, 0, "/tmp/", ".mp4"));
                    },
                    {FALSE, LE::Unchanged}},
                   {"name filling its buffer",
                    [](CallContext& ctx) {
                      char* sz = ctx.buffer(8, 'a').as<char>();
                      sz[7] = '\0';
                      FixUpInputFileName(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4");
                      return TRUE;
                    },
                    local},
                   {"unterminated name of exactly nSize bytes: refused, untouched",
                    [](CallContext& ctx) {
                      char* sz = ctx.buffer(8, 'a').as<char>();
                      BOOL bResult = FixUpInputFileName(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4");
                      return std::memcmp(sz, "aaaaaaaa", 8) == 0 ? bResult : 2;
                    },
                    {FALSE, LE::Unchanged}}}});
  rows.push_back(
      {"FixUpInputFileNameNoPath",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"NULL name, NULL error code",
         [](CallContext&) { return FixUpInputFileNameNoPath(nullptr, 16, "/tmp/", ".mp4", nullptr); },
         {FALSE, LE::Unchanged}},
        {"name filling its buffer",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(8, 'a').as<char>();
           sz[7] = '\0';
           int* piErr = ctx.buffer(sizeof(int)).as<int>();
           FixUpInputFileNameNoPath(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4", piErr);
           return TRUE;
         },
         local},
        {"unterminated name of exactly nSize bytes: refused",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(8, 'a').as<char>();
           return FixUpInputFileNameNoPath(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4", nullptr);
         },
         {FALSE, LE::Unchanged}},
        {"name whose extension does not fit: refused, not cut",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(8, 0).as<char>();
           std::memcpy(sz, "abcd", 5);
           BOOL bResult =
               FixUpInputFileNameNoPath(sz, 8, "/usr/share/ostrelle/still_images/", ".mp4", nullptr);
           return std::strcmp(sz, "abcd") == 0 ? bResult : 2;
         },
         {FALSE, LE::Unchanged}}}});
  rows.push_back({"GetObjectSelectorInfoText",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL selector, kind 99, NULL name, tiny buffers",
                    [](CallContext& ctx) -> BOOL {
                      SMGR_OBJECT_SELECTOR selectors[] = {OfKind(99), ByName(nullptr), ByName(kLongName),
                                                          ByHandle(nullptr)};
                      char* sz = ctx.buffer(2, 'x').as<char>();
                      if (GetObjectSelectorInfoText(nullptr, sz, 2) != sz) return FALSE;
                      for (const auto& selector : selectors) {
                        if (GetObjectSelectorInfoText(&selector, sz, 2) != sz || std::strlen(sz) > 1)
                          return FALSE;
                      }
                      return TRUE;
                    },
                    local}}});

  rows.push_back({"SessMgr_GetIPAddressString", 0, SuccessCodes::ZeroOnly, nullptr, nullptr, nullptr, nullptr,
                  AddressBadInputs<SessMgr_GetIPAddressString>()});
  rows.push_back({"GetIPAddressDebugString", 0, SuccessCodes::ZeroOnly, nullptr, nullptr, nullptr, nullptr,
                  AddressBadInputs<GetIPAddressDebugString>()});
  return rows;
}

const RowRegistration kCoreRows{"core", CoreRows};

}  // namespace
}  // namespace smgr::test
