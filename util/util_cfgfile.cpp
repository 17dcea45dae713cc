// INI-style settings file reader and the appliance personality. The file is read
// afresh on every call: settings are read a handful of times per process, and a
// re-read picks up edits without any cache to invalidate.
#include "util_cfgfile.h"

#include <strings.h>

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "util_string.h"

namespace {

constexpr const char* kDefaultSettingsFile = "/etc/qelos.ini";

std::string_view trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n\v\f";
  size_t nFirst = text.find_first_not_of(kBlanks);
  if (nFirst == std::string_view::npos) return {};
  size_t nLast = text.find_last_not_of(kBlanks);
  return text.substr(nFirst, nLast - nFirst + 1);
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

// Finds the raw value of szKey in szSection: the last occurrence wins, as later
// lines override earlier ones. Comments start with ';' or '#', on a line of their
// own or after the value.
bool findValue(const char* szFile, const char* szSection, const char* szKey, std::string& value) {
  if (szFile == nullptr || szSection == nullptr || szKey == nullptr) return false;
  FILE* pFile = fopen(szFile, "re");
  if (pFile == nullptr) return false;
  bool bFound = false;
  bool bInSection = false;
  char* pLine = nullptr;
  size_t nCapacity = 0;
  ssize_t nRead;
  bool bFirstLine = true;
  while ((nRead = getline(&pLine, &nCapacity, pFile)) >= 0) {
    std::string_view line(pLine, static_cast<size_t>(nRead));
    if (bFirstLine && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);  // UTF-8 byte order mark
    bFirstLine = false;
    line = trim(line);
    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[') {
      size_t nClose = line.find(']');
      bInSection =
          nClose != std::string_view::npos && equalsIgnoreCase(trim(line.substr(1, nClose - 1)), szSection);
      continue;
    }
    if (!bInSection) continue;
    size_t nEquals = line.find('=');
    if (nEquals == std::string_view::npos || !equalsIgnoreCase(trim(line.substr(0, nEquals)), szKey))
      continue;
    std::string_view raw = line.substr(nEquals + 1);
    size_t nComment = raw.find_first_of(";#");
    if (nComment != std::string_view::npos) raw = raw.substr(0, nComment);
    value.assign(trim(raw));
    bFound = true;
  }
  free(pLine);
  fclose(pFile);
  return bFound;
}

// Decimal or 0x hexadecimal with an optional sign; the whole text must be the number.
bool parseInt(const std::string& text, int* pnValue) {
  const char* p = text.c_str();
  bool bNegative = false;
  if (*p == '+' || *p == '-') bNegative = *p++ == '-';
  int nBase = 10;
  if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) {
    nBase = 16;
    p += 2;
  }
  if (!isxdigit(static_cast<unsigned char>(*p)) ||
      (nBase == 10 && !isdigit(static_cast<unsigned char>(*p)))) {
    return false;
  }
  errno = 0;
  char* pEnd = nullptr;
  unsigned long long nMagnitude = strtoull(p, &pEnd, nBase);
  if (errno != 0 || *pEnd != '\0') return false;
  long long nValue = bNegative ? -static_cast<long long>(nMagnitude) : static_cast<long long>(nMagnitude);
  if (nMagnitude > static_cast<unsigned long long>(INT_MAX) + 1 || nValue < INT_MIN || nValue > INT_MAX) {
    return false;
  }
  *pnValue = static_cast<int>(nValue);
  return true;
}

bool personalityFromText(std::string_view text, int* pnPersonality) {
  if (equalsIgnoreCase(text, "SDI") || text == "0") {
    *pnPersonality = VDR2_PERSONALITY_SDI;
    return true;
  }
  if (text == "2110" || text == "1" || equalsIgnoreCase(text, "ST2110")) {
    *pnPersonality = VDR2_PERSONALITY_2110;
    return true;
  }
  return false;
}

}  // namespace

extern "C" {

BOOL CfgFile_GetIntValue(const char* szFile, const char* szSection, const char* szKey, int* pnValue,
                         int nDefault) {
  if (pnValue == nullptr) return FALSE;
  try {
    std::string value;
    if (findValue(szFile, szSection, szKey, value) && parseInt(value, pnValue)) return TRUE;
  } catch (...) {
  }
  *pnValue = nDefault;
  return FALSE;
}

BOOL CfgFile_GetStringValue(const char* szFile, const char* szSection, const char* szKey, char* szBuffer,
                            size_t nSize, const char* szDefault) {
  if (szBuffer == nullptr || nSize == 0) return FALSE;
  try {
    std::string value;
    if (findValue(szFile, szSection, szKey, value)) {
      CopyString(szBuffer, value.c_str(), nSize);
      return TRUE;
    }
  } catch (...) {
  }
  CopyString(szBuffer, szDefault, nSize);
  return FALSE;
}

const char* GetSettingsFileName(void) {
  const char* szFile = secure_getenv("SESSMGR_SETTINGS_FILE");
  return szFile != nullptr && *szFile != '\0' ? szFile : kDefaultSettingsFile;
}

int GetSystemPersonality(void) {
  int nPersonality = VDR2_PERSONALITY_SDI;
  const char* szEnvironment = secure_getenv("SESSMGR_PERSONALITY");
  if (szEnvironment != nullptr && personalityFromText(trim(szEnvironment), &nPersonality))
    return nPersonality;
  char acValue[32];
  if (CfgFile_GetStringValue(GetSettingsFileName(), "System", "Personality", acValue, sizeof(acValue), "") &&
      personalityFromText(acValue, &nPersonality)) {
    return nPersonality;
  }
  return VDR2_PERSONALITY_SDI;
}

}  // extern "C"
