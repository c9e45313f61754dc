lumo_add_tests(wire
  support/Main.cpp
  support/RawServer.cpp
  platform/HttpClientTest.cpp
  session/CallTest.cpp
  session/EveryOperationTest.cpp
  session/SessionTest.cpp)
set_target_properties(wire PROPERTIES ENABLE_EXPORTS ON)  # the test's own name resolver is found
target_link_libraries(wire PRIVATE ${CMAKE_DL_LIBS})
lumo_discover_tests(wire)
