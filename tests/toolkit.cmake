if(LUMO_BUILD_TOOLKIT)
  lumo_add_tests(toolkit_tests
    support/Main.cpp
    support/RawServer.cpp
    toolkit/FailureTest.cpp
    toolkit/ValueTest.cpp)
  target_link_libraries(toolkit_tests PRIVATE Lumo::Toolkit)
  lumo_discover_tests(toolkit_tests)
endif()
