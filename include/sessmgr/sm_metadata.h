/* Metadata sources: KLV or CoT received on a serial port, a UDP socket or a
 * video input, filtered, stamped with mission and security data, relayed and
 * fed into streams. The configuration, information and statistics records,
 * their enumerations, the MISB ST 0601 tag numbers and every operation.
 * C99 and C++ clean; records are little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_METADATA_H
#define SESSMGR_SM_METADATA_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_streams.h"
#include "sessmgr/sm_types.h"

/* ---- Constants ----------------------------------------------------------- */

#define SMGR_METADATA_MAX_RELAYS 8
#define SMGR_METADATA_MAX_SENSORS 16
#define SMGR_METADATA_SENSOR_UID_SIZE 128
#define SMGR_METADATA_DEVICE_NAME_SIZE 288
#define SMGR_METADATA_MISSION_ID_SIZE 128
#define SMGR_METADATA_UAS_TAG_FILTER_WORDS 5
#define SMGR_METADATA_SECURITY_TAG_FILTER_WORDS 1
/* Highest tag each filter knows. */
#define SMGR_METADATA_MAX_UAS_TAG 141
#define SMGR_METADATA_MAX_SECURITY_TAG 24

/* Input type (enInputType). */
#define SMGR_METADATA_IN_TYPE_SERIAL 0
#define SMGR_METADATA_IN_TYPE_INET 1
#define SMGR_METADATA_IN_TYPE_VIDEO_INPUT 2

/* Input format (enInputFormat). */
#define SMGR_METADATA_IN_FORMAT_KLV 0
#define SMGR_METADATA_IN_FORMAT_COT 1

/* Security classification (enClassification); 0 is not a classification. */
#define SMGR_METADATA_CLASSIFICATION_UNCLASSIFIED 1
#define SMGR_METADATA_CLASSIFICATION_RESTRICTED 2
#define SMGR_METADATA_CLASSIFICATION_CONFIDENTIAL 3
#define SMGR_METADATA_CLASSIFICATION_SECRET 4
#define SMGR_METADATA_CLASSIFICATION_TOP_SECRET 5

/* Decimation (DecimationCfg.enType). */
#define SMGR_METADATA_DECIMATION_TYPE_NONE 0
#define SMGR_METADATA_DECIMATION_TYPE_FACTOR 1
#define SMGR_METADATA_DECIMATION_TYPE_VIDENC 2

/* Serial standard (in.Serial.enStandard). */
#define SMGR_METADATA_SERIAL_STD_RS232 0
#define SMGR_METADATA_SERIAL_STD_RS422 1

/* Status of a source's information (enStatus) and state of its statistics
 * (enState): two enumerations, named differently on purpose. */
#define SMGR_METADATA_STATUS_STOPPED 0
#define SMGR_METADATA_STATUS_STARTED 1
#define SMGR_METADATA_STATE_STOPPED 0
#define SMGR_METADATA_STATE_WORKING 1

/* Fields a configure changes (SetFieldsFlag). The library acts on the named
 * bits below; the others select the remaining fields, in record order, and
 * pass through untouched. */
#define SMGR_METADATA_SET_INDEX 0x1ull
#define SMGR_METADATA_SET_NAME 0x2ull
#define SMGR_METADATA_SET_INPUT_TYPE 0x4ull
#define SMGR_METADATA_SET_INPUT_FORMAT 0x8ull
#define SMGR_METADATA_SET_AUTO_START 0x10ull
#define SMGR_METADATA_SET_CAPTURE 0x20ull /* bCaptureToDisk and nMaxCaptureSizeInKBytes */
#define SMGR_METADATA_SET_SERIAL_BAUDRATE 0x40ull
#define SMGR_METADATA_SET_SERIAL_DEVICE 0x80ull
#define SMGR_METADATA_SET_SERIAL_STANDARD 0x100ull
#define SMGR_METADATA_SET_SERIAL_FLOW_CONTROL 0x200ull
#define SMGR_METADATA_SET_SERIAL_PARITY 0x400ull
#define SMGR_METADATA_SET_INET_ADDRESS 0x800ull
#define SMGR_METADATA_SET_SERIAL_STOP_BITS 0x1000ull
#define SMGR_METADATA_SET_SERIAL_DATA_BITS 0x2000ull
#define SMGR_METADATA_SET_INET_PORT 0x4000ull
#define SMGR_METADATA_SET_COT_TIME_DELTA 0x8000ull
#define SMGR_METADATA_SET_COT_SENSOR_DISCOVERY 0x10000ull
#define SMGR_METADATA_SET_COT_SPI_UID 0x20000ull
#define SMGR_METADATA_SET_MISSION_ID 0x40000ull
#define SMGR_METADATA_SET_RELAYING 0x80000ull
#define SMGR_METADATA_SET_RELAYS 0x100000ull
#define SMGR_METADATA_SET_CLASSIFY_MISSION 0x200000ull
#define SMGR_METADATA_SET_CLASSIFICATION 0x400000ull
#define SMGR_METADATA_SET_CLASSIFYING_COUNTRY 0x800000ull
#define SMGR_METADATA_SET_OBJECT_COUNTRY 0x1000000ull
#define SMGR_METADATA_SET_DECIMATION 0x2000000ull
#define SMGR_METADATA_SET_VIDEO_INPUT 0x4000000ull
#define SMGR_METADATA_SET_UAS_TAG_FILTER 0x8000000ull
#define SMGR_METADATA_SET_SECURITY_TAG_FILTER 0x10000000ull

