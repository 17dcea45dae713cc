# Simulator tests. sim_model_tests: every family's model, the profile and the
# dispatcher in-process (no queues), from **/*_model_test.cpp. sim_e2e_tests:
# the real sessmgrd-sim process over real queues, driven by raw requests, the
# library and smgrctl, from **/*_e2e_test.cpp. Queue use is small (4-message
# client queues) and every test removes what it creates.
if(NOT SESSMGR_BUILD_TOOLS)
  return()
endif()

find_package(nlohmann_json 3 REQUIRED)
set(SIM_TEST_DIR ${CMAKE_CURRENT_LIST_DIR})

file(GLOB_RECURSE SIM_MODEL_TEST_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/*_model_test.cpp)
add_executable(sim_model_tests ${SIM_MODEL_TEST_SOURCES})
target_include_directories(sim_model_tests PRIVATE ${SESSMGR_TEST_DIRS})
target_link_libraries(sim_model_tests PRIVATE sessmgr_sim_core GTest::gtest GTest::gtest_main sessmgr_warnings)
gtest_discover_tests(sim_model_tests DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "sim;unit")

file(GLOB_RECURSE SIM_E2E_TEST_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/*_e2e_test.cpp)
add_executable(sim_e2e_tests ${SIM_E2E_TEST_SOURCES} ${SIM_TEST_DIR}/sim_harness.cpp)
target_include_directories(sim_e2e_tests PRIVATE ${SESSMGR_TEST_DIRS})
target_link_libraries(sim_e2e_tests PRIVATE sessmgr_static nlohmann_json::nlohmann_json GTest::gtest
                                            GTest::gtest_main sessmgr_warnings rt)
target_compile_definitions(sim_e2e_tests PRIVATE SESSMGR_SIM_PATH="$<TARGET_FILE:sessmgrd-sim>"
                                                 SMGRCTL_PATH="$<TARGET_FILE:smgrctl>")
add_dependencies(sim_e2e_tests sessmgrd-sim smgrctl)
# Each test starts its own simulator; RUN_SERIAL keeps the queue budget low.
gtest_discover_tests(sim_e2e_tests DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "sim;process" RUN_SERIAL TRUE TIMEOUT 120)
