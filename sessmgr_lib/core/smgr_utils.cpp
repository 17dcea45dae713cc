// File-name completion for the file-based operations and the text form of an
// object selector for traces. Exported: front ends use the same rules to show
// callers what name the library will send.
#include <libgen.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "lib_trace.h"
#include "sessmgr/sm_utils.h"
#include "util.h"

namespace {

constexpr int kInvalidFileNamePath = 209;  // SMGR_ERROR_INVALID_FILENAME_PATH
constexpr int kFileNameTooLong = 210;      // SMGR_ERROR_FILENAME_TOO_LONG
constexpr size_t kMaxFileName = SMGR_MAX_API_FNAME_SIZE;

// The caller's selector as laid out in memory: the public type carries the same tag
// and layout (12 bytes, packed to 4).
#pragma pack(push, 4)
struct SelectorView {
  int32_t enType;
  union {
    int32_t ID;
    char* szName;
    void* Handle;
  } Via;
};
#pragma pack(pop)
static_assert(sizeof(SelectorView) == 12);
static_assert(offsetof(SelectorView, enType) == 0);
static_assert(offsetof(SelectorView, Via) == 4);

// Directory part of a name as dirname() sees it ("." when there is none).
std::string directoryOf(const std::string& name) {
  std::string copy = name;  // dirname() may write into its argument
  return dirname(copy.data());
}

// Traces carry the name of the exported operation, not of these helpers.
constexpr const char* kFixUpInputFileName = "FixUpInputFileName";
constexpr const char* kFixUpInputFileNameNoPath = "FixUpInputFileNameNoPath";

BOOL fixUpFailed() {
  SMGR_TRACE_AS(kFixUpInputFileName, 4, "Resulting FALSE.\n");
  return FALSE;
}

void setErrorCode(int* piErrCode, int nCode) {
  if (piErrCode != nullptr) *piErrCode = nCode;
}

BOOL fixUpInputFileName(char* szInOutFName, int nSize, const char* szStdDirectory,
                        const char* szStdExtension) {
  // Never read past the caller's buffer: a name without a terminator inside
  // nSize bytes is as wrong as one that is too long.
  const size_t nLimit = std::min(kMaxFileName, static_cast<size_t>(nSize));
  size_t nLength = StringLength(szInOutFName, nLimit);
  if (nLength == 0) return TRUE;
  if (nLength >= nLimit) {
    SMGR_TRACE_AS(kFixUpInputFileName, 4, "File name is too long.\n");
    return fixUpFailed();
  }
  std::string name(szInOutFName, nLength);
  std::string baseName = GetBaseName(name.c_str());
  std::string directory = directoryOf(name);
  if (!directory.empty() && directory.back() == '/') directory.pop_back();

  if (!IsStringTerminatedBy(baseName.c_str(), szStdExtension)) {
    SMGR_TRACE_AS(kFixUpInputFileName, 6,
                  "Need to provide extension since standard one \"%s\" is not present in \"%s\".\n",
                  szStdExtension, baseName.c_str());
    baseName += szStdExtension;
    if (baseName.size() >= kMaxFileName) {
      SMGR_TRACE_AS(kFixUpInputFileName, 4, "File name is too long.\n");
      return fixUpFailed();
    }
  }

  // Formatted aside first, so that a refused name leaves the caller's buffer as it was.
  std::string result(kMaxFileName * 2 + 2, '\0');
  int nResultLength;
  bool bStandardLocation = directory.empty() || directory == ".";
  if (bStandardLocation) {
    SMGR_TRACE_AS(kFixUpInputFileName, 6, "No path information provided, adding standard location.\n");
    nResultLength = PrintToString(result.data(), result.size(), "%s%s", szStdDirectory, baseName.c_str());
  } else {
    nResultLength = PrintToString(result.data(), result.size(), "%s/%s", directory.c_str(), baseName.c_str());
  }
  if (nResultLength < 0 || nResultLength >= nSize) {
    SMGR_TRACE_AS(kFixUpInputFileName, 4,
                  bStandardLocation ? "Adding standard path would bust file name limit.\n"
                                    : "File name is too long.\n");
    return fixUpFailed();
  }
  CopyString(szInOutFName, result.c_str(), static_cast<size_t>(nSize));
  return TRUE;
}

BOOL fixUpInputFileNameNoPath(char* szInOutFName, int nSize, const char* szStdDirectory,
                              const char* szStdExtension, int* piErrCode) {
  size_t nLength = StringLength(szInOutFName, static_cast<size_t>(nSize));
  if (nLength == 0) return TRUE;
  std::string name(szInOutFName, nLength);

  std::string directory = directoryOf(name);
  if (directory != ".") {
    directory += "/";
    if (directory != szStdDirectory) {
      SMGR_TRACE_AS(kFixUpInputFileNameNoPath, 4,
                    "Provided path \"%s\" does not match standard location \"%s\".\n", directory.c_str(),
                    szStdDirectory);
      setErrorCode(piErrCode, kInvalidFileNamePath);
      return FALSE;
    }
  }

  std::string baseName = GetBaseName(name.c_str());
  if (nLength >= kMaxFileName || baseName.size() >= kMaxFileName) {
    SMGR_TRACE_AS(kFixUpInputFileNameNoPath, 4, "File name is too long.\n");
    setErrorCode(piErrCode, kFileNameTooLong);
    return FALSE;
  }
  if (!IsStringTerminatedBy(baseName.c_str(), szStdExtension)) baseName += szStdExtension;
  // The result must fit the caller's buffer whole, never cut short.
  if (nLength >= static_cast<size_t>(nSize) || baseName.size() >= kMaxFileName ||
      baseName.size() >= static_cast<size_t>(nSize)) {
    SMGR_TRACE_AS(kFixUpInputFileNameNoPath, 4, "File name after adding extension is too long.\n");
    setErrorCode(piErrCode, kFileNameTooLong);
    return FALSE;
  }
  CopyString(szInOutFName, baseName.c_str(), static_cast<size_t>(nSize));
  return TRUE;
}

}  // namespace

