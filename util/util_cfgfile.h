/* INI-style settings file reader and the appliance personality. */
#ifndef SESSMGR_UTIL_CFGFILE_H
#define SESSMGR_UTIL_CFGFILE_H

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

#define VDR2_PERSONALITY_SDI 0
#define VDR2_PERSONALITY_2110 1

/* Reads an integer key; stores nDefault when the file, section or key is missing
 * or the value is not a number. TRUE when the key was found and parsed. */
BOOL CfgFile_GetIntValue(const char* szFile, const char* szSection, const char* szKey, int* pnValue, int nDefault);

/* SESSMGR_PERSONALITY ("SDI" / "2110") when set, else key Personality of section
 * System of the settings file (SESSMGR_SETTINGS_FILE or /etc/qelos.ini), else SDI. */
int GetSystemPersonality(void);

/* The settings file in force: SESSMGR_SETTINGS_FILE when set, else "/etc/qelos.ini". */
const char* GetSettingsFileName(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_UTIL_CFGFILE_H */