/* MISB ST 0601 UAS local-set tag numbers (tag t is bit t mod 32 of word t / 32
 * of UASTagFilter). The spellings are the established ones, typos included. */
enum tagSMGR_UAS_LOCAL_SET_TAG {
  UAS_CHECKSUM_TAG = 1,
  UAS_PRECISION_TIME_STAMP_TAG = 2,
  UAS_MISSION_ID_TAG = 3,
  UAS_PLATFORM_TAIL_NUMBER_TAG = 4,
  UAS_PLATFORM_HEADING_ANGLE_TAG = 5,
  UAS_PLATFORM_PITCH_ANGLE_TAG = 6,
  UAS_PLATFORM_ROLL_ANGLE_TAG = 7,
  UAS_PLATFORM_TRUE_AIRSPEED_TAG = 8,
  UAS_PLATFORM_INDICATED_AIRSPEED_TAG = 9,
  UAS_PLATFORM_DESIGNATION_TAG = 10,
  UAS_IMAGE_SOURCE_SENSOR_TAG = 11,
  UAS_IMAGE_COODINATE_SYSTEM_TAG = 12,
  UAS_SENSOR_LATITUDE_TAG = 13,
  UAS_SENSOR_LONGITUDE_TAG = 14,
  UAS_SENSOR_TRUE_ALTITUDE_TAG = 15,
  UAS_SENSOR_HORIZONTAL_FIELD_OF_VIEW_TAG = 16,
  UAS_SENSOR_VERITICAL_FIELD_OF_VIEW_TAG = 17,
  UAS_SENSOR_RELATIVE_AZIMUTH_ANGLE_TAG = 18,
  UAS_SENSOR_RELATIVE_ELEVATION_ANGLE_TAG = 19,
  UAS_SENSOR_RELATIVE_ROLL_ANGLE_TAG = 20,
  UAS_SLANT_RANGE_TAG = 21,
  UAS_TARGET_WIDTH_TAG = 22,
  UAS_FRAME_CENTER_LATITUDE_TAG = 23,
  UAS_FRAME_CENTER_LONGITUDE_TAG = 24,
  UAS_FRAME_CENTER_ELEVATION_TAG = 25,
  UAS_OFFSET_CORNER_LATITUDE_POINT_1_TAG = 26,
  UAS_OFFSET_CORNER_LONGITUDE_POINT_1_TAG = 27,
  UAS_OFFSET_CORNER_LATITUDE_POINT_2_TAG = 28,
  UAS_OFFSET_CORNER_LONGITUDE_POINT_2_TAG = 29,
  UAS_OFFSET_CORNER_LATITUDE_POINT_3_TAG = 30,
  UAS_OFFSET_CORNER_LONGITUDE_POINT_3_TAG = 31,
  UAS_OFFSET_CORNER_LATITUDE_POINT_4_TAG = 32,
  UAS_OFFSET_CORNER_LONGITUDE_POINT_4_TAG = 33,
  UAS_ICING_DETECTED_TAG = 34,
  UAS_WIND_DIRECTION_TAG = 35,
  UAS_WIND_SPEED_TAG = 36,
  UAS_STATIC_PRESSURE_TAG = 37,
  UAS_DENSITY_ALTITUDE_TAG = 38,
  UAS_OUTSIDE_AIR_TEMPERATURE_TAG = 39,
  UAS_TARGET_LOCATION_LATITUDE_TAG = 40,
  UAS_TARGET_LOCATION_LONGITUDE_TAG = 41,
  UAS_TARGET_LOCATION_ELEVATION_TAG = 42,
  UAS_TARGET_TRACK_GATE_WIDTH_TAG = 43,
  UAS_TARGET_TRACK_GATE_HEIGHT_TAG = 44,
  UAS_TARGET_ERROR_ESTIMATE_CE90_TAG = 45,
  UAS_TARGET_ERROR_ESTIMATE_LE90_TAG = 46,
  UAS_GENERIC_FLAG_DATA_TAG = 47,
  UAS_SECURITY_LOCAL_SET_TAG = 48,
  UAS_DIFFERENTIAL_PRESSURE_TAG = 49,
  UAS_PLATFORM_ANGLE_OF_ATTACK_TAG = 50,
  UAS_PLATFORM_VERTICAL_SPEED_TAG = 51,
  UAS_PLATFORM_SIDESLIP_ANGLE_TAG = 52,
  UAS_AIRFIELD_BAROMETRIC_PRESSURE_TAG = 53,
  UAS_AIRFIELD_ELEVATION_TAG = 54,
  UAS_RELATIVE_HUMIDITY_TAG = 55,
  UAS_PLATFORM_GROUND_SPEED_TAG = 56,
  UAS_GROUND_RANGE_TAG = 57,
  UAS_PLATFORM_FUEL_REMAINING_TAG = 58,
  UAS_PLATFORM_CALL_SIGN_TAG = 59,
  UAS_WEAPON_LOAD_TAG = 60,
  UAS_WEAPON_FIRED_TAG = 61,
  UAS_LASER_PRF_CODE_TAG = 62,
  UAS_SENSOR_FIELD_OF_VIEW_NAME_TAG = 63,
  UAS_PLATFORM_MAGNETIC_HEADING_TAG = 64,
  UAS_LS_VERSION_NUMBER_TAG = 65,
  UAS_TARGET_LOCATION_COVARIANCE_MATRIX_TAG = 66,
  UAS_ALTERNATE_PLATFORM_LATITUDE_TAG = 67,
  UAS_ALTERNATE_PLATFORM_LONGITUDE_TAG = 68,
  UAS_ALTERNATE_PLATFORM_ALTITUDE_TAG = 69,
  UAS_ALTERNATE_PLATFORM_NAME_TAG = 70,
  UAS_ALTERNATE_PLATFORM_HEADING_TAG = 71,
  UAS_EVENT_START_TIME_UTC_TAG = 72,
  UAS_RVT_LOCAL_SET_TAG = 73,
  UAS_VMTI_LOCAL_SET_TAG = 74,
  UAS_SENSOR_ELLIPSOID_HEIGHT_TAG = 75,
  UAS_ALTERNATE_PLATFORM_ELLIPSOID_HEIGHT_TAG = 76,
  UAS_OPERATIONAL_MODE_TAG = 77,
  UAS_FRAME_CENTER_HEIGHT_ABOVE_ELLIPSOID_TAG = 78,
  UAS_SENSOR_NORTH_VELOCITY_TAG = 79,
  UAS_SENSOR_EAST_VELOCITY_TAG = 80,
  UAS_IMAGE_HORIZON_PIXEL_PACK_TAG = 81,
  UAS_CORNER_LATITUDE_POINT_1_FULL_TAG = 82,
  UAS_CORNER_LONGITUDE_POINT_1_FULL_TAG = 83,
  UAS_CORNER_LATITUDE_POINT_2_FULL_TAG = 84,
  UAS_CORNER_LONGITUDE_POINT_2_FULL_TAG = 85,
  UAS_CORNER_LATITUDE_POINT_3_FULL_TAG = 86,
  UAS_CORNER_LONGITUDE_POINT_3_FULL_TAG = 87,
  UAS_CORNER_LATITUDE_POINT_4_FULL_TAG = 88,
  UAS_CORNER_LONGITUDE_POINT_4_FULL_TAG = 89,
  UAS_PLATFORM_PITCH_ANGLE_FULL_TAG = 90,
  UAS_PLATFORM_ROLL_ANGLE_FULL_TAG = 91,
  UAS_PLATFORM_ANGLE_OF_ATTACK_FULL_TAG = 92,
  UAS_PLATFORM_SIDESLIP_ANGLE_FULL_TAG = 93,
  UAS_MIIS_CORE_IDENTIFIER_TAG = 94,
  UAS_SAR_MOTION_IMAGERY_LOCAL_SET_TAG = 95,
  UAS_TARGET_WIDTH_EXTENDED_TAG = 96,
  UAS_RANGE_IMAGE_LOCAL_SET_TAG = 97,
  UAS_GEO_REGISTRATION_LOCAL_SET_TAG = 98,
  UAS_COMPOSITE_IMAGING_LOCAL_SET_TAG = 99,
  UAS_SEGMENT_LOCAL_SET_TAG = 100,
  UAS_AMEND_LOCAL_SET_TAG = 101,
  UAS_SDCC_FLP_TAG = 102,
  UAS_DENSITY_ALTITUDE_EXTENDED_TAG = 103,
  UAS_SENSOR_ELLIPSOID_HEIGHT_EXTENDED_TAG = 104,
  UAS_ALTERNATE_PLATFORM_ELLIPSOID_HEIGHT_EXTENDED_TAG = 105,
  UAS_STREAM_DESIGNATOR_TAG = 106,
  UAS_OPERATIONAL_BASE_TAG = 107,
  UAS_BROADCAST_SOURCE_TAG = 108,
  UAS_RANGE_TO_RECOVERY_LOCATION_TAG = 109,
  UAS_TIME_AIRBORN_TAG = 110,
  UAS_PROPULSION_UNIT_SPEED_TAG = 111,
  UAS_PLATFORM_COURSE_ANGLE_TAG = 112,
  UAS_ALTITUDE_AGL_TAG = 113,
  UAS_RADAR_ALTIMETER_TAG = 114,
  UAS_CONTROL_COMMAND_TAG = 115,
  UAS_CONTROL_COMMAND_VERIFICATION_LIST_TAG = 116,
  UAS_SENSOR_AZIMUTH_RATE_TAG = 117,
  UAS_SENSOR_ELEVATION_RATE_TAG = 118,
  UAS_SENSOR_ROLL_RATE_TAG = 119,
  UAS_ON_BOARD_MI_STORAGE_PERCENT_FULL_TAG = 120,
  UAS_ACTIVE_WAVELENGTH_LIST_TAG = 121,
  UAS_COUNTRY_CODES_TAG = 122,
  UAS_NUMBER_OF_NAVSATS_IN_VIEW_TAG = 123,
  UAS_POSITIONING_METHOD_SOURCE_TAG = 124,
  UAS_PLATFORM_STATUS_TAG = 125,
  UAS_SENSOR_CONTROL_MODE_TAG = 126,
  UAS_SENSOR_FRAME_RATE_PACK_TAG = 127,
  UAS_WAVELENGTHS_LIST_TAG = 128,
  UAS_TARGET_ID_TAG = 129,
  UAS_AIRBASE_LOCATIONS_TAG = 130,
  UAS_TAKE_OFF_TIME_TAG = 131,
  UAS_TRANSMISSION_FREQUENCY = 132,
  UAS_ON_BOARD_MI_STORATE_CAPACITY_TAG = 133,
  UAS_ZOOM_PERCENTAGE_TAG = 134,
  UAS_COMMUNICATIONS_METHOD_TAG = 135,
  UAS_LEAP_SECONDS_TAG = 136,
  UAS_CORRECTION_OFFSET_TAG = 137,
  UAS_PAYLOAD_LIST_TAG = 138,
  UAS_ACTIVE_PAYLOADS_TAG = 139,
  UAS_WEAPONS_STORES_TAG = 140,
  UAS_WAYPOINT_LIST_TAG = 141
};

