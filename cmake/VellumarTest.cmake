include(GoogleTest)

# vellumar_test(<name> SOURCES <files...> LIBS <libraries...>)
# One GoogleTest executable, its tests registered with CTest one by one.
function(vellumar_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gtest_main Threads::Threads)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_compile_definitions(${name} PRIVATE
    VELLUMAR_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    VELLUMAR_BINARY_DIR="${CMAKE_BINARY_DIR}")
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "LC_ALL=C.UTF-8")
endfunction()
