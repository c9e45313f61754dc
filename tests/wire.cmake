lumo_add_tests(wire support/Main.cpp)
lumo_discover_tests(wire)