#pragma pack(push, 4)

/* ---- Configuration records ------------------------------------------------ */

/* A serial input (in.Serial). 312 bytes. Flow control, parity and stop bits are
 * numbers the daemon checks. */
typedef struct tagSMGR_METADATA_SERIAL_SRC_CFG {
  char szInputDeviceName[SMGR_METADATA_DEVICE_NAME_SIZE];
  int32_t enStandard; /* SMGR_METADATA_SERIAL_STD_... */
  int32_t nBaudRate;
  int32_t enFlowControl;
  int32_t enParity;
  int32_t enStopBits;
  int32_t nDataBits;
} SMGR_METADATA_SERIAL_SRC_CFG;

/* A UDP input (in.Network): the local or multicast address (or a host name) and
 * the port. 536 bytes. */
typedef struct tagSMGR_METADATA_INET_SRC_CFG {
  SMGR_IP_ADDRESS Address;
  uint16_t usPort;
  uint16_t usReserved;
} SMGR_METADATA_INET_SRC_CFG;

/* A video input whose ancillary data carries KLV (in.Video). 4 bytes. */
typedef struct tagSMGR_METADATA_VIDEO_SRC_CFG {
  int32_t enInputInterface;
} SMGR_METADATA_VIDEO_SRC_CFG;

/* CoT conversion (format.CoT). 140 bytes. */
typedef struct tagSMGR_METADATA_COT_CFG {
  uint64_t nMaxAirCraftSPITimeDeltaInMs; /* largest gap between merged aircraft and SPI messages */
  BOOL bSensorDiscovery;                 /* collect the UIDs of the sensors seen */
  char szSpiUid[SMGR_METADATA_SENSOR_UID_SIZE];
} SMGR_METADATA_COT_CFG;

