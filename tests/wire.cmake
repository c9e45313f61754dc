if(BUILD_SHARED_LIBS)  # whose parser can be counted from outside
  set(parseCounter support/ParseCounter.cpp)
  set(countingWireTests session/OutcomeTest.cpp)
  set(countingCliTests cli/ParseOnceTest.cpp)
endif()
lumo_add_tests(wire
  platform/HostileServerTest.cpp
  platform/HttpClientTest.cpp
  platform/HttpReportTest.cpp
  session/CallTest.cpp
  session/EveryOperationTest.cpp
  session/SessionTest.cpp
  SECOND ${countingWireTests}
  APART ${parseCounter})
# A stack of 128 KiB is promised for a library that is optimised; frames of others are larger.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  set(smallStack 4096)
elseif(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$")
  set(smallStack 128)
else()
  set(smallStack 256)
endif()
target_compile_definitions(wire PRIVATE LUMO_SMALL_STACK_KIB=${smallStack})
set_target_properties(wire PROPERTIES ENABLE_EXPORTS ON)  # the test's own name resolver is found
target_link_libraries(wire PRIVATE ${CMAKE_DL_LIBS})
lumo_discover_tests(wire)

# Its own allocations take the place of the process's, libcurl's included.
find_package(CURL REQUIRED)
lumo_add_tests(memory session/MemoryTest.cpp)
target_link_libraries(memory PRIVATE CURL::libcurl)
lumo_discover_tests(memory)