extern "C" {

SMGR_API BOOL FixUpInputFileName(char* szInOutFName, int nSize, const char* szStdDirectory,
                                 const char* szStdExtension) {
  SMGR_ASSERT(szInOutFName != NULL);
  SMGR_ASSERT(szStdDirectory != NULL);
  SMGR_ASSERT(szStdExtension != NULL);
  if (szInOutFName == nullptr || szStdDirectory == nullptr || szStdExtension == nullptr || nSize <= 0) {
    return FALSE;
  }
  try {
    return fixUpInputFileName(szInOutFName, nSize, szStdDirectory, szStdExtension);
  } catch (...) {
    return FALSE;
  }
}

SMGR_API BOOL FixUpInputFileNameNoPath(char* szInOutFName, int nSize, const char* szStdDirectory,
                                       const char* szStdExtension, int* piErrCode) {
  SMGR_ASSERT(nSize == SMGR_MAX_API_FNAME_SIZE);
  SMGR_ASSERT(szInOutFName != NULL);
  SMGR_ASSERT(szStdDirectory != NULL);
  SMGR_ASSERT(szStdExtension != NULL);
  if (szInOutFName == nullptr || szStdDirectory == nullptr || szStdExtension == nullptr || nSize <= 0) {
    return FALSE;
  }
  try {
    return fixUpInputFileNameNoPath(szInOutFName, nSize, szStdDirectory, szStdExtension, piErrCode);
  } catch (...) {
    return FALSE;
  }
}

SMGR_API char* GetObjectSelectorInfoText(const struct tagSMGR_OBJECT_SELECTOR* pSelector, char* szBuffer,
                                         size_t nSize) {
  if (pSelector == nullptr) {
    CopyString(szBuffer, "(null)", nSize);
    return szBuffer;
  }
  const auto* pView = reinterpret_cast<const SelectorView*>(pSelector);
  switch (pView->enType) {
    case 0:
      PrintToString(szBuffer, nSize, "By ID: %d", pView->Via.ID);
      break;
    case 1:
      PrintToString(szBuffer, nSize, "By NAME: \"%s\"",
                    pView->Via.szName != nullptr ? pView->Via.szName : "(null)");
      break;
    case 2:
      PrintToString(szBuffer, nSize, "By HANDLE: %p", pView->Via.Handle);
      break;
    default:
      PrintToString(szBuffer, nSize, "Invalid type %d", pView->enType);
      break;
  }
  return szBuffer;
}

}  // extern "C"
