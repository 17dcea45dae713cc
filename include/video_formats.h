/* VIDEO_FORMAT: the packed 64-bit video format code (raster, frame rate,
 * interlacing) and its accessors. The accessors arrive with the video encoder
 * family; the type is here so that records can carry it. */
#ifndef SESSMGR_VIDEO_FORMATS_H
#define SESSMGR_VIDEO_FORMATS_H

#include "sessmgr/sm_types.h"

typedef uint64_t VIDEO_FORMAT;

#endif /* SESSMGR_VIDEO_FORMATS_H */
