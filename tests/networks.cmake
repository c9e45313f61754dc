# The log-on, certificates and proxies against real counterparts, which the scripts start; without
# their packages these tests are skipped.
if(LUMO_BUILD_SANDBOX AND LUMO_BUILD_CLI)
  lumo_add_tests(networks_tests networks/Networks.cpp networks/Setups.cpp networks/KerberosTest.cpp
    networks/NtlmTest.cpp networks/SetupsTest.cpp SECOND networks/TlsTest.cpp)
  target_link_libraries(networks_tests PRIVATE Lumo::Toolkit lumo_cli_parts)
  add_test(NAME networks.setups COMMAND networks_tests --gtest_filter=Setups.*)
  foreach(rig kerberos ntlm tls)
    add_test(NAME networks.${rig} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/networks/run.sh
      ${rig} ${PROJECT_SOURCE_DIR} $<TARGET_FILE:networks_tests> $<TARGET_FILE:lumo>
      $<TARGET_FILE:lumo-sandbox>)
    set_tests_properties(networks.${rig} PROPERTIES SKIP_RETURN_CODE 77)
  endforeach()
endif()
