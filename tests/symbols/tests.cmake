# Exported-symbol check: libsessmgr.so exports only the library's operations
# and carries the SONAME libsessmgr.so.1.
set(SESSMGR_EXPORT_CHECK_FLAGS "")
if(SESSMGR_SANITIZE)
  set(SESSMGR_EXPORT_CHECK_FLAGS --sanitized)
endif()
add_test(NAME exported_symbols COMMAND sh ${CMAKE_CURRENT_LIST_DIR}/check_exports.sh $<TARGET_FILE:sessmgr>
                                       ${PROJECT_SOURCE_DIR}/sessmgr_lib/libsessmgr.map
                                       ${SESSMGR_EXPORT_CHECK_FLAGS})
set_tests_properties(exported_symbols PROPERTIES LABELS unit)
