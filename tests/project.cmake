add_test(NAME includes.KeepTheirDirection COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/includes.sh
  ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR}/includes)
add_test(NAME abi.ChangesAreFound COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/abi.sh ${PROJECT_SOURCE_DIR}
  ${CMAKE_CURRENT_BINARY_DIR}/abi)
set_tests_properties(abi.ChangesAreFound PROPERTIES SKIP_RETURN_CODE 77)

# What a user does with the library; sanitized builds are not installed.
if(LUMO_BUILD_SANDBOX AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  foreach(way find_package pkg_config add_subdirectory)
    add_test(NAME consumer.${way} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/consumer/run.sh
      ${way} ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR} $<TARGET_FILE:lumo-sandbox>)
  endforeach()
endif()
if(LUMO_BUILD_SANDBOX)
  lumo_add_tests(sandbox_tests
    sandbox/Sandbox.cpp sandbox/BrowseTest.cpp sandbox/CycleTest.cpp sandbox/NamespaceTest.cpp
    sandbox/SandboxTest.cpp
    sandbox/ServerTest.cpp)
  find_package(CURL REQUIRED)
  target_link_libraries(sandbox_tests PRIVATE lumo_sandbox_parts CURL::libcurl)
  add_test(NAME sandbox.KeepsItsPromises COMMAND ${PROJECT_SOURCE_DIR}/scripts/with-sandbox
    $<TARGET_FILE:lumo-sandbox> $<TARGET_FILE:sandbox_tests>)
  add_test(NAME sandbox.SaysWhatItTakes COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/sandbox/program.sh
    $<TARGET_FILE:lumo-sandbox>
    $<$<TARGET_EXISTS:lumo_sandbox_man>:${PROJECT_BINARY_DIR}/sandbox/lumo-sandbox.1>)
  lumo_add_tests(sandbox_data_tests sandbox/Sandbox.cpp sandbox/DataTest.cpp)
  add_test(NAME sandbox.HoldsSensibleData COMMAND ${CMAKE_COMMAND} -E env SANDBOX_SEED=full
    ${PROJECT_SOURCE_DIR}/scripts/with-sandbox
    $<TARGET_FILE:lumo-sandbox> $<TARGET_FILE:sandbox_data_tests>)
endif()
if(LUMO_BUILD_SANDBOX AND LUMO_BUILD_EXAMPLES)
  add_test(NAME examples.WorkOnTheSandbox COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/consumer/example.sh
    ${PROJECT_SOURCE_DIR} $<TARGET_FILE:lumo-sandbox> $<TARGET_FILE_DIR:list-databases>)
endif()
if(LUMO_BUILD_CLI)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
  lumo_add_tests(cli_tests cli/Command.cpp cli/CommandTest.cpp cli/ImportTest.cpp cli/PartsTest.cpp
    ${countingCliTests} SECOND cli/FormsTest.cpp APART ${parseCounter})
  target_compile_definitions(cli_tests PRIVATE LUMO_COMMAND="$<TARGET_FILE:lumo>")
  target_link_libraries(cli_tests PRIVATE lumo_cli_parts PkgConfig::HTTPLIB)
  add_dependencies(cli_tests lumo)
  add_test(NAME cli.WorksOnTheSandbox COMMAND cli_tests)
  add_test(NAME docs.BlocksDoWhatTheySay COMMAND /usr/bin/python3
    ${CMAKE_CURRENT_SOURCE_DIR}/docs/blocks.py ${PROJECT_SOURCE_DIR} $<TARGET_FILE:lumo>
    $<TARGET_FILE:lumo-sandbox>)
  add_test(NAME cli.IsAsItsManualsAndTourSay COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/cli/surroundings.sh
    ${PROJECT_SOURCE_DIR} $<TARGET_FILE:lumo> $<TARGET_FILE:lumo-sandbox>
    $<$<TARGET_EXISTS:lumo_man>:${PROJECT_BINARY_DIR}/cli/man1>)
endif()
