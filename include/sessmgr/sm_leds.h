/* The front-panel LEDs: their states and transition counters, blinking to
 * locate a unit, and the display texts of the LED states. C99 and C++ clean. */
#ifndef SESSMGR_SM_LEDS_H
#define SESSMGR_SM_LEDS_H

#include "sessmgr/sm_types.h"

/* LED states (SMGR_LEDS_INFO.en...LED). */
#define SMGR_LED_STATE_OFF 0
#define SMGR_LED_STATE_AMBER_BLINKING 1
#define SMGR_LED_STATE_AMBER_ON 2
#define SMGR_LED_STATE_GREEN_BLINKING 3
#define SMGR_LED_STATE_GREEN_ON 4
#define SMGR_LED_STATE_RED_ON 5

#pragma pack(push, 4)

/* Every LED's state and how often it changed. 64 bytes. */
typedef struct tagSMGR_LEDS_INFO {
  uint32_t nSize; /* the record size the caller knows */
  int32_t enStatusLED;
  int32_t en4kLED;
  int32_t enErrorLED;
  int32_t enStatus1LED;
  int32_t enStatus2LED;
  int32_t enStatus3LED;
  int32_t enStatus4LED;
  uint32_t nStatusLEDTransitions;
  uint32_t n4kLEDTransitions;
  uint32_t nErrorLEDTransitions;
  uint32_t nStatus1LEDTransitions;
  uint32_t nStatus2LEDTransitions;
  uint32_t nStatus3LEDTransitions;
  uint32_t nStatus4LEDTransitions;
  uint32_t nBlinkStopUpTime; /* system up-time in seconds at which blinking stops */
} SMGR_LEDS_INFO;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_LEDS_INFO) == 64, leds_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, enStatusLED) == 4, leds_info_enStatusLED);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, en4kLED) == 8, leds_info_en4kLED);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, enErrorLED) == 12, leds_info_enErrorLED);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, enStatus1LED) == 16, leds_info_enStatus1LED);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, enStatus2LED) == 20, leds_info_enStatus2LED);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, enStatus3LED) == 24, leds_info_enStatus3LED);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, enStatus4LED) == 28, leds_info_enStatus4LED);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, nStatusLEDTransitions) == 32, leds_info_nStatusLEDTransitions);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, n4kLEDTransitions) == 36, leds_info_n4kLEDTransitions);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, nErrorLEDTransitions) == 40, leds_info_nErrorLEDTransitions);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, nStatus1LEDTransitions) == 44, leds_info_nStatus1LEDTransitions);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, nStatus2LEDTransitions) == 48, leds_info_nStatus2LEDTransitions);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, nStatus3LEDTransitions) == 52, leds_info_nStatus3LEDTransitions);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, nStatus4LEDTransitions) == 56, leds_info_nStatus4LEDTransitions);
SMGR_STATIC_ASSERT(offsetof(SMGR_LEDS_INFO, nBlinkStopUpTime) == 60, leds_info_nBlinkStopUpTime);

SMGR_EXTERN_C_BEGIN

/** Reads the LED states; set pInfo->nSize to the record size you know. On
 * success min(that, the daemon's size) bytes are copied and stored in nSize.
 * Not initialised or a NULL pInfo: 2. A daemon failure returns FALSE and
 * leaves the last error as it was. */
SMGR_API BOOL SessMgr_GetLEDsInfo(SMGR_LEDS_INFO* pInfo);
/** Blinks the status and transmit LEDs for nHowLongInSeconds (220 when
 * already blinking). Not initialised: 2. */
SMGR_API BOOL SessMgr_StartBlinkingLEDs(UINT nHowLongInSeconds);
/** Stops the blinking (221 when not blinking). Not initialised: 2. */
SMGR_API BOOL SessMgr_StopBlinkingLEDs(void);
/** "Off", "Amber-Blinking", "Amber", "Green-Blinking", "Green", "Red";
 * "(Invalid:%d)" otherwise. The constant "Invalid input buffer" for a NULL or
 * empty buffer. */
SMGR_API char* SessMgr_GetLEDStateString(int enState, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_LEDS_H */
