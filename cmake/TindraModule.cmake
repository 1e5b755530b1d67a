# tindra_module(NAME <name> RANK <n> SOURCES … HEADERS … DEPS <module> … LIBS <library> …)
#
# One static library, Tindra::<name>, of the sources of one folder below src/. A module may use only
# modules of a lower rank; CMake accepts cycles between static libraries, so the rank is checked here
# and the includes themselves by tools/check_layers.py. A module in a module's folder is named by its path,
# a/b, and linked as Tindra::a_b.
define_property(TARGET PROPERTY TINDRA_RANK BRIEF_DOCS "Layer of a module" FULL_DOCS "A module uses lower ranks only")

# One precompiled header, compiled once and taken by every module and test.
function(tindra_use_pch target)
  if(NOT TINDRA_PCH)
    return()
  endif()
  if(NOT TARGET tindra_pch)
    file(WRITE ${CMAKE_BINARY_DIR}/pch/pch.cpp "")
    add_library(tindra_pch OBJECT ${CMAKE_BINARY_DIR}/pch/pch.cpp)
    set_target_properties(tindra_pch PROPERTIES AUTOMOC OFF)
    target_link_libraries(tindra_pch PRIVATE tindra_options Qt5::Widgets Qt5::Network)
    target_precompile_headers(tindra_pch PRIVATE <QtCore> <QtGui> <QtWidgets> <memory> <functional>)
  endif()
  # The header was compiled with these, so its users need the same.
  target_link_libraries(${target} PRIVATE Qt5::Widgets Qt5::Network)
  target_precompile_headers(${target} REUSE_FROM tindra_pch)
endfunction()

function(tindra_module)
  cmake_parse_arguments(arg "" "NAME;RANK" "SOURCES;HEADERS;DEPS;LIBS" ${ARGN})
  string(REPLACE "/" "_" target "tindra_${arg_NAME}")
  add_library(${target} STATIC ${arg_SOURCES})
  string(REPLACE "tindra_" "Tindra::" alias ${target})
  add_library(${alias} ALIAS ${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR}/src FILES ${arg_HEADERS})
  set_target_properties(${target} PROPERTIES TINDRA_RANK ${arg_RANK})
  target_link_libraries(${target} PUBLIC tindra_options ${arg_LIBS})
  foreach(dep IN LISTS arg_DEPS)
    string(REPLACE "/" "_" dep_target "Tindra::${dep}")
    get_target_property(rank ${dep_target} TINDRA_RANK)
    if(NOT rank LESS arg_RANK)
      message(FATAL_ERROR "${arg_NAME} (rank ${arg_RANK}) may not use ${dep} (rank ${rank})")
    endif()
    target_link_libraries(${target} PUBLIC ${dep_target})
  endforeach()
  tindra_use_pch(${target})
endfunction()
