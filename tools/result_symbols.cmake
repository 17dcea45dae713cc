# Generates result_symbols.inc ({code, "SMGR_ERROR_..."} rows) from the public
# results header, so that smgrctl names every code the header defines.
# Usage: cmake -DHEADER=sm_results.h -DOUTPUT=result_symbols.inc -P result_symbols.cmake
file(STRINGS ${HEADER} lines REGEX "^#define SMGR_[A-Z0-9_]+ (0x[0-9A-Fa-f]+|[0-9]+)u")
set(rows "/* Generated from ${HEADER}. */\n")
foreach(line ${lines})
  string(REGEX MATCH "^#define (SMGR_[A-Z0-9_]+) (0x[0-9A-Fa-f]+|[0-9]+)u" matched "${line}")
  set(symbol ${CMAKE_MATCH_1})
  set(value ${CMAKE_MATCH_2})
  if(symbol MATCHES "^SMGR_IS_")
    continue()  # flag bits, not codes
  endif()
  string(APPEND rows "{${value}u, \"${symbol}\"},\n")
endforeach()
file(WRITE ${OUTPUT}.tmp "${rows}")
file(COPY_FILE ${OUTPUT}.tmp ${OUTPUT} ONLY_IF_DIFFERENT)
file(REMOVE ${OUTPUT}.tmp)
