# smgr-exporter tests: exporter_rules_tests (counter continuity and label texts,
# in-process) and exporter_prometheus_tests (the simulator, the exporter and a
# real Prometheus server; skipped when /usr/bin/prometheus is missing).
if(NOT TARGET smgr_exporter_core)
  return()
endif()
set(EXPORTER_TEST_DIR ${CMAKE_CURRENT_LIST_DIR})

add_executable(exporter_rules_tests ${EXPORTER_TEST_DIR}/exporter_rules_test.cpp)
target_link_libraries(exporter_rules_tests PRIVATE smgr_exporter_core GTest::gtest GTest::gtest_main sessmgr_warnings)
gtest_discover_tests(exporter_rules_tests DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "exporter;unit")

add_executable(exporter_prometheus_tests ${EXPORTER_TEST_DIR}/exporter_prometheus_test.cpp
                                         ${PROJECT_SOURCE_DIR}/tests/sim/sim_harness.cpp)
target_include_directories(exporter_prometheus_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests ${SESSMGR_TEST_DIRS})
target_link_libraries(exporter_prometheus_tests PRIVATE nlohmann_json::nlohmann_json GTest::gtest GTest::gtest_main
                                                        sessmgr_warnings sessmgr_public_headers rt)
target_compile_definitions(exporter_prometheus_tests PRIVATE SESSMGR_SIM_PATH="$<TARGET_FILE:sessmgrd-sim>"
                                                             SMGRCTL_PATH="$<TARGET_FILE:smgrctl>"
                                                             SMGR_EXPORTER_PATH="$<TARGET_FILE:smgr-exporter>")
add_dependencies(exporter_prometheus_tests sessmgrd-sim smgrctl smgr-exporter)
# Each test starts a simulator, the exporter and Prometheus: one at a time.
gtest_discover_tests(exporter_prometheus_tests DISCOVERY_TIMEOUT 60
                     PROPERTIES LABELS "exporter;process" RUN_SERIAL TRUE TIMEOUT 180)
