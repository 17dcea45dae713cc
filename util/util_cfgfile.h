/* INI-style settings file reader and the appliance personality. */
#ifndef SESSMGR_UTIL_CFGFILE_H
#define SESSMGR_UTIL_CFGFILE_H

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

#define VDR2_PERSONALITY_SDI 0
#define VDR2_PERSONALITY_2110 1

/* File format: "[Section]" lines open a section; "key = value" lines inside it
 * (blanks around both are ignored); lines starting with ';' or '#' are comments and
 * a ';' or '#' after a value starts a trailing comment; CRLF line ends are fine.
 * Section names and keys compare case-insensitively. When a key occurs more than
 * once in the section, the last occurrence wins. The file is read on every call. */

/* Reads an integer key: decimal or 0x hexadecimal, optional sign, within the range
 * of int. Stores nDefault and returns FALSE when the file, section or key is missing
 * or the value is not such a number; TRUE when the key was found and parsed. */
BOOL CfgFile_GetIntValue(const char* szFile, const char* szSection, const char* szKey, int* pnValue,
                         int nDefault);

/* Reads a text key (trimmed, comment removed) into szBuffer (truncated to nSize).
 * Copies szDefault (NULL = "") and returns FALSE when the file, section or key is missing. */
BOOL CfgFile_GetStringValue(const char* szFile, const char* szSection, const char* szKey, char* szBuffer,
                            size_t nSize, const char* szDefault);

/* The appliance personality: SESSMGR_PERSONALITY ("SDI" or "2110", case-insensitive)
 * when set to one of these; else the key "Personality" of section "System" of the
 * settings file (GetSettingsFileName) with the value SDI, 2110, 0 or 1; else
 * VDR2_PERSONALITY_SDI. */
int GetSystemPersonality(void);

/* The settings file in force: SESSMGR_SETTINGS_FILE when set, else "/etc/qelos.ini". */
const char* GetSettingsFileName(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_UTIL_CFGFILE_H */
