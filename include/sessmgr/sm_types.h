/* Basic types, export and packing macros shared by every public header of the
 * session manager client library. C99 and C++ clean. */
#ifndef SESSMGR_SM_TYPES_H
#define SESSMGR_SM_TYPES_H

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#ifdef __cplusplus
#define SMGR_EXTERN_C_BEGIN extern "C" {
#define SMGR_EXTERN_C_END }
#else
#define SMGR_EXTERN_C_BEGIN
#define SMGR_EXTERN_C_END
#endif

/* Marks an operation exported from libsessmgr.so; everything else is hidden. */
#define SMGR_API __attribute__((visibility("default")))

/* Compile-time layout checks usable from C99 and C++; msg is an identifier unique in
 * its file (C99 has no static_assert, so the check is a file-scope typedef). */
#ifdef __cplusplus
#define SMGR_STATIC_ASSERT(expr, msg) static_assert(expr, #msg)
#else
#define SMGR_STATIC_ASSERT(expr, msg) typedef char smgr_static_assert_##msg[(expr) ? 1 : -1]
#endif

typedef int32_t BOOL;
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef uint32_t UINT;
typedef uint64_t ULONG;
typedef uint64_t SMGR_COUNTER;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

/* Untyped object handle as it travels inside an object selector. */
typedef void* HSMGR;

#endif /* SESSMGR_SM_TYPES_H */