/* One relay destination. 544 bytes. */
typedef struct tagSMGR_METADATA_RELAY_CFG {
  SMGR_IP_ADDRESS Address;
  uint16_t usPort;
  uint16_t usReserved;
  int32_t iTOS;
  int32_t iTTL;
} SMGR_METADATA_RELAY_CFG;

/* Decimation of the metadata rate. 8 bytes. */
typedef struct tagSMGR_METADATA_DECIMATION_CFG {
  int32_t enType; /* SMGR_METADATA_DECIMATION_TYPE_... */
  union {
    uint32_t nFactor;   /* keep one message in nFactor */
    int32_t nEncoderID; /* the video encoder whose frame rate paces the metadata */
  } By;
} SMGR_METADATA_DECIMATION_CFG;

/* The input parameters, chosen by enInputType. 536 bytes. */
typedef union tagSMGR_METADATA_INPUT_CFG {
  SMGR_METADATA_SERIAL_SRC_CFG Serial;
  SMGR_METADATA_INET_SRC_CFG Network;
  SMGR_METADATA_VIDEO_SRC_CFG Video;
} SMGR_METADATA_INPUT_CFG;

/* The format parameters (CoT only). 140 bytes. */
typedef union tagSMGR_METADATA_FORMAT_CFG {
  SMGR_METADATA_COT_CFG CoT;
} SMGR_METADATA_FORMAT_CFG;

