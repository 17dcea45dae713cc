# Header hygiene: the public headers must compile as strict C99 and as C++, and a
# C program must link against libsessmgr.so. The header objects are part of the
# default build, so a header that breaks either language breaks the build.
set(SESSMGR_C99_DIR ${CMAKE_CURRENT_LIST_DIR})

add_library(sessmgr_headers_c99 OBJECT ${SESSMGR_C99_DIR}/headers_c99.c)
target_link_libraries(sessmgr_headers_c99 PRIVATE sessmgr_public_headers)
set_target_properties(sessmgr_headers_c99 PROPERTIES C_STANDARD 99 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
target_compile_options(sessmgr_headers_c99 PRIVATE -pedantic -Werror -Wall -Wextra)

add_library(sessmgr_headers_cxx OBJECT ${SESSMGR_C99_DIR}/headers_cxx.cpp)
target_link_libraries(sessmgr_headers_cxx PRIVATE sessmgr_public_headers)
target_compile_options(sessmgr_headers_cxx PRIVATE -pedantic -Werror -Wall -Wextra)

add_executable(sessmgr_c_client ${SESSMGR_C99_DIR}/c_client.c)
set_target_properties(sessmgr_c_client PROPERTIES C_STANDARD 99 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
target_compile_options(sessmgr_c_client PRIVATE -pedantic -Werror -Wall -Wextra)
target_link_libraries(sessmgr_c_client PRIVATE sessmgr)
add_test(NAME c_client_links_shared_library COMMAND sessmgr_c_client)
set_tests_properties(c_client_links_shared_library PROPERTIES LABELS unit)
if(SESSMGR_SANITIZE)
  # A sanitized libsessmgr.so needs the C++ parts of the sanitizer runtime, which
  # only the C++ driver links into the executable.
  set_target_properties(sessmgr_c_client PROPERTIES LINKER_LANGUAGE CXX)
endif()
