# ABI guard: libsessmgr.so against the committed baseline (abi/). Built with the
# default preset's compiler and flags only: the baseline's types come from its
# debug information.
if(SESSMGR_SANITIZE OR NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  return()
endif()
add_test(NAME abi_compatible
         COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/check_abi.sh $<TARGET_FILE:sessmgr>
                 ${PROJECT_SOURCE_DIR}/abi/libsessmgr.so.1.abi ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/include)
set_tests_properties(abi_compatible PROPERTIES LABELS unit)
