# A test's time limit only ends what hangs: it is far above what the test needs, and above that again where
# sanitizers or counters slow everything down.
set(TINDRA_TEST_TIMEOUT 300)
set(TINDRA_TEST_ENV "")
if(TINDRA_SANITIZE OR TINDRA_COVERAGE)
  set(TINDRA_TEST_TIMEOUT 900)
endif()
if(TINDRA_SANITIZE)
  # The graphics driver, which the toolkit asks what it can do, loses 128 bytes and is gone when leaks are looked for:
  # it has no name then that a suppression could give. Nothing of ours draws by it.
  set(TINDRA_TEST_ENV QT_XCB_GL_INTEGRATION=none)
endif()

# tindra_test(NAME tst_<class> LABEL unit|gui|x11|smoke SOURCES … LIBS … [TIMEOUT s] [ENV VAR=value …])
#
# One executable and one CTest test per class, run by tests/support/isolated with a home, runtime folder
# and configuration of its own; x11 and smoke tests get a display, window manager and session bus too. A test
# called tst_<class>_threads runs state that threads share without the toolkit's threads, so that the thread
# sanitizer can judge it; the target thread_tests builds them all.
add_custom_target(thread_tests)
function(tindra_test)
  cmake_parse_arguments(arg "" "NAME;LABEL;TIMEOUT" "SOURCES;LIBS;ENV" ${ARGN})
  if(NOT arg_SOURCES)
    set(arg_SOURCES ${arg_NAME}.cpp)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT ${TINDRA_TEST_TIMEOUT})
  endif()
  if(arg_NAME MATCHES "_threads$")
    add_dependencies(thread_tests ${arg_NAME})
  endif()
  set(env ${TINDRA_TEST_ENV} ${arg_ENV})
  add_executable(${arg_NAME} ${arg_SOURCES})
  target_include_directories(${arg_NAME} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${arg_NAME} PRIVATE tindra_options Qt5::Test ${arg_LIBS})
  tindra_use_pch(${arg_NAME})
  set_target_properties(${arg_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${arg_NAME} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/isolated ${arg_LABEL} $<TARGET_FILE:${arg_NAME}>)
  set_tests_properties(${arg_NAME} PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "${env}")
endfunction()

# tindra_script_test(NAME … LABEL … SCRIPT file [ARGS …] [TIMEOUT s]): the same for a script.
function(tindra_script_test)
  cmake_parse_arguments(arg "" "NAME;LABEL;TIMEOUT;SCRIPT" "ARGS" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT ${TINDRA_TEST_TIMEOUT})
  endif()
  add_test(NAME ${arg_NAME} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/isolated ${arg_LABEL} ${arg_SCRIPT} ${arg_ARGS})
  set_tests_properties(${arg_NAME} PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "${TINDRA_TEST_ENV}")
endfunction()
