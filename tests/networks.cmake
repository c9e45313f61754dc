# The log-on, certificates and proxies against real counterparts, which the scripts start; without
# their packages these tests are skipped.
if(LUMO_BUILD_SANDBOX AND LUMO_BUILD_CLI)
  lumo_add_tests(networks_tests support/Main.cpp networks/Networks.cpp networks/KerberosTest.cpp
    networks/NtlmTest.cpp networks/TlsTest.cpp)
  foreach(rig kerberos ntlm tls)
    add_test(NAME networks.${rig} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/networks/run.sh
      ${rig} ${PROJECT_SOURCE_DIR} $<TARGET_FILE:networks_tests> $<TARGET_FILE:lumo>
      $<TARGET_FILE:lumo-sandbox>)
    set_tests_properties(networks.${rig} PROPERTIES SKIP_RETURN_CODE 77)
  endforeach()
endif()
