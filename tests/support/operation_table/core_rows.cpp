// Operation-table rows of the lifecycle, the last error and the companion helpers.
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr const char* kStillDir = "/usr/share/ostrelle/still_images/";

std::vector<OperationRow> CoreRows() {
  const Expectation unsupported{FALSE, LE::Equals, SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION, false};
  const Expectation refused{FALSE, LE::Unchanged};
  const Expectation setsInvalid{TRUE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS};
  std::vector<OperationRow> rows;

  // -- Lifecycle (the sweep runs these against the peer; the connect fuzzer covers Init).
  rows.push_back(SweepOnlyRow(
      "SessMgrLib_Init",
      {{"version 1.1", [](CallContext&) { return SessMgrLib_Init(0x00010001u, nullptr); }, unsupported},
       {"version 0 with an output: the output is kept",
        [](CallContext& ctx) {
          DWORD* pdw = ctx.buffer(sizeof(DWORD), 0x44).as<DWORD>();
          BOOL bResult = SessMgrLib_Init(0, pdw);
          return *pdw == 0x44444444u ? bResult : 2;
        },
        unsupported}},
      SMGRPROT_USER_CONNECT_REQ));
  // No arguments: the sweep checks them uninitialised (last error 14, nothing sent).
  rows.push_back(SweepOnlyRow("SessMgrLib_Shutdown", {}, SMGRPROT_USER_DISCONNECT_IND));
  rows.push_back(SweepOnlyRow("SessMgr_Shutdown", {}, SMGRPROT_SYSTEM_SHUTDOWN_REQ));
  rows.push_back(SweepOnlyRow("SessMgrLib_WaitForResponse",
                              {{"a response nobody sends, NULL size",
                                [](CallContext&) { return SessMgrLib_WaitForResponse(0x7FFE, 1, nullptr); },
                                {FALSE, LE::Equals, SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR, false}}}));
  rows.push_back(SweepOnlyRow(
      "SessMgrLib_SetUID",
      {{"unknown user", [](CallContext&) { return SessMgrLib_SetUID(static_cast<uid_t>(0x7FFFFFF0)); },
        refused}}));
  rows.push_back(
      SweepOnlyRow("AdaptToPIDChange",
                   {{"no fork happened", [](CallContext&) { return AdaptToPIDChange(); }, asDocumented}}));
  rows.push_back(SweepOnlyRow("__SmgrAPILIB_AutoShutdown", {{"called by hand while connected",
                                                             [](CallContext&) -> BOOL {
                                                               __SmgrAPILIB_AutoShutdown();
                                                               return TRUE;
                                                             },
                                                             asDocumented}}));

  // -- Last error (thread-local, no request).
  rows.push_back(SweepOnlyRow("SessMgr_SetLastError", {{"any code",
                                                        [](CallContext&) -> BOOL {
                                                          return SessMgr_SetLastError(0xFFFFFFFFu) &&
                                                                 SessMgr_GetLastError() == 0xFFFFFFFFu;
                                                        },
                                                        {TRUE, LE::Any}}}));
  rows.push_back(SweepOnlyRow("SessMgr_SetLastErrorEx",
                              {{"NULL text",
                                [](CallContext&) -> BOOL {
                                  return SessMgr_SetLastErrorEx(SMGR_ERROR_INVALID_PARAMETERS, 5, nullptr) &&
                                         SessMgr_GetLastErrno() == 5;
                                },
                                setsInvalid},
                               {"text of 4000 characters",
                                [](CallContext& ctx) -> BOOL {
                                  char* sz = ctx.buffer(4001, 'T').as<char>();
                                  sz[4000] = '\0';
                                  return SessMgr_SetLastErrorEx(SMGR_ERROR_INVALID_PARAMETERS, 0, sz);
                                },
                                setsInvalid}}));
  rows.push_back(SweepOnlyRow(
      "SessMgr_GetLastError",
      {{"read twice", [](CallContext&) -> BOOL { return SessMgr_GetLastError() == SessMgr_GetLastError(); },
        asDocumented}}));
  rows.push_back(SweepOnlyRow("SessMgr_GetLastErrno", {{"read",
                                                        [](CallContext&) -> BOOL {
                                                          SessMgr_GetLastErrno();
                                                          return TRUE;
                                                        },
                                                        asDocumented}}));
  // Both text operations: a NULL buffer or size 0 gives the constant text and
  // leaves the caller's memory alone; 1 byte takes the terminator alone.
  rows.push_back(SweepOnlyRow("SessMgr_GetLastErrorString",
                              {{"NULL, 0-byte and 1-byte buffers",
                                [](CallContext& ctx) -> BOOL {
                                  char* sz = ctx.buffer(1, 'x').as<char>();
                                  const char* szBad = SessMgr_GetLastErrorString(sz, 0);
                                  if (sz[0] != 'x' || std::strcmp(szBad, "Invalid input buffer") != 0 ||
                                      SessMgr_GetLastErrorString(nullptr, 100) != szBad)
                                    return FALSE;
                                  return SessMgr_GetLastErrorString(sz, 1) == sz && sz[0] == '\0';
                                },
                                asDocumented}}));
  rows.push_back(
      SweepOnlyRow("SessMgr_GetErrorString",
                   {{"NULL and 0-byte buffers",
                     [](CallContext& ctx) -> BOOL {
                       char* sz = ctx.buffer(1, 'x').as<char>();
                       const char* szBad = SessMgr_GetErrorString(2, sz, 0);
                       return sz[0] == 'x' && std::strcmp(szBad, "Invalid input buffer") == 0 &&
                              SessMgr_GetErrorString(2, nullptr, 10) == szBad;
                     },
                     asDocumented},
                    {"unknown and errno codes into 3 bytes",
                     [](CallContext& ctx) -> BOOL {
                       for (SMGR_RESULT code : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x20000000u | 9999u, 0u}) {
                         char* sz = ctx.buffer(3, 'x').as<char>();
                         if (SessMgr_GetErrorString(code, sz, 3) != sz || std::strlen(sz) > 2) return FALSE;
                       }
                       return TRUE;
                     },
                     asDocumented}}));

  // -- Companion helpers exported for front ends. A refused name is left as it was.
  rows.push_back(SweepOnlyRow(
      "FixUpInputFileName",
      {{"NULL name", [](CallContext&) { return FixUpInputFileName(nullptr, 16, "/tmp/", ".mp4"); }, refused},
       {"NULL folder and size 0",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(16, 'a').as<char>();
          sz[15] = '\0';
          return static_cast<BOOL>(FixUpInputFileName(sz, 16, nullptr, ".mp4") ||
                                   FixUpInputFileName(sz, 0, "/tmp/", ".mp4"));
        },
        refused},
       {"name filling its buffer",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(8, 'a').as<char>();
          sz[7] = '\0';
          FixUpInputFileName(sz, 8, kStillDir, ".mp4");
          return TRUE;
        },
        asDocumented},
       {"unterminated name of exactly nSize bytes",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(8, 'a').as<char>();
          BOOL bResult = FixUpInputFileName(sz, 8, kStillDir, ".mp4");
          return std::memcmp(sz, "aaaaaaaa", 8) == 0 ? bResult : 2;
        },
        refused}}));
  rows.push_back(SweepOnlyRow(
      "FixUpInputFileNameNoPath",
      {{"NULL name, NULL error code",
        [](CallContext&) { return FixUpInputFileNameNoPath(nullptr, 16, "/tmp/", ".mp4", nullptr); },
        refused},
       {"name filling its buffer",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(8, 'a').as<char>();
          sz[7] = '\0';
          FixUpInputFileNameNoPath(sz, 8, kStillDir, ".mp4", ctx.buffer(sizeof(int)).as<int>());
          return TRUE;
        },
        asDocumented},
       {"unterminated name of exactly nSize bytes: 210",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(8, 'a').as<char>();
          int* piErr = ctx.buffer(sizeof(int)).as<int>();
          BOOL bResult = FixUpInputFileNameNoPath(sz, 8, kStillDir, ".mp4", piErr);
          return std::memcmp(sz, "aaaaaaaa", 8) == 0 && *piErr == 210 ? bResult : 2;
        },
        refused},
       {"name whose extension does not fit: 210, not cut",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(8, 0).as<char>();
          std::memcpy(sz, "abcd", 5);
          int* piErr = ctx.buffer(sizeof(int)).as<int>();
          BOOL bResult = FixUpInputFileNameNoPath(sz, 8, kStillDir, ".mp4", piErr);
          return std::strcmp(sz, "abcd") == 0 && *piErr == 210 ? bResult : 2;
        },
        refused}}));
  rows.push_back(SweepOnlyRow("GetObjectSelectorInfoText",
                              {{"NULL selector, kind 99, NULL name, tiny buffers",
                                [](CallContext& ctx) -> BOOL {
                                  SMGR_OBJECT_SELECTOR selectors[] = {OfKind(99), ByName(nullptr),
                                                                      ByName(kLongName), ByHandle(nullptr)};
                                  char* sz = ctx.buffer(2, 'x').as<char>();
                                  if (GetObjectSelectorInfoText(nullptr, sz, 2) != sz) return FALSE;
                                  for (const auto& selector : selectors) {
                                    if (GetObjectSelectorInfoText(&selector, sz, 2) != sz ||
                                        std::strlen(sz) > 1)
                                      return FALSE;
                                  }
                                  return TRUE;
                                },
                                asDocumented}}));

  rows.push_back(SweepOnlyRow("SessMgr_GetIPAddressString", AddressBadInputs<SessMgr_GetIPAddressString>()));
  rows.push_back(SweepOnlyRow("GetIPAddressDebugString", AddressBadInputs<GetIPAddressDebugString>()));
  return rows;
}

const RowRegistration kCoreRows{"core", CoreRows};

}  // namespace
}  // namespace smgr::test
