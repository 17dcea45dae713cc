/* The configuration store: saving the appliance's running configuration to a
 * named file of the daemon's configuration folder, loading it back, deleting
 * saved files, and the saved and auto-save states. C99 and C++ clean. */
#ifndef SESSMGR_SM_CONFIG_H
#define SESSMGR_SM_CONFIG_H

#include "sessmgr/sm_types.h"

#define SMGR_CONFIG_FOLDER "/usr/share/ostrelle/config/"
#define SMGR_CONFIG_EXTENSION ".cfg"
#define SMGR_STARTUP_CONFIG_NAME "qelstartup.cfg"

SMGR_EXTERN_C_BEGIN

/** Saves the running configuration. NULL saves the start-up configuration;
 * a plain name goes into the configuration folder with ".cfg" added. A name
 * with a line feed, carriage return, "!" or "*" fails with 190, one over 287
 * characters (or too long once completed) with 210; nothing is sent then.
 * enStartupMode is passed to the daemon. Success leaves the last error as it
 * was. The daemon has 5 s to answer. Not-initialised is not checked. */
SMGR_API BOOL SessMgr_SaveConfig(const char* szFileName, int enStartupMode);
/** Loads a saved configuration (NULL or "": the start-up one). Invalid
 * characters fail with 190, a name over 255 characters or too long once
 * completed with 2. A warning from the daemon is a success and becomes the
 * last error; plain success leaves it as it was. The daemon has 15 s. */
SMGR_API BOOL SessMgr_LoadConfig(const char* szFileName);
/** Deletes a saved configuration (completed as for Load; no character check).
 * A failure carries the daemon's errno. */
SMGR_API BOOL SessMgr_DeleteConfig(const char* szFileName);
/** Deletes every saved configuration. *pnConfigsDeleted (when given) receives
 * the daemon's count whatever the result; a failure carries its errno. */
SMGR_API BOOL SessMgr_DeleteAllConfigs(ULONG* pnConfigsDeleted);
/** Whether the running configuration has been saved since its last change. */
SMGR_API BOOL SessMgr_IsCurrentConfigSaved(BOOL* pbAlreadySaved);
/** Turns saving on every change on or off. */
SMGR_API BOOL SessMgr_SetConfigAutoSaveState(BOOL bEnable);
/** Reads whether auto-save is on. */
SMGR_API BOOL SessMgr_GetConfigAutoSaveState(BOOL* pbEnabled);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_CONFIG_H */
