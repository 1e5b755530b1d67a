# A test's time limit only ends what hangs: it is far above what the test needs, and above that again where the
# sanitizers slow everything down.
set(TINDRA_TEST_TIMEOUT 300)
if(TINDRA_SANITIZE)
  set(TINDRA_TEST_TIMEOUT 900)
endif()

# tindra_test(NAME tst_<class> LABEL unit|gui|x11|smoke SOURCES … LIBS … [TIMEOUT s] [ENV VAR=value …])
#
# One executable and one CTest test per class, run by tests/support/isolated with a home, runtime folder
# and configuration of its own; x11 and smoke tests get a display, window manager and session bus too.
function(tindra_test)
  cmake_parse_arguments(arg "" "NAME;LABEL;TIMEOUT" "SOURCES;LIBS;ENV" ${ARGN})
  if(NOT arg_SOURCES)
    set(arg_SOURCES ${arg_NAME}.cpp)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT ${TINDRA_TEST_TIMEOUT})
  endif()
  add_executable(${arg_NAME} ${arg_SOURCES})
  target_include_directories(${arg_NAME} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${arg_NAME} PRIVATE tindra_options Qt5::Test ${arg_LIBS})
  tindra_use_pch(${arg_NAME})
  set_target_properties(${arg_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${arg_NAME} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/isolated ${arg_LABEL} $<TARGET_FILE:${arg_NAME}>)
  set_tests_properties(${arg_NAME} PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT} ENVIRONMENT "${arg_ENV}")
endfunction()

# tindra_script_test(NAME … LABEL … SCRIPT file [ARGS …] [TIMEOUT s]): the same for a script.
function(tindra_script_test)
  cmake_parse_arguments(arg "" "NAME;LABEL;TIMEOUT;SCRIPT" "ARGS" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT ${TINDRA_TEST_TIMEOUT})
  endif()
  add_test(NAME ${arg_NAME} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/isolated ${arg_LABEL} ${arg_SCRIPT} ${arg_ARGS})
  set_tests_properties(${arg_NAME} PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT})
endfunction()
