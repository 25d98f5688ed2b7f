# vellumar_library(<target> FOLDER <folder under src/> SOURCES <files...>
#                  [DEPENDS <libraries...>] [PRIVATE_DEPENDS <libraries...>])
#
# One library per folder of src/. Its headers are reachable as "<folder>/<name>.h" only from the
# library itself and from what links it: each library has an include root of its own under the
# build tree holding a link to its folder alone, and a dependency's root comes with linking it.
# So a source that includes a header of a library its target doesn't declare fails to compile.
function(vellumar_library name)
  cmake_parse_arguments(L "INTERFACE" "FOLDER" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  set(link ${root}/${L_FOLDER})
  get_filename_component(parent ${link} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  if(NOT EXISTS ${link})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${L_FOLDER} ${link} SYMBOLIC)
  endif()
  if(L_INTERFACE)
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${root})
    target_link_libraries(${name} INTERFACE ${L_DEPENDS})
  else()
    add_library(${name} ${L_SOURCES})
    target_include_directories(${name} PUBLIC ${root})
    target_link_libraries(${name} PUBLIC ${L_DEPENDS} PRIVATE ${L_PRIVATE_DEPENDS})
  endif()
endfunction()
