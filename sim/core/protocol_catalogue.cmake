# The simulator's message catalogue, read from the wire headers at configure
# time so that it has one source of truth: protocol_catalogue.inc lists every
# message type of include/sessmgr/smgrprot_*.h as SMGR_CATALOGUE_MESSAGE(NAME)
# and every message record as SMGR_CATALOGUE_RECORD(NAME); its includer
# defines both. Included from sim/CMakeLists.txt once sessmgr_sim_core exists.
file(GLOB wire_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/sessmgr/smgrprot_*.h)
list(SORT wire_headers)
set(catalogue "/* Generated at configure time from include/sessmgr/smgrprot_*.h (sim/core/protocol_catalogue.cmake). */\n")
foreach(header ${wire_headers})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
  file(READ ${header} content)
  string(REGEX MATCHALL "#define[ \t]+SMGRPROT_[A-Z0-9_]+_(REQ|RSP|IND)[ \t]+[0-9]+" defines "${content}")
  foreach(define ${defines})
    string(REGEX REPLACE "#define[ \t]+([A-Z0-9_]+).*" "\\1" name "${define}")
    string(APPEND catalogue "SMGR_CATALOGUE_MESSAGE(${name})\n")
  endforeach()
  # "} SMGRPROT_MSG_X;" ends a record, "typedef SMGRPROT_MSG_Y SMGRPROT_MSG_X;" names a shared one.
  string(REGEX MATCHALL "(}|typedef[ \t]+[A-Za-z0-9_]+)[ \t]+SMGRPROT_MSG_[A-Z0-9_]+" records "${content}")
  foreach(record ${records})
    string(REGEX REPLACE ".*[ \t](SMGRPROT_MSG_[A-Z0-9_]+)$" "\\1" name "${record}")
    string(APPEND catalogue "SMGR_CATALOGUE_RECORD(${name})\n")
  endforeach()
endforeach()
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/generated/protocol_catalogue.inc CONTENT "${catalogue}")
target_include_directories(sessmgr_sim_core PUBLIC ${CMAKE_CURRENT_BINARY_DIR}/generated)