/* Creation and set-up record of a source. 5340 bytes. */
typedef struct tagSMGR_METADATA_CFG {
  uint32_t nSize;         /* create requires at least 5340 */
  uint64_t SetFieldsFlag; /* configure: SMGR_METADATA_SET_... bits; ignored by create */
  int32_t nIndex;         /* the source's ID; 0 or less lets the daemon choose */
  char szName[SMGR_OBJECT_NAME_SIZE];
  BOOL bAutoStart;
  int32_t enInputType;   /* SMGR_METADATA_IN_TYPE_... */
  int32_t enInputFormat; /* SMGR_METADATA_IN_FORMAT_... */
  BOOL bCaptureToDisk;
  int32_t nMaxCaptureSizeInKBytes;
  SMGR_METADATA_INPUT_CFG in;
  SMGR_METADATA_FORMAT_CFG format;
  BOOL bEnableRelaying;
  uint32_t nNumOfRelays; /* 0 to 8 */
  SMGR_METADATA_RELAY_CFG Relays[SMGR_METADATA_MAX_RELAYS];
  char szMissionID[SMGR_METADATA_MISSION_ID_SIZE];
  BOOL bClassifyMission;
  int32_t enClassification; /* SMGR_METADATA_CLASSIFICATION_... */
  char szClassifyingCountry[4];
  char szObjectCountry[24];
  SMGR_METADATA_DECIMATION_CFG DecimationCfg;
  BOOL bFilterUASTags;
  uint32_t UASTagFilter[SMGR_METADATA_UAS_TAG_FILTER_WORDS];
  BOOL bFilterUASSecurityTags;
  uint32_t UASSecurityTagFilter[SMGR_METADATA_SECURITY_TAG_FILTER_WORDS];
} SMGR_METADATA_CFG;

/* A source as the daemon reports it: the configuration without SetFieldsFlag
 * and bAutoStart, plus the status. 5332 bytes. */
typedef struct tagSMGR_METADATA_INFO {
  uint32_t nSize;
  int32_t nIndex;
  char szName[SMGR_OBJECT_NAME_SIZE];
  int32_t enInputType;
  int32_t enInputFormat;
  BOOL bCaptureToDisk;
  int32_t nMaxCaptureSizeInKBytes;
  SMGR_METADATA_INPUT_CFG in;
  SMGR_METADATA_FORMAT_CFG format;
  int32_t enStatus; /* SMGR_METADATA_STATUS_... */
  BOOL bEnableRelaying;
  uint32_t nNumOfRelays;
  SMGR_METADATA_RELAY_CFG Relays[SMGR_METADATA_MAX_RELAYS];
  char szMissionID[SMGR_METADATA_MISSION_ID_SIZE];
  BOOL bClassifyMission;
  int32_t enClassification;
  char szClassifyingCountry[4];
  char szObjectCountry[24];
  SMGR_METADATA_DECIMATION_CFG DecimationCfg;
  BOOL bFilterUASTags;
  uint32_t UASTagFilter[SMGR_METADATA_UAS_TAG_FILTER_WORDS];
  BOOL bFilterUASSecurityTags;
  uint32_t UASSecurityTagFilter[SMGR_METADATA_SECURITY_TAG_FILTER_WORDS];
} SMGR_METADATA_INFO;

/* ---- Statistics records ------------------------------------------------- */

/* CoT conversion counters and the discovered sensors. 2092 bytes. */
typedef struct tagSMGR_METADATA_COT_STATS {
  SMGR_COUNTER nRxSPIMessages;
  SMGR_COUNTER nRxAirCraftMessages;
  SMGR_COUNTER nConvertedKLVMessages;
  SMGR_COUNTER nConvertedKLVBytes;
  SMGR_COUNTER nRxFilteredSPIMessages;
  uint32_t nDiscoveredSensorsCount;
  char aszSensorUIDs[SMGR_METADATA_MAX_SENSORS][SMGR_METADATA_SENSOR_UID_SIZE];
} SMGR_METADATA_COT_STATS;

/* KLV counters. 48 bytes. */
typedef struct tagSMGR_METADATA_KLV_STATS {
  SMGR_COUNTER nRxUASMessages;
  SMGR_COUNTER nInvalidUASMessages;
  SMGR_COUNTER nAddedMissionIDs;
  SMGR_COUNTER nUpdatedMissionIDs;
  SMGR_COUNTER nAddedSecuritySets;
  SMGR_COUNTER nUpdatedSecuritySets;
} SMGR_METADATA_KLV_STATS;

/* Counters of one relay. 32 bytes. */
typedef struct tagSMGR_METADATA_RELAY_STATS {
  SMGR_COUNTER nTxBytes;
  SMGR_COUNTER nTxMessages;
  SMGR_COUNTER nErrors;
  int32_t iLastError;     /* errno of the last send error */
  int32_t iLastErrorTime; /* when it happened */
} SMGR_METADATA_RELAY_STATS;

typedef struct tagSMGR_METADATA_INET_STATS {
  SMGR_IP_ADDRESS SourceAddress; /* the last sender */
} SMGR_METADATA_INET_STATS;

typedef union tagSMGR_METADATA_INPUT_STATS {
  SMGR_METADATA_INET_STATS Network;
} SMGR_METADATA_INPUT_STATS;

typedef union tagSMGR_METADATA_FORMAT_STATS {
  SMGR_METADATA_COT_STATS CoT;
  SMGR_METADATA_KLV_STATS KLV;
} SMGR_METADATA_FORMAT_STATS;

