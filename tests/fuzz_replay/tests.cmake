# Every fuzz target, built without libFuzzer, replays its seed corpus and the
# inputs that once broke a property (fuzz/regressions/<target>/) in the regular
# test presets, so findings stay fixed under default and asan builds alike.
set(SESSMGR_FUZZ_DIR ${PROJECT_SOURCE_DIR}/fuzz)
file(GLOB SESSMGR_OPERATION_TABLE_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/../support/operation_table/*.cpp)
add_library(sessmgr_fuzz_replay_common OBJECT ${SESSMGR_FUZZ_DIR}/fake_daemon.cpp ${SESSMGR_FUZZ_DIR}/replay_main.cpp
                                              ${SESSMGR_OPERATION_TABLE_SOURCES})
target_include_directories(sessmgr_fuzz_replay_common PUBLIC ${SESSMGR_FUZZ_DIR} ${CMAKE_CURRENT_LIST_DIR}/../support
                                                             ${CMAKE_CURRENT_LIST_DIR}/../support/operation_table)
target_link_libraries(sessmgr_fuzz_replay_common PUBLIC sessmgr_static PRIVATE sessmgr_warnings)
foreach(target fuzz_responses fuzz_connect fuzz_wait)
  add_executable(replay_${target} ${SESSMGR_FUZZ_DIR}/${target}.cpp)
  target_link_libraries(replay_${target} PRIVATE sessmgr_fuzz_replay_common sessmgr_warnings)
  add_test(NAME fuzz_replay.${target} COMMAND replay_${target} ${SESSMGR_FUZZ_DIR}/regressions/${target})
  set_tests_properties(fuzz_replay.${target} PROPERTIES LABELS fuzz_replay)
endforeach()
