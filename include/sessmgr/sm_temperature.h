/* The appliance's temperature sensor: current, highest and lowest readings
 * with their times, and the counts of readings the daemon threw away.
 * C99 and C++ clean. */
#ifndef SESSMGR_SM_TEMPERATURE_H
#define SESSMGR_SM_TEMPERATURE_H

#include "sessmgr/sm_types.h"

#pragma pack(push, 4)

/* Temperature statistics. Times are seconds since the epoch. 52 bytes. */
typedef struct tagSMGR_TEMPERATURE_INFO {
  uint32_t nSize; /* the record size the caller knows */
  int32_t nCurrentInCelsius;
  int32_t iCurrentMeasurementTime;
  int32_t nMaxInCelsius;
  int32_t iMaxMeasurementTime;
  int32_t nMinInCelsius;
  int32_t iMinMeasurementTime;
  SMGR_COUNTER nInvalidMeasurements; /* readings the sensor got wrong */
  int32_t iInvalidMeasurementTime;
  SMGR_COUNTER nDiscardedLargeDeltas; /* readings dropped as implausible jumps */
  int32_t iDiscardedLargeDeltaMeasurementTime;
} SMGR_TEMPERATURE_INFO;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_TEMPERATURE_INFO) == 52, temperature_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, nCurrentInCelsius) == 4, temperature_info_nCurrent);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, iCurrentMeasurementTime) == 8,
                   temperature_info_iCurrentTime);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, nMaxInCelsius) == 12, temperature_info_nMax);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, iMaxMeasurementTime) == 16, temperature_info_iMaxTime);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, nMinInCelsius) == 20, temperature_info_nMin);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, iMinMeasurementTime) == 24, temperature_info_iMinTime);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, nInvalidMeasurements) == 28, temperature_info_nInvalid);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, iInvalidMeasurementTime) == 36,
                   temperature_info_iInvalidTime);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, nDiscardedLargeDeltas) == 40, temperature_info_nDiscarded);
SMGR_STATIC_ASSERT(offsetof(SMGR_TEMPERATURE_INFO, iDiscardedLargeDeltaMeasurementTime) == 48,
                   temperature_info_iDiscardedTime);

SMGR_EXTERN_C_BEGIN

/** Reads the temperature statistics; set pInfo->nSize to the record size you
 * know (copied and reported as for SessMgr_GetLEDsInfo). Not initialised or a
 * NULL pInfo: 2. A daemon failure returns FALSE and leaves the last error. */
SMGR_API BOOL SessMgr_GetTemperatureInfo(SMGR_TEMPERATURE_INFO* pInfo);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_TEMPERATURE_H */
