# Install rules, the pkg-config file, the CMake package (sessmgr::sessmgr) and
# the Debian packages (CPack DEB), in three components:
#   runtime  libsessmgr1       the shared library (SONAME libsessmgr.so.1)
#   dev      libsessmgr-dev    headers, development link, sessmgr.pc, the CMake package
#   tools    sessmgr-tools     smgrctl, sessmgrd-sim, manual pages (from docs/), bash completion
include(CMakePackageConfigHelpers)

set(SESSMGR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/sessmgr)

install(TARGETS sessmgr sessmgr_public_headers EXPORT sessmgrTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev
        FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_BINARY_DIR}/include/sessmgr_families.h ${PROJECT_BINARY_DIR}/include/smgrprot_families.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

install(EXPORT sessmgrTargets NAMESPACE sessmgr:: DESTINATION ${SESSMGR_CMAKE_DIR} COMPONENT dev)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/sessmgrConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/sessmgrConfig.cmake INSTALL_DESTINATION ${SESSMGR_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/sessmgrConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/sessmgrConfig.cmake ${PROJECT_BINARY_DIR}/sessmgrConfigVersion.cmake
        DESTINATION ${SESSMGR_CMAKE_DIR} COMPONENT dev)

# Relocatable: the prefix is found from where the .pc file lies.
file(RELATIVE_PATH SESSMGR_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" SESSMGR_PC_TO_PREFIX "${SESSMGR_PC_TO_PREFIX}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/sessmgr.pc.in ${PROJECT_BINARY_DIR}/sessmgr.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/sessmgr.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

if(SESSMGR_BUILD_TOOLS)
  install(TARGETS smgrctl sessmgrd-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  # Manual pages, made from the Markdown pages in docs/.
  set(SESSMGR_MAN_PAGES "")
  foreach(page smgrctl:1 sessmgrd-sim:8)
    string(REPLACE ":" ";" page "${page}")
    list(GET page 0 name)
    list(GET page 1 section)
    set(output ${PROJECT_BINARY_DIR}/man/${name}.${section})
    add_custom_command(OUTPUT ${output}
                       COMMAND ${CMAKE_COMMAND} -DINPUT=${PROJECT_SOURCE_DIR}/docs/${name}.md -DOUTPUT=${output}
                               -P ${CMAKE_CURRENT_LIST_DIR}/md2man.cmake
                       DEPENDS ${PROJECT_SOURCE_DIR}/docs/${name}.md ${CMAKE_CURRENT_LIST_DIR}/md2man.cmake)
    install(FILES ${output} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT tools)
    list(APPEND SESSMGR_MAN_PAGES ${output})
  endforeach()
  add_custom_target(man_pages ALL DEPENDS ${SESSMGR_MAN_PAGES})
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion/smgrctl
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
endif()

set(CPACK_PACKAGE_NAME sessmgr)
set(CPACK_PACKAGE_VENDOR "sessmgr developers")
set(CPACK_PACKAGE_CONTACT "sessmgr developers <sessmgr@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Session manager client library, CLI and simulator")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime dev tools)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# smgrctl needs libsessmgr.so.1 of this very build: dpkg-shlibdeps looks for it here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/sessmgr_lib)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libsessmgr1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Session manager client library (runtime)")
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libsessmgr-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libsessmgr1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEV_DESCRIPTION "Session manager client library (headers, pkg-config file, CMake package)")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME sessmgr-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libsessmgr1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "smgrctl (the session manager CLI) and sessmgrd-sim (the appliance simulator)")
include(CPack)
