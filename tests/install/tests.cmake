# Install test: the installed library, headers, pkg-config file and CMake
# package serve two out-of-tree consumers, run against the installed simulator.
if(NOT SESSMGR_BUILD_TOOLS OR SESSMGR_SANITIZE)
  return()  # sanitized libraries need their runtime in every consumer: checked in the default preset
endif()
add_test(NAME install_and_consume COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/install_consumers.sh ${PROJECT_BINARY_DIR}
                                          ${CMAKE_CURRENT_LIST_DIR}/consumers)
set_tests_properties(install_and_consume PROPERTIES LABELS "process" TIMEOUT 180 RUN_SERIAL TRUE)

# The Debian packages (CPack) hold what they should.
add_test(NAME debian_packages COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/debian_packages.sh ${PROJECT_BINARY_DIR})
set_tests_properties(debian_packages PROPERTIES LABELS "unit" TIMEOUT 300 RUN_SERIAL TRUE)
