# The peer suite checks the operation table against the names libsessmgr.so exports.
if(TARGET peer_tests)
  target_compile_definitions(peer_tests PRIVATE SESSMGR_SHARED_LIBRARY_PATH="$<TARGET_FILE:sessmgr>")
  add_dependencies(peer_tests sessmgr)
endif()
