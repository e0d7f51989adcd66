# How a library of this house is declared. All public headers lie in include/KYV, yet no library has that folder on
# its path: each sees its own headers and those of the libraries it names, so that an upward include does not compile.
set_property(GLOBAL PROPERTY GLOBAL_DEPENDS_NO_CYCLES ON)

add_library(kyv_warnings INTERFACE)
target_compile_options(kyv_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wformat=2 -Wnon-virtual-dtor
                                              -Woverloaded-virtual)

# kyv_library(name HEADERS ... SOURCES ... NEEDS ... SYSTEM ...): one library of a floor.
#   NEEDS   libraries of lower floors, whose headers its own may include
#   SYSTEM  system libraries, which only its sources see
function(kyv_library name)
  cmake_parse_arguments(LIB "" "" "HEADERS;SOURCES;NEEDS;SYSTEM" ${ARGN})
  add_library(${name} STATIC ${LIB_SOURCES})
  set(view ${PROJECT_BINARY_DIR}/floors/${name})
  file(REMOVE_RECURSE ${view})
  file(MAKE_DIRECTORY ${view}/KYV)
  foreach(header IN LISTS LIB_HEADERS)
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/include/KYV/${header} ${view}/KYV/${header} SYMBOLIC)
  endforeach()
  target_include_directories(${name} PUBLIC ${view})
  target_link_libraries(${name} PUBLIC ${LIB_NEEDS} PRIVATE kyv_warnings ${LIB_SYSTEM})
  list(TRANSFORM LIB_HEADERS PREPEND ${view}/KYV/)
  target_sources(${name} INTERFACE FILE_SET HEADERS BASE_DIRS ${view} FILES ${LIB_HEADERS})
endfunction()

# kyv_test(library SOURCES ... NEEDS ...): the test program of one library, one CTest entry for each test case.
function(kyv_test library)
  cmake_parse_arguments(TEST "" "" "SOURCES;NEEDS" ${ARGN})
  add_executable(${library}_test ${TEST_SOURCES})
  target_link_libraries(${library}_test PRIVATE ${library} ${TEST_NEEDS} test_support kyv_warnings GTest::gtest_main)
  target_compile_definitions(${library}_test PRIVATE RADMAP_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  gtest_discover_tests(${library}_test DISCOVERY_MODE PRE_TEST)
endfunction()
