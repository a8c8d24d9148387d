# A source file that no list names would be neither built nor run, and nobody would know: it fails
# the configuration. The arguments are the targets of the calling directory that list its files.
function(volbrin_require_all_listed)
  foreach(target IN LISTS ARGN)
    get_target_property(sources ${target} SOURCES)
    list(APPEND listed ${sources})
  endforeach()
  file(GLOB_RECURSE found CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} *.cpp)
  foreach(file IN LISTS found)
    if(NOT file IN_LIST listed)
      message(FATAL_ERROR "${CMAKE_CURRENT_SOURCE_DIR}/${file} is listed in no target.")
    endif()
  endforeach()
endfunction()