/* Statistics of a source. 2992 bytes. */
typedef struct tagSMGR_METADATA_STATS {
  uint32_t nSize;        /* at least 2992 */
  int32_t enState;       /* SMGR_METADATA_STATE_... */
  int32_t enInputType;   /* SMGR_METADATA_IN_TYPE_... */
  int32_t enInputFormat; /* SMGR_METADATA_IN_FORMAT_... */
  SMGR_COUNTER nRxBytes;
  SMGR_COUNTER nRxOkMessages;
  SMGR_COUNTER nRxCorruptMessages;
  SMGR_METADATA_INPUT_STATS in;
  SMGR_METADATA_FORMAT_STATS format;
  int64_t nCurrentPTS;
  int32_t nNumOfRelays;
  int32_t iSrcTOS;
  SMGR_COUNTER nTOSUpdates;
  uint32_t nLastTOSUpdateUpTimeInSecs;
  int32_t iSrcTTL;
  SMGR_COUNTER nTTLUpdates;
  uint32_t nLastTTLUpdateUpTimeInSecs;
  SMGR_METADATA_RELAY_STATS Relays[SMGR_METADATA_MAX_RELAYS];
  int32_t nBitRateInKbps;
  BOOL bLatencyMeasured;
  uint32_t nMinLatencyInMS;
  uint32_t nMaxLatencyInMS;
  uint32_t nAverageLatencyInMS;
  uint32_t nAllTimeMinLatencyInMS;
  uint32_t nAllTimeMaxLatencyInMS;
} SMGR_METADATA_STATS;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_SERIAL_SRC_CFG) == 312, md_serial_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_SERIAL_SRC_CFG, szInputDeviceName) == 0,
                   md_serial_szInputDeviceName);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_SERIAL_SRC_CFG, enStandard) == 288, md_serial_enStandard);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_SERIAL_SRC_CFG, nBaudRate) == 292, md_serial_nBaudRate);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_SERIAL_SRC_CFG, enFlowControl) == 296, md_serial_enFlowControl);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_SERIAL_SRC_CFG, enParity) == 300, md_serial_enParity);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_SERIAL_SRC_CFG, enStopBits) == 304, md_serial_enStopBits);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_SERIAL_SRC_CFG, nDataBits) == 308, md_serial_nDataBits);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_INET_SRC_CFG) == 536, md_inet_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INET_SRC_CFG, usPort) == 532, md_inet_usPort);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_VIDEO_SRC_CFG) == 4, md_video_size);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_COT_CFG) == 140, md_cot_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_CFG, nMaxAirCraftSPITimeDeltaInMs) == 0,
                   md_cot_nMaxAirCraftSPITimeDeltaInMs);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_CFG, bSensorDiscovery) == 8, md_cot_bSensorDiscovery);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_CFG, szSpiUid) == 12, md_cot_szSpiUid);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_RELAY_CFG) == 544, md_relay_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_CFG, Address) == 0, md_relay_Address);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_CFG, usPort) == 532, md_relay_usPort);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_CFG, iTOS) == 536, md_relay_iTOS);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_CFG, iTTL) == 540, md_relay_iTTL);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_DECIMATION_CFG) == 8, md_decimation_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_DECIMATION_CFG, By) == 4, md_decimation_By);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_CFG) == 5340, md_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, nSize) == 0, md_cfg_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, SetFieldsFlag) == 4, md_cfg_SetFieldsFlag);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, nIndex) == 12, md_cfg_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, szName) == 16, md_cfg_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, bAutoStart) == 80, md_cfg_bAutoStart);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, enInputType) == 84, md_cfg_enInputType);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, enInputFormat) == 88, md_cfg_enInputFormat);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, bCaptureToDisk) == 92, md_cfg_bCaptureToDisk);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, nMaxCaptureSizeInKBytes) == 96,
                   md_cfg_nMaxCaptureSizeInKBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, in) == 100, md_cfg_in);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, format) == 636, md_cfg_format);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, bEnableRelaying) == 776, md_cfg_bEnableRelaying);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, nNumOfRelays) == 780, md_cfg_nNumOfRelays);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, Relays) == 784, md_cfg_Relays);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, szMissionID) == 5136, md_cfg_szMissionID);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, bClassifyMission) == 5264, md_cfg_bClassifyMission);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, enClassification) == 5268, md_cfg_enClassification);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, szClassifyingCountry) == 5272, md_cfg_szClassifyingCountry);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, szObjectCountry) == 5276, md_cfg_szObjectCountry);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, DecimationCfg) == 5300, md_cfg_DecimationCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, bFilterUASTags) == 5308, md_cfg_bFilterUASTags);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, UASTagFilter) == 5312, md_cfg_UASTagFilter);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, bFilterUASSecurityTags) == 5332,
                   md_cfg_bFilterUASSecurityTags);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_CFG, UASSecurityTagFilter) == 5336, md_cfg_UASSecurityTagFilter);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_INFO) == 5332, md_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, nSize) == 0, md_info_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, nIndex) == 4, md_info_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, szName) == 8, md_info_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, enInputType) == 72, md_info_enInputType);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, enInputFormat) == 76, md_info_enInputFormat);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, bCaptureToDisk) == 80, md_info_bCaptureToDisk);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, nMaxCaptureSizeInKBytes) == 84,
                   md_info_nMaxCaptureSizeInKBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, in) == 88, md_info_in);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, format) == 624, md_info_format);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, enStatus) == 764, md_info_enStatus);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, bEnableRelaying) == 768, md_info_bEnableRelaying);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, nNumOfRelays) == 772, md_info_nNumOfRelays);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, Relays) == 776, md_info_Relays);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, szMissionID) == 5128, md_info_szMissionID);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, bClassifyMission) == 5256, md_info_bClassifyMission);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, enClassification) == 5260, md_info_enClassification);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, szClassifyingCountry) == 5264, md_info_szClassifyingCountry);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, szObjectCountry) == 5268, md_info_szObjectCountry);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, DecimationCfg) == 5292, md_info_DecimationCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, bFilterUASTags) == 5300, md_info_bFilterUASTags);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, UASTagFilter) == 5304, md_info_UASTagFilter);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, bFilterUASSecurityTags) == 5324,
                   md_info_bFilterUASSecurityTags);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_INFO, UASSecurityTagFilter) == 5328, md_info_UASSecurityTagFilter);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_COT_STATS) == 2092, md_cot_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_STATS, nRxSPIMessages) == 0, md_cot_stats_nRxSPIMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_STATS, nRxAirCraftMessages) == 8,
                   md_cot_stats_nRxAirCraftMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_STATS, nConvertedKLVMessages) == 16,
                   md_cot_stats_nConvertedKLVMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_STATS, nConvertedKLVBytes) == 24,
                   md_cot_stats_nConvertedKLVBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_STATS, nRxFilteredSPIMessages) == 32,
                   md_cot_stats_nRxFilteredSPIMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_STATS, nDiscoveredSensorsCount) == 40,
                   md_cot_stats_nDiscoveredSensorsCount);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_COT_STATS, aszSensorUIDs) == 44, md_cot_stats_aszSensorUIDs);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_KLV_STATS) == 48, md_klv_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_KLV_STATS, nRxUASMessages) == 0, md_klv_stats_nRxUASMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_KLV_STATS, nInvalidUASMessages) == 8,
                   md_klv_stats_nInvalidUASMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_KLV_STATS, nAddedMissionIDs) == 16, md_klv_stats_nAddedMissionIDs);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_KLV_STATS, nUpdatedMissionIDs) == 24,
                   md_klv_stats_nUpdatedMissionIDs);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_KLV_STATS, nAddedSecuritySets) == 32,
                   md_klv_stats_nAddedSecuritySets);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_KLV_STATS, nUpdatedSecuritySets) == 40,
                   md_klv_stats_nUpdatedSecuritySets);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_RELAY_STATS) == 32, md_relay_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_STATS, nTxBytes) == 0, md_relay_stats_nTxBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_STATS, nTxMessages) == 8, md_relay_stats_nTxMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_STATS, nErrors) == 16, md_relay_stats_nErrors);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_STATS, iLastError) == 24, md_relay_stats_iLastError);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_RELAY_STATS, iLastErrorTime) == 28, md_relay_stats_iLastErrorTime);
