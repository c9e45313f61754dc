if(LUMO_BUILD_TOOLKIT)
  lumo_add_tests(toolkit_tests
    support/TinyService.cpp
    toolkit/ConnectionTest.cpp
    toolkit/FailureTest.cpp
    toolkit/SettingsTest.cpp
    toolkit/StreamTest.cpp
    THIRD toolkit/ColumnsTest.cpp toolkit/ConditionTest.cpp
    APART toolkit/ValueTest.cpp)
  target_link_libraries(toolkit_tests PRIVATE Lumo::Toolkit)
  lumo_discover_tests(toolkit_tests)
endif()
if(LUMO_BUILD_TOOLKIT AND LUMO_BUILD_SANDBOX)
  lumo_add_tests(toolkit_sandbox_tests
    toolkit/Sandbox.cpp
    toolkit/CatalogueTest.cpp
    toolkit/NamesTest.cpp
    toolkit/ReadTest.cpp
    toolkit/SearchTest.cpp)
  target_link_libraries(toolkit_sandbox_tests PRIVATE Lumo::Toolkit lumo_sandbox_parts)
  add_test(NAME toolkit.WorksOnTheSandbox COMMAND toolkit_sandbox_tests)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
  lumo_add_tests(toolkit_import_tests toolkit/ImportServer.cpp toolkit/ImportTest.cpp)
  target_link_libraries(toolkit_import_tests
    PRIVATE Lumo::Toolkit lumo_sandbox_parts PkgConfig::HTTPLIB)
  add_test(NAME toolkit.ImportsWhatItMay COMMAND toolkit_import_tests)
endif()
