# tindra_substitute_library(NAME <target> FILE <name> SOURCES …)
#
# A library of the maker's as tests have it: a shared object <name>.so with its signatures in the folder that
# tests know as SubstituteLibraries, for the targets named by tindra_use_substitutes(). It links nothing of ours,
# as the real ones do not.
set(TINDRA_MAKERS ${CMAKE_BINARY_DIR}/tests/makers)
set(TINDRA_SUBSTITUTES ${CMAKE_BINARY_DIR}/tests/libraries)

function(tindra_makers)
  if(TARGET tindra_makers)
    return()
  endif()
  find_program(TINDRA_OPENSSL openssl REQUIRED)
  add_custom_command(OUTPUT ${TINDRA_MAKERS}/other.pem
    COMMAND ${CMAKE_SOURCE_DIR}/tests/support/make-makers ${TINDRA_MAKERS}
    DEPENDS ${CMAKE_SOURCE_DIR}/tests/support/make-makers
    COMMENT "Making the makers of substitute libraries")
  add_custom_target(tindra_makers DEPENDS ${TINDRA_MAKERS}/other.pem)
endfunction()

function(tindra_substitute_library)
  cmake_parse_arguments(arg "" "NAME;FILE" "SOURCES" ${ARGN})
  tindra_makers()
  add_library(${arg_NAME} MODULE ${arg_SOURCES})
  target_include_directories(${arg_NAME} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  # A library that brings a symbol of which there may be only one stays in the process that has none yet, and
  # tests watch the libraries go.
  target_compile_options(${arg_NAME} PRIVATE -Wall -Wextra -Wshadow -Werror -fno-gnu-unique)
  set_target_properties(${arg_NAME} PROPERTIES PREFIX "" OUTPUT_NAME ${arg_FILE} AUTOMOC OFF
    CXX_VISIBILITY_PRESET hidden LIBRARY_OUTPUT_DIRECTORY ${TINDRA_SUBSTITUTES})
  add_dependencies(${arg_NAME} tindra_makers)
  set_property(TARGET ${arg_NAME} APPEND PROPERTY LINK_DEPENDS
    "${CMAKE_SOURCE_DIR}/tests/support/sign-library;${TINDRA_MAKERS}/other.pem")
  add_custom_command(TARGET ${arg_NAME} POST_BUILD
    COMMAND ${CMAKE_SOURCE_DIR}/tests/support/sign-library ${TINDRA_MAKERS} $<TARGET_FILE:${arg_NAME}>)
endfunction()

# The libraries that stand around the editor in the program's folder.
set(TINDRA_PROGRAM_SUBSTITUTES substitute_ostler substitute_freshet substitute_wyvernc substitute_wyvern2
  substitute_quoin substitute_quoin2)

# tindra_use_substitutes(<test> <library target> …): builds those libraries, and the program that tries them, with
# the test.
function(tindra_use_substitutes test)
  add_dependencies(${test} tindra_library_trial ${ARGN})
endfunction()