SMGR_STATIC_ASSERT(sizeof(SMGR_METADATA_STATS) == 2992, md_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nSize) == 0, md_stats_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, enState) == 4, md_stats_enState);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, enInputType) == 8, md_stats_enInputType);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, enInputFormat) == 12, md_stats_enInputFormat);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nRxBytes) == 16, md_stats_nRxBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nRxOkMessages) == 24, md_stats_nRxOkMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nRxCorruptMessages) == 32, md_stats_nRxCorruptMessages);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, in.Network.SourceAddress) == 40,
                   md_stats_in_Network_SourceAddress);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, format) == 572, md_stats_format);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nCurrentPTS) == 2664, md_stats_nCurrentPTS);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nNumOfRelays) == 2672, md_stats_nNumOfRelays);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, iSrcTOS) == 2676, md_stats_iSrcTOS);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nTOSUpdates) == 2680, md_stats_nTOSUpdates);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nLastTOSUpdateUpTimeInSecs) == 2688,
                   md_stats_nLastTOSUpdateUpTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, iSrcTTL) == 2692, md_stats_iSrcTTL);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nTTLUpdates) == 2696, md_stats_nTTLUpdates);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nLastTTLUpdateUpTimeInSecs) == 2704,
                   md_stats_nLastTTLUpdateUpTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, Relays) == 2708, md_stats_Relays);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nBitRateInKbps) == 2964, md_stats_nBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, bLatencyMeasured) == 2968, md_stats_bLatencyMeasured);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nMinLatencyInMS) == 2972, md_stats_nMinLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nMaxLatencyInMS) == 2976, md_stats_nMaxLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nAverageLatencyInMS) == 2980, md_stats_nAverageLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nAllTimeMinLatencyInMS) == 2984,
                   md_stats_nAllTimeMinLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_METADATA_STATS, nAllTimeMaxLatencyInMS) == 2988,
                   md_stats_nAllTimeMaxLatencyInMS);

/* ---- Operations ------------------------------------------------------------ */

SMGR_EXTERN_C_BEGIN

/** Creates a serial or network source from pCfg (pCfg->nSize at least 5340) and
 * returns a new handle. Before sending, the library upper-cases the country
 * codes, defaults the classification, resolves host names, checks the relays
 * and adds the checksum tag to a UAS filter. Fails with 7, sending nothing,
 * when an identical source is already open in this process. */
SMGR_API BOOL SessMgr_CreateMetaDataSource(const SMGR_METADATA_CFG* pCfg, HMETADATA* phDataSrc);
/** The source ID that a handle remembers. No message, no lock; the last error
 * is left alone on success. */
SMGR_API BOOL SessMgr_GetMetaDataSourceID(HMETADATA hDataSrc, int* pID);
/** Deletes a source (selector by ID or name); local handles stay until closed. */
SMGR_API BOOL SessMgr_DeleteMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector);
/** Lists sources one per call: asks for nBuffSize / sizeof(SMGR_METADATA_INFO)
 * items but never more than one; walk the list by raising nOffset. */
SMGR_API BOOL SessMgr_EnumerateMetaDataSources(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                               UINT* pnTotalItemCount, UINT* pnReturnedItems,
                                               size_t* pnItemSize);
/** Opens a source by ID or name; handles of one source are shared and counted. */
SMGR_API BOOL SessMgr_OpenMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector, HMETADATA* phDataSrc);
/** Releases one Open or Create of the handle; *phDataSrc is cleared first and a
 * close request is sent every time, also while other references remain. */
SMGR_API BOOL SessMgr_CloseMetaDataSource(HMETADATA* phDataSrc);
/** Changes the fields flagged in pCfg->SetFieldsFlag (selector by ID or name).
 * The whole 5340-byte record is sent (at most pCfg->nSize bytes of the
 * caller's, zeros after). */
SMGR_API BOOL SessMgr_ConfigureMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector,
                                              const SMGR_METADATA_CFG* pCfg);
/** Reads a source's configuration and status; set pInfo->nSize first. On
 * success pInfo->nSize is the number of bytes copied. */
SMGR_API BOOL SessMgr_GetMetaDataSourceInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_METADATA_INFO* pInfo);
/** Reads a source's statistics; pStats->nSize must be at least 2992. Discovered
 * CoT sensor UIDs come back sorted, ignoring case. */
SMGR_API BOOL SessMgr_GetMetaDataSourceStats(const SMGR_OBJECT_SELECTOR* pSelector,
                                             SMGR_METADATA_STATS* pStats);
/** Starts a source; a warning result is a success. */
SMGR_API BOOL SessMgr_StartMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector);
/** Stops a source. */
SMGR_API BOOL SessMgr_StopMetaDataSource(const SMGR_OBJECT_SELECTOR* pSelector);
/** Zeroes a source's counters. */
SMGR_API BOOL SessMgr_ResetMetaDataSourceStats(const SMGR_OBJECT_SELECTOR* pSelector);
/** Name of the source at position nOffset of the enumeration (cut to nSize);
 * FALSE with 48 when there is none. */
SMGR_API BOOL SessMgr_GetMetaDataSourceNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize);

/** TRUE when the two configurations describe the same source: same name
 * ignoring case, same index above 0, same serial device, or same UDP port
 * (video-input sources never match). */
SMGR_API BOOL AreMetaDataSrcConfigsIdentical(const SMGR_METADATA_CFG* pCfg1, const SMGR_METADATA_CFG* pCfg2);
/** Renders the tags nMinVal..nMaxVal set in BitField as "1,2,65" into szBuffer
 * (cut to nSize, never overrun); no tag set gives the empty text. */
SMGR_API void _GenerateTagFilterString(const UINT* BitField, UINT nMinVal, UINT nMaxVal, char* szBuffer,
                                       size_t nSize);

/* Value names: each writes the text into szBuffer (cut to nSize) and returns
 * szBuffer; a NULL buffer or a zero size returns the constant "Invalid input
 * buffer"; an unknown value gives "(Invalid:%d)". */
/** "Serial", "Network", and "HD-SDI" or "ST-2110" by the unit's personality. */
SMGR_API char* SessMgr_GetMetaDataInputTypeString(int enInput, char* szBuffer, size_t nSize);
/** "KLV", "CoT". */
SMGR_API char* SessMgr_GetMetaDataInputFormatString(int enInput, char* szBuffer, size_t nSize);
/** State of the statistics: "DISABLED", "WORKING". */
SMGR_API char* SessMgr_GetMetaDataSourceStateString(int enState, char* szBuffer, size_t nSize);
/** Status of the information: "STOPPED", "STARTED". */
SMGR_API char* SessMgr_GetMetaDataSourceStatusString(int enStatus, char* szBuffer, size_t nSize);
/** "RS-232", "RS-422". */
SMGR_API char* SessMgr_GetMetaDataSerialStandardString(int enStandard, char* szBuffer, size_t nSize);
/** "UNCLASSIFIED" (1) to "TOP SECRET" (5). */
SMGR_API char* SessMgr_GetMetaDataMissionClassificationString(int enClassification, char* szBuffer,
                                                              size_t nSize);

/** Frees every metadata handle of this process, whatever its count (library
 * shutdown does it for the last initialisation). */
SMGR_API void CleanupSessMgrMetaData(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_METADATA_H */
